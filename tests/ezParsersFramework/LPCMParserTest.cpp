#include "ez/LPCMParser.h"

#include "ezPlatform/media/MediaInfo.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

const char* const kDebugLine = "LPCMParser::Parse()\n";

/// A file of any size without any content.
class SizedStream : public AwkwardStream {
public:
    SizedStream(const char* aPath, std::uint64_t aSize) : AwkwardStream("", Delivery(), aPath) {
        mMediaSize = aSize;
    }
};

class Conformance {
public:
    explicit Conformance(uint32 aContext = 1) { mEnvironment.Set("CTTContext", aContext); }

    std::string Parse(const char* aPath, std::uint64_t aSize = 0) const {
        LPCMParser parser(mEnvironment.Get());
        SizedStream stream(aPath, aSize);
        const Record record(parser.Parse(stream));
        EXPECT_EQ(stream.GetCosts().mReads + stream.GetCosts().mSeeks, 0U) << aPath;
        return DumpRecord(record.get());
    }
    ezPropertyList* Get() const { return mEnvironment.Get(); }

private:
    ezEnvironment mEnvironment;
};

/// Leaves its records as Parse made them.
class UnadjustingParser : public LPCMParser {
public:
    using LPCMParser::LPCMParser;
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override {
        mBefore = DumpRecord(anInfo);
        return false;
    }
    std::string mBefore;
};

} // namespace

TEST(LPCMParser, IsFiledUnderItsOwnTypeWithoutCoverArt) {
    const LPCMParser parser(nullptr);
    EXPECT_STREQ(parser.GetType().c_str(), "LPCM");
    EXPECT_FALSE(parser.CanExtractCoverArt());
}

TEST(LPCMParser, OperationsStandInSlotOrder) {
    EXPECT_EQ(VirtualSlotOf(&LPCMParser::Parse), 2U);
    EXPECT_EQ(VirtualSlotOf(&LPCMParser::AdjustDLNAInfo), 3U);
    EXPECT_EQ(VirtualSlotOf(&LPCMParser::GetDLNAInfo), 4U);
}

TEST(LPCMParser, RecognisesTheFourFiles) {
    const Conformance conformance;
    EXPECT_EQ(conformance.Parse("/ctt/b-lpcm-1.pcm"), "ac=1\n"
                                                      "ar=44100\n"
                                                      "bs=16\n"
                                                      "ca=\"LPCM\"\n"
                                                      "cn=\"item.audioItem\"\n"
                                                      "dl=\"DLNA.ORG_PN=LPCM\"\n"
                                                      "mt=\"audio/L16;rate=44100;channels=1\"\n"
                                                      "ta=1\n");
    EXPECT_EQ(conformance.Parse("/ctt/b-lpcm-2.pcm"), "ac=2\n"
                                                      "ar=44100\n"
                                                      "bs=16\n"
                                                      "ca=\"LPCM\"\n"
                                                      "cn=\"item.audioItem\"\n"
                                                      "dl=\"DLNA.ORG_PN=LPCM\"\n"
                                                      "mt=\"audio/L16;rate=44100;channels=2\"\n"
                                                      "ta=1\n");
    EXPECT_EQ(conformance.Parse("/ctt/b-lpcm-3.pcm"), "ac=1\n"
                                                      "ar=48000\n"
                                                      "bs=16\n"
                                                      "ca=\"LPCM\"\n"
                                                      "cn=\"item.audioItem\"\n"
                                                      "dl=\"DLNA.ORG_PN=LPCM\"\n"
                                                      "mt=\"audio/L16;rate=48000;channels=1\"\n"
                                                      "ta=1\n");
    EXPECT_EQ(conformance.Parse("/ctt/b-lpcm-4.pcm"), "ac=2\n"
                                                      "ar=48000\n"
                                                      "bs=16\n"
                                                      "ca=\"LPCM\"\n"
                                                      "cn=\"item.audioItem\"\n"
                                                      "dl=\"DLNA.ORG_PN=LPCM\"\n"
                                                      "mt=\"audio/L16;rate=48000;channels=2\"\n"
                                                      "ta=1\n");
}

TEST(LPCMParser, NameAndExtensionAreRecognisedInAnyCase) {
    const Conformance conformance;
    const std::string expected = conformance.Parse("/ctt/b-lpcm-2.pcm");
    ASSERT_NE(expected, "null\n");
    for (const char* path : {"/ctt/B-LPCM-2.PCM", "/ctt/b-LPCM-2.Pcm", "B-lpcm-2.pcM", "b-lpcm-2.pcm"}) {
        EXPECT_EQ(conformance.Parse(path), expected) << path;
    }
}

