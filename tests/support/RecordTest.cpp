#include "support/Record.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

TEST(DumpRecord, SaysThatThereIsNone) {
    EXPECT_EQ(DumpRecord(nullptr), "null\n");
}

TEST(DumpRecord, OfAnEmptyRecordIsEmpty) {
    const ezMediaInfo info;
    EXPECT_EQ(DumpRecord(&info), "");
}

TEST(DumpRecord, WritesTheKeysInOrderWithTextsInQuotesAndNumbersBare) {
    ezMediaInfo info;
    info.Set("mt", "audio/L16", true);
    info.Set("ac", 2, true);
    info.Set("br", -1, true);
    info.Set("du", "60", true);
    info.Set("as", "Ann\nBob", true);
    EXPECT_EQ(DumpRecord(&info), "ac=2\n"
                                 "as=\"Ann\\nBob\"\n"
                                 "br=4294967295\n"
                                 "du=\"60\"\n"
                                 "mt=\"audio/L16\"\n");
}

TEST(DumpRecord, WritesTheMembersThatAreSetAfterTheKeys) {
    ezMediaInfo info;
    info.mAlbum = "album";
    info.mGenre = "genre";
    info.mCreator = "creator";
    info.mTitle = "title";
    info.mLastModificationTime = ezDateTime(1500000000, 7);
    info.mFullPath = "/media/a.pcm";
    info.Set("zz", 1, true);
    EXPECT_EQ(DumpRecord(&info), "zz=1\n"
                                 "path=\"/media/a.pcm\"\n"
                                 "modified=1500000000\n"
                                 "title=\"title\"\n"
                                 "creator=\"creator\"\n"
                                 "genre=\"genre\"\n"
                                 "album=\"album\"\n");
}

TEST(DumpRecord, TheRecordIsDeletedWithItsHolder) {
    static int sAlive = 0;
    class Counted : public ezMediaInfo {
    public:
        Counted() { ++sAlive; }
        ~Counted() override { --sAlive; }
    };
    {
        const Record record(new Counted);
        EXPECT_EQ(sAlive, 1);
    }
    EXPECT_EQ(sAlive, 0);
}
