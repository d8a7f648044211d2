#include "ez/MediaParserManager.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/Environment.h"

#include "ezPlatform/media/MediaInfo.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Folders.h"
#include "support/Guide.h"
#include "support/MapperFolder.h"
#include "support/Record.h"
#include "support/Str.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using Texts = std::vector<std::string>;

namespace {

/// A manager with the mapper's place opened.
class OpenManager : public ezMediaParserManager {
public:
    using ezMediaParserManager::ezMediaParserManager;
    using ezMediaParserManager::mDLNAMediaMapperParser;
    using ezMediaParserManager::MediaMapperValidate;
};

/// The environment of any parser.
struct EnvironmentOf : ezBaseParser {
    static ezPropertyList* Get(ezBaseParser& aParser) { return aParser.*(&EnvironmentOf::mEnvironmentInfo); }
};

/// A record that counts those of its kind that live.
class CountedRecord : public ezMediaInfo {
public:
    CountedRecord() { ++sCount; }
    ~CountedRecord() override { --sCount; }
    static int sCount;
};
int CountedRecord::sCount = 0;

/// A parser for any media that answers with what a function makes.
class AnsweringParser : public ezMediaParser {
public:
    explicit AnsweringParser(std::function<ezMediaInfo*()> anAnswer)
        : ezMediaParser("*", nullptr, false), mAnswer(std::move(anAnswer)) {}
    ezMediaInfo* Parse(ezMediaParserStream& /*aStream*/) override { return mAnswer(); }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

private:
    std::function<ezMediaInfo*()> mAnswer;
};

ezMediaInfo* NewInfo(const char* aMimeType, const char* aDLNA, const char* aClass = "",
                     ezMediaInfo* anInfo = new CountedRecord) {
    anInfo->Set(kezInfo_MimeType, aMimeType, true);
    anInfo->Set(kezInfo_DLNA, aDLNA, true);
    anInfo->Set(kezInfo_ClassName, aClass, true);
    return anInfo;
}

/// A manager with a table in force.
class MediaMapperValidate : public testing::Test {
protected:
    void UseTable(const std::string& aTable) {
        mMapper = mFolder.Loaded(aTable);
        mManager.AddDLNAMediaMapperParser(mMapper.get());
    }
    /// Takes a record over.
    std::string Validated(ezMediaInfo* anInfo, const char* aFullPath = "/media/clip.mpg") {
        AwkwardStream stream("", Delivery(), aFullPath);
        const Record record(mManager.MediaMapperValidate(stream, anInfo));
        EXPECT_TRUE(anInfo == nullptr || record.get() == anInfo);
        return DumpRecord(record.get());
    }

    const MapperFolder mFolder;
    std::unique_ptr<OpenMapper> mMapper;
    OpenManager mManager{nullptr};
    LogCatcher mLog;
};

} // namespace

// Adding the mapper

TEST_F(MediaMapperValidate, ManagerHasNoMapperParserUntilOneIsAdded) {
    EXPECT_EQ(mManager.mDLNAMediaMapperParser, nullptr);
    mManager.AddDLNAMediaMapperParser(nullptr);
    EXPECT_EQ(mManager.mDLNAMediaMapperParser, nullptr);
    UseTable("clip.mpg,video/mpeg,P\n"); // null took no place
    ASSERT_NE(mManager.mDLNAMediaMapperParser, nullptr);
    EXPECT_EQ(Str(mManager.mDLNAMediaMapperParser->GetType()), "MediaMapper");
}

TEST_F(MediaMapperValidate, MapperParserGetsTheEnvironmentOfItsManager) {
    const ezEnvironment environment;
    mMapper = mFolder.New();
    OpenManager manager(environment.Get());
    manager.AddDLNAMediaMapperParser(mMapper.get());
    EXPECT_EQ(EnvironmentOf::Get(*manager.mDLNAMediaMapperParser), environment.Get());
}