TEST(LPCMParser, OtherFilesAreNull) {
    const Conformance conformance;
    for (const char* path : {"/ctt/b-lpcm-2.wav",
                             "/ctt/b-lpcm-2",
                             "/ctt/b-lpcm-2.pcm.wav",
                             "/ctt/b-lpcm-2.",
                             "/ctt/b-lpcm-0.pcm",
                             "/ctt/b-lpcm-5.pcm",
                             "/ctt/b-lpcm-22.pcm",
                             "/ctt/b-lpcm-.pcm",
                             "/ctt/b-lpcm-1x.pcm",
                             "/ctt/xb-lpcm-1.pcm",
                             "/ctt/o-lpcm-1.pcm",
                             "/ctt/lpcm-1.pcm",
                             "/ctt/b_lpcm-1.pcm",
                             "/ctt/b-.pcm",
                             "/ctt/b.pcm",
                             "/ctt/-.pcm",
                             "/ctt/.pcm",
                             "/b-lpcm-1.pcm/",
                             "/b-lpcm-1.pcm/song.pcm",
                             "",
                             "pcm",
                             "/ctt/b-lpcm-1.pcmx"}) {
        EXPECT_EQ(conformance.Parse(path, 176400), "null\n") << path;
    }
}

TEST(LPCMParser, OutsideAConformanceTestEveryFileIsNull) {
    const Conformance none(0);
    LPCMParser withoutEnvironment(nullptr);
    for (const char* path : {"/ctt/b-lpcm-1.pcm", "/ctt/b-lpcm-2.pcm", "/ctt/b-lpcm-3.pcm",
                             "/ctt/b-lpcm-4.pcm", "/ctt/song.pcm"}) {
        EXPECT_EQ(none.Parse(path, 1000), "null\n") << path;
        SizedStream stream(path, 1000);
        EXPECT_EQ(Record(withoutEnvironment.Parse(stream)), nullptr) << path;
    }
}

TEST(LPCMParser, AnyContextButZeroServes) {
    for (const uint32 context : {1U, 2U, 3U, 4294967295U}) {
        EXPECT_NE(Conformance(context).Parse("/ctt/b-lpcm-1.pcm"), "null\n") << context;
    }
}

TEST(LPCMParser, GoesByThePathNotByTheStreamsExtension) {
    const Conformance conformance;
    LPCMParser parser(conformance.Get());
    SizedStream other("/ctt/b-lpcm-1.wav", 1000);
    other.SetExtension("pcm");
    EXPECT_EQ(Record(parser.Parse(other)), nullptr);
    SizedStream good("/ctt/b-lpcm-1.pcm", 1000);
    good.SetExtension("wav");
    EXPECT_NE(Record(parser.Parse(good)), nullptr);
}

TEST(LPCMParser, DurationIsInWholeSecondsAndInMilliseconds) {
    struct Case {
        const char* mPath;
        std::uint64_t mSize;
        std::uint64_t mDuration;
        std::uint64_t mMilliseconds;
    };
    const Conformance conformance;
    for (const Case& example : std::vector<Case>{
             {"/ctt/b-lpcm-1.pcm", 88199, 0, 999},
             {"/ctt/b-lpcm-1.pcm", 88200, 1, 1000},
             {"/ctt/b-lpcm-1.pcm", 176399, 1, 1999},
             {"/ctt/b-lpcm-1.pcm", 176400, 2, 2000},
             {"/ctt/b-lpcm-2.pcm", 1, 0, 0},
             {"/ctt/b-lpcm-2.pcm", 176399, 0, 999},
             {"/ctt/b-lpcm-2.pcm", 176400, 1, 1000},
             {"/ctt/b-lpcm-2.pcm", 352799, 1, 1999},
             {"/ctt/b-lpcm-2.pcm", 352800, 2, 2000},
             {"/ctt/b-lpcm-3.pcm", 95999, 0, 999},
             {"/ctt/b-lpcm-3.pcm", 96000, 1, 1000},
             {"/ctt/b-lpcm-4.pcm", 191999, 0, 999},
             {"/ctt/b-lpcm-4.pcm", 192000, 1, 1000},
             {"/ctt/b-lpcm-4.pcm", 4294967296U, 22369, 22369621},
             {"/ctt/b-lpcm-2.pcm", 17640000000U, 100000, 100000000},
             {"/ctt/b-lpcm-1.pcm", 18446744073709551615U, 209146758205323, 209146758205323714U},
         }) {
        LPCMParser parser(conformance.Get());
        SizedStream stream(example.mPath, example.mSize);
        const Record record(parser.Parse(stream));
        ASSERT_NE(record, nullptr);
        EXPECT_TRUE(record->IsNumber(kezInfo_Duration)) << example.mSize;
        EXPECT_EQ(record->GetUInt64("du", 12345).ToUInt64(), example.mDuration)
            << example.mPath << " " << example.mSize;
        EXPECT_EQ(record->GetUInt64("dm", 12345).ToUInt64(), example.mMilliseconds)
            << example.mPath << " " << example.mSize;
        EXPECT_FALSE(record->Has("md"));
    }
}

TEST(LPCMParser, AnEmptyFileOrOneOfUnknownSizeHasNoDuration) {
    const Conformance conformance;
    LPCMParser parser(conformance.Get());
    SizedStream stream("/ctt/b-lpcm-2.pcm", 0);
    const Record record(parser.Parse(stream));
    ASSERT_NE(record, nullptr);
    EXPECT_FALSE(record->Has("du"));
}

