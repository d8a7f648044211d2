#pragma once

#include "ezFormats/rules/ProfileRule.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Rules as they are asked for every media: words are numbers, and what is walked lies in three blocks. A
/// rule is met here when ProfileRule_IsMet has it so.
class ProfileRuleTable {
public:
    explicit ProfileRuleTable(const std::vector<ProfileRule>& aRules);

    /// The index of the first rule for a MIME type, by its bit, that is met; the number of rules when none
    /// is.
    std::size_t FindMet(std::uint32_t aMimeType, const ProfileFactValues& aValues) const;

private:
    struct Rule {
        std::uint32_t mMimeTypes;
        std::uint32_t mChecksEnd; ///< they begin where those of the rule before it end
    };
    /// A fact, and ranges as the rule has checks.
    struct Check {
        std::uint32_t mFact;
        std::uint32_t mRangesEnd;
    };
    class Facts;

    void AddCheck(const ProfileCondition& aCondition);
    uint32 NumberOf(std::string_view aWord) const;
    bool AreMet(std::size_t aCheck, std::size_t anEnd, Facts& aFacts) const;

    std::vector<std::string> mWords; ///< all that rules ask for, sorted; the index is a word's number
    std::vector<Rule> mRules;
    std::vector<Check> mChecks;
    std::vector<ProfileRange> mRanges;
};
