#include "ezThumbnails/detail/CoverFinders.h"
#include "ezThumbnails/detail/ID3Tag.h"

#include <algorithm>

namespace {

/// What the flags of a frame mean, by version; 0 where the version has no such thing.
struct FrameFlags {
    unsigned mUnreadable; ///< compressed or encrypted
    unsigned mGrouped;    ///< a byte follows
    unsigned mUnsynchronised;
    unsigned mHasDataLength; ///< four bytes follow
};
constexpr FrameFlags kFlags23 = {0xC0, 0x20, 0, 0};
constexpr FrameFlags kFlags24 = {0x0C, 0x40, 0x02, 0x01};

struct Frame {
    ezCString mID;
    unsigned mFlags = 0;
};

bool IsFrameID(const ezCString& anID) {
    const std::string_view id = anID.View();
    return !id.empty() && std::all_of(id.begin(), id.end(), [](char aCharacter) {
        return (aCharacter >= 'A' && aCharacter <= 'Z') || (aCharacter >= '0' && aCharacter <= '9');
    });
}

/// Reads the header of a frame; the reader of its body is a failed one where the frames end.
CoverReader ReadFrame(CoverReader& aTag, unsigned aVersion, Frame* aFrame) {
    aFrame->mID = aTag.ReadText(aVersion == 2 ? 3 : 4);
    aTag.Require(IsFrameID(aFrame->mID)); // padding begins with a zero
    const std::uint64_t size = aVersion == 4 ? aTag.ReadSyncsafe32() : aTag.ReadBig(aVersion == 2 ? 3 : 4);
    aFrame->mFlags = aVersion == 2 ? 0 : static_cast<unsigned>(aTag.ReadBig(2));
    return aTag.Take(size);
}

/// Steps over what the flags put before a frame's content. False when the content cannot be read.
bool OpenFrame(CoverReader& aBody, const Frame& aFrame, unsigned aVersion, bool afAllUnsynchronised) {
    if (aVersion == 2) {
        return true;
    }
    const FrameFlags& flags = aVersion == 3 ? kFlags23 : kFlags24;
    if ((aFrame.mFlags & flags.mUnreadable) != 0) {
        return false;
    }
    if ((aFrame.mFlags & flags.mGrouped) != 0) {
        aBody.Skip(1);
    }
    if ((aFrame.mFlags & flags.mHasDataLength) != 0) {
        const std::uint32_t length = aBody.ReadSyncsafe32();
        aBody.Require(length <= aBody.GetLeft()); // stuffing only adds
    }
    if (aVersion == 4 && (afAllUnsynchronised || (aFrame.mFlags & flags.mUnsynchronised) != 0)) {
        aBody.SetUnsynchronised();
    }
    return !aBody.HasFailed();
}

/// A description, which ends in one zero or, in the two encodings of 16 bits, in two at an even place.
void SkipDescription(CoverReader& aBody, unsigned anEncoding) {
    if (anEncoding != 1 && anEncoding != 2) {
        aBody.ReadZeroTerminated(kCover_MaxText);
        return;
    }
    std::uint32_t count = 0;
    while (aBody.ReadBig(2) != 0 && aBody.Require(count < kCover_MaxText)) {
        count += 2;
    }
}

void OfferPicture(CoverReader& aBody, unsigned aVersion, CoverChoice& aChoice) {
    const unsigned encoding = aBody.ReadByte();
    aBody.Require(encoding <= 3);
    const ezCString mimeType = aVersion == 2 ? aBody.ReadText(3) : aBody.ReadZeroTerminated(kCover_MaxText);
    const std::uint32_t type = aBody.ReadByte();
    SkipDescription(aBody, encoding);
    // A link's text is not the picture.
    if (!aBody.HasFailed() && mimeType != "-->") {
        aChoice.Offer(type, CoverOfRest(aBody, mimeType));
    }
}

/// Steps over the header that may follow the tag's own.
void SkipExtendedHeader(CoverReader& aTag, unsigned aVersion) {
    if (aVersion == 3) {
        aTag.Skip(aTag.ReadBig32());
        return;
    }
    const std::uint32_t size = aTag.ReadSyncsafe32(); // its own four bytes included
    if (aTag.Require(size >= 6)) {
        aTag.Skip(size - 4);
    }
}

} // namespace

bool ReadID3Tag(CoverReader& aReader, ID3Tag* aTag) {
    if (aReader.ReadText(3) != "ID3") {
        return false;
    }
    aTag->mVersion = aReader.ReadByte();
    aReader.Skip(1);
    aTag->mFlags = aReader.ReadByte();
    aTag->mSize = aReader.ReadSyncsafe32();
    return !aReader.HasFailed();
}

Cover FindID3Cover(ezStream& aStream) {
    constexpr unsigned kUnsynchronised = 0x80;
    constexpr unsigned kExtended = 0x40; // in 2.2 it says that all is compressed, in a way never defined
    CoverStreamBytes bytes(aStream);
    CoverReader file(bytes);
    ID3Tag tag;
    CoverChoice choice;
    if (!ReadID3Tag(file, &tag) || tag.mVersion < 2 || tag.mVersion > 4 ||
        (tag.mVersion == 2 && (tag.mFlags & kExtended) != 0)) {
        return choice.Get();
    }
    CoverReader frames = file.Take(tag.mSize);
    const bool isUnsynchronised = (tag.mFlags & kUnsynchronised) != 0;
    // Up to 2.3 the sizes of frames are those without the stuffing, which goes through headers as well.
    if (isUnsynchronised && tag.mVersion != 4) {
        frames.SetUnsynchronised();
    }
    if (tag.mVersion != 2 && (tag.mFlags & kExtended) != 0) {
        SkipExtendedHeader(frames, tag.mVersion);
    }
    while (frames.GetLeft() != 0 && !choice.IsFinal()) {
        Frame frame;
        CoverReader body = ReadFrame(frames, tag.mVersion, &frame);
        if (!body.HasFailed() && frame.mID == (tag.mVersion == 2 ? "PIC" : "APIC") &&
            OpenFrame(body, frame, tag.mVersion, isUnsynchronised)) {
            OfferPicture(body, tag.mVersion, choice);
        }
    }
    return choice.Get();
}
