#include "Announce.h"
#include "InputPipe.h"
#include "support/HttpServer.h"
#include "support/Patience.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <array>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

Words Samples() {
    Words paths;
    for (const char* folder : {"/music", "/video", "/pictures", "/conformance", "/elementary"}) {
        for (const auto& entry : std::filesystem::directory_iterator(std::string(EZ_SAMPLES) + folder)) {
            paths.push_back(entry.path().string());
        }
    }
    return paths;
}

std::string NameOf(const std::string& aPath) {
    return aPath.substr(aPath.rfind('/') + 1);
}

ProgramResult AnnouncePiped(const Words& aWords,
                            const std::function<void(const InputPipe::Write&)>& aWriter) {
    const InputPipe pipe(aWriter);
    ProgramOptions options;
    options.mIn = pipe.GetReader();
    return Announce(aWords, options);
}

/// What the tool says of a file, without what a file has and a stream has not.
Json RecordOf(const ProgramResult& aResult) {
    EXPECT_EQ(aResult.mError, "");
    const Words lines = LinesOf(aResult.mOut);
    EXPECT_EQ(lines.size(), 1U) << aResult.mOut;
    Json record = Json::parse(lines.empty() ? "{}" : lines[0]);
    for (const char* key : {"path", "modified", "subtitle_files", "subtitle_files_whole"}) {
        record.erase(key);
        if (record.contains("explain")) {
            record["explain"]["facts"].erase(key);
        }
    }
    return record;
}

constexpr const char* kFailing = "ezannounce: -: ";

/// Runs the tool, interrupts it a while after its start, and tells what ended it.
int SignalThatEnds(const Words& aWords, ProgramOptions anOptions) {
    std::thread interrupter;
    anOptions.mWhenStarted = [&](pid_t aProcess) {
        interrupter = std::thread([aProcess] {
            usleep(300'000);
            kill(aProcess, SIGINT);
        });
    };
    const ProgramResult result = Announce(aWords, anOptions);
    interrupter.join();
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(result.mStatus, -1);
    return result.mSignal;
}

} // namespace

TEST(StandardInput, EverySampleThroughAPipeHasTheRecordOfItsFile) {
    for (const Words& options : {Words{"--json"}, Words{"--json", "--explain"}, Words{"--json", "--ctt", "1"},
                                 Words{"--json", "--mapper", "--no-copy"}}) {
        for (const std::string& path : Samples()) {
            Words file = options;
            file.push_back(path);
            Words piped = options;
            piped.insert(piped.end(), {"--name", NameOf(path), "-"});
            EXPECT_EQ(RecordOf(AnnouncePiped(piped, Writing(ReadWholeFile(path)))), RecordOf(Announce(file)))
                << path;
        }
    }
}

TEST(StandardInput, AWriterOfOneByteAtATimeGivesTheRecordOfTheFile) {
    for (const char* name : {"/music/morning-walk.mp3", "/video/kite-day.mp4", "/pictures/windmill.gif"}) {
        const std::string path = std::string(EZ_SAMPLES) + name;
        const ProgramResult result =
            AnnouncePiped({"--json", "--name", name, "-"}, WritingSingleBytes(ReadWholeFile(path)));
        EXPECT_EQ(RecordOf(result), RecordOf(Announce({"--json", path}))) << path;
    }
}

TEST(StandardInput, ARedirectedFileIsReadLikeTheFile) {
    const std::string path = EZ_SAMPLES "/music/morning-walk.mp3";
    ProgramOptions options;
    options.mIn = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(RecordOf(Announce({"--json", "--name", "a.mp3", "-"}, options)),
              RecordOf(Announce({"--json", path})));
    close(options.mIn);
}

