#include "ezFormats/codecs/VC1Headers.h"

#include "ezBytes/BitReader.h"
#include "ezFormats/codecs/PixelAspects.h"

#include <array>

// Clauses are those of SMPTE ST 421.

namespace {

constexpr std::uint32_t kChroma420 = 1; ///< COLORDIFF_FORMAT, all others are reserved
constexpr std::uint32_t kExtendedAspect = 15;
constexpr std::uint32_t kAspectHighest = 13; ///< of ASPECT_RATIO (6.1.14.3)
/// FRAMERATENR and FRAMERATEDR (6.1.14.4), from 1 on.
constexpr std::array<std::uint32_t, 7> kRates = {24000, 25000, 30000, 50000, 60000, 48000, 72000};
constexpr std::array<std::uint32_t, 2> kDivisors = {1000, 1001};

/// A side of a picture, which is coded as half of it less 1.
std::uint32_t ReadSide(ezBitReader& aBits) {
    return 2 * (aBits.Read(12) + 1);
}

VideoRatio ReadPixelAspect(ezBitReader& aBits) {
    const std::uint32_t code = aBits.Read(4);
    if (code == kExtendedAspect) {
        const std::uint32_t width = aBits.Read(8) + 1;   // ASPECT_HORIZ_SIZE
        return VideoRatio::Of(width, aBits.Read(8) + 1); // ASPECT_VERT_SIZE
    }
    return PixelAspect_Of(code, kAspectHighest);
}

std::uint32_t ReadFrameRate(ezBitReader& aBits) {
    if (aBits.ReadFlag()) {                                  // FRAMERATEIND
        return VideoClock_FrameRate(32, aBits.Read(16) + 1); // FRAMERATEEXP
    }
    const std::uint32_t rate = aBits.Read(8);    // FRAMERATENR
    const std::uint32_t divisor = aBits.Read(4); // FRAMERATEDR
    const bool fKnown = rate >= 1 && rate <= kRates.size() && divisor >= 1 && divisor <= kDivisors.size();
    return fKnown ? VideoClock_FrameRate(kDivisors[divisor - 1], kRates[rate - 1]) : 0;
}

/// DISPLAY_EXT and what follows it (6.1.14)
void ReadDisplay(ezBitReader& aBits, ezVC1Sequence& aSequence) {
    const std::uint32_t width = aBits.Read(14) + 1;  // DISP_HORIZ_SIZE
    const std::uint32_t height = aBits.Read(14) + 1; // DISP_VERT_SIZE
    const VideoRatio pixel = aBits.ReadFlag() ? ReadPixelAspect(aBits) : VideoRatio();
    const std::uint32_t rate = aBits.ReadFlag() ? ReadFrameRate(aBits) : 0;
    if (aBits.ReadFlag()) {    // COLOR_FORMAT_FLAG
        aBits.Skip(8 + 8 + 8); // COLOR_PRIM, TRANSFER_CHAR, MATRIX_COEF
    }
    if (!aBits.HasFailed()) {
        aSequence.mDisplayWidth = width;
        aSequence.mDisplayHeight = height;
        aSequence.mPixelAspect = pixel;
        aSequence.mFrameRate = rate;
    }
}

/// HRD_PARAM (6.1.15)
void ReadBuckets(ezBitReader& aBits, ezVC1Sequence& aSequence) {
    aSequence.mLeakyBuckets = aBits.Read(5);                      // HRD_NUM_LEAKY_BUCKETS
    aBits.Skip(4 + 4);                                            // BIT_RATE_EXPONENT, BUFFER_SIZE_EXPONENT
    aBits.Skip(std::size_t{aSequence.mLeakyBuckets} * (16 + 16)); // HRD_RATE, HRD_BUFFER
}

} // namespace

bool ezVC1Sequence_Read(const unsigned char* aBytes, std::size_t aSize, ezVC1Sequence& aSequence) {
    ezBitReader bits(aBytes, 8 * aSize);
    ezVC1Sequence sequence;
    bits.Require(bits.Read(2) == kVC1_Advanced);
    sequence.mLevel = bits.Read(3);
    bits.Require(sequence.mLevel <= kVC1_MaxLevel);
    bits.Require(bits.Read(2) == kChroma420);
    bits.Skip(3 + 5 + 1); // FRMRTQ_POSTPROC, BITRTQ_POSTPROC, POSTPROCFLAG: hints
    sequence.mWidth = ReadSide(bits);
    sequence.mHeight = ReadSide(bits);
    bits.Skip(1); // PULLDOWN
    sequence.mfInterlaced = bits.ReadFlag();
    bits.Skip(1 + 1 + 1); // TFCNTRFLAG, FINTERPFLAG, RESERVED
    sequence.mfSegmented = bits.ReadFlag();
    const bool fDisplay = bits.ReadFlag();
    if (bits.HasFailed()) {
        return false;
    }
    if (fDisplay) {
        ReadDisplay(bits, sequence);
    }
    if (bits.ReadFlag()) { // HRD_PARAM_FLAG
        ReadBuckets(bits, sequence);
    }
    aSequence = sequence;
    return !bits.HasFailed();
}

bool ezVC1EntryPoint_Read(const unsigned char* aBytes, std::size_t aSize, ezVC1Sequence& aSequence) {
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(7);                                        // BROKEN_LINK to EXTENDED_MV
    bits.Skip(2 + 1 + 1 + 2);                            // DQUANT, VSTRANSFORM, OVERLAP, QUANTIZER
    bits.Skip(std::size_t{8} * aSequence.mLeakyBuckets); // HRD_FULL
    if (bits.ReadFlag()) {                               // CODED_SIZE_FLAG
        const std::uint32_t width = ReadSide(bits);
        const std::uint32_t height = ReadSide(bits);
        if (bits.Require(width <= aSequence.mWidth && height <= aSequence.mHeight)) {
            aSequence.mWidth = width;
            aSequence.mHeight = height;
        }
    }
    return !bits.HasFailed();
}

bool ezVC1Frame_IsInterlaced(const unsigned char* aBytes, std::size_t aSize, const ezVC1Sequence& aSequence) {
    constexpr unsigned kInterlaced = 0x80; // FCM: 0 is progressive, 10 a frame, 11 two fields
    return aSequence.mfInterlaced && aSize != 0 && (aBytes[0] & kInterlaced) != 0;
}
