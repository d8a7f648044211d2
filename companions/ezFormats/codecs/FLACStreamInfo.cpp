#include "ezFormats/codecs/FLACStreamInfo.h"

#include "ezBytes/FLACBlocks.h"

FLACStreamInfo ReadFLACStreamInfo(ByteReader aReader) {
    constexpr unsigned kTypeMask = 0x7F; // the bit above tells the last block (RFC 9639, 8.1)
    constexpr std::uint32_t kLeastBits = 4;
    aReader.Require((aReader.ReadByte() & kTypeMask) == kFLACBlock_StreamInfo);
    aReader.Skip(3); // length
    FLACStreamInfo info;
    info.mMinBlockSize = static_cast<std::uint32_t>(aReader.ReadBig(2));
    info.mMaxBlockSize = static_cast<std::uint32_t>(aReader.ReadBig(2));
    aReader.Skip(3 + 3); // minimum and maximum frame size
    // Sampling rate 20 bits, channels 3, bits a sample 5, samples in all 36.
    const std::uint64_t numbers = aReader.ReadBig(8);
    info.mSamplingRate = static_cast<std::uint32_t>(numbers >> 44);
    if (aReader.HasFailed()) {
        return {};
    }
    info.mChannels = static_cast<std::uint32_t>(numbers >> 41 & 0x7U) + 1;
    const std::uint32_t bits = static_cast<std::uint32_t>(numbers >> 36 & 0x1FU) + 1;
    info.mBitsPerSample = bits >= kLeastBits ? bits : 0;
    info.mSamples = numbers & 0xFFFFFFFFF;
    return info;
}
