#include "Announce.h"
#include "arguments/Arguments.h"
#include "output/SafeText.h"
#include "playlist/PlaylistStream.h"
#include "support/HttpServer.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

constexpr const char* kSongs = "#EXTM3U\n"
                               "#EXTINF:3723,The first\n"
                               "music/first song.mp3\n"
                               "second.mp3\n"
                               "#EXTINF:-1,Radio\n"
                               "http://radio.example:8000/live?x=1\n";
constexpr std::size_t kFirst = 8;
constexpr std::size_t kSecond = 52;
constexpr std::size_t kThird = 63;

ProgramResult Playlist(Words aWords) {
    aWords.insert(aWords.begin(), "playlist");
    return RunTool(aWords);
}

std::vector<Json> JsonOf(Words aWords) {
    aWords.emplace_back("--json");
    const ProgramResult result = Playlist(aWords);
    EXPECT_EQ(result.mStatus, 0) << result.mError;
    std::vector<Json> objects;
    for (const std::string& line : LinesOf(result.mOut)) {
        objects.push_back(Json::parse(line));
    }
    return objects;
}

/// Runs it with a file as standard input.
ProgramResult FromInput(const std::string& aFile, const std::string& anArguments) {
    return RunSystemProgram(
        "/bin/sh", {"-c", ShellWordsOf(EZANNOUNCE) + " playlist " + anArguments + " - < \"$0\"", aFile});
}

std::string FileURL(const std::string& aPath) {
    return "file://" + aPath;
}

/// What is wrong with a command line; "" when nothing is.
std::string UsageError(Words aWords) {
    aWords.insert(aWords.begin(), {"ezannounce", "playlist"});
    std::vector<const char*> words;
    words.reserve(aWords.size());
    for (const std::string& word : aWords) {
        words.push_back(word.c_str());
    }
    Arguments arguments;
    return ReadArguments(static_cast<int>(words.size()), words.data(), arguments).mError;
}

/// Answers every read alike.
class AnsweringStream : public ezStream {
public:
    explicit AnsweringStream(ezStreamingStatus aStatus) : mStatus(aStatus) {}
    ezCString GetExtension() const override { return "m3u"; }
    ezCString GetURI() const override { return "/a.m3u"; }
    ezuint64 GetSize() override { return 1; }
    bool IsOpened() override { return true; }
    ezStreamingStatus Seek(const ezuint64& /*aPosition*/) override { return ezStreamingStatus_OutOfRange; }
    ezStreamingStatus Read(void* /*aBuffer*/, std::size_t* aSize, int /*aFlag*/) override {
        *aSize = 0;
        return mStatus;
    }

private:
    const ezStreamingStatus mStatus;
};

#ifdef EZ_HAS_HTTP_STREAM
/// Serves a list under every path, with further header lines.
HttpServer::Handler ServingList(const std::string& aList, const std::string& aFields) {
    HttpMedia media;
    media.mBytes = aList;
    media.mFields = aFields;
    return Serving(media);
}

/// The URLs of a list of a server; its error line where it has one.
Words URLsAt(const std::string& aURL) {
    const ProgramResult result = Playlist({aURL, "--json"});
    Words urls = LinesOf(result.mError);
    for (const std::string& line : LinesOf(result.mOut)) {
        urls.push_back(Json::parse(line)["url"]);
    }
    return urls;
}
#endif

} // namespace

TEST(Playlist, EntriesAreATable) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("songs.m3u", kSongs);
    const ProgramResult result = Playlist({path});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(result.mOut, "INDEX  POSITION  TITLE      DURATION  URL\n"
                           "0      8         The first  1:02:03   " +
                               FileURL(folder.Path("music/first%20song.mp3")) +
                               "\n"
                               "1      52        second     -         " +
                               FileURL(folder.Path("second.mp3")) +
                               "\n"
                               "2      63        Radio      -         http://radio.example:8000/live?x=1\n");
}

TEST(Playlist, EntriesAreJsonObjects) {
    const TemporaryFolder folder;
    const std::vector<Json> entries = JsonOf({folder.Write("songs.m3u8", kSongs)});
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0], Json({{"index", 0},
                                {"position", kFirst},
                                {"next_position", kSecond},
                                {"title", "The first"},
                                {"duration", 3723},
                                {"location", "music/first song.mp3"},
                                {"url", FileURL(folder.Path("music/first%20song.mp3"))}}));
    EXPECT_EQ(entries[1]["title"], "second");
    EXPECT_EQ(entries[1]["duration"], nullptr);
    EXPECT_EQ(entries[2]["next_position"], nullptr);
    EXPECT_EQ(entries[2]["url"], "http://radio.example:8000/live?x=1");
}

