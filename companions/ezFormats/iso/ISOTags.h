#pragma once

#include "ezBytes/ByteReader.h"
#include "ezBytes/CodePage.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicTexts.h"

#include <cstdint>

/// The texts of a movie, by the three ways to write them.
struct ISOTags {
    CodePage mCodePage;  ///< of texts that state no encoding, or a wrong one: set by who reads
    MusicTexts mItems;   ///< of "ilst" (iTunes)
    MusicTexts mAssets;  ///< of 3GPP
    MusicTexts mPhrases; ///< of QuickTime
    CoverFacts mCover;   ///< of "ilst"

    /// Each text from the first of these that has it. The items are moved out.
    MusicTexts Merge();
};

/// Reads the content of a movie's "udta" box, or of its "meta" box. The first text of a kind stays.
void ReadTags(const ByteReader& aBox, bool afMeta, std::uint32_t& aBoxBudget, ISOTags& aTags);
