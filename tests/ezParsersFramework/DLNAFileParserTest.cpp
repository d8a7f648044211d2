#include "ez/DLNAFileParser.h"

#include "ezPlatform/media/MediaInfo.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

namespace {

std::string Parse(const std::string& aPath, uint32 aContext = 1) {
    ezEnvironment environment;
    environment.Set("CTTContext", aContext);
    DLNAFileParser parser(environment.Get());
    AwkwardStream stream("content", Delivery(), aPath.c_str());
    const Record record(parser.Parse(stream));
    const AwkwardStream::Costs& costs = stream.GetCosts();
    EXPECT_EQ(costs.mReads + costs.mSeeks, 0U) << aPath; // the content is never looked at
    return DumpRecord(record.get());
}

std::string Dump(const std::string& aClass, const std::string& aDLNA, const std::string& aMimeType) {
    return "cn=\"" + aClass + "\"\ndl=\"" + aDLNA + "\"\nmt=\"" + aMimeType + "\"\n";
}

std::string Mapped(std::string aText, int (*aFunction)(int)) {
    std::transform(aText.begin(), aText.end(), aText.begin(),
                   [&](char aCharacter) { return static_cast<char>(aFunction(aCharacter)); });
    return aText;
}

std::string LowerText(const std::string& aText) {
    return Mapped(aText, std::tolower);
}

std::string UpperText(const std::string& aText) {
    return Mapped(aText, std::toupper);
}

/// What a name gives as soon as it is as long as this.
struct Step {
    std::size_t mLength;
    const char* mDLNA; ///< null: nothing
    const char* mMimeType;
};

/// A name that is recognised, with all its beginnings: a beginning gives what the last step gives that is not
/// longer than it, and null before the first.
struct Family {
    const char* mName;
    std::vector<const char*> mExtensions; ///< those with which it is recognised
    const char* mClass;
    std::vector<Step> mSteps;
};

constexpr const char* kVideo = "item.videoItem";
constexpr const char* kAudio = "item.audioItem";
constexpr const char* kImage = "item.imageItem";
constexpr const char* kMPEG = "video/mpeg";
constexpr const char* kTTS = "video/vnd.dlna.mpeg-tts";

const std::vector<const char*> kMp4 = {"mp4", "3gpp", "3gp", "m4a"};
const std::vector<const char*> kMpg = {"mpg", "mpeg"};
const std::vector<const char*> kMpgAndTts = {"mpg", "mpeg", "tts"};

const std::vector<Family> kFamilies = {
    // 1
    {"B-AVCMP4_BC15A_X", kMp4, kVideo, {{14, "DLNA.ORG_PN=AVC_MP4_BL_CIF15_AAC_520", "video/mp4"}}},
    {"B-AVC_MP4_BL_CIF15_AAC_520-X",
     kMp4,
     kVideo,
     {{26, "DLNA.ORG_PN=AVC_MP4_BL_CIF15_AAC_520", "video/mp4"}}},
    // 2
    {"B-AAC_I_X", kMp4, kAudio, {{7, "DLNA.ORG_PN=AAC_ISO_320", "audio/mp4"}}},
    {"O-AAC_ISO_320", kMp4, kAudio, {{7, "DLNA.ORG_PN=AAC_ISO_320", "audio/mp4"}}},
    // 3
    {"B-AAC_A_X", {"adts"}, kAudio, {{7, "DLNA.ORG_PN=AAC_ADTS_320", "audio/vnd.dlna.adts"}}},
    // 4
    {"B-MP2PS_P1", kMpg, kVideo, {{9, "DLNA.ORG_PN=MPEG_PS_PAL", kMPEG}}},
    {"O-MP2PS_N1", kMpg, kVideo, {{9, "DLNA.ORG_PN=MPEG_PS_NTSC", kMPEG}}},
    {"B-MP2PS_NP", kMpg, kVideo, {{9, "DLNA.ORG_PN=MPEG_PS_NTSC", kMPEG}}},
    // 5: the name alone counts, and where it ends too early it is not PAL
    {"MPEG_PS_PAL_X",
     kMpg,
     kVideo,
     {{8, "DLNA.ORG_PN=MPEG_PS_NTSC", kMPEG}, {9, "DLNA.ORG_PN=MPEG_PS_PAL", kMPEG}}},
    {"MPEG_PS_NTSC_X", kMpg, kVideo, {{8, "DLNA.ORG_PN=MPEG_PS_NTSC", kMPEG}}},
    {"MPEG_PS_XP", kMpg, kVideo, {{8, "DLNA.ORG_PN=MPEG_PS_NTSC", kMPEG}}},
    {"MPEG_PS__P", kMpg, kVideo, {{8, "DLNA.ORG_PN=MPEG_PS_NTSC", kMPEG}}},
    // 6
    {"B-MP2TS_JP-X", kMpgAndTts, kVideo, {{11, "DLNA.ORG_PN=MPEG_TS_JP_T", kTTS}}},
    // 7, in the order of the transport stream table
    {"B-MP2TS_SNT_I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_SD_NA", kTTS},
      {11, "DLNA.ORG_PN=MPEG_TS_SD_NA_T", kTTS},
      {13, "DLNA.ORG_PN=MPEG_TS_SD_NA_ISO", kMPEG}}},
    {"B-MP2TS_SNE_I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_SD_NA", kTTS}, {13, "DLNA.ORG_PN=MPEG_TS_SD_EU_ISO", kMPEG}}},
    {"B-MP2TS_SN_I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_SD_NA", kTTS}, {12, "DLNA.ORG_PN=MPEG_TS_SD_NA_ISO", kMPEG}}},
    {"B-MP2TS_SE_I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_SD_EU", kTTS}, {12, "DLNA.ORG_PN=MPEG_TS_SD_EU_ISO", kMPEG}}},
    {"B-MP2TS_HN_I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_HD_NA", kTTS}, {12, "DLNA.ORG_PN=MPEG_TS_HD_NA_ISO", kMPEG}}},
    {"B-MP2TS_HNT_I",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_HD_NA", kTTS}, {11, "DLNA.ORG_PN=MPEG_TS_HD_NA_T", kTTS}}},
    {"B-MP2TS_HN_T_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_HD_NA", kTTS}, {12, "DLNA.ORG_PN=MPEG_TS_HD_NA_T", kTTS}}},
    {"B-MP2TS_SNT-I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_SD_NA", kTTS}, {11, "DLNA.ORG_PN=MPEG_TS_SD_NA_T", kTTS}}},
    {"B-MP2TS_SKT_I",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_SD_KO", kTTS}, {11, "DLNA.ORG_PN=MPEG_TS_SD_KO_T", kTTS}}},
    {"B-MP2TS_SK_I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_SD_KO", kTTS}, {12, "DLNA.ORG_PN=MPEG_TS_SD_KO_ISO", kMPEG}}},
    {"B-MP2TS_SET_I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_SD_EU", kTTS}, {13, "DLNA.ORG_PN=MPEG_TS_SD_EU_ISO", kMPEG}}},
    {"B-MP2TS_SET-I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_SD_EU", kTTS}, {12, "DLNA.ORG_PN=MPEG_TS_SD_EU_T", kTTS}}},
    {"B-MP2TS_HK_I_X",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_HD_KO", kTTS}, {12, "DLNA.ORG_PN=MPEG_TS_HD_KO_ISO", kMPEG}}},
    {"B-MP2TS_HKT_I",
     kMpg,
     kVideo,
     {{10, "DLNA.ORG_PN=MPEG_TS_HD_KO", kTTS}, {11, "DLNA.ORG_PN=MPEG_TS_HD_KO_T", kTTS}}},
    {"B-MP2TS_HN_X", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_HD_NA", kTTS}}},
    {"B-MP2TS_SN_X", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_SD_NA", kTTS}}},
    {"B-MP2TS_SK_X", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_SD_KO", kTTS}}},
    {"B-MP2TS_SE_X", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_SD_EU", kTTS}}},
    {"B-MP2TS_HK_X", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_HD_KO", kTTS}}},
    // only HN knows "_T" after it, and only SN and SE "T_I"
    {"B-MP2TS_SN_T", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_SD_NA", kTTS}}},
    {"B-MP2TS_SE_T", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_SD_EU", kTTS}}},
    {"B-MP2TS_SK_T", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_SD_KO", kTTS}}},
    {"B-MP2TS_HK_T", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_HD_KO", kTTS}}},
    {"B-MP2TS_HNE_I", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_HD_NA", kTTS}}},
    {"B-MP2TS_SEN_I", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_SD_EU", kTTS}}},
    {"B-MP2TS_SNX", kMpg, kVideo, {{10, "DLNA.ORG_PN=MPEG_TS_SD_NA", kTTS}}},
    // 8
    {"B-JPEG_L-X", {"jpg"}, kImage, {{9, "DLNA.ORG_PN=JPEG_LRG", "image/jpeg"}}},
    {"B-JPEG_M-X", {"jpg"}, kImage, {{9, "DLNA.ORG_PN=JPEG_MED", "image/jpeg"}}},
    {"B-JPEG_S-X", {"jpg"}, kImage, {{9, "DLNA.ORG_PN=JPEG_SM", "image/jpeg"}}},
    {"B-JPEG?L-X", {"jpg"}, kImage, {{9, "DLNA.ORG_PN=JPEG_LRG", "image/jpeg"}}},
    // 9
    {"B-PNG_L-X", {"png"}, kImage, {{8, "DLNA.ORG_PN=PNG_LRG", "image/png"}}},
    {"B-PNG_T-X", {"png"}, kImage, {{8, "DLNA.ORG_PN=PNG_LRG", "image/png"}}},
    {"B-PNG_LI-X", {"png"}, kImage, {{9, "DLNA.ORG_PN=PNG_LRG", "image/png"}}},
    {"B-PNG_SI-X", {"png"}, kImage, {{9, "DLNA.ORG_PN=PNG_LRG", "image/png"}}},
    // 10
    {"B-WVM_B-X", {"wmv"}, kVideo, {{8, "DLNA.ORG_PN=WMVMED_BASE", "video/x-ms-wmv"}}},
    {"B-WVM_F-X", {"wmv"}, kVideo, {{8, "DLNA.ORG_PN=WMVMED_FULL", "video/x-ms-wmv"}}},
    {"B-WVM_P-X", {"wmv"}, kVideo, {{8, "DLNA.ORG_PN=WMVMED_PRO", "video/x-ms-wmv"}}},
    // 11: only the first of these is an "HM"
    {"B-WVH_B-X", {"wmv"}, kVideo, {{8, "DLNA.ORG_PN=WMVHM_BASE", "video/x-ms-wmv"}}},
    {"B-WVH_F-X", {"wmv"}, kVideo, {{8, "DLNA.ORG_PN=WMVHIGH_FULL", "video/x-ms-wmv"}}},
    {"B-WVH_P-X", {"wmv"}, kVideo, {{8, "DLNA.ORG_PN=WMVHIGH_PRO", "video/x-ms-wmv"}}},
    // 12
    {"B-WAB-X", {"wma"}, kAudio, {{5, "DLNA.ORG_PN=WMABASE", "audio/x-ms-wma"}}},
    {"B-WAF-X", {"wma"}, kAudio, {{5, "DLNA.ORG_PN=WMAFULL", "audio/x-ms-wma"}}},
    {"B-WAP-X", {"wma"}, kAudio, {{5, "DLNA.ORG_PN=WMAPRO", "audio/x-ms-wma"}}},
};

const std::vector<const char*> kExtensions = {"mp4", "3gp",  "3gpp", "m4a", "adts", "mpg", "mpeg", "tts",
                                              "jpg", "jpeg", "png",  "wmv", "wma",  "pcm", "avi",  "mp3",
                                              "ts",  "mp",   "mpgx", "asf", "jpe",  "m4v", "mpe",  "mpeg4"};

std::string Expected(const Family& aFamily, const std::string& aName) {
    std::string expected = "null\n";
    for (const Step& step : aFamily.mSteps) {
        if (aName.size() >= step.mLength) {
            expected = Dump(aFamily.mClass, step.mDLNA, step.mMimeType);
        }
    }
    return expected;
}

bool Has(const std::vector<const char*>& aTexts, const std::string& aText) {
    return std::find(aTexts.begin(), aTexts.end(), aText) != aTexts.end();
}

} // namespace

TEST(DLNAFileParser, IsAWildcardParserWithoutCoverArt) {
    const DLNAFileParser parser(nullptr);
    EXPECT_STREQ(parser.GetType().c_str(), "*");
    EXPECT_FALSE(parser.CanExtractCoverArt());
}

TEST(DLNAFileParser, OperationsStandInSlotOrder) {
    EXPECT_EQ(VirtualSlotOf(&DLNAFileParser::Parse), 2U);
    EXPECT_EQ(VirtualSlotOf(&DLNAFileParser::AdjustDLNAInfo), 3U);
    EXPECT_EQ(VirtualSlotOf(&DLNAFileParser::GetDLNAInfo), 4U);
}

TEST(DLNAFileParser, EveryNameAndEveryBeginningOfItGivesItsLiteralResult) {
    LogCatcher log;
    for (const Family& family : kFamilies) {
        const std::string name = family.mName;
        for (const char* extension : family.mExtensions) {
            for (std::size_t length = 0; length <= name.size(); ++length) {
                const std::string beginning = name.substr(0, length);
                EXPECT_EQ(Parse("/ctt/" + beginning + "." + extension), Expected(family, beginning))
                    << beginning << "." << extension;
            }
        }
    }
    EXPECT_TRUE(log.Lines().empty());
}

TEST(DLNAFileParser, CaseOfNameAndExtensionDoesNotMatter) {
    for (const Family& family : kFamilies) {
        const std::string name = family.mName;
        const std::string extension = family.mExtensions[0];
        const std::string expected = Expected(family, name);
        ASSERT_NE(expected, "null\n") << name;
        EXPECT_EQ(Parse(LowerText(name + "." + extension)), expected) << name;
        EXPECT_EQ(Parse(UpperText(name + "." + extension)), expected) << name;
        EXPECT_EQ(Parse(LowerText(name) + "." + UpperText(extension)), expected) << name;
        std::string mixed = name;
        for (std::size_t i = 0; i < mixed.size(); i += 2) {
            mixed[i] = static_cast<char>(std::tolower(mixed[i]));
        }
        EXPECT_EQ(Parse(mixed + "." + extension), expected) << mixed;
    }
}

TEST(DLNAFileParser, ARuleHoldsForItsOwnExtensionsOnly) {
    for (const Family& family : kFamilies) {
        for (const char* extension : kExtensions) {
            if (!Has(family.mExtensions, extension)) {
                EXPECT_EQ(Parse(std::string(family.mName) + "." + extension), "null\n")
                    << family.mName << "." << extension;
            }
        }
        EXPECT_EQ(Parse(family.mName), "null\n") << family.mName;
        EXPECT_EQ(Parse(std::string(family.mName) + "."), "null\n") << family.mName;
    }
}

TEST(DLNAFileParser, BothShortBeginningsServeAndNoOthers) {
    for (const Family& family : kFamilies) {
        const std::string rest = std::string(family.mName).substr(2) + "." + family.mExtensions[0];
        const std::string expected = Expected(family, family.mName);
        if (family.mName[1] == '-') {
            EXPECT_EQ(Parse("B-" + rest), expected) << rest;
            EXPECT_EQ(Parse("O-" + rest), expected) << rest;
            EXPECT_EQ(Parse("o-" + rest), expected) << rest;
        } else {
            // Without its first two characters a name of the rule about whole names is nothing.
            EXPECT_EQ(Parse("B-" + rest), "null\n") << rest;
        }
        for (const char* beginning : {"A-", "C-", "N-", "P-", "B_", "O_", "0-", "--", "", "XB-", " B-"}) {
            EXPECT_EQ(Parse(beginning + rest), "null\n") << beginning << rest;
        }
    }
}

TEST(DLNAFileParser, WholeNamesAreNotKnownAfterAShortBeginning) {
    EXPECT_EQ(Parse("B-MPEG_PS_PAL.mpg"), "null\n");
    EXPECT_EQ(Parse("O-MPEG_PS_NTSC.mpg"), "null\n");
}

TEST(DLNAFileParser, TwoCharactersGoAlsoFromTheLongBeginnings) {
    // "MP2TS_SN_I" leaves "2TS_SN_I", which no rule knows.
    for (const char* path : {"MP2TS_SN_I.mpg", "MP2TS_JP-X.mpg", "MP2TS_JP-X.tts", "MP2TS_.mpg",
                             "MP2TS_SN_I.wmv", "MP2TS_MP2TS_SN_I.mpg", "MPEG_PS_PAL.tts", "MPEG_PS_PAL.wmv",
                             "MPEG_PS_PAL.wma", "MPEG_PS_PAL.jpg", "MPEG_PS_PAL.mp4", "MP2TS_WAB.wma"}) {
        EXPECT_EQ(Parse(path), "null\n") << path;
    }
    EXPECT_EQ(Parse("MPEG_PS.mpg"), "null\n");
    EXPECT_EQ(Parse("MP2PS_P1.mpg"), "null\n");
}

TEST(DLNAFileParser, ARuleWithoutAFittingCaseEndsTheSearch) {
    for (const char* path :
         {// transport streams
          "B-MP2TS_XX_I.mpg", "B-MP2TS_SX_I.mpg", "B-MP2TS_HE_I.mpg", "B-MP2TS_HT.mpg", "B-MP2TS_JP.mpg",
          "B-MP2TS_JP_X.mpg", "B-MP2TS_NS_I.mpg", "B-MP2TS_S.mpg", "B-MP2TS_H.mpg", "B-MP2TS_.mpg",
          "B-MP2TS_-SN_I.mpg", "B-MP2TSSN_I.mpg",
          // pictures
          "B-JPEG_T-X.jpg", "B-JPEG_LL-X.jpg", "B-JPEG_L_X.jpg", "B-JPEGL-X.jpg", "B-JPEG__L-X.jpg",
          "B-JPG_L-X.jpg", "B-PNG_S-X.png", "B-PNG_I-X.png", "B-PNG_TI-X.png", "B-PNG_M-X.png",
          "B-PNGL-X.png", "B-PNG_LI_X.png", "B-PNG__L-X.png",
          // video and audio
          "B-WVM_Q-X.wmv", "B-WVM_B_X.wmv", "B-WVMB-X.wmv", "B-WVM__B-X.wmv", "B-WVH_Q-X.wmv",
          "B-WVH_B_X.wmv", "B-WVX_B-X.wmv", "B-WAX-X.wma", "B-WMABASE.wma", "B-XWAB.wma", "B-WA.wma",
          "B-.wma",
          // names near those of the other rules
          "B-AVCMP4_BC15B.mp4", "B-AVC_MP4_BL_CIF30_AAC_520.mp4", "B-AAC_X.mp4", "B-AAC_A.mp4",
          "B-AAC_I.adts", "B-MP2PS_X.mpg", "B-MP2PS_.mpg", "B-MP2PSP.mpg", "B-B-MP2PS_P.mpg"}) {
        EXPECT_EQ(Parse(path), "null\n") << path;
    }
}

TEST(DLNAFileParser, TheExamplesThatItIsKnownBy) {
    EXPECT_EQ(Parse("b-mp2ts_sn_i_x.mpg"),
              "cn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=MPEG_TS_SD_NA_ISO\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(Parse("B-MP2TS_SN_X.mpg"),
              "cn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=MPEG_TS_SD_NA\"\nmt=\"video/vnd.dlna.mpeg-tts\"\n");
    EXPECT_EQ(Parse("MPEG_PS_PAL_X.mpeg"),
              "cn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=MPEG_PS_PAL\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(Parse("MP2TS_SN_I.mpg"), "null\n");
    EXPECT_EQ(Parse("O-MP2PS_N1.mpg"),
              "cn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=MPEG_PS_NTSC\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(Parse("B-AAC_I_X.m4a"),
              "cn=\"item.audioItem\"\ndl=\"DLNA.ORG_PN=AAC_ISO_320\"\nmt=\"audio/mp4\"\n");
    EXPECT_EQ(Parse("B-WVM_Q-X.wmv"), "null\n");
    EXPECT_EQ(Parse("B-X.pcm"), "null\n");
    EXPECT_EQ(Parse("B-JPEG_L-X.JPG"),
              "cn=\"item.imageItem\"\ndl=\"DLNA.ORG_PN=JPEG_LRG\"\nmt=\"image/jpeg\"\n");
    EXPECT_EQ(Parse("MPEG_PS_.mpg"),
              "cn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=MPEG_PS_NTSC\"\nmt=\"video/mpeg\"\n");
}

TEST(DLNAFileParser, OnlyTheLastComponentOfThePathCounts) {
    const std::string expected = Parse("B-WAB.wma");
    ASSERT_NE(expected, "null\n");
    EXPECT_EQ(Parse("/a/b.c/B-WAB.wma"), expected);
    EXPECT_EQ(Parse("relative/B-WAB.wma"), expected);
    EXPECT_EQ(Parse("/B-WAB/song.wma"), "null\n");
    EXPECT_EQ(Parse("/B-WAB.wma/song"), "null\n");
    EXPECT_EQ(Parse("/B-WAB.wma/"), "null\n");
    EXPECT_EQ(Parse("B-WAB.x.wma"), expected); // the extension is what follows the last dot
    EXPECT_EQ(Parse("B-MP2TS_SN.I.mpg"), Dump(kVideo, "DLNA.ORG_PN=MPEG_TS_SD_NA", kTTS));
}

TEST(DLNAFileParser, GoesByThePathNotByTheStreamsExtension) {
    ezEnvironment environment;
    environment.Set("CTTContext", 1);
    DLNAFileParser parser(environment.Get());
    AwkwardStream good("", Delivery(), "/ctt/B-WAB.wma");
    good.SetExtension("avi");
    EXPECT_NE(Record(parser.Parse(good)), nullptr);
    AwkwardStream other("", Delivery(), "/ctt/B-WAB.avi");
    other.SetExtension("wma");
    EXPECT_EQ(Record(parser.Parse(other)), nullptr);
}

TEST(DLNAFileParser, AbsurdNamesAreNull) {
    ezEnvironment environment;
    environment.Set("CTTContext", 1);
    DLNAFileParser parser(environment.Get());
    const std::string nul("B-MP2TS_\0N_I.mpg", 16);
    const std::string high = "B-\xFF\xFE.mpg";
    for (const std::string& path : std::vector<std::string>{"",
                                                            ".",
                                                            "..",
                                                            "/",
                                                            ".mpg",
                                                            ".wma",
                                                            "B",
                                                            "O",
                                                            "B-",
                                                            "O-",
                                                            "B-.mpg",
                                                            "O-.jpg",
                                                            "B-.png",
                                                            "B-.wmv",
                                                            "MP2TS",
                                                            "MPEG_PS",
                                                            "B-" + std::string(1 << 20, 'A') + ".mpg",
                                                            std::string(1 << 20, 'B') + ".mpg",
                                                            nul,
                                                            high}) {
        AwkwardStream stream("", Delivery(), "");
        stream.SetFullPath(ezCString(path.data(), path.size()));
        EXPECT_EQ(Record(parser.Parse(stream)), nullptr) << path.substr(0, 40);
    }
    AwkwardStream stream("", Delivery(), "");
    const std::string endless = "MPEG_PS_P" + std::string(1 << 20, 'A') + ".mpg";
    stream.SetFullPath(endless.c_str());
    EXPECT_EQ(DumpRecord(Record(parser.Parse(stream)).get()), Dump(kVideo, "DLNA.ORG_PN=MPEG_PS_PAL", kMPEG));
}

TEST(DLNAFileParser, OutsideAConformanceTestEveryNameIsNull) {
    LogCatcher log;
    DLNAFileParser withoutEnvironment(nullptr);
    for (const Family& family : kFamilies) {
        const std::string path = std::string(family.mName) + "." + family.mExtensions[0];
        EXPECT_EQ(Parse(path, 0), "null\n") << path;
        AwkwardStream stream("", Delivery(), path.c_str());
        EXPECT_EQ(Record(withoutEnvironment.Parse(stream)), nullptr) << path;
    }
    EXPECT_EQ(Parse("b-lpcm-1.pcm", 0), "null\n");
    EXPECT_TRUE(log.Lines().empty()); // nor was the LPCM parser asked
}

TEST(DLNAFileParser, AnyContextButZeroServes) {
    for (const uint32 context : {1U, 2U, 7U, 4294967295U}) {
        EXPECT_EQ(Parse("B-WAB.wma", context), Dump(kAudio, "DLNA.ORG_PN=WMABASE", "audio/x-ms-wma"));
    }
}

TEST(DLNAFileParser, LPCMFilesAreTheLPCMParsers) {
    const std::string dump = "ac=2\n"
                             "ar=44100\n"
                             "bs=16\n"
                             "ca=\"LPCM\"\n"
                             "cn=\"item.audioItem\"\n"
                             "dl=\"DLNA.ORG_PN=LPCM\"\n"
                             "dm=0\n"
                             "du=0\n"
                             "mt=\"audio/L16;rate=44100;channels=2\"\n"
                             "ta=1\n";
    const std::vector<std::string> line = {"LPCMParser::Parse()\n"};
    LogCatcher log;
    EXPECT_EQ(Parse("/ctt/B-LPCM-2.PCM"), dump);
    EXPECT_EQ(log.Texts(), line);
    // Asked for every known beginning, it declines the rest itself.
    for (const char* path :
         {"B-X.pcm", "O-LPCM-2.pcm", "MP2TS_.pcm", "MPEG_PS_PAL.pcm", "B-MP2TS_SN_I.pcm"}) {
        log.Clear();
        EXPECT_EQ(Parse(path), "null\n") << path;
        EXPECT_EQ(log.Texts(), line) << path;
    }
    log.Clear();
    EXPECT_EQ(Parse("song.pcm"), "null\n");
    EXPECT_TRUE(log.Lines().empty());
}

TEST(DLNAFileParser, AdjustsNothing) {
    ezEnvironment environment;
    environment.Set("CTTContext", 1);
    DLNAFileParser parser(environment.Get());
    ezMediaInfo info;
    info.Set("mt", "audio/L16", true);
    EXPECT_FALSE(parser.AdjustDLNAInfo(&info));
    EXPECT_EQ(DumpRecord(&info), "mt=\"audio/L16\"\n");
    EXPECT_FALSE(parser.AdjustDLNAInfo(nullptr));
}

TEST(DLNAFileParser, AdvertisesTheWholeListDuringAConformanceTest) {
    ezEnvironment environment;
    DLNAFileParser parser(environment.Get());
    for (const uint32 context : {1U, 2U, 9U}) {
        environment.Set("CTTContext", context);
        EXPECT_STREQ(parser.GetDLNAInfo().c_str(), "video/mp4:DLNA.ORG_PN=AVC_MP4_BL_CIF15_AAC_520,"
                                                   "audio/mp4:DLNA.ORG_PN=AAC_ISO_320,"
                                                   "audio/3gpp:DLNA.ORG_PN=AAC_ISO_320,"
                                                   "audio/vnd.dlna.adts:DLNA.ORG_PN=AAC_ADTS_320,"
                                                   "video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL,"
                                                   "video/mpeg:DLNA.ORG_PN=MPEG_PS_NTSC,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_JP_T,"
                                                   "video/mpeg:DLNA.ORG_PN=MPEG_TS_SD_EU_ISO,"
                                                   "video/mpeg:DLNA.ORG_PN=MPEG_TS_SD_NA_ISO,"
                                                   "video/mpeg:DLNA.ORG_PN=MPEG_TS_HD_NA_ISO,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_HD_NA,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_HD_NA_T,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_SD_NA_T,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_SD_KO_T,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_SD_EU,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_SD_EU_T,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_HD_KO_T,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_SD_NA,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_SD_KO,"
                                                   "video/vnd.dlna.mpeg-tts:DLNA.ORG_PN=MPEG_TS_HD_KO,"
                                                   "video/mpeg:DLNA.ORG_PN=MPEG_TS_HD_KO_ISO,"
                                                   "video/mpeg:DLNA.ORG_PN=MPEG_TS_SD_KO_ISO,"
                                                   "audio/L16;rate=44100;channels=1:DLNA.ORG_PN=LPCM,"
                                                   "audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM,"
                                                   "audio/L16;rate=48000;channels=1:DLNA.ORG_PN=LPCM,"
                                                   "audio/L16;rate=48000;channels=2:DLNA.ORG_PN=LPCM");
    }
}

TEST(DLNAFileParser, AdvertisesNothingOutsideAConformanceTest) {
    ezEnvironment environment;
    EXPECT_TRUE(DLNAFileParser(environment.Get()).GetDLNAInfo().IsEmpty());
    environment.Set("CTTContext", 0);
    EXPECT_TRUE(DLNAFileParser(environment.Get()).GetDLNAInfo().IsEmpty());
    EXPECT_TRUE(DLNAFileParser(nullptr).GetDLNAInfo().IsEmpty());
}
