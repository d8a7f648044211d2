#include "companions/ezFormats/rules/ProfileKit.h"

#include <gtest/gtest.h>

#include <utility>

// Endings of names, regions, and inferred rules: which rules a table has, and in which order they are asked.

using Texts = std::vector<std::string>;

namespace {

const std::string kEndings = "ending +_ISO video/mp4>audio/mp4 container=TS\n"
                             "ending + video/quicktime container=TTS-zero\n"
                             "ending +_T video/quicktime container=TTS\n";

std::string MatchBy(const std::string& aTable, const std::string& aRecord) {
    const std::shared_ptr<const ProfileRules> rules = ProfileRules::FromText(aTable, nullptr);
    if (rules == nullptr) {
        return "a problem";
    }
    const ProfileMatch match = rules->FindMatch(*RecordOf(aRecord));
    return Str(match.mProfile) + (match.mMimeType.IsEmpty() ? "" : " as " + Str(match.mMimeType));
}

std::string ListBy(const std::string& aTable, const char* aTypes) {
    const std::shared_ptr<const ProfileRules> rules = ProfileRules::FromText(aTable, nullptr);
    return rules == nullptr ? "a problem" : Str(rules->GetProfileInfo(aTypes));
}

} // namespace

// Endings.

TEST(ProfileRuleEndings, MakeOneLineARuleForEach) {
    const std::string table = kEndings + "MPEG_TS_SD_EU +_ISO,+,+_T width=720\n";
    EXPECT_EQ(ProblemsOf(table), Texts());
    EXPECT_EQ(MatchBy(table, "mt=video/mp4 ct=TS wi=720"), "MPEG_TS_SD_EU_ISO as audio/mp4");
    EXPECT_EQ(MatchBy(table, "mt=audio/mp4 ct=TS wi=720"), "MPEG_TS_SD_EU_ISO");
    EXPECT_EQ(MatchBy(table, "mt=video/quicktime ct=TTS-zero wi=720"), "MPEG_TS_SD_EU");
    EXPECT_EQ(MatchBy(table, "mt=video/quicktime ct=TTS wi=720"), "MPEG_TS_SD_EU_T");
    for (const char* const other :
         {"mt=video/mp4 ct=TTS wi=720", "mt=video/mp4 wi=720", "mt=video/quicktime ct=TS wi=720",
          "mt=video/quicktime ct=TTS wi=721", "mt=video/3gpp ct=TS wi=720"}) {
        EXPECT_EQ(MatchBy(table, other), "") << other;
    }
    EXPECT_EQ(ListBy(table, "video/mp4,video/quicktime"),
              "audio/mp4:DLNA.ORG_PN=MPEG_TS_SD_EU_ISO,video/quicktime:DLNA.ORG_PN=MPEG_TS_SD_EU,"
              "video/quicktime:DLNA.ORG_PN=MPEG_TS_SD_EU_T,video/mp4:*,video/quicktime:*");
}

TEST(ProfileRuleEndings, AreThoseThatTheLineNames) {
    const std::string table = kEndings + "AVC_TS_HP_SD_AC3 +_ISO,+_T\n";
    EXPECT_EQ(MatchBy(table, "mt=video/mp4 ct=TS"), "AVC_TS_HP_SD_AC3_ISO as audio/mp4");
    EXPECT_EQ(MatchBy(table, "mt=video/quicktime ct=TTS-zero"), "");
    EXPECT_EQ(MatchBy(table, "mt=video/quicktime ct=TTS"), "AVC_TS_HP_SD_AC3_T");
}

TEST(ProfileRuleEndings, CheckNamesEveryProblem) {
    EXPECT_EQ(
        ProblemsOf("ending\n"
                   "ending _ISO video/mp4\n"
                   "ending +_T\n"
                   "ending + video/unheard width=1 width=2 inferred region=EU\n"
                   "ending +_ISO video/mp4 container=TS\n"
                   "ending +_ISO video/mp4\n"
                   "MPEG_TS_SD_EU +_T,+_ISO,+_ISO\n"
                   "MPEG_TS_SD_EU +_ISO,\n"
                   "MPEG_TS_SD_EU +_ISO container=TTS\n"
                   "MPEG_TS_HD_EU +_ISO\n"
                   "MPEG_TS_HD +\n"),
        Texts({"1: \"\" is no ending: these begin with +", "1: no MIME type stands after the profile",
               "2: \"_ISO\" is no ending: these begin with +", "3: no MIME type stands after the profile",
               "4: no parser here gives the MIME type \"video/unheard\"", "4: width is asked for twice",
               "4: \"inferred\" is no condition: these are fact=values", "4: no fact is named \"region\"",
               "6: the ending \"+_ISO\" stands twice", "7: no ending \"+_T\" stands above",
               "7: the ending \"+_ISO\" stands twice", "8: no ending \"\" stands above",
               "9: container is asked for twice", "10: DLNA knows no profile \"MPEG_TS_HD_EU_ISO\"",
               "11: no ending \"+\" stands above"}));
    EXPECT_EQ(ProblemsOf("MPEG_TS_SD_EU +_ISO\n" + kEndings), Texts({"1: no ending \"+_ISO\" stands above"}));
}

