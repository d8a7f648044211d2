#include "ezFormats/codecs/AC3Header.h"
#include "ezFormats/codecs/ADTSHeader.h"
#include "ezFormats/codecs/EAC3Header.h"
#include "ezFormats/codecs/MPEGAudioHeader.h"

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <gtest/gtest.h>

namespace {

struct MPEGAudioCase {
    std::uint32_t mWord;
    std::uint32_t mLayer;
    std::uint32_t mBitRate;
    std::uint32_t mSamplingRate;
    std::uint32_t mChannels;
    std::uint32_t mFrameSize;
};

// clang-format off
const MPEGAudioCase kMPEGAudio[] = {
    // sync, version, layer, no check sum | rate, sampling, padding | mode | emphasis
    {0xFFFF1000, 1,  32000, 44100, 2,   32}, // MPEG-1 layer I, 8 whole slots and a part
    {0xFFFFE6C0, 1, 448000, 48000, 1,  452}, // padded by a slot of four bytes
    {0xFFFDE800, 2, 384000, 32000, 2, 1728},
    {0xFFFDE801, 2, 384000, 32000, 2, 1728}, // emphasis 50/15
    {0xFFFB9000, 3, 128000, 44100, 2,  417},
    {0xFFFB9200, 3, 128000, 44100, 2,  418}, // padded
    {0xFFFA9040, 3, 128000, 44100, 2,  417}, // check sum, joint stereo
    {0xFFF714C0, 1,  32000, 24000, 1,   64}, // MPEG-2
    {0xFFF5E800, 2, 160000, 16000, 2, 1440},
    {0xFFF314C0, 3,   8000, 24000, 1,   24}, // the smallest
    {0xFFE3E8C0, 3, 160000,  8000, 1, 1440}, // MPEG-2.5
    {0xFFFB0000, 3,      0, 44100, 2,    0}, // free format
};
const std::uint32_t kNoMPEGAudio[] = {
    0xFFDB9000, // sync of ten bits
    0x7FFB9000, // sync begins with a zero
    0xFFEB9000, // version reserved
    0xFFF99000, // layer reserved
    0xFFFBF000, // rate forbidden
    0xFFFB9C00, // sampling rate reserved
    0xFFFB9002, // emphasis reserved
    0xFFE59000, // MPEG-2.5 of layer II
};
const std::uint32_t kSameMPEGAudio[] = {
    0xFFFBA000, // another rate
    0xFFFB9200, // padded
    0xFFFB9100, // private bit
    0xFFFB9040, // joint stereo
    0xFFFB9080, // two channels
};
const std::uint32_t kOtherMPEGAudio[] = {
    0xFFF39000, // version
    0xFFFD9000, // layer
    0xFFFA9000, // check sum
    0xFFFB9400, // sampling rate
    0xFFFB90C0, // one channel
    0xFFFB9008, // copyright
    0xFFFB9004, // original
    0xFFFB9001, // emphasis
    0xFFFB0000, // free format
};
// clang-format on

} // namespace

TEST(MPEGAudioHeader, TellsWhatItsFieldsSay) {
    for (const MPEGAudioCase& expected : kMPEGAudio) {
        ezMPEGAudioHeader header = {};
        ASSERT_TRUE(ezMPEGAudioHeader_Read(expected.mWord, header)) << std::hex << expected.mWord;
        EXPECT_EQ(header.mLayer, expected.mLayer) << std::hex << expected.mWord;
        EXPECT_EQ(header.mBitRate, expected.mBitRate) << std::hex << expected.mWord;
        EXPECT_EQ(header.mSamplingRate, expected.mSamplingRate) << std::hex << expected.mWord;
        EXPECT_EQ(header.mChannels, expected.mChannels) << std::hex << expected.mWord;
        EXPECT_EQ(header.mFrameSize, expected.mFrameSize) << std::hex << expected.mWord;
    }
}

