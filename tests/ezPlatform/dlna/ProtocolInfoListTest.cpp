#include "ezPlatform/dlna/ProtocolInfoList.h"

#include "ezPlatform/base/Memory.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace {

std::string Taken(char* aText) {
    const std::string text = aText != nullptr ? aText : "<null>";
    ezFree(aText);
    return text;
}

class List {
public:
    explicit List(const std::string& aText) : List(aText.c_str()) {}
    explicit List(const char* aText) : mList(ezDLNAProtocolInfoList_NewFromProfileInfo(aText, 0)) {}
    ~List() { ezDLNAProtocolInfoList_Delete(mList); }
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    operator ezDLNAProtocolInfoList*() const { return mList; }

    std::size_t Count() const { return ezDLNAProtocolInfoList_GetCount(mList); }
    ezDLNAProtocolInfo* At(std::size_t anIndex) const {
        return ezDLNAProtocolInfoList_GetProtocolInfoAt(mList, anIndex);
    }
    std::string EntryAt(std::size_t anIndex) const { return Taken(ezDLNAProtocolInfo_GetStr(At(anIndex))); }
    std::string Text() const { return Taken(ezDLNAProtocolInfoList_GetMimeTypePNStr(mList)); }

private:
    ezDLNAProtocolInfoList* mList;
};

std::string Written(const std::string& aText) {
    return List(aText).Text();
}

} // namespace

TEST(ProtocolInfoList, HoldsAnEntryForEachTypeAndField) {
    const List list(
        "video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL,audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM,image/png:*");
    ASSERT_EQ(list.Count(), 3U);
    EXPECT_EQ(list.EntryAt(0), "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL");
    EXPECT_EQ(list.EntryAt(1), "http-get:*:audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM");
    EXPECT_EQ(list.EntryAt(2), "http-get:*:image/png:*");
    EXPECT_EQ(list.At(3), nullptr);
    EXPECT_EQ(list.At(SIZE_MAX), nullptr);
}

TEST(ProtocolInfoList, AnEscapedCommaBelongsToTheEntry) {
    const List list(R"(video/mpeg:DLNA.ORG_PN=X;DLNA.ORG_PS=-4\,-2\,2,audio/mpeg:*)");
    ASSERT_EQ(list.Count(), 2U);
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(list.At(0), 0)), "-4,-2,2");
    EXPECT_EQ(list.Text(), R"(video/mpeg:DLNA.ORG_PN=X;DLNA.ORG_PS=-4\,-2\,2,audio/mpeg:*)");
}

TEST(ProtocolInfoList, EmptyEntriesAreDropped) {
    EXPECT_EQ(List("").Count(), 0U);
    EXPECT_EQ(List(static_cast<const char*>(nullptr)).Count(), 0U);
    EXPECT_EQ(List(",,").Count(), 0U);
    const List list(",a/b:*,,c/d:*,");
    ASSERT_EQ(list.Count(), 2U);
    EXPECT_EQ(list.Text(), "a/b:*,c/d:*");
    EXPECT_EQ(Written(""), "");
}

TEST(ProtocolInfoList, TheTextCarriesTheWhole4thFieldOfEachEntry) {
    EXPECT_EQ(
        Written("video/mpeg:X_Y=a\\,b;DLNA.ORG_OP=01;DLNA.ORG_PN=P;DLNA.ORG_FLAGS=0150000f,audio/mpeg"),
        "video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=0150000F000000000000000000000000;X_Y=a\\,b,"
        "audio/mpeg:*");
}

TEST(ProtocolInfoList, BothNamesOfTheTextGiveTheSame) {
    const List list("video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_PS=2\\,4;X=1,a/b:*");
    EXPECT_EQ(Taken(ezDLNAProtocolInfoList_GetMimeTypeProfileStr(list)), list.Text());
    EXPECT_EQ(list.Text(), "video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_PS=2\\,4;X=1,a/b:*");
}

