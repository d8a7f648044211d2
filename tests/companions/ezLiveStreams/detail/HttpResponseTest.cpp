#include "ezLiveStreams/FeedStream.h"

#ifdef EZ_HAS_HTTP_STREAM
#include "ezLiveStreams/detail/HttpResponse.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

ezHttpResponse Head(const std::vector<std::string>& aLines) {
    ezHttpResponse response;
    for (const std::string& line : aLines) {
        EXPECT_FALSE(response.AddLine(line + "\r\n")) << line;
    }
    EXPECT_TRUE(response.AddLine("\r\n"));
    return response;
}

} // namespace

TEST(HttpResponse, TakesStatusAndFieldsInAnyCase) {
    const ezHttpResponse response = Head({"HTTP/1.1 200 OK", "CONTENT-length:  12 ", "ETag: a:b"});
    EXPECT_EQ(response.GetStatus(), 200);
    EXPECT_EQ(response.GetLength(), 12U);
    EXPECT_EQ(response.Get("etag"), "a:b");
    EXPECT_EQ(response.Get("location"), "");
    EXPECT_EQ(Head({"HTTP/2 404"}).GetStatus(), 404);
    EXPECT_EQ(Head({"HTTP/1.1 2x0 No"}).GetStatus(), 0);
    EXPECT_EQ(Head({"HTTP/1.1"}).GetStatus(), 0);
}

TEST(HttpResponse, ALaterAnswerForgetsTheOneBefore) {
    ezHttpResponse response = Head({"HTTP/1.1 302 Found", "Location: /b", "Content-Length: 5"});
    EXPECT_TRUE(response.IsInterim());
    EXPECT_FALSE(response.AddLine("HTTP/1.1 200 OK\r\n"));
    EXPECT_FALSE(response.IsInterim());
    EXPECT_EQ(response.GetLength(), std::nullopt);
    EXPECT_TRUE(Head({"HTTP/1.1 100 Continue"}).IsInterim());
    EXPECT_FALSE(Head({"HTTP/1.1 304 Not Modified"}).IsInterim());
    EXPECT_FALSE(Head({"HTTP/1.1 404 No", "Location: /b"}).IsInterim());
    EXPECT_TRUE(Head({"HTTP/1.1 103 Early Hints"}).IsInterim());
    EXPECT_FALSE(Head({"HTTP/1.1 101 Switching Protocols"}).IsInterim()); // nothing of HTTP follows
    EXPECT_FALSE(Head({"HTTP/1.1 0x0 No"}).IsInterim());
}

TEST(HttpResponse, WhatComesAfterTheHeadIsNoPartOfIt) {
    ezHttpResponse response = Head({"HTTP/1.1 200 OK"});
    EXPECT_FALSE(response.AddLine("Content-Length: 5\r\n"));
    EXPECT_FALSE(response.AddLine("\r\n"));
    EXPECT_EQ(response.GetLength(), std::nullopt);
}

TEST(HttpResponse, AFieldThatDoesNotReadIsAbsent) {
    for (const char* length : {"-1", "1x", "", "99999999999999999999", "0x10", "1,1"}) {
        EXPECT_EQ(Head({"HTTP/1.1 200 OK", std::string("Content-Length: ") + length}).GetLength(),
                  std::nullopt);
    }
    for (const char* range : {"", "bytes", "bytes 5-9", "bytes x-9/10", "lines 5-9/10", "bytes */10",
                              "bytes /10", "bytes 5-4/10", "bytes 5-10/10", "bytes 5-9/5", "bytes 5-/10",
                              "bytes 5-9/x", "bytes 5/9-10", "bytes 5-18446744073709551615/*"}) {
        EXPECT_FALSE(Head({"HTTP/1.1 206 P", std::string("Content-Range: ") + range}).GetRange()) << range;
    }
}

