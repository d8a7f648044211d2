#include "ezFormats/mpegsystem/StreamClock.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/mpegsystem/MPEGSystemLimits.h"

#include <algorithm>
#include <numeric>

namespace {

/// Ticks by which two steps of one length differ where a writer counts milliseconds, or less.
constexpr std::uint64_t kRounding = kStreamClock_Rate / 1000;

} // namespace

void StampWindow::Add(std::uint64_t aStamp) {
    if (mCount++ == 0) {
        mEarliest = aStamp;
        mLatest = aStamp;
    } else if (StreamClock_IsBefore(aStamp, mEarliest)) {
        mEarliest = aStamp;
    } else if (StreamClock_IsBefore(mLatest, aStamp)) {
        mLatest = aStamp;
    }
    if (mKept.size() < kStampWindow_MaxKept) {
        mKept.push_back(aStamp);
    }
}

StampWindow::Steps StampWindow::GetSteps() const {
    std::vector<std::uint64_t> steps;
    for (const std::uint64_t stamp : mKept) {
        steps.push_back(StreamClock_Distance(mEarliest, stamp));
    }
    std::sort(steps.begin(), steps.end());
    steps.erase(std::unique(steps.begin(), steps.end()), steps.end());
    std::adjacent_difference(steps.begin(), steps.end(), steps.begin());
    Steps result;
    if (steps.size() < 2) {
        return result;
    }
    steps.erase(steps.begin());
    std::sort(steps.begin(), steps.end());
    result.mUsual = steps[steps.size() / 2];
    for (const std::uint64_t step : steps) {
        if (step + kRounding >= result.mUsual && step <= result.mUsual + kRounding) {
            ++result.mCount;
            result.mTicks += step;
        }
    }
    return result;
}

std::uint32_t StampWindow::GetFrameRate() const {
    const Steps steps = GetSteps();
    const std::uint32_t rate = MediaNumber_FrameRate(steps.mCount, steps.mTicks, kStreamClock_Rate);
    return steps.mCount >= kStampWindow_LeastSteps && rate <= kVideo_MaxFrameRate ? rate : 0;
}
