#include "ezFormats/ogg/OGMStream.h"

#include "ezFormats/codecs/CodecWord.h"
#include "ezFormats/codecs/FrameSound.h"
#include "ezFormats/codecs/FrameVideo.h"
#include "ezFormats/codecs/VideoFourCC.h"
#include "ezFormats/codecs/WaveFormat.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/ogg/OggLimits.h"
#include "ezFormats/ogg/OggStream.h"

#include "ezBytes/ByteReader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace {

/// What streams of both kinds begin with, up to what tells the kinds apart.
struct Header {
    BoxType mCode;                    ///< FourCC, or the tag of a wave in hexadecimal digits
    std::uint64_t mUnits = 0;         ///< of 100 ns, that mSamples take
    std::uint64_t mSamples = 0;       ///< of sound, or pictures
    std::uint32_t mDefaultLength = 0; ///< of a packet, in samples
    std::uint32_t mBits = 0;          ///< of a sample
};

Header ReadHeader(ByteReader& aPacket) {
    Header header;
    aPacket.Skip(9); // kind of packet and of stream
    header.mCode = BoxType::Read(aPacket);
    aPacket.Skip(4); // size
    header.mUnits = aPacket.ReadLittle(8);
    header.mSamples = aPacket.ReadLittle(8);
    header.mDefaultLength = aPacket.ReadLittle32();
    aPacket.Skip(4); // buffer
    header.mBits = static_cast<std::uint32_t>(aPacket.ReadLittle(2));
    aPacket.Skip(2);
    return header;
}

/// So many samples in a second of so many units. A packet of sound that lasts longer than a second is not
/// believed, and one of video has a picture at least.
void TakeClock(const Header& aHeader, std::uint32_t aLeastLength, OggStream& aStream) {
    constexpr std::uint64_t kUnits = 10000000; // in a second
    if (aHeader.mUnits == 0 || aHeader.mUnits > UINT32_MAX || aHeader.mSamples > UINT32_MAX) {
        return;
    }
    aStream.mTicks = aHeader.mSamples * kUnits;
    aStream.mSeconds = aHeader.mUnits;
    const std::uint64_t second = aStream.mTicks / aStream.mSeconds;
    const std::uint32_t length = aHeader.mDefaultLength <= second ? aHeader.mDefaultLength : 0;
    aStream.mPacketSamples = std::max(length, aLeastLength);
}

/// The fields of sound as WAVEFORMATEX has them, which tell what they mean.
std::optional<WaveFormat> WaveOf(std::uint32_t aTag, std::uint32_t aChannels, std::uint32_t aSamplingRate,
                                 std::uint32_t anAverage, std::uint32_t aBlockSize, std::uint32_t aBits) {
    std::array<unsigned char, 18> bytes = {};
    const auto put = [&](std::size_t anAt, std::uint32_t aNumber, std::size_t aCount) {
        for (std::size_t i = 0; i < aCount; ++i) {
            bytes[anAt + i] = static_cast<unsigned char>(aNumber >> 8 * i & 0xFF);
        }
    };
    put(0, aTag, 2);
    put(2, aChannels, 2);
    put(4, aSamplingRate, 4);
    put(8, anAverage, 4);
    put(12, aBlockSize, 2);
    put(14, aBits, 2);
    BlockBytes block(bytes.data(), bytes.size());
    WaveFormat format;
    return ReadWaveFormat(ByteReader(block), false, &format) ? std::make_optional(format) : std::nullopt;
}

using SoundReader = AudioFacts (*)(const unsigned char* aBytes, std::size_t aSize);

/// Codecs of which each frame has a header.
struct FramedSound {
    const char* mCodec;
    SoundReader mRead;
};
constexpr FramedSound kFramedSounds[] = {
    {"MP2", MPEGSound_Read}, {"MP3", MPEGSound_Read}, {"AC3", AC3Sound_Read}, {"DTS", DTSSound_Read}};

