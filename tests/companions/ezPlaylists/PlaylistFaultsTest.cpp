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
#include <functional>
#include <memory>
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
};

constexpr Format kM3U = {"m3u", "#EXTM3U\n", "# nothing here\n", "", "\n", ""};

/// Those that are read as a whole.
constexpr Format kIndexed[] = {
    {"pls", "[playlist]\n", "; nothing here\n", "File#=", "\n", ""},
    {"asx", "<asx version=\"3.0\">\n", "<!-- nothing -->\n", "<entry><ref href=\"", "\"/></entry>\n",
     "</asx>\n"},
#ifdef EZ_HAS_XML_PLAYLISTS
    {"xspf", "<playlist version=\"1\"><trackList>\n", "<!-- nothing -->\n", "<track><location>",
     "</location></track>\n", "</trackList></playlist>\n"},
    {"wpl", "<smil><body><seq>\n", "<!-- nothing -->\n", "<media src=\"", "\"/>\n", "</seq></body></smil>\n"},
#endif
};

/// A playlist of three songs and many reads: comments between the songs that nobody wants.
std::string Playlist(const Format& aFormat) {
    std::string text = aFormat.mHead;
    for (int i = 0; i < 3; ++i) {
        for (int line = 0; line < 1000; ++line) {
            text += aFormat.mComment;
        }
        for (const char* next = aFormat.mBefore; *next != '\0'; ++next) {
            text += *next == '#' ? std::to_string(i + 1) : std::string(1, *next);
        }
        text += "song " + std::to_string(i) + ".mp3" + aFormat.mBehind;
    }
    return text + aFormat.mFoot;
}

/// Walks, then walks and fetches again with nothing going wrong any more.
FaultyOperation Walk(const Format& aFormat) {
    return [aFormat](const std::vector<Fault>& aFaults, bool* afStruck) {
        const AssertCatcher asserts;
        const TemporaryFolder folder;
        const std::string path = folder.Write(std::string("list.") + aFormat.mExtension, Playlist(aFormat));
        std::unique_ptr<OpenedPlaylist> playlist;
        std::string text;
        {
            const FaultySystem system(aFaults);
            playlist = std::make_unique<OpenedPlaylist>(path);
            text = playlist->Walk();
            *afStruck = system.HasStruck();
        }
        text += ", then " + playlist->Walk() + (playlist->Has(2) ? "" : " without the last");
        EXPECT_EQ(OpenedPlaylist(path).Walk(), "3");
        EXPECT_TRUE(asserts.Failures().empty());
        return text;
    };
}

/// Of a walk over a playlist: that of one that is not opened, and of reads that fail once and for good.
void ExpectOutcomesOf(const Format& aFormat, const std::string& aNotOpened, const std::string& aReadsOnce,
                      const std::string& aReadsForGood) {
    SCOPED_TRACE(aFormat.mExtension);
    const std::string notOpened =
        "1: not opened " + aNotOpened + ", then not opened " + aNotOpened + " without the last\n";
    EXPECT_EQ(RunUndisturbed(Walk(aFormat)), "3, then 3");
    ExpectOutcomes(Walk(aFormat), {{SystemCall::Open, notOpened, notOpened},
                                   {SystemCall::FStat, notOpened, notOpened},
                                   {SystemCall::PRead, aReadsOnce, aReadsForGood}});
    EXPECT_EQ(RunInterrupted(100, Walk(aFormat)), "3, then 3");
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
    // The first reads of M3U look for a playlist of another kind, and may fail.
    ExpectOutcomesOf(kM3U, "no start", "1-4: 3, then 3\n5-7: 0, then 3\n8: 1, then 3\n",
                     "1-7: 0, then 3\n8: 1, then 3\n");
    const std::string indexed = "1-3: 0, then 3\n4: 1, then 3\n";
    for (const Format& format : kIndexed) {
        ExpectOutcomesOf(format, "0", indexed, indexed);
    }
}

TEST(PlaylistFaults, ReadsThatComeShortBeforeTheyFailGiveNoPartOfAnEntry) {
    ExpectShortOutcomesOf(kM3U, "1-7: 0, then 3\n8: 1, then 3\n");
    for (const Format& format : kIndexed) {
        ExpectShortOutcomesOf(format, "1-3: 0, then 3\n4: 1, then 3\n");
    }
}
