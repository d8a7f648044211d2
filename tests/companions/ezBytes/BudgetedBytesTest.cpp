#include "ezBytes/BudgetedBytes.h"
#include "ezBytes/ReadShare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

/// Those of a text, by blocks of ten that begin where they are asked for.
class Tens : public BudgetedBytes {
public:
    Tens(const std::string& aText, std::uint32_t aMaxReads, std::uint64_t aMaxBytes = UINT64_MAX)
        : BudgetedBytes(aText.size(), ReadBudget(aMaxReads, aMaxBytes)), mText(aText) {}

    using BudgetedBytes::Fetch;
    using BudgetedBytes::RaiseBudget;
    using BudgetedBytes::SetSize;

    std::vector<std::string> mReads;
    std::size_t mFailingPlace = SIZE_MAX;

protected:
    void Bring(std::uint64_t aPosition) override { Fetch(aPosition, 10); }
    std::size_t ReadAt(std::uint64_t aPosition, unsigned char* aPlace, std::size_t aSize,
                       bool* afFailed) override {
        mReads.push_back(std::to_string(aPosition) + "+" + std::to_string(aSize));
        const auto place = static_cast<std::size_t>(aPosition);
        const std::size_t end = std::min({place + aSize, mText.size(), std::max(place, mFailingPlace)});
        *afFailed = *afFailed || end == mFailingPlace;
        std::memcpy(aPlace, mText.data() + place, end - place);
        return end - place;
    }

private:
    std::string mText;
};

const std::string kText = "0123456789abcdefghijABCDEFGHIJ";

std::string Borrowed(ByteSource& aBytes, std::uint64_t aPosition) {
    const unsigned char* bytes = nullptr;
    const std::size_t count = aBytes.Borrow(aPosition, &bytes);
    return std::string(reinterpret_cast<const char*>(bytes), count);
}

using Reads = std::vector<std::string>;

} // namespace

TEST(BudgetedBytes, ABlockIsReadOnceAndNoFurtherThanTheEnd) {
    Tens bytes(kText, 100);
    EXPECT_FALSE(bytes.HasBuffered(12, 1));
    EXPECT_EQ(Borrowed(bytes, 12), "cdefghijAB");
    EXPECT_EQ(Borrowed(bytes, 20), "AB");
    EXPECT_TRUE(bytes.HasBuffered(12, 10));
    EXPECT_FALSE(bytes.HasBuffered(12, 11));
    EXPECT_EQ(Borrowed(bytes, 25), "FGHIJ");
    EXPECT_TRUE(bytes.HasBuffered(29, 2)) << "all that there are";
    EXPECT_EQ(Borrowed(bytes, 30), "");
    EXPECT_EQ(Borrowed(bytes, UINT64_MAX), "");
    EXPECT_EQ(bytes.mReads, (Reads{"12+10", "25+5"}));
    EXPECT_FALSE(bytes.HasReadFailed());
    EXPECT_FALSE(bytes.IsBudgetUsedUp());
}

TEST(BudgetedBytes, BytesOfTheBlockAreNotReadAgain) {
    Tens bytes(kText, 100);
    EXPECT_TRUE(bytes.Fetch(0, 10));
    EXPECT_TRUE(bytes.Fetch(6, 8));
    EXPECT_EQ(Borrowed(bytes, 6), "6789abcd");
    EXPECT_TRUE(bytes.Fetch(2, 8)) << "back, where nothing is kept";
    EXPECT_EQ(Borrowed(bytes, 2), "23456789");
    EXPECT_EQ(bytes.mReads, (Reads{"0+10", "10+4", "2+8"}));
}

TEST(BudgetedBytes, BudgetOfReadsHoldsUntilItIsRaised) {
    Tens bytes(kText, 1);
    EXPECT_EQ(Borrowed(bytes, 0), "0123456789");
    EXPECT_FALSE(bytes.IsBudgetUsedUp());
    EXPECT_FALSE(bytes.Fetch(20, 5));
    EXPECT_TRUE(bytes.IsBudgetUsedUp());
    EXPECT_FALSE(bytes.HasReadFailed());
    EXPECT_EQ(Borrowed(bytes, 0), "") << "the block is that of the refused read, and empty";
    bytes.RaiseBudget(1, 0);
    EXPECT_FALSE(bytes.IsBudgetUsedUp());
    EXPECT_EQ(Borrowed(bytes, 0), "0123456789");
    EXPECT_EQ(Borrowed(bytes, 10), "");
    EXPECT_EQ(bytes.mReads.size(), 2U);
}

