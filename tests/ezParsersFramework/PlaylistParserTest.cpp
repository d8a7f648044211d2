#include "ez/PlaylistParser.h"

#include "support/Catchers.h"
#include "support/ScriptedPlaylist.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"
#include "support/WorkingDirectory.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

/// Everything of an entry in one line.
std::string Described(const PlaylistParserEntry& anEntry) {
    return Str(anEntry.mTitle) + "|" + Str(anEntry.mURI) + "|" + std::to_string(anEntry.mDuration) + "|" +
           std::to_string(anEntry.mStreamPos.ToUInt64()) + "|" +
           (anEntry.mNextEntryStreamPos == kezuint64_Max
                ? "last"
                : std::to_string(anEntry.mNextEntryStreamPos.ToUInt64())) +
           "|" + std::to_string(anEntry.mRelativeEntryIndex) + "|" + Str(anEntry.mSpecificTags);
}

/// An entry whose every field is taken.
PlaylistParserEntry Used() {
    PlaylistParserEntry entry;
    entry.mTitle = "old title";
    entry.mURI = "old.mp3";
    entry.mDuration = 7;
    entry.mStreamPos = 70;
    entry.mNextEntryStreamPos = 77;
    entry.mRelativeEntryIndex = 5;
    entry.mSpecificTags = "#OLD";
    return entry;
}

const char* const kUsed = "old title|old.mp3|7|70|77|5|#OLD";

/// Three entries at 0, 10 and 30.
class PlaylistParserFetch : public testing::Test {
protected:
    PlaylistParserFetch() {
        mPlaylist.Add("One", "one.mp3", 61, "#A");
        mPlaylist.Add("", "http://h/two.mp3", 0, "", 20);
        mPlaylist.Add("Three", "c/three.mp3", 63, "#C");
    }

    ScriptedPlaylist mPlaylist;
    PlaylistParserEntry mEntry = Used();
};

PlaylistParserEntry Entry(const std::string& aTitle, const std::string& aURI, const ezuint64& aPos = 1234) {
    PlaylistParserEntry entry;
    entry.mTitle = Bytes(aTitle);
    entry.mURI = Bytes(aURI);
    entry.mStreamPos = aPos;
    return entry;
}

/// The 55 bytes of an entry at position 1234.
std::string Line(const std::string& aTitle, const std::string& aURI) {
    const PlaylistParserEntry entry = Entry(aTitle, aURI);
    return Str(PlaylistParser::GetURLFor("", &entry));
}

const std::string kAt1234 = "00000000000000001234";

std::string Zeros(std::size_t aCount) {
    return std::string(aCount, '0');
}

/// The title that an entry without one is given.
std::string Fixed(const std::string& aURI) {
    PlaylistParserEntry entry = Entry("", aURI);
    PlaylistParser::FixEntry(&entry);
    EXPECT_EQ(Str(entry.mURI), aURI);
    return Str(entry.mTitle);
}

/// The URL of a location in a local playlist.
std::string LocalURL(const char* aPlaylist, const std::string& aURI) {
    ScriptedPlaylist playlist;
    playlist.SetFilePath(ezPathName::MakeFilePath(aPlaylist));
    return Str(playlist.GetFullURLFor(Bytes(aURI)));
}

/// The URL of a location in a playlist that came from a URL.
std::string RemoteURL(const char* aParentURL, const std::string& aURI) {
    ScriptedPlaylist playlist(aParentURL);
    playlist.SetFilePath(ezPathName::MakeFilePath("/m/local.m3u"));
    return Str(playlist.GetFullURLFor(Bytes(aURI)));
}

uint32 Address(std::uint8_t aFirst, std::uint8_t aSecond, std::uint8_t aThird, std::uint8_t aFourth) {
    const std::uint8_t bytes[4] = {aFirst, aSecond, aThird, aFourth};
    uint32 address = 0;
    std::memcpy(&address, bytes, sizeof address);
    return address;
}

} // namespace

TEST(PlaylistParserNew, IsEmptyAndWithoutAParent) {
    const ScriptedPlaylist playlist;
    EXPECT_FALSE(playlist.GetFilePath().IsValid());
    EXPECT_TRUE(playlist.GetMimeType().IsEmpty());
    EXPECT_EQ(playlist.GetRelativeEntryIndex(), 0U);
    EXPECT_EQ(playlist.GetParentURL(), nullptr);
    EXPECT_TRUE(std::has_virtual_destructor<PlaylistParser>::value);
    EXPECT_TRUE(std::is_abstract<PlaylistParser>::value);
}

TEST(PlaylistParserNew, KeepsACopyOfItsParentURL) {
    char url[] = "http://h/a.m3u";
    const ScriptedPlaylist playlist(url);
    url[0] = 'X';
    EXPECT_STREQ(playlist.GetParentURL(), "http://h/a.m3u");
    EXPECT_FALSE(playlist.GetFilePath().IsValid());
    EXPECT_TRUE(playlist.GetMimeType().IsEmpty());
    EXPECT_EQ(ScriptedPlaylist(nullptr).GetParentURL(), nullptr);
    EXPECT_STREQ(ScriptedPlaylist("").GetParentURL(), "");
}

