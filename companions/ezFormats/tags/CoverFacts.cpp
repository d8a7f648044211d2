#include "ezFormats/tags/CoverFacts.h"

#include "ezFormats/detail/Limits.h"

#include "ezBytes/APEItems.h"
#include "ezBytes/ID3Picture.h"

#include "ezPlatform/media/MediaInfo.h"

#include <string>

void CoverFacts::Offer(std::uint32_t aType, const ezCString& aMimeType, std::uint64_t aSize) {
    if (!aMimeType.IsEmpty() && aSize != 0 && mChoice.Takes(aType)) {
        mMimeType = aMimeType;
        mSize = aSize;
    }
}

void CoverFacts::OfferPicture(std::uint32_t aType, const ezCString& aStatedMimeType,
                              const ByteReader& aPicture) {
    const std::string first = ReadPictureSignature(aPicture);
    if (!first.empty() && aStatedMimeType != "-->") { // a link's text is not the picture
        Offer(aType, PictureMimeType(first, aStatedMimeType), aPicture.GetLeft());
    }
}

void CoverFacts::OfferBlock(ByteReader aBlock) {
    PictureBlock block;
    if (ReadPictureBlock(aBlock, aBlock.GetLeft(), kCoverFacts_MaxText, &block)) {
        OfferPicture(block.mType, block.mMimeType, aBlock.Take(block.mDataSize));
    }
}

void CoverFacts::OfferFrame(ByteReader aFrame, unsigned aVersion) {
    ID3Picture picture;
    if (ReadID3Picture(aFrame, aVersion, kCoverFacts_MaxText, &picture)) {
        OfferPicture(picture.mType, picture.mMimeType, aFrame);
    }
}

void CoverFacts::OfferAPEItem(const ezCString& aKey, ByteReader aValue) {
    std::uint32_t type = 0;
    if (IsAPEPicture(aKey.View(), &type) && SkipToAPEPicture(aValue, kCoverFacts_MaxText)) {
        OfferPicture(type, "", aValue);
    }
}

void CoverFacts::Complete(const CoverFacts& aCover) {
    if (!IsFound()) {
        *this = aCover;
    }
}

void CoverFacts::Store(ezMediaInfo& anInfo) const {
    if (IsFound()) {
        anInfo.Set(kezInfo_CoverMimeType, mMimeType, true);
        anInfo.Set(kezInfo_CoverSize, ezuint64(mSize), true);
    }
}
