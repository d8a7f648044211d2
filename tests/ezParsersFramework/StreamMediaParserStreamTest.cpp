#include "ez/StreamMediaParserStream.h"
#include "ez/FileMediaParserStream.h"

#include "support/Catchers.h"
#include "support/Record.h"
#include "support/ScriptedStream.h"
#include "support/Str.h"
#include "support/StreamProbe.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

const std::string& TheMedia() {
    static const std::string media = RandomMedia(60000);
    return media;
}

/// Every test of both ways of reading: true is the one that lends.
class StreamMediaParserStreamBothWays : public testing::TestWithParam<bool> {
protected:
    StreamMediaParserStreamBothWays() : mStream(TheMedia(), GetParam()) {}

    /// The call of a read that asks for so much.
    static std::string ReadCall(std::size_t aSize) {
        return (GetParam() ? "lend " : "read ") + std::to_string(aSize) + " flag 1";
    }
    /// The calls that belong to a read of so much.
    static Calls ReadCalls(std::size_t aSize) {
        return GetParam() ? Calls{"own buffer?", "lends 3?", ReadCall(aSize)}
                          : Calls{"own buffer?", ReadCall(aSize)};
    }

    ScriptedStream mStream;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(, StreamMediaParserStreamBothWays, testing::Bool(),
                         [](const auto& anInfo) { return anInfo.param ? "Lending" : "Copying"; });

// ---- construction ----

TEST(StreamMediaParserStream, ConstructionTakesTheNameAndRegistersAndReadsNothing) {
    ScriptedStream stream(TheMedia(), true, "http://host.example/a.b/Film.MPG");
    const StreamProbe adapter(&stream, false);
    EXPECT_EQ(stream.TakeCalls(), Calls{"register"});
    EXPECT_EQ(Str(adapter.GetFullPath()), "http://host.example/a.b/Film.MPG");
    EXPECT_EQ(Str(adapter.GetExtension()), "mpg");
    EXPECT_EQ(adapter.Stream(), &stream);
    EXPECT_FALSE(adapter.Owns());
    EXPECT_EQ(adapter.At(), 0U);
    EXPECT_EQ(adapter.Size(), 0U);
    EXPECT_EQ(adapter.SeekPos(), 0U);
    EXPECT_EQ(adapter.StreamPos(), 0U);
    EXPECT_TRUE(adapter.FieldsAreInOrder());
}

namespace {

/// Notes who is registered.
class RegistrationStream : public ScriptedStream {
public:
    using ScriptedStream::ScriptedStream;
    void RegisterThresholdCallBack(ezStreamThresholdCallBack aCallBack, void* aUserData) override {
        mCallBack = aCallBack;
        mUserData = aUserData;
        ScriptedStream::RegisterThresholdCallBack(aCallBack, aUserData);
    }
    void UnregisterThresholdCallBack(ezStreamThresholdCallBack aCallBack) override {
        mUnregistered = aCallBack;
        ScriptedStream::UnregisterThresholdCallBack(aCallBack);
    }
    ezStreamThresholdCallBack mCallBack = nullptr;
    ezStreamThresholdCallBack mUnregistered = nullptr;
    void* mUserData = nullptr;
};

} // namespace

TEST(StreamMediaParserStream, RegistersItselfAsTheUserDataOfTheFreeFunction) {
    RegistrationStream stream(TheMedia(), true);
    ezStreamMediaParserStream adapter(&stream, false);
    EXPECT_EQ(stream.mCallBack, sStreamThresholdCallBack);
    EXPECT_EQ(stream.mUserData, &adapter);
    adapter.Close();
    EXPECT_EQ(stream.mUnregistered, sStreamThresholdCallBack);
}

// ---- Open ----

TEST_P(StreamMediaParserStreamBothWays, OpenThenEverythingAt0AndAt8192IsTheMedia) {
    TemporaryFolder folder;
    ezFileMediaParserStream file{ezCString(folder.Write("media.bin", TheMedia()).c_str())};
    ASSERT_TRUE(file.Open());
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(adapter.Size(), TheMedia().size());
    constexpr std::size_t kSize = 32768;
    for (const std::size_t position : {0U, 8192U, 0U, 1U, 8191U}) {
        ASSERT_TRUE(file.Seek(position, ezMediaParserStream::SeekFromStart, false));
        ASSERT_TRUE(adapter.SeekLazily(position));
        const std::string expected = ReadExactly(file, kSize);
        EXPECT_EQ(expected, TheMedia().substr(position, kSize));
        EXPECT_EQ(ReadExactly(adapter, kSize), expected) << position;
    }
}

TEST_P(StreamMediaParserStreamBothWays, OpenFetchesTheStartAndLeavesTheStreamAtIt) {
    StreamProbe adapter(&mStream, false);
    mStream.TakeCalls();
    EXPECT_TRUE(adapter.Open());
    Calls expected = ReadCalls(8192);
    if (!GetParam()) {
        expected.emplace_back("seek 0"); // what was borrowed has moved nothing
    }
    expected.emplace_back("opened?");
    EXPECT_EQ(mStream.TakeCalls(), expected);
    EXPECT_EQ(mStream.GetPosition(), 0U);
    EXPECT_EQ(adapter.StreamPos(), 0U);
    EXPECT_EQ(adapter.SeekPos(), 0U);
    EXPECT_EQ(adapter.At(), 0U);
    EXPECT_EQ(ReadExactly(adapter, 8191), TheMedia().substr(0, 8191));
    EXPECT_EQ(mStream.TakeCalls(), Calls()) << "of the buffer";
}

TEST_P(StreamMediaParserStreamBothWays, OpenKeepsThePositionAndTheBufferAndPutsTheStreamToItsStart) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.SeekLazily(100));
    ASSERT_TRUE(adapter.SeekLazily(0));
    ASSERT_EQ(ReadExactly(adapter, 300), TheMedia().substr(0, 300));
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(adapter.At(), 300U);
    EXPECT_EQ(adapter.SeekPos(), 0U);
    EXPECT_EQ(adapter.StreamPos(), 0U);
    ASSERT_TRUE(adapter.SeekLazily(300));
    EXPECT_EQ(ReadExactly(adapter, 20000), TheMedia().substr(300, 20000));
}

