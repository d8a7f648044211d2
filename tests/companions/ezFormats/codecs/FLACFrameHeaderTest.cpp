#include "companions/ezFormats/flac/FLACBytes.h"

#include "ezFormats/codecs/FLACFrameHeader.h"

#include "ezBytes/ByteSource.h"

#include <gtest/gtest.h>

// Headers of FLAC frames (RFC 9639, 9.1).

namespace {

/// "first+size rate channels bits", or "none".
std::string Read(const std::string& aBytes, const FLACStreamInfo& aStream = {}) {
    BlockBytes bytes(reinterpret_cast<const unsigned char*>(aBytes.data()), aBytes.size());
    FLACFrameHeader header;
    if (!ReadFLACFrameHeader(ByteReader(bytes), aStream, &header)) {
        return "none";
    }
    return std::to_string(header.mFirstSample) + "+" + std::to_string(header.mBlockSize) + " " +
           std::to_string(header.mSamplingRate) + " " + std::to_string(header.mChannels) + " " +
           std::to_string(header.mBitsPerSample);
}

/// A header with some of its codes: block size, sampling rate, channels, bits.
std::string Coded(unsigned aSize, unsigned aRate, unsigned aChannels = 1, unsigned aBits = 4,
                  const std::string& aAfter = "") {
    return flac::FrameHeader(2, 0, 0xFFF80000U | aSize << 12 | aRate << 8 | aChannels << 4 | aBits << 1,
                             aAfter);
}

} // namespace

TEST(FLACFrameHeader, BlockSizeIsByItsCode) {
    const char* const expected[] = {"none",      "384+192",    "1152+576",    "2304+1152",
                                    "4608+2304", "9216+4608",  "196+98",      "50002+25001",
                                    "512+256",   "1024+512",   "2048+1024",   "4096+2048",
                                    "8192+4096", "16384+8192", "32768+16384", "65536+32768"};
    for (unsigned code = 0; code < 16; ++code) {
        const std::string after = code == 6 ? Big(97, 1) : code == 7 ? Big(25000, 2) : "";
        const std::string header = Read(Coded(code, 9, 1, 4, after));
        EXPECT_EQ(header.substr(0, header.find(' ')), expected[code]) << code;
    }
}

TEST(FLACFrameHeader, SamplingRateIsByItsCode) {
    const char* const expected[] = {"0",     "88200", "176400", "192000", "8000",  "16000", "22050", "24000",
                                    "32000", "44100", "48000",  "96000",  "12000", "12345", "123450"};
    for (unsigned code = 0; code < 15; ++code) {
        const std::string after = code == 12 ? Big(12, 1) : code > 12 ? Big(12345, 2) : "";
        EXPECT_EQ(Read(Coded(12, code, 1, 4, after)), "8192+4096 " + std::string(expected[code]) + " 2 16");
    }
    EXPECT_EQ(Read(Coded(12, 15)), "none");
}

TEST(FLACFrameHeader, ChannelsAndBitsAreByTheirCodes) {
    const char* const bits[] = {"0", "8", "12", "none", "16", "20", "24", "32"};
    for (unsigned code = 0; code < 8; ++code) {
        const std::string header = Read(Coded(12, 9, 1, code));
        EXPECT_EQ(header, code == 3 ? "none" : "8192+4096 44100 2 " + std::string(bits[code]));
    }
    for (unsigned code = 0; code < 16; ++code) {
        const std::string channels = std::to_string(code < 8 ? code + 1 : 2);
        EXPECT_EQ(Read(Coded(12, 9, code)), code > 10 ? "none" : "8192+4096 44100 " + channels + " 16");
    }
}

TEST(FLACFrameHeader, NumberIsOfUpTo36Bits) {
    constexpr std::uint32_t kVariable = 0xFFF9C918; // numbers of samples
    for (unsigned more = 0; more < 7; ++more) {
        const unsigned bits = more == 0 ? 7 : 6 - more + 6 * more;
        const std::uint64_t number = (std::uint64_t{1} << bits) - 1;
        EXPECT_EQ(Read(flac::FrameHeader(number, more, kVariable)),
                  std::to_string(number) + "+4096 44100 2 16")
            << more;
    }
    EXPECT_EQ(Read(flac::FrameHeader((std::uint64_t{1} << 31) - 1, 5)), "8796093018112+4096 44100 2 16");
    const auto with = [](const std::string& aNumber) {
        const std::string header = Big(kVariable, 4) + aNumber;
        return Read(header + flac::Crc8(header));
    };
    EXPECT_EQ(with("\xC2\x81"), "129+4096 44100 2 16");
    EXPECT_EQ(with("\xC2\x01"), "none");
    EXPECT_EQ(with("\xC2\xC1"), "none");
    EXPECT_EQ(with("\x80"), "none"); // no first byte of any
    EXPECT_EQ(with("\xFF\x80\x80\x80\x80\x80\x80\x80"), "none");
}

TEST(FLACFrameHeader, FrameNumberCountsBlocksOfTheStream) {
    FLACStreamInfo stream;
    stream.mMaxBlockSize = 4096;
    EXPECT_EQ(Read(flac::FrameHeader(10, 0, 0xFFF87918, Big(99, 2)), stream), "40960+100 44100 2 16");
}

TEST(FLACFrameHeader, WhatIsNoneIsTold) {
    const std::string header = flac::FrameHeader(10);
    EXPECT_EQ(Read(header), "40960+4096 44100 2 16");
    for (std::size_t at = 0; at < header.size(); ++at) {
        EXPECT_EQ(Read(header.substr(0, at)), "none") << at;
        std::string flipped = header;
        flipped[at] = static_cast<char>(flipped[at] ^ 1);
        EXPECT_EQ(Read(flipped), "none") << at;
    }
    for (const std::uint32_t codes : {0xFFFAC918U, 0xFFFCC918U, 0x7FF8C918U, 0xFFF8C919U}) {
        EXPECT_EQ(Read(flac::FrameHeader(10, 2, codes)), "none") << codes;
    }
}

TEST(FLACFrameHeader, OneOfAnotherStreamIsNone) {
    FLACStreamInfo stream;
    stream.mSamplingRate = 44100;
    stream.mChannels = 2;
    stream.mBitsPerSample = 16;
    EXPECT_NE(Read(Coded(12, 9), stream), "none");
    EXPECT_NE(Read(Coded(12, 0, 1, 0), stream), "none"); // left to the stream
    EXPECT_EQ(Read(Coded(12, 10), stream), "none");
    EXPECT_EQ(Read(Coded(12, 9, 0), stream), "none");
    EXPECT_EQ(Read(Coded(12, 9, 1, 6), stream), "none");
}
