#pragma once

#include "support/TemporaryFolder.h"

#include <cstdint>
#include <string>
#include <vector>

/// A song or a film whose media are holes between the pieces that are written.
struct LongFile {
    struct Piece {
        std::uint64_t mPlace;
        std::string mBytes;
    };

    std::vector<Piece> mPieces; ///< in their order; the last one ends the file
};

/// Kinds of files that can be made of any length, each with three of them.
struct LongFiles {
    const char* mKey;    ///< of its lines in the list of budgets: "song.wav"
    const char* mFamily; ///< the key of its family
    const char* mName;
    const char* mExtension;
    std::vector<std::uint64_t> mMegabytes;  ///< the shortest first
    LongFile (*mMake)(std::uint64_t aSize); ///< of about so many bytes of media, a multiple of 4
    double mReads;                          ///< that one costs, however long it is
    double mBytes;                          ///< that are read
};

/// WAV, RF64 where 32 bits cannot say its size, with texts after the sound; Ogg; Matroska, with its index and
/// its tags after the clusters; AVI, with a second part where one cannot hold it; Flash video; MPEG video
/// alone; and an MPEG program and transport stream, their middle among what is written.
const std::vector<LongFiles>& LongFiles_All();

/// Writes one of so many megabytes, the media a hole that takes no place on the disk, and returns its path.
std::string LongFiles_Write(const TemporaryFolder& aFolder, const LongFiles& aKind, std::uint64_t aMegabytes);
