#pragma once

#include <cstdint>

/// A frame of a sound that no container carries: the bytes from its header up to the next one.
struct CodedFrame {
    std::uint64_t mPosition = 0;
    std::uint32_t mSize = 0;         ///< bytes up to the next frame
    std::uint32_t mSamples = 0;      ///< of a channel; 0: a part of the frame before it, which adds none
    std::uint32_t mSamplingRate = 0; ///< Hz
    std::uint32_t mChannels = 0;     ///< 0: the header does not tell
    /// Bits a second, only where the sizes of all frames follow from it, and differ by rounding at most; else
    /// 0, and a rate is constant where the sizes are.
    std::uint32_t mBitRate = 0;
    /// What is the same in all frames of one stream, of the reader's making.
    std::uint64_t mKind = 0;
    /// What else a reader wants to know of the first frame and its parts, of its own making.
    std::uint64_t mDetails = 0;
    bool mfBetween = false; ///< no stream begins with it: it stands between two with which one may
};

/// What the frames of a format look like: each has one.
struct FrameShape {
    std::uint32_t mHeaderSize;   ///< bytes that a header is told from: at most kFrames_MaxHeaderSize
    std::uint32_t mMinFrameSize; ///< bytes, header included
    std::uint32_t mMaxFrameSize; ///< bytes, header included, of a part as well
    std::uint32_t mSearchLength; ///< frames in a row that make a stream where the first is searched for
    /// Frames in a row of the stream's kind that are some of it, in the midst of the file. The fewer bits of
    /// a header are fixed, the more.
    std::uint32_t mNearLength;
    bool mfParts; ///< frames without samples follow others, and count as parts of them
};

/// Takes the headers of one format apart. CodedFrames walks a file by one, and FrameMeasure tells the length.
class FrameReader {
public:
    virtual ~FrameReader();
    FrameReader(const FrameReader&) = delete;
    FrameReader& operator=(const FrameReader&) = delete;

    const FrameShape& GetShape() const { return mShape; }

    /// Takes the header at aBytes apart, mHeaderSize of which are there, but for the position. False where
    /// there is none with which a stream may begin, or none of a part of a frame.
    virtual bool Read(const unsigned char* aBytes, CodedFrame* aFrame) const = 0;

    /// That after a frame; aBefore.mKind is that of the stream. False where it does not go on. Without an
    /// override: a header of the same kind.
    virtual bool ReadNext(const unsigned char* aBytes, const CodedFrame& aBefore, CodedFrame* aFrame) const;

    /// Makes a part one of a frame: what it says may change the frame's channels, rate or details. The size
    /// is the caller's.
    virtual void TakePart(const CodedFrame& aPart, CodedFrame* aFrame) const;

protected:
    explicit FrameReader(const FrameShape& aShape) : mShape(aShape) {}

private:
    const FrameShape mShape;
};
