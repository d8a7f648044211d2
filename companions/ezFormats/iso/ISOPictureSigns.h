#pragma once

#include "ezBytes/ByteReader.h"
#include "ezFormats/codecs/DynamicRange.h"
#include "ezFormats/codecs/VideoFacts.h"

#include <cstdint>

/// What the boxes of a sample entry of video tell of how its pictures are shown, whatever their codec is.
struct ISOPictureSigns {
    VideoRatio mPixelAspect;        ///< "pasp"
    std::uint32_t mCleanWidth = 0;  ///< "clap", pixels; 0 where it is not told
    std::uint32_t mCleanHeight = 0; ///< the same
    const char* mScan = nullptr;    ///< "fiel": kScan_...
    DynamicRange mRange;            ///< "colr" and the boxes of metadata
    bool mfDolbyVision = false;     ///< there is a configuration of it

    /// Completes what the codec tells. The shape of a pixel is that of the box, which players go by; the scan
    /// that of the codec, where it has one.
    void ApplyTo(VideoFacts& aFacts) const;
};

// Each reads the content of a box; one that is damaged tells nothing.

void ReadPixelAspect(ByteReader aBox, ISOPictureSigns& aSigns);    // "pasp"
void ReadCleanAperture(ByteReader aBox, ISOPictureSigns& aSigns);  // "clap"
void ReadFields(ByteReader aBox, ISOPictureSigns& aSigns);         // "fiel"
void ReadColours(ByteReader aBox, ISOPictureSigns& aSigns);        // "colr"
void ReadStaticMetadata(ByteReader aBox, ISOPictureSigns& aSigns); // "mdcv", "clli", and those of VP9
void ReadDolbyVision(ByteReader aBox, ISOPictureSigns& aSigns);    // "dvcC", "dvvC", "dvwC"
