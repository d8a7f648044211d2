#pragma once

#include "ezFormats/iso/ISOFragments.h"
#include "ezFormats/iso/ISOMovie.h"

#include <cstdint>
#include <optional>

class ezMediaInfo;

/// What the facts of a file are made of.
struct ISOMedia {
    ISOMovie mMovie;
    ISOFragments mFragments;
    std::optional<std::uint64_t> mSize; ///< bytes
    std::uint64_t mDuration = 0;        ///< microseconds; 0: not known
    const char* mDurationMethod = "header";
    std::uint64_t mDurationBound = 0; ///< microseconds by which an estimate may be too long; 0: not told
    bool mfDurationEstimated = false;
    bool mfFragmentsCounted = false; ///< all fragments were read, no index in place of any
};

/// Writes codecs, sizes, rates, duration and texts into a record.
/// @param aContainer  kContainer_...
void StoreFacts(const ISOMedia& aMedia, const char* aContainer, ezMediaInfo& anInfo);
