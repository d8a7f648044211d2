#include "ezHosting/ProtocolInfos.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

} // namespace

TEST(ProtocolInfos, KeepCommasThatBelongToAnEntry) {
    EXPECT_EQ(ProtocolInfosOf("video/a:DLNA.ORG_PS=2\\,4;X,audio/b;x=1:*,,audio/c,x\\y/z:*"),
              (Lines{"http-get:*:video/a:DLNA.ORG_PS=2,4;X", "http-get:*:audio/b;x=1:*",
                     "http-get:*:audio/c:*", "http-get:*:x\\y/z:*"}));
    EXPECT_EQ(ProtocolInfosOf(""), Lines{});
}

TEST(ProtocolInfos, AreSeparatedOutsideQuotesOnly) {
    EXPECT_EQ(ProtocolInfosOf(R"(a/x;c="b/y,1":*,a/z;c="q\"r\,s":P,a/w)"),
              (Lines{R"(http-get:*:a/x;c="b/y,1":*)", R"(http-get:*:a/z;c="q\"r,s":P)", "http-get:*:a/w:*"}));
    EXPECT_EQ(ProtocolInfosOf(R"(a/x;c="b,a/y:*)"), (Lines{R"(http-get:*:a/x;c="b:*)", "http-get:*:a/y:*"}));
}
