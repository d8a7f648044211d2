#include "ezHosting/CancellableStream.h"

#include "PoolKit.h"

#include "support/AwkwardStream.h"
#include "support/ScriptedStream.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include "ez/FileMediaParserStream.h"
#include "ez/StreamMediaParserStream.h"

#include <gtest/gtest.h>
#include <thread>

namespace {

constexpr std::size_t kBuffered = kezMediaParserStreamBufferSize;

ScriptedStream* NewScripted(bool afLending) {
    return new ScriptedStream(std::string(3 * kBuffered, 'x'), afLending);
}

void Ignore(void* /*aUserData*/) {}

} // namespace

TEST(Cancellation, CallsEachWatchOnceAndOneThatComesLateAtOnce) {
    ezCancellation cancellation;
    int calls = 0;
    int late = 0;
    const ezCancellation::Watch watch(cancellation, [&] { ++calls; });
    const ezCancellation::Watch empty(cancellation, {});
    {
        const ezCancellation::Watch gone(cancellation, [&] { calls += 100; });
    }
    EXPECT_FALSE(cancellation.IsCancelled());
    EXPECT_EQ(calls, 0);
    cancellation.Cancel();
    cancellation.Cancel();
    EXPECT_TRUE(cancellation.IsCancelled());
    EXPECT_EQ(calls, 1);
    const ezCancellation::Watch after(cancellation, [&] { ++late; });
    const ezCancellation::Watch emptyAfter(cancellation, {});
    EXPECT_EQ(late, 1);
}

TEST(Cancellation, MayBeSaidAgainByAFunctionThatItCalls) {
    ezCancellation cancellation;
    int calls = 0;
    const ezCancellation::Watch watch(cancellation, [&] {
        ++calls;
        cancellation.Cancel();
    });
    cancellation.Cancel();
    EXPECT_EQ(calls, 1);
}

TEST(Cancellation, AWatchGoesOnlyWhenItsFunctionDoesNotRun) {
    for (int i = 0; i < 200; ++i) {
        ezCancellation cancellation;
        std::thread canceller;
        {
            int calls = 0; // what the function uses may go with the watch
            const ezCancellation::Watch watch(cancellation, [&calls] { ++calls; });
            canceller = std::thread([&cancellation] { cancellation.Cancel(); });
            if (i % 2 == 0) {
                std::this_thread::yield();
            }
        }
        canceller.join();
    }
}

TEST(Cancellable, AFileIsReadLikeAnyOtherUntilCancelled) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("song.Mp3", std::string(3 * kBuffered, 'x'));
    ezCancellation cancellation;
    ezCancellable<ezFileMediaParserStream> stream(cancellation, ezCString(path));
    ASSERT_TRUE(stream.Open());
    EXPECT_EQ(stream.GetMediaSize(), 3 * kBuffered);
    EXPECT_EQ(Str(stream.GetExtension()), "mp3");
    std::string bytes(2 * kBuffered, '\0');
    ASSERT_TRUE(stream.Read(10, bytes.data()));
    ASSERT_TRUE(stream.ReadFrom(0, bytes.size(), bytes.data()));
    EXPECT_EQ(bytes, std::string(2 * kBuffered, 'x'));

    cancellation.Cancel();
    std::size_t count = kBuffered;
    EXPECT_FALSE(stream.ReadFrom(kBuffered, kBuffered, bytes.data()));
    EXPECT_FALSE(stream.ReadFrom(kBuffered, &count, bytes.data()));
    EXPECT_TRUE(stream.ReadFrom(0, 10, bytes.data())) << "what is buffered needs no source";
    EXPECT_FALSE(stream.Open());
}

TEST(Cancellable, OpensNothingOnceCancelled) {
    ezCancellation cancellation;
    auto* const scripted = NewScripted(false);
    ezCancellable<ezStreamMediaParserStream> stream(cancellation, scripted, true);
    cancellation.Cancel();
    scripted->TakeCalls();
    EXPECT_FALSE(stream.Open());
    EXPECT_EQ(scripted->TakeCalls(), std::vector<std::string>());
}

TEST(Cancellable, AReadThatTheCancellingMeetsFailsToo) {
    ezCancellation cancellation;
    ezCancellable<ReadsOf> stream(cancellation, [&] { cancellation.Cancel(); });
    char byte = 'x';
    EXPECT_FALSE(stream.Read(1, &byte));
    EXPECT_EQ(stream.Tell(), ezuint64(0));
}

