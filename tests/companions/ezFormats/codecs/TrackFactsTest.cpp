#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/codecs/VideoFacts.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <cstdint>

TEST(VideoRatio, IsThatOfTheLeastNumbers) {
    struct Case {
        std::uint64_t mWidth;
        std::uint64_t mHeight;
        const char* mText;
    };
    constexpr Case kCases[] = {
        {46080, 25920, "16:9"},
        {1, 1, "1:1"},
        {0, 1, ""},
        {1, 0, ""},
        {0, 0, ""},
        {UINT32_MAX, 1, "4294967295:1"},
        {std::uint64_t{1} << 32, 1, ""},
        {1, UINT64_MAX, ""},
        {UINT64_MAX, UINT64_MAX, "1:1"},
    };
    for (const Case& ratio : kCases) {
        EXPECT_EQ(Str(VideoRatio::Of(ratio.mWidth, ratio.mHeight).GetText()), ratio.mText);
    }
}

TEST(VideoFacts, TheDisplayAspectNeedsASizeAndThePixels) {
    VideoFacts facts;
    facts.mWidth = 720;
    facts.mHeight = 480;
    EXPECT_FALSE(facts.GetDisplayAspect().IsKnown());
    facts.mPixelAspect = {32, 27};
    EXPECT_EQ(Str(facts.GetDisplayAspect().GetText()), "16:9");
    facts.mWidth = UINT32_MAX;
    facts.mPixelAspect = {UINT32_MAX, 1};
    EXPECT_FALSE(facts.GetDisplayAspect().IsKnown());
}

TEST(VideoFacts, PixelsHaveTheShapeThatMakesOfThePictureTheDisplay) {
    EXPECT_EQ(Str(VideoRatio::OfPixel({16, 9}, 720, 480).GetText()), "32:27");
    EXPECT_EQ(Str(VideoRatio::OfPixel({UINT32_MAX, 1}, UINT32_MAX, UINT32_MAX).GetText()), "4294967295:1");
    EXPECT_FALSE(VideoRatio::OfPixel({UINT32_MAX, 1}, 1, UINT32_MAX).IsKnown()) << "no 32 bits hold it";
    EXPECT_FALSE(VideoRatio::OfPixel({}, 720, 480).IsKnown());
    EXPECT_FALSE(VideoRatio::OfPixel({16, 9}, 720, 0).IsKnown());
}

TEST(VideoFacts, AreCompletedByWhatIsNotToldYet) {
    VideoFacts other;
    other.mCodec = "H264";
    other.mProfile = "High";
    other.mLevel = 40;
    other.mWidth = 4;
    other.mHeight = 3;
    other.mPixelAspect = {4, 3};
    other.mFrameRate = 25000;
    other.mfFrameRateVaries = true;
    other.mScan = kScan_Interlaced;
    other.mBitDepth = 10;
    other.mColours = "4:2:2";
    other.mHDR = kHDR_PQ;
    other.mOrientation = 3;
    other.mBitRate = 100;
    other.mMaxBitRate = 200;
    other.mEstimatedBitRate = 300;
    VideoFacts facts;
    facts.Complete(other);
    EXPECT_EQ(facts.mCodec, "H264");
    EXPECT_EQ(facts.mProfile, "High");
    EXPECT_EQ(facts.mLevel, 40U);
    EXPECT_EQ(facts.mWidth, 4U);
    EXPECT_EQ(facts.mHeight, 3U);
    EXPECT_EQ(Str(facts.mPixelAspect.GetText()), "4:3");
    EXPECT_EQ(facts.mFrameRate, 25000U);
    EXPECT_TRUE(facts.mfFrameRateVaries);
    EXPECT_STREQ(facts.mScan, kScan_Interlaced);
    EXPECT_EQ(facts.mBitDepth, 10U);
    EXPECT_STREQ(facts.mColours, "4:2:2");
    EXPECT_STREQ(facts.mHDR, kHDR_PQ);
    EXPECT_EQ(facts.mOrientation, 3U);
    EXPECT_EQ(facts.mBitRate, 100U);
    EXPECT_EQ(facts.mMaxBitRate, 200U);
    EXPECT_EQ(facts.mEstimatedBitRate, 300U);
}

TEST(VideoFacts, WhatBelongsTogetherIsTakenTogether) {
    VideoFacts other;
    other.mLevel = 40;
    other.mWidth = 4;
    other.mHeight = 3;
    other.mfFrameRateVaries = true;
    other.mBitRate = 100;
    VideoFacts facts;
    facts.mProfile = "Main";
    facts.mWidth = 7;
    facts.mHeight = 8;
    facts.mFrameRate = 24000;
    facts.mMaxBitRate = 5;
    facts.Complete(other);
    EXPECT_EQ(facts.mLevel, VideoFacts::kNoLevel);
    EXPECT_EQ(facts.mWidth, 7U);
    EXPECT_EQ(facts.mHeight, 8U);
    EXPECT_FALSE(facts.mfFrameRateVaries);
    EXPECT_EQ(facts.mBitRate, 0U);
}

TEST(AudioFacts, AreCompletedByWhatIsNotToldYet) {
    AudioFacts other;
    other.mCodec = "AAC";
    other.mSamplingRate = 48000;
    other.mChannels = 2;
    other.mBitsPerSample = 24;
    other.mMaxBitRate = 7;
    AudioFacts facts;
    facts.mChannels = 6;
    facts.Complete(other);
    EXPECT_EQ(facts.mCodec, "AAC");
    EXPECT_EQ(facts.mSamplingRate, 48000U);
    EXPECT_EQ(facts.mChannels, 6U);
    EXPECT_EQ(facts.mBitsPerSample, 24U);
    EXPECT_EQ(facts.mMaxBitRate, 7U);
    other.mBitRate = 9;
    facts.Complete(other);
    EXPECT_EQ(facts.mBitRate, 0U) << "rates go together";
}
