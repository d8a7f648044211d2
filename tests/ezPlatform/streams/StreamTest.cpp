#include "ezPlatform/streams/Stream.h"

#include "support/Record.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <type_traits>

namespace {

/// As little as a stream can be: everything else is the base's.
class BareStream : public ezStream {
public:
    explicit BareStream(bool* aDestroyed = nullptr) : mDestroyed(aDestroyed) {}
    ~BareStream() override {
        if (mDestroyed != nullptr) {
            *mDestroyed = true;
        }
    }
    using ezStream::FireThreshold;

    ezCString GetExtension() const override { return ""; }
    ezCString GetURI() const override { return ""; }
    ezuint64 GetSize() override { return 0; }
    bool IsOpened() override { return false; }
    ezStreamingStatus Seek(const ezuint64& /*aPosition*/) override { return ezStreamingStatus_NotSupported; }
    ezStreamingStatus Read(void* /*aBuffer*/, std::size_t* /*aSize*/, int /*aFlag*/) override {
        return ezStreamingStatus_NotSupported;
    }

private:
    bool* mDestroyed;
};

/// What a callback is given: it counts.
void sCount(void* aUserData) {
    ++*static_cast<int*>(aUserData);
}

void sCountTens(void* aUserData) {
    *static_cast<int*>(aUserData) += 10;
}

struct Itself {
    BareStream* mStream;
    int mCalls;
};

void sTakeItselfAway(void* aUserData) {
    auto* itself = static_cast<Itself*>(aUserData);
    ++itself->mCalls;
    itself->mStream->UnregisterThresholdCallBack(sTakeItselfAway);
}

void sExchangeItself(void* aUserData) {
    auto* itself = static_cast<Itself*>(aUserData);
    itself->mStream->RegisterThresholdCallBack(sCount, &itself->mCalls);
}

} // namespace

// ---- what the base answers ----

TEST(Stream, StatusValuesAreThoseOfTheInterface) {
    EXPECT_EQ(ezStreamingStatus_NoError, 0);
    EXPECT_EQ(ezStreamingStatus_EOS, 1);
    EXPECT_EQ(ezStreamingStatus_Downloading, 2);
    EXPECT_EQ(ezStreamingStatus_InvalidParam, 3);
    EXPECT_EQ(ezStreamingStatus_InvalidState, 4);
    EXPECT_EQ(ezStreamingStatus_InvalidSize, 5);
    EXPECT_EQ(ezStreamingStatus_OutOfInternalBuffer, 6);
    EXPECT_EQ(ezStreamingStatus_Interrupted, 7);
    EXPECT_EQ(ezStreamingStatus_ReadError, 8);
    EXPECT_EQ(ezStreamingStatus_WriteError, 9);
    EXPECT_EQ(ezStreamingStatus_NotSupported, 10);
    EXPECT_EQ(ezStreamingStatus_OutOfRange, 11);
    EXPECT_EQ(ezStreamReadFlag_Whole, 1);
    EXPECT_EQ(ezStreamAccess_Read + ezStreamAccess_Seek, 3);
}

TEST(Stream, TheBaseLendsNothing) {
    BareStream stream;
    EXPECT_FALSE(stream.HasOwnBuffer());
    for (int access = 0; access < 5; ++access) {
        EXPECT_FALSE(stream.CanLend(access)) << access;
    }
    const char byte = 'x';
    const void* data = &byte;
    std::size_t size = 5;
    EXPECT_EQ(stream.LendingRead(&data, &size, ezStreamReadFlag_Whole), ezStreamingStatus_NotSupported);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 0U);
}

TEST(Stream, TheBaseKnowsNothingOfTheMedia) {
    BareStream stream;
    ezMediaInfo info;
    stream.CopyInfo(&info);
    EXPECT_EQ(DumpRecord(&info), "");
}

TEST(Stream, ReleaseDestroysIt) {
    bool fDestroyed = false;
    (new BareStream(&fDestroyed))->Release();
    EXPECT_TRUE(fDestroyed);
}

TEST(Stream, AnOwnerReleasesIt) {
    bool fDestroyed = false;
    {
        const ezStreamOwner owner(new BareStream(&fDestroyed));
        EXPECT_FALSE(fDestroyed);
    }
    EXPECT_TRUE(fDestroyed);
    const ezStreamOwner none;
}

