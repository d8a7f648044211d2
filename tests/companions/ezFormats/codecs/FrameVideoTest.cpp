#include "ezFormats/codecs/FrameVideo.h"
#include "ezFormats/codecs/DVVideo.h"
#include "ezFormats/codecs/MJPEGVideo.h"
#include "ezFormats/codecs/ProResVideo.h"
#include "ezFormats/codecs/VideoFourCC.h"

#include "companions/ezFormats/codecs/VideoFactsText.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"
#include "support/NumberBytes.h"

#include <gtest/gtest.h>

#include <array>

using namespace std::string_literals;

namespace {

template <std::optional<VideoFacts> (*Read)(const unsigned char* aBytes, std::size_t aSize)>
std::string Told(const std::string& aBytes) {
    return Text(Read(Data(aBytes), aBytes.size()));
}

/// Cut anywhere, a reader tells the same or nothing.
template <std::optional<VideoFacts> (*Read)(const unsigned char* aBytes, std::size_t aSize)>
void ExpectAllOrNothing(const std::string& aBytes) {
    for (std::size_t size = 0; size < aBytes.size(); ++size) {
        const std::string told = Told<Read>(aBytes.substr(0, size));
        EXPECT_TRUE(told == "nothing" || told == Told<Read>(aBytes)) << size << " " << told;
    }
}

// ---- by four characters ----

/// What a name says: "ProRes HQ@? cd=10 4:2:2".
std::string Named(const VideoCode* aCode) {
    return aCode != nullptr ? Text(aCode->GetFacts()) : "nothing";
}

// ---- Motion JPEG ----

std::string Segment(unsigned aMarker, const std::string& aContent) {
    return Big(0xFF00 | aMarker, 2) + Big(aContent.size() + 2, 2) + aContent;
}

/// A picture of 320 by 240 pixels, up to its scan.
std::string JPEG(const std::string& aSegments, unsigned aLuma = 0x21, unsigned aChroma = 0x11) {
    return "\xFF\xD8"s + aSegments +
           Segment(0xC0, "\x08"s + Big(240, 2) + Big(320, 2) + "\3\1"s + Big(aLuma, 1) + "\0\2"s +
                             Big(aChroma, 1) + "\1\3"s + Big(aChroma, 1) + "\1"s) +
           Segment(0xDA, "scan");
}

std::string OfAVI(unsigned aPolarity) {
    return Segment(0xE0, "AVI1" + Big(aPolarity, 1) + std::string(9, '\0'));
}
std::string OfQuickTime(unsigned aNext) {
    return Segment(0xE1, std::string(4, '\0') + "mjpg" + Big(100, 4) + Big(100, 4) + Big(aNext, 4) +
                             std::string(20, '\0'));
}

// ---- DV ----

/// The first sequence of a frame, up to its sound.
std::string DV(bool af50, unsigned aType, unsigned aDisplay, unsigned anApplication = 0) {
    std::string bytes(480, '\xFF');
    bytes.replace(0, 8,
                  "\x1F\x07"s + Big(0, 1) + Big(af50 ? 0xBF : 0x3F, 1) + Big(0x78 | anApplication, 1) +
                      "\x78\x78\x78");
    bytes.replace(400, 3, "\x56\x07\x02");
    bytes.replace(400 + 48, 10,
                  "\x60\xFF\xFF"s + Big((af50 ? 0x20 : 0) | aType, 1) + "\xFF\x61\x3F"s +
                      Big(0xC8 | aDisplay, 1) + "\xFC\xFF");
    return bytes;
}

// ---- ProRes ----

std::string ProRes(unsigned aKinds, unsigned aRates, bool afFramed = true) {
    const std::string header = Big(148, 2) + Big(0, 2) + "abcd" + Big(1920, 2) + Big(1080, 2) +
                               Big(aKinds, 1) + Big(aRates, 1) + std::string(6, '\1');
    return (afFramed ? Big(5000, 4) + "icpf" : "") + header;
}

} // namespace

