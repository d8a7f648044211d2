#include "ezFormats/codecs/MPEG4Visual.h"

#include "companions/ezFormats/codecs/MPEG4Bytes.h"
#include "companions/ezFormats/codecs/VideoFactsText.h"
#include "support/NumberBytes.h"

#include <gtest/gtest.h>

#include <array>

namespace {

using mpeg4::Layer;

std::string Told(const std::string& aBytes) {
    return Text(MPEG4Visual_Read(Data(aBytes), aBytes.size()));
}

std::string PixelOf(unsigned aCode, unsigned aWidth = 0, unsigned aHeight = 0) {
    Layer layer;
    layer.mAspect = aCode;
    layer.mPixelWidth = aWidth;
    layer.mPixelHeight = aHeight;
    const std::string bytes = layer.Bytes();
    const std::optional<VideoFacts> facts = MPEG4Visual_Read(Data(bytes), bytes.size());
    return facts.has_value() ? facts->mPixelAspect.GetText().c_str() : "nothing";
}

} // namespace

TEST(MPEG4Visual, TellsWhatItsLayerSays) {
    Layer layer;
    const std::string plain = "MPEG4 352x288 1:1 fr=25000 progressive cd=8 4:2:0";
    EXPECT_EQ(Told(layer.Bytes()), plain);
    layer.mfControl = true;
    layer.mfIdentifier = true;
    EXPECT_EQ(Told(layer.Bytes()), plain) << "what stands between is passed";
    layer.mfInterlaced = true;
    EXPECT_EQ(Told(Hex({0, 0, 1, 0xB0, 0xF5}) + Content(9) + layer.Bytes()),
              "MPEG4 AdvancedSimple@50 352x288 1:1 fr=25000 interlaced cd=8 4:2:0");
}

TEST(MPEG4Visual, ShapesOfAPixelAreThoseOfTheTableOrStated) {
    constexpr std::array<const char*, 15> kShapes = {"", "1:1", "12:11", "10:11", "16:11", "40:33", "", "",
                                                     "", "",    "",      "",      "",      "",      ""};
    for (unsigned code = 0; code < kShapes.size(); ++code) {
        EXPECT_EQ(PixelOf(code), kShapes[code]) << code;
    }
    EXPECT_EQ(PixelOf(15, 64, 45), "64:45");
    EXPECT_EQ(PixelOf(15, 128, 90), "64:45");
    EXPECT_EQ(PixelOf(15, 0, 45), "");
    EXPECT_EQ(PixelOf(15, 64, 0), "");
}

TEST(MPEG4Visual, FrameRateIsToldWherePicturesLastEquallyLong) {
    struct Case {
        unsigned mResolution;
        bool mfFixed;
        unsigned mIncrement;
        unsigned mIncrementBits;
        const char* mRate;
    };
    constexpr std::array<Case, 13> kCases = {{{25, true, 1, 5, " fr=25000"},
                                              {30000, true, 1001, 15, " fr=29970"},
                                              {24000, true, 1001, 15, " fr=23976"},
                                              {15, true, 2, 4, " fr=7500"},
                                              {1, true, 1, 1, " fr=1000"},
                                              {16, true, 1, 4, " fr=16000"}, // increments below 16
                                              {17, true, 1, 5, " fr=17000"},
                                              {30000, false, 0, 0, ""},
                                              {25, true, 0, 5, ""},
                                              {0, true, 1, 1, ""},
                                              {300, true, 1, 9, " fr=300000"},
                                              {301, true, 1, 9, ""}, // no clock of pictures
                                              {65535, true, 1, 16, ""}}};
    for (const Case& rate : kCases) {
        Layer layer;
        layer.mResolution = rate.mResolution;
        layer.mfFixed = rate.mfFixed;
        layer.mIncrement = rate.mIncrement;
        layer.mIncrementBits = rate.mIncrementBits;
        EXPECT_EQ(Told(layer.Bytes()),
                  "MPEG4 352x288 1:1" + std::string(rate.mRate) + " progressive cd=8 4:2:0")
            << rate.mResolution << " " << rate.mIncrement;
    }
}

TEST(MPEG4Visual, WhatStandsAroundItsLayerTellsNothing) {
    const std::string layer = Layer().Bytes();
    const std::string object = Hex({0, 0, 1, 0});
    const std::string data = Hex({0, 0, 1, 0xB2});
    const std::string profile = Hex({0, 0, 1, 0xB0, 0xF3});
    const std::string visual = Hex({0, 0, 1, 0xB5, 0x09});
    const std::string plane = Hex({0, 0, 1, 0xB6, 0x10}) + Content(40);
    const std::string bidirectional = Hex({0, 0, 1, 0xB6, 0x90}) + Content(20);
    const std::string notCoded = Hex({0, 0, 1, 0xB6, 0x54, 0x3F, 0xFF});
    const std::string told = "352x288 1:1 fr=25000 progressive cd=8 4:2:0";
    const std::string named = "MPEG4 AdvancedSimple@30 " + told;
    struct Case {
        std::string mBytes;
        std::string mTold;
    };
    const std::array<Case, 8> kCases = {
        {{layer, "MPEG4 " + told},
         {object + layer + data + "XviD0064" + plane, "MPEG4 " + told},
         {data + "DivX503b1393p" + object + layer, "MPEG4 " + told}, // its pictures are packed
         {profile + data + "DivX503b1393p" + visual + object + layer + data + "XviD0064" + plane, named},
         {profile + visual + data + "Lavc\x20\x21" + object + layer, named},
         {profile + visual + object + layer + plane + bidirectional, named}, // two pictures in one frame
         {notCoded, "nothing"},                                              // and the one in their place
         {notCoded + layer, "MPEG4 " + told}}};
    for (const Case& around : kCases) {
        EXPECT_EQ(Told(around.mBytes), around.mTold) << &around - kCases.data();
    }
}

TEST(MPEG4Visual, ShortHeadersTellNothing) {
    // short_video_start_marker, and what H.263 has of a picture of 176 by 144 pixels
    EXPECT_EQ(Told(Hex({0, 0, 0x80, 0x02, 0x08, 0x04}) + Content(40)), "nothing");
}

TEST(MPEG4Visual, LayersOfTheStudioProfilesAreNotRead) {
    const std::string layer = Layer().Bytes();
    constexpr std::array<unsigned, 4> kBeside = {0xD3, 0xE0, 0xE9, 0xF0};
    for (unsigned code = 0xE1; code <= 0xE8; ++code) {
        const std::string told = Told(Hex({0, 0, 1, 0xB0}) + Big(code, 1) + layer);
        EXPECT_EQ(told, (code < 0xE5 ? "MPEG4 SimpleStudio@" : "MPEG4 CoreStudio@") +
                            std::to_string(((code - 0xE1) % 4 + 1) * 10));
    }
    for (const unsigned code : kBeside) {
        const std::string told = Told(Hex({0, 0, 1, 0xB0}) + Big(code, 1) + layer);
        EXPECT_NE(told.find("352x288"), std::string::npos) << code;
    }
}

TEST(MPEG4Visual, CutAnywhereTellsTheSameOrLess) {
    const std::string stream = Hex({0, 0, 1, 0xB0, 0x03}) + Layer().Bytes();
    for (std::size_t size = 0; size <= stream.size(); ++size) {
        const std::string told = Told(stream.substr(0, size));
        EXPECT_TRUE(told == "nothing" || told == "MPEG4 Simple@30" || told == Told(stream)) << size << told;
    }
    EXPECT_EQ(Told(std::string(1000, '\0')), "nothing");
}
