#include "ezFormats/codecs/H263Video.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/PixelAspects.h"

#include "ezPlatform/text/CString.h"

#include <array>
#include <cstdint>

namespace {

// Clauses are those of ITU-T H.263 where nothing else is said.

struct Size {
    std::uint32_t mWidth = 0;
    std::uint32_t mHeight = 0;
};

/// Source formats (5.1.3): sub-QCIF, QCIF, CIF, 4CIF, 16CIF; 0 is forbidden.
constexpr std::array<Size, 6> kSizes = {
    {{0, 0}, {128, 96}, {176, 144}, {352, 288}, {704, 576}, {1408, 1152}}};

/// The shape of a pixel (5.1.5)
VideoRatio PixelOf(std::uint32_t aCode) {
    return PixelAspect_Of(aCode, 5);
}
constexpr std::uint32_t kStandardPixel = 2; ///< that of the source formats

std::optional<VideoFacts> FactsOf(const char* aCodec, const Size& aSize, const ezBitReader& aBits) {
    if (aBits.HasFailed() || aSize.mWidth == 0 || aSize.mHeight == 0) {
        return std::nullopt;
    }
    VideoFacts facts;
    facts.mCodec = aCodec;
    facts.mWidth = aSize.mWidth;
    facts.mHeight = aSize.mHeight;
    facts.mScan = kScan_Progressive;
    facts.mBitDepth = 8;
    facts.mColours = "4:2:0";
    return facts;
}

/// CPFMT and EPAR (5.1.5, 5.1.6)
Size ReadCustomSize(ezBitReader& aBits, VideoRatio& aPixel) {
    constexpr std::uint32_t kExtended = 15;
    constexpr std::uint32_t kUnit = 4; // pixels
    constexpr std::uint32_t kHighest = 288;
    const std::uint32_t pixel = aBits.Read(4);
    Size size;
    size.mWidth = (aBits.Read(9) + 1) * kUnit; // picture width indication
    aBits.Require(aBits.ReadFlag());
    size.mHeight = aBits.Read(9) * kUnit; // picture height indication
    aBits.Require(size.mHeight <= kHighest * kUnit);
    if (pixel == kExtended) {
        const std::uint32_t width = aBits.Read(8);
        aPixel = VideoRatio::Of(width, aBits.Read(8));
    } else {
        aPixel = PixelOf(pixel);
    }
    return size;
}

/// CPCFC (5.1.7)
std::uint32_t ReadCustomRate(ezBitReader& aBits) {
    constexpr std::uint32_t kClock = 1'800'000;
    const std::uint32_t conversion = aBits.ReadFlag() ? 1001 : 1000;
    return VideoClock_FrameRate(std::uint64_t{conversion} * aBits.Read(7), kClock);
}

/// PLUSPTYPE and what follows it (5.1.4)
std::optional<VideoFacts> ReadExtended(ezBitReader& aBits) {
    constexpr std::uint32_t kCustom = 6;
    aBits.Require(aBits.Read(3) == 1); // UFEP: the optional part, which has the format, is there
    const std::uint32_t format = aBits.Read(3);
    const bool fCustomClock = aBits.ReadFlag();
    aBits.Skip(10);                       // optional modes
    aBits.Require(aBits.Read(4) == 8);    // a one against a start code, and three reserved bits
    aBits.Skip(6);                        // MPPTYPE: picture type, resampling, resolution, rounding
    aBits.Require(aBits.Read(3) == 1);    // two reserved bits, and a one
    aBits.Skip(aBits.ReadFlag() ? 2 : 0); // CPM; PSBI
    aBits.Require(format != 0 && format <= kCustom);
    VideoRatio pixel = PixelOf(kStandardPixel);
    const Size size = aBits.HasFailed()   ? Size()
                      : format == kCustom ? ReadCustomSize(aBits, pixel)
                                          : kSizes[format];
    const std::uint32_t rate = fCustomClock ? ReadCustomRate(aBits) : 0;
    std::optional<VideoFacts> facts = FactsOf("H263", size, aBits);
    if (facts.has_value()) {
        facts->mPixelAspect = pixel;
        facts->mFrameRate = rate;
    }
    return facts;
}

} // namespace

std::optional<VideoFacts> H263Video_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kStartCode = 0x20; // PSC: 16 zeros, a one, 5 zeros (5.1.1)
    constexpr std::uint32_t kExtended = 7;
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(22) == kStartCode);
    bits.Skip(8);                    // temporal reference
    bits.Require(bits.Read(2) == 2); // PTYPE (5.1.3): a one against a start code, a zero against H.261
    bits.Skip(3);                    // split screen, document camera, freeze picture release
    const std::uint32_t format = bits.Read(3);
    if (format == kExtended) {
        return ReadExtended(bits);
    }
    bits.Skip(5 + 5); // picture type and optional modes; PQUANT
    std::optional<VideoFacts> facts = FactsOf("H263", format < kSizes.size() ? kSizes[format] : Size(), bits);
    if (facts.has_value()) {
        facts->mPixelAspect = PixelOf(kStandardPixel);
    }
    return facts;
}

std::optional<VideoFacts> H263Video_ReadConfig(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kHighestLevel = 70;       // annex X, 3
    constexpr std::uint32_t kBitRateBox = 0x62697472; // "bitr"
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(40); // vendor and decoder_version
    const std::uint32_t level = bits.Read(8);
    const std::uint32_t profile = bits.Read(8);
    if (bits.HasFailed()) {
        return std::nullopt;
    }
    VideoFacts facts;
    facts.mCodec = "H263";
    facts.mProfile = ezCString::Format("%u", static_cast<unsigned>(profile));
    facts.mLevel = level <= kHighestLevel ? level : VideoFacts::kNoLevel;
    bits.Skip(32); // size of the box
    if (bits.Read(32) == kBitRateBox) {
        const std::uint32_t mean = bits.Read(32);
        const std::uint32_t most = bits.Read(32);
        facts.mBitRate = bits.HasFailed() ? 0 : mean;
        facts.mMaxBitRate = most >= mean ? most : 0;
    }
    return facts;
}

std::optional<VideoFacts> SorensonVideo_Read(const unsigned char* aBytes, std::size_t aSize) {
    // PictureSize: the first two are stated, in numbers of 8 and of 16 bits.
    constexpr std::array<Size, 7> kSorensonSizes = {
        {{0, 0}, {0, 0}, {352, 288}, {176, 144}, {128, 96}, {320, 240}, {160, 120}}};
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(17) == 1); // PictureStartCode
    bits.Require(bits.Read(5) <= 1);  // Version
    bits.Skip(8);                     // TemporalReference
    const std::uint32_t format = bits.Read(3);
    Size size = format < kSorensonSizes.size() ? kSorensonSizes[format] : Size();
    if (format <= 1) {
        size.mWidth = bits.Read(8 * (format + 1));
        size.mHeight = bits.Read(8 * (format + 1));
    }
    bits.Require(bits.Read(2) <= 2); // PictureType
    bits.Skip(1 + 5);                // DeblockingFlag, Quantizer
    return FactsOf("Sorenson", size, bits);
}