TEST(ProtocolInfoList, RemovingClosesTheGapAndAfterTheEndDoesNothing) {
    const List list("a/a:*,b/b:*,c/c:*");
    ezDLNAProtocolInfo* last = list.At(2);
    ezDLNAProtocolInfoList_Remove(list, 3);
    ezDLNAProtocolInfoList_Remove(list, SIZE_MAX);
    EXPECT_EQ(list.Count(), 3U);
    ezDLNAProtocolInfoList_Remove(list, 1);
    EXPECT_EQ(list.Text(), "a/a:*,c/c:*");
    EXPECT_EQ(list.At(1), last) << "the others stay where they are";
    ezDLNAProtocolInfoList_Remove(list, 0);
    ezDLNAProtocolInfoList_Remove(list, 0);
    EXPECT_EQ(list.Count(), 0U);
    ezDLNAProtocolInfoList_Remove(list, 0);
    EXPECT_EQ(list.Text(), "");
}

TEST(ProtocolInfoList, ChangesOfAnEntryAreWritten) {
    const List list("video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_PS=2,audio/mpeg:*");
    for (std::size_t i = 0; i < list.Count(); ++i) {
        ezDLNAProtocolInfo_SetDTCPIP(list.At(i), nullptr, 0, 1);
    }
    ezDLNAProtocolInfo_SetPlaySpeeds(list.At(0), "-1,8", 0);
    const std::string text = "application/x-dtcp1;CONTENTFORMAT=\"video/mpeg\":DLNA.ORG_PN=DTCP_MPEG_PS_PAL;"
                             "DLNA.ORG_PS=-1\\,8,application/x-dtcp1;CONTENTFORMAT=\"audio/mpeg\":*";
    EXPECT_EQ(list.Text(), text);
    EXPECT_EQ(Written(text), text);
}

TEST(ProtocolInfoList, ANullListIsEmptyAndTakesNothing) {
    EXPECT_EQ(ezDLNAProtocolInfoList_GetCount(nullptr), 0U);
    EXPECT_EQ(ezDLNAProtocolInfoList_GetProtocolInfoAt(nullptr, 0), nullptr);
    ezDLNAProtocolInfoList_Remove(nullptr, 0);
    EXPECT_EQ(Taken(ezDLNAProtocolInfoList_GetMimeTypePNStr(nullptr)), "");
    EXPECT_EQ(Taken(ezDLNAProtocolInfoList_GetMimeTypeProfileStr(nullptr)), "");
    ezDLNAProtocolInfoList_Delete(nullptr);
}

TEST(ProtocolInfoList, MegabytesOfEntriesCostOnePass) {
    for (const std::string& piece : {std::string(","), std::string("a/b:*,"), std::string("\\,"),
                                     std::string("\":,"), std::string("\\\";")}) {
        std::string text;
        while (text.size() < 1000000) {
            text += piece;
        }
        const std::clock_t start = std::clock();
        Written(text);
        EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 20.0) << piece;
    }
}

RC_GTEST_PROP(ProtocolInfoListModel, WhatWasWrittenIsReadAndWrittenTheSame, ()) {
    // No backslash but before a comma: an entry that ends in one has no text form.
    const auto pieces = *rc::gen::container<std::vector<std::string>>(
        rc::gen::element<std::string>(",", ",", "\\,", ":", ";", "=", "\"", "*", "a/b:", "DLNA.ORG_PN=", "P",
                                      "DLNA.ORG_PS=", "2", "-1/2", "X=", "DLNA.ORG_OP=01", " "));
    std::string text;
    for (const std::string& piece : pieces) {
        text += piece;
    }
    const List list(text);
    const std::string once = list.Text();
    const List again(once);
    RC_ASSERT(again.Count() == list.Count());
    RC_ASSERT(again.Text() == once);
    for (std::size_t i = 0; i < list.Count(); ++i) {
        RC_ASSERT(again.EntryAt(i) == list.EntryAt(i));
    }
}