TEST(PlaylistParserNew, HandsOutWhatTheReaderSet) {
    ScriptedPlaylist playlist;
    playlist.SetFilePath(ezPathName::MakeFilePath("/m/a.m3u"));
    playlist.SetMimeType("audio/x-mpegurl");
    EXPECT_EQ(playlist.GetFilePath().GetFullPath(), "/m/a.m3u");
    EXPECT_EQ(playlist.GetMimeType(), "audio/x-mpegurl");
}

TEST(PlaylistParserNew, AnEntryHasNoNextOneUntilToldSo) {
    EXPECT_EQ(Described(PlaylistParserEntry()), "||0|0|last|0|");
    const PlaylistParserAtEntry wanted;
    EXPECT_EQ(wanted.mPos, kezuint64_Max);
    EXPECT_EQ(wanted.mEntryIndex, 0U);
}

TEST_F(PlaylistParserFetch, AtAPositionTakesTheFirstEntryReportedAndStops) {
    EXPECT_TRUE(mPlaylist.FetchEntryAtPos(0, &mEntry));
    EXPECT_EQ(Described(mEntry), "One|one.mp3|61|0|10|0|#A");
    EXPECT_EQ(mPlaylist.mCalls, Calls({"seek 0", "walk", "entry 0"}));
    EXPECT_TRUE(mPlaylist.FetchEntryAtPos(10, &mEntry));
    EXPECT_EQ(Described(mEntry), "|http://h/two.mp3|0|10|30|0|");
    EXPECT_TRUE(mPlaylist.FetchEntryAtPos(30, &mEntry));
    EXPECT_EQ(Described(mEntry), "Three|c/three.mp3|63|30|last|0|#C");
}

TEST_F(PlaylistParserFetch, AtAPositionKeepsThePositionAskedForNotTheOneReported) {
    EXPECT_TRUE(mPlaylist.FetchEntryAtPos(5, &mEntry));
    EXPECT_EQ(Described(mEntry), "|http://h/two.mp3|0|5|30|0|");
}

TEST_F(PlaylistParserFetch, AtAPositionThatCannotBeSoughtLeavesTheEntryAlone) {
    EXPECT_FALSE(mPlaylist.FetchEntryAtPos(41, &mEntry));
    EXPECT_EQ(Described(mEntry), kUsed);
    mPlaylist.mfSeekFails = true;
    EXPECT_FALSE(mPlaylist.FetchEntryAtPos(0, &mEntry));
    EXPECT_EQ(Described(mEntry), kUsed);
    EXPECT_EQ(mPlaylist.mCalls, Calls({"seek 41", "seek 0"}));
}

TEST_F(PlaylistParserFetch, AtAPositionWithoutAnEntryEmptiesAllButTagsAndIndex) {
    EXPECT_FALSE(mPlaylist.FetchEntryAtPos(40, &mEntry));
    EXPECT_EQ(Described(mEntry), "||0|40|last|5|#OLD");
}

TEST(PlaylistParserFetchOdd, AnEntryWithoutALocationIsCopiedAndFails) {
    ScriptedPlaylist playlist;
    playlist.Add("Title", "", 9, "#T");
    playlist.Add("Next", "next.mp3");
    PlaylistParserEntry entry = Used();
    EXPECT_FALSE(playlist.FetchEntryAtPos(0, &entry));
    EXPECT_EQ(Described(entry), "Title||9|0|10|0|#T");
}

TEST_F(PlaylistParserFetch, ThePositionMayBeAFieldOfTheEntryItself) {
    mEntry.mStreamPos = 30;
    EXPECT_TRUE(mPlaylist.FetchEntryAtPos(mEntry.mStreamPos, &mEntry));
    EXPECT_EQ(Described(mEntry), "Three|c/three.mp3|63|30|last|0|#C");
    mEntry.mNextEntryStreamPos = 10;
    EXPECT_TRUE(mPlaylist.FetchEntryAtPos(mEntry.mNextEntryStreamPos, &mEntry));
    EXPECT_EQ(Described(mEntry), "|http://h/two.mp3|0|10|30|0|");
}

TEST_F(PlaylistParserFetch, AtAnIndexWalksToItAndReadsItAgainFromItsPosition) {
    EXPECT_TRUE(mPlaylist.FetchEntryAtIndex(1, &mEntry));
    EXPECT_EQ(Described(mEntry), "|http://h/two.mp3|0|10|30|0|");
    EXPECT_EQ(mPlaylist.mCalls,
              Calls({"seek 0", "walk", "entry 0", "entry 10", "seek 10", "walk", "entry 10"}));
    EXPECT_TRUE(mPlaylist.FetchEntryAtIndex(0, &mEntry)) << "from the start, wherever the reader stands";
    EXPECT_EQ(Described(mEntry), "One|one.mp3|61|0|10|0|#A");
}

