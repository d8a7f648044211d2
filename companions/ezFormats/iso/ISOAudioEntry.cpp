#include "ezFormats/iso/ISOAudioBoxes.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/codecs/FloatRates.h"
#include "ezFormats/iso/ESDescriptor.h"
#include "ezFormats/iso/ISOLimits.h"
#include "ezFormats/iso/ISOSampleEntry.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace {

struct AudioFormat {
    BoxType mFormat;
    const char* mName;
    std::uint32_t mSamplingRate; ///< the only one of the codec, and it has one channel; 0: the entry tells
    std::uint32_t mBitsPerSample;
};
constexpr std::array<AudioFormat, 20> kFormats = {
    {{".mp3", "MP3", 0, 0},        {"ms\0\x55", "MP3", 0, 0},  {"ac-3", "AC3", 0, 0},
     {"ec-3", "EAC3", 0, 0},       {"alac", "ALAC", 0, 0},     {"samr", "AMR", 8000, 0},
     {"sawb", "AMR-WB", 16000, 0}, {"sawp", "AMR-WB+", 0, 0},  {"sowt", "LPCM", 0, 0},
     {"twos", "LPCM", 0, 0},       {"lpcm", "LPCM", 0, 0},     {"ipcm", "LPCM", 0, 0},
     {"raw ", "LPCM", 0, 8},       {"NONE", "LPCM", 0, 0},     {"in24", "LPCM", 0, 24},
     {"in32", "LPCM", 0, 32},      {"Opus", "Opus", 48000, 0}, {"fLaC", "FLAC", 0, 0},
     {"mlpa", "TrueHD", 0, 0},     {"iamf", "IAMF", 0, 0}}};

/// QuickTime's codecs of constant packets, of each channel one: where the entry does not tell, it is these.
struct PackedFormat {
    BoxType mFormat;
    std::uint32_t mBytes;
    std::uint32_t mSamples;
};
constexpr std::array<PackedFormat, 5> kPackedFormats = {
    {{"ulaw", 1, 1}, {"alaw", 1, 1}, {"ima4", 34, 64}, {"MAC3", 2, 6}, {"MAC6", 1, 6}}};

struct AudioObject {
    std::uint32_t mObjectType;
    const char* mName;
};
/// Object type indications of what has no configuration that tells more. 69 and 6B stand for all layers of
/// MPEG audio; no writer puts anything but the third into such a file.
constexpr std::array<AudioObject, 7> kObjects = {{{0x69, "MP3"},
                                                  {0x6B, "MP3"},
                                                  {0xA5, "AC3"},
                                                  {0xA6, "EAC3"},
                                                  {0xA9, "DTS"},
                                                  {0xAD, "Opus"},
                                                  {0xDD, "Vorbis"}}};

/// @name Object type indications whose configuration is that of MPEG-4 audio
/// @{
constexpr std::uint32_t kObjectMPEG4Audio = 0x40;
constexpr std::uint32_t kObjectFirstAAC = 0x66; ///< of MPEG-2: Main, low complexity, scalable rate
constexpr std::uint32_t kObjectLastAAC = 0x68;
/// @}

/// A number of 32 bits where the other versions have 16; 0 for one that they could not hold.
std::uint32_t ReadSmall(ByteReader& aReader) {
    const std::uint32_t number = aReader.ReadBig32();
    return number <= UINT16_MAX ? number : 0;
}

/// The first version of QuickTime's sound description, after the part that all have: how samples are packed.
/// Where packets vary they are nothing but a template.
void ReadSoundVersion1(ByteReader& aReader, std::uint32_t aCompression, ISOCodec& aCodec) {
    constexpr std::uint32_t kVariable = 0xFFFE;
    const std::uint32_t samples = aReader.ReadBig32();
    aReader.Skip(4); // bytes of one channel
    const std::uint32_t bytes = aReader.ReadBig32();
    aReader.Skip(4); // bytes of a sample that is not packed
    if (aCompression != kVariable) {
        aCodec.mPacketSamples = samples;
        aCodec.mPacketBytes = bytes;
    }
}

/// The second version of QuickTime's sound description, after the part that all have.
void ReadSoundVersion2(ByteReader& aReader, ISOAudioEntry& anEntry) {
    constexpr std::uint32_t kFloat = 1;
    aReader.Skip(4); // its size
    anEntry.mCodec.mSamplingRate = ReadFloatRate(aReader);
    anEntry.mCodec.mChannels = ReadSmall(aReader);
    aReader.Skip(4); // always 0x7F000000
    anEntry.mCodec.mBitsPerSample = ReadSmall(aReader);
    anEntry.mfFloat = (aReader.ReadBig32() & kFloat) != 0;
    aReader.Skip(8); // bytes and samples of a packet
}

