#include "ezFormats/rules/ProfileRuleReader.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/ListItems.h"
#include "ezFormats/rules/ProfileNames.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Of a line that says whether inferred rules count, and of each of these.
constexpr std::string_view kInferred = "inferred";
constexpr std::string_view kRegionMark = "region=";

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

    bool IsStated(const ezCString& aName) const { return mCheck(aName.View()); }

    /// A profile may also ask for another name of what a parser states.
    bool IsAnnounced(const ezCString& aName) const {
        return IsStated(aName) || mCheck(FormatMimeType_OwnName(aName.View()));
    }

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

/// A word that stands for a value.
template <typename Value>
struct NamedValue {
    std::string_view mName;
    Value mValue;
};

constexpr std::array<NamedValue<ProfileRegion>, 4> kRegions = {{
    {"EU", ProfileRegion::Europe},
    {"NA", ProfileRegion::NorthAmerica},
    {"JP", ProfileRegion::Japan},
    {"KO", ProfileRegion::Korea},
}};
constexpr std::array<NamedValue<bool>, 2> kSwitches = {{{"on", true}, {"off", false}}};

template <typename Value, std::size_t Count>
bool ReadNamed(std::string_view aWord, const std::array<NamedValue<Value>, Count>& aKnown, Value* aValue) {
    for (const NamedValue<Value>& known : aKnown) {
        if (known.mName == aWord) {
            *aValue = known.mValue;
            return true;
        }
    }
    return false;
}

std::string NoRegion(std::string_view aWord) {
    return ProfileRule_Quoted(aWord) + " is no region: these are EU, NA, JP and KO";
}

/// True for the ending of a profile's name, or several of them.
bool IsEnding(std::string_view aWord) {
    return !aWord.empty() && aWord.front() == '+';
}

std::vector<ProfileRule>::const_iterator FindEnding(const std::vector<ProfileRule>& anEndings,
                                                    std::string_view aName) {
    return std::find_if(anEndings.begin(), anEndings.end(),
                        [aName](const ProfileRule& anEnding) { return anEnding.mProfile.View() == aName; });
}

/// One line that holds a rule or an ending, as far as it can be read.
class LineReader {
public:
    LineReader(std::size_t aLine, MimeTypes& aTypes, std::vector<ProfileRulesProblem>* aProblems)
        : mTypes(aTypes), mProblems(aProblems), mProblemsBefore(aProblems->size()) {
        mRule.mLine = aLine;
    }

    void ReadRule(std::string_view aProfile, std::string_view aRest,
                  const std::vector<ProfileRule>& anEndings) {
        std::string_view rest = aRest;
        const std::string_view types = TakeWord(&rest);
        if (IsEnding(types)) {
            ReadEndings(aProfile, types, anEndings);
        } else {
            mProfiles.push_back({CheckedName(aProfile), nullptr});
            ReadMimeTypes(types);
        }
        for (std::string_view word = TakeWord(&rest); !word.empty(); word = TakeWord(&rest)) {
            if (!ReadMark(word)) {
                ReadCondition(word);
            }
        }
    }

    void ReadEnding(std::string_view aRest) {
        std::string_view rest = aRest;
        const std::string_view name = TakeWord(&rest);
        if (!IsEnding(name)) {
            AddProblem(ProfileRule_Quoted(name) + " is no ending: these begin with +");
        }
        mProfiles.push_back({ezCString(name), nullptr});
        ReadMimeTypes(TakeWord(&rest));
        for (std::string_view word = TakeWord(&rest); !word.empty(); word = TakeWord(&rest)) {
            ReadCondition(word);
        }
    }

    /// Adds a rule for each ending, or one, unless the line has a problem.
    void GiveTo(std::vector<ProfileRule>* aRules) {
        if (mProblems->size() != mProblemsBefore) {
            return;
        }
        for (const Profile& profile : mProfiles) {
            ProfileRule& rule = aRules->emplace_back(mRule);
            rule.mProfile = profile.mName;
            if (profile.mEnding != nullptr) {
                // Last: rules with all endings that begin alike are passed over together.
                const std::vector<ProfileCondition>& own = profile.mEnding->mConditions;
                rule.mMimeTypes = profile.mEnding->mMimeTypes;
                rule.mConditions.insert(rule.mConditions.end(), own.begin(), own.end());
            }
        }
    }

private:
    /// What the line is a rule of.
    struct Profile {
        ezCString mName;
        const ProfileRule* mEnding; ///< null where it names its MIME types
    };

    ezCString CheckedName(std::string_view aName) {
        if (!ProfileNames_Has(aName)) {
            AddProblem("DLNA knows no profile " + ProfileRule_Quoted(aName));
        }
        return ezCString(aName);
    }

