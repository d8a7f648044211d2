#include "ezFormats/codecs/MJPEGVideo.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"
#include "ezFormats/codecs/ChromaSampling.h"

#include <cstdint>

namespace {

/// @name Markers (ITU-T T.81, table B.1)
/// @{
constexpr unsigned kPrefix = 0xFF;
constexpr unsigned kStartOfImage = 0xD8;
constexpr unsigned kStartOfScan = 0xDA;
constexpr unsigned kFirstFrame = 0xC0;
constexpr unsigned kLastFrame = 0xCF;
constexpr unsigned kHuffmanTables = 0xC4;
constexpr unsigned kExtension = 0xC8;
constexpr unsigned kArithmetic = 0xCC;
constexpr unsigned kApplication0 = 0xE0;
constexpr unsigned kApplication1 = 0xE1;
/// @}

bool IsFrame(unsigned aMarker) {
    return aMarker >= kFirstFrame && aMarker <= kLastFrame && aMarker != kHuffmanTables &&
           aMarker != kExtension && aMarker != kArithmetic;
}

/// The segment of AVI: which field comes first, 0 where the picture is whole.
const char* ScanOfAVI(ByteReader aSegment) {
    const bool fThere = aSegment.ReadText(4) == "AVI1";
    const unsigned polarity = aSegment.ReadByte();
    return !fThere || aSegment.HasFailed() ? nullptr : polarity == 0 ? kScan_Progressive : kScan_Interlaced;
}

/// That of QuickTime (format A): where the next field begins, 0 where there is none.
const char* ScanOfQuickTime(ByteReader aSegment) {
    aSegment.Skip(4); // reserved
    const bool fThere = aSegment.ReadText(4) == "mjpg";
    aSegment.Skip(8); // field size, padded field size
    const std::uint32_t next = aSegment.ReadBig32();
    return !fThere || aSegment.HasFailed() ? nullptr : next == 0 ? kScan_Progressive : kScan_Interlaced;
}

/// How the first plane is sampled to the second.
const char* ReadColours(ByteReader& aFrame) {
    constexpr unsigned kComponents = 3;
    const unsigned count = aFrame.ReadByte();
    if (count == 1) {
        return "grey";
    }
    aFrame.Skip(1); // identifier
    const unsigned luma = aFrame.ReadByte();
    aFrame.Skip(2); // quantization table, identifier
    const unsigned chroma = aFrame.ReadByte();
    aFrame.Skip(2);
    const bool fAlike = aFrame.ReadByte() == chroma;
    for (const ChromaSampling& sampling : kChromaSamplings) {
        const bool fFits = (luma >> 4U) == sampling.mAcross * (chroma >> 4U) &&
                           (luma & 0xFU) == sampling.mDown * (chroma & 0xFU);
        if (fFits && fAlike && chroma != 0 && count == kComponents && !aFrame.HasFailed()) {
            return sampling.mName;
        }
    }
    return nullptr;
}

/// Bits of a sample (P): lossless frames may have fewer, which no film has, and no more.
constexpr unsigned kMinBits = 8;
constexpr unsigned kMaxBits = 16;

/// The frame header (B.2.2), after its length.
std::optional<VideoFacts> ReadFrame(ByteReader aFrame, const char* aScan) {
    VideoFacts facts;
    facts.mCodec = "MJPEG";
    facts.mBitDepth = aFrame.ReadByte();
    const auto height = static_cast<std::uint32_t>(aFrame.ReadBig(2));
    facts.mWidth = static_cast<std::uint32_t>(aFrame.ReadBig(2));
    facts.mHeight = aScan == nullptr || aScan == kScan_Progressive ? height : 2 * height;
    facts.mScan = aScan;
    const bool fBits = facts.mBitDepth >= kMinBits && facts.mBitDepth <= kMaxBits;
    if (aFrame.HasFailed() || !fBits || facts.mWidth == 0 || facts.mHeight == 0) {
        return std::nullopt;
    }
    facts.mColours = ReadColours(aFrame);
    return facts;
}

} // namespace

std::optional<VideoFacts> MJPEGVideo_Read(const unsigned char* aBytes, std::size_t aSize) {
    BlockBytes block(aBytes, aSize);
    ByteReader reader(block);
    const char* scan = nullptr;
    reader.Require(reader.ReadByte() == kPrefix && reader.ReadByte() == kStartOfImage);
    while (!reader.HasFailed()) {
        reader.Require(reader.ReadByte() == kPrefix);
        unsigned marker = kPrefix;
        while (marker == kPrefix && !reader.HasFailed()) {
            marker = reader.ReadByte();
        }
        const std::uint64_t length = reader.ReadBig(2);
        reader.Require(length >= 2 && marker != kStartOfScan);
        const ByteReader segment = reader.Take(length - 2);
        if (reader.HasFailed()) {
            break;
        }
        if (IsFrame(marker)) {
            return ReadFrame(segment, scan);
        }
        const char* const told = marker == kApplication0   ? ScanOfAVI(segment)
                                 : marker == kApplication1 ? ScanOfQuickTime(segment)
                                                           : nullptr;
        scan = told != nullptr ? told : scan;
    }
    return std::nullopt;
}
