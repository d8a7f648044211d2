#include "ezFormats/aiff/AIFFParser.h"

#include "ezFormats/codecs/FloatRates.h"
#include "ezFormats/codecs/PacketSound.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicValues.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ChunkWalk.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>

namespace {

constexpr BoxType kForm = "FORM";
constexpr BoxType kPlainKind = "AIFF";
constexpr BoxType kCodedKind = "AIFC";

/// What the chunks of a file tell.
struct Chunks {
    bool mfCommon = false;
    SoundFacts mSound;
    PacketSound mPackets;
    std::uint32_t mFrames = 0; ///< as "COMM" counts them: samples, or packets where these hold several
    bool mfSound = false;
    std::uint64_t mSoundSize = 0; ///< bytes; 0 where they cannot be told
    bool mfMeasured = false;      ///< by the file, as the chunk states none, or what cannot be
    bool mfOpen = false;          ///< they cannot be told
    MusicTexts mID3;
    MusicValues mValues;
    CoverFacts mCover;
};

/// The description of the sound; of AIFF-C with its codec.
void TakeCommon(ByteReader aChunk, bool afCoded, Chunks& aChunks) {
    SoundFacts sound;
    sound.mChannels = static_cast<std::uint32_t>(aChunk.ReadBig(2));
    const std::uint32_t frames = aChunk.ReadBig32();
    const auto bits = static_cast<std::uint32_t>(aChunk.ReadBig(2));
    sound.mSamplingRate = ReadExtendedRate(aChunk);
    const BoxType codec = afCoded ? BoxType::Read(aChunk) : BoxType("NONE");
    if (aChunk.HasFailed()) {
        return;
    }
    aChunks.mfCommon = true;
    aChunks.mFrames = frames;
    aChunks.mPackets = PacketSoundOf(codec);
    PacketSound& packets = aChunks.mPackets;
    sound.mCodec = packets.mCodec;
    if (packets.mfPlain) {
        sound.mBitsPerSample = packets.mBitsPerSample != 0 ? packets.mBitsPerSample : bits;
        packets.mPacketBytes = (sound.mBitsPerSample + 7) / 8;
        packets.mPacketSamples = 1;
    }
    aChunks.mSound = sound;
}

/// The sound: after the place of its first sample and a size of blocks, which nobody uses.
void TakeSound(const MediaBytes& aBytes, const ByteReader& aChunk, ChunkWalk& aWalk, Chunks& aChunks) {
    constexpr std::uint64_t kHeadSize = 8;
    const SoundSize size = aWalk.GetSoundSize(aBytes.GetSize().has_value());
    ByteReader reader = aChunk;
    const std::uint64_t place = reader.ReadBig32();
    aChunks.mfSound = true;
    aChunks.mfMeasured = size.mfMeasured;
    aChunks.mfOpen = size.mfOpen;
    aChunks.mSoundSize = size.mBytes - std::min(size.mBytes, kHeadSize + (place < size.mBytes ? place : 0));
    if (aWalk.GetStatedSize() == 0) {
        aWalk.SetContentSize(0); // chunks may follow all the same
    }
}

void TakeText(BoxType aName, ByteReader aChunk, const CodePage& aCodePage, MusicValues& aValues) {
    if (const TagField* const field = FindTagField(TagLetters::AIFF, aName.GetCode())) {
        aValues.Add(*field, ReadCleanText(aChunk, TextEncoding::Unstated, aCodePage));
    }
}

Chunks ReadChunks(MediaBytes& aBytes, const ByteReader& aReader, bool afCoded, const CodePage& aCodePage) {
    std::uint32_t budget = kAIFF_MaxChunks;
    ChunkWalk walk(aReader, kChunks_IFF, budget);
    Chunks chunks;
    BoxType name;
    for (ByteReader content = aReader; walk.Next(&name, &content);) {
        if (name == "COMM" && !chunks.mfCommon) {
            TakeCommon(content, afCoded, chunks);
        } else if (name == "SSND" && !chunks.mfSound) {
            TakeSound(aBytes, content, walk, chunks);
        } else if (name == "ID3 " || name == "id3 ") {
            TakeID3Chunk(aBytes, content, aCodePage, chunks.mID3, chunks.mCover);
        } else {
            TakeText(name, content, aCodePage, chunks.mValues);
        }
        // Nothing that follows says what the sound is; a source of unknown size may have no end.
        if (chunks.mfCommon && chunks.mfSound && !aBytes.GetSize()) {
            break;
        }
    }
    return chunks;
}

/// The length: as it is counted, if there is so much sound. Of packets of several samples some writers count
/// the samples.
void Measure(const Chunks& aChunks, SoundFacts& aSound) {
    const std::uint64_t frames = aChunks.mFrames;
    const std::uint32_t packetBytes = aSound.mChannels * aChunks.mPackets.mPacketBytes; // 16 bits by 13
    if (packetBytes == 0) {
        aSound.mSamples = frames;
        aSound.HoldAgainst(aChunks.mSoundSize);
        return;
    }
    aSound.SetPackets(aChunks.mSoundSize, packetBytes, aChunks.mPackets.mPacketSamples);
    const bool fOpen = aChunks.mfOpen; // then the count stands
    const bool fPackets = fOpen || frames <= aChunks.mSoundSize / packetBytes;
    const std::uint64_t counted = fPackets ? frames * aChunks.mPackets.mPacketSamples : frames;
    if (counted != 0 && (fOpen || counted <= aSound.mSamples)) {
        aSound.mSamples = counted;
    } else if (aChunks.mfMeasured) {
        aSound.mDurationMethod = "constant rate";
    }
}

} // namespace

bool AIFFParser::IsAt(ByteReader aBytes) {
    const bool fForm = BoxType::Read(aBytes) == kForm;
    aBytes.Skip(4);
    const BoxType kind = BoxType::Read(aBytes);
    return fForm && (kind == kPlainKind || kind == kCodedKind);
}

bool AIFFParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const CodePage codePage(GetTextCodePage());
    ByteReader reader(aBytes);
    const BoxType form = BoxType::Read(reader);
    reader.Skip(4); // the size of all, which whoever appends a chunk forgets
    const BoxType kind = BoxType::Read(reader);
    if (form != kForm) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{form.GetCode()});
    }
    if (kind != kPlainKind && kind != kCodedKind) {
        return Refuse(Cause::Unsupported, "FORM of the kind \"%s\"",
                      CleanText(kind.GetText().View(), TextEncoding::Unstated).c_str());
    }
    Chunks chunks = ReadChunks(aBytes, reader, kind == kCodedKind, codePage);
    SoundFacts& sound = chunks.mSound;
    if (!chunks.mfCommon || aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, chunks.mfCommon ? "the end of the chunks" : "the description of the sound");
    }
    if (sound.mSamplingRate == 0 || sound.mChannels == 0) {
        return Refuse(Cause::Malformed, "%u channels at %u Hz", unsigned{sound.mChannels},
                      unsigned{sound.mSamplingRate});
    }
    Measure(chunks, sound);
    sound.Store(anInfo);
    chunks.mValues.Store(chunks.mID3);
    chunks.mID3.Store(anInfo);
    chunks.mCover.Store(anInfo);
    return true;
}
