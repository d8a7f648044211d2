#include "ezThumbnails/detail/JpegInMemory.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/streams/MemoryStream.h"

#include <cstring>

namespace {

/// Of a copy; empty where there is no memory for it.
ezStream* NewStream(std::string_view aBytes) {
    void* const block = aBytes.empty() ? nullptr : ezMalloc(aBytes.size());
    if (block != nullptr) {
        std::memcpy(block, aBytes.data(), aBytes.size());
    }
    return new ezMemoryStream(block, block != nullptr ? aBytes.size() : 0, "");
}

} // namespace

JpegInMemory::JpegInMemory(std::string_view aBytes)
    : mStream(NewStream(aBytes)), mReader(mStream.get(), aBytes.size()), mDecoder(&mReader) {}

bool JpegInMemory::ReadHeader(PictureHeader* aHeader) {
    return mReader.Fill() && mDecoder.ReadHeader(aHeader);
}

bool JpegInMemory::Decode(const PictureHeader& aHeader, Picture* aPicture) {
    PictureWish wish;
    wish.mWidth = aHeader.mWidth;
    wish.mHeight = aHeader.mHeight;
    return mDecoder.Decode(wish, aPicture);
}
