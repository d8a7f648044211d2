#include "ezLiveStreams/FeedStream.h"

#include "Media.h"

#include "ez/StreamMediaParserStream.h"
#include "ezPlatform/base/Condition.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <thread>

namespace {

using Push = ezFeedBuffer::Push;
using Script = std::function<void(ezFeedBuffer&)>;

/// A stream whose thread does what a script says.
class ScriptedFeed : public ezFeedStream {
public:
    ScriptedFeed(const ezFeedOptions& anOptions, Script aScript)
        : ezFeedStream(anOptions), mScript(std::move(aScript)) {
        Start();
    }

    ezCString GetExtension() const override { return "Mp3"; }
    ezCString GetURI() const override { return "song.Mp3"; }

    ezCondition mInterrupted;

protected:
    ~ScriptedFeed() override { Stop(); }
    void Feed(ezFeedBuffer& aBuffer) override { mScript(aBuffer); }
    void Interrupt() override { mInterrupted.Signal(); }

private:
    Script mScript;
};

ezFeedOptions Window(std::size_t aWindow, bool afWaitForSize = false) {
    ezFeedOptions options;
    options.mLimits = {aWindow, std::max(aWindow, std::size_t{1} << 20)};
    options.mfWaitForSize = afWaitForSize;
    return options;
}

/// Brings a file in pieces of one size.
Script Bringing(const std::string& aMedia, std::size_t aPiece) {
    return [&aMedia, aPiece](ezFeedBuffer& aBuffer) {
        for (std::size_t at = 0; at < aMedia.size(); at += aPiece) {
            const std::size_t count = std::min(aPiece, aMedia.size() - at);
            if (aBuffer.Append(aMedia.data() + at, count) != Push::Taken) {
                return;
            }
        }
        aBuffer.End();
    };
}

std::string ReadAll(ezMediaParserStream& aStream, std::size_t aPiece) {
    std::string bytes;
    std::string piece(aPiece, '\0');
    std::size_t count = aPiece;
    while (aStream.Read(&count, piece.data()) && count > 0) {
        bytes.append(piece, 0, count);
        count = aPiece;
    }
    return bytes;
}

using Owned = std::unique_ptr<ScriptedFeed, ezStreamReleaser>;

void sSignal(void* aCondition) {
    static_cast<ezCondition*>(aCondition)->Signal();
}

} // namespace

