#include "ezFormats/matroska/MatroskaParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/codecs/TheoraBytes.h"
#include "companions/ezFormats/matroska/MatroskaBytes.h"

#include "ezFormats/detail/Limits.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace matroska;
using namespace std::string_literals;
using ebml::Head;
using ebml::Id;
using ebml::Info;
using ebml::Segment;
using ebml::Tracks;
using ebml::Unknown;

namespace {

std::string Values(const std::string& aBytes, const std::vector<const char*>& aKeys,
                   const Delivery& aDelivery = Delivery()) {
    return chunks::Values<MatroskaParser>(aBytes, aKeys, aDelivery);
}
std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<MatroskaParser>(aBytes);
}

const std::string kVideo = Track(1, 1, "V_VP8", Picture() + Number(0x23E383, 40'000'000));
const std::string kSound = Track(2, 2, "A_VORBIS", Sound());

/// A second of pictures and sound, in one cluster.
std::string Blocks(std::size_t aSize = 500) {
    std::string blocks;
    for (int time = 0; time < 1000; time += 40) {
        blocks += Block(1, time, std::string(aSize, 'v')) + Block(2, time, std::string(aSize / 5, 's'));
    }
    return blocks;
}

/// A file of these tracks, which lasts a second.
std::string Film(const std::string& aTracks = kVideo + kSound, const std::string& aRest = "",
                 const std::string& aDocType = "matroska") {
    return Head(aDocType) + Segment(Info(Duration(1000)) + Tracks(aTracks) + aRest + Cluster(0, Blocks()));
}

std::vector<std::string> UsualFiles() {
    const std::string tags = ebml::Tags(ebml::Tag(50, {{"TITLE", "Film"}, {"ARTIST", "Maker"}}));
    return {Film(), Film(kSound, tags, "webm"),
            Head("webm") +
                Unknown(0x18538067, Info("") + Tracks(kVideo + kSound) + OpenCluster(7000, Blocks(20)) +
                                        OpenCluster(8000, Blocks(20)))};
}

std::vector<std::string> CostlyFiles() {
    const std::string front = Info("") + Tracks(kVideo + kSound);
    std::string seeks;
    for (unsigned i = 0; i < 300; ++i) {
        seeks += ebml::Seek(i % 2 == 0 ? 0x114D9B74 : 0x1254C367, 20000 * i);
    }
    const std::string ids = ebml::Id(kCluster) + ebml::Size(20) + Number(0xE7, 5);
    std::string clusters;
    for (unsigned i = 0; i < 200; ++i) {
        clusters += ids + std::string(20000, '\x1F');
    }
    return {Head() + Segment(front + std::string(3U << 20, '\x1F')),
            Head() + Segment(front + Cluster(0, Blocks(200000))),
            Head() + Segment(ebml::SeekHead(seeks) + front + Cluster(0, Blocks(100000))),
            Head() + Segment(front + Cluster(0, "") + clusters)};
}

const FormatFiles kFiles("mkv", {48, 4U << 20}, {"ct"}, UsualFiles, CostlyFiles);

} // namespace

TEST(MatroskaParser, ClassAndTypeFollowFromWhatPlays) {
    const std::vector<const char*> keys = {"cn", "ct", "mt"};
    EXPECT_EQ(Values(Film(), keys), "\"item.videoItem\"|\"MKV\"|\"video/x-matroska\"");
    EXPECT_EQ(Values(Film(kSound), keys), "\"item.audioItem\"|\"MKV\"|\"audio/x-matroska\"");
    EXPECT_EQ(Values(Film(kVideo + kSound, "", "webm"), keys), "\"item.videoItem\"|\"WebM\"|\"video/webm\"");
    EXPECT_EQ(Values(Film(kSound, "", "webm"), keys), "\"item.audioItem\"|\"WebM\"|\"audio/webm\"");
}

TEST(MatroskaParser, WhatHoldsNoTrackThatPlaysIsRefused) {
    EXPECT_EQ(Refusal(Head("other") + Segment("")), "MatroskaParser: malformed: begins with 1A45DFA3");
    EXPECT_EQ(Refusal(Head()), "MatroskaParser: malformed: ends before the segment");
    EXPECT_EQ(Refusal(Head() + Segment(Info(""))),
              "MatroskaParser: malformed: ends before a track of pictures or sound");
    EXPECT_EQ(Refusal(Head() + Segment(Tracks(Track(1, 17, "S_TEXT/UTF8")))),
              "MatroskaParser: malformed: ends before a track of pictures or sound");
}

// ---- tracks ----

