#pragma once

#include "support/TemporaryFolder.h"

#include <array>
#include <cstdint>
#include <string>

/// A song whose sound is a hole between its start and its end.
struct LongSong {
    std::string mStart;
    std::string mEnd;
    std::uint64_t mSize; ///< of the whole
};

/// Kinds of songs that can be made of any length, each with three of them.
struct LongSongs {
    const char* mKey; ///< of its lines in the list of budgets
    const char* mName;
    const char* mExtension;
    std::array<std::uint64_t, 3> mMegabytes;
    LongSong (*mMake)(std::uint64_t aSound); ///< of so many bytes of sound, a multiple of 4
    double mReads;                           ///< that one costs, however long it is
};

/// WAV, RF64 where 32 bits cannot say its size, with texts after the sound; and Ogg.
const std::array<LongSongs, 2>& LongSongs_All();

/// Writes one of so many megabytes, the sound a hole that takes no place on the disk, and returns its path.
std::string LongSongs_Write(const TemporaryFolder& aFolder, const LongSongs& aKind, std::uint64_t aMegabytes);