TEST(ProfileRuleEndings, AreEightAtMost) {
    std::string table;
    for (int i = 1; i <= 8; ++i) {
        table += "ending +" + std::to_string(i) + " video/mp4\n";
    }
    EXPECT_EQ(ProblemsOf(table), Texts());
    EXPECT_EQ(ProblemsOf(table + "ending +9 video/mp4\n"), Texts({"9: more than 8 endings"}));
}

TEST(ProfileRuleEndings, EachCountsAsARule) {
    const auto table = [](std::size_t aLines) {
        std::string text = kEndings;
        for (std::size_t i = 0; i < aLines; ++i) {
            text += "MPEG_TS_SD_EU +_ISO,+,+_T width=" + std::to_string(i + 1) + "\n";
        }
        return text;
    };
    EXPECT_EQ(ProblemsOf(table(666)), Texts()); // 1998 rules
    EXPECT_EQ(ProblemsOf(table(667)), Texts({"670: more than 2000 rules"}));
    EXPECT_EQ(ProblemsOf(table(700)), Texts({"670: more than 2000 rules"})) << "nothing is read after it";
}

TEST(ProfileRuleEndings, CheckSaysWhichOfALineCanNeverWin) {
    const std::string line = "MPEG_TS_SD_EU +_ISO,+,+_T width=720\n";
    EXPECT_EQ(
        ProblemsOf(kEndings + "MPEG_TS_SD_NA_T video/quicktime container=TTS\n" + line),
        Texts({"5: the rule of MPEG_TS_SD_EU_T can never win: the one of line 4 wins whenever it would"}));
    EXPECT_EQ(ProblemsOf(kEndings + line + line).size(), 3U);
    EXPECT_EQ(ProblemsOf(kEndings + line + "MPEG_TS_SD_NA +_ISO width=720\n"),
              Texts({"5: this rule can never win: the one of line 4 wins whenever it would"}));
}

// Regions.

TEST(ProfileRuleRegions, RulesOfThePreferredOneAreAskedFirst) {
    const std::string rules = "MPEG_TS_SD_EU  video/mp4 width=1-2\n"
                              "MPEG_TS_SD_NA  video/mp4 width=1-3 region=NA\n"
                              "MPEG_TS_SD_KO  video/mp4 width=2-4 region=KO\n"
                              "MPEG_TS_JP_T   video/mp4 width=2-5 region=JP\n";
    const auto names = [&](const std::string& aPreference) {
        std::string all;
        for (const char* const width : {"1", "2", "3", "4", "5", "6"}) {
            all += ProfileBy(aPreference + rules, std::string("mt=video/mp4 wi=") + width) + " ";
        }
        return all;
    };
    const std::string none = "MPEG_TS_SD_EU MPEG_TS_SD_EU MPEG_TS_SD_NA MPEG_TS_SD_KO MPEG_TS_JP_T  ";
    EXPECT_EQ(names(""), none);
    EXPECT_EQ(names("region EU # marks none of them\n"), none);
    EXPECT_EQ(names("region NA\n"), "MPEG_TS_SD_NA MPEG_TS_SD_NA MPEG_TS_SD_NA MPEG_TS_SD_KO MPEG_TS_JP_T  ");
    EXPECT_EQ(names("region KO\n"), "MPEG_TS_SD_EU MPEG_TS_SD_KO MPEG_TS_SD_KO MPEG_TS_SD_KO MPEG_TS_JP_T  ");
    EXPECT_EQ(names("region JP\n"), "MPEG_TS_SD_EU MPEG_TS_JP_T MPEG_TS_JP_T MPEG_TS_JP_T MPEG_TS_JP_T  ");
    EXPECT_EQ(ProfileBy(rules + "region JP", "mt=video/mp4 wi=3"), "MPEG_TS_JP_T")
        << "wherever the line stands";
}

