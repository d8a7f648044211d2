#include "ezFormats/rules/ProfileRule.h"

#include <algorithm>

namespace {

bool ContainsNumber(const std::vector<ProfileRange>& aRanges, uint32 aNumber) {
    return std::any_of(aRanges.begin(), aRanges.end(), [aNumber](const ProfileRange& aRange) {
        return aRange.mLeast <= aNumber && aNumber <= aRange.mMost;
    });
}

/// Every range of the one lies within one range of the other: these never touch each other.
bool LieWithin(const std::vector<ProfileRange>& aRanges, const std::vector<ProfileRange>& anOthers) {
    auto other = anOthers.begin();
    for (const ProfileRange& range : aRanges) {
        while (other != anOthers.end() && other->mMost < range.mLeast) {
            ++other;
        }
        if (other == anOthers.end() || range.mLeast < other->mLeast || other->mMost < range.mMost) {
            return false;
        }
    }
    return true;
}

} // namespace

bool ProfileCondition_IsMet(const ProfileCondition& aCondition, const ProfileFactValues& aValues) {
    if (!aValues.IsStated(aCondition.mFact)) {
        return false;
    }
    if (kProfileFacts[aCondition.mFact].mKind == ProfileFactKind::Number) {
        return ContainsNumber(aCondition.mRanges, aValues.GetNumber(aCondition.mFact));
    }
    return std::find(aCondition.mWords.begin(), aCondition.mWords.end(), aValues.GetWord(aCondition.mFact)) !=
           aCondition.mWords.end();
}

bool ProfileCondition_Implies(const ProfileCondition& aCondition, const ProfileCondition& anOther) {
    return aCondition.mFact == anOther.mFact && LieWithin(aCondition.mRanges, anOther.mRanges) &&
           std::includes(anOther.mWords.begin(), anOther.mWords.end(), aCondition.mWords.begin(),
                         aCondition.mWords.end());
}

bool ProfileRule_IsMet(const ProfileRule& aRule, const ProfileFactValues& aValues) {
    return std::all_of(aRule.mConditions.begin(), aRule.mConditions.end(),
                       [&aValues](const ProfileCondition& aCondition) {
                           return ProfileCondition_IsMet(aCondition, aValues);
                       });
}

bool ProfileRule_Implies(const ProfileRule& aRule, const ProfileRule& anOther) {
    return std::all_of(anOther.mConditions.begin(), anOther.mConditions.end(),
                       [&aRule](const ProfileCondition& anAsked) {
                           return std::any_of(aRule.mConditions.begin(), aRule.mConditions.end(),
                                              [&anAsked](const ProfileCondition& aCondition) {
                                                  return ProfileCondition_Implies(aCondition, anAsked);
                                              });
                       });
}

std::string ProfileRule_Quoted(std::string_view aText) {
    constexpr std::size_t kLongest = 40;
    std::string text = "\"";
    for (const char character : aText.substr(0, kLongest)) {
        text += character >= ' ' && character <= '~' ? character : '?';
    }
    return text + (aText.size() > kLongest ? "...\"" : "\"");
}
