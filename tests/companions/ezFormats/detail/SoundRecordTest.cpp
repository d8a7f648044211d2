#include "ezFormats/detail/SoundRecord.h"

#include "ezFormats/detail/Limits.h"
#include "ezPlatform/media/MediaInfo.h"

#include "support/Record.h"

#include <gtest/gtest.h>

// How the facts of a sound stand in a record.

using namespace std::string_literals;

namespace {

std::string Stored(const SoundFacts& aFacts) {
    ezMediaInfo info;
    aFacts.Store(info);
    return DumpRecord(&info);
}

SoundFacts Second() {
    SoundFacts facts;
    facts.mCodec = "FLAC";
    facts.mSamplingRate = 44100;
    facts.mSamples = 44100;
    facts.mBytes = 1000;
    return facts;
}

} // namespace

TEST(SoundRecord, WhatIsNotKnownIsLeftOut) {
    SoundFacts facts;
    facts.mCodec = "FLAC";
    EXPECT_EQ(Stored(facts), "ar=4294967295\nca=\"FLAC\"\nta=1\n");
}

TEST(SoundRecord, NumberThatCannotBeIsLeftOut) {
    for (const std::uint32_t bits : {kSound_MaxBits, kSound_MaxBits + 1, UINT32_MAX}) {
        SoundFacts facts;
        facts.mCodec = "LPCM";
        facts.mBitsPerSample = bits;
        facts.mSamplingRate = UINT32_MAX; // which would say that it varies
        EXPECT_EQ(Stored(facts), (bits <= kSound_MaxBits ? "bs=64\n"s : ""s) + "ca=\"LPCM\"\nta=1\n");
    }
}

TEST(SoundRecord, PacketsThatCannotHoldTheirSamplesTellNothing) {
    const auto samples = [](std::uint32_t aBytes, std::uint32_t aSamples) {
        SoundFacts facts;
        facts.mSamplingRate = 8000;
        facts.SetPackets(1000, aBytes, aSamples);
        return facts.mSamples;
    };
    EXPECT_EQ(samples(1, 640), 640000U); // 100 bits a second
    EXPECT_EQ(samples(1, 641), 0U);
    EXPECT_EQ(samples(1, UINT32_MAX), 0U);
    EXPECT_EQ(samples(0, 1), 0U);
    EXPECT_EQ(samples(1, 0), 0U);
}

TEST(SoundRecord, RateThatVariesHasItsMeanAsTheEstimate) {
    SoundFacts facts = Second();
    facts.mChannels = 2;
    facts.mBitsPerSample = 16;
    EXPECT_EQ(Stored(facts), "ac=2\nar=4294967295\nbs=16\nca=\"FLAC\"\ndm=1000\ndu=1\nea=8000\n"
                             "md=\"header\"\nsf=44100\nta=1\n");
    facts.mMaxBitRate = 9000;
    EXPECT_NE(Stored(facts).find("ma=9000\n"), std::string::npos);
}

TEST(SoundRecord, ConstantRateStandsAlone) {
    SoundFacts facts = Second();
    facts.mBitRate = 705600;
    facts.mMaxBitRate = 9000;
    facts.mDurationMethod = "constant rate";
    EXPECT_EQ(Stored(facts), "ar=705600\nca=\"FLAC\"\ndm=1000\ndu=1\nmd=\"constant rate\"\nsf=44100\nta=1\n");
}

TEST(SoundRecord, LengthIsThatOfTheSamplesUpToAYear) {
    SoundFacts facts = Second();
    facts.mSamples = 66149; // 1.49998 s
    EXPECT_EQ(facts.GetMilliseconds(), 1499U);
    facts.mSamples = 44;
    EXPECT_EQ(facts.GetMilliseconds(), 0U);
    EXPECT_EQ(facts.GetMeanBitRate(), 0U);
    facts.mSamples = std::uint64_t{44100} * 366 * 24 * 60 * 60;
    EXPECT_EQ(facts.GetMilliseconds(), UINT64_C(31622400000));
    for (const std::uint64_t samples : {facts.mSamples + 45, UINT64_MAX / 1000 + 1, UINT64_MAX}) {
        facts.mSamples = samples;
        EXPECT_EQ(facts.GetMilliseconds(), 0U) << samples;
    }
    facts.mSamplingRate = 0;
    EXPECT_EQ(facts.GetMilliseconds(), 0U);
}
