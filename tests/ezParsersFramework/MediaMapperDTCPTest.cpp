#include "ez/MediaParserManager.h"

#include "ez/DLNAMediaMapper.h"

#include "ezPlatform/dlna/ProtocolInfoList.h"
#include "ezPlatform/media/MediaInfo.h"

#include "support/MapperFolder.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>

namespace {

/// A parser that only declares.
class DeclaringParser : public ezMediaParser {
public:
    DeclaringParser(const char* aType, const char* aDeclared)
        : ezMediaParser(aType, nullptr, false), mDeclared(aDeclared) {}
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }
    ezCString GetDLNAInfo() override { return mDeclared; }

private:
    ezCString mDeclared;
};

/// A manager of a table and of parsers that declare.
class MediaMapperDTCP : public testing::Test {
protected:
    void UseTable(const std::string& aTable) {
        mMapper = mFolder.Loaded(aTable);
        mManager.AddDLNAMediaMapperParser(mMapper.get());
    }
    void Declare(const char* aDeclared, const char* aType = "a") {
        mManager.Add(new DeclaringParser(aType, aDeclared));
    }
    std::string Plain() { return Str(mManager.GetDLNAInfo()); }
    std::string Protected() { return Str(mManager.GetDLNAInfoDTCP()); }

    const MapperFolder mFolder;
    std::unique_ptr<OpenMapper> mMapper;
    ezMediaParserManager mManager{nullptr};
};

/// A list as text, every entry marked once more, as text again, and the number of its entries.
std::string MarkedAgain(const std::string& aText, std::size_t* aCount) {
    ezDLNAProtocolInfoList* list = ezDLNAProtocolInfoList_NewFromProfileInfo(aText.c_str(), 0);
    *aCount = ezDLNAProtocolInfoList_GetCount(list);
    for (std::size_t i = 0; i < *aCount; ++i) {
        ezDLNAProtocolInfo_SetDTCPIP(ezDLNAProtocolInfoList_GetProtocolInfoAt(list, i), nullptr, 0, 1);
    }
    const std::string text = Taken(ezDLNAProtocolInfoList_GetMimeTypePNStr(list));
    ezDLNAProtocolInfoList_Delete(list);
    return text;
}

} // namespace

TEST_F(MediaMapperDTCP, NothingDeclaredIsNothing) {
    EXPECT_EQ(Plain(), "");
    EXPECT_EQ(Protected(), "");
    UseTable("");
    EXPECT_EQ(Plain(), "");
    EXPECT_EQ(Protected(), "");
}

TEST_F(MediaMapperDTCP, TableAloneIsDeclaredWithoutAComma) {
    UseTable("1.mpg,video/mpeg,P\n");
    EXPECT_EQ(Plain(), "video/mpeg:DLNA.ORG_PN=P");
    EXPECT_EQ(Protected(), "application/x-dtcp1;CONTENTFORMAT=\"video/mpeg\":DLNA.ORG_PN=DTCP_P");
}

TEST_F(MediaMapperDTCP, TableStandsLastWheneverItIsAdded) {
    Declare("audio/mpeg:DLNA.ORG_PN=MP3", "z");
    UseTable("1.mpg,video/mpeg,P\n2.mp3,audio/mpeg,MP3\n");
    Declare("image/jpeg:DLNA.ORG_PN=JPEG_LRG", "a");
    Declare("", "b");
    EXPECT_EQ(Plain(), "audio/mpeg:DLNA.ORG_PN=MP3,image/jpeg:DLNA.ORG_PN=JPEG_LRG,"
                       "audio/mpeg:DLNA.ORG_PN=MP3,video/mpeg:DLNA.ORG_PN=P"); // twice declared, twice told
    EXPECT_EQ(Protected(), "application/x-dtcp1;CONTENTFORMAT=\"audio/mpeg\":DLNA.ORG_PN=DTCP_MP3,"
                           "application/x-dtcp1;CONTENTFORMAT=\"image/jpeg\":DLNA.ORG_PN=DTCP_JPEG_LRG,"
                           "application/x-dtcp1;CONTENTFORMAT=\"audio/mpeg\":DLNA.ORG_PN=DTCP_MP3,"
                           "application/x-dtcp1;CONTENTFORMAT=\"video/mpeg\":DLNA.ORG_PN=DTCP_P");
}

TEST_F(MediaMapperDTCP, EmptyTableAddsNoComma) {
    Declare("audio/mpeg:DLNA.ORG_PN=MP3");
    UseTable("1.mpg,video/mpeg,OFF,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n");
    EXPECT_EQ(Plain(), "audio/mpeg:DLNA.ORG_PN=MP3");
}