TEST(MPEGAudioHeader, TellsWhatAFrameOfItsLayerMayHold) {
    struct Bounds {
        std::uint32_t mWord;
        std::uint32_t mSampleCount;
        std::uint32_t mMinFrameSize;
        std::uint32_t mMaxFrameSize;
        std::uint32_t mMaxBitRate;
    };
    constexpr Bounds kBounds[] = {
        {0xFFFB9000, 1152, 104, 1045, 320000}, // MPEG-1 layer III at 44.1 kHz
        {0xFFFB0000, 1152, 104, 1045, 320000}, // of free format
        {0xFFFDA400, 1152, 96, 1153, 384000},  // layer II at 48 kHz
        {0xFFFFC000, 384, 32, 488, 448000},    // layer I at 44.1 kHz
        {0xFFF384C0, 576, 24, 481, 160000},    // MPEG-2 layer III at 24 kHz
        {0xFFF58400, 1152, 48, 961, 160000},   // layer II
        {0xFFE348C0, 576, 72, 1441, 160000},   // MPEG-2.5 at 8 kHz
    };
    for (const Bounds& expected : kBounds) {
        ezMPEGAudioHeader header = {};
        ASSERT_TRUE(ezMPEGAudioHeader_Read(expected.mWord, header)) << std::hex << expected.mWord;
        EXPECT_EQ(header.mSampleCount, expected.mSampleCount) << std::hex << expected.mWord;
        EXPECT_EQ(header.mMinFrameSize, expected.mMinFrameSize) << std::hex << expected.mWord;
        EXPECT_EQ(header.mMaxFrameSize, expected.mMaxFrameSize) << std::hex << expected.mWord;
        EXPECT_EQ(header.mMaxBitRate, expected.mMaxBitRate) << std::hex << expected.mWord;
    }
}

TEST(MPEGAudioHeader, OneBrokenFieldIsNoHeader) {
    for (const std::uint32_t word : kNoMPEGAudio) {
        ezMPEGAudioHeader header = {};
        EXPECT_FALSE(ezMPEGAudioHeader_Read(word, header)) << std::hex << word;
    }
}

TEST(MPEGAudioHeader, EveryHeaderKeepsToTheBoundsOfFrames) {
    for (std::uint32_t word = 0xFFE00000; word != 0; word += 0x40) { // all but copyright, original, emphasis
        ezMPEGAudioHeader header = {};
        if (!ezMPEGAudioHeader_Read(word, header)) {
            continue;
        }
        ASSERT_LE(header.mMaxFrameSize, kMPEGAudioMaxFrameSize) << std::hex << word;
        ASSERT_LE(header.mFrameSize, header.mMaxFrameSize) << std::hex << word;
        ASSERT_TRUE(header.mFrameSize == 0 || header.mFrameSize >= kMPEGAudioMinFrameSize)
            << std::hex << word;
    }
}

TEST(MPEGAudioHeader, OneStreamMayChangeRatePaddingAndStereo) {
    for (const std::uint32_t word : kSameMPEGAudio) {
        EXPECT_TRUE(ezMPEGAudioHeader_IsSameStream(0xFFFB9000, word)) << std::hex << word;
    }
    for (const std::uint32_t word : kOtherMPEGAudio) {
        EXPECT_FALSE(ezMPEGAudioHeader_IsSameStream(0xFFFB9000, word)) << std::hex << word;
    }
    EXPECT_FALSE(ezMPEGAudioHeader_IsSameStream(0xFFFD9000, 0xFFFDA000)) << "the rate of layer II stays";
}

namespace {

//                            sync, MPEG-4, no check sum | LC, 44.1 kHz, 2 channels | length 371 | fullness
const std::string kADTS = Hex({0xFF, 0xF1, 0x50, 0x80, 0x2E, 0x7F, 0xFC});

std::string With(std::string aBytes, std::size_t anIndex, int aByte) {
    aBytes[anIndex] = static_cast<char>(aByte);
    return aBytes;
}

bool IsADTS(const std::string& aBytes) {
    ezADTSHeader header = {};
    return ezADTSHeader_Read(Data(aBytes), header);
}

} // namespace

TEST(ADTSHeader, TellsWhatItsFieldsSay) {
    ezADTSHeader header = {};
    ASSERT_TRUE(ezADTSHeader_Read(Data(kADTS), header));
    EXPECT_EQ(header.mSamplingRate, 44100U);
    EXPECT_EQ(header.mChannels, 2U);
    EXPECT_EQ(header.mFrameSize, 371U);
    EXPECT_EQ(header.mFixed, 0xFFF1508U);
    ASSERT_TRUE(ezADTSHeader_Read(Data(With(kADTS, 2, 0x71)), header)); // 7350 Hz; channel bits 1..
    EXPECT_EQ(header.mSamplingRate, 7350U);
    EXPECT_EQ(header.mChannels, 6U);
    ASSERT_TRUE(ezADTSHeader_Read(Data(With(With(kADTS, 2, 0x51), 3, 0xC0)), header));
    EXPECT_EQ(header.mChannels, 8U) << "configuration 7";
    ASSERT_TRUE(ezADTSHeader_Read(Data(With(kADTS, 3, 0x03)), header));
    EXPECT_EQ(header.mChannels, 0U) << "told within the frame";
    EXPECT_EQ(header.mFrameSize, 3U * 2048 + 371);
}

