#include "ezFormats/mpegsystem/StreamSound.h"

#include "ezFormats/codecs/AC3Frames.h"
#include "ezFormats/codecs/ADTSFrames.h"
#include "ezFormats/codecs/DTSFrames.h"
#include "ezFormats/codecs/DTSHeader.h"
#include "ezFormats/codecs/MLPFrames.h"
#include "ezFormats/codecs/MLPHeader.h"
#include "ezFormats/codecs/MPEGAudioHeader.h"
#include "ezFormats/mpegsystem/BlockFrames.h"
#include "ezFormats/mpegsystem/LOASFrames.h"
#include "ezFormats/mpegsystem/StreamClock.h"
#include "ezFormats/mpegsystem/StreamPCM.h"

#include "ezBytes/BitReader.h"

#include <algorithm>

namespace {

/// Frames of MPEG audio (ISO/IEC 11172-3, 2.4.1). One that states no rate does not say where the next stands.
class MPEGAudioUnits : public FrameReader {
public:
    MPEGAudioUnits()
        : FrameReader({kMPEGAudioHeaderSize, kMPEGAudioMinFrameSize, kMPEGAudioMaxFrameSize, 2, 2, false}) {}

    bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const override {
        ezMPEGAudioHeader header = {};
        const std::uint32_t word = WordAt(aBytes);
        if (!ezMPEGAudioHeader_Read(word, header) || header.mFrameSize == 0) {
            return false;
        }
        aFrame->mSize = header.mFrameSize;
        aFrame->mSamples = header.mSampleCount;
        aFrame->mSamplingRate = header.mSamplingRate;
        aFrame->mChannels = header.mChannels;
        aFrame->mBitRate = header.mBitRate;
        aFrame->mKind = word;
        aFrame->mDetails = header.mLayer;
        return true;
    }
    bool ReadNext(const unsigned char* aBytes, const CodedFrame& aBefore, CodedFrame* aFrame) const override {
        const auto before = static_cast<std::uint32_t>(aBefore.mKind);
        return ezMPEGAudioHeader_IsSameStream(before, WordAt(aBytes)) && Read(aBytes, aFrame);
    }

private:
    static std::uint32_t WordAt(const unsigned char* aBytes) {
        return std::uint32_t{aBytes[0]} << 24 | std::uint32_t{aBytes[1]} << 16 |
               std::uint32_t{aBytes[2]} << 8 | aBytes[3];
    }
};

/// Takes what the frames of any codec tell.
StreamSound SoundOf(const BlockFrames& aFrames, const char* aCodec) {
    const CodedFrame& first = aFrames.mFirst;
    StreamSound sound;
    sound.mFacts.mCodec = aCodec;
    sound.mFacts.mSamplingRate = first.mSamplingRate;
    sound.mFacts.mChannels = first.mChannels;
    if (first.mBitRate != 0 && aFrames.mfConstant) {
        sound.mFacts.mBitRate = first.mBitRate;
    } else {
        (aFrames.mfConstant ? sound.mFacts.mBitRate : sound.mFacts.mEstimatedBitRate) = aFrames.GetBitRate();
    }
    const std::uint64_t mean = aFrames.mFrames != 0 ? aFrames.mBytes / aFrames.mFrames : first.mSize;
    sound.mFrameBytes = static_cast<std::uint32_t>(mean);
    sound.mFrameTicks =
        static_cast<std::uint32_t>(std::uint64_t{first.mSamples} * kStreamClock_Rate / first.mSamplingRate);
    return sound;
}

StreamSound ReadMPEGAudio(const unsigned char* aBytes, std::size_t aSize) {
    BlockFrames frames;
    if (!ReadBlockFrames(MPEGAudioUnits(), aBytes, aSize, &frames)) {
        return {};
    }
    return SoundOf(frames, ezMPEGAudioHeader_CodecOf(static_cast<std::uint32_t>(frames.mFirst.mDetails)));
}

/// The rate of what varies, as AAC does and all that is lossless, whatever some frames of it take.
StreamSound WithVaryingRate(StreamSound aSound) {
    aSound.mFacts.mEstimatedBitRate = aSound.mFacts.mBitRate | aSound.mFacts.mEstimatedBitRate;
    aSound.mFacts.mBitRate = 0;
    return aSound;
}

StreamSound ReadADTS(const unsigned char* aBytes, std::size_t aSize) {
    BlockFrames frames;
    return ReadBlockFrames(ADTSFrames(), aBytes, aSize, &frames)
               ? WithVaryingRate(SoundOf(frames, ADTSFrames::CodecOf(frames.mFirst)))
               : StreamSound();
}

StreamSound ReadLATM(const unsigned char* aBytes, std::size_t aSize) {
    BlockFrames frames;
    AudioSpecificConfig config;
    if (!ReadLOASConfig(aBytes, aSize, &config) || config.GetCodecName() == nullptr) {
        return {};
    }
    StreamSound sound;
    if (ReadBlockFrames(LOASFrames(config), aBytes, aSize, &frames)) {
        sound = WithVaryingRate(SoundOf(frames, ""));
    }
    sound.mFacts.mCodec = config.GetCodecName();
    sound.mFacts.mSamplingRate = config.mSamplingRate;
    sound.mFacts.mChannels = config.mChannels;
    return sound;
}

StreamSound ReadAC3(const unsigned char* aBytes, std::size_t aSize) {
    BlockFrames frames;
    return ReadBlockFrames(AC3Frames(), aBytes, aSize, &frames)
               ? SoundOf(frames, AC3Frames::IsEAC3(frames.mFirst) ? "EAC3" : "AC3")
               : StreamSound();
}

StreamSound ReadDTS(const unsigned char* aBytes, std::size_t aSize) {
    BlockFrames frames;
    if (!ReadBlockFrames(DTSFrames(), aBytes, aSize, &frames)) {
        return {};
    }
    StreamSound sound = SoundOf(frames, "DTS");
    const CodedFrame& first = frames.mFirst;
    const std::uint64_t place = first.mPosition + (DTSFrames::HasCore(first) ? first.mSize : 0);
    ezDTSExtension extension;
    if (place < aSize &&
        ezDTSExtension_ReadStored(aBytes + place, static_cast<std::size_t>(aSize - place), extension)) {
        ezDTSExtension_Store(extension, sound.mFacts);
    }
    return extension.mKind == ezDTSExtension::Kind::MasterAudio ? WithVaryingRate(sound) : sound;
}

/// The units up to the next one with all headers may not be there: the codec is named all the same.
StreamSound ReadTrueHD(const unsigned char* aBytes, std::size_t aSize) {
    BlockFrames frames;
    if (!ReadBlockFrames(MLPFrames(), aBytes, aSize, &frames)) {
        return {};
    }
    const bool fTrueHD = (frames.mFirst.mKind & 0x80U) != 0;
    return WithVaryingRate(SoundOf(frames, fTrueHD ? "TrueHD" : "MLP"));
}

/// A frame of AC-4 (ETSI TS 103 190-1, annex G and 4.2.3.1) tells its rate first.
StreamSound ReadAC4(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kVersionMore = 3;
    constexpr std::uint32_t kSizeMore = 0xFFFF;
    StreamSound sound;
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require((bits.Read(16) | 1U) == 0xAC41U); // sync word, without a check sum or with
    if (bits.Read(16) == kSizeMore) {
        bits.Skip(24);
    }
    bits.Require(bits.Read(2) != kVersionMore); // bitstream_version: later ones are not known
    bits.Skip(10);                              // sequence_counter
    if (bits.ReadFlag() && bits.Read(3) != 0) { // b_wait_frames, wait_frames
        bits.Skip(2);                           // br_code
    }
    const bool f48 = bits.ReadFlag(); // fs_index
    if (!bits.HasFailed()) {
        sound.mFacts.mCodec = StreamCodec_GetName(StreamCodec::AC4);
        sound.mFacts.mSamplingRate = f48 ? 48000 : 44100;
    }
    return sound;
}

struct SoundReader {
    StreamCodec mCodec;
    StreamSound (*mRead)(const unsigned char* aBytes, std::size_t aSize);
};

constexpr SoundReader kReaders[] = {
    {StreamCodec::MPEGAudio, ReadMPEGAudio},
    {StreamCodec::ADTS, ReadADTS},
    {StreamCodec::LATM, ReadLATM},
    {StreamCodec::AC3, ReadAC3},
    {StreamCodec::DTS, ReadDTS},
    {StreamCodec::TrueHD, ReadTrueHD},
    {StreamCodec::AC4, ReadAC4},
    {StreamCodec::LPCMOfDisc, ReadLPCMOfDisc},
    {StreamCodec::LPCMOfDVD, ReadLPCMOfDVD},
    {StreamCodec::S302M, ReadS302M},
};

StreamSound ReadAs(StreamCodec aCodec, const unsigned char* aBytes, std::size_t aSize) {
    for (const SoundReader& reader : kReaders) {
        if (reader.mCodec == aCodec) {
            return reader.mRead(aBytes, aSize);
        }
    }
    return {};
}

} // namespace

std::uint64_t StreamSound::GetTicksOf(std::uint64_t aBytes) const {
    // Frames of a varying size may be smaller than those that the mean is of: rather one too many.
    const std::uint64_t part =
        mFacts.mBitRate != 0 ? mFrameBytes / 2 : mFrameBytes - std::min(mFrameBytes, 1U);
    const std::uint64_t frames = mFrameBytes != 0 ? (aBytes + part) / mFrameBytes : 0;
    return std::max<std::uint64_t>(frames, 1) * mFrameTicks;
}

StreamSound ReadStreamSound(StreamCodec aCodec, const unsigned char* aBytes, std::size_t aSize) {
    StreamSound sound = ReadAs(aCodec, aBytes, aSize);
    const StreamCodec seen = StreamCodec_OfPayload(aBytes, aSize);
    if (sound.mFacts.mCodec.IsEmpty() && seen != aCodec) {
        sound = ReadAs(seen, aBytes, aSize);
    }
    if (sound.mFacts.mCodec.IsEmpty()) {
        sound.mFacts.mCodec = StreamCodec_GetName(aCodec);
    }
    return sound;
}