TEST(Playlist, OneEntryIsFoundByIndexByPositionAndAfterAnother) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("songs.m3u", kSongs);
    const auto only = [](const std::vector<Json>& anEntries) {
        EXPECT_EQ(anEntries.size(), 1U);
        return anEntries.empty() ? Json() : anEntries.front();
    };
    Json entry = only(JsonOf({path, "--index", "1"}));
    EXPECT_EQ(entry["index"], 1);
    EXPECT_EQ(entry["position"], kSecond);
    EXPECT_EQ(entry["title"], "second");
    entry = only(JsonOf({path, "--index", "1", "--next"}));
    EXPECT_EQ(entry["index"], 2);
    EXPECT_EQ(entry["position"], kThird);
    entry = only(JsonOf({path, "--at", "52"}));
    EXPECT_EQ(entry["index"], nullptr);
    EXPECT_EQ(entry["position"], kSecond);
    EXPECT_EQ(entry["next_position"], kThird);
    entry = only(JsonOf({path, "--at", "52", "--next"}));
    EXPECT_EQ(entry["title"], "Radio");
}

TEST(Playlist, EntryThatIsNotThereIsAnErrorWithTheFile) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("songs.m3u", kSongs);
    const auto errorOf = [&](Words aWords) {
        aWords.insert(aWords.begin(), path);
        const ProgramResult result = Playlist(aWords);
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mOut, "");
        return result.mError;
    };
    EXPECT_EQ(errorOf({"--index", "3"}), "ezannounce: " + path + ": no entry of index 3\n");
    EXPECT_EQ(errorOf({"--at", "1000"}), "ezannounce: " + path + ": no entry at byte 1000\n");
    EXPECT_EQ(errorOf({"--at", "18446744073709551615"}),
              "ezannounce: " + path + ": no entry at byte 18446744073709551615\n");
    EXPECT_EQ(errorOf({"--index", "2", "--next"}), "ezannounce: " + path + ": no entry after that one\n");
}

TEST(Playlist, WhatCannotBeReadIsNamed) {
    const TemporaryFolder folder;
    const std::string missing = folder.Path("missing.m3u");
    EXPECT_EQ(Playlist({missing}).mError, "ezannounce: " + missing + ": No such file or directory\n");
    EXPECT_EQ(Playlist({folder.GetPath()}).mError,
              "ezannounce: " + folder.GetPath() + ": not a regular file\n");
    const std::string other = folder.Write("song.mp3", kSongs);
    const ProgramResult result = Playlist({other});
    EXPECT_EQ(result.mError, "ezannounce: " + other + ": no reader for this kind of playlist\n");
    EXPECT_EQ(result.mStatus, 1);
}

TEST(Playlist, LineOfEachEntryBeginsAtItsMultipleOfTheLength) {
    const TemporaryFolder folder;
    std::string list;
    for (int i = 0; i < 1000; ++i) {
        list += "#EXTINF:1,Title " + std::string(static_cast<std::size_t>(i % 50), 'x') + "\na/" +
                std::to_string(i) + ".mp3\n";
    }
    const ProgramResult result =
        Playlist({folder.Write("songs.m3u", list), "--serve-lines", "192.168.1.10", "9000", "pl"});
    EXPECT_EQ(result.mStatus, 0);
    constexpr std::size_t kLength = 28 + 55;
    ASSERT_EQ(result.mOut.size(), 1000 * kLength);
    for (std::size_t i = 0; i < 1000; ++i) {
        const std::string line = result.mOut.substr(i * kLength, kLength);
        EXPECT_EQ(line.substr(0, 28), "http://192.168.1.10:9000/pl/");
        EXPECT_EQ(line.substr(kLength - 6), ".mp3\r\n");
    }
    EXPECT_EQ(result.mOut.substr(0, kLength),
              "http://192.168.1.10:9000/pl/00000000000000000000/0000000000000000000000/Title.mp3\r\n");
}