TEST(VideoCodes, NamesTellCodecProfileAndDepth) {
    struct Case {
        const char* mName;
        const char* mOfBitmap;
        const char* mOfEntry;
    };
    const Case cases[] = {{"XVID", "MPEG4", "MPEG4"},
                          {"xvid", "MPEG4", "nothing"}, // the case counts in entries
                          {"mp4v", "MPEG4", "MPEG4"},
                          {"DIV3", "MSMPEG4v3 cd=8 4:2:0", "MSMPEG4v3 cd=8 4:2:0"},
                          {"MPG4", "MSMPEG4v1 cd=8 4:2:0", "nothing"},
                          {"WMV3", "WMV3 cd=8 4:2:0", "WMV3 cd=8 4:2:0"},
                          {"WVC1", "VC1 Advanced@? cd=8 4:2:0", "VC1 Advanced@? cd=8 4:2:0"},
                          {"vc-1", "nothing", "VC1 Advanced@? cd=8 4:2:0"},
                          {"cvid", "Cinepak", "Cinepak"},
                          {"IV50", "Indeo5", "Indeo5"},
                          {"SVQ3", "SVQ3", "SVQ3"},
                          {"rle ", "RLE", "Animation"},
                          {"MJPG", "MJPEG", "MJPEG"},
                          {"mjpa", "nothing", "MJPEG"},
                          {"mjp2", "JPEG2000", "JPEG2000"},
                          {"dvsd", "DV 25@?", "DV 25@?"},
                          {"dvc ", "nothing", "DV 25@?"},
                          {"dv5p", "nothing", "DV 50@?"},
                          {"dvhq", "nothing", "DV 100@?"},
                          {"dvh1", "DV 100@?", "H265"}, // one name, two codecs
                          {"apco", "ProRes Proxy@? cd=10 4:2:2", "ProRes Proxy@? cd=10 4:2:2"},
                          {"apcs", "ProRes LT@? cd=10 4:2:2", "ProRes LT@? cd=10 4:2:2"},
                          {"apcn", "ProRes Standard@? cd=10 4:2:2", "ProRes Standard@? cd=10 4:2:2"},
                          {"apch", "ProRes HQ@? cd=10 4:2:2", "ProRes HQ@? cd=10 4:2:2"},
                          {"ap4h", "ProRes 4444@? cd=12 4:4:4", "ProRes 4444@? cd=12 4:4:4"},
                          {"ap4x", "ProRes 4444XQ@? cd=12 4:4:4", "ProRes 4444XQ@? cd=12 4:4:4"},
                          {"AVdn", "DNxHD", "DNxHD"},
                          {"HFYU", "HuffYUV", "nothing"},
                          {"FFV1", "FFV1", "FFV1"},
                          {"VP6F", "VP6", "VP6"},
                          {"raw ", "raw", "raw"},
                          {"2vuy", "raw cd=8 4:2:2", "raw cd=8 4:2:2"},
                          {"v210", "raw cd=10 4:2:2", "raw cd=10 4:2:2"},
                          {"DIB ", "raw", "nothing"},
                          {"mp4 ", "nothing", "nothing"},
                          {"    ", "nothing", "nothing"}};
    for (const Case& named : cases) {
        BlockBytes block(reinterpret_cast<const unsigned char*>(named.mName), 4);
        ByteReader reader(block);
        const BoxType name = BoxType::Read(reader);
        EXPECT_EQ(Named(VideoFourCC_Find(name)), named.mOfBitmap) << named.mName;
        EXPECT_EQ(Named(VideoFourCC_FindEntry(name)), named.mOfEntry) << named.mName;
    }
    EXPECT_EQ(Named(VideoFourCC_Find(BoxType())), "raw"); // BI_RGB
    EXPECT_EQ(Named(VideoFourCC_Find(BoxType(0x01000000))), "RLE");
    EXPECT_EQ(Named(VideoFourCC_FindEntry(BoxType())), "nothing");
}