TEST(PlaylistParserFetchOdd, AnIndexWhosePositionCannotBeSoughtLeavesTheEntryAlone) {
    class AtItsStart : public ScriptedPlaylist {
    public:
        bool SeekBytes(const ezuint64& aPos) override {
            return aPos == 0 && ScriptedPlaylist::SeekBytes(aPos);
        }
    };
    AtItsStart playlist;
    playlist.Add("One", "one.mp3");
    playlist.Add("Two", "two.mp3");
    PlaylistParserEntry entry = Used();
    EXPECT_FALSE(playlist.FetchEntryAtIndex(1, &entry));
    EXPECT_EQ(Described(entry), kUsed);
    EXPECT_TRUE(playlist.FetchEntryAtIndex(0, &entry));
    EXPECT_EQ(Str(entry.mTitle), "One");
}

TEST_F(PlaylistParserFetch, AtAnIndexPastTheEndLeavesTheEntryAlone) {
    for (const uint32 index : {3U, 4U, UINT32_MAX}) {
        mPlaylist.mCalls.clear();
        EXPECT_FALSE(mPlaylist.FetchEntryAtIndex(index, &mEntry));
        EXPECT_EQ(Described(mEntry), kUsed);
        EXPECT_EQ(mPlaylist.mCalls, Calls({"seek 0", "walk", "entry 0", "entry 10", "entry 30"}));
    }
    mPlaylist.mfSeekFails = true;
    mPlaylist.mCalls.clear();
    EXPECT_FALSE(mPlaylist.FetchEntryAtIndex(0, &mEntry));
    EXPECT_EQ(Described(mEntry), kUsed);
    EXPECT_EQ(mPlaylist.mCalls, Calls({"seek 0"}));
}

TEST_F(PlaylistParserFetch, TheNextEntryReplacesTheOneBeforeIt) {
    ASSERT_TRUE(mPlaylist.FetchEntryAtIndex(0, &mEntry));
    EXPECT_TRUE(mPlaylist.FetchNextEntry(&mEntry));
    EXPECT_EQ(Described(mEntry), "|http://h/two.mp3|0|10|30|0|");
    EXPECT_TRUE(mPlaylist.FetchNextEntry(&mEntry));
    EXPECT_EQ(Described(mEntry), "Three|c/three.mp3|63|30|last|0|#C");
    mPlaylist.mCalls.clear();
    EXPECT_FALSE(mPlaylist.FetchNextEntry(&mEntry));
    EXPECT_EQ(Described(mEntry), "Three|c/three.mp3|63|30|last|0|#C");
    EXPECT_TRUE(mPlaylist.mCalls.empty()) << "the last entry is known to be";
}

TEST_F(PlaylistParserFetch, TheNextEntryOfAWrongPositionFailsAsAFetchThereDoes) {
    mEntry.mNextEntryStreamPos = 1000;
    EXPECT_FALSE(mPlaylist.FetchNextEntry(&mEntry));
    EXPECT_EQ(mEntry.mURI, "old.mp3");
    mEntry.mNextEntryStreamPos = 40;
    EXPECT_FALSE(mPlaylist.FetchNextEntry(&mEntry));
    EXPECT_EQ(Described(mEntry), "||0|40|last|5|#OLD");
}

TEST_F(PlaylistParserFetch, ANullEntryFailsAndIsTheNextOnesMistakeAlone) {
    const AssertCatcher assertions;
    EXPECT_FALSE(mPlaylist.FetchEntryAtPos(0, nullptr));
    EXPECT_FALSE(mPlaylist.FetchEntryAtIndex(0, nullptr));
    EXPECT_TRUE(assertions.Failures().empty());
    EXPECT_FALSE(mPlaylist.FetchNextEntry(nullptr));
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"anEntry != NULL @ PlaylistParser"}));
    EXPECT_TRUE(mPlaylist.mCalls.empty());
}

TEST_F(PlaylistParserFetch, AReaderThatDoesNotStopChangesNothing) {
    mPlaylist.mfGoesOn = true;
    mPlaylist.mfReportsNull = true;
    EXPECT_TRUE(mPlaylist.FetchEntryAtPos(0, &mEntry));
    EXPECT_EQ(Described(mEntry), "One|one.mp3|61|0|10|0|#A");
    EXPECT_TRUE(mPlaylist.FetchEntryAtIndex(1, &mEntry));
    EXPECT_EQ(Described(mEntry), "|http://h/two.mp3|0|10|30|0|");
}