    /// "+_ISO,+,+_T"
    void ReadEndings(std::string_view aStem, std::string_view aWord,
                     const std::vector<ProfileRule>& anEndings) {
        ListItems items(aWord);
        std::string_view item;
        while (items.Next(&item)) {
            const auto ending = FindEnding(anEndings, item);
            if (ending == anEndings.end()) {
                AddProblem("no ending " + ProfileRule_Quoted(item) + " stands above");
            } else if (HasEnding(*ending)) {
                AddProblem("the ending " + ProfileRule_Quoted(item) + " stands twice");
            } else {
                mProfiles.push_back({CheckedName(std::string(aStem).append(item.substr(1))), &*ending});
            }
        }
    }

    bool HasEnding(const ProfileRule& anEnding) const {
        return std::any_of(mProfiles.begin(), mProfiles.end(),
                           [&anEnding](const Profile& aProfile) { return aProfile.mEnding == &anEnding; });
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

    /// "region=KO" and "inferred" say of a rule when it counts.
    bool ReadMark(std::string_view aWord) {
        const bool fRegion = aWord.substr(0, kRegionMark.size()) == kRegionMark;
        if (!fRegion && aWord != kInferred) {
            return false;
        }
        if (fRegion ? mRule.mRegion != ProfileRegion::None : mRule.mfInferred) {
            AddProblem(ProfileRule_Quoted(aWord) + " stands twice");
        }
        const std::string_view region = fRegion ? aWord.substr(kRegionMark.size()) : std::string_view();
        if (fRegion && !ReadNamed(region, kRegions, &mRule.mRegion)) {
            AddProblem(NoRegion(region));
        }
        mRule.mfInferred = mRule.mfInferred || !fRegion;
        return true;
    }

    void ReadCondition(std::string_view aWord) {
        ProfileCondition condition;
        std::string problem;
        if (!ProfileCondition_Read(aWord, &condition, &problem)) {
            AddProblem(std::move(problem));
            return;
        }
        if (Asks(mRule, condition.mFact) || EndingAsks(condition.mFact)) {
            AddProblem(std::string(kProfileFacts[condition.mFact].mName) + " is asked for twice");
            return;
        }
        mRule.mConditions.push_back(std::move(condition));
    }

    static bool Asks(const ProfileRule& aRule, std::size_t aFact) {
        return std::any_of(aRule.mConditions.begin(), aRule.mConditions.end(),
                           [aFact](const ProfileCondition& aCondition) { return aCondition.mFact == aFact; });
    }

    bool EndingAsks(std::size_t aFact) const {
        return std::any_of(mProfiles.begin(), mProfiles.end(), [aFact](const Profile& aProfile) {
            return aProfile.mEnding != nullptr && Asks(*aProfile.mEnding, aFact);
        });
    }

    /// "stated", or "stated>announced".
    void ReadMimeType(std::string_view anItem) {
        const std::string_view::size_type arrow = anItem.find('>');
        const std::string_view stated = anItem.substr(0, arrow);
        const std::string_view announced =
            arrow == std::string_view::npos ? stated : anItem.substr(arrow + 1);
        std::uint16_t from = 0;
        std::uint16_t to = 0;
        if (!ReadName(stated, &MimeTypes::IsStated, &from) ||
            (arrow != std::string_view::npos && !ReadName(announced, &MimeTypes::IsAnnounced, &to))) {
            return;
        }
        to = arrow == std::string_view::npos ? from : to;
        if (ProfileMimeTypes_Have(mRule.mMimeTypes, from) ||
            (arrow != std::string_view::npos && to == from)) {
            AddProblem("the MIME type " + ProfileRule_Quoted(stated) + " stands twice");
            return;
        }
        mRule.mMimeTypes.push_back({from, to});
    }

    bool ReadName(std::string_view aName, bool (MimeTypes::*aCheck)(const ezCString&) const,
                  std::uint16_t* aNumber) {
        const ezCString name = ezCString(aName).Lower();
        if (!(mTypes.*aCheck)(name)) {
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
            if (!ProfileMimeTypes_Have(mRule.mMimeTypes, type.mAnnounced)) {
                mRule.mMimeTypes.push_back({type.mAnnounced, type.mAnnounced, true});
            }
        }
    }

    void AddProblem(std::string aText) { mProblems->push_back({mRule.mLine, std::move(aText)}); }

    ProfileRule mRule = {};
    std::vector<Profile> mProfiles;
    MimeTypes& mTypes;
    std::vector<ProfileRulesProblem>* mProblems;
    std::size_t mProblemsBefore;
};

/// The lines of a table.
class TableReader {
public:
    TableReader(ProfileMimeTypeCheck aCheck, std::vector<ProfileRulesProblem>* aProblems)
        : mTypes(aCheck, &mList.mMimeTypes), mProblems(aProblems) {
        mEndings.reserve(kProfileRules_MaxEndings); // rules point to them
    }

