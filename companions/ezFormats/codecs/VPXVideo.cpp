#include "ezFormats/codecs/VPXVideo.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/DynamicRange.h"

#include "ezPlatform/text/CString.h"

#include <array>
#include <cstdint>

namespace {

// Clauses are those of the VP9 Bitstream & Decoding Process Specification where nothing else is said.

constexpr std::uint32_t kProfileCount = 4;

/// chroma_subsampling of "vpcC", and of Matroska's feature: the first two differ in where the samples lie.
constexpr std::array<const char*, 4> kChromas = {"4:2:0", "4:2:0", "4:2:2", "4:4:4"};

VideoFacts FactsOf(const char* aCodec) {
    VideoFacts facts;
    facts.mCodec = aCodec;
    facts.mScan = kScan_Progressive;
    return facts;
}

void TellProfile(std::uint32_t aProfile, VideoFacts& aFacts) {
    aFacts.mProfile = ezCString::Format("%u", static_cast<unsigned>(aProfile));
}

/// As both ways of a configuration state it: 10 is level 1, 62 is 6.2; 0 is not told.
void TellLevel(std::uint32_t aLevel, VideoFacts& aFacts) {
    constexpr std::uint32_t kLeast = 10;
    constexpr std::uint32_t kMost = 62;
    aFacts.mLevel = aLevel >= kLeast && aLevel <= kMost ? aLevel : VideoFacts::kNoLevel;
}

bool IsBitDepth(std::uint32_t aBits) {
    return aBits == 8 || aBits == 10 || aBits == 12;
}

/// color_config (6.2.2)
void ReadColours(ezBitReader& aBits, std::uint32_t aProfile, VideoFacts& aFacts) {
    constexpr std::uint32_t kRGB = 7;
    const bool fDeep = aProfile >= 2;
    aFacts.mBitDepth = !fDeep ? 8 : aBits.ReadFlag() ? 12 : 10; // ten_or_twelve_bit
    const std::uint32_t space = aBits.Read(3);
    const bool fOpen = aProfile % 2 == 1; // the sampling of colours is stated
    if (space == kRGB) {
        aFacts.mColours = "RGB";
        aBits.Require(fOpen);
        aBits.Skip(1); // reserved_zero
        return;
    }
    aBits.Skip(1); // color_range
    bool fHalfWidth = true;
    bool fHalfHeight = true;
    if (fOpen) {
        fHalfWidth = aBits.ReadFlag();
        fHalfHeight = aBits.ReadFlag();
        aBits.Skip(1); // reserved_zero
    }
    aFacts.mColours = !fHalfWidth ? (fHalfHeight ? "4:4:0" : "4:4:4") : fHalfHeight ? "4:2:0" : "4:2:2";
}

} // namespace

std::optional<VideoFacts> VP8Video_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kLastVersion = 3;
    constexpr std::uint32_t kSizeMask = 0x3FFF; // of 16 bits; those above scale
    constexpr std::size_t kHeaderSize = 10;
    if (aSize < kHeaderSize) {
        return std::nullopt;
    }
    const auto little = [&](std::size_t anAt) {
        return static_cast<std::uint32_t>(aBytes[anAt]) | static_cast<std::uint32_t>(aBytes[anAt + 1]) << 8;
    };
    const bool fKey = (aBytes[0] & 1U) == 0;
    const std::uint32_t version = aBytes[0] >> 1 & 7U;
    const bool fStart = aBytes[3] == 0x9D && aBytes[4] == 0x01 && aBytes[5] == 0x2A;
    VideoFacts facts = FactsOf("VP8");
    facts.mWidth = little(6) & kSizeMask;
    facts.mHeight = little(8) & kSizeMask;
    if (!fKey || !fStart || version > kLastVersion || facts.mWidth == 0 || facts.mHeight == 0) {
        return std::nullopt;
    }
    facts.mBitDepth = 8;
    facts.mColours = kChromas[0];
    return facts;
}

/// uncompressed_header (6.2)
std::optional<VideoFacts> VP9Video_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kMarker = 2;
    constexpr std::uint32_t kSync = 0x498342;
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(2) == kMarker);
    const std::uint32_t low = bits.Read(1);
    const std::uint32_t profile = low | bits.Read(1) << 1;
    if (profile == kProfileCount - 1) {
        bits.Require(!bits.ReadFlag()); // reserved_zero
    }
    bits.Require(!bits.ReadFlag()); // show_existing_frame
    bits.Require(!bits.ReadFlag()); // frame_type: 0 is a key frame
    bits.Skip(2);                   // show_frame, error_resilient_mode
    bits.Require(bits.Read(24) == kSync);
    VideoFacts facts = FactsOf("VP9");
    TellProfile(profile, facts);
    ReadColours(bits, profile, facts);
    facts.mWidth = bits.Read(16) + 1; // frame_width_minus_1
    facts.mHeight = bits.Read(16) + 1;
    return bits.HasFailed() ? std::nullopt : std::make_optional(facts);
}

std::optional<VideoFacts> VP9Video_ReadConfig(const unsigned char* aBytes, std::size_t aSize) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(8) == 1); // version
    bits.Skip(24);                   // flags
    const std::uint32_t profile = bits.Read(8);
    const std::uint32_t level = bits.Read(8);
    const std::uint32_t depth = bits.Read(4);
    const std::uint32_t chroma = bits.Read(3);
    bits.Skip(1 + 8); // videoFullRangeFlag, colourPrimaries
    DynamicRange range;
    range.mTransfer = bits.Read(8);
    if (!bits.Require(profile < kProfileCount && chroma < kChromas.size() && IsBitDepth(depth))) {
        return std::nullopt;
    }
    VideoFacts facts = FactsOf("VP9");
    TellProfile(profile, facts);
    TellLevel(level, facts);
    facts.mBitDepth = depth;
    facts.mColours = kChromas[chroma];
    facts.mHDR = range.GetKind();
    return facts;
}

std::optional<VideoFacts> VP9Video_ReadFeatures(const unsigned char* aBytes, std::size_t aSize) {
    enum : unsigned char { kProfile = 1, kLevel, kBitDepth, kChroma };
    constexpr std::size_t kFeatureSize = 3; // of those that are known
    std::optional<VideoFacts> facts;
    for (std::size_t at = 0; at + kFeatureSize <= aSize && aBytes[at + 1] == 1; at += kFeatureSize) {
        const std::uint32_t value = aBytes[at + 2];
        facts = facts.value_or(FactsOf("VP9"));
        if (aBytes[at] == kProfile && value < kProfileCount) {
            TellProfile(value, *facts);
        } else if (aBytes[at] == kLevel) {
            TellLevel(value, *facts);
        } else if (aBytes[at] == kBitDepth && IsBitDepth(value)) {
            facts->mBitDepth = value;
        } else if (aBytes[at] == kChroma && value < kChromas.size()) {
            facts->mColours = kChromas[value];
        }
    }
    return facts;
}