TEST(MJPEGVideo, TellsWhatTheFrameHeaderSays) {
    const auto told = Told<MJPEGVideo_Read>;
    EXPECT_EQ(told(JPEG("")), "MJPEG 320x240 cd=8 4:2:2");
    EXPECT_EQ(told(JPEG("", 0x22)), "MJPEG 320x240 cd=8 4:2:0");
    EXPECT_EQ(told(JPEG("", 0x11)), "MJPEG 320x240 cd=8 4:4:4");
    EXPECT_EQ(told(JPEG("", 0x22, 0x21)), "MJPEG 320x240 cd=8 4:4:0");
    EXPECT_EQ(told(JPEG("", 0x31)), "MJPEG 320x240 cd=8"); // a ratio that has no name
    EXPECT_EQ(told(JPEG("", 0x21, 0)), "MJPEG 320x240 cd=8");
    EXPECT_EQ(told("\xFF\xD8"s + Segment(0xC0, "\x08"s + Big(2, 2) + Big(3, 2) + "\1\1\x11\0"s)),
              "MJPEG 3x2 cd=8 grey");
    EXPECT_EQ(told(JPEG(Segment(0xE1, "Exif"))), "MJPEG 320x240 cd=8 4:2:2");
    EXPECT_EQ(told(JPEG("\xFF"s)), "MJPEG 320x240 cd=8 4:2:2"); // bytes that fill up
}

TEST(MJPEGVideo, SamplesHaveEightToSixteenBits) {
    constexpr std::array<const char*, 18> kTold = {
        "nothing", "nothing", "nothing", "nothing", "nothing", "nothing", "nothing", "nothing", "cd=8",
        "cd=9",    "cd=10",   "cd=11",   "cd=12",   "cd=13",   "cd=14",   "cd=15",   "cd=16",   "nothing"};
    for (unsigned bits = 0; bits < kTold.size(); ++bits) {
        const std::string frame = Segment(0xC3, Big(bits, 1) + Big(2, 2) + Big(3, 2) + "\1\1\x11\0"s);
        const bool fTold = kTold[bits] != "nothing"s;
        EXPECT_EQ(Told<MJPEGVideo_Read>("\xFF\xD8"s + frame),
                  fTold ? "MJPEG 3x2 "s + kTold[bits] + " grey" : "nothing");
    }
}

TEST(MJPEGVideo, FieldsAreToldByAVIAndQuickTime) {
    const auto told = Told<MJPEGVideo_Read>;
    EXPECT_EQ(told(JPEG(OfAVI(0))), "MJPEG 320x240 progressive cd=8 4:2:2");
    EXPECT_EQ(told(JPEG(OfAVI(1))), "MJPEG 320x480 interlaced cd=8 4:2:2");
    EXPECT_EQ(told(JPEG(OfAVI(2))), "MJPEG 320x480 interlaced cd=8 4:2:2");
    EXPECT_EQ(told(JPEG(OfQuickTime(0))), "MJPEG 320x240 progressive cd=8 4:2:2");
    EXPECT_EQ(told(JPEG(OfQuickTime(500))), "MJPEG 320x480 interlaced cd=8 4:2:2");
}

TEST(MJPEGVideo, WhatIsNoPictureTellsNothing) {
    const auto told = Told<MJPEGVideo_Read>;
    EXPECT_EQ(told(""), "nothing");
    EXPECT_EQ(told("\xFF\xD9"), "nothing");
    EXPECT_EQ(told("\xFF\xD8"s + Segment(0xDA, "") + Segment(0xC0, std::string(15, '\1'))), "nothing");
    EXPECT_EQ(told("\xFF\xD8\xFF\xC0\0\1"s + std::string(20, '\1')), "nothing"); // a length below its own
    EXPECT_EQ(told("\xFF\xD8"s + Segment(0xC4, std::string(15, '\1'))), "nothing");
    EXPECT_EQ(told("\xFF\xD8"s + Segment(0xC0, "\x08"s + Big(0, 2) + Big(3, 2) + "\1\1\x11\0"s)), "nothing");
    ExpectAllOrNothing<MJPEGVideo_Read>(JPEG(OfAVI(1)));
}

