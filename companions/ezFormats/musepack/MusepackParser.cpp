#include "ezFormats/musepack/MusepackParser.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"

#include "ezPlatform/media/MediaInfo.h"

#include <array>

namespace {

constexpr std::uint32_t kMagic8 = 0x4D50434B;      // "MPCK"
constexpr std::uint32_t kMagic7 = 0x4D502B00;      // "MP+", and the version
constexpr std::uint32_t kVersionMask = 0x0000000F; // of what follows; the rest is that of the encoder's form
constexpr std::uint32_t kVersion7 = 7;

constexpr std::array<std::uint32_t, 4> kSamplingRates = {44100, 48000, 37800, 32000};

/// What the header of a stream tells.
struct Stream {
    const char* mCodec = "MPC8";
    std::uint32_t mVersion = 0; ///< 0: there is no header
    std::uint32_t mRateIndex = 0;
    std::uint32_t mChannels = 0;
    std::uint64_t mSamples = 0;
};

bool IsVersion7(std::uint32_t aMagic) {
    return (aMagic & 0xFFFFFF00) == kMagic7;
}

/// A number of seven bits a byte, of which the last has no eighth; one of more than nine bytes fails.
std::uint64_t ReadSevens(ByteReader& aReader) {
    constexpr unsigned kMaxBytes = 9;
    std::uint64_t value = 0;
    for (unsigned count = 0; count < kMaxBytes; ++count) {
        const unsigned byte = aReader.ReadByte();
        value = value << 7 | (byte & 0x7F);
        if ((byte & 0x80) == 0) {
            return value;
        }
    }
    aReader.Require(false);
    return 0;
}

/// The header of version 7, after its magic.
Stream ReadStream7(ByteReader& aReader) {
    constexpr std::uint32_t kFrameSamples = 1152;
    constexpr std::uint32_t kHalfFrame = 576; // about as many the decoder swallows, where nothing counts them
    Stream stream;
    stream.mCodec = "MPC7";
    stream.mVersion = kVersion7;
    stream.mChannels = 2;
    const std::uint64_t frames = aReader.ReadLittle32();
    stream.mRateIndex = aReader.ReadLittle32() >> 16 & 3;
    aReader.Skip(8); // gain
    const std::uint32_t end = aReader.ReadLittle32();
    const bool fGapless = end >> 31 != 0;
    const std::uint32_t last = end >> 20 & 0x7FF;
    const bool fLast = fGapless && last != 0 && last < kFrameSamples;
    const std::uint32_t over = fLast ? kFrameSamples - last : fGapless ? 0 : kHalfFrame;
    stream.mSamples = frames != 0 ? frames * kFrameSamples - over : 0;
    return stream;
}

/// The packet "SH" of version 8, after its key and size.
Stream ReadStreamPacket(ByteReader aPacket) {
    Stream stream;
    aPacket.Skip(4); // check sum
    stream.mVersion = aPacket.ReadByte();
    const std::uint64_t samples = ReadSevens(aPacket);
    const std::uint64_t silence = ReadSevens(aPacket); // before the sound
    const auto codes = static_cast<std::uint32_t>(aPacket.ReadBig(2));
    stream.mSamples = samples - (silence < samples ? silence : 0);
    stream.mRateIndex = codes >> 13;
    stream.mChannels = (codes >> 4 & 0xF) + 1;
    return aPacket.HasFailed() ? Stream() : stream;
}

/// The header of version 8, whose packets stand in any order before the first of sound.
Stream ReadStream8(ByteReader& aReader) {
    constexpr std::uint32_t kHeader = 0x5348; // "SH"
    constexpr std::uint32_t kSound = 0x4150;  // "AP"
    constexpr std::uint32_t kEnd = 0x5345;    // "SE"
    for (std::uint32_t count = 0; count < kMusepack_MaxPackets; ++count) {
        const std::uint64_t start = aReader.GetPosition();
        const auto key = static_cast<std::uint32_t>(aReader.ReadBig(2));
        const std::uint64_t size = ReadSevens(aReader); // of all of the packet
        const std::uint64_t head = aReader.GetPosition() - start;
        if (aReader.HasFailed() || key == kSound || key == kEnd || !aReader.Require(size >= head)) {
            break;
        }
        const ByteReader packet = aReader.Take(size - head);
        if (key == kHeader) {
            return ReadStreamPacket(packet);
        }
    }
    return {};
}

SoundFacts SoundOf(const Stream& aStream) {
    SoundFacts sound;
    sound.mCodec = aStream.mCodec;
    sound.mSamplingRate = kSamplingRates[aStream.mRateIndex];
    sound.mChannels = aStream.mChannels;
    sound.mSamples = aStream.mSamples;
    return sound;
}

} // namespace

bool MusepackParser::IsAt(ByteReader aBytes) {
    const std::uint32_t magic = aBytes.ReadBig32();
    return magic == kMagic8 || (IsVersion7(magic) && (magic & kVersionMask) == kVersion7);
}

bool MusepackParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    constexpr std::uint32_t kVersion8 = 8;
    const CodePage codePage(GetTextCodePage());
    LeadingTags tags = ReadLeadingTags(aBytes, codePage, kMusepack_NextSize);
    ByteReader reader(aBytes);
    reader.Skip(tags.mEnd);
    const std::uint32_t magic = reader.ReadBig32();
    const bool f7 = IsVersion7(magic);
    if (magic != kMagic8 && !f7) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{magic});
    }
    if (f7 && (magic & kVersionMask) != kVersion7) {
        return Refuse(Cause::Unsupported, "stream version %u", unsigned{magic & kVersionMask});
    }
    const Stream stream = f7 ? ReadStream7(reader) : ReadStream8(reader);
    if (reader.HasFailed() || stream.mVersion == 0) {
        return RefuseCut(aBytes, "the end of the header");
    }
    if (!f7 && stream.mVersion != kVersion8) {
        return Refuse(Cause::Unsupported, "stream version %u", unsigned{stream.mVersion});
    }
    if (stream.mRateIndex >= kSamplingRates.size()) {
        return Refuse(Cause::Malformed, "sampling rate of number %u", unsigned{stream.mRateIndex});
    }
    SoundFacts sound = SoundOf(stream);
    const TailTags tail = ReadTailTags(aBytes, reader.GetPosition(), codePage, kTailTags_ShortSize);
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "the end of the tags");
    }
    if (aBytes.GetSize()) {
        sound.HoldAgainst(tail.mStart - reader.GetPosition());
    }
    tags.mTexts.Complete(tail.mTexts);
    tags.mCover.Complete(tail.mCover);
    sound.Store(anInfo);
    tags.mTexts.Store(anInfo);
    tags.mCover.Store(anInfo);
    return true;
}