/// The fixed part (AudioSampleEntry of ISO/IEC 14496-12, 12.2.3). Its version has been told apart from ISO's
/// second form, which adds nothing, by that of the table: QuickTime's is 0.
void ReadSound(ByteReader& aReader, std::uint32_t aTableVersion, ISOAudioEntry& anEntry) {
    const auto stated = aReader.ReadBig(2);
    const auto version = aTableVersion == 0 ? stated : 0;
    aReader.Skip(6); // revision and vendor
    anEntry.mCodec.mChannels = static_cast<std::uint32_t>(aReader.ReadBig(2));
    anEntry.mCodec.mBitsPerSample = static_cast<std::uint32_t>(aReader.ReadBig(2));
    const auto compression = static_cast<std::uint32_t>(aReader.ReadBig(2));
    aReader.Skip(2); // packet size, unused
    anEntry.mCodec.mSamplingRate = aReader.ReadBig32() >> 16;
    if (version == 1) {
        ReadSoundVersion1(aReader, compression, anEntry.mCodec);
    } else if (version == 2) {
        ReadSoundVersion2(aReader, anEntry);
    }
}

// --- What it all is

/// Of "mp4a": the stream's descriptor tells what the samples are. True when it does.
bool NameByStream(ISOAudioEntry& anEntry) {
    const ESDescriptor& stream = *anEntry.mStream;
    const bool fAAC = stream.mObjectType >= kObjectFirstAAC && stream.mObjectType <= kObjectLastAAC;
    if (stream.mObjectType == kObjectMPEG4Audio || fAAC) {
        AudioSpecificConfig config;
        if (!AudioSpecificConfig_Read(stream.mConfig.data(), stream.mConfigSize, config)) {
            return false;
        }
        anEntry.mCodec.mSamplingRate = config.mSamplingRate;
        anEntry.mCodec.mChannels = config.mChannels != 0 ? config.mChannels : anEntry.mCodec.mChannels;
        anEntry.mCodec.mName = config.GetCodecName();
        return !anEntry.mCodec.mName.IsEmpty();
    }
    for (const AudioObject& object : kObjects) {
        if (stream.mObjectType == object.mObjectType) {
            anEntry.mCodec.mName = object.mName;
            return true;
        }
    }
    return false;
}

/// Names the codec by its four characters; true where they stand for one.
bool NameByFormat(BoxType aFormat, ISOAudioEntry& anEntry) {
    const auto* const known = std::find_if(kFormats.begin(), kFormats.end(), [&](const AudioFormat& aKnown) {
        return aFormat == aKnown.mFormat;
    });
    if (known == kFormats.end() || anEntry.mfFloat) {
        return false;
    }
    ISOCodec& codec = anEntry.mCodec;
    codec.mName = known->mName;
    if (known->mSamplingRate != 0) {
        codec.mSamplingRate = known->mSamplingRate;
        codec.mChannels = codec.mName == "Opus" ? codec.mChannels : 1; // writers leave a template's 2 there
    }
    if (known->mBitsPerSample != 0) {
        codec.mBitsPerSample = known->mBitsPerSample;
    }
    return true;
}

/// Only lossless codecs have bits of a sample; others leave a template's 16 there.
bool HasBitsPerSample(const ezCString& aName) {
    return aName == "LPCM" || aName == "ALAC" || aName == "FLAC";
}

/// What an entry states of AMR counts the bytes of the file, which are more than those of its frames.
bool IsRateOfBytes(const ezCString& aName) {
    return aName == "AMR" || aName == "AMR-WB";
}

/// Packets that the entry leaves to the codec.
void CompletePackets(BoxType aFormat, ISOCodec& aCodec) {
    for (const PackedFormat& packed : kPackedFormats) {
        if (aFormat == packed.mFormat && (aCodec.mPacketBytes == 0 || aCodec.mPacketSamples == 0)) {
            aCodec.mPacketBytes = packed.mBytes * aCodec.mChannels;
            aCodec.mPacketSamples = packed.mSamples;
        }
    }
}

} // namespace

ISOCodec ReadAudioDescription(ByteReader aTable, std::uint32_t& aBoxBudget) {
    ISOSampleEntry sample(aTable, aBoxBudget);
    ISOAudioEntry entry;
    ReadSound(sample.mContent, sample.mTableVersion, entry);
    if (sample.mContent.HasFailed()) {
        entry.mCodec = ISOCodec();
        entry.mCodec.mName = ISOFormatName(sample.mFormat);
        return entry.mCodec;
    }
    ReadAudioBoxes(sample.mContent, aBoxBudget, entry);
    if (entry.mWave.has_value()) {
        const ByteReader wave = *entry.mWave;
        ReadAudioBoxes(wave, aBoxBudget, entry); // one in it is not entered
    }
    const bool fEncrypted = sample.mFormat == "enca" || sample.mFormat.GetText().StartsWith("drm");
    const BoxType format = fEncrypted ? entry.mOriginal.value_or(sample.mFormat) : sample.mFormat;
    const bool fNamed =
        entry.mStream.has_value() && format == "mp4a" ? NameByStream(entry) : NameByFormat(format, entry);
    if (!fNamed) {
        entry.mCodec.mName = ISOFormatName(format);
    }
    CompletePackets(format, entry.mCodec);
    if (!HasBitsPerSample(entry.mCodec.mName)) {
        entry.mCodec.mBitsPerSample = 0;
    }
    if (IsRateOfBytes(entry.mCodec.mName)) {
        entry.mCodec.mBitRate = 0;
        entry.mCodec.mMaxBitRate = 0;
    }
    if (fEncrypted) {
        MarkEncrypted(entry.mCodec);
    }
    return entry.mCodec;
}
