#include "companions/ezFormats/rules/ProfileKit.h"

#include "ezFormats/detail/FormatMimeTypes.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

using Texts = std::vector<std::string>;

// What a table says.

TEST(ProfileRules, FirstRuleWhoseConditionsAreAllMetDecides) {
    const std::string table = "JPEG_SM  image/jpeg width=1-640\tcolours=grey,4:2:0\n"
                              "JPEG_MED\timage/jpeg  width=1-1024\n"
                              "JPEG_LRG image/jpeg colours=grey\n";
    EXPECT_EQ(ProfileBy(table, "mt=image/jpeg wi=640 cr=grey"), "JPEG_SM");
    EXPECT_EQ(ProfileBy(table, "mt=image/jpeg wi=640 cr=4:4:4"), "JPEG_MED");
    EXPECT_EQ(ProfileBy(table, "mt=image/jpeg wi=1025 cr=grey"), "JPEG_LRG");
    EXPECT_EQ(ProfileBy(table, "mt=image/jpeg wi=1025 cr=4:2:0"), "");
    EXPECT_EQ(ProfileBy(table, "mt=image/png wi=640 cr=grey"), "");
}

TEST(ProfileRules, RangesHoldBothTheirEnds) {
    const std::string table = "JPEG_SM image/jpeg width=10-20,30,40-";
    for (const int width : {10, 15, 20, 30, 40, 4000000}) {
        EXPECT_EQ(ProfileBy(table, "mt=image/jpeg wi=" + std::to_string(width)), "JPEG_SM") << width;
    }
    for (const int width : {1, 9, 21, 29, 31, 39}) {
        EXPECT_EQ(ProfileBy(table, "mt=image/jpeg wi=" + std::to_string(width)), "") << width;
    }
    EXPECT_EQ(ProfileBy("JPEG_SM image/jpeg width=1-9,2-3", "mt=image/jpeg wi=5"), "JPEG_SM");
    EXPECT_EQ(ProfileBy("JPEG_SM image/jpeg width=-20", "mt=image/jpeg wi=1"), "JPEG_SM");
    EXPECT_EQ(ProfileBy("JPEG_SM image/jpeg width=-20", "mt=image/jpeg wi=21"), "");
}

TEST(ProfileRules, NumbersTakeDecimalsKAndM) {
    const std::string table = "MP3 audio/mpeg sampling-rate=44.1k audio-bit-rate=1.5k-0.32M";
    EXPECT_EQ(ProfileBy(table, "mt=audio/mpeg sf=44100 ar=1500"), "MP3");
    EXPECT_EQ(ProfileBy(table, "mt=audio/mpeg sf=44100 ar=320000"), "MP3");
    EXPECT_EQ(ProfileBy(table, "mt=audio/mpeg sf=44100 ar=320320"), "MP3");
    EXPECT_EQ(ProfileBy(table, "mt=audio/mpeg sf=44100 ar=320321"), "");
    EXPECT_EQ(ProfileBy(table, "mt=audio/mpeg sf=44099 ar=2000"), "");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg audio-bit-rate=-4294967294", "mt=audio/mpeg ar=4294967294"), "MP3");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg channels=0000000000000002", "mt=audio/mpeg ac=2"), "MP3")
        << "16 digits";
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg channels=00000000000000002"),
              Texts({"1: \"00000000000000002\" is not a number or range that channels can be"}));
}

TEST(ProfileRules, FrameRatesAreMetAHundredthBelowAndAThousandthAbove) {
    const std::string table = "AVC_MP4_HP_HD_AAC video/mp4 frame-rate=23.976,29.97,50-60";
    for (const char* const rate : {"23966", "23999", "29960", "29970", "29999", "49990", "60060"}) {
        EXPECT_EQ(ProfileBy(table, std::string("mt=video/mp4 fr=") + rate), "AVC_MP4_HP_HD_AAC") << rate;
    }
    for (const char* const rate : {"23965", "24000", "29959", "30000", "49989", "60061", "0"}) {
        EXPECT_EQ(ProfileBy(table, std::string("mt=video/mp4 fr=") + rate), "") << rate;
    }
    EXPECT_EQ(ProfileBy("AVC_MP4_HP_HD_AAC video/mp4 frame-rate=4294967.294", "mt=video/mp4 fr=4294967294"),
              "AVC_MP4_HP_HD_AAC");
    EXPECT_EQ(ProfileBy("AVC_MP4_HP_HD_AAC video/mp4 frame-rate=0.005", "mt=video/mp4 fr=1"),
              "AVC_MP4_HP_HD_AAC");
}

TEST(ProfileRules, LevelsReadAsTheCodecWritesThem) {
    const std::string table = "AVC_MP4_HP_HD_AAC video/mp4 video-level=1b-1.2,3\n"
                              "MPEG4_P2_MP4_SP_AAC video/mp4 video-level=0,0.1-0.8";
    for (const char* const level : {"9", "10", "12", "30"}) {
        EXPECT_EQ(ProfileBy(table, std::string("mt=video/mp4 vl=") + level), "AVC_MP4_HP_HD_AAC") << level;
    }
    for (const char* const level : {"0", "1", "8"}) {
        EXPECT_EQ(ProfileBy(table, std::string("mt=video/mp4 vl=") + level), "MPEG4_P2_MP4_SP_AAC") << level;
    }
    for (const char* const level : {"13", "29", "31", "3"}) {
        EXPECT_NE(ProfileBy(table, std::string("mt=video/mp4 vl=") + level), "AVC_MP4_HP_HD_AAC") << level;
    }
}