TEST(FeedStream, IsReadLikeAFileHoweverItComes) {
    const std::string media = MediaBytes(50'000);
    for (const std::size_t piece : {1U, 7U, 4096U, 8192U, 60'000U}) {
        for (const std::size_t window : {9'000U, 20'000U, 100'000U}) {
            ezStreamMediaParserStream stream(new ScriptedFeed(Window(window), Bringing(media, piece)), true);
            ASSERT_TRUE(stream.Open());
            EXPECT_EQ(stream.GetExtension(), "mp3");
            EXPECT_EQ(ReadAll(stream, 5'000), media) << piece << ", " << window;
            EXPECT_EQ(stream.GetMediaSize(), media.size());
        }
    }
}

TEST(FeedStream, WithTheWaitAShortMediaHasItsSizeFromTheStartAndALongOneNever) {
    for (int i = 0; i < 50; ++i) {
        const std::string shortMedia = MediaBytes(20'000);
        ezStreamMediaParserStream whole(new ScriptedFeed(Window(20'000, true), Bringing(shortMedia, 777)),
                                        true);
        ASSERT_TRUE(whole.Open());
        ASSERT_EQ(whole.GetMediaSize(), 20'000U);
        const std::string longMedia = MediaBytes(20'001);
        ezStreamMediaParserStream part(new ScriptedFeed(Window(20'000, true), Bringing(longMedia, 777)),
                                       true);
        ASSERT_TRUE(part.Open());
        ASSERT_EQ(part.GetMediaSize(), 0U);
    }
}

TEST(FeedStream, NoWakeUpIsLostAtTheLiveEdge) {
    const std::string media = MediaBytes(2'000);
    for (int i = 0; i < 1'000; ++i) {
        const Owned stream(
            new ScriptedFeed(Window(64), Bringing(media, 1 + static_cast<std::size_t>(i) % 70)));
        ezCondition condition;
        stream->RegisterThresholdCallBack(sSignal, &condition);
        std::string bytes;
        while (true) {
            const ReadResult result = ReadOnce(*stream, 1 + bytes.size() % 64);
            bytes += result.mBytes;
            if (result.mStatus != ezStreamingStatus_NoError) {
                ASSERT_EQ(result.mStatus, ezStreamingStatus_EOS);
                break;
            }
            if (result.mBytes.empty()) {
                condition.Wait();
            }
        }
        ASSERT_EQ(bytes, media);
        stream->UnregisterThresholdCallBack(sSignal); // which waits for a call that is under way
    }
}

TEST(FeedStream, TheBytesAreThereWhenTheCallBackComes) {
    const std::string media = MediaBytes(1'000);
    ezCondition start;
    ezCondition condition; // outlives the stream, whose end calls too
    const Owned stream(new ScriptedFeed(Window(2'000), [&](ezFeedBuffer& aBuffer) {
        start.Wait();
        aBuffer.Append(media.data(), media.size());
    }));
    stream->RegisterThresholdCallBack(sSignal, &condition);
    start.Signal();
    condition.Wait();
    EXPECT_EQ(ReadOnce(*stream, 1'000), Got(media));
}

TEST(FeedStream, AMovableSourceIsReadAnywhere) {
    const std::string media = MediaBytes(2'000'000);
    const Script script = [&](ezFeedBuffer& aBuffer) {
        aBuffer.SetMovable(true, true);
        aBuffer.SetSize(media.size());
        std::uint64_t position = 0;
        do {
            aBuffer.StartAt(position);
            Push push = Push::Taken;
            while (push == Push::Taken && position < media.size()) {
                const std::size_t count =
                    static_cast<std::size_t>(std::min<std::uint64_t>(3'000, media.size() - position));
                push = aBuffer.Append(media.data() + position, count);
                position += count;
            }
            aBuffer.End();
        } while (aBuffer.WaitForMove(&position));
    };
    ezStreamMediaParserStream stream(new ScriptedFeed(Window(100'000), script), true);
    ASSERT_TRUE(stream.Open());
    std::mt19937 random(7);
    for (int i = 0; i < 300; ++i) {
        const std::size_t position = random() % (media.size() + 1);
        const std::size_t size = random() % 120'000;
        std::string bytes(size, '\0');
        std::size_t count = size;
        ASSERT_TRUE(stream.ReadFrom(position, &count, bytes.data()));
        ASSERT_EQ(bytes.substr(0, count), media.substr(position, size)) << position << " " << size;
    }
}

TEST(FeedStream, DestructionWhileTheCallBackFires) {
    const std::string media = MediaBytes(100'000);
    for (int i = 0; i < 300; ++i) {
        std::atomic<int> calls{0};
        Owned stream(new ScriptedFeed(Window(200'000), Bringing(media, 1)));
        const auto count = [](void* aCalls) { ++*static_cast<std::atomic<int>*>(aCalls); };
        stream->RegisterThresholdCallBack(count, &calls);
        while (calls == 0) {
            std::this_thread::yield();
        }
        stream.reset();
        EXPECT_GT(calls, 0);
    }
}

TEST(FeedStream, AnAdapterThatGoesWhileTheCallBackFiresTakesItAway) {
    const std::string media = MediaBytes(100'000);
    for (int i = 0; i < 30; ++i) {
        const Owned stream(new ScriptedFeed(Window(200'000), Bringing(media, 1)));
        ezStreamMediaParserStream adapter(stream.get(), false);
        EXPECT_TRUE(adapter.Open());
    }
}

TEST(FeedStream, DestructionLetsAWriterGoThatWaitsForRoom) {
    const std::string media = MediaBytes(1'000);
    std::atomic<bool> fLetGo{false};
    {
        const Owned stream(new ScriptedFeed(Window(100, true), [&](ezFeedBuffer& aBuffer) {
            fLetGo = aBuffer.Append(media.data(), media.size()) == Push::Closed;
        }));
        EXPECT_EQ(stream->GetSize(), 0U); // the window is full now
    }
    EXPECT_TRUE(fLetGo);
}

TEST(FeedStream, DestructionWakesAWriterThatWaitsForItsSource) {
    ScriptedFeed* stream = nullptr;
    ezCondition ready;
    stream = new ScriptedFeed(Window(100), [&](ezFeedBuffer& aBuffer) {
        ready.Wait();
        stream->mInterrupted.Wait();
        EXPECT_TRUE(aBuffer.IsInterrupted());
    });
    ready.Signal();
    stream->Release();
}

TEST(FeedStream, ItsThreadTakesNoSignals) {
    sigset_t blocked = {};
    ezCondition done;
    const Owned stream(new ScriptedFeed(Window(100), [&](ezFeedBuffer&) {
        pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
        done.Signal();
    }));
    done.Wait();
    EXPECT_EQ(sigismember(&blocked, SIGINT), 1);
    EXPECT_EQ(sigismember(&blocked, SIGPIPE), 1);
    sigset_t ours = {};
    pthread_sigmask(SIG_SETMASK, nullptr, &ours);
    EXPECT_EQ(sigismember(&ours, SIGINT), 0);
}

TEST(FeedStream, CancelEndsAReaderThatWaitsForBytesOrForTheSize) {
    for (const bool fWaitForSize : {false, true}) {
        for (int i = 0; i < 100; ++i) {
            auto* const feed = new ScriptedFeed(Window(64, fWaitForSize), [](ezFeedBuffer& aBuffer) {
                std::uint64_t position = 0;
                EXPECT_FALSE(aBuffer.WaitForMove(&position)) << "it lets the feed go too";
            });
            ezStreamMediaParserStream stream(feed, true);
            std::thread canceller([feed] { feed->Cancel(); });
            EXPECT_FALSE(stream.Open());
            canceller.join();
            EXPECT_FALSE(feed->IsOpened());
            EXPECT_EQ(feed->GetSize(), ezuint64(0));
            EXPECT_EQ(ReadOnce(*feed, 1).mStatus, ezStreamingStatus_InvalidState);
            EXPECT_FALSE(feed->HasFailed());
            feed->Cancel();
        }
    }
}