TEST(Playlist, StrangeBytesNeitherReachTheTerminalNorBreakALine) {
    const TemporaryFolder folder;
    const std::string path = folder.Write(
        "songs.m3u", std::string("#EXTINF:1,A\x1B[2J\tB\xE2\x80\xAE\na\xFF\x1B.\x1B[m\nb\0c.mp3\n", 37));
    const ProgramResult table = Playlist({path});
    EXPECT_EQ(table.mStatus, 0);
    EXPECT_EQ(table.mOut.find('\x1B'), std::string::npos);
    EXPECT_NE(table.mOut.find("A\\x1b[2J\\tB\\xe2\\x80\\xae"), std::string::npos) << table.mOut;
    EXPECT_EQ(table.mOut.find('\0'), std::string::npos);
    const std::vector<Json> entries = JsonOf({path});
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0]["location_bytes"], "61ff1b2e1b5b6d");
    EXPECT_EQ(entries[0]["title"], "A\x1B[2J\tB\xE2\x80\xAE");
    EXPECT_EQ(entries[1]["url"], nullptr); // no URL holds a NUL
    const ProgramResult lines = Playlist({path, "--serve-lines", "1.2.3.4", "80", "x"});
    const std::size_t length = std::string("http://1.2.3.4:80/x/").size() + 55;
    ASSERT_EQ(lines.mOut.size(), 2 * length);
    EXPECT_EQ(lines.mOut.find('\x1B'), std::string::npos);
    EXPECT_EQ(lines.mOut.find("\r\n"), length - 2);
    EXPECT_NE(lines.mOut.find("/A_[2J_B___._[m\r\n"), std::string::npos) << lines.mOut;
}

TEST(Playlist, EscapedNamesWithoutTitleAreDecoded) {
    const TemporaryFolder folder;
    const std::vector<Json> m3u = JsonOf({folder.Write("a.m3u", "100%25 & more.mp3\nhttp://h/a%20b.mp3\n")});
    ASSERT_EQ(m3u.size(), 2U);
    EXPECT_EQ(m3u[0]["title"], "100%25 & more"); // the name of a file is not escaped
    EXPECT_EQ(m3u[1]["title"], "a b");
    const std::vector<Json> xspf = JsonOf({EZ_SAMPLES "/playlists/walking-tour.xspf"});
    ASSERT_EQ(xspf.size(), 4U);
    EXPECT_EQ(xspf[2]["title"], "Caf\xC3\xA9 at noon");
}

TEST(Playlist, SamplesOfEveryFormatHaveTheirEntries) {
    const std::string music = FileURL(std::string(EZ_SAMPLES) + "/music/");
    const auto urlsOf = [](const char* aName) {
        Words urls;
        for (const Json& entry : JsonOf({std::string(EZ_SAMPLES "/playlists/") + aName})) {
            urls.push_back(entry["url"]);
        }
        return urls;
    };
    EXPECT_EQ(urlsOf("walking-tour.xspf"), (Words{music + "morning-walk.mp3", music + "uneven-road-vbr.mp3",
                                                  FileURL(EZ_SAMPLES "/playlists/Caf%C3%A9%20at%20noon.mp3"),
                                                  "http://radio.example:8000/live?quality=high&format=mp3"}));
    EXPECT_EQ(urlsOf("stations.asx"),
              (Words{"http://radio.example/hour.mp3?id=1&quality=high",
                     "http://radio.example/streams/news.mp3", "http://radio.example/more.asx"}));
    EXPECT_EQ(urlsOf("old-station.asx"),
              (Words{"http://radio.example/old.asf?MSWMExt=.asf", "http://mirror.example/old.asf"}));
    EXPECT_EQ(urlsOf("in-the-car.wpl"),
              (Words{music + "morning-walk.mp3", music + "paper-lantern.wma",
                     "file:///C:/Users/Kim/Music/Fish%20&%20Chips/Salt'n'Vinegar.mp3"}));
}

