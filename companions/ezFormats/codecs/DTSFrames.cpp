#include "ezFormats/codecs/DTSFrames.h"

#include "ezFormats/codecs/DTSHeader.h"
#include "ezFormats/frames/FrameLimits.h"

#include "ezBytes/BitReader.h"

#include <array>

namespace {

constexpr std::uint64_t kKindCore = std::uint64_t{1} << 63;

/// Bytes in a file from which a header is told: those of one in words of 14 bits.
constexpr std::uint32_t kStoredHeaderSize = 14;

constexpr std::uint32_t Big32(const unsigned char* aBytes) {
    return std::uint32_t{aBytes[0]} << 24 | std::uint32_t{aBytes[1]} << 16 | std::uint32_t{aBytes[2]} << 8 |
           aBytes[3];
}

/// Most bytes of a search begin nothing, which the first of them tells.
constexpr bool MayBegin(unsigned char aByte) {
    return aByte == 0x7F || aByte == 0xFE || aByte == 0x1F || aByte == 0xFF || aByte == 0x64 || aByte == 0x58;
}

bool ReadCore(const ezWordForm& aForm, const unsigned char* aBytes, CodedFrame* aFrame) {
    std::array<unsigned char, kStoredHeaderSize> stream = {};
    ezDTSHeader header;
    ezWordForm_Unpack(aForm, aBytes, kStoredHeaderSize, stream.data());
    if (!ezDTSHeader_Read(stream.data(), header)) {
        return false;
    }
    aFrame->mSize = aForm.GetStoredSize(header.mFrameSize);
    aFrame->mSamples = header.mSampleCount;
    aFrame->mSamplingRate = header.mSamplingRate;
    aFrame->mChannels = header.mChannels;
    aFrame->mKind = kKindCore | std::uint64_t{aForm.mSync} << 24 | header.mSame;
    return true;
}

/// Of a substream: its place among those of a frame, its size, and the time that it takes where it tells.
bool ReadExtension(const ezWordForm& aForm, const unsigned char* aBytes, ezDTSSubstream* aSubstream) {
    std::array<unsigned char, kStoredHeaderSize> stream = {};
    ezWordForm_Unpack(aForm, aBytes, kStoredHeaderSize, stream.data());
    return ezDTSSubstream_Read(stream.data(), stream.size(), aSubstream);
}

} // namespace

DTSFrames::DTSFrames()
    : FrameReader({kStoredHeaderSize, kDTSExtensionMinSize, kFrames_MaxDTSSize, 4, 2, true}) {}

bool DTSFrames::HasCore(const CodedFrame& aFrame) {
    return (aFrame.mKind & kKindCore) != 0;
}

bool DTSFrames::Read(const unsigned char* aBytes, CodedFrame* aFrame) const {
    if (!MayBegin(*aBytes)) {
        return false;
    }
    const std::uint32_t word = Big32(aBytes);
    const ezWordForm* const form = ezDTSForm_Of(word);
    if (form != nullptr) {
        return ReadCore(*form, aBytes, aFrame);
    }
    const ezWordForm* const extension = ezDTSExtensionForm_Of(word);
    ezDTSSubstream substream;
    if (extension == nullptr || !ReadExtension(*extension, aBytes, &substream) || substream.mIndex != 0) {
        return false;
    }
    aFrame->mSize = substream.mSize;
    aFrame->mSamples = substream.mTicks; // none: it does not tell, and no stream begins with it
    aFrame->mSamplingRate = substream.mClock;
    aFrame->mKind = word;
    return true;
}

bool DTSFrames::ReadNext(const unsigned char* aBytes, const CodedFrame& aBefore, CodedFrame* aFrame) const {
    const std::uint32_t word = Big32(aBytes);
    const ezWordForm* const extension = ezDTSExtensionForm_Of(word);
    if (extension == nullptr) {
        return Read(aBytes, aFrame) && aFrame->mKind == aBefore.mKind;
    }
    ezDTSSubstream substream;
    if (!ReadExtension(*extension, aBytes, &substream)) {
        return false;
    }
    const bool fPart = HasCore(aBefore) || substream.mIndex != 0;
    aFrame->mSize = substream.mSize;
    aFrame->mSamples = fPart ? 0 : substream.mTicks != 0 ? substream.mTicks : aBefore.mSamples;
    aFrame->mSamplingRate = aBefore.mSamplingRate;
    aFrame->mKind = aBefore.mKind;
    return fPart || word == aBefore.mKind;
}
