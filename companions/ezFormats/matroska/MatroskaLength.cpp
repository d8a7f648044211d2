#include "ezFormats/matroska/MatroskaLength.h"

#include "ezBytes/MatroskaBlocks.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"
#include "ezFormats/detail/MediaNumbers.h"
#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/matroska/MatroskaLimits.h"

#include "ezPlatform/base/Checked.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

constexpr std::uint32_t kMicro = 1'000'000;
constexpr std::uint64_t kNanosInMicro = 1000;
constexpr EBMLId kCuePoint = 0xBB;
constexpr EBMLId kCueTime = 0xB3;
constexpr EBMLId kCueTrackPositions = 0xB7;
constexpr EBMLId kCueClusterPosition = 0xF1;
constexpr EBMLId kTimestamp = 0xE7;

/// Bytes that the head of an element, and that of the first one in it, take at most.
constexpr std::uint64_t kHeadSize = 64;

bool Plays(const MatroskaTrack& aTrack) {
    return aTrack.mKind == MatroskaKind::Video || aTrack.mKind == MatroskaKind::Sound;
}

ByteReader ReaderAt(const ByteReader& aContent, std::uint64_t aPosition) {
    ByteReader reader = aContent;
    reader.Skip(aPosition - reader.GetPosition());
    return reader;
}

/// Looks for the last blocks of a segment.
class LastBlocks {
public:
    LastBlocks(MediaBytes& aBytes, MatroskaSegment& aSegment, const MatroskaInfo& anInfo,
               const MatroskaTracks& aTracks, std::uint32_t& aBudget)
        : mBytes(aBytes), mSegment(aSegment), mInfo(anInfo), mTracks(aTracks), mBudget(aBudget) {}

    /// Finds them: from the last cue on, and where that is far from the end, from there backward.
    void Find() {
        FindEnd();
        FindLastCue();
        if (mfCue && mEnd - mCue.mCluster <= kMatroska_TailSize) {
            Walk(mCue.mCluster);
        }
        if (mLast == 0) {
            WalkBackward();
        }
        if (mLast == 0 && mfCue) { // it plays on as long as it did since the cue before
            mfEstimated = true;
            mLast = ezSaturating_Add64(mInfo.GetMicroseconds(mCue.mTime),
                                       mInfo.GetMicroseconds(mCue.mTime - std::min(mCue.mTime, mTimeBefore)));
        }
    }
    /// Microseconds from the first cluster to where the last blocks end; 0 where none was found.
    std::uint64_t GetMicroseconds() {
        const std::uint64_t start = mLast != 0 ? GetStart() : 0;
        return mLast > start ? mLast - start : 0;
    }
    bool IsEstimate() const { return mfEstimated; }

private:
    /// The clusters end before the parts that a SeekHead has after them.
    void FindEnd() {
        constexpr EBMLId kAfter[] = {kMatroska_Cues, kMatroska_Tags, kMatroska_Attachments};
        mEnd = mSegment.GetContent().GetEnd();
        mFirst = mSegment.GetClusters().GetPosition();
        for (const EBMLId id : kAfter) {
            EBMLElement element(mSegment.GetContent());
            if (mSegment.Find(id, 0, &element) && element.mStart > mFirst) {
                mEnd = std::min(mEnd, element.mStart);
            }
        }
    }

    /// When a cluster begins, and where.
    struct Cue {
        std::uint64_t mTime = 0; ///< ticks
        std::uint64_t mCluster = 0;
    };

    /// The last cue, searched from the end: it is one of those after which only others stand, up to the end.
    void FindLastCue() {
        EBMLElement cues(mSegment.GetContent());
        if (!mSegment.Find(kMatroska_Cues, 0, &cues) || cues.mfCut) {
            return;
        }
        const std::uint64_t end = cues.mContent.GetEnd();
        const std::uint64_t size = std::min(cues.mContent.GetLeft(), kMatroska_CueTailSize);
        mBytes.Load(end - size, static_cast<std::size_t>(size));
        for (std::uint64_t place = end - size; place < end && !mfCue; ++place) {
            unsigned char byte = 0;
            if (!mBytes.Get(place, &byte)) {
                return;
            }
            if (byte == kCuePoint) {
                ReadCues(ReaderAt(mSegment.GetContent(), place).Take(end - place), end);
            }
        }
    }

