#include "ezBytes/ByteReader.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <optional>
#include <string>

using namespace std::string_literals;

namespace {

constexpr std::uint64_t kEndless =
    ~std::uint64_t{0}; ///< past every position of a source that does not know its size

const unsigned char* Unsigned(const std::string& aBytes) {
    return reinterpret_cast<const unsigned char*>(aBytes.data());
}

/// Lends one byte at a time, so that every number lies across.
class SingleBytes : public ByteSource {
public:
    explicit SingleBytes(std::string aBytes) : mBytes(std::move(aBytes)) {}

    std::optional<std::uint64_t> GetSize() const override { return mBytes.size(); }
    std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override {
        if (aPosition >= mBytes.size()) {
            return 0;
        }
        mByte = static_cast<unsigned char>(mBytes[static_cast<std::size_t>(aPosition)]);
        *aBytes = &mByte;
        return 1;
    }

private:
    std::string mBytes;
    unsigned char mByte = 0; ///< what is borrowed
};

/// Bytes at every position, each the lowest byte of its position. The last eight are buffered.
class EndlessBytes : public ByteSource {
public:
    EndlessBytes() { KeepBuffered(mLast.data(), kEndless - mLast.size(), mLast.size()); }

    std::optional<std::uint64_t> GetSize() const override { return std::nullopt; }
    std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override {
        if (const std::size_t count = BorrowBuffered(aPosition, aBytes)) {
            return count;
        }
        mByte = static_cast<unsigned char>(aPosition & 0xFFU);
        *aBytes = &mByte;
        return 1;
    }

private:
    std::array<unsigned char, 8> mLast = {0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE};
    unsigned char mByte = 0;
};

/// Runs aCheck over the bytes as one block, and as bytes of which no two are buffered at once.
template <typename Check>
void OverBothKindsOf(const std::string& aBytes, Check aCheck) {
    {
        SCOPED_TRACE("one block");
        BlockBytes block(Unsigned(aBytes), aBytes.size());
        aCheck(ByteReader(block));
    }
    SCOPED_TRACE("single bytes");
    SingleBytes bytes(aBytes);
    aCheck(ByteReader(bytes));
}

/// Whatever is asked of a failed reader, it gives nothing, stays where it is and stays failed.
void ExpectFailedForGood(ByteReader aReader) {
    const std::uint64_t position = aReader.GetPosition();
    EXPECT_TRUE(aReader.HasFailed());
    EXPECT_EQ(aReader.GetLeft(), 0U);
    for (const unsigned count : {1U, 2U, 4U, 8U}) {
        EXPECT_EQ(aReader.ReadBig(count), 0U) << count;
        EXPECT_EQ(aReader.ReadLittle(count), 0U) << count;
    }
    EXPECT_EQ(aReader.ReadSyncsafe32(), 0U);
    EXPECT_EQ(Str(aReader.ReadText(1)), "");
    EXPECT_EQ(Str(aReader.ReadZeroTerminated(100)), "");
    unsigned char byte = 0;
    EXPECT_FALSE(aReader.Read(&byte, 1));
    EXPECT_TRUE(aReader.Take(0).HasFailed());
    aReader.Skip(0);
    EXPECT_FALSE(aReader.Require(true));
    EXPECT_EQ(aReader.GetPosition(), position);
}

} // namespace

TEST(ByteReader, ReadsNumbersOfOneToEightBytesInBothOrders) {
    OverBothKindsOf("\x81\x02\x03\x04\x05\x06\x07\x88", [](const ByteReader& aReader) {
        std::uint64_t big = 0;
        for (unsigned count = 1; count <= 8; ++count) {
            big = big << 8 | (count == 1 ? 0x81U : count == 8 ? 0x88U : count);
            ByteReader reader = aReader;
            EXPECT_EQ(reader.ReadBig(count), big) << count;
            EXPECT_EQ(reader.GetPosition(), count);
            EXPECT_FALSE(reader.HasFailed());
        }
        ByteReader reader = aReader;
        EXPECT_EQ(reader.ReadLittle(3), 0x030281U);
        EXPECT_EQ(reader.ReadLittle32(), 0x07060504U);
        EXPECT_EQ(reader.ReadByte(), 0x88U);
        reader = aReader;
        EXPECT_EQ(reader.ReadLittle(8), 0x8807060504030281U);
        EXPECT_EQ(reader.GetLeft(), 0U);
    });
}

