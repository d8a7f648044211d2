#include "ezFormats/iso/ISOAudioBoxes.h"

#include "ezFormats/codecs/AC3Header.h"
#include "ezFormats/codecs/AC4Config.h"
#include "ezFormats/codecs/DTSHeader.h"
#include "ezFormats/codecs/EAC3Header.h"
#include "ezFormats/codecs/FLACStreamInfo.h"
#include "ezFormats/codecs/IAMFConfig.h"
#include "ezFormats/codecs/MLPHeader.h"
#include "ezFormats/codecs/MPEGHConfig.h"

#include <array>

namespace {

/// Of AC-3: the fields of a frame's header, the rate as the number of a pair of codes (ETSI TS 102 366, F.4).
void ReadAC3(ByteReader aBox, ISOAudioEntry& anEntry) {
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
    anEntry.mFacts.mSamplingRate = facts.mSamplingRate;
    anEntry.mFacts.mChannels = facts.mChannels;
    TakeRates(0, facts.mBitRate, anEntry);
}

/// Where dependent substreams of the first programme of E-AC-3 have channels. The box may end before it says
/// that there are such substreams.
std::uint32_t ReadDependentPlaces(ByteReader& aBox) {
    const auto fields = static_cast<std::uint32_t>(aBox.ReadBig(2));
    const std::uint32_t count = fields >> 9 & 0xFU; // num_dep_sub, then chan_loc
    return aBox.HasFailed() || count == 0 ? 0 : ezEAC3Header_PlacesOfLocation(fields & 0x1FFU);
}

/// Of E-AC-3: the rate of all substreams together, and the channels of the first programme (F.6).
void ReadEAC3(ByteReader aBox, ISOAudioEntry& anEntry) {
    const auto head = static_cast<std::uint32_t>(aBox.ReadBig(2));
    const auto programme = static_cast<std::uint32_t>(aBox.ReadBig(2));
    const std::uint32_t rate = programme >> 14;
    if (aBox.HasFailed() || rate >= kAC3SamplingRates.size()) {
        return;
    }
    anEntry.mfConfigured = true;
    anEntry.mFacts.mSamplingRate = kAC3SamplingRates[rate];
    anEntry.mFacts.mChannels = ezEAC3Header_CountChannels(
        ezEAC3Header_PlacesOfMode(programme >> 1 & 7U, (programme & 1U) != 0) | ReadDependentPlaces(aBox));
    TakeRates(0, (head >> 3) * 1000, anEntry);
}

/// The average rate that stands there too is, of many writers, that of the samples before they were coded.
void ReadALAC(ByteReader aBox, ISOAudioEntry& anEntry) {
    aBox.Skip(9); // version, flags, length of frames, version again
    const std::uint32_t bits = aBox.ReadByte();
    aBox.Skip(3); // parameters of the Rice coding
    const std::uint32_t channels = aBox.ReadByte();
    aBox.Skip(10); // longest run, largest frame, average rate
    const std::uint32_t rate = aBox.ReadBig32();
    if (aBox.HasFailed() || channels == 0 || rate == 0) {
        return;
    }
    anEntry.mfConfigured = true;
    anEntry.mFacts.mBitsPerSample = bits;
    anEntry.mFacts.mChannels = channels;
    anEntry.mFacts.mSamplingRate = rate;
}

/// Of "ipcm" and "fpcm" (ISO/IEC 23003-5, 5.2): the size of a sample.
void ReadPCM(ByteReader aBox, ISOAudioEntry& anEntry) {
    aBox.Skip(5); // version, flags, order of bytes
    anEntry.mFacts.mBitsPerSample = aBox.ReadByte();
}

void ReadFLAC(ByteReader aBox, ISOAudioEntry& anEntry) {
    aBox.Skip(4); // version and flags
    const FLACStreamInfo info = ReadFLACStreamInfo(aBox);
    if (info.mSamplingRate != 0) {
        anEntry.mfConfigured = true;
        anEntry.mFacts.mSamplingRate = info.mSamplingRate;
        anEntry.mFacts.mChannels = info.mChannels;
        anEntry.mFacts.mBitsPerSample = info.mBitsPerSample;
    }
}

/// Of TrueHD (MLP): the format as in the stream, and its highest rate.
void ReadMLP(ByteReader aBox, ISOAudioEntry& anEntry) {
    const std::uint32_t format = aBox.ReadBig32();
    const auto peak = static_cast<std::uint32_t>(aBox.ReadBig(2)) >> 1;
    ezMLPHeader header;
    if (aBox.HasFailed() || !ezMLPHeader_ReadTrueHD(format, header)) {
        return;
    }
    anEntry.mfConfigured = true;
    anEntry.mFacts.mSamplingRate = header.mSamplingRate;
    anEntry.mFacts.mChannels = header.mChannels != 0 ? header.mChannels : anEntry.mFacts.mChannels;
    TakeRates(ezMLPHeader_MaxBitRate(peak, header.mSamplingRate), 0, anEntry);
}

/// Of Opus (Encapsulation of Opus in ISO Base Media File Format, 4.3.2).
void ReadOpus(ByteReader aBox, ISOAudioEntry& anEntry) {
    aBox.Skip(1); // Version
    const std::uint32_t channels = aBox.ReadByte();
    if (!aBox.HasFailed() && channels != 0) {
        anEntry.mFacts.mChannels = channels;
    }
}

/// Of DTS (ETSI TS 102 114, annex E). The number of bits is that of the sound before it was coded, which
/// counts where it was coded without loss.
void ReadDTS(ByteReader aBox, ISOAudioEntry& anEntry) {
    const std::uint32_t rate = aBox.ReadBig32();
    const std::uint32_t maximum = aBox.ReadBig32();
    const std::uint32_t average = aBox.ReadBig32();
    const std::uint32_t bits = aBox.ReadByte();
    const auto streams = static_cast<std::uint32_t>(aBox.ReadBig(4)); // FrameDuration to RepresentationType
    const auto layout = static_cast<std::uint32_t>(aBox.ReadBig(2));  // ChannelLayout
    if (aBox.HasFailed() || rate == 0) {
        return;
    }
    const std::uint32_t channels = ezDTSChannelsOfMask(layout);
    anEntry.mfConfigured = true;
    anEntry.mFacts.mSamplingRate = rate;
    anEntry.mFacts.mChannels = channels != 0 ? channels : anEntry.mFacts.mChannels;
    anEntry.mFacts.mBitsPerSample = bits;
    anEntry.mBoxName = ezDTSNameOfConstruction(streams >> 25 & 0x1FU);
    TakeRates(maximum, average, anEntry);
}

void ReadAC4(ByteReader aBox, ISOAudioEntry& anEntry) {
    const AC4Config config = ReadAC4Config(aBox);
    if (config.mSamplingRate != 0) {
        anEntry.mfConfigured = true;
        anEntry.mFacts.mSamplingRate = config.mSamplingRate;
    }
    if (config.mChannels != 0) {
        anEntry.mFacts.mChannels = config.mChannels;
    }
    TakeRates(0, config.mBitRate, anEntry);
}

void ReadMPEGH(ByteReader aBox, ISOAudioEntry& anEntry) {
    const MPEGHConfig config = ReadMPEGHConfig(aBox);
    if (config.mSamplingRate != 0) {
        anEntry.mfConfigured = true;
        anEntry.mFacts.mSamplingRate = config.mSamplingRate;
    }
    if (config.mChannels != 0) {
        anEntry.mFacts.mChannels = config.mChannels;
    }
}

void ReadIAMF(ByteReader aBox, ISOAudioEntry& anEntry) {
    const IAMFConfig config = ReadIAMFConfig(aBox);
    if (config.mSamplingRate != 0) {
        anEntry.mfConfigured = true;
        anEntry.mFacts.mSamplingRate = config.mSamplingRate;
    }
    if (config.mChannels != 0) {
        anEntry.mFacts.mChannels = config.mChannels;
    }
}

/// Of AMR (3GPP TS 26.244, 6.7): how many frames make one sample.
void ReadAMR(ByteReader aBox, ISOAudioEntry& anEntry) {
    aBox.Skip(8); // maker, version, set of modes, how often they change
    const std::uint32_t frames = aBox.ReadByte();
    if (frames != 0) {
        anEntry.mFacts.mFramesPerSample = frames;
    }
}

/// Of "srat" (ISO/IEC 14496-12, 12.2.3): a rate that the fixed part has no room for.
void ReadLargeRate(ByteReader aBox, ISOAudioEntry& anEntry) {
    aBox.Skip(4); // version and flags
    const std::uint32_t rate = aBox.ReadBig32();
    if (!aBox.HasFailed() && rate != 0 && !anEntry.mfConfigured) {
        anEntry.mFacts.mSamplingRate = rate;
    }
}

void KeepWave(ByteReader aBox, ISOAudioEntry& anEntry) {
    anEntry.mWave = aBox;
}

constexpr std::array<ISOBoxReader<ISOAudioEntry>, 14> kBoxReaders = {{{"dac3", ReadAC3},
                                                                      {"dec3", ReadEAC3},
                                                                      {"dac4", ReadAC4},
                                                                      {"ddts", ReadDTS},
                                                                      {"dOps", ReadOpus},
                                                                      {"mhaC", ReadMPEGH},
                                                                      {"alac", ReadALAC},
                                                                      {"dfLa", ReadFLAC},
                                                                      {"dmlp", ReadMLP},
                                                                      {"iacb", ReadIAMF},
                                                                      {"damr", ReadAMR},
                                                                      {"pcmC", ReadPCM},
                                                                      {"srat", ReadLargeRate},
                                                                      {"wave", KeepWave}}};

} // namespace

void ReadAudioBoxes(const ByteReader& aBoxes, std::uint32_t& aBoxBudget, ISOAudioEntry& anEntry) {
    ReadBoxes(aBoxes, kBoxReaders, aBoxBudget, anEntry);
}
