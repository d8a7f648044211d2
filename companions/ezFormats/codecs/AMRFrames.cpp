#include "ezFormats/codecs/AMRFrames.h"

#include <array>

namespace {

struct FrameType {
    std::uint32_t mBytes; ///< in a file, with the header
    std::uint32_t mBitRate;
};
constexpr std::array<FrameType, 8> kNarrow = {
    {{13, 4750}, {14, 5150}, {16, 5900}, {18, 6700}, {20, 7400}, {21, 7950}, {27, 10200}, {32, 12200}}};
constexpr std::array<FrameType, 9> kWide = {{{18, 6600},
                                             {24, 8850},
                                             {33, 12650},
                                             {37, 14250},
                                             {41, 15850},
                                             {47, 18250},
                                             {51, 19850},
                                             {59, 23050},
                                             {61, 23850}}};

// Types after those of speech (3GPP TS 26.101, table 1a; 26.201, table 1a).
constexpr std::uint32_t kSIDSize = 6;
constexpr std::uint32_t kEmptySize = 1;
constexpr unsigned kLost = 14; ///< of AMR-WB alone
constexpr unsigned kNoData = 15;

template <std::size_t Size>
std::uint32_t SizeOf(const std::array<FrameType, Size>& aTypes, unsigned aType) {
    if (aType < aTypes.size()) {
        return aTypes[aType].mBytes;
    }
    return aType == aTypes.size() ? kSIDSize : aType == kNoData ? kEmptySize : 0;
}

template <std::size_t Size>
std::uint32_t Find(const std::array<FrameType, Size>& aTypes, std::uint64_t aBytes, std::uint64_t aFrames) {
    const std::uint64_t whole = aBytes / aFrames;
    const std::uint64_t bytes = aBytes % aFrames == 0 ? whole : whole + 1;
    for (const FrameType& type : aTypes) {
        if (bytes <= type.mBytes) {
            return type.mBitRate;
        }
    }
    return 0;
}

} // namespace

std::uint32_t AMRFrames_BitRate(std::uint64_t aBytes, std::uint64_t aFrames, bool afWide) {
    if (aBytes == 0 || aFrames == 0) {
        return 0;
    }
    return afWide ? Find(kWide, aBytes, aFrames) : Find(kNarrow, aBytes, aFrames);
}

std::uint32_t AMRFrames_SizeOf(unsigned aType, bool afWide) {
    if (afWide && aType == kLost) {
        return kEmptySize;
    }
    return afWide ? SizeOf(kWide, aType) : SizeOf(kNarrow, aType);
}
