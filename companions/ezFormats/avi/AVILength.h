#pragma once

#include <cstdint>

class AVIFile;
class MediaBytes;

/// How long a file plays, and how that is known.
struct AVILength {
    std::uint64_t mMicroseconds = 0; ///< 0: not known
    const char* mMethod = "header";
    std::uint64_t mBound = 0; ///< microseconds by which an estimate may be too long
};

/// The length of the pictures, and that of the sound where it is a little longer; of sound alone its own.
///
/// - What the headers state of the stream, or, of all parts of a file, their own counts and indexes; unless
///   the file cannot hold so much, or plays so little.
/// - Else what the index names; of a large one by places of it.
/// - Else what the frames themselves are: of a clip all, of more by places.
AVILength MeasureAVI(MediaBytes& aBytes, const AVIFile& aFile, std::uint32_t& aBudget);
