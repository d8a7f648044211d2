#include "ezFormats/codecs/VC1Video.h"

#include "companions/ezFormats/codecs/VC1Bytes.h"
#include "companions/ezFormats/codecs/VideoFactsText.h"

#include "ezFormats/codecs/VC1Headers.h"

#include <gtest/gtest.h>

namespace {

using vc1::EntryPoint;
using vc1::Frame;
using vc1::Sequence;

std::string Told(const std::string& aBytes) {
    return Text(VC1Video_ReadStream(Data(aBytes), aBytes.size()));
}

std::string ToldBy(const std::string& aStructC) {
    return Text(VC1Video_ReadStructC(Data(aStructC), aStructC.size()));
}

std::string ToldByConfig(const std::string& aConfig) {
    return Text(VC1Video_ReadConfig(Data(aConfig), aConfig.size()));
}

} // namespace

TEST(VC1Video, TellsWhatTheSequenceHeaderSays) {
    Sequence sequence;
    EXPECT_EQ(Told(sequence.Bytes()), "VC1 Advanced@20 1280x720 progressive cd=8 4:2:0");
    EXPECT_EQ(Told(Hex({0x29}) + sequence.Bytes() + EntryPoint()), Told(sequence.Bytes()))
        << "what stands before is passed, as in the codec data of ASF";
    sequence.mLevel = 0;
    sequence.mWidth = 8192;
    sequence.mHeight = 2;
    EXPECT_EQ(Told(sequence.Bytes()), "VC1 Advanced@0 8192x2 progressive cd=8 4:2:0");
    sequence.mLevel = 4;
    sequence.mDisplayWidth = 16384;
    sequence.mDisplayHeight = 1;
    sequence.mAspect = 1;
    EXPECT_EQ(Told(sequence.Bytes()), "VC1 Advanced@40 8192x2 1:1 progressive cd=8 4:2:0");
}

TEST(VC1Video, WhatTheFormatDoesNotAllowIsNoSequence) {
    for (const unsigned level : {5U, 6U, 7U}) {
        Sequence sequence;
        sequence.mLevel = level;
        EXPECT_EQ(Told(sequence.Bytes()), "nothing") << level;
    }
    for (const unsigned chroma : {0U, 2U, 3U}) {
        Sequence sequence;
        sequence.mChroma = chroma;
        EXPECT_EQ(Told(sequence.Bytes()), "nothing") << chroma;
    }
    for (const unsigned profile : {0U, 1U, 2U}) {
        Sequence sequence;
        sequence.mProfile = profile;
        EXPECT_EQ(Told(sequence.Bytes()), "nothing") << profile;
    }
    EXPECT_EQ(Told(EntryPoint(640, 480) + Frame(0)), "nothing") << "no sequence header";
    EXPECT_EQ(Told(""), "nothing");
}

TEST(VC1Video, ShapesOfAPixelAreThoseOfTheTableOrStatedOrOfTheDisplay) {
    struct Case {
        unsigned mWidth; ///< of the display
        unsigned mHeight;
        unsigned mAspect;
        unsigned mPixelWidth;
        unsigned mPixelHeight;
        const char* mPixel;
    };
    constexpr Case kCases[] = {{0, 0, 0, 1, 1, ""},
                               {720, 480, 1, 1, 1, "1:1"},
                               {720, 480, 2, 1, 1, "12:11"},
                               {720, 480, 3, 1, 1, "10:11"},
                               {720, 480, 4, 1, 1, "16:11"},
                               {720, 480, 5, 1, 1, "40:33"},
                               {720, 480, 6, 1, 1, "24:11"},
                               {720, 480, 7, 1, 1, "20:11"},
                               {720, 480, 8, 1, 1, "32:11"},
                               {720, 480, 9, 1, 1, "80:33"},
                               {720, 480, 10, 1, 1, "18:11"},
                               {720, 480, 11, 1, 1, "15:11"},
                               {720, 480, 12, 1, 1, "64:33"},
                               {720, 480, 13, 1, 1, "160:99"},
                               {720, 480, 14, 1, 1, ""},
                               {720, 480, 15, 256, 1, "256:1"},
                               {720, 480, 15, 64, 45, "64:45"},
                               {853, 480, 0, 1, 1, "853:720"},
                               {640, 480, 0, 1, 1, "8:9"},
                               {720, 480, 0, 1, 1, ""},
                               {705, 480, 0, 1, 1, ""},
                               {704, 480, 0, 1, 1, "44:45"},
                               {720, 465, 0, 1, 1, ""},
                               {720, 464, 0, 1, 1, "30:29"}};
    for (const Case& shape : kCases) {
        Sequence sequence;
        sequence.mWidth = 720;
        sequence.mHeight = 480;
        sequence.mDisplayWidth = shape.mWidth;
        sequence.mDisplayHeight = shape.mHeight;
        sequence.mAspect = shape.mAspect;
        sequence.mPixelWidth = shape.mPixelWidth;
        sequence.mPixelHeight = shape.mPixelHeight;
        const std::string bytes = sequence.Bytes();
        const std::optional<VideoFacts> facts = VC1Video_ReadStream(Data(bytes), bytes.size());
        ASSERT_TRUE(facts.has_value());
        EXPECT_STREQ(facts->mPixelAspect.GetText().c_str(), shape.mPixel)
            << shape.mWidth << "x" << shape.mHeight << " " << shape.mAspect;
        EXPECT_EQ(facts->mWidth, 720U) << "the display is not what is coded";
    }
}

