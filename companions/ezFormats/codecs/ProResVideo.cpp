#include "ezFormats/codecs/ProResVideo.h"

#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteReader.h"
#include "ezBytes/ByteSource.h"

#include <array>
#include <cstdint>

namespace {

// Clauses are those of SMPTE RDD 36.

/// frame_rate_code (table 4), from 1 on: pictures in 1000 seconds.
constexpr std::array<std::uint32_t, 11> kRates = {23976, 24000, 25000,  29970,  30000, 50000,
                                                  59940, 60000, 100000, 119880, 120000};

/// aspect_ratio_information (table 3): 1 is square pixels, the others are of the whole picture.
VideoRatio PixelAspectOf(unsigned aCode, const VideoFacts& aFacts) {
    constexpr std::array<VideoRatio, 2> kShown = {{{4, 3}, {16, 9}}};
    if (aCode == 1) {
        return VideoRatio::Of(1, 1);
    }
    if (aCode < 2 || aCode - 2 >= kShown.size()) {
        return {};
    }
    return VideoRatio::OfPixel(kShown[aCode - 2], aFacts.mWidth, aFacts.mHeight);
}

} // namespace

std::optional<VideoFacts> ProResVideo_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint64_t kHeader = 20;
    constexpr unsigned k422 = 2;
    constexpr unsigned k444 = 3;
    BlockBytes block(aBytes, aSize);
    ByteReader reader(block);
    ByteReader framed = reader;
    framed.Skip(4); // frame_size
    if (BoxType::Read(framed) == "icpf") {
        reader = framed;
    }
    reader.Require(reader.ReadBig(2) >= kHeader); // frame_header_size
    reader.Skip(6);                               // reserved, bitstream_version, encoder_identifier
    VideoFacts facts;
    facts.mCodec = "ProRes";
    facts.mWidth = static_cast<std::uint32_t>(reader.ReadBig(2));
    facts.mHeight = static_cast<std::uint32_t>(reader.ReadBig(2));
    const unsigned kinds = reader.ReadByte();
    const unsigned rates = reader.ReadByte();
    const unsigned chroma = kinds >> 6U;
    const unsigned fields = kinds >> 2U & 3U; // interlace_mode
    reader.Require(facts.mWidth != 0 && facts.mHeight != 0 && (chroma == k422 || chroma == k444));
    if (reader.HasFailed()) {
        return std::nullopt;
    }
    facts.mColours = chroma == k422 ? "4:2:2" : "4:4:4";
    facts.mScan = fields == 0 ? kScan_Progressive : fields < 3 ? kScan_Interlaced : nullptr;
    facts.mPixelAspect = PixelAspectOf(rates >> 4U, facts);
    const unsigned rate = rates & 0xFU;
    facts.mFrameRate = rate >= 1 && rate <= kRates.size() ? kRates[rate - 1] : 0;
    return facts;
}
