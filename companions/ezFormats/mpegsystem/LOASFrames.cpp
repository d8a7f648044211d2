#include "ezFormats/mpegsystem/LOASFrames.h"

#include "ezBytes/BitReader.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::uint32_t kSyncWord = 0x2B7;
constexpr std::uint32_t kWholeFrame = kLOASHeadSize + 0x1FFF; ///< the length has 13 bits
constexpr std::size_t kConfigRoom = 64; ///< of which any configuration of sound takes a part

/// LatmGetValue (1.7.3.1, table 1.45)
std::uint32_t ReadValue(ezBitReader& aBits) {
    const unsigned bytes = aBits.Read(2) + 1;
    return aBits.Read(8 * bytes);
}

/// The configuration of the first layer of the first program (StreamMuxConfig, table 1.42). It stands at any
/// bit, so it is moved to a byte's start.
bool ReadMuxConfig(ezBitReader aBits, AudioSpecificConfig* aConfig) {
    const bool fVersion1 = aBits.ReadFlag();        // audioMuxVersion
    aBits.Require(!fVersion1 || !aBits.ReadFlag()); // audioMuxVersionA: others are not known
    if (fVersion1) {
        ReadValue(aBits); // taraBufferFullness
    }
    aBits.Skip(1 + 6 + 4 + 3); // allStreamsSameTimeFraming, numSubFrames, numProgram, numLayer
    const std::size_t stated = fVersion1 ? ReadValue(aBits) : SIZE_MAX; // ascLen
    std::size_t count = std::min({stated, aBits.GetBitsLeft(), 8 * kConfigRoom});
    std::array<unsigned char, kConfigRoom> config = {};
    for (std::size_t i = 0; i < count; ++i) {
        config[i / 8] = static_cast<unsigned char>(config[i / 8] | aBits.Read(1) << (7 - i % 8));
    }
    return !aBits.HasFailed() && AudioSpecificConfig_Read(config.data(), (count + 7) / 8, *aConfig);
}

/// The head of a frame and of the next one, or that the block ends with it.
bool IsFrameAt(const unsigned char* aBytes, std::size_t aSize, std::uint32_t* aFrameSize) {
    *aFrameSize = LOASFrameSize(aBytes);
    const std::size_t left = aSize - std::min<std::size_t>(*aFrameSize, aSize);
    return *aFrameSize != 0 && *aFrameSize <= aSize &&
           (left < kLOASHeadSize || LOASFrameSize(aBytes + *aFrameSize) != 0);
}

} // namespace

std::uint32_t LOASFrameSize(const unsigned char* aBytes) {
    const std::uint32_t word =
        std::uint32_t{aBytes[0]} << 16 | std::uint32_t{aBytes[1]} << 8 | std::uint32_t{aBytes[2]};
    return word >> 13 == kSyncWord && (word & 0x1FFFU) != 0 ? kLOASHeadSize + (word & 0x1FFFU) : 0;
}

bool ReadLOASConfig(const unsigned char* aBytes, std::size_t aSize, AudioSpecificConfig* aConfig) {
    for (std::size_t place = 0; place + kLOASHeadSize < aSize; ++place) {
        std::uint32_t size = 0;
        if (!IsFrameAt(aBytes + place, aSize - place, &size)) {
            continue;
        }
        ezBitReader bits(aBytes + place + kLOASHeadSize, 8 * std::size_t{size - kLOASHeadSize});
        if (!bits.ReadFlag() && ReadMuxConfig(bits, aConfig)) { // useSameStreamMux
            return true;
        }
    }
    return false;
}

LOASFrames::LOASFrames(const AudioSpecificConfig& aConfig)
    : FrameReader({kLOASHeadSize, kLOASHeadSize + 1, kWholeFrame, 2, 2, false}), mConfig(aConfig) {}

bool LOASFrames::Read(const unsigned char* aBytes, CodedFrame* aFrame) const {
    constexpr std::uint32_t kSamplesOfFrame = 1024;
    aFrame->mSize = LOASFrameSize(aBytes);
    aFrame->mSamples = mConfig.mfSBR ? 2 * kSamplesOfFrame : kSamplesOfFrame;
    aFrame->mSamplingRate = mConfig.mSamplingRate;
    aFrame->mChannels = mConfig.mChannels;
    return aFrame->mSize != 0;
}
