#pragma once

#include "ezFormats/matroska/MatroskaInfo.h"
#include "ezFormats/matroska/MatroskaTags.h"
#include "ezFormats/matroska/MatroskaTracks.h"

#include "ezBytes/MatroskaSegment.h"

#include <cstdint>

class MediaBytes;

/// How long a file plays.
struct MatroskaLength {
    std::uint64_t mMicroseconds = 0; ///< 0: not known
    const char* mMethod = "header";
    std::uint64_t mSize =
        0; ///< bytes of the whole, as the segment states them where it was cut; 0: not known
};

/// The length that Info states, where the bytes of the file can last so long; else that which a muxer counted
/// of the track that plays, or that of the last blocks of pictures and sound. These are looked for from the
/// last cue on, and from the end backward: a file of any length costs the same. Of a stream without a size
/// nothing after its header is looked at.
/// @param aBudget  borrowed, counts down the elements
MatroskaLength MeasureMatroska(MediaBytes& aBytes, MatroskaSegment& aSegment, const MatroskaInfo& anInfo,
                               const MatroskaTracks& aTracks, const MatroskaTags& aTags,
                               std::uint32_t& aBudget);
