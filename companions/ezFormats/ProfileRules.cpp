#include "ezFormats/ProfileRules.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/ListItems.h"
#include "ezFormats/rules/BuiltInProfileRules.h"
#include "ezFormats/rules/ProfileRule.h"
#include "ezFormats/rules/ProfileRuleOrder.h"
#include "ezFormats/rules/ProfileRuleReader.h"
#include "ezFormats/rules/ProfileRuleTable.h"

#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <utility>

namespace {

/// Entries as they are announced, each once.
class Entries {
public:
    void Add(std::string_view aMimeType, std::string_view aField) {
        std::string entry(aMimeType);
        entry.append(":").append(aField);
        if (std::find(mEntries.begin(), mEntries.end(), entry) == mEntries.end()) {
            mEntries.push_back(std::move(entry));
        }
    }

    ezCString Join() const {
        std::string text;
        for (const std::string& entry : mEntries) {
            text.append(text.empty() ? "" : ",").append(entry);
        }
        return ezCString(std::string_view(text));
    }

private:
    std::vector<std::string> mEntries;
};

bool ReadWhole(const ezCString& aPath, std::string* aText, std::string* aProblem) {
    ezFile file(aPath, ezFileOpenMode_Read);
    if (!file.Open()) {
        *aProblem = "the file cannot be opened";
        return false;
    }
    if (file.LengthAtOpen() > static_cast<ezFileOffset>(kProfileRules_MaxTextSize)) {
        *aProblem = "the table is larger than " + std::to_string(kProfileRules_MaxTextSize) + " bytes";
        return false;
    }
    aText->resize(static_cast<std::size_t>(file.LengthAtOpen()));
    const int count = file.Read(&(*aText)[0], aText->size());
    if (count < 0 || static_cast<std::size_t>(count) != aText->size()) {
        *aProblem = "the file cannot be read";
        return false;
    }
    return true;
}

/// Adds what media of a type are announced as by a rule.
void AddEntries(const ProfileRuleList& aList, const ProfileRule& aRule, std::string_view aMimeType,
                Entries& anEntries) {
    const std::size_t stated = ProfileRuleList_FindMimeType(aList, aMimeType);
    for (const ProfileMimeType& type : aRule.mMimeTypes) {
        // A type that others become may be that of other media, too, which the rule is not for.
        if (type.mStated == stated && !type.mfKept) {
            const bool fOwn = type.mAnnounced == type.mStated;
            anEntries.Add(fOwn ? aMimeType : aList.mMimeTypes[type.mAnnounced].View(),
                          ezDLNAField::TextOfProfile(aRule.mProfile.View()).View());
        }
    }
}

} // namespace

ProfileRules::ProfileRules(ProfileRuleList aList)
    : mList(std::make_unique<ProfileRuleList>(ProfileRules_InForce(std::move(aList)))),
      mTable(std::make_unique<ProfileRuleTable>(*mList)) {}

ProfileRules::~ProfileRules() = default;

std::shared_ptr<const ProfileRules> ProfileRules::BuiltIn() {
    static const std::shared_ptr<const ProfileRules> sRules = [] {
        // The check, which takes as long as the rest, is that of its tests.
        std::vector<ProfileRulesProblem> ignored;
        return std::shared_ptr<const ProfileRules>(
            new ProfileRules(ProfileRules_Read(BuiltInText(), &ignored)));
    }();
    return sRules;
}

std::string_view ProfileRules::BuiltInText() {
    return BuiltInProfileRules_Text();
}

std::shared_ptr<const ProfileRules> ProfileRules::FromText(std::string_view aText,
                                                           std::vector<ProfileRulesProblem>* aProblems) {
    std::vector<ProfileRulesProblem> problems;
    ProfileRuleList list = ProfileRules_Read(aText, &problems);
    ProfileRules_FindLosers(list.mRules, &problems);
    std::stable_sort(problems.begin(), problems.end(),
                     [](const ProfileRulesProblem& aLeft, const ProfileRulesProblem& aRight) {
                         return aLeft.mLine < aRight.mLine;
                     });
    const bool fSound = problems.empty();
    if (aProblems != nullptr) {
        *aProblems = std::move(problems);
    }
    return std::shared_ptr<const ProfileRules>(fSound ? new ProfileRules(std::move(list)) : nullptr);
}

std::shared_ptr<const ProfileRules> ProfileRules::FromFile(const ezCString& aPath,
                                                           std::vector<ProfileRulesProblem>* aProblems) {
    std::string text;
    std::string problem;
    if (ReadWhole(aPath, &text, &problem)) {
        return FromText(text, aProblems);
    }
    if (aProblems != nullptr) {
        aProblems->assign(1, {0, problem});
    }
    return nullptr;
}

ProfileMatch ProfileRules::FindMatch(const ezMediaInfo& anInfo) const {
    const std::size_t stated =
        ProfileRuleList_FindMimeType(*mList, anInfo.GetCString(kezInfo_MimeType, "").View());
    // Profiles of MPEG audio list the rates that frames state, and a measured one is not among them.
    if (anInfo.GetCString(kezInfo_PictureProcess, "").View() == kezMediaInfo_FreeFormat) {
        return {};
    }
    const ProfileRuleTable::Match match = mTable->FindMet(stated, anInfo);
    if (match.mRule == ProfileRuleTable::kNone) {
        return {};
    }
    const bool fOwn = match.mMimeType == stated;
    return {mList->mRules[match.mRule].mProfile, fOwn ? ezCString() : mList->mMimeTypes[match.mMimeType]};
}

ezCString ProfileRules::GetProfileInfo(std::string_view aMimeTypes) const {
    Entries entries;
    std::string_view type;
    for (const ProfileRule& rule : mList->mRules) {
        ListItems types(aMimeTypes);
        while (types.Next(&type)) {
            AddEntries(*mList, rule, type, entries);
        }
    }
    ListItems types(aMimeTypes);
    while (types.Next(&type)) {
        if (!type.empty()) {
            entries.Add(type, "*");
        }
    }
    return entries.Join();
}
