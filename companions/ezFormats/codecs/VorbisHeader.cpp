#include "ezFormats/codecs/VorbisHeader.h"

namespace {

/// A number with a sign, of which what is not positive says nothing.
std::uint32_t ReadPositive(ByteReader& aReader) {
    const std::uint32_t number = aReader.ReadLittle32();
    return number <= INT32_MAX ? number : 0;
}

} // namespace

VorbisHeader ReadVorbisHeader(ByteReader aPacket) {
    VorbisHeader header;
    aPacket.Require(aPacket.ReadByte() == 1 && aPacket.ReadText(6) == "vorbis");
    aPacket.Require(aPacket.ReadLittle32() == 0); // version
    header.mChannels = aPacket.ReadByte();
    header.mSamplingRate = aPacket.ReadLittle32();
    header.mMaxBitRate = ReadPositive(aPacket);
    header.mNominalBitRate = ReadPositive(aPacket);
    const std::uint32_t lowest = ReadPositive(aPacket);
    const unsigned longBlock = aPacket.ReadByte() >> 4U;
    if (aPacket.HasFailed()) {
        header.mSamplingRate = 0;
    }
    const bool fConstant = lowest == header.mMaxBitRate && lowest == header.mNominalBitRate;
    header.mBitRate = fConstant ? lowest : 0;
    header.mPacketSamples = 1U << longBlock >> 1U; // a block overlaps the next by half
    return header;
}
