#include "ezFormats/codecs/AV1Video.h"

#include "companions/ezFormats/codecs/AV1Bytes.h"
#include "companions/ezFormats/codecs/VideoFactsText.h"

#include <gtest/gtest.h>

using namespace av1;

namespace {

std::string Told(const std::string& aBytes) {
    return Text(AV1Video_Read(Data(aBytes), aBytes.size()));
}

std::string ToldOf(const std::string& aConfig) {
    return Text(AV1Video_ReadConfig(Data(aConfig), aConfig.size()));
}

template <typename Change>
std::string ToldWith(Change aChange) {
    Sequence sequence;
    aChange(sequence);
    return Told(kDelimiter + sequence.Bytes());
}

} // namespace

TEST(AV1Video, TellsWhatItsSequenceHeaderSays) {
    EXPECT_EQ(ToldWith([](Sequence&) {}), "AV1 Main@40 1920x1080 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldWith([](Sequence& s) { s.mLevel = 1; }), "AV1 Main@21 1920x1080 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldWith([](Sequence& s) { s.mLevel = 23; }), "AV1 Main@73 1920x1080 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldWith([](Sequence& s) { s.mLevel = 24; }), "AV1 Main@? 1920x1080 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldWith([](Sequence& s) { s.mLevel = 31; }), "AV1 Main@? 1920x1080 progressive cd=8 4:2:0")
        << "without limits";
    EXPECT_EQ(ToldWith([](Sequence& s) { s.mProfile = 3; }), "nothing");
}

TEST(AV1Video, FieldsBeforeThoseThatTellAreOfAnyLength) {
    EXPECT_EQ(ToldWith([](Sequence& s) {
                  s.mfClock = true;
                  s.mfModel = true;
                  s.mPoints = 32;
                  s.mfTools = true;
              }),
              "AV1 Main@40 1920x1080 fr=29970 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldWith([](Sequence& s) { s.mfTools = true; }),
              "AV1 Main@40 1920x1080 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldWith([](Sequence& s) { s.mfStill = true; }),
              "AV1 Main@40 1920x1080 progressive cd=8 4:2:0");
}

TEST(AV1Video, FrameRateIsToldWherePicturesLastEquallyLong) {
    const auto rate = [](std::uint32_t aUnits, std::uint32_t aScale, bool afEqual, unsigned aTicks) {
        Sequence sequence;
        sequence.mfClock = true;
        sequence.mUnits = aUnits;
        sequence.mScale = aScale;
        sequence.mfEqual = afEqual;
        sequence.mTicks = aTicks;
        const std::string bytes = sequence.Bytes();
        return AV1Video_Read(Data(bytes), bytes.size()).value_or(VideoFacts()).mFrameRate;
    };
    EXPECT_EQ(rate(1, 25, true, 0), 25000U);
    EXPECT_EQ(rate(1001, 60000, true, 1), 29970U);
    EXPECT_EQ(rate(1, 25, false, 0), 0U);
    EXPECT_EQ(rate(0, 25, true, 0), 0U);
    EXPECT_EQ(rate(1, 0, true, 0), 0U);
    EXPECT_EQ(rate(UINT32_MAX, UINT32_MAX, true, UINT32_MAX - 1), 0U);
    EXPECT_EQ(rate(1, 300, true, 0), 300000U);
    EXPECT_EQ(rate(1, 301, true, 0), 0U) << "no clock of pictures";
    EXPECT_EQ(rate(1, UINT32_MAX, true, 0), 0U);
}

TEST(AV1Video, ColoursFollowFromProfileAndFlags) {
    const auto colours = [](unsigned aProfile, bool afHigh, bool afTwelve, bool afGrey, unsigned aSampling) {
        const std::string told = ToldWith([&](Sequence& s) {
            s.mProfile = aProfile;
            s.mfHigh = afHigh;
            s.mfTwelve = afTwelve;
            s.mfGrey = afGrey;
            s.mSubsampling = aSampling;
        });
        return told.substr(told.find("cd="));
    };
    EXPECT_EQ(colours(0, true, false, false, 0), "cd=10 4:2:0");
    EXPECT_EQ(colours(0, false, false, true, 0), "cd=8 grey");
    EXPECT_EQ(colours(1, true, false, false, 0), "cd=10 4:4:4");
    EXPECT_EQ(colours(2, true, false, false, 0), "cd=10 4:2:2");
    EXPECT_EQ(colours(2, true, true, false, 0), "cd=12 4:4:4");
    EXPECT_EQ(colours(2, true, true, false, 2), "cd=12 4:2:2");
    EXPECT_EQ(colours(2, true, true, false, 3), "cd=12 4:2:0");
    const std::string rgb = ToldWith([](Sequence& s) {
        s.mProfile = 1;
        s.mPrimaries = 1;
        s.mTransfer = 13;
        s.mMatrix = 0;
    });
    EXPECT_EQ(rgb, "AV1 High@40 1920x1080 progressive cd=8 RGB");
}

