#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/ID3Tag.h"

namespace {

void OfferPicture(ByteReader& aBody, CoverChoice& aChoice) {
    PictureBlock block;
    if (ReadPictureBlock(aBody, aBody.GetLeft(), kCover_MaxText, &block) && block.mMimeType != "-->") {
        aChoice.Offer(block.mType, CoverOfRest(aBody.Take(block.mDataSize), block.mMimeType));
    }
}

} // namespace

Cover FindFLACCover(ezStream& aStream) {
    constexpr unsigned kLast = 0x80;
    constexpr unsigned kPicture = 6;
    CoverStreamBytes bytes(aStream);
    ByteReader reader(bytes);
    ByteReader start = reader;
    ID3Tag tag;
    if (ReadID3Tag(start, &tag)) {
        reader = start;
        reader.Skip(tag.GetRest());
    }
    CoverChoice choice;
    reader.Require(reader.ReadText(4) == "fLaC");
    // Every block takes four bytes at least, and the reader gives up after so many.
    for (bool isLast = false; !isLast && !reader.HasFailed() && !choice.IsFinal();) {
        const unsigned head = reader.ReadByte();
        isLast = (head & kLast) != 0;
        ByteReader body = reader.Take(reader.ReadBig(3));
        if (!body.HasFailed() && (head & ~kLast) == kPicture) {
            OfferPicture(body, choice);
        }
    }
    return choice.Get();
}