TEST_F(MediaMapperValidate, SecondMapperIsAnAssertionAndChangesNothing) {
    UseTable("clip.mpg,video/mpeg,P\n");
    const DLNAMediaMapperParser* parser = mManager.mDLNAMediaMapperParser;
    const std::unique_ptr<OpenMapper> second = mFolder.Loaded("other.mpg,video/mpeg,Q\n");
    const AssertCatcher assertions;
    mManager.AddDLNAMediaMapperParser(second.get());
    EXPECT_EQ(assertions.Failures(),
              AssertCatcher::Noted({"mDLNAMediaMapperParser == NULL @ MediaParserManager"}));
    EXPECT_EQ(mManager.mDLNAMediaMapperParser, parser);
    EXPECT_EQ(Str(mManager.GetDLNAInfo()), "video/mpeg:DLNA.ORG_PN=P");
    EXPECT_EQ(Validated(nullptr, "/other.mpg"), "null\n");
    mManager.AddDLNAMediaMapperParser(nullptr);
    EXPECT_EQ(assertions.Failures(),
              AssertCatcher::Noted({"mDLNAMediaMapperParser == NULL @ MediaParserManager",
                                    "mDLNAMediaMapperParser == NULL @ MediaParserManager"}));
    EXPECT_EQ(mManager.mDLNAMediaMapperParser, parser);
}

// Records that stay

TEST_F(MediaMapperValidate, WithoutAMapperTheRecordIsReturnedAsItIs) {
    EXPECT_EQ(Validated(NewInfo("video/x", "DLNA.ORG_PN=X")), "dl=\"DLNA.ORG_PN=X\"\nmt=\"video/x\"\n");
    EXPECT_EQ(Validated(nullptr), "null\n");
    EXPECT_TRUE(mLog.Lines().empty());
}

TEST_F(MediaMapperValidate, FileThatTheTableDoesNotKnowKeepsItsRecord) {
    UseTable("clip.mpg,video/mpeg,P\n.mpg,video/mpeg,P\n");
    for (const char* path : {"/media/other.mpg", "/media/clip", "", "/media/clip.mpg/"}) {
        EXPECT_EQ(Validated(NewInfo("video/x", "DLNA.ORG_PN=X"), path),
                  "dl=\"DLNA.ORG_PN=X\"\nmt=\"video/x\"\n")
            << path;
        EXPECT_EQ(Validated(nullptr, path), "null\n") << path;
    }
    EXPECT_TRUE(mLog.Lines().empty());
}

// A record of the table alone

TEST_F(MediaMapperValidate, WithoutARecordTheTablesIsTheResult) {
    UseTable("clip.mpg,video/mpeg,P,0:01:00,,,5000\n");
    EXPECT_EQ(Validated(nullptr),
              "br=5000\ncn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=P\"\ndu=60\nmt=\"video/mpeg\"\n");
    ASSERT_EQ(mLog.Lines().size(), 1U);
    EXPECT_EQ(mLog.Lines()[0].mText, "ezMediaParserManager: Using media mapper\n");
    EXPECT_EQ(mLog.Lines()[0].mLevel, EZLOGLEVEL_INFO);
    EXPECT_EQ(mLog.Lines()[0].mModule, EZLOG_M_PARSERS);
}

// Profile, MIME type and class

TEST_F(MediaMapperValidate, OtherProfileReplacesTheWholeFourthField) {
    UseTable("clip.mpg,video/mpeg,NEW\n");
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "DLNA.ORG_PN=OLD;DLNA.ORG_OP=01;DLNA.ORG_CI=1", "item.x")),
              "cn=\"item.x\"\ndl=\"DLNA.ORG_PN=NEW\"\nmt=\"video/mpeg\"\n");
    ASSERT_EQ(mLog.Lines().size(), 1U);
    EXPECT_EQ(mLog.Lines()[0].mText,
              "ezMediaParserManager: Merging media mapper profile and mime type, replacing "
              "'OLD' by 'NEW' and 'video/mpeg' by 'video/mpeg'\n");
    EXPECT_EQ(mLog.Lines()[0].mLevel, EZLOGLEVEL_INFO);
    EXPECT_EQ(mLog.Lines()[0].mModule, EZLOG_M_PARSERS);
}

