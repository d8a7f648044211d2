#include "ezFormats/iso/ISOAudioBoxes.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/codecs/AudioSpecificConfig.h"
#include "ezFormats/codecs/CodecWord.h"
#include "ezFormats/codecs/ESDescriptor.h"
#include "ezFormats/codecs/EncryptedCodec.h"
#include "ezFormats/codecs/FloatRates.h"
#include "ezFormats/codecs/OpusHeader.h"
#include "ezFormats/codecs/PacketSound.h"
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
void ReadSoundVersion1(ByteReader& aReader, std::uint32_t aCompression, ISOAudio& aFacts) {
    constexpr std::uint32_t kVariable = 0xFFFE;
    const std::uint32_t samples = aReader.ReadBig32();
    aReader.Skip(4); // bytes of one channel
    const std::uint32_t bytes = aReader.ReadBig32();
    aReader.Skip(4); // bytes of a sample that is not packed
    if (aCompression != kVariable) {
        aFacts.mPacketSamples = samples;
        aFacts.mPacketBytes = bytes;
    }
}

/// The second version of QuickTime's sound description, after the part that all have.
void ReadSoundVersion2(ByteReader& aReader, ISOAudioEntry& anEntry) {
    constexpr std::uint32_t kFloat = 1;
    aReader.Skip(4); // its size
    anEntry.mFacts.mSamplingRate = ReadFloatRate(aReader);
    anEntry.mFacts.mChannels = ReadSmall(aReader);
    aReader.Skip(4); // always 0x7F000000
    anEntry.mFacts.mBitsPerSample = ReadSmall(aReader);
    anEntry.mfFloat = (aReader.ReadBig32() & kFloat) != 0;
    aReader.Skip(8); // bytes and samples of a packet
}

/// The fixed part (AudioSampleEntry of ISO/IEC 14496-12, 12.2.3). Its version has been told apart from ISO's
/// second form, which adds nothing, by that of the table: QuickTime's is 0.
void ReadSound(ByteReader& aReader, std::uint32_t aTableVersion, ISOAudioEntry& anEntry) {
    const auto stated = aReader.ReadBig(2);
    const auto version = aTableVersion == 0 ? stated : 0;
    aReader.Skip(6); // revision and vendor
    anEntry.mFacts.mChannels = static_cast<std::uint32_t>(aReader.ReadBig(2));
    anEntry.mFacts.mBitsPerSample = static_cast<std::uint32_t>(aReader.ReadBig(2));
    const auto compression = static_cast<std::uint32_t>(aReader.ReadBig(2));
    aReader.Skip(2); // packet size, unused
    anEntry.mFacts.mSamplingRate = aReader.ReadBig32() >> 16;
    if (version == 1) {
        ReadSoundVersion1(aReader, compression, anEntry.mFacts);
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
        anEntry.mFacts.mSamplingRate = config.mSamplingRate;
        anEntry.mFacts.mChannels = config.mChannels != 0 ? config.mChannels : anEntry.mFacts.mChannels;
        anEntry.mFacts.mCodec = config.GetCodecName();
        return !anEntry.mFacts.mCodec.IsEmpty();
    }
    for (const AudioObject& object : kObjects) {
        if (stream.mObjectType == object.mObjectType) {
            const bool fTemplate =
                object.mfSurround && !anEntry.mfConfigured && anEntry.mFacts.mChannels == 2;
            anEntry.mFacts.mCodec = object.mName;
            anEntry.mFacts.mChannels = fTemplate ? 0 : anEntry.mFacts.mChannels;
            return true;
        }
    }
    return false;
}

/// Names the codec by its four characters, which stand for themselves where they are known to nobody, and
/// takes over what follows from them.
void NameByFormat(BoxType aFormat, ISOAudioEntry& anEntry) {
    const PacketSound sound = PacketSoundOf(aFormat);
    ISOAudio& facts = anEntry.mFacts;
    facts.mCodec = sound.mfPlain && anEntry.mfFloat ? ezCString("PCM-float") : sound.mCodec;
    if (sound.mBitsPerSample != 0) {
        facts.mBitsPerSample = sound.mBitsPerSample;
    }
    for (const NarrowFormat& narrow : kNarrowFormats) {
        if (aFormat == narrow.mFormat) {
            facts.mSamplingRate = narrow.mSamplingRate;
            facts.mChannels = 1;
        }
    }
    // Packets that the entry leaves to the codec.
    if (sound.mPacketBytes != 0 && (facts.mPacketBytes == 0 || facts.mPacketSamples == 0)) {
        facts.mPacketBytes = sound.mPacketBytes * facts.mChannels;
        facts.mPacketSamples = sound.mPacketSamples;
    }
}

/// Only of lossless codecs bits of a sample count; entries of others have a template's 16 there, and so have
/// those of DTS, unless its box tells.
bool HasBitsPerSample(const ISOAudioEntry& anEntry) {
    const ezCString& name = anEntry.mFacts.mCodec;
    return name == "LPCM" || name == "PCM-float" || name == "ALAC" || name == "FLAC" ||
           (name == "DTS-HD-MA" && anEntry.mfConfigured);
}

/// What an entry states of AMR counts the bytes of the file, which are more than those of its frames.
bool IsRateOfBytes(const ezCString& aName) {
    return aName == "AMR" || aName == "AMR-WB";
}

} // namespace

ISOAudio ReadAudioDescription(ByteReader aTable, std::uint32_t& aBoxBudget) {
    ISOSampleEntry sample(aTable, aBoxBudget);
    ISOAudioEntry entry;
    ReadSound(sample.mContent, sample.mTableVersion, entry);
    if (sample.mContent.HasFailed()) {
        entry.mFacts = ISOAudio();
        entry.mFacts.mCodec = CodecWord_OfFormat(sample.mFormat);
        return entry.mFacts;
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
    ISOAudio& facts = entry.mFacts;
    if (facts.mCodec == "Opus") { // which plays at one rate, whatever the entry has
        facts.mSamplingRate = kOpus_SamplingRate;
    }
    if (!entry.mBoxName.IsEmpty()) {
        facts.mCodec = entry.mBoxName;
    }
    if (!HasBitsPerSample(entry)) {
        facts.mBitsPerSample = 0;
    }
    if (!IsRateOfBytes(facts.mCodec)) {
        facts.mBitRate = entry.mBitRate;
        facts.mMaxBitRate = entry.mMaxBitRate;
    }
    if (fEncrypted) {
        facts.mCodec = EncryptedCodecName(facts.mCodec);
    }
    return facts;
}
