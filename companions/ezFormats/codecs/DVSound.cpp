#include "ezFormats/codecs/DVSound.h"

#include "ezFormats/codecs/DVBlocks.h"

#include <array>

namespace {

/// Blocks of a sequence (IEC 61834-2, 11.3): of nine of sound the first is the seventh of all, and fifteen of
/// pictures stand after each. A pack stands after the identification of a block.
constexpr std::size_t kFirstSound = 6;
constexpr std::size_t kSoundStep = 16;
constexpr std::size_t kSoundBlocks = 9;
constexpr unsigned kPackSource = 0x50;

/// AAUX SOURCE (IEC 61834-4, 8.1); null where there is none.
const unsigned char* FindSource(const unsigned char* aBytes, std::size_t aSize) {
    for (std::size_t i = 0; i < kSoundBlocks; ++i) {
        const std::size_t place = (kFirstSound + i * kSoundStep) * kDVBlockBytes + kDVBlockHead;
        if (place + kDVPackBytes <= aSize && aBytes[place] == kPackSource) {
            return aBytes + place;
        }
    }
    return nullptr;
}

} // namespace

DVSound DVSound_Read(const unsigned char* aBytes, std::size_t aSize) {
    constexpr unsigned kNoSound = 0xF;                                     // AUDIO MODE
    constexpr std::array<std::uint32_t, 3> kRates = {48000, 44100, 32000}; // SMP
    constexpr std::array<std::uint32_t, 3> kBits = {16, 16, 20};           // QU; those of 12 stand for 16
    DVSound sound;
    const bool fFrame = aSize >= kDVBlockBytes && aBytes[0] == kDVHeaderSection;
    const unsigned char* const source = fFrame ? FindSource(aBytes, aSize) : nullptr;
    if (source == nullptr || (source[2] & 0xFU) == kNoSound) {
        return sound;
    }
    const unsigned rate = source[4] >> 3 & 7U;
    const unsigned bits = source[4] & 7U;
    if (rate >= kRates.size() || bits >= kBits.size()) {
        return sound;
    }
    const bool fTwoInBlock = (source[2] >> 5 & 3U) != 0; // CHN: each of two blocks of sound holds a track
    sound.mTrackCount = fTwoInBlock ? 2 : 1;
    sound.mFacts.mCodec = "LPCM";
    sound.mFacts.mSamplingRate = kRates[rate];
    sound.mFacts.mChannels = 2;
    sound.mFacts.mBitsPerSample = kBits[bits];
    return sound;
}
