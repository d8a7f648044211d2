#include "ezFormats/codecs/TheoraHeader.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/XiphLacing.h"

namespace {

/// PF (table 6.4): of 1 nothing is said.
constexpr const char* kColours[] = {"4:2:0", nullptr, "4:2:2", "4:4:4"};

/// FMBW to PICY: the coded frame is of whole macro blocks, of which a part is shown. One that goes
/// beyond the frame tells no size.
void ReadSize(ezBitReader& aBits, VideoFacts& aFacts) {
    constexpr std::uint32_t kBlock = 16;
    const std::uint32_t frameWidth = aBits.Read(16) * kBlock;
    const std::uint32_t frameHeight = aBits.Read(16) * kBlock;
    const std::uint32_t width = aBits.Read(24);
    const std::uint32_t height = aBits.Read(24);
    const std::uint32_t left = aBits.Read(8);
    const std::uint32_t bottom = aBits.Read(8);
    const bool fWithin = width + left <= frameWidth && height + bottom <= frameHeight;
    if (fWithin && width != 0 && height != 0) {
        aFacts.mWidth = width;
        aFacts.mHeight = height;
    }
}

/// NOMBR: 0 is not told, and the most that fits may be more.
void ReadNominalRate(ezBitReader& aBits, VideoFacts& aFacts) {
    constexpr std::uint32_t kMost = 0xFFFFFF;
    const std::uint32_t rate = aBits.Read(24);
    aFacts.mEstimatedBitRate = rate != kMost ? rate : 0;
}

} // namespace

std::uint64_t TheoraClock::CountPictures(std::uint64_t aGranule) const {
    const std::uint64_t mask = (std::uint64_t{1} << mKeyShift) - 1;
    return (aGranule >> mKeyShift) + (aGranule & mask) + (mfFromZero ? 1 : 0);
}

std::optional<TheoraHeader> TheoraHeader_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kMajor = 3;
    constexpr std::uint32_t kLastMinor = 2;
    constexpr std::uint32_t kFirstFromOne = 0x030201;
    TheoraHeader header;
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(aSize >= kTheora_HeaderSize && bits.Read(32) == 0x80746865 && bits.Read(24) == 0x6F7261);
    const std::uint32_t version = bits.Read(24);
    bits.Require(version >> 16 == kMajor && (version >> 8 & 0xFF) <= kLastMinor);
    header.mVideo.mCodec = "Theora";
    header.mVideo.mScan = kScan_Progressive;
    header.mVideo.mBitDepth = 8;
    ReadSize(bits, header.mVideo);
    header.mClock.mRate = bits.Read(32);        // FRN
    header.mClock.mRateDivisor = bits.Read(32); // FRD
    header.mVideo.mFrameRate = VideoClock_FrameRate(header.mClock.mRateDivisor, header.mClock.mRate);
    const std::uint32_t pixelWidth = bits.Read(24); // PARN
    header.mVideo.mPixelAspect = VideoRatio::Of(pixelWidth, bits.Read(24));
    bits.Skip(8); // CS
    ReadNominalRate(bits, header.mVideo);
    bits.Skip(6); // QUAL
    header.mClock.mKeyShift = bits.Read(5);
    header.mVideo.mColours = kColours[bits.Read(2)];
    header.mClock.mfFromZero = version < kFirstFromOne;
    return bits.HasFailed() ? std::nullopt : std::make_optional(header);
}

std::optional<VideoFacts> TheoraVideo_ReadConfig(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::size_t kSizeSize = 2;
    std::size_t start = XiphLacing_FirstAt(aBytes, aSize);
    if (start == 0 && aSize > kSizeSize && aBytes[0] == 0 && aBytes[1] == kTheora_HeaderSize) {
        start = kSizeSize;
    }
    const std::optional<TheoraHeader> header = TheoraHeader_Read(aBytes + start, aSize - start);
    return header ? std::make_optional(header->mVideo) : std::nullopt;
}
