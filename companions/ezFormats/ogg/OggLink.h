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
    const OggStream* GetSound() const { return FindFirst(OggRole::Sound); }
    const OggStream* GetVideo() const { return FindFirst(OggRole::Video); }
    /// @}
    std::uint32_t Count(OggRole aRole) const;
    /// Microseconds before the first that is shown, where Skeleton tells.
    std::uint64_t GetPresented() const;

    const OggStream* begin() const { return mStreams.data(); }
    const OggStream* end() const { return mStreams.data() + mCount; }

    /// The first video is a picture that does not move: it is nothing that plays.
    void SetVideoAside();

    /// Takes what the first frames of sound and video tell, of those whose headers leave it out.
    void ReadFrames(MediaBytes& aBytes);

    /// Where the first pages end.
    std::uint64_t GetHeadEnd() const { return mHeadEnd; }

private:
    const OggStream* FindFirst(OggRole aRole) const;
    OggStream* FindForFrame(std::uint32_t aSerial);

    std::array<OggStream, kOgg_MaxStreams> mStreams;
    std::size_t mCount = 0;
    std::uint64_t mHeadEnd = 0;
};

/// The pages after the first ones of the streams, as far as they begin among the bytes that are buffered.
class OggFrontPages {
public:
    OggFrontPages(MediaBytes& aBytes, const OggLink& aLink);

    /// @param aBody  set to a reader of what the page holds, of which not all may be buffered
    bool Next(OggPage* aPage, ByteReader* aBody);

private:
    bool HasHeader() const;

    MediaBytes& mBytes;
    ByteReader mPages;
    std::uint32_t mLeft = kOgg_MaxFrontPages;
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
