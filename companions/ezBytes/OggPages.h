#pragma once

#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

/// The pages of an Ogg file (RFC 3533, 6), and the packets that these hold the parts of.

/// @name Bytes of a header of a page: without the sizes of segments, and with 255 of them
/// @{
inline constexpr std::uint32_t kOggPage_LeastHead = 27;
inline constexpr std::uint32_t kOggPage_MaxHead = kOggPage_LeastHead + 255;
/// @}

/// The most that a page takes: the largest header, and its segments.
inline constexpr std::uint32_t kOggPage_MaxSize = kOggPage_MaxHead + 255 * 255;

/// The position of a page that tells none: on which no packet ends, or a negative one, which means nothing.
inline constexpr std::uint64_t kOggPage_NoGranule = UINT64_MAX;

/// What the header of a page says.
struct OggPage {
    bool mfContinues = false; ///< its first bytes belong to the packet before
    bool mfBegins = false;    ///< it is the first of its stream
    bool mfEnds = false;      ///< it is the last of its stream
    std::uint64_t mGranule = kOggPage_NoGranule;
    std::uint32_t mSerial = 0;    ///< of its stream
    std::uint32_t mEndings = 0;   ///< packets that end on it
    std::uint64_t mFirstSize = 0; ///< of the packet that its first bytes belong to, as far as it is here
    bool mfFirstEnds = false;
    std::uint64_t mStart = 0; ///< where it begins in the file
};

/// Reads a page, and steps over it. False where none stands. The check sum is not looked at: whoever decodes
/// sees for himself whether a packet is whole.
/// @param aBody  set to a reader of what the page holds; a failed one where that is not all there
bool ReadOggPage(ByteReader& aReader, OggPage* aPage, ByteReader* aBody);

/// The packets that a page holds, or parts of: the first may have begun on the page before, and the last may
/// go on to the next.
class OggPagePackets {
public:
    /// @param aPage  stands at its start; it is a page
    explicit OggPagePackets(ByteReader aPage);

    /// The next one, as much of it as is here. False after the last.
    bool Next(ByteReader* aPacket);
    /// True for one that began on the page before.
    bool HasBegunBefore() const { return mfBegunBefore; }
    /// True for one that ends on the page.
    bool HasEnded() const { return mfEnded; }

private:
    ByteReader mSizes; ///< of segments
    ByteReader mBody;
    bool mfContinues = false;
    bool mfBegunBefore = false;
    bool mfEnded = false;
};

/// The bytes of a packet of a stream's headers, which begins on a page, and goes over as many as it takes: at
/// first of the second, which begins on that stream's second page. Pages are read when bytes of them are
/// asked for.
class OggPacketBytes : public PieceBytes {
public:
    /// @param aBytes     the file; borrowed
    /// @param aPages     stands at a page before the packet, after the stream's first one
    /// @param aMaxPages  read at most, other streams' included
    OggPacketBytes(ByteSource& aBytes, const ByteReader& aPages, std::uint32_t aSerial,
                   std::uint32_t aMaxPages);
    ~OggPacketBytes() override;

    /// Known when the last page of the packet was read.
    std::optional<std::uint64_t> GetSize() const override;
    /// What is borrowed stays until the next call of this and of Reach, unless others read the file.
    std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override;

    /// True when all bytes before that one are there; Slice tells where.
    bool Reach(std::uint64_t anEnd);

    /// Goes on to the packet that begins on the page after this one's last, and whose bytes then count from
    /// 0. False where there is no such page among those that may be read, or this packet is not whole.
    bool Next();

private:
    bool AddPage();

    ByteReader mPages;
    std::uint32_t mSerial;
    std::uint32_t mLeft; ///< pages
    bool mfBegun = false;
    bool mfWhole = false;
};

/// What a stream holds.
enum class OggKind {
    Vorbis,
    Opus,
    FLAC,
    Speex,
    OGMSound,
    Theora,
    OGMVideo,
    VP8,
    Dirac,
    Daala,
    OGMText,
    Kate,
    CMML,
    Skeleton,
};

/// What a stream of that kind is for.
enum class OggRole {
    Sound,
    Video,
    Text,
    File, ///< it tells of the file as a whole
};

/// How the first packet of a kind begins, and what stands before the comments in its second: nothing for an
/// empty text. Of a kind without comments it is a text that no packet begins with.
struct OggMark {
    OggKind mKind;
    OggRole mRole;
    std::string_view mHead;
    std::string_view mComments;
};

/// The kind of a stream, by its first packet; null for another one.
const OggMark* FindOggMark(ByteReader aHead);
