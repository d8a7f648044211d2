#include "ezFormats/detail/ISOCodec.h"

#include "ezBytes/BitReader.h"
#include "ezBytes/BoxWalk.h"
#include "ezFormats/detail/AC3Header.h"
#include "ezFormats/detail/AudioSpecificConfig.h"
#include "ezFormats/detail/ESDescriptor.h"
#include "ezFormats/detail/ISOSampleEntry.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>

namespace {

struct AudioFormat {
    BoxType mFormat;
    const char* mName;
    std::uint32_t mSamplingRate; ///< the only one of the codec, and it has one channel; 0: the entry tells
    std::uint32_t mBitsPerSample;
};
constexpr std::array<AudioFormat, 18> kFormats = {{{".mp3", "MP3", 0, 0},
                                                   {"ms\0\x55", "MP3", 0, 0},
                                                   {"ac-3", "AC3", 0, 0},
                                                   {"ec-3", "EAC3", 0, 0},
                                                   {"alac", "ALAC", 0, 0},
                                                   {"samr", "AMR", 8000, 0},
                                                   {"sawb", "AMR-WB", 16000, 0},
                                                   {"sawp", "AMR-WB+", 0, 0},
                                                   {"sowt", "LPCM", 0, 0},
                                                   {"twos", "LPCM", 0, 0},
                                                   {"lpcm", "LPCM", 0, 0},
                                                   {"ipcm", "LPCM", 0, 0},
                                                   {"raw ", "LPCM", 0, 8},
                                                   {"NONE", "LPCM", 0, 0},
                                                   {"in24", "LPCM", 0, 24},
                                                   {"in32", "LPCM", 0, 32},
                                                   {"Opus", "Opus", 48000, 0},
                                                   {"fLaC", "FLAC", 0, 0}}};

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

/// The fixed part of an entry, and what its boxes tell.
struct AudioEntry : ISOEntryFacts {
    bool mfFloat = false;            ///< the samples are no integers
    bool mfConfigured = false;       ///< a box has told rate and channels
    std::optional<ByteReader> mWave; ///< QuickTime's box around the decoder's own
};

/// A sampling rate that is held as a 64-bit floating point number; 0 for none.
std::uint32_t ReadFloatRate(ByteReader& aReader) {
    static_assert(std::numeric_limits<double>::is_iec559 && sizeof(double) == sizeof(std::uint64_t));
    constexpr double kMaximum = 10e6;
    const std::uint64_t bits = aReader.ReadBig(8);
    double rate = 0;
    std::memcpy(&rate, &bits, sizeof(rate));
    return rate >= 1 && rate <= kMaximum ? static_cast<std::uint32_t>(rate) : 0;
}

/// A number of 32 bits where the other versions have 16; 0 for one that they could not hold.
std::uint32_t ReadSmall(ByteReader& aReader) {
    const std::uint32_t number = aReader.ReadBig32();
    return number <= UINT16_MAX ? number : 0;
}

/// The second version of QuickTime's sound description, behind the part that all have.
void ReadSoundVersion2(ByteReader& aReader, AudioEntry& anEntry) {
    constexpr std::uint32_t kFloat = 1;
    aReader.Skip(4); // its size
    anEntry.mCodec.mSamplingRate = ReadFloatRate(aReader);
    anEntry.mCodec.mChannels = ReadSmall(aReader);
    aReader.Skip(4);
    anEntry.mCodec.mBitsPerSample = ReadSmall(aReader);
    anEntry.mfFloat = (aReader.ReadBig32() & kFloat) != 0;
    aReader.Skip(8);
}

/// The fixed part. Its version has been told apart from ISO's second form, which adds nothing, by that of the
/// table: QuickTime's is 0.
void ReadSound(ByteReader& aReader, std::uint32_t aTableVersion, AudioEntry& anEntry) {
    const auto stated = aReader.ReadBig(2);
    const auto version = aTableVersion == 0 ? stated : 0;
    aReader.Skip(6);
    anEntry.mCodec.mChannels = static_cast<std::uint32_t>(aReader.ReadBig(2));
    anEntry.mCodec.mBitsPerSample = static_cast<std::uint32_t>(aReader.ReadBig(2));
    aReader.Skip(4);
    anEntry.mCodec.mSamplingRate = aReader.ReadBig32() >> 16;
    if (version == 1) {
        aReader.Skip(16); // how samples are packed
    } else if (version == 2) {
        ReadSoundVersion2(aReader, anEntry);
    }
}

// --- Boxes of an entry

/// Of AC-3: the fields of a frame's header, the rate as the number of a pair of codes (ETSI TS 102 366, F.4).
void ReadAC3(ByteReader aBox, AudioEntry& anEntry) {
    const auto fields = static_cast<std::uint32_t>(aBox.ReadBig(3));
    const std::uint32_t rate = fields >> 22;
    const std::uint32_t version = fields >> 17 & 0x1FU;
    const std::uint32_t service = fields >> 14 & 7U;
    const std::uint32_t mode = fields >> 11 & 7U;
    const std::uint32_t low = fields >> 10 & 1U;
    const std::uint32_t size = (fields >> 5 & 0x1FU) * 2;
    // In the header the levels of mixing stand before the low frequency channel.
    const unsigned levels =
        (mode % 2 != 0 && mode != 1 ? 2U : 0U) + (mode >= 4 ? 2U : 0U) + (mode == 2 ? 2U : 0U);
    const std::uint32_t header =
        rate << 22 | size << 16 | version << 11 | service << 8 | mode << 5 | low << (4 - levels);
    ezAC3Header facts = {};
    if (aBox.HasFailed() || !ezAC3Header_ReadFields(header, facts)) {
        return;
    }
    anEntry.mfConfigured = true;
    anEntry.mCodec.mSamplingRate = facts.mSamplingRate;
    anEntry.mCodec.mChannels = facts.mChannels;
    TakeRates(0, facts.mBitRate, anEntry.mCodec);
}

/// Of E-AC-3: the rate of all substreams together, and the first programme (F.6). What dependent substreams
/// add to its channels is not counted.
void ReadEAC3(ByteReader aBox, AudioEntry& anEntry) {
    const auto head = static_cast<std::uint32_t>(aBox.ReadBig(2));
    const auto programme = static_cast<std::uint32_t>(aBox.ReadBig(2));
    const std::uint32_t rate = programme >> 14;
    if (aBox.HasFailed() || rate >= kAC3SamplingRates.size()) {
        return;
    }
    anEntry.mfConfigured = true;
    anEntry.mCodec.mSamplingRate = kAC3SamplingRates[rate];
    anEntry.mCodec.mChannels = kAC3Channels[programme >> 1 & 7U] + (programme & 1U);
    TakeRates(0, (head >> 3) * 1000, anEntry.mCodec);
}

/// The average rate that stands there too is, of many writers, that of the samples before they were coded.
void ReadALAC(ByteReader aBox, AudioEntry& anEntry) {
    aBox.Skip(9); // version, flags, length of frames, version again
    const std::uint32_t bits = aBox.ReadByte();
    aBox.Skip(3); // how residues are coded
    const std::uint32_t channels = aBox.ReadByte();
    aBox.Skip(10); // longest run, largest frame, average rate
    const std::uint32_t rate = aBox.ReadBig32();
    if (aBox.HasFailed() || channels == 0 || rate == 0) {
        return;
    }
    anEntry.mfConfigured = true;
    anEntry.mCodec.mBitsPerSample = bits;
    anEntry.mCodec.mChannels = channels;
    anEntry.mCodec.mSamplingRate = rate;
}

/// Of "ipcm": the size of a sample.
void ReadPCM(ByteReader aBox, AudioEntry& anEntry) {
    aBox.Skip(5); // version, flags, order of bytes
    anEntry.mCodec.mBitsPerSample = aBox.ReadByte();
}

/// A rate that the fixed part has no room for.
void ReadLargeRate(ByteReader aBox, AudioEntry& anEntry) {
    aBox.Skip(4);
    const std::uint32_t rate = aBox.ReadBig32();
    if (!aBox.HasFailed() && rate != 0 && !anEntry.mfConfigured) {
        anEntry.mCodec.mSamplingRate = rate;
    }
}

void KeepWave(ByteReader aBox, AudioEntry& anEntry) {
    anEntry.mWave = aBox;
}

constexpr std::array<ISOBoxReader<AudioEntry>, 6> kBoxReaders = {{{"dac3", ReadAC3},
                                                                  {"dec3", ReadEAC3},
                                                                  {"alac", ReadALAC},
                                                                  {"pcmC", ReadPCM},
                                                                  {"srat", ReadLargeRate},
                                                                  {"wave", KeepWave}}};

// --- What it all is

/// Of "mp4a": the stream's descriptor tells what the samples are. True when it does.
bool NameByStream(AudioEntry& anEntry) {
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
bool NameByFormat(BoxType aFormat, AudioEntry& anEntry) {
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

/// Only codecs without loss have bits of a sample; others leave a template's 16 there.
bool HasBitsPerSample(const ezCString& aName) {
    return aName == "LPCM" || aName == "ALAC";
}

} // namespace

ISOCodec ReadAudioDescription(ByteReader aTable, std::uint32_t& aBoxBudget) {
    ISOSampleEntry sample(aTable, aBoxBudget);
    AudioEntry entry;
    ReadSound(sample.mContent, sample.mTableVersion, entry);
    if (sample.mContent.HasFailed()) {
        entry.mCodec = ISOCodec();
        entry.mCodec.mName = ISOFormatName(sample.mFormat);
        return entry.mCodec;
    }
    ReadBoxes(sample.mContent, kBoxReaders, aBoxBudget, entry);
    if (entry.mWave.has_value()) {
        const ByteReader wave = *entry.mWave;
        ReadBoxes(wave, kBoxReaders, aBoxBudget, entry); // one in it is not entered
    }
    const bool fEncrypted = sample.mFormat == "enca" || sample.mFormat.GetText().StartsWith("drm");
    const BoxType format = fEncrypted ? entry.mOriginal.value_or(sample.mFormat) : sample.mFormat;
    const bool fNamed =
        entry.mStream.has_value() && format == "mp4a" ? NameByStream(entry) : NameByFormat(format, entry);
    if (!fNamed) {
        entry.mCodec.mName = ISOFormatName(format);
    }
    if (!HasBitsPerSample(entry.mCodec.mName)) {
        entry.mCodec.mBitsPerSample = 0;
    }
    if (fEncrypted) {
        MarkEncrypted(entry.mCodec);
    }
    return entry.mCodec;
}