TEST(ByteReader, ReadsUpToTheEndAndFailsAfterIt) {
    OverBothKindsOf("abcde", [](const ByteReader& aReader) {
        ByteReader reader = aReader;
        EXPECT_EQ(Str(reader.ReadText(5)), "abcde");
        EXPECT_EQ(reader.GetLeft(), 0U);
        unsigned char none = 0;
        EXPECT_TRUE(reader.Read(&none, 0));
        EXPECT_EQ(Str(reader.ReadText(0)), "");
        reader.Skip(0);
        EXPECT_FALSE(reader.HasFailed());
        EXPECT_EQ(reader.ReadByte(), 0U);
        ExpectFailedForGood(reader);
    });
}

TEST(ByteReader, WhatGoesBeyondTheEndGivesNothingOfWhatStandsBeforeIt) {
    OverBothKindsOf("\1\2\3\4\5", [](const ByteReader& aReader) {
        std::array<unsigned char, 6> block = {};
        ByteReader reader = aReader;
        EXPECT_EQ(reader.ReadBig(6), 0U);
        ExpectFailedForGood(reader);
        reader = aReader;
        EXPECT_EQ(reader.ReadLittle(6), 0U);
        ExpectFailedForGood(reader);
        reader = aReader;
        EXPECT_EQ(Str(reader.ReadText(6)), "");
        ExpectFailedForGood(reader);
        reader = aReader;
        EXPECT_FALSE(reader.Read(block.data(), block.size()));
        ExpectFailedForGood(reader);
        reader = aReader;
        EXPECT_EQ(Str(reader.ReadZeroTerminated(100)), "");
        ExpectFailedForGood(reader);
        reader = aReader;
        reader.Skip(6);
        ExpectFailedForGood(reader);
    });
}

TEST(ByteReader, AFailureStaysWithBytesStillThere) {
    OverBothKindsOf("\x01\x02\x03\x04\x80\x05\x06\x07\x08\x09", [](const ByteReader& aReader) {
        ByteReader reader = aReader;
        EXPECT_FALSE(reader.Require(false));
        EXPECT_EQ(reader.GetPosition(), 0U);
        ExpectFailedForGood(reader);
        reader = aReader;
        EXPECT_EQ(reader.ReadSyncsafe32(), 0x01U << 21 | 0x02U << 14 | 0x03U << 7 | 0x04U);
        EXPECT_FALSE(reader.HasFailed());
        EXPECT_EQ(reader.ReadSyncsafe32(), 0U); // an eighth bit
        ExpectFailedForGood(reader);
    });
}

TEST(ByteReader, ATextWithAnEndIsFoundWithinItsMaximum) {
    OverBothKindsOf("abc\0d\0e"s, [](const ByteReader& aReader) {
        ByteReader reader = aReader;
        EXPECT_EQ(Str(reader.ReadZeroTerminated(4)), "abc");
        EXPECT_EQ(reader.GetPosition(), 4U);
        EXPECT_EQ(Str(reader.ReadZeroTerminated(100)), "d");
        EXPECT_EQ(Str(reader.ReadZeroTerminated(100)), "");
        ExpectFailedForGood(reader);
        reader = aReader;
        EXPECT_EQ(Str(reader.ReadZeroTerminated(3)), "");
        ExpectFailedForGood(reader);
    });
}

TEST(ByteReader, APartEndsWhereItWasCutAndItsFailureIsItsOwn) {
    OverBothKindsOf("abcdefgh", [](const ByteReader& aReader) {
        ByteReader reader = aReader;
        reader.Skip(1);
        ByteReader part = reader.Take(3);
        EXPECT_EQ(part.GetPosition(), 1U);
        EXPECT_EQ(part.GetEnd(), 4U);
        EXPECT_EQ(reader.GetPosition(), 4U);
        EXPECT_EQ(Str(part.ReadText(3)), "bcd");
        part.ReadByte();
        ExpectFailedForGood(part);
        EXPECT_EQ(Str(reader.ReadText(4)), "efgh");
        EXPECT_FALSE(reader.HasFailed());
    });
}

TEST(ByteReader, APartThatIsNotThereIsEmptyAndFailsBoth) {
    OverBothKindsOf("abcd", [](const ByteReader& aReader) {
        ByteReader reader = aReader;
        reader.Skip(2);
        const ByteReader part = reader.Take(3);
        EXPECT_EQ(part.GetPosition(), part.GetEnd());
        ExpectFailedForGood(part);
        ExpectFailedForGood(reader);
    });
}

TEST(ByteReader, StuffingIsSeenByNothing) {
    OverBothKindsOf("\xFF\x00\xE0\xFF\x00\x00z\xFF\x00"s, [](const ByteReader& aReader) {
        ByteReader reader = aReader;
        reader.SetUnsynchronised();
        EXPECT_EQ(reader.ReadBig(2), 0xFFE0U);
        EXPECT_EQ(reader.GetPosition(), 3U);
        EXPECT_EQ(reader.Take(2).GetEnd(), 6U);
        EXPECT_EQ(Str(reader.ReadText(2)), "z\xFF");
        EXPECT_EQ(reader.GetLeft(), 0U);
        EXPECT_FALSE(reader.HasFailed());
        reader = aReader;
        reader.SetUnsynchronised();
        reader.Skip(3);
        EXPECT_EQ(reader.GetPosition(), 5U);
    });
}