TEST_P(StreamMediaParserStreamBothWays, OpenReadsWhereItStandsOnceTheBufferIsFilled) {
    ScriptedStream stream("m", GetParam());
    stream.mfSeeksAnywhere = true;
    StreamProbe adapter(&stream, false);
    ASSERT_TRUE(adapter.Open());
    ASSERT_TRUE(adapter.Seek(2, ezMediaParserStream::SeekFromCurrent, true));
    stream.TakeCalls();
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(adapter.At(), 2U) << "there is no byte to step over, and no way back from one";
    Calls expected = ReadCalls(1);
    expected.insert(expected.end(), {"seek 0", "opened?"});
    EXPECT_EQ(stream.TakeCalls(), expected);
}

TEST_P(StreamMediaParserStreamBothWays, OpenReadsWhereItStandsPastTheBuffer) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.SeekLazily(8192));
    mStream.TakeCalls();
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(adapter.At(), 8192U);
    Calls expected = ReadCalls(1);
    expected.insert(expected.begin(), "seek 8192");
    expected.insert(expected.end(), {"seek 0", "opened?"});
    EXPECT_EQ(mStream.TakeCalls(), expected);
    ASSERT_TRUE(adapter.SeekLazily(0));
    EXPECT_EQ(ReadExactly(adapter, 8191), TheMedia().substr(0, 8191)) << "filled by the first read within it";
}

TEST_P(StreamMediaParserStreamBothWays, OpenTellsWhetherTheStreamIsUsable) {
    StreamProbe adapter(&mStream, false);
    mStream.mfOpened = false;
    EXPECT_FALSE(adapter.Open());
    EXPECT_EQ(adapter.Size(), TheMedia().size()) << "what it tells is taken all the same";
    mStream.mfOpened = true;
    EXPECT_TRUE(adapter.Open());
}

TEST_P(StreamMediaParserStreamBothWays, OpenTakesTheSizeAnew) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(adapter.Size(), TheMedia().size());
    mStream.mfSizeKnown = false;
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(adapter.Size(), 0U);
}

TEST_P(StreamMediaParserStreamBothWays, OpenOfAnEmptyMediaSucceeds) {
    ScriptedStream empty("", GetParam());
    StreamProbe adapter(&empty, false);
    EXPECT_TRUE(adapter.Open());
    EXPECT_EQ(adapter.Size(), 0U);
    EXPECT_EQ(ReadExactly(adapter, 1), "");
    EXPECT_EQ(ReadUpTo(adapter, 1), "");
    EXPECT_EQ(adapter.At(), 0U);
}