TEST(ProfileRules, LevelsOfMPEG2AndWMV9HaveNames) {
    const std::vector<std::pair<std::string, std::string>> names = {
        {"Low", "10"}, {"Main", "20"}, {"Medium", "20"}, {"High1440", "30"}, {"High", "40"}};
    for (const auto& [name, level] : names) {
        for (const char* const stated : {"9", "10", "20", "30", "40", "41"}) {
            EXPECT_EQ(ProfileBy("AVC_MP4_HP_HD_AAC video/mp4 video-level=" + name,
                                std::string("mt=video/mp4 vl=") + stated),
                      stated == level ? "AVC_MP4_HP_HD_AAC" : "")
                << name << " of " << stated;
        }
    }
    for (const char* const level : {"20", "30", "40"}) {
        EXPECT_EQ(ProfileBy("AVC_MP4_HP_HD_AAC video/mp4 video-level=Main-High",
                            std::string("mt=video/mp4 vl=") + level),
                  "AVC_MP4_HP_HD_AAC");
    }
    EXPECT_EQ(ProblemsOf("AVC_MP4_HP_HD_AAC video/mp4 channels=Main video-level=High-Low,main"),
              Texts({"1: \"Main\" is not a number or range that channels can be",
                     "1: nothing meets video-level=\"High-Low\": it ends before it begins"}));
}

// Sizes.

TEST(ProfileRules, SizeIsOneOfAList) {
    const std::string table = "JPEG_SM image/jpeg size=640x480,320x1,65535x65535";
    for (const char* const size : {"wi=640 he=480", "wi=320 he=1", "wi=65535 he=65535"}) {
        EXPECT_EQ(ProfileBy(table, std::string("mt=image/jpeg ") + size), "JPEG_SM") << size;
    }
    for (const char* const size :
         {"wi=639 he=480", "wi=641 he=480", "wi=640 he=479", "wi=640 he=481", "wi=320 he=480", "wi=640 he=1",
          "wi=640", "he=480", "wi=640 he=0", "wi=4294967295 he=480"}) {
        EXPECT_EQ(ProfileBy(table, std::string("mt=image/jpeg ") + size), "") << size;
    }
    EXPECT_EQ(ProfileBy("JPEG_SM image/jpeg size=4294967294x4294967294",
                        "mt=image/jpeg wi=4294967294 he=4294967294"),
              "JPEG_SM");
}

TEST(ProfileRules, SizeUpToOneHoldsEachSideByItself) {
    const std::string table = "JPEG_SM image/jpeg size=-640x480,-200x600";
    for (const char* const size :
         {"wi=640 he=480", "wi=1 he=1", "wi=200 he=600", "wi=1 he=600", "wi=640 he=1"}) {
        EXPECT_EQ(ProfileBy(table, std::string("mt=image/jpeg ") + size), "JPEG_SM") << size;
    }
    for (const char* const size : {"wi=641 he=480", "wi=640 he=481", "wi=201 he=600", "wi=200 he=601",
                                   "wi=0 he=480", "wi=640 he=0", "he=480", "wi=640"}) {
        EXPECT_EQ(ProfileBy(table, std::string("mt=image/jpeg ") + size), "") << size;
    }
}

TEST(ProfileRules, SizeMayHaveARateOfItsOwn) {
    const std::string table = "AVC_MP4_HP_HD_AAC video/mp4 size=720x576@25,-352x288@1-15,640x480";
    const auto meets = [&](const char* aFacts) {
        return ProfileBy(table, std::string("mt=video/mp4 ") + aFacts) == "AVC_MP4_HP_HD_AAC";
    };
    for (const char* const facts :
         {"wi=720 he=576 fr=24990", "wi=720 he=576 fr=25025", "wi=352 he=288 fr=990",
          "wi=352 he=288 fr=15015", "wi=1 he=1 fr=8000", "wi=640 he=480 fr=60000", "wi=640 he=480",
          "wi=640 he=480 fr=4294967295"}) {
        EXPECT_TRUE(meets(facts)) << facts;
    }
    for (const char* const facts :
         {"wi=720 he=576 fr=24989", "wi=720 he=576 fr=25026", "wi=352 he=288 fr=989",
          "wi=352 he=288 fr=15016", "wi=353 he=288 fr=15000", "wi=352 he=288 fr=25000", "wi=720 he=576",
          "wi=720 he=576 fr=0", "wi=720 he=576 fr=4294967295", "wi=641 he=480 fr=25000"}) {
        EXPECT_FALSE(meets(facts)) << facts;
    }
}

TEST(ProfileRules, CheckRefusesWhatIsNoSize) {
    for (const char* const item :
         {"640", "640x", "x480", "x", "-", "640X480", "640x480x2", "--640x480", "640x-480", "640x480-", "@25",
          "1.5x2", "axb", "4294967295x1", "1x4294967295", "1x99999999999999999", "640 x480"}) {
        const std::string word = std::string(item).substr(0, std::string(item).find(' '));
        EXPECT_EQ(ProblemsOf(std::string("JPEG_SM image/jpeg size=") + item).front(),
                  "1: \"" + word + "\" is not a size: these are 352x288, -352x288 and 352x288@25")
            << item;
    }
    EXPECT_EQ(ProblemsOf("JPEG_SM image/jpeg size=0x480\nJPEG_SM image/jpeg size=-640x0\n"
                         "JPEG_SM image/jpeg size=640x480@\nJPEG_SM image/jpeg size=640x480@fast\n"
                         "JPEG_SM image/jpeg size=640x480@30-25\nJPEG_SM image/jpeg size=640x480@0\n"
                         "JPEG_SM image/jpeg size=640x480@1@2\nJPEG_SM image/jpeg size=1x1,,2x2\n"
                         "JPEG_SM image/jpeg size=1x1 size=2x2"),
              Texts({"1: nothing meets size=\"0x480\": 0 is what is not known",
                     "2: nothing meets size=\"-640x0\": 0 is what is not known",
                     "3: \"\" is not a number or range that frame-rate can be",
                     "4: \"fast\" is not a number or range that frame-rate can be",
                     "5: nothing meets frame-rate=\"30-25\": it ends before it begins",
                     "6: nothing meets frame-rate=\"0\": 0 is what is not known",
                     "7: \"1@2\" is not a number or range that frame-rate can be",
                     "8: an item of size is empty", "9: size is asked for twice"}));
}

