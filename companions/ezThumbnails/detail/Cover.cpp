#include "ezThumbnails/detail/Cover.h"

#include <string>

Cover CoverOfRest(const ByteReader& aReader, const ezCString& aStatedMimeType) {
    Cover cover;
    const std::uint64_t size = aReader.GetLeft();
    if (size == 0 || size > (aReader.IsUnsynchronised() ? kCover_MaxHeldSize : kCover_MaxSize)) {
        return cover;
    }
    const std::string first = ReadPictureSignature(aReader);
    cover.mMimeType = first.empty() ? ezCString() : PictureMimeType(first, aStatedMimeType);
    cover.mPieces.push_back({aReader.GetPosition(), size});
    cover.mfUnsynchronised = aReader.IsUnsynchronised();
    return cover;
}

void CoverChoice::Offer(std::uint32_t aType, const Cover& aCover) {
    if (aCover.IsFound() && mChoice.Takes(aType)) {
        mCover = aCover;
    }
}
