#include "ezThumbnails/detail/Cover.h"

#include <string>

Cover CoverOfRest(const ByteReader& aReader, const ezCString& aStatedMimeType) {
    Cover cover;
    const std::uint64_t size = aReader.GetLeft();
    if (size == 0 || size > (aReader.IsUnsynchronised() ? kCover_MaxHeldSize : kCover_MaxSize)) {
        return cover;
    }
    ByteReader first = aReader;
    std::string bytes;
    while (bytes.size() < kPictureSignature_Size && first.GetLeft() != 0) {
        bytes.push_back(static_cast<char>(first.ReadByte()));
    }
    cover.mMimeType = first.HasFailed() ? ezCString() : PictureMimeType(bytes, aStatedMimeType);
    cover.mPieces.push_back({aReader.GetPosition(), size});
    cover.mfUnsynchronised = aReader.IsUnsynchronised();
    return cover;
}

void CoverChoice::Offer(std::uint32_t aType, const Cover& aCover) {
    if (aCover.IsFound() && mChoice.Takes(aType)) {
        mCover = aCover;
    }
}