namespace {

/// Reports the same index, 0, for every entry.
class Stuttering : public PlaylistParser {
public:
    void ParseAll(PlaylistParserCallback aCallback, void* aUserData) override {
        for (std::uint64_t pos = mFrom; pos < 100; pos += 10) {
            PlaylistParserEntry entry = Entry("", "at" + std::to_string(pos), pos);
            aCallback(&entry, aUserData);
        }
    }
    bool SeekBytes(const ezuint64& aPos) override {
        mFrom = aPos.ToUInt64();
        return PlaylistParser::SeekBytes(aPos);
    }

private:
    std::uint64_t mFrom = 0;
};

/// Knows its entries by position already.
class Cached : public ScriptedPlaylist {
public:
    bool FetchEntryAtPos(const ezuint64& aPos, PlaylistParserEntry* anEntry) override {
        anEntry->mNextEntryStreamPos = kezuint64_Max; // the caller's position must outlive this
        anEntry->mTitle = "cached " + aPos.ToCString();
        return true;
    }
};

} // namespace

TEST(PlaylistParserFetchOdd, OfEntriesWithTheSameIndexTheFirstCounts) {
    Stuttering playlist;
    PlaylistParserEntry entry;
    EXPECT_TRUE(playlist.FetchEntryAtIndex(0, &entry));
    EXPECT_EQ(entry.mURI, "at0");
}

TEST(PlaylistParserFetchOdd, AReadersOwnFetchByPositionServesTheOthers) {
    Cached playlist;
    playlist.Add("", "a");
    playlist.Add("", "b");
    PlaylistParserEntry entry;
    EXPECT_TRUE(playlist.FetchEntryAtIndex(1, &entry));
    EXPECT_EQ(entry.mTitle, "cached 10");
    entry.mNextEntryStreamPos = 30;
    EXPECT_TRUE(playlist.FetchNextEntry(&entry));
    EXPECT_EQ(entry.mTitle, "cached 30") << "although the fetch overwrites the position it was handed";
}

TEST(PlaylistParserSeek, CountsEntriesAnew) {
    ScriptedPlaylist playlist;
    playlist.Add("", "a");
    playlist.Add("", "b");
    playlist.ParseAll([](PlaylistParserEntry*, void*) { return false; }, nullptr);
    EXPECT_EQ(playlist.GetRelativeEntryIndex(), 2U);
    EXPECT_TRUE(playlist.PlaylistParser::SeekBytes(kezuint64_Max)) << "the base knows no end";
    EXPECT_EQ(playlist.GetRelativeEntryIndex(), 0U);
}

RC_GTEST_PROP(PlaylistParserModel, EveryWayToAnEntryGivesTheSameEntry, ()) {
    ScriptedPlaylist playlist;
    const std::size_t count = *rc::gen::inRange<std::size_t>(1, 12);
    for (std::size_t i = 0; i < count; ++i) {
        playlist.Add(*rc::gen::arbitrary<std::string>(),
                     *rc::gen::nonEmpty(rc::gen::arbitrary<std::string>()), *rc::gen::arbitrary<uint32>(),
                     *rc::gen::arbitrary<std::string>(), *rc::gen::inRange<std::uint64_t>(1, 100));
    }
    std::vector<PlaylistParserEntry> walked;
    playlist.SeekBytes(0);
    playlist.ParseAll(
        [](PlaylistParserEntry* anEntry, void* aUserData) {
            static_cast<std::vector<PlaylistParserEntry>*>(aUserData)->push_back(*anEntry);
            return false;
        },
        &walked);
    RC_ASSERT(walked.size() == count);
    PlaylistParserEntry next;
    next.mNextEntryStreamPos = 0;
    for (std::size_t i = 0; i < count; ++i) {
        PlaylistParserEntry expected = walked[i];
        RC_ASSERT(expected.mRelativeEntryIndex == i);
        expected.mRelativeEntryIndex = 0;
        PlaylistParserEntry entry = Used();
        RC_ASSERT(playlist.FetchEntryAtIndex(static_cast<uint32>(i), &entry));
        RC_ASSERT(Described(entry) == Described(expected));
        entry = Used();
        RC_ASSERT(playlist.FetchEntryAtPos(expected.mStreamPos, &entry));
        RC_ASSERT(Described(entry) == Described(expected));
        RC_ASSERT(playlist.FetchNextEntry(&next));
        RC_ASSERT(Described(next) == Described(expected));
    }
    RC_ASSERT(!playlist.FetchNextEntry(&next));
}

TEST(PlaylistParserPrefix, PrintsTheAddressInTheOrderOfItsBytesInMemory) {
    uint32 length = 0;
    const ezCString prefix = PlaylistParser::GetURLPrefix(Address(192, 168, 1, 10), 9000, "pl", &length);
    EXPECT_EQ(prefix, "http://192.168.1.10:9000/pl/");
    EXPECT_EQ(prefix.GetLength(), 28U);
    EXPECT_EQ(length, 83U);
    EXPECT_EQ(PlaylistParser::GetURLPrefix(Address(0, 255, 128, 1), 65535, "a/b", &length),
              "http://0.255.128.1:65535/a/b/");
    EXPECT_EQ(length, 29U + 55U);
}

