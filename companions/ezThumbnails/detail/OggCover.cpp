#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/CoverStreamBytes.h"

#include "ezBytes/OggPages.h"
#include "ezBytes/VorbisComments.h"

namespace {

/// Finds the first stream of sound. Null when there is none; else the reader stands after its first page.
/// @param aPagesLeft  counted down
const OggMark* FindSound(ByteReader& aFile, std::uint32_t& aPagesLeft, std::uint32_t* aSerial) {
    OggPage page;
    ByteReader body = aFile;
    while (aPagesLeft != 0 && ReadOggPage(aFile, &page, &body)) {
        --aPagesLeft;
        const OggMark* const mark = page.mfBegins ? FindOggMark(body) : nullptr;
        if (mark != nullptr && !OggKind_IsVideo(mark->mKind)) {
            *aSerial = page.mSerial;
            return mark;
        }
    }
    return nullptr;
}

/// The picture of a comment, whose value is aText; not found for another one.
Cover CoverOf(const ezCString& aKey, const ByteReader& aText, OggPacketBytes& aPacket, std::uint32_t* aType) {
    Cover cover;
    PictureBlock block;
    const std::uint64_t size = aText.GetLeft();
    if (size <= kCover_MaxHeldSize && ReadPictureComment(aKey.View(), aText, kCover_MaxText, &block) &&
        aPacket.Reach(aText.GetPosition() + size)) {
        *aType = block.mType;
        cover.mMimeType = block.mMimeType;
        cover.mPieces = aPacket.Slice(aText.GetPosition(), size);
        cover.mfBase64 = true;
        cover.mEncodedOffset = block.mDataOffset;
    }
    return cover;
}

} // namespace

Cover FindOggCover(ezStream& aStream) {
    CoverStreamBytes bytes(aStream);
    ByteReader file(bytes);
    std::uint32_t serial = 0;
    std::uint32_t pagesLeft = kCover_MaxPages;
    const OggMark* const mark = FindSound(file, pagesLeft, &serial);
    if (mark == nullptr) {
        return {};
    }
    OggPacketBytes packet(bytes, file, serial, pagesLeft);
    ByteReader reader(packet);
    CoverChoice choice;
    if (!SkipToOggComments(reader, *mark)) {
        return {};
    }
    VorbisComments comments(reader);
    ezCString key;
    ByteReader value = reader;
    while (!choice.IsFinal() && comments.Next(&key, &value)) {
        std::uint32_t type = 0;
        const Cover cover = CoverOf(key, value, packet, &type);
        choice.Offer(type, cover);
    }
    return choice.Get();
}