namespace {

/// A film of which these are the tracks of sound, and what is told of that which plays first.
std::string SoundOf(const std::string& aTracks) {
    return Values(Film(kVideo + aTracks), {"ca", "ta", "la"});
}

const std::string kNotDefault = Number(0x88, 0);
const std::string kDisabled = Number(0xB9, 0);

std::string Language(const char* aLanguage) {
    return Element(0x22B59C, aLanguage);
}
std::string Tagged(const char* aTag) {
    return Element(0x22B59D, aTag);
}

} // namespace

TEST(MatroskaParser, TrackThatPlaysFirstIsTheDefaultOneOfTheLowestNumber) {
    const auto track = [](unsigned aNumber, const char* aCodec, const std::string& aRest = "") {
        return Track(aNumber, 2, aCodec, aRest);
    };
    EXPECT_EQ(SoundOf(track(3, "A_OPUS") + track(2, "A_VORBIS")), "\"Vorbis\"|2|\"en\"");
    EXPECT_EQ(SoundOf(track(2, "A_OPUS", kNotDefault) + track(3, "A_VORBIS")), "\"Vorbis\"|2|\"en\"");
    EXPECT_EQ(SoundOf(track(2, "A_OPUS", kDisabled) + track(3, "A_VORBIS", kNotDefault)),
              "\"Vorbis\"|1|\"en\"");
    EXPECT_EQ(SoundOf(track(2, "A_OPUS", kDisabled)), "\"Opus\"|1|\"en\"");
    // elements of no bytes have their default, which is to play
    EXPECT_EQ(SoundOf(track(2, "A_OPUS", Element(0x88, "")) + track(3, "A_VORBIS")), "\"Opus\"|2|\"en\"");
}

TEST(MatroskaParser, LanguagesAreThoseOfTheTracksTheOneThatPlaysFirst) {
    const auto languages = [](const std::string& aFirst, const std::string& aSecond) {
        return Values(Film(kVideo + Track(2, 2, "A_OPUS", kNotDefault + aFirst) +
                           Track(3, 2, "A_OPUS", aSecond) + Track(4, 17, "S_TEXT/UTF8", aFirst) +
                           Track(5, 17, "S_TEXT/UTF8", aSecond)),
                      {"la", "ts", "sl"});
    };
    EXPECT_EQ(languages(Language("ger"), Language("fre")), "\"fr,de\"|2|\"de,fr\"");
    EXPECT_EQ(languages(Language("ger") + Tagged("de-CH"), Tagged("pt-BR")),
              "\"pt-BR,de-CH\"|2|\"de-CH,pt-BR\"");
    EXPECT_EQ(languages("", Language("und")), "\"en\"|2|\"en\"");
    EXPECT_EQ(languages(Language(""), ""), "\"en\"|2|\"en\"");
}

TEST(MatroskaParser, EncryptedTracksSaySoAndNothingOfTheirFrames) {
    const std::string encrypted = Element(0x6D80, Element(0x6240, Number(0x5033, 1) + Element(0x5035, "")));
    EXPECT_EQ(
        Values(Film(Track(1, 1, "V_VP9", Picture() + encrypted) + Track(2, 2, "A_AC3", Sound() + encrypted)),
               {"vc", "ca", "sf"}),
        "\"encrypted:VP9\"|\"encrypted:AC3\"|48000");
}

TEST(MatroskaParser, PicturesAloneAreACoverBesideSoundUnlessThereAreSeveral) {
    const auto file = [](const std::string& aTracks, const std::string& aBlocks) {
        return Values(Head() + Segment(Info(Duration(1000)) + Tracks(aTracks) + Cluster(0, aBlocks)),
                      {"mt", "vc"});
    };
    const std::string still = Track(1, 1, "V_MJPEG", Picture());
    const std::string one = Block(1, 0) + Block(2, 0) + Block(2, 10);
    EXPECT_EQ(file(still + kSound, one), "\"audio/x-matroska\"|");
    EXPECT_EQ(file(still + kSound, one + Block(1, 20)), "\"video/x-matroska\"|\"MJPEG\"");
    EXPECT_EQ(file(still, Block(1, 0)), "\"video/x-matroska\"|\"MJPEG\"");
    EXPECT_EQ(file(still + Track(3, 1, "V_VP8", Picture()) + kSound, one), "\"video/x-matroska\"|\"VP8\"");
}

