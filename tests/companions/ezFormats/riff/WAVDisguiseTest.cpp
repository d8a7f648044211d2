#include "ezFormats/riff/WAVParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/codecs/DTSBytes.h"

#include "support/Samples.h"

#include <gtest/gtest.h>

using namespace chunks;
using dts::Swapped;
using namespace std::string_literals;

// Coded sound in place of samples.

namespace {

const Fmt kCD = {1, 2, 44100, 176400, 4, 16, ""};

std::string Wav(const std::string& aSound, const Fmt& aFormat = kCD) {
    return Riff(Chunk("fmt ", aFormat.Bytes()) + Chunk("data", aSound));
}

/// The header of a frame of DTS in words of so many bits: of five channels and LFE, 44.1 kHz, unless it is
/// said otherwise.
std::string DTSHeader(std::size_t aWordBits, unsigned aBlocks = 16, unsigned aLayout = 9, unsigned aRate = 8,
                      unsigned aSize = 2013) {
    dts::Core core;
    core.mBlocks = aBlocks;
    core.mLayout = aLayout;
    core.mRate = aRate;
    core.mSize = aSize;
    return aWordBits == 14 ? dts::Words14(core.Header()) : core.Header();
}

/// Some frames, each in the room of its samples.
std::string Frames(const std::string& aHeader, std::size_t aCount = 3, std::size_t aRoom = 2048) {
    std::string frames;
    for (std::size_t i = 0; i < aCount; ++i) {
        frames += aHeader + std::string(aRoom - aHeader.size(), '\x55');
    }
    return frames;
}

/// A burst of a type, which repeats after 1536 samples.
std::string Burst(unsigned aType, const std::string& aPayload = Big(0x0B7712345014409F, 8),
                  unsigned aBits = 0x0D00) {
    const std::string burst = Big(0xF8724E1F, 4) + Big(aType, 2) + Big(aBits, 2) + aPayload;
    return burst + std::string(6144 - burst.size(), '\0');
}

std::string Facts(const std::string& aBytes) {
    return Values<WAVParser>(aBytes, {"mt", "ca", "ac", "bs", "dl"});
}

const std::string kPlain = "\"audio/wav\"|\"LPCM\"|2|16|\"DLNA.ORG_OP=01\"";
const std::string kDTS = "\"audio/vnd.dts\"|\"DTS\"|6||\"DLNA.ORG_OP=01\"";

} // namespace

TEST(WAVDisguise, FramesOfDTSAreNotSamplesInAnyOfTheirForms) {
    EXPECT_EQ(DTSHeader(16).substr(0, 4), "\x7F\xFE\x80\x01");
    EXPECT_EQ(DTSHeader(14).substr(0, 4), "\x1F\xFF\xE8\x00"s);
    for (const std::size_t wordBits : {16U, 14U}) {
        EXPECT_EQ(Facts(Wav(Frames(DTSHeader(wordBits)))), kDTS) << wordBits;
        EXPECT_EQ(Facts(Wav(Swapped(Frames(DTSHeader(wordBits))))), kDTS) << wordBits;
    }
    EXPECT_EQ(Facts(Wav(Frames(DTSHeader(16, 32), 3, 4096))), kDTS) << "of 1024 samples";
    EXPECT_EQ(Facts(Wav(std::string(4094, '\x33') + Frames(DTSHeader(16, 32), 3, 4096))), kDTS)
        << "cut within a frame";
    EXPECT_EQ(Values<WAVParser>(Wav(Frames(DTSHeader(16))), {"dm", "ar", "sf"}), "34|1411200|44100")
        << "as long as the samples";
    EXPECT_EQ(Facts(ReadSample("formats/dts-as-samples.wav")),
              "\"audio/vnd.dts\"|\"DTS\"|2||\"DLNA.ORG_OP=01\"");
}

TEST(WAVDisguise, SamplesThatLookLikeAFrameStaySamples) {
    EXPECT_EQ(Facts(Wav(Frames(DTSHeader(16), 1) + Sound(9000))), kPlain) << "no second frame";
    EXPECT_EQ(Facts(Wav(Frames(DTSHeader(16), 3, 2052))), kPlain) << "elsewhere";
    EXPECT_EQ(Facts(Wav(Frames(DTSHeader(16, 7), 3, 896))), kPlain) << "too few blocks";
    EXPECT_EQ(Facts(Wav(Frames(DTSHeader(16, 16, 16)))), kPlain) << "a layout of nobody";
    EXPECT_EQ(Facts(Wav(Frames(DTSHeader(16, 16, 9, 4)))), kPlain) << "a rate of nobody";
    EXPECT_EQ(Facts(Wav(Frames(DTSHeader(16, 16, 9, 8, 95)))), kPlain) << "too small";
    EXPECT_EQ(Facts(Wav("\x11" + Frames(DTSHeader(16)) + "\x11")), kPlain) << "across samples";
    for (std::uint32_t tries = kWAV_MaxDisguiseTries - 1; tries <= kWAV_MaxDisguiseTries; ++tries) {
        std::string samples;
        for (std::uint32_t i = 0; i < tries; ++i) {
            samples += "\x7F\xFE\x80\x01\x11\x11"s;
        }
        EXPECT_EQ(Facts(Wav(samples + Frames(DTSHeader(16)))), tries < kWAV_MaxDisguiseTries ? kDTS : kPlain);
    }
}

