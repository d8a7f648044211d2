#pragma once

#include "ezFormats/matroska/MatroskaInfo.h"
#include "ezFormats/matroska/MatroskaTracks.h"

#include "ezBytes/MatroskaSegment.h"

#include <cstdint>

class MediaBytes;

/// What the first blocks of two tracks tell of how fast they go. What is 0 is not known.
struct MatroskaPace {
    std::uint32_t mSoundBitRate = 0; ///< bits a second, of the first blocks alone
    std::uint32_t mFrameRate = 0;    ///< pictures in 1000 seconds
};

/// Measures it by the sizes and times of the blocks that stand in what is buffered from the first cluster on,
/// and in one read more. The frame rate is one of those in use, where the times of several pictures keep to
/// it and to no other.
/// @param aVideo   null: it is not asked for
/// @param aSound   likewise
/// @param aBudget  borrowed, counts down the elements
MatroskaPace MeasureMatroskaPace(MediaBytes& aBytes, const MatroskaSegment& aSegment,
                                 const MatroskaInfo& anInfo, const MatroskaTrack* aVideo,
                                 const MatroskaTrack* aSound, std::uint32_t& aBudget);
