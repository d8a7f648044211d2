#pragma once

#include "ezFormats/rules/ProfileRule.h"

#include <algorithm>
#include <string>

// What the words of the guide say of a condition, rule by rule and without any haste: what the library's
// search is compared with.

inline bool IsIn(const ProfileRange& aRange, uint32 aNumber) {
    return aNumber >= aRange.mLeast && aNumber <= aRange.mMost;
}

inline bool IsConditionMet(const ProfileCondition& aCondition, const ezMediaInfo& anInfo) {
    const auto number = [&anInfo](std::size_t aFact) { return ProfileFact_NumberOf(anInfo, aFact); };
    switch (kProfileFacts[aCondition.mFact].mKind) {
    case ProfileFactKind::Number:
        return std::any_of(
            aCondition.mRanges.begin(), aCondition.mRanges.end(),
            [&](const ProfileRange& aRange) { return IsIn(aRange, number(aCondition.mFact)); });
    case ProfileFactKind::Size:
        return std::any_of(aCondition.mSizes.begin(), aCondition.mSizes.end(), [&](const ProfileSize& aSize) {
            return IsIn(aSize.mWidth, number(kProfileFact_Width)) &&
                   IsIn(aSize.mHeight, number(kProfileFact_Height)) &&
                   IsIn(aSize.mFrameRate, number(kProfileFact_FrameRate));
        });
    default:
        return std::find(aCondition.mWords.begin(), aCondition.mWords.end(),
                         std::string(ProfileFact_WordOf(anInfo, aCondition.mFact).View())) !=
               aCondition.mWords.end();
    }
}

inline bool IsRuleMet(const ProfileRule& aRule, const ezMediaInfo& anInfo) {
    return std::all_of(
        aRule.mConditions.begin(), aRule.mConditions.end(),
        [&anInfo](const ProfileCondition& aCondition) { return IsConditionMet(aCondition, anInfo); });
}

inline bool IsForMimeType(const ProfileRule& aRule, std::size_t aMimeType) {
    return std::any_of(aRule.mMimeTypes.begin(), aRule.mMimeTypes.end(),
                       [aMimeType](ProfileMimeType aType) { return aType.mStated == aMimeType; });
}

/// The first rule of a list that a record of its MIME type meets; null when none.
inline const ProfileRule* FirstMet(const ProfileRuleList& aList, const ezMediaInfo& anInfo) {
    const std::size_t type =
        ProfileRuleList_FindMimeType(aList, anInfo.GetCString(kezInfo_MimeType, "").View());
    for (const ProfileRule& rule : aList.mRules) {
        if (IsForMimeType(rule, type) && IsRuleMet(rule, anInfo)) {
            return &rule;
        }
    }
    return nullptr;
}
