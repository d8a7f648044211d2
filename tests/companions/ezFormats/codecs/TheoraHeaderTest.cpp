#include "ezFormats/codecs/TheoraHeader.h"

#include "companions/ezFormats/codecs/TheoraBytes.h"
#include "companions/ezFormats/codecs/VideoFactsText.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"

#include <gtest/gtest.h>

namespace {

std::optional<TheoraHeader> Read(const std::string& aBytes) {
    return TheoraHeader_Read(Data(aBytes), aBytes.size());
}

std::string Told(const std::string& aBytes) {
    const std::optional<TheoraHeader> header = Read(aBytes);
    return Text(header ? std::make_optional(header->mVideo) : std::nullopt);
}

template <typename Change>
std::string ToldWith(Change aChange) {
    TheoraHead head;
    aChange(head);
    return Told(head.Bytes());
}

std::string Config(const std::string& aBytes) {
    return Text(TheoraVideo_ReadConfig(Data(aBytes), aBytes.size()));
}

const std::string kUsual = "Theora 318x238 fr=25000 progressive cd=8 4:2:0";

} // namespace

TEST(TheoraHeader, SizeIsThatOfThePictureAndNotOfTheCodedFrame) {
    EXPECT_EQ(ToldWith([](TheoraHead&) {}), kUsual);
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mLeft = h.mBottom = 0; }), kUsual);
    const std::string none = "Theora fr=25000 progressive cd=8 4:2:0";
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mLeft = 3; }), none) << "beyond the frame";
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mBottom = 3; }), none);
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mWidth = 0xFFFFFF; }), none);
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mWidth = 0; }), none);
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mHeight = 0; }), none);
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mBlocksDown = 0; }), none);
    EXPECT_EQ(ToldWith([](TheoraHead& h) {
                  h.mBlocksAcross = h.mBlocksDown = 0xFFFF;
                  h.mWidth = h.mHeight = 0xFFFF0 - 2;
              }),
              "Theora 1048558x1048558 fr=25000 progressive cd=8 4:2:0");
}

TEST(TheoraHeader, TellsRateShapeAndColours) {
    const auto rate = [](std::uint32_t aRate, std::uint32_t aDivisor) {
        return ToldWith([=](TheoraHead& h) {
            h.mRate = aRate;
            h.mRateDivisor = aDivisor;
        });
    };
    EXPECT_EQ(rate(24000, 1001), "Theora 318x238 fr=23976 progressive cd=8 4:2:0");
    EXPECT_EQ(rate(1, 1), "Theora 318x238 fr=1000 progressive cd=8 4:2:0");
    for (const auto& [top, bottom] : {std::pair(0U, 1U), std::pair(1U, 0U), std::pair(301U, 1U)}) {
        EXPECT_EQ(rate(top, bottom), "Theora 318x238 progressive cd=8 4:2:0") << top;
    }
    EXPECT_EQ(ToldWith([](TheoraHead& h) {
                  h.mPixelWidth = 24;
                  h.mPixelHeight = 22;
              }),
              "Theora 318x238 12:11 fr=25000 progressive cd=8 4:2:0");
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mPixelWidth = 12; }), kUsual) << "by nothing";
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mFormat = 1; }), "Theora 318x238 fr=25000 progressive cd=8");
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mFormat = 2; }),
              "Theora 318x238 fr=25000 progressive cd=8 4:2:2");
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mFormat = 3; }),
              "Theora 318x238 fr=25000 progressive cd=8 4:4:4");
}

TEST(TheoraHeader, NominalRateIsAnEstimate) {
    const auto rate = [](unsigned aRate) { return ToldWith([=](TheoraHead& h) { h.mNominalRate = aRate; }); };
    EXPECT_EQ(rate(0), kUsual);
    EXPECT_EQ(rate(800000), kUsual + " ev=800000");
    EXPECT_EQ(rate(0xFFFFFE), kUsual + " ev=16777214");
    EXPECT_EQ(rate(0xFFFFFF), kUsual) << "or more";
}

TEST(TheoraHeader, WhatIsNoneTellsNothing) {
    const std::string head = TheoraHead().Bytes();
    for (std::size_t size = 0; size < head.size(); ++size) {
        EXPECT_EQ(Told(head.substr(0, size)), "nothing") << size;
    }
    EXPECT_EQ(Told(head + "more"), kUsual);
    for (std::size_t at = 0; at < 7; ++at) {
        std::string bytes = head;
        bytes[at] ^= 1;
        EXPECT_EQ(Told(bytes), "nothing") << at;
    }
    for (const unsigned version : {0x020201U, 0x040201U, 0x030300U}) {
        EXPECT_EQ(ToldWith([=](TheoraHead& h) { h.mVersion = version; }), "nothing") << version;
    }
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mVersion = 0x0302FF; }), kUsual);
    EXPECT_EQ(ToldWith([](TheoraHead& h) { h.mVersion = 0x030100; }), kUsual);
}

TEST(TheoraHeader, PicturesAreCountedByTheKeyPictureAndThoseSince) {
    struct Row {
        unsigned mVersion;
        unsigned mKeyShift;
        std::uint64_t mGranule;
        std::uint64_t mPictures;
    };
    const Row rows[] = {
        {0x030201, 6, 0, 0},
        {0x030201, 6, 1 << 6, 1},
        {0x030201, 6, 129 << 6 | 37, 166},
        {0x030200, 6, 0, 1}, // counted from 0
        {0x030200, 6, 129 << 6 | 37, 167},
        {0x030201, 0, 166, 166},
        {0x030201, 31, std::uint64_t{5} << 31 | 0x7FFFFFFF, 0x7FFFFFFF + std::uint64_t{5}},
        {0x030200, 0, INT64_MAX, std::uint64_t{1} << 63},
    };
    for (const Row& row : rows) {
        TheoraHead head;
        head.mVersion = row.mVersion;
        head.mKeyShift = row.mKeyShift;
        const std::optional<TheoraHeader> header = Read(head.Bytes());
        ASSERT_TRUE(header.has_value());
        EXPECT_EQ(header->mClock.CountPictures(row.mGranule), row.mPictures) << row.mGranule;
    }
}

TEST(TheoraVideo, ConfigurationHoldsTheHeadersInOneOfThreeWays) {
    const std::string head = TheoraHead().Bytes();
    const std::string rest = "\x81theora...\x82theora...";
    EXPECT_EQ(Config(head), kUsual);
    EXPECT_EQ(Config("\2\x2A\x0A" + head + rest), kUsual);
    EXPECT_EQ(Config("\2\x2A" + std::string(3, '\xFF') + "\1" + head + rest), kUsual);
    EXPECT_EQ(Config(std::string("\0\x2A", 2) + head + std::string("\0\x0A", 2) + rest), kUsual);
    const std::string damaged[] = {"",
                                   "\2",
                                   "\2\x2A",
                                   "\2\x2A\x0A",
                                   "\1\x2A" + head,
                                   "\2\xFF" + head,
                                   "\2\x2A" + std::string(50, '\xFF'),
                                   std::string("\0\x2B", 2) + head,
                                   std::string("\0\x2A", 2)};
    for (const std::string& bytes : damaged) {
        EXPECT_EQ(Config(bytes), "nothing") << bytes.size();
    }
}