TEST(ProfileRules, MoreThanSixtyFourSizesOfOneConditionAreAProblem) {
    std::string table = "JPEG_SM image/jpeg size=1x1";
    for (int i = 2; i <= 64; ++i) {
        table += "," + std::to_string(i) + "x1";
    }
    EXPECT_EQ(ProblemsOf(table), Texts());
    EXPECT_EQ(ProfileBy(table, "mt=image/jpeg wi=64 he=1"), "JPEG_SM");
    EXPECT_EQ(ProblemsOf(table + ",65x1"), Texts({"1: more than 64 sizes"}));
}

TEST(ProfileRules, RuleOfSizesLosesToOneThatHoldsThemAll) {
    const auto loses = [](const char* anEarlier, const char* aLater) {
        return ProblemsOf(std::string("JPEG_MED image/jpeg ") + anEarlier + "\nJPEG_SM image/jpeg " + aLater)
                   .size() == 1;
    };
    const std::vector<std::pair<const char*, const char*>> losers = {
        {"size=640x480,320x240", "size=320x240"},
        {"size=-640x480", "size=640x480,-320x240@25"},
        {"size=-640x480@1-30", "size=-640x480@25"},
        {"width=1-640", "size=640x480,320x240"},
        {"height=1-480", "size=640x480,320x240"},
        {"frame-rate=1-30", "size=640x480@25,320x240@30"},
        {"size=-640x480", "width=1-640 height=480"},
        {"size=-640x480@1-30", "frame-rate=25,30 height=100-480 width=1-20,640"}};
    for (const auto& [earlier, later] : losers) {
        EXPECT_TRUE(loses(earlier, later)) << earlier << " before " << later;
    }
    const std::vector<std::pair<const char*, const char*>> winners = {
        {"size=640x480,320x240", "size=320x240,320x241"},
        {"size=-640x480@1-30", "size=640x480"},
        {"size=-640x480@1-30", "size=640x480@50"},
        {"size=640x480", "size=-640x480"},
        {"width=1-639", "size=640x480,320x240"},
        {"height=1-479", "size=640x480,320x240"},
        {"frame-rate=1-30", "size=640x480@25,320x240"},
        {"size=-640x480", "width=1-640"},
        {"size=-640x480", "height=1-480"},
        {"size=-640x480", "width=1-640 height=1-481"},
        {"size=-640x480@1-30", "width=1-640 height=1-480"},
        {"channels=1", "size=640x480"}};
    for (const auto& [earlier, later] : winners) {
        EXPECT_FALSE(loses(earlier, later)) << earlier << " before " << later;
    }
}

// Containers.

TEST(ProfileRules, ContainerIsOneOfTheKnownOnes) {
    for (const char* const container : {"MP4", "3GP", "3G2", "MOV", "PS", "MPEG1", "TS", "TTS", "TTS-zero",
                                        "MKV", "WebM", "ASF", "AVI", "FLV", "RM", "DV", "MXF", "Ogg"}) {
        const std::string table = std::string("AVC_MP4_HP_HD_AAC video/mp4 container=") + container;
        EXPECT_EQ(ProfileBy(table, std::string("mt=video/mp4 ct=") + container), "AVC_MP4_HP_HD_AAC");
        EXPECT_EQ(ProfileBy(table, std::string("mt=video/mp4 ct=x") + container), "");
        EXPECT_EQ(ProfileBy(table, "mt=video/mp4"), "");
    }
    EXPECT_EQ(ProfileBy("AVC_MP4_HP_HD_AAC video/mp4 container=TS,TTS", "mt=video/mp4 ct=TTS"),
              "AVC_MP4_HP_HD_AAC");
    EXPECT_EQ(ProfileBy("AVC_MP4_HP_HD_AAC video/mp4 container=TS,TTS", "mt=video/mp4 ct=TTS-zero"), "");
    EXPECT_EQ(ProblemsOf("AVC_MP4_HP_HD_AAC video/mp4 container=TS,mp4\nMP3 audio/mpeg ct=TTS-"),
              Texts({"1: no container is named \"mp4\"", "2: no container is named \"TTS-\""}));
}

// The MIME type to announce.

TEST(ProfileRules, RuleMayAnnounceAnotherMimeType) {
    const std::shared_ptr<const ProfileRules> rules =
        ProfileRules::FromText("AAC_ISO  video/mp4>Audio/MP4,audio/3gpp channels=2\n"
                               "AMR_3GPP video/mp4\n",
                               nullptr);
    ASSERT_NE(rules, nullptr);
    const auto match = [&rules](const char* aRecord) {
        const ProfileMatch found = rules->FindMatch(*RecordOf(aRecord));
        return Str(found.mProfile) + " " + Str(found.mMimeType);
    };
    EXPECT_EQ(match("mt=video/mp4 ac=2"), "AAC_ISO audio/mp4");
    EXPECT_EQ(match("mt=VIDEO/MP4;codecs=avc1 ac=2"), "AAC_ISO audio/mp4");
    EXPECT_EQ(match("mt=audio/mp4 ac=2"), "AAC_ISO ") << "as it was announced";
    EXPECT_EQ(match("mt=audio/3gpp ac=2"), "AAC_ISO ");
    EXPECT_EQ(match("mt=video/mp4 ac=6"), "AMR_3GPP ");
    EXPECT_EQ(match("mt=audio/mp4 ac=6"), " ");
    EXPECT_EQ(match("mt=audio/mpeg ac=2"), " ");
    EXPECT_EQ(Str(rules->GetProfileInfo("video/mp4,audio/mp4,audio/3gpp")),
              "audio/mp4:DLNA.ORG_PN=AAC_ISO,audio/3gpp:DLNA.ORG_PN=AAC_ISO,video/mp4:DLNA.ORG_PN=AMR_3GPP,"
              "video/mp4:*,audio/mp4:*,audio/3gpp:*");
    EXPECT_EQ(Str(rules->GetProfileInfo("video/mp4")),
              "audio/mp4:DLNA.ORG_PN=AAC_ISO,video/mp4:DLNA.ORG_PN=AMR_3GPP,video/mp4:*");
}

