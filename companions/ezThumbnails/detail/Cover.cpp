#include "ezThumbnails/detail/Cover.h"

#include <algorithm>
#include <string>

namespace {

using namespace std::string_view_literals;

/// Bytes that tell every picture of kSignatures.
constexpr std::size_t kSignatureSize = 12;

struct Signature {
    std::size_t mPlace;
    std::string_view mBytes;
    const char* mMimeType;
};

constexpr Signature kSignatures[] = {
    {0, "\xFF\xD8\xFF"sv, "image/jpeg"}, {0, "\x89PNG\r\n\x1A\n"sv, "image/png"},
    {0, "GIF8"sv, "image/gif"},          {0, "BM"sv, "image/bmp"},
    {8, "WEBP"sv, "image/webp"},
};

} // namespace

ezCString CoverMimeType(std::string_view aFirstBytes, const ezCString& aStated) {
    for (const Signature& signature : kSignatures) {
        if (aFirstBytes.size() >= signature.mPlace + signature.mBytes.size() &&
            aFirstBytes.substr(signature.mPlace, signature.mBytes.size()) == signature.mBytes) {
            return signature.mMimeType;
        }
    }
    ezCString type = aStated.Lower();
    if (type.StartsWith("image/")) {
        type = type.Mid(6);
    }
    if (type.IsEmpty() || type == "-->" || type.Contains("/")) {
        return {};
    }
    return "image/" + (type == "jpg" ? ezCString("jpeg") : type);
}

Cover CoverOfRest(const ByteReader& aReader, const ezCString& aStatedMimeType) {
    Cover cover;
    const std::uint64_t size = aReader.GetLeft();
    if (size == 0 || size > (aReader.IsUnsynchronised() ? kCover_MaxHeldSize : kCover_MaxSize)) {
        return cover;
    }
    ByteReader first = aReader;
    std::string bytes;
    while (bytes.size() < kSignatureSize && first.GetLeft() != 0) {
        bytes.push_back(static_cast<char>(first.ReadByte()));
    }
    cover.mMimeType = first.HasFailed() ? ezCString() : CoverMimeType(bytes, aStatedMimeType);
    cover.mPieces.push_back({aReader.GetPosition(), size});
    cover.mfUnsynchronised = aReader.IsUnsynchronised();
    return cover;
}

void CoverChoice::Offer(std::uint32_t aType, const Cover& aCover) {
    const bool isFront = aType == kFrontCover;
    if (!aCover.IsFound() || aType == kFileIcon || aType == kOtherFileIcon || mfFront ||
        (mCover.IsFound() && !isFront)) {
        return;
    }
    mCover = aCover;
    mfFront = isFront;
}

bool ReadPictureBlock(ByteReader& aReader, std::uint64_t aBlockSize, PictureBlock* aBlock) {
    const std::uint64_t start = aReader.GetPosition();
    aBlock->mType = aReader.ReadBig32();
    const std::uint32_t mimeSize = aReader.ReadBig32();
    aReader.Require(mimeSize <= kCover_MaxText);
    aBlock->mMimeType = aReader.ReadText(aReader.HasFailed() ? 0 : mimeSize);
    aReader.Skip(aReader.ReadBig32()); // the description
    aReader.Skip(16);                  // width, height, depth, colours
    aBlock->mDataSize = aReader.ReadBig32();
    const std::uint64_t offset = aReader.GetPosition() - start;
    aReader.Require(offset <= aBlockSize && aBlock->mDataSize <= aBlockSize - offset);
    aBlock->mDataOffset = static_cast<std::uint32_t>(std::min<std::uint64_t>(offset, UINT32_MAX));
    return !aReader.HasFailed();
}
