#include "ezPlaylists/Playlists.h"

#include "PlaylistKit.h"

#include "ezPlaylists/M3UPlaylistParser.h"
#include "ezPlaylists/detail/PLSPlaylistParser.h"

#include "ez/PlaylistParserFactory.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"

#include "support/Folders.h"

namespace {

template <typename Reader>
bool Builds(const PlaylistParserFactory& aFactory, const char* aMimeType, const char* anExtension) {
    const ezStreamOwner stream = MemoryPlaylist("");
    const std::unique_ptr<PlaylistParser> parser(
        aFactory.NewPlaylistParser(stream.get(), aMimeType, anExtension));
    return dynamic_cast<Reader*>(parser.get()) != nullptr;
}

} // namespace

TEST(Playlists, ReadersAreFoundByExtensionAndMimeType) {
    PlaylistParserFactory factory;
    ASSERT_TRUE(RegisterPlaylistParsers(factory));
    for (const char* extension : {"m3u", ".M3U", "m3u8"}) {
        EXPECT_TRUE(Builds<M3UPlaylistParser>(factory, "", extension)) << extension;
    }
    for (const char* type :
         {"audio/x-mpegurl", "audio/mpegurl", "application/x-mpegurl", "application/vnd.apple.mpegurl"}) {
        EXPECT_TRUE(Builds<M3UPlaylistParser>(factory, type, "")) << type;
    }
    EXPECT_TRUE(Builds<PLSPlaylistParser>(factory, "", "pls"));
    EXPECT_TRUE(Builds<PLSPlaylistParser>(factory, "audio/x-scpls", "m3u"));
    EXPECT_FALSE(factory.IsSupportedPlaylist("", "mp3"));
    EXPECT_FALSE(factory.IsSupportedPlaylist("audio/mpeg", "m3u"));
}

TEST(Playlists, NoReaderIsMadeWithoutAStream) {
    PlaylistParserFactory factory;
    ASSERT_TRUE(RegisterPlaylistParsers(factory));
    EXPECT_EQ(factory.NewPlaylistParser(nullptr, "", "m3u"), nullptr);
    EXPECT_EQ(factory.NewPlaylistParser(nullptr, "", "pls"), nullptr);
}

TEST(Playlists, ReaderThatTheHostRegisteredFirstWins) {
    PlaylistParserFactory factory;
    factory.Register(PLSPlaylistParser::sBuild, "", "m3u");
    ASSERT_TRUE(RegisterPlaylistParsers(factory));
    EXPECT_TRUE(Builds<PLSPlaylistParser>(factory, "", "m3u"));
    EXPECT_TRUE(Builds<M3UPlaylistParser>(factory, "", "m3u8"));
}

TEST(Playlists, SamplesAreReadAsDescribed) {
    struct Sample {
        const char* mName;
        std::vector<std::string> mLocations;
        const char* mFirstTitle;
    };
    const Sample samples[] = {
        {"sunday.m3u",
         {"../music/morning-walk.mp3", "../music/plain-water.flac", "http://radio.example/live.mp3"},
         "The Test Tones - Morning Walk"},
        {"old-player.m3u",
         {"Fr\xFChst\xFC"
          "ck.mp3",
          "..\\music\\door-bell.wav", "C:\\Music\\100% Caf\xE9.mp3"},
         ""},
        {"breakfast.m3u8",
         {"Fr\xC3\xBChst\xC3\xBC"
          "ck.mp3",
          "../music/evening-train.m4a"},
         "Fr\xC3\xBChst\xC3\xBC"
         "ck"},
        {"live-stream.m3u8", {}, ""},
        {"stations.pls",
         {"http://radio.example:8000/stream", "../music/paper-lantern.ogg", "../music/door-bell.wav"},
         "Radio Example"},
    };
    PlaylistParserFactory factory;
    ASSERT_TRUE(RegisterPlaylistParsers(factory));
    for (const Sample& sample : samples) {
        const ezCString path = ezCString(EZ_SAMPLES "/playlists/") + sample.mName;
        auto* file = new ezFile(path, ezFileOpenMode_Read);
        ASSERT_TRUE(file->Open()) << sample.mName;
        const ezStreamOwner stream(ezFileGetStream(file, ezCString(), path));
        const std::unique_ptr<PlaylistParser> reader(
            factory.NewPlaylistParser(stream.get(), "", stream->GetExtension()));
        ASSERT_NE(reader, nullptr) << sample.mName;
        const PlaylistEntries entries =
            CheckAgreement(*reader, static_cast<std::size_t>(stream->GetSize().ToUInt64()));
        EXPECT_EQ(Locations(entries), sample.mLocations) << sample.mName;
        EXPECT_EQ(entries.empty() ? "" : Str(entries.front().mTitle), sample.mFirstTitle) << sample.mName;
    }
}
