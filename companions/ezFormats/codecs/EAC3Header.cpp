#include "ezFormats/codecs/EAC3Header.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/AC3Header.h"

#include <array>

namespace {

constexpr std::uint32_t kStreamDependent = 1; ///< adds channels to the programme before it
constexpr std::uint32_t kStreamReserved = 3;
constexpr std::uint32_t kRateHalved = 3; ///< a further field tells which
constexpr std::uint32_t kSamplesOfBlock = 256;
constexpr std::uint32_t kBlocksHalved = 6;
constexpr std::uint32_t kMinVersion = 11; ///< below stands AC-3 (E.1.3.1.6)
constexpr std::uint32_t kMaxVersion = 16;

constexpr std::array<std::uint32_t, 4> kBlocks = {1, 2, 3, 6};

} // namespace

bool ezEAC3Header_ReadFields(std::uint32_t aFields, ezEAC3Header& aHeader) {
    const std::array<unsigned char, 4> bytes = {
        static_cast<unsigned char>(aFields >> 24), static_cast<unsigned char>(aFields >> 16),
        static_cast<unsigned char>(aFields >> 8), static_cast<unsigned char>(aFields)};
    ezBitReader bits(bytes.data(), 8 * bytes.size());
    const std::uint32_t stream = bits.Read(2);
    const std::uint32_t substream = bits.Read(3);
    const std::uint32_t words = bits.Read(11) + 1;
    const std::uint32_t rate = bits.Read(2);
    const std::uint32_t blocks = bits.Read(2); // at a half rate, which of these
    const std::uint32_t mode = bits.Read(3);
    const std::uint32_t lowFrequency = bits.Read(1);
    const std::uint32_t version = bits.Read(5);
    const bool fHalved = rate == kRateHalved;
    if (stream == kStreamReserved || (fHalved && blocks >= kAC3SamplingRates.size()) ||
        version < kMinVersion || version > kMaxVersion) {
        return false;
    }
    aHeader.mSamplingRate = fHalved ? kAC3SamplingRates[blocks] / 2 : kAC3SamplingRates[rate];
    aHeader.mSampleCount = kSamplesOfBlock * (fHalved ? kBlocksHalved : kBlocks[blocks]);
    aHeader.mChannels = kAC3Channels[mode] + lowFrequency;
    aHeader.mFrameSize = 2 * words;
    aHeader.mfMain = stream != kStreamDependent && substream == 0;
    return true;
}

bool ezEAC3Header_Read(const unsigned char* aBytes, ezEAC3Header& aHeader) {
    return aBytes[0] == 0x0B && aBytes[1] == 0x77 &&
           ezEAC3Header_ReadFields(ezEAC3Header_Fields(aBytes), aHeader);
}

bool ezEAC3Header_IsSameStream(std::uint32_t aFirst, std::uint32_t aSecond) {
    constexpr std::uint32_t kRateAndBlocks = 0x0000F000;
    constexpr std::uint32_t kModeAndLowFrequency = 0x00000F00;
    constexpr std::uint32_t kVersion = 0x000000F8;
    ezEAC3Header first = {};
    ezEAC3Header second = {};
    if (!ezEAC3Header_ReadFields(aFirst, first) || !ezEAC3Header_ReadFields(aSecond, second)) {
        return false;
    }
    const bool fAlike = first.mfMain && second.mfMain;
    const std::uint32_t same = kRateAndBlocks | kVersion | (fAlike ? kModeAndLowFrequency : 0);
    return ((aFirst ^ aSecond) & same) == 0 && (first.mfMain || second.mfMain);
}
