#include "ezFormats/ogg/OggStream.h"

#include "ezFormats/ogg/OGMStream.h"
#include "ezFormats/ogg/OggLimits.h"

#include "ezBytes/LanguageTags.h"
#include "ezFormats/codecs/FLACStreamInfo.h"
#include "ezFormats/codecs/OpusHeader.h"
#include "ezFormats/codecs/VorbisHeader.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezBytes/ByteReader.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::uint64_t kMicro = 1000000;

/// A number with a sign, of which what is not positive says nothing.
std::uint32_t ReadPositive(ByteReader& aReader) {
    const std::uint32_t number = aReader.ReadLittle32();
    return number <= INT32_MAX ? number : 0;
}

void ReadVorbis(ByteReader aPacket, OggStream& aStream) {
    const VorbisHeader header = ReadVorbisHeader(aPacket);
    aStream.mSound.mChannels = header.mChannels;
    aStream.mSound.mSamplingRate = header.mSamplingRate;
    aStream.mSound.mMaxBitRate = header.mMaxBitRate;
    aStream.mSound.mBitRate = header.mBitRate;
    aStream.mSound.mEstimatedBitRate = header.mBitRate != 0 ? 0 : header.mNominalBitRate;
    aStream.mPacketSamples = header.mPacketSamples;
    aStream.mTicks = header.mSamplingRate;
}

void ReadOpus(ByteReader aPacket, OggStream& aStream) {
    const OpusHeader header = ReadOpusHeader(aPacket);
    aStream.mSound.mChannels = header.mChannels;
    aStream.mSound.mSamplingRate = kOpus_SamplingRate;
    aStream.mPreSkip = header.mPreSkip;
    aStream.mTicks = kOpus_SamplingRate;
}

/// FLAC in Ogg: a version, the number of packets of metadata, and what a file of FLAC begins with.
void ReadFLAC(ByteReader aPacket, OggStream& aStream) {
    aPacket.Skip(9);
    aPacket.Require(aPacket.ReadText(4) == "fLaC");
    const FLACStreamInfo info = ReadFLACStreamInfo(aPacket);
    aStream.mSound.mChannels = info.mChannels;
    aStream.mSound.mSamplingRate = info.mSamplingRate;
    aStream.mSound.mBitsPerSample = info.mBitsPerSample;
    aStream.mSamples = info.mSamples;
    aStream.mPacketSamples = info.mMaxBlockSize;
    aStream.mTicks = info.mSamplingRate;
}

void ReadSpeex(ByteReader aPacket, OggStream& aStream) {
    aPacket.Skip(36);
    aStream.mSound.mSamplingRate = ReadPositive(aPacket);
    aPacket.Skip(8); // mode, version of its bit stream
    aStream.mSound.mChannels = ReadPositive(aPacket);
    const std::uint32_t rate = ReadPositive(aPacket);
    const std::uint32_t frame = std::min(ReadPositive(aPacket), kOgg_MaxSpeexSamples);
    const bool fVariable = aPacket.ReadLittle32() != 0;
    const std::uint32_t frames = std::min(ReadPositive(aPacket), kOgg_MaxSpeexFrames);
    if (aPacket.HasFailed()) {
        aStream.mSound.mSamplingRate = 0;
    }
    aStream.mSound.mBitRate = fVariable ? 0 : rate;
    aStream.mPacketSamples = frame * std::max(frames, 1U);
    aStream.mTicks = aStream.mSound.mSamplingRate;
}

void ReadTheora(ByteReader aPacket, OggStream& aStream) {
    std::array<unsigned char, kTheora_HeaderSize> header = {};
    if (!aPacket.Read(header.data(), header.size())) {
        return;
    }
    if (const auto read = TheoraHeader_Read(header.data(), header.size())) {
        aStream.mVideo = read->mVideo;
        aStream.mTheora = read->mClock;
        aStream.mTicks = read->mClock.mRate;
        aStream.mSeconds = read->mClock.mRateDivisor;
        aStream.mPacketSamples = 1;
    }
}

/// The mapping of VP8 to Ogg: a size, the shape of a pixel, a rate.
void ReadVP8(ByteReader aPacket, OggStream& aStream) {
    aPacket.Skip(6);
    aPacket.Require(aPacket.ReadByte() == 1); // major version
    aPacket.Skip(1);
    const auto width = static_cast<std::uint32_t>(aPacket.ReadBig(2));
    const auto height = static_cast<std::uint32_t>(aPacket.ReadBig(2));
    const std::uint64_t pixelWidth = aPacket.ReadBig(3);
    const std::uint64_t pixelHeight = aPacket.ReadBig(3);
    const std::uint32_t rate = aPacket.ReadBig32();
    const std::uint32_t divisor = aPacket.ReadBig32();
    if (aPacket.HasFailed()) {
        return;
    }
    VideoFacts& facts = aStream.mVideo;
    facts.mWidth = height != 0 ? width : 0;
    facts.mHeight = width != 0 ? height : 0;
    facts.mPixelAspect = VideoRatio::Of(pixelWidth, pixelHeight);
    facts.mFrameRate = VideoClock_FrameRate(divisor, rate);
    facts.mScan = kScan_Progressive;
    facts.mBitDepth = 8;
    facts.mColours = "4:2:0";
    aStream.mTicks = rate;
    aStream.mSeconds = divisor;
    aStream.mPacketSamples = 1;
}