TEST(ProfileRules, EachStatedMimeTypeIsAnnouncedByItsOwnItem) {
    const std::shared_ptr<const ProfileRules> rules =
        ProfileRules::FromText("AAC_ISO video/mp4>audio/mp4,audio/mp4>audio/3gpp", nullptr);
    ASSERT_NE(rules, nullptr);
    EXPECT_EQ(Str(rules->FindMatch(*RecordOf("mt=video/mp4")).mMimeType), "audio/mp4");
    EXPECT_EQ(Str(rules->FindMatch(*RecordOf("mt=audio/mp4")).mMimeType), "audio/3gpp");
    EXPECT_EQ(Str(rules->FindMatch(*RecordOf("mt=audio/3gpp")).mMimeType), "");
    EXPECT_EQ(Str(rules->FindMatch(*RecordOf("mt=audio/3gpp")).mProfile), "AAC_ISO");
}

TEST(ProfileRules, CheckRefusesWhatNamesNoTwoMimeTypes) {
    EXPECT_EQ(
        ProblemsOf("MP3 audio/unheard>audio/mpeg\nMP3 audio/mpeg>\nMP3 >audio/mpeg\n"
                   "MP3 audio/mpeg>audio/mp4>audio/3gpp\nMP3 audio/mpeg>audio/mpeg\n"
                   "MP3 audio/mpeg>audio/mp4,audio/mpeg>audio/3gpp\nMP3 audio/mpeg>audio/mp4;x=1\n"
                   "MP3 video/mp4>audio/mp4,audio/mp4\n"
                   "MP3X audio/mp4>audio/3gpp"),
        Texts({"1: no parser here gives the MIME type \"audio/unheard\"",
               "2: no parser here gives the MIME type \"\"", "3: no parser here gives the MIME type \"\"",
               "4: no parser here gives the MIME type \"audio/mp4>audio/3gpp\"",
               "5: the MIME type \"audio/mpeg\" stands twice", "6: the MIME type \"audio/mpeg\" stands twice",
               "7: no parser here gives the MIME type \"audio/mp4;x=1\""}));
    EXPECT_EQ(ProblemsOf("MP3 video/mp4>audio/mp4\nMP3X audio/mp4"),
              Texts({"2: this rule can never win: the one of line 1 wins whenever it would"}));
}

TEST(ProfileRules, ProfileMayAskForAnotherNameOfWhatAParserStates) {
    const auto rules = ProfileRules::FromText("AAC_ISO audio/mp4>audio/x-m4a channels=2", nullptr);
    ASSERT_NE(rules, nullptr);
    EXPECT_EQ(Str(rules->FindMatch(*RecordOf("mt=audio/mp4 ac=2")).mMimeType), "audio/x-m4a");
    EXPECT_EQ(Str(rules->FindMatch(*RecordOf("mt=audio/x-m4a ac=2")).mProfile), "AAC_ISO");
    EXPECT_EQ(ProblemsOf("AAC_ISO audio/x-m4a"),
              Texts({"1: no parser here gives the MIME type \"audio/x-m4a\""}));
}

TEST(ProfileRules, WordsCompareWithCase) {
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg audio-codec=MP3,mpga", "mt=audio/mpeg ca=mpga"), "MP3");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg audio-codec=MP3,mpga", "mt=audio/mpeg ca=mp3"), "");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg audio-codec=HE-AAC", "mt=audio/mpeg ca=HE-AAC"), "MP3");
}

TEST(ProfileRules, FactsGoByTheirKeysToo) {
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg ca=MP3 sf=44.1k ac=2 ar=128k bs=16 ta=1",
                        "mt=audio/mpeg ca=MP3 sf=44100 ac=2 ar=128000 bs=16 ta=1"),
              "MP3");
    EXPECT_EQ(
        ProfileBy("JPEG_SM image/jpeg wi=1 he=2 pr=x cr=y cd=8", "mt=image/jpeg wi=1 he=2 pr=x cr=y cd=8"),
        "JPEG_SM");
    EXPECT_EQ(ProfileBy("AVC_MP4_HP_HD_AAC video/mp4 vc=H264 vp=High vl=4 fr=25 vr=1M br=2M",
                        "mt=video/mp4 vc=H264 vp=High vl=40 fr=25000 vr=1000000 br=2000000"),
              "AVC_MP4_HP_HD_AAC");
}

TEST(ProfileRules, EveryFactIsReadFromItsOwnKey) {
    const std::vector<std::pair<std::string, std::string>> facts = {
        {"audio-codec=x", "ca=x"},    {"sampling-rate=7", "sf=7"},   {"channels=7", "ac=7"},
        {"audio-bit-rate=7", "ar=7"}, {"bits-per-sample=7", "bs=7"}, {"audio-tracks=7", "ta=7"},
        {"video-codec=x", "vc=x"},    {"video-profile=x", "vp=x"},   {"video-level=0.7", "vl=7"},
        {"width=7", "wi=7"},          {"height=7", "he=7"},          {"frame-rate=7", "fr=7000"},
        {"video-bit-rate=7", "vr=7"}, {"bit-rate=7", "br=7"},        {"process=x", "pr=x"},
        {"colours=x", "cr=x"},        {"bit-depth=7", "cd=7"},       {"container=TS", "ct=TS"}};
    for (const auto& asked : facts) {
        for (const auto& stated : facts) {
            EXPECT_EQ(ProfileBy("MP3 audio/mpeg " + asked.first, "mt=audio/mpeg " + stated.second),
                      asked == stated ? "MP3" : "")
                << asked.first << " of " << stated.second;
        }
    }
}

TEST(ProfileRules, BitRateIsTheMaximumElseTheRateElseTheEstimate) {
    const std::vector<std::pair<std::string, Texts>> rates = {{"audio-bit-rate", {"ma", "ar", "ea"}},
                                                              {"video-bit-rate", {"mv", "vr", "ev"}},
                                                              {"bit-rate", {"mb", "br", "eb"}}};
    for (const auto& rate : rates) {
        const std::string& fact = rate.first;
        const Texts& keys = rate.second;
        const std::string table = "MP3 audio/mpeg " + fact + "=100";
        const auto found = [&](const char* aMaximum, const char* aRate, const char* anEstimate) {
            return ProfileBy(table, "mt=audio/mpeg " + keys[0] + "=" + aMaximum + " " + keys[1] + "=" +
                                        aRate + " " + keys[2] + "=" + anEstimate) == "MP3";
        };
        EXPECT_TRUE(found("100", "7", "7")) << fact;
        EXPECT_FALSE(found("7", "100", "100")) << fact;
        EXPECT_TRUE(found("", "100", "7")) << fact;
        EXPECT_TRUE(found("0", "100", "7")) << fact;
        EXPECT_FALSE(found("0", "7", "100")) << fact;
        EXPECT_TRUE(found("100", "4294967295", "7")) << fact;
        EXPECT_TRUE(found("4294967295", "4294967295", "100")) << fact;
        EXPECT_TRUE(found("", "", "100")) << fact;
    }
}

