#include "ezFormats/codecs/MPEGAudioHeader.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::uint32_t kVersionReserved = 1;
constexpr std::uint32_t kVersion25 = 0;
constexpr std::uint32_t kVersion1 = 3;
constexpr std::uint32_t kLayer3 = 1; ///< as coded
constexpr std::uint32_t kRateReserved = 3;
constexpr std::uint32_t kBitRateForbidden = 15;
constexpr std::uint32_t kEmphasisReserved = 2;
constexpr std::uint32_t kModeMono = 3;

/// All but bitrate_index, padding_bit, private_bit, mode and mode_extension.
constexpr std::uint32_t kSameStreamMask = 0xFFFF0C0F;

using BitRates = std::array<std::uint32_t, 15>;

/// kbit/s by bitrate_index; index 0 is free format.
constexpr std::array<BitRates, 3> kBitRatesMPEG1 = {{
    {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
}};
constexpr std::array<BitRates, 3> kBitRatesMPEG2 = {{
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
}};

/// Hz of MPEG-1; MPEG-2 has half of them and MPEG-2.5 a quarter.
constexpr std::array<std::uint32_t, 3> kSamplingRates = {44100, 48000, 32000};

// syncword 11 bits (the 12th is 0 in MPEG-2.5 alone), version 2, layer 2, protection_bit 1, bitrate_index 4,
// sampling_frequency 2, padding_bit 1, private_bit 1, mode 2, mode_extension 2, copyright 1,
// original/copy 1, emphasis 2.

std::uint32_t Bits(std::uint32_t aWord, unsigned aShift, unsigned aCount) {
    return aWord >> aShift & ((1U << aCount) - 1U);
}

/// Bytes of a frame without padding; aVersion as coded.
std::uint32_t FrameSize(const ezMPEGAudioHeader& aHeader, std::uint32_t aVersion, std::uint32_t aBitRate) {
    if (aHeader.mLayer == 1) {
        return 12 * aBitRate / aHeader.mSamplingRate * aHeader.mSlotSize;
    }
    const std::uint32_t samplesInBytes = aHeader.mLayer == 3 && aVersion != kVersion1 ? 72 : 144;
    return samplesInBytes * aBitRate / aHeader.mSamplingRate;
}

std::uint32_t SampleCount(std::uint32_t aLayer, std::uint32_t aVersion) {
    if (aLayer == 1) {
        return 384;
    }
    return aLayer == 3 && aVersion != kVersion1 ? 576 : 1152;
}

std::uint32_t SideInformationSize(std::uint32_t aVersion, std::uint32_t aChannels) {
    if (aVersion == kVersion1) {
        return aChannels == 1 ? 17 : 32;
    }
    return aChannels == 1 ? 9 : 17;
}

} // namespace

const char* ezMPEGAudioHeader_CodecOf(std::uint32_t aLayer) {
    return aLayer == 1 ? "MP1" : aLayer == 2 ? "MP2" : "MP3";
}

bool ezMPEGAudioHeader_Read(std::uint32_t aWord, ezMPEGAudioHeader& aHeader) {
    const std::uint32_t version = Bits(aWord, 19, 2);
    const std::uint32_t layer = 4 - Bits(aWord, 17, 2); // coded upside down; 4 is reserved
    const std::uint32_t bitRate = Bits(aWord, 12, 4);
    const std::uint32_t rate = Bits(aWord, 10, 2);
    if (Bits(aWord, 21, 11) != 0x7FF || version == kVersionReserved || layer == 4 ||
        bitRate == kBitRateForbidden || rate == kRateReserved || Bits(aWord, 0, 2) == kEmphasisReserved) {
        return false;
    }
    if (version == kVersion25 && layer != 3) {
        return false; // the half rates were made for layer III alone
    }
    const auto& bitRates = version == kVersion1 ? kBitRatesMPEG1 : kBitRatesMPEG2;
    aHeader.mLayer = layer;
    aHeader.mBitRate = bitRates[layer - 1][bitRate] * 1000;
    aHeader.mSamplingRate = kSamplingRates[rate] >> (version == kVersion1    ? 0
                                                     : version == kVersion25 ? 2
                                                                             : 1);
    aHeader.mChannels = Bits(aWord, 6, 2) == kModeMono ? 1 : 2;
    aHeader.mSlotSize = layer == 1 ? 4 : 1;
    aHeader.mfPadded = Bits(aWord, 9, 1) != 0;
    const std::uint32_t padding = aHeader.mfPadded ? aHeader.mSlotSize : 0;
    aHeader.mFrameSize = bitRate == 0 ? 0 : FrameSize(aHeader, version, aHeader.mBitRate) + padding;
    aHeader.mMinFrameSize = FrameSize(aHeader, version, bitRates[layer - 1][1] * 1000);
    aHeader.mMaxBitRate = bitRates[layer - 1].back() * 1000;
    aHeader.mMaxFrameSize = FrameSize(aHeader, version, aHeader.mMaxBitRate) + aHeader.mSlotSize;
    aHeader.mSampleCount = SampleCount(layer, version);
    aHeader.mTagOffset = kMPEGAudioHeaderSize + SideInformationSize(version, aHeader.mChannels);
    return true;
}

bool ezMPEGAudioHeader_IsSameStream(std::uint32_t aFirst, std::uint32_t aSecond) {
    const bool fSameChannels = (Bits(aFirst, 6, 2) == kModeMono) == (Bits(aSecond, 6, 2) == kModeMono);
    const bool fSameRate = Bits(aFirst, 12, 4) == Bits(aSecond, 12, 4);
    // Layer III alone may change its rate, but where one frame states none, no frame does.
    const bool fRateMayChange =
        Bits(aFirst, 17, 2) == kLayer3 && Bits(aFirst, 12, 4) != 0 && Bits(aSecond, 12, 4) != 0;
    return ((aFirst ^ aSecond) & kSameStreamMask) == 0 && fSameChannels && (fSameRate || fRateMayChange);
}