TEST(VC1Video, FrameRatesAreThoseOfTheTablesOrStated) {
    struct Case {
        unsigned mRate;
        unsigned mDivisor;
        unsigned mRateExp;
        std::uint32_t mTold;
    };
    constexpr Case kCases[] = {
        {1, 1, 0, 24000}, {1, 2, 0, 23976},   {2, 1, 0, 25000},     {3, 1, 0, 30000}, {3, 2, 0, 29970},
        {4, 1, 0, 50000}, {5, 1, 0, 60000},   {5, 2, 0, 59940},     {6, 1, 0, 48000}, {7, 1, 0, 72000},
        {8, 1, 0, 0},     {255, 1, 0, 0},     {1, 0, 0, 0},         {1, 3, 0, 0},     {0, 1, 399, 12500},
        {0, 1, 1, 63},    {0, 1, 959, 30000}, {0, 1, 9599, 300000}, {0, 1, 9600, 0},  {0, 1, 65535, 0}};
    for (const Case& rate : kCases) {
        Sequence sequence;
        sequence.mDisplayWidth = 1280;
        sequence.mDisplayHeight = 720;
        sequence.mRate = rate.mRate;
        sequence.mDivisor = rate.mDivisor;
        sequence.mRateExp = rate.mRateExp;
        sequence.mfColours = true;
        const std::string bytes = sequence.Bytes();
        const std::optional<VideoFacts> facts = VC1Video_ReadStream(Data(bytes), bytes.size());
        ASSERT_TRUE(facts.has_value());
        EXPECT_EQ(facts->mFrameRate, rate.mTold)
            << rate.mRate << " " << rate.mDivisor << " " << rate.mRateExp;
    }
}

TEST(VC1Video, ScanIsThatOfTheFramesThatAreThere) {
    Sequence sequence;
    const std::string plain = sequence.Bytes() + EntryPoint();
    sequence.mfInterlaced = true;
    const std::string may = sequence.Bytes() + EntryPoint();
    sequence.mfSegmented = true;
    const std::string segmented = sequence.Bytes() + EntryPoint();
    struct Case {
        std::string mBytes;
        const char* mScan;
    };
    const Case kCases[] = {{plain, kScan_Progressive},
                           {plain + Frame(3), kScan_Progressive}, // these bits say something else there
                           {may, kScan_Interlaced},
                           {may + Frame(0) + Frame(0), kScan_Progressive},
                           {may + Frame(0) + Frame(2), kScan_Interlaced},
                           {may + Frame(3), kScan_Interlaced},
                           {may + vc1::Unit(0x0C, Content(9)) + Frame(0), kScan_Progressive},
                           {Frame(3) + may + Frame(0), kScan_Progressive}, // of another sequence
                           {segmented, kScan_Progressive},
                           {segmented + Frame(3), kScan_Progressive}};
    for (const Case& scan : kCases) {
        const std::optional<VideoFacts> facts = VC1Video_ReadStream(Data(scan.mBytes), scan.mBytes.size());
        ASSERT_TRUE(facts.has_value());
        EXPECT_STREQ(facts->mScan, scan.mScan) << (&scan - kCases);
    }
}

TEST(VC1Video, SizeIsThatOfTheFirstEntryPoint) {
    struct Case {
        unsigned mBuckets; ///< of the sequence; an entry point has a byte for each
        std::string mRest;
        const char* mSize;
    };
    const Case kCases[] = {{0, EntryPoint(), "1280x720"},
                           {0, EntryPoint(640, 360), "640x360"},
                           {1, EntryPoint(640, 360, 1), "640x360"},
                           {31, EntryPoint(640, 360, 31), "640x360"},
                           {0, EntryPoint(1282, 720), "1280x720"}, // more than the sequence has
                           {0, EntryPoint(1280, 722), "1280x720"},
                           {0, EntryPoint() + EntryPoint(640, 360), "1280x720"},
                           {0, Frame(0) + EntryPoint(640, 360), "1280x720"}};
    for (const Case& size : kCases) {
        Sequence sequence;
        sequence.mBuckets = size.mBuckets;
        EXPECT_EQ(Told(sequence.Bytes() + size.mRest),
                  "VC1 Advanced@20 " + std::string(size.mSize) + " progressive cd=8 4:2:0")
            << (&size - kCases);
    }
}

