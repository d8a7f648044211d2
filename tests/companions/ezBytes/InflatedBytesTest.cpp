#include "ezBytes/InflatedBytes.h"

#include "support/Str.h"
#include "support/ZlibBytes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

using namespace std::string_literals;

namespace {

using Result = InflatedBytes::Result;

const unsigned char* BytesOf(const std::string& aText) {
    return reinterpret_cast<const unsigned char*>(aText.data());
}

/// What came out, and what of the input was read.
struct Outcome {
    Result mResult;
    std::string mBytes;
    std::uint64_t mRead;
};

using Call = Result (InflatedBytes::*)(ByteReader& aCompressed, std::size_t aMaxSize);

Outcome Inflate(const std::string& aData, std::size_t aMaxSize, Call aCall = &InflatedBytes::Inflate) {
    BlockBytes source(BytesOf(aData), aData.size());
    ByteReader reader(source);
    InflatedBytes bytes;
    const Result result = (bytes.*aCall)(reader, aMaxSize);
    ByteReader inflated(bytes);
    return {result, std::string(inflated.ReadText(static_cast<std::size_t>(bytes.GetEnd())).View()),
            reader.GetPosition()};
}

/// "Evening Train" three times, by an independent encoder: with a copy of what was before.
const std::string kTrain =
    "\x78\xDA\x73\x2D\x4B\xCD\xCB\xCC\x4B\x57\x08\x29\x4A\xCC\xCC\xD3\x51\x70\xC5\xC3\x05\x00\x50\xFF\x0F\x57"s;
/// 100000 zeros, by the same.
const std::string kZeros =
    "\x78\xDA\xED\xC1\x31\x01\x00\x00\x00\xC2\xA0\xF5\x4F\x6D\x0D\x0F\xA0\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x80\x57\x03\x86\xAF\x00\x01"s;

} // namespace

#ifdef EZ_HAS_ZLIB

TEST(InflatedBytes, InflatesWhatWasCompressed) {
    EXPECT_TRUE(InflatedBytes::IsAvailable());
    const Outcome train = Inflate(kTrain, 1000);
    EXPECT_EQ(train.mResult, Result::Whole);
    EXPECT_EQ(train.mBytes, "Evening Train, Evening Train, Evening Train");
    const Outcome zeros = Inflate(kZeros, 1000000);
    EXPECT_EQ(zeros.mResult, Result::Whole);
    EXPECT_EQ(zeros.mBytes, std::string(100000, '\0'));
    for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 65535U, 65536U, 300000U}) {
        const std::string bytes(size, 'x');
        const Outcome outcome = Inflate(ZlibData(bytes), 300000);
        EXPECT_EQ(outcome.mResult, Result::Whole) << size;
        EXPECT_EQ(outcome.mBytes, bytes) << size;
    }
}

TEST(InflatedBytes, GivesUpOneByteAboveTheBound) {
    for (const std::size_t size : {1U, 4095U, 4096U, 4097U, 100000U}) {
        const std::string data = size == 100000 ? kZeros : ZlibData(std::string(size, 'x'));
        EXPECT_EQ(Inflate(data, size).mResult, Result::Whole) << size;
        const Outcome above = Inflate(data, size - 1);
        EXPECT_EQ(above.mResult, Result::TooLarge) << size;
        EXPECT_EQ(above.mBytes, "") << size;
    }
}

TEST(InflatedBytes, WhatIsDamagedOrCutHasNoBytes) {
    for (std::size_t size = 0; size < kTrain.size(); ++size) {
        const Outcome cut = Inflate(kTrain.substr(0, size), 1000);
        EXPECT_EQ(cut.mResult, Result::Damaged) << size;
        EXPECT_EQ(cut.mBytes, "") << size;
    }
    std::string sum = kTrain;
    sum.back() = '\0';
    EXPECT_EQ(Inflate(sum, 1000).mResult, Result::Damaged);
    EXPECT_EQ(Inflate("no zlib data"s, 1000).mResult, Result::Damaged);
    const std::string dictionary = "\x78\xBB\0\0\0\1"s; // asks for a preset one
    EXPECT_EQ(Inflate(dictionary + kTrain, 1000).mResult, Result::Damaged);
}

TEST(InflatedBytes, AHeadIsWhatTheDataBeginWith) {
    const auto head = [](const std::string& aData, std::size_t aMaxSize) {
        return Inflate(aData, aMaxSize, &InflatedBytes::InflateHead);
    };
    const std::string train = "Evening Train, Evening Train, Evening Train";
    for (const std::size_t size : {0U, 1U, 20U, 42U}) {
        const Outcome outcome = head(kTrain, size);
        EXPECT_EQ(outcome.mResult, Result::TooLarge) << size;
        EXPECT_EQ(outcome.mBytes, train.substr(0, size)) << size;
    }
    for (const std::size_t size : {43U, 1000U}) {
        const Outcome outcome = head(kTrain, size);
        EXPECT_EQ(outcome.mResult, Result::Whole) << size;
        EXPECT_EQ(outcome.mBytes, train) << size;
    }
    const std::string data = ZlibData(std::string(100000, 'x'));
    const Outcome cut = head(data.substr(0, 50000), 10000);
    EXPECT_EQ(cut.mResult, Result::TooLarge) << "what follows does not count";
    EXPECT_EQ(cut.mBytes, std::string(10000, 'x'));
    EXPECT_LE(cut.mRead, 3U * 4096);
    EXPECT_EQ(head(data.substr(0, 50000), 60000).mResult, Result::Damaged);
    EXPECT_EQ(head(data.substr(0, 50000), 60000).mBytes, "");
}

TEST(InflatedBytes, WhatFollowsTheDataIsNotPartOfThem) {
    const Outcome outcome = Inflate(kTrain + "and more", 1000);
    EXPECT_EQ(outcome.mResult, Result::Whole);
    EXPECT_EQ(outcome.mBytes.size(), 43U);
}

TEST(InflatedBytes, ReadsNoMoreThanDataOfTheBoundCanTake) {
    std::string blocks;
    while (blocks.size() < 100000) { // empty ones, which give nothing for ever
        blocks += StoredBlock("", false);
    }
    const Outcome outcome = Inflate("\x78\x01" + blocks, 1000);
    EXPECT_EQ(outcome.mResult, Result::Damaged);
    EXPECT_EQ(outcome.mRead, 2U * 1000 + 1024);
}

TEST(InflatedBytes, ASecondCallReplacesTheFirst) {
    BlockBytes source(BytesOf(kTrain), kTrain.size());
    InflatedBytes bytes;
    ByteReader first(source);
    EXPECT_EQ(bytes.Inflate(first, 1000), Result::Whole);
    EXPECT_EQ(bytes.GetSize(), 43U);
    ByteReader second(source);
    second.Skip(1);
    EXPECT_EQ(bytes.Inflate(second, 1000), Result::Damaged);
    EXPECT_EQ(bytes.GetSize(), 0U);
    const unsigned char* borrowed = nullptr;
    EXPECT_EQ(bytes.Borrow(0, &borrowed), 0U);
    EXPECT_EQ(borrowed, nullptr);
}

#else

TEST(InflatedBytes, WithoutZlibNothingIsInflated) {
    EXPECT_FALSE(InflatedBytes::IsAvailable());
    const Outcome outcome = Inflate(kTrain, 1000);
    EXPECT_EQ(outcome.mResult, Result::Unavailable);
    EXPECT_EQ(outcome.mBytes, "");
    EXPECT_EQ(outcome.mRead, 0U);
}

#endif
