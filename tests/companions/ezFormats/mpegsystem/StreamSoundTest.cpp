#include "ezFormats/mpegsystem/StreamSound.h"
#include "ezFormats/mpegsystem/LOASFrames.h"

#include "support/NumberBytes.h"
#include "support/Samples.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

namespace {

/// "AC3 48000/2 192000 2880": codec, rate and channels, bits of a sample where there are some, rate in bits
/// ("~" before an estimate), ticks of a frame.
std::string Sound(StreamCodec aCodec, const std::string& aBytes) {
    const StreamSound sound =
        ReadStreamSound(aCodec, reinterpret_cast<const unsigned char*>(aBytes.data()), aBytes.size());
    const AudioFacts& facts = sound.mFacts;
    std::string text = std::string(facts.mCodec.c_str()) + " " + std::to_string(facts.mSamplingRate) + "/" +
                       std::to_string(facts.mChannels);
    text += facts.mBitsPerSample != 0 ? "/" + std::to_string(facts.mBitsPerSample) : "";
    text += facts.mEstimatedBitRate != 0 ? " ~" + std::to_string(facts.mEstimatedBitRate)
                                         : " " + std::to_string(facts.mBitRate);
    return text + " " + std::to_string(sound.mFrameTicks);
}

/// Bits that are written one after the other, with zeros up to a byte's end.
class Bits {
public:
    Bits& Put(std::uint64_t aValue, unsigned aCount) {
        for (unsigned i = aCount; i-- > 0; ++mCount) {
            if (mCount % 8 == 0) {
                mBytes.push_back('\0');
            }
            const auto bit = static_cast<unsigned>(aValue >> i & 1U);
            mBytes.back() =
                static_cast<char>(static_cast<unsigned char>(mBytes.back()) | bit << (7 - mCount % 8));
        }
        return *this;
    }
    const std::string& Bytes() const { return mBytes; }

private:
    std::string mBytes;
    unsigned mCount = 0;
};

std::string LOASFrame(const std::string& anElement) {
    return Bits().Put(0x2B7, 11).Put(anElement.size(), 13).Bytes() + anElement;
}
/// An AudioMuxElement with a configuration: LC of 24 kHz with SBR that is announced, two channels.
std::string WithConfig(bool afVersion1) {
    Bits bits;
    bits.Put(0, 1).Put(afVersion1 ? 1 : 0, 1); // useSameStreamMux, audioMuxVersion
    if (afVersion1) {
        bits.Put(0, 1).Put(0, 2).Put(0xFF, 8); // audioMuxVersionA, taraBufferFullness
    }
    bits.Put(1, 1).Put(0, 6).Put(0, 4).Put(0, 3);
    if (afVersion1) {
        bits.Put(0, 2).Put(25, 8); // ascLen
    }
    bits.Put(5, 5).Put(6, 4).Put(2, 4).Put(3, 4).Put(2, 5).Put(0, 3); // HE-AAC, 24 kHz, 2, 48 kHz, LC
    return bits.Put(0, 3).Put(0xFF, 8).Bytes() + std::string(190, '\x5A');
}
const std::string kSame = Bits().Put(1, 1).Bytes() + std::string(209, '\x5A');

std::string Part(const std::string& aSample, std::size_t aSize, std::size_t aFrom = 0) {
    return ReadSample(aSample).substr(aFrom, aSize);
}

} // namespace

TEST(StreamSound, IsThatOfTheFirstWholeFrame) {
    const std::string ac3 = Part("formats/44-khz.ac3", 4000);
    EXPECT_EQ(Sound(StreamCodec::AC3, ac3), "AC3 44100/1 32000 3134");
    EXPECT_EQ(Sound(StreamCodec::AC3, ac3.substr(5)), "AC3 44100/1 32000 3134");
    EXPECT_EQ(Sound(StreamCodec::AC3, Part("formats/slow.eac3", 3000)), "EAC3 32000/1 16000 4320");
    EXPECT_EQ(Sound(StreamCodec::DTS, Part("formats/surround.dts", 5000)), "DTS 48000/6 768000 960");
    EXPECT_EQ(Sound(StreamCodec::TrueHD, Part("formats/truehd.thd", 9000)), "TrueHD 48000/2 ~292230 75");
    EXPECT_EQ(Sound(StreamCodec::MPEGAudio, Part("formats/mpeg-1.mp2", 3000)), "MP2 32000/1 32000 3240");
    EXPECT_EQ(Sound(StreamCodec::ADTS, Part("formats/5.1.aac", 4000)), "AAC 32000/6 ~33706 2880");
}

