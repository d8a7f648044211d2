#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A file as homes have it, of which a folder holds many.
struct FormatFile {
    std::string mName;
    std::string mExtension;
    std::string mBytes;
};

/// Files of the samples, and some that are larger than samples can be, each by its parts.
std::vector<FormatFile> FormatFiles_MPEGAudio();
std::vector<FormatFile> FormatFiles_JPEG();
std::vector<FormatFile> FormatFiles_PNG();
std::vector<FormatFile> FormatFiles_ISOMedia();

/// A film whose media are a hole between its start and its movie.
struct Film {
    std::string mStart;
    std::string mMovie; ///< ends the file
    std::uint64_t mSize;
};

/// A film of about a size, at a rate of 4.6 Mbit/s, its movie behind the media. The tables of the movie are
/// those of so many seconds.
Film FormatFiles_Film(std::uint64_t aSize, std::uint64_t aTableSeconds);
/// Seconds of a film of a size.
std::uint64_t FormatFiles_SecondsOf(std::uint64_t aSize);
