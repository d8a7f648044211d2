#include "ezFormats/dsdiff/DSDIFFParser.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicValues.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ChunkWalk.h"
#include "ezBytes/CodePage.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

constexpr BoxType kForm = "FRM8";
constexpr BoxType kKind = "DSD ";
constexpr BoxType kPlain = "DSD ";
constexpr BoxType kCompressed = "DST ";

/// What the chunks of a file tell.
struct Chunks {
    std::uint32_t mSamplingRate = 0; ///< Hz
    std::uint32_t mChannels = 0;
    BoxType mCompression = kPlain;
    bool mfPlain = false; ///< the sound came, of one kind or of the other
    bool mfCompressed = false;
    std::uint64_t mSoundSize = 0; ///< bytes; 0 where they cannot be told
    bool mfMeasured = false;      ///< by the file, as the chunk states none, or what cannot be
    std::uint32_t mFrames = 0;    ///< of compressed sound
    std::uint32_t mFramesASecond = 0;
    MusicTexts mID3;
    MusicValues mValues;
    CoverFacts mCover;

    bool IsDescribed() const { return mSamplingRate != 0 && mChannels != 0; }
    bool HasSound() const { return mfPlain || mfCompressed; }
};

/// The chunks of a file, and of those that hold chunks.
class ChunksReader {
public:
    ChunksReader(MediaBytes& aBytes, const CodePage& aCodePage) : mBytes(aBytes), mCodePage(aCodePage) {}

    /// Reads them; aReader stands at the first.
    Chunks Read(const ByteReader& aReader);

private:
    void TakeProperties(ByteReader aChunk);
    void TakeSound(BoxType aName, const ByteReader& aChunk, ChunkWalk& aWalk);
    void TakeFrames(const ByteReader& aChunk);
    void TakeTexts(const ByteReader& aChunk);

    MediaBytes& mBytes;
    const CodePage& mCodePage;
    std::uint32_t mBudget = kDSDIFF_MaxChunks;
    Chunks mChunks;
};

void ChunksReader::TakeProperties(ByteReader aChunk) {
    if (mChunks.IsDescribed() || BoxType::Read(aChunk) != "SND ") {
        return;
    }
    ChunkWalk properties(aChunk, kChunks_IFF64, mBudget);
    BoxType name;
    for (ByteReader property = aChunk; properties.Next(&name, &property);) {
        if (name == "FS  ") {
            mChunks.mSamplingRate = property.ReadBig32();
        } else if (name == "CHNL") {
            mChunks.mChannels = static_cast<std::uint32_t>(property.ReadBig(2));
        } else if (name == "CMPR") {
            mChunks.mCompression = BoxType::Read(property);
        }
    }
}

/// The count of frames, which stands before them.
void ChunksReader::TakeFrames(const ByteReader& aChunk) {
    ChunkWalk parts(aChunk, kChunks_IFF64, mBudget);
    BoxType name;
    ByteReader part = aChunk;
    if (parts.Next(&name, &part) && name == "FRTE") {
        mChunks.mFrames = part.ReadBig32();
        mChunks.mFramesASecond = static_cast<std::uint32_t>(part.ReadBig(2));
    }
}

void ChunksReader::TakeSound(BoxType aName, const ByteReader& aChunk, ChunkWalk& aWalk) {
    const SoundSize size = aWalk.GetSoundSize(mBytes.GetSize().has_value());
    mChunks.mfPlain = aName == kPlain;
    mChunks.mfCompressed = aName == kCompressed;
    mChunks.mfMeasured = size.mfMeasured;
    mChunks.mSoundSize = size.mBytes;
    if (mChunks.mfCompressed) {
        TakeFrames(aChunk);
    }
    if (aWalk.GetStatedSize() == 0) {
        aWalk.SetContentSize(0); // chunks may follow all the same
    }
}