TEST(ProfileRules, RateOfLPCMIsItsSamplingRate) {
    const std::string table = "LPCM audio/mp4 audio-codec=LPCM sampling-rate=48k\n"
                              "MP3 audio/mp4 audio-bit-rate=1-";
    EXPECT_EQ(ProfileBy(table, "mt=audio/mp4 ca=LPCM ar=48000"), "LPCM");
    EXPECT_EQ(ProfileBy(table, "mt=audio/mp4 ca=LPCM sf=48000 ar=44100"), "LPCM");
    EXPECT_EQ(ProfileBy(table, "mt=audio/mp4 ca=LPCM ar=44100"), "");
    EXPECT_EQ(ProfileBy(table, "mt=audio/mp4 ca=LPCM ar=44100 ma=44100 ea=44100"), "") << "derived";
    EXPECT_EQ(ProfileBy(table, "mt=audio/mp4 ca=AAC ar=44100"), "MP3");
}

// A name is never borrowed.

TEST(ProfileRules, WhatIsNotStatedOrVariesMeetsNoCondition) {
    for (const char* const fact :
         {"sampling-rate", "channels", "audio-bit-rate", "bits-per-sample", "width", "height", "frame-rate",
          "video-bit-rate", "bit-rate", "bit-depth", "audio-tracks", "video-level"}) {
        const std::string table = std::string("MP3 audio/mpeg ") + fact + "=-";
        EXPECT_EQ(ProblemsOf(table).size(), 1U) << "a range needs an end";
        const std::string any = std::string("MP3 audio/mpeg ") + fact + "=0-";
        EXPECT_EQ(ProfileBy(any, "mt=audio/mpeg"), "") << fact;
        EXPECT_EQ(ProfileBy(any, "mt=audio/mpeg sf=4294967295 ac=4294967295 ar=4294967295 bs=4294967295 "
                                 "wi=4294967295 he=4294967295 fr=4294967295 vr=4294967295 br=99999999999 "
                                 "cd=4294967295 ta=4294967295 vl=4294967295"),
                  "")
            << fact;
        EXPECT_EQ(
            ProfileBy(
                any,
                "mt=audio/mpeg sf=x ac=-1 ar=1.5 bs=16bit wi=?? he=1,2 fr=29.97 vr=k br=M cd=0x8 ta=a vl=1b"),
            "")
            << fact;
    }
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg colours=grey", "mt=audio/mpeg"), "");
}

TEST(ProfileRules, ZeroIsUnknownButForTracksAndLevels) {
    for (const char* const fact : {"sampling-rate", "channels", "audio-bit-rate", "bits-per-sample", "width",
                                   "height", "frame-rate", "video-bit-rate", "bit-rate", "bit-depth"}) {
        EXPECT_EQ(ProfileBy(std::string("MP3 audio/mpeg ") + fact + "=0-1",
                            "mt=audio/mpeg sf=0 ac=0 ar=0 ma=0 ea=0 bs=0 wi=0 he=0 fr=0 vr=0 br=0 cd=0"),
                  "")
            << fact;
    }
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg audio-tracks=0", "mt=audio/mpeg ta=0"), "MP3");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg video-level=0", "mt=audio/mpeg vl=0"), "MP3");
}

TEST(ProfileRules, RecordWithoutAMimeTypeOfTheTableHasNoProfile) {
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg", "ca=MP3"), "");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg", "mt=audio/x-wav ca=MP3"), "");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg", "mt=audio/mpeg4"), "");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg", "mt=audio/mpe"), "");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg", "mt=;audio/mpeg"), "");
}

TEST(ProfileRules, CaseAndParametersOfTheMimeTypeDoNotMatter) {
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg", "mt=Audio/MPEG"), "MP3");
    EXPECT_EQ(ProfileBy("AAC_ISO audio/mp4", "mt=audio/mp4;codecs=mp4a"), "AAC_ISO");
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "audio/mp4 ; codecs=mp4a", true);
    EXPECT_EQ(Str(ProfileRules::FromText("AAC_ISO AUDIO/mp4", nullptr)->FindProfile(info)), "AAC_ISO");
}

TEST(ProfileRules, RuleIsForEachOfItsMimeTypes) {
    const std::string table = "AAC_ISO audio/mp4,audio/3gpp channels=2";
    EXPECT_EQ(ProfileBy(table, "mt=audio/mp4 ac=2"), "AAC_ISO");
    EXPECT_EQ(ProfileBy(table, "mt=audio/3gpp ac=2"), "AAC_ISO");
    EXPECT_EQ(ProfileBy(table, "mt=video/mp4 ac=2"), "");
}

// How a table is written.

TEST(ProfileRules, CommentsBlankLinesAndLineEndsDoNotCount) {
    const std::string table = "\xEF\xBB\xBF# all of it\r\n\r\n \t \n"
                              "\t MP3 audio/mpeg # width=0\r\n"
                              "JPEG_SM image/jpeg #\n"
                              "PNG_LRG image/png width=1 #x";
    EXPECT_EQ(ProblemsOf(table), Texts());
    EXPECT_EQ(ProfileBy(table, "mt=audio/mpeg"), "MP3");
    EXPECT_EQ(ProfileBy(table, "mt=image/jpeg"), "JPEG_SM");
    EXPECT_EQ(ProfileBy(table, "mt=image/png wi=1"), "PNG_LRG");
    EXPECT_EQ(ProfileBy("MP3 audio/mpeg audio-codec=a#b", "mt=audio/mpeg ca=a#b"), "MP3") << "within a word";
}

