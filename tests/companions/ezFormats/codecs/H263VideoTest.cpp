#include "ezFormats/codecs/H263Video.h"

#include "companions/ezFormats/codecs/VideoFactsText.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <gtest/gtest.h>

namespace {

std::string H263(const std::string& aPicture) {
    return Text(H263Video_Read(Data(aPicture), aPicture.size()));
}

std::string Sorenson(const std::string& aPicture) {
    return Text(SorensonVideo_Read(Data(aPicture), aPicture.size()));
}

std::string Config(const std::string& aBox) {
    return Text(H263Video_ReadConfig(Data(aBox), aBox.size()));
}

/// The header of a picture (ITU-T H.263, 5.1), with what PLUSPTYPE adds where the format is 7.
struct Picture {
    unsigned mStart = 0x20;
    unsigned mType = 2; ///< the first two bits of PTYPE
    unsigned mFormat = 7;
    unsigned mUpdate = 1; ///< UFEP
    unsigned mExtended = 6;
    unsigned mCustomClock = 0;
    unsigned mOptionalEnd = 8; ///< the last four bits of OPPTYPE
    unsigned mMandatoryEnd = 1;
    unsigned mMultipoint = 0;
    unsigned mPixel = 1;
    unsigned mWidth = 159; ///< in fours, less one
    unsigned mMarker = 1;
    unsigned mHeight = 90; ///< in fours
    unsigned mPixelWidth = 0;
    unsigned mPixelHeight = 0;
    unsigned mConversion = 0;
    unsigned mDivisor = 72;

    std::string Bytes() const {
        Bits bits;
        bits.Put(mStart, 22).Put(5, 8).Put(mType, 2).Put(0, 3).Put(mFormat, 3);
        if (mFormat != 7) {
            return bits.Put(0, 5).Put(8, 5).Bytes();
        }
        bits.Put(mUpdate, 3).Put(mExtended, 3).Put(mCustomClock, 1).Put(0, 10).Put(mOptionalEnd, 4);
        bits.Put(0, 6).Put(mMandatoryEnd, 3).Put(mMultipoint, 1).Put(2, 2 * mMultipoint);
        if (mExtended == 6) {
            bits.Put(mPixel, 4).Put(mWidth, 9).Put(mMarker, 1).Put(mHeight, 9);
            bits.Put(mPixelWidth, mPixel == 15 ? 8 : 0).Put(mPixelHeight, mPixel == 15 ? 8 : 0);
        }
        return bits.Put(mConversion, mCustomClock).Put(mDivisor, 7 * mCustomClock).Bytes();
    }
};

template <typename Change>
std::string With(Change aChange) {
    Picture picture;
    aChange(picture);
    return H263(picture.Bytes());
}

std::string SorensonOf(unsigned aFormat, unsigned aWidth = 0, unsigned aHeight = 0, unsigned aType = 0,
                       unsigned aVersion = 1, unsigned aStart = 1) {
    const unsigned bits = aFormat == 0 ? 8 : aFormat == 1 ? 16 : 0;
    return Sorenson(Bits()
                        .Put(aStart, 17)
                        .Put(aVersion, 5)
                        .Put(0, 8)
                        .Put(aFormat, 3)
                        .Put(aWidth, bits)
                        .Put(aHeight, bits)
                        .Put(aType, 2)
                        .Put(0, 6)
                        .Bytes());
}

} // namespace

TEST(H263Video, SourceFormatsHaveTheirSizesAndTheirPixel) {
    constexpr const char* kSizes[] = {"", "128x96", "176x144", "352x288", "704x576", "1408x1152", ""};
    for (unsigned format = 0; format <= 6; ++format) {
        const std::string size = kSizes[format];
        const std::string told = size.empty() ? "nothing" : "H263 " + size + " 12:11 progressive cd=8 4:2:0";
        EXPECT_EQ(With([&](Picture& aPicture) { aPicture.mFormat = format; }), told) << format;
        if (format < 6) {
            EXPECT_EQ(With([&](Picture& aPicture) { aPicture.mExtended = format; }), told) << format;
        }
    }
    EXPECT_EQ(With([](Picture& aPicture) { aPicture.mExtended = 7; }), "nothing");
}