TEST(InterruptibleStream, IsTheOtherStreamUntilCancelled) {
    for (const bool fLending : {false, true}) {
        ezCancellation cancellation;
        auto* const scripted = NewScripted(fLending);
        const std::unique_ptr<ezMediaParserStream> stream =
            ezMakeCancellable(cancellation, ezStreamOwner(scripted));
        ASSERT_TRUE(stream->Open());
        EXPECT_EQ(stream->GetMediaSize(), 3 * kBuffered);
        EXPECT_EQ(Str(stream->GetExtension()), "bin");
        EXPECT_EQ(Str(stream->GetFullPath()), "/media/scripted.bin");
        std::string bytes(kBuffered, '\0');
        EXPECT_TRUE(stream->ReadFrom(kBuffered, bytes.size(), bytes.data()));
        EXPECT_EQ(bytes, std::string(kBuffered, 'x'));
        ezMediaInfo info;
        stream->CopyInfo(&info);
        EXPECT_EQ(Str(info.GetCString(kezInfo_MimeType, "")), "video/x-scripted");

        cancellation.Cancel();
        EXPECT_FALSE(stream->ReadFrom(kBuffered, bytes.size(), bytes.data()));
    }
}

TEST(InterruptibleStream, AnswersInterruptedOnceCancelled) {
    ezCancellation cancellation;
    auto* const scripted = NewScripted(true);
    int woken = 0;
    const ezStreamOwner stream(
        new ezInterruptibleStream(cancellation, ezStreamOwner(scripted), [&woken] { ++woken; }));
    EXPECT_TRUE(stream->HasOwnBuffer());
    EXPECT_TRUE(stream->CanLend(ezStreamAccess_Read));
    EXPECT_TRUE(stream->IsOpened());
    EXPECT_EQ(stream->GetSize(), ezuint64(3 * kBuffered));
    EXPECT_EQ(stream->Seek(1), ezStreamingStatus_NoError);
    EXPECT_EQ(scripted->GetPosition(), 1U);
    EXPECT_EQ(woken, 0);

    cancellation.Cancel();
    scripted->TakeCalls();
    EXPECT_EQ(woken, 1);
    char byte = 0;
    const void* data = nullptr;
    std::size_t count = 1;
    EXPECT_EQ(stream->Read(&byte, &count, ezStreamReadFlag_Whole), ezStreamingStatus_Interrupted);
    EXPECT_EQ(count, 0U);
    count = 1;
    EXPECT_EQ(stream->LendingRead(&data, &count, ezStreamReadFlag_Whole), ezStreamingStatus_Interrupted);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(stream->Seek(0), ezStreamingStatus_Interrupted);
    EXPECT_EQ(stream->GetSize(), ezuint64(0));
    EXPECT_FALSE(stream->IsOpened());
    EXPECT_EQ(scripted->TakeCalls(), std::vector<std::string>()) << "the stream is not asked any more";
}

TEST(InterruptibleStream, PassesTheOtherStreamsWakeUpsOnUntilItGoes) {
    ezCancellation cancellation;
    bool fReleased = false;
    auto* const scripted = NewScripted(false);
    scripted->mReleased = &fReleased;
    ezStreamOwner stream(new ezInterruptibleStream(cancellation, ezStreamOwner(scripted)));
    int calls = 0;
    stream->RegisterThresholdCallBack([](void* aCalls) { ++*static_cast<int*>(aCalls); }, &calls);
    scripted->Fire();
    EXPECT_EQ(calls, 1);
    stream->UnregisterThresholdCallBack(Ignore);
    scripted->Fire();
    EXPECT_EQ(calls, 2);
    stream.reset();
    EXPECT_TRUE(fReleased);
    cancellation.Cancel();
    EXPECT_EQ(calls, 2);
}

TEST(InterruptibleStream, AReaderThatWaitsForBytesIsWokenAtWhateverMoment) {
    for (const bool fLending : {false, true}) {
        for (int i = 0; i < 100; ++i) {
            ezCancellation cancellation;
            auto* const scripted = NewScripted(fLending);
            scripted->Withhold();
            scripted->Arrive(100); // of 8 KiB: the first read waits
            const bool fFromWithin = i % 2 == 0;
            if (fFromWithin) {
                // Between the look that found nothing and the wait.
                scripted->mOnNothing = [&cancellation] { cancellation.Cancel(); };
            }
            const std::unique_ptr<ezMediaParserStream> stream =
                ezMakeCancellable(cancellation, ezStreamOwner(scripted));
            std::thread canceller([&] {
                if (!fFromWithin) {
                    cancellation.Cancel();
                }
            });
            EXPECT_FALSE(stream->Open());
            canceller.join();
        }
    }
}

TEST(InterruptibleStream, WithoutAStreamThereIsNothingToRead) {
    ezCancellation cancellation;
    const std::unique_ptr<ezMediaParserStream> stream = ezMakeCancellable(cancellation, nullptr);
    ASSERT_NE(stream, nullptr);
    EXPECT_FALSE(stream->Open());
}