TEST(ProfileRuleRegions, ListHasThoseThatCanBeAnnounced) {
    const std::string rules = "MPEG_TS_SD_NA  video/mp4 width=1-3 region=NA\n"
                              "MPEG_TS_SD_KO  video/mp4 width=2 region=KO\n";
    EXPECT_EQ(ListBy(rules, "video/mp4"), "video/mp4:DLNA.ORG_PN=MPEG_TS_SD_NA,video/mp4:*");
    EXPECT_EQ(ListBy("region KO\n" + rules, "video/mp4"),
              "video/mp4:DLNA.ORG_PN=MPEG_TS_SD_KO,video/mp4:DLNA.ORG_PN=MPEG_TS_SD_NA,video/mp4:*");
    const std::string alike = "MPEG_TS_SD_NA  video/mp4 region=NA\nMPEG_TS_SD_KO  video/mp4 region=KO\n";
    EXPECT_EQ(ListBy("region KO\n" + alike, "video/mp4"), "video/mp4:DLNA.ORG_PN=MPEG_TS_SD_KO,video/mp4:*");
    EXPECT_EQ(ListBy(alike, "video/mp4"), "video/mp4:DLNA.ORG_PN=MPEG_TS_SD_NA,video/mp4:*");
}

TEST(ProfileRuleRegions, CheckRefusesWhatIsNone) {
    EXPECT_EQ(ProblemsOf("region\nMP3 audio/mpeg region=\nMP3 audio/mpeg region=EU region=NA\nregion EU NA\n"
                         "MP3 audio/mpeg region=eu"),
              Texts({"1: \"\" is no region: these are EU, NA, JP and KO",
                     "2: \"\" is no region: these are EU, NA, JP and KO", "3: \"region=NA\" stands twice",
                     "4: \"region\" stands twice", "4: nothing may stand after \"EU\"",
                     "5: \"eu\" is no region: these are EU, NA, JP and KO"}));
}

// Inferred rules.

TEST(ProfileRuleInferred, CountWhereTheTableSaysSo) {
    const std::string rules = "MP3 audio/mpeg channels=1 inferred\nMP3X audio/mpeg\n";
    for (const char* const off : {"", "inferred off\n"}) {
        EXPECT_EQ(ProfileBy(off + rules, "mt=audio/mpeg ac=1"), "MP3X");
        EXPECT_EQ(ListBy(off + rules, "audio/mpeg"), "audio/mpeg:DLNA.ORG_PN=MP3X,audio/mpeg:*");
    }
    EXPECT_EQ(ProfileBy("inferred on\n" + rules, "mt=audio/mpeg ac=1"), "MP3");
    EXPECT_EQ(ProfileBy(rules + "inferred on # here, too", "mt=audio/mpeg ac=1"), "MP3");
    EXPECT_EQ(ListBy("inferred on\n" + rules, "audio/mpeg"),
              "audio/mpeg:DLNA.ORG_PN=MP3,audio/mpeg:DLNA.ORG_PN=MP3X,audio/mpeg:*");
}

TEST(ProfileRuleInferred, CheckRefusesWhatIsNeitherOnNorOff) {
    EXPECT_EQ(ProblemsOf("inferred\ninferred on\nMP3 audio/mpeg inferred ac=1 inferred"),
              Texts({"1: \"\" is neither on nor off", "2: \"inferred\" stands twice",
                     "3: \"inferred\" stands twice"}));
    EXPECT_EQ(ProblemsOf("inferred maybe"), Texts({"1: \"maybe\" is neither on nor off"}));
    EXPECT_EQ(ProblemsOf("inferred on off"), Texts({"1: nothing may stand after \"on\""}));
}

// What the check says holds by any preference.

TEST(ProfileRuleOrder, RuleLosesToOneThatIsAlwaysAskedBefore) {
    const std::vector<std::pair<const char*, const char*>> losers = {
        {"", ""},         {"region=KO", ""},        {"region=KO", "region=KO"},
        {"", "inferred"}, {"inferred", "inferred"}, {"region=KO", "inferred"}};
    const std::vector<std::pair<const char*, const char*>> winners = {
        {"", "region=KO"}, {"region=NA", "region=KO"}, {"inferred", ""}, {"inferred", "region=KO inferred"}};
    for (const char* const preference : {"", "region KO\n", "region NA\n", "inferred on\n"}) {
        const auto count = [&](const std::pair<const char*, const char*>& aMarks) {
            return ProblemsOf(preference + std::string("MP3 audio/mpeg ") + aMarks.first +
                              "\nMP3X audio/mpeg " + aMarks.second)
                .size();
        };
        for (const auto& marks : losers) {
            EXPECT_EQ(count(marks), 1U) << preference << marks.first << "|" << marks.second;
        }
        for (const auto& marks : winners) {
            EXPECT_EQ(count(marks), 0U) << preference << marks.first << "|" << marks.second;
        }
    }
}
