#include "companions/ezFormats/rules/ProfileKit.h"
#include "companions/ezFormats/rules/ProfileOracle.h"

#include "ezFormats/FormatParsers.h"
#include "ezFormats/detail/FormatMimeTypes.h"
#include "ezFormats/detail/Formats.h"
#include "ezFormats/rules/ProfileRuleOrder.h"
#include "ezFormats/rules/ProfileRuleReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

// The table that the library brings: its rules one by one, made to win and to lose, and media as they are
// met.

namespace {

/// Values of facts by their index: texts as a record holds them.
using Facts = std::map<std::size_t, std::string>;

ProfileRuleList ReadList(const std::string& aText) {
    std::vector<ProfileRulesProblem> problems;
    return ProfileRules_Read(aText, &problems);
}

/// All of its rules, also those that do not count by themselves.
const ProfileRuleList& BuiltInList() {
    static const ProfileRuleList sList = ReadList(std::string(ProfileRules::BuiltInText()));
    return sList;
}

/// The table with preferences of an operator.
struct Setting {
    explicit Setting(const std::string& aText)
        : mList(ProfileRules_InForce(ReadList(aText))), mRules(ProfileRules::FromText(aText, nullptr)) {}

    ProfileRuleList mList;
    std::shared_ptr<const ProfileRules> mRules;
};

/// The table where a rule counts: its region is preferred, and inferred rules count where it is one.
const Setting& SettingOf(const ProfileRule& aRule) {
    static std::map<std::pair<ProfileRegion, bool>, Setting> sSettings;
    const std::pair key(aRule.mRegion, aRule.mfInferred);
    const auto found = sSettings.find(key);
    if (found != sSettings.end()) {
        return found->second;
    }
    // After the rules: their lines keep their numbers.
    const std::map<ProfileRegion, std::string> regions = {{ProfileRegion::None, ""},
                                                          {ProfileRegion::Europe, "region EU\n"},
                                                          {ProfileRegion::NorthAmerica, "region NA\n"},
                                                          {ProfileRegion::Japan, "region JP\n"},
                                                          {ProfileRegion::Korea, "region KO\n"}};
    std::string text(ProfileRules::BuiltInText());
    if (aRule.mfInferred) {
        text.replace(text.find("\ninferred off"), 13, "\ninferred on");
    }
    return sSettings.try_emplace(key, text + regions.at(aRule.mRegion)).first->second;
}

bool IsSame(const ProfileRule* aRule, const ProfileRule& anOther) {
    return aRule != nullptr && aRule->mLine == anOther.mLine && aRule->mProfile == anOther.mProfile;
}

const std::vector<ProfileRule>& BuiltInRules() {
    return BuiltInList().mRules;
}

std::string FirstTypeOf(const ProfileRule& aRule) {
    return Str(BuiltInList().mMimeTypes[aRule.mMimeTypes.front().mStated]);
}

/// The numbers of a size, as one text; without a rate where it asks for none.
std::string TextOf(uint32 aWidth, uint32 aHeight, uint32 aFrameRate) {
    const bool fRate = aFrameRate != 0 && aFrameRate != kProfileFact_NotStated;
    return std::to_string(aWidth) + " " + std::to_string(aHeight) +
           (fRate ? " " + std::to_string(aFrameRate) : "");
}

void SetFact(std::size_t aFact, const std::string& aValue, ezMediaInfo* anInfo) {
    if (aFact != kProfileFact_Size) {
        anInfo->Set(kProfileFacts[aFact].mKeys[0], aValue.c_str(), true);
        return;
    }
    std::istringstream numbers(aValue);
    for (const char* const key : {kezInfo_PictureWidth, kezInfo_PictureHeight, kezInfo_FrameRate}) {
        std::string number;
        if (numbers >> number) {
            anInfo->Set(key, number.c_str(), true);
        }
    }
}

std::unique_ptr<ezMediaInfo> RecordWith(const ProfileRule& aRule, const Facts& aFacts) {
    std::unique_ptr<ezMediaInfo> info = RecordOf("mt=" + FirstTypeOf(aRule));
    for (const auto& [fact, value] : aFacts) {
        SetFact(fact, value, info.get());
    }
    return info;
}

/// What meets a condition: its words, the ends of its ranges.
std::vector<std::string> MeetingValues(const ProfileCondition& aCondition) {
    std::vector<std::string> values = aCondition.mWords;
    for (const ProfileRange& range : aCondition.mRanges) {
        values.push_back(std::to_string(range.mMost));
        values.push_back(std::to_string(range.mLeast));
    }
    for (const ProfileSize& size : aCondition.mSizes) {
        values.push_back(TextOf(size.mWidth.mMost, size.mHeight.mMost, size.mFrameRate.mMost));
        values.push_back(TextOf(size.mWidth.mLeast, size.mHeight.mLeast, size.mFrameRate.mLeast));
    }
    return values;
}

/// What lies just outside a condition.
std::vector<std::string> MissingValues(const ProfileCondition& aCondition) {
    std::vector<std::string> values = {""};
    for (const std::string& word : aCondition.mWords) {
        values.push_back(word + "x");
        for (const std::string& other :
             {word.substr(1), Str(ezCString(word.c_str()).Lower()), Str(ezCString(word.c_str()).Upper())}) {
            if (!std::binary_search(aCondition.mWords.begin(), aCondition.mWords.end(), other)) {
                values.push_back(other);
            }
        }
    }
    for (const ProfileRange& range : aCondition.mRanges) {
        values.push_back(std::to_string(range.mMost + 1));
        values.emplace_back("4294967295");
        if (range.mLeast > 0) {
            values.push_back(std::to_string(range.mLeast - 1));
        }
    }
    for (const ProfileSize& size : aCondition.mSizes) {
        const uint32 width = size.mWidth.mMost;
        const uint32 height = size.mHeight.mMost;
        const uint32 rate = size.mFrameRate.mMost;
        for (const auto& [wide, high] :
             {std::pair(width + 1, height), {width, height + 1}, {0, height}, {width, 0}}) {
            values.push_back(TextOf(wide, high, rate));
        }
        if (rate != kProfileFact_NotStated) {
            values.push_back(TextOf(width, height, rate + 1));
            values.push_back(TextOf(width, height, size.mFrameRate.mLeast - 1));
        }
    }
    return values;
}

/// The rule that gives a record its name where a rule counts; null when none.
const ProfileRule* WinnerOf(const ProfileRule& aRule, const ezMediaInfo& anInfo) {
    return FirstMet(SettingOf(aRule).mList, anInfo);
}

std::string ProfileWhereItCounts(const ProfileRule& aRule, const ezMediaInfo& anInfo) {
    return Str(SettingOf(aRule).mRules->FindProfile(anInfo));
}

/// Changes one fact so that the other rule, which comes before, is not met and this one still is.
bool Evade(const ProfileRule& aRule, const ProfileRule& anOther, Facts* aFacts) {
    for (const ProfileCondition& condition : aRule.mConditions) {
        for (const std::string& value : MeetingValues(condition)) {
            Facts facts = *aFacts;
            facts[condition.mFact] = value;
            if (!IsRuleMet(anOther, *RecordWith(aRule, facts))) {
                *aFacts = facts;
                return true;
            }
        }
    }
    return false;
}

/// Facts by which a rule wins.
Facts WinningFacts(const ProfileRule& aRule) {
    Facts facts;
    for (const ProfileCondition& condition : aRule.mConditions) {
        facts[condition.mFact] = MeetingValues(condition).front();
    }
    for (std::size_t i = 0; i < BuiltInRules().size(); ++i) {
        const ProfileRule* const winner = WinnerOf(aRule, *RecordWith(aRule, facts));
        if (winner == nullptr || IsSame(winner, aRule) || !Evade(aRule, *winner, &facts)) {
            break;
        }
    }
    return facts;
}

/// True when a rule asks for a fact, or for one word of it; by sizes it asks for both their sides, and for a
/// rate where each has one.
bool Asks(const ProfileRule& aRule, const std::string& aFact) {
    return std::any_of(
        aRule.mConditions.begin(), aRule.mConditions.end(), [&](const ProfileCondition& aCondition) {
            const bool fRated =
                std::all_of(aCondition.mSizes.begin(), aCondition.mSizes.end(), [](const ProfileSize& aSize) {
                    return aSize.mFrameRate.mMost != kProfileFact_NotStated;
                });
            const std::string_view name = kProfileFacts[aCondition.mFact].mName;
            return name == aFact ||
                   (aCondition.mWords.size() == 1 &&
                    std::string(name) + "=" + aCondition.mWords[0] == aFact) ||
                   (aCondition.mFact == kProfileFact_Size &&
                    (aFact == "width" || aFact == "height" || (aFact == "frame-rate" && fRated)));
        });
}

std::string Where(const ProfileRule& aRule) {
    return Str(aRule.mProfile) + " of line " + std::to_string(aRule.mLine);
}

} // namespace

