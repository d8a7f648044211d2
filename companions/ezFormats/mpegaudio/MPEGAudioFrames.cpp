#include "ezFormats/mpegaudio/MPEGAudioFrames.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/elementary/WrapperWatch.h"
#include "ezFormats/mpegaudio/MPEGAudioLimits.h"

#include "ezBytes/ByteReader.h"

#include <algorithm>

namespace {

/// Encoders go up to twice the highest rate of the table in free format.
constexpr std::uint32_t kFreeRates = 2;

std::uint32_t PaddingOf(const ezMPEGAudioHeader& aHeader) {
    return aHeader.mfPadded ? aHeader.mSlotSize : 0;
}

/// The frame that holds a Xing or VBRI header may differ in what does not count there: protection bit,
/// emphasis and so on.
bool IsSameSound(std::uint32_t aFirst, std::uint32_t aNext) {
    constexpr std::uint32_t kVersionLayerAndSampling = 0xFFFE0C00;
    constexpr std::uint32_t kRate = 0xF000;
    return ((aFirst ^ aNext) & kVersionLayerAndSampling) == 0 && (aFirst & kRate) != 0 &&
           (aNext & kRate) != 0;
}

} // namespace

MPEGAudioFrames::MPEGAudioFrames(MediaBytes& aBytes) : mBytes(aBytes), mStep(kMPEGAudio_SurveySize) {}

bool MPEGAudioFrames::ReadWord(std::uint64_t aPosition, std::uint32_t* aWord) {
    if (aPosition >= mBytes.GetEnd()) {
        return false;
    }
    if (!mBytes.HasBuffered(aPosition, kMPEGAudioHeaderSize)) {
        if (mfBufferedOnly) {
            return false;
        }
        // Looking on from the first frame keeps that one: its Xing or VBRI header is still to be read.
        const bool fKeep = mBytes.HasBuffered(mFirst.mPosition, 1) && aPosition > mFirst.mPosition &&
                           aPosition - mFirst.mPosition <= mStep;
        const std::uint64_t start = fKeep ? mFirst.mPosition : aPosition;
        mBytes.Load(start, static_cast<std::size_t>(aPosition - start) + mStep);
    }
    ByteReader reader(mBytes);
    reader.Skip(aPosition);
    *aWord = reader.ReadBig32();
    return !reader.HasFailed();
}

/// The size of a frame of free format is left as it is known so far.
bool MPEGAudioFrames::Read(std::uint64_t aPosition, MPEGAudioFrame* aFrame) {
    if (!ReadWord(aPosition, &aFrame->mWord) || !ezMPEGAudioHeader_Read(aFrame->mWord, aFrame->mHeader)) {
        return false;
    }
    aFrame->mPosition = aPosition;
    const ezMPEGAudioHeader& header = aFrame->mHeader;
    aFrame->mSize = header.mFrameSize != 0 ? header.mFrameSize : mFreeSize + PaddingOf(header);
    return true;
}

bool MPEGAudioFrames::Next(const MPEGAudioFrame& aFrame, MPEGAudioFrame* aNext) {
    const bool fFirst = aFrame.mPosition == mFirst.mPosition && aFrame.mHeader.mLayer == 3;
    MPEGAudioFrame next;
    if (!Read(aFrame.mPosition + aFrame.mSize, &next) ||
        (!ezMPEGAudioHeader_IsSameStream(aFrame.mWord, next.mWord) &&
         !(fFirst && IsSameSound(aFrame.mWord, next.mWord)))) {
        return false;
    }
    *aNext = next;
    return true;
}

std::uint32_t MPEGAudioFrames::CountChain(MPEGAudioFrame aFrame, std::uint32_t aLength,
                                          std::uint64_t* anEnd) {
    std::uint32_t count = 1;
    while (count < aLength && Next(aFrame, &aFrame)) {
        ++count;
    }
    *anEnd = aFrame.mPosition + aFrame.mSize;
    return count;
}

/// True when the second frame is the first over again, as in sampled sound that repeats itself.
bool MPEGAudioFrames::IsRepeated() {
    for (std::uint32_t i = kMPEGAudioHeaderSize; i < mFreeSize; ++i) {
        unsigned char first = 0;
        unsigned char second = 0;
        if (!mBytes.Get(mFirst.mPosition + i, &first) ||
            !mBytes.Get(mFirst.mPosition + mFirst.mSize + i, &second) || first != second) {
            return false;
        }
    }
    return true;
}

/// In free format the distance to the next header tells the length of all frames.
bool MPEGAudioFrames::StartFreeAt(std::uint64_t aPosition, std::uint32_t aLength, bool afMayRepeat) {
    const ezMPEGAudioHeader header = mFirst.mHeader;
    const std::uint32_t most = kFreeRates * header.mMaxFrameSize;
    if (++mFreeTries > kMPEGAudio_MaxFreeTries) {
        return false;
    }
    if (!mfBufferedOnly) {
        mBytes.Load(aPosition, std::size_t{aLength} * most);
    }
    for (std::uint32_t size = kMPEGAudioMinFrameSize; size <= most; ++size) {
        mFreeSize = size;
        mFirst.mSize = size + PaddingOf(header);
        mCount = CountChain(mFirst, aLength, &mEnd);
        if (mCount == aLength) {
            // Twice the distance of what repeats itself would fit as well, and be no frame.
            const bool fFound = afMayRepeat || !IsRepeated();
            mFreeSize = fFound ? size : 0;
            return fFound;
        }
    }
    mFreeSize = 0;
    return false;
}

