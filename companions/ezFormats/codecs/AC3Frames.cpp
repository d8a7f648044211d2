#include "ezFormats/codecs/AC3Frames.h"

#include "ezFormats/codecs/AC3Header.h"
#include "ezFormats/codecs/EAC3Header.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// Of the kind: the fields of the header, and which header that is.
constexpr std::uint64_t kSwapped = std::uint64_t{1} << 32;
constexpr std::uint64_t kEnhanced = std::uint64_t{1} << 33;
constexpr std::uint64_t kSameFields = 0x0000FFF8; ///< fscod, numblkscod, acmod, lfeon, bsid

// Of the details: the places of channels, as a chanmap has them, and what is known of the parts.
constexpr std::uint64_t kPlaces = 0xFFFF;
constexpr std::uint64_t kHasEnhanced = std::uint64_t{1} << 16;
constexpr std::uint64_t kOtherProgramme = std::uint64_t{1} << 17; ///< what follows adds to that

constexpr std::uint32_t kSamplesOfFrame = 1536;

using Header = std::array<unsigned char, kEAC3MapSize>;

bool ReadAC3(const Header& aHeader, CodedFrame* aFrame) {
    ezAC3Header header = {};
    if (!ezAC3Header_Read(aHeader.data(), header)) {
        return false;
    }
    aFrame->mSize = header.mFrameSize;
    aFrame->mSamples = kSamplesOfFrame;
    aFrame->mSamplingRate = header.mSamplingRate;
    aFrame->mChannels = header.mChannels;
    aFrame->mBitRate = header.mBitRate;
    aFrame->mKind = header.mSame;
    aFrame->mDetails = ezEAC3Header_PlacesOfMode(header.mSame >> 4 & 7U, (header.mSame & 1U) != 0);
    return true;
}

bool ReadEAC3(const Header& aHeader, CodedFrame* aFrame) {
    ezEAC3Header header = {};
    if (!ezEAC3Header_Read(aHeader.data(), header)) {
        return false;
    }
    aFrame->mSize = header.mFrameSize;
    aFrame->mSamples = header.mfMain ? header.mSampleCount : 0;
    aFrame->mSamplingRate = header.mSamplingRate;
    aFrame->mChannels = header.mChannels;
    aFrame->mKind = (ezEAC3Header_Fields(aHeader.data()) & kSameFields) | kEnhanced;
    const bool fOther = !header.mfMain && !header.mfDependent;
    aFrame->mDetails =
        kHasEnhanced | (fOther ? kOtherProgramme : std::uint64_t{ezEAC3Header_Places(aHeader.data())});
    return true;
}

} // namespace

AC3Frames::AC3Frames() : FrameReader({kEAC3MapSize, kEAC3MinFrameSize, kEAC3MaxFrameSize, 8, 2, true}) {}

bool AC3Frames::Read(const unsigned char* aBytes, CodedFrame* aFrame) const {
    Header header = {};
    std::copy_n(aBytes, header.size(), header.begin());
    const bool fSwapped = aBytes[0] == 0x77;
    for (std::size_t i = 0; fSwapped && i < header.size(); i += 2) {
        std::swap(header[i], header[i + 1]);
    }
    if (!ReadAC3(header, aFrame) && !ReadEAC3(header, aFrame)) {
        return false;
    }
    aFrame->mKind |= fSwapped ? kSwapped : 0;
    return true;
}

/// A part is of the same rate, and of E-AC-3 even after a frame of AC-3.
bool AC3Frames::ReadNext(const unsigned char* aBytes, const CodedFrame& aBefore, CodedFrame* aFrame) const {
    if (!Read(aBytes, aFrame) || ((aFrame->mKind ^ aBefore.mKind) & kSwapped) != 0) {
        return false;
    }
    return aFrame->mSamples == 0 ? aFrame->mSamplingRate == aBefore.mSamplingRate
                                 : aFrame->mKind == aBefore.mKind;
}

void AC3Frames::TakePart(const CodedFrame& aPart, CodedFrame* aFrame) const {
    aFrame->mBitRate = 0; // what is stated is that of the first alone
    aFrame->mDetails |= aPart.mDetails & (kHasEnhanced | kOtherProgramme);
    const std::uint64_t places = (aFrame->mDetails & kOtherProgramme) == 0 ? aPart.mDetails & kPlaces : 0;
    if ((places & ~aFrame->mDetails) != 0) {
        aFrame->mDetails |= places;
        aFrame->mChannels =
            ezEAC3Header_CountChannels(static_cast<std::uint32_t>(aFrame->mDetails & kPlaces));
    }
}

bool AC3Frames::IsEAC3(const CodedFrame& aFrame) {
    return (aFrame.mDetails & kHasEnhanced) != 0;
}
