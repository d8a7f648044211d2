#pragma once

#include "ezBytes/ByteSource.h"
#include "ezBytes/Limits.h"

#include <cstdint>

/// What writers of tags put after the sound of a file, one after the other: ID3v1 with its enhanced part,
/// APE of either version with or without a header, Lyrics3 of either version, and ID3v2 with a footer.
struct AudioTails {
    /// Where the first of them begins; the size of the file when there is no tag.
    std::uint64_t mAudioEnd = 0;
    /// Positions of those that hold texts; 0 for one that is not there, as sound stands before them.
    std::uint64_t mID3v1 = 0;
    std::uint64_t mEnhancedID3v1 = 0;
    std::uint64_t mAPEItems = 0;
    std::uint64_t mAPEEnd = 0; ///< where the items end
    std::uint32_t mAPEVersion = 0;
    std::uint64_t mLyricsFields = 0; ///< of version 2
    std::uint64_t mLyricsEnd = 0;    ///< where the fields end
};

/// Bytes of the end of a file in which the tags' own ends are looked for. Whoever reads in blocks has them
/// read together before.
/// @param aSize  how many at most
BytePiece AudioTailPlace(const ByteSource& aBytes, std::uint64_t aStart,
                         std::uint32_t aSize = kAudioTail_ReadSize);

/// Finds them by those bytes of a file of known size. None reaches before aStart; one that claims to is not
/// believed, and neither is what stands before it.
AudioTails FindAudioTails(ByteSource& aBytes, std::uint64_t aStart,
                          std::uint32_t aSize = kAudioTail_ReadSize);
