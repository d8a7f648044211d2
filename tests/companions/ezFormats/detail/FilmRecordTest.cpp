#include "ezFormats/detail/FilmRecord.h"

#include "support/Record.h"
#include "support/Str.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

std::string RecordOf(const FilmFacts& aFilm) {
    ezMediaInfo info;
    aFilm.Store(info);
    return Str(info.GetOtherProperties());
}

/// A little over 8 s, of a million bits a second.
FilmFacts Film() {
    FilmFacts film;
    film.mContainer = "MKV";
    film.mDuration = 8'004'000;
    film.mSize = 1'000'500;
    film.mVideo.emplace();
    film.mVideo->mCodec = "H264";
    film.mAudio.emplace();
    film.mAudio->mCodec = "AAC";
    film.mAudioCount = 2;
    return film;
}

} // namespace

TEST(FilmRecord, HasEveryFactUnderItsKey) {
    FilmFacts film = Film();
    film.mSubtitleCount = 3;
    film.mLanguages = "en,de";
    film.mSubtitleLanguages = "fr";
    film.mDurationMethod = "estimate: by the rate";
    film.mDurationBound = 20'000;
    film.mAudio->mSamplingRate = 48000;
    film.mAudio->mChannels = 6;
    film.mAudio->mBitsPerSample = 24;
    film.mAudio->mBitRate = 200'000;
    VideoFacts& video = *film.mVideo;
    video.mProfile = "High";
    video.mLevel = 0;
    video.mWidth = 720;
    video.mHeight = 576;
    video.mPixelAspect = {64, 45};
    video.mFrameRate = 25000;
    video.mfFrameRateVaries = true;
    video.mScan = kScan_Interlaced;
    video.mBitDepth = 10;
    video.mColours = "4:2:0";
    video.mHDR = kHDR_HLG;
    video.mOrientation = 6;
    video.mMaxBitRate = 900'000;
    EXPECT_EQ(RecordOf(film),
              "ac=6, ar=200000, br=1000000, bs=24, ca=AAC, cd=10, cr=4:2:0, ct=MKV, db=20, dm=8004, dr=16:9, "
              "du=9, ev=600000, fr=25000, fv=1, hd=HLG, he=576, la=en,de, mb=1100000, md=estimate: by the "
              "rate, mv=900000, pa=64:45, pr=interlaced, sf=48000, sl=fr, ta=2, ts=3, ud=6, vc=H264, vl=0, "
              "vp=High, vt=1, wi=720");
}

TEST(FilmRecord, WhatIsNotKnownIsNotThere) {
    EXPECT_EQ(RecordOf(FilmFacts()), "md=none: the end was not read");
    FilmFacts film;
    film.mSize = 1;
    film.mVideo.emplace();
    film.mVideo->mOrientation = 1;
    film.mVideo->mPixelAspect = {1, 1};
    film.mVideo->mHeight = 5;
    EXPECT_EQ(RecordOf(film), "he=5, pa=1:1, vt=1");
}

TEST(FilmRecord, AnEstimateIsNeverShort) {
    struct Case {
        const char* mMethod;
        std::uint64_t mDuration; ///< microseconds, as the bound
        std::uint64_t mBound;
        const char* mLength;
    };
    constexpr Case kCases[] = {
        {"header", 8'000'999, 0, "dm=8000, du=8, md=header"},
        {"estimate: by the rate", 8'000'000, 0, "dm=8000, du=8, md=estimate: by the rate"},
        {"estimate: by the rate", 8'000'001, 0, "dm=8001, du=9, md=estimate: by the rate"},
        {"estimate: by the rate", 7'999'001, 0, "dm=8000, du=8, md=estimate: by the rate"},
        // What is rounded up may be too long by that as well.
        {"estimate: by the rate", 8'000'001, 2'000'000, "db=2001, dm=8001, du=9, md=estimate: by the rate"},
        {"estimate: by the rate", 8'000'000, 1, "db=1, dm=8000, du=8, md=estimate: by the rate"},
        {"estimate: by the rate", 8'000'500, 9'000'000, "db=8001, dm=8001, du=9, md=estimate: by the rate"},
    };
    for (const Case& length : kCases) {
        FilmFacts film;
        film.mDurationMethod = length.mMethod;
        film.mDuration = length.mDuration;
        film.mDurationBound = length.mBound;
        EXPECT_EQ(RecordOf(film), length.mLength);
    }
}

TEST(FilmRecord, WhatOneKindOfTracksLeavesOfTheWholeIsTheOthersRate) {
    struct Case {
        std::uint32_t mAudio;
        std::uint32_t mVideo;
        const char* mRates;
    };
    constexpr Case kCases[] = {
        {0, 0, "br=1000000"},
        {100'000, 0, "ar=100000 br=1000000 ev=800000 mb=1000000"},
        {0, 900'000, "br=1000000 ea=50000 mb=1000000 vr=900000"},
        {0, 2'000'000, "br=1000000 vr=2000000"}, // more than there is leaves nothing
        {100'000, 950'000, "ar=100000 br=1000000 mb=1050000 vr=950000"},
    };
    for (const Case& rates : kCases) {
        FilmFacts film = Film();
        film.mAudio->mBitRate = rates.mAudio;
        film.mVideo->mBitRate = rates.mVideo;
        ezMediaInfo info;
        film.Store(info);
        std::string told;
        for (const char* const key : {"ar", "br", "ea", "ev", "ma", "mb", "mv", "vr"}) {
            if (info.Has(key)) {
                told += (told.empty() ? "" : " ") + std::string(key) + "=" + Str(info.GetCString(key, ""));
            }
        }
        EXPECT_EQ(told, rates.mRates);
    }
}

TEST(FilmRecord, AMaximumThatIsNotAboveTheMeanIsNone) {
    FilmFacts film = Film();
    film.mAudio->mBitRate = 100'000;
    film.mAudio->mMaxBitRate = 100'000;
    ezMediaInfo info;
    film.Store(info);
    EXPECT_FALSE(info.Has(kezInfo_AudioMaxBitRate));
}

TEST(FilmRecord, PlainSamplesHaveTheSamplingRateWhereOthersHaveTheBitRate) {
    FilmFacts film = Film();
    film.mAudio->mCodec = "LPCM";
    film.mAudio->mSamplingRate = 48000;
    film.mAudio->mBitRate = 1'536'000;
    ezMediaInfo info;
    film.Store(info);
    EXPECT_EQ(info.GetUInt32(kezInfo_AudioBitRate, 0), 48000U);
    EXPECT_FALSE(info.Has(kezInfo_AudioSamplingRate));
}

TEST(FilmRecord, ARateThatWouldMeanThatItVariesIsNotStored) {
    FilmFacts film = Film();
    film.mVideo->mBitRate = UINT32_MAX;
    ezMediaInfo info;
    film.Store(info);
    EXPECT_FALSE(info.Has(kezInfo_VideoBitRate));
}
