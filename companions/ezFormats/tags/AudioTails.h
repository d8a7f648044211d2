#pragma once

#include <cstddef>
#include <cstdint>

class MediaBytes;

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

/// Finds them, with one read of the end of a file of known size. None reaches before aStart; one that claims
/// to is not believed, and neither is what stands before it.
AudioTails FindAudioTails(MediaBytes& aBytes, std::uint64_t aStart);
