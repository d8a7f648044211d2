#include "ezFormats/codecs/ADTSHeader.h"

#include "ezFormats/codecs/AACSamplingRates.h"

#include <array>

namespace {

constexpr std::uint32_t kSync = 0xFFF;
constexpr std::uint32_t kCRCSize = 2;
constexpr std::uint32_t kProfileReserved = 3;
constexpr std::uint32_t kSamplesOfBlock = 1024;

/// Channels by channel_configuration (ISO/IEC 14496-3, 1.6.3.5).
constexpr std::array<std::uint32_t, 8> kChannels = {0, 1, 2, 3, 4, 5, 6, 8};

// adts_fixed_header: syncword 12 bits, ID 1, layer 2, protection_absent 1, profile 2,
// sampling_frequency_index 4, private_bit 1, channel_configuration 3, original_copy 1, home 1.
// adts_variable_header: copyright_identification_bit 1, copyright_identification_start 1, aac_frame_length
// 13, adts_buffer_fullness 11, number_of_raw_data_blocks_in_frame 2.

std::uint32_t Bits(std::uint32_t aFixed, unsigned aShift, unsigned aCount) {
    return aFixed >> aShift & ((1U << aCount) - 1U);
}

} // namespace

bool ezADTSHeader_ReadFixed(std::uint32_t aFixed, ezADTSHeader& aHeader) {
    const bool fMPEG2 = Bits(aFixed, 15, 1) != 0;
    const std::uint32_t layer = Bits(aFixed, 13, 2);
    const std::uint32_t profile = Bits(aFixed, 10, 2);
    const std::uint32_t rate = Bits(aFixed, 6, 4);
    if (Bits(aFixed, 16, 12) != kSync || layer != 0 || rate >= kAACSamplingRates.size() ||
        (fMPEG2 && profile == kProfileReserved)) {
        return false;
    }
    aHeader.mSamplingRate = kAACSamplingRates[rate];
    aHeader.mChannels = kChannels[Bits(aFixed, 2, 3)];
    aHeader.mFrameSize = 0;
    aHeader.mSampleCount = 0;
    aHeader.mFixed = aFixed;
    return true;
}

bool ezADTSHeader_Read(const unsigned char* aBytes, ezADTSHeader& aHeader) {
    const std::uint32_t fixed = std::uint32_t{aBytes[0]} << 20 | std::uint32_t{aBytes[1]} << 12 |
                                std::uint32_t{aBytes[2]} << 4 | std::uint32_t{aBytes[3]} >> 4;
    if (!ezADTSHeader_ReadFixed(fixed, aHeader)) {
        return false;
    }
    aHeader.mFrameSize =
        (aBytes[3] & 3U) << 11 | std::uint32_t{aBytes[4]} << 3 | std::uint32_t{aBytes[5]} >> 5;
    aHeader.mSampleCount = kSamplesOfBlock * ((aBytes[6] & 3U) + 1); // number_of_raw_data_blocks_in_frame
    const bool fCRC = Bits(fixed, 12, 1) == 0;                       // protection_absent
    return aHeader.mFrameSize >= kADTSMinFrameSize + (fCRC ? kCRCSize : 0);
}
