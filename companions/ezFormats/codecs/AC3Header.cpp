#include "ezFormats/codecs/AC3Header.h"

#include "ezBytes/BitReader.h"

#include <array>

namespace {

constexpr std::uint32_t kRateReserved = 3;
constexpr std::uint32_t kMaxBSID = 10; ///< above stand later formats with headers of their own
constexpr std::uint32_t kFullRateBSID = 8;
constexpr std::uint32_t kAcmodStereo = 2;

/// kbit/s by frmsizecod / 2; the odd code is for the frames of 44.1 kHz that are a word longer.
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
    const std::uint32_t fscod = bits.Read(2);
    const std::uint32_t frmsizecod = bits.Read(6);
    const std::uint32_t bsid = bits.Read(5);
    const std::uint32_t bsmod = bits.Read(3);
    const std::uint32_t acmod = bits.Read(3);
    if (fscod == kRateReserved || frmsizecod / 2 >= kBitRates.size() || bsid > kMaxBSID) {
        return false;
    }
    const bool fThreeFronts = acmod % 2 != 0 && acmod != 1;
    const bool fSurround = acmod >= 4;
    bits.Skip(fThreeFronts ? 2 : 0);          // cmixlev
    bits.Skip(fSurround ? 2 : 0);             // surmixlev
    bits.Skip(acmod == kAcmodStereo ? 2 : 0); // dsurmod
    const std::uint32_t lfeon = bits.Read(1);
    const std::uint32_t slower = bsid > kFullRateBSID ? bsid - kFullRateBSID : 0;
    aHeader.mSamplingRate = kAC3SamplingRates[fscod] >> slower;
    aHeader.mBitRate = kBitRates[frmsizecod / 2] * 1000 >> slower;
    aHeader.mChannels = kAC3Channels[acmod] + lfeon;
    aHeader.mFrameSize = FrameSize(kBitRates[frmsizecod / 2], fscod, fscod == 1 && frmsizecod % 2 != 0);
    aHeader.mSame = fscod << 20 | (frmsizecod / 2) << 15 | bsid << 10 | bsmod << 7 | acmod << 4 | lfeon;
    return true;
}

bool ezAC3Header_Read(const unsigned char* aBytes, ezAC3Header& aHeader) {
    return aBytes[0] == 0x0B && aBytes[1] == 0x77 && // syncword
           ezAC3Header_ReadFields(ezAC3Header_Fields(aBytes), aHeader);
}