TEST(ProfileRules, TableWithoutARuleIsSoundAndGivesNothing) {
    for (const char* const table : {"", "\n", "# nothing", "\xEF\xBB\xBF", " \t\r\n"}) {
        EXPECT_EQ(ProblemsOf(table), Texts());
        EXPECT_EQ(ProfileBy(table, "mt=audio/mpeg ca=MP3 sf=44100 ac=2 ar=128000"), "");
    }
    EXPECT_EQ(Str(ProfileRules::FromText("", nullptr)->GetProfileInfo("audio/mpeg")), "audio/mpeg:*");
}

// What the check finds.

TEST(ProfileRules, CheckNamesEveryProblemWithItsLine) {
    const std::string table = "MP3X audio/mpeg audio-codec=MP3\n"
                              "MP4 audio/mpeg\n"
                              "# fine\n"
                              "MP3\n"
                              "MP3 audio/unheard,audio/mpeg,,audio/mpeg\n"
                              "MP3 audio/mpeg MP3 tempo=3 channels=two width=9-8\n"
                              "MP3 audio/mpeg audio-codec=MP3 channels=2\n";
    EXPECT_EQ(ProblemsOf(table), Texts({
                                     "2: DLNA knows no profile \"MP4\"",
                                     "4: no MIME type stands after the profile",
                                     "5: no parser here gives the MIME type \"audio/unheard\"",
                                     "5: no parser here gives the MIME type \"\"",
                                     "5: the MIME type \"audio/mpeg\" stands twice",
                                     "6: \"MP3\" is no condition: these are fact=values",
                                     "6: no fact is named \"tempo\"",
                                     "6: \"two\" is not a number or range that channels can be",
                                     "6: nothing meets width=\"9-8\": it ends before it begins",
                                     "7: this rule can never win: the one of line 1 wins whenever it would",
                                 }));
    EXPECT_EQ(ProfileRules::FromText(table, nullptr), nullptr);
}

TEST(ProfileRules, CheckRefusesWhatIsNoNumberOfTheFact) {
    for (const char* const condition : {"channels=1..2",
                                        "channels=1.5",
                                        "channels=.5",
                                        "channels=5.",
                                        "channels=+1",
                                        "channels=1 k",
                                        "channels=k",
                                        "channels=1kk",
                                        "channels=1K",
                                        "channels=1m",
                                        "channels=0x10",
                                        "channels=-",
                                        "channels=1-2-3",
                                        "channels=--2",
                                        "channels=1b",
                                        "channels=00000000000000002",
                                        "channels=4294967295",
                                        "channels=99999999999999999999",
                                        "channels=9999999999M",
                                        "channels=1e3",
                                        "frame-rate=2.9.97",
                                        "frame-rate=18446744074M",
                                        "channels=18446744073709551617",
                                        "frame-rate=29.9701",
                                        "frame-rate=5000000",
                                        "video-level=1.25",
                                        "video-level=1c",
                                        "sampling-rate=44.10001k"}) {
        EXPECT_EQ(ProblemsOf(std::string("MP3 audio/mpeg ") + condition).size(), 1U) << condition;
    }
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg sampling-rate=44.100k,0.0441M frame-rate=29.970 video-level=1.20"),
              Texts());
}

TEST(ProfileRules, CheckRefusesConditionsThatNothingCanMeet) {
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg width=2-1"),
              Texts({"1: nothing meets width=\"2-1\": it ends before it begins"}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg frame-rate=30-29.97"),
              Texts({"1: nothing meets frame-rate=\"30-29.97\": it ends before it begins"}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg width=0"),
              Texts({"1: nothing meets width=\"0\": 0 is what is not known"}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg frame-rate=-0").size(), 1U);
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg width=1 height=2 width=1"), Texts({"1: width is asked for twice"}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg width=1 wi=1"), Texts({"1: width is asked for twice"}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg audio-codec="), Texts({"1: an item of audio-codec is empty"}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg audio-codec=MP3,"), Texts({"1: an item of audio-codec is empty"}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg width=,1"), Texts({"1: an item of width is empty"}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg =1"), Texts({"1: no fact is named \"\""}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg Width=1"), Texts({"1: no fact is named \"Width\""}));
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg;x=y"),
              Texts({"1: no parser here gives the MIME type \"audio/mpeg;x=y\""}));
}

TEST(ProfileRules, RuleThatAnEarlierOneAlwaysBeatsIsFound) {
    const std::string loses = "2: this rule can never win: the one of line 1 wins whenever it would";
    const auto second = [](const std::string& aFirst, const std::string& aSecond) {
        const Texts problems = ProblemsOf("MP3 " + aFirst + "\nMP3X " + aSecond);
        return problems.empty() ? std::string() : problems.front();
    };
    EXPECT_EQ(second("audio/mpeg", "audio/mpeg"), loses);
    EXPECT_EQ(second("audio/mpeg", "audio/mpeg width=1"), loses);
    EXPECT_EQ(second("audio/mpeg width=1-9", "audio/mpeg width=1-9"), loses);
    EXPECT_EQ(second("audio/mpeg width=1-9", "audio/mpeg height=3 width=2,5-9"), loses);
    EXPECT_EQ(second("audio/mpeg width=1-4,5-9", "audio/mpeg width=2-8"), loses)
        << "ranges that touch are one";
    EXPECT_EQ(second("audio/mpeg width=7-9,1-5", "audio/mpeg width=2,8"), loses);
    EXPECT_EQ(second("audio/mpeg frame-rate=1-30", "audio/mpeg frame-rate=29.97"), loses);
    EXPECT_EQ(second("audio/mpeg ca=b,a,c", "audio/mpeg audio-codec=c,a,a"), loses);
    EXPECT_EQ(second("audio/mp4,audio/mpeg width=1", "audio/mpeg width=1"), loses);

    EXPECT_EQ(second("audio/mpeg width=1", "audio/mpeg"), "");
    EXPECT_EQ(second("audio/mpeg width=1", "audio/mpeg height=1"), "");
    EXPECT_EQ(second("audio/mpeg width=1-9", "audio/mpeg width=1-10"), "");
    EXPECT_EQ(second("audio/mpeg width=2-9", "audio/mpeg width=1-9"), "");
    EXPECT_EQ(second("audio/mpeg width=1-4,6-9", "audio/mpeg width=2-8"), "");
    EXPECT_EQ(second("audio/mpeg ca=a", "audio/mpeg ca=a,b"), "");
    EXPECT_EQ(second("audio/mpeg width=1", "audio/mp4 width=1"), "");
    EXPECT_EQ(second("audio/mpeg width=1", "audio/mpeg,audio/mp4 width=1"), "");
}