TEST(BuiltInProfileRules, HaveNoProblem) {
    EXPECT_EQ(ProblemsOf(std::string(ProfileRules::BuiltInText())), std::vector<std::string>());
    EXPECT_GT(BuiltInRules().size(), 300U);
    for (const ProfileRule& rule : BuiltInRules()) {
        EXPECT_NE(SettingOf(rule).mRules, nullptr) << Where(rule);
    }
    ASSERT_NE(ProfileRules::BuiltIn(), nullptr);
    const std::shared_ptr<const ProfileRules> read =
        ProfileRules::FromText(ProfileRules::BuiltInText(), nullptr);
    for (const std::string& type : StatedMimeTypes()) {
        EXPECT_EQ(Str(ProfileRules::BuiltIn()->GetProfileInfo(type)), Str(read->GetProfileInfo(type)));
    }
}

TEST(BuiltInProfileRules, EachWinsForARecordThatKeepsIt) {
    for (const ProfileRule& rule : BuiltInRules()) {
        const std::unique_ptr<ezMediaInfo> info = RecordWith(rule, WinningFacts(rule));
        EXPECT_TRUE(IsSame(WinnerOf(rule, *info), rule)) << Where(rule);
        EXPECT_EQ(ProfileWhereItCounts(rule, *info), Str(rule.mProfile)) << Where(rule);
    }
}

TEST(BuiltInProfileRules, NoneGivesItsNameJustOutsideOfAnyOfItsConditions) {
    std::size_t count = 0;
    for (const ProfileRule& rule : BuiltInRules()) {
        const Facts facts = WinningFacts(rule);
        for (const ProfileCondition& condition : rule.mConditions) {
            for (const std::string& value : MissingValues(condition)) {
                Facts missing = facts;
                missing[condition.mFact] = value;
                const std::unique_ptr<ezMediaInfo> info = RecordWith(rule, missing);
                const ProfileRule* const winner = WinnerOf(rule, *info);
                EXPECT_FALSE(IsSame(winner, rule))
                    << Where(rule) << " by " << kProfileFacts[condition.mFact].mName << "=" << value;
                EXPECT_EQ(ProfileWhereItCounts(rule, *info), winner == nullptr ? "" : Str(winner->mProfile));
                ++count;
            }
        }
    }
    EXPECT_GT(count, 1000U);
}