TEST_F(MediaMapperDTCP, CommasInsideAnEntryStayEscaped) {
    UseTable("1.mpg,video/mpeg,P,,-2\\,2,,,,,,,,BRELVO.COM_GOLDENDMS=60000000\n2.mpg,video/mpeg,Q\n");
    EXPECT_EQ(Plain(), "video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_PS=-2\\,2,video/mpeg:DLNA.ORG_PN=Q");
    EXPECT_EQ(Protected(),
              "application/x-dtcp1;CONTENTFORMAT=\"video/mpeg\":DLNA.ORG_PN=DTCP_P;DLNA.ORG_PS=-2\\,2,"
              "application/x-dtcp1;CONTENTFORMAT=\"video/mpeg\":DLNA.ORG_PN=DTCP_Q");
}

TEST_F(MediaMapperDTCP, StatedFlagsGetTheLinkProtectionBitAndTheRestStays) {
    Declare("video/mpeg:A_B=1;DLNA.ORG_FLAGS=01500000000000000000000000000000;DLNA.ORG_OP=01,audio/wav:*,"
            "audio/x:DLNA.ORG_OP=10");
    EXPECT_EQ(Protected(), "application/x-dtcp1;CONTENTFORMAT=\"video/mpeg\":DLNA.ORG_OP=01;"
                           "DLNA.ORG_FLAGS=01510000000000000000000000000000;A_B=1,"
                           "application/x-dtcp1;CONTENTFORMAT=\"audio/wav\":*,"
                           "application/x-dtcp1;CONTENTFORMAT=\"audio/x\":DLNA.ORG_OP=10");
}

TEST_F(MediaMapperDTCP, EntryThatIsMarkedAlreadyStays) {
    const char* marked = "application/x-dtcp1;CONTENTFORMAT=\"video/mpeg\":DLNA.ORG_PN=DTCP_P,"
                         "application/x-dtcp1;DTCP1HOST=10.0.0.1;DTCP1PORT=8000;CONTENTFORMAT=\"audio/x\":*";
    Declare(marked);
    EXPECT_EQ(Protected(), marked);
}

TEST_F(MediaMapperDTCP, ListIsWellFormedAndMarkingItAgainChangesNothing) {
    Declare("video/mpeg:DLNA.ORG_PN=A;DLNA.ORG_PS=2\\,4;DLNA.ORG_FLAGS=01500000000000000000000000000000,"
            "audio/L16;rate=44100;channels=1:DLNA.ORG_PN=LPCM");
    UseTable("1.mpg,video/x;a=\"b:c;d\\,e\",P,,-2\\,2,,,,,,,,BRELVO.COM_GOLDENDMS=60000000\n"
             "2.mpg,video/mpeg,Q,,2\\,4,,,,,,,,BRELVO.COM_GOLDENDMS=60000000\n");
    const std::string text = Protected();
    std::size_t count = 0;
    EXPECT_EQ(MarkedAgain(text, &count), text);
    EXPECT_EQ(count, 4U);
    std::size_t countAgain = 0;
    EXPECT_EQ(MarkedAgain(MarkedAgain(text, &count), &countAgain), text);
    EXPECT_EQ(countAgain, 4U);
    EXPECT_EQ(Protected(), text); // nothing is kept from one answer to the next
}

TEST_F(MediaMapperDTCP, EntryWithoutAColonIsTakenForAMimeType) {
    mMapper = mFolder.Loaded(
        "1.mpg,video/mpeg,P,,2\\,4,,,,,,,,BRELVO.COM_GOLDENDMS=60000000\n2.mpg,video/mpeg,Q\n");
    mMapper->At(0)->mProfile = "";
    mMapper->At(0)->ComputeDLNAProtocolInfo();
    mManager.AddDLNAMediaMapperParser(mMapper.get());
    const std::string text = Protected();
    EXPECT_EQ(text, "application/x-dtcp1;CONTENTFORMAT=\"video/mpegDLNA.ORG_PS=2\\,4\":*,"
                    "application/x-dtcp1;CONTENTFORMAT=\"video/mpeg\":DLNA.ORG_PN=DTCP_Q");
    std::size_t count = 0;
    EXPECT_EQ(MarkedAgain(text, &count), text);
    EXPECT_EQ(count, 2U);
}

TEST_F(MediaMapperDTCP, WhatTheTableAddsIsFixedWhenItIsAdded) {
    UseTable("1.mpg,video/mpeg,P\n");
    mMapper->At(0)->mGoldenDMSFlags = kDLNAMediaMapperProfile_Disabled;
    mMapper->At(0)->mProfile = "Q";
    mMapper->At(0)->ComputeDLNAProtocolInfo();
    EXPECT_EQ(Plain(), "video/mpeg:DLNA.ORG_PN=P");
    EXPECT_EQ(Protected(), "application/x-dtcp1;CONTENTFORMAT=\"video/mpeg\":DLNA.ORG_PN=DTCP_P");
}
