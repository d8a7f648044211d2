#include "ezFormats/codecs/WaveFormat.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::uint32_t kExtensible = 0xFFFE;

struct Codec {
    std::uint32_t mTag;
    const char* mName;
    WaveFormat::Rate mRate;
    bool mfBlockSamples = false; ///< the number after the size of the extension is that of samples in a block
};

constexpr auto kPlain = WaveFormat::Rate::Plain;
constexpr auto kConstant = WaveFormat::Rate::Constant;
constexpr auto kVarying = WaveFormat::Rate::Varying;

/// By tag.
constexpr Codec kCodecs[] = {{kWaveTag_PCM, "LPCM", kPlain},
                             {0x0002, "ADPCM-MS", kConstant, true},
                             {kWaveTag_Float, "PCM-float", kPlain},
                             {0x0006, "alaw", kPlain},
                             {0x0007, "ulaw", kPlain},
                             {0x0008, "DTS", kConstant},
                             {0x000A, "WMA-voice", kConstant},
                             {0x0011, "ADPCM-IMA", kConstant, true},
                             {0x0020, "ADPCM-Yamaha", kConstant},
                             {0x0022, "TrueSpeech", kConstant},
                             {0x0031, "GSM", kConstant, true},
                             {0x0040, "G721", kConstant},
                             {0x0042, "G723.1", kConstant},
                             {0x0045, "G726", kConstant},
                             {kWaveTag_MPEG, "MP2", kVarying},
                             {kWaveTag_MP3, "MP3", kVarying},
                             {0x0064, "G726", kConstant},
                             {0x0065, "G722", kConstant},
                             {0x0069, "ADPCM-IMA", kConstant, true},
                             {0x0083, "G729", kConstant},
                             {0x0092, "AC3", kConstant}, // as IEC 61937 has it
                             {0x00FF, "AAC", kVarying},
                             {0x0160, "WMA1", kConstant},
                             {0x0161, "WMA2", kConstant},
                             {kWaveTag_WMAPro, "WMA-Pro", kVarying},
                             {kWaveTag_WMALossless, "WMA-lossless", kVarying},
                             {0x0270, "ATRAC3", kConstant},
                             {0x028F, "G722", kConstant},
                             {0x1104, "SBC", kVarying},
                             {0x1600, "AAC", kVarying},
                             {0x1602, "AAC", kVarying},
                             {0x1610, "AAC", kVarying},
                             {0x2000, "AC3", kConstant},
                             {0x2001, "DTS", kConstant},
                             {0x566F, "Vorbis", kVarying},
                             {0x674F, "Vorbis", kVarying},
                             {0x6750, "Vorbis", kVarying},
                             {0x6751, "Vorbis", kVarying},
                             {0x676F, "Vorbis", kVarying},
                             {0x6770, "Vorbis", kVarying},
                             {0x6771, "Vorbis", kVarying},
                             {0xA106, "AAC", kVarying},
                             {0xA109, "Speex", kVarying},
                             {0xF1AC, "FLAC", kVarying}};

const Codec* FindCodec(std::uint32_t aTag) {
    const auto* const codec = std::find_if(std::begin(kCodecs), std::end(kCodecs),
                                           [aTag](const Codec& aCodec) { return aCodec.mTag == aTag; });
    return codec != std::end(kCodecs) ? codec : nullptr;
}

/// The numbers, as they stand.
class Fields {
public:
    Fields(const ByteReader& aReader, bool afBig) : mReader(aReader), mfBig(afBig) {}
    std::uint32_t Read(unsigned aByteCount) {
        return static_cast<std::uint32_t>(mfBig ? mReader.ReadBig(aByteCount)
                                                : mReader.ReadLittle(aByteCount));
    }
    bool HasFailed() const { return mReader.HasFailed(); }

private:
    ByteReader mReader;
    bool mfBig;
};

/// Of plain samples: what writers leave out, or state of the bits that count alone, follows from the rest.
void CompletePlain(std::uint32_t aBits, std::uint32_t aValidBits, WaveFormat& aFormat) {
    aFormat.mBlockSamples = 1;
    if (aFormat.mTag != kWaveTag_PCM && aFormat.mTag != kWaveTag_Float) {
        aFormat.mBlockSize = aFormat.mChannels; // some state the bits that a sample of G.711 stands for
        return;
    }
    std::uint32_t bits = aBits;
    if (bits == 0 && aFormat.mChannels != 0) {
        bits = aFormat.mBlockSize / aFormat.mChannels * 8;
    }
    const std::uint32_t least = aFormat.mChannels * ((bits + 7) / 8); // 16 bits by 14
    aFormat.mBlockSize = std::max(aFormat.mBlockSize, least);
    aFormat.mBitsPerSample = aValidBits != 0 && aValidBits < bits ? aValidBits : bits;
}

} // namespace

AudioFacts WaveFormat::GetFacts() const {
    AudioFacts facts;
    facts.mCodec = mCodec;
    facts.mSamplingRate = mSamplingRate;
    facts.mChannels = mChannels;
    facts.mBitsPerSample = mBitsPerSample;
    return facts;
}

bool ReadWaveFormat(ByteReader aReader, bool afBig, WaveFormat* aFormat) {
    Fields fields(aReader, afBig);
    WaveFormat format;
    format.mTag = fields.Read(2);
    format.mChannels = fields.Read(2);
    format.mSamplingRate = fields.Read(4);
    format.mAverageBytes = fields.Read(4);
    format.mBlockSize = fields.Read(2);
    if (fields.HasFailed()) {
        return false;
    }
    const std::uint32_t bits = fields.Read(2); // a WAVEFORMAT ends before them
    fields.Read(2);                            // bytes of the extension
    const std::uint32_t extra = fields.Read(2);
    fields.Read(4); // where the channels are, which writers state wrong
    std::uint32_t validBits = 0;
    if (format.mTag == kExtensible) {
        const std::uint32_t tag = fields.Read(2); // the GUID begins with it
        format.mTag = fields.HasFailed() ? kExtensible : tag;
        validBits = extra;
    }
    const Codec* const codec = FindCodec(format.mTag);
    if (codec == nullptr) {
        format.mCodec = ezCString::Format("WAVE-%04X", unsigned{format.mTag});
    } else {
        format.mCodec = codec->mName;
        format.mRate = codec->mRate;
        format.mBlockSamples = codec->mfBlockSamples ? extra : 0;
    }
    if (format.mRate == WaveFormat::Rate::Plain) {
        CompletePlain(bits, validBits, format);
    } else if (format.mTag == kWaveTag_WMAPro || format.mTag == kWaveTag_WMALossless) {
        format.mBitsPerSample = extra != 0 ? extra : bits;
    }
    *aFormat = format;
    return true;
}
