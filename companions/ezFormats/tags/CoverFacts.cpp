#include "ezFormats/tags/CoverFacts.h"

#include "ezFormats/detail/Limits.h"

#include "ezBytes/ID3Picture.h"

#include "ezPlatform/media/MediaInfo.h"

#include <string_view>

void CoverFacts::Offer(std::uint32_t aType, const ezCString& aMimeType, std::uint64_t aSize) {
    if (!aMimeType.IsEmpty() && aSize != 0 && mChoice.Takes(aType)) {
        mMimeType = aMimeType;
        mSize = aSize;
    }
}

/// aData stands at the picture.
void CoverFacts::OfferData(std::uint32_t aType, const ezCString& aStatedMimeType, ByteReader& aData,
                           std::uint64_t aSize) {
    unsigned char first[kPictureSignature_Size] = {};
    const std::size_t count = aSize < sizeof first ? static_cast<std::size_t>(aSize) : sizeof first;
    if (aData.Read(first, count)) {
        const std::string_view bytes(reinterpret_cast<const char*>(first), count);
        Offer(aType, PictureMimeType(bytes, aStatedMimeType), aSize);
    }
}

void CoverFacts::OfferBlock(ByteReader aBlock) {
    PictureBlock block;
    if (ReadPictureBlock(aBlock, aBlock.GetLeft(), kCoverFacts_MaxText, &block)) {
        OfferData(block.mType, block.mMimeType, aBlock, block.mDataSize);
    }
}

void CoverFacts::OfferFrame(ByteReader aBody, unsigned aVersion) {
    ID3Picture picture;
    if (ReadID3Picture(aBody, aVersion, kCoverFacts_MaxText, &picture)) {
        OfferData(picture.mType, picture.mMimeType, aBody, aBody.GetLeft());
    }
}

void CoverFacts::Store(ezMediaInfo& anInfo) const {
    if (!mMimeType.IsEmpty()) {
        anInfo.Set(kezInfo_CoverMimeType, mMimeType, true);
        anInfo.Set(kezInfo_CoverSize, ezuint64(mSize), true);
    }
}
