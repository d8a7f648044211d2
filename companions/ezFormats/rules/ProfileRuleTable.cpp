#include "ezFormats/rules/ProfileRuleTable.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace {

bool IsSame(const ProfileRange& aRange, const ProfileRange& anOther) {
    return aRange.mLeast == anOther.mLeast && aRange.mMost == anOther.mMost;
}

bool IsSame(const ProfileSize& aSize, const ProfileSize& anOther) {
    return IsSame(aSize.mWidth, anOther.mWidth) && IsSame(aSize.mHeight, anOther.mHeight) &&
           IsSame(aSize.mFrameRate, anOther.mFrameRate);
}

template <typename Item>
bool AreSame(const std::vector<Item>& anItems, const std::vector<Item>& anOthers) {
    return std::equal(anItems.begin(), anItems.end(), anOthers.begin(), anOthers.end(),
                      [](const Item& anItem, const Item& anOther) { return IsSame(anItem, anOther); });
}

bool IsSame(const ProfileCondition& aCondition, const ProfileCondition& anOther) {
    return aCondition.mFact == anOther.mFact && aCondition.mWords == anOther.mWords &&
           AreSame(aCondition.mRanges, anOther.mRanges) && AreSame(aCondition.mSizes, anOther.mSizes);
}

std::uint32_t CountShared(const ProfileRule& aRule, const ProfileRule& aBefore) {
    const auto [own, other] = std::mismatch(
        aRule.mConditions.begin(), aRule.mConditions.end(), aBefore.mConditions.begin(),
        aBefore.mConditions.end(),
        [](const ProfileCondition& aLeft, const ProfileCondition& aRight) { return IsSame(aLeft, aRight); });
    return static_cast<std::uint32_t>(own - aRule.mConditions.begin());
}

template <typename Item>
std::uint32_t CountOf(const std::vector<Item>& anItems) {
    return static_cast<std::uint32_t>(anItems.size());
}

bool Contains(const ProfileRange& aRange, uint32 aNumber) {
    return aRange.mLeast <= aNumber && aNumber <= aRange.mMost;
}

} // namespace

/// The facts of one media as numbers, each of which is made when it is asked for: most rules fail at their
/// first conditions.
class ProfileRuleTable::Facts {
public:
    Facts(const ProfileRuleTable& aTable, const ezMediaInfo& anInfo) : mTable(aTable), mInfo(anInfo) {}

    uint32 Get(std::size_t aFact) {
        if (!mfKnown[aFact]) {
            mfKnown[aFact] = true;
            mNumbers[aFact] = Make(aFact);
        }
        return mNumbers[aFact];
    }

private:
    uint32 Make(std::size_t aFact) const {
        return kProfileFacts[aFact].mKind == ProfileFactKind::Number
                   ? ProfileFact_NumberOf(mInfo, aFact)
                   : mTable.NumberOf(ProfileFact_WordOf(mInfo, aFact).View());
    }

    const ProfileRuleTable& mTable;
    const ezMediaInfo& mInfo;
    std::array<bool, kProfileFactCount> mfKnown = {};
    std::array<uint32, kProfileFactCount> mNumbers;
};

ProfileRuleTable::ProfileRuleTable(const ProfileRuleList& aList) {
    CollectWords(aList);
    for (std::size_t i = 0; i < aList.mMimeTypes.size(); ++i) {
        mTypes.push_back(CountOf(mSteps));
        AddSteps(aList, i);
        LinkSteps(mTypes.back());
    }
    mTypes.push_back(CountOf(mSteps));
    mSteps.push_back({0, 0, CountOf(mChecks), 0});
}

void ProfileRuleTable::CollectWords(const ProfileRuleList& aList) {
    std::set<std::string_view> words; // few, and most of them in every rule
    for (const ProfileRule& rule : aList.mRules) {
        for (const ProfileCondition& condition : rule.mConditions) {
            words.insert(condition.mWords.begin(), condition.mWords.end());
        }
    }
    mWords.assign(words.begin(), words.end());
}

