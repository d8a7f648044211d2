#include "ezFormats/mpegsystem/StreamPCM.h"

#include "ezBytes/BitReader.h"

#include <array>

namespace {

/// By the fields of a head; of anything that none has, or that is not all there, nothing is told.
StreamSound SoundOf(StreamCodec aCodec, const ezBitReader& aBits, std::uint32_t aRate,
                    std::uint32_t aChannels, std::uint32_t aBitsPerSample) {
    StreamSound sound;
    if (aBits.HasFailed() || aRate == 0 || aChannels == 0 || aBitsPerSample == 0) {
        return sound;
    }
    sound.mFacts.mCodec = StreamCodec_GetName(aCodec);
    sound.mFacts.mSamplingRate = aRate;
    sound.mFacts.mChannels = aChannels;
    sound.mFacts.mBitsPerSample = aBitsPerSample;
    sound.mFacts.mBitRate = aRate * aChannels * aBitsPerSample;
    return sound;
}

} // namespace

StreamSound ReadLPCMOfDisc(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::array<std::uint32_t, 16> kChannels = {0, 1, 0, 2, 3, 3, 4, 4, 5, 6, 7, 8, 0, 0, 0, 0};
    constexpr std::array<std::uint32_t, 16> kRates = {0, 48000, 0, 0, 96000, 192000};
    constexpr std::array<std::uint32_t, 4> kBits = {0, 16, 20, 24};
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(16); // bytes of the samples
    const std::uint32_t channels = kChannels[bits.Read(4)];
    const std::uint32_t rate = kRates[bits.Read(4)];
    const std::uint32_t sampleBits = kBits[bits.Read(2)];
    return SoundOf(StreamCodec::LPCMOfDisc, bits, rate, channels, sampleBits);
}

StreamSound ReadLPCMOfDVD(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::array<std::uint32_t, 4> kRates = {48000, 96000, 44100, 32000};
    constexpr std::array<std::uint32_t, 4> kBits = {16, 20, 24, 0};
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(8); // emphasis, mute, number of the first frame
    const std::uint32_t sampleBits = kBits[bits.Read(2)];
    const std::uint32_t rate = kRates[bits.Read(2)];
    bits.Skip(1);
    const std::uint32_t channels = bits.Read(3) + 1;
    return SoundOf(StreamCodec::LPCMOfDVD, bits, rate, channels, sampleBits);
}

StreamSound ReadS302M(const unsigned char* aBytes, std::size_t aSize) {
    constexpr std::uint32_t kRate = 48000;
    constexpr std::array<std::uint32_t, 4> kBits = {16, 20, 24, 0};
    ezBitReader bits(aBytes, 8 * aSize);
    bits.Skip(16); // audio_packet_size
    const std::uint32_t channels = 2 * (bits.Read(2) + 1);
    bits.Skip(8); // channel_identification
    const std::uint32_t sampleBits = kBits[bits.Read(2)];
    return SoundOf(StreamCodec::S302M, bits, kRate, channels, sampleBits);
}
