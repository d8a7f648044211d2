#pragma once

#include "ezBytes/ByteReader.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <cstdint>

/// The comments of a FLAC block, and of an Ogg stream's second packet, one after the other (Vorbis I, 5.2.1;
/// RFC 9639, 8.6; RFC 7845, 5.2).
class VorbisComments {
public:
    /// @param aReader  stands after what names the block or packet
    explicit VorbisComments(ByteReader aReader);

    /// The next comment: its key, and a reader of its value. A key of more than kVorbisComment_MaxKey bytes,
    /// and a comment without one, are passed over. False after the last one, and where one does not end in
    /// the block.
    bool Next(ezCString* aKey, ByteReader* aValue);

private:
    ByteReader mReader;
    std::uint32_t mLeft; ///< comments
};
