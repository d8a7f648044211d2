#include "ezBytes/PictureBlock.h"

#include <algorithm>

namespace {

using namespace std::string_view_literals;

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

ezCString PictureMimeType(std::string_view aFirstBytes, const ezCString& aStated) {
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

bool PictureChoice::Takes(std::uint32_t aType) {
    const bool fFront = aType == kPictureType_FrontCover;
    if (aType == kPictureType_FileIcon || aType == kPictureType_OtherFileIcon || mfFront ||
        (mfAny && !fFront)) {
        return false;
    }
    mfAny = true;
    mfFront = fFront;
    return true;
}

bool ReadPictureBlock(ByteReader& aReader, std::uint64_t aBlockSize, std::uint32_t aMaxText,
                      PictureBlock* aBlock) {
    const std::uint64_t start = aReader.GetPosition();
    aBlock->mType = aReader.ReadBig32();
    const std::uint32_t mimeSize = aReader.ReadBig32();
    aReader.Require(mimeSize <= aMaxText);
    aBlock->mMimeType = aReader.ReadText(aReader.HasFailed() ? 0 : mimeSize);
    aReader.Skip(aReader.ReadBig32()); // the description
    aReader.Skip(16);                  // width, height, depth, colours
    aBlock->mDataSize = aReader.ReadBig32();
    const std::uint64_t offset = aReader.GetPosition() - start;
    aReader.Require(offset <= aBlockSize && aBlock->mDataSize <= aBlockSize - offset);
    aBlock->mDataOffset = static_cast<std::uint32_t>(std::min<std::uint64_t>(offset, UINT32_MAX));
    return !aReader.HasFailed();
}