    /// False after the last rule that a table can have.
    bool ReadLine(std::size_t aNumber, std::string_view aLine) {
        std::string_view rest = aLine;
        const std::string_view first = TakeWord(&rest);
        if (first.empty()) {
            return true;
        }
        if (first == "region" || first == kInferred) {
            ReadPreference(aNumber, first, rest);
        } else if (first == "ending") {
            ReadEnding(aNumber, rest);
        } else {
            return ReadRule(aNumber, first, rest);
        }
        return true;
    }

    ProfileRuleList Take() { return std::move(mList); }

private:
    /// "region EU", "inferred on"
    void ReadPreference(std::size_t aNumber, std::string_view aName, std::string_view aRest) {
        std::string_view rest = aRest;
        const std::string_view value = TakeWord(&rest);
        const bool fRegion = aName != kInferred;
        bool& fStated = fRegion ? mfRegionStated : mfInferredStated;
        if (fStated) {
            AddProblem(aNumber, ProfileRule_Quoted(aName) + " stands twice");
        }
        fStated = true;
        if (fRegion && !ReadNamed(value, kRegions, &mList.mRegion)) {
            AddProblem(aNumber, NoRegion(value));
        }
        if (!fRegion && !ReadNamed(value, kSwitches, &mList.mfInferred)) {
            AddProblem(aNumber, ProfileRule_Quoted(value) + " is neither on nor off");
        }
        const std::string_view more = TakeWord(&rest);
        if (!more.empty()) {
            AddProblem(aNumber, "nothing may stand after " + ProfileRule_Quoted(value));
        }
    }

    void ReadEnding(std::size_t aNumber, std::string_view aRest) {
        std::vector<ProfileRule> read;
        LineReader reader(aNumber, mTypes, mProblems);
        reader.ReadEnding(aRest);
        reader.GiveTo(&read);
        if (read.empty()) {
            return;
        }
        if (FindEnding(mEndings, read.front().mProfile.View()) != mEndings.end()) {
            AddProblem(aNumber,
                       "the ending " + ProfileRule_Quoted(read.front().mProfile.View()) + " stands twice");
        } else if (mEndings.size() == kProfileRules_MaxEndings) {
            AddProblem(aNumber, "more than " + std::to_string(kProfileRules_MaxEndings) + " endings");
        } else {
            mEndings.push_back(std::move(read.front()));
        }
    }

    bool ReadRule(std::size_t aNumber, std::string_view aProfile, std::string_view aRest) {
        const std::size_t before = mList.mRules.size();
        if (mCount < kProfileRules_MaxRules) {
            LineReader reader(aNumber, mTypes, mProblems);
            reader.ReadRule(aProfile, aRest, mEndings);
            reader.GiveTo(&mList.mRules);
        }
        // One that cannot be read counts, too.
        mCount += std::max<std::size_t>(mList.mRules.size() - before, 1);
        if (mCount > kProfileRules_MaxRules) {
            AddProblem(aNumber, "more than " + std::to_string(kProfileRules_MaxRules) + " rules");
        }
        return mCount <= kProfileRules_MaxRules;
    }

    void AddProblem(std::size_t aNumber, std::string aText) {
        mProblems->push_back({aNumber, std::move(aText)});
    }

    ProfileRuleList mList;
    MimeTypes mTypes;
    std::vector<ProfileRulesProblem>* mProblems;
    std::vector<ProfileRule> mEndings;
    std::size_t mCount = 0; ///< of rules
    bool mfRegionStated = false;
    bool mfInferredStated = false;
};

} // namespace

ProfileRuleList ProfileRules_Read(std::string_view aText, std::vector<ProfileRulesProblem>* aProblems,
                                  ProfileMimeTypeCheck aCheck) {
    if (aText.size() > kProfileRules_MaxTextSize) {
        aProblems->push_back(
            {0, "the table is larger than " + std::to_string(kProfileRules_MaxTextSize) + " bytes"});
        return {};
    }
    std::string_view text = aText;
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) {
        text.remove_prefix(kByteOrderMark.size());
    }
    TableReader reader(aCheck, aProblems);
    for (std::size_t number = 1; !text.empty(); ++number) {
        if (!reader.ReadLine(number, TakeLine(&text))) {
            break;
        }
    }
    return reader.Take();
}
