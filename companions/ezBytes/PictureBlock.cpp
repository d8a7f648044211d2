#include "ezBytes/PictureBlock.h"

#include "ezBytes/Limits.h"

#include "ezBytes/ByteSource.h"

#include "ezPlatform/text/Base64.h"
#include "ezPlatform/text/Case.h"

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

/// True for what may follow "image/" (RFC 6838, 4.2), so far as it is in lower case; not so for "-->", a
/// link.
bool IsSubtype(std::string_view aName) {
    static constexpr std::string_view kMarks = "!#$&-^_.+";
    return !aName.empty() && std::all_of(aName.begin(), aName.end(), [](char aCharacter) {
        const bool fWord =
            (aCharacter >= 'a' && aCharacter <= 'z') || (aCharacter >= '0' && aCharacter <= '9');
        return fWord || kMarks.find(aCharacter) != std::string_view::npos;
    });
}

/// The decoded start of a base64 text, in which the picture begins, or nothing that is of use does.
std::string DecodedHead(ByteReader aText) {
    const auto count =
        static_cast<std::size_t>(std::min<std::uint64_t>(aText.GetLeft(), kPictureComment_MaxHead));
    const ezCString text = aText.ReadText(count);
    std::string decoded(kPictureComment_MaxHead / 4 * 3, '\0');
    decoded.resize(ezBase64_Decode(text.c_str(), decoded.data(), decoded.size()));
    return decoded;
}

/// Bytes that a base64 text without other characters decodes to.
std::uint64_t DecodedSize(ByteReader aText) {
    const std::uint64_t size = aText.GetLeft();
    if (size < 4) {
        return 0;
    }
    aText.Skip(size - 2);
    const ezCString end = aText.ReadText(2);
    const std::string_view last = end.View();
    const auto filled = static_cast<std::uint64_t>(std::count(last.begin(), last.end(), '='));
    return (size - filled) / 4 * 3 + (size - filled) % 4 * 3 / 4;
}

} // namespace

std::string ReadPictureSignature(ByteReader aReader) {
    std::string bytes;
    while (bytes.size() < kPictureSignature_Size && aReader.GetLeft() != 0) {
        bytes.push_back(static_cast<char>(aReader.ReadByte()));
    }
    return aReader.HasFailed() ? std::string() : bytes;
}

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
    if (!IsSubtype(type.View())) {
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

bool ReadPictureComment(std::string_view aKey, const ByteReader& aText, std::uint32_t aMaxText,
                        PictureBlock* aBlock) {
    const bool fBlock = ezIsEqualNoCase(aKey, "METADATA_BLOCK_PICTURE");
    if (!fBlock && !ezIsEqualNoCase(aKey, "COVERART")) {
        return false;
    }
    const std::string head = DecodedHead(aText);
    *aBlock = PictureBlock();
    if (fBlock) {
        BlockBytes bytes(reinterpret_cast<const unsigned char*>(head.data()), head.size());
        ByteReader reader(bytes);
        // Characters that are no base64 only make it less than this.
        if (!ReadPictureBlock(reader, aText.GetLeft() / 4 * 3 + 3, aMaxText, aBlock) ||
            aBlock->mMimeType == "-->") {
            return false;
        }
    } else {
        aBlock->mDataSize =
            static_cast<std::uint32_t>(std::min<std::uint64_t>(DecodedSize(aText), UINT32_MAX));
    }
    const std::string_view data = std::string_view(head).substr(aBlock->mDataOffset);
    aBlock->mMimeType = PictureMimeType(data, aBlock->mMimeType);
    return aBlock->mDataSize != 0 && !aBlock->mMimeType.IsEmpty();
}
