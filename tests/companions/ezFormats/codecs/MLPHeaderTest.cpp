#include "ezFormats/codecs/MLPHeader.h"

#include "companions/ezFormats/codecs/MLPBytes.h"

#include <gtest/gtest.h>

#include <array>

using namespace mlp;

namespace {

bool Read(const std::string& aSync, ezMLPHeader* aHeader) {
    return ezMLPHeader_Read(reinterpret_cast<const unsigned char*>(aSync.data()), *aHeader);
}

constexpr std::array<unsigned, 16> kRates = {48000, 96000, 192000, 0, 0, 0, 0, 0, 44100, 88200, 176400};
constexpr std::array<unsigned, 16> kSamples = {40, 80, 160, 0, 0, 0, 0, 0, 40, 80, 160};

} // namespace

TEST(MLPHeader, TrueHDTellsRateAndLoudspeakers) {
    constexpr std::array<unsigned, 13> kSpeakers = {2, 1, 1, 2, 2, 2, 2, 1, 1, 2, 2, 1, 1};
    for (unsigned rate = 0; rate < 16; ++rate) {
        ezMLPHeader header;
        ASSERT_EQ(Read(Sync(kTrueHD, rate << 28 | 0x0007800F), &header), kRates[rate] != 0) << rate;
        if (kRates[rate] != 0) {
            EXPECT_TRUE(header.mfTrueHD);
            EXPECT_EQ(header.mSamplingRate, kRates[rate]);
            EXPECT_EQ(header.mUnitSamples, kSamples[rate]);
            EXPECT_EQ(header.mChannels, 6U);
            EXPECT_EQ(header.mBitsPerSample, 0U);
            EXPECT_EQ(header.mMaxBitRate, std::uint64_t{3199} * kRates[rate] / 16);
        }
    }
    for (unsigned bit = 0; bit < kSpeakers.size(); ++bit) {
        ezMLPHeader header;
        ASSERT_TRUE(Read(Sync(kTrueHD, 1U << bit | 1U << 15), &header));
        EXPECT_EQ(header.mChannels, kSpeakers[bit]) << bit;
    }
    ezMLPHeader header;
    ASSERT_TRUE(Read(Sync(kTrueHD, 0x00078000), &header)); // of up to six alone
    EXPECT_EQ(header.mChannels, 6U);
}

TEST(MLPHeader, MLPTellsBitsToo) {
    constexpr std::array<unsigned, 32> kChannels = {1, 2, 3, 4, 3, 4, 5, 3, 4, 5, 4,
                                                    5, 6, 4, 5, 4, 5, 6, 5, 5, 6};
    constexpr std::array<unsigned, 16> kBits = {16, 20, 24};
    for (unsigned rate = 0; rate < 16; ++rate) {
        for (unsigned bits = 0; bits < 16; ++bits) {
            for (unsigned channels = 0; channels < 32; ++channels) {
                ezMLPHeader header;
                const bool fValid = kRates[rate] != 0 && kBits[bits] != 0 && kChannels[channels] != 0;
                ASSERT_EQ(
                    Read(Sync(kMLP, bits << 28 | 0xF << 24 | rate << 20 | 0xF << 16 | channels), &header),
                    fValid);
                if (fValid) {
                    EXPECT_FALSE(header.mfTrueHD);
                    EXPECT_EQ(header.mSamplingRate, kRates[rate]);
                    EXPECT_EQ(header.mBitsPerSample, kBits[bits]);
                    EXPECT_EQ(header.mChannels, kChannels[channels]);
                    EXPECT_EQ(header.mUnitSamples, kSamples[rate]);
                }
            }
        }
    }
}

TEST(MLPHeader, OtherBytesAreNone) {
    ezMLPHeader header;
    EXPECT_FALSE(Read(Sync(0xF8726FB9, kSixAt48), &header));
    std::string signature = Sync(kTrueHD, kSixAt48);
    signature[9] = '\x53';
    EXPECT_FALSE(Read(signature, &header));
    ASSERT_TRUE(Read(Sync(kTrueHD, kSixAt48, 0x7FFF), &header));
    EXPECT_EQ(header.mMaxBitRate, 0x7FFFU * 3000);
}
