#include "ezBytes/ID3Tag.h"

#include <algorithm>
#include <string_view>

namespace {

/// What the flags of a frame mean, by version (ID3v2.3.0, 3.3.1; 2.4.0 structure, 4.1); 0 where the version
/// has no such thing.
struct FrameFlags {
    unsigned mEncrypted;
    unsigned mCompressed; ///< in 2.3 four bytes follow
    unsigned mGrouped;    ///< a byte follows
    unsigned mUnsynchronised;
    unsigned mHasDataLength; ///< four bytes follow
};
constexpr FrameFlags kFlags23 = {0x40, 0x80, 0x20, 0, 0};
constexpr FrameFlags kFlags24 = {0x04, 0x08, 0x40, 0x02, 0x01};

bool IsFrameID(std::string_view anID) {
    return !anID.empty() && std::all_of(anID.begin(), anID.end(), [](char aCharacter) {
        return (aCharacter >= 'A' && aCharacter <= 'Z') || (aCharacter >= '0' && aCharacter <= '9');
    });
}

/// Three letters, and a blank or a zero where 2.3 has the fourth: one writer's own frames, and its names
/// of 2.2.
bool IsShortFrameID(std::string_view anID) {
    return anID.size() == 4 && (anID[3] == ' ' || anID[3] == '\0') && IsFrameID(anID.substr(0, 3));
}

} // namespace

bool ReadID3Tag(ByteReader& aReader, ID3Tag* aTag) {
    if (aReader.ReadText(3) != "ID3") {
        return false;
    }
    aTag->mVersion = aReader.ReadByte();
    aReader.Skip(1); // revision
    aTag->mFlags = aReader.ReadByte();
    aTag->mSize = aReader.ReadSyncsafe32();
    return !aReader.HasFailed();
}

struct ID3Frames::Frame {
    ezCString mID;
    unsigned mFlags = 0;
    bool mfNamed = false; ///< false: by no name that there is
};