TEST(Stream, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<BareStream>);
    EXPECT_FALSE(std::is_copy_assignable_v<BareStream>);
}

// ---- the threshold callback ----

TEST(Stream, FiringCallsTheRegisteredCallBackWithItsUserData) {
    BareStream stream;
    stream.FireThreshold(); // nobody listens
    int calls = 0;
    stream.RegisterThresholdCallBack(sCount, &calls);
    EXPECT_EQ(calls, 0);
    stream.FireThreshold();
    stream.FireThreshold();
    EXPECT_EQ(calls, 2);
}

TEST(Stream, TheLatestCallBackCounts) {
    BareStream stream;
    int first = 0;
    int second = 0;
    stream.RegisterThresholdCallBack(sCount, &first);
    stream.RegisterThresholdCallBack(sCountTens, &second);
    stream.FireThreshold();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 10);
    stream.RegisterThresholdCallBack(sCountTens, &first);
    stream.FireThreshold();
    EXPECT_EQ(first, 10) << "the same function with other user data";
    EXPECT_EQ(second, 10);
}

TEST(Stream, UnregisteringEndsTheCalls) {
    BareStream stream;
    int calls = 0;
    stream.RegisterThresholdCallBack(sCount, &calls);
    stream.UnregisterThresholdCallBack(sCount);
    stream.FireThreshold();
    EXPECT_EQ(calls, 0);
    stream.UnregisterThresholdCallBack(sCount);
    stream.RegisterThresholdCallBack(sCount, &calls);
    stream.FireThreshold();
    EXPECT_EQ(calls, 1);
}

TEST(Stream, UnregisteringAnotherCallBackIsIgnored) {
    BareStream stream;
    int calls = 0;
    stream.RegisterThresholdCallBack(sCount, &calls);
    stream.UnregisterThresholdCallBack(sCountTens);
    stream.FireThreshold();
    EXPECT_EQ(calls, 1);
}

TEST(Stream, ACallBackMayTakeItselfAway) {
    BareStream stream;
    Itself itself{&stream, 0};
    stream.RegisterThresholdCallBack(sTakeItselfAway, &itself);
    stream.FireThreshold();
    stream.FireThreshold();
    EXPECT_EQ(itself.mCalls, 1);
}

TEST(Stream, ACallBackMayPutAnotherInItsPlace) {
    BareStream stream;
    Itself itself{&stream, 0};
    stream.RegisterThresholdCallBack(sExchangeItself, &itself);
    stream.FireThreshold();
    EXPECT_EQ(itself.mCalls, 0);
    stream.FireThreshold();
    EXPECT_EQ(itself.mCalls, 1);
}

namespace {

/// A callback that takes its time.
struct Slow {
    std::atomic<bool> mfStarted{false};
    bool mfEnded = false; // no atomic: that unregistering has returned orders the reader after the callback
};

void sTakeTime(void* aUserData) {
    auto* slow = static_cast<Slow*>(aUserData);
    slow->mfStarted = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    slow->mfEnded = true;
}

} // namespace

TEST(StreamThreads, UnregisteringReturnsOnlyWhenNoCallBackRuns) {
    BareStream stream;
    Slow slow;
    stream.RegisterThresholdCallBack(sTakeTime, &slow);
    std::thread arrival([&stream] { stream.FireThreshold(); });
    while (!slow.mfStarted) {
        std::this_thread::yield();
    }
    stream.UnregisterThresholdCallBack(sTakeTime);
    EXPECT_TRUE(slow.mfEnded);
    arrival.join();
}

TEST(StreamThreads, CallBacksComeAndGoWhileTheStreamFires) {
    BareStream stream;
    std::atomic<bool> fStop{false};
    std::thread arrival([&] {
        while (!fStop) {
            stream.FireThreshold();
        }
    });
    for (int i = 0; i < 2000; ++i) {
        int calls = 0; // gone with this turn, and no atomic
        stream.RegisterThresholdCallBack(sCount, &calls);
        stream.RegisterThresholdCallBack(sCountTens, &calls);
        stream.UnregisterThresholdCallBack(sCountTens);
        ASSERT_GE(calls, 0);
    }
    fStop = true;
    arrival.join();
}
