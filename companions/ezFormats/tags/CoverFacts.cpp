#include "ezFormats/tags/CoverFacts.h"

#include "ezFormats/detail/Limits.h"

#include "ezPlatform/media/MediaInfo.h"

#include <string_view>

void CoverFacts::Offer(std::uint32_t aType, const ezCString& aMimeType, std::uint64_t aSize) {
    if (!aMimeType.IsEmpty() && aSize != 0 && mChoice.Takes(aType)) {
        mMimeType = aMimeType;
        mSize = aSize;
    }
}

void CoverFacts::OfferBlock(ByteReader aBlock) {
    PictureBlock block;
    if (!ReadPictureBlock(aBlock, aBlock.GetLeft(), kCoverFacts_MaxText, &block)) {
        return;
    }
    unsigned char first[kPictureSignature_Size] = {};
    const std::size_t count = block.mDataSize < sizeof first ? block.mDataSize : sizeof first;
    if (aBlock.Read(first, count)) {
        const std::string_view bytes(reinterpret_cast<const char*>(first), count);
        Offer(block.mType, PictureMimeType(bytes, block.mMimeType), block.mDataSize);
    }
}

void CoverFacts::Store(ezMediaInfo& anInfo) const {
    if (!mMimeType.IsEmpty()) {
        anInfo.Set(kezInfo_CoverMimeType, mMimeType, true);
        anInfo.Set(kezInfo_CoverSize, ezuint64(mSize), true);
    }
}