TEST_F(MediaMapperValidate, SameProfileAndMimeTypeKeepTheWholeFourthField) {
    UseTable("clip.mpg,video/mpeg,SAME\n");
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "DLNA.ORG_PN=SAME;DLNA.ORG_OP=01;A_B=C=D", "item.x")),
              "cn=\"item.x\"\ndl=\"DLNA.ORG_PN=SAME;DLNA.ORG_OP=01;A_B=C=D\"\nmt=\"video/mpeg\"\n");
    EXPECT_TRUE(mLog.Lines().empty());
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "DLNA.ORG_PN=SAME")),
              "dl=\"DLNA.ORG_PN=SAME\"\nmt=\"video/mpeg\"\n");
    EXPECT_TRUE(mLog.Lines().empty());
}

TEST_F(MediaMapperValidate, ProfileOfARecordIsWhatFollowsTheFirstEqualsSign) {
    UseTable("clip.mpg,video/mpeg,SAME\n");
    for (const char* field : {"DLNA.ORG_OP=01", "DLNA.ORG_OP=01;DLNA.ORG_PN=SAME"}) {
        const LogCatcher log;
        EXPECT_EQ(Validated(NewInfo("video/mpeg", field)), "dl=\"DLNA.ORG_PN=SAME\"\nmt=\"video/mpeg\"\n");
        EXPECT_EQ(log.Texts(),
                  (Texts{"ezMediaParserManager: Merging media mapper profile and mime type, replacing "
                         "'01' by 'SAME' and 'video/mpeg' by 'video/mpeg'\n"}));
    }
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "X=SAME;Y")), "dl=\"X=SAME;Y\"\nmt=\"video/mpeg\"\n");
    EXPECT_TRUE(mLog.Lines().empty());
}

TEST_F(MediaMapperValidate, ProfileOfTheTableIsItsWholeColumn) {
    UseTable("clip.mpg,video/mpeg,SAME;X=1\ntone.pcm,audio/L16;rate=44100;channels=2,LPCM;X=1\n");
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "DLNA.ORG_PN=SAME;DLNA.ORG_OP=01")),
              "dl=\"DLNA.ORG_PN=SAME;X=1\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(mLog.Texts(),
              (Texts{"ezMediaParserManager: Merging media mapper profile and mime type, replacing "
                     "'SAME' by 'SAME;X=1' and 'video/mpeg' by 'video/mpeg'\n"}));
    EXPECT_EQ(Validated(NewInfo("audio/L16;rate=44100;channels=2", "DLNA.ORG_PN=LPCM"), "/tone.pcm"),
              "dl=\"DLNA.ORG_PN=LPCM;X=1\"\nmt=\"audio/L16;rate=44100;channels=2\"\n");
}

TEST_F(MediaMapperValidate, ProfileThatAHostEmptiedIsAnnouncedEmpty) {
    UseTable("clip.mpg,video/mpeg,P\n");
    mMapper->GetFileEntry("clip.mpg")->mProfile = "";
    EXPECT_EQ(Validated(nullptr), "br=0\ncn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "DLNA.ORG_PN=P")), "dl=\"DLNA.ORG_PN=\"\nmt=\"video/mpeg\"\n");
}

TEST_F(MediaMapperValidate, OtherMimeTypeReplacesTheFourthFieldAndTheClass) {
    UseTable("clip.mpg,video/mpeg,SAME\n");
    EXPECT_EQ(Validated(NewInfo("audio/x", "DLNA.ORG_PN=SAME;DLNA.ORG_OP=01", "item.audioItem")),
              "cn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=SAME\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(mLog.Texts(),
              (Texts{"ezMediaParserManager: Merging media mapper profile and mime type, replacing "
                     "'SAME' by 'SAME' and 'audio/x' by 'video/mpeg'\n"}));
}

TEST_F(MediaMapperValidate, ProfileAndMimeTypeThatAreMissingAreReplaced) {
    UseTable("clip.mpg,video/mpeg,P\n");
    EXPECT_EQ(Validated(NewInfo("", "")), "cn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=P\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(mLog.Texts(),
              (Texts{"ezMediaParserManager: Merging media mapper profile and mime type, replacing "
                     "'' by 'P' and '' by 'video/mpeg'\n"}));
    mLog.Clear();
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "*")), "dl=\"DLNA.ORG_PN=P\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(mLog.Texts(),
              (Texts{"ezMediaParserManager: Merging media mapper profile and mime type, replacing "
                     "'' by 'P' and 'video/mpeg' by 'video/mpeg'\n"}));
}