TEST(BuiltInProfileRules, NoneGivesItsNameToAnotherMimeType) {
    for (const ProfileRule& rule : BuiltInRules()) {
        const std::unique_ptr<ezMediaInfo> info = RecordWith(rule, WinningFacts(rule));
        for (const std::string& type : StatedMimeTypes()) {
            info->Set(kezInfo_MimeType, type.c_str(), true);
            if (!IsForMimeType(rule, ProfileRuleList_FindMimeType(BuiltInList(), type))) {
                EXPECT_FALSE(IsSame(WinnerOf(rule, *info), rule)) << Where(rule) << " for " << type;
            }
        }
    }
}

TEST(BuiltInProfileRules, EachStatesAllThatItsKindNeeds) {
    const std::map<std::string, std::vector<const char*>> needed = {
        {"image", {"process", "colours", "width", "height"}},
        {"audio", {"audio-codec", "channels", "audio-bit-rate"}},
        {"video",
         {"video-codec", "video-profile", "video-level", "width", "height", "frame-rate", "video-bit-rate",
          "audio-codec", "sampling-rate", "channels", "audio-bit-rate"}}};
    // What stands for a fact: MPEG-1 has no profiles and levels, ASF does not store the level of WMV 9,
    // broadcasts are limited as a whole, and the rate of plain samples follows from the rest.
    const std::multimap<std::string, std::string> others = {{"video-profile", "video-codec=MPEG1"},
                                                            {"video-level", "video-codec=MPEG1"},
                                                            {"video-level", "video-codec=WMV3"},
                                                            {"video-bit-rate", "bit-rate"},
                                                            {"audio-bit-rate", "bits-per-sample"}};
    for (const ProfileRule& rule : BuiltInRules()) {
        const std::string type = FirstTypeOf(rule);
        for (const char* const fact : needed.at(type.substr(0, 5))) {
            const auto [first, last] = others.equal_range(fact);
            const bool fOther =
                std::any_of(first, last, [&rule](const auto& anOther) { return Asks(rule, anOther.second); });
            EXPECT_TRUE(Asks(rule, fact) || fOther) << Where(rule) << " without " << fact;
        }
    }
}

TEST(BuiltInProfileRules, HeadListsEveryFactByBothItsNames) {
    const std::string text(ProfileRules::BuiltInText());
    for (const ProfileFact& fact : kProfileFacts) {
        std::string line = "\n# " + std::string(fact.mName);
        line.resize(20, ' ');
        EXPECT_NE(text.find(line + std::string(fact.mKey) + " "), std::string::npos) << fact.mName;
    }
}

