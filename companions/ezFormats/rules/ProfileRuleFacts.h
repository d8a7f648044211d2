#pragma once

#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

class ezMediaInfo;

enum class ProfileFactKind { Word, Number };

/// A fact that a rule can ask for.
struct ProfileFact {
    std::string_view mName;
    std::string_view mKey; ///< its other name: the key that holds it, or the first choice among those
    ProfileFactKind mKind;
    /// Where the record holds it: the first key that states a number counts. Null ends them.
    std::array<const char*, 3> mKeys;
    uint32 mScale = 1;         ///< the record holds this many times the number that a table states
    uint32 mTolerance = 0;     ///< how far below a stated number the record's may lie and meet it still
    bool mfZeroCounts = false; ///< 0 is a value, and not the lack of one
    bool mfMeasured = false; ///< it may lie kProfileFact_Excess above: limits are nominal, and it is measured
};

/// The part of a stated number by which a measured one may lie above it: 1 / this. So 256,164 bits a second
/// keep 256k, and 30.02 pictures a second keep 30.
inline constexpr uint32 kProfileFact_Excess = 1000;

inline constexpr std::size_t kProfileFactCount = 17;
extern const std::array<ProfileFact, kProfileFactCount> kProfileFacts;

/// The index of a fact by one of its names; kProfileFactCount when there is none.
std::size_t ProfileFact_Find(std::string_view aName);

/// What a record says of them. Most rules fail at their first condition, so a fact is read when it is asked
/// for, once. The record is borrowed, and stays as it is meanwhile. For one thread.
class ProfileFactValues {
public:
    /// The largest number that is one: the next one stands for what varies.
    static constexpr uint32 kMaximum = 0xFFFFFFFE;

    explicit ProfileFactValues(const ezMediaInfo& anInfo) : mInfo(anInfo) {}

    /// False when the record does not state it, or states that it varies without a bound.
    bool IsStated(std::size_t aFact) const {
        ReadOnce(aFact);
        return mfStated[aFact];
    }
    uint32 GetNumber(std::size_t aFact) const {
        ReadOnce(aFact);
        return mNumbers[aFact];
    }
    std::string_view GetWord(std::size_t aFact) const {
        ReadOnce(aFact);
        return mWords[aFact].View();
    }

private:
    void ReadOnce(std::size_t aFact) const {
        if (!mfRead[aFact]) {
            Read(aFact);
        }
    }
    void Read(std::size_t aFact) const;

    const ezMediaInfo& mInfo;
    mutable std::array<bool, kProfileFactCount> mfRead = {};
    mutable std::array<bool, kProfileFactCount> mfStated = {};
    mutable std::array<uint32, kProfileFactCount> mNumbers = {};
    mutable std::array<ezCString, kProfileFactCount> mWords;
};
