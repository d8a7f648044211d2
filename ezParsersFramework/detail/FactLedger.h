#pragma once

#include "ez/ParseObserver.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

/// Who stated what of one record, as far as it has been looked at. It compares the record with what it was at
/// the look before, so whoever writes to records need not know of it.
class FactLedger {
public:
    /// A fact that is not as it was; null texts where it was not there, or no longer is.
    using OnChange = std::function<void(const char* aKey, const char* anOld, const char* aNew)>;

    /// Knows nothing of the record, which is borrowed, yet.
    explicit FactLedger(const ezMediaInfo& anInfo) : mInfo(&anInfo) {}

    bool IsOf(const ezMediaInfo& anInfo) const { return mInfo == &anInfo; }

    /// Looks at the record: what is not as it was at the look before was stated by a step.
    /// @param aSource    of no step where it was there before the request, and is not told
    /// @param aOnChange  told of each difference, in the order of Tell; may be empty
    void Look(const std::optional<ezFactSource>& aSource, const OnChange& aOnChange = OnChange());

    /// Tells each fact and its source: keys in byte order, then members.
    void Tell(const std::function<void(const char* aKey, const ezFactSource& aSource)>& aOnFact) const;

private:
    struct Fact {
        std::size_t mRank; ///< 0 for keys; members have numbers of their own
        ezCString mKey;
        ezCString mText;
        std::optional<ezFactSource> mSource;
    };

    static bool IsBefore(const Fact& aLeft, const Fact& aRight);
    std::vector<Fact> Facts() const;

    const ezMediaInfo* mInfo;
    std::vector<Fact> mFacts; ///< in the order of Tell
};
