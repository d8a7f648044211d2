#include "ezThumbnails/detail/CommentCover.h"

#include "ezBytes/OggPages.h"
#include "ezBytes/VorbisComments.h"

namespace {

/// Puts a cover where what is left in a reader lies in the file. False where that is not all there.
bool Place(const ByteReader& aReader, OggPacketBytes* aPacket, Cover& aCover) {
    const std::uint64_t position = aReader.GetPosition();
    const std::uint64_t size = aReader.GetLeft();
    if (aPacket == nullptr) {
        aCover.mPieces = {{position, size}};
        return true;
    }
    const bool fThere = size <= kCover_MaxHeldSize && aPacket->Reach(position + size);
    aCover.mPieces = fThere ? aPacket->Slice(position, size) : std::vector<BytePiece>();
    return fThere;
}

} // namespace

void OfferPictureBlock(const ByteReader& aBlock, OggPacketBytes* aPacket, CoverChoice& aChoice) {
    PictureBlock block;
    ByteReader reader = aBlock;
    if (!ReadPictureBlock(reader, reader.GetLeft(), kCover_MaxText, &block) || block.mMimeType == "-->") {
        return;
    }
    const ByteReader picture = reader.Take(block.mDataSize);
    Cover cover = CoverOfRest(picture, block.mMimeType);
    if (cover.IsFound() && Place(picture, aPacket, cover)) {
        aChoice.Offer(block.mType, cover);
    }
}

void OfferCommentPictures(const ByteReader& aComments, OggPacketBytes* aPacket, CoverChoice& aChoice) {
    VorbisComments comments(aComments);
    ezCString key;
    ByteReader text = aComments;
    while (!aChoice.IsFinal() && comments.Next(&key, &text)) {
        PictureBlock block;
        Cover cover;
        if (text.GetLeft() <= kCover_MaxHeldSize &&
            ReadPictureComment(key.View(), text, kCover_MaxText, &block) && Place(text, aPacket, cover)) {
            cover.mMimeType = block.mMimeType;
            cover.mfBase64 = true;
            cover.mEncodedOffset = block.mDataOffset;
            aChoice.Offer(block.mType, cover);
        }
    }
}
