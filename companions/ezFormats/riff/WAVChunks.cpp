#include "ezFormats/riff/WAVChunks.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/riff/WAVLimits.h"
#include "ezFormats/tags/RIFFTexts.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/CodePage.h"
#include "ezBytes/DateText.h"
#include "ezBytes/TextBytes.h"

#include <cstddef>
#include <string>
#include <utility>

namespace {

constexpr std::uint32_t kUnknown32 = 0xFFFFFFFF;

/// Wave64 has the texts of such a list in one of its own: BC945F92-5A52-11D2-86DC-00C04F8EDB8A.
constexpr BoxType kSummary(0xBC945F92);
constexpr ChunkLayout kSummaryItems = {0, 4, true, false, 1};

/// The texts of Wave64, after their count.
void TakeSummary(ByteReader aList, std::uint32_t& aBudget, MusicTexts& aTexts) {
    aList.Skip(4);
    TakeRIFFTexts({aList, kSummaryItems, aBudget}, aList, TextEncoding::Utf16Little, CodePage(), aTexts);
}

/// A broadcast file's description and date (EBU Tech 3285, 2.3). Between the numbers of a date and a time
/// writers put whatever they like.
void TakeBext(ByteReader aChunk, const CodePage& aCodePage, MusicTexts& aTexts) {
    constexpr std::pair<std::size_t, char> kMarks[] = {{4, '-'}, {7, '-'}, {12, ':'}, {15, ':'}};
    const ezCString description = aChunk.ReadText(256);
    aChunk.Skip(32 + 32); // originator, and a reference of its own
    const ezCString digits = aChunk.ReadText(10 + 8);
    if (!aChunk.HasFailed()) {
        aTexts.mTitle = CleanText(description.View(), TextEncoding::Unstated, aCodePage);
        std::string date(digits.View());
        for (const auto& [place, mark] : kMarks) {
            date[place] = mark;
        }
        date.insert(10, "T");
        aTexts.mDate = CleanDate(date);
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
            TakeInfoTexts(content, aHead.mLayout, budget, aCodePage, chunks.mInfo);
        } else if (name == kSummary) {
            TakeSummary(content, budget, chunks.mInfo);
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
