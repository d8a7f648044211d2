#pragma once

#include "ezFormats/ogg/OggLimits.h"
#include "ezFormats/ogg/OggStream.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/OggPages.h"

#include <array>
#include <cstddef>
#include <cstdint>

class MediaBytes;

/// The streams that play at the same time. Files are mostly one such link, and chains of them where several
/// were put together, or a station began a new one with each song.
class OggLink {
public:
    /// Reads the first pages, one of each stream. aReader stands at the first of them.
    explicit OggLink(ByteReader aReader);

    /// That of a serial number, which may be of no kind; null where there is none.
    const OggStream* Find(std::uint32_t aSerial) const;
    /// The first of its kind; null where there is none.
    /// @{
    const OggStream* GetSound() const;
    const OggStream* GetVideo() const;
    /// @}
    std::uint32_t CountSounds() const;

    /// Where the first pages end.
    std::uint64_t GetHeadEnd() const { return mHeadEnd; }

private:
    std::array<OggStream, kOgg_MaxStreams> mStreams;
    std::size_t mCount = 0;
    std::uint64_t mHeadEnd = 0;
};

/// Looks for headers of pages among the bytes that are buffered, whatever stands between them.
class OggPageSearch {
public:
    /// From a position on up to another one.
    OggPageSearch(MediaBytes& aBytes, std::uint64_t aStart, std::uint64_t anEnd)
        : mBytes(aBytes), mPosition(aStart), mEnd(anEnd) {}

    /// The next one that is buffered as a whole.
    bool Next(OggPage* aPage);

private:
    bool FindLetter();

    MediaBytes& mBytes;
    std::uint64_t mPosition;
    std::uint64_t mEnd;
};

/// Bytes in which a header of a page ends.
inline constexpr std::uint32_t kOggPage_MaxHead = 27 + 255;
