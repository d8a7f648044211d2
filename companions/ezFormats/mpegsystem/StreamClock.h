#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// The clock of MPEG systems (ISO/IEC 13818-1, 2.4.2 and 2.4.3.6): stamps of 33 bits at 90 kHz, which begin
/// anew after 26 h 30 min.

inline constexpr std::uint32_t kStreamClock_Rate = 90000;                  ///< ticks a second
inline constexpr std::uint64_t kStreamClock_Wrap = std::uint64_t{1} << 33; ///< stamps are less

/// Ticks from one stamp on to another: less than kStreamClock_Wrap.
constexpr std::uint64_t StreamClock_Distance(std::uint64_t aFrom, std::uint64_t aTo) {
    return (aTo - aFrom) & (kStreamClock_Wrap - 1);
}

/// Whether a stamp lies before another one, the shorter way round.
constexpr bool StreamClock_IsBefore(std::uint64_t aStamp, std::uint64_t anOther) {
    const std::uint64_t distance = StreamClock_Distance(aStamp, anOther);
    return distance != 0 && distance < kStreamClock_Wrap / 2;
}

/// The presentation stamps of one elementary stream that stand in a part of a file, in any order: those of
/// pictures that are coded out of order are. A stamp is earlier or later than the others the shorter way
/// round, so a clock that begins anew within the part does no harm.
class StampWindow {
public:
    /// @param aStamp  less than kStreamClock_Wrap
    void Add(std::uint64_t aStamp);

    bool IsEmpty() const { return mCount == 0; }
    std::uint64_t GetCount() const { return mCount; }
    std::uint64_t GetEarliest() const { return mEarliest; }
    std::uint64_t GetLatest() const { return mLatest; }
    /// Ticks from the earliest to the latest.
    std::uint64_t GetSpan() const { return StreamClock_Distance(mEarliest, mLatest); }

    /// What lies between one stamp and the next in time, of the first kStampWindow_MaxKept stamps.
    struct Steps {
        std::uint64_t mUsual = 0; ///< ticks: the median; 0 where there are not two stamps
        std::uint64_t mCount = 0; ///< those that are the usual one but for rounding to milliseconds
        std::uint64_t mTicks = 0; ///< of these together
    };
    Steps GetSteps() const;

    /// Pictures in 1000 seconds by the usual step, where each picture has a stamp; 0 where too few tell.
    std::uint32_t GetFrameRate() const;

private:
    std::uint64_t mCount = 0;
    std::uint64_t mEarliest = 0;
    std::uint64_t mLatest = 0;
    std::vector<std::uint64_t> mKept;
};