TEST(StreamMediaParserStream, ARefusedSeekBackInOpenKeepsThePlaceWhereTheStreamStands) {
    ScriptedStream stream(TheMedia(), false);
    stream.mSeekStatus = ezStreamingStatus_NotSupported;
    StreamProbe adapter(&stream, false);
    EXPECT_TRUE(adapter.Open()) << "the stream is usable, if not everywhere";
    EXPECT_EQ(adapter.StreamPos(), 8192U);
    EXPECT_EQ(adapter.SeekPos(), 0U);
    EXPECT_EQ(ReadExactly(adapter, 100), TheMedia().substr(0, 100)) << "of the buffer";
    ASSERT_TRUE(adapter.SeekLazily(0));
    EXPECT_EQ(ReadExactly(adapter, 32768), "") << "no other bytes for those at 0";
    EXPECT_EQ(adapter.At(), 0U);
    EXPECT_EQ(ReadUpTo(adapter, 32768), "");
    EXPECT_EQ(adapter.At(), 0U);
    ASSERT_TRUE(adapter.SeekLazily(8192));
    EXPECT_EQ(ReadExactly(adapter, 20000), TheMedia().substr(8192, 20000)) << "where it stands it reads on";
    EXPECT_EQ(ReadExactly(adapter, 1000), TheMedia().substr(28192, 1000));
    ASSERT_TRUE(adapter.SeekLazily(8192));
    EXPECT_EQ(ReadExactly(adapter, 20000), "");
    EXPECT_EQ(adapter.StreamPos(), 29192U);
}

// ---- seeks ----

TEST_P(StreamMediaParserStreamBothWays, ALazySeekAsksTheStreamNothingUntilTheRead) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    mStream.TakeCalls();
    EXPECT_TRUE(adapter.SeekLazily(40000));
    EXPECT_TRUE(adapter.SeekLazily(20000));
    EXPECT_EQ(mStream.TakeCalls(), Calls());
    EXPECT_EQ(adapter.SeekPos(), 20000U);
    EXPECT_EQ(adapter.StreamPos(), 0U);
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10));
    Calls expected = ReadCalls(10);
    expected.insert(expected.begin(), "seek 20000");
    EXPECT_EQ(mStream.TakeCalls(), expected);
}

TEST_P(StreamMediaParserStreamBothWays, AnImmediateSeekAsksTheStreamNow) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    mStream.TakeCalls();
    EXPECT_TRUE(adapter.SeekNow(20000));
    EXPECT_EQ(mStream.TakeCalls(), Calls{"seek 20000"});
    EXPECT_EQ(adapter.StreamPos(), 20000U);
    EXPECT_FALSE(adapter.SeekNow(60001));
    EXPECT_EQ(mStream.TakeCalls(), Calls{"seek 60001"});
    EXPECT_EQ(adapter.At(), 20000U);
    EXPECT_EQ(adapter.SeekPos(), 60001U);
    EXPECT_EQ(adapter.StreamPos(), 20000U);
}

TEST_P(StreamMediaParserStreamBothWays, NoSeekIsAskedWhenTheStreamStandsRight) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    ASSERT_TRUE(adapter.SeekNow(20000));
    mStream.TakeCalls();
    EXPECT_TRUE(adapter.SeekNow(20000));
    EXPECT_TRUE(adapter.SeekLazily(30000));
    EXPECT_TRUE(adapter.SeekLazily(20000));
    EXPECT_TRUE(adapter.StreamSeek());
    EXPECT_EQ(mStream.TakeCalls(), Calls());
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10));
    EXPECT_EQ(mStream.TakeCalls(), ReadCalls(10));
}

TEST(StreamMediaParserStream, ReadsInARowSeekOnlyWhereBytesWereLent) {
    for (const bool fLending : {false, true}) {
        ScriptedStream stream(TheMedia(), fLending);
        StreamProbe adapter(&stream, false);
        ASSERT_TRUE(adapter.SeekNow(20000));
        ASSERT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10));
        stream.TakeCalls();
        EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20010, 10));
        EXPECT_EQ(stream.TakeCalls().front(), fLending ? "seek 20010" : "own buffer?");
    }
}