void ReadSoundFrame(const std::vector<unsigned char>& aFrame, AudioFacts& aFacts) {
    for (const FramedSound& sound : kFramedSounds) {
        if (aFacts.mCodec == sound.mCodec) {
            AudioFacts facts = sound.mRead(aFrame.data(), aFrame.size());
            facts.Complete(aFacts);
            aFacts = facts;
            return;
        }
    }
}

/// A codec that its own headers contradict is that of these.
void ReadVideoFrame(const std::vector<unsigned char>& aFrame, VideoFacts& aFacts) {
    const auto facts = FrameVideo_Read(aFacts.mCodec, aFrame.data(), aFrame.size()).value_or(VideoFacts());
    aFacts.Complete(facts);
    aFacts.mCodec = facts.mCodec.IsEmpty() ? aFacts.mCodec : facts.mCodec;
}

/// Bytes of a packet before its frame: flags, and of its length in samples as many as these say.
std::uint64_t HeadSizeOf(unsigned aFlags) {
    return 1 + ((aFlags >> 6 & 3U) | (aFlags << 1 & 4U));
}

} // namespace

void OGMSound_Read(ByteReader aPacket, OggStream& aStream) {
    const Header header = ReadHeader(aPacket);
    const auto channels = static_cast<std::uint32_t>(aPacket.ReadLittle(2));
    const auto blockSize = static_cast<std::uint32_t>(aPacket.ReadLittle(2));
    const std::uint32_t average = aPacket.ReadLittle32();
    TakeClock(header, 0, aStream);
    const std::uint64_t rate = aStream.mTicks / aStream.mSeconds;
    if (aPacket.HasFailed() || rate == 0 || rate > UINT32_MAX) {
        return;
    }
    const std::uint32_t tag = ezHexWord(header.mCode.GetText().View());
    const std::optional<WaveFormat> wave =
        WaveOf(tag, channels, static_cast<std::uint32_t>(rate), average, blockSize, header.mBits);
    if (wave) {
        aStream.mSound = wave->GetFacts();
        aStream.mSound.mEstimatedBitRate = MediaNumber_BitRate(wave->mAverageBytes, 1, 1);
    }
}

void OGMVideo_Read(ByteReader aPacket, OggStream& aStream) {
    const Header header = ReadHeader(aPacket);
    const std::uint32_t width = aPacket.ReadLittle32();
    const std::uint32_t height = aPacket.ReadLittle32();
    if (aPacket.HasFailed()) {
        return;
    }
    TakeClock(header, 1, aStream);
    VideoFacts& facts = aStream.mVideo;
    const VideoCode* const code = VideoFourCC_Find(header.mCode);
    facts = code != nullptr ? code->GetFacts() : VideoFacts();
    facts.mCodec = code != nullptr ? facts.mCodec : CodecWord_Of(header.mCode.GetText().View());
    if (width != 0 && height != 0 && width <= INT32_MAX && height <= INT32_MAX) {
        facts.mWidth = width;
        facts.mHeight = height;
    }
    const std::uint32_t rate = MediaNumber_FrameRate(aStream.mTicks, aStream.mSeconds, 1);
    facts.mFrameRate = rate <= kVideo_MaxFrameRate ? rate : 0;
}

bool OGMPacket_IsFrame(ByteReader aPacket) {
    const unsigned flags = aPacket.ReadByte();
    return (flags & 1) == 0 && !aPacket.HasFailed();
}

void OGMPacket_ReadFrame(ByteReader aPacket, OggStream& aStream) {
    aPacket.Skip(HeadSizeOf(aPacket.ReadByte()) - 1);
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(aPacket.GetLeft(), kOgg_MaxFrame));
    std::vector<unsigned char> frame(size);
    if (!aPacket.Read(frame.data(), frame.size())) {
        return;
    }
    if (aStream.Is(OggRole::Sound)) {
        ReadSoundFrame(frame, aStream.mSound);
    } else {
        ReadVideoFrame(frame, aStream.mVideo);
    }
}
