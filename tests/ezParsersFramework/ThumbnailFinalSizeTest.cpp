#include "ez/ThumbnailProvider.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <utility>

namespace {

using Size = std::pair<uint32, uint32>;

constexpr uint32 kMost = std::numeric_limits<uint32>::max();

Size FinalSize(const ThumbnailInfo& anInfo, uint32 aWidth, uint32 aHeight) {
    Size size = {12345, 12345};
    GetThumbnailFinalSize(&anInfo, aWidth, aHeight, &size.first, &size.second);
    return size;
}

ThumbnailInfo Box(uint32 aWidth, uint32 aHeight) {
    ThumbnailInfo info;
    info.mWidth = 7;
    info.mHeight = 9;
    info.mWidthMax = aWidth;
    info.mHeightMax = aHeight;
    return info;
}

ThumbnailInfo Requested(uint32 aWidth, uint32 aHeight, uint32 aRatioHeight, uint32 aRatioWidth) {
    ThumbnailInfo info;
    info.mWidth = aWidth;
    info.mHeight = aHeight;
    info.mPixelRatioHeight = aRatioHeight;
    info.mPixelRatioWidth = aRatioWidth;
    return info;
}

TEST(ThumbnailFinalSize, APictureIsFittedIntoTheBox) {
    EXPECT_EQ(FinalSize(Box(160, 160), 1920, 1080), Size(160, 90));
    EXPECT_EQ(FinalSize(Box(160, 160), 1080, 1920), Size(90, 160));
    EXPECT_EQ(FinalSize(Box(160, 160), 500, 500), Size(160, 160));
    EXPECT_EQ(FinalSize(Box(300, 100), 1000, 500), Size(200, 100)); // the height would exceed
    EXPECT_EQ(FinalSize(Box(100, 300), 500, 1000), Size(100, 200)); // the width would exceed
}

TEST(ThumbnailFinalSize, OnlyTheBoxOfTheProfilesDoesNotEnlarge) {
    EXPECT_EQ(FinalSize(Box(160, 160), 120, 90), Size(120, 90));
    EXPECT_EQ(FinalSize(Box(320, 320), 120, 90), Size(320, 240));
    EXPECT_EQ(FinalSize(Box(160, 161), 120, 90), Size(160, 120));
    EXPECT_EQ(FinalSize(Box(161, 160), 120, 90), Size(161, 120));
    EXPECT_EQ(FinalSize(Box(160, 160), 160, 90), Size(160, 90));
    EXPECT_EQ(FinalSize(Box(160, 160), 161, 90), Size(160, 89));
    EXPECT_EQ(FinalSize(Box(160, 160), 0, 0), Size(0, 0));
    EXPECT_EQ(FinalSize(Box(160, 160), 1920, 0), Size(1920, 0)); // its height would not become smaller
    EXPECT_EQ(FinalSize(Box(160, 160), 0, 1920), Size(0, 1920));
}

TEST(ThumbnailFinalSize, WithoutABoxTheRequestIsReducedByThePixelRatio) {
    EXPECT_EQ(FinalSize(Requested(200, 100, 2, 1), 4000, 3000), Size(200, 50));
    EXPECT_EQ(FinalSize(Requested(200, 100, 1, 2), 4000, 3000), Size(100, 100));
    EXPECT_EQ(FinalSize(Requested(200, 100, 3, 3), 4000, 3000), Size(200, 100));
    EXPECT_EQ(FinalSize(Requested(200, 100, 0, 0), 4000, 3000), Size(200, 100));
    EXPECT_EQ(FinalSize(Requested(100, 100, 3, 2), 1, 1), Size(100, 66));    // cut, not rounded
    EXPECT_EQ(FinalSize(Requested(160, 160, 1, 1), 10, 10), Size(160, 160)); // no box, no exception
}

TEST(ThumbnailFinalSize, ABoxWithOneSideIsNoBox) {
    ThumbnailInfo info = Requested(200, 100, 2, 1);
    info.mWidthMax = 50;
    EXPECT_EQ(FinalSize(info, 4000, 3000), Size(200, 50));
    info.mWidthMax = 0;
    info.mHeightMax = 50;
    EXPECT_EQ(FinalSize(info, 4000, 3000), Size(200, 50));
}

TEST(ThumbnailFinalSize, ABoxDiscardsThePixelRatio) {
    ThumbnailInfo info = Box(320, 320);
    info.mPixelRatioHeight = 2;
    info.mPixelRatioWidth = 1;
    EXPECT_EQ(FinalSize(info, 400, 300), FinalSize(Box(320, 320), 400, 300));
}

TEST(ThumbnailFinalSize, ASquareIsFittedByItsWidth) {
    // Told only by the side that went through single precision.
    EXPECT_EQ(FinalSize(Box(16777217, 16777217), 5, 5), Size(16777217, 16777216));
}

TEST(ThumbnailFinalSize, ASideMayComeOutAsZero) {
    EXPECT_EQ(FinalSize(Box(160, 160), 4000, 10), Size(160, 0));
    EXPECT_EQ(FinalSize(Box(160, 160), 10, 4000), Size(0, 160));
}

TEST(ThumbnailFinalSize, PartsOfZeroAndWhatIsTooLargeSaturate) {
    EXPECT_EQ(FinalSize(Requested(200, 100, 5, 0), 1, 1), Size(200, 0));
    EXPECT_EQ(FinalSize(Requested(200, 100, 0, 5), 1, 1), Size(0, 100));
    EXPECT_EQ(FinalSize(Box(320, 200), 100, 0), Size(320, 0));
    EXPECT_EQ(FinalSize(Box(320, 200), 0, 100), Size(0, 200));
    EXPECT_EQ(FinalSize(Box(320, 200), 0, 0), Size(0, 200));
    EXPECT_EQ(FinalSize(Box(kMost, kMost), 5, 5), Size(kMost, kMost)); // 2^32 in single precision
    EXPECT_EQ(FinalSize(Box(320, kMost), 1, kMost), Size(1, kMost));
    EXPECT_EQ(FinalSize(Box(kMost, 3), kMost, 1), Size(kMost, 1));
    EXPECT_EQ(FinalSize(Requested(kMost, kMost, kMost, kMost - 1), 1, 1), Size(kMost, kMost));
}

TEST(ThumbnailFinalSize, TheResultsMayStandWhereTheRequestDoes) {
    ThumbnailInfo info = Box(160, 160);
    GetThumbnailFinalSize(&info, 1920, 1080, &info.mWidth, &info.mHeight);
    EXPECT_EQ(Size(info.mWidth, info.mHeight), Size(160, 90));
}

TEST(ThumbnailFinalSize, WithoutARequestOrAPlaceForASideNothingIsWritten) {
    const ThumbnailInfo info = Box(160, 160);
    uint32 side = 7;
    GetThumbnailFinalSize(nullptr, 1920, 1080, &side, &side);
    GetThumbnailFinalSize(&info, 1920, 1080, nullptr, &side);
    GetThumbnailFinalSize(&info, 1920, 1080, &side, nullptr);
    EXPECT_EQ(side, 7U);
}

// ---- against a computation of its own, in integers: single precision by hand ----

/// A number mantissa * 2^exponent, the mantissa below 2^24 and, unless 0, at least 2^23.
struct Binary {
    std::uint64_t mMantissa;
    int mExponent;
};

/// Rounds mantissa * 2^exponent to nearest, ties to even. A rest below the last bit of a long mantissa
/// counts.
Binary Rounded(std::uint64_t aMantissa, int anExponent, bool afRest) {
    if (aMantissa == 0) {
        return {0, 0};
    }
    while (aMantissa < (1U << 26)) { // room for the two bits that decide
        aMantissa <<= 1;
        --anExponent;
    }
    bool fSticky = afRest;
    while (aMantissa >= (1U << 25)) {
        fSticky = fSticky || (aMantissa & 1) != 0;
        aMantissa >>= 1;
        ++anExponent;
    }
    // 25 bits: the last one is the half.
    const bool fHalf = (aMantissa & 1) != 0;
    std::uint64_t mantissa = aMantissa >> 1;
    if (fHalf && (fSticky || (mantissa & 1) != 0)) {
        ++mantissa;
    }
    ++anExponent;
    return mantissa == (1U << 24) ? Binary{1U << 23, anExponent + 1} : Binary{mantissa, anExponent};
}

Binary FromInteger(uint32 aValue) {
    return Rounded(aValue, 0, false);
}

Binary Times(const Binary& aLeft, const Binary& aRight) {
    return Rounded(aLeft.mMantissa * aRight.mMantissa, aLeft.mExponent + aRight.mExponent, false);
}

Binary Over(const Binary& aLeft, const Binary& aRight) {
    const std::uint64_t left = aLeft.mMantissa << 40;
    return Rounded(left / aRight.mMantissa, aLeft.mExponent - 40 - aRight.mExponent,
                   left % aRight.mMantissa != 0);
}

uint32 Cut(const Binary& aValue) {
    if (aValue.mMantissa == 0 || aValue.mExponent <= -24) {
        return 0;
    }
    if (aValue.mExponent <= 0) {
        return static_cast<uint32>(aValue.mMantissa >> -aValue.mExponent);
    }
    return aValue.mExponent > 8 ? kMost : static_cast<uint32>(aValue.mMantissa << aValue.mExponent);
}

bool IsAtLeastOne(const Binary& aValue) {
    return aValue.mMantissa != 0 && aValue.mExponent >= -23;
}

/// For sides above 0.
Size ByHand(const ThumbnailInfo& anInfo, uint32 aWidth, uint32 aHeight) {
    uint32 w = anInfo.mWidth;
    uint32 h = anInfo.mHeight;
    const Binary ratioHeight = FromInteger(anInfo.mPixelRatioHeight);
    const Binary ratioWidth = FromInteger(anInfo.mPixelRatioWidth);
    if (anInfo.mPixelRatioHeight > anInfo.mPixelRatioWidth) {
        h = Cut(Times(FromInteger(h), Over(ratioWidth, ratioHeight)));
    }
    if (anInfo.mPixelRatioHeight < anInfo.mPixelRatioWidth) {
        w = Cut(Times(FromInteger(w), Over(ratioHeight, ratioWidth)));
    }
    if (anInfo.mWidthMax != 0 && anInfo.mHeightMax != 0) {
        const Binary r = Over(FromInteger(aWidth), FromInteger(aHeight));
        if (IsAtLeastOne(r)) {
            w = anInfo.mWidthMax;
            h = Cut(Over(FromInteger(w), r));
            if (h > anInfo.mHeightMax) {
                h = anInfo.mHeightMax;
                w = Cut(Times(FromInteger(h), r));
            }
        } else {
            h = anInfo.mHeightMax;
            w = Cut(Times(FromInteger(h), r));
            if (w > anInfo.mWidthMax) {
                w = anInfo.mWidthMax;
                h = Cut(Over(FromInteger(w), r));
            }
        }
    }
    const bool fSmall = w >= aWidth || h >= aHeight;
    return fSmall && anInfo.mWidthMax == 160 && anInfo.mHeightMax == 160 ? Size(aWidth, aHeight) : Size(w, h);
}

class RandomRequests {
public:
    /// 1 to 2^aBits, small ones as likely as large ones.
    uint32 Side(unsigned aBits) {
        return 1 + static_cast<uint32>(mRandom() & ((std::uint64_t{1} << mRandom() % (aBits + 1)) - 1));
    }
    ThumbnailInfo Request(unsigned aBits) {
        ThumbnailInfo info;
        info.mWidth = Side(aBits);
        info.mHeight = Side(aBits);
        info.mPixelRatioHeight = Side(aBits);
        info.mPixelRatioWidth = mRandom() % 4 == 0 ? info.mPixelRatioHeight : Side(aBits);
        const unsigned box = mRandom() % 4;
        info.mWidthMax = box == 0 ? 0 : box == 1 ? 160 : Side(aBits);
        info.mHeightMax = box == 0 ? 0 : box == 1 ? 160 : Side(aBits);
        return info;
    }

private:
    std::mt19937 mRandom{20};
};

TEST(ThumbnailFinalSize, AMillionSizesAreThoseOfSinglePrecisionByHand) {
    RandomRequests random;
    for (int i = 0; i < 1000000; ++i) {
        const unsigned bits = i % 4 == 0 ? 31 : 13;
        const ThumbnailInfo info = random.Request(bits);
        const uint32 width = random.Side(bits);
        const uint32 height = random.Side(bits);
        ASSERT_EQ(FinalSize(info, width, height), ByHand(info, width, height))
            << width << "x" << height << " requested " << info.mWidth << "x" << info.mHeight << " box "
            << info.mWidthMax << "x" << info.mHeightMax << " ratio " << info.mPixelRatioHeight << ":"
            << info.mPixelRatioWidth;
    }
}

/// In whole numbers, which cut exactly.
Size ByFractions(const ThumbnailInfo& anInfo, std::uint64_t aWidth, std::uint64_t aHeight,
                 bool afHeightExceeds, bool afWidthExceeds) {
    const std::uint64_t widthMax = anInfo.mWidthMax;
    const std::uint64_t heightMax = anInfo.mHeightMax;
    const bool fFromWidth = aWidth >= aHeight ? !afHeightExceeds : afWidthExceeds;
    return fFromWidth ? Size(widthMax, widthMax * aHeight / aWidth)
                      : Size(heightMax * aWidth / aHeight, heightMax);
}

bool IsWithinOnePixel(const Size& aLeft, const Size& aRight) {
    return std::llabs(static_cast<long long>(aLeft.first) - aRight.first) <= 1 &&
           std::llabs(static_cast<long long>(aLeft.second) - aRight.second) <= 1;
}

TEST(ThumbnailFinalSize, APictureInABoxIsWithinOnePixelOfTheFraction) {
    RandomRequests random;
    int plain = 0;
    for (int i = 0; i < 200000; ++i) {
        const ThumbnailInfo info = Box(random.Side(13), random.Side(13));
        const std::uint64_t width = random.Side(15);
        const std::uint64_t height = random.Side(15);
        if (info.mWidthMax == 160 && info.mHeightMax == 160) {
            continue;
        }
        const std::uint64_t fullHeight = info.mWidthMax * height / width;
        const std::uint64_t fullWidth = info.mHeightMax * width / height;
        const bool fHeightExceeds = fullHeight > info.mHeightMax;
        const bool fWidthExceeds = fullWidth > info.mWidthMax;
        const Size size = FinalSize(info, static_cast<uint32>(width), static_cast<uint32>(height));
        // Where the fraction is next to a whole number, so perhaps to the bound, it may be cut on either
        // side.
        const std::uint64_t divisor = std::max(width, height);
        const std::uint64_t rest =
            (width >= height ? info.mWidthMax * height : info.mHeightMax * width) % divisor;
        const bool fEdge = std::min(rest, divisor - rest) * 500 <= divisor;
        plain += fEdge ? 0 : 1;
        const bool fNear =
            IsWithinOnePixel(size, ByFractions(info, width, height, fHeightExceeds, fWidthExceeds));
        const bool fNearOther = fEdge && IsWithinOnePixel(size, ByFractions(info, width, height,
                                                                            !fHeightExceeds, !fWidthExceeds));
        ASSERT_TRUE(fNear || fNearOther) << width << "x" << height << " in " << info.mWidthMax << "x"
                                         << info.mHeightMax << ": " << size.first << "x" << size.second;
    }
    EXPECT_GT(plain, 100000);
}

TEST(ThumbnailFinalSize, ARequestWithAPixelRatioIsWithinOnePixelOfTheFraction) {
    RandomRequests random;
    for (int i = 0; i < 200000; ++i) {
        const ThumbnailInfo info =
            Requested(random.Side(15), random.Side(15), random.Side(13), random.Side(13));
        const std::uint64_t high = info.mPixelRatioHeight;
        const std::uint64_t wide = info.mPixelRatioWidth;
        const Size exact(high < wide ? info.mWidth * high / wide : info.mWidth,
                         high > wide ? info.mHeight * wide / high : info.mHeight);
        ASSERT_TRUE(IsWithinOnePixel(FinalSize(info, 1, 1), exact)) << i;
    }
}

} // namespace
