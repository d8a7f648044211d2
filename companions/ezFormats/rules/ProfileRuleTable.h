#pragma once

#include "ezFormats/rules/ProfileRule.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Rules as they are asked for every media: words are numbers, what is walked lies in few blocks, and of
/// rules that begin with the same conditions each is looked at once. The first rule of a MIME type all of
/// whose conditions a record meets is found, in the order of the list.
class ProfileRuleTable {
public:
    explicit ProfileRuleTable(const ProfileRuleList& aList);

    struct Match {
        std::size_t mRule;     ///< kNone when none is met
        std::size_t mMimeType; ///< that is announced, by its index in the list
    };
    static constexpr std::size_t kNone = SIZE_MAX;

    /// @param aMimeType  an index in the list, or beyond: then no rule is met
    Match FindMet(std::size_t aMimeType, const ezMediaInfo& anInfo) const;

private:
    /// A rule for one MIME type.
    struct Step {
        std::uint32_t mRule;
        std::uint32_t mMimeType;
        std::uint32_t mChecks; ///< the first; they end where those of the next step begin
        std::uint32_t mShared; ///< so many checks are those that the step before this one begins with
    };
    /// A condition of a step.
    struct Check {
        std::uint32_t mFact;
        std::uint32_t mRanges; ///< of a size three each: width, height, rate
        std::uint32_t mRangesEnd;
        std::uint32_t mNext; ///< the next step that does not begin with this step's checks up to this one
    };
    class Facts;
    static constexpr std::ptrdiff_t kRangesOfSize = 3;

    void CollectWords(const ProfileRuleList& aList);
    void AddSteps(const ProfileRuleList& aList, std::size_t aMimeType);
    void AddCheck(const ProfileCondition& aCondition);
    void LinkSteps(std::size_t aFirst);
    uint32 NumberOf(std::string_view aWord) const;
    bool IsMet(const Check& aCheck, Facts& aFacts) const;

    std::vector<std::string> mWords;   ///< all that rules ask for, sorted; the index is a word's number
    std::vector<std::uint32_t> mTypes; ///< the first step of each; its steps end where the next one's begin
    std::vector<Step> mSteps;
    std::vector<Check> mChecks;
    std::vector<ProfileRange> mRanges;
};
