#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

/// The header of an ID3v2 tag.
struct ID3Tag {
    unsigned mVersion = 0; ///< the first number behind the "2."
    unsigned mFlags = 0;
    std::uint32_t mSize = 0; ///< without the header, and the footer
    /// Bytes of the tag behind its header.
    std::uint64_t GetRest() const {
        constexpr unsigned kFooter = 0x10;
        return std::uint64_t{mSize} + (mVersion == 4 && (mFlags & kFooter) != 0 ? 10 : 0);
    }
};

/// False when no tag stands here; aReader may have failed then.
bool ReadID3Tag(ByteReader& aReader, ID3Tag* aTag);

/// The frames of a tag, one after the other (ID3v2.2 to 2.4). Frames that are compressed or encrypted are
/// passed over. A tag of another version has none, and neither has one that claims more bytes than there are.
///
/// Writers of 2.4 have stated the sizes of frames in plain bytes, where seven bits of each count. Such a size
/// is read as a plain one where that leads to a frame, the padding or the end, and the other does not.
class ID3Frames {
public:
    /// aReader stands behind the header of the tag and is left there.
    ID3Frames(ByteReader aReader, const ID3Tag& aTag);

    /// The next frame: its name, of three characters in 2.2 and of four later, and a reader of its content,
    /// which undoes the unsynchronisation. False behind the last one, and where one is damaged.
    bool Next(ezCString* anID, ByteReader* aContent);

private:
    struct Frame;

    ByteReader ReadFrame(Frame* aFrame);
    std::uint64_t SizeOf24(std::uint32_t aStated) const;
    bool LeadsOn(std::uint64_t aSize) const;
    bool OpenFrame(ByteReader& aBody, unsigned aFlags) const;
    void SkipExtendedHeader();

    ByteReader mFrames;
    unsigned mVersion;
    bool mfUnsynchronised;
};
