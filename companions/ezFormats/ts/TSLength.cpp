#include "ezFormats/ts/TSLength.h"

#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/ts/TSLimits.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>

namespace {

constexpr const char* kByStamps = "last frame";
constexpr const char* kByClock = "estimate: by the program clock";
constexpr const char* kByRate = "estimate: by the rate of the program clock";

/// What the clock may lack of the end: pictures are shown up to a second after they were sent (2.4.2.6).
constexpr std::uint64_t kLastSecond = kStreamClock_Rate;

/// Whether a recording may be so long.
constexpr bool IsPlausible(std::uint64_t aTicks) {
    return aTicks / kStreamClock_Rate <= kMedia_MaxSeconds;
}

/// Ticks that tell how fast the clock goes: at 40 Mbit/s no more of them stand at both ends.
constexpr std::uint64_t kEnoughClock = kStreamClock_Rate / 20;

class Measure {
public:
    Measure(MediaBytes& aBytes, TSHead& aHead)
        : mBytes(aBytes), mHead(aHead), mStart(aBytes.GetEnd()), mSize(aBytes.GetEnd()) {}

    TSLength Run() {
        ReadTail();
        TSLength length = ByStamps();
        if (length.mTicks == 0) {
            length = ByClock();
        }
        length = Checked(length);
        return IsPlausible(length.mTicks) ? length : TSLength(); // it is a damaged number
    }

private:
    /// Looks at the packets of a part.
    bool Scan(std::uint64_t aPosition, std::size_t aSize, TSScan& aScan) {
        const unsigned char* block = nullptr;
        if (!mBytes.LoadWindow(aPosition, aSize)) {
            return false;
        }
        const std::size_t size = std::min(mBytes.Borrow(aPosition, &block), aSize);
        mHead.GetTables().Break();
        TSPacketWalk walk(mHead.GetLayout(), block, size, aPosition);
        for (TSPacket packet; walk.Next(&packet);) {
            aScan.Take(packet);
            mHead.GetTables().Take(packet);
        }
        return true;
    }

    /// Windows at the end, each before the one that was read, until they tell.
    void ReadTail() {
        std::size_t size = kTS_WindowSize;
        while (mStart > mHead.GetEnd() && mSize - mStart < kTS_MaxWindow) {
            const std::uint64_t start = mStart - std::min<std::uint64_t>(size, mStart - mHead.GetEnd());
            const auto room = static_cast<std::size_t>(mStart - start);
            if (room >= kTSPacket_Size && !Scan(start, room, mTail)) {
                return;
            }
            mStart = start;
            if (IsTold()) {
                return;
            }
            size = std::min(std::max(static_cast<std::size_t>(mSize - mStart), size), kTS_LargestBlock);
        }
    }

    /// Whether the streams that had stamps at the start have some here.
    bool IsTold() const {
        bool fFirst = false;
        bool fAll = true;
        for (const StreamKind kind : {StreamKind::Video, StreamKind::Audio}) {
            const TSTrack* const track = mHead.FindTrack(kind);
            const TSSeen* const start =
                track != nullptr ? mHead.GetScan().Find(track->mStream.mPID) : nullptr;
            if (start == nullptr || start->mStamps.IsEmpty()) {
                continue;
            }
            const TSSeen* const end = mTail.Find(track->mStream.mPID);
            const bool fHere = end != nullptr && !end->mStamps.IsEmpty();
            fFirst = fFirst || fHere;
            fAll = fAll && fHere;
        }
        const TSSeen* const clock = mTail.Find(mHead.GetClockPID());
        const bool fClock = clock != nullptr && clock->mClock.mFirst;
        const bool fLong = mSize - mStart >= kTS_TableWindow;
        return fFirst ? fAll || fLong : fClock && (fLong || IsWithoutStamps());
    }

    /// True where the start had none either.
    bool IsWithoutStamps() const {
        return std::none_of(mHead.GetTracks().begin(), mHead.GetTracks().end(),
                            [this](const TSTrack& aTrack) {
                                const TSSeen* const seen = mHead.GetScan().Find(aTrack.mStream.mPID);
                                return IsMedia(aTrack) && seen != nullptr && !seen->mStamps.IsEmpty();
                            });
    }

    static bool IsMedia(const TSTrack& aTrack) {
        const StreamKind kind = aTrack.mStream.GetKind();
        return kind == StreamKind::Video || kind == StreamKind::Audio;
    }

    /// Whether the end begins where the start ends.
    bool IsWhole() const { return mStart <= mHead.GetEnd(); }

    /// Ticks that the last frame of a track takes, or what the last packet of sound holds.
    static std::uint64_t LastStep(const TSTrack& aTrack, const TSSeen& aStart, const TSSeen& aLast) {
        if (aTrack.mVideo && aTrack.mVideo->mFrameRate != 0) {
            return std::uint64_t{kStreamClock_Rate} * 1000 / aTrack.mVideo->mFrameRate;
        }
        const bool fTold = aTrack.mSound && aTrack.mSound->mFrameTicks != 0 && aLast.mLastPayload != 0;
        return fTold ? aTrack.mSound->GetTicksOf(aLast.mLastPayload) : aStart.mStamps.GetSteps().mUsual;
    }