TEST(ADTSHeader, OneBrokenFieldIsNoHeader) {
    EXPECT_TRUE(IsADTS(kADTS));
    EXPECT_FALSE(IsADTS(With(kADTS, 0, 0xFE))) << "sync";
    EXPECT_FALSE(IsADTS(With(kADTS, 1, 0xE1))) << "sync";
    EXPECT_FALSE(IsADTS(With(kADTS, 1, 0xF3))) << "layer";
    EXPECT_FALSE(IsADTS(With(kADTS, 2, 0x74))) << "sampling rate 13";
    EXPECT_FALSE(IsADTS(With(kADTS, 2, 0x7C))) << "sampling rate 15";
    EXPECT_TRUE(IsADTS(With(kADTS, 2, 0xD0))) << "profile 3 of MPEG-4";
    EXPECT_FALSE(IsADTS(With(With(kADTS, 2, 0xD0), 1, 0xF9))) << "profile 3 of MPEG-2";
}

TEST(ADTSHeader, FrameHoldsItsHeaderAndAByte) {
    const std::string seven = With(With(kADTS, 4, 0x00), 5, 0xFF); // 7 bytes
    EXPECT_FALSE(IsADTS(seven));
    const std::string eight = With(With(kADTS, 4, 0x01), 5, 0x1F);
    EXPECT_TRUE(IsADTS(eight));
    EXPECT_FALSE(IsADTS(With(eight, 1, 0xF0))) << "no room for the check sum";
    EXPECT_TRUE(IsADTS(With(With(eight, 5, 0x5F), 1, 0xF0))) << "10 bytes";
}

namespace {

//                           sync       check sum   48 kHz, 384 kbit/s | version 8, main | 3/2, mixes, LFE
const std::string kAC3 = Hex({0x0B, 0x77, 0x12, 0x34, 0x1C, 0x40, 0xE1});

bool IsAC3(const std::string& aBytes) {
    ezAC3Header header = {};
    return ezAC3Header_Read(Data(aBytes), header);
}

ezAC3Header AC3Of(int aRates, int aVersion, int aMode) {
    ezAC3Header header = {};
    EXPECT_TRUE(ezAC3Header_Read(Data(With(With(With(kAC3, 4, aRates), 5, aVersion), 6, aMode)), header));
    return header;
}

} // namespace

TEST(AC3Header, TellsWhatItsFieldsSay) {
    const ezAC3Header header = AC3Of(0x1C, 0x40, 0xE1);
    EXPECT_EQ(header.mSamplingRate, 48000U);
    EXPECT_EQ(header.mBitRate, 384000U);
    EXPECT_EQ(header.mChannels, 6U);
    EXPECT_EQ(header.mFrameSize, 1536U);
    EXPECT_EQ(AC3Of(0x00, 0x40, 0x40).mFrameSize, kAC3MinFrameSize);
    EXPECT_EQ(AC3Of(0xA5, 0x40, 0x40).mFrameSize, kAC3MaxFrameSize);
    EXPECT_EQ(AC3Of(0x40, 0x40, 0x40).mFrameSize, 138U); // 44.1 kHz
    EXPECT_EQ(AC3Of(0x41, 0x40, 0x40).mFrameSize, 140U); // and the longer one
    EXPECT_EQ(AC3Of(0x01, 0x40, 0x40).mFrameSize, 128U); // which no other rate has
}

TEST(AC3Header, TheLowFrequencyBitMovesWithTheMode) {
    EXPECT_EQ(AC3Of(0x1C, 0x40, 0x10).mChannels, 3U); // 1+1: right after the mode
    EXPECT_EQ(AC3Of(0x1C, 0x40, 0x30).mChannels, 2U); // 1/0
    EXPECT_EQ(AC3Of(0x1C, 0x40, 0x20).mChannels, 1U);
    EXPECT_EQ(AC3Of(0x1C, 0x40, 0x44).mChannels, 3U); // 2/0: after the surround mode
    EXPECT_EQ(AC3Of(0x1C, 0x40, 0x58).mChannels, 2U);
    EXPECT_EQ(AC3Of(0x1C, 0x40, 0x64).mChannels, 4U); // 3/0: after the centre
    EXPECT_EQ(AC3Of(0x1C, 0x40, 0x84).mChannels, 4U); // 2/1: after the surround
    EXPECT_EQ(AC3Of(0x1C, 0x40, 0xA1).mChannels, 5U); // 3/1: after both
    EXPECT_EQ(AC3Of(0x1C, 0x40, 0xC4).mChannels, 5U); // 2/2
}