TEST(BuiltInProfileRules, ListIsOfTheProfilesPerMimeType) {
    const auto listed = [](const char* aTypes) {
        return Str(ProfileRules::BuiltIn()->GetProfileInfo(aTypes));
    };
    EXPECT_EQ(listed("audio/mpeg"), "audio/mpeg:DLNA.ORG_PN=MP3,audio/mpeg:DLNA.ORG_PN=MP3X,audio/mpeg:*");
    EXPECT_EQ(listed("image/jpeg"), "image/jpeg:DLNA.ORG_PN=JPEG_SM,image/jpeg:DLNA.ORG_PN=JPEG_MED,"
                                    "image/jpeg:DLNA.ORG_PN=JPEG_LRG,image/jpeg:*");
    EXPECT_EQ(listed("image/png"), "image/png:DLNA.ORG_PN=PNG_LRG,image/png:*");
    EXPECT_EQ(
        listed("audio/mp4"),
        "audio/mp4:DLNA.ORG_PN=AAC_ISO_320,audio/mp4:DLNA.ORG_PN=AAC_ISO,audio/mp4:DLNA.ORG_PN=AAC_MULT5_ISO,"
        "audio/mp4:DLNA.ORG_PN=HEAAC_L2_ISO_320,audio/mp4:DLNA.ORG_PN=HEAAC_L2_ISO,"
        "audio/mp4:DLNA.ORG_PN=HEAAC_MULT5_ISO,audio/mp4:DLNA.ORG_PN=AMR_3GPP,audio/"
        "mp4:DLNA.ORG_PN=AMR_WBplus,audio/mp4:*");
    EXPECT_EQ(listed("audio/3gpp"),
              "audio/3gpp:DLNA.ORG_PN=AAC_ISO_320,audio/3gpp:DLNA.ORG_PN=AAC_ISO,audio/"
              "3gpp:DLNA.ORG_PN=AAC_MULT5_ISO,"
              "audio/3gpp:DLNA.ORG_PN=HEAAC_L2_ISO_320,audio/3gpp:DLNA.ORG_PN=HEAAC_L2_ISO,"
              "audio/3gpp:DLNA.ORG_PN=HEAAC_MULT5_ISO,audio/3gpp:DLNA.ORG_PN=AMR_3GPP,"
              "audio/3gpp:DLNA.ORG_PN=AMR_WBplus,audio/3gpp:*");
    const auto expect = [&listed](const std::string& aType, const std::vector<const char*>& aNames) {
        std::string entries;
        for (const char* const name : aNames) {
            entries += aType + ":DLNA.ORG_PN=" + name + ",";
        }
        EXPECT_EQ(listed(aType.c_str()), entries + aType + ":*");
    };
    expect("video/3gpp",
           {"AVC_3GPP_BL_QCIF15_AAC", "AVC_3GPP_BL_QCIF15_AAC_LTP", "AVC_3GPP_BL_QCIF15_HEAAC",
            "AVC_3GPP_BL_QCIF15_AMR", "AVC_3GPP_BL_QCIF15_AMR_WBplus", "AVC_3GPP_BL_CIF15_AMR_WBplus",
            "AVC_3GPP_BL_CIF30_AMR_WBplus", "MPEG4_P2_3GPP_SP_L0B_AAC", "MPEG4_P2_3GPP_SP_L0B_AMR",
            "MPEG4_H263_MP4_P0_L10_AAC", "MPEG4_H263_MP4_P0_L10_AAC_LTP", "MPEG4_H263_3GPP_P0_L10_AMR_WBplus",
            "MPEG4_H263_3GPP_P3_L10_AMR"});
    EXPECT_EQ(listed("video/quicktime,video/3gpp2,audio/3gpp2"),
              "video/quicktime:*,video/3gpp2:*,audio/3gpp2:*");
    expect("video/mp4", {"AVC_MP4_BL_CIF15_AAC_520",
                         "AVC_MP4_BL_CIF15_AAC",
                         "AVC_MP4_BL_L1B_QCIF15_HEAAC",
                         "AVC_MP4_BL_L12_CIF15_HEAAC",
                         "AVC_MP4_BL_CIF15_HEAAC",
                         "AVC_MP4_BL_CIF15_AMR",
                         "AVC_MP4_BL_CIF30_AAC_940",
                         "AVC_MP4_BL_L2_CIF30_AAC",
                         "AVC_MP4_BL_CIF30_AAC_MULT5",
                         "AVC_MP4_BL_CIF30_AC3",
                         "AVC_MP4_BL_CIF30_MPEG1_L3",
                         "AVC_MP4_BL_CIF30_HEAAC_L2",
                         "AVC_MP4_BL_L3_SD_AAC",
                         "AVC_MP4_BL_L3L_SD_AAC",
                         "AVC_MP4_BL_L3L_SD_HEAAC",
                         "AVC_MP4_MP_SD_AAC_MULT5",
                         "AVC_MP4_MP_SD_AC3",
                         "AVC_MP4_MP_SD_MPEG1_L3",
                         "AVC_MP4_MP_SD_EAC3",
                         "AVC_MP4_BL_L31_HD_AAC",
                         "AVC_MP4_BL_L32_HD_AAC",
                         "AVC_MP4_MP_HD_720p_AAC",
                         "AVC_MP4_MP_HD_1080i_AAC",
                         "AVC_MP4_HP_HD_AAC",
                         "AVC_MP4_HP_HD_EAC3",
                         "MPEG4_P2_MP4_SP_L2_AAC",
                         "MPEG4_P2_MP4_SP_L2_AMR",
                         "MPEG4_P2_MP4_SP_AAC",
                         "MPEG4_P2_MP4_SP_AAC_LTP",
                         "MPEG4_P2_MP4_SP_HEAAC",
                         "MPEG4_P2_MP4_SP_VGA_AAC",
                         "MPEG4_P2_MP4_SP_VGA_HEAAC",
                         "MPEG4_P2_MP4_SP_L5_AAC",
                         "MPEG4_P2_MP4_SP_L6_AAC",
                         "MPEG4_P2_MP4_ASP_L4_SO_AAC",
                         "MPEG4_P2_MP4_ASP_L4_SO_HEAAC",
                         "MPEG4_P2_MP4_ASP_L4_SO_HEAAC_MULT5",
                         "MPEG4_P2_MP4_ASP_L5_SO_AAC",
                         "MPEG4_P2_MP4_ASP_L5_SO_HEAAC",
                         "MPEG4_P2_MP4_ASP_L5_SO_HEAAC_MULT5",
                         "MPEG4_P2_MP4_ASP_AAC",
                         "MPEG4_P2_MP4_ASP_HEAAC",
                         "MPEG4_P2_MP4_ASP_HEAAC_MULT5"});
    // A film of ASF is stated as video/x-ms-wmv, and announced as its profile asks for.
    EXPECT_EQ(listed("video/x-ms-wmv"),
              "video/x-ms-asf:DLNA.ORG_PN=MPEG4_P2_ASF_SP_G726,"
              "video/x-ms-asf:DLNA.ORG_PN=MPEG4_P2_ASF_ASP_L4_SO_G726,"
              "video/x-ms-asf:DLNA.ORG_PN=MPEG4_P2_ASF_ASP_L5_SO_G726,"
              "video/x-ms-wmv:DLNA.ORG_PN=WMVSPLL_BASE,video/x-ms-wmv:DLNA.ORG_PN=WMVSPML_BASE,"
              "video/x-ms-wmv:DLNA.ORG_PN=WMVSPML_MP3,video/x-ms-wmv:DLNA.ORG_PN=WMVMED_BASE,"
              "video/x-ms-wmv:DLNA.ORG_PN=WMVMED_FULL,video/x-ms-wmv:DLNA.ORG_PN=WMVMED_PRO,"
              "video/x-ms-wmv:DLNA.ORG_PN=WMVHIGH_FULL,video/x-ms-wmv:DLNA.ORG_PN=WMVHIGH_PRO,"
              "video/x-ms-asf:DLNA.ORG_PN=VC1_ASF_AP_L1_WMA,video/x-ms-asf:DLNA.ORG_PN=VC1_ASF_AP_L2_WMA,"
              "video/x-ms-wmv:*");
    expect("video/x-matroska",
           {"AVC_MKV_MP_HD_AAC_MULT5", "AVC_MKV_MP_HD_AC3", "AVC_MKV_MP_HD_EAC3", "AVC_MKV_MP_HD_HEAAC_L4",
            "AVC_MKV_MP_HD_MPEG1_L3", "AVC_MKV_HP_HD_AAC_MULT5", "AVC_MKV_HP_HD_AC3", "AVC_MKV_HP_HD_EAC3",
            "AVC_MKV_HP_HD_HEAAC_L4", "AVC_MKV_HP_HD_MPEG1_L3"});
}