TEST_P(StreamMediaParserStreamBothWays, ARefusedSeekMakesTheReadGiveNothing) {
    for (int status = 1; status <= 11; ++status) {
        StreamProbe adapter(&mStream, false);
        mStream.mSeekStatus = ezStreamingStatus_NoError;
        ASSERT_TRUE(adapter.SeekNow(500));
        mStream.mSeekStatus = static_cast<ezStreamingStatus>(status);
        ASSERT_TRUE(adapter.MediaSeek(700, false));
        EXPECT_FALSE(adapter.StreamSeek());
        mStream.TakeCalls();
        std::string buffer(10, kUntouched);
        EXPECT_EQ(adapter.MediaRead(&buffer[0], 10), 0) << status;
        EXPECT_EQ(mStream.TakeCalls(), Calls{"seek 700"});
        EXPECT_EQ(buffer, std::string(10, kUntouched));
        EXPECT_EQ(adapter.StreamPos(), 500U);
        EXPECT_EQ(adapter.SeekPos(), 700U);
        EXPECT_FALSE(adapter.MediaSeek(800, true));
        EXPECT_EQ(adapter.StreamPos(), 500U);
    }
}

TEST_P(StreamMediaParserStreamBothWays, ALazySeekBeyondTheEndFailsOnceTheSizeIsKnown) {
    StreamProbe adapter(&mStream, false);
    for (const std::uint64_t beyond : {UINT64_C(60001), UINT64_MAX}) {
        EXPECT_TRUE(adapter.SeekLazily(beyond)) << "the size is not known before Open";
        EXPECT_EQ(adapter.SeekPos(), beyond);
    }
    ASSERT_TRUE(adapter.SeekLazily(0));
    ASSERT_TRUE(adapter.Open());
    EXPECT_TRUE(adapter.SeekLazily(60000));
    EXPECT_FALSE(adapter.SeekLazily(60001));
    EXPECT_EQ(adapter.At(), 60000U);
    EXPECT_EQ(adapter.SeekPos(), 60001U) << "kept, as in a file";
    EXPECT_EQ(ReadUpTo(adapter, 10), "");
}

TEST_P(StreamMediaParserStreamBothWays, AnUnknownSizeBecomesKnownByARead) {
    mStream.mfSizeKnown = false;
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(adapter.Size(), 0U);
    EXPECT_TRUE(adapter.SeekLazily(70000));
    EXPECT_EQ(ReadUpTo(adapter, 10), "");
    EXPECT_EQ(adapter.At(), 70000U);
    ASSERT_TRUE(adapter.SeekLazily(20000));
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10));
    EXPECT_EQ(adapter.Size(), 0U);
    char byte = kUntouched;
    EXPECT_FALSE(adapter.ReadFromEnd(std::size_t{1}, &byte));

    mStream.mfSizeKnown = true;
    ASSERT_TRUE(adapter.SeekLazily(20));
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20, 10));
    EXPECT_EQ(adapter.Size(), 0U) << "the buffer asks nobody";
    ASSERT_TRUE(adapter.SeekLazily(70000));
    ASSERT_TRUE(adapter.SeekLazily(20000));
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10));
    EXPECT_EQ(adapter.Size(), 60000U);
    EXPECT_FALSE(adapter.SeekLazily(70000));
    EXPECT_TRUE(adapter.ReadFromEnd(std::size_t{1}, &byte));
    EXPECT_EQ(byte, TheMedia().back());
}

TEST_P(StreamMediaParserStreamBothWays, ASizeOnceKnownStays) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    mStream.mfSizeKnown = false;
    ASSERT_TRUE(adapter.SeekLazily(20000));
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10));
    EXPECT_EQ(adapter.Size(), 60000U);
}

// ---- Close ----

TEST_P(StreamMediaParserStreamBothWays, CloseLeavesAStreamThatIsNotOwned) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    mStream.TakeCalls();
    adapter.Close();
    EXPECT_EQ(mStream.TakeCalls(), Calls{"unregister"});
    EXPECT_EQ(adapter.Stream(), &mStream);
    adapter.Close();
    ASSERT_TRUE(adapter.SeekLazily(20000));
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10)) << "still read";
}

