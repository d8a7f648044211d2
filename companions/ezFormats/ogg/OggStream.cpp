#include "ezFormats/ogg/OggStream.h"

#include "ezFormats/ogg/OggLimits.h"

#include "ezFormats/codecs/FLACStreamInfo.h"
#include "ezFormats/codecs/VorbisHeader.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezBytes/ByteReader.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::uint32_t kOpusRate = 48000; // whatever rate the encoder was given
constexpr std::uint64_t kUnits = 10000000; // of OGM's times in a second

/// A number with a sign, of which what is not positive says nothing.
std::uint32_t ReadPositive(ByteReader& aReader) {
    const std::uint32_t number = aReader.ReadLittle32();
    return number <= INT32_MAX ? number : 0;
}

void ReadVorbis(ByteReader aPacket, OggStream& aStream) {
    const VorbisHeader header = ReadVorbisHeader(aPacket);
    aStream.mChannels = header.mChannels;
    aStream.mSamplingRate = header.mSamplingRate;
    aStream.mMaxBitRate = header.mMaxBitRate;
    aStream.mBitRate = header.mBitRate;
    aStream.mPacketSamples = header.mPacketSamples;
    aStream.mTicks = header.mSamplingRate;
}

/// RFC 7845, 5.1.
void ReadOpus(ByteReader aPacket, OggStream& aStream) {
    constexpr unsigned kKnownVersions = 16;
    aPacket.Skip(8);
    aPacket.Require(aPacket.ReadByte() < kKnownVersions);
    aStream.mChannels = aPacket.ReadByte();
    aStream.mPreSkip = static_cast<std::uint32_t>(aPacket.ReadLittle(2));
    aStream.mSamplingRate = aPacket.HasFailed() ? 0 : kOpusRate;
    aStream.mTicks = aStream.mSamplingRate;
}

/// FLAC in Ogg: a version, the number of packets of metadata, and what a file of FLAC begins with.
void ReadFLAC(ByteReader aPacket, OggStream& aStream) {
    aPacket.Skip(9);
    aPacket.Require(aPacket.ReadText(4) == "fLaC");
    const FLACStreamInfo info = ReadFLACStreamInfo(aPacket);
    aStream.mChannels = info.mChannels;
    aStream.mSamplingRate = info.mSamplingRate;
    aStream.mBitsPerSample = info.mBitsPerSample;
    aStream.mSamples = info.mSamples;
    aStream.mPacketSamples = info.mMaxBlockSize;
    aStream.mTicks = info.mSamplingRate;
}

void ReadSpeex(ByteReader aPacket, OggStream& aStream) {
    aPacket.Skip(36);
    aStream.mSamplingRate = ReadPositive(aPacket);
    aPacket.Skip(8); // mode, version of its bit stream
    aStream.mChannels = ReadPositive(aPacket);
    const std::uint32_t rate = ReadPositive(aPacket);
    const std::uint32_t frame = std::min(ReadPositive(aPacket), kOgg_MaxSpeexSamples);
    const bool fVariable = aPacket.ReadLittle32() != 0;
    const std::uint32_t frames = std::min(ReadPositive(aPacket), kOgg_MaxSpeexFrames);
    if (aPacket.HasFailed()) {
        aStream.mSamplingRate = 0;
    }
    aStream.mBitRate = fVariable ? 0 : rate;
    aStream.mPacketSamples = frame * std::max(frames, 1U);
    aStream.mTicks = aStream.mSamplingRate;
}

/// Theora, 6.2.
void ReadTheora(ByteReader aPacket, OggStream& aStream) {
    aPacket.Skip(22);
    aStream.mTicks = aPacket.ReadBig32();
    aStream.mSeconds = aPacket.ReadBig32();
    aPacket.Skip(10); // shape of a pixel, colours, rate
    aStream.mKeyShift = static_cast<unsigned>(aPacket.ReadBig(2) >> 5U & 0x1FU);
    if (aPacket.HasFailed()) {
        aStream.mTicks = 0;
    }
}

/// Sound and video of OGM, which have the headers of DirectShow: so many samples in so many units.
void ReadOGM(ByteReader aPacket, OggStream& aStream) {
    constexpr std::uint64_t kLargest = UINT32_MAX;
    aPacket.Skip(17);
    aStream.mSeconds = aPacket.ReadLittle(8);
    aStream.mTicks = aPacket.ReadLittle(8);
    if (aPacket.HasFailed() || aStream.mTicks > kLargest || aStream.mSeconds > kLargest) {
        aStream.mTicks = 0;
    }
    aStream.mTicks *= kUnits;
}

void ReadOGMSound(ByteReader aPacket, OggStream& aStream) {
    struct Format {
        std::string_view mTag; ///< of waves, in hexadecimal digits
        const char* mCodec;
    };
    constexpr Format kFormats[] = {{"0001", "LPCM"}, {"0050", "MP2"}, {"0055", "MP3"},
                                   {"00FF", "AAC"},  {"00ff", "AAC"}, {"2000", "AC3"}};
    ReadOGM(aPacket, aStream);
    aStream.mSamplingRate = static_cast<std::uint32_t>(
        std::min<std::uint64_t>(MediaNumber_Scale(aStream.mTicks, 1, aStream.mSeconds), UINT32_MAX));
    aPacket.Skip(9);
    const ezCString tag = aPacket.ReadText(4);
    for (const Format& format : kFormats) {
        aStream.mCodec = format.mTag == tag.View() ? format.mCodec : aStream.mCodec;
    }
    aPacket.Skip(32); // size, unit, samples, length, buffer, bits
    aStream.mChannels = static_cast<std::uint32_t>(aPacket.ReadLittle(2));
}

void ReadNothing(ByteReader /*aPacket*/, OggStream& /*aStream*/) {}

struct Reading {
    OggKind mKind;
    const char* mCodec;
    void (*mRead)(ByteReader aPacket, OggStream& aStream);
};
constexpr Reading kReadings[] = {
    {OggKind::Vorbis, "Vorbis", ReadVorbis}, {OggKind::Opus, "Opus", ReadOpus},
    {OggKind::FLAC, "FLAC", ReadFLAC},       {OggKind::Speex, "Speex", ReadSpeex},
    {OggKind::Theora, "Theora", ReadTheora}, {OggKind::OGMSound, "", ReadOGMSound},
    {OggKind::OGMVideo, "", ReadOGM},        {OggKind::OtherVideo, "", ReadNothing},
};

} // namespace

std::uint64_t OggStream::TimeOf(std::uint64_t aGranule) const {
    constexpr std::uint64_t kMicroseconds = 1000000;
    std::uint64_t count = aGranule - std::min<std::uint64_t>(aGranule, mPreSkip);
    if (mKeyShift != 0) {
        count = (aGranule >> mKeyShift) + (aGranule & ((std::uint64_t{1} << mKeyShift) - 1));
    }
    return MediaNumber_Scale(count, mSeconds * kMicroseconds, mTicks);
}

OggStream ReadOggStream(const ByteReader& aPacket, std::uint32_t aSerial) {
    OggStream stream;
    stream.mSerial = aSerial;
    const OggMark* const mark = FindOggMark(aPacket);
    for (const Reading& reading : kReadings) {
        if (mark != nullptr && reading.mKind == mark->mKind) {
            stream.mCodec = reading.mCodec;
            reading.mRead(aPacket, stream);
        }
    }
    const bool fSound = mark != nullptr && !OggKind_IsVideo(mark->mKind);
    if (!fSound || (stream.mSamplingRate != 0 && stream.mChannels != 0)) {
        stream.mMark = mark;
    }
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
