#pragma once

#include "ezFormats/mpegsystem/StreamClock.h"
#include "ezFormats/ps/PSTracks.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// The frames of a track of sound, by which the bytes after its last stamp are time.
struct PSFrames {
    PSTrackID mTrack;
    std::uint64_t mTicks = 0; ///< of one
    std::uint64_t mBytes = 0; ///< of one; 0: not known

    /// Ticks of those that lie in so many bytes, of one at least.
    std::uint64_t GetTicks(std::uint64_t aBytes) const;
};

/// The stamps between two places at which the clock of a stream begins anew.
class PSStretch {
public:
    void AddClock(std::uint64_t aClock) { mClock.Add(aClock); }
    /// A packet of pictures or sound.
    void AddContent(const PSContent& aContent);

    /// Whether tracks have stamps.
    bool HasStamps() const { return !mTracks.empty(); }
    /// Ticks from its earliest picture or sound to the end of its latest. By the clock of the packs where no
    /// track has a stamp.
    std::uint64_t GetTicks(const PSFrames& aFrames) const { return GetTicksTo(*this, aFrames); }
    /// The same up to the end of a later stretch; 0 where neither has a stamp or a clock.
    std::uint64_t GetTicksTo(const PSStretch& aLater, const PSFrames& aFrames) const;
    /// Whether it lies between two others, by the clock of the packs; true where there is none.
    bool IsBetween(const PSStretch& aFirst, const PSStretch& aLast) const;

private:
    struct TrackStamps {
        PSTrackID mID;
        StampWindow mStamps;
        std::uint64_t mTail = 0; ///< bytes from the packet of the latest stamp on

        /// Ticks of what begins with the latest stamp.
        std::uint64_t GetTailTicks(const PSFrames& aFrames) const;
    };

    std::optional<std::uint64_t> GetTrackTicksTo(const PSStretch& aLater, const PSFrames& aFrames) const;

    StampWindow mClock;
    std::vector<TrackStamps> mTracks;
};

/// What a part of a file tells of time: one stretch, or several where the clock begins anew within it.
class PSClock {
public:
    /// A pack begins.
    void AddClock(std::uint64_t aClock);
    void AddContent(const PSContent& aContent) { mLast.AddContent(aContent); }
    /// A pack of a disc's navigation belongs to a video object, each of which has a clock of its own.
    void AddObject(std::uint32_t aNumber);
    void AddBytes(std::uint64_t aCount) { mBytes += aCount; }

    bool HasStamps() const { return GetFirst().HasStamps() || mLast.HasStamps(); }
    bool HasRestarts() const { return mfRestarts; }
    const PSStretch& GetFirst() const { return mfRestarts ? mFirst : mLast; }
    const PSStretch& GetLast() const { return mLast; }
    /// Ticks of all stretches.
    std::uint64_t GetTicks(const PSFrames& aFrames) const;
    std::uint64_t GetBytes() const { return mBytes; }
    /// Whether another part is known to be of another video object.
    bool IsOfOtherObject(const PSClock& anOther) const;

private:
    PSStretch mFirst; ///< where there are several
    PSStretch mLast;
    bool mfRestarts = false;
    std::uint64_t mEnded = 0; ///< ticks of all stretches but the last
    std::uint64_t mBytes = 0;
    std::optional<std::uint64_t> mClock; ///< the last one
    std::optional<std::uint32_t> mFirstObject;
    std::optional<std::uint32_t> mLastObject;
};
