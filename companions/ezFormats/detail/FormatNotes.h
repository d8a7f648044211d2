#pragma once

#include "ezFormats/detail/FormatDescription.h"

/// What a person wants to know of a format and no code tells. Each parser has one, as its kNotes: the page of
/// all formats (docs/formats.md) is made of it, and the usual cost is held by a test. No code of the library
/// uses it, so it takes no room there.
///
/// Texts are Markdown without a full stop.
struct FormatNotes {
    const char* mTitle;   ///< of the format, for a person: "WAV and its kin"
    const char* mSection; ///< the heading in docs/file-formats.md that tells more; empty where there is none
    const char* mTags;    ///< the kinds of tags that are read, the one that counts first; empty for none
    const char* mNotRead; ///< what such files also hold and is passed over
    FormatBudget mUsual;  ///< what a file costs that is made as most writers make it
};