TEST_F(MediaMapperValidate, ProfilesAreComparedWithCase) {
    UseTable("clip.mpg,video/mpeg,Prof\n");
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "DLNA.ORG_PN=PROF;X_Y=1")),
              "dl=\"DLNA.ORG_PN=Prof\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(Validated(NewInfo("video/MPEG", "DLNA.ORG_PN=Prof;X_Y=1")),
              "cn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=Prof\"\nmt=\"video/mpeg\"\n");
}

TEST_F(MediaMapperValidate, ClassIsEmptiedByAMimeTypeWithAnUpperCaseFirstLetter) {
    UseTable("clip.mpg,Audio/mpeg,P\n");
    EXPECT_EQ(Validated(NewInfo("audio/mpeg", "DLNA.ORG_PN=P", "item.audioItem")),
              "dl=\"DLNA.ORG_PN=P\"\nmt=\"Audio/mpeg\"\n");
    // Where the MIME type stays the class stays.
    EXPECT_EQ(Validated(NewInfo("Audio/mpeg", "DLNA.ORG_PN=Q", "item.audioItem")),
              "cn=\"item.audioItem\"\ndl=\"DLNA.ORG_PN=P\"\nmt=\"Audio/mpeg\"\n");
}

// Bit rate and duration

TEST_F(MediaMapperValidate, KnownBitRateReplacesAndStandsFirstInTheMessage) {
    UseTable("clip.mpg,video/mpeg,P,,,,5000\n");
    ezMediaInfo* info = NewInfo("video/mpeg", "DLNA.ORG_PN=P");
    info->Set(kezInfo_BitRate, 7000U, true);
    EXPECT_EQ(Validated(info), "br=5000\ndl=\"DLNA.ORG_PN=P\"\nmt=\"video/mpeg\"\n");
    ASSERT_EQ(mLog.Lines().size(), 1U);
    EXPECT_EQ(mLog.Lines()[0].mText,
              "ezMediaParserManager: Merging media mapper bitrate, replacing 5000 by 7000\n");
    EXPECT_EQ(mLog.Lines()[0].mLevel, EZLOGLEVEL_INFO);
    EXPECT_EQ(mLog.Lines()[0].mModule, EZLOG_M_PARSERS);
    mLog.Clear();
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "DLNA.ORG_PN=P")),
              "br=5000\ndl=\"DLNA.ORG_PN=P\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(mLog.Texts(),
              (Texts{"ezMediaParserManager: Merging media mapper bitrate, replacing 5000 by 0\n"}));
    mLog.Clear();
    info = NewInfo("video/mpeg", "DLNA.ORG_PN=P");
    info->Set(kezInfo_BitRate, 5000U, true);
    EXPECT_EQ(Validated(info), "br=5000\ndl=\"DLNA.ORG_PN=P\"\nmt=\"video/mpeg\"\n");
    EXPECT_TRUE(mLog.Lines().empty());
}

TEST_F(MediaMapperValidate, BitRateIsUnsigned) {
    UseTable("clip.mpg,video/mpeg,P,,,,-1\n");
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "DLNA.ORG_PN=P")),
              "br=4294967295\ndl=\"DLNA.ORG_PN=P\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(mLog.Texts(),
              (Texts{"ezMediaParserManager: Merging media mapper bitrate, replacing 4294967295 by 0\n"}));
}