TEST(AV1Video, TransferAndMetadataTellTheDynamicRange) {
    const auto told = [](int aTransfer, const std::string& aMore) {
        Sequence sequence;
        sequence.mfHigh = true;
        sequence.mTransfer = aTransfer;
        const std::string text = Told(kDelimiter + sequence.Bytes() + aMore);
        return text.substr(text.find("4:2:0") + 5);
    };
    EXPECT_EQ(told(16, ""), " PQ");
    EXPECT_EQ(told(16, kLight), " HDR10");
    EXPECT_EQ(told(16, Unit(5, Hex({2}) + std::string(24, '\1'))), " HDR10");
    EXPECT_EQ(told(16, kLight + kDynamic), " HDR10+");
    EXPECT_EQ(told(16, Unit(5, Hex({4, 0xB5, 0x00, 0x31, 0x00, 0x01, 0x04}))), " PQ") << "of captions";
    EXPECT_EQ(told(16, Unit(5, Hex({0x80}))), " PQ") << "of no type";
    EXPECT_EQ(told(18, kLight), " HLG");
    EXPECT_EQ(told(1, kLight), "");
    EXPECT_EQ(told(-1, kLight), "");
}

TEST(AV1Video, ConfigurationTellsWithItsUnitsOrWithout) {
    EXPECT_EQ(ToldOf(Config(0, 5, 0x0C)), "AV1 Main@31 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldOf(Config(0, 13, 0x4C)), "AV1 Main@51 progressive cd=10 4:2:0");
    EXPECT_EQ(ToldOf(Config(2, 31, 0xE8)), "AV1 Professional@? progressive cd=12 4:2:2");
    EXPECT_EQ(ToldOf(Config(1, 5, 0x00)), "AV1 High@31 progressive cd=8 4:4:4");
    EXPECT_EQ(ToldOf(Config(0, 5, 0x1C)), "AV1 Main@31 progressive cd=8 grey");
    Sequence sequence;
    sequence.mTransfer = 16;
    EXPECT_EQ(ToldOf(Config(0, 5, 0x0C, sequence.Bytes() + kLight)),
              "AV1 Main@40 1920x1080 progressive cd=8 4:2:0 HDR10");
    EXPECT_EQ(ToldOf(Config(3, 5, 0x0C)), "nothing");
    EXPECT_EQ(ToldOf(Hex({0x80, 0, 0, 0})), "nothing");
    EXPECT_EQ(ToldOf(Hex({0x81, 0, 0})), "nothing");
}

TEST(AV1Video, DamageEndsTheWalkAndTellsNothing) {
    const Sequence sequence;
    const std::string good = kDelimiter + sequence.Bytes();
    EXPECT_EQ(Told("\x92" + good), "nothing") << "a forbidden bit";
    EXPECT_EQ(Told(Hex({0x10}) + good), "nothing") << "no size";
    EXPECT_EQ(Told(Hex({0x12, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}) + good), "nothing");
    EXPECT_EQ(Told(Hex({0x12, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}) + good), "nothing");
    EXPECT_EQ(Told(Hex({0x16, 0xFF, 0x80, 0x80, 0x00}) + good), Told(good))
        << "an extension, a long size of 0";
    for (std::size_t size = 0; size < good.size(); ++size) {
        EXPECT_EQ(Told(good.substr(0, size)), "nothing") << size;
    }
    EXPECT_EQ(Told(good + Hex({0x32, 0x7F, 1, 2})), Told(good)) << "a frame that is cut";
    Sequence other;
    other.mWidth = 640;
    EXPECT_EQ(Told(good + other.Bytes()), Told(good)) << "the first tells";
}