TEST(LPCMParser, ClassAndProfileComeFromTheVirtualAdjustment) {
    const Conformance conformance;
    UnadjustingParser parser(conformance.Get());
    SizedStream stream("/ctt/b-lpcm-2.pcm", 176400);
    const Record record(parser.Parse(stream));
    // Everything but class, profile and duration is there before; the duration alone comes after.
    EXPECT_EQ(parser.mBefore, "ac=2\nar=44100\nbs=16\nca=\"LPCM\"\nmt=\"audio/L16;rate=44100;channels=2\"\n"
                              "ta=1\n");
    EXPECT_EQ(DumpRecord(record.get()), "ac=2\nar=44100\nbs=16\nca=\"LPCM\"\ndm=1000\ndu=1\n"
                                        "mt=\"audio/L16;rate=44100;channels=2\"\nta=1\n");
}

TEST(LPCMParser, LogsOneDebugLineForEveryPcmFileAlsoWhenItDeclines) {
    const Conformance conformance;
    const Conformance none(0);
    for (const char* path : {"/ctt/b-lpcm-2.pcm", "/ctt/b-lpcm-5.pcm", "/ctt/song.PCM"}) {
        for (const Conformance* environment : {&conformance, &none}) {
            LogCatcher log;
            environment->Parse(path);
            ASSERT_EQ(log.Texts(), std::vector<std::string>{kDebugLine}) << path;
            EXPECT_EQ(log.Lines()[0].mLevel, 4);
            EXPECT_EQ(log.Lines()[0].mModule, 10);
        }
        LogCatcher quiet(4);
        conformance.Parse(path);
        EXPECT_TRUE(quiet.Lines().empty()) << path;
    }
}

TEST(LPCMParser, LogsNothingForOtherFiles) {
    LogCatcher log;
    const Conformance conformance;
    for (const char* path : {"/ctt/b-lpcm-2.wav", "/ctt/b-lpcm-2", "/ctt/pcm", ""}) {
        conformance.Parse(path);
    }
    EXPECT_TRUE(log.Lines().empty());
}

TEST(LPCMParser, AdjustsEveryL16TypeWhateverItsRateAndChannelsAndContext) {
    LPCMParser parser(nullptr);
    for (const char* mimeType :
         {"audio/L16;rate=44100;channels=2", "audio/L16;rate=96000;channels=6", "audio/L16", "xaudio/L16x"}) {
        ezMediaInfo info;
        info.Set("mt", mimeType, true);
        EXPECT_TRUE(parser.AdjustDLNAInfo(&info)) << mimeType;
        EXPECT_EQ(DumpRecord(&info),
                  "cn=\"item.audioItem\"\ndl=\"DLNA.ORG_PN=LPCM\"\nmt=\"" + std::string(mimeType) + "\"\n");
    }
}

TEST(LPCMParser, AdjustmentOverwritesClassAndProfileAndKeepsTheRest) {
    LPCMParser parser(nullptr);
    ezMediaInfo info;
    info.Set("mt", "audio/L16;rate=8000;channels=1", true);
    info.Set("cn", "item.videoItem", true);
    info.Set("dl", "*", true);
    info.Set("ar", 8000, true);
    EXPECT_TRUE(parser.AdjustDLNAInfo(&info));
    EXPECT_EQ(DumpRecord(&info), "ar=8000\ncn=\"item.audioItem\"\ndl=\"DLNA.ORG_PN=LPCM\"\n"
                                 "mt=\"audio/L16;rate=8000;channels=1\"\n");
}

TEST(LPCMParser, LeavesOtherTypesAsTheyAre) {
    LPCMParser parser(nullptr);
    for (const char* mimeType : {"audio/mpeg", "audio/l16", "audio/L1", "AUDIO/L16", "audio/ L16", ""}) {
        ezMediaInfo info;
        info.Set("mt", mimeType, true);
        info.Set("cn", "item.videoItem", true);
        const std::string before = DumpRecord(&info);
        EXPECT_FALSE(parser.AdjustDLNAInfo(&info)) << mimeType;
        EXPECT_EQ(DumpRecord(&info), before) << mimeType;
    }
}

TEST(LPCMParser, ANullRecordIsNotAdjusted) {
    LPCMParser parser(nullptr);
    EXPECT_FALSE(parser.AdjustDLNAInfo(nullptr));
}

TEST(LPCMParser, DeclaresItsFourFormatsInEveryContext) {
    const Conformance conformance;
    const Conformance none(0);
    for (ezPropertyList* environment : std::vector<ezPropertyList*>{nullptr, conformance.Get(), none.Get()}) {
        EXPECT_STREQ(LPCMParser(environment).GetDLNAInfo().c_str(),
                     "audio/L16;rate=44100;channels=1:DLNA.ORG_PN=LPCM,"
                     "audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM,"
                     "audio/L16;rate=48000;channels=1:DLNA.ORG_PN=LPCM,"
                     "audio/L16;rate=48000;channels=2:DLNA.ORG_PN=LPCM");
    }
}