TEST_F(MediaMapperValidate, KnownDurationReplacesAndStandsFirstInTheMessage) {
    UseTable("clip.mpg,video/mpeg,P,0:01:00\n");
    ezMediaInfo* info = NewInfo("video/mpeg", "DLNA.ORG_PN=P");
    info->Set(kezInfo_Duration, 61U, true);
    EXPECT_EQ(Validated(info), "dl=\"DLNA.ORG_PN=P\"\ndu=60\nmt=\"video/mpeg\"\n");
    ASSERT_EQ(mLog.Lines().size(), 1U);
    EXPECT_EQ(mLog.Lines()[0].mText,
              "ezMediaParserManager: Merging media mapper duration, replacing 60 by 61\n");
    EXPECT_EQ(mLog.Lines()[0].mLevel, EZLOGLEVEL_INFO);
    EXPECT_EQ(mLog.Lines()[0].mModule, EZLOG_M_PARSERS);
    mLog.Clear();
    info = NewInfo("video/mpeg", "DLNA.ORG_PN=P");
    info->Set(kezInfo_Duration, 60U, true);
    EXPECT_EQ(Validated(info), "dl=\"DLNA.ORG_PN=P\"\ndu=60\nmt=\"video/mpeg\"\n");
    EXPECT_TRUE(mLog.Lines().empty());
}

TEST_F(MediaMapperValidate, UnknownBitRateAndDurationReplaceNothing) {
    for (const char* facts : {"", ",junk,,,junk", ",0:00:00,,,0", ",0:99:00"}) {
        const std::unique_ptr<OpenMapper> mapper =
            mFolder.Loaded(std::string("clip.mpg,video/mpeg,P") + facts + "\n");
        OpenManager manager(nullptr);
        manager.AddDLNAMediaMapperParser(mapper.get());
        ezMediaInfo* info = NewInfo("video/mpeg", "DLNA.ORG_PN=P");
        info->Set(kezInfo_BitRate, 7000U, true);
        info->Set(kezInfo_Duration, 61U, true);
        AwkwardStream stream("", Delivery(), "/clip.mpg");
        const Record record(manager.MediaMapperValidate(stream, info));
        EXPECT_EQ(DumpRecord(record.get()), "br=7000\ndl=\"DLNA.ORG_PN=P\"\ndu=61\nmt=\"video/mpeg\"\n")
            << facts;
    }
    EXPECT_TRUE(mLog.Lines().empty());
    UseTable("clip.mpg,video/mpeg,P\n");
    EXPECT_EQ(Validated(NewInfo("video/mpeg", "DLNA.ORG_PN=P")), "dl=\"DLNA.ORG_PN=P\"\nmt=\"video/mpeg\"\n");
}

// Facts of LPCM

TEST_F(MediaMapperValidate, FactsOfLPCMReplaceThoseOfTheRecord) {
    UseTable("clip.pcm,audio/L16;rate=44100;channels=2,LPCM\n");
    ezMediaInfo* info = NewInfo("audio/L16;rate=44100;channels=2", "DLNA.ORG_PN=LPCM;DLNA.ORG_OP=01");
    info->Set(kezInfo_AudioChannelCount, 1U, true);
    info->Set(kezInfo_AudioBitRate, 48000U, true);
    info->Set(kezInfo_AudioBitsPerSample, 24U, true);
    EXPECT_EQ(Validated(info, "/clip.pcm"), "ac=2\nar=44100\nbs=16\ndl=\"DLNA.ORG_PN=LPCM;DLNA.ORG_OP=01\"\n"
                                            "mt=\"audio/L16;rate=44100;channels=2\"\n");
    EXPECT_TRUE(mLog.Lines().empty());
}

TEST_F(MediaMapperValidate, FactsThatTheTablesLPCMLacksAreCopiedAsNone) {
    UseTable("clip.pcm,audio/L16,LPCM\n");
    ezMediaInfo* info = NewInfo("audio/L16", "DLNA.ORG_PN=OTHER"); // what it was before does not matter
    info->Set(kezInfo_AudioChannelCount, 1U, true);
    info->Set(kezInfo_AudioBitRate, 48000U, true);
    EXPECT_EQ(Validated(info, "/clip.pcm"), "ac=0\nar=0\nbs=16\ndl=\"DLNA.ORG_PN=LPCM\"\nmt=\"audio/L16\"\n");
    EXPECT_EQ(Validated(NewInfo("audio/L16", "DLNA.ORG_PN=LPCM"), "/clip.pcm"),
              "ac=0\nar=0\nbs=16\ndl=\"DLNA.ORG_PN=LPCM\"\nmt=\"audio/L16\"\n");
}

