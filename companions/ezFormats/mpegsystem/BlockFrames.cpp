#include "ezFormats/mpegsystem/BlockFrames.h"

#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/frames/FrameLimits.h"

#include <algorithm>
#include <array>

namespace {

/// A block, with zeros after it where a header is looked at that goes beyond.
class Block {
public:
    Block(const FrameReader& aReader, const unsigned char* aBytes, std::size_t aSize)
        : mReader(aReader), mBytes(aBytes), mSize(aSize) {}

    bool Read(std::size_t aPlace, CodedFrame* aFrame) {
        const unsigned char* const header = HeaderAt(aPlace);
        *aFrame = CodedFrame();
        return header != nullptr && mReader.Read(header, aFrame) && Take(aPlace, aFrame);
    }
    bool ReadNext(const CodedFrame& aBefore, std::size_t aPlace, CodedFrame* aFrame) {
        const unsigned char* const header = HeaderAt(aPlace);
        *aFrame = CodedFrame();
        return header != nullptr && mReader.ReadNext(header, aBefore, aFrame) && Take(aPlace, aFrame);
    }
    bool HasAll(const CodedFrame& aFrame) const { return aFrame.mSize <= mSize - aFrame.mPosition; }
    std::size_t GetSize() const { return mSize; }

private:
    /// Null where not even the least frame is there.
    const unsigned char* HeaderAt(std::size_t aPlace) {
        const FrameShape& shape = mReader.GetShape();
        if (aPlace > mSize || mSize - aPlace < shape.mMinFrameSize) {
            return nullptr;
        }
        if (mSize - aPlace >= mHeader.size()) {
            return mBytes + aPlace;
        }
        mHeader.fill(0);
        std::copy(mBytes + aPlace, mBytes + mSize, mHeader.begin());
        return mHeader.data();
    }
    bool Take(std::size_t aPlace, CodedFrame* aFrame) const {
        const FrameShape& shape = mReader.GetShape();
        aFrame->mPosition = aPlace;
        return aFrame->mSize >= shape.mMinFrameSize && aFrame->mSize <= shape.mMaxFrameSize;
    }

    const FrameReader& mReader;
    const unsigned char* mBytes;
    std::size_t mSize;
    std::array<unsigned char, kFrames_MaxHeaderSize> mHeader = {};
};

/// Where a frame ends; it is all there.
std::size_t EndOf(const CodedFrame& aFrame) {
    return static_cast<std::size_t>(aFrame.mPosition) + aFrame.mSize;
}

/// Finds a frame that another one follows, or that ends the block.
bool Find(Block& aBlock, CodedFrame* aFirst) {
    CodedFrame next;
    for (std::size_t place = 0; place < aBlock.GetSize(); ++place) {
        if (!aBlock.Read(place, aFirst) || aFirst->mSamples == 0 || aFirst->mSamplingRate == 0 ||
            !aBlock.HasAll(*aFirst)) {
            continue;
        }
        const std::size_t end = EndOf(*aFirst);
        if (end == aBlock.GetSize() || aBlock.ReadNext(*aFirst, end, &next)) {
            return true;
        }
    }
    return aBlock.Read(0, aFirst) && aFirst->mSamples != 0 && aFirst->mSamplingRate != 0 &&
           !aBlock.HasAll(*aFirst);
}

} // namespace

std::uint32_t BlockFrames::GetBitRate() const {
    return MediaNumber_BitRate(mBytes, mSamples, mFirst.mSamplingRate);
}

bool ReadBlockFrames(const FrameReader& aReader, const unsigned char* aBytes, std::size_t aSize,
                     BlockFrames* aFrames) {
    *aFrames = BlockFrames();
    Block block(aReader, aBytes, aSize);
    if (!Find(block, &aFrames->mFirst)) {
        return false;
    }
    CodedFrame frame = aFrames->mFirst;
    std::uint64_t firstSize = 0;
    aFrames->mfConstant = true;
    for (bool fMore = true; fMore && block.HasAll(frame); ++aFrames->mFrames) {
        std::uint64_t size = frame.mSize;
        CodedFrame next;
        CodedFrame last = frame;
        while ((fMore = block.ReadNext(frame, EndOf(last), &next)) && next.mSamples == 0 &&
               block.HasAll(next)) {
            if (aFrames->mFrames == 0) {
                aReader.TakePart(next, &aFrames->mFirst);
            }
            size += next.mSize;
            last = next;
        }
        firstSize = aFrames->mFrames == 0 ? size : firstSize;
        const bool fStated = aFrames->mFirst.mBitRate != 0;
        aFrames->mfConstant =
            aFrames->mfConstant && (fStated ? frame.mBitRate == aFrames->mFirst.mBitRate : size == firstSize);
        aFrames->mBytes += size;
        aFrames->mSamples += frame.mSamples;
        frame = next;
        if (frame.mSamples == 0) {
            break; // a part that is cut
        }
    }
    return true;
}
