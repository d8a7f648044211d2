#pragma once

#include "ezFormats/asf/ASFHeader.h"
#include "ezFormats/codecs/VideoFacts.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicTexts.h"

/// What the texts and attributes of a header tell.
struct ASFTexts {
    MusicTexts mTexts;
    CoverFacts mCover;
    bool mfVaries = false;   ///< the sound's rate does, by what is said of it, or else of the file
    VideoRatio mPixelAspect; ///< of the video, by what is said of it, or else of the file
};

/// Reads them: Content Description, then Extended Content, then Metadata and Metadata Library, which writers
/// put further values of the same names in.
ASFTexts ReadASFTexts(const ASFHeader& aHeader);