/// Makes a position the first frame; false where fewer frames than aLength follow each other, of which there
/// are GetCount().
bool MPEGAudioFrames::StartAt(std::uint64_t aPosition, std::uint32_t aLength, bool afMayRepeat) {
    mFreeSize = 0;
    mCount = 0;
    if (!Read(aPosition, &mFirst)) {
        return false;
    }
    if (mFirst.mHeader.mFrameSize == 0) {
        return StartFreeAt(aPosition, kMPEGAudio_SearchChainLength, afMayRepeat);
    }
    mCount = CountChain(mFirst, aLength, &mEnd);
    return mCount == aLength;
}

bool MPEGAudioFrames::Search(std::uint64_t aStart) {
    ezWrapperWatch watch;
    for (std::uint64_t position = aStart; position - aStart < kMPEGAudio_SearchSize; ++position) {
        unsigned char byte = 0;
        if (!mBytes.HasBuffered(position) || !mBytes.Get(position, &byte)) {
            return false;
        }
        watch.Feed(byte);
        if (byte == 0xFF && position != aStart && !watch.IsWrapped() &&
            StartAt(position, kMPEGAudio_SearchChainLength, false)) {
            return true;
        }
    }
    return false;
}

bool MPEGAudioFrames::Find(std::uint64_t aStart) {
    if (StartAt(aStart, kMPEGAudio_ChainLength, true)) {
        return true;
    }
    // A short file: whether its frames reach the end of the sound is seen when the end has been read.
    const std::uint32_t count = mCount;
    const MPEGAudioFrame first = mFirst;
    const std::uint64_t end = mEnd;
    mBytes.Load(aStart, kMPEGAudio_SearchSize);
    mfBufferedOnly = true; // one read, whatever the bytes look like
    const bool fFound = Search(aStart);
    mfBufferedOnly = false;
    if (fFound) {
        return true;
    }
    mFirst = first;
    mCount = first.mHeader.mFrameSize != 0 ? count : 0;
    mEnd = end;
    mFreeSize = 0;
    return mCount != 0;
}

bool MPEGAudioFrames::FindNear(std::uint64_t aPosition, std::uint32_t aSize, MPEGAudioFrame* aFrame) {
    // What is buffered is looked at first: a file of many short gaps costs no read for each.
    constexpr std::uint32_t kChainSize = kMPEGAudio_ChainLength * kMPEGAudioMaxFrameSize;
    bool fFound = false;
    bool fLoaded = false;
    mfBufferedOnly = true;
    for (std::uint64_t position = aPosition; !fFound && position - aPosition < aSize; ++position) {
        if (!fLoaded && !mBytes.HasBuffered(position, kChainSize)) {
            mBytes.Load(position, static_cast<std::size_t>(aPosition + aSize - position));
            fLoaded = true;
        }
        if (!mBytes.HasBuffered(position)) {
            break;
        }
        fFound = IsChainAt(position, aFrame);
    }
    mfBufferedOnly = false;
    return fFound;
}

/// True for the first of some frames of the sound.
bool MPEGAudioFrames::IsChainAt(std::uint64_t aPosition, MPEGAudioFrame* aFrame) {
    std::uint64_t end = 0;
    return Read(aPosition, aFrame) && IsSameSound(mFirst.mWord, aFrame->mWord) &&
           CountChain(*aFrame, kMPEGAudio_ChainLength, &end) == kMPEGAudio_ChainLength;
}

void MPEGAudioSurvey::Add(const MPEGAudioFrame& aFrame) {
    ++mFrames;
    mBytes += aFrame.mSize;
    mLowestRate = std::min(mLowestRate, aFrame.mHeader.mBitRate);
    mHighestRate = std::max(mHighestRate, aFrame.mHeader.mBitRate);
    mEnd = aFrame.mPosition + aFrame.mSize;
}

void MPEGAudioSurvey::Add(const MPEGAudioSurvey& aSurvey) {
    mFrames += aSurvey.mFrames;
    mBytes += aSurvey.mBytes;
    mLowestRate = std::min(mLowestRate, aSurvey.mLowestRate);
    mHighestRate = std::max(mHighestRate, aSurvey.mHighestRate);
}

MPEGAudioSurvey SurveyFrames(MPEGAudioFrames& aFrames, const MPEGAudioFrame& aFirst, std::uint64_t aLimit) {
    MPEGAudioSurvey survey;
    MPEGAudioFrame frame = aFirst;
    do {
        survey.Add(frame);
    } while (survey.mEnd < aLimit && aFrames.Next(frame, &frame));
    return survey;
}