TEST(PlaylistParserPrefix, NeedsNeitherALengthNorAnIdentifier) {
    EXPECT_EQ(PlaylistParser::GetURLPrefix(Address(127, 0, 0, 1), 80, "pl", nullptr),
              "http://127.0.0.1:80/pl/");
    uint32 length = 0;
    EXPECT_EQ(PlaylistParser::GetURLPrefix(0, 0, nullptr, &length), "http://0.0.0.0:0//");
    EXPECT_EQ(length, 18U + 55U);
}

TEST(PlaylistParserPrefix, TheLengthIsThatOfALine) {
    for (const char* id : {"", "pl", "a%20longer/identifier"}) {
        uint32 length = 0;
        const ezCString prefix = PlaylistParser::GetURLPrefix(Address(10, 0, 0, 1), 9000, id, &length);
        const PlaylistParserEntry entry = Entry("Song", "a/b/Song.mp3");
        EXPECT_EQ(PlaylistParser::GetURLFor(prefix, &entry).GetLength(), length);
    }
}

TEST(PlaylistParserLine, IsPrefixPositionFillerNameAndExtension) {
    const PlaylistParserEntry entry = Entry("Song", "a/b/Song.mp3");
    EXPECT_EQ(Str(PlaylistParser::GetURLFor("http://h/pl/", &entry)),
              "http://h/pl/" + Zeros(16) + "1234/0" + Zeros(22) + "/Song.mp3\r\n");
}

TEST(PlaylistParserLine, AnExtensionOfSevenBytesIsDroppedWithItsDot) {
    EXPECT_EQ(Line("Song", "a.sixsix"), kAt1234 + "/0" + Zeros(19) + "/Song.sixsix\r\n");
    EXPECT_EQ(Line("Song", "a.7seven7"), kAt1234 + "/0" + Zeros(26) + "/Song\r\n");
    EXPECT_EQ(Line("Song", "a.eightext"), kAt1234 + "/0" + Zeros(26) + "/Song\r\n");
}

TEST(PlaylistParserLine, WithoutAnExtensionATitleFillsAllThirtyBytes) {
    const std::string thirty = "123456789012345678901234567890";
    EXPECT_EQ(Line(thirty, "a.eightext"), kAt1234 + "/0/" + thirty + "\r\n");
    EXPECT_EQ(Line(thirty + "x", "a.eightext"), kAt1234 + "/0/" + thirty + "\r\n");
    EXPECT_EQ(Line("23456789012345678901234567890", "a.eightext"),
              kAt1234 + "/00/23456789012345678901234567890\r\n");
}

TEST(PlaylistParserLine, ATitleIsCutToWhatTheExtensionLeaves) {
    const std::string forty = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMN";
    EXPECT_EQ(Line(forty, "a.mp3"), kAt1234 + "/0/abcdefghijklmnopqrstuvwxyz.mp3\r\n");
    EXPECT_EQ(Line(forty.substr(0, 26), "a.mp3"), kAt1234 + "/0/abcdefghijklmnopqrstuvwxyz.mp3\r\n");
    EXPECT_EQ(Line(forty.substr(0, 25), "a.mp3"), kAt1234 + "/00/abcdefghijklmnopqrstuvwxy.mp3\r\n");
    EXPECT_EQ(Line(forty.substr(0, 27), "a.mp3"), kAt1234 + "/0/abcdefghijklmnopqrstuvwxyz.mp3\r\n");
}

TEST(PlaylistParserLine, ATitleCutInsideACharacterKeepsTheLength) {
    const std::string title = "1234567890123456789012345\xC3\xA9more";
    EXPECT_EQ(Line(title, "a.mp3"), kAt1234 + "/0/1234567890123456789012345\xC3.mp3\r\n");
}

TEST(PlaylistParserLine, AnEmptyExtensionKeepsItsDot) {
    EXPECT_EQ(Line("Song", "name."), kAt1234 + "/0" + Zeros(25) + "/Song.\r\n");
    EXPECT_EQ(Line("Song", ""), kAt1234 + "/0" + Zeros(25) + "/Song.\r\n");
    EXPECT_EQ(Line("", "name."), kAt1234 + "/0" + Zeros(29) + "/.\r\n");
}

TEST(PlaylistParserLine, ALocationWithoutADotIsAnExtension) {
    EXPECT_EQ(Line("Song", "track"), kAt1234 + "/0" + Zeros(20) + "/Song.track\r\n");
    EXPECT_EQ(Line("Song", "track01"), kAt1234 + "/0" + Zeros(26) + "/Song\r\n");
    EXPECT_EQ(Line("Song", "a.b/c"), kAt1234 + "/0" + Zeros(22) + "/Song.b/c\r\n") << "whatever follows";
}

TEST(PlaylistParserLine, EveryPositionHasTwentyDigits) {
    PlaylistParserEntry entry = Entry("", "a.eightext", 0);
    EXPECT_EQ(Str(PlaylistParser::GetURLFor("", &entry)), Zeros(20) + "/0" + Zeros(30) + "/\r\n");
    entry.mStreamPos = kezuint64_Max;
    EXPECT_EQ(Str(PlaylistParser::GetURLFor("", &entry)), "18446744073709551615/0" + Zeros(30) + "/\r\n");
}

