#include "ezFormats/codecs/MPEGVideo.h"

#include "ezFormats/codecs/MPEGVideoHeaders.h"
#include "ezFormats/detail/MediaNumbers.h"

#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

// Clauses are those of ISO/IEC 13818-2 where nothing else is said.

constexpr std::uint32_t kCodedLines = 1088; ///< of 1080: whole macroblocks of 16, in fields of 32
constexpr std::uint32_t kShownLines = 1080;

struct Rate {
    std::uint64_t mPictures;
    std::uint64_t mSeconds; ///< in which they are shown
};
/// frame_rate_code (table 6-4), from 1 on.
constexpr std::array<Rate, 8> kFrameRates = {
    {{24000, 1001}, {24, 1}, {25, 1}, {30000, 1001}, {30, 1}, {50, 1}, {60000, 1001}, {60, 1}}};

/// aspect_ratio_information of MPEG-2 (table 6-3), from 1 on: the shape of the display, but of 1 that of a
/// pixel.
constexpr std::array<VideoRatio, 4> kDisplays = {{{1, 1}, {4, 3}, {16, 9}, {221, 100}}};

/// pel_aspect_ratio of MPEG-1 (ISO/IEC 11172-2, 2.4.3.2), from 1 on. It has the height of a pixel of width 1
/// in four digits; the four that are those of television are told as television has them: 0.7031 and 0.8437
/// of 16:9, 0.9157 and 1.0950 of 4:3, with 625 and 525 lines.
constexpr std::array<VideoRatio, 14> kPixels = {{{1, 1},
                                                 {10000, 6735},
                                                 {64, 45},
                                                 {10000, 7615},
                                                 {10000, 8055},
                                                 {32, 27},
                                                 {10000, 8935},
                                                 {12, 11},
                                                 {10000, 9815},
                                                 {10000, 10255},
                                                 {10000, 10695},
                                                 {10, 11},
                                                 {10000, 11575},
                                                 {10000, 12015}}};

constexpr std::array<const char*, 4> kChromas = {nullptr, "4:2:0", "4:2:2", "4:4:4"}; // table 6-5

struct ProfileAndLevel {
    std::uint32_t mCode;
    const char* mProfile;
    std::uint32_t mLevel;
};
/// Those with the escape bit (tables 8-1 and following).
constexpr std::array<ProfileAndLevel, 6> kEscaped = {{{0x82, "4:2:2", 40},
                                                      {0x85, "4:2:2", 20},
                                                      {0x8A, "Multiview", 40},
                                                      {0x8B, "Multiview", 30},
                                                      {0x8D, "Multiview", 20},
                                                      {0x8E, "Multiview", 10}}};
/// The others: a profile from 1 on (table 8-2), and a level in steps of two (table 8-3). The one above High,
/// of 60 pictures a second at its size, has no number in a record.
constexpr std::array<const char*, 5> kProfiles = {"High", "Spatial", "SNR", "Main", "Simple"};
constexpr std::array<std::uint32_t, 5> kLevels = {VideoFacts::kNoLevel, 40, 30, 20, 10};

void TellProfile(std::uint32_t aCode, VideoFacts& aFacts) {
    const auto* const escaped =
        std::find_if(kEscaped.begin(), kEscaped.end(),
                     [=](const ProfileAndLevel& aKnown) { return aKnown.mCode == aCode; });
    if (escaped != kEscaped.end()) {
        aFacts.mProfile = escaped->mProfile;
        aFacts.mLevel = escaped->mLevel;
        return;
    }
    const std::uint32_t profile = aCode >> 4;
    const std::uint32_t level = (aCode & 0xFU) / 2;
    if (profile >= 1 && profile <= kProfiles.size() && level >= 1 && level <= kLevels.size()) {
        aFacts.mProfile = kProfiles[profile - 1];
        aFacts.mLevel = kLevels[level - 1];
    }
}

/// A part of the bytes, from one start code to the next.
struct Unit {
    unsigned mCode = 0;
    const unsigned char* mBytes = nullptr; ///< after the code
    std::size_t mSize = 0;
};

