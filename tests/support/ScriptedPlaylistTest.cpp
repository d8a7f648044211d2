#include "support/ScriptedPlaylist.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

/// Notes the location, position, next position and index of each entry; stops at "stop".
bool sNote(PlaylistParserEntry* anEntry, void* aUserData) {
    Calls* notes = static_cast<Calls*>(aUserData);
    if (anEntry == nullptr) {
        notes->push_back("null");
        return false;
    }
    notes->push_back(Str(anEntry->mURI + " " + anEntry->mStreamPos.ToCString() + " " +
                         anEntry->mNextEntryStreamPos.ToCString() + " " +
                         ezuint64(anEntry->mRelativeEntryIndex).ToCString()));
    return anEntry->mURI == "stop";
}

class ScriptedPlaylistTest : public testing::Test {
protected:
    ScriptedPlaylistTest() {
        mPlaylist.Add("A", "a");
        mPlaylist.Add("S", "stop", 1, "#T", 5);
        mPlaylist.Add("B", "b");
    }

    Calls Walk() {
        Calls notes;
        mPlaylist.ParseAll(sNote, &notes);
        return notes;
    }

    ScriptedPlaylist mPlaylist;
};

} // namespace

TEST_F(ScriptedPlaylistTest, WalksFromWhereItStandsUntilItIsStopped) {
    EXPECT_EQ(Walk(), Calls({"a 0 10 0", "stop 10 15 1"}));
    EXPECT_TRUE(mPlaylist.SeekBytes(11));
    EXPECT_EQ(Walk(), Calls({"b 15 18446744073709551615 0"}));
    EXPECT_TRUE(mPlaylist.SeekBytes(mPlaylist.GetLength()));
    EXPECT_EQ(Walk(), Calls());
    EXPECT_EQ(mPlaylist.mCalls,
              Calls({"walk", "entry 0", "entry 10", "seek 11", "walk", "entry 15", "seek 25", "walk"}));
}

TEST_F(ScriptedPlaylistTest, MisbehavesWhereItIsTold) {
    mPlaylist.mfGoesOn = true;
    mPlaylist.mfReportsNull = true;
    EXPECT_EQ(Walk(), Calls({"null", "a 0 10 0", "stop 10 15 1", "b 15 18446744073709551615 2"}));
    EXPECT_FALSE(mPlaylist.SeekBytes(26));
    mPlaylist.mfSeekFails = true;
    EXPECT_FALSE(mPlaylist.SeekBytes(0));
    EXPECT_EQ(mPlaylist.GetRelativeEntryIndex(), 3U) << "a seek that fails counts nothing anew";
}
