#include "companions/ezFormats/rules/ProfileKit.h"
#include "companions/ezFormats/rules/ProfileOracle.h"

#include "ezFormats/rules/ProfileRuleOrder.h"
#include "ezFormats/rules/ProfileRuleReader.h"
#include "ezFormats/rules/ProfileRuleTable.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Random = std::mt19937;

std::string OneOf(const std::vector<std::string>& aTexts, Random& aRandom) {
    return aTexts[aRandom() % aTexts.size()];
}

/// Rules of few facts with few values, so that many begin alike.
std::string RandomTable(Random& aRandom) {
    std::string table = OneOf({"", "region EU\n", "region KO\n"}, aRandom) +
                        OneOf({"", "inferred on\n"}, aRandom) +
                        "ending + audio/mpeg ct=TS\nending +_T audio/mpeg,audio/mp4 ct=TTS\n";
    for (std::size_t count = aRandom() % 16; count > 0; --count) {
        table += OneOf({"MP3 audio/mpeg", "MP3X audio/mp4", "MP3 audio/mpeg,audio/mp4",
                        "AAC_ISO audio/mpeg>audio/mp4", "MPEG_TS_SD_EU +,+_T", "MPEG_TS_SD_NA +_T,+"},
                       aRandom) +
                 OneOf({"", "", "", " inferred", " region=EU", " region=KO", " inferred region=KO"}, aRandom);
        for (const std::vector<std::string>& conditions :
             std::vector<std::vector<std::string>>{{"", " ca=a", " ca=b", " ca=a,b"},
                                                   {"", " ac=1", " ac=1-2"},
                                                   {"", " size=1x1", " size=-2x2@25", " size=1x2,2x1"},
                                                   {"", " cr=a"}}) {
            table += OneOf(conditions, aRandom);
        }
        table += "\n";
    }
    return table;
}

std::string RandomRecord(Random& aRandom) {
    return OneOf({"mt=audio/mpeg", "mt=audio/mp4", "mt=audio/3gpp"}, aRandom) +
           OneOf({"", " ct=TS", " ct=TTS"}, aRandom) + OneOf({"", " ca=a", " ca=b", " ca=c"}, aRandom) +
           OneOf({"", " ac=1", " ac=2", " ac=3"}, aRandom) + OneOf({"", " wi=1", " wi=2"}, aRandom) +
           OneOf({"", " he=1", " he=2"}, aRandom) + OneOf({"", " fr=25000", " fr=30000"}, aRandom) +
           OneOf({"", " cr=a", " cr=b"}, aRandom);
}

} // namespace

TEST(ProfileRuleTable, FindsTheRuleThatEachByItselfFinds) {
    Random random(15);
    std::size_t met = 0;
    for (int i = 0; i < 2000; ++i) {
        const std::string text = RandomTable(random);
        std::vector<ProfileRulesProblem> problems;
        const ProfileRuleList list = ProfileRules_InForce(ProfileRules_Read(text, &problems));
        ASSERT_TRUE(problems.empty()) << text << problems.front().mText;
        const ProfileRuleTable table(list);
        for (int j = 0; j < 40; ++j) {
            const std::string record = RandomRecord(random);
            const std::unique_ptr<ezMediaInfo> info = RecordOf(record);
            const std::size_t type =
                ProfileRuleList_FindMimeType(list, info->GetCString(kezInfo_MimeType, "").View());
            const ProfileRuleTable::Match match = table.FindMet(type, *info);
            const ProfileRule* const expected = FirstMet(list, *info);
            const ProfileRule* const found =
                match.mRule == ProfileRuleTable::kNone ? nullptr : &list.mRules[match.mRule];
            ASSERT_EQ(found, expected) << text << record;
            met += found != nullptr ? 1 : 0;
        }
    }
    EXPECT_GT(met, 10000U);
    EXPECT_LT(met, 70000U);
}

namespace {

/// What the guide says of the order, without leaving anything out.
ProfileRuleList Preferring(ProfileRuleList aList, ProfileRegion aRegion, bool afInferred) {
    const std::vector<ProfileRule> rules = std::move(aList.mRules);
    aList.mRules.clear();
    for (const bool fPreferred : {true, false}) {
        for (const ProfileRule& rule : rules) {
            const bool fOwn = aRegion != ProfileRegion::None && rule.mRegion == aRegion;
            if (fOwn == fPreferred && (afInferred || !rule.mfInferred)) {
                aList.mRules.push_back(rule);
            }
        }
    }
    return aList;
}

std::string NameOf(const ProfileRule* aRule) {
    return aRule == nullptr ? "" : Str(aRule->mProfile) + " of line " + std::to_string(aRule->mLine);
}

} // namespace

TEST(ProfileRuleTable, RulesInForceFindWhatTheWholeTableFinds) {
    Random random(17);
    std::size_t left = 0;
    for (int i = 0; i < 2000; ++i) {
        const std::string text = RandomTable(random);
        std::vector<ProfileRulesProblem> problems;
        const ProfileRuleList read = ProfileRules_Read(text, &problems);
        const ProfileRuleList whole = Preferring(read, read.mRegion, read.mfInferred);
        const ProfileRuleList inForce = ProfileRules_InForce(read);
        left += whole.mRules.size() - inForce.mRules.size();
        for (int j = 0; j < 40; ++j) {
            const std::string record = RandomRecord(random);
            const std::unique_ptr<ezMediaInfo> info = RecordOf(record);
            ASSERT_EQ(NameOf(FirstMet(inForce, *info)), NameOf(FirstMet(whole, *info))) << text << record;
        }
    }
    EXPECT_GT(left, 500U); // what can never win
}

TEST(ProfileRuleTable, RuleThatLosesWouldNeverHaveWonByAnyPreference) {
    Random random(16);
    std::size_t losers = 0;
    for (int i = 0; i < 1000; ++i) {
        const std::string text = RandomTable(random);
        std::vector<ProfileRulesProblem> problems;
        const ProfileRuleList list = ProfileRules_Read(text, &problems);
        ProfileRules_FindLosers(list.mRules, &problems);
        for (int j = 0; j < 10 && !problems.empty(); ++j) {
            const std::string record = RandomRecord(random);
            for (const ProfileRegion region :
                 {ProfileRegion::None, ProfileRegion::Europe, ProfileRegion::Korea, ProfileRegion::Japan}) {
                const ProfileRuleList asked = Preferring(list, region, j % 2 == 0);
                const ProfileRule* const winner = FirstMet(asked, *RecordOf(record));
                for (const ProfileRulesProblem& problem : problems) {
                    EXPECT_FALSE(winner != nullptr && winner->mLine == problem.mLine &&
                                 (problem.mText.rfind("this", 0) == 0 ||
                                  problem.mText.find(" " + Str(winner->mProfile) + " ") != std::string::npos))
                        << text << record << " " << problem.mText;
                }
            }
        }
        losers += problems.size();
    }
    EXPECT_GT(losers, 500U);
}
