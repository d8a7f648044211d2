#include "ezFormats/rules/ProfileRuleReader.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/ListItems.h"
#include "ezFormats/rules/ProfileNames.h"

#include <algorithm>
#include <iterator>
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

/// The MIME types that rules name, by number.
class MimeTypes {
public:
    MimeTypes(ProfileMimeTypeCheck aCheck, std::vector<ezCString>* aNames) : mCheck(aCheck), mNames(aNames) {}

    bool IsGiven(const ezCString& aName) const { return mCheck(aName.View()); }

    std::uint16_t NumberOf(const ezCString& aName) {
        const auto found = std::find(mNames->begin(), mNames->end(), aName);
        const auto number = static_cast<std::uint16_t>(found - mNames->begin());
        if (found == mNames->end()) {
            mNames->push_back(aName);
        }
        return number;
    }

private:
    ProfileMimeTypeCheck mCheck;
    std::vector<ezCString>* mNames;
};

bool Names(const std::vector<ProfileMimeType>& aTypes, std::uint16_t aStated) {
    return std::any_of(aTypes.begin(), aTypes.end(),
                       [aStated](ProfileMimeType aType) { return aType.mStated == aStated; });
}

/// One line that holds a rule, as far as it can be read.
class LineReader {
public:
    LineReader(std::size_t aLine, MimeTypes& aTypes, std::vector<ProfileRulesProblem>* aProblems)
        : mTypes(aTypes), mProblems(aProblems), mProblemsBefore(aProblems->size()) {
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
            AddProblem("no MIME type stands after the profile");
        }
        ListItems items(aWord);
        std::string_view item;
        while (!aWord.empty() && items.Next(&item)) {
            ReadMimeType(item);
        }
        AddAnnounced();
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
    /// "stated", or "stated>announced".
    void ReadMimeType(std::string_view anItem) {
        const std::string_view::size_type arrow = anItem.find('>');
        const std::string_view stated = anItem.substr(0, arrow);
        const std::string_view announced =
            arrow == std::string_view::npos ? stated : anItem.substr(arrow + 1);
        std::uint16_t from = 0;
        std::uint16_t to = 0;
        if (!ReadName(stated, &from) || (arrow != std::string_view::npos && !ReadName(announced, &to))) {
            return;
        }
        to = arrow == std::string_view::npos ? from : to;
        if (Names(mRule.mMimeTypes, from) || (arrow != std::string_view::npos && to == from)) {
            AddProblem("the MIME type " + ProfileRule_Quoted(stated) + " stands twice");
            return;
        }
        mRule.mMimeTypes.push_back({from, to});
    }

    bool ReadName(std::string_view aName, std::uint16_t* aNumber) {
        const ezCString name = ezCString(aName).Lower();
        if (!mTypes.IsGiven(name)) {
            AddProblem("no parser here gives the MIME type " + ProfileRule_Quoted(aName));
            return false;
        }
        *aNumber = mTypes.NumberOf(name);
        return true;
    }

    /// A record that already states what it is announced as keeps its profile.
    void AddAnnounced() {
        const std::vector<ProfileMimeType> read = mRule.mMimeTypes;
        for (const ProfileMimeType type : read) {
            if (!Names(mRule.mMimeTypes, type.mAnnounced)) {
                mRule.mMimeTypes.push_back({type.mAnnounced, type.mAnnounced});
            }
        }
    }

    void AddProblem(std::string aText) { mProblems->push_back({mRule.mLine, std::move(aText)}); }

    ProfileRule mRule = {};
    MimeTypes& mTypes;
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

bool Share(const std::vector<ProfileMimeType>& aTypes, const std::vector<ProfileMimeType>& anOthers) {
    return std::any_of(aTypes.begin(), aTypes.end(),
                       [&anOthers](ProfileMimeType aType) { return Names(anOthers, aType.mStated); });
}

/// The first rule before this one that wins whenever this one would by one of the given types; null when
/// there is none.
const ProfileRule* FindWinner(const std::vector<ProfileRule>& aRules, std::size_t aRule,
                              const std::vector<ProfileMimeType>& aTypes) {
    for (std::size_t i = 0; i < aRule; ++i) {
        if (Share(aTypes, aRules[i].mMimeTypes) && ProfileRule_Implies(aRules[aRule], aRules[i])) {
            return &aRules[i];
        }
    }
    return nullptr;
}

/// What is left of types without those of a rule.
std::vector<ProfileMimeType> Without(const std::vector<ProfileMimeType>& aTypes, const ProfileRule& aRule) {
    std::vector<ProfileMimeType> left;
    std::copy_if(aTypes.begin(), aTypes.end(), std::back_inserter(left),
                 [&aRule](ProfileMimeType aType) { return !Names(aRule.mMimeTypes, aType.mStated); });
    return left;
}

} // namespace

ProfileRuleList ProfileRules_Read(std::string_view aText, std::vector<ProfileRulesProblem>* aProblems,
                                  ProfileMimeTypeCheck aCheck) {
    ProfileRuleList list;
    if (aText.size() > kProfileRules_MaxTextSize) {
        aProblems->push_back(
            {0, "the table is larger than " + std::to_string(kProfileRules_MaxTextSize) + " bytes"});
        return list;
    }
    std::string_view text = aText;
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        text.remove_prefix(kByteOrderMark.size());
    }
    MimeTypes types(aCheck, &list.mMimeTypes);
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
        LineReader reader(number, types, aProblems);
        ReadRule(profile, line, &reader);
        reader.GiveTo(&list.mRules);
    }
    return list;
}

void ProfileRules_FindLosers(const std::vector<ProfileRule>& aRules,
                             std::vector<ProfileRulesProblem>* aProblems) {
    for (std::size_t i = 0; i < aRules.size(); ++i) {
        const ProfileRule* winner = nullptr;
        std::vector<ProfileMimeType> left = aRules[i].mMimeTypes;
        // Every type of the rule may have a winner of its own.
        while (!left.empty()) {
            winner = FindWinner(aRules, i, left);
            if (winner == nullptr) {
                break;
            }
            left = Without(left, *winner);
        }
        if (left.empty()) {
            aProblems->push_back({aRules[i].mLine, "this rule can never win: the one of line " +
                                                       std::to_string(winner->mLine) +
                                                       " wins whenever it would"});
        }
    }
}
