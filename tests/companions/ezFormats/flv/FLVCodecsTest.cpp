#include "ezFormats/flv/FLVCodecs.h"

#include "companions/ezFormats/flv/FLVKit.h"

TEST(FLVCodecs, VP6IsCutAsItsFirstByteSays) {
    const std::string frame = Hex({0x78, 0x46, 10, 12, 10, 12});
    const auto film = [](const std::string& aContent) {
        return Values(Header() + MetaData(Number("width", 320) + Number("height", 240)) + Video(0, aContent),
                      {"vc", "wi", "he"});
    };
    EXPECT_EQ(film(Hex({0x14, 0x06}) + frame), "\"VP6\"|192|154");
    EXPECT_EQ(film(Hex({0x14, 0xFF}) + frame), "\"VP6\"|177|145");
    EXPECT_EQ(film(Hex({0x15, 0x20, 0, 0, 9}) + frame), "\"VP6A\"|190|160");
    EXPECT_EQ(film(Hex({0x14})), "\"VP6\"|320|240");
}

TEST(FLVCodecs, PicturesAreNamedByTheirNumbers) {
    const auto codec = [](const std::string& aContent) {
        return Values(Header() + Video(0, aContent), {"vc", "wi", "he"});
    };
    EXPECT_EQ(codec(Hex({0x11})), "\"MJPEG\"||");
    EXPECT_EQ(codec(Hex({0x13, 0x32, 0x80, 0x31, 0xE0})), "\"ScreenVideo\"|640|480");
    EXPECT_EQ(codec(Hex({0x16, 0x32, 0x80, 0x31, 0xE0})), "\"ScreenVideo2\"|640|480");
    EXPECT_EQ(codec(Hex({0x16, 0x30, 0x00, 0x31, 0xE0})), "\"ScreenVideo2\"||");
    EXPECT_EQ(codec(Hex({0x18, 0, 0, 0x80, 0x02, 0x08, 0, 0})), "\"H263\"|176|144");
    EXPECT_EQ(codec(Hex({0x19})), "\"MPEG4\"||");
    EXPECT_EQ(codec(Hex({0x17, 1, 0, 0, 0})), "\"H264\"||");
    EXPECT_EQ(codec(Hex({0x1C, 1, 0, 0, 0})), "\"H265\"||");
    EXPECT_EQ(codec(Hex({0x1D})), "\"FLV-13\"||");
    EXPECT_EQ(codec(Hex({0x93}) + "vvc1"), "\"H266\"||");
    EXPECT_EQ(codec(Hex({0x93}) + "zzzz"), "\"zzzz\"||");
}

TEST(FLVCodecs, EnhancedPacketsHaveFourCharacters) {
    const Keys keys = {"vc", "vp", "vl", "wi", "he"};
    const auto film = [&](const std::string& aContent) {
        return Values(Header() + Video(0, aContent), keys);
    };
    const std::string vp8 = Hex({0x10, 0x02, 0x00, 0x9D, 0x01, 0x2A, 0x80, 0x02, 0xE0, 0x01});
    const std::string vp9 = Hex({0, 31, 0x82, 1, 1, 1, 0, 0});
    const std::string told = "\"VP8\"|||640|480";
    EXPECT_EQ(film(Hex({0x91}) + "vp08" + vp8), told);
    EXPECT_EQ(film(Hex({0x93}) + "vp08" + vp8), told) << "without a composition time";
    EXPECT_EQ(film(Hex({0x97, 1, 7, 7, 0x01}) + "vp08" + vp8), told) << "modified";
    EXPECT_EQ(film(Hex({0x97, 0xFF, 0, 2, 7, 7, 7, 0x01}) + "vp08" + vp8), told) << "by more";
    EXPECT_EQ(film(Hex({0x96, 0x01}) + "vp08" + Hex({0}) + vp8), told) << "one track";
    EXPECT_EQ(film(Hex({0x96, 0x11}) + "vp08" + Hex({0, 0, 0, 10}) + vp8 + Hex({1, 0, 0, 1, 7})), told);
    EXPECT_EQ(film(Hex({0x96, 0x21}) + "vp08" + Hex({0, 0, 0, 10}) + vp8 + "vp09"), told);
    EXPECT_EQ(film(Hex({0x90}) + "vp09" + Hex({1, 0, 0, 0}) + vp9), "\"VP9\"|\"0\"|31||");
    EXPECT_EQ(film(Hex({0x90}) + "vp09" + vp9), "\"VP9\"|\"0\"|31||") << "without version and flags";
    EXPECT_EQ(film(Hex({0x90}) + "av01" + Hex({0x81, 0x05, 0x0C, 0})), "\"AV1\"|\"Main\"|31||");
    EXPECT_EQ(film(Hex({0x90}) + "avc1" + Hex({1, 0x42, 0, 30, 0xFF, 0xE0, 0})),
              "\"H264\"|\"Baseline\"|30||");
    EXPECT_EQ(Values(Header() + Video(0, Hex({0x92}) + "vp08") + Video(0, Hex({0x91}) + "vp08" + vp8), keys),
              told)
        << "after an end";
}

