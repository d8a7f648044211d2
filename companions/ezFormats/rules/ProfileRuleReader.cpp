#include "ezFormats/rules/ProfileRuleReader.h"

#include "ezFormats/detail/FormatMimeTypes.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/ListItems.h"
#include "ezFormats/rules/ProfileNames.h"

#include <algorithm>
#include <string>
#include <utility>

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Takes a line off the front of a text: without its end.
std::string_view TakeLine(std::string_view* aText) {
    const std::string_view::size_type end = aText->find('\n');
    std::string_view line = aText->substr(0, end);
    aText->remove_prefix(end == std::string_view::npos ? aText->size() : end + 1);
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    return line;
}

/// Takes a word off the front of a line; empty where it ends or a comment begins.
std::string_view TakeWord(std::string_view* aLine) {
    aLine->remove_prefix(std::min(aLine->find_first_not_of(kBlanks), aLine->size()));
    if (!aLine->empty() && aLine->front() == '#') {
        *aLine = std::string_view();
    }
    const std::string_view word = aLine->substr(0, aLine->find_first_of(kBlanks));
    aLine->remove_prefix(word.size());
    return word;
}

/// One line that holds a rule, as far as it can be read.
class LineReader {
public:
    LineReader(std::size_t aLine, std::vector<ProfileRulesProblem>* aProblems)
        : mProblems(aProblems), mProblemsBefore(aProblems->size()) {
        mRule.mLine = aLine;
    }

    void ReadProfile(std::string_view aWord) {
        mRule.mProfile = ezCString(aWord);
        if (!ProfileNames_Has(aWord)) {
            AddProblem("DLNA knows no profile " + ProfileRule_Quoted(aWord));
        }
    }

    void ReadMimeTypes(std::string_view aWord) {
        if (aWord.empty()) {
            AddProblem("no MIME type stands behind the profile");
        }
        ListItems items(aWord);
        std::string_view type;
        while (!aWord.empty() && items.Next(&type)) {
            ReadMimeType(type);
        }
    }

    void ReadCondition(std::string_view aWord) {
        ProfileCondition condition;
        std::string problem;
        if (!ProfileCondition_Read(aWord, &condition, &problem)) {
            AddProblem(std::move(problem));
            return;
        }
        for (const ProfileCondition& other : mRule.mConditions) {
            if (other.mFact == condition.mFact) {
                AddProblem(std::string(kProfileFacts[condition.mFact].mName) + " is asked for twice");
                return;
            }
        }
        mRule.mConditions.push_back(std::move(condition));
    }

    /// Adds the rule, unless the line has a problem.
    void GiveTo(std::vector<ProfileRule>* aRules) {
        if (mProblems->size() == mProblemsBefore) {
            aRules->push_back(std::move(mRule));
        }
    }

private:
    void ReadMimeType(std::string_view aType) {
        const std::uint32_t bit = aType.find(';') == std::string_view::npos ? FormatMimeType_Bit(aType) : 0;
        if (bit == 0) {
            AddProblem("no parser here gives the MIME type " + ProfileRule_Quoted(aType));
        } else if ((mRule.mMimeTypes & bit) != 0) {
            AddProblem("the MIME type " + ProfileRule_Quoted(aType) + " stands twice");
        }
        mRule.mMimeTypes |= bit;
    }

    void AddProblem(std::string aText) { mProblems->push_back({mRule.mLine, std::move(aText)}); }

    ProfileRule mRule = {};
    std::vector<ProfileRulesProblem>* mProblems;
    std::size_t mProblemsBefore;
};

void ReadRule(std::string_view aProfile, std::string_view aRest, LineReader* aReader) {
    std::string_view rest = aRest;
    aReader->ReadProfile(aProfile);
    aReader->ReadMimeTypes(TakeWord(&rest));
    for (std::string_view word = TakeWord(&rest); !word.empty(); word = TakeWord(&rest)) {
        aReader->ReadCondition(word);
    }
}

/// The first rule before this one that wins whenever this one would by the given types; null when none does.
const ProfileRule* FindWinner(const std::vector<ProfileRule>& aRules, std::size_t aRule,
                              std::uint32_t aMimeTypes) {
    for (std::size_t i = 0; i < aRule; ++i) {
        if ((aRules[i].mMimeTypes & aMimeTypes) != 0 && ProfileRule_Implies(aRules[aRule], aRules[i])) {
            return &aRules[i];
        }
    }
    return nullptr;
}

} // namespace

std::vector<ProfileRule> ProfileRules_Read(std::string_view aText,
                                           std::vector<ProfileRulesProblem>* aProblems) {
    std::vector<ProfileRule> rules;
    if (aText.size() > kProfileRules_MaxTextSize) {
        aProblems->push_back(
            {0, "the table is larger than " + std::to_string(kProfileRules_MaxTextSize) + " bytes"});
        return rules;
    }
    std::string_view text = aText;
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        text.remove_prefix(kByteOrderMark.size());
    }
    std::size_t count = 0;
    for (std::size_t number = 1; !text.empty(); ++number) {
        std::string_view line = TakeLine(&text);
        const std::string_view profile = TakeWord(&line);
        if (profile.empty()) {
            continue;
        }
        if (++count > kProfileRules_MaxRules) {
            aProblems->push_back({number, "more than " + std::to_string(kProfileRules_MaxRules) + " rules"});
            break;
        }
        LineReader reader(number, aProblems);
        ReadRule(profile, line, &reader);
        reader.GiveTo(&rules);
    }
    return rules;
}

void ProfileRules_FindLosers(const std::vector<ProfileRule>& aRules,
                             std::vector<ProfileRulesProblem>* aProblems) {
    for (std::size_t i = 0; i < aRules.size(); ++i) {
        const ProfileRule* winner = nullptr;
        std::uint32_t left = aRules[i].mMimeTypes;
        // Every type of the rule may have a winner of its own.
        while (left != 0) {
            winner = FindWinner(aRules, i, left);
            if (winner == nullptr) {
                break;
            }
            left &= ~winner->mMimeTypes;
        }
        if (left == 0) {
            aProblems->push_back({aRules[i].mLine, "this rule can never win: the one of line " +
                                                       std::to_string(winner->mLine) +
                                                       " wins whenever it would"});
        }
    }
}
