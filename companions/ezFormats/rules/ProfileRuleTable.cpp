#include "ezFormats/rules/ProfileRuleTable.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

/// Lies in no range: numbers of facts and of words stay below.
constexpr uint32 kNone = ProfileFactValues::kMaximum + 1;

} // namespace

/// The facts of one media as numbers, each of which is made when it is asked for.
class ProfileRuleTable::Facts {
public:
    Facts(const ProfileRuleTable& aTable, const ProfileFactValues& aValues)
        : mTable(aTable), mValues(aValues) {}

    uint32 Get(std::size_t aFact) {
        if (!mfKnown[aFact]) {
            mfKnown[aFact] = true;
            mNumbers[aFact] = Make(aFact);
        }
        return mNumbers[aFact];
    }

private:
    uint32 Make(std::size_t aFact) const {
        if (!mValues.IsStated(aFact)) {
            return kNone;
        }
        const bool fWord = kProfileFacts[aFact].mKind == ProfileFactKind::Word;
        return fWord ? mTable.NumberOf(mValues.GetWord(aFact)) : mValues.GetNumber(aFact);
    }

    const ProfileRuleTable& mTable;
    const ProfileFactValues& mValues;
    std::array<bool, kProfileFactCount> mfKnown = {};
    std::array<uint32, kProfileFactCount> mNumbers = {};
};

ProfileRuleTable::ProfileRuleTable(const std::vector<ProfileRule>& aRules) {
    for (const ProfileRule& rule : aRules) {
        for (const ProfileCondition& condition : rule.mConditions) {
            mWords.insert(mWords.end(), condition.mWords.begin(), condition.mWords.end());
        }
    }
    std::sort(mWords.begin(), mWords.end());
    mWords.erase(std::unique(mWords.begin(), mWords.end()), mWords.end());
    for (const ProfileRule& rule : aRules) {
        for (const ProfileCondition& condition : rule.mConditions) {
            AddCheck(condition);
        }
        mRules.push_back({rule.mMimeTypes, static_cast<std::uint32_t>(mChecks.size())});
    }
}

void ProfileRuleTable::AddCheck(const ProfileCondition& aCondition) {
    mRanges.insert(mRanges.end(), aCondition.mRanges.begin(), aCondition.mRanges.end());
    for (const std::string& word : aCondition.mWords) {
        mRanges.push_back({NumberOf(word), NumberOf(word)});
    }
    mChecks.push_back(
        {static_cast<std::uint32_t>(aCondition.mFact), static_cast<std::uint32_t>(mRanges.size())});
}

uint32 ProfileRuleTable::NumberOf(std::string_view aWord) const {
    const auto found = std::lower_bound(mWords.begin(), mWords.end(), aWord);
    return found != mWords.end() && *found == aWord ? static_cast<uint32>(found - mWords.begin()) : kNone;
}

bool ProfileRuleTable::AreMet(std::size_t aCheck, std::size_t anEnd, Facts& aFacts) const {
    for (std::size_t i = aCheck; i < anEnd; ++i) {
        const uint32 number = aFacts.Get(mChecks[i].mFact);
        const ProfileRange* range = mRanges.data() + (i == 0 ? 0 : mChecks[i - 1].mRangesEnd);
        const ProfileRange* const end = mRanges.data() + mChecks[i].mRangesEnd;
        while (range != end && (number < range->mLeast || number > range->mMost)) {
            ++range;
        }
        if (range == end) {
            return false;
        }
    }
    return true;
}

std::size_t ProfileRuleTable::FindMet(std::uint32_t aMimeType, const ProfileFactValues& aValues) const {
    Facts facts(*this, aValues);
    std::size_t check = 0;
    for (std::size_t i = 0; i < mRules.size(); ++i) {
        const std::size_t end = mRules[i].mChecksEnd;
        if ((mRules[i].mMimeTypes & aMimeType) != 0 && AreMet(check, end, facts)) {
            return i;
        }
        check = end;
    }
    return mRules.size();
}