TEST(ByteReader, OffsetsNearTheLastOneAreReadAndNeverWrapAround) {
    EndlessBytes bytes;
    ByteReader reader(bytes);
    reader.Skip(kEndless - 11);
    EXPECT_EQ(reader.ReadBig(2), 0xF4F5U); // in front of the buffered bytes
    EXPECT_EQ(reader.ReadBig32(), 0xF6F7F8F9U);
    EXPECT_EQ(reader.ReadBig(4), 0xFAFBFCFDU);
    ByteReader last = reader;
    EXPECT_EQ(last.ReadByte(), 0xFEU);
    EXPECT_EQ(last.GetLeft(), 0U);
    EXPECT_FALSE(last.HasFailed());
    EXPECT_EQ(last.ReadByte(), 0U);
    ExpectFailedForGood(last);
    last = reader;
    EXPECT_EQ(last.ReadBig(2), 0U);
    ExpectFailedForGood(last);
}

TEST(ByteReader, CountsThatWouldPassTheLastOffsetFailAndMoveNothing) {
    EndlessBytes bytes;
    for (const std::uint64_t count : {kEndless, kEndless - 4, std::uint64_t{1} << 63}) {
        ByteReader reader(bytes);
        reader.Skip(std::uint64_t{1} << 63);
        EXPECT_FALSE(reader.HasFailed());
        ByteReader taking = reader;
        EXPECT_TRUE(taking.Take(count).HasFailed()) << count;
        EXPECT_EQ(taking.GetPosition(), std::uint64_t{1} << 63) << count;
        reader.Skip(count);
        EXPECT_EQ(reader.GetPosition(), std::uint64_t{1} << 63) << count;
        ExpectFailedForGood(reader);
    }
}

TEST(ByteReader, ASourceThatEndsBeforeItsSizeFailsTheReader) {
    /// Does not know its size, and has three bytes.
    class ShortBytes : public SingleBytes {
    public:
        ShortBytes() : SingleBytes("abc") {}
        std::optional<std::uint64_t> GetSize() const override { return std::nullopt; }
    };
    ShortBytes bytes;
    ByteReader reader(bytes);
    ByteReader numbers = reader;
    std::array<unsigned char, 4> block = {};
    EXPECT_FALSE(reader.Read(block.data(), block.size()));
    ExpectFailedForGood(reader);
    EXPECT_EQ(numbers.ReadBig(3), 0x616263U);
    EXPECT_EQ(numbers.ReadBig(1), 0U);
    ExpectFailedForGood(numbers);
}

TEST(ByteReader, AfterAFailureTheSourceIsNotAskedAgain) {
    /// Bytes of a stream that has ended without having told a size: each question may wait for more.
    class EndedBytes : public ByteSource {
    public:
        std::optional<std::uint64_t> GetSize() const override { return std::nullopt; }
        std::size_t Borrow(std::uint64_t aPosition, const unsigned char** aBytes) override {
            if (aPosition >= mBytes.size()) {
                ++mAskedAfterEnd;
                return 0;
            }
            *aBytes = mBytes.data() + aPosition;
            return 1;
        }
        unsigned mAskedAfterEnd = 0;

    private:
        std::array<unsigned char, 2> mBytes = {'a', 'b'};
    };
    std::array<unsigned char, 8> block = {};
    const std::array<std::function<void(ByteReader&)>, 8> kReads = {
        [](ByteReader& aReader) { aReader.ReadBig(8); },
        [](ByteReader& aReader) { aReader.ReadLittle(8); },
        [](ByteReader& aReader) { aReader.ReadSyncsafe32(); },
        [&](ByteReader& aReader) { aReader.Read(block.data(), block.size()); },
        [](ByteReader& aReader) { aReader.ReadText(8); },
        [](ByteReader& aReader) { aReader.ReadZeroTerminated(8); },
        [](ByteReader& aReader) {
            aReader.SetUnsynchronised();
            aReader.Skip(8);
        },
        [](ByteReader& aReader) {
            aReader.Skip(2);
            aReader.ReadBig32();
        },
    };
    for (std::size_t i = 0; i < kReads.size(); ++i) {
        EndedBytes bytes;
        ByteReader reader(bytes);
        kReads[i](reader);
        EXPECT_EQ(bytes.mAskedAfterEnd, 1U) << i;
        ExpectFailedForGood(reader);
        EXPECT_EQ(bytes.mAskedAfterEnd, 1U) << i;
    }
}