    /// Takes the last of the cues that stand there, if these are all up to the end.
    void ReadCues(const ByteReader& aReader, std::uint64_t anEnd) {
        std::optional<Cue> last;
        EBMLWalk walk(aReader, mBudget, [](EBMLId anId) { return anId == kCuePoint; });
        for (EBMLElement element(aReader); walk.Next(&element);) {
            mTimeBefore = last ? last->mTime : 0;
            last = element.mfCut ? std::nullopt : ReadCue(element.mContent);
            if (!last) {
                return;
            }
        }
        mfCue = walk.GetPosition() == anEnd && last;
        mCue = mfCue ? *last : Cue();
    }

    std::optional<Cue> ReadCue(const ByteReader& aCue) {
        const std::uint64_t start = mSegment.GetContent().GetPosition();
        Cue cue;
        EBMLElement element(aCue);
        EBMLWalk walk(aCue, mBudget);
        if (!walk.Find(kCueTime, &element)) {
            return std::nullopt;
        }
        cue.mTime = ReadEBMLNumber(element.mContent);
        if (!walk.Find(kCueTrackPositions, &element)) {
            return std::nullopt;
        }
        EBMLWalk positions(element.mContent, mBudget);
        if (!positions.Find(kCueClusterPosition, &element)) {
            return std::nullopt;
        }
        const std::uint64_t position = ReadEBMLNumber(element.mContent, UINT64_MAX);
        cue.mCluster = ezSaturating_Add64(start, position);
        const bool fThere = mFirst <= cue.mCluster && cue.mCluster < mEnd;
        return fThere ? std::optional<Cue>(cue) : std::nullopt;
    }

    /// All blocks from a cluster on.
    void Walk(std::uint64_t aCluster) {
        MatroskaBlocks blocks(ReaderAt(mSegment.GetContent(), aCluster).Take(mEnd - aCluster), mBudget);
        MatroskaBlock block(mSegment.GetContent());
        bool fMore = true;
        while (fMore) {
            LoadAt(blocks.GetPosition());
            fMore = blocks.Next(&block);
            if (fMore) {
                Take(block);
            }
        }
        // What was not read may end later: a length has to be the whole one.
        mLast = mBytes.IsBudgetUsedUp() || mBudget == 0 ? 0 : mLast;
    }

    /// As many bytes at once as there may be, where the head of an element is not there.
    void LoadAt(std::uint64_t aPlace) {
        const std::uint64_t left = mEnd - std::min(mEnd, aPlace);
        if (!mBytes.HasBuffered(aPlace, static_cast<std::size_t>(std::min<std::uint64_t>(left, kHeadSize)))) {
            mBytes.Load(aPlace,
                        static_cast<std::size_t>(std::min<std::uint64_t>(left, kMediaBytes_LargestBlock)));
        }
    }

    void Take(const MatroskaBlock& aBlock) {
        const MatroskaTrack* const track = mTracks.OfNumber(aBlock.mTrack);
        if (track == nullptr || !Plays(*track)) {
            return;
        }
        const std::uint64_t frames = MediaNumber_Scale(track->mFrameTime, aBlock.mFrames, kNanosInMicro);
        const std::uint64_t length = !aBlock.mfWhole         ? 0
                                     : aBlock.mDuration != 0 ? mInfo.GetMicroseconds(aBlock.mDuration)
                                                             : frames;
        const std::uint64_t end = ezSaturating_Add64(mInfo.GetMicroseconds(aBlock.mTime), length);
        mLast = std::max(mLast, end);
    }

    /// Searches the end for the last cluster, one window after another.
    void WalkBackward() {
        constexpr std::uint64_t kStep = kMediaBytes_LargestWindow - kHeadSize; // heads are buffered whole
        const std::uint64_t first = std::max(mFirst, mEnd - std::min(mEnd, kMatroska_TailSize));
        std::uint64_t end = mEnd;
        while (end > first && mLast == 0 && !mBytes.IsBudgetUsedUp()) {
            const std::uint64_t start = std::max(first, end - std::min(end, kStep));
            mBytes.LoadWindow(start, kMediaBytes_LargestWindow);
            for (std::uint64_t place = end; place > start && mLast == 0; --place) {
                if (IsCluster(place - 1)) {
                    Walk(place - 1);
                    mBytes.LoadWindow(start, kMediaBytes_LargestWindow);
                }
            }
            end = start;
        }
    }

    /// Whether a cluster begins there: one that ends before the others do, and tells its time first.
    bool IsCluster(std::uint64_t aPlace) {
        constexpr unsigned char kFirstByte = kMatroska_Cluster >> 24;
        unsigned char byte = 0;
        if (!mBytes.Get(aPlace, &byte) || byte != kFirstByte) {
            return false;
        }
        const ByteReader reader = ReaderAt(mSegment.GetContent(), aPlace);
        ByteReader id = reader;
        if (ReadEBMLId(id) != kMatroska_Cluster) {
            return false;
        }
        EBMLElement cluster(reader);
        EBMLElement child(reader);
        EBMLWalk walk(reader, mBudget);
        if (!walk.Next(&cluster)) {
            return false;
        }
        EBMLWalk inner(cluster.mContent, mBudget);
        return inner.Next(&child) && child.mId == kTimestamp && child.mContent.GetLeft() <= 8;
    }

