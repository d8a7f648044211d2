#include "ezFormats/codecs/MPEG4Visual.h"

#include "ezBytes/BitReader.h"

#include <algorithm>
#include <array>

namespace {

/// @name Start codes
/// @{
constexpr unsigned kFirstLayer = 0x20;
constexpr unsigned kLastLayer = 0x2F;
constexpr unsigned kSequence = 0xB0;
/// @}

constexpr std::uint32_t kShapeRectangular = 0;
constexpr std::uint32_t kShapeGrey = 3;
constexpr std::uint32_t kAspectExtended = 15;

struct ProfileAndLevel {
    unsigned mCode;
    const char* mProfile;
    std::uint32_t mLevel;
};
/// Table G.1 of the standard, as far as such files are in use.
constexpr std::array<ProfileAndLevel, 24> kProfiles = {
    {{0x01, "Simple", 10},         {0x02, "Simple", 20},         {0x03, "Simple", 30},
     {0x04, "Simple", 40},         {0x05, "Simple", 50},         {0x06, "Simple", 60},
     {0x08, "Simple", 0},          {0x09, "Simple", 9},          {0x10, "SimpleScalable", 0},
     {0x11, "SimpleScalable", 10}, {0x12, "SimpleScalable", 20}, {0x21, "Core", 10},
     {0x22, "Core", 20},           {0x32, "Main", 20},           {0x33, "Main", 30},
     {0x34, "Main", 40},           {0x42, "N-bit", 20},          {0xF0, "AdvancedSimple", 0},
     {0xF1, "AdvancedSimple", 10}, {0xF2, "AdvancedSimple", 20}, {0xF3, "AdvancedSimple", 30},
     {0xF4, "AdvancedSimple", 40}, {0xF5, "AdvancedSimple", 50}, {0xF7, "AdvancedSimple", 39}}};

void ReadSequence(unsigned aCode, MPEG4Visual& aVisual) {
    const auto* const found =
        std::find_if(kProfiles.begin(), kProfiles.end(),
                     [=](const ProfileAndLevel& aKnown) { return aKnown.mCode == aCode; });
    if (found != kProfiles.end()) {
        aVisual.mProfile = found->mProfile;
        aVisual.mLevel = found->mLevel;
    }
}

/// Bits of a number that counts up to below aCount, at least one.
unsigned BitsFor(std::uint32_t aCount) {
    unsigned bits = 1;
    while (aCount > 1U << bits) {
        ++bits;
    }
    return bits;
}

/// Steps over colours and buffer.
void SkipControl(ezBitReader& aBits) {
    aBits.Skip(3);
    if (aBits.ReadFlag()) {
        aBits.Skip(79); // bit rate, size and filling of the buffer
    }
}

/// The resolution of times and the duration of a picture.
void SkipTimes(ezBitReader& aBits) {
    aBits.Require(aBits.ReadFlag());
    const std::uint32_t resolution = aBits.Read(16);
    aBits.Require(aBits.ReadFlag());
    aBits.Skip(aBits.ReadFlag() ? BitsFor(resolution) : 0);
}

/// aBytes stand behind the start code.
void ReadLayer(const unsigned char* aBytes, std::size_t aSize, MPEG4Visual& aVisual) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(9); // random access, kind of object
    std::uint32_t version = 1;
    if (bits.ReadFlag()) {
        version = bits.Read(4);
        bits.Skip(3);
    }
    bits.Skip(bits.Read(4) == kAspectExtended ? 16 : 0);
    if (bits.ReadFlag()) {
        SkipControl(bits);
    }
    const std::uint32_t shape = bits.Read(2);
    bits.Skip(shape == kShapeGrey && version != 1 ? 4 : 0);
    SkipTimes(bits);
    bits.Require(shape == kShapeRectangular);
    bits.Require(bits.ReadFlag());
    const std::uint32_t width = bits.Read(13);
    bits.Require(bits.ReadFlag());
    const std::uint32_t height = bits.Read(13);
    bits.Require(bits.ReadFlag());
    const bool fInterlaced = bits.ReadFlag();
    if (bits.Require(width != 0 && height != 0)) {
        aVisual.mfLayer = true;
        aVisual.mWidth = width;
        aVisual.mHeight = height;
        aVisual.mfInterlaced = fInterlaced;
    }
}

} // namespace

MPEG4Visual MPEG4Visual_Read(const unsigned char* aBytes, std::size_t aSize) {
    MPEG4Visual visual;
    for (std::size_t i = 0; i + 4 < aSize; ++i) {
        const bool fStart = aBytes[i] == 0 && aBytes[i + 1] == 0 && aBytes[i + 2] == 1;
        const unsigned code = aBytes[i + 3];
        if (fStart && code == kSequence) {
            ReadSequence(aBytes[i + 4], visual);
        } else if (fStart && code >= kFirstLayer && code <= kLastLayer) {
            ReadLayer(aBytes + i + 4, aSize - i - 4, visual);
            break;
        }
    }
    return visual;
}
