#include "ezFormats/codecs/IAMFConfig.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/codecs/FLACStreamInfo.h"
#include "ezFormats/iso/ESDescriptor.h"

#include <algorithm>
#include <array>

namespace {

/// @name Kinds of units (3.2)
/// @{
constexpr unsigned kUnitCodec = 0;
constexpr unsigned kUnitElement = 1;
/// @}

/// A number of seven bits a byte, the lowest first (3.1); at most 32 bits.
std::uint32_t ReadLeb(ByteReader& aReader) {
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
    aConfig.Skip(2); // order of bytes, size of a sample
    return aConfig.ReadBig32();
}

/// Whatever rate its input had.
std::uint32_t RateOfOpus(ByteReader /*aConfig*/) {
    constexpr std::uint32_t kOpusRate = 48000;
    return kOpusRate;
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
    ReadLeb(aUnit); // its number
    const BoxType type = BoxType::Read(aUnit);
    ReadLeb(aUnit); // samples of a frame
    aUnit.Skip(2);
    for (const Codec& codec : kCodecs) {
        if (type == codec.mType && !aUnit.HasFailed()) {
            return codec.mRateOf(aUnit);
        }
    }
    return 0;
}

// --- Elements (3.7)

/// Channels by layout of loudspeakers: mono, stereo, 5.1, 5.1.2, 5.1.4, 7.1, 7.1.2, 7.1.4, 3.1.2, headphones.
constexpr std::array<std::uint32_t, 10> kLayoutChannels = {1, 2, 6, 8, 10, 8, 10, 12, 6, 2};

void SkipParameterTimes(ByteReader& aUnit) {
    ReadLeb(aUnit); // its number
    ReadLeb(aUnit); // its ticks a second
    if ((aUnit.ReadByte() & 0x80U) != 0) {
        return; // told with the frames
    }
    ReadLeb(aUnit); // how long it holds
    const bool fEqual = ReadLeb(aUnit) != 0;
    const std::uint32_t count = fEqual ? 0 : ReadLeb(aUnit);
    for (std::uint32_t i = 0; i < count && !aUnit.HasFailed(); ++i) {
        ReadLeb(aUnit);
    }
}

void SkipParameter(ByteReader& aUnit) {
    constexpr std::uint32_t kDemixing = 1;
    constexpr std::uint32_t kGain = 2;
    const std::uint32_t kind = ReadLeb(aUnit);
    if (kind == kDemixing || kind == kGain) {
        SkipParameterTimes(aUnit);
        aUnit.Skip(kind == kDemixing ? 2 : 0);
    } else {
        aUnit.Skip(ReadLeb(aUnit));
    }
}

/// Each layer adds loudspeakers to those before it.
std::uint32_t ReadLayers(ByteReader& aUnit) {
    constexpr unsigned kOutputGain = 0x08;
    const unsigned count = aUnit.ReadByte() >> 5;
    std::uint32_t channels = 0;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned layer = aUnit.ReadByte();
        aUnit.Skip(2); // streams, and pairs among them
        aUnit.Skip((layer & kOutputGain) != 0 ? 3 : 0);
        const unsigned layout = layer >> 4;
        channels = layout < kLayoutChannels.size() ? kLayoutChannels[layout] : 0;
    }
    return channels;
}

std::uint32_t ReadElementChannels(ByteReader aUnit) {
    ReadLeb(aUnit); // its number
    const unsigned kind = aUnit.ReadByte() >> 5;
    ReadLeb(aUnit); // the number of its codec
    const std::uint32_t streams = ReadLeb(aUnit);
    for (std::uint32_t i = 0; i < streams && !aUnit.HasFailed(); ++i) {
        ReadLeb(aUnit);
    }
    const std::uint32_t parameters = ReadLeb(aUnit);
    for (std::uint32_t i = 0; i < parameters && !aUnit.HasFailed(); ++i) {
        SkipParameter(aUnit);
    }
    std::uint32_t channels = 0;
    if (kind == 0) {
        channels = ReadLayers(aUnit);
    } else if (kind == 1) { // a sphere
        ReadLeb(aUnit);     // how it is coded
        channels = aUnit.ReadByte();
    }
    return aUnit.HasFailed() ? 0 : channels;
}

/// What the head of a unit leaves before its content.
void SkipExtension(ByteReader& aUnit, unsigned aHead) {
    constexpr unsigned kTrimmed = 0x02;
    constexpr unsigned kExtended = 0x01;
    if ((aHead & kTrimmed) != 0) {
        ReadLeb(aUnit);
        ReadLeb(aUnit);
    }
    if ((aHead & kExtended) != 0) {
        aUnit.Skip(ReadLeb(aUnit));
    }
}

} // namespace

IAMFConfig ReadIAMFConfig(ByteReader aBox) {
    IAMFConfig config;
    aBox.Skip(1); // version
    ByteReader units = aBox.Take(ReadLeb(aBox));
    while (units.GetLeft() != 0) {
        const unsigned head = units.ReadByte();
        ByteReader unit = units.Take(ReadLeb(units));
        SkipExtension(unit, head);
        const unsigned kind = head >> 3;
        if (kind == kUnitCodec && config.mSamplingRate == 0) {
            config.mSamplingRate = ReadCodecRate(unit);
        } else if (kind == kUnitElement) {
            config.mChannels = std::max(config.mChannels, ReadElementChannels(unit));
        }
    }
    return config;
}
