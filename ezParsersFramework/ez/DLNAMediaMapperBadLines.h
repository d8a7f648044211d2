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
    /// Bytes of a line, its end not counted: an entry with all its fields takes a few hundred. A longer line
    /// is skipped, and is one of the bad lines.
    static constexpr std::size_t kMaximumLineLength = 1024;
    /// Bad lines that are kept: a file that holds nothing else may be of any size. The lines after these are
    /// counted only.
    static constexpr std::size_t kMaximumKept = 1000;

    std::vector<DLNAMediaMapperBadLine> mLines; ///< in the order of the file, kMaximumKept at the most
    std::size_t mCount = 0;                     ///< of all of them
};