TEST(PlaylistParserLine, TheBytesOfATitleAreWrittenAsTheyAre) {
    EXPECT_EQ(Line(std::string("a\0b/\r\n%", 7), "x.mp3"),
              kAt1234 + "/0" + Zeros(19) + "/" + std::string("a\0b/\r\n%", 7) + ".mp3\r\n");
}

TEST(PlaylistParserLine, NoEntryHasNone) {
    EXPECT_TRUE(PlaylistParser::GetURLFor("http://h/", nullptr).IsEmpty());
}

TEST(PlaylistParserLine, EntryNBeginsAtNTimesTheLength) {
    uint32 length = 0;
    const ezCString prefix = PlaylistParser::GetURLPrefix(Address(192, 168, 1, 10), 9000, "pl", &length);
    std::string served;
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < 10000; ++i) {
        const std::uint64_t wide = i;
        const std::string title(i % 47, static_cast<char>(i % 251));
        const std::string location = "x" + std::string(i % 2, '.') + std::string(i % 11, 'y');
        const PlaylistParserEntry entry = Entry(title, location, wide * wide * wide * wide * wide);
        lines.push_back(Str(PlaylistParser::GetURLFor(prefix, &entry)));
        served += lines.back();
    }
    ASSERT_EQ(served.size(), 10000U * length);
    for (std::size_t n = 0; n < lines.size(); ++n) {
        ASSERT_EQ(served.substr(n * length, length), lines[n]) << n;
        ASSERT_EQ(served.compare(n * length, prefix.GetLength(), prefix.c_str()), 0) << n;
    }
}

RC_GTEST_PROP(PlaylistParserModel, ALineIsThePrefixAnd55BytesThatReadBack, ()) {
    // Sizes around the limits come up often.
    const auto text = [](std::size_t aMaximum) {
        return rc::gen::mapcat(rc::gen::inRange<std::size_t>(0, aMaximum), [](std::size_t aSize) {
            return rc::gen::container<std::string>(aSize, rc::gen::arbitrary<char>());
        });
    };
    const std::string title = *text(50);
    const std::string location = *text(12) + *rc::gen::element<std::string>("", ".") + *text(10);
    const std::uint64_t position = *rc::gen::arbitrary<std::uint64_t>();
    const std::string prefix = *text(40);
    const PlaylistParserEntry entry = Entry(title, location, position);
    const std::string line = Str(PlaylistParser::GetURLFor(Bytes(prefix), &entry));

    RC_ASSERT(line.size() == prefix.size() + 55);
    RC_ASSERT(line.substr(0, prefix.size()) == prefix);
    const std::string rest = line.substr(prefix.size());
    RC_ASSERT(std::stoull(rest.substr(0, 20)) == position);
    RC_ASSERT(rest.substr(20, 2) == "/0");
    RC_ASSERT(rest.substr(53) == "\r\n");
    const std::size_t dot = location.rfind('.');
    const std::string extension = dot == std::string::npos ? location : location.substr(dot + 1);
    const std::string end = extension.size() < 7 ? "." + extension : "";
    const std::string name = title.substr(0, 30 - end.size()) + end;
    RC_ASSERT(rest.substr(22, 31) == Zeros(30 - name.size()) + "/" + name);
}

TEST(PlaylistParserFix, ATitleStaysAsItIs) {
    PlaylistParserEntry entry = Used();
    PlaylistParser::FixEntry(&entry);
    EXPECT_EQ(Described(entry), kUsed);
    PlaylistParser::FixEntry(nullptr);
}

TEST(PlaylistParserFix, OnlyTheTitleChanges) {
    PlaylistParserEntry entry = Used();
    entry.mTitle = "";
    PlaylistParser::FixEntry(&entry);
    EXPECT_EQ(Described(entry), "old|old.mp3|7|70|77|5|#OLD");
}

TEST(PlaylistParserFix, AURLGivesTheLastSegmentOfItsPath) {
    EXPECT_EQ(Fixed("http://host/a/track01.mp3"), "track01");
    EXPECT_EQ(Fixed("http://host/a/My%20Song.mp3?id=3.x#part.y"), "My Song");
    EXPECT_EQ(Fixed("http://host/a/My Song.mp3"), "My Song");
    EXPECT_EQ(Fixed("http://host/track"), "track");
    EXPECT_EQ(Fixed("http://host/a.b.c"), "a.b");
    EXPECT_EQ(Fixed("http://host.d/a.d/b"), "b");
    EXPECT_EQ(Fixed("http://host/AC%2FDC.mp3"), "AC/DC") << "the path is split before it is decoded";
    EXPECT_EQ(Fixed("http://host/.hidden"), "");
    EXPECT_EQ(Fixed("http://host/a/"), "");
    EXPECT_EQ(Fixed("http://host/a\\b.mp3"), "a\\b");
    EXPECT_EQ(Fixed("file:///m/a%C3%A9.mp3"), "a\xC3\xA9");
    EXPECT_EQ(Fixed("urn:track.1"), "track");
}

