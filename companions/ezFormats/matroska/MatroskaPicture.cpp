#include "ezFormats/matroska/MatroskaPicture.h"

#include "ezFormats/matroska/MatroskaLimits.h"

#include "ezBytes/EBMLWalk.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string_view>

namespace {

/// @name Elements of a track's video (RFC 9559, 5.1.4.1.28)
/// @{
constexpr EBMLId kColour = 0x55B0;
constexpr EBMLId kMastering = 0x55D0;
constexpr EBMLId kProjection = 0x7670;
constexpr EBMLId kPoseRoll = 0x7675;
/// @}

/// @name Elements of a BlockAdditionMapping (5.1.4.1.17)
/// @{
constexpr EBMLId kMappingType = 0x41E7;
constexpr std::uint64_t kMappingT35 = 4;
constexpr std::uint64_t kMappingDolby[] = {0x64766343, 0x64767643, 0x64767743}; ///< "dvcC", "dvvC", "dvwC"
/// @}

/// @name Transfer characteristics (ISO/IEC 23091-2, 8.2)
/// @{
constexpr std::uint64_t kTransferPQ = 16;
constexpr std::uint64_t kTransferHLG = 18;
/// @}

/// The numbers of a track's video and of its colours, each with what it is where the element is left out.
struct Numbers {
    std::uint64_t mWidth = 0;
    std::uint64_t mHeight = 0;
    std::uint64_t mTop = 0;
    std::uint64_t mBottom = 0;
    std::uint64_t mLeft = 0;
    std::uint64_t mRight = 0;
    std::uint64_t mDisplayWidth = 0;
    std::uint64_t mDisplayHeight = 0;
    std::uint64_t mDisplayUnit = 0;
    std::uint64_t mInterlaced = 0;
    std::uint64_t mStereo = 0;
    std::uint64_t mBits = 0;
    std::uint64_t mChromaAcross = 0;
    std::uint64_t mChromaDown = 0;
    std::uint64_t mMatrix = 2;
    std::uint64_t mTransfer = 2;
    std::uint64_t mMaxLight = 0;
    std::uint64_t mMeanLight = 0;
    bool mfMastering = false;
    double mRoll = 0;
};

struct Field {
    EBMLId mId;
    std::uint64_t Numbers::*mNumber;
};
constexpr std::array<Field, 18> kFields = {{{0xB0, &Numbers::mWidth},
                                            {0xBA, &Numbers::mHeight},
                                            {0x54BB, &Numbers::mTop},
                                            {0x54AA, &Numbers::mBottom},
                                            {0x54CC, &Numbers::mLeft},
                                            {0x54DD, &Numbers::mRight},
                                            {0x54B0, &Numbers::mDisplayWidth},
                                            {0x54BA, &Numbers::mDisplayHeight},
                                            {0x54B2, &Numbers::mDisplayUnit},
                                            {0x9A, &Numbers::mInterlaced},
                                            {0x53B8, &Numbers::mStereo},
                                            {0x55B2, &Numbers::mBits},
                                            {0x55B3, &Numbers::mChromaAcross},
                                            {0x55B4, &Numbers::mChromaDown},
                                            {0x55B1, &Numbers::mMatrix},
                                            {0x55BA, &Numbers::mTransfer},
                                            {0x55BC, &Numbers::mMaxLight},
                                            {0x55BD, &Numbers::mMeanLight}}};

void ReadElement(const EBMLElement& anElement, Numbers& aNumbers) {
    const auto* const field = std::find_if(kFields.begin(), kFields.end(),
                                           [&](const Field& aField) { return aField.mId == anElement.mId; });
    if (field != kFields.end()) {
        aNumbers.*field->mNumber = ReadEBMLNumber(anElement.mContent, aNumbers.*field->mNumber);
    } else if (anElement.mId == kPoseRoll) {
        aNumbers.mRoll = ReadEBMLFloat(anElement.mContent);
    } else if (anElement.mId == kMastering) {
        aNumbers.mfMastering = anElement.mContent.GetLeft() != 0;
    }
}

void ReadElements(const ByteReader& aContent, std::uint32_t& aBudget, Numbers& aNumbers) {
    EBMLWalk walk(aContent, aBudget);
    for (EBMLElement element(aContent); walk.Next(&element);) {
        ReadElement(element, aNumbers);
    }
}

/// What stands in colours and projection counts as if it stood around them: no id has two meanings.
Numbers ReadNumbers(const ByteReader& aVideo, std::uint32_t& aBudget) {
    Numbers numbers;
    EBMLWalk walk(aVideo, aBudget);
    for (EBMLElement element(aVideo); walk.Next(&element);) {
        if (element.mId == kColour || element.mId == kProjection) {
            ReadElements(element.mContent, aBudget, numbers);
        } else {
            ReadElement(element, numbers);
        }
    }
    return numbers;
}

/// What is left of a side; 0, not known, where nothing is, and for what no picture has.
std::uint32_t Cropped(std::uint64_t aSide, std::uint64_t aFirst, std::uint64_t aLast) {
    const std::uint64_t left = aSide - std::min(aSide, aFirst);
    const std::uint64_t cropped = left > aLast ? left - aLast : 0;
    return cropped <= kMatroska_MaxSide ? static_cast<std::uint32_t>(cropped) : 0;
}

/// A ratio that a whole number of pixels could only come near: 853 by 480 stands for 16:9.
VideoRatio Unrounded(const VideoRatio& aShown) {
    constexpr VideoRatio kUsual[] = {{16, 9}, {4, 3}};
    for (const VideoRatio& usual : kUsual) {
        const std::uint64_t across = std::uint64_t{aShown.mWidth} * usual.mHeight;
        const std::uint64_t down = std::uint64_t{aShown.mHeight} * usual.mWidth;
        if (2 * (std::max(across, down) - std::min(across, down)) <= usual.mWidth) {
            return usual;
        }
    }
    return aShown;
}

/// The shape of a pixel that makes of the cropped picture what is shown: sizes of any unit, or a ratio. Not
/// known where neither side is stated, and so the codec's is as good.
VideoRatio PixelAspectOf(const Numbers& aNumbers, const VideoFacts& aFacts) {
    constexpr std::uint64_t kUnknownUnit = 4;
    // Of two pictures in one the sizes are those of one in files of some writers, and of both in others'.
    const bool fTold = aNumbers.mDisplayUnit < kUnknownUnit && aNumbers.mStereo == 0 &&
                       (aNumbers.mDisplayWidth | aNumbers.mDisplayHeight) != 0 &&
                       aNumbers.mDisplayWidth <= kMatroska_MaxSide &&
                       aNumbers.mDisplayHeight <= kMatroska_MaxSide;
    if (!fTold) {
        return {};
    }
    const bool fPixels = aNumbers.mDisplayUnit == 0; // a side that is left out is then that of the picture
    const auto side = [fPixels](std::uint64_t aStated, std::uint32_t aSide) {
        return aStated == 0 && fPixels ? aSide : static_cast<std::uint32_t>(aStated);
    };
    VideoRatio shown = {side(aNumbers.mDisplayWidth, aFacts.mWidth),
                        side(aNumbers.mDisplayHeight, aFacts.mHeight)};
    if (std::uint64_t{shown.mWidth} * aFacts.mHeight != std::uint64_t{shown.mHeight} * aFacts.mWidth) {
        shown = Unrounded(shown);
    }
    return VideoRatio::OfPixel(shown, aFacts.mWidth, aFacts.mHeight);
}

const char* ColoursOf(const Numbers& aNumbers) {
    constexpr std::uint64_t kRGB = 0;
    if (aNumbers.mMatrix == kRGB) {
        return "RGB";
    }
    struct Sampling {
        std::uint64_t mAcross;
        std::uint64_t mDown;
        const char* mName;
    };
    constexpr Sampling kSamplings[] = {{1, 1, "4:2:0"}, {1, 0, "4:2:2"}};
    for (const Sampling& sampling : kSamplings) {
        if (sampling.mAcross == aNumbers.mChromaAcross && sampling.mDown == aNumbers.mChromaDown) {
            return sampling.mName;
        }
    }
    return nullptr; // 4:4:4 is what is not stated, too
}

const char* HDROf(const Numbers& aNumbers) {
    if (aNumbers.mTransfer == kTransferHLG) {
        return kHDR_HLG;
    }
    if (aNumbers.mTransfer != kTransferPQ) {
        return nullptr;
    }
    return aNumbers.mfMastering || aNumbers.mMaxLight != 0 || aNumbers.mMeanLight != 0 ? kHDR_HDR10 : kHDR_PQ;
}

/// As Exif numbers it. The turn is counter-clockwise to who looks (RFC 9559, 5.1.4.1.28.46); players turn by
/// quarters alone.
unsigned OrientationOf(double aRoll) {
    constexpr unsigned kTurned[] = {1, 8, 3, 6};
    constexpr double kFullTurn = 360;
    const double quarters = aRoll / 90;
    if (std::abs(aRoll) > kFullTurn || std::floor(quarters) != quarters) {
        return 0;
    }
    const int turn = static_cast<int>(quarters);
    return kTurned[static_cast<unsigned>(turn + 4) % 4U];
}

} // namespace

