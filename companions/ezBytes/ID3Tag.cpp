#include "ezBytes/ID3Tag.h"

#include <algorithm>
#include <string_view>

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

bool IsFrameID(const ezCString& anID) {
    const std::string_view id = anID.View();
    return !id.empty() && std::all_of(id.begin(), id.end(), [](char aCharacter) {
        return (aCharacter >= 'A' && aCharacter <= 'Z') || (aCharacter >= '0' && aCharacter <= '9');
    });
}

} // namespace

bool ReadID3Tag(ByteReader& aReader, ID3Tag* aTag) {
    if (aReader.ReadText(3) != "ID3") {
        return false;
    }
    aTag->mVersion = aReader.ReadByte();
    aReader.Skip(1);
    aTag->mFlags = aReader.ReadByte();
    aTag->mSize = aReader.ReadSyncsafe32();
    return !aReader.HasFailed();
}

struct ID3Frames::Frame {
    ezCString mID;
    unsigned mFlags = 0;
};

ID3Frames::ID3Frames(ByteReader aReader, const ID3Tag& aTag)
    : mFrames(aReader.Take(aTag.mSize)), mVersion(aTag.mVersion) {
    constexpr unsigned kUnsynchronised = 0x80;
    constexpr unsigned kExtended = 0x40; // in 2.2 it says that all is compressed, in a way never defined
    const bool fExtended = (aTag.mFlags & kExtended) != 0;
    mfUnsynchronised = (aTag.mFlags & kUnsynchronised) != 0;
    mFrames.Require(mVersion >= 2 && mVersion <= 4 && (mVersion != 2 || !fExtended));
    // Up to 2.3 the sizes of frames are those without the stuffing, which goes through headers as well.
    if (mfUnsynchronised && mVersion != 4) {
        mFrames.SetUnsynchronised();
    }
    if (fExtended) {
        SkipExtendedHeader();
    }
}

/// Steps over the header that may follow the tag's own.
void ID3Frames::SkipExtendedHeader() {
    if (mVersion == 3) {
        mFrames.Skip(mFrames.ReadBig32());
        return;
    }
    const std::uint32_t size = mFrames.ReadSyncsafe32(); // its own four bytes included
    if (mFrames.Require(size >= 6)) {
        mFrames.Skip(size - 4);
    }
}

/// True when a frame whose body is to be read next, of a size, is followed by another, by padding, or by
/// nothing.
bool ID3Frames::LeadsOn(std::uint64_t aSize) const {
    ByteReader behind = mFrames;
    behind.Skip(aSize);
    if (behind.HasFailed() || behind.GetLeft() == 0) {
        return !behind.HasFailed();
    }
    const ezCString id =
        behind.ReadText(static_cast<std::size_t>(std::min<std::uint64_t>(4, behind.GetLeft())));
    return !id.IsEmpty() && (id.View().front() == '\0' || (id.View().size() == 4 && IsFrameID(id)));
}

/// The size of a frame of 2.4 whose body is to be read next, from what its header states.
std::uint64_t ID3Frames::SizeOf24(std::uint32_t aStated) const {
    if ((aStated & 0x80808080U) != 0) {
        return aStated;
    }
    const std::uint32_t size = (aStated & 0x7FU) | (aStated & 0x7F00U) >> 1 | (aStated & 0x7F0000U) >> 2 |
                               (aStated & 0x7F000000U) >> 3;
    return size == aStated || LeadsOn(size) || !LeadsOn(aStated) ? size : aStated;
}

/// Reads the header of a frame; the reader of its body is a failed one where the frames end.
ByteReader ID3Frames::ReadFrame(Frame* aFrame) {
    aFrame->mID = mFrames.ReadText(mVersion == 2 ? 3 : 4);
    mFrames.Require(IsFrameID(aFrame->mID)); // padding begins with a zero
    const auto stated = static_cast<std::uint32_t>(mFrames.ReadBig(mVersion == 2 ? 3 : 4));
    aFrame->mFlags = mVersion == 2 ? 0 : static_cast<unsigned>(mFrames.ReadBig(2));
    // Only now, when all of this header has been read: the look behind the frame leaves the bytes at hand.
    return mFrames.Take(mVersion == 4 ? SizeOf24(stated) : stated);
}

/// Steps over what the flags put before a frame's content. False when the content cannot be read.
bool ID3Frames::OpenFrame(ByteReader& aBody, unsigned aFlags) const {
    if (mVersion == 2) {
        return true;
    }
    const FrameFlags& flags = mVersion == 3 ? kFlags23 : kFlags24;
    if ((aFlags & flags.mUnreadable) != 0) {
        return false;
    }
    if ((aFlags & flags.mGrouped) != 0) {
        aBody.Skip(1);
    }
    if ((aFlags & flags.mHasDataLength) != 0) {
        const std::uint32_t length = aBody.ReadSyncsafe32();
        aBody.Require(length <= aBody.GetLeft()); // stuffing only adds
    }
    if (mVersion == 4 && (mfUnsynchronised || (aFlags & flags.mUnsynchronised) != 0)) {
        aBody.SetUnsynchronised();
    }
    return !aBody.HasFailed();
}

bool ID3Frames::Next(ezCString* anID, ByteReader* aContent) {
    while (mFrames.GetLeft() != 0) {
        Frame frame;
        *aContent = ReadFrame(&frame);
        if (!aContent->HasFailed() && OpenFrame(*aContent, frame.mFlags)) {
            *anID = frame.mID;
            return true;
        }
    }
    return false;
}