void ProfileRuleTable::AddSteps(const ProfileRuleList& aList, std::size_t aMimeType) {
    const ProfileRule* before = nullptr;
    for (const ProfileRule& rule : aList.mRules) {
        const auto type =
            std::find_if(rule.mMimeTypes.begin(), rule.mMimeTypes.end(),
                         [aMimeType](ProfileMimeType aType) { return aType.mStated == aMimeType; });
        if (type == rule.mMimeTypes.end()) {
            continue;
        }
        mSteps.push_back({static_cast<std::uint32_t>(&rule - aList.mRules.data()), type->mAnnounced,
                          CountOf(mChecks), before != nullptr ? CountShared(rule, *before) : 0});
        for (const ProfileCondition& condition : rule.mConditions) {
            AddCheck(condition);
        }
        before = &rule;
    }
}

void ProfileRuleTable::AddCheck(const ProfileCondition& aCondition) {
    const std::uint32_t first = CountOf(mRanges);
    mRanges.insert(mRanges.end(), aCondition.mRanges.begin(), aCondition.mRanges.end());
    for (const std::string& word : aCondition.mWords) {
        mRanges.push_back({NumberOf(word), NumberOf(word)});
    }
    for (const ProfileSize& size : aCondition.mSizes) {
        mRanges.insert(mRanges.end(), {size.mWidth, size.mHeight, size.mFrameRate});
    }
    mChecks.push_back({static_cast<std::uint32_t>(aCondition.mFact), first, CountOf(mRanges), 0});
}

/// Tells of each check of the last type's steps, from the last one on, where to go on when it is not met: the
/// steps that begin with the same checks up to it would not be met either.
void ProfileRuleTable::LinkSteps(std::size_t aFirst) {
    for (std::size_t step = mSteps.size(); step-- > aFirst;) {
        const std::size_t begin = mSteps[step].mChecks;
        const std::size_t end = step + 1 < mSteps.size() ? mSteps[step + 1].mChecks : mChecks.size();
        for (std::size_t i = 0; i < end - begin; ++i) {
            std::uint32_t next = static_cast<std::uint32_t>(step) + 1;
            while (next < mSteps.size() && mSteps[next].mShared > i) {
                next = mChecks[mSteps[next].mChecks + i].mNext;
            }
            mChecks[begin + i].mNext = next;
        }
    }
}

uint32 ProfileRuleTable::NumberOf(std::string_view aWord) const {
    const auto found = std::lower_bound(mWords.begin(), mWords.end(), aWord);
    return found != mWords.end() && *found == aWord ? static_cast<uint32>(found - mWords.begin())
                                                    : kProfileFact_NotStated;
}

bool ProfileRuleTable::IsMet(const Check& aCheck, Facts& aFacts) const {
    const ProfileRange* range = mRanges.data() + aCheck.mRanges;
    const ProfileRange* const end = mRanges.data() + aCheck.mRangesEnd;
    if (aCheck.mFact != kProfileFact_Size) {
        const uint32 number = aFacts.Get(aCheck.mFact);
        return std::any_of(range, end,
                           [number](const ProfileRange& aRange) { return Contains(aRange, number); });
    }
    const uint32 width = aFacts.Get(kProfileFact_Width);
    const uint32 height = aFacts.Get(kProfileFact_Height);
    const uint32 rate = aFacts.Get(kProfileFact_FrameRate);
    while (range != end &&
           !(Contains(range[0], width) && Contains(range[1], height) && Contains(range[2], rate))) {
        range += kRangesOfSize;
    }
    return range != end;
}

ProfileRuleTable::Match ProfileRuleTable::FindMet(std::size_t aMimeType, const ezMediaInfo& anInfo) const {
    if (aMimeType + 1 >= mTypes.size()) {
        return {kNone, kNone};
    }
    Facts facts(*this, anInfo);
    std::size_t step = mTypes[aMimeType];
    while (step < mTypes[aMimeType + 1]) {
        // What it shares with the step that led here was met there.
        std::size_t check = mSteps[step].mChecks + mSteps[step].mShared;
        const std::size_t end = mSteps[step + 1].mChecks;
        while (check < end && IsMet(mChecks[check], facts)) {
            ++check;
        }
        if (check == end) {
            return {mSteps[step].mRule, mSteps[step].mMimeType};
        }
        step = mChecks[check].mNext;
    }
    return {kNone, kNone};
}
