#pragma once

#include <cstddef>
#include <vector>

/// A line of a media mapper file that does not count.
struct DLNAMediaMapperBadLine {
    std::size_t mNumber = 0;     ///< in its file, from 1
    const char* mReason = "";    ///< in a few words, constant: "fewer than 3 fields"
    bool mfReadOnlyFile = false; ///< it stands in the read-only file, which a first Load copies
};

/// The lines of media mapper files that do not count.
struct DLNAMediaMapperBadLines {
    /// A file that holds nothing but bad lines may be of any size: the lines after these are counted only.
    static constexpr std::size_t kMaximumKept = 1000;

    std::vector<DLNAMediaMapperBadLine> mLines; ///< in the order of the file, kMaximumKept at the most
    std::size_t mCount = 0;                     ///< of all of them
};
