#include "ezThumbnails/PictureThumbnailGenerator.h"

#include "ezThumbnails/detail/ByteSink.h"
#include "ezThumbnails/detail/JpegDecoder.h"
#include "ezThumbnails/detail/PictureEncoder.h"
#include "ezThumbnails/detail/PictureReader.h"
#include "ezThumbnails/detail/PngDecoder.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/Stream.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

namespace {

constexpr unsigned char kJpegStart[] = {0xFF, 0xD8, 0xFF};
constexpr unsigned char kPngStart[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

/// The registered names, and those that older software gives.
constexpr const char* kMimeTypes[] = {"image/jpeg", "image/jpg", "image/pjpeg", "image/png", "image/x-png"};

template <std::size_t kCount>
bool StartsWith(const PictureReader& aReader, const unsigned char (&aStart)[kCount]) {
    return aReader.GetCount() >= kCount && std::memcmp(aReader.GetData(), aStart, kCount) == 0;
}

/// Null when the bytes are of neither kind.
std::unique_ptr<PictureDecoder> NewDecoder(PictureReader* aReader) {
    if (StartsWith(*aReader, kJpegStart)) {
        return std::make_unique<JpegDecoder>(aReader);
    }
    if (StartsWith(*aReader, kPngStart)) {
        return std::make_unique<PngDecoder>(aReader);
    }
    return nullptr;
}

/// What is wanted of a picture, its sides as they are stored. False when it is too large.
bool MakeWish(const ThumbnailInfo& anInfo, const PictureHeader& aHeader, PictureWish* aWish) {
    const bool fOnItsSide = LiesOnItsSide(aHeader.mOrientation);
    uint32 width = aHeader.mWidth;
    uint32 height = aHeader.mHeight;
    if (fOnItsSide) {
        std::swap(width, height);
    }
    GetThumbnailFinalSize(&anInfo, width, height, &width, &height);
    width = std::max<uint32>(width, 1);
    height = std::max<uint32>(height, 1);
    if (width > PictureThumbnailGenerator::kMaxSide || height > PictureThumbnailGenerator::kMaxSide ||
        static_cast<std::uint64_t>(width) * height > PictureThumbnailGenerator::kMaxThumbnailPixels) {
        return false;
    }
    aWish->mWidth = fOnItsSide ? height : width;
    aWish->mHeight = fOnItsSide ? width : height;
    aWish->mfFast = anInfo.mfFastRescale;
    aWish->mfOnWhite = (anInfo.mThumbnailID & kJPEGThumbnailID) != 0;
    return true;
}

/// Reads the picture in the size that is asked for, as it is meant to be seen. *afTooCostly tells that it
/// failed for the picture's cost.
bool ReadPicture(const ThumbnailInfo& anInfo, ezStream* aStream, Picture* aPicture, bool* afTooCostly) {
    PictureReader reader(aStream, PictureThumbnailGenerator::kMaxSourceBytes);
    if (!reader.Fill()) {
        return false;
    }
    const std::unique_ptr<PictureDecoder> decoder = NewDecoder(&reader);
    if (decoder == nullptr) {
        return false;
    }
    PictureHeader header;
    PictureWish wish;
    const bool fRead = decoder->ReadHeader(&header) && MakeWish(anInfo, header, &wish) &&
                       decoder->Decode(wish, aPicture) && Straighten(aPicture, header.mOrientation);
    *afTooCostly = !fRead && (decoder->IsTooCostly() || reader.IsPastLimit());
    return fRead;
}

bool WriteAll(const ByteSink& aBytes, ezFile* aFile) {
    const int written = aFile->Write(aBytes.GetData(), aBytes.GetCount());
    return written >= 0 && static_cast<std::size_t>(written) == aBytes.GetCount();
}

bool MakeThumbnail(const ThumbnailInfo& anInfo, const ezThumbnailSource& aSource, bool afJpeg, ezFile* aFile,
                   bool* afTooCostly) {
    Picture picture;
    const ezStreamOwner stream(aSource.GetStream());
    if (stream == nullptr || !stream->IsOpened() ||
        !ReadPicture(anInfo, stream.get(), &picture, afTooCostly)) {
        return false;
    }
    ByteSink bytes;
    return (afJpeg ? EncodeJpeg(picture, &bytes) : EncodePng(picture, &bytes)) && WriteAll(bytes, aFile);
}

} // namespace

bool PictureDecoder::IsWithinLimits(const PictureHeader& aHeader) {
    mfTooCostly =
        aHeader.mWidth > PictureThumbnailGenerator::kMaxSide ||
        aHeader.mHeight > PictureThumbnailGenerator::kMaxSide ||
        static_cast<std::uint64_t>(aHeader.mWidth) * aHeader.mHeight > PictureThumbnailGenerator::kMaxPixels;
    return !mfTooCostly && aHeader.mWidth != 0 && aHeader.mHeight != 0;
}

PictureThumbnailGenerator::PictureThumbnailGenerator() : ezThumbnailGenerator("PictureThumbnailGenerator") {}

PictureThumbnailGenerator::~PictureThumbnailGenerator() = default;

bool PictureThumbnailGenerator::IsNoted(const ThumbnailInfo& anInfo) const {
    return mfNoted && mNotedItem == anInfo.mUniqueID && mNotedPath == anInfo.mFilePath.GetFullPath();
}

bool PictureThumbnailGenerator::HasMetCost(const ThumbnailInfo& anInfo) const {
    return mfAllTooCostly && IsNoted(anInfo);
}

void PictureThumbnailGenerator::NoteFailure(const ThumbnailInfo& anInfo, bool afTooCostly) {
    mfAllTooCostly = afTooCostly && (mfAllTooCostly || !IsNoted(anInfo));
    mfNoted = true;
    mNotedItem = anInfo.mUniqueID;
    mNotedPath = anInfo.mFilePath.GetFullPath();
}

void PictureThumbnailGenerator::ForgetFailures(const ThumbnailInfo& anInfo) {
    mfNoted = mfNoted && !IsNoted(anInfo);
}

uint32 PictureThumbnailGenerator::CanConvert(const ezCString& aMimeType) {
    const std::string_view type = ezTrimmed(aMimeType.View().substr(0, aMimeType.View().find(';')));
    for (const char* known : kMimeTypes) {
        if (ezIsEqualNoCase(type, known)) {
            return kJPEGThumbnailID | kPNGThumbnailID;
        }
    }
    return kNoThumbnailID;
}

bool PictureThumbnailGenerator::BuildThumbnail(const ThumbnailInfo* anInfo, const ezThumbnailSource* aSource,
                                               ezFile* aFile) {
    if (anInfo == nullptr || aSource == nullptr || aFile == nullptr) {
        return false;
    }
    const bool fJpeg = (anInfo->mThumbnailID & kJPEGThumbnailID) != 0;
    if (!fJpeg && (anInfo->mThumbnailID & kPNGThumbnailID) == 0) {
        return false;
    }
    bool fTooCostly = false;
    if (!MakeThumbnail(*anInfo, *aSource, fJpeg, aFile, &fTooCostly)) {
        NoteFailure(*anInfo, fTooCostly);
        return false;
    }
    ForgetFailures(*anInfo);
    return true;
}
