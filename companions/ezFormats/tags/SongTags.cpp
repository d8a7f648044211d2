#include "ezFormats/tags/SongTags.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"

#include "ezBytes/AudioTails.h"
#include "ezBytes/ByteReader.h"
#include "ezBytes/LeadingTag.h"
#include "ezBytes/Limits.h"
#include "ezBytes/ReadShare.h"

#include <algorithm>

namespace {

/// The bytes of leading tags. What is left of one after its picture is read with the frames that follow, by
/// the read that they take anyway.
class TagBytes : public ReadShare {
public:
    TagBytes(MediaBytes& aBytes, std::uint32_t aNext)
        : ReadShare(aBytes, kMusicTexts_MaxReads), mBytes(aBytes), mNext(aNext) {}
    ~TagBytes() override;

    /// Where the tag ends that is read next. Until then nobody else reads the media, so that what was
    /// borrowed stays buffered.
    void SetEndOfTag(std::uint64_t anEnd) {
        mEnd = anEnd;
        KeepBuffered(nullptr, 0, 0);
    }

    std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override {
        if (aPosition < mEnd && mEnd - aPosition <= kMusicTexts_RestSize && !mBytes.HasBuffered(aPosition)) {
            mBytes.Load(aPosition, static_cast<std::size_t>(mEnd - aPosition) + mNext);
        }
        const std::size_t count = ReadShare::Borrow(aPosition, aBytes);
        KeepBuffered(count != 0 ? *aBytes : nullptr, aPosition, count);
        return count;
    }

private:
    MediaBytes& mBytes;
    std::uint32_t mNext;
    std::uint64_t mEnd = 0;
};

TagBytes::~TagBytes() = default;

ByteReader ReaderAt(ByteSource& aBytes, std::uint64_t aPosition) {
    ByteReader reader(aBytes);
    reader.Skip(aPosition);
    return reader;
}

} // namespace

LeadingTags ReadLeadingTags(MediaBytes& aBytes, const CodePage& aCodePage, std::uint32_t aNext) {
    LeadingTags tags;
    TagBytes few(aBytes, aNext);
    for (std::uint32_t count = 0; count < kLeadingTag_MaxCount; ++count) {
        if (!aBytes.HasBuffered(tags.mEnd, 1)) {
            aBytes.Load(tags.mEnd, aNext); // for the sound, if no other tag stands there
        }
        LeadingTag tag = ReadLeadingTag(aBytes, tags.mEnd);
        if (tag.mSize == 0) {
            break;
        }
        const std::uint64_t body = tags.mEnd + tag.mHeaderSize;
        tags.mfBelieved = tag.mSize < aBytes.GetEnd() - tags.mEnd;
        if (tag.mfID3 && !tags.mTexts.IsComplete()) {
            tag.mID3.mSize =
                static_cast<std::uint32_t>(std::min<std::uint64_t>(tag.mID3.mSize, aBytes.GetEnd() - body));
            few.SetEndOfTag(body + tag.mID3.mSize);
            CoverFacts cover;
            tags.mTexts.Complete(ReadID3v2Texts(ReaderAt(few, body), tag.mID3, aCodePage, &cover));
            tags.mCover.Complete(cover);
        }
        tags.mEnd = tags.mfBelieved ? tags.mEnd + tag.mSize : body;
        if (!tags.mfBelieved) {
            return tags;
        }
    }
    return tags;
}

TailTags ReadTailTags(MediaBytes& aBytes, std::uint64_t aStart, const CodePage& aCodePage,
                      std::uint32_t aSize) {
    TailTags tags;
    tags.mStart = aBytes.GetEnd();
    const BytePiece place = AudioTailPlace(aBytes, aStart, aSize);
    const auto size = static_cast<std::size_t>(place.mSize);
    if (!aBytes.GetSize() || !aBytes.Load(place.mOffset, size) || !aBytes.HasBuffered(place.mOffset, size)) {
        return tags;
    }
    const AudioTails tails = FindAudioTails(aBytes, aStart, aSize);
    tags.mStart = tails.mAudioEnd;
    ReadShare few(aBytes, kMusicTexts_MaxReads);
    // ID3v1 stands in the last bytes, which are buffered now.
    const MusicTexts plain = ReadID3v1Texts(few, tails, aCodePage);
    if (tails.mAPEItems != 0) {
        tags.mTexts = ReadAPETexts(few, tails, aCodePage, tags.mCover);
    }
    if (tails.mLyricsFields != 0) {
        tags.mTexts.Complete(ReadLyrics3Texts(few, tails, aCodePage));
    }
    tags.mTexts.Complete(plain);
    return tags;
}

void TakeID3Chunk(MediaBytes& aBytes, const ByteReader& aChunk, const CodePage& aCodePage, MusicTexts& aTexts,
                  CoverFacts& aCover) {
    ReadShare few(aBytes, kMusicTexts_MaxReads);
    ByteReader reader = ReaderAt(few, aChunk.GetPosition()).Take(aChunk.GetLeft());
    ID3Tag tag;
    if (ReadID3Tag(reader, &tag)) {
        tag.mSize = static_cast<std::uint32_t>(std::min<std::uint64_t>(tag.mSize, reader.GetLeft()));
        aTexts.Complete(ReadID3v2Texts(reader, tag, aCodePage, &aCover));
    }
}
