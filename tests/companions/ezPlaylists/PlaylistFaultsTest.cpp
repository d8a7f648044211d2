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
        for (int line = 0; line < 3000; ++line) {
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
        {
            // The last thing that goes wrong is the close.
            const FaultySystem system(aFaults);
            playlist.reset();
        }
        EXPECT_EQ(OpenedPlaylist(path).Walk(), "3");
        EXPECT_TRUE(asserts.Failures().empty());
        return text;
    };
}

} // namespace

TEST(PlaylistFaults, A) {
    for (const char* extension : {"m3u", "pls", "asx"}) {
        SCOPED_TRACE(extension);
        EXPECT_EQ(RunUndisturbed(Walk(extension)), "3, then 3");
        ExpectOutcomes(Walk(extension), {});
        EXPECT_EQ(RunInterrupted(1, Walk(extension)), "3, then 3");
    }
}
