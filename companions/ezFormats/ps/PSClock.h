#pragma once

#include "ezFormats/mpegsystem/StreamClock.h"
#include "ezFormats/ps/PSTracks.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

/// The frames of a file's sound and pictures, by which what follows the last stamps is time. What is 0 is not
/// known. Tracks of one kind are taken for alike.
struct PSFrames {
    std::uint64_t mSoundTicks = 0; ///< of a frame of sound
    std::uint64_t mSoundBytes = 0;
    std::uint64_t mPictureTicks = 0; ///< of a picture of MPEG video
};

/// The pictures of MPEG video in a row, in the order in which they are shown (temporal_reference).
class PSPictures {
public:
    /// Takes those whose headers lie there.
    void Add(const unsigned char* aBytes, std::size_t aSize);
    /// How many are shown from the first one on, that included; 0 where there is none.
    std::uint64_t CountShown() const { return mfStarted ? static_cast<std::uint64_t>(mLast + 1) : 0; }

private:
    bool mfStarted = false;
    std::int64_t mOffset = 0; ///< from the reference to the place after the first picture
    std::int64_t mLast = 0;
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
        PSPictures mPictures;    ///< in these

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
    /// States the frames, before anything is added.
    void SetFrames(const PSFrames& aFrames) { mFrames = aFrames; }
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
    std::uint64_t GetTicks() const;
    std::uint64_t GetBytes() const { return mBytes; }
    /// Whether another part is known to be of another video object.
    bool IsOfOtherObject(const PSClock& anOther) const;

private:
    PSFrames mFrames;
    PSStretch mFirst; ///< where there are several
    PSStretch mLast;
    bool mfRestarts = false;
    std::uint64_t mEnded = 0; ///< ticks of all stretches but the last
    std::uint64_t mBytes = 0;
    std::optional<std::uint64_t> mClock; ///< the last one
    std::optional<std::uint32_t> mFirstObject;
    std::optional<std::uint32_t> mLastObject;
};
