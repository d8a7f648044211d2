#pragma once

#include "ezFormats/rules/ProfileRuleFacts.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Numbers of a record, both ends in.
struct ProfileRange {
    uint32 mLeast;
    uint32 mMost;
};

/// What is in it whatever the record says, also nothing.
inline constexpr ProfileRange kProfileRange_Any = {0, kProfileFact_NotStated};

/// A size of pictures, or all sizes up to one, and how many of them may come in a time.
struct ProfileSize {
    ProfileRange mWidth;
    ProfileRange mHeight;
    ProfileRange mFrameRate; ///< kProfileRange_Any where it is not asked for
};

/// What one fact may be.
struct ProfileCondition {
    std::size_t mFact;                 ///< index in kProfileFacts
    std::vector<ProfileRange> mRanges; ///< of a number: in rising order, with numbers between them
    std::vector<std::string> mWords;   ///< of a word: sorted, each once
    std::vector<ProfileSize> mSizes;   ///< of a size: as they were read
};

/// A MIME type that a record may state, and the one that it is announced with under the rule's profile:
/// mostly the same. By their index in ProfileRuleList::mMimeTypes.
struct ProfileMimeType {
    std::uint16_t mStated;
    std::uint16_t mAnnounced;
    bool mfKept = false; ///< not of the table: a record that already states what others become keeps it
};

/// Where broadcasts keep the same profiles: what one region names, another may name otherwise.
enum class ProfileRegion : std::uint8_t { None, Europe, NorthAmerica, Japan, Korea };

/// One line of a table of rules, or one of its endings.
struct ProfileRule {
    std::size_t mLine;
    ezCString mProfile;
    std::vector<ProfileMimeType> mMimeTypes; ///< each stated one once
    std::vector<ProfileCondition> mConditions;
    ProfileRegion mRegion = ProfileRegion::None; ///< whose name it gives
    bool mfInferred = false; ///< its limits are drawn from other standards, or from the name alone
};

/// A table as it was read.
struct ProfileRuleList {
    std::vector<ezCString> mMimeTypes; ///< all that rules name, each once, in lower case
    std::vector<ProfileRule> mRules;
    ProfileRegion mRegion = ProfileRegion::None; ///< whose rules come first
    bool mfInferred = false;                     ///< inferred rules count
};

/// True when types name one that a record may state, by its index.
inline bool ProfileMimeTypes_Have(const std::vector<ProfileMimeType>& aTypes, std::size_t aStated) {
    return std::any_of(aTypes.begin(), aTypes.end(),
                       [aStated](ProfileMimeType aType) { return aType.mStated == aStated; });
}

/// The index of a MIME type, whose case and parameters do not matter, among those that rules name; their
/// number when none does.
std::size_t ProfileRuleList_FindMimeType(const ProfileRuleList& aList, std::string_view aMimeType);

/// True when whatever meets the one rule meets the other, as far as their conditions tell one by one.
bool ProfileRule_Implies(const ProfileRule& aRule, const ProfileRule& anOther);

/// Reads "fact=item,item". False, with why in *aProblem, when it is not one or nothing can meet it.
bool ProfileCondition_Read(std::string_view aText, ProfileCondition* aCondition, std::string* aProblem);

/// A piece of a table in quotes for a message: printable, and not longer than a message can hold.
std::string ProfileRule_Quoted(std::string_view aText);