/// The chunks of "DIIN": each text stands after its length.
void ChunksReader::TakeTexts(const ByteReader& aChunk) {
    ChunkWalk items(aChunk, kChunks_IFF64, mBudget);
    BoxType name;
    for (ByteReader item = aChunk; items.Next(&name, &item);) {
        const TagField* const field = FindTagField(TagLetters::DSDIFF, name.GetCode());
        if (field == nullptr) {
            continue;
        }
        const std::uint32_t length = item.ReadBig32();
        ByteReader text = item.Take(length);
        mChunks.mValues.Add(*field, ReadCleanText(text, TextEncoding::Unstated, mCodePage));
    }
}

Chunks ChunksReader::Read(const ByteReader& aReader) {
    ChunkWalk walk(aReader, kChunks_IFF64, mBudget);
    BoxType name;
    for (ByteReader content = aReader; walk.Next(&name, &content);) {
        if (name == "PROP") {
            TakeProperties(content);
        } else if ((name == kPlain || name == kCompressed) && !mChunks.HasSound()) {
            TakeSound(name, content, walk);
        } else if (name == "DIIN") {
            TakeTexts(content);
        } else if (name == "ID3 " || name == "id3 ") {
            TakeID3Chunk(mBytes, content, mCodePage, mChunks.mID3, mChunks.mCover);
        }
        // Nothing that follows says what the sound is; a source of unknown size may have no end.
        if (mChunks.IsDescribed() && mChunks.HasSound() && !mBytes.GetSize()) {
            break;
        }
    }
    return mChunks;
}

/// The facts of the sound. That of a file without any is what its properties say.
SoundFacts SoundOf(const Chunks& aChunks) {
    constexpr std::uint32_t kSamples = 8; // of a byte of each channel
    const bool fCompressed =
        aChunks.mfCompressed || (!aChunks.mfPlain && aChunks.mCompression == kCompressed);
    SoundFacts sound;
    sound.mCodec = fCompressed ? "DST" : "DSD";
    sound.mSamplingRate = aChunks.mSamplingRate;
    sound.mChannels = aChunks.mChannels;
    sound.mBitsPerSample = 1;
    if (!fCompressed) {
        sound.SetPackets(aChunks.mSoundSize, sound.mChannels, kSamples);
        sound.mDurationMethod = aChunks.mfMeasured ? "constant rate" : "header";
        return sound;
    }
    sound.mSamples = MediaNumber_Scale(aChunks.mFrames, sound.mSamplingRate, aChunks.mFramesASecond);
    if (aChunks.mSoundSize != 0) {
        sound.HoldAgainst(aChunks.mSoundSize);
    }
    return sound;
}

} // namespace

bool DSDIFFParser::IsAt(ByteReader aBytes) {
    const bool fForm = BoxType::Read(aBytes) == kForm;
    aBytes.Skip(8);
    return fForm && BoxType::Read(aBytes) == kKind;
}

bool DSDIFFParser::ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) {
    const CodePage codePage(GetTextCodePage());
    ByteReader reader(aBytes);
    const BoxType form = BoxType::Read(reader);
    reader.Skip(8); // the size of all, which whoever appends a chunk forgets
    const BoxType kind = BoxType::Read(reader);
    if (form != kForm) {
        return Refuse(Cause::Malformed, "begins with %08X", unsigned{form.GetCode()});
    }
    if (kind != kKind) {
        return Refuse(Cause::Unsupported, "FRM8 of the kind \"%s\"",
                      CleanText(kind.GetText().View(), TextEncoding::Unstated).c_str());
    }
    Chunks chunks = ChunksReader(aBytes, codePage).Read(reader);
    const SoundFacts sound = SoundOf(chunks);
    if (aBytes.HasLostBytes()) {
        return RefuseCut(aBytes, "the end of the chunks");
    }
    if (!chunks.IsDescribed()) {
        return RefuseCut(aBytes, "the description of the sound");
    }
    sound.Store(anInfo);
    chunks.mValues.Store(chunks.mID3);
    chunks.mID3.Store(anInfo);
    chunks.mCover.Store(anInfo);
    return true;
}