TEST(PlaylistParserFix, AURLWithoutAPathIsTakenForAPath) {
    EXPECT_EQ(Fixed("http://radio.example.com"), "radio.example");
    EXPECT_EQ(Fixed("http://host:8000?x=1"), "host:8000?x=1");
    EXPECT_EQ(Fixed("mailto:"), "mailto:") << "a bare name";
}

TEST(PlaylistParserFix, ABareNameLosesItsExtension) {
    EXPECT_EQ(Fixed("track01.mp3"), "track01");
    EXPECT_EQ(Fixed("track01"), "track01");
    EXPECT_EQ(Fixed("01. A Song.mp3"), "01. A Song");
    EXPECT_EQ(Fixed("100%25.mp3"), "100%25") << "a name is not escaped";
    EXPECT_EQ(Fixed("Why?#1.mp3"), "Why?#1");
    EXPECT_EQ(Fixed(".profile"), "");
    EXPECT_EQ(Fixed("name."), "name");
    EXPECT_EQ(Fixed(""), "");
}

TEST(PlaylistParserFix, ANameWithAColonAndBlanksIsNoURL) {
    EXPECT_EQ(Fixed("Artist: A Song.mp3"), "Artist: A Song");
    EXPECT_EQ(Fixed("01: A Song.mp3"), "01: A Song");
    EXPECT_EQ(Fixed("Live: Who Are You?.mp3"), "Live: Who Are You?");
    EXPECT_EQ(Fixed("music/Artist: A Song.mp3"), "Artist: A Song");
}

TEST(PlaylistParserFix, APathGivesItsFileName) {
    EXPECT_EQ(Fixed("music/track01.mp3"), "track01");
    EXPECT_EQ(Fixed("/m/music.d/track01"), "track01");
    EXPECT_EQ(Fixed("..\\music\\track01.mp3"), "track01");
    EXPECT_EQ(Fixed("C:\\Music\\My Song.mp3"), "My Song");
    EXPECT_EQ(Fixed("c:/Music/a%20b.mp3"), "a%20b");
    EXPECT_EQ(Fixed("\\\\server\\share\\track.mp3"), "track");
    EXPECT_EQ(Fixed("C:track.mp3"), "C:track");
    EXPECT_EQ(Fixed("music/.hidden"), ".hidden");
    EXPECT_EQ(Fixed("music/"), "");
}

TEST(PlaylistParserFix, ANULEndsNothing) {
    EXPECT_EQ(Fixed(std::string("a\0b.mp3", 7)), std::string("a\0b", 3));
    EXPECT_EQ(Fixed(std::string("http://h/a\0b.mp3", 16)), std::string("a\0b", 3));
}

TEST(PlaylistParserFullURL, NoLocationHasNone) {
    EXPECT_EQ(LocalURL("/m/l.m3u", ""), "");
    EXPECT_EQ(RemoteURL("http://h/l.m3u", ""), "");
    EXPECT_EQ(LocalURL("/m/l.m3u", std::string("a\0b", 3)), "") << "it would name another file";
    EXPECT_EQ(RemoteURL("http://h/l.m3u", std::string("a\0b", 3)), "");
    ScriptedPlaylist playlist;
    playlist.SetFilePath(ezPathName::MakeFilePath(Bytes(std::string("/m\0/l.m3u", 9))));
    EXPECT_EQ(Str(playlist.GetFullURLFor("a.mp3")), "");
}

TEST(PlaylistParserFullURL, OfALocalPlaylistIsAnEscapedAbsoluteFile) {
    EXPECT_EQ(LocalURL("/m/lists/l.m3u", "a b.mp3"), "file:///m/lists/a%20b.mp3");
    EXPECT_EQ(LocalURL("/m/lists/l.m3u", "x/100%.mp3"), "file:///m/lists/x/100%25.mp3");
    EXPECT_EQ(LocalURL("/m/lists/l.m3u", "a%20b#c?.mp3"), "file:///m/lists/a%2520b%23c%3F.mp3");
    EXPECT_EQ(LocalURL("/m/lists/l.m3u", "name"), "file:///m/lists/name");
    EXPECT_EQ(LocalURL("/m/lists/l.m3u", "Artist: A Song.mp3"), "file:///m/lists/Artist:%20A%20Song.mp3");
    EXPECT_EQ(LocalURL("/m/lists/l.m3u", "M\xFCller.mp3"), "file:///m/lists/M%FCller.mp3");
    EXPECT_EQ(LocalURL("/m/my lists/l.m3u", "a.mp3"), "file:///m/my%20lists/a.mp3");
    EXPECT_EQ(LocalURL("/l.m3u", "a.mp3"), "file:///a.mp3");
}