TEST_P(StreamMediaParserStreamBothWays, CloseReleasesAStreamThatIsOwnedOnce) {
    bool fReleased = false;
    auto* stream = new ScriptedStream(TheMedia(), GetParam());
    stream->mReleased = &fReleased;
    {
        StreamProbe adapter(stream, true);
        ASSERT_TRUE(adapter.Open());
        EXPECT_TRUE(adapter.Owns());
        adapter.Close();
        EXPECT_TRUE(fReleased);
        EXPECT_EQ(adapter.Stream(), nullptr);
        fReleased = false;
        adapter.Close();
    }
    EXPECT_FALSE(fReleased);
}

TEST_P(StreamMediaParserStreamBothWays, DestructionCloses) {
    { const StreamProbe adapter(&mStream, false); }
    EXPECT_EQ(mStream.TakeCalls(), (Calls{"register", "unregister"}));
    bool fReleased = false;
    auto* stream = new ScriptedStream(TheMedia(), GetParam());
    stream->mReleased = &fReleased;
    { const StreamProbe adapter(stream, true); }
    EXPECT_TRUE(fReleased);
}

TEST_P(StreamMediaParserStreamBothWays, ClosedAgainItDoesNotTouchTheStream) {
    auto* stream = new ScriptedStream(TheMedia(), GetParam());
    {
        StreamProbe adapter(stream, false);
        ASSERT_TRUE(adapter.Open());
        stream->TakeCalls();
        adapter.Close();
        adapter.Close();
        EXPECT_EQ(stream->TakeCalls(), Calls{"unregister"});
        stream->Release(); // a stream that is not owned outlives the Close, not the adapter
    }
}

TEST_P(StreamMediaParserStreamBothWays, AClosedAdapterLeavesTheCallbackOfTheNextOne) {
    auto first = std::make_unique<StreamProbe>(&mStream, false);
    first->Close();
    StreamProbe second(&mStream, false);
    mStream.TakeCalls();
    first.reset();
    EXPECT_EQ(mStream.TakeCalls(), Calls{});
}

TEST_P(StreamMediaParserStreamBothWays, OpenedAgainItAsksWhereverTheStreamWasLeft) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    adapter.Close();
    ASSERT_EQ(mStream.Seek(600), ezStreamingStatus_NoError); // by the host, for itself
    ASSERT_TRUE(adapter.Open());
    ASSERT_TRUE(adapter.SeekLazily(0));
    EXPECT_EQ(ReadExactly(adapter, 9000), TheMedia().substr(0, 9000));
}

TEST_P(StreamMediaParserStreamBothWays, ASeekBeforeOpenDoesNotMoveTheStartThatIsKept) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.SeekLazily(5000));
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(adapter.At(), 5000U);
    ASSERT_TRUE(adapter.SeekLazily(0));
    EXPECT_EQ(ReadExactly(adapter, 2), TheMedia().substr(0, 2));
    ASSERT_TRUE(adapter.SeekLazily(5000));
    EXPECT_EQ(ReadExactly(adapter, 9000), TheMedia().substr(5000, 9000));
}

TEST_P(StreamMediaParserStreamBothWays, AShortCountThatBreaksTheContractLeavesTheStartThatShort) {
    StreamProbe adapter(&mStream, false);
    mStream.mOutcomes = {{ezStreamingStatus_NoError, 100}};
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(ReadExactly(adapter, 99), TheMedia().substr(0, 99));
    ASSERT_TRUE(adapter.SeekLazily(99));
    EXPECT_EQ(ReadExactly(adapter, 9000), TheMedia().substr(99, 9000)) << "what follows it is still there";
}

TEST_P(StreamMediaParserStreamBothWays, APositionThatWouldWrapAsksTheStreamForTheNextOne) {
    StreamProbe adapter(&mStream, false);
    mStream.mfSizeKnown = false;
    ASSERT_TRUE(adapter.Open());
    mStream.mOutcomes = {{ezStreamingStatus_NoError, 8}};
    mStream.mfSeeksAnywhere = true;
    ASSERT_TRUE(adapter.SeekLazily(ezuint64(UINT64_MAX - 1)));
    char bytes[8] = {};
    adapter.MediaRead(bytes, sizeof(bytes));
    EXPECT_EQ(adapter.SeekPos(), UINT64_MAX);
    mStream.TakeCalls();
    ASSERT_TRUE(adapter.SeekNow(6));
    EXPECT_EQ(mStream.TakeCalls(), Calls{"seek 6"});
}

