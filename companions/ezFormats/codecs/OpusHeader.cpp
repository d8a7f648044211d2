#include "ezFormats/codecs/OpusHeader.h"

OpusHeader ReadOpusHeader(ByteReader aPacket) {
    constexpr unsigned kKnownVersions = 16;
    aPacket.Require(aPacket.ReadText(8) == "OpusHead");
    aPacket.Require(aPacket.ReadByte() < kKnownVersions);
    OpusHeader header;
    header.mChannels = aPacket.ReadByte();
    header.mPreSkip = static_cast<std::uint32_t>(aPacket.ReadLittle(2));
    return aPacket.HasFailed() ? OpusHeader() : header;
}
