#include "ezFormats/iso/ISOFragments.h"

#include "ezBytes/BoxWalk.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"

#include <algorithm>
#include <optional>

namespace {

// Flags of "tfhd" and "trun": what is stated (ISO/IEC 14496-12, 8.8.7 and 8.8.8).
constexpr std::uint32_t kHeadOffset = 0x1;
constexpr std::uint32_t kHeadDescription = 0x2;
constexpr std::uint32_t kHeadTicks = 0x8;
constexpr std::uint32_t kHeadSize = 0x10;
constexpr std::uint32_t kHeadFromFragment = 0x20000; // default-base-is-moof
constexpr std::uint32_t kRunOffset = 0x1;
constexpr std::uint32_t kRunFirstFlags = 0x4;
constexpr std::uint32_t kRunTicks = 0x100;
constexpr std::uint32_t kRunSize = 0x200;
constexpr std::uint32_t kRunFlags = 0x400;
constexpr std::uint32_t kRunDelay = 0x800;

/// A track on its way through the fragments.
struct Track {
    const ISOTrack* mTrack = nullptr; ///< null: the movie has none of the kind
    std::uint64_t mStart = 0;
    std::uint64_t mNow = 0;    ///< ticks
    std::uint64_t mBefore = 0; ///< ticks up to the last index, not counting what indices tell of
    bool mfStarted = false;
    ISOFragmentTrack mFound;

    /// The movie's own samples come before those of the fragments.
    void Begin(const std::optional<ISOTrack>& aTrack) {
        mTrack = aTrack.has_value() ? &*aTrack : nullptr;
        mfStarted = mTrack != nullptr && mTrack->mTables.mSizes.mCount != 0;
        mNow = mfStarted ? mTrack->mDuration : 0;
    }
    void MoveTo(std::uint64_t aTime) {
        mNow = aTime;
        if (!mfStarted) {
            mStart = aTime;
            mfStarted = true;
        }
    }
    void Add(std::uint64_t aSamples, std::uint64_t aTicks, std::uint64_t aBytes) {
        mfStarted = true;
        mNow = ezSaturating_Add64(mNow, aTicks);
        mFound.mSamples = ezSaturating_Add64(mFound.mSamples, aSamples);
        mFound.mSampleTicks = ezSaturating_Add64(mFound.mSampleTicks, aTicks);
        mFound.mBytes = ezSaturating_Add64(mFound.mBytes, aBytes);
        mFound.mTicks = std::max(mFound.mTicks, ezSaturating_Add64(mBefore, mNow - std::min(mStart, mNow)));
    }
    /// An index tells of what follows; times after that start anew.
    void StepOverIndexed() {
        mBefore = mFound.mTicks;
        mStart = mNow;
        mfStarted = false;
    }
    /// Microseconds, with those that indices tell of.
    std::uint64_t GetDuration(TimeSum anIndexed) const {
        if (mTrack != nullptr) {
            anIndexed.Add(mFound.mTicks, mTrack->mTimescale);
        }
        return anIndexed.GetMicroseconds();
    }
};

/// What the runs of a track leave out.
struct Defaults {
    std::uint32_t mTicks = 0;
    std::uint32_t mSize = 0;
    std::optional<std::uint64_t> mBase; ///< which offsets of samples count from
};

/// Where the samples of a run begin: an offset with a sign.
std::uint64_t PlaceOf(std::uint64_t aBase, std::uint32_t anOffset) {
    constexpr std::uint32_t kNegative = 0x80000000;
    const std::uint32_t back = 0 - anOffset;
    return anOffset < kNegative ? ezSaturating_Add64(aBase, anOffset)
                                : aBase - std::min<std::uint64_t>(aBase, back);
}

/// Adds a track run ("trun", 8.8.8) to a track.
void ReadRun(ByteReader aBox, const Defaults& aDefaults, Track& aTrack) {
    const std::uint32_t flags = aBox.ReadBig32();
    const std::uint32_t count = aBox.ReadBig32();
    const std::uint32_t offset = (flags & kRunOffset) != 0 ? aBox.ReadBig32() : 0; // data_offset
    aBox.Skip((flags & kRunFirstFlags) != 0 ? 4 : 0);                              // first_sample_flags
    if (aBox.HasFailed()) {
        return;
    }
    if (aDefaults.mBase && (flags & kRunOffset) != 0 && count != 0 && aTrack.mFound.mFirstSample.mSize == 0) {
        ByteReader first = aBox;
        first.Skip((flags & kRunTicks) != 0 ? 4 : 0);
        const std::uint32_t size = (flags & kRunSize) != 0 ? first.ReadBig32() : aDefaults.mSize;
        aTrack.mFound.mFirstSample = {PlaceOf(*aDefaults.mBase, offset), size};
    }
    if ((flags & (kRunTicks | kRunSize)) == 0) {
        aTrack.Add(count, std::uint64_t{count} * aDefaults.mTicks, std::uint64_t{count} * aDefaults.mSize);
        return;
    }
    const unsigned rest = ((flags & kRunFlags) != 0 ? 4U : 0U) + ((flags & kRunDelay) != 0 ? 4U : 0U);
    std::uint64_t ticks = 0;
    std::uint64_t bytes = 0;
    for (std::uint32_t i = 0; i < count && !aBox.HasFailed(); ++i) {
        ticks += (flags & kRunTicks) != 0 ? aBox.ReadBig32() : aDefaults.mTicks;
        bytes += (flags & kRunSize) != 0 ? aBox.ReadBig32() : aDefaults.mSize;
        aBox.Skip(rest); // sample_flags, composition time offset
    }
    if (!aBox.HasFailed()) {
        aTrack.Add(count, ticks, bytes);
    }
}

/// Walks over the boxes at the top, after "moov".
class FragmentReading {
public:
    FragmentReading(MediaBytes& aBytes, const ISOMovie& aMovie, std::uint32_t& aBoxBudget)
        : mBytes(aBytes), mBoxBudget(aBoxBudget) {
        mAudio.Begin(aMovie.mAudio);
        mVideo.Begin(aMovie.mVideo);
    }

