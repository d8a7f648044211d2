#include "ezFormats/frames/CodedFrames.h"

#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/elementary/WrapperWatch.h"
#include "ezFormats/frames/FrameLimits.h"

#include "ezBytes/ByteReader.h"

#include <algorithm>
#include <array>

CodedFrames::CodedFrames(MediaBytes& aBytes, const FrameReader& aReader)
    : mBytes(aBytes), mReader(aReader), mStep(kFrames_PlaceSize) {}

/// The bytes of a header, borrowed until the next call; null where there are not so many, or, where no more
/// is read, they are not buffered.
const unsigned char* CodedFrames::HeaderAt(std::uint64_t aPosition) {
    const std::uint32_t size = mReader.GetShape().mHeaderSize;
    if (aPosition >= mBytes.GetEnd()) {
        return nullptr;
    }
    if (!mBytes.HasBuffered(aPosition, size) && !mfBufferedOnly) {
        // Looking on from the first frame keeps that one: it is looked at again.
        const bool fKeep = mBytes.HasBuffered(mFirst.mPosition, 1) && aPosition > mFirst.mPosition &&
                           aPosition - mFirst.mPosition + size <= mStep;
        mBytes.Load(fKeep ? mFirst.mPosition : aPosition, mStep);
    }
    const unsigned char* bytes = nullptr;
    return mBytes.BorrowBuffered(aPosition, &bytes) >= size ? bytes : nullptr;
}

bool CodedFrames::Keeps(const CodedFrame& aFrame) const {
    const FrameShape& shape = mReader.GetShape();
    return aFrame.mSize >= shape.mMinFrameSize && aFrame.mSize <= shape.mMaxFrameSize &&
           aFrame.mSamplingRate != 0;
}

/// The frame with which a stream may begin.
bool CodedFrames::Read(std::uint64_t aPosition, CodedFrame* aFrame) {
    const unsigned char* const header = HeaderAt(aPosition);
    *aFrame = {};
    if (header == nullptr || !mReader.Read(header, aFrame) || aFrame->mSamples == 0 || !Keeps(*aFrame)) {
        return false;
    }
    aFrame->mPosition = aPosition;
    return TakeParts(aFrame);
}

bool CodedFrames::Next(const CodedFrame& aFrame, CodedFrame* aNext) {
    const std::uint64_t position = aFrame.mPosition + aFrame.mSize;
    const unsigned char* const header = HeaderAt(position);
    CodedFrame next;
    if (header == nullptr || !mReader.ReadNext(header, aFrame, &next) || next.mSamples == 0 || !Keeps(next)) {
        return false;
    }
    next.mPosition = position;
    if (!TakeParts(&next)) {
        return false;
    }
    *aNext = next;
    return true;
}

/// Makes a frame longer by the parts that follow it. False where they reach beyond the bytes that may be
/// looked at: nobody knows how many there are.
bool CodedFrames::TakeParts(CodedFrame* aFrame) {
    for (std::uint32_t i = 0; mReader.GetShape().mfParts && i < kFrames_MaxParts; ++i) {
        const std::uint64_t end = aFrame->mPosition + aFrame->mSize;
        const unsigned char* const header = HeaderAt(end);
        CodedFrame part;
        if (header == nullptr) {
            return !mfBufferedOnly || end >= mBytes.GetEnd() || mBytes.HasBuffered(end);
        }
        if (!mReader.ReadNext(header, *aFrame, &part) || part.mSamples != 0 || !Keeps(part)) {
            return true;
        }
        aFrame->mSize += part.mSize;
        mReader.TakePart(part, aFrame);
    }
    return true;
}

std::uint32_t CodedFrames::CountChain(CodedFrame aFrame, std::uint32_t aLength, std::uint64_t* anEnd) {
    std::uint32_t count = 1;
    while (count < aLength && Next(aFrame, &aFrame)) {
        ++count;
    }
    *anEnd = aFrame.mPosition + aFrame.mSize;
    return count;
}

/// Makes a position the first frame; false where fewer frames than aLength follow each other, of which there
/// are GetCount().
bool CodedFrames::StartAt(std::uint64_t aPosition, std::uint32_t aLength) {
    mCount = 0;
    mFirst.mPosition = aPosition;
    CodedFrame first;
    if (!Read(aPosition, &first)) {
        return false;
    }
    mFirst = first;
    mCount = CountChain(mFirst, aLength, &mEnd);
    return mCount == aLength;
}