TEST(DVVideo, TellsWhatItsSystemIs) {
    const auto told = Told<DVVideo_Read>;
    EXPECT_EQ(told(DV(false, 0, 0)), "DV 25@? 720x480 8:9 fr=29970 interlaced cd=8 4:1:1");
    EXPECT_EQ(told(DV(true, 0, 0)), "DV 25@? 720x576 16:15 fr=25000 interlaced cd=8 4:2:0");
    EXPECT_EQ(told(DV(true, 0, 0, 1)), "DV 25@? 720x576 16:15 fr=25000 interlaced cd=8 4:1:1");
    EXPECT_EQ(told(DV(false, 0, 2)), "DV 25@? 720x480 32:27 fr=29970 interlaced cd=8 4:1:1");
    EXPECT_EQ(told(DV(true, 0, 7)), "DV 25@? 720x576 64:45 fr=25000 interlaced cd=8 4:2:0");
    EXPECT_EQ(told(DV(true, 0, 7, 1)), "DV 25@? 720x576 16:15 fr=25000 interlaced cd=8 4:1:1");
    EXPECT_EQ(told(DV(false, 4, 0)), "DV 50@? 720x480 8:9 fr=29970 interlaced cd=8 4:2:2");
    EXPECT_EQ(told(DV(true, 4, 2)), "DV 50@? 720x576 64:45 fr=25000 interlaced cd=8 4:2:2");
    EXPECT_EQ(told(DV(false, 0x14, 0)), "DV 100@? 1280x1080 3:2 fr=29970 interlaced cd=8 4:2:2");
    EXPECT_EQ(told(DV(true, 0x14, 0)), "DV 100@? 1440x1080 4:3 fr=25000 interlaced cd=8 4:2:2");
    EXPECT_EQ(told(DV(false, 0x18, 0)), "DV 100@? 960x720 4:3 fr=59940 progressive cd=8 4:2:2");
    EXPECT_EQ(told(DV(true, 0x18, 0)), "DV 100@? 960x720 4:3 fr=50000 progressive cd=8 4:2:2");
}

TEST(DVVideo, WhatIsNoSequenceTellsNothing) {
    const auto told = Told<DVVideo_Read>;
    EXPECT_EQ(told(DV(true, 1, 0)), "nothing") << "no such system";
    EXPECT_EQ(told("\x1E" + DV(true, 0, 0).substr(1)), "nothing");
    std::string bare(480, '\xFF'); // no packs: as most are
    bare.replace(0, 5, "\x1F\x07\0\xBF\x78"s);
    EXPECT_EQ(told(bare), "DV 25@? 720x576 16:15 fr=25000 interlaced cd=8 4:2:0");
    ExpectAllOrNothing<DVVideo_Read>(DV(true, 0, 0));
}

TEST(ProResVideo, TellsWhatTheFrameHeaderSays) {
    const auto told = Told<ProResVideo_Read>;
    EXPECT_EQ(told(ProRes(0x80, 0x13)), "ProRes 1920x1080 1:1 fr=25000 progressive 4:2:2");
    EXPECT_EQ(told(ProRes(0xC4, 0x34)), "ProRes 1920x1080 1:1 fr=29970 interlaced 4:4:4");
    EXPECT_EQ(told(ProRes(0x88, 0x2B)), "ProRes 1920x1080 3:4 fr=120000 interlaced 4:2:2");
    EXPECT_EQ(told(ProRes(0x8C, 0x0C)), "ProRes 1920x1080 4:2:2");
    EXPECT_EQ(told(ProRes(0x80, 0x41, false)), "ProRes 1920x1080 fr=23976 progressive 4:2:2");
    EXPECT_EQ(told(ProRes(0x40, 0x13)), "nothing") << "no such sampling";
    EXPECT_EQ(told("\0\x13"s + ProRes(0x80, 0x13, false).substr(2)), "nothing")
        << "a header that is too short";
    ExpectAllOrNothing<ProResVideo_Read>(ProRes(0x80, 0x13).substr(0, 22));
}

TEST(FrameVideo, FramesTellOfTheirCodecAlone) {
    const std::string jpeg = JPEG("");
    EXPECT_EQ(Text(FrameVideo_Read("MJPEG", Data(jpeg), jpeg.size())), "MJPEG 320x240 cd=8 4:2:2");
    EXPECT_EQ(Text(FrameVideo_Read("DV", Data(jpeg), jpeg.size())), "nothing");
    EXPECT_EQ(Text(FrameVideo_Read("Cinepak", Data(jpeg), jpeg.size())), "nothing");
    for (const char* codec : {"H264", "H265", "MPEG1", "MPEG2", "MPEG4", "VC1", "MJPEG", "DV"}) {
        EXPECT_TRUE(FrameVideo_Tells(codec)) << codec;
    }
    for (const char* codec : {"WMV1", "WMV3", "MSMPEG4v3", "Cinepak", "encrypted:H264", ""}) {
        EXPECT_FALSE(FrameVideo_Tells(codec)) << codec;
    }
}
