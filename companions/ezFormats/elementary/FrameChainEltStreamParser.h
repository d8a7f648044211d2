#pragma once

#include "ez/ElementaryStreamParser.h"

#include "ezFormats/Export.h"

#include <memory>

/// The base of the audio formats whose frames follow each other without a gap, each begun by a header that
/// tells its length. A header counts when another of the same stream stands exactly one frame after it.
///
/// ID3v2 tags at the start, one after the other, are stepped over, also for the look at what carries the
/// stream: their pictures and texts are no part of the sound. A tag that claims to reach the limit is
/// searched like all else.
///
/// It searches from every byte at once: what looks like a header, and is not one, delays no other. It gives
/// up at its limit and never by content, and it skips over nothing. What lies in a transport or program
/// stream is not taken for the stream itself. No more bytes are requested than the earliest decision can
/// need.
class EZFORMATS_API FrameChainEltStreamParser : public ezElementaryStreamParser {
public:
    ~FrameChainEltStreamParser() override;

    parsing_status_t StartParsing(bool afFromError) override;
    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override;

protected:
    /// Bytes of a header and of frames; a header of at most 16 bytes, and frames of less than 8192.
    struct Shape {
        uint32 mHeaderSize;   ///< that ReadHeader looks at
        uint32 mMinFrameSize; ///< header included
        uint32 mMaxFrameSize; ///< header included
    };

    /// A header as the search keeps it.
    struct Header {
        uint32 mDigest = 0;    ///< of the format's making: all that it asks of the header later
        uint32 mFrameSize = 0; ///< 0: the header does not tell
    };

    /// The parameters are those of ezElementaryStreamParser; the limit is 2 MiB.
    /// @param aShape  copied
    FrameChainEltStreamParser(const char* aName, const Shape& aShape, ezElementaryStreamInfo* aEltStreamInfo,
                              ezMediaInfo* aMediaInfo);

    /// Forgets what the format itself remembers of the bytes before.
    virtual void Restart() {}

    /// Takes the header at aBytes apart, all of its bytes being there. Called once for every position, in
    /// order. False where there is none.
    virtual bool ReadHeader(uint32 aPosition, const unsigned char* aBytes, Header& aHeader) = 0;

    /// The length of the frame at aPosition, told from those before it. Asked where the header does not tell.
    virtual uint32 InferFrameSize(uint32 aPosition, uint32 aDigest);

    /// True when both headers may stand in one stream.
    virtual bool IsSameStream(uint32 aFirst, uint32 aSecond) const = 0;

    /// Fills the record from the two headers that were found, the first of them at aPosition.
    virtual void Fill(ezMediaInfo& anInfo, uint32 aPosition, uint32 aFirst, uint32 aSecond) const = 0;

private:
    struct Search;

    bool StepOverTag();
    bool TakeHeader(const unsigned char* aBytes);
    bool IsConfirmed(uint32 aDigest);
    void Expect(const Header& aHeader);
    bool Scan();
    uint32 LeastRequest() const;

    const Shape mShape;
    std::unique_ptr<Search> mSearch;
};
