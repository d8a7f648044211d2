#include "ezFormats/codecs/MPEGHConfig.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/AACSamplingRates.h"

#include <array>

namespace {

/// Hz by index where AAC has none (ISO/IEC 23003-3, table 67), from 15 on.
constexpr std::uint32_t kFirstOwnRate = 15;
constexpr std::array<std::uint32_t, 13> kOwnRates = {57600, 51200, 40000, 38400, 34150, 28800, 25600,
                                                     20000, 19200, 17075, 14400, 12800, 9600};
constexpr std::uint32_t kRateExplicit = 31;

/// Loudspeakers by ChannelConfiguration (ISO/IEC 23091-3, table 2), those of low frequencies included; 0:
/// told elsewhere, or reserved.
constexpr std::array<std::uint32_t, 21> kSpeakers = {0, 1, 2,  3, 4,  5,  6,  8,  2,  3, 4,
                                                     7, 8, 24, 8, 12, 10, 12, 14, 12, 14};

/// usacSamplingFrequencyIndex, and usacSamplingFrequency where it asks for that.
std::uint32_t ReadRate(ezBitReader& aBits) {
    const std::uint32_t index = aBits.Read(5);
    if (index < kAACSamplingRates.size()) {
        return kAACSamplingRates[index];
    }
    if (index == kRateExplicit) {
        return aBits.Read(24);
    }
    return index >= kFirstOwnRate && index - kFirstOwnRate < kOwnRates.size()
               ? kOwnRates[index - kFirstOwnRate]
               : 0;
}

} // namespace

MPEGHConfig ReadMPEGHConfig(ByteReader aBox) {
    constexpr std::uint32_t kVersion = 1;
    aBox.Require(aBox.ReadByte() == kVersion); // configurationVersion
    aBox.Skip(1);                              // mpegh3daProfileLevelIndication
    const std::uint32_t layout = aBox.ReadByte();
    aBox.Skip(2 + 1); // mpegh3daConfigLength; in it the level again
    std::array<unsigned char, 4> start = {};
    MPEGHConfig config;
    if (!aBox.Read(start.data(), start.size())) {
        return config;
    }
    ezBitReader bits(start.data(), 8 * start.size());
    config.mSamplingRate = ReadRate(bits);
    config.mChannels = layout < kSpeakers.size() ? kSpeakers[layout] : 0;
    return config;
}
