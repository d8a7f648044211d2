#include "ezPlaylists/Playlists.h"

#include "ez/PlaylistParserFactory.h"

#include "companions/ezPlaylists/PlaylistKit.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>

// Playlists that are read as a whole, from streams that fail on the way.

namespace {

constexpr std::size_t kEntries = 2000;
constexpr std::size_t kBehindTheEnd = 10; ///< so many bytes before the end the stream fails

std::string Playlist() {
    std::string text = "[playlist]\n";
    for (std::size_t i = 1; i <= kEntries; ++i) {
        text +=
            "File" + std::to_string(i) + "=a song with a rather long name " + std::to_string(i) + ".mp3\n";
    }
    return text;
}

class IndexedPlaylistFailures : public testing::Test {
protected:
    IndexedPlaylistFailures() {
        RegisterPlaylistParsers(mFactory);
        mParser.reset(mFactory.NewPlaylistParser(mStream, "", "pls"));
    }

    /// Steps from entry to entry, as a server does that hands out one at a time.
    std::size_t Step() {
        std::size_t count = 0;
        PlaylistParserEntry entry = SomeEntry();
        for (bool fMore = mParser->FetchEntryAtPos(0, &entry); fMore;
             fMore = mParser->FetchNextEntry(&entry)) {
            ++count;
        }
        return count;
    }
    bool Has(std::size_t anIndex) {
        PlaylistParserEntry entry = SomeEntry();
        return mParser->FetchEntryAtIndex(static_cast<uint32>(anIndex), &entry);
    }

    const std::string mText = Playlist();
    const std::size_t mFailing = mText.size() - kBehindTheEnd;
    ScriptedStream* mStream = new ScriptedStream(mText, ScriptedStream::kNever, mFailing);
    const ezStreamOwner mOwner{mStream};
    PlaylistParserFactory mFactory;
    std::unique_ptr<PlaylistParser> mParser;
};

TEST_F(IndexedPlaylistFailures, AWalkOfStepsReadsOnce) {
    EXPECT_EQ(Step(), kEntries - 1);
    EXPECT_LE(mStream->GetBytes(), mText.size());
}

TEST_F(IndexedPlaylistFailures, EachWalkFromTheStartReadsOnceMoreAndNoFurther) {
    for (std::size_t walks = 1; walks <= 3; ++walks) {
        EXPECT_EQ(Step(), kEntries - 1);
        EXPECT_LE(mStream->GetBytes(), walks * mText.size());
    }
}

TEST_F(IndexedPlaylistFailures, WhatWasReadIsServedByAStreamThatRefusesToMoveSince) {
    PlaylistParserEntry entry = SomeEntry();
    ASSERT_TRUE(mParser->FetchEntryAtPos(0, &entry));
    mStream->SetSeekable(false);
    EXPECT_EQ(Step(), kEntries - 1);
    EXPECT_EQ(WalkFrom(*mParser, 0).size(), kEntries - 1);
}

TEST_F(IndexedPlaylistFailures, AReadThatGetsLessFarTakesNothingAway) {
    EXPECT_EQ(Step(), kEntries - 1);
    mStream->SetFailingAt(mText.size() / 2);
    EXPECT_EQ(Step(), kEntries - 1);
    EXPECT_TRUE(Has(kEntries - 2));
}

TEST_F(IndexedPlaylistFailures, AReadThatGetsFurtherCounts) {
    mStream->SetFailingAt(mText.size() / 2);
    EXPECT_LT(Step(), kEntries - 1);
    mStream->SetFailingAt(mFailing);
    EXPECT_EQ(Step(), kEntries - 1);
    mStream->SetFailingAt(ScriptedStream::kNever);
    EXPECT_EQ(Step(), kEntries);
    const std::size_t bytes = mStream->GetBytes();
    EXPECT_EQ(Step(), kEntries);
    EXPECT_EQ(mStream->GetBytes(), bytes);
}

TEST_F(IndexedPlaylistFailures, AnEntryByItsIndexIsServedFromWhatTheOperationRead) {
    EXPECT_TRUE(Has(kEntries - 2));
    EXPECT_LE(mStream->GetBytes(), mText.size());
    EXPECT_TRUE(Has(0));
    EXPECT_LE(mStream->GetBytes(), mText.size());
}

TEST_F(IndexedPlaylistFailures, WhatWasNotReadIsFoundOnceTheStreamServesAgain) {
    PlaylistParserEntry last = SomeEntry();
    const std::uint64_t pos = mText.rfind("File");
    EXPECT_FALSE(Has(kEntries - 1));
    EXPECT_FALSE(mParser->FetchEntryAtPos(pos, &last));
    mStream->SetFailingAt(ScriptedStream::kNever);
    bool fFound = false;
    for (int tries = 0; tries < 4 && !fFound; ++tries) {
        fFound = mParser->FetchEntryAtPos(pos, &last);
    }
    EXPECT_TRUE(fFound);
    EXPECT_TRUE(Has(kEntries - 1));
}

TEST_F(IndexedPlaylistFailures, RequestsInVainReadTheMoreSeldomTheMoreThereWere) {
    for (int tries = 0; tries < 1000; ++tries) {
        EXPECT_FALSE(Has(kEntries - 1));
    }
    EXPECT_LE(mStream->GetBytes(), 12 * mText.size());
    mStream->SetFailingAt(ScriptedStream::kNever);
    EXPECT_EQ(Step(), kEntries); // a walk does not wait
}

} // namespace