TEST_F(MediaMapperValidate, FactsOfOtherProfilesStay) {
    UseTable("clip.pcm,audio/L16;rate=44100;channels=2,LPCM_low\n");
    ezMediaInfo* info = NewInfo("audio/L16", "DLNA.ORG_PN=LPCM");
    info->Set(kezInfo_AudioChannelCount, 1U, true);
    info->Set(kezInfo_AudioBitRate, 48000U, true);
    EXPECT_EQ(Validated(info, "/clip.pcm"),
              "ac=1\nar=48000\ncn=\"item.audioItem\"\ndl=\"DLNA.ORG_PN=LPCM_low\"\n"
              "mt=\"audio/L16;rate=44100;channels=2\"\n");
}

// All of it, and its order

TEST_F(MediaMapperValidate, EveryFactOfARecordIsMergedInOrderAndOthersStay) {
    UseTable("clip.mpg,video/mpeg,NEW,0:01:00,,,5000\n");
    ezMediaInfo* info = NewInfo("audio/x", "DLNA.ORG_PN=OLD", "item.audioItem");
    info->Set(kezInfo_BitRate, 7000U, true);
    info->Set(kezInfo_Duration, 61U, true);
    info->Set(kezInfo_AudioBitRate, 5U, true);
    info->mTitle = "title";
    EXPECT_EQ(Validated(info), "ar=5\nbr=5000\ncn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=NEW\"\ndu=60\n"
                               "mt=\"video/mpeg\"\ntitle=\"title\"\n");
    EXPECT_EQ(mLog.Texts(),
              (Texts{"ezMediaParserManager: Merging media mapper profile and mime type, replacing "
                     "'OLD' by 'NEW' and 'audio/x' by 'video/mpeg'\n",
                     "ezMediaParserManager: Merging media mapper bitrate, replacing 5000 by 7000\n",
                     "ezMediaParserManager: Merging media mapper duration, replacing 60 by 61\n"}));
    EXPECT_EQ(CountedRecord::sCount, 0);
}

TEST_F(MediaMapperValidate, MessagesAreOfInformationLevel) {
    UseTable("clip.mpg,video/mpeg,NEW,0:01:00,,,5000\n");
    const LogCatcher quiet(EZLOGLEVEL_INFO); // errors and warnings
    Validated(NewInfo("audio/x", "DLNA.ORG_PN=OLD"));
    Validated(nullptr);
    EXPECT_TRUE(quiet.Lines().empty());
}

// The table of the architecture page

