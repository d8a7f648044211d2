#include "ezFormats/rules/ProfileRule.h"

#include "ezFormats/detail/Limits.h"
#include "ezPlatform/text/Case.h"

#include <algorithm>

namespace {

bool LiesWithin(const ProfileRange& aRange, const ProfileRange& anOther) {
    return anOther.mLeast <= aRange.mLeast && aRange.mMost <= anOther.mMost;
}

bool LiesWithin(const ProfileSize& aSize, const ProfileSize& anOther) {
    return LiesWithin(aSize.mWidth, anOther.mWidth) && LiesWithin(aSize.mHeight, anOther.mHeight) &&
           LiesWithin(aSize.mFrameRate, anOther.mFrameRate);
}

/// Every range of the one lies within one range of the other: in either they are in rising order, and never
/// touch each other.
bool LieWithin(const std::vector<ProfileRange>& aRanges, const std::vector<ProfileRange>& anOthers) {
    auto other = anOthers.begin();
    for (const ProfileRange& range : aRanges) {
        while (other != anOthers.end() && other->mMost < range.mLeast) {
            ++other;
        }
        if (other == anOthers.end() || !LiesWithin(range, *other)) {
            return false;
        }
    }
    return true;
}

/// Every size of the one lies within one size of the other.
bool LieWithin(const std::vector<ProfileSize>& aSizes, const std::vector<ProfileSize>& anOthers) {
    return std::all_of(aSizes.begin(), aSizes.end(), [&anOthers](const ProfileSize& aSize) {
        return std::any_of(anOthers.begin(), anOthers.end(),
                           [&aSize](const ProfileSize& anOther) { return LiesWithin(aSize, anOther); });
    });
}

/// True when whatever meets the one condition meets the other, which asks for the same fact.
bool Implies(const ProfileCondition& aCondition, const ProfileCondition& anOther) {
    return aCondition.mFact == anOther.mFact && LieWithin(aCondition.mRanges, anOther.mRanges) &&
           LieWithin(aCondition.mSizes, anOther.mSizes) &&
           std::includes(anOther.mWords.begin(), anOther.mWords.end(), aCondition.mWords.begin(),
                         aCondition.mWords.end());
}

const ProfileCondition* FindCondition(const ProfileRule& aRule, std::size_t aFact) {
    const auto found =
        std::find_if(aRule.mConditions.begin(), aRule.mConditions.end(),
                     [aFact](const ProfileCondition& aCondition) { return aCondition.mFact == aFact; });
    return found != aRule.mConditions.end() ? &*found : nullptr;
}

/// From the least to the most that a rule lets a number be.
ProfileRange BoundsOf(const ProfileRule& aRule, std::size_t aFact) {
    const ProfileCondition* const condition = FindCondition(aRule, aFact);
    return condition != nullptr
               ? ProfileRange{condition->mRanges.front().mLeast, condition->mRanges.back().mMost}
               : kProfileRange_Any;
}

/// What a size asks of one of its numbers.
ProfileRange RangeOf(const ProfileSize& aSize, std::size_t aFact) {
    return aFact == kProfileFact_Width    ? aSize.mWidth
           : aFact == kProfileFact_Height ? aSize.mHeight
                                          : aSize.mFrameRate;
}

/// True when sizes that the rule asks for in one way imply what is asked for in the other way.
bool ImpliesBySize(const ProfileRule& aRule, const ProfileCondition& anAsked) {
    if (anAsked.mFact == kProfileFact_Size) {
        const ProfileSize bounds = {BoundsOf(aRule, kProfileFact_Width), BoundsOf(aRule, kProfileFact_Height),
                                    BoundsOf(aRule, kProfileFact_FrameRate)};
        return LieWithin(std::vector<ProfileSize>{bounds}, anAsked.mSizes);
    }
    const bool fPart = anAsked.mFact == kProfileFact_Width || anAsked.mFact == kProfileFact_Height ||
                       anAsked.mFact == kProfileFact_FrameRate;
    const ProfileCondition* const sizes = fPart ? FindCondition(aRule, kProfileFact_Size) : nullptr;
    return sizes != nullptr &&
           std::all_of(sizes->mSizes.begin(), sizes->mSizes.end(), [&anAsked](const ProfileSize& aSize) {
               return LieWithin(std::vector<ProfileRange>{RangeOf(aSize, anAsked.mFact)}, anAsked.mRanges);
           });
}

} // namespace

std::size_t ProfileRuleList_FindMimeType(const ProfileRuleList& aList, std::string_view aMimeType) {
    const std::string_view bare = ezTrimmed(aMimeType.substr(0, aMimeType.find(';')));
    const auto found =
        std::find_if(aList.mMimeTypes.begin(), aList.mMimeTypes.end(),
                     [bare](const ezCString& aKnown) { return ezIsEqualNoCase(aKnown.View(), bare); });
    return static_cast<std::size_t>(found - aList.mMimeTypes.begin());
}

bool ProfileRule_Implies(const ProfileRule& aRule, const ProfileRule& anOther) {
    return std::all_of(anOther.mConditions.begin(), anOther.mConditions.end(),
                       [&aRule](const ProfileCondition& anAsked) {
                           const ProfileCondition* const own = FindCondition(aRule, anAsked.mFact);
                           return (own != nullptr && Implies(*own, anAsked)) || ImpliesBySize(aRule, anAsked);
                       });
}

std::string ProfileRule_Quoted(std::string_view aText) {
    std::string text = "\"";
    for (const char character : aText.substr(0, kProfileRules_MaxQuoted)) {
        text += character >= ' ' && character <= '~' ? character : '?';
    }
    return text + (aText.size() > kProfileRules_MaxQuoted ? "...\"" : "\"");
}
