#include "ezFormats/detail/Containers.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/ListItems.h"
#include "ezFormats/rules/ProfileRule.h"

#include <algorithm>
#include <array>
#include <utility>

// The reading of conditions.

namespace {

/// Levels that are not numbers, as a record states them.
struct LevelName {
    std::string_view mName;
    uint32 mLevel;
};
constexpr std::array<LevelName, 7> kLevelNames = {{
    {"1b", 9},   // of H.264, and
    {"0b", 9},   // of MPEG-4 part 2: just below level 1
    {"Low", 10}, // of MPEG-2 and of WMV 9
    {"Main", 20},
    {"Medium", 20},
    {"High1440", 30},
    {"High", 40},
}};
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
    bool fDot = false;
    *aDigits = 0;
    *aDivisor = 1;
    if (aText.empty() || aText.size() > kProfileRules_MaxDigits || !IsDigit(aText.front()) ||
        !IsDigit(aText.back())) {
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

/// A level by its name. False when it has none.
bool ReadLevelName(std::string_view aText, uint32* aLevel) {
    const auto* const level =
        std::find_if(kLevelNames.begin(), kLevelNames.end(),
                     [aText](const LevelName& aKnown) { return aKnown.mName == aText; });
    if (level == kLevelNames.end()) {
        return false;
    }
    *aLevel = level->mLevel;
    return true;
}

/// A number as a record would hold it. False when it is not one, or not one that the fact can be.
bool ReadNumber(std::string_view aText, const ProfileFact& aFact, uint32* aNumber) {
    if (aFact.mScale == kLevelScale && ReadLevelName(aText, aNumber)) {
        return true;
    }
    std::string_view text = aText;
    const std::uint64_t multiplier = TakeSuffix(&text) * aFact.mScale;
    std::uint64_t digits = 0;
    std::uint64_t divisor = 1;
    if (!ReadDigits(text, &digits, &divisor) || digits > UINT64_MAX / multiplier ||
        digits * multiplier % divisor != 0 || digits * multiplier / divisor > kProfileFact_Maximum) {
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
    *aRange = {0, kProfileFact_Maximum};
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
            aRange.mMost + std::min(kProfileFact_Maximum - aRange.mMost, above)};
}

/// A range as a record meets it.
bool ReadNumbers(std::string_view anItem, const ProfileFact& aFact, ProfileRange* aRange,
                 std::string* aProblem) {
    const bool fRead = ReadRange(anItem, aFact, aRange, aProblem);
    *aRange = Widened(*aRange, aFact);
    return fRead;
}

/// A side of a size, which may be any up to it. False, with why in *aProblem, when it is not one.
bool ReadSide(std::string_view aText, std::size_t aFact, bool afUpTo, std::string_view anItem,
              ProfileRange* aSide, std::string* aProblem) {
    const ProfileFact& fact = kProfileFacts[aFact];
    uint32 side = 0;
    if (!ReadNumber(aText, fact, &side)) {
        *aProblem = ProfileRule_Quoted(anItem) + " is not a size: these are 352x288, -352x288 and 352x288@25";
        return false;
    }
    if (side == 0) {
        *aProblem = "nothing meets size=" + ProfileRule_Quoted(anItem) + ": 0 is what is not known";
        return false;
    }
    *aSide = {afUpTo ? 1 : side, side};
    return true;
}

/// "352x288", "-352x288" for each side up to its number, and either with "@" and a rate or a range of rates.
bool ReadSize(std::string_view anItem, ProfileSize* aSize, std::string* aProblem) {
    const std::string_view::size_type at = anItem.find('@');
    std::string_view size = anItem.substr(0, at);
    const bool fUpTo = !size.empty() && size.front() == '-';
    size.remove_prefix(fUpTo ? 1 : 0);
    const std::string_view::size_type cross = size.find('x');
    const std::string_view height =
        cross == std::string_view::npos ? std::string_view() : size.substr(cross + 1);
    aSize->mFrameRate = kProfileRange_Any;
    if (!ReadSide(size.substr(0, cross), kProfileFact_Width, fUpTo, anItem, &aSize->mWidth, aProblem) ||
        !ReadSide(height, kProfileFact_Height, fUpTo, anItem, &aSize->mHeight, aProblem)) {
        return false;
    }
    if (at == std::string_view::npos) {
        return true;
    }
    return ReadNumbers(anItem.substr(at + 1), kProfileFacts[kProfileFact_FrameRate], &aSize->mFrameRate,
                       aProblem);
}

bool ReadWord(std::string_view anItem, const ProfileFact& aFact, std::string* aWord, std::string* aProblem) {
    const bool fKnown = aFact.mKind != ProfileFactKind::Container ||
                        std::find(kContainers.begin(), kContainers.end(), anItem) != kContainers.end();
    if (!fKnown) {
        *aProblem = "no container is named " + ProfileRule_Quoted(anItem);
    }
    *aWord = anItem;
    return fKnown;
}

bool ReadItem(std::string_view anItem, ProfileCondition* aCondition, std::string* aProblem) {
    const ProfileFact& fact = kProfileFacts[aCondition->mFact];
    if (anItem.empty()) {
        *aProblem = "an item of " + NameOf(fact) + " is empty";
        return false;
    }
    if (aCondition->mSizes.size() == kProfileRules_MaxSizes) {
        *aProblem = "more than " + std::to_string(kProfileRules_MaxSizes) + " sizes";
        return false;
    }
    switch (fact.mKind) {
    case ProfileFactKind::Number:
        return ReadNumbers(anItem, fact, &aCondition->mRanges.emplace_back(), aProblem);
    case ProfileFactKind::Size:
        return ReadSize(anItem, &aCondition->mSizes.emplace_back(), aProblem);
    default:
        return ReadWord(anItem, fact, &aCondition->mWords.emplace_back(), aProblem);
    }
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
