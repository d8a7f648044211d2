#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/ID3Picture.h"
#include "ezBytes/ID3Tag.h"
#include "ezBytes/InflatedBytes.h"
#include "ezBytes/LeadingTag.h"
#include "ezBytes/Limits.h"

#include <algorithm>

namespace {

/// The picture of a frame, not found where there is none. *aType is its type.
Cover PictureOf(ByteReader& aBody, unsigned aVersion, std::uint32_t* aType) {
    ID3Picture picture;
    if (!ReadID3Picture(aBody, aVersion, kCover_MaxText, &picture)) {
        return {};
    }
    *aType = picture.mType;
    return CoverOfRest(aBody, picture.mMimeType);
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

Cover CoverOfID3(ByteReader aReader) {
    ID3Tag tag;
    CoverChoice choice;
    if (!ReadID3Tag(aReader, &tag)) {
        return choice.Get();
    }
    ID3Frames frames(aReader, tag);
    ezCString id;
    ByteReader body = aReader;
    ID3Compression compression;
    std::uint32_t compressedLeft = kCover_MaxCompressedPictures;
    while (!choice.IsFinal() && frames.NextStored(&id, &body, &compression)) {
        std::uint32_t type = 0;
        if (!IsID3Picture(id.View(), tag.mVersion)) {
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

Cover FindID3Cover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    std::uint64_t position = 0;
    for (std::uint32_t count = 0; count < kLeadingTag_MaxCount; ++count) {
        const LeadingTag tag = ReadLeadingTag(bytes, position);
        if (tag.mSize == 0) {
            break;
        }
        ByteReader reader(bytes);
        reader.Skip(position);
        Cover cover = CoverOfID3(reader); // not found in a tag of another kind
        if (cover.IsFound()) {
            return cover;
        }
        position += tag.mSize; // beyond the bytes, nothing stands
    }
    return {};
}
