#pragma once

#include "ezFormats/jpeg/JPEGLimits.h"

#include "ezPlatform/text/CString.h"

#include <array>
#include <cstddef>

/// A component of a JPEG: a colour plane.
struct JPEGComponent {
    unsigned mID;
    unsigned mAcross; ///< its sampling factors H and V (ITU-T T.81, A.1.1): 1 to 4
    unsigned mDown;
};

/// The components of a frame, as far as they are kept.
struct JPEGComponents {
    std::array<JPEGComponent, kJPEG_MaxComponents> mItems = {};
    std::size_t mCount = 0;
};

/// What segments before the frame header tell of its colours.
struct JPEGColourHints {
    static constexpr int kNoAdobe = -1;
    bool mfJFIF = false;
    int mAdobeTransform = kNoAdobe; ///< of Adobe's segment: 0 none, 1 YCbCr, 2 YCCK
};

/// How the colours of a JPEG are sampled ("4:2:0", or "2x1,1x2,1x1" where no ratio has a name), or what they
/// are where they are not YCbCr: "grey", "RGB", "CMYK", "YCCK".
ezCString JPEGColoursOf(const JPEGComponents& aComponents, const JPEGColourHints& aHints);

/// The process of a frame header, by its marker C0 to CF or DE, as records name it. Null for other markers
/// and for those of frames that only follow another. *aPrecisions receives the bits a sample that go with
/// it: bit n for n.
const char* JPEGProcessOf(unsigned aMarker, unsigned* aPrecisions);
