#include "ezFormats/codecs/MPEG4Visual.h"

#include "ezFormats/codecs/MPEG4Headers.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

// Clauses are those of ISO/IEC 14496-2.

constexpr const char* kNBit = "N-bit"; ///< the profile whose samples need not have 8 bits

struct ProfileAndLevel {
    unsigned mCode;
    const char* mProfile;
    std::uint32_t mLevel;
};
/// profile_and_level_indication (table G.1), as far as such files are in use.
constexpr std::array<ProfileAndLevel, 24> kProfiles = {{{0x01, "Simple", 10},
                                                        {0x02, "Simple", 20},
                                                        {0x03, "Simple", 30},
                                                        {0x04, "Simple", 40},
                                                        {0x05, "Simple", 50},
                                                        {0x06, "Simple", 60},
                                                        {0x08, "Simple", 0},
                                                        {0x09, "Simple", 9},
                                                        {0x10, "SimpleScalable", 0},
                                                        {0x11, "SimpleScalable", 10},
                                                        {0x12, "SimpleScalable", 20},
                                                        {0x21, "Core", 10},
                                                        {0x22, "Core", 20},
                                                        {0x32, "Main", 20},
                                                        {0x33, "Main", 30},
                                                        {0x34, "Main", 40},
                                                        {0x42, kNBit, 20},
                                                        {0xF0, "AdvancedSimple", 0},
                                                        {0xF1, "AdvancedSimple", 10},
                                                        {0xF2, "AdvancedSimple", 20},
                                                        {0xF3, "AdvancedSimple", 30},
                                                        {0xF4, "AdvancedSimple", 40},
                                                        {0xF5, "AdvancedSimple", 50},
                                                        {0xF7, "AdvancedSimple", 39}}};

/// VisualObjectSequence (6.2.2)
void ReadSequence(unsigned aCode, VideoFacts& aFacts) {
    const auto* const found =
        std::find_if(kProfiles.begin(), kProfiles.end(),
                     [=](const ProfileAndLevel& aKnown) { return aKnown.mCode == aCode; });
    if (found != kProfiles.end()) {
        aFacts.mProfile = found->mProfile;
        aFacts.mLevel = found->mLevel;
    }
}

void TakeLayer(const ezMPEG4Layer& aLayer, VideoFacts& aFacts) {
    aFacts.mWidth = aLayer.mWidth;
    aFacts.mHeight = aLayer.mHeight;
    aFacts.mPixelAspect = aLayer.mPixelAspect;
    aFacts.mFrameRate = aLayer.mFrameRate;
    aFacts.mScan = aLayer.mfInterlaced ? kScan_Interlaced : kScan_Progressive;
    aFacts.mBitDepth = aFacts.mProfile == kNBit ? 0 : 8;
    aFacts.mColours = "4:2:0";
}

} // namespace

std::optional<VideoFacts> MPEG4Visual_Read(const unsigned char* aBytes, std::size_t aSize) {
    VideoFacts facts;
    bool fFound = false;
    for (std::size_t i = 0; i + 4 < aSize; ++i) {
        const bool fStart = aBytes[i] == 0 && aBytes[i + 1] == 0 && aBytes[i + 2] == 1;
        const unsigned code = aBytes[i + 3];
        const bool fLayer = fStart && ezMPEG4Code_IsLayer(code);
        fFound = fFound || fLayer || (fStart && code == kMPEG4_Sequence);
        ezMPEG4Layer layer;
        if (fLayer && ezMPEG4Layer_Read(aBytes + i + 4, aSize - i - 4, layer)) {
            TakeLayer(layer, facts);
            break; // of one that is damaged the next may tell
        }
        if (fStart && code == kMPEG4_Sequence) {
            ReadSequence(aBytes[i + 4], facts);
        }
    }
    facts.mCodec = fFound ? "MPEG4" : "";
    return fFound ? std::make_optional(facts) : std::nullopt;
}
