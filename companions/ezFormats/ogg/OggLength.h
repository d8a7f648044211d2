#pragma once

#include "ezFormats/ogg/OggLink.h"

#include <cstdint>

class MediaBytes;

/// How long a file plays: what its last pages say of their place, less where it starts; of a chain the sum of
/// its links. Of a film the longer counts of the first sound and the first video, and both start with the
/// earlier.
class OggLength {
public:
    OggLength(MediaBytes& aBytes, const OggLink& aFirst);

    /// Finds out when it starts.
    void ReadStart();
    /// Measures a file of known size, after its start was read.
    void Measure();

    /// True where beside the sound there is but one picture, which does not move.
    bool IsStill() const { return mfStill; }

    std::uint64_t GetMicroseconds() const { return mMicroseconds; } ///< 0: not known
    const char* GetMethod() const { return mMethod; }
    /// Where sound begins in the file; 0 where that was not found.
    std::uint64_t GetSoundStart() const { return mSoundStart; }

private:
    struct Tail;
    struct Front;

    Tail ReadTail(const OggLink& aLink, std::uint64_t anEnd) const;
    std::uint64_t HeldBy(const OggPage& aPage, ByteReader aBody, const OggStream& aStream) const;
    std::uint64_t StartOf(const OggPage& aPage, ByteReader aBody, const OggStream& aStream) const;
    void ReadSoundStart(Front& aFront) const;
    void ReadFilmStart(Front& aFront) const;
    void TakeFront(Front& aFront, const OggPage& aPage, ByteReader aBody) const;
    void Add(const Tail& aTail, std::uint64_t anEnd);
    bool AddLink(std::uint64_t anEnd);
    bool PassLink();
    std::uint64_t FindBorder();
    bool FindPage(std::uint64_t aPosition, OggPage* aPage) const;
    void Note(const OggPage& aPage);
    void Estimate();

    MediaBytes& mBytes;
    OggLink mLink;            ///< the one that is measured
    std::uint64_t mStart = 0; ///< of what is heard or seen first, in microseconds
    std::uint64_t mMicroseconds = 0;
    const char* mMethod = "last page";
    std::uint64_t mSoundStart = 0;
    bool mfStill = false;
    bool mfChained = false;
    std::uint64_t mSeenEnd = 0;  ///< the furthest place whose time is known
    std::uint64_t mSeenTime = 0; ///< of it, in the link that is measured
};