    /// What the first cluster says: captures start high.
    std::uint64_t GetStart() {
        MatroskaBlocks blocks(mSegment.GetClusters(), mBudget);
        MatroskaBlock block(mSegment.GetContent());
        return blocks.Next(&block) ? mInfo.GetMicroseconds(blocks.GetClusterTime()) : 0;
    }

    MediaBytes& mBytes;
    MatroskaSegment& mSegment;
    const MatroskaInfo& mInfo;
    const MatroskaTracks& mTracks;
    std::uint32_t& mBudget;
    std::uint64_t mFirst = 0;      ///< where the first cluster begins
    std::uint64_t mEnd = 0;        ///< of the clusters
    std::uint64_t mLast = 0;       ///< microseconds at which the last block ends
    Cue mCue;                      ///< the last one
    bool mfCue = false;            ///< there is one
    std::uint64_t mTimeBefore = 0; ///< ticks of the one before it
    bool mfEstimated = false;
};

/// Whether so many bytes may last so long.
enum class Belief { Believed, Doubted, Absurd };

Belief BeliefIn(std::uint64_t aMicroseconds, std::uint64_t aBytes, bool afVideo) {
    const std::uint32_t rate = MediaNumber_BitRate(aBytes, aMicroseconds, kMicro);
    if (rate == 0 || rate > (afVideo ? kFilm_MaxBitRate : kSound_MaxBitRate)) {
        return Belief::Absurd;
    }
    return rate >= (afVideo ? kMatroska_MinFilmRate : kSound_MinBitRate) ? Belief::Believed : Belief::Doubted;
}

/// What a muxer counted of the pictures, or of the sound where there are none.
std::uint64_t CountedMicroseconds(const MatroskaTracks& aTracks, const MatroskaTags& aTags) {
    const MatroskaTrack* const video = aTracks.Find(MatroskaKind::Video);
    const MatroskaTrack* const track = video != nullptr ? video : aTracks.Find(MatroskaKind::Sound);
    const MatroskaTrackCounts* const counts = track != nullptr ? aTags.FindTrack(track->mUID) : nullptr;
    return counts != nullptr && counts->mfOfThisFile ? counts->mNanoseconds / kNanosInMicro : 0;
}

} // namespace

MatroskaLength MeasureMatroska(MediaBytes& aBytes, MatroskaSegment& aSegment, const MatroskaInfo& anInfo,
                               const MatroskaTracks& aTracks, const MatroskaTags& aTags,
                               std::uint32_t& aBudget) {
    constexpr double kPlaceholder = 1; // which writers leave that never came to the end
    MatroskaLength length;
    length.mMicroseconds = anInfo.GetStatedMicroseconds();
    if (!aBytes.GetSize()) {
        return length;
    }
    const bool fVideo = aTracks.Find(MatroskaKind::Video) != nullptr;
    length.mSize = std::max(*aBytes.GetSize(), aSegment.GetStatedEnd());
    if (BeliefIn(length.mMicroseconds, length.mSize, fVideo) == Belief::Absurd) { // the size is no better
        length.mSize = *aBytes.GetSize();
    }
    const Belief belief = BeliefIn(length.mMicroseconds, length.mSize, fVideo);
    if (belief == Belief::Believed && anInfo.mTicks > kPlaceholder) {
        return length;
    }
    LastBlocks last(aBytes, aSegment, anInfo, aTracks, aBudget);
    const std::uint64_t counted = CountedMicroseconds(aTracks, aTags);
    if (counted == 0) {
        last.Find();
    }
    const std::uint64_t measured = counted != 0 ? counted : last.GetMicroseconds();
    const std::uint64_t stated = belief != Belief::Absurd ? length.mMicroseconds : 0;
    const bool fStray = stated > ezSaturating_Add64(measured, kMatroska_MaxExcess);
    if (measured != 0 && (fStray || stated == 0 || anInfo.mTicks <= kPlaceholder)) {
        length.mMicroseconds = measured;
        length.mMethod = counted != 0 ? "header" : last.IsEstimate() ? "estimate: last cue" : "last frame";
    } else {
        length.mMicroseconds = stated;
    }
    return length;
}
