#include "ezFormats/codecs/MPEGVideoHeaders.h"

#include "ezBytes/BitReader.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint32_t kMaxAspectRatioMPEG1 = 14;
constexpr std::uint32_t kMaxAspectRatioMPEG2 = 4;
constexpr std::uint32_t kMaxFrameRate = 8;
constexpr std::uint32_t kBitRateUnit = 400;
constexpr std::uint32_t kBitRateVariable = 0x3FFFF; ///< of MPEG-1; encoders of MPEG-2 write it on
constexpr std::size_t kMatrixSize = 64;
constexpr std::uint32_t kDelayVariable = 0xFFFF;

constexpr std::uint32_t kTypePredicted = 2;
constexpr std::uint32_t kTypeBidirectional = 3;
constexpr std::uint32_t kTypeDCOnly = 4; ///< of MPEG-1

/// True when what is left up to the end of the unit is zero.
bool OnlyZerosLeft(ezBitReader& aBits) {
    while (aBits.GetBitsLeft() > 0) {
        aBits.Require(aBits.Read(static_cast<unsigned>(std::min<std::size_t>(aBits.GetBitsLeft(), 32))) == 0);
    }
    return !aBits.HasFailed();
}

/// A quantiser matrix, if the next bit announces one.
void ReadMatrix(ezBitReader& aBits) {
    if (aBits.ReadFlag()) {
        for (std::size_t i = 0; i < kMatrixSize; ++i) {
            aBits.Require(aBits.Read(8) != 0);
        }
    }
}

bool Between(std::uint32_t aValue, std::uint32_t aMin, std::uint32_t aMax) {
    return aValue >= aMin && aValue <= aMax;
}

bool IsLegalProfile(std::uint32_t aProfileAndLevel) {
    constexpr std::array<std::uint32_t, 5> kLevels = {2, 4, 6, 8, 10}; // high progressive down to low
    constexpr std::array<std::uint32_t, 7> kEscaped = {0x82, 0x85, 0x8A, 0x8B, 0x8D, 0x8E, 0x92};
    if (aProfileAndLevel >= 0x80) { // multi-view and 4:2:2, with levels of their own
        return std::find(kEscaped.begin(), kEscaped.end(), aProfileAndLevel) != kEscaped.end();
    }
    return Between(aProfileAndLevel >> 4, 1, 5) &&
           std::find(kLevels.begin(), kLevels.end(), aProfileAndLevel & 15U) != kLevels.end();
}

} // namespace

bool ezMPEGSequence_ReadHeader(const unsigned char* aBytes, std::size_t aSize, ezMPEGSequence& aSequence) {
    ezBitReader bits(aBytes, 8 * aSize);
    aSequence.mWidth = bits.Read(12);
    aSequence.mHeight = bits.Read(12);
    aSequence.mAspectRatio = bits.Read(4);
    const std::uint32_t frameRate = bits.Read(4);
    const std::uint32_t bitRate = bits.Read(18);
    const bool fMarker = bits.ReadFlag();
    bits.Skip(10); // buffer size
    bits.Skip(1);  // constrained parameters
    ReadMatrix(bits);
    ReadMatrix(bits);
    bits.Require(aSequence.mWidth != 0 && aSequence.mHeight != 0 &&
                 Between(aSequence.mAspectRatio, 1, kMaxAspectRatioMPEG1) &&
                 Between(frameRate, 1, kMaxFrameRate) && bitRate != 0 && fMarker);
    aSequence.mfVariableBitRate = bitRate == kBitRateVariable;
    aSequence.mBitRate = bitRate;
    aSequence.mBitRate *= kBitRateUnit;
    return OnlyZerosLeft(bits);
}

bool ezMPEGSequence_ReadExtension(const unsigned char* aBytes, std::size_t aSize, ezMPEGSequence& aSequence) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(4) == kMPEGVideo_SequenceExtension);
    bits.Require(IsLegalProfile(bits.Read(8)));
    bits.Skip(1);                    // progressive
    bits.Require(bits.Read(2) != 0); // chroma format
    const std::uint32_t width = bits.Read(2);
    const std::uint32_t height = bits.Read(2);
    const std::uint64_t bitRate = bits.Read(12);
    bits.Require(bits.ReadFlag());
    bits.Skip(8 + 1 + 2 + 5); // buffer size, low delay, frame rate
    bits.Require(Between(aSequence.mAspectRatio, 1, kMaxAspectRatioMPEG2));
    if (!OnlyZerosLeft(bits)) {
        return false;
    }
    aSequence.mWidth |= width << 12;
    aSequence.mHeight |= height << 12;
    aSequence.mBitRate += (bitRate << 18) * kBitRateUnit;
    aSequence.mfVariableBitRate = aSequence.mfVariableBitRate && bitRate == 0;
    return true;
}

bool ezMPEGGroup_Read(const unsigned char* aBytes, std::size_t aSize) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(1); // drop frame
    bits.Require(bits.Read(5) < 24);
    bits.Require(bits.Read(6) < 60);
    bits.Require(bits.ReadFlag());
    bits.Require(bits.Read(6) < 60);
    bits.Require(bits.Read(6) < 60);
    bits.Skip(2); // closed, broken
    return OnlyZerosLeft(bits);
}

bool ezMPEGPicture_ReadHeader(const unsigned char* aBytes, std::size_t aSize, bool afMPEG2,
                              ezMPEGPicture& aPicture) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(10); // place in display order
    const std::uint32_t type = bits.Read(3);
    bits.Require(Between(type, 1, afMPEG2 ? kTypeBidirectional : kTypeDCOnly));
    aPicture.mfVariableBitRate = bits.Read(16) == kDelayVariable;
    const unsigned vectors = type == kTypePredicted ? 1 : type == kTypeBidirectional ? 2 : 0;
    for (unsigned i = 0; i < vectors; ++i) {
        const std::uint32_t code = bits.Read(4); // full pixels, and the code of the range
        bits.Require(afMPEG2 ? code == 7 : (code & 7U) != 0);
    }
    bits.Require(!bits.ReadFlag()); // no extra information: reserved
    return OnlyZerosLeft(bits);
}

bool ezMPEGPicture_ReadCodingExtension(const unsigned char* aBytes, std::size_t aSize) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Require(bits.Read(4) == kMPEGVideo_PictureCodingExtension);
    for (unsigned i = 0; i < 4; ++i) {
        const std::uint32_t code = bits.Read(4);
        bits.Require(Between(code, 1, 9) || code == 15);
    }
    bits.Skip(2);                    // precision
    bits.Require(bits.Read(2) != 0); // structure
    bits.Skip(9);                    // nine flags, from the order of fields to progressive frame
    bits.Skip(bits.ReadFlag() ? 20 : 0);
    return OnlyZerosLeft(bits);
}
