#include "ezThumbnails/detail/CommentCover.h"
#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/OggTags.h"

namespace {

/// A stream that may have a cover.
struct Stream {
    const OggMark* mMark = nullptr;
    std::uint32_t mSerial = 0;
};

/// The first stream of sound, and the first of video.
struct Streams {
    Stream mSound;
    Stream mVideo;
};

/// Reads the first pages, one of each stream. aFile stands after them then.
/// @param aPagesLeft  counted down
Streams ReadStreams(ByteReader& aFile, std::uint32_t& aPagesLeft) {
    Streams streams;
    OggPage page;
    ByteReader next = aFile;
    ByteReader body = aFile;
    for (; aPagesLeft != 0 && ReadOggPage(next, &page, &body) && page.mfBegins; --aPagesLeft) {
        const OggMark* const mark = FindOggMark(body);
        aFile = next;
        if (mark != nullptr && (mark->mRole == OggRole::Sound || mark->mRole == OggRole::Video)) {
            Stream& stream = mark->mRole == OggRole::Video ? streams.mVideo : streams.mSound;
            stream = stream.mMark == nullptr ? Stream{mark, page.mSerial} : stream;
        }
    }
    return streams;
}

void OfferPictures(ByteSource& aBytes, const ByteReader& aPages, const Stream& aStream,
                   std::uint32_t aMaxPages, CoverChoice& aChoice) {
    if (aStream.mMark == nullptr) {
        return;
    }
    OggTags tags(aBytes, aPages, aStream.mSerial, *aStream.mMark, aMaxPages);
    bool fPicture = false;
    for (ByteReader body = aPages; !aChoice.IsFinal() && tags.Next(&fPicture, &body);) {
        (fPicture ? OfferPictureBlock : OfferCommentPictures)(body, &tags.GetPacket(), aChoice);
    }
}

} // namespace

Cover FindOggCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader pages(bytes);
    std::uint32_t pagesLeft = kCover_MaxPages;
    const Streams streams = ReadStreams(pages, pagesLeft);
    CoverChoice choice;
    OfferPictures(bytes, pages, streams.mSound, pagesLeft, choice);
    OfferPictures(bytes, pages, streams.mVideo, pagesLeft, choice);
    return choice.Get();
}
