#include "ezFormats/caf/CAFParser.h"

#include "ezFormats/codecs/FloatRates.h"
#include "ezFormats/codecs/PacketSound.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/MusicValues.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ChunkWalk.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace {

constexpr std::uint32_t kMagic = 0x63616666; // "caff"
constexpr std::uint32_t kVersion = 1;

/// What the chunks of a file tell.
struct Chunks {
    bool mfDescription = false;
    SoundFacts mSound;
    std::uint32_t mPacketBytes = 0; ///< of all channels; 0 where packets vary
    std::uint32_t mPacketSamples = 0;
    bool mfSound = false;
    std::uint64_t mSoundSize = 0; ///< bytes; 0 where they cannot be told
    bool mfMeasured = false;      ///< by the file, as the chunk states none, or what cannot be
    bool mfOpen = false;          ///< they cannot be told
    bool mfPackets = false;
    std::uint64_t mSamples = 0; ///< that count, of a channel, as the packet table states them
    MusicValues mValues;

    bool ArePacketsEqual() const { return mPacketBytes != 0 && mPacketSamples != 0; }
};

/// Bits of a sample: where lossless packets leave that open, their flags tell.
std::uint32_t BitsOf(const PacketSound& aPackets, std::uint32_t aFlags, std::uint32_t aStated) {
    constexpr std::uint32_t kLosslessBits[] = {0, 16, 20, 24, 32};
    if (aPackets.mCodec == "ALAC") {
        return aFlags < std::size(kLosslessBits) ? kLosslessBits[aFlags] : 0;
    }
    return aPackets.mfPlain || aPackets.mCodec == "FLAC" ? aStated : 0;
}

void TakeDescription(ByteReader aChunk, Chunks& aChunks) {
    constexpr std::uint32_t kFloat = 1;
    SoundFacts sound;
    sound.mSamplingRate = ReadFloatRate(aChunk);
    const PacketSound packets = PacketSoundOf(BoxType::Read(aChunk));
    const std::uint32_t flags = aChunk.ReadBig32();
    aChunks.mPacketBytes = aChunk.ReadBig32();
    aChunks.mPacketSamples = aChunk.ReadBig32();
    sound.mChannels = aChunk.ReadBig32();
    sound.mBitsPerSample = BitsOf(packets, flags, aChunk.ReadBig32());
    const bool fFloat = packets.mCodec == "LPCM" && (flags & kFloat) != 0;
    sound.mCodec = fFloat ? ezCString("PCM-float") : packets.mCodec;
    aChunks.mfDescription = !aChunk.HasFailed();
    aChunks.mSound = sound;
}

/// The bits of lossless packets, as their decoder is told them: old writers put the boxes of QuickTime around
/// that.
void TakeCookie(ByteReader aChunk, SoundFacts& aSound) {
    constexpr std::uint64_t kBoxHead = 12;
    if (aSound.mCodec != "ALAC" || aSound.mBitsPerSample != 0) {
        return;
    }
    for (const BoxType box : {BoxType("frma"), BoxType("alac")}) {
        ByteReader head = aChunk;
        head.Skip(4);
        aChunk.Skip(BoxType::Read(head) == box ? kBoxHead : 0);
    }
    aChunk.Skip(5); // samples of a packet, and a version
    aSound.mBitsPerSample = aChunk.ReadByte();
}

/// The sound: after a count of edits.
void TakeSound(const SoundSize& aSize, Chunks& aChunks) {
    constexpr std::uint64_t kHeadSize = 4;
    aChunks.mfSound = true;
    aChunks.mfMeasured = aSize.mfMeasured;
    aChunks.mfOpen = aSize.mfOpen;
    aChunks.mSoundSize = aSize.mBytes - std::min(aSize.mBytes, kHeadSize);
}

/// The head of the packet table: how many packets, and how many samples of these count.
void TakePackets(ByteReader aChunk, Chunks& aChunks) {
    constexpr std::uint64_t kNegative = std::uint64_t{1} << 63;
    aChunk.Skip(8);
    const std::uint64_t samples = aChunk.ReadBig(8);
    aChunks.mfPackets = !aChunk.HasFailed();
    aChunks.mSamples = samples < kNegative ? samples : 0;
}

