#pragma once

#include "ezFormats/frames/FrameReader.h"

#include <cstdint>

class ByteReader;
class MediaBytes;

/// Frames of a part of a file, or of all of it.
struct FrameSurvey {
    std::uint64_t mFrames = 0;
    std::uint64_t mBytes = 0;
    std::uint64_t mSamples = 0; ///< of a channel
    std::uint32_t mSmallest = UINT32_MAX;
    std::uint32_t mLargest = 0;
    std::uint32_t mLowestRate = UINT32_MAX; ///< of those that are stated
    std::uint32_t mHighestRate = 0;
    std::uint64_t mEnd = 0; ///< where the last of them ends

    void Add(const CodedFrame& aFrame);
    /// The end stays.
    void Add(const FrameSurvey& aSurvey);
    /// One stated rate, or one size where none is stated.
    bool IsConstant() const;
};

/// Whether a frame and what follows one begin there: enough for a file whose name lies to be known by it,
/// where each header has some 28 fixed bits.
bool AreFramesAt(const FrameReader& aReader, ByteReader aBytes);

/// The frames of a file, from one of them on: the first stands where it is searched for, and whatever has its
/// kind is one of them. A frame comes with its parts.
class CodedFrames {
public:
    /// Both borrowed.
    CodedFrames(MediaBytes& aBytes, const FrameReader& aReader);

    /// Finds the first frame: at aStart, where kFrames_ChainLength frames make a stream, or fewer where the
    /// file is no longer. Else, where it may be searched for, within kFrames_SearchSize, where it takes as
    /// many as the format's shape says, by one read; bytes that lie in a transport or program stream make
    /// none. False when there is no stream.
    bool Find(std::uint64_t aStart, bool afSearch);

    const CodedFrame& GetFirst() const { return mFirst; }
    /// How many frames were found in a row, and where the last of them ends.
    std::uint32_t GetCount() const { return mCount; }
    std::uint64_t GetEnd() const { return mEnd; }

    /// The frame after one; false when none of the same stream follows.
    bool Next(const CodedFrame& aFrame, CodedFrame* aNext);
    /// The first frame at or after a position that others of the stream follow, all within aSize bytes, of
    /// which those that are not buffered are read at once.
    bool FindNear(std::uint64_t aPosition, std::uint32_t aSize, CodedFrame* aFrame);

    /// Looks at the frames from one of them on, which counts, up to aLimit, reading on where it takes that.
    FrameSurvey Survey(const CodedFrame& aFirst, std::uint64_t aLimit);
    /// The same as far as they are buffered.
    /// @param aWhole  those before the last frame with which a stream may begin, if there are others between
    ///                such frames; else all. Such frames are larger, and a place begins with one: where it
    ///                ended anywhere, it would hold too many of them.
    FrameSurvey SurveyBuffered(const CodedFrame& aFirst, std::uint64_t aLimit, FrameSurvey* aWhole);

    /// How many bytes are read at once, where a frame is not buffered.
    void SetStep(std::uint32_t aStep) { mStep = aStep; }

private:
    const unsigned char* HeaderAt(std::uint64_t aPosition);
    bool Read(std::uint64_t aPosition, CodedFrame* aFrame);
    bool TakeParts(CodedFrame* aFrame);
    bool Keeps(const CodedFrame& aFrame) const;
    bool StartAt(std::uint64_t aPosition, std::uint32_t aLength);
    bool Search(std::uint64_t aStart);
    std::uint32_t CountChain(CodedFrame aFrame, std::uint32_t aLength, std::uint64_t* anEnd);

    MediaBytes& mBytes;
    const FrameReader& mReader;
    CodedFrame mFirst;
    std::uint32_t mStep;
    bool mfBufferedOnly = false; ///< no more is read
    std::uint32_t mCount = 0;
    std::uint64_t mEnd = 0;
};