TEST(VC1Video, ZerosInAHeaderAreGuarded) {
    Sequence sequence;
    sequence.mWidth = 2; // the twelve bits are zero, and those after them nearly
    sequence.mHeight = 2;
    sequence.mDisplayWidth = 1;
    sequence.mDisplayHeight = 1;
    sequence.mBuckets = 1;
    EXPECT_NE(Escaped(sequence.Content()), sequence.Content()) << "the test is about a header with some";
    EXPECT_EQ(Told(sequence.Bytes()), "VC1 Advanced@20 2x2 progressive cd=8 4:2:0");
}

TEST(VC1Video, CutAnywhereTellsTheSameOrLess) {
    Sequence sequence;
    sequence.mDisplayWidth = 640;
    sequence.mDisplayHeight = 480;
    sequence.mAspect = 15;
    sequence.mPixelWidth = 64;
    sequence.mPixelHeight = 45;
    sequence.mRate = 2;
    sequence.mfColours = true;
    sequence.mBuckets = 31;
    const std::string stream = sequence.Bytes() + EntryPoint(640, 360, 31) + Frame(0);
    EXPECT_EQ(Told(stream), "VC1 Advanced@20 640x360 64:45 fr=25000 progressive cd=8 4:2:0");
    for (std::size_t size = 0; size < stream.size(); ++size) {
        const std::string told = Told(stream.substr(0, size));
        EXPECT_TRUE(told == "nothing" || told == "VC1 Advanced@20 1280x720 progressive cd=8 4:2:0" ||
                    told == "VC1 Advanced@20 1280x720 64:45 fr=25000 progressive cd=8 4:2:0" ||
                    told == Told(stream))
            << size << " " << told;
    }
    ezVC1Sequence read;
    const std::string content = sequence.Content();
    EXPECT_TRUE(ezVC1Sequence_Read(Data(content), content.size(), read));
    EXPECT_FALSE(ezVC1Sequence_Read(Data(content), content.size() - 1, read));
    EXPECT_LT(content.size(), kVC1_MaxHeaderSize);
    const std::string least = Sequence().Content().substr(0, kVC1_MinSequenceSize);
    EXPECT_TRUE(ezVC1Sequence_Read(Data(least), least.size(), read));
    EXPECT_FALSE(ezVC1Sequence_Read(Data(least), least.size() - 1, read));
}

TEST(VC1Video, StructCTellsTheProfileAlone) {
    EXPECT_EQ(ToldBy(Hex({0x0F, 0xF1, 0x00, 0x01})), "WMV3 Simple@? progressive cd=8 4:2:0");
    EXPECT_EQ(ToldBy(Hex({0x4F, 0xF1, 0x80, 0x01, 0x00})), "WMV3 Main@? progressive cd=8 4:2:0");
    EXPECT_EQ(ToldBy(Hex({0x8F, 0xF1, 0x80, 0x01})), "WMV3 Complex@? cd=8 4:2:0");
    EXPECT_EQ(ToldBy(Hex({0xC0})), "VC1 Advanced@? cd=8 4:2:0");
    EXPECT_EQ(ToldBy(""), "nothing");
}

TEST(VC1Video, ConfigTellsProfileAndLevel) {
    const std::string head = Hex({0xC4, 0x40, 0x04, 0, 0, 0x61, 0xA8});
    EXPECT_EQ(ToldByConfig(head + Sequence().Bytes()), "VC1 Advanced@20 1280x720 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldByConfig(head), "VC1 Advanced@20 cd=8 4:2:0");
    EXPECT_EQ(ToldByConfig(Hex({0xCA})), "VC1 Advanced@? cd=8 4:2:0") << "a level that is reserved";
    EXPECT_EQ(ToldByConfig(Hex({0x44})), "WMV3 Main@20 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldByConfig(Hex({0x00})), "WMV3 Simple@10 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldByConfig(Hex({0x48})), "WMV3 Main@40 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldByConfig(Hex({0x46})), "WMV3 Main@? progressive cd=8 4:2:0");
    EXPECT_EQ(ToldByConfig(Hex({0x10})), "nothing");
    EXPECT_EQ(ToldByConfig(""), "nothing");
}
