#include "ezFormats/codecs/AC4Config.h"

#include "ezBytes/BitReader.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

/// Channels by presentation_ch_mode, all there may be (ETSI TS 103 190-2, annex E; 6.3.2.7.2).
constexpr std::array<std::uint32_t, 16> kChannels = {1, 2, 3, 5, 6, 7, 8, 7, 8, 7, 8, 11, 12, 13, 14, 24};
constexpr std::uint32_t kFirstWithTop = 11;
constexpr std::uint32_t kLastWithTop = 14;

constexpr std::uint32_t kSinglePresentation = 31; ///< presentation_config_v1 of one group of substreams
constexpr std::uint32_t kLastConfig = 5;          ///< from there on stand kinds that are not played

/// The channels of a presentation (ac4_presentation_v1_dsi), from its start on; 0 for one of objects.
std::uint32_t ReadPresentation(ezBitReader& aBits) {
    const std::uint32_t config = aBits.Read(5);
    if (config > kLastConfig && config != kSinglePresentation) {
        return 0;
    }
    aBits.Skip(3);                        // mdcompat
    aBits.Skip(aBits.ReadFlag() ? 5 : 0); // presentation_id
    aBits.Skip(2 + 2 + 5 + 10);           // rates of frames, presentation_emdf_version, presentation_key_id
    const bool fChannels = aBits.ReadFlag(); // b_presentation_channel_coded
    const std::uint32_t mode = aBits.Read(5);
    if (!fChannels || mode >= kChannels.size()) {
        return 0;
    }
    std::uint32_t channels = kChannels[mode];
    if (mode >= kFirstWithTop && mode <= kLastWithTop) {
        channels -= aBits.ReadFlag() ? 0 : 2;                     // pres_b_4_back_channels_present
        channels -= 4 - 2 * std::min(aBits.Read(2), UINT32_C(2)); // pres_top_channel_pairs
    }
    return aBits.HasFailed() ? 0 : channels;
}

/// From the versions of the stream and the box on, which have been read: the programme, and the rate.
void ReadProgramme(ezBitReader& aBits, bool afIdentified, AC4Config& aConfig) {
    constexpr std::uint32_t kUnknown = UINT32_MAX;
    if (afIdentified && aBits.ReadFlag()) {        // b_program_id
        aBits.Skip(16);                            // short_program_id
        aBits.Skip(aBits.ReadFlag() ? 8 * 16 : 0); // program_uuid
    }
    aBits.Skip(2); // bit_rate_mode
    const std::uint32_t rate = aBits.Read(32);
    aBits.Skip(32); // bit_rate_precision
    aConfig.mBitRate = aBits.HasFailed() || rate == kUnknown ? 0 : rate;
}

} // namespace

AC4Config ReadAC4Config(ByteReader aBox) {
    std::array<unsigned char, 48> head =
        {}; // a programme with all it may have, and the start of what follows
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(aBox.GetLeft(), head.size()));
    if (!aBox.Read(head.data(), size)) {
        return {};
    }
    ezBitReader bits(head.data(), 8 * size);
    AC4Config config;
    const std::uint32_t version = bits.Read(3); // ac4_dsi_version
    const std::uint32_t stream = bits.Read(7);  // bitstream_version
    const bool f48k = bits.ReadFlag();          // fs_index
    bits.Skip(4);                               // frame_rate_index
    const std::uint32_t presentations = bits.Read(9);
    if (bits.HasFailed() || version > 1) {
        return {};
    }
    config.mSamplingRate = f48k ? 48000 : 44100;
    if (version == 0) {
        return config;
    }
    ReadProgramme(bits, stream > 1, config);
    bits.Skip(bits.GetBitsLeft() % 8);               // byte_align
    const std::uint32_t presentation = bits.Read(8); // presentation_version
    bits.Skip(bits.Read(8) == UINT8_MAX ? 16 : 0);   // pres_bytes, add_pres_bytes
    if (presentations != 0 && (presentation == 1 || presentation == 2)) {
        config.mChannels = ReadPresentation(bits);
    }
    return config;
}
