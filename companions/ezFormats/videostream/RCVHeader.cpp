#include "ezFormats/videostream/RCVHeader.h"

#include "ezBytes/ByteReader.h"
#include "ezFormats/codecs/VC1Video.h"
#include "ezFormats/videostream/VideoStreamLimits.h"

#include <array>

namespace {

constexpr std::uint32_t kMark = 0xC5; ///< after the number of frames
constexpr std::uint32_t kUntold = 0xFFFFFFFF;
constexpr std::uint32_t kUntoldFrames = 0xFFFFFF;
constexpr std::uint64_t kHeadSize = 36;     ///< of the file
constexpr std::uint64_t kFrameHeadSize = 8; ///< of a frame: its size, whether it is a key, its time

/// STRUCT_C, after its size. None for another size.
std::optional<VideoFacts> ReadStructC(ByteReader& aBytes) {
    std::array<unsigned char, 4> structure = {};
    aBytes.Require(aBytes.ReadLittle32() == structure.size());
    return aBytes.Read(structure.data(), structure.size())
               ? VC1Video_ReadStructC(structure.data(), structure.size())
               : std::nullopt;
}

/// STRUCT_B, after its size: numbers of 32 bits, each its least byte first.
void ReadStructB(ByteReader& aBytes, RCVHeader& aHeader) {
    constexpr std::uint32_t kSize = 12;
    aBytes.Require(aBytes.ReadLittle32() == kSize);
    const std::uint32_t first = aBytes.ReadLittle32(); // LEVEL, CBR, RES1, HRD_BUFFER
    const std::uint32_t rate = aBytes.ReadLittle32();  // HRD_RATE
    const std::uint32_t frameRate = aBytes.ReadLittle32();
    const bool fConstant = (first >> 28 & 1U) != 0;
    if (aHeader.mVideo.mCodec == "WMV3") {
        aHeader.mVideo.mLevel = VC1Video_GetSimpleMainLevel(first >> 29);
    }
    if (rate != kUntold) {
        (fConstant ? aHeader.mVideo.mBitRate : aHeader.mVideo.mMaxBitRate) = rate;
    }
    aHeader.mVideo.mFrameRate = VideoClock_FrameRate(1, frameRate);
    aHeader.mFrameRate = aHeader.mVideo.mFrameRate != 0 ? frameRate : 0;
}

} // namespace

std::optional<RCVHeader> RCVHeader_Read(ByteReader aBytes) {
    const std::uint32_t frames = aBytes.ReadLittle32(); // NUMFRAMES, and the mark
    aBytes.Require(frames >> 24 == kMark);
    const std::optional<VideoFacts> facts = ReadStructC(aBytes);
    if (!facts.has_value()) {
        return std::nullopt;
    }
    RCVHeader header;
    header.mVideo = *facts;
    header.mVideo.mHeight = aBytes.ReadLittle32(); // STRUCT_A: VERT_SIZE, HORIZ_SIZE
    header.mVideo.mWidth = aBytes.ReadLittle32();
    const auto fIsSide = [](std::uint32_t aSide) { return aSide != 0 && aSide <= kRCV_MaxSide; };
    aBytes.Require(fIsSide(header.mVideo.mWidth) && fIsSide(header.mVideo.mHeight));
    ReadStructB(aBytes, header);
    header.mFrames = (frames & kUntoldFrames) != kUntoldFrames ? frames & kUntoldFrames : 0;
    header.mLeastSize = kHeadSize + kFrameHeadSize * header.mFrames;
    return aBytes.HasFailed() ? std::nullopt : std::make_optional(header);
}