TEST(StandardInput, TheSizeIsThatOfAMediaThatFitsTheBufferInEveryRun) {
    constexpr std::size_t kBuffer = std::size_t{1} << 20;
    for (int i = 0; i < 3; ++i) {
        const ProgramResult fits =
            AnnouncePiped({"--json", "--name", "a.mp3", "-"}, Writing(std::string(kBuffer, 'x')));
        EXPECT_EQ(Json::parse(fits.mOut).value("size", 0U), kBuffer);
        const ProgramResult larger =
            AnnouncePiped({"--json", "--name", "a.mp3", "-"}, Writing(std::string(kBuffer + 1, 'x')));
        EXPECT_FALSE(Json::parse(larger.mOut).contains("size"));
        EXPECT_EQ(larger.mStatus, 0);
    }
}

TEST(StandardInput, TheNameIsShownAndWithoutOneTheOperandIs) {
    const std::string media = ReadWholeFile(EZ_SAMPLES "/music/morning-walk.mp3");
    const ProgramResult named = AnnouncePiped({"--json", "--name", "x/Walk.MP3", "-"}, Writing(media));
    EXPECT_EQ(named.mStatus, 0);
    EXPECT_EQ(Json::parse(named.mOut)["path"], "x/Walk.MP3");
    EXPECT_EQ(Json::parse(named.mOut)["extension"], "mp3");
    const ProgramResult nameless = AnnouncePiped({"--json", "-"}, Writing(media));
    EXPECT_EQ(Json::parse(nameless.mOut)["path"], "-");
    EXPECT_FALSE(Json::parse(nameless.mOut).contains("extension"));
    EXPECT_EQ(nameless.mStatus, 1); // nothing tells what it is, as with a file without an extension
}

TEST(StandardInput, StandsBesideFiles) {
    const std::string path = EZ_SAMPLES "/music/morning-walk.mp3";
    const ProgramResult result = AnnouncePiped({"--json", path, "-", path, "--name", "b.mp3"}, Writing("x"));
    EXPECT_EQ(result.mStatus, 0);
    const Words lines = LinesOf(result.mOut);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(Json::parse(lines[1])["path"], "b.mp3");
    EXPECT_EQ(lines[0], lines[2]);
}

TEST(StandardInput, AnEmptyOneIsAnError) {
    const ProgramResult result = AnnouncePiped({"--name", "a.mp3", "-"}, Writing(""));
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(result.mError, kFailing + std::string("there is no data\n"));
}

TEST(StandardInput, AReadErrorIsAnErrorInTheWordsOfTheSystem) {
    ProgramOptions options;
    options.mIn = open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const ProgramResult folder = Announce({"--name", "a.mp3", "-"}, options);
    EXPECT_EQ(folder.mStatus, 1);
    EXPECT_EQ(folder.mOut, "");
    EXPECT_EQ(folder.mError, kFailing + std::string("Is a directory\n"));
    close(options.mIn);
}

TEST(StandardInput, AClosedOneIsAnError) {
    for (const char* options : {"--name a.mp3", "--es"}) {
        const std::string command =
            ShellWordsOf(EZANNOUNCE) + " --config " EZ_SAMPLES " " + std::string(options) + " - <&-";
        const ProgramResult result = RunSystemProgram("/bin/sh", {"-c", command});
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mOut, "");
        EXPECT_EQ(result.mError, kFailing + std::string("Bad file descriptor\n"));
    }
}

TEST(StandardInput, OneThatIsOpenForWritingOnlyIsAnError) {
    const TemporaryFolder folder;
    for (const char* content : {"", "abc"}) {
        ProgramOptions options;
        options.mIn = open(folder.Write("a", content).c_str(), O_WRONLY | O_CLOEXEC);
        const ProgramResult result = Announce({"--name", "a.mp3", "-"}, options);
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mError, kFailing + std::string("Bad file descriptor\n"));
        close(options.mIn);
    }
}

TEST(StandardInput, ASizeThatIsNotKnownIsShownAsNone) {
    const ProgramResult larger = AnnouncePiped({"--wide", "--name", "a.mp3", "-"},
                                               Writing(std::string((std::size_t{1} << 20) + 1, 'x')));
    EXPECT_EQ(LinesOf(larger.mOut).at(1), "a.mp3  audio/mpeg  item.audioItem.musicTrack  *        -  mp3");
    const ProgramResult fits = AnnouncePiped({"--wide", "--name", "a.mp3", "-"}, Writing("x"));
    EXPECT_EQ(LinesOf(fits.mOut).at(1), "a.mp3  audio/mpeg  item.audioItem.musicTrack  *      1 B  mp3");
}

