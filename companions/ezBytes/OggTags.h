#pragma once

#include "ezBytes/OggPages.h"

#include <cstdint>

/// What the headers of a stream in Ogg tell of the piece: comments, and of FLAC the blocks of pictures, which
/// its own encoder puts into packets of their own.
class OggTags {
public:
    /// @param aBytes     the file; borrowed, as is aMark
    /// @param aPages     stands at a page before these packets, after the stream's first one
    /// @param aMaxPages  read at most, other streams' included
    OggTags(ByteSource& aBytes, const ByteReader& aPages, std::uint32_t aSerial, const OggMark& aMark,
            std::uint32_t aMaxPages)
        : mPacket(aBytes, aPages, aSerial, aMaxPages), mMark(aMark) {}

    /// The next of them. False after the last, and where none can be read.
    /// @param afPicture  set: it is a block of a picture, and not of comments
    /// @param aBody      set to a reader of what follows the name or header; until the next call
    bool Next(bool* afPicture, ByteReader* aBody);

    /// The packet that it stands in, which tells where its bytes lie in the file.
    OggPacketBytes& GetPacket() { return mPacket; }

private:
    bool NextBlock(bool* afPicture, ByteReader* aBody);

    OggPacketBytes mPacket;
    const OggMark& mMark;
    bool mfBegun = false;
    bool mfLast = false; ///< there is none after it
};