TEST(WAVDisguise, BurstsAreToldByTheirType) {
    const auto codec = [](const std::string& aSound) {
        return Values<WAVParser>(Wav(aSound), {"mt", "ca", "ac"});
    };
    EXPECT_EQ(codec(Burst(1)), "\"audio/wav\"|\"AC3\"|2");
    EXPECT_EQ(codec(Swapped(Burst(1))), "\"audio/wav\"|\"AC3\"|2");
    for (const unsigned type : {11U, 12U, 13U, 17U}) {
        EXPECT_EQ(codec(Burst(type)), "\"audio/vnd.dts\"|\"DTS\"|2") << type;
    }
    EXPECT_EQ(codec(Burst(7)), "\"audio/wav\"|\"AAC\"|2");
    EXPECT_EQ(codec(Burst(21)), "\"audio/wav\"|\"EAC3\"|2");
    EXPECT_EQ(codec(Burst(22)), "\"audio/wav\"|\"TrueHD\"|2");
    EXPECT_EQ(codec(Burst(0x81)), "\"audio/wav\"|\"AC3\"|2") << "the bit of errors";
    const std::string plain = "\"audio/wav\"|\"LPCM\"|2";
    EXPECT_EQ(codec(Burst(0)), plain);
    EXPECT_EQ(codec(Burst(2)), plain);
    EXPECT_EQ(codec(Burst(1, "no header")), plain);
    EXPECT_EQ(codec(Burst(21, "", 0)), plain) << "of no bits";
    EXPECT_EQ(Facts(ReadSample("formats/ac-3-as-samples.wav")),
              "\"audio/wav\"|\"AC3\"|2||\"DLNA.ORG_OP=01\"");
}

TEST(WAVDisguise, SilenceBeforeItIsLookedThrough) {
    const std::string frames = Frames(DTSHeader(16));
    for (const std::size_t silence : {4U, 6000U, 8140U, 8148U, 60000U}) {
        EXPECT_EQ(Facts(Wav(std::string(silence, '\0') + frames)), kDTS) << silence;
    }
    EXPECT_EQ(Facts(Wav(std::string(kWAV_DisguiseSilenceSize, '\0') + frames)), kPlain);
    EXPECT_EQ(Facts(Wav(std::string(100000, '\0'))), kPlain);
    // Other chunks before the sound do not hide it.
    EXPECT_EQ(Facts(Riff(Chunk("fmt ", kCD.Bytes()) + Chunk("junk", Sound(8100)) + Chunk("data", frames))),
              kDTS);
}

TEST(WAVDisguise, OnlyTwoChannelsOf16PlainBitsAreLookedAt) {
    const std::string frames = Frames(DTSHeader(16));
    EXPECT_EQ(Facts(Wav(frames, {1, 2, 48000, 192000, 4, 16, ""})), kDTS) << "of any rate";
    EXPECT_EQ(Facts(Wav(frames, {0xFFFE, 2, 44100, 176400, 4, 16, Extension(16, 1)})), kDTS);
    for (const Fmt& format : {Fmt{1, 1, 44100, 88200, 2, 16, ""}, Fmt{1, 2, 44100, 264600, 6, 24, ""},
                              Fmt{1, 4, 44100, 352800, 8, 16, ""}}) {
        EXPECT_EQ(Values<WAVParser>(Wav(frames, format), {"ca"}), "\"LPCM\"");
    }
    EXPECT_EQ(Values<WAVParser>(Wav(frames, {7, 2, 8000, 16000, 2, 8, ""}), {"ca"}), "\"ulaw\"");
    // Without a size it is looked at all the same.
    Delivery unknown;
    unknown.mfSizeKnown = false;
    EXPECT_EQ(Values<WAVParser>(Riff(Chunk("fmt ", kCD.Bytes()) + Lying("data", UINT32_MAX, frames)),
                                {"ca", "dm"}, unknown),
              "\"DTS\"|");
}