namespace {

/// The entries of transport streams, which have the same names but for their ends: with those that have no
/// end or
/// "_T" alone where a name has no other.
std::string ListOfPackets(const std::string& aType, const std::vector<const char*>& anEnds,
                          const std::string& aStems) {
    std::istringstream stems(aStems);
    std::string list;
    for (std::string stem; stems >> stem;) {
        for (const std::string end : anEnds) {
            const bool fOnly = stem.find('+') != std::string::npos;
            const std::string name = stem.substr(0, stem.find('+')) + end;
            if (!fOnly || stem.find("+" + end + "+") != std::string::npos) {
                list += aType + ":DLNA.ORG_PN=" + name + ",";
            }
        }
    }
    return list;
}

std::string ListBy(const std::string& aPreference, const char* aType) {
    const std::shared_ptr<const ProfileRules> rules =
        ProfileRules::FromText(aPreference + std::string(ProfileRules::BuiltInText()), nullptr);
    return rules == nullptr ? "a problem" : Str(rules->GetProfileInfo(aType));
}

const std::string kEurope = "MPEG_TS_SD_EU ";
const std::string kAmerica = "MPEG_TS_SD_NA MPEG_TS_HD_NA MPEG_TS_SD_NA_XAC3 MPEG_TS_HD_NA_XAC3 ";
const std::string kOthers =
    "MPEG_TS_MP_LL_AAC AVC_TS_BL_CIF15_AAC_540 AVC_TS_BL_CIF15_AAC AVC_TS_BL_CIF15_AAC_LTP "
    "AVC_TS_BL_CIF30_AAC_940 AVC_TS_BL_CIF30_AAC_MULT5 AVC_TS_BL_CIF30_AC3 AVC_TS_BL_CIF30_MPEG1_L3 "
    "AVC_TS_BL_CIF30_HEAAC_L2 AVC_TS_MP_SD_AAC_MULT5 AVC_TS_MP_SD_AC3 AVC_TS_MP_SD_MPEG1_L3 "
    "AVC_TS_MP_SD_HEAAC_L2 AVC_TS_MP_SD_AAC_LTP AVC_TS_MP_SD_AAC_LTP_MULT5 AVC_TS_MP_SD_AAC_LTP_MULT7 "
    "AVC_TS_HD_50_AC3 AVC_TS_HD_50_LPCM+_T+ AVC_TS_HD_60_AC3 AVC_TS_HD_60_LPCM+_T+ AVC_TS_MP_HD_AAC "
    "AVC_TS_MP_HD_AAC_MULT5 AVC_TS_MP_HD_AC3 AVC_TS_MP_HD_MPEG1_L3 AVC_TS_MP_HD_HEAAC_L2 "
    "AVC_TS_MP_HD_AAC_LTP "
    "AVC_TS_MP_HD_AAC_LTP_MULT5 AVC_TS_MP_HD_AAC_LTP_MULT7 AVC_TS_HP_HD_AC3 "
    "MPEG4_P2_TS_SP_AAC MPEG4_P2_TS_SP_AC3 MPEG4_P2_TS_SP_MPEG1_L3 MPEG4_P2_TS_SP_MPEG2_L2 "
    "MPEG4_P2_TS_CO_AC3 MPEG4_P2_TS_CO_MPEG2_L2 "
    "MPEG4_P2_TS_ASP_AAC MPEG4_P2_TS_ASP_AC3 MPEG4_P2_TS_ASP_MPEG1_L3 MPEG4_P2_TS_ASP_MPEG2_L2";

} // namespace

TEST(BuiltInProfileRules, ListOfTransportStreamsIsOfThePreferredRegion) {
    const std::string stems = kEurope + kAmerica + kOthers;
    const char* const stamped = "video/vnd.dlna.mpeg-tts";
    EXPECT_EQ(ListBy("", stamped), ListOfPackets(stamped, {"", "_T"}, stems) + stamped + ":*");
    EXPECT_EQ(ListBy("", "video/mp2t"), ListOfPackets("video/mpeg", {"_ISO"}, stems) + "video/mp2t:*");
    EXPECT_EQ(ListBy("region NA\n", "video/mp2t"),
              ListOfPackets("video/mpeg", {"_ISO"}, kAmerica + kEurope + kOthers) + "video/mp2t:*");
    EXPECT_EQ(ListBy("region KO\n", "video/mp2t"),
              ListOfPackets("video/mpeg", {"_ISO"}, "MPEG_TS_SD_KO " + stems) + "video/mp2t:*");
    EXPECT_EQ(ListBy("region JP\n", "video/mp2t"), ListBy("", "video/mp2t")) << "all its names are inferred";
    EXPECT_EQ(ListBy("", "video/mpeg"),
              ListOfPackets("video/mpeg", {""},
                            "MPEG1 MPEG_PS_PAL MPEG_PS_PAL_XAC3 MPEG_PS_NTSC MPEG_PS_NTSC_XAC3 ") +
                  "video/mpeg:*")
        << "those of transport streams are listed with their own type";
}

TEST(BuiltInProfileRules, MimeTypesAreThoseThatTheParsersGive) {
    const std::shared_ptr<const ProfileRules> none = ProfileRules::FromText("", nullptr);
    std::set<std::string> given;
    AllFormats::ForEach([&](auto* aNull) {
        std::istringstream entries(Str(std::remove_pointer_t<decltype(aNull)>(none).GetDLNAInfo()));
        for (std::string entry; std::getline(entries, entry, ',');) {
            given.insert(entry);
        }
    });
    std::set<std::string> listed;
    for (const std::string& type : StatedMimeTypes()) {
        listed.insert(type + ":*");
        EXPECT_TRUE(FormatMimeType_IsStated(type));
    }
    EXPECT_EQ(given, listed);
}

namespace {

/// The end of a record, and the name that the record gets.
struct Met {
    const char* mEnd;
    const char* mProfile;
};

void ExpectProfiles(const std::string& aStart, const std::vector<Met>& aMet) {
    for (const Met& met : aMet) {
        EXPECT_EQ(ProfileOf(aStart + met.mEnd), met.mProfile) << aStart << met.mEnd;
    }
}

} // namespace

