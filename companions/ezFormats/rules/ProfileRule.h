#pragma once

#include "ezFormats/rules/ProfileRuleFacts.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

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

/// What one fact may be.
struct ProfileCondition {
    std::size_t mFact;                 ///< index in kProfileFacts
    std::vector<ProfileRange> mRanges; ///< of a number: in rising order, with numbers between them
    std::vector<std::string> mWords;   ///< of a word: sorted, each once
};

/// One line of a table of rules.
struct ProfileRule {
    std::size_t mLine;
    ezCString mProfile;
    std::uint32_t mMimeTypes; ///< FormatMimeType_Bit of each
    std::vector<ProfileCondition> mConditions;
};

bool ProfileCondition_IsMet(const ProfileCondition& aCondition, const ProfileFactValues& aValues);
/// True when whatever meets the one meets the other, which asks for the same fact.
bool ProfileCondition_Implies(const ProfileCondition& aCondition, const ProfileCondition& anOther);

bool ProfileRule_IsMet(const ProfileRule& aRule, const ProfileFactValues& aValues);
/// The same for all conditions of two rules.
bool ProfileRule_Implies(const ProfileRule& aRule, const ProfileRule& anOther);

/// Reads "fact=item,item". False, with why in *aProblem, when it is none or nothing can meet it.
bool ProfileCondition_Read(std::string_view aText, ProfileCondition* aCondition, std::string* aProblem);

/// A piece of a table in quotes for a message: printable, and not longer than a message can hold.
std::string ProfileRule_Quoted(std::string_view aText);
