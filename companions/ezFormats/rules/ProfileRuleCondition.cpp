#include "ezFormats/detail/ListItems.h"
#include "ezFormats/rules/ProfileRule.h"

#include <algorithm>
#include <utility>

// The reading of conditions.

namespace {

/// Levels without a number of their own, of H.264 and of MPEG-4 part 2: below level 1 in what a record
/// states.
constexpr std::string_view kLevelOneB = "1b";
constexpr std::string_view kLevelZeroB = "0b";
constexpr uint32 kLevelBValue = 9;
constexpr uint32 kLevelScale = 10;

constexpr std::uint64_t kThousand = 1000;

bool IsDigit(char aCharacter) {
    return aCharacter >= '0' && aCharacter <= '9';
}

/// Takes "k" or "M" off the end: what it multiplies by.
std::uint64_t TakeSuffix(std::string_view* aText) {
    const char last = aText->empty() ? '\0' : aText->back();
    if (last != 'k' && last != 'M') {
        return 1;
    }
    aText->remove_suffix(1);
    return last == 'k' ? kThousand : kThousand * kThousand;
}

/// Digits with at most one dot between them, as digits and as the power of ten that divides them. False for
/// all else, and for more than any fact can be.
bool ReadDigits(std::string_view aText, std::uint64_t* aDigits, std::uint64_t* aDivisor) {
    constexpr std::size_t kMostDigits = 16;
    bool fDot = false;
    *aDigits = 0;
    *aDivisor = 1;
    if (aText.empty() || aText.size() > kMostDigits || !IsDigit(aText.front()) || !IsDigit(aText.back())) {
        return false;
    }
    for (const char character : aText) {
        if (character == '.' && !fDot) {
            fDot = true;
            continue;
        }
        if (!IsDigit(character)) {
            return false;
        }
        *aDigits = *aDigits * 10 + static_cast<std::uint64_t>(character - '0');
        *aDivisor *= fDot ? 10 : 1;
    }
    return true;
}

/// A number as a record would hold it. False when it is none, or none that the fact can be.
bool ReadNumber(std::string_view aText, const ProfileFact& aFact, uint32* aNumber) {
    if (aFact.mScale == kLevelScale && (aText == kLevelOneB || aText == kLevelZeroB)) {
        *aNumber = kLevelBValue;
        return true;
    }
    std::string_view text = aText;
    const std::uint64_t multiplier = TakeSuffix(&text) * aFact.mScale;
    std::uint64_t digits = 0;
    std::uint64_t divisor = 1;
    if (!ReadDigits(text, &digits, &divisor) || digits > UINT64_MAX / multiplier ||
        digits * multiplier % divisor != 0 || digits * multiplier / divisor > ProfileFactValues::kMaximum) {
        return false;
    }
    *aNumber = static_cast<uint32>(digits * multiplier / divisor);
    return true;
}

std::string NameOf(const ProfileFact& aFact) {
    return std::string(aFact.mName);
}

bool ReadRange(std::string_view anItem, const ProfileFact& aFact, ProfileRange* aRange,
               std::string* aProblem) {
    const std::string_view::size_type dash = anItem.find('-');
    const bool fRange = dash != std::string_view::npos;
    const std::string_view least = anItem.substr(0, dash);
    const std::string_view most = fRange ? anItem.substr(dash + 1) : least;
    *aRange = {0, ProfileFactValues::kMaximum};
    const bool fOpen = least.empty() || most.empty();
    if ((fOpen && (!fRange || anItem.size() == 1)) ||
        (!least.empty() && !ReadNumber(least, aFact, &aRange->mLeast)) ||
        (!most.empty() && !ReadNumber(most, aFact, &aRange->mMost))) {
        *aProblem =
            ProfileRule_Quoted(anItem) + " is not a number or range that " + NameOf(aFact) + " can be";
        return false;
    }
    if (aRange->mLeast > aRange->mMost || (aRange->mMost == 0 && !aFact.mfZeroCounts)) {
        *aProblem = "nothing meets " + NameOf(aFact) + "=" + ProfileRule_Quoted(anItem) +
                    (aRange->mMost == 0 ? ": 0 is what is not known" : ": it ends before it begins");
        return false;
    }
    return true;
}

/// Puts ranges into order, and those that overlap or touch into one.
void Normalise(std::vector<ProfileRange>* aRanges) {
    std::sort(aRanges->begin(), aRanges->end(), [](const ProfileRange& aLeft, const ProfileRange& aRight) {
        return aLeft.mLeast < aRight.mLeast;
    });
    std::vector<ProfileRange> merged;
    for (const ProfileRange& range : *aRanges) {
        if (!merged.empty() && range.mLeast <= merged.back().mMost + 1) {
            merged.back().mMost = std::max(merged.back().mMost, range.mMost);
        } else {
            merged.push_back(range);
        }
    }
    *aRanges = std::move(merged);
}

/// A range as a record's number meets it.
ProfileRange Widened(const ProfileRange& aRange, const ProfileFact& aFact) {
    const uint32 above = aFact.mfMeasured ? aRange.mMost / kProfileFact_Excess : 0;
    return {aRange.mLeast - std::min(aRange.mLeast, aFact.mTolerance),
            aRange.mMost + std::min(ProfileFactValues::kMaximum - aRange.mMost, above)};
}

bool ReadItem(std::string_view anItem, ProfileCondition* aCondition, std::string* aProblem) {
    const ProfileFact& fact = kProfileFacts[aCondition->mFact];
    if (anItem.empty()) {
        *aProblem = "an item of " + NameOf(fact) + " is empty";
        return false;
    }
    if (fact.mKind == ProfileFactKind::Word) {
        aCondition->mWords.emplace_back(anItem);
        return true;
    }
    ProfileRange range = {};
    if (!ReadRange(anItem, fact, &range, aProblem)) {
        return false;
    }
    aCondition->mRanges.push_back(Widened(range, fact));
    return true;
}

} // namespace

bool ProfileCondition_Read(std::string_view aText, ProfileCondition* aCondition, std::string* aProblem) {
    const std::string_view::size_type equals = aText.find('=');
    if (equals == std::string_view::npos) {
        *aProblem = ProfileRule_Quoted(aText) + " is no condition: these are fact=values";
        return false;
    }
    *aCondition = ProfileCondition();
    aCondition->mFact = ProfileFact_Find(aText.substr(0, equals));
    if (aCondition->mFact == kProfileFactCount) {
        *aProblem = "no fact is named " + ProfileRule_Quoted(aText.substr(0, equals));
        return false;
    }
    ListItems items(aText.substr(equals + 1));
    std::string_view item;
    while (items.Next(&item)) {
        if (!ReadItem(item, aCondition, aProblem)) {
            return false;
        }
    }
    Normalise(&aCondition->mRanges);
    std::sort(aCondition->mWords.begin(), aCondition->mWords.end());
    aCondition->mWords.erase(std::unique(aCondition->mWords.begin(), aCondition->mWords.end()),
                             aCondition->mWords.end());
    return true;
}