// Media as they are met. The limits stand here once more, so that no slip of the table goes unseen.

TEST(BuiltInProfileRules, FramesWithoutAContainerKeepWhatTheirHeadersSay) {
    ExpectProfiles("mt=audio/aac ", {{"ca=AAC sf=44100 ac=2 ar=320000", "AAC_ADTS_320"},
                                     {"ca=AAC sf=44100 ac=2 ar=4294967295 ea=128000", "AAC_ADTS_320"},
                                     {"ca=AAC sf=48000 ac=1 ar=321000", "AAC_ADTS"},
                                     {"ca=AAC sf=32000 ac=2 ar=576000", "AAC_ADTS"},
                                     {"ca=AAC sf=48000 ac=2 ar=577000", ""},
                                     {"ca=AAC sf=48000 ac=6 ar=1440000", "AAC_MULT5_ADTS"},
                                     {"ca=AAC sf=48000 ac=8 ar=384000", ""},
                                     {"ca=AAC sf=24000 ac=2 ar=48000", ""}, // it may be the core of HE-AAC
                                     {"ca=AAC sf=48000 ar=128000", ""},
                                     {"ca=AAC-Main sf=48000 ac=2 ar=128000", ""}});
    ExpectProfiles("mt=audio/ac3 ", {{"ca=AC3 sf=48000 ac=6 ar=640000", "AC3"},
                                     {"ca=AC3 sf=44100 ac=1 ar=64000", "AC3"},
                                     {"ca=AC3 sf=44100 ac=1 ar=56000", ""},
                                     {"ca=AC3 sf=24000 ac=2 ar=96000", ""},
                                     {"ca=EAC3 sf=48000 ac=6 ar=640000", ""}});
    ExpectProfiles("mt=audio/eac3 ", {{"ca=EAC3 sf=48000 ac=6 ar=6144000", "EAC3"},
                                      {"ca=EAC3 sf=32000 ac=2 ar=32000", "EAC3"},
                                      {"ca=EAC3 sf=48000 ac=8 ar=768000", ""},
                                      {"ca=AC3 sf=48000 ac=6 ar=640000", ""}});
    ExpectProfiles("mt=audio/amr ", {{"ca=AMR sf=8000 ac=1 ar=12200", ""}}); // in 3GP alone
}

TEST(BuiltInProfileRules, MPEGAudioKeepsMP3AndMP3X) {
    ExpectProfiles("mt=audio/mpeg ", {{"ca=MP3 sf=44100 ac=2 ar=128000", "MP3"},
                                      {"ca=MP3 sf=48000 ac=1 ar=4294967295 ma=320000", "MP3"},
                                      {"ca=MP3 sf=32000 ac=1 ar=4294967295 ea=32000", "MP3"},
                                      {"ca=MP3 sf=44100 ac=2 ar=4294967295", ""},
                                      {"ca=MP3 sf=22050 ac=2 ar=64000", "MP3X"},
                                      {"ca=MP3 sf=44100 ac=2 ar=31999", "MP3X"},
                                      {"ca=MP3 sf=16000 ac=2 ar=8000", "MP3X"},
                                      {"ca=MP3 sf=11025 ac=2 ar=64000", ""}, // MPEG-2.5
                                      {"ca=MP3 sf=44100 ac=2 ar=320320", "MP3"},
                                      {"ca=MP3 sf=44100 ac=2 ar=320321", ""},
                                      {"ca=MP2 sf=44100 ac=2 ar=128000", ""},
                                      {"ca=MP1 sf=44100 ac=2 ar=128000", ""}});
}

TEST(BuiltInProfileRules, PicturesKeepTheSmallestSizeThatHoldsBothSides) {
    ExpectProfiles("mt=image/jpeg pr=baseline cr=4:2:0 cd=8 ", {{"wi=640 he=480", "JPEG_SM"},
                                                                {"wi=160 he=160", "JPEG_SM"}, // no thumbnail
                                                                {"wi=480 he=640", "JPEG_MED"},
                                                                {"wi=641 he=480", "JPEG_MED"},
                                                                {"wi=1024 he=768", "JPEG_MED"},
                                                                {"wi=768 he=1024", "JPEG_LRG"},
                                                                {"wi=4096 he=4096", "JPEG_LRG"},
                                                                {"wi=4097 he=1", ""}});
    ExpectProfiles("", {{"mt=image/jpeg pr=baseline cr=grey cd=8 wi=1 he=1", "JPEG_SM"},
                        {"mt=image/jpeg pr=progressive cr=4:2:0 cd=8 wi=1 he=1", ""},
                        {"mt=image/jpeg pr=baseline cr=CMYK cd=8 wi=1 he=1", ""},
                        {"mt=image/jpeg pr=baseline cr=4:4:4 cd=8 wi=1 he=1", ""},
                        {"mt=image/png pr=plain cr=RGBA cd=8 wi=4096 he=4096", "PNG_LRG"},
                        {"mt=image/png pr=plain cr=grey cd=16 wi=9 he=9", "PNG_LRG"},
                        {"mt=image/png pr=plain cr=RGB cd=16 wi=9 he=9", ""},
                        {"mt=image/png pr=interlaced cr=RGB cd=8 wi=9 he=9", ""},
                        {"mt=image/png pr=plain cr=RGB cd=8 wi=9 he=4097", ""}});
}

