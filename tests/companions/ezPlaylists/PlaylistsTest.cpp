#include "ezPlaylists/Playlists.h"

#include "PlaylistKit.h"

#include "ezPlaylists/detail/PLSPlaylistParser.h"

#include "ez/PlaylistParserFactory.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"

#include "support/Folders.h"

namespace {

/// The MIME type of the reader that is found; "none".
std::string TypeOf(const PlaylistParserFactory& aFactory, const char* aMimeType, const char* anExtension) {
    const ezStreamOwner stream = MemoryPlaylist("");
    const std::unique_ptr<PlaylistParser> parser(
        aFactory.NewPlaylistParser(stream.get(), aMimeType, anExtension));
    return parser != nullptr ? Str(parser->GetMimeType()) : "none";
}

} // namespace

TEST(Playlists, ReadersAreFoundByEveryNameOfTheirs) {
    PlaylistParserFactory factory;
    ASSERT_TRUE(RegisterPlaylistParsers(factory));
    for (const char* extension : {"m3u", ".M3U", "m3u8"}) {
        EXPECT_EQ(TypeOf(factory, "", extension), "audio/x-mpegurl") << extension;
    }
    for (const char* type :
         {"audio/x-mpegurl", "audio/mpegurl", "application/x-mpegurl", "application/vnd.apple.mpegurl"}) {
        EXPECT_EQ(TypeOf(factory, type, ""), "audio/x-mpegurl") << type;
    }
    EXPECT_EQ(TypeOf(factory, "audio/x-scpls", "m3u"), "audio/x-scpls"); // the type decides
    EXPECT_EQ(TypeOf(factory, "", ".WPL"), "application/vnd.ms-wpl");
    for (const char* extension : {"asx", "wax", "wvx"}) {
        EXPECT_EQ(TypeOf(factory, "", extension), "video/x-ms-asx");
    }
    EXPECT_EQ(TypeOf(factory, "audio/x-ms-wax", ""), "video/x-ms-asx");
    EXPECT_EQ(TypeOf(factory, "video/x-ms-asf", "asx"), "none"); // that is a file
    EXPECT_EQ(TypeOf(factory, "audio/mpeg", "m3u"), "none");
    EXPECT_FALSE(factory.IsSupportedPlaylist("", "mp3"));
    EXPECT_FALSE(factory.IsSupportedPlaylist("audio/mpeg", "m3u"));
}

TEST(Playlists, ReaderThatTheHostRegisteredFirstWins) {
    PlaylistParserFactory factory;
    factory.Register(PLSPlaylistParser::sBuild, "", "m3u");
    ASSERT_TRUE(RegisterPlaylistParsers(factory));
    EXPECT_EQ(TypeOf(factory, "", "m3u"), "audio/x-scpls");
    EXPECT_EQ(TypeOf(factory, "", "m3u8"), "audio/x-mpegurl");
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
