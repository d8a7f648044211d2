#include "ezFormats/riff/WAVChunks.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/riff/WAVLimits.h"
#include "ezFormats/tags/MusicValues.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/CodePage.h"
#include "ezBytes/DateText.h"
#include "ezBytes/TextBytes.h"

namespace {

constexpr std::uint32_t kUnknown32 = 0xFFFFFFFF;

/// The texts of a list of the kind "INFO", each a chunk.
void TakeInfo(ByteReader aList, const ChunkLayout& aLayout, std::uint32_t& aBudget, const CodePage& aCodePage,
              MusicTexts& aTexts) {
    if (BoxType::Read(aList) != "INFO") {
        return;
    }
    ChunkWalk items(aList, aLayout, aBudget);
    MusicValues values;
    BoxType name;
    for (ByteReader item = aList; items.Next(&name, &item);) {
        if (const TagField* const field = FindTagField(TagLetters::RIFF, name.GetCode())) {
            values.Add(*field, CleanText(ReadTextBytes(item), TextEncoding::Unstated, aCodePage));
        }
    }
    values.Store(aTexts);
}

/// A broadcast file's description and date (EBU Tech 3285, 2.3).
void TakeBext(ByteReader aChunk, const CodePage& aCodePage, MusicTexts& aTexts) {
    const ezCString description = aChunk.ReadText(256);
    aChunk.Skip(32 + 32); // originator, and a reference of its own
    const ezCString date = aChunk.ReadText(10);
    const ezCString time = aChunk.ReadText(8);
    if (!aChunk.HasFailed()) {
        aTexts.mTitle = CleanText(description.View(), TextEncoding::Unstated, aCodePage);
        aTexts.mDate = CleanDate(CleanText((date + "T" + time).View(), TextEncoding::Unstated).View());
    }
}

/// The count of samples of "fact"; 0 where it leaves that open.
std::uint64_t ReadFact(ByteReader aChunk, bool afBig) {
    const std::uint32_t samples = afBig ? aChunk.ReadBig32() : aChunk.ReadLittle32();
    return samples != kUnknown32 ? samples : 0;
}

} // namespace

WAVChunks ReadWAVChunks(MediaBytes& aBytes, const ByteReader& aReader, const WAVHead& aHead,
                        const CodePage& aCodePage) {
    const bool fBig = !aHead.mLayout.mfLittle;
    std::uint32_t budget = kWAV_MaxChunks;
    WAVWalk walk(aReader, aHead, aBytes.GetSize().has_value(), budget);
    WAVChunks chunks;
    BoxType name;
    for (ByteReader content = aReader; walk.Next(&name, &content);) {
        if (name == "fmt " && !chunks.mfFormat) {
            chunks.mfFormat = ReadWaveFormat(content, fBig, &chunks.mFormat);
        } else if (name == "fact" && chunks.mSamples == 0) {
            chunks.mSamples = ReadFact(content, fBig);
        } else if (name == "LIST") {
            TakeInfo(content, aHead.mLayout, budget, aCodePage, chunks.mInfo);
        } else if (name == "id3 " || name == "ID3 ") {
            TakeID3Chunk(aBytes, content, aCodePage, chunks.mID3, chunks.mCover);
        } else if (name == "bext") {
            TakeBext(content, aCodePage, chunks.mBext);
        }
        // Nothing that follows says what the sound is; a source of unknown size may have no end.
        if (walk.GetSound().mfFound && chunks.mfFormat && !aBytes.GetSize()) {
            break;
        }
    }
    chunks.mSound = walk.GetSound();
    chunks.mSamples = chunks.mSamples != 0 ? chunks.mSamples : walk.GetLargeSampleCount();
    return chunks;
}