TEST(BudgetedBytes, BudgetOfBytesCountsWhatIsAskedForAndTakesWhatCame) {
    Tens bytes(kText, 100, 19);
    EXPECT_EQ(Borrowed(bytes, 25), "FGHIJ"); // 14 are left
    EXPECT_TRUE(bytes.Fetch(0, 10));         // 4
    EXPECT_FALSE(bytes.Fetch(20, 5));
    EXPECT_TRUE(bytes.IsBudgetUsedUp());
    EXPECT_TRUE(bytes.Fetch(20, 4)) << "which still fit";
    EXPECT_EQ(bytes.mReads, (Reads{"25+5", "0+10", "20+4"}));
}

TEST(BudgetedBytes, RefusedReadKeepsWhatIsBuffered) {
    Tens bytes(kText, 1);
    EXPECT_EQ(Borrowed(bytes, 0), "0123456789");
    EXPECT_TRUE(bytes.Fetch(7, 10));
    EXPECT_EQ(Borrowed(bytes, 7), "789");
    EXPECT_TRUE(bytes.IsBudgetUsedUp());
}

TEST(BudgetedBytes, FailureIsRememberedAndTheRestStillRead) {
    Tens bytes(kText, 100);
    bytes.mFailingPlace = 5;
    EXPECT_EQ(Borrowed(bytes, 0), "01234");
    EXPECT_TRUE(bytes.HasReadFailed());
    EXPECT_EQ(Borrowed(bytes, 5), "");
    EXPECT_EQ(Borrowed(bytes, 10), "");
    bytes.mFailingPlace = SIZE_MAX;
    EXPECT_EQ(Borrowed(bytes, 20), "ABCDEFGHIJ");
    EXPECT_TRUE(bytes.HasReadFailed());
    EXPECT_FALSE(bytes.IsBudgetUsedUp());
}

TEST(BudgetedBytes, NoByteAfterASizeThatIsToldLaterIsBufferedOrRead) {
    Tens bytes(kText, 100);
    EXPECT_EQ(Borrowed(bytes, 10), "abcdefghij");
    bytes.SetSize(15);
    EXPECT_EQ(Borrowed(bytes, 10), "abcde");
    EXPECT_EQ(Borrowed(bytes, 15), "");
    EXPECT_FALSE(bytes.Fetch(15, 1));
    EXPECT_FALSE(bytes.Fetch(20, 1));
    bytes.SetSize(3);
    EXPECT_EQ(Borrowed(bytes, 10), "");
    EXPECT_EQ(bytes.mReads, Reads{"10+10"});
    EXPECT_EQ(Borrowed(bytes, 1), "12");
}

TEST(ReadBudget, RaisingStopsAtWhatTheNumbersHold) {
    ReadBudget budget(UINT32_MAX - 1, 1);
    budget.Raise(UINT64_MAX, UINT64_MAX);
    EXPECT_TRUE(budget.TakeRead(UINT64_MAX));
    budget.TakeBytes(UINT64_MAX);
    EXPECT_FALSE(budget.TakeRead(1));
    EXPECT_TRUE(budget.TakeRead(0));
    EXPECT_TRUE(budget.IsUsedUp());
}

TEST(ReadShare, BoundsTheReadsOfOneAndLeavesTheRestToOthers) {
    Tens bytes(kText, 100);
    ReadShare share(bytes, 2);
    EXPECT_EQ(share.GetSize(), 30U);
    EXPECT_EQ(Borrowed(share, 0), "0123456789");
    EXPECT_EQ(Borrowed(share, 5), "56789") << "at hand";
    EXPECT_EQ(Borrowed(share, 10), "abcdefghij");
    EXPECT_EQ(Borrowed(share, 0), "");
    EXPECT_EQ(Borrowed(share, 15), "fghij") << "at hand, which costs no read";
    EXPECT_FALSE(bytes.IsBudgetUsedUp());
    EXPECT_EQ(Borrowed(bytes, 20), "ABCDEFGHIJ");
}