TEST_P(StreamMediaParserStreamBothWays, OpenAfterCloseRegistersAgain) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    adapter.Close();
    mStream.TakeCalls();
    ASSERT_TRUE(adapter.Open());
    EXPECT_EQ(mStream.TakeCalls().front(), "register");
    ASSERT_TRUE(adapter.Open());
    const Calls again = mStream.TakeCalls();
    EXPECT_EQ(std::count(again.begin(), again.end(), "register"), 0) << "it is registered already";

    mStream.Withhold();
    mStream.mOnNothing = [this] {
        mStream.Finish();
        mStream.Arrive(30000);
        mStream.Fire();
    };
    ASSERT_TRUE(adapter.SeekLazily(20000));
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10)) << "and waits again";
}

TEST_P(StreamMediaParserStreamBothWays, AReadThatFindsNothingAfterCloseGivesNothing) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    adapter.Close();
    mStream.Withhold();
    ASSERT_TRUE(adapter.SeekLazily(20000));
    EXPECT_EQ(ReadUpTo(adapter, 10), "");
    EXPECT_EQ(ReadExactly(adapter, 10), "");
    EXPECT_EQ(adapter.At(), 20000U);
    EXPECT_EQ(adapter.SeekPos(), 20000U);
    EXPECT_EQ(adapter.StreamPos(), 20000U);
    mStream.Arrive(30000);
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10));
}

// ---- no stream ----

namespace {

void ExpectNothing(StreamProbe& anAdapter, const std::string& anInfo) {
    AssertCatcher assertions;
    EXPECT_EQ(anAdapter.Stream(), nullptr);
    EXPECT_FALSE(anAdapter.Open());
    EXPECT_FALSE(anAdapter.StreamSeek());
    EXPECT_FALSE(anAdapter.SeekLazily(0));
    EXPECT_FALSE(anAdapter.SeekNow(0));
    EXPECT_FALSE(anAdapter.SeekLazily(30000));
    std::string buffer(9000, kUntouched);
    EXPECT_EQ(anAdapter.MediaRead(&buffer[0], 10), 0);
    EXPECT_FALSE(anAdapter.ReadFrom(0, std::size_t{10}, &buffer[0]));
    EXPECT_EQ(ReadExactly(anAdapter, 9000), "");
    EXPECT_EQ(ReadUpTo(anAdapter, 9000), "");
    EXPECT_EQ(anAdapter.At(), 0U);
    EXPECT_EQ(buffer, std::string(9000, kUntouched));
    ezMediaInfo info;
    anAdapter.CopyInfo(&info);
    EXPECT_EQ(DumpRecord(&info), anInfo);
    anAdapter.CopyInfo(nullptr);
    anAdapter.ThresholdReached();
    anAdapter.Close();
    EXPECT_EQ(assertions.Failures(), std::vector<std::string>());
}

} // namespace

TEST(StreamMediaParserStream, WithoutAStreamThereIsNothing) {
    for (const bool fOwn : {false, true}) {
        StreamProbe adapter(nullptr, fOwn);
        EXPECT_EQ(Str(adapter.GetFullPath()), "");
        EXPECT_EQ(Str(adapter.GetExtension()), "");
        ExpectNothing(adapter, "");
        EXPECT_FALSE(adapter.ReadFromEnd(std::size_t{0}, nullptr));
    }
}

TEST_P(StreamMediaParserStreamBothWays, AfterTheReleaseThereIsNothingNew) {
    StreamProbe unread(new ScriptedStream(TheMedia(), GetParam(), "http://host.example/Film.MPG"), true);
    unread.Close();
    ExpectNothing(unread, "fe=\"mpg\"\npath=\"http://host.example/Film.MPG\"\n");
}

TEST_P(StreamMediaParserStreamBothWays, AfterTheReleaseTheBufferIsStillThere) {
    StreamProbe adapter(new ScriptedStream(TheMedia(), GetParam()), true);
    ASSERT_TRUE(adapter.Open());
    adapter.Close();
    EXPECT_FALSE(adapter.SeekLazily(0));
    EXPECT_EQ(ReadExactly(adapter, 100), TheMedia().substr(0, 100));
    EXPECT_EQ(ReadExactly(adapter, 9000), "");
    EXPECT_EQ(adapter.At(), 100U);
}