TEST(Playlist, StandardInputIsReadByHowItBegins) {
    for (const char* name : {"walking-tour.xspf", "stations.asx", "old-station.asx", "in-the-car.wpl"}) {
        const std::string path = std::string(EZ_SAMPLES "/playlists/") + name;
        const std::size_t count = LinesOf(Playlist({path}).mOut).size();
        EXPECT_GT(count, 2U);
        EXPECT_EQ(LinesOf(FromInput(path, "").mOut).size(), count) << name;
    }
    const TemporaryFolder folder;
    EXPECT_EQ(LinesOf(FromInput(folder.Write("a", "\xEF\xBB\xBF[Playlist]\nFile1=a\n"), "").mOut).size(), 2U);
    EXPECT_EQ(LinesOf(FromInput(folder.Write("b", "a.mp3\nb.mp3\n"), "").mOut).size(), 3U);
    const std::string list = "[playlist]\nFile1=a\nFile2=b\n"; // as M3U its first line would be one more
    EXPECT_EQ(LinesOf(FromInput(folder.Write("d", std::string(1024 - 10, '\n') + list), "").mOut).size(), 3U);
    EXPECT_EQ(LinesOf(FromInput(folder.Write("e", std::string(1025 - 10, '\n') + list), "").mOut).size(), 4U);
    const ProgramResult empty = FromInput(folder.Write("c", ""), "--index 0");
    EXPECT_EQ(empty.mStatus, 1);
    EXPECT_EQ(empty.mError, "ezannounce: standard input: no entry of index 0\n");
}

TEST(Playlist, StandardInputIsHeldUpToItsBound) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "a.mp3\n");
    std::filesystem::resize_file(path, std::uintmax_t{64} << 20);
    EXPECT_EQ(FromInput(path, "").mError.find("larger than"), std::string::npos);
    std::filesystem::resize_file(path, (std::uintmax_t{64} << 20) + 1);
    EXPECT_EQ(FromInput(path, "").mError, "ezannounce: standard input: larger than 64 MiB\n");
}

TEST(Playlist, EmptyPlaylistIsAnEmptyTable) {
    const TemporaryFolder folder;
    const ProgramResult result = Playlist({folder.Write("a.m3u", "")});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, "INDEX  POSITION  TITLE  DURATION  URL\n");
    EXPECT_TRUE(JsonOf({folder.Path("a.m3u")}).empty());
}

TEST(Playlist, EmptyPlaylistIsToldOf) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a.m3u", "#EXTM3U\n");
    const std::string error = "ezannounce: " + path + ": no entries\n";
    EXPECT_EQ(Playlist({path}).mError, error);
    EXPECT_EQ(Playlist({path, "--json"}).mError, error);
    const ProgramResult lines = Playlist({"--serve-lines", "1.2.3.4", "80", "x", path});
    EXPECT_EQ(lines.mError, error);
    EXPECT_EQ(lines.mOut, "");
    EXPECT_EQ(lines.mStatus, 0);
}

TEST(Playlist, AFileThatIsOneHoleIsNoPlaylist) {
    const TemporaryFolder folder;
    for (const char* name : {"a.m3u", "a.pls", "a.xspf", "a.asx"}) {
        const std::string path = folder.Write(name, "[playlist]\n");
        std::filesystem::resize_file(path, std::uintmax_t{64} * 1024 * 1024 * 1024);
        const ProgramResult result = Playlist({path, "--index", "7"});
        EXPECT_EQ(result.mStatus, 1);
        const bool fLines = path.back() != 'f' && path.back() != 'x';
        EXPECT_EQ(result.mError, "ezannounce: " + path +
                                     (fLines ? ": not a playlist: a line of more than 1 MiB stands in it\n"
                                             : ": too large to be read to its end\n"));
    }
}

TEST(Playlist, A16BitPlaylistOfAnyKindIsRead) {
    const TemporaryFolder folder;
    for (const char* name : {"morning.m3u", "radio.pls"}) {
        const std::string text = name[0] == 'm' ? "#EXTM3U\r\n#EXTINF:7,A\r\na.mp3\r\n"
                                                : "[playlist]\r\nFile1=a.mp3\r\nTitle1=A\r\nLength1=7\r\n";
        for (const bool fBigEndian : {false, true}) {
            std::string wide = fBigEndian ? "\xFE\xFF" : "\xFF\xFE";
            for (const char byte : text) {
                wide += fBigEndian ? std::string{'\0', byte} : std::string{byte, '\0'};
            }
            const std::string path = folder.Write(name, wide);
            const std::vector<Json> entries = JsonOf({path});
            ASSERT_EQ(entries.size(), 1U) << name;
            EXPECT_EQ(entries[0]["title"], "A");
            EXPECT_EQ(entries[0]["duration"], 7);
            EXPECT_EQ(entries[0]["location"], "a.mp3");
            EXPECT_EQ(FromInput(path, "--json").mOut.find("\"location\":\"a.mp3\"") != std::string::npos,
                      true);
        }
    }
}