TEST(BuiltInProfileRules, AudioOfMP4KeepsTheNarrowestOfItsCodec) {
    for (const std::string type : {"mt=audio/mp4 ", "mt=audio/3gpp "}) {
        ExpectProfiles(type, {{"ca=AAC sf=44100 ac=2 ar=320000", "AAC_ISO_320"},
                              {"ca=AAC sf=44100 ac=2 ar=320321", "AAC_ISO"},
                              {"ca=AAC sf=44100 ac=2 ar=576000", "AAC_ISO"},
                              {"ca=AAC sf=44100 ac=2 ar=576576", "AAC_ISO"},
                              {"ca=AAC sf=44100 ac=2 ar=576577", ""},
                              {"ca=AAC sf=44100 ac=3 ar=64000", "AAC_MULT5_ISO"},
                              {"ca=AAC sf=8000 ac=6 ar=128000", "AAC_MULT5_ISO"},
                              {"ca=AAC sf=96000 ac=2 ar=128000", ""},
                              {"ca=AAC sf=48000 ac=8 ar=128000", ""},
                              {"ca=HE-AAC sf=48000 ac=2 ar=64000", "HEAAC_L2_ISO_320"},
                              {"ca=HE-AAC sf=48000 ac=2 ar=400000", "HEAAC_L2_ISO"},
                              {"ca=HE-AAC sf=48000 ac=6 ar=64000", "HEAAC_MULT5_ISO"},
                              {"ca=HE-AACv2 sf=48000 ac=2 ar=64000", ""},
                              {"ca=AAC-Main sf=48000 ac=2 ar=64000", ""},
                              {"ca=ALAC sf=48000 ac=2 ar=64000", ""},
                              {"ca=AMR sf=8000 ac=1 ar=12200", "AMR_3GPP"},
                              {"ca=AMR sf=8000 ac=1 ar=12213", ""},
                              {"ca=AMR sf=8000 ac=2 ar=12200", ""},
                              {"ca=AMR-WB sf=16000 ac=1 ar=12800", ""},
                              {"ca=AMR-WB+ sf=48000 ac=2 ar=48000", "AMR_WBplus"},
                              {"ca=AMR-WB+ sf=48000 ac=2 ar=48049", ""}});
    }
    ExpectProfiles("", {{"mt=audio/3gpp2 ca=AAC sf=44100 ac=2 ar=64000", ""}});
}

TEST(BuiltInProfileRules, H264BaselineKeepsTheNarrowest) {
    ExpectProfiles("mt=video/mp4 vc=H264 vp=Baseline wi=352 he=288 fr=15000 ca=AAC sf=44100 ac=2 ",
                   {{"vl=12 vr=384000 br=520000 ar=128000", "AVC_MP4_BL_CIF15_AAC_520"},
                    {"vl=9 vr=384000 br=520521 ar=128000", "AVC_MP4_BL_CIF15_AAC"},
                    {"vl=12 vr=384000 br=600000 ar=200000", "AVC_MP4_BL_CIF15_AAC"},
                    {"vl=12 vr=384385 br=600000 ar=128000", "AVC_MP4_BL_CIF30_AAC_940"},
                    {"vl=20 vr=384000 br=600000 ar=200000", "AVC_MP4_BL_L2_CIF30_AAC"}});
    ExpectProfiles("mt=video/mp4 vc=H264 vp=Baseline vl=20 wi=352 he=288 fr=29970 sf=48000 ",
                   {{"vr=1100000 br=1300000 ca=AAC ac=2 ar=200000", "AVC_MP4_BL_L2_CIF30_AAC"},
                    {"vr=2000000 br=3000000 ca=AAC ac=6 ar=400000", "AVC_MP4_BL_CIF30_AAC_MULT5"},
                    {"vr=2000000 br=3000000 ca=AC3 ac=6 ar=640000", "AVC_MP4_BL_CIF30_AC3"},
                    {"vr=2000000 br=3000000 ca=MP3 ac=2 ar=320000", "AVC_MP4_BL_CIF30_MPEG1_L3"},
                    {"vr=2002001 br=3000000 ca=MP3 ac=2 ar=320000", ""}});
    ExpectProfiles("mt=video/mp4 vc=H264 vp=Baseline vl=30 ca=AAC sf=48000 ac=2 ar=256000 ",
                   {{"wi=720 he=576 fr=25000 vr=4000000", "AVC_MP4_BL_L3_SD_AAC"},
                    {"wi=640 he=360 fr=30000 vr=1000000", "AVC_MP4_BL_L3_SD_AAC"},
                    {"wi=704 he=576 fr=25000 vr=4000000", "AVC_MP4_BL_L3_SD_AAC"},
                    {"wi=480 he=270 fr=30000 vr=1000000", "AVC_MP4_BL_L3_SD_AAC"},
                    {"wi=720 he=480 fr=29999 vr=4000000", "AVC_MP4_BL_L3_SD_AAC"},
                    {"wi=720 he=480 fr=30000 vr=4000000", ""},
                    {"wi=720 he=576 fr=30000 vr=4000000", ""},
                    {"wi=720 he=480 fr=29970 vr=4500000 br=5000000", "AVC_MP4_BL_L31_HD_AAC"}});
    ExpectProfiles("mt=video/mp4 vc=H264 vp=ConstrainedBaseline vl=30 ca=AAC sf=48000 ac=2 ar=256000 ",
                   {{"wi=720 he=480 fr=29970 vr=4500000 br=5005000", "AVC_MP4_BL_L3L_SD_AAC"},
                    {"wi=720 he=480 fr=29970 vr=4500000 br=5005001", "AVC_MP4_MP_SD_AAC_MULT5"},
                    {"wi=720 he=480 fr=29970 vr=4504501 br=5000000", "AVC_MP4_MP_SD_AAC_MULT5"}});
    ExpectProfiles("mt=video/mp4 vc=H264 vp=Baseline ca=AAC sf=48000 ac=2 ar=256000 wi=1280 he=720 ",
                   {{"vl=31 fr=30000 vr=14000000 br=15000000", "AVC_MP4_BL_L31_HD_AAC"},
                    {"vl=32 fr=60000 vr=20000000 br=21000000", "AVC_MP4_BL_L32_HD_AAC"},
                    {"vl=40 fr=30000 vr=14000000 br=15000000", ""}});
}

