#include "ezFormats/iso/ISOAudioBoxes.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/codecs/FloatRates.h"
#include "ezFormats/codecs/PacketSound.h"
#include "ezFormats/iso/ESDescriptor.h"
#include "ezFormats/iso/ISOLimits.h"
#include "ezFormats/iso/ISOSampleEntry.h"

#include <array>
#include <optional>
#include <string_view>

namespace {

/// Codecs of one rate and one channel; their writers leave a template's numbers in the entry.
struct NarrowFormat {
    BoxType mFormat;
    std::uint32_t mSamplingRate;
};
constexpr std::array<NarrowFormat, 2> kNarrowFormats = {{{"samr", 8000}, {"sawb", 16000}}};

constexpr std::uint32_t kOpusSamplingRate = 48000;

struct AudioObject {
    std::uint32_t mObjectType;
    const char* mName;
    bool mfSurround; ///< it may have more channels than the template's 2 that stands in the entry of all
};
/// Object type indications of what has no configuration that tells more. 69 and 6B stand for all layers of
/// MPEG audio; no writer puts anything but the third into such a file.
constexpr std::array<AudioObject, 11> kObjects = {{{0x69, "MP3", false},
                                                   {0x6B, "MP3", false},
                                                   {0xA5, "AC3", true},
                                                   {0xA6, "EAC3", true},
                                                   {0xA9, "DTS", true},
                                                   {0xAA, "DTS-HD", true},
                                                   {0xAB, "DTS-HD-MA", true},
                                                   {0xAC, "DTS-HD-LBR", true},
                                                   {0xAD, "Opus", false},
                                                   {0xAE, "AC4", true},
                                                   {0xDD, "Vorbis", false}}};

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
            const bool fTemplate =
                object.mfSurround && !anEntry.mfConfigured && anEntry.mCodec.mChannels == 2;
            anEntry.mCodec.mName = object.mName;
            anEntry.mCodec.mChannels = fTemplate ? 0 : anEntry.mCodec.mChannels;
            return true;
        }
    }
    return false;
}

/// Names the codec by its four characters, which stand for themselves where they are known to nobody, and
/// takes over what follows from them.
void NameByFormat(BoxType aFormat, ISOAudioEntry& anEntry) {
    const PacketSound sound = PacketSoundOf(aFormat);
    ISOCodec& codec = anEntry.mCodec;
    codec.mName = sound.mfPlain && anEntry.mfFloat ? ezCString("PCM-float") : sound.mCodec;
    if (sound.mBitsPerSample != 0) {
        codec.mBitsPerSample = sound.mBitsPerSample;
    }
    for (const NarrowFormat& narrow : kNarrowFormats) {
        if (aFormat == narrow.mFormat) {
            codec.mSamplingRate = narrow.mSamplingRate;
            codec.mChannels = 1;
        }
    }
    // Packets that the entry leaves to the codec.
    if (sound.mPacketBytes != 0 && (codec.mPacketBytes == 0 || codec.mPacketSamples == 0)) {
        codec.mPacketBytes = sound.mPacketBytes * codec.mChannels;
        codec.mPacketSamples = sound.mPacketSamples;
    }
}

/// Only of lossless codecs bits of a sample count; entries of others have a template's 16 there, and so have
/// those of DTS, unless its box tells.
bool HasBitsPerSample(const ISOAudioEntry& anEntry) {
    const ezCString& name = anEntry.mCodec.mName;
    return name == "LPCM" || name == "PCM-float" || name == "ALAC" || name == "FLAC" ||
           (name == "DTS-HD-MA" && anEntry.mfConfigured);
}

/// What an entry states of AMR counts the bytes of the file, which are more than those of its frames.
bool IsRateOfBytes(const ezCString& aName) {
    return aName == "AMR" || aName == "AMR-WB";
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
    if (!entry.mStream.has_value() || format != "mp4a" || !NameByStream(entry)) {
        NameByFormat(format, entry);
    }
    if (entry.mCodec.mName == "Opus") { // which plays at one rate, whatever the entry has
        entry.mCodec.mSamplingRate = kOpusSamplingRate;
    }
    if (!entry.mBoxName.IsEmpty()) {
        entry.mCodec.mName = entry.mBoxName;
    }
    if (!HasBitsPerSample(entry)) {
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
