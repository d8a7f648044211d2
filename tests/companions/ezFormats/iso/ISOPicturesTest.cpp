#include "companions/ezFormats/iso/ISOBytes.h"

#include "companions/ezFormats/codecs/AV1Bytes.h"
#include "companions/ezFormats/codecs/H265Bytes.h"
#include "companions/ezFormats/codecs/MPEGVideoBytes.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <gtest/gtest.h>

using namespace iso;

namespace {

/// What is told of the pictures of a track with this entry.
std::string Told(const std::string& anEntry) {
    return Values(Parsed(VideoFile(anEntry)),
                  {"vc", "vp", "vl", "wi", "he", "pa", "dr", "pr", "cd", "cr", "hd"});
}

/// The same of MJPEG, whose entry says nothing but its boxes.
std::string Shown(const std::string& aBoxes, unsigned aWidth = 720, unsigned aHeight = 576) {
    const std::string told = Values(Parsed(VideoFile(VideoEntry("mjpa", aBoxes, aWidth, aHeight))),
                                    {"wi", "he", "pa", "dr", "pr", "hd"});
    return told;
}

std::string PixelBox(std::uint32_t aWidth, std::uint32_t aHeight) {
    return Box("pasp", Big(aWidth, 4) + Big(aHeight, 4));
}

std::string CleanBox(std::uint32_t aWidth, std::uint32_t aHeight, std::uint32_t aDivisor = 1) {
    return Box("clap", Big(aWidth, 4) + Big(aDivisor, 4) + Big(aHeight, 4) + Big(aDivisor, 4) + Big(0, 4) +
                           Big(1, 4) + Big(0, 4) + Big(1, 4));
}

std::string ColourBox(const std::string& aKind, unsigned aTransfer) {
    return Box("colr", aKind + Big(9, 2) + Big(aTransfer, 2) + Big(9, 2) + Big(0, 1));
}

const std::string kMastering = Box("mdcv", std::string(24, '\1'));
const std::string kDolby = Hex({1, 0, 10, 0x2D, 0x10});

} // namespace

TEST(ISOPictures, AV1IsDescribedByItsBox) {
    EXPECT_EQ(Told(VideoEntry("av01", Box("av1C", av1::Config(0, 5, 0x4C)))),
              "vc=\"AV1\" vp=\"Main\" vl=31 wi=320 he=240 pr=\"progressive\" cd=10 cr=\"4:2:0\"");
    av1::Sequence sequence;
    sequence.mWidth = 640;
    sequence.mHeight = 360;
    sequence.mTransfer = 16;
    EXPECT_EQ(Told(VideoEntry("av01", Box("av1C", av1::Config(0, 5, 0x4C, sequence.Bytes())))),
              "vc=\"AV1\" vp=\"Main\" vl=40 wi=640 he=360 pr=\"progressive\" cd=8 cr=\"4:2:0\" hd=\"PQ\"");
    EXPECT_EQ(Told(VideoEntry("av01", Box("av1C", "short"))), "vc=\"AV1\" wi=320 he=240");
    // Longer than any: what stands in its first bytes counts.
    EXPECT_EQ(Told(VideoEntry("av01", Box("av1C", av1::Config(0, 5, 0x4C, std::string(1000, '\0'))))),
              "vc=\"AV1\" vp=\"Main\" vl=31 wi=320 he=240 pr=\"progressive\" cd=10 cr=\"4:2:0\"");
}

TEST(ISOPictures, VP9AndVP8AreDescribedByTheirBox) {
    const std::string box = Box("vpcC", Hex({1, 0, 0, 0, 2, 41, 0xA2, 9, 18, 9, 0, 0}));
    EXPECT_EQ(Told(VideoEntry("vp09", box)),
              "vc=\"VP9\" vp=\"2\" vl=41 wi=320 he=240 pr=\"progressive\" cd=10 cr=\"4:2:0\" hd=\"HLG\"");
    EXPECT_EQ(Told(VideoEntry("vp08", Box("vpcC", Hex({1, 0, 0, 0, 0, 0, 0x82, 2, 2, 2, 0, 0})))),
              "vc=\"VP8\" vp=\"0\" wi=320 he=240 pr=\"progressive\" cd=8 cr=\"4:2:0\"");
    EXPECT_EQ(Told(VideoEntry("vp09", "")), "vc=\"VP9\" wi=320 he=240");
}

