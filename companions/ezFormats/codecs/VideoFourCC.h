#pragma once

#include "ezBytes/BoxWalk.h"
#include "ezFormats/codecs/VideoFacts.h"

/// What four characters say of the pictures that they name.
struct VideoCode {
    const char* mCodec;             ///< as kezInfo_VideoCodec has it
    const char* mProfile = "";      ///< as kezInfo_VideoProfile has it; empty where the name tells none
    std::uint32_t mBitDepth = 0;    ///< of luma; 0: not told
    const char* mColours = nullptr; ///< as kezInfo_PictureColours has it; null: not told

    /// The same as facts.
    VideoFacts GetFacts() const;
};

/// By what a BITMAPINFOHEADER has, of AVI, ASF and Matroska: in any case. Null for those that are not known.
const VideoCode* VideoFourCC_Find(BoxType aFourCC);

/// By the name of a sample entry of ISO media and QuickTime, where the case counts.
const VideoCode* VideoFourCC_FindEntry(BoxType aName);
