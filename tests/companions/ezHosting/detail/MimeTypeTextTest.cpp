#include "ezHosting/detail/MimeTypeText.h"

#include <gtest/gtest.h>

TEST(MimeTypeText, ThatCanStandInAListIsToldFromOthers) {
    for (const char* text : {"audio/mpeg", "image/svg+xml", "audio/l16;rate=44100;channels=2", "a/b;",
                             "application/x-dtcp1;contentformat=\"video/mpeg\""}) {
        EXPECT_TRUE(IsMimeType(text)) << text;
    }
    for (const char* text : {"", "audio", "/mpeg", "audio/", "a/b/c", "a:b/c", "a b/c", "a/b;x=1,2",
                             "a/b;x:y", "a/b; c", "a/\x01", "a/\xC3\xA4", "a/b;\n", ";a/b"}) {
        EXPECT_FALSE(IsMimeType(text)) << text;
    }
}