VideoFacts ReadMatroskaPicture(const ByteReader& aVideo, std::uint32_t& aBudget) {
    constexpr std::uint64_t kInterlaced = 1;
    constexpr std::uint64_t kProgressive = 2;
    const Numbers numbers = ReadNumbers(aVideo, aBudget);
    VideoFacts facts;
    facts.mWidth = Cropped(numbers.mWidth, numbers.mLeft, numbers.mRight);
    facts.mHeight = Cropped(numbers.mHeight, numbers.mTop, numbers.mBottom);
    facts.mPixelAspect = PixelAspectOf(numbers, facts);
    facts.mScan = numbers.mInterlaced == kInterlaced    ? kScan_Interlaced
                  : numbers.mInterlaced == kProgressive ? kScan_Progressive
                                                        : nullptr;
    facts.mBitDepth =
        numbers.mBits <= kMatroska_MaxSampleBits ? static_cast<std::uint32_t>(numbers.mBits) : 0;
    facts.mColours = ColoursOf(numbers);
    facts.mHDR = HDROf(numbers);
    facts.mOrientation = OrientationOf(numbers.mRoll);
    return facts;
}

void TakeMatroskaMapping(const ByteReader& aMapping, std::uint32_t& aBudget, VideoFacts& aFacts) {
    EBMLWalk walk(aMapping, aBudget);
    EBMLElement element(aMapping);
    if (!walk.Find(kMappingType, &element)) {
        return;
    }
    const std::uint64_t type = ReadEBMLNumber(element.mContent);
    const bool fDolby =
        std::find(std::begin(kMappingDolby), std::end(kMappingDolby), type) != std::end(kMappingDolby);
    const std::string_view kind = aFacts.mHDR != nullptr ? aFacts.mHDR : "";
    if (fDolby) {
        aFacts.mHDR = kHDR_DolbyVision;
    } else if (type == kMappingT35 && (kind == kHDR_PQ || kind == kHDR_HDR10)) {
        aFacts.mHDR = kHDR_HDR10Plus;
    }
}