namespace {

using Rows = std::vector<std::vector<std::string>>;

/// A record of a parser: the texts and numbers that this mix is of, and texts and numbers that nobody
/// replaces.
ezMediaInfo* NewMixed(unsigned aMix) {
    const unsigned field = aMix / 3 % 3;
    ezMediaInfo* info =
        NewInfo(std::array{"", "audio/x", "video/mpeg"}[aMix % 3],
                std::array{"", "DLNA.ORG_PN=OLD;DLNA.ORG_OP=01", "DLNA.ORG_PN=P;A_B=C"}[field], "item.own");
    const auto set = [info](const char* aKey, uint32 aValue) {
        if (aValue != 0) {
            info->Set(aKey, aValue, true);
        }
    };
    set(kezInfo_BitRate, std::array{0U, 5000U, 7000U}[aMix / 9 % 3]);
    set(kezInfo_Duration, std::array{0U, 60U, 61U}[aMix / 27 % 3]);
    for (const char* key : {kezInfo_AudioChannelCount, kezInfo_AudioBitRate, kezInfo_AudioBitsPerSample,
                            kezInfo_MaxBitRate, kezInfo_EstimatedBitRate, kezInfo_AudioMaxBitRate,
                            kezInfo_AudioEstimatedBitRate, kezInfo_AudioTrackCount}) {
        set(key, 9);
    }
    return info;
}
constexpr unsigned kMixes = 81;

bool IsText(const std::string& aKey) {
    return aKey == kezInfo_MimeType || aKey == kezInfo_ClassName || aKey == kezInfo_DLNA;
}

/// Whether the mapper's value replaces that of a record, by what the page says. A word that the page does not
/// use ends the test.
bool IsReplaced(const std::string& aWhere, const char* aKey, const ezMediaInfo& anOwn,
                const ezMediaInfo& aMapped) {
    const auto text = [](const ezMediaInfo& anInfo, const char* aName) {
        return Str(anInfo.GetCString(aName, ""));
    };
    const auto profile = [&](const ezMediaInfo& anInfo) {
        return Str(anInfo.GetCString(kezInfo_DLNA, "").AfterFirst('=').BeforeFirst(';'));
    };
    const bool fType = text(anOwn, kezInfo_MimeType) != text(aMapped, kezInfo_MimeType);
    const uint32 number = aMapped.GetUInt32(aKey, 0);
    const std::map<std::string, bool> answers = {
        {"its profile is `LPCM`", profile(aMapped) == "LPCM"},
        {"the profile or the MIME type differs", fType || profile(anOwn) != profile(aMapped)},
        {"the MIME type differs", fType},
        {"it differs and is not 0", number != 0 && number != anOwn.GetUInt32(aKey, 0)}};
    return answers.at(aWhere);
}

/// Replaces in a record what the page says.
void ReplaceAsTold(const Rows& aTable, ezMediaInfo& anInfo, const ezMediaInfo& aMapped) {
    const Record own(anInfo.Duplicate());
    for (const std::vector<std::string>& row : aTable) {
        for (const std::string& key : GuideNames(row.at(0))) {
            if (!IsReplaced(row.at(1), key.c_str(), *own, aMapped)) {
                continue;
            }
            if (IsText(key)) {
                anInfo.Set(key.c_str(), aMapped.GetCString(key.c_str(), ""), true);
            } else {
                anInfo.Set(key.c_str(), aMapped.GetUInt32(key.c_str(), 0), true);
            }
        }
    }
}

Rows PageOfMapper() {
    return GuideTable(ReadWholeFile(EZ_SAMPLES "/../docs/architecture.md"), {"key", "where"});
}

/// Lines of a mapper for one file: with and without each fact, and the sound of which it knows more.
const Texts kLines = {"clip.mpg,video/mpeg,P\n", "clip.mpg,video/mpeg,P,0:01:00,,,5000\n",
                      "clip.mpg,Audio/mpeg,NEW,0:01:00\n",
                      "clip.mpg,audio/L16;rate=44100;channels=2,LPCM,,,,5000\n", "clip.mpg,audio/L16,LPCM\n"};

} // namespace

TEST_F(MediaMapperValidate, ReplacesWhatThePageSays) {
    const Rows table = PageOfMapper();
    ASSERT_EQ(table.size(), 4U);
    for (const std::string& line : kLines) {
        const std::unique_ptr<OpenMapper> mapper = mFolder.Loaded(line);
        OpenManager manager(nullptr);
        manager.AddDLNAMediaMapperParser(mapper.get());
        AwkwardStream stream("", Delivery(), "/clip.mpg");
        const Record mapped(manager.MediaMapperValidate(stream, nullptr));
        for (unsigned mix = 0; mix < kMixes; ++mix) {
            const Record expected(NewMixed(mix));
            ReplaceAsTold(table, *expected, *mapped);
            const Record merged(manager.MediaMapperValidate(stream, NewMixed(mix)));
            ASSERT_EQ(DumpRecord(merged.get()), DumpRecord(expected.get())) << line << mix;
        }
    }
}

