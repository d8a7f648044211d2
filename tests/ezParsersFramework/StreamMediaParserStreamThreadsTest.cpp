#include "ez/StreamMediaParserStream.h"

#include "support/ScriptedStream.h"
#include "support/StreamProbe.h"

#include "ezPlatform/base/Condition.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <string>
#include <thread>

// A reader on this thread and a stream whose bytes come on another.

namespace {

const std::string& TheMedia() {
    static const std::string media = RandomMedia(60000);
    return media;
}

class StreamMediaParserStreamThreads : public testing::TestWithParam<bool> {
protected:
    StreamMediaParserStreamThreads() : mStream(TheMedia(), GetParam()) { mStream.Withhold(); }

    /// All of the media in pieces of aSize, a callback for each, then the end.
    void Deliver(std::size_t aSize) {
        for (std::size_t arrived = 0; arrived < TheMedia().size(); arrived += aSize) {
            mStream.Arrive(aSize);
            mStream.Fire();
        }
        mStream.Finish();
        mStream.Fire();
    }

    ScriptedStream mStream;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(, StreamMediaParserStreamThreads, testing::Bool(),
                         [](const auto& anInfo) { return anInfo.param ? "Lending" : "Copying"; });

TEST_P(StreamMediaParserStreamThreads, ASlowWriterIsReadLikeAFile) {
    for (const std::size_t piece : {1U, 188U, 1316U, 8192U, 60000U}) {
        mStream.Withhold();
        ASSERT_EQ(mStream.Seek(0), ezStreamingStatus_NoError);
        StreamProbe adapter(&mStream, false);
        std::thread writer([this, piece] { Deliver(piece); });
        EXPECT_TRUE(adapter.Open());
        ASSERT_TRUE(adapter.SeekLazily(0));
        std::string read;
        for (std::string bytes; !(bytes = ReadUpTo(adapter, 1000)).empty();) {
            read += bytes;
        }
        writer.join();
        EXPECT_EQ(read, TheMedia()) << piece;
    }
}

TEST_P(StreamMediaParserStreamThreads, NoWakeUpIsLostBetweenTheLookAndTheWait) {
    ezCondition found;  // the reader has found nothing, and does not wait yet
    ezCondition fired;  // the callback has come and gone
    bool fStop = false; // ordered by the conditions
    mStream.mOnNothing = [&] {
        found.Signal();
        fired.Wait();
    };
    std::thread writer([&] {
        for (;;) {
            found.Wait();
            if (fStop) {
                return;
            }
            mStream.Arrive(10);
            mStream.Fire();
            fired.Signal();
        }
    });
    StreamProbe adapter(&mStream, false);
    for (std::size_t i = 0; i < 1000; ++i) {
        char buffer[10];
        EXPECT_EQ(adapter.MediaRead(buffer, 10), 10);
        EXPECT_EQ(std::string(buffer, 10), TheMedia().substr(i * 10, 10));
    }
    fStop = true;
    found.Signal();
    writer.join();
}

TEST_P(StreamMediaParserStreamThreads, NoWakeUpIsLostHoweverLookAndWaitFallTogether) {
    std::atomic<std::size_t> wanted{0};
    mStream.mOnNothing = [&wanted] { ++wanted; };
    std::atomic<bool> fStop{false};
    std::thread writer([&] { // answers a look as soon as it sees it: before, in or after the wait
        for (std::size_t answered = 0; !fStop;) {
            if (wanted != answered) {
                ++answered;
                mStream.Arrive(10);
                mStream.Fire();
            }
        }
    });
    StreamProbe adapter(&mStream, false);
    for (std::size_t i = 0; i < 3000; ++i) {
        char buffer[10];
        EXPECT_EQ(adapter.MediaRead(buffer, 10), 10);
    }
    fStop = true;
    writer.join();
}

TEST_P(StreamMediaParserStreamThreads, AReaderThatWaitsLooksOnlyWhenItIsCalled) {
    std::atomic<std::size_t> looks{0};
    mStream.mOnNothing = [&looks] { ++looks; };
    StreamProbe adapter(&mStream, false);
    std::thread writer([&] {
        while (looks == 0) {
            std::this_thread::yield();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(30)); // time in which it would look for nothing
        mStream.Arrive(10);
        mStream.Fire();
    });
    char buffer[10];
    EXPECT_EQ(adapter.MediaRead(buffer, 10), 10);
    writer.join();
    EXPECT_EQ(looks, 1U);
}

TEST_P(StreamMediaParserStreamThreads, TheEndAndAnErrorWakeTheReader) {
    for (const bool fError : {false, true}) {
        ScriptedStream stream(TheMedia(), GetParam());
        stream.Withhold();
        stream.Arrive(5);
        ezCondition found;
        stream.mOnNothing = [&found] { found.Signal(); };
        std::thread writer([&] {
            found.Wait();
            if (fError) {
                stream.Fail(ezStreamingStatus_Interrupted);
            } else {
                stream.Finish();
            }
            stream.Fire();
        });
        StreamProbe adapter(&stream, false);
        char buffer[10];
        const ezFileOffset count = adapter.MediaRead(buffer, 10);
        writer.join();
        EXPECT_EQ(count, fError ? (GetParam() ? -1 : 0) : 5);
    }
}

namespace {

/// A stream that fires from a thread of its own as long as it lives, as one over a network does.
class FiringStream : public ScriptedStream {
public:
    explicit FiringStream(bool afLending)
        : ScriptedStream(TheMedia(), afLending), mThread([this] {
              while (!mfStop) {
                  Fire();
                  ++mFired;
                  std::this_thread::yield(); // the mutex is not fair
              }
          }) {}
    ~FiringStream() override {
        mfStop = true;
        mThread.join();
    }
    /// Returns when a callback has been called since.
    void AwaitFiring() const {
        for (const std::size_t fired = mFired; mFired < fired + 2;) {
            std::this_thread::yield();
        }
    }

private:
    std::atomic<bool> mfStop{false};
    std::atomic<std::size_t> mFired{0};
    std::thread mThread;
};

} // namespace

TEST_P(StreamMediaParserStreamThreads, AnAdapterMayGoWhileTheCallBackFires) {
    FiringStream stream(GetParam());
    for (int i = 0; i < 500; ++i) {
        StreamProbe adapter(&stream, false);
        if (i % 10 == 0) {
            stream.AwaitFiring();
        }
        if (i % 3 == 0) {
            adapter.Close();
            EXPECT_TRUE(adapter.Open());
        }
    }
}

TEST_P(StreamMediaParserStreamThreads, AnOwnedStreamMayGoWhileTheCallBackFires) {
    for (int i = 0; i < 100; ++i) {
        auto* stream = new FiringStream(GetParam());
        StreamProbe adapter(stream, true);
        EXPECT_TRUE(adapter.Open());
        stream->AwaitFiring();
        if (i % 2 == 0) {
            adapter.Close();
            EXPECT_FALSE(adapter.Open());
        }
    }
}

TEST_P(StreamMediaParserStreamThreads, AReaderWhoseStreamFiresForNothingReadsOn) {
    FiringStream stream(GetParam());
    StreamProbe adapter(&stream, false);
    stream.Withhold();
    std::size_t looks = 0;
    stream.mOnNothing = [&] {
        if (++looks % 20 == 0) {
            stream.Arrive(100);
        }
    };
    ASSERT_TRUE(adapter.SeekLazily(0));
    EXPECT_EQ(ReadExactly(adapter, 9000), TheMedia().substr(0, 9000));
}
