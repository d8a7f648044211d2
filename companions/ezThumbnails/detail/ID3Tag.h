#pragma once

#include "ezThumbnails/detail/CoverReader.h"

/// The header of an ID3v2 tag.
struct ID3Tag {
    unsigned mVersion = 0;
    unsigned mFlags = 0;
    std::uint32_t mSize = 0; ///< without the header, and the footer
    /// Bytes of the tag behind its header.
    std::uint64_t GetRest() const {
        constexpr unsigned kFooter = 0x10;
        return std::uint64_t{mSize} + (mVersion == 4 && (mFlags & kFooter) != 0 ? 10 : 0);
    }
};

/// False when no tag stands here; aReader may have failed then.
bool ReadID3Tag(CoverReader& aReader, ID3Tag* aTag);
