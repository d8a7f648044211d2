#include "ezThumbnails/detail/CommentCover.h"
#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/FLACBlocks.h"
#include "ezBytes/LeadingTag.h"

Cover FindFLACCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader reader(bytes);
    reader.Skip(EndOfLeadingTags(bytes, 0));
    reader.Require(reader.ReadText(4) == "fLaC");
    CoverChoice choice;
    FLACBlock block;
    // Every block takes four bytes at least, and the reader gives up after so many.
    for (ByteReader body = reader; !choice.IsFinal() && ReadFLACBlock(reader, &block, &body);) {
        if (block.mType == kFLACBlock_Picture) {
            OfferPictureBlock(body, nullptr, choice);
        } else if (block.mType == kFLACBlock_VorbisComment) {
            OfferCommentPictures(body, nullptr, choice);
        }
        if (block.mfLast) {
            break;
        }
    }
    return choice.Get();
}
