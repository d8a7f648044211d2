#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>

class ByteSource;

/// Bytes of a tag's header (E.4.1), and of the size that follows every tag (E.3).
/// @{
inline constexpr std::uint32_t kFLV_TagHeaderSize = 11;
inline constexpr std::uint32_t kFLV_TagTrailerSize = 4;
/// @}

/// What a tag holds (E.4.1); other numbers are reserved.
enum class FLVKind : std::uint8_t { Sound = 8, Video = 9, Script = 18 };

/// A tag. Clauses are those of the Adobe Flash Video File Format 10.1, annex E.
struct FLVTag {
    explicit FLVTag(const ByteReader& aBytes) : mContent(aBytes) {}

    std::uint64_t mStart = 0;
    FLVKind mKind = FLVKind::Script;
    bool mfFiltered = false; ///< encrypted
    std::uint32_t mSize = 0; ///< bytes of the content, as stated
    std::uint32_t mTime = 0; ///< milliseconds
    ByteReader mContent;     ///< as much of it as the file has

    /// Where the next one begins.
    std::uint64_t GetNext() const { return mStart + kFLV_TagHeaderSize + mSize + kFLV_TagTrailerSize; }
    bool IsMedia() const { return mKind == FLVKind::Sound || mKind == FLVKind::Video; }
};

/// Reads the tag at which a reader stands. False for a reserved kind, a stream other than 0, and a header
/// that is cut.
bool FLVTag_Read(ByteReader aReader, FLVTag* aTag);

/// What a tag of pictures or sound is for.
enum class FLVPacket { Config, Frame, Other };

/// The start of the content of such a tag (E.4.2.1, E.4.3.1; Enhanced RTMP 2).
struct FLVMedia {
    explicit FLVMedia(const ByteReader& aBytes) : mBody(aBytes) {}

    std::uint32_t mCodec = 0; ///< the number of four bits, or four characters, the first of them highest
    FLVPacket mPacket = FLVPacket::Other;
    std::uint8_t mFirst = 0; ///< the first byte
    ByteReader mBody;        ///< the configuration or frame; of several tracks the first one's
};

/// False for a tag without content, and of a kind that is not media.
bool FLVMedia_Read(const FLVTag& aTag, FLVMedia* aMedia);