    ISOFragments Read(std::uint64_t aStart, std::uint32_t aMaxFragments, bool afDuration);

private:
    bool Next(std::uint64_t aPosition, BoxType* aType, ByteReader* aContent);
    bool Walk(std::uint32_t aMaxFragments, bool afDuration, ISOFragments& aFragments);
    bool IsCut() const;
    void ReadFragment(const ByteReader& aBox);
    void ReadTrackFragment(const ByteReader& aBox, bool afFirst);
    Track* ReadHead(ByteReader aBox, bool afFirst, Defaults& aDefaults);
    std::uint64_t ReadIndex(ByteReader aBox);

    MediaBytes& mBytes;
    std::uint32_t& mBoxBudget;
    Track mAudio;
    Track mVideo;
    TimeSum mIndexed;
    std::uint64_t mPosition = 0;
    std::uint64_t mFragment = 0;   ///< position of the last fragment
    std::uint32_t mCount = 0;      ///< fragments read, or told of by an index
    std::uint64_t mLargestBox = 0; ///< bytes of the largest that was stepped over, from the first fragment on
    std::uint64_t mExpectedSamples = 0; ///< bytes that the last fragment states, where no box has followed it
};

/// The box at a position.
bool FragmentReading::Next(std::uint64_t aPosition, BoxType* aType, ByteReader* aContent) {
    ByteReader reader(mBytes);
    reader.Skip(aPosition);
    return BoxWalk(reader, mBoxBudget).Next(aType, aContent);
}

/// Of "tfhd" (8.8.7): whose fragment it is, null for a track that does not matter, and its defaults.
Track* FragmentReading::ReadHead(ByteReader aBox, bool afFirst, Defaults& aDefaults) {
    const std::uint32_t flags = aBox.ReadBig32();
    const std::uint32_t identifier = aBox.ReadBig32();
    Track* found = nullptr;
    for (Track* track : {&mAudio, &mVideo}) {
        if (track->mTrack != nullptr && track->mTrack->mID == identifier) {
            found = track;
        }
    }
    if (found == nullptr) {
        return nullptr;
    }
    if ((flags & kHeadOffset) != 0) {
        aDefaults.mBase = aBox.ReadBig(8); // base_data_offset
    } else if ((flags & kHeadFromFragment) != 0 || afFirst) {
        aDefaults.mBase = mFragment;
    }
    aBox.Skip((flags & kHeadDescription) != 0 ? 4 : 0); // sample_description_index
    aDefaults.mTicks = (flags & kHeadTicks) != 0 ? aBox.ReadBig32() : found->mTrack->mDefaultTicks;
    aDefaults.mSize = (flags & kHeadSize) != 0 ? aBox.ReadBig32() : found->mTrack->mDefaultSize;
    return aBox.HasFailed() ? nullptr : found;
}

void FragmentReading::ReadTrackFragment(const ByteReader& aBox, bool afFirst) {
    BoxWalk walk = BoxWalk::Within(aBox, mBoxBudget);
    BoxType type;
    ByteReader content = aBox;
    Defaults defaults;
    Track* track = nullptr;
    while (walk.Next(&type, &content)) {
        if (type == "tfhd") {
            track = ReadHead(content, afFirst, defaults);
        } else if (type == "tfdt" && track != nullptr) { // 8.8.12
            const unsigned size = content.ReadByte() == 1 ? 8 : 4;
            content.Skip(3); // flags
            const std::uint64_t time = content.ReadBig(size);
            if (!content.HasFailed()) {
                track->MoveTo(time);
            }
        } else if (type == "trun" && track != nullptr) {
            ReadRun(content, defaults, *track);
        }
    }
}

void FragmentReading::ReadFragment(const ByteReader& aBox) {
    BoxWalk walk = BoxWalk::Within(aBox, mBoxBudget);
    BoxType type;
    ByteReader content = aBox;
    bool fFirst = true;
    while (walk.Next(&type, &content)) {
        if (type == "traf") {
            ReadTrackFragment(content, fFirst);
            fFirst = false;
        }
    }
}

/// Of "sidx" (8.16.3): adds its durations up. The position after what it is an index of; 0 where it is
/// damaged.
std::uint64_t FragmentReading::ReadIndex(ByteReader aBox) {
    const unsigned size = aBox.ReadByte() == 1 ? 8 : 4;
    aBox.Skip(7); // flags, reference_ID
    const std::uint32_t timescale = aBox.ReadBig32();
    aBox.Skip(size); // earliest_presentation_time
    std::uint64_t end = ezSaturating_Add64(aBox.GetEnd(), aBox.ReadBig(size));
    aBox.Skip(2); // reserved
    const auto count = static_cast<std::uint32_t>(aBox.ReadBig(2));
    std::uint64_t ticks = 0;
    for (std::uint32_t i = 0; i < count && !aBox.HasFailed(); ++i) {
        end = ezSaturating_Add64(end, aBox.ReadBig32() & 0x7FFFFFFFU);
        ticks += aBox.ReadBig32();
        aBox.Skip(4); // stream access points
    }
    if (aBox.HasFailed() || MediaNumber_Microseconds(ticks, timescale) == 0 || end > mBytes.GetEnd()) {
        return 0;
    }
    mIndexed.Add(ticks, timescale);
    mAudio.StepOverIndexed();
    mVideo.StepOverIndexed();
    return end;
}

/// False where the bound of fragments ended it. For a duration that is at the first one too many: the samples
/// of the last one stand before that.
bool FragmentReading::Walk(std::uint32_t aMaxFragments, bool afDuration, ISOFragments& aFragments) {
    BoxType type;
    ByteReader content(mBytes);
    while ((mCount < aMaxFragments || afDuration) && Next(mPosition, &type, &content)) {
        const bool fIndex = type == "sidx" && afDuration;
        if (mCount == aMaxFragments && (type == "moof" || fIndex)) {
            return false;
        }
        if (mCount != 0) {
            mLargestBox = std::max(mLargestBox, content.GetEnd() - mPosition);
        }
        mFragment = mPosition;
        mPosition = content.GetEnd();
        mExpectedSamples = 0;
        if (type == "moof") {
            ++mCount;
            const std::uint64_t before = ezSaturating_Add64(mAudio.mFound.mBytes, mVideo.mFound.mBytes);
            ReadFragment(content);
            mExpectedSamples = ezSaturating_Add64(mAudio.mFound.mBytes, mVideo.mFound.mBytes) - before;
        } else if (fIndex) {
            const std::uint64_t end = ReadIndex(content);
            mCount += end != 0 ? 1 : 0;
            mPosition = std::max(mPosition, end);
            aFragments.mfIndexed = aFragments.mfIndexed || end != 0;
        }
    }
    return mCount < aMaxFragments || afDuration;
}

/// True when the file ends within the box at which the walk did: what is there of it is no more than such a
/// box holds. Else its size is damaged, and more stands after it.
bool FragmentReading::IsCut() const {
    ByteReader box(mBytes);
    box.Skip(mPosition);
    const std::uint64_t left = box.GetLeft();
    const std::uint32_t size = box.ReadBig32();
    constexpr std::uint32_t kLeastBox = 8;
    constexpr std::uint32_t kLargeHead = 16;
    constexpr std::uint64_t kUnevenness = 2; // no two boxes of samples are of one size
    const std::uint64_t usual = std::max(mLargestBox, ezSaturating_Add64(mExpectedSamples, kLargeHead));
    return box.HasFailed() || ((size == 1 || size >= kLeastBox) && left / kUnevenness <= usual);
}

ISOFragments FragmentReading::Read(std::uint64_t aStart, std::uint32_t aMaxFragments, bool afDuration) {
    ISOFragments fragments;
    mPosition = aStart;
    const bool fWalked = Walk(aMaxFragments, afDuration, fragments);
    const std::uint64_t size = mBytes.GetEnd();
    // Where neither a budget nor damage ended the walk, the file did: maybe within the last box.
    const bool fEnded = fWalked && mBoxBudget != 0 && !mBytes.IsBudgetUsedUp();
    fragments.mfComplete = mPosition >= size || (fEnded && IsCut());
    fragments.mStart = aStart;
    // The samples of the last fragment are a part of its share, also where their box is damaged.
    fragments.mEnd = fEnded ? std::min(ezSaturating_Add64(mPosition, mExpectedSamples), size) : mPosition;
    fragments.mAudio = mAudio.mFound;
    fragments.mVideo = mVideo.mFound;
    fragments.mDuration = std::max(mAudio.GetDuration(mIndexed), mVideo.GetDuration(mIndexed));
    return fragments;
}

} // namespace

ISOFragments ReadFragments(MediaBytes& aBytes, std::uint64_t aStart, const ISOMovie& aMovie,
                           std::uint32_t aMaxFragments, bool afDuration, std::uint32_t& aBoxBudget) {
    return FragmentReading(aBytes, aMovie, aBoxBudget).Read(aStart, aMaxFragments, afDuration);
}
