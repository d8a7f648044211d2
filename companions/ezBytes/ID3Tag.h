#pragma once

#include "ezBytes/ByteReader.h"
#include "ezBytes/InflatedBytes.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <optional>

/// The header of an ID3v2 tag (ID3v2.4.0 structure, 3.1).
struct ID3Tag {
    unsigned mVersion = 0; ///< the first number after the "2."
    unsigned mFlags = 0;
    std::uint32_t mSize = 0; ///< without the header, and the footer
    /// Bytes of the tag after its header.
    std::uint64_t GetRest() const {
        constexpr unsigned kFooter = 0x10;
        return std::uint64_t{mSize} + (mVersion == 4 && (mFlags & kFooter) != 0 ? 10 : 0);
    }
};

/// How the content of a frame is stored.
struct ID3Compression {
    bool mfCompressed = false; ///< as zlib data
    /// What the frame states that its content has when it is inflated; 2.4 may leave it out.
    std::optional<std::uint32_t> mSize;
};

/// False when no tag stands here; aReader may have failed then.
bool ReadID3Tag(ByteReader& aReader, ID3Tag* aTag);

/// The frames of a tag, one after the other (ID3v2.2 to 2.4). Frames that are encrypted are passed over. A
/// tag of another version has none, and neither has one that claims more bytes than there are.
///
/// What writers do otherwise is taken where it leads to a frame, the padding or the end, and what the
/// standard says does not: sizes of 2.4 in plain bytes, where seven bits of each count; sizes of 2.2 and 2.3
/// that count the stuffing of unsynchronisation (2.4.0 structure, 6.1); names of 2.2 and a zero where four
/// characters belong; and names that no frame has ("TST "), whose frames are passed over.
class ID3Frames {
public:
    /// @param aReader       stands after the header of the tag and is left there
    /// @param aMaxInflated  bytes that the compressed frames of the tag may have together when Next inflates
    ///                      them: each one above what is left of that is passed over, and so are all where
    ///                      zlib is missing. 0 for who asks NextStored
    explicit ID3Frames(ByteReader aReader, const ID3Tag& aTag, std::uint32_t aMaxInflated = 0);

    /// The next frame: its name, of three characters in 2.2 and of four later (of three if it is one of 2.2),
    /// and a reader of its content, which undoes the unsynchronisation and serves until the next call. False
    /// after the last one, and where one is damaged.
    bool Next(ezCString* anID, ByteReader* aContent);

    /// The same for who needs the place of a content in the file: a compressed one is given as it is stored,
    /// without what stands before the zlib data, and not inflated.
    bool NextStored(ezCString* anID, ByteReader* aStored, ID3Compression* aCompression);

    /// Stands where the next frame begins: for who wants to see it before what stands after it is looked at,
    /// as it is in 2.4.
    const ByteReader& GetPlace() const { return mFrames; }

private:
    struct Frame;

    ByteReader ReadFrame(Frame* aFrame);
    std::uint64_t SizeOf24(std::uint32_t aStated) const;
    ByteReader TakeBody(std::uint64_t aSize);
    enum class Place { Nowhere, End, Name };
    Place PlaceOf(ByteReader aReader) const;
    bool StandsAtFrame(const ByteReader& aReader) const { return PlaceOf(aReader) != Place::Nowhere; }
    bool LeadsOn(std::uint64_t aSize) const;
    bool OpenFrame(ByteReader& aBody, unsigned aFlags, ID3Compression* aCompression) const;
    bool Inflate(ByteReader& aBody, const ID3Compression& aCompression);
    void SkipExtendedHeader();

    InflatedBytes mInflated; ///< of the last compressed frame
    std::uint32_t mInflateLeft;
    ByteReader mFrames;
    unsigned mVersion;
    bool mfUnsynchronised;
};
