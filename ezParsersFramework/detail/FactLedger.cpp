#include "detail/FactLedger.h"

#include "ezPlatform/media/MediaInfo.h"

#include <string>
#include <utility>

namespace {

ezCString TextOf(const ezDateTime& aTime) {
    return aTime.IsSet() ? ezCString((std::to_string(aTime.GetUnixTime()) + "." +
                                      std::to_string(aTime.GetNanoseconds()))
                                         .c_str())
                         : ezCString();
}

} // namespace

bool FactLedger::IsBefore(const Fact& aLeft, const Fact& aRight) {
    return aLeft.mRank != aRight.mRank ? aLeft.mRank < aRight.mRank : aLeft.mKey.View() < aRight.mKey.View();
}

std::vector<FactLedger::Fact> FactLedger::Facts() const {
    std::vector<Fact> facts;
    for (std::size_t i = 0; i < mInfo->GetCount(); ++i) {
        ezCString key = mInfo->GetKeyAt(i);
        ezCString text = mInfo->GetCString(key.c_str(), "");
        facts.push_back({0, std::move(key), std::move(text), std::nullopt});
    }
    std::size_t rank = 0;
    const auto addMember = [&](const char* aName, const ezCString& aText) {
        ++rank;
        if (!aText.IsEmpty()) {
            facts.push_back({rank, aName, aText, std::nullopt});
        }
    };
    addMember("mFullPath", mInfo->mFullPath);
    addMember("mLastModificationTime", TextOf(mInfo->mLastModificationTime));
    addMember("mTitle", mInfo->mTitle);
    addMember("mCreator", mInfo->mCreator);
    addMember("mGenre", mInfo->mGenre);
    addMember("mAlbum", mInfo->mAlbum);
    return facts;
}

void FactLedger::Look(const std::optional<ezFactSource>& aSource, const OnChange& aOnChange) {
    const auto change = [&](const Fact& aFact, const char* anOld, const char* aNew) {
        if (aOnChange) {
            aOnChange(aFact.mKey.c_str(), anOld, aNew);
        }
    };
    std::vector<Fact> facts = Facts();
    auto old = mFacts.cbegin();
    for (Fact& fact : facts) {
        for (; old != mFacts.cend() && IsBefore(*old, fact); ++old) {
            change(*old, old->mText.c_str(), nullptr);
        }
        const bool fKnown = old != mFacts.cend() && !IsBefore(fact, *old);
        if (fKnown && old->mText == fact.mText) {
            fact.mSource = old->mSource;
        } else {
            fact.mSource = aSource;
            change(fact, fKnown ? old->mText.c_str() : nullptr, fact.mText.c_str());
        }
        old += fKnown ? 1 : 0;
    }
    for (; old != mFacts.cend(); ++old) {
        change(*old, old->mText.c_str(), nullptr);
    }
    mFacts = std::move(facts);
}

void FactLedger::Tell(
    const std::function<void(const char* aKey, const ezFactSource& aSource)>& aOnFact) const {
    for (const Fact& fact : mFacts) {
        if (fact.mSource.has_value()) {
            aOnFact(fact.mKey.c_str(), *fact.mSource);
        }
    }
}
