// The door: the first header of Theora, and what containers other than Ogg hold of it.

#include "fuzz/support/CodecDoor.h"

#include "ezFormats/codecs/TheoraHeader.h"

namespace {

/// The pictures of the header, after what else it tells was looked at.
std::optional<VideoFacts> ReadHeader(const unsigned char* aBytes, std::size_t aSize) {
    const std::optional<TheoraHeader> header = TheoraHeader_Read(aBytes, aSize);
    if (!header) {
        return std::nullopt;
    }
    FuzzCheck(header->mClock.mKeyShift < 32);
    FuzzCheck(header->mClock.CountPictures(0) == (header->mClock.mfFromZero ? 1 : 0));
    FuzzCheck(header->mClock.CountPictures(INT64_MAX) != 0);
    return header->mVideo;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    constexpr std::uint32_t kLargestSide = 0xFFFF * 16;
    CodecDoor_Enter(ReadHeader, aData, aSize, {{"Theora"}, kLargestSide});
    CodecDoor_Enter(TheoraVideo_ReadConfig, aData, aSize, {{"Theora"}, kLargestSide});
    return 0;
}
