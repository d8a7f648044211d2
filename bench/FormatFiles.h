#pragma once

#include "ez/MediaParser.h"
#include "support/TemporaryFolder.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A file as homes have it, of which a folder holds many.
struct FormatFile {
    std::string mName;
    std::string mExtension;
    std::string mBytes;
};

/// A format, files of it, and what one of them may cost a host in the mean.
struct FormatFamily {
    std::string mKey; ///< of its lines in the list of budgets
    std::string mName;
    std::function<std::vector<FormatFile>()> mFiles;
    std::function<std::unique_ptr<ezMediaParser>()> mParser;
    double mReads;
    double mBytes; ///< that are read
    double mSeeks; ///< from the end of one read to the start of the next
    double mAllocations;
};

/// All formats, in the order of their list.
const std::vector<FormatFamily>& FormatFiles_Families();

/// A film whose media are a hole between its start and its movie.
struct Film {
    std::string mStart;
    std::string mMovie; ///< ends the file
    std::uint64_t mSize;
};

/// A film of about a size, at a rate of 4.6 Mbit/s, its movie after the media. The tables of the movie are
/// those of so many seconds.
Film FormatFiles_Film(std::uint64_t aSize, std::uint64_t aTableSeconds);
/// Seconds of a film of a size.
std::uint64_t FormatFiles_SecondsOf(std::uint64_t aSize);
/// Writes it, the media a hole that takes no place on the disk, and returns its path.
std::string FormatFiles_Write(const TemporaryFolder& aFolder, const Film& aFilm);
