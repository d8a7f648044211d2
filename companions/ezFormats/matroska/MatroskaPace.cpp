#include "ezFormats/matroska/MatroskaPace.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/matroska/MatroskaLimits.h"

#include "ezBytes/MatroskaBlocks.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

namespace {

constexpr std::uint32_t kMicro = 1'000'000;
constexpr std::uint32_t kNanos = 1'000'000'000;

/// Bytes that the head of an element, and that of the first one in it, take at most.
constexpr std::size_t kHeadSize = 64;

/// The blocks of sound, one after the other.
class SoundPace {
public:
    void Take(const MatroskaBlock& aBlock) {
        if (!aBlock.mfWhole) {
            return;
        }
        mFirst = mBlocks == 0 ? aBlock.mTime : mFirst;
        if (aBlock.mTime >= mLast) { // the last one lasts nobody knows how long
            mLast = aBlock.mTime;
            mBytesBefore = mBytes;
        }
        ++mBlocks;
        mFrames += aBlock.mFrames;
        mBytes += aBlock.mBytes;
    }

    /// Bits a second; 0: not known.
    std::uint32_t GetBitRate(const MatroskaInfo& anInfo, std::uint64_t aFrameTime) const {
        const std::uint64_t nanoseconds = MediaNumber_Scale(aFrameTime, mFrames, 1);
        const std::uint64_t microseconds = anInfo.GetMicroseconds(mLast - std::min(mFirst, mLast));
        const std::uint32_t rate = aFrameTime != 0 ? MediaNumber_BitRate(mBytes, nanoseconds, kNanos)
                                                   : MediaNumber_BitRate(mBytesBefore, microseconds, kMicro);
        return rate <= kSound_MaxBitRate ? rate : 0;
    }

private:
    std::uint32_t mBlocks = 0;
    std::uint64_t mFrames = 0;
    std::uint64_t mBytes = 0;
    std::uint64_t mBytesBefore = 0; ///< of the blocks before the last one
    std::uint64_t mFirst = 0;       ///< ticks
    std::uint64_t mLast = 0;
};

/// The times of pictures, in the order in which they are decoded.
class PicturePace {
public:
    void Take(const MatroskaBlock& aBlock) {
        if (mTimes.empty() || aBlock.mTime > mLatest) {
            mComplete = mTimes.empty() ? aBlock.mTime : mLatest;
            mLatest = aBlock.mTime;
        }
        mTimes.push_back(aBlock.mTime);
    }

    /// Pictures in 1000 seconds; 0 where they keep to no rate that is in use, or to two of them.
    std::uint32_t GetFrameRate(const MatroskaInfo& anInfo) {
        constexpr std::uint32_t kUsual[] = {10000, 12000, 12500, 15000, 23976, 24000,  25000,  29970,
                                            30000, 48000, 50000, 59940, 60000, 100000, 119880, 120000};
        // Once a picture is later than all before it, those up to the latest of them have all been decoded.
        const auto fLater = [this](std::uint64_t aTime) { return aTime > mComplete; };
        mTimes.erase(std::remove_if(mTimes.begin(), mTimes.end(), fLater), mTimes.end());
        std::sort(mTimes.begin(), mTimes.end());
        std::uint32_t found = 0;
        for (const std::uint32_t rate : kUsual) {
            if (KeepsTo(rate, anInfo)) {
                if (found != 0) {
                    return 0;
                }
                found = rate;
            }
        }
        return found;
    }

private:
    /// Whether each picture is where a constant rate has it, but for the ticks that times are rounded to.
    bool KeepsTo(std::uint32_t aRate, const MatroskaInfo& anInfo) const {
        constexpr std::uint64_t kThousandSeconds = std::uint64_t{1000} * kMicro;
        const std::uint64_t tick = anInfo.mScale / 1000 + 1;
        if (mTimes.size() < kMatroska_LeastPictures) {
            return false;
        }
        for (std::size_t i = 1; i < mTimes.size(); ++i) {
            const std::uint64_t time = anInfo.GetMicroseconds(mTimes[i] - mTimes[0]);
            const std::uint64_t due = i * kThousandSeconds / aRate;
            if (std::max(time, due) - std::min(time, due) > tick) {
                return false;
            }
        }
        return true;
    }

    std::vector<std::uint64_t> mTimes; ///< ticks
    std::uint64_t mLatest = 0;         ///< of them
    std::uint64_t mComplete = 0;       ///< the latest before that
};

} // namespace

MatroskaPace MeasureMatroskaPace(MediaBytes& aBytes, const MatroskaSegment& aSegment,
                                 const MatroskaInfo& anInfo, const MatroskaTrack* aVideo,
                                 const MatroskaTrack* aSound, std::uint32_t& aBudget) {
    SoundPace sound;
    PicturePace pictures;
    MatroskaBlocks blocks(aSegment.GetClusters(), aBudget);
    MatroskaBlock block(aSegment.GetContent());
    bool fRead = false;
    for (std::uint32_t i = 0; i < kMatroska_MaxPaceBlocks; ++i) {
        if (!aBytes.HasBuffered(blocks.GetPosition(), kHeadSize)) {
            if (fRead || !aBytes.Load(blocks.GetPosition(), kMatroska_PaceSize)) {
                break;
            }
            fRead = true;
        }
        if (!blocks.Next(&block)) {
            break;
        }
        if (aVideo != nullptr && block.mTrack == aVideo->mNumber) {
            pictures.Take(block);
        } else if (aSound != nullptr && block.mTrack == aSound->mNumber) {
            sound.Take(block);
        }
    }
    MatroskaPace pace;
    pace.mSoundBitRate = aSound != nullptr ? sound.GetBitRate(anInfo, aSound->mFrameTime) : 0;
    pace.mFrameRate = aVideo != nullptr ? pictures.GetFrameRate(anInfo) : 0;
    return pace;
}
