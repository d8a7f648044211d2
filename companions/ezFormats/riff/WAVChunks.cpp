#include "ezFormats/riff/WAVChunks.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/riff/WAVLimits.h"
#include "ezFormats/tags/MusicValues.h"
#include "ezFormats/tags/SongTags.h"

#include "ezBytes/CodePage.h"
#include "ezBytes/DateText.h"
#include "ezBytes/TextBytes.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

constexpr std::uint32_t kUnknown32 = 0xFFFFFFFF;

/// The rest of the GUIDs that begin with "riff", and with "wave", "fmt " and so on.
constexpr std::array<std::uint64_t, 2> kRiffRest = {0x2E91CF11A5D628DB, 0x04C10000};
constexpr std::array<std::uint64_t, 2> kWaveRest = {0xF3ACD3118CD100C0, 0x4F8EDB8A};

bool HasRest(ByteReader& aReader, const std::array<std::uint64_t, 2>& aRest) {
    const std::uint64_t first = aReader.ReadBig(8);
    return aReader.ReadBig(4) == aRest[1] && first == aRest[0];
}

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

/// The walk over the chunks of one file.
class Reading {
public:
    Reading(MediaBytes& aBytes, const ByteReader& aReader, const WAVHead& aHead, const CodePage& aCodePage)
        : mBytes(aBytes),
          mHead(aHead),
          mCodePage(aCodePage),
          mFileEnd(aReader.GetPosition() + aReader.GetLeft()),
          mHeadEnd(aReader.GetPosition()),
          mBudget(kWAV_MaxChunks),
          mWalk(aReader, aHead.mLayout, mBudget) {}

    WAVChunks Read(ByteReader aContent) {
        BoxType name;
        while (mWalk.Next(&name, &aContent)) {
            Take(name, aContent);
            // Nothing that follows says what the sound is; a source of unknown size may have no end.
            if (mChunks.mfSound && mChunks.mfFormat && !mBytes.GetSize()) {
                break;
            }
        }
        if (mChunks.mSamples == 0) {
            mChunks.mSamples = mSamples64;
        }
        return mChunks;
    }

private:
    bool IsBig() const { return !mHead.mLayout.mfLittle; }
    bool Is64() const { return mHead.mKind == "RF64" || mHead.mKind == "BW64"; }
    std::uint32_t Number(ByteReader& aReader) const {
        return IsBig() ? aReader.ReadBig32() : aReader.ReadLittle32();
    }

    void Take(BoxType aName, const ByteReader& aContent) {
        if (aName == "fmt " && !mChunks.mfFormat) {
            mChunks.mfFormat = ReadWaveFormat(aContent, IsBig(), &mChunks.mFormat);
        } else if (aName == "data" && !mChunks.mfSound) {
            TakeSound(aContent);
        } else if (aName == "ds64" && Is64()) {
            TakeSizes(aContent);
        } else if (aName == "fact" && mChunks.mSamples == 0) {
            ByteReader reader = aContent;
            const std::uint32_t samples = Number(reader);
            mChunks.mSamples = samples != kUnknown32 ? samples : 0;
        } else if (aName == "LIST") {
            TakeInfo(aContent, mHead.mLayout, mBudget, mCodePage, mChunks.mInfo);
        } else if (aName == "id3 " || aName == "ID3 ") {
            TakeID3Chunk(mBytes, aContent, mCodePage, mChunks.mID3, mChunks.mCover);
        } else if (aName == "bext") {
            TakeBext(aContent, mCodePage, mChunks.mBext);
        } else if (mWalk.GetStatedSize() == kUnknown32 && Is64()) {
            mWalk.SetContentSize(SizeOf(aName));
        }
    }

    /// The chunk of the large sizes (EBU Tech 3306, 3): of the file, of the sound, of the samples, and a
    /// table of those of other chunks.
    void TakeSizes(ByteReader aContent) {
        aContent.Skip(8);
        mSound64 = aContent.ReadLittle(8);
        mSamples64 = aContent.ReadLittle(8);
        if (mSamples64 == UINT64_MAX) {
            mSamples64 = 0;
        }
        mSizes = aContent;
    }

    /// The size of another chunk by that table; up to the end where it is not in there.
    std::uint64_t SizeOf(BoxType aName) const {
        ByteReader table = mSizes;
        const std::uint32_t count = std::min(table.ReadLittle32(), kWAV_MaxChunks);
        for (std::uint32_t i = 0; i < count && !table.HasFailed(); ++i) {
            const BoxType name = BoxType::Read(table);
            const std::uint64_t size = table.ReadLittle(8);
            if (name == aName) {
                return size;
            }
        }
        return UINT64_MAX;
    }