TEST(PlaylistParserFullURL, OfAnAbsolutePathIsThatPath) {
    EXPECT_EQ(LocalURL("/m/l.m3u", "/n/a b.mp3"), "file:///n/a%20b.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "C:\\Music\\a b.mp3"), "file:///C:/Music/a%20b.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "c:/Music/a.mp3"), "file:///c:/Music/a.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "\\Music\\a.mp3"), "file:///Music/a.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "\\\\srv\\share\\a.mp3"), "file://srv/share/a.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "/n/a\\b.mp3"), "file:///n/a%5Cb.mp3") << "not rewritten";
}

TEST(PlaylistParserFullURL, BackslashesOfARelativePathPartIt) {
    EXPECT_EQ(LocalURL("/m/l.m3u", "x\\y\\a.mp3"), "file:///m/x/y/a.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "..\\a.mp3"), "file:///a.mp3");
    EXPECT_EQ(LocalURL("C:\\m\\l.m3u", "x\\a.mp3"), "file:///C:/m/x/a.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "C:a.mp3"), "file:///m/C:a.mp3") << "a drive without a slash is no root";
}

TEST(PlaylistParserFullURL, ParentFoldersAreResolvedByText) {
    EXPECT_EQ(LocalURL("/m/lists/l.m3u", "../songs/./a.mp3"), "file:///m/songs/a.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "../../../a.mp3"), "file:///a.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "missing/../a.mp3"), "file:///m/a.mp3");
}

TEST(PlaylistParserFullURL, OfAPlaylistInTheWorkingFolderIsAbsoluteToo) {
    const std::string folder = std::filesystem::current_path().string();
    for (const char* playlist : {"l.m3u", ""}) {
        const std::string url = LocalURL(playlist, "a.mp3");
        EXPECT_EQ(url.substr(0, 8), "file:///");
        EXPECT_EQ(url, LocalURL((folder + "/l.m3u").c_str(), "a.mp3"));
    }
    EXPECT_EQ(LocalURL("x/l.m3u", "a.mp3"), LocalURL((folder + "/x/l.m3u").c_str(), "a.mp3"));
}

TEST(PlaylistParserFullURL, WithoutAWorkingFolderARelativeFileHasNone) {
    const TemporaryFolder folder;
    const WorkingDirectory inside(folder.GetPath());
    std::filesystem::remove(folder.GetPath());
    EXPECT_EQ(LocalURL("l.m3u", "a.mp3"), "");
    EXPECT_EQ(LocalURL("l.m3u", "/m/a.mp3"), "file:///m/a.mp3");
}

TEST(PlaylistParserFullURL, AURLInALocalPlaylistIsTakenForAPath) {
    EXPECT_EQ(LocalURL("/m/l.m3u", "http://h/a.mp3"), "file:///m/http://h/a.mp3");
    EXPECT_EQ(LocalURL("/m/l.m3u", "file:///n/a.mp3"), "file:///m/file:///n/a.mp3");
}

TEST(PlaylistParserFullURL, OfARemotePlaylistIsResolvedAgainstIt) {
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u", "a.mp3"), "http://h/p/a.mp3");
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u", "../a.mp3"), "http://h/a.mp3");
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u?x", "/a.mp3"), "http://h/a.mp3");
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u", "//k/a.mp3"), "http://k/a.mp3");
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u", "https://k:1/a%20b.mp3?c#d"), "https://k:1/a%20b.mp3?c#d");
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u", "A Song.mp3"), "http://h/p/A%20Song.mp3");
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u", "Artist: A Song.mp3"), "http://h/p/Artist:%20A%20Song.mp3");
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u", "name"), "http://h/p/name");
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u", "C:\\Music\\a.mp3"), "C:%5CMusic%5Ca.mp3") << "absolute, so kept";
    EXPECT_EQ(RemoteURL("http://h/p/l.m3u", "x\\a.mp3"), "http://h/p/x%5Ca.mp3");
}

TEST(PlaylistParserFullURL, AnEmptyParentURLIsNotNone) {
    EXPECT_EQ(RemoteURL("", "a.mp3"), "a.mp3");
    EXPECT_EQ(RemoteURL("", "http://h/a.mp3"), "http://h/a.mp3");
    EXPECT_EQ(RemoteURL(nullptr, "a.mp3"), "file:///m/a.mp3");
}

TEST(PlaylistParserFullURL, MegabytesEndAndStayInside) {
    const std::string megabyte(1000000, '%');
    EXPECT_EQ(LocalURL("/m/l.m3u", megabyte).size(), std::strlen("file:///m/") + 3 * megabyte.size());
    EXPECT_EQ(RemoteURL("http://h/l.m3u", megabyte), "http://h/" + megabyte);
    EXPECT_EQ(Fixed(megabyte), megabyte);
    EXPECT_EQ(Line(megabyte, megabyte).size(), 55U);
}
