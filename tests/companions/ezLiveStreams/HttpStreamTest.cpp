#include "ezLiveStreams/FeedStream.h"

#ifdef EZ_HAS_HTTP_STREAM
#include "ezLiveStreams/HttpStream.h"
#include "ezLiveStreams/detail/Limits.h"

#include "Media.h"
#include "support/HttpServer.h"
#include "support/Patience.h"
#include "support/Str.h"

#include "ez/StreamMediaParserStream.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using std::chrono::milliseconds;
using Words = std::vector<std::string>;

ezHttpOptions Options(std::size_t aWindow = std::size_t{1} << 20,
                      milliseconds aStallTime = milliseconds(20'000)) {
    ezHttpOptions options;
    options.mFeed.mLimits = {aWindow, std::max(aWindow, std::size_t{1} << 20)};
    options.mFeed.mfWaitForSize = true;
    options.mStallTime = aStallTime;
    return options;
}

/// A file of a server after the adapter.
class Fetched {
public:
    explicit Fetched(const std::string& aURL, const ezHttpOptions& anOptions = Options())
        : mSource(new ezHttpStream(ezCString(aURL), anOptions)), mStream(mSource, true) {
        mfOpened = mStream.Open();
    }

    std::string Read(std::uint64_t aPosition, std::size_t aSize) {
        std::string bytes(aSize, '\0');
        const bool fRead = mStream.ReadFrom(aPosition, &aSize, bytes.data());
        return bytes.substr(0, fRead ? aSize : 0);
    }

    ezHttpStream* mSource;
    ezStreamMediaParserStream mStream;
    bool mfOpened = false;
};

HttpServer::Handler Saying(const std::string& aBytes) {
    return [aBytes](const HttpRequest&, HttpConnection& aConnection) { aConnection.Send(aBytes); };
}

void ExpectEqualAtRandomPlaces(Fetched& aFetched, const std::string& aMedia, int aCount) {
    std::mt19937 random(11);
    for (int i = 0; i < aCount; ++i) {
        const std::size_t position = random() % (aMedia.size() + 1);
        const std::size_t size = random() % 60'000;
        ASSERT_EQ(aFetched.Read(position, size), aMedia.substr(position, size)) << position << " " << size;
    }
}

/// As reasons have it: "0.300", and "3" where no fraction is left.
std::string SecondsText(milliseconds aTime) {
    const std::string fraction = std::to_string(1'000 + aTime.count() % 1'000).substr(1);
    return std::to_string(aTime.count() / 1'000) + (fraction == "000" ? "" : "." + fraction);
}

std::string ReasonOf(const std::string& aURL, const ezHttpOptions& anOptions = Options()) {
    Fetched fetched(aURL, anOptions);
    EXPECT_FALSE(fetched.mfOpened);
    EXPECT_TRUE(fetched.mSource->HasFailed());
    return fetched.mSource->GetErrorText();
}

} // namespace

TEST(HttpStream, KnowsURLsInAnyCaseAndNothingElse) {
    for (const char* url : {"http://a", "HTTP://a", "https://a", "hTTps://"}) {
        EXPECT_TRUE(ezHttpStream::IsURL(url)) << url;
    }
    for (const char* url : {"", "http:/a", "http", "ftp://a", "xhttp://a", " http://a", "https:/a"}) {
        EXPECT_FALSE(ezHttpStream::IsURL(url)) << url;
    }
}

TEST(HttpStream, TheExtensionIsThatOfThePath) {
    HttpMedia media;
    const HttpServer server(Serving(media));
    const std::vector<std::pair<std::string, std::string>> extensions = {{"/a/song.MP3", "MP3"},
                                                                         {"/a.b/song", ""},
                                                                         {"/song.mp3?x=a.jpg", "mp3"},
                                                                         {"/song.mp3#a.jpg", "mp3"},
                                                                         {"/song?a.jpg", ""},
                                                                         {"/a/song.mp3?a/b.gif", "mp3"},
                                                                         {"", ""},
                                                                         {"/", ""},
                                                                         {"/.mp3", ""},
                                                                         {"?a=/b.mp3", ""}};
    for (const auto& extension : extensions) {
        const std::unique_ptr<ezHttpStream, ezStreamReleaser> stream(
            new ezHttpStream(ezCString(server.URL(extension.first))));
        EXPECT_EQ(stream->GetExtension(), extension.second.c_str()) << extension.first;
        EXPECT_EQ(stream->GetURI(), server.URL(extension.first).c_str());
    }
}

TEST(HttpStream, AMediaThatFitsTheWindowIsFetchedOnce) {
    HttpMedia media;
    media.mBytes = MediaBytes(300'000);
    const HttpServer server(Serving(media));
    Fetched fetched(server.URL("/song.mp3"));
    ASSERT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.mStream.GetMediaSize(), media.mBytes.size());
    EXPECT_EQ(fetched.mStream.GetExtension(), "mp3");
    EXPECT_EQ(fetched.Read(0, 400'000), media.mBytes);
    EXPECT_EQ(fetched.Read(100, 100), media.mBytes.substr(100, 100));
    EXPECT_FALSE(fetched.mStream.Seek(300'001, ezMediaParserStream::SeekFromStart, true));
    EXPECT_EQ(server.GetRequests(), Words{"/song.mp3"});
}

TEST(HttpStream, WithRangesOnlyWhatIsReadIsAskedFor) {
    HttpMedia media;
    media.mBytes = MediaBytes(5'000'000);
    const HttpServer server(Serving(media));
    Fetched fetched(server.URL("/film.mp4"), Options(100'000));
    ASSERT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.Read(4'999'000, 2'000), media.mBytes.substr(4'999'000));
    EXPECT_EQ(fetched.Read(9'000, 9'000), media.mBytes.substr(9'000, 9'000));
    EXPECT_EQ(server.GetRequests(), (Words{"/film.mp4", "/film.mp4 from 4999000", "/film.mp4 from 9000"}));
    ExpectEqualAtRandomPlaces(fetched, media.mBytes, 100);
}

TEST(HttpStream, WithoutRangesASeekBackBeginsAnewAndOneAheadReadsOn) {
    HttpMedia media;
    media.mBytes = MediaBytes(2'000'000);
    media.mfRanges = false;
    const HttpServer server(Serving(media));
    Fetched fetched(server.URL("/film.mp4"), Options(100'000));
    ASSERT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.Read(1'999'000, 2'000), media.mBytes.substr(1'999'000));
    EXPECT_EQ(server.GetRequests(), Words{"/film.mp4"});
    EXPECT_EQ(fetched.Read(500'000, 9'000), media.mBytes.substr(500'000, 9'000));
    EXPECT_EQ(server.GetRequests(), (Words{"/film.mp4", "/film.mp4 from 500000"}));
    ExpectEqualAtRandomPlaces(fetched, media.mBytes, 30);
}

TEST(HttpStream, AServerWithoutALengthTellsItAtTheEnd) {
    HttpMedia media;
    media.mBytes = MediaBytes(300'000);
    media.mfLength = false;
    const HttpServer server(Serving(media));
    Fetched fetched(server.URL("/a"), Options(100'000));
    ASSERT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.mStream.GetMediaSize(), 0U);
    EXPECT_EQ(fetched.Read(0, 400'000), media.mBytes);
    EXPECT_EQ(fetched.mStream.GetMediaSize(), 300'000U);
    EXPECT_EQ(fetched.Read(0, 9'000), media.mBytes.substr(0, 9'000));
}

TEST(HttpStream, ChunksAreNoPartOfTheMedia) {
    const HttpServer server(Saying(HttpHead("200 OK", "Transfer-Encoding: chunked\r\nContent-Length: 3\r\n") +
                                   "3\r\nabc\r\n4;x=y\r\ndefg\r\n0\r\nX-Trailer: t\r\n\r\n"));
    Fetched fetched(server.URL("/a"));
    ASSERT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.mStream.GetMediaSize(), 7U);
    EXPECT_EQ(fetched.Read(0, 9), "abcdefg");
}

TEST(HttpStream, OneByteAtATimeIsTheSameMedia) {
    const std::string media = MediaBytes(2'000);
    const HttpServer server([&](const HttpRequest&, HttpConnection& aConnection) {
        aConnection.Send(HttpHead("200 OK", "Content-Length: 2000\r\n"));
        for (std::size_t i = 0; i < media.size() && aConnection.Send(media.substr(i, 1)); ++i) {
        }
    });
    Fetched fetched(server.URL("/a"));
    ASSERT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.Read(0, 3'000), media);
}

TEST(HttpStream, AnEmptyMediaIsNoFailure) {
    const HttpServer server(Serving(HttpMedia()));
    Fetched fetched(server.URL("/a"));
    EXPECT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.Read(0, 1), "");
    EXPECT_FALSE(fetched.mSource->HasFailed());
}

TEST(HttpStream, AnErrorOfTheServerIsNamed) {
    for (const char* status : {"404 Not Found", "500 Internal Server Error", "204 No Content",
                               "304 Not Modified", "206 Partial Content", "401 Unauthorized"}) {
        const HttpServer server(Saying(HttpHead(status, "Content-Length: 9\r\n") + "not media"));
        EXPECT_EQ(ReasonOf(server.URL("/a")),
                  "the server answered with status " + std::string(status).substr(0, 3));
    }
}

TEST(HttpStream, WhatIsNoServerIsAReason) {
    std::string url;
    {
        const HttpServer server(Serving(HttpMedia()));
        url = server.URL("/a");
    }
    EXPECT_NE(ReasonOf(url), ""); // nobody listens there any more
    const HttpServer server(Saying("SSH-2.0\r\n"));
    EXPECT_NE(ReasonOf(server.URL("/a")), "");
    const HttpServer silent(Saying(""));
    EXPECT_NE(ReasonOf(silent.URL("/a")), "");
    EXPECT_NE(ReasonOf("http://"), "");
    EXPECT_NE(ReasonOf("file:///etc/passwd"), "");
}

TEST(HttpStream, RedirectsAreFollowedToALimit) {
    HttpMedia media;
    media.mBytes = "the media";
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        const int left = std::stoi(aRequest.mTarget.substr(1));
        if (left == 0) {
            Serving(media)(aRequest, aConnection);
        } else {
            aConnection.Send(
                HttpHead("302 Found", "Content-Type: text/html\r\nContent-Length: 4\r\nLocation: /" +
                                          std::to_string(left - 1) + "\r\n") +
                "gone");
        }
    });
    Fetched fetched(server.URL("/10"));
    EXPECT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.mStream.GetMediaSize(), 9U);
    EXPECT_EQ(fetched.Read(0, 20), "the media");
    ezMediaInfo info;
    fetched.mStream.CopyInfo(&info);
    EXPECT_FALSE(info.Has(kezInfo_MimeType)); // that of the redirects does not count
    EXPECT_NE(ReasonOf(server.URL("/11")).find("redirects"), std::string::npos);
}

TEST(HttpStream, ARedirectLeadsToAURLOfBoundedLength) {
    std::string target;
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        const std::string redirect =
            HttpHead("302 Found", "Content-Length: 0\r\nLocation: " + target + "\r\n");
        aConnection.Send(aRequest.mTarget == "/a" ? redirect
                                                  : HttpHead("200 OK", "Content-Length: 3\r\n") + "abc");
    });
    const std::size_t most = kHttp_MaxURL - server.URL("").size();
    target = "/" + std::string(most - 1, 'x');
    Fetched fetched(server.URL("/a"));
    EXPECT_EQ(fetched.Read(0, 9), "abc");
    EXPECT_EQ(Str(fetched.mSource->GetFinalURI()).size(), kHttp_MaxURL);
    target += "x";
    EXPECT_EQ(ReasonOf(server.URL("/a")), "the server redirected to a URL of more than 8 KiB");
    EXPECT_EQ(Fetched(server.URL(target)).Read(0, 9), "abc"); // what a host asks for itself may be longer
}

TEST(HttpStream, ARedirectToAnotherSchemeIsNotFollowed) {
    for (const char* target : {"file:///etc/passwd", "ftp://127.0.0.1/a"}) {
        const HttpServer server(
            Saying(HttpHead("302 Found", std::string("Content-Length: 0\r\nLocation: ") + target + "\r\n")));
        EXPECT_NE(ReasonOf(server.URL("/a")).find("not supported"), std::string::npos);
    }
}

TEST(HttpStream, ABodyShorterThanStatedIsAFailureAfterItsBytes) {
    const HttpServer server(Saying(HttpHead("200 OK", "Content-Length: 20000\r\n") + MediaBytes(10'000)));
    Fetched fetched(server.URL("/a"));
    EXPECT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.mStream.GetMediaSize(), 20'000U);
    EXPECT_EQ(fetched.Read(0, 10'000), MediaBytes(10'000));
    EXPECT_FALSE(fetched.mSource->HasFailed());
    EXPECT_EQ(fetched.Read(10'000, 1), "");
    EXPECT_TRUE(fetched.mSource->HasFailed());
    EXPECT_NE(fetched.mSource->GetErrorText(), "");
}

TEST(HttpStream, AResetInTheMiddleIsAFailure) {
    const HttpServer server([](const HttpRequest&, HttpConnection& aConnection) {
        aConnection.Send(HttpHead("200 OK", "Content-Length: 20000\r\n") + MediaBytes(10'000));
        aConnection.Pause(100);
        aConnection.Reset();
    });
    Fetched fetched(server.URL("/a"));
    EXPECT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.Read(9'000, 2'000), "");
    EXPECT_TRUE(fetched.mSource->HasFailed());
}

TEST(HttpStream, AStallEndsByTheTimeThatTheHostChose) {
    const Words starts = {"", "HTTP/1.1 200 OK\r\nContent-", HttpHead("200 OK", "Content-Length: 9\r\n")};
    for (const std::string& start : starts) {
        const HttpServer server([&](const HttpRequest&, HttpConnection& aConnection) {
            aConnection.Send(start);
            aConnection.Stall();
        });
        EXPECT_TRUE(SucceedsAtSomePace([&](int aPace) {
            const milliseconds time = aPace * milliseconds(300);
            const auto before = std::chrono::steady_clock::now();
            const std::string reason = ReasonOf(server.URL("/a"), Options(1'000, time));
            EXPECT_GE(std::chrono::steady_clock::now() - before, time);
            return reason == "the server sent nothing for " + SecondsText(time) + " seconds";
        }));
    }
}

TEST(HttpStream, AServerThatIsSlowButSendsDoesNotStall) {
    EXPECT_TRUE(SucceedsAtSomePace([](int aPace) {
        const HttpServer server([aPace](const HttpRequest&, HttpConnection& aConnection) {
            aConnection.Send(HttpHead("200 OK", "Content-Length: 12\r\n"));
            for (int i = 0; i < 12 && aConnection.Pause(aPace * 100); ++i) {
                aConnection.Send("x");
            }
        });
        Fetched fetched(server.URL("/a"), Options(1'000, aPace * milliseconds(600)));
        return fetched.mfOpened && fetched.Read(0, 20) == std::string(12, 'x');
    }));
}

TEST(HttpStream, TimeInWhichTheReaderIsSlowIsNoStall) {
    HttpMedia media;
    media.mBytes = MediaBytes(2'000'000);
    const HttpServer server(Serving(media));
    EXPECT_TRUE(SucceedsAtSomePace([&](int aPace) {
        const std::size_t before = server.GetRequests().size();
        Fetched fetched(server.URL("/a"), Options(10'000, aPace * milliseconds(300)));
        std::this_thread::sleep_for(aPace * milliseconds(700));
        return fetched.mfOpened && fetched.Read(0, 150'000) == media.mBytes.substr(0, 150'000) &&
               server.GetRequests().size() == before + 1;
    }));
}

TEST(HttpStream, AMediaThatChangesBetweenRequestsHasFailed) {
    for (const char* what : {"size", "tag"}) {
        std::size_t count = 0;
        const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
            ++count;
            HttpMedia media;
            media.mBytes = MediaBytes(2'000'000 + (what == std::string("size") ? count : 0));
            media.mFields = "ETag: \"" + std::to_string(what == std::string("tag") ? count : 0) + "\"\r\n";
            Serving(media)(aRequest, aConnection);
        });
        Fetched fetched(server.URL("/a"), Options(10'000));
        EXPECT_TRUE(fetched.mfOpened);
        EXPECT_EQ(fetched.Read(1'900'000, 10), "");
        EXPECT_EQ(fetched.mSource->GetErrorText(), "the media changed while it was read");
    }
}

TEST(HttpStream, AnotherRangeThanAskedForIsAFailure) {
    const std::string media = MediaBytes(2'000'000);
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        if (!aRequest.mFrom) {
            aConnection.Send(HttpHead("200 OK", "Accept-Ranges: bytes\r\nContent-Length: 2000000\r\n") +
                             media);
        } else {
            aConnection.Send(
                HttpHead("206 Partial Content", "Content-Range: bytes 5-9/2000000\r\nContent-Length: 5\r\n") +
                "xxxxx");
        }
    });
    Fetched fetched(server.URL("/a"), Options(10'000));
    EXPECT_EQ(fetched.Read(1'900'000, 10), "");
    EXPECT_EQ(fetched.mSource->GetErrorText(),
              "the server answered with another range than it was asked for");
}

TEST(HttpStream, AnAnswerThatIsNoneIsAReasonAndItsBytesAreNoMedia) {
    const HttpServer other(Saying("HTTP/1.1 101 Switching Protocols\r\n\r\n" + MediaBytes(500)));
    EXPECT_EQ(ReasonOf(other.URL("/a")), "the server answered with status 101");
    const HttpServer hints(Saying("HTTP/1.1 103 Early Hints\r\n\r\n"));
    EXPECT_NE(ReasonOf(hints.URL("/a")), "");
    const HttpServer both(
        Saying("HTTP/1.1 103 Early Hints\r\n\r\n" + HttpHead("200 OK", "Content-Length: 3\r\n") + "abc"));
    EXPECT_EQ(Fetched(both.URL("/a")).Read(0, 9), "abc");
}

TEST(HttpStream, ItAsksForTheMediaItselfAndTakesNothingElse) {
    std::string asked;
    std::string coding = "identity";
    bool fEncodedPart = false;
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        asked = aRequest.mHead;
        HttpMedia media;
        media.mBytes = MediaBytes(2'000'000);
        media.mFields = "Content-Encoding: " + (aRequest.mFrom && fEncodedPart ? "br" : coding) + "\r\n";
        Serving(media)(aRequest, aConnection);
    });
    EXPECT_EQ(Fetched(server.URL("/a"), Options(10'000)).Read(5, 7), MediaBytes(12).substr(5));
    EXPECT_NE(asked.find("\r\nAccept-Encoding: identity\r\n"), std::string::npos) << asked;
    constexpr const char* kReason = "the server sends the media encoded, which it was not asked for";
    coding = "gzip";
    EXPECT_EQ(ReasonOf(server.URL("/a")), kReason);
    coding = "identity";
    fEncodedPart = true;
    Fetched part(server.URL("/a"), Options(10'000));
    EXPECT_EQ(part.Read(1'900'000, 10), "");
    EXPECT_EQ(part.mSource->GetErrorText(), kReason);
}

namespace {

/// Answers with parts of this size where a range is asked for, and with all of the media else. Where the
/// total is not told, neither is the size.
HttpServer::Handler InParts(const std::string& aMedia, std::size_t aPart, bool afTotal) {
    return [=](const HttpRequest& aRequest, HttpConnection& aConnection) {
        const std::string size = std::to_string(aMedia.size());
        const std::string ranges = "Accept-Ranges: Bytes\r\n";
        if (!aRequest.mFrom) {
            const std::string length = afTotal ? "Content-Length: " + size + "\r\n" : "";
            aConnection.Send(HttpHead("200 OK", ranges + length) + aMedia);
        } else if (*aRequest.mFrom >= aMedia.size()) {
            aConnection.Send(HttpHead("416 R", afTotal ? "Content-Range: bytes */" + size + "\r\n" : ""));
        } else {
            const auto from = static_cast<std::size_t>(*aRequest.mFrom);
            const std::string part = aMedia.substr(from, aPart);
            aConnection.Send(HttpHead("206 Partial Content", "Content-Range: Bytes " + std::to_string(from) +
                                                                 "-" +
                                                                 std::to_string(from + part.size() - 1) +
                                                                 "/" + (afTotal ? size : "*") + "\r\n") +
                             part);
        }
    };
}

} // namespace

TEST(HttpStream, APartThatIsShorterThanAskedForIsContinued) {
    const std::string media = MediaBytes(2'000'000);
    for (const bool fTotal : {true, false}) {
        const HttpServer server(InParts(media, 40'000, fTotal));
        Fetched fetched(server.URL("/a"), Options(10'000));
        ASSERT_TRUE(fetched.mfOpened);
        EXPECT_EQ(fetched.Read(1'900'000, 99'000), media.substr(1'900'000, 99'000));
        EXPECT_EQ(fetched.Read(1'990'000, 20'000), media.substr(1'990'000));
        EXPECT_EQ(fetched.mStream.GetMediaSize(), media.size());
        EXPECT_EQ(fetched.Read(50'000, 150'000), media.substr(50'000, 150'000));
        EXPECT_FALSE(fetched.mSource->HasFailed());
        ExpectEqualAtRandomPlaces(fetched, media, 20);
    }
}

TEST(HttpStream, APartIsContinuedAlsoByAServerThatThenSendsAll) {
    const std::string media = MediaBytes(2'000'000);
    int count = 0;
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        HttpRequest request = aRequest;
        if (++count > 2) {
            request.mFrom.reset();
        }
        InParts(media, 5'000, true)(request, aConnection);
    });
    Fetched fetched(server.URL("/a"), Options(10'000));
    ASSERT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.Read(1'900'000, 20'000), media.substr(1'900'000, 20'000));
    EXPECT_EQ(server.GetRequests(), (Words{"/a", "/a from 1900000", "/a from 1905000"}));
}

TEST(HttpStream, APartThatIsContinuedByAMediaThatDoesNotReachItIsAFailure) {
    const std::string media = MediaBytes(2'000'000);
    int count = 0;
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        if (++count > 2) {
            aConnection.Send(HttpHead("200 OK", "") + media.substr(0, 1'000));
        } else {
            InParts(media, 5'000, false)(aRequest, aConnection);
        }
    });
    Fetched fetched(server.URL("/a"), Options(10'000));
    EXPECT_EQ(fetched.Read(1'900'000, 5'000), media.substr(1'900'000, 5'000));
    EXPECT_EQ(fetched.Read(1'900'000, 5'001), "");
    EXPECT_EQ(fetched.mSource->GetErrorText(), "the media changed while it was read");
}

TEST(HttpStream, APartOfAnotherLengthThanItsRangeIsAFailureAfterItsBytes) {
    const std::string media = MediaBytes(2'000'000);
    for (const std::size_t size : {50U, 150U}) {
        const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
            if (!aRequest.mFrom) {
                InParts(media, 1, true)(aRequest, aConnection);
                return;
            }
            const auto from = static_cast<std::size_t>(*aRequest.mFrom);
            aConnection.Send(HttpHead("206 P", "Content-Range: bytes " + std::to_string(from) + "-" +
                                                   std::to_string(from + 99) + "/2000000\r\n") +
                             media.substr(from, size));
        });
        Fetched fetched(server.URL("/a"), Options(10'000));
        EXPECT_EQ(fetched.Read(1'900'000, 50), media.substr(1'900'000, 50));
        EXPECT_FALSE(fetched.mSource->HasFailed());
        EXPECT_EQ(fetched.Read(1'900'000, 101), "");
        EXPECT_EQ(fetched.mSource->GetErrorText(),
                  size == 50 ? "the server sent less than the range that it stated"
                             : "the server sent more than the range that it stated");
    }
}

TEST(HttpStream, AWeakTagIsTheSameMedia) {
    int count = 0;
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        HttpMedia media;
        media.mBytes = MediaBytes(2'000'000);
        media.mFields = std::string("ETag: ") + (++count % 2 == 0 ? "W/" : "") + "\"a\"\r\n";
        Serving(media)(aRequest, aConnection);
    });
    Fetched fetched(server.URL("/a"), Options(10'000));
    EXPECT_EQ(fetched.Read(1'900'000, 10), MediaBytes(1'900'010).substr(1'900'000));
}

TEST(HttpStream, ManyFieldsHideNothing) {
    std::string fields;
    for (int i = 0; i < 200; ++i) {
        fields += "X-" + std::to_string(i) + ": y\r\n";
    }
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        aConnection.Send(aRequest.mTarget == "/a"
                             ? HttpHead("302 Found", fields + "Content-Length: 0\r\nLocation: /b\r\n")
                             : HttpHead("200 OK", fields + "Content-Length: 3\r\n") + "abc");
    });
    Fetched fetched(server.URL("/a"));
    EXPECT_EQ(fetched.mStream.GetMediaSize(), 3U);
    EXPECT_EQ(fetched.Read(0, 9), "abc");
}

TEST(HttpStream, AHeadThatComesSteadilyButDoesNotEndIsGivenUp) {
    EXPECT_TRUE(SucceedsAtSomePace([](int aPace) {
        const HttpServer server([aPace](const HttpRequest&, HttpConnection& aConnection) {
            aConnection.Send("HTTP/1.1 200 OK\r\n");
            for (int i = 0; i < 100 && aConnection.Pause(aPace * 100); ++i) {
                aConnection.Send("X-" + std::to_string(i) + ": y\r\n");
            }
            aConnection.Send("\r\nabc");
        });
        const milliseconds time = aPace * milliseconds(400);
        const auto before = std::chrono::steady_clock::now();
        const std::string reason = ReasonOf(server.URL("/a"), Options(1'000, time));
        return reason == "the server did not answer within " + SecondsText(4 * time) + " seconds" &&
               std::chrono::steady_clock::now() - before >= 4 * time;
    }));
}

namespace {

/// An answer in chunks and then trailer lines as long as the client stays, some of them at a time.
HttpServer::Handler WithEndlessTrailer(const std::string& aLine, int aPauseOfBlock) {
    return [=](const HttpRequest&, HttpConnection& aConnection) {
        aConnection.Send(HttpHead("200 OK", "Transfer-Encoding: chunked\r\n") + "3\r\nabc\r\n0\r\n");
        while (aConnection.Send(aLine) && (aPauseOfBlock == 0 || aConnection.Pause(aPauseOfBlock))) {
        }
    };
}

} // namespace

TEST(HttpStream, ATrailerThatDoesNotEndIsGivenUp) {
    std::string lines;
    while (lines.size() < 4'000) {
        lines += "X: y\r\n";
    }
    const std::vector<std::pair<std::string, std::string>> trailers = {
        {lines, "the server sent more than 2000 lines of fields"},
        {"X: " + std::string(3'000, 'y') + "\r\n", "the server sent more than 262144 bytes of fields"}};
    for (const auto& [line, reason] : trailers) {
        const HttpServer server(WithEndlessTrailer(line, 0));
        Fetched fetched(server.URL("/a"));
        EXPECT_EQ(fetched.Read(0, 3), "abc"); // what came of the media stands
        EXPECT_EQ(fetched.Read(0, 4), "");
        EXPECT_TRUE(fetched.mSource->HasFailed());
        EXPECT_EQ(fetched.mSource->GetErrorText(), reason.c_str());
        EXPECT_EQ(server.GetRequests(), Words{"/a"});
    }
}

TEST(HttpStream, ATrailerThatComesSteadilyIsNoProgress) {
    const HttpServer server(WithEndlessTrailer("X: y\r\n", 50));
    EXPECT_TRUE(SucceedsAtSomePace([&](int aPace) {
        const milliseconds time = aPace * milliseconds(600);
        Fetched fetched(server.URL("/a"), Options(1'000, time));
        EXPECT_EQ(fetched.Read(0, 4), "");
        return fetched.mSource->GetErrorText() ==
               "the server sent nothing for " + SecondsText(time) + " seconds";
    }));
}

TEST(HttpStream, InterimAnswersWithoutEndAreGivenUp) {
    const HttpServer server([](const HttpRequest&, HttpConnection& aConnection) {
        while (aConnection.Send("HTTP/1.1 102 Processing\r\n\r\n")) {
        }
    });
    EXPECT_EQ(ReasonOf(server.URL("/a")), "the server sent more than 2000 lines of fields");
}

TEST(HttpStream, AServerOfSmallPartsIsAskedABoundedNumberOfTimes) {
    const std::string media = MediaBytes(2'000'000);
    for (const std::size_t part : {std::size_t{1}, static_cast<std::size_t>(kHttp_SmallPart) - 1}) {
        const HttpServer server(InParts(media, part, true));
        Fetched fetched(server.URL("/a"), Options(10'000));
        ASSERT_TRUE(fetched.mfOpened);
        const std::size_t given = part * (kHttp_MaxSmallParts + 1);
        EXPECT_EQ(fetched.Read(1'800'000, given), media.substr(1'800'000, given));
        EXPECT_EQ(fetched.Read(1'800'000, given + 1), "");
        EXPECT_EQ(fetched.mSource->GetErrorText(), "the server sends too little at a time");
        const std::size_t asked = 2 + kHttp_MaxSmallParts;
        EXPECT_EQ(server.GetRequests().size(), asked);
        for (std::size_t i = 0; i < 10; ++i) { // and not as often again by every seek
            EXPECT_EQ(fetched.Read(1'000'000 + 50'000 * i, 10'000), "");
        }
        EXPECT_LE(server.GetRequests().size(), asked + ezFeedBuffer::kRetries);
    }
    const HttpServer server(InParts(media, kHttp_SmallPart, true));
    EXPECT_EQ(Fetched(server.URL("/a"), Options(10'000)).Read(1'800'000, 200'000), media.substr(1'800'000));
}

TEST(HttpStream, AFailedRequestIsTriedAgainByALaterSeekAFewTimes) {
    const std::string media = MediaBytes(2'000'000);
    int refusals = 1;
    const HttpServer server([&](const HttpRequest& aRequest, HttpConnection& aConnection) {
        if (aRequest.mFrom && refusals > 0) {
            --refusals;
            aConnection.Send(HttpHead("503 Later", "Content-Length: 0\r\n"));
        } else {
            InParts(media, media.size(), true)(aRequest, aConnection);
        }
    });
    Fetched once(server.URL("/a"), Options(10'000));
    EXPECT_EQ(once.Read(1'900'000, 10), "");
    EXPECT_EQ(once.Read(1'000'000, 10), media.substr(1'000'000, 10));
    EXPECT_TRUE(once.mSource->HasFailed()); // something could not be read
    EXPECT_EQ(once.mSource->GetErrorText(), "the server answered with status 503");
    refusals = 1'000;
    Fetched never(server.URL("/a"), Options(10'000));
    for (std::size_t i = 10; i > 0; --i) {
        EXPECT_EQ(never.Read(100'000 * i, 10), "");
    }
    EXPECT_EQ(refusals, 1'000 - 1 - ezFeedBuffer::kRetries);
}

TEST(HttpStream, APlaceAfterTheEndOfAnUnknownSizeIsTheEnd) {
    HttpMedia media;
    media.mBytes = MediaBytes(1'500'000);
    media.mfLength = false;
    const HttpServer server(Serving(media));
    Fetched fetched(server.URL("/a"), Options(10'000));
    EXPECT_TRUE(fetched.mfOpened);
    EXPECT_EQ(fetched.Read(2'000'000, 10), "");
    EXPECT_FALSE(fetched.mSource->HasFailed());
    EXPECT_EQ(fetched.mStream.GetMediaSize(), media.mBytes.size());
    EXPECT_EQ(fetched.Read(1'499'990, 20), media.mBytes.substr(1'499'990));
    EXPECT_EQ(server.GetRequests(), (Words{"/a", "/a from 2000000", "/a from 1499990"}));
}

TEST(HttpStream, ARecordReceivesTypeAndTimeWhereItHasNone) {
    HttpMedia media;
    media.mBytes = "x";
    media.mFields = "Content-Type: audio/mpeg; charset=x\r\nLast-Modified: Tue, 29 Feb 2000 12:34:56 GMT\r\n";
    const HttpServer server(Serving(media));
    Fetched fetched(server.URL("/a.mp3"));
    ezMediaInfo info;
    fetched.mStream.CopyInfo(&info);
    EXPECT_EQ(info.GetCString(kezInfo_MimeType, ""), "audio/mpeg");
    EXPECT_EQ(info.mLastModificationTime, ezDateTime(951827696, 0));
    EXPECT_EQ(info.mFullPath, server.URL("/a.mp3").c_str());
    ezMediaInfo other;
    other.Set(kezInfo_MimeType, "a/b", true);
    other.mLastModificationTime = ezDateTime(7, 0);
    fetched.mSource->CopyInfo(&other);
    EXPECT_EQ(other.GetCString(kezInfo_MimeType, ""), "a/b");
    EXPECT_EQ(other.mLastModificationTime, ezDateTime(7, 0));
}

TEST(HttpStream, ATypeThatTellsNothingIsNone) {
    for (const char* type : {"application/octet-stream", "Application/Octet-Stream; x=y", "none", ""}) {
        HttpMedia media;
        media.mBytes = "x";
        media.mFields = std::string("Content-Type: ") + type + "\r\nLast-Modified: once\r\n";
        const HttpServer server(Serving(media));
        Fetched fetched(server.URL("/a.mp3"));
        ezMediaInfo info;
        fetched.mStream.CopyInfo(&info);
        EXPECT_FALSE(info.Has(kezInfo_MimeType)) << type;
        EXPECT_FALSE(info.mLastModificationTime.IsSet());
    }
}

TEST(HttpStream, DestructionDoesNotWaitForTheServer) {
    const HttpServer server([](const HttpRequest&, HttpConnection& aConnection) {
        aConnection.Send(HttpHead("200 OK", "Content-Length: 9000000\r\n") + "some");
        aConnection.Stall();
    });
    for (int i = 0; i < 30; ++i) {
        const std::unique_ptr<ezHttpStream, ezStreamReleaser> stream(
            new ezHttpStream(ezCString(server.URL("/a")), Options()));
        if (i % 2 == 0) {
            while (ReadOnce(*stream, 4) == Nothing()) {
                std::this_thread::yield();
            }
        }
    }
}
#endif