TEST(FLVCodecs, SoundIsNamedByItsNumbers) {
    const auto sound = [](const std::string& aContent) {
        return Values(Header() + Sound(0, aContent), {"ca", "sf", "ar", "ac", "bs"});
    };
    const std::string frame = Big(0xFFF310C4, 4) + std::string(22, 's');
    const std::string opus = "OpusHead" + Hex({1, 2, 0, 0});
    EXPECT_EQ(sound(Hex({0x0F}) + "ss"), "\"LPCM\"||44100|2|16");
    EXPECT_EQ(sound(Hex({0x34}) + "ss"), "\"LPCM\"||11025|1|8");
    EXPECT_EQ(sound(Hex({0x12}) + "ss"), "\"ADPCM-SWF\"|5512||1|");
    EXPECT_EQ(sound(Hex({0x2F}) + frame), "\"MP3\"|22050||1|") << "as the frame says";
    EXPECT_EQ(sound(Hex({0x2B}) + "no frame"), "\"MP3\"|22050||2|");
    EXPECT_EQ(sound(Hex({0x4F}) + "s"), "\"Nellymoser\"|16000||1|");
    EXPECT_EQ(sound(Hex({0x5F}) + "s"), "\"Nellymoser\"|8000||1|");
    EXPECT_EQ(sound(Hex({0x6B}) + "s"), "\"Nellymoser\"|22050||2|");
    EXPECT_EQ(sound(Hex({0x7F}) + "s"), "\"alaw\"|8000||2|");
    EXPECT_EQ(sound(Hex({0x8E}) + "s"), "\"ulaw\"|8000||1|");
    EXPECT_EQ(sound(Hex({0xAF, 0, 0x13, 0x88})), "\"AAC\"|22050||1|");
    EXPECT_EQ(sound(Hex({0xAF, 1, 0x13, 0x88})), "\"AAC\"||||") << "no configuration";
    EXPECT_EQ(sound(Hex({0xBF}) + "s"), "\"Speex\"|16000||1|");
    EXPECT_EQ(sound(Hex({0xEE}) + "no frame"), "\"MP3\"|8000||1|");
    EXPECT_EQ(sound(Hex({0xFF}) + "s"), "\"FLV-15\"||||");
    EXPECT_EQ(sound(Hex({0x90}) + "mp4a" + Hex({0x13, 0x88})), "\"AAC\"|22050||1|");
    EXPECT_EQ(sound(Hex({0x91}) + ".mp3" + frame), "\"MP3\"|22050||1|");
    EXPECT_EQ(sound(Hex({0x90}) + "Opus" + opus), "\"Opus\"|48000||2|");
    EXPECT_EQ(sound(Hex({0x95, 0}) + "Opus" + Hex({0}) + opus), "\"Opus\"|48000||2|");
    EXPECT_EQ(sound(Hex({0x90}) + "Opus" + opus.substr(0, 11)), "\"Opus\"|48000|||") << "cut";
    const std::string flac = "fLaC" + Hex({0x80, 0, 0, 34}) + std::string(10, '\0') +
                             Hex({0x0A, 0xC4, 0x42, 0xF0}) + std::string(20, '\0');
    EXPECT_EQ(sound(Hex({0x90}) + "fLaC" + flac), "\"FLAC\"|44100||2|16");
    EXPECT_EQ(sound(Hex({0x91}) + "fLaC" + flac), "\"FLAC\"||||") << "no configuration";
    EXPECT_EQ(sound(Hex({0x91}) + "ac-3" + "no frame"), "\"AC3\"||||");
    EXPECT_EQ(sound(Hex({0x91}) + "ec-3" + "no frame"), "\"EAC3\"||||");
}

TEST(FLVCodecs, RateOfSoundIsThatOfTheMetadataWhereTheCodecTellsNone) {
    const auto film = [](double aRate) {
        const std::string pictures = Frames(1000, 0, 400); // some 90 kbit/s
        return Values(Header() + MetaData(Number("audiodatarate", aRate)) + Sound(0, Hex({0xBF}) + "s") +
                          pictures,
                      {"ea"});
    };
    EXPECT_EQ(film(24), "24000");
    EXPECT_EQ(film(900), "") << "more than the whole has";
    EXPECT_EQ(film(-1), "");
    EXPECT_EQ(Values(Film(Number("audiodatarate", 24)), {"ea"}), "8000") << "as the frame says";
}

TEST(FLVCodecs, OfSeveralConfigurationsTheFirstTells) {
    const std::string configs = Sound(0, Hex({0xAF, 0, 0x13, 0x88})) + Sound(0, Hex({0xAF, 0, 0x12, 0x10}));
    EXPECT_EQ(Values(Header(4) + configs + Sound(0, Hex({0xAF, 1})), {"ca", "sf", "ac"}), "\"AAC\"|22050|1");
}

TEST(FLVCodecs, WhatIsEncryptedIsMarked) {
    const std::string filtered =
        Header() + Tag(kVideoTag | 0x20U, 0, Sorenson(320, 180)) + Tag(kSoundTag | 0x20U, 0, MP3());
    EXPECT_EQ(Values(filtered, {"vc", "ca", "wi", "sf"}), "\"encrypted:Sorenson\"|\"encrypted:MP3\"||");
}