/// Kate: a language of 15 letters.
void ReadKate(ByteReader aPacket, OggStream& aStream) {
    constexpr std::size_t kLanguageSize = 16;
    aPacket.Skip(32);
    AddLanguages(aStream.mLanguages, aPacket.ReadZeroTerminated(kLanguageSize).View());
}

/// Microseconds of a number of seconds that is two numbers with signs, one by the other; 0 where it is not
/// positive.
std::uint64_t ReadSeconds(ByteReader& aReader) {
    const std::uint64_t top = aReader.ReadLittle(8);
    const std::uint64_t bottom = aReader.ReadLittle(8);
    return top <= INT64_MAX ? MediaNumber_Scale(top, kMicro, bottom) : 0;
}

/// Skeleton: when the first of the file is shown, and when positions of 0 are. What stands before that was
/// kept for decoders to begin with.
void ReadSkeleton(ByteReader aPacket, OggStream& aStream) {
    aPacket.Skip(12);
    const std::uint64_t shown = ReadSeconds(aPacket);
    const std::uint64_t base = ReadSeconds(aPacket);
    aStream.mPresented = aPacket.HasFailed() ? 0 : shown - std::min(shown, base);
}

void ReadNothing(ByteReader /*aPacket*/, OggStream& /*aStream*/) {}

/// What is told by each kind of first packet, and the codec where that names it.
struct Reading {
    OggKind mKind;
    const char* mCodec;
    void (*mRead)(ByteReader aPacket, OggStream& aStream);
};
constexpr Reading kReadings[] = {
    {OggKind::Vorbis, "Vorbis", ReadVorbis}, {OggKind::Opus, "Opus", ReadOpus},
    {OggKind::FLAC, "FLAC", ReadFLAC},       {OggKind::Speex, "Speex", ReadSpeex},
    {OggKind::OGMSound, "", OGMSound_Read},  {OggKind::Theora, "Theora", ReadTheora},
    {OggKind::OGMVideo, "", OGMVideo_Read},  {OggKind::VP8, "VP8", ReadVP8},
    {OggKind::Dirac, "Dirac", ReadNothing},  {OggKind::Daala, "Daala", ReadNothing},
    {OggKind::Kate, "", ReadKate},           {OggKind::Skeleton, "", ReadSkeleton},
};

} // namespace

bool OggStream::IsOGM() const {
    return mMark != nullptr && (mMark->mKind == OggKind::OGMSound || mMark->mKind == OggKind::OGMVideo);
}

std::uint64_t OggStream::CountAt(std::uint64_t aGranule) const {
    constexpr unsigned kVP8Shift = 32; // below it: what the decoder may begin with
    return mMark->mKind == OggKind::Theora ? mTheora.CountPictures(aGranule)
           : mMark->mKind == OggKind::VP8  ? aGranule >> kVP8Shift
           : IsOGM()                       ? aGranule + mPacketSamples
                                           : aGranule;
}

std::uint64_t OggStream::TimeOf(std::uint64_t aCount) const {
    const std::uint64_t count = aCount - std::min<std::uint64_t>(aCount, mPreSkip);
    return MediaNumber_Scale(count, mSeconds * kMicro, mTicks);
}

OggStream ReadOggStream(const ByteReader& aPacket, std::uint32_t aSerial) {
    OggStream stream;
    stream.mSerial = aSerial;
    const OggMark* const mark = FindOggMark(aPacket);
    if (mark == nullptr) {
        return stream;
    }
    for (const Reading& reading : kReadings) {
        if (reading.mKind == mark->mKind) {
            (mark->mRole == OggRole::Video ? stream.mVideo.mCodec : stream.mSound.mCodec) = reading.mCodec;
            reading.mRead(aPacket, stream);
        }
    }
    stream.mTicks = stream.mSeconds != 0 ? stream.mTicks : 0;
    const bool fHeard = stream.mSound.mSamplingRate != 0 && stream.mSound.mChannels != 0;
    stream.mMark = mark->mRole != OggRole::Sound || fHeard ? mark : nullptr;
    return stream;
}

std::uint32_t OpusSamplesOf(ByteReader aPacket) {
    constexpr std::uint32_t kLong[] = {480, 960, 1920, 2880}; // of SILK
    constexpr std::uint32_t kShort[] = {120, 240, 480, 960};  // of CELT; the others have two of these
    constexpr unsigned kFirstHybrid = 12;
    constexpr unsigned kFirstCELT = 16;
    const unsigned head = aPacket.ReadByte();
    const unsigned configuration = head >> 3U;
    const unsigned kind = head & 3U;
    const unsigned frames = kind == 0 ? 1 : kind < 3 ? 2 : aPacket.ReadByte() & 0x3FU;
    const std::uint32_t samples = configuration < kFirstHybrid ? kLong[configuration & 3U]
                                  : configuration < kFirstCELT ? kShort[2 + (configuration & 1U)]
                                                               : kShort[configuration & 3U];
    return aPacket.HasFailed() ? 0 : samples * frames;
}
