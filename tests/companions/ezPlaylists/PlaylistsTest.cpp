#include "ezPlaylists/Playlists.h"

#include "PlaylistKit.h"

#include "ezPlaylists/M3UPlaylistParser.h"
#include "ezPlaylists/detail/PLSPlaylistParser.h"

#include "ez/PlaylistParserFactory.h"

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
