#include "ezPlaylists/Playlists.h"

#include "ez/PlaylistParserFactory.h"

#include "companions/ezPlaylists/PlaylistKit.h"
#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

// Every system call of a walk over a playlist's file goes wrong once, and for good.

namespace {

/// As a server does it: the file opened, the reader found by its extension.
class OpenedPlaylist {
public:
    explicit OpenedPlaylist(const std::string& aPath) {
        RegisterPlaylistParsers(mFactory);
        std::unique_ptr<ezFile> file = std::make_unique<ezFile>(aPath.c_str(), ezFileOpenMode_Read);
        mfOpened = file->Open();
        mStream.reset(ezFileGetStream(file.release(), "", aPath.c_str()));
        mParser.reset(mFactory.NewPlaylistParser(mStream.get(), "", mStream->GetExtension()));
    }

    /// The locations of one walk, and how many entries came with them.
    std::string Walk() {
        std::string text = mfOpened ? "" : "not opened ";
        PlaylistEntries entries;
        if (!mParser->SeekBytes(0)) {
            return text + "no start";
        }
        mParser->ParseAll(sCollect, &entries);
        text += std::to_string(entries.size());
        for (const PlaylistParserEntry& entry : entries) {
            if (Str(entry.mURI) != "song " + std::to_string(entry.mRelativeEntryIndex) + ".mp3") {
                text += " cut <" + Str(entry.mURI) + ">";
            }
        }
        return text;
    }

    /// Whether an entry is to be had by its index.
    bool Has(uint32 anIndex) {
        PlaylistParserEntry entry = SomeEntry();
        const bool fHas = mParser->FetchEntryAtIndex(anIndex, &entry);
        EXPECT_EQ(Str(entry.mURI), fHas ? "song " + std::to_string(anIndex) + ".mp3" : "untouched.mp3");
        return fHas;
    }

private:
    PlaylistParserFactory mFactory;
    bool mfOpened = false;
    ezStreamOwner mStream;
    std::unique_ptr<PlaylistParser> mParser;
};

/// How a playlist of a format is written.
struct Format {
    const char* mExtension;
    const char* mHead;
    const char* mComment;
    const char* mBefore; ///< a location; "#" is the number of the song
    const char* mBehind;
    const char* mFoot;
    const char* mMemoryOnce = ""; ///< what comes of three songs when memory is refused
    const char* mMemoryForGood = "";
};

constexpr Format kM3U = {"m3u", "#EXTM3U\n", "# nothing here\n", "", "\n", ""};

/// Those that are read as a whole.
constexpr Format kIndexed[] = {
    {"pls", "[playlist]\n", "; nothing here\n", "File#=", "\n", "",
     "1-5: 0, then 3\n6: 1, then 3\n7-8: 0, then 3\n", "1-8: 0, then 3\n"},
    {"asx", "<asx version=\"3.0\">\n", "<!-- nothing -->\n", "<entry><ref href=\"", "\"/></entry>\n",
     "</asx>\n", "1-6: 0, then 3\n7-8: 1, then 3\n9-10: 0, then 3\n", "1-10: 0, then 3\n"},
    {"xspf", "<playlist version=\"1\"><trackList>\n", "<!-- nothing -->\n", "<track><location>",
     "</location></track>\n", "</trackList></playlist>\n",
     "1-6: 0, then 3\n7-8: 1, then 3\n9-10: 0, then 3\n", "1-10: 0, then 3\n"},
    {"wpl", "<smil><body><seq>\n", "<!-- nothing -->\n", "<media src=\"", "\"/>\n", "</seq></body></smil>\n",
     "1-6: 0, then 3\n7-8: 1, then 3\n9-10: 0, then 3\n", "1-10: 0, then 3\n"},
};

/// The n-th song in a playlist.
std::string Song(const Format& aFormat, int aSong) {
    std::string text;
    for (const char* next = aFormat.mBefore; *next != '\0'; ++next) {
        text += *next == '#' ? std::to_string(aSong + 1) : std::string(1, *next);
    }
    return text + "song " + std::to_string(aSong) + ".mp3" + aFormat.mBehind;
}

/// A playlist of three songs and many reads: comments between the songs that nobody wants.
std::string Playlist(const Format& aFormat) {
    std::string text = aFormat.mHead;
    for (int i = 0; i < 3; ++i) {
        for (int line = 0; line < 1000; ++line) {
            text += aFormat.mComment;
        }
        text += Song(aFormat, i);
    }
    return text + aFormat.mFoot;
}

/// So many songs that the index grows several times.
constexpr int kManySongs = 300;

/// A playlist of them, in which a text stands before them.
std::string ManySongs(const Format& aFormat, const std::string& aBefore = "") {
    std::string text = aFormat.mHead + aBefore;
    for (int i = 0; i < kManySongs; ++i) {
        text += Song(aFormat, i);
    }
    return text + aFormat.mFoot;
}

/// So many that the index grows, and few enough for one read: of a part of it the last ones would be there.
constexpr int kSongsBackwards = 100;

std::string SongsBackwards(const Format& aFormat) {
    std::string text = aFormat.mHead;
    for (int i = kSongsBackwards; i > 0; --i) {
        text += Song(aFormat, i - 1);
    }
    return text + aFormat.mFoot;
}

/// Walks, then walks and fetches again with nothing going wrong any more.
FaultyOperation WalkOver(const char* anExtension, const std::string& aText, const std::string& aCount) {
    return [name = std::string("list.") + anExtension, aText, aCount](const std::vector<Fault>& aFaults,
                                                                      bool* afStruck) {
        const AssertCatcher asserts;
        const TemporaryFolder folder;
        const std::string path = folder.Write(name, aText);
        std::unique_ptr<OpenedPlaylist> playlist;
        std::string text;
        {
            const FaultySystem system(aFaults);
            playlist = std::make_unique<OpenedPlaylist>(path);
            text = playlist->Walk();
            *afStruck = system.HasStruck();
        }
        text += ", then " + playlist->Walk() + (playlist->Has(2) ? "" : " without the last");
        EXPECT_EQ(OpenedPlaylist(path).Walk(), aCount);
        EXPECT_TRUE(asserts.Failures().empty());
        return text;
    };
}

FaultyOperation Walk(const Format& aFormat) {
    return WalkOver(aFormat.mExtension, Playlist(aFormat), "3");
}

/// Of a walk over a playlist: that of one that is not opened, and of reads that fail once and for good.
void ExpectOutcomesOf(const Format& aFormat, const std::string& aNotOpened, const std::string& aReadsOnce,
                      const std::string& aReadsForGood, const std::string& aMemoryOnce,
                      const std::string& aMemoryForGood) {
    SCOPED_TRACE(aFormat.mExtension);
    const std::string notOpened =
        "1: not opened " + aNotOpened + ", then not opened " + aNotOpened + " without the last\n";
    EXPECT_EQ(RunUndisturbed(Walk(aFormat)), "3, then 3");
    ExpectOutcomes(Walk(aFormat), {{SystemCall::Open, notOpened, notOpened},
                                   {SystemCall::FStat, notOpened, notOpened},
                                   {SystemCall::PRead, aReadsOnce, aReadsForGood},
                                   {SystemCall::Memory, aMemoryOnce, aMemoryForGood}});
    EXPECT_EQ(RunInterrupted(100, Walk(aFormat)), "3, then 3");
}

/// A walk that meets a refusal of memory gives whole entries, none before its turn, or none; the next one
/// gives all of them.
void ExpectWholeEntriesOrNone(const char* anExtension, const std::string& aText, int aCount = kManySongs) {
    SCOPED_TRACE(std::string(anExtension) + " " + aText.substr(0, 30));
    const std::string all = std::to_string(aCount);
    const FaultyOperation walk = WalkOver(anExtension, aText, all);
    EXPECT_EQ(RunUndisturbed(walk), all + ", then " + all);
    FaultManner manner;
    manner.mCall = SystemCall::Memory;
    manner.mError = ENOMEM;
    for (const bool fForGood : {false, true}) {
        manner.mfForGood = fForGood;
        std::istringstream outcomes(SweepFaults(manner, walk));
        std::size_t lines = 0;
        for (std::string line; std::getline(outcomes, line); ++lines) {
            const std::string outcome = line.substr(line.find(": ") + 2);
            const std::size_t digits = outcome.find_first_not_of("0123456789");
            EXPECT_NE(digits, 0U) << line;
            EXPECT_EQ(outcome.substr(digits), ", then " + all) << line;
        }
        EXPECT_GE(lines, fForGood ? 1U : 2U) << "none, and some that were there already";
    }
}

/// Of a walk whose reads come short, and of one whose reads then fail for good.
void ExpectShortOutcomesOf(const Format& aFormat, const std::string& aBroken) {
    SCOPED_TRACE(aFormat.mExtension);
    FaultManner manner;
    manner.mCall = SystemCall::PRead;
    manner.mMaximum = 4090;
    const std::string whole = SweepFaults(manner, Walk(aFormat));
    EXPECT_EQ(whole.substr(whole.find(':')), ": 3, then 3\n");
    manner.mError = EIO;
    manner.mfForGood = true;
    EXPECT_EQ(SweepFaults(manner, Walk(aFormat)), aBroken);
}

} // namespace