// ---- CopyInfo ----

TEST_P(StreamMediaParserStreamBothWays, CopyInfoStartsTheStreamThenTellsTheBasesFactsThenTheStreams) {
    ScriptedStream stream(TheMedia(), GetParam(), "http://host.example/Film.MPG");
    StreamProbe adapter(&stream, false);
    stream.TakeCalls();
    ezMediaInfo info;
    info.mLastModificationTime = ezDateTime(1, 0);
    adapter.CopyInfo(&info);
    Calls expected = ReadCalls(8192);
    expected.emplace_back("copy info");
    EXPECT_EQ(stream.TakeCalls(), expected);
    const std::string ofBase = "fe=\"mpg\"\nfs=60000\n";
    const std::string path = "path=\"http://host.example/Film.MPG\"\n";
    EXPECT_EQ(stream.GetRecordSeen(), ofBase + path);
    EXPECT_EQ(DumpRecord(&info), ofBase + "mt=\"video/x-scripted\"\n" + path);
    EXPECT_EQ(adapter.At(), 0U);
    EXPECT_EQ(adapter.SeekPos(), 0U);
}

TEST_P(StreamMediaParserStreamBothWays, CopyInfoReturnsToThePosition) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    ASSERT_TRUE(adapter.SeekLazily(20000));
    ezMediaInfo info;
    adapter.CopyInfo(&info);
    EXPECT_EQ(adapter.At(), 20000U);
    EXPECT_EQ(ReadExactly(adapter, 10), TheMedia().substr(20000, 10));
    ASSERT_TRUE(adapter.SeekLazily(60000));
    adapter.CopyInfo(&info);
    EXPECT_EQ(adapter.At(), 60000U);
}

TEST_P(StreamMediaParserStreamBothWays, CopyInfoWithoutTheStreamLeavesThePosition) {
    StreamProbe adapter(new ScriptedStream(TheMedia(), GetParam(), "/media/a.bin"), true);
    ASSERT_TRUE(adapter.Open());
    adapter.Close();
    ezMediaInfo info;
    adapter.CopyInfo(&info); // its byte would come from the buffer, and nothing could be sought back
    EXPECT_EQ(adapter.At(), 0U);
    EXPECT_EQ(Str(info.mFullPath), "/media/a.bin");
    EXPECT_EQ(Str(info.GetCString(kezInfo_FileExtension, "")), "bin");
}

TEST_P(StreamMediaParserStreamBothWays, CopyInfoTellsNoUnknownSize) {
    mStream.mfSizeKnown = false;
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    ezMediaInfo info;
    adapter.CopyInfo(&info);
    EXPECT_EQ(DumpRecord(&info), "fe=\"bin\"\nmt=\"video/x-scripted\"\npath=\"/media/scripted.bin\"\n");
    mStream.mfSizeKnown = true;
    ASSERT_TRUE(adapter.SeekLazily(20000));
    adapter.CopyInfo(&info); // its byte comes from the stream, and the size with it
    EXPECT_EQ(DumpRecord(&info),
              "fe=\"bin\"\nfs=60000\nmt=\"video/x-scripted\"\npath=\"/media/scripted.bin\"\n");
}

TEST_P(StreamMediaParserStreamBothWays, CopyInfoLeavesASizeAndAnExtensionThatAreThere) {
    StreamProbe adapter(&mStream, false);
    ASSERT_TRUE(adapter.Open());
    ezMediaInfo info;
    info.Set(kezInfo_FileSize, ezuint64(7), true);
    info.Set(kezInfo_FileExtension, "mp3", true);
    info.Set(kezInfo_MimeType, "audio/mpeg", true);
    adapter.CopyInfo(&info);
    EXPECT_EQ(DumpRecord(&info), "fe=\"mp3\"\nfs=7\nmt=\"audio/mpeg\"\npath=\"/media/scripted.bin\"\n");
}

TEST_P(StreamMediaParserStreamBothWays, CopyInfoOfNoRecordAsksNothing) {
    StreamProbe adapter(&mStream, false);
    mStream.TakeCalls();
    adapter.CopyInfo(nullptr);
    EXPECT_EQ(mStream.TakeCalls(), Calls());
}