/// A text, up to a NUL: so many bytes of it are kept.
std::string ReadWord(ByteReader& aReader, std::size_t aMaximum) {
    std::string word;
    for (std::uint8_t byte = aReader.ReadByte(); byte != 0; byte = aReader.ReadByte()) {
        if (word.size() < aMaximum) {
            word.push_back(static_cast<char>(byte));
        }
    }
    return word;
}

/// Pairs of texts, each with a NUL after it.
void TakeInfo(ByteReader aChunk, const CodePage& aCodePage, MusicValues& aValues) {
    const std::uint32_t count = std::min(aChunk.ReadBig32(), kMusicTexts_MaxFrames);
    for (std::uint32_t i = 0; i < count && !aChunk.HasFailed(); ++i) {
        const std::string key = ReadWord(aChunk, kCAF_MaxKey + 1);
        const std::string value = ReadWord(aChunk, kMusicTexts_MaxSize);
        const TagField* const field = FindTagField(TagWords::CAF, key);
        if (field != nullptr && !aChunk.HasFailed()) {
            aValues.Add(*field, CleanText(value, TextEncoding::Utf8, aCodePage));
        }
    }
}

/// True when nothing that follows the sound says what it is.
bool IsTold(const Chunks& aChunks) {
    return aChunks.mfDescription && aChunks.mfSound && (aChunks.ArePacketsEqual() || aChunks.mfPackets);
}

Chunks ReadChunks(const MediaBytes& aBytes, const ByteReader& aReader, const CodePage& aCodePage) {
    std::uint32_t budget = kCAF_MaxChunks;
    ChunkWalk walk(aReader, kChunks_CAF, budget);
    Chunks chunks;
    BoxType name;
    for (ByteReader content = aReader; walk.Next(&name, &content);) {
        if (name == "desc" && !chunks.mfDescription) {
            TakeDescription(content, chunks);
        } else if (name == "data" && !chunks.mfSound) {
            TakeSound(walk.GetSoundSize(aBytes.GetSize().has_value()), chunks);
        } else if (name == "pakt" && !chunks.mfPackets) {
            TakePackets(content, chunks);
        } else if (name == "kuki") {
            TakeCookie(content, chunks.mSound);
        } else if (name == "info") {
            TakeInfo(content, aCodePage, chunks.mValues);
        }
        if (IsTold(chunks) && !aBytes.GetSize()) { // a source of unknown size may have no end
            break;
        }
    }
    return chunks;
}

/// The length: by packets of one size, else by the count of the packet table.
void Measure(const Chunks& aChunks, SoundFacts& aSound) {
    aSound.SetPackets(aChunks.mSoundSize, aChunks.mPacketBytes, aChunks.mPacketSamples);
    if (aSound.mSamples != 0) {
        aSound.mDurationMethod = aChunks.mfMeasured ? "constant rate" : "header";
    } else if (aChunks.mfOpen ||
               SoundFacts::IsLengthPlausible(aChunks.mSoundSize, aChunks.mSamples, aSound.mSamplingRate)) {
        aSound.mSamples = aChunks.mSamples;
    }
}

} // namespace

bool CAFParser::IsAt(ByteReader aBytes) {
    return aBytes.ReadBig32() == kMagic && aBytes.ReadBig(2) == kVersion;
}

bool CAFParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    constexpr std::uint32_t kMaxChannels = 0xFFFF;
    ByteReader reader(aBytes);
    const std::uint32_t magic = reader.ReadBig32();
    const auto version = static_cast<std::uint32_t>(reader.ReadBig(2));
    reader.Skip(2); // flags
    if (magic != kMagic) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{magic});
    }
    if (version != kVersion) {
        return Refuse(Cause::Unsupported, "version %u", unsigned{version});
    }
    Chunks chunks = ReadChunks(aBytes, reader, CodePage(GetTextCodePage()));
    SoundFacts& sound = chunks.mSound;
    if (!chunks.mfDescription || aBytes.HasLostBytes()) {
        return RefuseCut(aBytes,
                         chunks.mfDescription ? "the end of the chunks" : "the description of the sound");
    }
    if (sound.mSamplingRate == 0 || sound.mChannels == 0 || sound.mChannels > kMaxChannels) {
        return Refuse(Cause::Malformed, "%u channels at %u Hz", unsigned{sound.mChannels},
                      unsigned{sound.mSamplingRate});
    }
    Measure(chunks, sound);
    sound.Store(anInfo);
    MusicTexts texts;
    chunks.mValues.Store(texts);
    texts.Store(anInfo);
    return true;
}
