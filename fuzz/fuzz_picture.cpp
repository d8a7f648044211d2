// The door: a picture that a thumbnail is made of. The input says which thumbnail, and is the picture.

#include "fuzz/support/Check.h"
#include "fuzz/support/FuzzInput.h"
#include "fuzz/support/HeapBound.h"
#include "fuzz/support/PictureForm.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

namespace {

constexpr std::uint64_t kFewPixels = 1 << 18; ///< of a thumbnail that does not take too long
constexpr std::size_t kRowsOfTheCodecs = std::size_t{32} << 20;
constexpr std::size_t kBytesAPixel = 16; ///< of a thumbnail: itself, turned, and written

/// A picture that arrives in pieces of some bytes, each of which is waited for.
class ArrivingStream : public ezMemoryStream {
public:
    ArrivingStream(void* aBlock, std::size_t aSize, std::size_t aPiece)
        : ezMemoryStream(aBlock, aSize, ezCString()), mPiece(aPiece) {}

    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override {
        if (mPiece == 0) {
            return ezMemoryStream::Read(aBuffer, aSize, aFlag);
        }
        if (++mReads % 3 != 0) {
            *aSize = 0;
            FireThreshold();
            return ezStreamingStatus_NoError;
        }
        *aSize = std::min(*aSize, mPiece);
        return ezMemoryStream::Read(aBuffer, aSize, aFlag);
    }

protected:
    ~ArrivingStream() override = default;

private:
    std::size_t mPiece;
    std::size_t mReads = 0;
};

class PictureSource : public ezThumbnailSource {
public:
    PictureSource(const std::string& aBytes, std::size_t aPiece) : mBytes(aBytes), mPiece(aPiece) {}
    bool Exists() const override { return true; }
    ezStream* GetStream() const override {
        void* const block = ezMalloc(std::max<std::size_t>(mBytes.size(), 1));
        std::memcpy(block, mBytes.data(), mBytes.size());
        return new ArrivingStream(block, mBytes.size(), mPiece);
    }

private:
    const std::string& mBytes;
    std::size_t mPiece; ///< 0: all of it is there
};

/// Small, or one of those at which something changes.
uint32 DecodeSide(FuzzInput& anInput) {
    constexpr std::array<uint32, 8> kEdges = {160,   4096,       4097,       65535,
                                              65536, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    const std::uint64_t number = anInput.Number(2);
    return number >= 0xFFF8 ? kEdges[static_cast<std::size_t>(number - 0xFFF8)]
                            : static_cast<uint32>(number % 512);
}

struct Request {
    ThumbnailInfo mInfo;
    bool mfMended = false; ///< the check sums of a PNG are put right, so that what they guard is reached
    std::size_t mPiece = 0;
};

Request DecodeRequest(FuzzInput& anInput) {
    Request request;
    ThumbnailInfo& info = request.mInfo;
    const unsigned flags = anInput.Byte();
    info.mThumbnailID = flags % 4; // one of them, both, or none
    info.mfFastRescale = (flags & 4) != 0;
    request.mfMended = (flags & 8) != 0;
    request.mPiece = (flags & 16) != 0 ? 1 + anInput.Byte() : 0;
    uint32 width = DecodeSide(anInput);
    uint32 height = DecodeSide(anInput);
    const bool fBox = (flags & 32) == 0;
    // What is beyond the generator's limits costs nothing; a large box is mostly not filled, but may be.
    const std::uint64_t costly = fBox ? std::uint64_t{PictureThumbnailGenerator::kMaxSide} * kFewPixels
                                      : std::uint64_t{PictureThumbnailGenerator::kMaxThumbnailPixels};
    const std::uint64_t pixels = static_cast<std::uint64_t>(width) * height;
    if (pixels > kFewPixels && pixels <= costly) {
        height = static_cast<uint32>(std::max<std::uint64_t>(kFewPixels / width, 1));
    }
    if (!fBox) {
        info.mWidth = width;
        info.mHeight = height;
        info.mPixelRatioHeight = anInput.Byte();
        info.mPixelRatioWidth = anInput.Byte();
    } else {
        info.mWidthMax = width;
        info.mHeightMax = height;
    }
    return request;
}

std::size_t HeapFor(const ThumbnailInfo& anInfo) {
    const std::uint64_t pixels = std::max(static_cast<std::uint64_t>(anInfo.mWidth) * anInfo.mHeight,
                                          static_cast<std::uint64_t>(anInfo.mWidthMax) * anInfo.mHeightMax);
    const auto most = std::min<std::uint64_t>(pixels, PictureThumbnailGenerator::kMaxThumbnailPixels);
    return PictureThumbnailGenerator::kMaxMemory + kRowsOfTheCodecs +
           kBytesAPixel * static_cast<std::size_t>(most);
}

/// The thumbnail; nothing when there is none, and then nothing is written.
std::optional<std::string> Build(const ThumbnailInfo& anInfo, const std::string& aBytes, std::size_t aPiece) {
    const MemoryFolder folder;
    const ezCString path(folder.Path("thumbnail").c_str());
    const HeapBound bound(HeapFor(anInfo));
    PictureThumbnailGenerator generator;
    const PictureSource source(aBytes, aPiece);
    ezFile file;
    FuzzCheck(file.Create(path, true, ezFileAccessMode_ReadWrite));
    const bool fBuilt = generator.BuildThumbnail(&anInfo, &source, &file);
    FuzzCheck(fBuilt == (file.LengthAtOpen() > 0));
    FuzzCheck(file.Close());
    if (!fBuilt) {
        return std::nullopt;
    }
    ezFile written;
    FuzzCheck(written.Open(path, ezFileOpenMode_Read, ezFileAccessMode_ReadWrite));
    std::string thumbnail(static_cast<std::size_t>(written.LengthAtOpen()), '\0');
    FuzzCheck(written.Read(thumbnail.data(), thumbnail.size()) == static_cast<int>(thumbnail.size()));
    return thumbnail;
}

void CheckSize(const ThumbnailInfo& anInfo, const PictureForm& aForm) {
    if (anInfo.mWidthMax != 0 && anInfo.mHeightMax != 0) {
        FuzzCheck(aForm.mWidth <= anInfo.mWidthMax && aForm.mHeight <= anInfo.mHeightMax);
        return;
    }
    uint32 width = 0;
    uint32 height = 0;
    GetThumbnailFinalSize(&anInfo, 1, 1, &width, &height); // without a box it does not depend on the picture
    FuzzCheck(aForm.mWidth == std::max<uint32>(width, 1) && aForm.mHeight == std::max<uint32>(height, 1));
}

/// It is whole: also in the eyes of the generator, which makes a thumbnail of the same size of it.
void CheckThumbnail(const ThumbnailInfo& anInfo, const std::string& aThumbnail) {
    const bool fJpeg = (anInfo.mThumbnailID & kJPEGThumbnailID) != 0;
    const PictureForm form = fJpeg ? PictureForm_OfJpeg(aThumbnail) : PictureForm_OfPng(aThumbnail);
    CheckSize(anInfo, form);
    ThumbnailInfo again = anInfo;
    again.mWidthMax = 0;
    again.mHeightMax = 0;
    again.mPixelRatioHeight = 0;
    again.mPixelRatioWidth = 0;
    again.mWidth = form.mWidth;
    again.mHeight = form.mHeight;
    again.mfFastRescale = false;
    const std::optional<std::string> second = Build(again, aThumbnail, 0);
    FuzzCheck(second.has_value());
    if (!fJpeg) {
        FuzzCheck(Build(again, *second, 0) == second); // the first time, what cannot be seen loses its colour
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    FuzzInput input(aData, aSize);
    const Request request = DecodeRequest(input);
    std::string picture;
    while (!input.IsEmpty()) {
        picture.push_back(static_cast<char>(input.Byte()));
    }
    if (request.mfMended) {
        PictureForm_MendPng(picture);
    }
    const std::optional<std::string> thumbnail = Build(request.mInfo, picture, 0);
    if (request.mPiece != 0) {
        FuzzCheck(Build(request.mInfo, picture, request.mPiece) == thumbnail);
    }
    if (thumbnail.has_value()) {
        CheckThumbnail(request.mInfo, *thumbnail);
    }
    return 0;
}
