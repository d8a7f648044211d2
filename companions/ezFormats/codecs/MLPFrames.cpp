#include "ezFormats/codecs/MLPFrames.h"

#include "ezFormats/codecs/AC3Header.h"
#include "ezFormats/codecs/MLPHeader.h"

namespace {

constexpr std::uint32_t kHeadSize = 4; ///< of an access unit: sum, length, time
constexpr std::uint32_t kHeaderSize = kHeadSize + kMLPSyncSize + 1;
constexpr std::uint32_t kMinUnitSize = 8;
constexpr std::uint32_t kMaxUnitSize = 2 * 0xFFF; // AC-3 has less

constexpr std::uint32_t kMaxSubstreams = 4;
constexpr std::uint64_t kSubstreamsMask = 0xF;

std::uint32_t SizeOf(const unsigned char* aBytes) {
    return 2 * ((aBytes[0] & 0xFU) << 8 | aBytes[1]);
}

/// The head and the directory, an entry of two or four bytes for each substream, add up to ones.
bool IsSumRight(const unsigned char* aBytes, std::uint32_t aSubstreams) {
    unsigned sum = 0U ^ aBytes[0] ^ aBytes[1] ^ aBytes[2] ^ aBytes[3];
    const unsigned char* entry = aBytes + kHeadSize;
    for (std::uint32_t i = 0; i < aSubstreams; ++i) {
        const unsigned size = (entry[0] & 0x80U) != 0 ? 4 : 2;
        for (unsigned byte = 0; byte < size; ++byte) {
            sum ^= entry[byte];
        }
        entry += size;
    }
    return ((sum >> 4 ^ sum) & 0xFU) == 0xF;
}

} // namespace

MLPFrames::MLPFrames() : FrameReader({kHeaderSize, kMinUnitSize, kMaxUnitSize, 4, 2, true}) {}

bool MLPFrames::Read(const unsigned char* aBytes, CodedFrame* aFrame) const {
    constexpr unsigned char kSyncStart = 0xF8; // most bytes of a search begin nothing, which one tells
    if (aBytes[kHeadSize] != kSyncStart) {
        return false;
    }
    ezMLPHeader header;
    const std::uint32_t substreams = aBytes[kHeaderSize - 1] >> 4U;
    if (!ezMLPHeader_Read(aBytes + kHeadSize, header) || substreams == 0 || substreams > kMaxSubstreams) {
        return false;
    }
    aFrame->mSize = SizeOf(aBytes);
    aFrame->mSamples = header.mUnitSamples;
    aFrame->mSamplingRate = header.mSamplingRate;
    aFrame->mChannels = header.mChannels;
    aFrame->mKind = std::uint64_t{header.mSamplingRate} << 32 | header.mChannels << 8 |
                    (header.mfTrueHD ? 0x80U : 0U) | substreams;
    return true;
}

bool MLPFrames::ReadNext(const unsigned char* aBytes, const CodedFrame& aBefore, CodedFrame* aFrame) const {
    if (Read(aBytes, aFrame)) {
        return aFrame->mKind == aBefore.mKind;
    }
    ezAC3Header header = {};
    *aFrame = aBefore;
    if (ezAC3Header_Read(aBytes, header)) {
        aFrame->mSize = header.mFrameSize;
        aFrame->mSamples = 0;
        return true;
    }
    aFrame->mSize = SizeOf(aBytes);
    aFrame->mfBetween = true;
    return IsSumRight(aBytes, static_cast<std::uint32_t>(aBefore.mKind & kSubstreamsMask));
}