TEST(ProfileRules, RuleLosesWhenEachOfItsMimeTypesHasAnEarlierWinner) {
    EXPECT_EQ(ProblemsOf("MP3 audio/mpeg\nMP3 audio/mp4 width=1-2\nMP3X audio/mpeg,audio/mp4 width=2\n"
                         "MP3X audio/mpeg,audio/mp4 width=3"),
              Texts({"3: this rule can never win: the one of line 2 wins whenever it would"}));
}

TEST(ProfileRules, LoserIsBeatenByTheTableThatItStandsIn) {
    // What the check says is true: the rule never wins, and does as soon as the one before it is gone.
    const std::string winner = "MP3 audio/mpeg width=1-9\n";
    const std::string loser = "MP3X audio/mpeg width=5\n";
    EXPECT_EQ(ProblemsOf(winner + loser).size(), 1U);
    EXPECT_EQ(ProfileBy(loser, "mt=audio/mpeg wi=5"), "MP3X");
    EXPECT_EQ(ProfileBy(loser + winner, "mt=audio/mpeg wi=5"), "MP3X");
    EXPECT_EQ(ProfileBy(loser + winner, "mt=audio/mpeg wi=6"), "MP3");
}

TEST(ProfileRules, ProblemsArePrintableWhateverTheTextHolds) {
    std::string noise;
    for (int i = 0; i < 4096; ++i) {
        noise += static_cast<char>(i * 37 % 256);
        noise += static_cast<char>(i / 16);
    }
    const Texts tables = {
        noise, "MP\xC3\xA9 audio/\x1B[2J\n", "MP3 audio/mpeg width=\x01\x7F colours=\n" + noise,
        std::string("MP3 audio/mpeg w\0=1", 19), "MP3 audio/mpeg " + std::string(5000, 'x') + "=1"};
    for (const std::string& table : tables) {
        const Texts problems = ProblemsOf(table);
        EXPECT_FALSE(problems.empty());
        for (const std::string& problem : problems) {
            EXPECT_LT(problem.size(), 160U);
            EXPECT_TRUE(std::all_of(problem.begin(), problem.end(), [](char aCharacter) {
                return aCharacter >= ' ' && aCharacter <= '~';
            })) << problem;
        }
    }
    EXPECT_EQ(ProblemsOf("MP\xC3\xA9 audio/mpeg"), Texts({"1: DLNA knows no profile \"MP??\""}));
    EXPECT_EQ(ProblemsOf(std::string(40, 'A') + " audio/mpeg"),
              Texts({"1: DLNA knows no profile \"" + std::string(40, 'A') + "\""}));
    EXPECT_EQ(ProblemsOf(std::string(41, 'A') + " audio/mpeg"),
              Texts({"1: DLNA knows no profile \"" + std::string(40, 'A') + "...\""}));
}

TEST(ProfileRules, DamagedTableIsReadOrRefusedWithAReason) {
    const std::string whole(ProfileRules::BuiltInText());
    const auto check = [](const std::string& aText) {
        std::vector<ProfileRulesProblem> problems;
        const bool fSound = ProfileRules::FromText(aText, &problems) != nullptr;
        EXPECT_EQ(fSound, problems.empty());
        return fSound;
    };
    std::size_t refused = 0;
    for (std::size_t i = 0; i < whole.size(); i += 197) {
        std::string damaged = whole;
        damaged[i] = static_cast<char>(damaged[i] ^ (1 << i % 8));
        refused += check(damaged) ? 0 : 1;
        refused += check(whole.substr(0, i)) ? 0 : 1;
    }
    EXPECT_GT(refused, 100U);
}

TEST(ProfileRules, TableOfMoreThan256KiBIsAProblem) {
    const std::string rule = "MP3 audio/mpeg\n";
    const std::string largest = rule + std::string(262144 - rule.size(), '#');
    EXPECT_EQ(ProblemsOf(largest), Texts());
    EXPECT_EQ(ProblemsOf(largest + "#"), Texts({"0: the table is larger than 262144 bytes"}));
}

TEST(ProfileRules, MoreThanTwoThousandRulesAreAProblem) {
    const std::vector<std::string> types = StatedMimeTypes();
    std::string table = "# a comment is no rule\n\n";
    for (std::size_t i = 0; i < 2000; ++i) {
        table += "MP3 " + types[i % 10] + " wi=" + std::to_string(i + 1) + "\n";
    }
    EXPECT_EQ(ProblemsOf(table + "# none\n"), Texts());
    EXPECT_EQ(ProblemsOf(table + "MP3 audio/mpeg he=1\nMP4 x\n"), Texts({"2003: more than 2000 rules"}));
}

TEST(ProfileRules, UnreadableRulesCountAsRules) {
    std::string table;
    for (int i = 0; i < 2005; ++i) {
        table += "x\n";
    }
    const Texts problems = ProblemsOf(table);
    EXPECT_EQ(problems.size(), 2U * 2000 + 1);
    EXPECT_EQ(problems.back(), "2001: more than 2000 rules");
}

TEST(ProfileRules, ProblemsTakeThePlaceOfWhatWasThere) {
    std::vector<ProfileRulesProblem> problems(3, {7, "old"});
    EXPECT_NE(ProfileRules::FromText("MP3 audio/mpeg", &problems), nullptr);
    EXPECT_TRUE(problems.empty());
    problems.assign(3, {7, "old"});
    EXPECT_EQ(ProfileRules::FromText("MP4 audio/mpeg", &problems), nullptr);
    EXPECT_EQ(problems.size(), 1U);
}