TEST(ISOPictures, HeadersOfMPEGVideoInTheDescriptorTell) {
    const std::string headers = mpegvideo::Sequence().Bytes();
    EXPECT_EQ(Told(VideoEntry("mp4v", ESDS(0x61, headers))),
              "vc=\"MPEG2\" vp=\"Main\" vl=20 wi=720 he=576 pa=\"64:45\" dr=\"16:9\" pr=\"interlaced\" cd=8 "
              "cr=\"4:2:0\"");
    EXPECT_EQ(Told(VideoEntry("mp4v", ESDS(0x64, "broken"))), "vc=\"MPEG2\" vp=\"High\" wi=320 he=240");
}

TEST(ISOPictures, RateOfTheHeadersOfMPEGVideoIsTheMost) {
    const std::string headers = mpegvideo::Sequence().Bytes();
    EXPECT_EQ(Values(Parsed(VideoFile(VideoEntry("mp4v", ESDS(0x61, headers)))), {"vr", "mv"}),
              "vr=4000 mv=6000000");
}

TEST(ISOPictures, ShapeOfAPixelIsThatOfItsBox) {
    EXPECT_EQ(Shown(PixelBox(64, 45)), "wi=720 he=576 pa=\"64:45\" dr=\"16:9\"");
    EXPECT_EQ(Shown(PixelBox(1440, 1080), 1440, 1080), "wi=1440 he=1080 pa=\"4:3\" dr=\"16:9\"");
    EXPECT_EQ(Shown(PixelBox(0, 45)), "wi=720 he=576");
    EXPECT_EQ(Shown(PixelBox(64, 0)), "wi=720 he=576");
    EXPECT_EQ(Shown(PixelBox(UINT32_MAX, UINT32_MAX)), "wi=720 he=576 pa=\"1:1\" dr=\"5:4\"");
    EXPECT_EQ(Shown(PixelBox(UINT32_MAX, 1)), "wi=720 he=576 pa=\"4294967295:1\"") << "a display of no shape";
    EXPECT_EQ(Shown(Box("pasp", Big(64, 4))), "wi=720 he=576") << "cut";
    // It goes before what the codec says.
    const std::string headers = mpegvideo::Sequence().Bytes();
    EXPECT_NE(Told(VideoEntry("mp4v", ESDS(0x61, headers) + PixelBox(1, 1))).find("pa=\"1:1\""),
              std::string::npos);
}

TEST(ISOPictures, CleanApertureCutsOffWhatFillsUpBlocks) {
    EXPECT_EQ(Shown(CleanBox(1920, 1080), 1920, 1088), "wi=1920 he=1080");
    EXPECT_EQ(Shown(CleanBox(8540, 4800, 10), 864, 480), "wi=854 he=480");
    EXPECT_EQ(Shown(CleanBox(704, 576)), "wi=720 he=576") << "a whole block is part of the picture";
    EXPECT_EQ(Shown(CleanBox(703, 576)), "wi=720 he=576");
    EXPECT_EQ(Shown(CleanBox(705, 561)), "wi=705 he=561");
    EXPECT_EQ(Shown(CleanBox(715, 570), 718, 576), "wi=718 he=576") << "not of whole blocks";
    EXPECT_EQ(Shown(CleanBox(721, 577)), "wi=720 he=576") << "more than there is";
    EXPECT_EQ(Shown(CleanBox(0, 576)), "wi=720 he=576");
    EXPECT_EQ(Shown(CleanBox(715, 570, 0)), "wi=720 he=576");
    EXPECT_EQ(Shown(Box("clap", Big(715, 4) + Big(1, 4) + Big(570, 4))), "wi=720 he=576") << "cut";
}

TEST(ISOPictures, FieldsAreToldWhereTheCodecDoesNot) {
    EXPECT_EQ(Shown(Box("fiel", Hex({2, 6}))), "wi=720 he=576 pr=\"interlaced\"");
    EXPECT_EQ(Shown(Box("fiel", Hex({1, 0}))), "wi=720 he=576 pr=\"progressive\"");
    EXPECT_EQ(Shown(Box("fiel", Hex({3, 0}))), "wi=720 he=576");
    EXPECT_EQ(Shown(Box("fiel", "")), "wi=720 he=576");
    EXPECT_NE(Told(VideoEntry("av01", Box("fiel", Hex({2, 6})) + Box("av1C", av1::Config(0, 5, 0x4C))))
                  .find("progressive"),
              std::string::npos);
}