/// Steps from unit to unit of borrowed bytes.
class UnitWalk {
public:
    UnitWalk(const unsigned char* aBytes, std::size_t aSize)
        : mEnd(aBytes + aSize), mNext(FindCode(aBytes, mEnd)) {}

    bool Next(Unit& aUnit) {
        if (mEnd - mNext <= kPrefixSize) {
            return false;
        }
        const unsigned char* const content = mNext + kPrefixSize + 1;
        aUnit.mCode = mNext[kPrefixSize];
        mNext = FindCode(content, mEnd);
        aUnit.mBytes = content;
        aUnit.mSize = static_cast<std::size_t>(mNext - content);
        return true;
    }

private:
    static constexpr std::ptrdiff_t kPrefixSize = 3;

    /// The next 00 00 01, or the end.
    static const unsigned char* FindCode(const unsigned char* aBytes, const unsigned char* anEnd) {
        constexpr std::array<unsigned char, kPrefixSize> kPrefix = {0, 0, 1};
        return std::search(aBytes, anEnd, kPrefix.begin(), kPrefix.end());
    }

    const unsigned char* mEnd;
    const unsigned char* mNext;
};

/// What the units of a stream tell together.
class Reading {
public:
    void Take(const Unit& aUnit);
    std::optional<VideoFacts> Tell() const;

private:
    enum class Part { Other, Sequence, SequenceMore, Picture };

    void BeginSequence(const Unit& aUnit);
    void TakeExtension(const Unit& aUnit);
    void TakePicture(const Unit& aUnit);
    VideoRatio GetPixelAspect(std::uint32_t aHeight) const;
    const char* GetScan() const;
    void TellRates(VideoFacts& aFacts) const;

    Part mPart = Part::Other;    ///< that the last header began
    bool mfHeader = false;       ///< there has been a good sequence header, and no bad extension after it
    bool mfSequence = false;     ///< and what follows, so that mSequence stays
    bool mfPicture = false;      ///< there has been the header of one
    bool mfVaries = false;       ///< a picture says that the rate varies
    bool mfInterlaced = false;   ///< a picture is not, or may not be, a progressive frame
    std::uint64_t mPictures = 0; ///< whose coding extension was read
    ezMPEGSequence mSequence;
    ezMPEGPicture mPicture = {};
    ezMPEGDisplay mDisplay;
};

void Reading::BeginSequence(const Unit& aUnit) {
    mPart = Part::Other;
    if (!mfSequence) { // of several the first one tells
        mSequence = ezMPEGSequence();
        mfHeader = ezMPEGSequence_ReadHeader(aUnit.mBytes, aUnit.mSize, mSequence);
        mPart = mfHeader ? Part::Sequence : Part::Other;
    }
}

void Reading::TakeExtension(const Unit& aUnit) {
    const bool fMPEG2 = mSequence.mProfileAndLevel != 0;
    if (mPart == Part::Sequence) {
        mfHeader = ezMPEGSequence_ReadExtension(aUnit.mBytes, aUnit.mSize, mSequence);
        mfSequence = mfHeader;
        mPart = mfHeader ? Part::SequenceMore : Part::Other;
    } else if (mPart == Part::SequenceMore) {
        ezMPEGDisplay display;
        if (ezMPEGDisplay_Read(aUnit.mBytes, aUnit.mSize, display)) {
            mDisplay = display;
        }
    } else if (mPart == Part::Picture && fMPEG2 &&
               ezMPEGPicture_ReadCodingExtension(aUnit.mBytes, aUnit.mSize, mPicture)) {
        ++mPictures;
        mfInterlaced = mfInterlaced || !mPicture.mfProgressive;
        mPart = Part::Other;
    }
}

void Reading::TakePicture(const Unit& aUnit) {
    const bool fMPEG2 = mSequence.mProfileAndLevel != 0;
    const bool fPicture = mfSequence && ezMPEGPicture_ReadHeader(aUnit.mBytes, aUnit.mSize, fMPEG2, mPicture);
    mPart = fPicture ? Part::Picture : Part::Other;
    mfPicture = mfPicture || fPicture;
    mfVaries = mfVaries || (fPicture && mPicture.mfVariableBitRate);
}