TEST(StandardInput, AWriterThatBreaksOffIsAnError) {
    std::array<int, 2> ends = {};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()), 0);
    ASSERT_EQ(write(ends[0], "unread", 6), 6); // which makes the close of the other end a reset
    const std::string some(20'000, 'x');
    ASSERT_EQ(write(ends[1], some.data(), some.size()), static_cast<ssize_t>(some.size()));
    ProgramOptions options;
    options.mIn = ends[0];
    options.mWhenStarted = [&](pid_t) { close(ends[1]); };
    const ProgramResult result = Announce({"--name", "a.mp3", "-"}, options);
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(result.mError, kFailing + std::string("Connection reset by peer\n"));
    close(ends[0]);
}

TEST(StandardInput, ASlowWriterMakesTheReaderWaitAndNothingSpin) {
    const auto writeSlowly = [](const InputPipe::Write& aWrite) {
        for (int i = 0; i < 10 && aWrite("x"); ++i) {
            usleep(100'000);
        }
    };
    const double before = AnnouncePiped({"--json", "--name", "a.mp3", "-"}, Writing("x")).mCpuSeconds;
    const ProgramResult result = AnnouncePiped({"--json", "--name", "a.mp3", "-"}, writeSlowly);
    EXPECT_EQ(Json::parse(result.mOut)["size"], 10);
    EXPECT_LT(result.mCpuSeconds, before + 0.3); // of the second that passes
}

TEST(StandardInput, AnInterruptEndsTheWait) {
    std::atomic<bool> fEnd{false};
    const InputPipe pipe([&](const InputPipe::Write& aWrite) {
        aWrite("x");
        while (!fEnd) {
            usleep(10'000);
        }
    });
    ProgramOptions options;
    options.mIn = pipe.GetReader();
    EXPECT_EQ(SignalThatEnds({"--name", "a.mp3", "-"}, options), SIGINT);
    EXPECT_EQ(SignalThatEnds({"--es", "-"}, options), SIGINT);
    fEnd = true;
}

TEST(StandardInput, ALocalFileOfThatNameIsWrittenWithItsFolder) {
    const TemporaryFolder folder;
    folder.Write("-", "x");
    ProgramOptions options;
    options.mFolder = folder.GetPath();
    EXPECT_EQ(RunTool({"--config", EZ_SAMPLES, "--json", "-"}, options).mError,
              kFailing + std::string("there is no data\n"));
    EXPECT_EQ(Json::parse(RunTool({"--config", EZ_SAMPLES, "--json", "./-"}, options).mOut)["size"], 1);
}

#ifdef EZ_HAS_HTTP_STREAM

TEST(WebServer, EverySampleHasTheRecordOfItsFile) {
    for (const bool fRanges : {true, false}) {
        for (const std::string& path : Samples()) {
            HttpMedia media;
            media.mBytes = ReadWholeFile(path);
            media.mfRanges = fRanges;
            const HttpServer server(Serving(media));
            const ProgramResult result = Announce({"--json", server.URL("/" + NameOf(path))});
            EXPECT_EQ(RecordOf(result), RecordOf(Announce({"--json", path}))) << path;
        }
    }
}

TEST(WebServer, APathIsTheURLAndTheTimeThatOfTheServer) {
    HttpMedia media;
    media.mBytes = "x";
    media.mFields = "Last-Modified: Tue, 29 Feb 2000 12:34:56 GMT\r\nContent-Type: image/gif\r\n";
    const HttpServer server(Serving(media));
    const std::string url = server.URL("/a.mp3?x=y");
    const ProgramResult result = Announce({"--json", url});
    EXPECT_EQ(result.mStatus, 0);
    const Json record = Json::parse(result.mOut);
    EXPECT_EQ(record["path"], url);
    EXPECT_EQ(record["mime_type"], "audio/mpeg"); // the entry of the extension, not what the server says
    EXPECT_EQ(record["modified"], "2000-02-29T12:34:56Z");
    const ProgramResult unknown = Announce({"--json", server.URL("/a")});
    EXPECT_EQ(unknown.mStatus, 1);
    EXPECT_TRUE(Json::parse(unknown.mOut)["mime_type"].is_null());
}

TEST(WebServer, TheEntriesToWhichItsTypeLedAreExplained) {
    HttpMedia media;
    media.mBytes = ReadWholeFile(EZ_SAMPLES "/music/morning-walk.mp3");
    media.mFields = "Content-Type: audio/mpeg\r\n";
    const HttpServer song(Serving(media));
    const std::string found = Announce({"--explain", song.URL("/song")}).mOut;
    EXPECT_NE(found.find("\n  entries          of the MIME type: mp3\n"), std::string::npos) << found;
    EXPECT_NE(found.find("item.audioItem.musicTrack         entry \"mp3\" of the media types file\n"),
              std::string::npos)
        << found;
    media.mBytes = "no song";
    const HttpServer other(Serving(media));
    EXPECT_NE(Announce({"--explain", other.URL("/a.gif")})
                  .mOut.find("\n  entries          of the MIME type: mp3, mp2\n"
                             "                   of the extension: gif\n"),
              std::string::npos);
    media.mFields = "Content-Type: audio/unheard\r\n"; // which leads to no entry
    const HttpServer unheard(Serving(media));
    EXPECT_NE(Announce({"--explain", unheard.URL("/a.gif")}).mOut.find("\n  entries          gif\n"),
              std::string::npos);
    EXPECT_NE(Announce({"--explain", unheard.URL("/a")}).mOut.find("\n  entries          none\n"),
              std::string::npos);
}

TEST(WebServer, FailuresNameTheOperandAndTheReason) {
    const HttpServer missing([](const HttpRequest&, HttpConnection& aConnection) {
        aConnection.Send(HttpHead("404 Not Found", "Content-Length: 0\r\n"));
    });
    const ProgramResult notFound = Announce({missing.URL("/a.mp3")});
    EXPECT_EQ(notFound.mStatus, 1);
    EXPECT_EQ(notFound.mOut, "");
    EXPECT_EQ(notFound.mError,
              "ezannounce: " + missing.URL("/a.mp3") + ": the server answered with status 404\n");
    const HttpServer empty(Serving(HttpMedia()));
    EXPECT_EQ(Announce({empty.URL("/a.mp3")}).mError,
              "ezannounce: " + empty.URL("/a.mp3") + ": there is no data\n");
    std::string url;
    {
        const HttpServer gone(Serving(HttpMedia()));
        url = gone.URL("/a.mp3");
    }
    const ProgramResult unreachable = Announce({"--json", url});
    EXPECT_EQ(unreachable.mStatus, 1);
    EXPECT_EQ(unreachable.mOut, "");
    EXPECT_EQ(unreachable.mError.find("ezannounce: " + url + ": "), 0U);
}

TEST(WebServer, AStallEndsByTheTimeout) {
    const HttpServer server([](const HttpRequest&, HttpConnection& aConnection) {
        aConnection.Send(HttpHead("200 OK", "Content-Length: 9000\r\n") + "some");
        aConnection.Stall();
    });
    EXPECT_TRUE(SucceedsAtSomePace([&](int aPace) {
        const std::string time = std::to_string(aPace);
        const ProgramResult result = Announce({"--timeout", time, server.URL("/a.mp3")});
        return result.mStatus == 1 && result.mError == "ezannounce: " + server.URL("/a.mp3") +
                                                           ": the server sent nothing for " + time +
                                                           " seconds\n";
    }));
}

TEST(WebServer, AnInterruptEndsTheWait) {
    const HttpServer server([](const HttpRequest&, HttpConnection& aConnection) { aConnection.Stall(); });
    EXPECT_EQ(SignalThatEnds({server.URL("/a.mp3")}, {}), SIGINT);
}

#endif
