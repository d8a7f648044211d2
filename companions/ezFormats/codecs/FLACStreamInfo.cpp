#include "ezFormats/codecs/FLACStreamInfo.h"

FLACStreamInfo ReadFLACStreamInfo(ByteReader aReader) {
    constexpr unsigned kKindMask = 0x7F; // the bit above tells the last block
    constexpr unsigned kStreamInfo = 0;
    aReader.Require((aReader.ReadByte() & kKindMask) == kStreamInfo);
    aReader.Skip(3 + 10); // length, sizes of blocks and of frames
    const std::uint64_t numbers = aReader.ReadBig(8);
    FLACStreamInfo info;
    info.mSamplingRate = static_cast<std::uint32_t>(numbers >> 44);
    if (aReader.HasFailed() || info.mSamplingRate == 0) {
        return {};
    }
    info.mChannels = static_cast<std::uint32_t>(numbers >> 41 & 0x7U) + 1;
    info.mBitsPerSample = static_cast<std::uint32_t>(numbers >> 36 & 0x1FU) + 1;
    return info;
}
