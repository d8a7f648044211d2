#include "support/ScriptedStream.h"

#include "support/Str.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

const char* const kDigits = "0123456789";

using Calls = std::vector<std::string>;

/// What one read gave: the status, the count and the bytes.
std::string Take(ScriptedStream& aStream, std::size_t aSize) {
    std::string buffer(aSize + 4, '#');
    std::size_t count = aSize;
    const int status = aStream.Read(&buffer[0], &count, ezStreamReadFlag_Whole);
    return std::to_string(status) + " " + std::to_string(count) + " " +
           buffer.substr(0, buffer.find_last_not_of('#') + 1);
}

std::string Lend(ScriptedStream& aStream, std::size_t aSize) {
    const void* data = nullptr;
    std::size_t count = aSize;
    const int status = aStream.LendingRead(&data, &count, ezStreamReadFlag_Whole);
    const std::size_t lent = count < aSize ? count : aSize;
    return std::to_string(status) + " " + std::to_string(count) + " " +
           (data != nullptr ? std::string(static_cast<const char*>(data), lent) : std::string("null"));
}

} // namespace

TEST(ScriptedStream, GivesItsContentAndThenTheEnd) {
    ScriptedStream stream(kDigits, false);
    EXPECT_EQ(Take(stream, 4), "0 4 0123");
    EXPECT_EQ(Take(stream, 6), "0 6 456789") << "just up to the end is not the end yet";
    EXPECT_EQ(Take(stream, 1), "1 0 ");
    EXPECT_EQ(stream.Seek(7), ezStreamingStatus_NoError);
    EXPECT_EQ(Take(stream, 100), "1 3 789");
    EXPECT_EQ(stream.Seek(10), ezStreamingStatus_NoError);
    EXPECT_EQ(stream.Seek(11), ezStreamingStatus_OutOfRange);
    EXPECT_EQ(stream.GetPosition(), 10U);
}

TEST(ScriptedStream, LendingDoesNotMoveIt) {
    ScriptedStream stream(kDigits, true);
    EXPECT_EQ(Lend(stream, 4), "0 4 0123");
    EXPECT_EQ(Lend(stream, 100), "1 10 0123456789");
    EXPECT_EQ(stream.GetPosition(), 0U);
}

TEST(ScriptedStream, WhatHasNotArrivedIsNothingHoweverMuchOfItIsThere) {
    for (const bool fLending : {false, true}) {
        ScriptedStream stream(kDigits, fLending);
        const auto read = fLending ? Lend : Take;
        int nothings = 0;
        stream.mOnNothing = [&nothings] { ++nothings; };
        stream.Withhold();
        EXPECT_EQ(read(stream, 4), "0 0 ");
        stream.Arrive(3);
        EXPECT_EQ(read(stream, 4), "0 0 ");
        EXPECT_EQ(nothings, 2);
        stream.Arrive(1);
        EXPECT_EQ(read(stream, 4), "0 4 0123");
        EXPECT_EQ(stream.Seek(9), ezStreamingStatus_NoError);
        EXPECT_EQ(read(stream, 1), "0 0 ");
        EXPECT_EQ(nothings, 3);
        stream.Finish();
        EXPECT_EQ(read(stream, 1), "1 0 ");
        EXPECT_EQ(stream.Seek(2), ezStreamingStatus_NoError);
        EXPECT_EQ(read(stream, 8), "1 2 23") << "the media ended early";
        EXPECT_EQ(nothings, 3);
    }
}

TEST(ScriptedStream, WhatNeverArrivesIsTheFailure) {
    ScriptedStream stream(kDigits, false);
    stream.Withhold();
    stream.Arrive(4);
    stream.Fail(ezStreamingStatus_Interrupted);
    EXPECT_EQ(Take(stream, 4), "0 4 0123");
    EXPECT_EQ(Take(stream, 1), "7 0 ");
    EXPECT_EQ(stream.GetPosition(), 4U);
}

TEST(ScriptedStream, OutcomesGoBeforeTheStreamItself) {
    ScriptedStream copying(kDigits, false);
    copying.mOutcomes = {{ezStreamingStatus_NoError, 99}, {ezStreamingStatus_ReadError, 2}};
    EXPECT_EQ(Take(copying, 3), "0 99 012") << "told as scripted, but no byte more than asked";
    EXPECT_EQ(Take(copying, 3), "8 2 34");
    EXPECT_EQ(Take(copying, 3), "0 3 345") << "an error moves nothing";

    ScriptedStream lending(kDigits, true);
    lending.mOutcomes = {{ezStreamingStatus_EOS, 99}, {ezStreamingStatus_NoError, 3, true}};
    EXPECT_EQ(Lend(lending, 3), "1 99 012");
    EXPECT_EQ(Lend(lending, 3), "0 3 null");
    EXPECT_EQ(Lend(lending, 3), "0 3 012");
}

TEST(ScriptedStream, RefusesSeeksWhereItIsTold) {
    ScriptedStream stream(kDigits, false);
    stream.mSeekStatus = ezStreamingStatus_NotSupported;
    EXPECT_EQ(stream.Seek(3), ezStreamingStatus_NotSupported);
    EXPECT_EQ(stream.GetPosition(), 0U);
}

TEST(ScriptedStream, NotesTheCalls) {
    ScriptedStream stream(kDigits, true);
    Take(stream, 4);
    Lend(stream, 5);
    stream.Seek(6);
    stream.HasOwnBuffer();
    stream.CanLend(3);
    stream.IsOpened();
    stream.RegisterThresholdCallBack(nullptr, nullptr);
    stream.UnregisterThresholdCallBack(nullptr);
    ezMediaInfo info;
    stream.CopyInfo(&info);
    EXPECT_EQ(stream.TakeCalls(), (Calls{"read 4 flag 1", "lend 5 flag 1", "seek 6", "own buffer?",
                                         "lends 3?", "opened?", "register", "unregister", "copy info"}));
    EXPECT_EQ(stream.TakeCalls(), Calls());
    EXPECT_EQ(stream.GetRecordSeen(), "");
    EXPECT_EQ(Str(info.GetCString(kezInfo_MimeType, "")), "video/x-scripted");
}

TEST(ScriptedStream, TellsOfItsMedia) {
    ScriptedStream stream(kDigits, true, "http://host/Film.MPG");
    EXPECT_EQ(Str(stream.GetURI()), "http://host/Film.MPG");
    EXPECT_EQ(Str(stream.GetExtension()), "MPG");
    EXPECT_EQ(stream.GetSize().ToUInt64(), 10U);
    stream.mfSizeKnown = false;
    EXPECT_EQ(stream.GetSize().ToUInt64(), 0U);
}

TEST(ScriptedStream, ReleaseIsSeen) {
    bool fReleased = false;
    ScriptedStream* stream = new ScriptedStream(kDigits, true);
    stream->mReleased = &fReleased;
    stream->Release();
    EXPECT_TRUE(fReleased);
}
