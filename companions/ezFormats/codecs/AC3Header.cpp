#include "ezFormats/codecs/AC3Header.h"

#include "ezBytes/BitReader.h"

#include <array>

namespace {

constexpr std::uint32_t kRateReserved = 3;
constexpr std::uint32_t kMaxVersion = 10; ///< above stand later formats with headers of their own
constexpr std::uint32_t kFullRateVersion = 8;
constexpr std::uint32_t kModeStereo = 2;

/// kbit/s; each has two codes, the odd one for the frames of 44.1 kHz that are a word longer.
constexpr std::array<std::uint32_t, 19> kBitRates = {32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                                                     192, 224, 256, 320, 384, 448, 512, 576, 640};

/// Bytes of a frame of 1536 samples at a full rate.
std::uint32_t FrameSize(std::uint32_t aKiloBits, std::uint32_t aRate, bool afLonger) {
    const std::uint32_t words = aKiloBits * 96000 / kAC3SamplingRates[aRate];
    return 2 * (words + (afLonger ? 1 : 0));
}

} // namespace

bool ezAC3Header_ReadFields(std::uint32_t aFields, ezAC3Header& aHeader) {
    const std::array<unsigned char, 3> bytes = {static_cast<unsigned char>(aFields >> 16),
                                                static_cast<unsigned char>(aFields >> 8),
                                                static_cast<unsigned char>(aFields)};
    ezBitReader bits(bytes.data(), 8 * bytes.size());
    const std::uint32_t rate = bits.Read(2);
    const std::uint32_t size = bits.Read(6);
    const std::uint32_t version = bits.Read(5);
    const std::uint32_t service = bits.Read(3);
    const std::uint32_t mode = bits.Read(3);
    if (rate == kRateReserved || size / 2 >= kBitRates.size() || version > kMaxVersion) {
        return false;
    }
    const bool fThreeFronts = mode % 2 != 0 && mode != 1;
    const bool fSurround = mode >= 4;
    bits.Skip((fThreeFronts ? 2 : 0) + (fSurround ? 2 : 0) + (mode == kModeStereo ? 2 : 0));
    const std::uint32_t lowFrequency = bits.Read(1);
    const std::uint32_t slower = version > kFullRateVersion ? version - kFullRateVersion : 0;
    aHeader.mSamplingRate = kAC3SamplingRates[rate] >> slower;
    aHeader.mBitRate = kBitRates[size / 2] * 1000 >> slower;
    aHeader.mChannels = kAC3Channels[mode] + lowFrequency;
    aHeader.mFrameSize = FrameSize(kBitRates[size / 2], rate, rate == 1 && size % 2 != 0);
    aHeader.mSame = rate << 20 | (size / 2) << 15 | version << 10 | service << 7 | mode << 4 | lowFrequency;
    return true;
}

bool ezAC3Header_Read(const unsigned char* aBytes, ezAC3Header& aHeader) {
    return aBytes[0] == 0x0B && aBytes[1] == 0x77 &&
           ezAC3Header_ReadFields(ezAC3Header_Fields(aBytes), aHeader);
}
