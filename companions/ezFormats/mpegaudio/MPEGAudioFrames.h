#pragma once

#include "ezFormats/codecs/MPEGAudioHeader.h"

#include <cstdint>

class MediaBytes;

/// A frame of a file.
struct MPEGAudioFrame {
    std::uint64_t mPosition = 0;
    std::uint32_t mWord = 0;
    std::uint32_t mSize = 0; ///< padding included
    ezMPEGAudioHeader mHeader = {};
};

/// The frames of a file, from one of them on. In free format (ISO/IEC 11172-3, 2.4.2.3) all have the length
/// of the first, but for their padding.
class MPEGAudioFrames {
public:
    explicit MPEGAudioFrames(MediaBytes& aBytes);

    /// Finds the first frame: at aStart, where kMPEGAudio_ChainLength frames make a stream, or fewer where
    /// the file is no longer; else within kMPEGAudio_SearchSize, where it takes
    /// kMPEGAudio_SearchChainLength. Bytes that lie in a transport or program stream make none. False when
    /// there is no stream.
    bool Find(std::uint64_t aStart);

    const MPEGAudioFrame& GetFirst() const { return mFirst; }
    /// How many frames were found in a row, and where the last of them ends.
    std::uint32_t GetCount() const { return mCount; }
    std::uint64_t GetEnd() const { return mEnd; }
    bool IsFreeFormat() const { return mFreeSize != 0; }

    /// How many bytes are read at once, where a frame is not buffered.
    void SetStep(std::uint32_t aStep) { mStep = aStep; }

    /// The frame at a position, whatever follows it; false when there is none.
    bool Read(std::uint64_t aPosition, MPEGAudioFrame* aFrame);
    /// The frame after one; false when none of the same stream follows.
    bool Next(const MPEGAudioFrame& aFrame, MPEGAudioFrame* aNext);
    /// The first frame at or after a position that others of the same sound follow, all within aSize bytes;
    /// not of free format. What of these is not buffered is read at once, and not before it is come to.
    bool FindNear(std::uint64_t aPosition, std::uint32_t aSize, MPEGAudioFrame* aFrame);

private:
    bool ReadWord(std::uint64_t aPosition, std::uint32_t* aWord);
    bool StartAt(std::uint64_t aPosition, std::uint32_t aLength, bool afMayRepeat);
    bool StartFreeAt(std::uint64_t aPosition, std::uint32_t aLength, bool afMayRepeat);
    std::uint32_t CountChain(MPEGAudioFrame aFrame, std::uint32_t aLength, std::uint64_t* anEnd);
    bool IsRepeated();
    bool IsChainAt(std::uint64_t aPosition, MPEGAudioFrame* aFrame);
    bool Search(std::uint64_t aStart);

    MediaBytes& mBytes;
    MPEGAudioFrame mFirst;
    std::uint32_t mFreeSize = 0; ///< of all frames of free format, without padding
    std::uint32_t mFreeTries = 0;
    std::uint32_t mStep;
    bool mfBufferedOnly = false; ///< no more is read
    std::uint32_t mCount = 0;
    std::uint64_t mEnd = 0;
};

/// Frames of a part of a file, or of all of it.
struct MPEGAudioSurvey {
    std::uint64_t mFrames = 0;
    std::uint64_t mBytes = 0;
    std::uint32_t mLowestRate = UINT32_MAX;
    std::uint32_t mHighestRate = 0;
    std::uint64_t mEnd = 0; ///< where the last of them ends

    void Add(const MPEGAudioFrame& aFrame);
    void Add(const MPEGAudioSurvey& aSurvey);
};

/// Looks at the frames from one of them on, which counts, up to aLimit; those that are not buffered are read
/// in blocks.
MPEGAudioSurvey SurveyFrames(MPEGAudioFrames& aFrames, const MPEGAudioFrame& aFirst, std::uint64_t aLimit);
