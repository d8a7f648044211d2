#include "ezFormats/codecs/MPEG4Visual.h"

#include "companions/ezFormats/codecs/MPEG4Bytes.h"
#include "companions/ezFormats/codecs/VideoFactsText.h"

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

TEST(MPEG4Visual, CutAnywhereTellsTheSameOrLess) {
    const std::string stream = Hex({0, 0, 1, 0xB0, 0x03}) + Layer().Bytes();
    for (std::size_t size = 0; size <= stream.size(); ++size) {
        const std::string told = Told(stream.substr(0, size));
        EXPECT_TRUE(told == "nothing" || told == "MPEG4 Simple@30" || told == Told(stream)) << size << told;
    }
    EXPECT_EQ(Told(std::string(1000, '\0')), "nothing");
}