TEST(ISOPictures, DynamicRangeIsThatOfColoursAndMetadata) {
    const auto range = [](const std::string& aBoxes) {
        const std::string told = Shown(aBoxes);
        const std::size_t start = told.find("hd=");
        return start == std::string::npos ? "" : told.substr(start + 3);
    };
    EXPECT_EQ(range(ColourBox("nclx", 16)), "\"PQ\"");
    EXPECT_EQ(range(ColourBox("nclc", 18)), "\"HLG\"");
    EXPECT_EQ(range(ColourBox("nclx", 1)), "");
    EXPECT_EQ(range(ColourBox("prof", 16)), "") << "what follows is something else";
    EXPECT_EQ(range(Box("colr", "nclx" + Big(9, 2))), "") << "cut";
    EXPECT_EQ(range(kMastering + ColourBox("nclx", 16)), "\"HDR10\"");
    EXPECT_EQ(range(ColourBox("nclx", 16) + Box("clli", Big(1000, 2) + Big(400, 2))), "\"HDR10\"");
    EXPECT_EQ(range(ColourBox("nclx", 1) + kMastering), "");
    EXPECT_EQ(range(Box("clli", "") + ColourBox("nclx", 16)), "\"PQ\"");
    EXPECT_EQ(range(ColourBox("nclx", 18) + Box("dvvC", kDolby)), "\"DolbyVision\"");
    EXPECT_EQ(range(Box("dvcC", kDolby)), "\"DolbyVision\"");
    EXPECT_EQ(range(Box("dvcC", std::string(24, '\0'))), "") << "of no version";
    EXPECT_EQ(range(Box("dvcC", "")), "");
    // What the codec says and what the boxes add.
    const auto both = [](int aTransfer, const std::string& aMore, const std::string& aBoxes) {
        av1::Sequence sequence;
        sequence.mTransfer = aTransfer;
        const std::string config = Box("av1C", av1::Config(0, 5, 0x4C, sequence.Bytes() + aMore));
        return ValueOf(Parsed(VideoFile(VideoEntry("av01", config + aBoxes))), "hd");
    };
    EXPECT_EQ(both(16, "", kMastering), "\"HDR10\"");
    EXPECT_EQ(both(16, av1::kDynamic, kMastering + ColourBox("nclx", 16)), "\"HDR10+\"");
    EXPECT_EQ(both(16, av1::kLight, ColourBox("nclx", 1)), "\"HDR10\"") << "the codec knows better";
    EXPECT_EQ(both(18, "", ColourBox("nclx", 16) + kMastering), "\"HLG\"");
    EXPECT_EQ(both(1, "", ColourBox("nclx", 16)), "\"PQ\"");
}

TEST(ISOPictures, HEVCTellsWhatTheEntryDoesNot) {
    const auto told = [](const char* aFormat, const std::string& aBoxes, unsigned aWidth, unsigned aHeight) {
        h265::Stream265 stream;
        stream.mSigns.mTransfer = 16;
        return Values(Parsed(VideoFile(VideoEntry(aFormat, Box("hvcC", h265::Config(stream.Sets())) + aBoxes,
                                                  aWidth, aHeight))),
                      {"vp", "vl", "wi", "he", "pr", "cd", "cr", "hd"});
    };
    const std::string rest = " pr=\"progressive\" cd=8 cr=\"4:2:0\" ";
    EXPECT_EQ(told("hvc1", "", 0, 0), "vp=\"Main\" vl=31 wi=320 he=180" + rest + "hd=\"PQ\"");
    EXPECT_EQ(told("hev1", "", 640, 360), "vp=\"Main\" vl=31 wi=640 he=360" + rest + "hd=\"PQ\"");
    EXPECT_EQ(told("hvc1", kMastering, 0, 0), "vp=\"Main\" vl=31 wi=320 he=180" + rest + "hd=\"HDR10\"");
    EXPECT_EQ(told("dvh1", "", 0, 0), "vp=\"Main\" vl=31 wi=320 he=180" + rest + "hd=\"DolbyVision\"");
    EXPECT_EQ(told("dvhe", "", 0, 0), "vp=\"Main\" vl=31 wi=320 he=180" + rest + "hd=\"DolbyVision\"");
}