TEST(PlaylistFaults, AWalkGivesWholeEntriesUpToTheFailureAndAllTheNextTime) {
    // The first reads of M3U look for a playlist of another kind; of what failed then the walk reads on.
    ExpectOutcomesOf(kM3U, "no start", "1-4: 3, then 3\n", "1-3: 0, then 3\n4: 1, then 3\n",
                     "1-4: 3, then 3\n", "1-3: 0, then 3\n4: 1, then 3\n");
    const std::string indexed = "1-3: 0, then 3\n4: 1, then 3\n";
    for (const Format& format : kIndexed) {
        ExpectOutcomesOf(format, "0", indexed, indexed, format.mMemoryOnce, format.mMemoryForGood);
    }
}

TEST(PlaylistFaults, MemoryThatIsRefusedLeavesWholeEntriesOrNoneAndAllTheNextTime) {
    for (const Format& format : kIndexed) {
        ExpectWholeEntriesOrNone(format.mExtension, ManySongs(format));
    }
    const Format& pls = kIndexed[0];
    const Format& asx = kIndexed[1];
    // An index of its own for the positions; a text in another encoding than the document's; the older form.
    ExpectWholeEntriesOrNone("pls", SongsBackwards(pls), kSongsBackwards);
    ExpectWholeEntriesOrNone("asx", InUtf16(ManySongs(asx), false));
    ExpectWholeEntriesOrNone("asx", ManySongs(asx, "<!-- caf\xE9 -->"));
    ExpectWholeEntriesOrNone("asx", ManySongs({"asx", "[Reference]\n", "", "Ref#=", "\n", ""}));
}

TEST(PlaylistFaults, ReadsThatComeShortBeforeTheyFailGiveNoPartOfAnEntry) {
    ExpectShortOutcomesOf(kM3U, "1-3: 0, then 3\n4: 1, then 3\n");
    for (const Format& format : kIndexed) {
        ExpectShortOutcomesOf(format, "1-3: 0, then 3\n4: 1, then 3\n");
    }
}
