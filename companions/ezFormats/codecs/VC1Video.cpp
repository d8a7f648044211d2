#include "ezFormats/codecs/VC1Video.h"

#include "ezFormats/codecs/NALUnits.h"
#include "ezFormats/codecs/VC1Headers.h"

#include <array>
#include <vector>

// Clauses are those of SMPTE ST 421.

namespace {

/// The profiles by the first two bits of STRUCT_C (annex J), the advanced one apart. The complex one is of an
/// encoder before the standard.
constexpr std::array<const char*, 3> kProfiles = {"Simple", "Main", "Complex"};
/// The levels of simple and main by code: low, medium and high.
constexpr std::array<std::uint32_t, 5> kLevels = {10, VideoFacts::kNoLevel, 20, VideoFacts::kNoLevel, 40};

constexpr std::size_t kCodeSize = 1;      ///< of a unit, after 00 00 01
constexpr std::size_t kConfigSize = 7;    ///< of "dvc1" before the sequence header
constexpr std::uint32_t kMacroblock = 16; ///< pixels

bool IsMore(std::uint32_t aLeft, std::uint32_t aRight) {
    return aLeft >= aRight + kMacroblock || aRight >= aLeft + kMacroblock;
}

/// Gathers what the units tell of the pictures.
class Pictures : public NALUnitTaker {
public:
    std::size_t CountWanted(std::uint8_t aFirst) const override;
    bool Take(const NALUnit& aUnit) override;

    std::optional<VideoFacts> Tell() const;

private:
    VideoRatio GetPixelAspect() const;
    const char* GetScan() const;

    ezVC1Sequence mSequence;
    bool mfEntry = false; ///< the first entry point was there, or pictures without one
    bool mfFrames = false;
    bool mfInterlaced = false; ///< a frame is
};

std::size_t Pictures::CountWanted(std::uint8_t aFirst) const {
    const bool fBegun = mSequence.mWidth != 0;
    if (fBegun ? aFirst == kVC1_EntryPoint && !mfEntry : aFirst == kVC1_Sequence) {
        return kCodeSize + kVC1_MaxHeaderSize;
    }
    return fBegun && aFirst == kVC1_Frame ? kCodeSize + 1 : 0;
}

bool Pictures::Take(const NALUnit& aUnit) {
    const std::vector<unsigned char> bytes =
        NALUnit_ReadRBSP(aUnit, kCodeSize, CountWanted(aUnit.mBytes[0]) - kCodeSize);
    if (aUnit.mBytes[0] == kVC1_Sequence) {
        ezVC1Sequence_Read(bytes.data(), bytes.size(), mSequence); // one that is cut still tells the size
    } else if (aUnit.mBytes[0] == kVC1_EntryPoint) {
        mfEntry = ezVC1EntryPoint_Read(bytes.data(), bytes.size(), mSequence);
    } else {
        mfEntry = true;
        mfFrames = true;
        mfInterlaced = ezVC1Frame_IsInterlaced(bytes.data(), bytes.size(), mSequence);
    }
    return mfInterlaced || (mfFrames && !mSequence.mfInterlaced);
}

VideoRatio Pictures::GetPixelAspect() const {
    const ezVC1Sequence& told = mSequence;
    if (told.mPixelAspect.IsKnown() || told.mDisplayWidth == 0) {
        return told.mPixelAspect;
    }
    if (!IsMore(told.mDisplayWidth, told.mWidth) && !IsMore(told.mDisplayHeight, told.mHeight)) {
        return {};
    }
    return VideoRatio::OfPixel({told.mDisplayWidth, told.mDisplayHeight}, told.mWidth, told.mHeight);
}

const char* Pictures::GetScan() const {
    const bool fMay = mSequence.mfInterlaced && !mSequence.mfSegmented;
    return fMay && (mfInterlaced || !mfFrames) ? kScan_Interlaced : kScan_Progressive;
}

/// What is alike in all profiles.
VideoFacts FactsOf(const char* aCodec, const char* aProfile) {
    VideoFacts facts;
    facts.mCodec = aCodec;
    facts.mProfile = aProfile;
    facts.mBitDepth = 8;
    facts.mColours = "4:2:0";
    return facts;
}

std::optional<VideoFacts> Pictures::Tell() const {
    if (mSequence.mWidth == 0) {
        return std::nullopt;
    }
    VideoFacts facts = FactsOf("VC1", "Advanced");
    facts.mLevel = 10 * mSequence.mLevel;
    facts.mWidth = mSequence.mWidth;
    facts.mHeight = mSequence.mHeight;
    facts.mPixelAspect = GetPixelAspect();
    facts.mFrameRate = mSequence.mFrameRate;
    facts.mScan = GetScan();
    return facts;
}

/// @param aProfile  two bits
VideoFacts FactsOfProfile(std::uint32_t aProfile) {
    if (aProfile == kVC1_Advanced) {
        return FactsOf("VC1", "Advanced");
    }
    VideoFacts facts = FactsOf("WMV3", kProfiles[aProfile]);
    facts.mScan = aProfile < 2 ? kScan_Progressive : nullptr; // neither can hold fields
    return facts;
}

} // namespace

std::optional<VideoFacts> VC1Video_ReadStream(const unsigned char* aBytes, std::size_t aSize) {
    Pictures pictures;
    NALUnits_TakeStream(aBytes, aSize, pictures);
    return pictures.Tell();
}

std::optional<VideoFacts> VC1Video_ReadStructC(const unsigned char* aBytes, std::size_t aSize) {
    return aSize != 0 ? std::make_optional(FactsOfProfile(aBytes[0] >> 6)) : std::nullopt;
}

std::optional<VideoFacts> VC1Video_ReadConfig(const unsigned char* aBytes, std::size_t aSize) {
    if (aSize == 0 || (aBytes[0] & 0x30U) != 0) { // profile 0, 4 or 12
        return std::nullopt;
    }
    const std::uint32_t level = aBytes[0] >> 1 & 7U;
    VideoFacts facts = FactsOfProfile(aBytes[0] >> 6);
    if (facts.mCodec == "WMV3") {
        facts.mLevel = VC1Video_GetSimpleMainLevel(level);
        return facts;
    }
    facts.mLevel = level <= kVC1_MaxLevel ? 10 * level : VideoFacts::kNoLevel;
    std::optional<VideoFacts> stream;
    if (aSize > kConfigSize) {
        stream = VC1Video_ReadStream(aBytes + kConfigSize, aSize - kConfigSize);
    }
    return stream.has_value() ? stream : facts;
}

std::uint32_t VC1Video_GetSimpleMainLevel(std::uint32_t aCode) {
    return aCode < kLevels.size() ? kLevels[aCode] : VideoFacts::kNoLevel;
}