TEST(Playlist, HLSPlaylistIsAnErrorThatSaysWhatItIs) {
    const std::string path = EZ_SAMPLES "/playlists/live-stream.m3u8";
    for (const Words& options : {Words{}, Words{"--json"}, Words{"--index", "0"}, Words{"--at", "0"},
                                 Words{"--serve-lines", "1.2.3.4", "80", "x"}}) {
        Words words = options;
        words.push_back(path);
        const ProgramResult result = Playlist(words);
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mOut, "");
        EXPECT_EQ(result.mError,
                  "ezannounce: " + path + ": an HLS playlist: segments of one stream, not a list of media\n");
    }
}

TEST(Playlist, ReadErrorAtTheFirstByteIsNamed) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("a.m3u");
    std::filesystem::create_symlink("/proc/self/mem", path); // nothing is mapped at its start
    const ProgramResult result = Playlist({path});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(result.mError, "ezannounce: " + path + ": Input/output error\n");
}

TEST(Playlist, FileThatStatesNoSizeIsReadAllTheSame) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("a.m3u");
    std::filesystem::create_symlink("/proc/sys/kernel/ostype", path);
    const std::vector<Json> entries = JsonOf({path});
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0]["location"], "Linux");
    EXPECT_EQ(entries[0]["url"], FileURL(folder.Path("Linux")));
}

TEST(Playlist, URLsOfALocalListAreHandedOutEscaped) {
    const TemporaryFolder folder;
    const std::vector<Json> entries =
        JsonOf({folder.Write("a.m3u", "http://h/a b\xC3\xA9.mp3\nhttp://h/a%20b.mp3?x=<1>&y=%25\n")});
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0]["url"], "http://h/a%20b%C3%A9.mp3");
    EXPECT_EQ(entries[0]["location"], "http://h/a b\xC3\xA9.mp3");
    EXPECT_EQ(entries[1]["url"], "http://h/a%20b.mp3?x=%3C1%3E&y=%25");
}

TEST(PlaylistStream, OnlyAFailedReadIsAFailure) {
    for (const ezStreamingStatus status :
         {ezStreamingStatus_NoError, ezStreamingStatus_EOS, ezStreamingStatus_NotSupported,
          ezStreamingStatus_ReadError, ezStreamingStatus_Interrupted, ezStreamingStatus_InvalidState}) {
        auto* stream = new PlaylistStream(ezStreamOwner(new AnsweringStream(status)));
        const ezStreamOwner owner(stream);
        EXPECT_EQ(stream->Seek(7), ezStreamingStatus_OutOfRange);
        EXPECT_FALSE(stream->HasFailed());
        char byte = 0;
        std::size_t size = 1;
        EXPECT_EQ(stream->Read(&byte, &size, 0), status);
        EXPECT_EQ(stream->HasFailed(),
                  status >= ezStreamingStatus_InvalidParam && status != ezStreamingStatus_NotSupported);
    }
}

TEST(Playlist, LongTableComesInBatches) {
    const TemporaryFolder folder;
    std::string list;
    for (int i = 0; i < 2500; ++i) {
        list += std::to_string(i) + ".mp3\n";
    }
    const std::vector<std::string> lines = LinesOf(Playlist({folder.Write("a.m3u", list)}).mOut);
    ASSERT_EQ(lines.size(), 2501U);
    EXPECT_EQ(lines[2500].substr(0, 5), "2499 ");
}

#ifdef EZ_HAS_HTTP_STREAM

TEST(PlaylistOfAServer, LocationsAreBesideItsURL) {
    const HttpServer server(ServingList("a b.mp3\n../c.mp3\nhttp://h/d.mp3\n", ""));
    EXPECT_EQ(URLsAt(server.URL("/music/list.m3u?x=/y/z")),
              (Words{server.URL("/music/a%20b.mp3"), server.URL("/c.mp3"), "http://h/d.mp3"}));
}