// From a file.

TEST(ProfileRulesFile, IsReadLikeItsText) {
    const TemporaryFolder folder;
    std::vector<ProfileRulesProblem> problems(1, {7, "old"});
    const std::string good = folder.Write("good.txt", "JPEG_SM image/jpeg width=1-9\r\n");
    const std::shared_ptr<const ProfileRules> rules = ProfileRules::FromFile(good.c_str(), &problems);
    ASSERT_NE(rules, nullptr);
    EXPECT_TRUE(problems.empty());
    EXPECT_EQ(Str(rules->FindProfile(*RecordOf("mt=image/jpeg wi=9"))), "JPEG_SM");

    const std::string bad = folder.Write("bad.txt", "\n\nJPEG_SM image/jpeg width=9-1\n");
    EXPECT_EQ(ProfileRules::FromFile(bad.c_str(), &problems), nullptr);
    ASSERT_EQ(problems.size(), 1U);
    EXPECT_EQ(problems[0].mLine, 3U);
    EXPECT_EQ(ProfileRules::FromFile(bad.c_str(), nullptr), nullptr);

    const std::string empty = folder.Write("empty.txt", "");
    EXPECT_NE(ProfileRules::FromFile(empty.c_str(), &problems), nullptr);
    EXPECT_TRUE(problems.empty());
}

TEST(ProfileRulesFile, ThatCannotBeReadIsAProblemOfTheWholeFile) {
    const TemporaryFolder folder;
    const std::string large = folder.Write("large.txt", std::string(262145, '#'));
    const std::vector<std::pair<std::string, std::string>> cases = {
        {folder.Path("missing.txt"), "the file cannot be opened"},
        {folder.GetPath(), "the file cannot be opened"},
        {large, "the table is larger than 262144 bytes"}};
    for (const auto& [path, text] : cases) {
        std::vector<ProfileRulesProblem> problems;
        EXPECT_EQ(ProfileRules::FromFile(path.c_str(), &problems), nullptr);
        ASSERT_EQ(problems.size(), 1U);
        EXPECT_EQ(problems[0].mLine, 0U);
        EXPECT_EQ(problems[0].mText, text);
        EXPECT_EQ(ProfileRules::FromFile(path.c_str(), nullptr), nullptr);
    }
}

// What can be announced.

TEST(ProfileRules, ProfileInfoListsEachEntryOnceInTheOrderOfTheTable) {
    const std::shared_ptr<const ProfileRules> rules =
        ProfileRules::FromText("AAC_ISO_320 audio/3gpp,audio/mp4 width=1\n"
                               "AMR_WBplus audio/3gpp\n"
                               "AAC_ISO_320 audio/mp4 width=2\n"
                               "MP3 audio/mpeg\n",
                               nullptr);
    ASSERT_NE(rules, nullptr);
    EXPECT_EQ(Str(rules->GetProfileInfo("audio/mp4,audio/3gpp")),
              "audio/mp4:DLNA.ORG_PN=AAC_ISO_320,audio/3gpp:DLNA.ORG_PN=AAC_ISO_320,audio/"
              "3gpp:DLNA.ORG_PN=AMR_WBplus,"
              "audio/mp4:*,audio/3gpp:*");
    EXPECT_EQ(Str(rules->GetProfileInfo("audio/mpeg")), "audio/mpeg:DLNA.ORG_PN=MP3,audio/mpeg:*");
    EXPECT_EQ(Str(rules->GetProfileInfo("audio/mpeg,audio/mpeg")), "audio/mpeg:DLNA.ORG_PN=MP3,audio/mpeg:*");
    EXPECT_EQ(Str(rules->GetProfileInfo("audio/x-wav")), "audio/x-wav:*");
    EXPECT_EQ(Str(rules->GetProfileInfo("")), "");
}

TEST(ProfileRules, TableIsSharedByThreads) {
    std::atomic<int> found{0};
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&found] {
            for (int j = 0; j < 200; ++j) {
                found += ProfileOf("mt=audio/mpeg ca=MP3 sf=44100 ac=2 ar=128000") == "MP3" ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(found, 800);
    EXPECT_EQ(ProfileRules::BuiltIn(), ProfileRules::BuiltIn());
}

TEST(ProfileRules, MeasuredRateMayLieAThousandthAboveANominalOne) {
    const auto meets = [](const char* aCondition, const char* aFact) {
        return ProfileBy(std::string("MP3 audio/mpeg ") + aCondition,
                         std::string("mt=audio/mpeg ") + aFact) == "MP3";
    };
    for (const std::string name : {"audio-bit-rate", "video-bit-rate", "bit-rate"}) {
        const std::string key = name == "bit-rate" ? "br=" : name == "audio-bit-rate" ? "ar=" : "vr=";
        const std::string condition = name + "=100k-256k";
        EXPECT_TRUE(meets(condition.c_str(), (key + "256164").c_str()));
        EXPECT_TRUE(meets(condition.c_str(), (key + "256256").c_str()));
        EXPECT_FALSE(meets(condition.c_str(), (key + "256257").c_str()));
        EXPECT_TRUE(meets(condition.c_str(), (key + "100000").c_str()));
        EXPECT_FALSE(meets(condition.c_str(), (key + "99999").c_str()));
    }
    EXPECT_TRUE(meets("frame-rate=1-30", "fr=30020"));
    EXPECT_TRUE(meets("frame-rate=1-30", "fr=30030"));
    EXPECT_FALSE(meets("frame-rate=1-30", "fr=30031"));
    EXPECT_TRUE(meets("frame-rate=23.976", "fr=23999"));
    EXPECT_FALSE(meets("frame-rate=23.976", "fr=24000"));
    EXPECT_TRUE(meets("frame-rate=24", "fr=23990"));
    EXPECT_FALSE(meets("frame-rate=24", "fr=23989"));
    EXPECT_FALSE(meets("sampling-rate=48k", "sf=48001")); // stated, not measured
    EXPECT_FALSE(meets("width=1-640", "wi=641"));
}