TEST(BuiltInProfileRules, SmallPicturesOfBaselineMayComeFaster) {
    ExpectProfiles(
        "mt=video/mp4 vc=H264 vp=Baseline vl=12 vr=384000 br=520000 ca=AAC sf=48000 ac=2 ar=128000 ",
        {{"wi=352 he=288 fr=15015", "AVC_MP4_BL_CIF15_AAC_520"},
         {"wi=352 he=288 fr=15016", "AVC_MP4_BL_CIF30_AAC_940"},
         {"wi=352 he=240 fr=18018", "AVC_MP4_BL_CIF15_AAC_520"},
         {"wi=352 he=240 fr=18019", "AVC_MP4_BL_CIF30_AAC_940"},
         {"wi=320 he=240 fr=20020", "AVC_MP4_BL_CIF15_AAC_520"},
         {"wi=320 he=240 fr=20021", "AVC_MP4_BL_CIF30_AAC_940"},
         {"wi=320 he=180 fr=26026", "AVC_MP4_BL_CIF15_AAC_520"},
         {"wi=240 he=180 fr=30030", "AVC_MP4_BL_CIF15_AAC_520"}});
}

TEST(BuiltInProfileRules, ConstrainedBaselineKeepsTheNamesOfMainAndHighToo) {
    ExpectProfiles(
        "mt=video/mp4 vc=H264 vp=ConstrainedBaseline sf=48000 ac=2 ",
        {{"vl=12 wi=352 he=288 fr=15000 vr=384000 br=520000 ca=AAC ar=128000", "AVC_MP4_BL_CIF15_AAC_520"},
         {"vl=30 wi=704 he=576 fr=25000 vr=6000000 br=6300000 ca=AAC ar=192000", "AVC_MP4_MP_SD_AAC_MULT5"},
         {"vl=31 wi=1280 he=720 fr=30000 vr=14000000 br=15000000 ca=AAC ar=256000", "AVC_MP4_BL_L31_HD_AAC"},
         {"vl=31 wi=1280 he=720 fr=30000 vr=14000000 br=15000000 ca=AAC ar=500000", "AVC_MP4_MP_HD_720p_AAC"},
         {"vl=40 wi=1920 he=1080 fr=25000 vr=20000000 br=21000000 ca=AAC ar=192000",
          "AVC_MP4_MP_HD_1080i_AAC"},
         {"vl=40 wi=1920 he=1080 fr=25000 vr=25000000 ca=AAC ar=192000", "AVC_MP4_HP_HD_AAC"},
         {"vl=40 wi=1920 he=1080 fr=25000 vr=25000000 ca=EAC3 ar=3024000", "AVC_MP4_HP_HD_EAC3"},
         {"vl=40 wi=1920 he=1080 fr=25000 vr=25000000 ca=EAC3 ar=3027025", ""}});
}

TEST(BuiltInProfileRules, H264MainKeepsTheNarrowest) {
    ExpectProfiles(
        "mt=video/mp4 vc=H264 vp=Main sf=48000 ",
        {{"vl=30 wi=720 he=576 fr=25000 vr=10000000 ca=AAC ac=6 ar=384000", "AVC_MP4_MP_SD_AAC_MULT5"},
         {"vl=30 wi=720 he=480 fr=29970 vr=10000000 ca=AC3 ac=2 ar=192000", "AVC_MP4_MP_SD_AC3"},
         {"vl=30 wi=640 he=480 fr=29970 vr=10000000 ca=MP3 ac=2 ar=192000", "AVC_MP4_MP_SD_MPEG1_L3"},
         {"vl=31 wi=1280 he=720 fr=30000 vr=14000000 br=15000000 ca=AAC ac=2 ar=192000",
          "AVC_MP4_MP_HD_720p_AAC"},
         {"vl=40 wi=1920 he=1080 fr=25000 vr=20000000 br=21000000 ca=AAC ac=2 ar=192000",
          "AVC_MP4_MP_HD_1080i_AAC"},
         {"vl=41 wi=1920 he=1080 fr=25000 vr=20000000 br=21000000 ca=AAC ac=2 ar=192000", ""}});
}

TEST(BuiltInProfileRules, H264HighKeepsTheNarrowest) {
    ExpectProfiles("mt=video/mp4 vc=H264 vp=High vl=40 sf=48000 vr=25000000 ",
                   {
                       {"wi=1920 he=1080 fr=23976 ca=AAC ac=2 ar=192000", "AVC_MP4_HP_HD_AAC"},
                       {"wi=1280 he=720 fr=59940 ca=AAC ac=2 ar=192000", "AVC_MP4_HP_HD_AAC"},
                       {"wi=1920 he=1080 fr=30000 ca=EAC3 ac=6 ar=448000", "AVC_MP4_HP_HD_EAC3"},
                       {"wi=1920 he=1080 fr=50000 ca=AAC ac=2 ar=192000", ""},
                       {"wi=1920 he=1080 fr=23976 ca=AC3 ac=2 ar=192000", ""},
                       {"wi=1920 he=1080 fr=23976", ""} // without audio
                   });
}

TEST(BuiltInProfileRules, VideoOfAnotherTypeOrCodecKeepsNone) {
    ExpectProfiles("", {{"mt=video/quicktime vc=H264 vp=High vl=40 sf=48000 vr=1000000 wi=640 he=480 "
                         "fr=25000 ca=AAC ac=2 ar=192000",
                         ""},
                        {"mt=video/mp4 vc=H265 vp=Main vl=30 sf=48000 vr=1000000 wi=640 he=480 fr=25000 "
                         "ca=AAC ac=2 ar=192000",
                         ""}});
}
