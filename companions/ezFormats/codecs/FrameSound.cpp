#include "ezFormats/codecs/FrameSound.h"

#include "ezFormats/codecs/AC3Frames.h"
#include "ezFormats/codecs/DTSFrames.h"
#include "ezFormats/codecs/DTSHeader.h"
#include "ezFormats/codecs/MLPHeader.h"
#include "ezFormats/codecs/MPEGAudioHeader.h"

#include <algorithm>
#include <vector>

namespace {

std::uint32_t Big32(const unsigned char* aBytes) {
    return std::uint32_t{aBytes[0]} << 24 | std::uint32_t{aBytes[1]} << 16 | std::uint32_t{aBytes[2]} << 8 |
           aBytes[3];
}

/// The first frame; its parts are taken as far as their headers are there.
/// @param aStarts  set to where the frame and each of its parts begin
bool ReadWhole(const FrameReader& aReader, const unsigned char* aBytes, std::size_t aSize, CodedFrame* aFrame,
               std::vector<std::size_t>* aStarts) {
    const std::size_t header = aReader.GetShape().mHeaderSize;
    if (aSize < header || !aReader.Read(aBytes, aFrame)) {
        return false;
    }
    aStarts->push_back(0);
    CodedFrame part = *aFrame;
    for (std::size_t place = part.mSize; part.mSize != 0 && place <= aSize && aSize - place >= header;
         place += part.mSize) {
        CodedFrame next;
        if (!aReader.ReadNext(aBytes + place, *aFrame, &next) || next.mSamples != 0) {
            break;
        }
        aReader.TakePart(next, aFrame);
        aStarts->push_back(place);
        part = next;
    }
    return true;
}

AudioFacts FactsOf(const CodedFrame& aFrame, const char* aCodec) {
    AudioFacts facts;
    facts.mCodec = aCodec;
    facts.mSamplingRate = aFrame.mSamplingRate;
    facts.mChannels = aFrame.mChannels;
    facts.mBitRate = aFrame.mBitRate;
    return facts;
}

} // namespace

AudioFacts AC3Sound_Read(const unsigned char* aBytes, std::size_t aSize) {
    CodedFrame frame;
    std::vector<std::size_t> starts;
    const bool fRead = ReadWhole(AC3Frames(), aBytes, aSize, &frame, &starts);
    return fRead ? FactsOf(frame, AC3Frames::IsEAC3(frame) ? "EAC3" : "AC3") : AudioFacts();
}

AudioFacts DTSSound_Read(const unsigned char* aBytes, std::size_t aSize) {
    CodedFrame frame;
    std::vector<std::size_t> starts;
    if (!ReadWhole(DTSFrames(), aBytes, aSize, &frame, &starts)) {
        return {};
    }
    AudioFacts facts = FactsOf(frame, "DTS");
    ezDTSExtension extension;
    const bool fExtended = std::any_of(starts.begin(), starts.end(), [&](std::size_t aStart) {
        return ezDTSExtension_ReadStored(aBytes + aStart, aSize - aStart, extension);
    });
    if (fExtended) {
        ezDTSExtension_Store(extension, facts);
    }
    return facts;
}

AudioFacts MLPSound_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::size_t kBeforeSync = 4;
    ezMLPHeader header;
    if (aSize < kBeforeSync + kMLPSyncSize || !ezMLPHeader_Read(aBytes + kBeforeSync, header)) {
        return {};
    }
    AudioFacts facts;
    facts.mCodec = header.mfTrueHD ? "TrueHD" : "MLP";
    facts.mSamplingRate = header.mSamplingRate;
    facts.mChannels = header.mChannels;
    facts.mBitsPerSample = header.mBitsPerSample;
    facts.mMaxBitRate = header.mMaxBitRate;
    return facts;
}

AudioFacts MPEGSound_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kLayerIII = 3;
    ezMPEGAudioHeader header = {};
    if (aSize < kMPEGAudioHeaderSize || !ezMPEGAudioHeader_Read(Big32(aBytes), header)) {
        return {};
    }
    AudioFacts facts;
    facts.mCodec = ezMPEGAudioHeader_CodecOf(header.mLayer);
    facts.mSamplingRate = header.mSamplingRate;
    facts.mChannels = header.mChannels;
    (header.mLayer == kLayerIII ? facts.mEstimatedBitRate : facts.mBitRate) = header.mBitRate;
    return facts;
}