TEST(PlaylistOfAServer, AfterARedirectLocationsAreBesideWhereItLed) {
    const HttpServer::Handler list = ServingList("a.mp3\n../b.mp3\n", "");
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        if (aRequest.mTarget == "/go.m3u" || aRequest.mTarget == "/x/go") {
            const std::string to = aRequest.mTarget == "/x/go" ? "../deep/er/list.m3u" : "/x/go";
            aConnection.Send(HttpHead("302 Found", "Content-Length: 0\r\nLocation: " + to + "\r\n"));
            return;
        }
        list(aRequest, aConnection);
    });
    const Words urls = {server.URL("/deep/er/a.mp3"), server.URL("/deep/b.mp3")};
    EXPECT_EQ(URLsAt(server.URL("/go.m3u")), urls);
    EXPECT_EQ(URLsAt(server.URL("/x/go")), urls);
    EXPECT_EQ(server.GetRequests(),
              (Words{"/go.m3u", "/x/go", "/deep/er/list.m3u", "/x/go", "/deep/er/list.m3u"}));
}

TEST(PlaylistOfAServer, ExtensionAskedForCountsWhereTheRedirectLedToNone) {
    const HttpServer::Handler list = ServingList("[playlist]\nFile1=a.mp3\n", "");
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        if (aRequest.mTarget == "/a.m3u") { // read as M3U the list would have two entries
            aConnection.Send(HttpHead("302 Found", "Content-Length: 0\r\nLocation: /b.pls\r\n"));
        } else if (aRequest.mTarget == "/c.pls") {
            aConnection.Send(HttpHead("302 Found", "Content-Length: 0\r\nLocation: /d/e.cgi\r\n"));
        } else {
            list(aRequest, aConnection);
        }
    });
    EXPECT_EQ(URLsAt(server.URL("/a.m3u")), Words{server.URL("/a.mp3")});
    EXPECT_EQ(URLsAt(server.URL("/c.pls")), Words{server.URL("/d/a.mp3")});
}

TEST(PlaylistOfAServer, TypeWithAReaderCountsBeforeTheExtension) {
    const HttpServer server(
        ServingList("[playlist]\nFile1=a.mp3\n", "Content-Type: Audio/X-SCPLS; charset=utf-8\r\n"));
    const Words urls = {server.URL("/a.mp3")};
    EXPECT_EQ(URLsAt(server.URL("/list.m3u")), urls);
    EXPECT_EQ(URLsAt(server.URL("/list.cgi")), urls);
    EXPECT_EQ(URLsAt(server.URL("/list")), urls);
}

TEST(PlaylistOfAServer, TypeWithoutAReaderLeavesItToTheExtensionAndThenToTheBeginning) {
    const HttpServer server(ServingList("[playlist]\nFile1=a.mp3\n", "Content-Type: text/plain\r\n"));
    const Words urls = {server.URL("/a.mp3")};
    EXPECT_EQ(URLsAt(server.URL("/list.PLS")), urls);
    EXPECT_EQ(URLsAt(server.URL("/list")), urls);
    EXPECT_EQ(URLsAt(server.URL("/")), urls);
    EXPECT_EQ(URLsAt(server.URL("/list.m3u")),
              (Words{server.URL("/[playlist]"), server.URL("/File1=a.mp3")}));
    EXPECT_EQ(URLsAt(server.URL("/list.cgi")),
              Words{"ezannounce: " + server.URL("/list.cgi") + ": no reader for this kind of playlist"});
}

TEST(PlaylistOfAServer, AnswerThatIsNoMediaIsNamed) {
    const HttpServer server([](const HttpRequest&, HttpConnection& aConnection) {
        aConnection.Send(HttpHead("404 Not Found", "Content-Length: 0\r\n"));
    });
    const ProgramResult result = Playlist({server.URL("/a.m3u")});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError,
              "ezannounce: " + server.URL("/a.m3u") + ": the server answered with status 404\n");
}

#endif