ID3Frames::ID3Frames(ByteReader aReader, const ID3Tag& aTag, std::uint32_t aMaxInflated)
    : mInflateLeft(aMaxInflated), mFrames(aReader.Take(aTag.mSize)), mVersion(aTag.mVersion) {
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

/// Steps over the extended header (ID3v2.3.0 and 2.4.0 structure, 3.2), whose size in 2.3 leaves out its own
/// four bytes.
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

/// What a place is: another frame's, that of the padding or the tag's end, or neither.
ID3Frames::Place ID3Frames::PlaceOf(ByteReader aReader) const {
    if (aReader.HasFailed() || aReader.GetLeft() == 0) {
        return aReader.HasFailed() ? Place::Nowhere : Place::End;
    }
    const std::size_t size = mVersion == 2 ? 3 : 4;
    const ezCString id =
        aReader.ReadText(static_cast<std::size_t>(std::min<std::uint64_t>(size, aReader.GetLeft())));
    const std::string_view name = id.View();
    if ((name.size() == size && IsFrameID(name)) || IsShortFrameID(name)) {
        return Place::Name;
    }
    return !name.empty() && name.front() == '\0' ? Place::End : Place::Nowhere;
}

/// True where a frame stands after a body of a size that is to be read next, or the end.
bool ID3Frames::LeadsOn(std::uint64_t aSize) const {
    ByteReader next = mFrames;
    next.Skip(aSize);
    return StandsAtFrame(next);
}

/// The body of a frame, of the size that its header states.
ByteReader ID3Frames::TakeBody(std::uint64_t aSize) {
    const ByteReader start = mFrames;
    ByteReader body = mFrames.Take(aSize);
    const bool fStuffed = body.HasFailed() || body.GetEnd() - body.GetPosition() != aSize;
    if (!mFrames.IsUnsynchronised() || !fStuffed) {
        return body;
    }
    ByteReader counted = start; // the stuffing too
    const ByteReader all = counted.TakeStuffed(aSize);
    if (PlaceOf(counted) <= PlaceOf(mFrames)) { // a long padding is come to by any size
        return body;
    }
    mFrames = counted;
    return all;
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

/// Reads the header of a frame (ID3v2.3.0, 3.3; 2.4.0 structure, 4); the reader of its body is a failed one
/// where the frames end.
ByteReader ID3Frames::ReadFrame(Frame* aFrame) {
    aFrame->mID = mFrames.ReadText(mVersion == 2 ? 3 : 4);
    mFrames.Require(!aFrame->mID.IsEmpty() && aFrame->mID.View().front() != '\0'); // padding
    const auto stated = static_cast<std::uint32_t>(mFrames.ReadBig(mVersion == 2 ? 3 : 4));
    aFrame->mFlags = mVersion == 2 ? 0 : static_cast<unsigned>(mFrames.ReadBig(2));
    // Only now, when all of this header has been read: the look past the frame leaves the buffered bytes.
    ByteReader body = TakeBody(mVersion == 4 ? SizeOf24(stated) : stated);
    const std::string_view name = aFrame->mID.View();
    aFrame->mfNamed = IsFrameID(name) || (IsShortFrameID(name) && name.back() == '\0');
    mFrames.Require(aFrame->mfNamed || (stated != 0 && StandsAtFrame(mFrames))); // else it is not a frame
    return body;
}

/// Steps over what the flags put before a frame's content. False when the content cannot be read.
bool ID3Frames::OpenFrame(ByteReader& aBody, unsigned aFlags, ID3Compression* aCompression) const {
    *aCompression = {};
    if (mVersion == 2) {
        return true;
    }
    const FrameFlags& flags = mVersion == 3 ? kFlags23 : kFlags24;
    const bool fCompressed = (aFlags & flags.mCompressed) != 0;
    if ((aFlags & flags.mEncrypted) != 0) {
        return false;
    }
    aCompression->mfCompressed = fCompressed;
    if (fCompressed && mVersion == 3) {
        aCompression->mSize = aBody.ReadBig32();
    }
    if ((aFlags & flags.mGrouped) != 0) {
        aBody.Skip(1); // group identifier
    }
    if ((aFlags & flags.mHasDataLength) != 0) {
        const std::uint32_t size = aBody.ReadSyncsafe32();
        aBody.Require(fCompressed || size <= aBody.GetLeft()); // stuffing only adds
        aCompression->mSize = size;
    }
    if (mVersion == 4 && (mfUnsynchronised || (aFlags & flags.mUnsynchronised) != 0)) {
        aBody.SetUnsynchronised();
    }
    return !aBody.HasFailed();
}

/// Puts a reader of the inflated bytes in place of one of the compressed. False when they are more than was
/// stated, or than is left.
bool ID3Frames::Inflate(ByteReader& aBody, const ID3Compression& aCompression) {
    const std::uint32_t size = aCompression.mSize.value_or(mInflateLeft);
    if (mInflateLeft == 0 || size > mInflateLeft) {
        return false;
    }
    mInflateLeft -= size;
    const bool fWhole = mInflated.Inflate(aBody, size) == InflatedBytes::Result::Whole;
    aBody = ByteReader(mInflated);
    return fWhole;
}

bool ID3Frames::Next(ezCString* anID, ByteReader* aContent) {
    ID3Compression compression;
    while (NextStored(anID, aContent, &compression)) {
        if (!compression.mfCompressed || Inflate(*aContent, compression)) {
            return true;
        }
    }
    return false;
}

bool ID3Frames::NextStored(ezCString* anID, ByteReader* aStored, ID3Compression* aCompression) {
    while (mFrames.GetLeft() != 0) {
        Frame frame;
        *aStored = ReadFrame(&frame);
        if (!aStored->HasFailed() && frame.mfNamed && OpenFrame(*aStored, frame.mFlags, aCompression)) {
            *anID = frame.mID.BeforeFirst('\0');
            return true;
        }
    }
    return false;
}