bool CodedFrames::Search(std::uint64_t aStart) {
    ezWrapperWatch watch;
    mBytes.Load(aStart, kFrames_SearchSize);
    for (std::uint64_t position = aStart; position - aStart < kFrames_SearchSize; ++position) {
        unsigned char byte = 0;
        if (!mBytes.HasBuffered(position) || !mBytes.Get(position, &byte)) {
            return false;
        }
        watch.Feed(byte);
        if (position != aStart && !watch.IsWrapped() && StartAt(position, mReader.GetShape().mSearchLength)) {
            return true;
        }
    }
    return false;
}

bool CodedFrames::Find(std::uint64_t aStart, bool afSearch) {
    if (StartAt(aStart, kFrames_ChainLength)) {
        return true;
    }
    // A short file: whether its frames reach the end of the sound is seen when the end has been read.
    const std::uint32_t count = mCount;
    const CodedFrame first = mFirst;
    const std::uint64_t end = mEnd;
    mfBufferedOnly = true; // one read, whatever the bytes look like
    const bool fFound = afSearch && Search(aStart);
    mfBufferedOnly = false;
    if (!fFound) {
        mFirst = first;
        mCount = count;
        mEnd = end;
    }
    return mCount != 0;
}

bool CodedFrames::FindNear(std::uint64_t aPosition, std::uint32_t aSize, CodedFrame* aFrame) {
    bool fFound = false;
    mBytes.Load(aPosition, aSize);
    mfBufferedOnly = true;
    for (std::uint64_t position = aPosition;
         !fFound && position - aPosition < aSize && mBytes.HasBuffered(position); ++position) {
        std::uint64_t end = 0;
        CodedFrame frame;
        const std::uint32_t length = mReader.GetShape().mNearLength;
        if (Read(position, &frame) && frame.mKind == mFirst.mKind) {
            fFound = CountChain(frame, length, &end) == length;
            *aFrame = frame;
        }
    }
    mfBufferedOnly = false;
    return fFound;
}

FrameSurvey CodedFrames::Survey(const CodedFrame& aFirst, std::uint64_t aLimit) {
    FrameSurvey survey;
    CodedFrame frame = aFirst;
    do {
        survey.Add(frame);
    } while (survey.mEnd < aLimit && Next(frame, &frame));
    return survey;
}

FrameSurvey CodedFrames::SurveyBuffered(const CodedFrame& aFirst, std::uint64_t aLimit, FrameSurvey* aWhole) {
    FrameSurvey all;
    FrameSurvey whole;
    CodedFrame frame = aFirst;
    bool fBetween = false;
    bool fNext = true;
    mfBufferedOnly = true;
    while (fNext) {
        all.Add(frame);
        fNext = all.mEnd < aLimit && Next(frame, &frame);
        fBetween = fBetween || frame.mfBetween;
        if (fNext && !frame.mfBetween) {
            whole = all;
        }
    }
    mfBufferedOnly = false;
    *aWhole = fBetween && whole.mFrames != 0 ? whole : all;
    return all;
}

bool AreFramesAt(const FrameReader& aReader, ByteReader aBytes) {
    std::array<unsigned char, kFrames_MaxHeaderSize> header = {};
    ByteReader next = aBytes;
    CodedFrame first;
    CodedFrame second;
    if (!aBytes.Read(header.data(), aReader.GetShape().mHeaderSize) || !aReader.Read(header.data(), &first) ||
        first.mSamples == 0) {
        return false;
    }
    next.Skip(first.mSize);
    return next.Read(header.data(), aReader.GetShape().mHeaderSize) &&
           aReader.ReadNext(header.data(), first, &second);
}

void FrameSurvey::Add(const CodedFrame& aFrame) {
    ++mFrames;
    mBytes += aFrame.mSize;
    mSamples += aFrame.mSamples;
    mSmallest = std::min(mSmallest, aFrame.mSize);
    mLargest = std::max(mLargest, aFrame.mSize);
    mLowestRate = std::min(mLowestRate, aFrame.mBitRate);
    mHighestRate = std::max(mHighestRate, aFrame.mBitRate);
    mEnd = aFrame.mPosition + aFrame.mSize;
}

void FrameSurvey::Add(const FrameSurvey& aSurvey) {
    mFrames += aSurvey.mFrames;
    mBytes += aSurvey.mBytes;
    mSamples += aSurvey.mSamples;
    mSmallest = std::min(mSmallest, aSurvey.mSmallest);
    mLargest = std::max(mLargest, aSurvey.mLargest);
    mLowestRate = std::min(mLowestRate, aSurvey.mLowestRate);
    mHighestRate = std::max(mHighestRate, aSurvey.mHighestRate);
}

bool FrameSurvey::IsConstant() const {
    return mHighestRate != 0 ? mLowestRate == mHighestRate : mSmallest == mLargest;
}