    /// From the first stamp of a track to its last one.
    std::uint64_t LengthOf(const TSTrack& aTrack) const {
        const TSSeen* const start = mHead.GetScan().Find(aTrack.mStream.mPID);
        if (!IsMedia(aTrack) || start == nullptr || start->mStamps.IsEmpty()) {
            return 0;
        }
        const TSSeen* const tail = mTail.Find(aTrack.mStream.mPID);
        const bool fTail = tail != nullptr && !tail->mStamps.IsEmpty();
        if (!fTail && !IsWhole()) {
            return 0;
        }
        const bool fStart = !fTail || (IsWhole() && StreamClock_IsBefore(tail->mStamps.GetLatest(),
                                                                         start->mStamps.GetLatest()));
        const TSSeen& last = fStart ? *start : *tail;
        return StreamClock_Distance(start->mStamps.GetEarliest(), last.mStamps.GetLatest()) +
               LastStep(aTrack, *start, last);
    }

    TSLength ByStamps() const {
        std::uint64_t longest = 0;
        for (const TSTrack& track : mHead.GetTracks()) {
            longest = std::max(longest, LengthOf(track));
        }
        return {longest, kByStamps};
    }

    TSLength ByClock() const {
        const TSSeen* const start = mHead.GetScan().Find(mHead.GetClockPID());
        const TSSeen* const tail = mTail.Find(mHead.GetClockPID());
        if (start == nullptr || !start->mClock.mFirst) {
            return {};
        }
        const bool fTail = tail != nullptr && tail->mClock.mFirst;
        if (!fTail && !IsWhole()) {
            return {};
        }
        const std::uint64_t last = fTail ? tail->mClock.mLast : start->mClock.mLast;
        const std::uint64_t ticks = StreamClock_Distance(*start->mClock.mFirst, last);
        return {ticks != 0 ? ticks + kLastSecond : 0, kByClock};
    }

    /// Ticks that the clock makes of the whole file, at the places that were looked at; 0 where it does not.
    std::uint64_t TicksByRate() const {
        return mClock.mTicks >= kEnoughClock
                   ? MediaNumber_Scale(mSize - std::min(mSize, mHead.GetLayout().mStart), mClock.mTicks,
                                       mClock.mBytes)
                   : 0;
    }

    static bool IsFar(std::uint64_t aTicks, std::uint64_t anExpected) {
        return aTicks / kTS_MaxDeviation > anExpected || anExpected / kTS_MaxDeviation > aTicks;
    }

    /// Adds the times that the clock went round, which a file's bytes tell.
    std::uint64_t WithRounds(std::uint64_t aTicks) const {
        const std::uint64_t expected = TicksByRate();
        if (aTicks == 0 || expected <= kStreamClock_Wrap || expected <= aTicks) {
            return aTicks;
        }
        if (!IsPlausible(expected)) {
            return aTicks;
        }
        const std::uint64_t rounds = (expected - aTicks + kStreamClock_Wrap / 2) / kStreamClock_Wrap;
        const std::uint64_t ticks = aTicks + rounds * kStreamClock_Wrap;
        const std::uint64_t off = ticks > expected ? ticks - expected : expected - ticks;
        return off <= expected / 3 ? ticks : aTicks;
    }

    void AddClock(const TSScan& aScan) {
        const TSSeen* const seen = aScan.Find(mHead.GetClockPID());
        if (seen != nullptr) {
            mClock.AddRate(seen->mClock);
        }
    }

    void ReadInnerPlaces() {
        const std::uint64_t end = mStart;
        const std::uint64_t start = std::min(mHead.GetEnd(), end);
        for (std::uint32_t i = 1; i <= kTS_InnerPlaces; ++i) {
            TSScan scan;
            const std::uint64_t place =
                start + MediaNumber_Scale(end - start, i, std::uint64_t{kTS_InnerPlaces} + 1);
            const auto room = static_cast<std::size_t>(std::min<std::uint64_t>(kTS_InnerWindow, end - place));
            if (Scan(place, room, scan)) {
                AddClock(scan);
            }
        }
    }

    /// The length, if how fast the clock goes does not contradict it by far; else what that makes of the
    /// size, and an eighth more, so that it is not short.
    TSLength Checked(const TSLength& aLength) {
        AddClock(mHead.GetScan());
        AddClock(mTail);
        const std::uint64_t expected = TicksByRate();
        if (expected == 0) {
            return aLength;
        }
        TSLength length = {WithRounds(aLength.mTicks), aLength.mMethod};
        if (length.mTicks != 0 && !IsFar(length.mTicks, expected)) {
            return length;
        }
        if (!IsWhole()) {
            ReadInnerPlaces();
            length.mTicks = WithRounds(aLength.mTicks);
        }
        const std::uint64_t better = TicksByRate();
        if (length.mTicks != 0 && !IsFar(length.mTicks, better)) {
            return length;
        }
        return {ezSaturating_Add64(better, better / 8), kByRate};
    }

    MediaBytes& mBytes;
    TSHead& mHead;
    TSScan mTail;
    TSClock mClock;
    std::uint64_t mStart; ///< of the part at the end that was read
    std::uint64_t mSize;
};

} // namespace

TSLength MeasureTS(MediaBytes& aBytes, TSHead& aHead) {
    return aBytes.GetSize() ? Measure(aBytes, aHead).Run() : TSLength();
}