TEST(HttpResponse, ReadsRanges) {
    const auto range = Head({"HTTP/1.1 206 P", "Content-Range: bytes 5-9/10"}).GetRange();
    ASSERT_TRUE(range);
    EXPECT_EQ(range->mFirst, 5U);
    EXPECT_EQ(range->mLast, 9U);
    EXPECT_EQ(range->mTotal, 10U);
    const auto open = Head({"HTTP/1.1 206 P", "Content-Range: bytes 5-9/*"}).GetRange();
    ASSERT_TRUE(open);
    EXPECT_EQ(open->mTotal, std::nullopt);
    EXPECT_EQ(Head({"HTTP/1.1 416 R", "Content-Range: bytes */10"}).GetSizeOfUnsatisfied(), 10U);
    EXPECT_EQ(Head({"HTTP/1.1 416 R", "Content-Range: bytes 1-2/10"}).GetSizeOfUnsatisfied(), std::nullopt);
}

TEST(HttpResponse, AnyNumberOfFieldsIsBounded) {
    std::vector<std::string> lines = {"HTTP/1.1 200 OK"};
    for (int i = 0; i < 10'000; ++i) {
        lines.push_back("X-" + std::to_string(i) + ": y");
    }
    EXPECT_EQ(Head(lines).Get("x-9999"), "");
}

TEST(HttpResponse, WhatIsAskedForIsFoundAfterAnyNumberOfFields) {
    std::vector<std::string> lines = {"HTTP/1.1 302 Found"};
    for (int i = 0; i < 200; ++i) {
        lines.push_back("X-" + std::to_string(i) + ": y");
    }
    lines.insert(lines.end(), {"Location: /b", "Content-Length: 5"});
    EXPECT_TRUE(Head(lines).IsInterim());
    EXPECT_EQ(Head(lines).GetLength(), 5U);
}

TEST(HttpResponse, UnitsAreTheSameInAnyCase) {
    EXPECT_TRUE(Head({"HTTP/1.1 206 P", "Content-Range: BYTES 5-9/10"}).GetRange());
    EXPECT_EQ(Head({"HTTP/1.1 416 R", "Content-Range: Bytes */10"}).GetSizeOfUnsatisfied(), 10U);
    EXPECT_TRUE(Head({"HTTP/1.1 200 OK", "Accept-Ranges: Bytes"}).AcceptsRanges());
    EXPECT_FALSE(Head({"HTTP/1.1 200 OK", "Accept-Ranges: none"}).AcceptsRanges());
    EXPECT_FALSE(Head({"HTTP/1.1 200 OK"}).AcceptsRanges());
}

TEST(HttpResponse, ATextEndsWhereItsLineEndsAndNotAtANul) {
    const std::string nul(1, '\0');
    EXPECT_EQ(Head({"HTTP/1.1 200 OK", "Content-Length" + nul + "x: 5"}).GetLength(), std::nullopt);
    EXPECT_TRUE(Head({"HTTP/1.1 200 OK", "Content-Encoding: identity" + nul + "gzip"}).IsEncoded());
    EXPECT_FALSE(Head({"HTTP/1.1 200 OK", "Accept-Ranges: bytes" + nul + "x"}).AcceptsRanges());
    const std::string type = "application/octet-stream" + nul + "x";
    EXPECT_EQ(Head({"HTTP/1.1 200 OK", "Content-Type: " + type}).GetMimeType(), type);
}

TEST(HttpResponse, TagsAreWithoutTheMarkOfAWeakOne) {
    EXPECT_EQ(Head({"HTTP/1.1 200 OK", "ETag: W/\"a\""}).GetTag(), "\"a\"");
    EXPECT_EQ(Head({"HTTP/1.1 200 OK", "ETag: \"W/\""}).GetTag(), "\"W/\"");
}

TEST(HttpResponse, EveryCodingButIdentityIsAnEncoding) {
    for (const char* coding : {"gzip", "br", "GZIP", "identity, gzip", "x"}) {
        EXPECT_TRUE(Head({"HTTP/1.1 200 OK", std::string("Content-Encoding: ") + coding}).IsEncoded());
    }
    for (const char* coding : {"", "identity", "Identity"}) {
        EXPECT_FALSE(Head({"HTTP/1.1 200 OK", std::string("Content-Encoding: ") + coding}).IsEncoded());
    }
}
#endif