TEST(StreamSound, PayloadIsBelievedRatherThanTheTable) {
    const std::string ac3 = Part("formats/44-khz.ac3", 4000);
    EXPECT_EQ(Sound(StreamCodec::Unknown, ac3), "AC3 44100/1 32000 3134");
    EXPECT_EQ(Sound(StreamCodec::MPEGAudio, ac3), "AC3 44100/1 32000 3134");
    EXPECT_EQ(Sound(StreamCodec::AC3, Part("formats/mpeg-1.mp2", 3000)), "MP2 32000/1 32000 3240");
    EXPECT_EQ(Sound(StreamCodec::TrueHD, std::string(4000, 'x')), "TrueHD 0/0 0 0"); // no major sync in reach
    EXPECT_EQ(Sound(StreamCodec::AC3, std::string(4000, 'x')), " 0/0 0 0");
    EXPECT_EQ(Sound(StreamCodec::Unknown, ""), " 0/0 0 0");
}

TEST(StreamSound, LOASHoldsItsConfigurationAtAnyBit) {
    for (const bool fVersion1 : {false, true}) {
        const std::string frames = LOASFrame(kSame) + LOASFrame(WithConfig(fVersion1)) + LOASFrame(kSame);
        EXPECT_EQ(Sound(StreamCodec::LATM, frames).substr(0, 18), "HE-AAC 48000/2 ~39");
        EXPECT_EQ(Sound(StreamCodec::ADTS, frames).substr(0, 18), "HE-AAC 48000/2 ~39");
    }
    EXPECT_EQ(Sound(StreamCodec::LATM, LOASFrame(kSame) + LOASFrame(kSame)), " 0/0 0 0");
}

TEST(StreamSound, HeadsOfPlainSamplesAreRead) {
    const std::string rest(100, '\0');
    EXPECT_EQ(Sound(StreamCodec::LPCMOfDisc, "\x03\xC0\x31\x40"s + rest), "LPCM 48000/2/16 1536000 0");
    EXPECT_EQ(Sound(StreamCodec::LPCMOfDisc, "\x03\xC0\x94\xC0"s + rest), "LPCM 96000/6/24 13824000 0");
    EXPECT_EQ(Sound(StreamCodec::LPCMOfDisc, "\x03\xC0\xB5\x80"s + rest), "LPCM 192000/8/20 30720000 0");
    EXPECT_EQ(Sound(StreamCodec::LPCMOfDVD, "\x00\x01\x80"s + rest), "LPCM 48000/2/16 1536000 0");
    EXPECT_EQ(Sound(StreamCodec::LPCMOfDVD, "\x00\x95\x80"s + rest), "LPCM 96000/6/24 13824000 0");
    EXPECT_EQ(Sound(StreamCodec::S302M, "\x03\xC0\x00\x10"s + rest), "S302M 48000/2/20 1920000 0");
    EXPECT_EQ(Sound(StreamCodec::S302M, "\x03\xC0\xC0\x20"s + rest), "S302M 48000/8/24 9216000 0");
    for (const char* const reserved : {"\x03\xC0\x21\x40", "\x03\xC0\x32\x40", "\x03\xC0\x31\x00"}) {
        EXPECT_EQ(Sound(StreamCodec::LPCMOfDisc, std::string(reserved, 4) + rest), "LPCM 0/0 0 0");
    }
}

TEST(StreamSound, AC4TellsItsRate) {
    const std::string rest(100, '\0');
    EXPECT_EQ(Sound(StreamCodec::AC4, "\xAC\x40\x00\x80\x80\x04"s + rest), "AC4 48000/0 0 0");
    EXPECT_EQ(Sound(StreamCodec::AC4, "\xAC\x41\x00\x80\x80\x00"s + rest), "AC4 44100/0 0 0");
    EXPECT_EQ(Sound(StreamCodec::AC4, "\xAC\x40\xFF\xFF\x00\x01\x00\x80\x04"s + rest), "AC4 48000/0 0 0");
}

TEST(StreamSound, CutAndDamagedSoundIsReadWithinItsBytes) {
    for (const char* const name : {"formats/44-khz.ac3", "formats/slow.eac3", "formats/surround.dts",
                                   "formats/truehd.thd", "formats/mpeg-1.mp2", "formats/5.1.aac"}) {
        const std::string whole = Part(name, 1200);
        for (std::size_t size = 0; size < whole.size(); size += 7) {
            Sound(StreamCodec::Unknown, whole.substr(0, size));
            std::string damaged = whole;
            damaged[size] = static_cast<char>(~damaged[size]);
            EXPECT_FALSE(Sound(StreamCodec::Unknown, damaged).empty());
        }
    }
}