TEST(PlaylistArguments, WrongUsageIsToldByName) {
    EXPECT_EQ(UsageError({"a"}), "");
    EXPECT_EQ(UsageError({"-"}), "");
    EXPECT_EQ(UsageError({}), "playlist: no playlist given");
    EXPECT_EQ(UsageError({"a", "b"}), "playlist takes one operand");
    EXPECT_EQ(UsageError({"a", "--index", "x"}), "--index: not a number: x");
    EXPECT_EQ(UsageError({"a", "--index", "4294967296"}), "--index: not a number: 4294967296");
    EXPECT_EQ(UsageError({"a", "--at", "1.5"}), "--at: not a number: 1.5");
    EXPECT_EQ(UsageError({"a", "--index", "1", "--at", "2"}), "--index and --at do not go together");
    EXPECT_EQ(UsageError({"a", "--next"}), "--next goes with --index or --at only");
    const char* lines = "--serve-lines";
    EXPECT_EQ(UsageError({"a", lines, "1.2.3.4", "65535", "x"}), "");
    EXPECT_EQ(UsageError({"a", lines, "1.2.3", "80", "x"}), "--serve-lines: not an IPv4 address: 1.2.3");
    EXPECT_EQ(UsageError({"a", lines, "1.2.3.4", "65536", "x"}), "--serve-lines: not a port: 65536");
    EXPECT_EQ(UsageError({"a", lines, "1.2.3.4", "80", "a/b"}), "--serve-lines: not an identifier: a/b");
    EXPECT_EQ(UsageError({"a", lines, "1.2.3.4", "80", "x", "--json"}),
              "--serve-lines does not go with --index, --at and --json");
    for (const char* id : {"a?b", "a#b", "a%20b", "a b", "a\tb", "", "\xC3\xA9"}) {
        EXPECT_EQ(UsageError({"a", lines, "1.2.3.4", "80", id}),
                  "--serve-lines: not an identifier: " + std::string(id));
    }
    EXPECT_EQ(UsageError({"a", "--explain"}), "--explain and --parse-options go with parse only");
}

TEST(PlaylistArguments, ServeLinesTakesThreeWordsWhereverItStands) {
    const char* lines = "--serve-lines";
    EXPECT_EQ(UsageError({lines, "1.2.3.4", "80", "x", "a"}), "");
    EXPECT_EQ(UsageError({"a", lines, "1.2.3.4", "80", "x", "--log", "error"}), "");
    EXPECT_EQ(UsageError({lines, "1.2.3.4", "80", "x", lines, "5.6.7.8", "90", "y", "a"}), "");
    EXPECT_EQ(UsageError({lines, "1.2.3.4", "80", "x", "--", "a"}), "");
    const std::string count = "--serve-lines takes three words: IP PORT ID";
    EXPECT_EQ(UsageError({"a", lines}), count);
    EXPECT_EQ(UsageError({"a", lines, "1.2.3.4"}), count);
    EXPECT_EQ(UsageError({"a", lines, "1.2.3.4", "80"}), count);
    EXPECT_EQ(UsageError({"a", lines, "1.2.3.4", "80", "--log", "error"}), count);
    EXPECT_EQ(UsageError({"a", lines, "1.2.3.4", "80", lines, "5.6.7.8", "90", "y"}), count);
    EXPECT_EQ(UsageError({lines, "1.2.3.4", "80", "x", "y", "a"}), "playlist takes one operand");

    const TemporaryFolder folder;
    const std::string path = folder.Write("a.m3u", "a.mp3\n");
    const ProgramResult result = Playlist({lines, "1.2.3.4", "80", "x", lines, "5.6.7.8", "90", "y", path});
    EXPECT_EQ(result.mStatus, 0) << result.mError;
    EXPECT_EQ(result.mOut.substr(0, 20), "http://5.6.7.8:90/y/");
}

TEST(PlaylistArguments, TheyGoWithThatVerbOnly) {
    for (const Words& words :
         {Words{"a", "--index", "1"}, Words{"capabilities", "--at", "1"}, Words{"mapper", "list", "--next"},
          Words{"types", "mp3", "--serve-lines", "1.2.3.4", "80", "x"}}) {
        const ProgramResult result = RunTool(words);
        EXPECT_EQ(result.mStatus, 2);
        EXPECT_NE(result.mError.find("--index, --at, --next and --serve-lines go with playlist only"),
                  std::string::npos);
    }
}

TEST(WithoutUnsafe, TextKeepsItsLength) {
    EXPECT_EQ(WithoutUnsafe("a\\b\n\x1B\xFF\xC3\xA9\xE2\x80\xAE", '_'), "a\\b___\xC3\xA9___");
    EXPECT_EQ(WithoutUnsafe(std::string_view("\0", 1), '_'), "_");
    EXPECT_EQ(WithoutUnsafe("", '_'), "");
}