TEST(AC3Header, LaterVersionsAreSlowerByHalves) {
    EXPECT_EQ(AC3Of(0x1C, 0x48, 0xE1).mSamplingRate, 24000U);
    EXPECT_EQ(AC3Of(0x1C, 0x48, 0xE1).mBitRate, 192000U);
    EXPECT_EQ(AC3Of(0x1C, 0x50, 0xE1).mSamplingRate, 12000U);
    EXPECT_EQ(AC3Of(0x1C, 0x50, 0xE1).mFrameSize, 1536U);
    EXPECT_EQ(AC3Of(0x1C, 0x30, 0xE1).mSamplingRate, 48000U);
}

TEST(AC3Header, OneBrokenFieldIsNoHeader) {
    EXPECT_TRUE(IsAC3(kAC3));
    EXPECT_FALSE(IsAC3(With(kAC3, 0, 0x0A))) << "sync";
    EXPECT_FALSE(IsAC3(With(kAC3, 1, 0x76))) << "sync";
    EXPECT_FALSE(IsAC3(With(kAC3, 4, 0xDC))) << "sampling rate reserved";
    EXPECT_FALSE(IsAC3(With(kAC3, 4, 0x26))) << "rate 38";
    EXPECT_FALSE(IsAC3(With(kAC3, 5, 0x58))) << "version 11";
}

namespace {

const std::string kEAC3 = Hex({0x0B, 0x77, 0x00, 0x3F, 0x3F, 0x80});

/// "rate samples channels size main" of a header with these bytes after the sync word; "none" where there is
/// none.
std::string EAC3Of(int aSize1, int aSize2, int aModes, int aVersion) {
    ezEAC3Header header = {};
    const std::string bytes =
        Hex({0x0B, 0x77, static_cast<unsigned char>(aSize1), static_cast<unsigned char>(aSize2),
             static_cast<unsigned char>(aModes), static_cast<unsigned char>(aVersion)});
    if (!ezEAC3Header_Read(Data(bytes), header)) {
        return "none";
    }
    return std::to_string(header.mSamplingRate) + " " + std::to_string(header.mSampleCount) + " " +
           std::to_string(header.mChannels) + " " + std::to_string(header.mFrameSize) +
           (header.mfMain ? " main" : " other");
}

} // namespace

TEST(EAC3Header, TellsWhatItsFieldsSay) {
    EXPECT_EQ(EAC3Of(0x00, 0x3F, 0x3F, 0x80), "48000 1536 6 128 main");
    EXPECT_EQ(EAC3Of(0x00, 0x00, 0x04, 0x80), "48000 256 2 2 main");
    EXPECT_EQ(EAC3Of(0x07, 0xFF, 0x54, 0x80), "44100 512 2 4096 main");
    EXPECT_EQ(EAC3Of(0x00, 0x3F, 0xA2, 0x80), "32000 768 1 128 main");
    EXPECT_EQ(EAC3Of(0x00, 0x3F, 0xC4, 0x80), "24000 1536 2 128 main");
    EXPECT_EQ(EAC3Of(0x00, 0x3F, 0xD4, 0x80), "22050 1536 2 128 main");
    EXPECT_EQ(EAC3Of(0x00, 0x3F, 0xE4, 0x80), "16000 1536 2 128 main");
    EXPECT_EQ(EAC3Of(0x40, 0x3F, 0x34, 0x80), "48000 1536 2 128 other"); // dependent
    EXPECT_EQ(EAC3Of(0x08, 0x3F, 0x34, 0x80), "48000 1536 2 128 other"); // a further programme
    EXPECT_EQ(EAC3Of(0x80, 0x3F, 0x34, 0x80), "48000 1536 2 128 main");  // AC-3 in a new form
}

TEST(EAC3Header, OneBrokenFieldIsNoHeader) {
    ezEAC3Header header = {};
    EXPECT_TRUE(ezEAC3Header_Read(Data(kEAC3), header));
    EXPECT_FALSE(ezEAC3Header_Read(Data(With(kEAC3, 0, 0x0A)), header)) << "sync";
    EXPECT_FALSE(ezEAC3Header_Read(Data(With(kEAC3, 1, 0x76)), header)) << "sync";
    EXPECT_EQ(EAC3Of(0xC0, 0x3F, 0x3F, 0x80), "none") << "kind of stream reserved";
    EXPECT_EQ(EAC3Of(0x00, 0x3F, 0xF4, 0x80), "none") << "half rate reserved";
    EXPECT_EQ(EAC3Of(0x00, 0x3F, 0x3F, 0x50), "none") << "version 10";
    EXPECT_NE(EAC3Of(0x00, 0x3F, 0x3F, 0x58), "none") << "version 11";
    EXPECT_EQ(EAC3Of(0x00, 0x3F, 0x3F, 0x88), "none") << "version 17";
}
