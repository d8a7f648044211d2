#include "ezFormats/codecs/MLPHeader.h"

#include "ezBytes/BitReader.h"

#include <array>

namespace {

constexpr std::uint32_t kSyncTrueHD = 0xF8726FBA;
constexpr std::uint32_t kSyncMLP = 0xF8726FBB;
constexpr std::uint32_t kSignature = 0xB752;

constexpr std::uint32_t kSamplesAtBase = 40; ///< of an access unit at 48 and 44.1 kHz

/// Hz by code; 0: reserved.
constexpr std::array<std::uint32_t, 16> kRates = {48000, 96000, 192000, 0, 0, 0, 0, 0,
                                                  44100, 88200, 176400, 0, 0, 0, 0, 0};

/// Bits by code.
constexpr std::array<std::uint32_t, 16> kBits = {16, 20, 24};

/// Channels by the code of MLP.
constexpr std::array<std::uint32_t, 32> kChannels = {1, 2, 3, 4, 3, 4, 5, 3, 4, 5, 4,
                                                     5, 6, 4, 5, 4, 5, 6, 5, 5, 6};

/// Which loudspeakers TrueHD has, one bit each: left and right, middle, low, ...
constexpr std::array<std::uint32_t, 13> kSpeakers = {2, 1, 1, 2, 2, 2, 2, 1, 1, 2, 2, 1, 1};

bool SetRate(std::uint32_t aCode, ezMLPHeader& aHeader) {
    aHeader.mSamplingRate = kRates[aCode];
    aHeader.mUnitSamples = kSamplesAtBase << (aCode & 7U);
    return aHeader.mSamplingRate != 0;
}

bool ReadMLP(std::uint32_t aFormat, ezMLPHeader& aHeader) {
    aHeader.mBitsPerSample = kBits[aFormat >> 28];
    aHeader.mChannels = kChannels[aFormat & 0x1FU];
    return SetRate(aFormat >> 20 & 0xFU, aHeader) && aHeader.mBitsPerSample != 0 && aHeader.mChannels != 0;
}

} // namespace

bool ezMLPHeader_ReadTrueHD(std::uint32_t aFormat, ezMLPHeader& aHeader) {
    const std::uint32_t large = aFormat & 0x1FFFU;     // of up to eight channels and more
    const std::uint32_t small = aFormat >> 15 & 0x1FU; // of up to six
    const std::uint32_t speakers = large != 0 ? large : small;
    aHeader = {};
    aHeader.mfTrueHD = true;
    for (std::size_t i = 0; i < kSpeakers.size(); ++i) {
        aHeader.mChannels += (speakers >> i & 1U) != 0 ? kSpeakers[i] : 0;
    }
    return SetRate(aFormat >> 28, aHeader);
}

std::uint32_t ezMLPHeader_MaxBitRate(std::uint32_t aPeak, std::uint32_t aSamplingRate) {
    return static_cast<std::uint32_t>(std::uint64_t{aPeak} * aSamplingRate / 16);
}

bool ezMLPHeader_Read(const unsigned char* aBytes, ezMLPHeader& aHeader) {
    ezBitReader bits(aBytes, 8 * kMLPSyncSize);
    const std::uint32_t sync = bits.Read(32);
    const std::uint32_t format = bits.Read(32);
    const std::uint32_t signature = bits.Read(16);
    bits.Skip(16 + 16 + 1); // flags, reserved, whether the rate varies
    const std::uint32_t peak = bits.Read(15);
    ezMLPHeader header;
    if ((sync != kSyncTrueHD && sync != kSyncMLP) || signature != kSignature ||
        !(sync == kSyncTrueHD ? ezMLPHeader_ReadTrueHD(format, header) : ReadMLP(format, header))) {
        return false;
    }
    header.mMaxBitRate = ezMLPHeader_MaxBitRate(peak, header.mSamplingRate);
    aHeader = header;
    return true;
}
