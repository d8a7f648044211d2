#pragma once

#include "ezFormats/iso/ISOMovie.h"

#include <cstdint>

class MediaBytes;

/// What the movie fragments (ISO/IEC 14496-12, 8.8) after the "moov" box tell of one of its tracks.
struct ISOFragmentTrack {
    std::uint64_t mTicks = 0; ///< from its start to the end of the last fragment that was read
    std::uint64_t mSamples = 0;
    std::uint64_t mSampleTicks = 0; ///< that those take
    std::uint64_t mBytes = 0;
    ISOSamplePlace mFirstSample; ///< of the first of its runs that says where it is
};

struct ISOFragments {
    ISOFragmentTrack mAudio;
    ISOFragmentTrack mVideo;
    std::uint64_t mDuration = 0; ///< microseconds, of what was read
    bool mfIndexed = false;      ///< an index ("sidx") told of them, or of some
    bool mfComplete = false;     ///< it is all there is
    std::uint64_t mStart = 0;    ///< position of what was read
    std::uint64_t mEnd = 0;
};

/// Reads from a position on, aMaxFragments at most. Where the duration is asked for, what an index tells of
/// is stepped over, as one fragment; else the indices are.
ISOFragments ReadFragments(MediaBytes& aBytes, std::uint64_t aStart, const ISOMovie& aMovie,
                           std::uint32_t aMaxFragments, bool afDuration, std::uint32_t& aBoxBudget);