TEST(MatroskaParser, CoverIsTheAttachedOneOrElseThatOfATrack) {
    const std::string jpeg = "\xFF\xD8\xFF\xE0" + std::string(96, 'j');
    const std::string tracks = Tracks(Track(1, 1, "V_MJPEG", Picture()) + kSound);
    const std::string cluster = Cluster(0, Block(1, 0, jpeg) + Block(2, 0));
    const std::string attached =
        ebml::Attachments(ebml::AttachedFile("cover.png", "image/png", "\x89PNG\r\n\x1A\n of pixels"));
    const auto file = [&](const std::string& aRest) {
        return Values(Head() + Segment(Info(Duration(100)) + tracks + aRest + cluster), {"cm", "cs", "mt"});
    };
    EXPECT_EQ(file(""), "\"image/jpeg\"|100|\"audio/x-matroska\"");
    EXPECT_EQ(file(attached), "\"image/png\"|18|\"audio/x-matroska\"");
}

TEST(MatroskaParser, RateOfATrackDoesNotCountWhatIsAttached) {
    const auto rates = [](std::size_t aAttached) {
        const std::string attached =
            aAttached != 0
                ? ebml::Attachments(ebml::AttachedFile("f", "font/ttf", std::string(aAttached, 'f')))
                : "";
        return Values(Head() +
                          Segment(Info(Duration(1000)) + Tracks(kSound) + attached + Cluster(0, Blocks())),
                      {"ea"});
    };
    const int without = std::stoi(rates(0));
    const int with = std::stoi(rates(50'000));
    EXPECT_GE(with, without);
    EXPECT_LE(with, without + 100); // its head
}

// ---- pictures ----

TEST(MatroskaParser, SizeAndShapeAreThoseAfterCropping) {
    const auto shape = [](const std::string& aRest, unsigned aWidth = 720, unsigned aHeight = 576) {
        return Values(Film(Track(1, 1, "V_PRORES", Picture(aWidth, aHeight, aRest))),
                      {"wi", "he", "pa", "dr"});
    };
    const auto shown = [](std::uint64_t aWidth, std::uint64_t aHeight, unsigned aUnit = 0) {
        return Number(0x54B0, aWidth) + Number(0x54BA, aHeight) + Number(0x54B2, aUnit);
    };
    const std::string crop = Number(0x54BB, 16) + Number(0x54AA, 20) + Number(0x54CC, 4) + Number(0x54DD, 6);
    EXPECT_EQ(shape(""), "720|576|\"1:1\"|\"5:4\"");
    EXPECT_EQ(shape(shown(1024, 576)), "720|576|\"64:45\"|\"16:9\"");
    EXPECT_EQ(shape(shown(16, 9, 3)), "720|576|\"64:45\"|\"16:9\"");
    EXPECT_EQ(shape(shown(160, 90, 1)), "720|576|\"64:45\"|\"16:9\"");
    EXPECT_EQ(shape(shown(16, 9, 4)), "720|576|\"1:1\"|\"5:4\"");
    EXPECT_EQ(shape(shown(853, 480), 720, 480), "720|480|\"32:27\"|\"16:9\"");
    EXPECT_EQ(shape(shown(853, 480), 853, 480), "853|480|\"1:1\"|\"853:480\""); // pixels are square
    EXPECT_EQ(shape(crop), "710|540|\"1:1\"|\"71:54\"");
    EXPECT_EQ(shape(Number(0x54B0, 1024)), "720|576|\"64:45\"|\"16:9\"");
    EXPECT_EQ(shape(shown(UINT64_MAX, UINT64_MAX)), "720|576|\"1:1\"|\"5:4\"");
    EXPECT_EQ(shape(shown(1024, 576) + Number(0x53B8, 1)), "720|576|\"1:1\"|\"5:4\""); // two pictures in one
    EXPECT_EQ(shape(Number(0x54CC, 720)), "||\"1:1\"|");
    EXPECT_EQ(shape(shown(kMatroska_MaxSide, kMatroska_MaxSide)), "720|576|\"4:5\"|\"1:1\"");
    EXPECT_EQ(shape(shown(kMatroska_MaxSide + 1, kMatroska_MaxSide + 1)), "720|576|\"1:1\"|\"5:4\"");
}

TEST(MatroskaParser, ScanRateColoursAndTurnAreThoseOfTheTrack) {
    const auto told = [](const std::string& aRest, const std::string& anEntry = "") {
        const std::string tracks = Tracks(Track(1, 1, "V_PRORES", Picture(64, 48, aRest) + anEntry));
        return Values(Head() + Segment(Info(Duration(1000)) + tracks + Cluster(0, Block(1, 0))),
                      {"pr", "fr", "ud", "cr", "cd"});
    };
    const auto roll = [](double aDegrees) { return Element(0x7670, ebml::Float(0x7675, aDegrees)); };
    EXPECT_EQ(told(""), "||||");
    EXPECT_EQ(told(Number(0x9A, 1)), "\"interlaced\"||||");
    EXPECT_EQ(told(Number(0x9A, 2)), "\"progressive\"||||");
    EXPECT_EQ(told("", Number(0x23E383, 41'708'333)), "|23976|||");
    EXPECT_EQ(told("", Number(0x23E383, 0)), "||||");
    EXPECT_EQ(told(roll(90)), "||8||"); // counter-clockwise
    EXPECT_EQ(told(roll(-90)), "||6||");
    EXPECT_EQ(told(roll(180)), "||3||");
    EXPECT_EQ(told(roll(-180)), "||3||");
    EXPECT_EQ(told(roll(45)), "||||");
    EXPECT_EQ(told(roll(1e300)), "||||");
    EXPECT_EQ(told(Element(0x55B0, Number(0x55B2, 10) + Number(0x55B3, 1) + Number(0x55B4, 0))),
              "|||\"4:2:2\"|10");
    EXPECT_EQ(told(Element(0x55B0, Number(0x55B2, kMatroska_MaxSampleBits))), "||||16");
    EXPECT_EQ(told(Element(0x55B0, Number(0x55B2, kMatroska_MaxSampleBits + 1))), "||||");
}

TEST(MatroskaParser, DynamicRangeIsThatOfColoursMetadataAndMappings) {
    const auto kind = [](const std::string& aColour, std::uint64_t aMapping = 0) {
        const std::string mapping = aMapping != 0 ? Element(0x41E4, Number(0x41E7, aMapping)) : "";
        return Values(Film(Track(1, 1, "V_PRORES", Picture(64, 48, Element(0x55B0, aColour)) + mapping)),
                      {"hd"});
    };
    const std::string pq = Number(0x55BA, 16);
    EXPECT_EQ(kind(""), "");
    EXPECT_EQ(kind(pq), "\"PQ\"");
    EXPECT_EQ(kind(Number(0x55BA, 18)), "\"HLG\"");
    EXPECT_EQ(kind(pq + Number(0x55BC, 1000)), "\"HDR10\"");
    EXPECT_EQ(kind(pq + Element(0x55D0, ebml::Float(0x55D9, 1000))), "\"HDR10\"");
    EXPECT_EQ(kind(pq, 4), "\"HDR10+\"");
    EXPECT_EQ(kind("", 4), "");
    EXPECT_EQ(kind(pq, 0x64766343), "\"DolbyVision\"");
    EXPECT_EQ(kind("", 0x64767643), "\"DolbyVision\"");
}

// ---- codecs ----

TEST(MatroskaParser, CodecsAreNamedByTheirIds) {
    const auto video = [](const std::string& anId, const std::string& aPrivate = "") {
        return Values(Film(Track(1, 1, anId, Picture() + Private(aPrivate))), {"vc"});
    };
    const auto bitmap = [](const char* aFourCC) {
        return std::string(16, '\0') + aFourCC + std::string(20, '\0');
    };
    EXPECT_EQ(video("V_MPEG4/ISO/AVC"), "\"H264\"");
    EXPECT_EQ(video("V_MPEGH/ISO/HEVC"), "\"H265\"");
    EXPECT_EQ(video("V_AV1"), "\"AV1\"");
    EXPECT_EQ(video("V_VP9"), "\"VP9\"");
    EXPECT_EQ(video("V_MPEG4/ISO/ASP"), "\"MPEG4\"");
    EXPECT_EQ(video("V_MPEG4/MS/V3"), "\"MSMPEG4v3\"");
    EXPECT_EQ(video("V_MS/VFW/FOURCC", bitmap("WVC1")), "\"VC1\"");
    EXPECT_EQ(video("V_MS/VFW/FOURCC", bitmap("divx")), "\"MPEG4\"");
    EXPECT_EQ(video("V_MS/VFW/FOURCC", bitmap("ABCD")), "\"ABCD\"");
    EXPECT_EQ(video("V_MS/VFW/FOURCC", "short"), "\"MS/VFW/FOURCC\"");
    EXPECT_EQ(video("V_REAL/RV40"), "\"RV40\"");
    EXPECT_EQ(video("v_vp8"), "\"VP8\"");
    EXPECT_EQ(video("V_VP8X"), "\"VP8X\"");
    EXPECT_EQ(video("V_NEW CODEC"), "\"NEW.CODEC\"");
    EXPECT_EQ(video("V_a\tb,\xC3\xA4"), "\"a.b...\"");
    EXPECT_EQ(video("V_MS/VFW/FOURCC", bitmap("\x01\xFFm ")), "\"..m\"");
    EXPECT_EQ(video(""), "");
}

TEST(MatroskaParser, PrivateDataTellOfSoundWhatTheEntryMayHaveWrong) {
    const auto sound = [](const std::string& anId, const std::string& aPrivate, double aRate = 44100,
                          const std::string& aRest = "") {
        return Values(Film(Track(1, 2, anId, Sound(aRate, 1, aRest) + Private(aPrivate))),
                      {"ca", "sf", "ac", "bs"});
    };
    const std::string opus = "OpusHead\1\6"s + Little(312, 2) + Little(44100) + std::string(3, '\0');
    const std::string vorbis = "\2\x1E\x03"s + "\1vorbis" + Little(0) + "\2" + Little(22050) + Little(0) +
                               Little(48000) + Little(0) + "\xB8\1" + "\3vorbis";
    EXPECT_EQ(sound("A_OPUS", opus), "\"Opus\"|48000|6|");
    EXPECT_EQ(sound("A_OPUS", ""), "\"Opus\"|48000|1|");
    EXPECT_EQ(sound("A_VORBIS", vorbis), "\"Vorbis\"|22050|2|");
    EXPECT_EQ(sound("A_VORBIS", "damaged"), "\"Vorbis\"|44100|1|");
    EXPECT_EQ(sound("A_AAC", "\x11\x90"), "\"AAC\"|48000|2|");
    EXPECT_EQ(sound("A_AAC", "\x13\x90", 22050, ebml::Float(0x78B5, 44100)), "\"HE-AAC\"|44100|2|");
    EXPECT_EQ(sound("A_AAC/MPEG4/LC/SBR", "", 22050, ebml::Float(0x78B5, 44100)), "\"HE-AAC\"|44100|1|");
    EXPECT_EQ(sound("A_PCM/INT/LIT", "", 48000, Number(0x6264, 24)), "\"LPCM\"||1|24");
    EXPECT_EQ(sound("A_PCM/FLOAT/IEEE", "", 48000, Number(0x6264, 32)), "\"PCM-float\"|48000|1|32");
    EXPECT_EQ(sound("A_AAC/MPEG4/LC", "", 48000, Number(0x6264, 16)),
              "\"AAC\"|48000|1|"); // nothing that it has
    EXPECT_EQ(sound("A_MS/ACM", Little(0x2000, 2) + Little(6, 2) + Little(48000) + Little(56000) +
                                    Little(1, 2) + Little(0, 2)),
              "\"AC3\"|48000|6|");
}

TEST(MatroskaParser, HeaderOfTheoraTellsWhatTheEntryLeavesOut) {
    const auto told = [](const std::string& anId, const std::string& aPrivate) {
        return Values(Film(Track(1, 1, anId, Picture() + Private(aPrivate))), {"vc", "fr", "cr", "pa"});
    };
    TheoraHead head;
    head.mPixelWidth = 12;
    head.mPixelHeight = 11;
    const std::string headers = head.Bytes() + "\x81theora\x82theora";
    const std::string bitmap = std::string(16, '\0') + "THEO" + std::string(20, '\0');
    EXPECT_EQ(told("V_THEORA", "\2\x2A\7" + headers), "\"Theora\"|25000|\"4:2:0\"|\"12:11\"");
    EXPECT_EQ(told("V_MS/VFW/FOURCC", bitmap + "\2\x2A\7" + headers), "\"Theora\"|25000|\"4:2:0\"|\"12:11\"");
    EXPECT_EQ(told("V_THEORA", "damaged"), "\"Theora\"|25000||\"1:1\""); // by the times of the pictures
}

TEST(MatroskaParser, FirstFrameTellsOfPicturesWhatABitmapLeavesOut) {
    const auto told = [](const char* aFourCC, const std::string& aFrame) {
        const std::string bitmap = std::string(16, '\0') + aFourCC + std::string(20, '\0');
        return Values(Head() + Segment(Info(Duration(1000)) +
                                       Tracks(Track(1, 1, "V_MS/VFW/FOURCC", Picture() + Private(bitmap))) +
                                       Cluster(0, Block(1, 0, aFrame) + Block(1, 500, aFrame))),
                      {"vc", "vp", "vl", "pr"});
    };
    const std::string layer = "\0\0\1\xB0\xF5\0\0\1\x20"s
                              "\x00\x84\x40\x06\x70\xC2\xC1\x09\x06"s;
    EXPECT_EQ(told("XVID", layer), "\"MPEG4\"|\"AdvancedSimple\"|50|\"interlaced\"");
    EXPECT_EQ(told("XVID", "no header"), "\"MPEG4\"|||");
    EXPECT_EQ(told("WVC1", layer), "\"VC1\"|\"Advanced\"||");
}

TEST(MatroskaParser, FirstFrameTellsWhatNothingElseDoes) {
    const auto sound = [](const std::string& anId, const std::string& aFrame, const std::string& aRest = "",
                          unsigned aFlags = 0x80) {
        return Values(Head() +
                          Segment(Info(Duration(1000)) + Tracks(Track(1, 2, anId, Sound(48000, 1) + aRest)) +
                                  Cluster(0, Block(1, 0, aFrame, aFlags) + Block(1, 500, aFrame, aFlags))),
                      {"ca", "sf", "ac", "ar"});
    };
    const auto compressed = [](unsigned aMethod, const std::string& aSettings = "") {
        return Element(
            0x6D80, Element(0x6240, Element(0x5034, Number(0x4254, aMethod) + Element(0x4255, aSettings))));
    };
    const std::string mp2 =
        "\xFF\xFD\x84\x04"s + std::string(380, 'm'); // layer II, 128 kbit/s, 48 kHz, two channels
    const std::string told = "\"MP2\"|48000|2|128000";
    const std::string untold = "\"MP2\"|48000|1|";
    EXPECT_EQ(sound("A_MPEG/L2", mp2), told);
    EXPECT_EQ(sound("A_MPEG/L2", "no frame"), untold);
    EXPECT_EQ(sound("A_MPEG/L2", mp2.substr(2), compressed(3, "\xFF\xFD")), told);
    EXPECT_EQ(sound("A_MPEG/L2", mp2.substr(2), compressed(3)), untold);
    EXPECT_EQ(sound("A_MPEG/L2", mp2, compressed(1)), untold); // of a kind that nobody writes
    // laced: so many less one, and the sizes of all but the last
    EXPECT_EQ(sound("A_MPEG/L2", "\1\xFF\x81"s + mp2 + mp2, "", 0x82), told);
    EXPECT_EQ(sound("A_MPEG/L2", "\1\x41\x80"s + mp2 + mp2, "", 0x86), told);
    EXPECT_EQ(sound("A_MPEG/L2", "\1"s + mp2 + mp2, "", 0x84), told);
    EXPECT_EQ(sound("A_MPEG/L2", "\xFF"s, "", 0x86), untold);
}

// ---- length ----

namespace {

/// What is told of the length of a file of that Info and those clusters.
std::string Length(const std::string& anInfo, const std::string& aClusters,
                   const std::string& aTracks = kVideo + kSound, const Delivery& aDelivery = Delivery()) {
    return Values(Head() + Segment(Info(anInfo) + Tracks(aTracks) + aClusters), {"dm", "md"}, aDelivery);
}

const std::string kSubtitles = Track(3, 17, "S_TEXT/UTF8");

} // namespace

TEST(MatroskaParser, LengthIsThatOfTheHeaderWhereTheBytesCanLastSoLong) {
    const std::string second = Cluster(0, Blocks());
    EXPECT_EQ(Length(Duration(1000), second), "1000|\"header\"");
    EXPECT_EQ(Length(Duration(500) + Number(0x2AD7B1, 2'000'000), second), "1000|\"header\"");
    EXPECT_EQ(Length(ebml::Float32(0x4489, 1000), second), "1000|\"header\"");
    EXPECT_EQ(Length(Duration(5000), second), "5000|\"header\""); // 25 kbit/s
}

TEST(MatroskaParser, LengthThatIsNotStatedOrCannotBeIsThatOfTheLastBlocks) {
    const std::string second = Cluster(0, Blocks());
    const std::string last = "1000|\"last frame\""; // a picture lasts 40 ms
    for (const std::string& stated : {""s, Duration(0), Duration(1), Duration(-5), Duration(36'000'000),
                                      Duration(1e300), Element(0x4489, ""), Element(0x4489, "odd")}) {
        EXPECT_EQ(Length(stated, second), last);
    }
    EXPECT_EQ(Length("", Cluster(0, Blocks()) + Cluster(1000, Blocks())), "2000|\"last frame\"");
    EXPECT_EQ(Length("", ebml::Unknown(kCluster, Number(0xE7, 0) + Blocks()) + OpenCluster(1000, Blocks())),
              "2000|\"last frame\"");
    EXPECT_EQ(Length("", ""), "|");
}

TEST(MatroskaParser, StraySubtitleDoesNotMakeAFilmLonger) {
    const std::string tracks = kVideo + kSound + kSubtitles;
    const std::string stray = LongBlock(3, 0, 2000);
    // in the last cluster, and in one of its own
    EXPECT_EQ(Length(Duration(36'000'000), Cluster(0, Blocks() + Block(3, 30000)), tracks),
              "1000|\"last frame\"");
    EXPECT_EQ(Length(Duration(36'000'000), Cluster(0, Blocks()) + Cluster(36'000'000, stray), tracks),
              "1000|\"last frame\"");
    // a film of few bytes is as long as it says, if its last blocks are there
    EXPECT_EQ(Length(Duration(601'000), Cluster(0, Blocks()) + Cluster(600'000, Blocks(20))),
              "601000|\"header\"");
}

TEST(MatroskaParser, CountsOfAMuxerTellTheLengthOfThePictures) {
    const std::string tag =
        ebml::Tag(ebml::Targets(0, ebml::OfTrack(101)),
                  ebml::SimpleTag("DURATION", "00:00:02.500000000") +
                      ebml::SimpleTag("_STATISTICS_WRITING_APP", "muxer") +
                      ebml::SimpleTag("_STATISTICS_WRITING_DATE_UTC", "2001-01-01 00:00:00") +
                      ebml::SimpleTag("_STATISTICS_TAGS", "DURATION"));
    const std::string info = Element(0x5741, "muxer") + Element(0x4461, Big(0, 8)) + Duration(36'000'000);
    EXPECT_EQ(Length(info, ebml::Tags(tag) + Cluster(0, Blocks())), "2500|\"header\"");
}

TEST(MatroskaParser, BlockLastsAsLongAsItSaysOrAsItsFrames) {
    const std::string vorbis = Track(1, 2, "A_VORBIS", Number(0x23E383, 20'000'000));
    const std::string plain = Track(1, 2, "A_VORBIS");
    const auto end = [](const std::string& aTrack, const std::string& aBlock) {
        return Values(Head() + Segment(Info("") + Tracks(aTrack) + Cluster(0, Block(1, 0) + aBlock)), {"dm"});
    };
    EXPECT_EQ(end(plain, Block(1, 500)), "500");
    EXPECT_EQ(end(plain, LongBlock(1, 500, 123)), "623");
    EXPECT_EQ(end(vorbis, Block(1, 500)), "520");
    EXPECT_EQ(end(vorbis, Block(1, 500, "\3abcdefgh", 0x84)), "580"); // four frames
    EXPECT_EQ(end(plain, Block(1, 500) + Block(1, 400)), "500");
    EXPECT_EQ(end(plain, Block(1, -5)), ""); // before the start
}

TEST(MatroskaParser, LengthThatWouldBeCutShortByABoundIsNotTold) {
    std::string tiny; // more blocks than elements are looked at
    for (unsigned i = 0; i < kMatroska_MaxElements; ++i) {
        tiny += Block(1, static_cast<int>(i / 2), "");
    }
    EXPECT_EQ(Length("", Cluster(0, tiny)), "|");
    EXPECT_EQ(Length(Duration(36'000'000), Cluster(0, tiny)), "36000000|\"header\"");
}

TEST(MatroskaParser, LastClusterIsFoundInTheTailAlone) {
    // the last cluster begins so far from the end that it is the first of the tail, or stands before it
    const auto length = [](std::uint64_t aMore) {
        const std::string block = Block(1, 960, "v");
        const std::string head = Number(0xE7, 1000);
        const auto fill =
            static_cast<std::size_t>(kMatroska_TailSize + aMore - 12 - head.size() - block.size() - 9);
        const std::string room = Id(0xEC) + ebml::Size(fill, 8) + std::string(fill, 'x');
        const std::string content = head + room + block;
        return Length("", Cluster(0, Blocks()) + ebml::Stating(kCluster, content.size(), content));
    };
    EXPECT_EQ(length(0), "2000|\"last frame\"");
    EXPECT_EQ(length(1), "|");
}

TEST(MatroskaParser, CaptureThatStartsHighIsAsLongAsWhatItHolds) {
    EXPECT_EQ(Length("", Cluster(7'200'000, Blocks()) + Cluster(7'201'000, Blocks())), "2000|\"last frame\"");
}

TEST(MatroskaParser, LastCueLeadsToTheLastBlocks) {
    const std::string tracks = Tracks(kVideo + kSound);
    const std::string clusters = Cluster(0, Blocks()) + Cluster(1000, Blocks());
    const auto file = [&](std::uint64_t aCluster) {
        const std::size_t seek = ebml::SeekHead(ebml::Seek(0x1C53BB6B, 0)).size();
        const std::size_t front = seek + Info("").size() + tracks.size();
        const std::string cues = Cues(Cue(0, front) + Cue(1000, front + aCluster));
        return Values(Head() + Segment(ebml::SeekHead(ebml::Seek(0x1C53BB6B, front + clusters.size())) +
                                       Info("") + tracks + clusters + cues),
                      {"dm", "md"});
    };
    EXPECT_EQ(file(Cluster(0, Blocks()).size()), "2000|\"last frame\"");
    EXPECT_EQ(file(3), "2000|\"last frame\"");              // no cluster there: the next one is taken
    EXPECT_EQ(file(UINT64_MAX / 2), "2000|\"last frame\""); // nothing there: the end is searched
}

TEST(MatroskaParser, CutFileIsAsLongAsTheWholeWas) {
    const std::string content = Info(Duration(600'000)) + Tracks(kVideo + kSound) + Cluster(0, Blocks());
    EXPECT_EQ(Values(Head() + ebml::Stating(0x18538067, 60'000'000, content), {"dm", "md", "br"}),
              "600000|\"header\"|800000");
}

TEST(MatroskaParser, RateOfAFilmIsBelievedUpToThatOfUncompressedPictures) {
    const auto rate = [](std::uint64_t aSize) { // of a second of which the most was cut off
        const std::string content = Info(Duration(1000)) + Tracks(kVideo + kSound) + Cluster(0, Blocks());
        const std::string head = Head() + ebml::Stating(0x18538067, aSize, "");
        return std::stoull(Values(Head() + ebml::Stating(0x18538067, aSize - head.size(), content), {"br"}));
    };
    EXPECT_EQ(rate(kFilm_MaxBitRate / 8), kFilm_MaxBitRate);
    EXPECT_LT(rate(kFilm_MaxBitRate / 8 + 1), 200'000U) << "that of what is there";
}

TEST(MatroskaParser, StreamWithoutASizeIsReadToItsFirstBlocksAlone) {
    Delivery stream;
    stream.mfSizeKnown = false;
    stream.mfSeekable = false;
    EXPECT_EQ(Length(Duration(1000), Cluster(0, Blocks()), kVideo + kSound, stream), "1000|\"header\"");
    EXPECT_EQ(Length("", Cluster(0, Blocks()), kVideo + kSound, stream), "|\"none: the end was not read\"");
    AwkwardStream::Costs costs;
    pictures::Parsed<MatroskaParser>(
        Head() + Segment(Info("") + Tracks(kVideo + kSound) + Cluster(0, Blocks(100000))), stream, &costs);
    EXPECT_LE(costs.mBytes, 16U << 10);
}

// ---- costs ----

TEST(MatroskaParser, FileOfGigabytesCostsNoMoreThanASmallOne) {
    for (const std::uint64_t size :
         {std::uint64_t{4} << 20, std::uint64_t{4500} << 20, std::uint64_t{60} << 30}) {
        const std::string front = Info(Duration(static_cast<double>(size / 125))) + Tracks(kVideo + kSound) +
                                  Cluster(0, Blocks(20));
        const std::string start = Head() + Id(0x18538067) + ebml::Size(size, 8) + front;
        SparseStream stream(size, {{0, start}});
        EXPECT_EQ(chunks::SparseValue<MatroskaParser>(stream, "mt"), "\"video/x-matroska\"");
        EXPECT_LE(stream.mReads, 4U) << size;
        EXPECT_LE(stream.mBytes, 128U << 10) << size;
    }
}

TEST(MatroskaParser, LastClusterIsFoundFromTheEndOfAnySize) {
    std::size_t reads = 0;
    for (const std::uint64_t size :
         {std::uint64_t{4} << 20, std::uint64_t{4500} << 20, std::uint64_t{60} << 30}) {
        const std::string start =
            Head() + ebml::Unknown(0x18538067, Info("") + Tracks(kVideo + kSound) + Cluster(0, Blocks(20)));
        const std::string end = Cluster(7'199'000, Blocks(20));
        SparseStream stream(size, {{0, start}, {size - end.size(), end}});
        EXPECT_EQ(chunks::SparseValue<MatroskaParser>(stream, "dm"), "7200000");
        EXPECT_LE(stream.mReads, 6U) << size;
        EXPECT_TRUE(reads == 0 || reads == stream.mReads) << size;
        reads = stream.mReads;
    }
}