TEST(H263Video, CustomFormatsStateSizePixelAndClock) {
    const auto with = [](auto aChange) { return With(aChange); };
    const std::string end = " progressive cd=8 4:2:0";
    EXPECT_EQ(with([](Picture&) {}), "H263 640x360 1:1" + end);
    EXPECT_EQ(with([](Picture& aPicture) { aPicture.mMultipoint = 1; }), "H263 640x360 1:1" + end);
    EXPECT_EQ(with([](Picture& aPicture) { aPicture.mPixel = 5; }), "H263 640x360 40:33" + end);
    EXPECT_EQ(with([](Picture& aPicture) { aPicture.mPixel = 6; }), "H263 640x360" + end) << "reserved";
    EXPECT_EQ(with([](Picture& aPicture) { aPicture.mPixel = 0; }), "H263 640x360" + end) << "forbidden";
    EXPECT_EQ(with([](Picture& aPicture) {
                  aPicture.mPixel = 15;
                  aPicture.mPixelWidth = 8;
                  aPicture.mPixelHeight = 6;
              }),
              "H263 640x360 4:3" + end);
    EXPECT_EQ(with([](Picture& aPicture) { aPicture.mPixel = 15; }), "H263 640x360" + end) << "0:0";
    EXPECT_EQ(with([](Picture& aPicture) { aPicture.mCustomClock = 1; }), "H263 640x360 1:1 fr=25000" + end);
    EXPECT_EQ(with([](Picture& aPicture) {
                  aPicture.mCustomClock = aPicture.mConversion = 1;
                  aPicture.mDivisor = 60;
              }),
              "H263 640x360 1:1 fr=29970" + end);
    EXPECT_EQ(with([](Picture& aPicture) {
                  aPicture.mCustomClock = 1;
                  aPicture.mDivisor = 0;
              }),
              "H263 640x360 1:1" + end);
    EXPECT_EQ(with([](Picture& aPicture) { aPicture.mHeight = 288; }), "H263 640x1152 1:1" + end);
    EXPECT_EQ(with([](Picture& aPicture) { aPicture.mHeight = 289; }), "nothing");
    EXPECT_EQ(with([](Picture& aPicture) { aPicture.mHeight = 0; }), "nothing");
}

TEST(H263Video, WhatIsNoPictureTellsNothing) {
    const auto with = [](unsigned Picture::*aField, unsigned aValue) {
        return With([=](Picture& aPicture) { aPicture.*aField = aValue; });
    };
    EXPECT_EQ(with(&Picture::mStart, 0x21), "nothing");
    EXPECT_EQ(with(&Picture::mType, 3), "nothing") << "H.261";
    EXPECT_EQ(with(&Picture::mType, 0), "nothing");
    EXPECT_EQ(with(&Picture::mUpdate, 0), "nothing") << "goes on as the picture before";
    EXPECT_EQ(with(&Picture::mOptionalEnd, 9), "nothing");
    EXPECT_EQ(with(&Picture::mMandatoryEnd, 0), "nothing");
    EXPECT_EQ(with(&Picture::mMarker, 0), "nothing");
    const std::string whole = Picture().Bytes();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(H263(whole.substr(0, size)), "nothing") << size;
    }
}

TEST(H263Video, ConfigurationTellsProfileLevelAndRates) {
    const std::string box = "made" + Hex({0, 45, 3});
    const auto rates = [&](const char* aName, int aMean) {
        return box + Hex({0, 0, 0, 16}) + aName + Hex({0, 0, aMean, 0, 0, 1, 0, 0});
    };
    EXPECT_EQ(Config(box), "H263 3@45");
    EXPECT_EQ(Config(rates("bitr", 250)), "H263 3@45 vr=64000 mv=65536");
    EXPECT_EQ(Config(rates("free", 250)), "H263 3@45");
    EXPECT_EQ(Config(rates("bitr", 250).substr(0, 20)), "H263 3@45") << "cut";
    EXPECT_EQ(Config("made" + Hex({0, 71, 0})), "H263 0@?") << "a level that there is not";
    EXPECT_EQ(Config(box.substr(0, 6)), "nothing");
}

TEST(SorensonVideo, TellsTheSize) {
    const std::string end = " progressive cd=8 4:2:0";
    EXPECT_EQ(SorensonOf(0, 200, 100), "Sorenson 200x100" + end);
    EXPECT_EQ(SorensonOf(1, 640, 360), "Sorenson 640x360" + end);
    EXPECT_EQ(SorensonOf(2), "Sorenson 352x288" + end);
    EXPECT_EQ(SorensonOf(3), "Sorenson 176x144" + end);
    EXPECT_EQ(SorensonOf(4), "Sorenson 128x96" + end);
    EXPECT_EQ(SorensonOf(5), "Sorenson 320x240" + end);
    EXPECT_EQ(SorensonOf(6), "Sorenson 160x120" + end);
    EXPECT_EQ(SorensonOf(5, 0, 0, 2, 0), "Sorenson 320x240" + end);
    EXPECT_EQ(SorensonOf(7), "nothing");
    EXPECT_EQ(SorensonOf(1, 0, 360), "nothing");
    EXPECT_EQ(SorensonOf(1, 640, 0), "nothing");
    EXPECT_EQ(SorensonOf(5, 0, 0, 3), "nothing") << "a type that there is not";
    EXPECT_EQ(SorensonOf(5, 0, 0, 0, 2), "nothing") << "a version that there is not";
    EXPECT_EQ(SorensonOf(5, 0, 0, 0, 1, 3), "nothing");
    EXPECT_EQ(Sorenson(Hex({0, 0, 0x84, 0, 0x82})), "nothing") << "cut";
}