    void TakeSound(const ByteReader& aContent) {
        mChunks.mfSound = true;
        mChunks.mSoundStart = aContent.GetPosition();
        const std::uint64_t there = mFileEnd - mChunks.mSoundStart;
        const std::uint64_t stated = StatedSound();
        const std::uint64_t wrapped = stated != 0 ? WrappedBytes(stated, there) : 0;
        const bool fKnown = stated != 0 && stated != UINT64_MAX && stated <= there;
        mChunks.mfMeasured = !fKnown || wrapped != 0;
        if (fKnown) {
            mChunks.mSoundSize = stated + wrapped;
        } else if (mBytes.GetSize()) {
            mChunks.mSoundSize = there;
        }
        mChunks.mSoundEnd = fKnown ? mChunks.mSoundStart + mChunks.mSoundSize : mFileEnd;
        // Where no size is stated, chunks may follow all the same.
        mWalk.SetContentSize(stated == 0 ? 0 : mChunks.mSoundSize);
    }

    /// Bytes that the sound states to have: 0 and 2^64-1 where it leaves that open.
    std::uint64_t StatedSound() const {
        const std::uint64_t stated = mWalk.GetStatedSize();
        if (mHead.mLayout.mSizeBytes != 4) {
            return stated;
        }
        const bool fOpen = stated == kUnknown32 || stated == 0;
        const bool f64 = mSound64 != 0 && (fOpen || (mSound64 & kUnknown32) == stated);
        return f64 ? mSound64 : stated == kUnknown32 ? UINT64_MAX : stated;
    }

    /// What a size of 32 bits has lost: so much as the whole file is longer than it states.
    std::uint64_t WrappedBytes(std::uint64_t aStated, std::uint64_t aThere) const {
        constexpr unsigned kBits = 32;
        if (!mBytes.GetSize() || mHead.mLayout.mSizeBytes != 4 || Is64() || aStated > aThere) {
            return 0;
        }
        const std::uint64_t counted = mHeadEnd - 4; // of what the head's size begins with
        const std::uint64_t whole = mFileEnd - counted;
        const std::uint64_t missing = whole > mHead.mSize ? whole - mHead.mSize : 0;
        const std::uint64_t lost = (missing + kWAV_WrapSlack) >> kBits << kBits;
        const bool fNearly = lost != 0 && missing + kWAV_WrapSlack - lost <= 2 * kWAV_WrapSlack;
        const std::uint64_t more = aThere - aStated;
        return fNearly && lost <= ezSaturating_Add64(more, kWAV_WrapSlack) ? std::min(lost, more) : 0;
    }

    MediaBytes& mBytes;
    const WAVHead& mHead;
    const CodePage& mCodePage;
    std::uint64_t mFileEnd;
    std::uint64_t mHeadEnd;
    std::uint32_t mBudget;
    ChunkWalk mWalk;
    std::uint64_t mSound64 = 0;   ///< as "ds64" has it
    std::uint64_t mSamples64 = 0; ///< likewise
    ByteReader mSizes = ByteReader(mBytes).Take(0);
    WAVChunks mChunks;
};

} // namespace

WAVHead ReadWAVHead(ByteReader& aReader) {
    WAVHead head;
    const BoxType kind = BoxType::Read(aReader);
    if (kind == "riff" && HasRest(aReader, kRiffRest)) {
        head.mKind = kind;
        head.mLayout = kChunks_W64;
        head.mSize = aReader.ReadLittle(8);
        head.mForm =
            BoxType::Read(aReader) == "wave" && HasRest(aReader, kWaveRest) ? BoxType("WAVE") : BoxType();
        return head;
    }
    if (kind == "RIFX") {
        head.mLayout = kChunks_IFF;
    } else if (kind != "RIFF" && kind != "RF64" && kind != "BW64") {
        return head;
    }
    head.mKind = kind;
    head.mSize = head.mLayout.mfLittle ? aReader.ReadLittle32() : aReader.ReadBig32();
    head.mForm = BoxType::Read(aReader);
    return head;
}

WAVChunks ReadWAVChunks(MediaBytes& aBytes, const ByteReader& aReader, const WAVHead& aHead,
                        const CodePage& aCodePage) {
    return Reading(aBytes, aReader, aHead, aCodePage).Read(aReader);
}
