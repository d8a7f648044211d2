#include "ezFormats/wavpack/WavPackBlock.h"

#include "ezFormats/wavpack/WavPackLimits.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kMagic = 0x7776706B; // "wvpk"

/// Sampling rates by their number in the flags; the last is stated by a sub-block.
constexpr std::uint32_t kRates[16] = {6000,  8000,  9600,  11025, 12000, 16000, 22050,  24000,
                                      32000, 44100, 48000, 64000, 88200, 96000, 192000, 0};

// Sub-blocks, by the lower six bits of their ids. What follows the sound is of no interest here, and
// may lie far away.
constexpr unsigned kSound = 0x0A;
constexpr unsigned kCorrections = 0x0B;
constexpr unsigned kChannels = 0x0D;
constexpr unsigned kDSD = 0x0E;
constexpr unsigned kSamplingRate = 0x27;

/// A count of 40 bits, whose lower 32 are never all ones: that is the count of nothing known.
std::uint64_t TotalOf(std::uint32_t aLow, std::uint32_t aHigh) {
    constexpr std::uint64_t kUnknown = 0xFFFFFFFF;
    return aLow == kUnknown ? 0 : aLow + aHigh * kUnknown;
}

/// The count of channels: one byte, or with more of them 12 bits less one, of which the upper four stand in
/// the third byte.
std::uint32_t ReadChannels(ByteReader aSubBlock) {
    constexpr std::uint64_t kLargeSize = 6;
    const bool fLarge = aSubBlock.GetLeft() >= kLargeSize;
    const std::uint32_t low = aSubBlock.ReadByte();
    if (!fLarge) {
        return low;
    }
    aSubBlock.Skip(1);
    return (low | (aSubBlock.ReadByte() & 0xFU) << 8) + 1;
}

/// A rate of three bytes, or of four of which the highest bit means nothing.
std::uint32_t ReadRate(ByteReader aSubBlock) {
    return static_cast<std::uint32_t>(aSubBlock.ReadLittle(aSubBlock.GetLeft() >= 4 ? 4 : 3)) & 0x7FFFFFFF;
}

/// A sub-block's number, and a reader of what it holds, or of what a cut left of that.
struct SubBlock {
    unsigned mNumber;
    ByteReader mBytes;
};
SubBlock ReadSubBlock(ByteReader& aBlock) {
    constexpr unsigned kLarge = 0x80;
    constexpr unsigned kOdd = 0x40; // a byte of the last word is stuffing
    const unsigned name = aBlock.ReadByte();
    const std::uint64_t size = 2 * aBlock.ReadLittle((name & kLarge) != 0 ? 3 : 1);
    const std::uint64_t stuffing = (name & kOdd) != 0 ? 1 : 0;
    aBlock.Require(size >= stuffing);
    ByteReader bytes = aBlock;
    bytes = bytes.Take(std::min(size - stuffing, bytes.GetLeft()));
    aBlock.Skip(std::min(size, aBlock.GetLeft()));
    return {name & 0x3F, bytes};
}

} // namespace

std::uint32_t WavPackHeader::GetBits() const {
    const std::uint32_t stored = ((mFlags & 3) + 1) * 8;
    const std::uint32_t zeros = mFlags >> 13 & 31;
    return zeros < stored ? stored - zeros : stored;
}

std::uint32_t WavPackHeader::GetSamplingRate() const {
    return kRates[mFlags >> 23 & 15];
}

bool ReadWavPackHeader(ByteReader& aReader, WavPackHeader* aHeader) {
    constexpr std::uint32_t kFirstVersion = 0x402;
    constexpr std::uint32_t kLastVersion = 0x410;
    constexpr std::uint32_t kUncounted = 8; // bytes that the stated size leaves out
    aReader.Require(aReader.ReadBig32() == kMagic);
    const std::uint32_t size = aReader.ReadLittle32();
    const std::uint64_t version = aReader.ReadLittle(2);
    const std::uint32_t indexHigh = aReader.ReadByte();
    const std::uint32_t totalHigh = aReader.ReadByte();
    aHeader->mTotal = TotalOf(aReader.ReadLittle32(), totalHigh);
    aHeader->mIndex = std::uint64_t{indexHigh} << 32 | aReader.ReadLittle32();
    aHeader->mSamples = aReader.ReadLittle32();
    aHeader->mFlags = aReader.ReadLittle32();
    aReader.Skip(4); // check sum
    aHeader->mSize = std::uint64_t{size} + kUncounted;
    aReader.Require(version >= kFirstVersion && version <= kLastVersion && size % 2 == 0 &&
                    aHeader->mSize >= kWavPackHeader_Size);
    return !aReader.HasFailed();
}

WavPackSubBlocks ReadWavPackSubBlocks(ByteReader aBlock) {
    WavPackSubBlocks found;
    for (std::uint32_t count = 0; count < kWavPack_MaxSubBlocks && aBlock.GetLeft() != 0; ++count) {
        SubBlock subBlock = ReadSubBlock(aBlock);
        switch (subBlock.mNumber) {
        case kChannels:
            found.mChannels = ReadChannels(subBlock.mBytes);
            break;
        case kSamplingRate:
            found.mSamplingRate = ReadRate(subBlock.mBytes);
            break;
        case kDSD:
            found.mShift = subBlock.mBytes.ReadByte();
            found.mfShift = !subBlock.mBytes.HasFailed();
            return found;
        case kCorrections:
            found.mfCorrections = true;
            return found;
        case kSound:
            return found;
        default:
            break;
        }
    }
    return found;
}
