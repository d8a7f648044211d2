#include "ezFormats/codecs/MPEG4Visual.h"

#include "ezFormats/codecs/MPEG4Headers.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

// Clauses are those of ISO/IEC 14496-2.

constexpr const char* kNBit = "N-bit"; ///< the profile whose samples need not have 8 bits

/// Levels of a profile whose codes follow each other, each ten above the one before.
struct Levels {
    unsigned mFirstCode;
    unsigned mCount;
    const char* mProfile;
    std::uint32_t mFirstLevel;
    bool mfStudio = false; ///< its layers are laid in another way: StudioVideoObjectLayer
};
/// profile_and_level_indication (table G.1). What is between these is reserved.
constexpr std::array<Levels, 22> kProfiles = {{{0x01, 6, "Simple", 10},
                                               {0x08, 1, "Simple", 0},
                                               {0x09, 1, "Simple", 9},
                                               {0x10, 3, "SimpleScalable", 0},
                                               {0x21, 2, "Core", 10},
                                               {0x32, 3, "Main", 20},
                                               {0x42, 1, kNBit, 20},
                                               {0x51, 1, "ScalableTexture", 10},
                                               {0x61, 2, "SimpleFaceAnimation", 10},
                                               {0x63, 2, "SimpleFBA", 10},
                                               {0x71, 2, "BasicAnimatedTexture", 10},
                                               {0x81, 2, "Hybrid", 10},
                                               {0x91, 4, "AdvancedRealTimeSimple", 10},
                                               {0xA1, 3, "CoreScalable", 10},
                                               {0xB1, 4, "AdvancedCodingEfficiency", 10},
                                               {0xC1, 2, "AdvancedCore", 10},
                                               {0xD1, 3, "AdvancedScalableTexture", 10},
                                               {0xE1, 4, "SimpleStudio", 10, true},
                                               {0xE5, 4, "CoreStudio", 10, true},
                                               {0xF0, 6, "AdvancedSimple", 0},
                                               {0xF7, 1, "AdvancedSimple", 39},
                                               {0xF8, 6, "FineGranularityScalable", 0}}};

/// VisualObjectSequence (6.2.2). True where the layers that follow are of a Studio profile.
bool ReadSequence(unsigned aCode, VideoFacts& aFacts) {
    const auto fHas = [=](const Levels& aKnown) {
        return aCode >= aKnown.mFirstCode && aCode - aKnown.mFirstCode < aKnown.mCount;
    };
    const auto* const found = std::find_if(kProfiles.begin(), kProfiles.end(), fHas);
    if (found == kProfiles.end()) {
        return false;
    }
    aFacts.mProfile = found->mProfile;
    aFacts.mLevel = found->mFirstLevel + 10 * (aCode - found->mFirstCode);
    return found->mfStudio;
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
    bool fStudio = false;
    for (std::size_t i = 0; i + 4 < aSize; ++i) {
        const bool fStart = aBytes[i] == 0 && aBytes[i + 1] == 0 && aBytes[i + 2] == 1;
        const unsigned code = aBytes[i + 3];
        const bool fLayer = fStart && ezMPEG4Code_IsLayer(code);
        fFound = fFound || fLayer || (fStart && code == kMPEG4_Sequence);
        ezMPEG4Layer layer;
        if (fLayer && !fStudio && ezMPEG4Layer_Read(aBytes + i + 4, aSize - i - 4, layer)) {
            TakeLayer(layer, facts);
            break; // of one that is damaged the next may tell
        }
        if (fStart && code == kMPEG4_Sequence) {
            fStudio = ReadSequence(aBytes[i + 4], facts);
        }
    }
    facts.mCodec = fFound ? "MPEG4" : "";
    return fFound ? std::make_optional(facts) : std::nullopt;
}
