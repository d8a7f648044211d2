#pragma once

#include "ezBytes/EBMLWalk.h"

#include <cstdint>
#include <optional>

/// A block of frames (RFC 9559, 10).
struct MatroskaBlock {
    explicit MatroskaBlock(const ByteReader& aFrame) : mFrame(aFrame) {}

    std::uint64_t mTrack = 0;    ///< its number
    std::uint64_t mTime = 0;     ///< ticks of the segment, the cluster's among them; 0 for what is before it
    std::uint64_t mDuration = 0; ///< ticks; 0: not stated
    unsigned mFrames = 0;
    std::uint64_t mBytes = 0; ///< of its frames
    bool mfWhole = true;      ///< else its end is cut off
    ByteReader mFrame;        ///< its first frame
};

/// The blocks of clusters, one after the other, as far as the segment goes.
class MatroskaBlocks {
public:
    /// @param aClusters  stands at a cluster
    /// @param aBudget    borrowed, counts down the elements
    MatroskaBlocks(const ByteReader& aClusters, std::uint32_t& aBudget);

    /// The next one. False after the last one, and where what follows cannot be read.
    bool Next(MatroskaBlock* aBlock);
    /// Where the next element would begin, of a cluster or of the segment.
    std::uint64_t GetPosition() const;
    /// Ticks of the last cluster that was met.
    std::uint64_t GetClusterTime() const { return mTime; }

private:
    bool NextCluster();
    bool Take(const EBMLElement& anElement, MatroskaBlock* aBlock);

    std::uint32_t& mBudget;
    ByteReader mClusters;
    EBMLWalk mSegment;
    std::optional<EBMLWalk> mCluster;
    bool mfUnknownSize = false; ///< of that cluster
    std::uint64_t mTime = 0;
};
