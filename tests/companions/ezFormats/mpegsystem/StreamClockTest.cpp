#include "ezFormats/mpegsystem/StreamClock.h"
#include "ezFormats/mpegsystem/MPEGSystemLimits.h"
#include "ezFormats/mpegsystem/StreamPayload.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr std::uint64_t kEnd = kStreamClock_Wrap;

StampWindow WindowOf(const std::vector<std::uint64_t>& aStamps) {
    StampWindow window;
    for (const std::uint64_t stamp : aStamps) {
        window.Add(stamp % kEnd);
    }
    return window;
}

/// Stamps of pictures, as they are coded: each that is not a third one waits for the next.
StampWindow Pictures(std::uint64_t aFirst, std::uint64_t aStep, unsigned aCount) {
    StampWindow window;
    for (unsigned i = 0; i < aCount; ++i) {
        const unsigned shown = i % 3 == 0 ? i + 2 : i - 1;
        window.Add((aFirst + shown * aStep) % kEnd);
    }
    return window;
}

const unsigned char* Bytes(const std::string& aText) {
    return reinterpret_cast<const unsigned char*>(aText.data());
}

} // namespace

TEST(StreamClock, DistanceGoesAcrossItsEnd) {
    EXPECT_EQ(StreamClock_Distance(5, 5), 0U);
    EXPECT_EQ(StreamClock_Distance(kEnd - 10, 20), 30U);
    EXPECT_EQ(StreamClock_Distance(20, kEnd - 10), kEnd - 30);
    EXPECT_TRUE(StreamClock_IsBefore(kEnd - 10, 20));
    EXPECT_FALSE(StreamClock_IsBefore(20, kEnd - 10));
    EXPECT_FALSE(StreamClock_IsBefore(20, 20));
    EXPECT_FALSE(StreamClock_IsBefore(0, kEnd / 2)); // the same either way round
}

TEST(StampWindow, EndsAreTheEarliestAndTheLatestInAnyOrder) {
    const StampWindow window = WindowOf({kEnd + 5, kEnd - 3600, kEnd + 7200, kEnd - 7200, kEnd + 3600});
    EXPECT_EQ(window.GetCount(), 5U);
    EXPECT_EQ(window.GetEarliest(), kEnd - 7200);
    EXPECT_EQ(window.GetLatest(), 7200U);
    EXPECT_EQ(window.GetSpan(), 14400U);
    EXPECT_TRUE(StampWindow().IsEmpty());
}

TEST(StampWindow, UsualStepIsThatOfMostStamps) {
    const StampWindow window = WindowOf({100, 3100, 3100, 6100, 42100, 45100});
    EXPECT_EQ(window.GetSteps().mUsual, 3000U);
    EXPECT_EQ(window.GetSteps().mCount, 3U);
    EXPECT_EQ(WindowOf({7}).GetSteps().mUsual, 0U);
    EXPECT_EQ(StampWindow().GetSteps().mUsual, 0U);
}

TEST(StampWindow, FrameRateIsThatOfPicturesCodedOutOfOrder) {
    EXPECT_EQ(Pictures(0, 3003, 12).GetFrameRate(), 29970U);
    EXPECT_EQ(Pictures(kEnd - 9000, 3600, 12).GetFrameRate(), 25000U); // the clock begins anew between them
    EXPECT_EQ(WindowOf({0, 3753, 7507, 11261, 15015}).GetFrameRate(), 23976U);
    EXPECT_EQ(WindowOf({0, 3690, 7470, 11250, 15030}).GetFrameRate(),
              23952U); // of milliseconds, five pictures
    EXPECT_EQ(WindowOf({0, 3600}).GetFrameRate(), 0U);
    EXPECT_EQ(Pictures(0, 300, 12).GetFrameRate(), 300'000U);
    EXPECT_EQ(Pictures(0, 299, 12).GetFrameRate(), 0U); // no pictures come so fast
}

TEST(StampWindow, KeepsSoManyAndNoMore) {
    StampWindow window;
    for (std::uint64_t i = 0; i < 2 * kStampWindow_MaxKept; ++i) {
        window.Add(i < kStampWindow_MaxKept ? 10 * i : 10 * kStampWindow_MaxKept + 5 * i);
    }
    EXPECT_EQ(window.GetSteps().mCount, kStampWindow_MaxKept - 1);
    EXPECT_EQ(window.GetCount(), 2 * kStampWindow_MaxKept);
    EXPECT_EQ(window.GetLatest(), 10 * kStampWindow_MaxKept + 5 * (2 * kStampWindow_MaxKept - 1));
}

TEST(StreamPayload, BeginsWithAPacketAndKeepsSoManyBytes) {
    const std::string bytes = "abcdefgh";
    StreamPayload payload(12);
    payload.Add(Bytes(bytes), 4); // of a packet that began before
    EXPECT_TRUE(payload.IsEmpty());
    payload.Begin(Bytes(bytes), 0);
    payload.Begin(Bytes(bytes), 3);
    payload.Add(Bytes(bytes) + 3, 2);
    payload.Begin(Bytes(bytes), 8);
    EXPECT_TRUE(payload.IsFull());
    payload.Begin(Bytes(bytes), 8);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(payload.GetBytes()), payload.GetSize()),
              "abcdeabcdefg");
    EXPECT_EQ(payload.GetStarts(), (std::vector<std::size_t>{0, 5}));
}