void Reading::Take(const Unit& aUnit) {
    switch (aUnit.mCode) {
    case kMPEGVideo_Sequence:
        BeginSequence(aUnit);
        break;
    case kMPEGVideo_Extension:
        TakeExtension(aUnit);
        break;
    case kMPEGVideo_UserData:
    case kMPEGVideo_Group:
    case kMPEGVideo_Picture:
        mfSequence = mfSequence || mfHeader; // an extension comes right after the header, or there is none
        mPart = mPart == Part::Sequence ? Part::SequenceMore : mPart;
        if (aUnit.mCode == kMPEGVideo_Picture) {
            TakePicture(aUnit);
        }
        break;
    default: // slices, and what tells nothing
        break;
    }
}

VideoRatio Reading::GetPixelAspect(std::uint32_t aHeight) const {
    const std::uint32_t code = mSequence.mAspectRatio; // from 1 on, as the readers of the headers ask
    if (mSequence.mProfileAndLevel == 0) {
        return VideoRatio::Of(kPixels[code - 1].mWidth, kPixels[code - 1].mHeight);
    }
    const bool fPart = mDisplay.mWidth != 0 && mDisplay.mHeight != 0;
    const std::uint32_t width = fPart ? mDisplay.mWidth : mSequence.mWidth;
    const std::uint32_t height = fPart ? mDisplay.mHeight : aHeight;
    const VideoRatio& display = kDisplays[code - 1];
    return code == 1 ? display : VideoRatio::OfPixel(display, width, height);
}

const char* Reading::GetScan() const {
    const bool fFrames = mSequence.mProfileAndLevel == 0 || mSequence.mfProgressive; // nothing else is there
    return fFrames || (mPictures != 0 && !mfInterlaced) ? kScan_Progressive : kScan_Interlaced;
}

void Reading::TellRates(VideoFacts& aFacts) const {
    if (!mSequence.mfVariableBitRate && mSequence.mBitRate < kezMediaInfo_VariableRate) {
        const bool fMost = !mfPicture || (mfVaries && mSequence.mProfileAndLevel != 0);
        (fMost ? aFacts.mMaxBitRate : aFacts.mBitRate) = static_cast<std::uint32_t>(mSequence.mBitRate);
    }
}

std::optional<VideoFacts> Reading::Tell() const {
    if (!mfHeader && !mfSequence) {
        return std::nullopt;
    }
    VideoFacts facts;
    const bool fMPEG2 = mSequence.mProfileAndLevel != 0;
    facts.mCodec = fMPEG2 ? "MPEG2" : mfSequence ? "MPEG1" : "";
    facts.mWidth = mSequence.mWidth;
    facts.mHeight = fMPEG2 && mSequence.mHeight == kCodedLines ? kShownLines : mSequence.mHeight;
    const Rate& rate = kFrameRates[mSequence.mFrameRate - 1];
    facts.mFrameRate = MediaNumber_FrameRate(rate.mPictures * mSequence.mFrameRateMultiplier,
                                             rate.mSeconds * mSequence.mFrameRateDivisor, 1);
    facts.mBitDepth = 8;
    facts.mColours = fMPEG2 ? kChromas[mSequence.mChroma] : kChromas[1];
    TellRates(facts);
    if (mfSequence) { // what it means depends on which of the two it is
        facts.mPixelAspect = GetPixelAspect(facts.mHeight);
        facts.mScan = GetScan();
    }
    if (fMPEG2) {
        TellProfile(mSequence.mProfileAndLevel, facts);
    }
    return facts;
}

} // namespace

std::optional<VideoFacts> MPEGVideo_Read(const unsigned char* aBytes, std::size_t aSize) {
    Reading reading;
    UnitWalk walk(aBytes, aSize);
    Unit unit;
    while (walk.Next(unit)) {
        reading.Take(unit);
    }
    return reading.Tell();
}
