#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/ID3Tag.h"
#include "ezBytes/InflatedBytes.h"

#include <algorithm>

namespace {

/// A description, which ends in one zero or, in the two encodings of 16 bits, in two at an even place.
void SkipDescription(ByteReader& aBody, unsigned anEncoding) {
    if (anEncoding != 1 && anEncoding != 2) {
        aBody.ReadZeroTerminated(kCover_MaxText);
        return;
    }
    std::uint32_t count = 0;
    while (aBody.ReadBig(2) != 0 && aBody.Require(count < kCover_MaxText)) {
        count += 2;
    }
}

/// The picture of a frame, not found where there is none. *aType is its type.
Cover PictureOf(ByteReader& aBody, unsigned aVersion, std::uint32_t* aType) {
    const unsigned encoding = aBody.ReadByte();
    aBody.Require(encoding <= 3);
    const ezCString mimeType = aVersion == 2 ? aBody.ReadText(3) : aBody.ReadZeroTerminated(kCover_MaxText);
    *aType = aBody.ReadByte();
    SkipDescription(aBody, encoding);
    // A link's text is not the picture.
    return aBody.HasFailed() || mimeType == "-->" ? Cover() : CoverOfRest(aBody, mimeType);
}

/// The same of a compressed frame, of which only the head is inflated. A frame that inflates to more than it
/// states is damaged.
Cover CompressedPictureOf(const ByteReader& aStored, const ID3Compression& aCompression, unsigned aVersion,
                          std::uint32_t* aType) {
    const std::uint32_t maxSize = aCompression.mSize.value_or(kCover_MaxInflatedSize);
    const std::uint32_t headSize = std::min(maxSize, kCover_MaxInflatedHead);
    if (maxSize > kCover_MaxInflatedSize || aStored.GetLeft() > kCover_MaxHeldSize) {
        return {};
    }
    InflatedBytes head;
    ByteReader stored = aStored;
    const InflatedBytes::Result result = head.InflateHead(stored, headSize);
    if (result != InflatedBytes::Result::Whole &&
        (result != InflatedBytes::Result::TooLarge || headSize == maxSize)) {
        return {};
    }
    ByteReader body(head);
    Cover cover = PictureOf(body, aVersion, aType);
    cover.mPieces = {{aStored.GetPosition(), aStored.GetLeft()}};
    cover.mfUnsynchronised = aStored.IsUnsynchronised();
    cover.mfDeflated = true;
    cover.mMaxInflated = maxSize;
    cover.mEncodedOffset = static_cast<std::uint32_t>(body.GetPosition());
    return cover;
}

} // namespace

Cover FindID3Cover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader file(bytes);
    ID3Tag tag;
    CoverChoice choice;
    if (!ReadID3Tag(file, &tag)) {
        return choice.Get();
    }
    ID3Frames frames(file, tag);
    ezCString id;
    ByteReader body = file;
    ID3Compression compression;
    std::uint32_t compressedLeft = kCover_MaxCompressedPictures;
    while (!choice.IsFinal() && frames.NextStored(&id, &body, &compression)) {
        std::uint32_t type = 0;
        if (id != (tag.mVersion == 2 ? "PIC" : "APIC")) {
            continue;
        }
        if (!compression.mfCompressed) {
            const Cover cover = PictureOf(body, tag.mVersion, &type);
            choice.Offer(type, cover);
        } else if (compressedLeft != 0) {
            --compressedLeft;
            const Cover cover = CompressedPictureOf(body, compression, tag.mVersion, &type);
            choice.Offer(type, cover);
        }
    }
    return choice.Get();
}
