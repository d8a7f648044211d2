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
#include <utility>
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

/// A playlist of three songs and many reads: comments between the songs that nobody wants.
std::string Playlist(const std::string& anExtension) {
    const bool fM3U = anExtension == "m3u";
    const bool fPLS = anExtension == "pls";
    std::string text = fM3U ? "#EXTM3U\n" : fPLS ? "[playlist]\n" : "<asx version=\"3.0\">\n";
    for (int i = 0; i < 3; ++i) {
        const std::string name = "song " + std::to_string(i) + ".mp3";
        for (int line = 0; line < 1000; ++line) {
            text += fM3U ? "# nothing here\n" : fPLS ? "; nothing here\n" : "<!-- nothing -->\n";
        }
        text += fM3U   ? name + "\n"
                : fPLS ? "File" + std::to_string(i + 1) + "=" + name + "\n"
                       : "<entry><ref href=\"" + name + "\"/></entry>\n";
    }
    return text + (fM3U || fPLS ? "" : "</asx>\n");
}

/// Walks, then walks and fetches again with nothing going wrong any more.
FaultyOperation Walk(const std::string& anExtension) {
    return [anExtension](const std::vector<Fault>& aFaults, bool* afStruck) {
        const AssertCatcher asserts;
        const TemporaryFolder folder;
        const std::string path = folder.Write("list." + anExtension, Playlist(anExtension));
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
void ExpectOutcomesOf(const char* anExtension, const std::string& aNotOpened, const std::string& aReadsOnce,
                      const std::string& aReadsForGood) {
    SCOPED_TRACE(anExtension);
    const std::string notOpened =
        "1: not opened " + aNotOpened + ", then not opened " + aNotOpened + " without the last\n";
    EXPECT_EQ(RunUndisturbed(Walk(anExtension)), "3, then 3");
    ExpectOutcomes(Walk(anExtension), {{SystemCall::Open, notOpened, notOpened},
                                       {SystemCall::FStat, notOpened, notOpened},
                                       {SystemCall::PRead, aReadsOnce, aReadsForGood}});
    EXPECT_EQ(RunInterrupted(100, Walk(anExtension)), "3, then 3");
}

} // namespace

TEST(PlaylistFaults, AWalkGivesWholeEntriesUpToTheFailureAndAllTheNextTime) {
    // The first reads of M3U look for a playlist of another kind, and may fail.
    ExpectOutcomesOf("m3u", "no start", "1-4: 3, then 3\n5-7: 0, then 3\n8: 1, then 3\n",
                     "1-7: 0, then 3\n8: 1, then 3\n");
    const std::string indexed = "1-3: 0, then 3\n4: 1, then 3\n";
    ExpectOutcomesOf("pls", "0", indexed, indexed);
    ExpectOutcomesOf("asx", "0", indexed, indexed);
}

TEST(PlaylistFaults, ReadsThatComeShortBeforeTheyFailGiveNoPartOfAnEntry) {
    FaultManner manner;
    manner.mCall = SystemCall::PRead;
    manner.mMaximum = 4090;
    const std::string indexed = "1-3: 0, then 3\n4: 1, then 3\n";
    for (const auto& expected :
         {std::make_pair("m3u", "1-7: 0, then 3\n8: 1, then 3\n"), std::make_pair("pls", indexed.c_str()),
          std::make_pair("asx", indexed.c_str())}) {
        const FaultyOperation walk = Walk(expected.first);
        manner.mError = 0;
        const std::string whole = SweepFaults(manner, walk);
        EXPECT_EQ(whole.substr(whole.find(':')), ": 3, then 3\n") << expected.first;
        manner.mError = EIO;
        manner.mfForGood = true;
        EXPECT_EQ(SweepFaults(manner, walk), expected.second) << expected.first;
        manner.mfForGood = false;
    }
}