TEST_F(MediaMapperValidate, RowThatChangesOnThePageIsNoticed) {
    const Rows table = PageOfMapper();
    const auto expectNoticed = [&](const Rows& aChanged, const std::string& aWhat) {
        bool fNoticed = false;
        for (const std::string& line : kLines) {
            const std::unique_ptr<OpenMapper> mapper = mFolder.Loaded(line);
            OpenManager manager(nullptr);
            manager.AddDLNAMediaMapperParser(mapper.get());
            AwkwardStream stream("", Delivery(), "/clip.mpg");
            const Record mapped(manager.MediaMapperValidate(stream, nullptr));
            for (unsigned mix = 0; mix < kMixes && !fNoticed; ++mix) {
                const Record told(NewMixed(mix));
                ReplaceAsTold(aChanged, *told, *mapped);
                const Record merged(manager.MediaMapperValidate(stream, NewMixed(mix)));
                fNoticed = DumpRecord(merged.get()) != DumpRecord(told.get());
            }
        }
        EXPECT_TRUE(fNoticed) << aWhat;
    };
    for (std::size_t row = 0; row < table.size(); ++row) {
        Rows without = table;
        without.erase(without.begin() + static_cast<std::ptrdiff_t>(row));
        expectNoticed(without, table[row][0]);
        for (const std::vector<std::string>& other : table) {
            Rows changed = table;
            changed[row][1] = other[1];
            if (changed != table) {
                expectNoticed(changed, table[row][0] + ": " + other[1]);
            }
        }
    }
    EXPECT_THROW(ReplaceAsTold({{"`br`", "always"}}, *Record(NewMixed(0)), *Record(NewMixed(1))),
                 std::out_of_range);
}

// Through the manager's Parse

TEST_F(MediaMapperValidate, ParseHandsTheTablesRecordOnWhereNoParserAnswers) {
    UseTable("clip.mpg,video/mpeg,P\n");
    AwkwardStream stream("0123456789", Delivery(), "/media/clip.mpg");
    stream.SetExtension("MPG");
    const Record record(mManager.Parse(stream));
    EXPECT_EQ(DumpRecord(record.get()), "br=0\ncn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=P\"\nfe=\"mpg\"\nfs="
                                        "10\nmt=\"video/mpeg\"\npath=\"/media/clip.mpg\"\n");
    EXPECT_TRUE(mLog.Has("ezMediaParserManager: Using media mapper\n"));
}

TEST_F(MediaMapperValidate, ParseOfAFileThatNobodyKnowsIsNothing) {
    UseTable("clip.mpg,video/mpeg,P\n");
    AwkwardStream stream("0123456789", Delivery(), "/media/other.mpg");
    EXPECT_EQ(Record(mManager.Parse(stream)), nullptr);
}

TEST_F(MediaMapperValidate, ParseMergesIntoTheWinnersRecordBeforeTheStreamAddsItsFacts) {
    UseTable("clip.mpg,video/mpeg,P,0:01:00,,,5000\n");
    mManager.Add(new AnsweringParser([]() {
        ezMediaInfo* info = NewInfo("audio/x", "DLNA.ORG_PN=OLD;DLNA.ORG_OP=01", "item.audioItem");
        info->Set(kezInfo_FileSize, 5U, true);
        return info;
    }));
    AwkwardStream stream("0123456789", Delivery(), "/media/clip.mpg");
    Record record(mManager.Parse(stream));
    EXPECT_EQ(DumpRecord(record.get()),
              "br=5000\ncn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=P\"\ndu=60\nfe=\"mpg\"\nfs=5\n"
              "mt=\"video/mpeg\"\npath=\"/media/clip.mpg\"\n");
    record.reset();
    EXPECT_EQ(CountedRecord::sCount, 0);
}

TEST_F(MediaMapperValidate, ParseCompletesAWinnersRecordThatHadNoMimeType) {
    UseTable("clip.mpg,video/mpeg,P\n");
    mManager.Add(new AnsweringParser([]() { return new CountedRecord; }));
    AwkwardStream known("", Delivery(), "/media/clip.mpg");
    EXPECT_NE(Record(mManager.Parse(known)), nullptr);
    AwkwardStream unknown("", Delivery(), "/media/other.mpg");
    EXPECT_EQ(Record(mManager.Parse(unknown)), nullptr);
    EXPECT_EQ(CountedRecord::sCount, 0);
}

TEST_F(MediaMapperValidate, MapperParserIsInNoListOfParsers) {
    UseTable("clip.mpg,video/mpeg,P\n");
    AwkwardStream stream("", Delivery(), "/media/clip.mpg");
    EXPECT_EQ(Record(mManager.ParseFromType("MediaMapper", stream)), nullptr);
    EXPECT_EQ(Record(mManager.ParseFromType("*", stream)), nullptr);
    EXPECT_EQ(Record(mManager.ParseCoverArt("video/mpeg", stream)), nullptr);
}
