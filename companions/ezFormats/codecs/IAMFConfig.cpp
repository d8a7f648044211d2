#include "ezFormats/codecs/IAMFConfig.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/codecs/ESDescriptor.h"
#include "ezFormats/codecs/FLACStreamInfo.h"
#include "ezFormats/codecs/OpusHeader.h"

#include <algorithm>
#include <array>

namespace {

/// @name obu_type (3.2)
/// @{
constexpr unsigned kOBU_CodecConfig = 0;
constexpr unsigned kOBU_AudioElement = 1;
/// @}

/// leb128, seven bits a byte, the lowest first (3.1); at most 32 bits.
std::uint32_t ReadLeb128(ByteReader& aReader) {
    std::uint64_t number = 0;
    unsigned byte = 0x80;
    for (unsigned i = 0; i < 8 && (byte & 0x80U) != 0; ++i) {
        byte = aReader.ReadByte();
        number |= std::uint64_t{byte & 0x7FU} << (7 * i);
    }
    const bool fNumber = aReader.Require((byte & 0x80U) == 0 && number <= UINT32_MAX);
    return fNumber ? static_cast<std::uint32_t>(number) : 0;
}

// --- Codecs: the sampling rate by what each has for a configuration (3.6)

std::uint32_t RateOfPCM(ByteReader aConfig) {
    aConfig.Skip(1 + 1); // sample_format_flags, sample_size
    return aConfig.ReadBig32();
}

/// Whatever rate its input had.
std::uint32_t RateOfOpus(ByteReader /*aConfig*/) {
    return kOpus_SamplingRate;
}

std::uint32_t RateOfAAC(ByteReader aConfig) {
    ESDescriptor decoder;
    AudioSpecificConfig config;
    const bool fRead = ReadDecoderDescriptor(aConfig, decoder) &&
                       AudioSpecificConfig_Read(decoder.mConfig.data(), decoder.mConfigSize, config);
    return fRead ? config.mSamplingRate : 0;
}

std::uint32_t RateOfFLAC(ByteReader aConfig) {
    return ReadFLACStreamInfo(aConfig).mSamplingRate;
}

struct Codec {
    BoxType mType;
    std::uint32_t (*mRateOf)(ByteReader aConfig);
};
constexpr std::array<Codec, 4> kCodecs = {
    {{"ipcm", RateOfPCM}, {"Opus", RateOfOpus}, {"mp4a", RateOfAAC}, {"fLaC", RateOfFLAC}}};

std::uint32_t ReadCodecRate(ByteReader aUnit) {
    ReadLeb128(aUnit); // codec_config_id
    const BoxType type = BoxType::Read(aUnit);
    ReadLeb128(aUnit); // num_samples_per_frame
    aUnit.Skip(2);     // audio_roll_distance
    for (const Codec& codec : kCodecs) {
        if (type == codec.mType && !aUnit.HasFailed()) {
            return codec.mRateOf(aUnit);
        }
    }
    return 0;
}

// --- Audio elements (3.7)

/// Channels by loudspeaker_layout: mono, stereo, 5.1, 5.1.2, 5.1.4, 7.1, 7.1.2, 7.1.4, 3.1.2, headphones.
constexpr std::array<std::uint32_t, 10> kLayoutChannels = {1, 2, 6, 8, 10, 8, 10, 12, 6, 2};

/// ParamDefinition
void SkipParamDefinition(ByteReader& aUnit) {
    ReadLeb128(aUnit); // parameter_id
    ReadLeb128(aUnit); // parameter_rate
    if ((aUnit.ReadByte() & 0x80U) != 0) {
        return; // param_definition_mode: told with the frames
    }
    ReadLeb128(aUnit);                          // duration
    const bool fEqual = ReadLeb128(aUnit) != 0; // constant_subblock_duration
    const std::uint32_t count = fEqual ? 0 : ReadLeb128(aUnit);
    for (std::uint32_t i = 0; i < count && !aUnit.HasFailed(); ++i) {
        ReadLeb128(aUnit); // subblock_duration
    }
}

void SkipParameter(ByteReader& aUnit) {
    constexpr std::uint32_t kDemixing = 1;
    constexpr std::uint32_t kReconGain = 2;
    const std::uint32_t kind = ReadLeb128(aUnit); // param_definition_type
    if (kind == kDemixing || kind == kReconGain) {
        SkipParamDefinition(aUnit);
        aUnit.Skip(kind == kDemixing ? 2 : 0); // default_demixing_info_parameter_data
    } else {
        aUnit.Skip(ReadLeb128(aUnit));
    }
}

/// scalable_channel_layout_config: each layer adds loudspeakers to those before it.
std::uint32_t ReadLayers(ByteReader& aUnit) {
    constexpr unsigned kOutputGain = 0x08; // output_gain_is_present_flag
    const unsigned count = aUnit.ReadByte() >> 5;
    std::uint32_t channels = 0;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned layer = aUnit.ReadByte();
        aUnit.Skip(1 + 1);                              // substream_count, coupled_substream_count
        aUnit.Skip((layer & kOutputGain) != 0 ? 3 : 0); // output_gain_flags, output_gain
        const unsigned layout = layer >> 4;
        channels = layout < kLayoutChannels.size() ? kLayoutChannels[layout] : 0;
    }
    return channels;
}

std::uint32_t ReadElementChannels(ByteReader aUnit) {
    ReadLeb128(aUnit);                           // audio_element_id
    const unsigned kind = aUnit.ReadByte() >> 5; // audio_element_type
    ReadLeb128(aUnit);                           // codec_config_id
    const std::uint32_t streams = ReadLeb128(aUnit);
    for (std::uint32_t i = 0; i < streams && !aUnit.HasFailed(); ++i) {
        ReadLeb128(aUnit); // audio_substream_id
    }
    const std::uint32_t parameters = ReadLeb128(aUnit);
    for (std::uint32_t i = 0; i < parameters && !aUnit.HasFailed(); ++i) {
        SkipParameter(aUnit);
    }
    std::uint32_t channels = 0;
    if (kind == 0) {
        channels = ReadLayers(aUnit);
    } else if (kind == 1) { // ambisonics_config
        ReadLeb128(aUnit);  // ambisonics_mode
        channels = aUnit.ReadByte();
    }
    return aUnit.HasFailed() ? 0 : channels;
}

/// What an OBU header has after obu_size.
void SkipExtension(ByteReader& aUnit, unsigned aHead) {
    constexpr unsigned kTrimmed = 0x02;
    constexpr unsigned kExtended = 0x01;
    if ((aHead & kTrimmed) != 0) {
        ReadLeb128(aUnit); // num_samples_to_trim_at_end
        ReadLeb128(aUnit); // num_samples_to_trim_at_start
    }
    if ((aHead & kExtended) != 0) {
        aUnit.Skip(ReadLeb128(aUnit));
    }
}

} // namespace

IAMFConfig ReadIAMFConfig(ByteReader aBox) {
    IAMFConfig config;
    aBox.Skip(1); // configurationVersion
    ByteReader units = aBox.Take(ReadLeb128(aBox));
    while (units.GetLeft() != 0) {
        const unsigned head = units.ReadByte();
        ByteReader unit = units.Take(ReadLeb128(units));
        SkipExtension(unit, head);
        const unsigned kind = head >> 3;
        if (kind == kOBU_CodecConfig && config.mSamplingRate == 0) {
            config.mSamplingRate = ReadCodecRate(unit);
        } else if (kind == kOBU_AudioElement) {
            config.mChannels = std::max(config.mChannels, ReadElementChannels(unit));
        }
    }
    return config;
}
