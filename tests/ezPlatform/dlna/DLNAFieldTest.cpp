#include "ezPlatform/dlna/DLNAField.h"

#include "ezPlatform/dlna/ProtocolInfo.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

const std::string kZeros(24, '0');

/// A field as it is written once it has been read.
std::string Written(const std::string& aText) {
    return Str(ezDLNAField(aText).GetText());
}

std::string Taken(char* aText) {
    return Str(ezCString::FromAllocatedString(aText));
}

} // namespace

// Reading and writing, of which the tests of ezDLNAProtocolInfo hold the rest

TEST(DLNAField, WithoutAParameterItIsAny) {
    EXPECT_EQ(Str(ezDLNAField().GetText()), "*");
    EXPECT_EQ(Written(""), "*");
    EXPECT_EQ(Written("*"), "*");
    EXPECT_EQ(Str(ezDLNAField().GetProfile()), "");
    EXPECT_EQ(ezDLNAField().GetFlags(), 0U);
    EXPECT_FALSE(ezDLNAField().GetTimeSeek());
    EXPECT_FALSE(ezDLNAField().GetByteSeek());
    EXPECT_EQ(Str(ezDLNAField().GetPlaySpeeds()), "");
}

TEST(DLNAField, IsReadInAnyOrderAndWrittenInTheMandatoryOne) {
    EXPECT_EQ(
        Written("X_Y=a "
                "b;DLNA.ORG_FLAGS=00d00000;DLNA.ORG_CI=1;DLNA.ORG_PS=2\\,-1/2;DLNA.ORG_OP=10;DLNA.ORG_PN=P"),
        "DLNA.ORG_PN=P;DLNA.ORG_OP=10;DLNA.ORG_PS=2,-1/2;DLNA.ORG_CI=1;DLNA.ORG_FLAGS=00D00000" + kZeros +
            ";X_Y=a b");
}

TEST(DLNAField, ANULEndsTheText) {
    EXPECT_EQ(Written(std::string("DLNA.ORG_PN=P\0Q;DLNA.ORG_OP=01", 30)), "DLNA.ORG_PN=P");
}

TEST(DLNAField, EveryDigitOfTheFlagsIsWritten) {
    for (const auto& [flags, digits] : std::vector<std::pair<uint32, std::string>>{
             {0, "00000000"}, {0x01234567, "01234567"}, {0x89ABCDEF, "89ABCDEF"}, {0xFFFFFFFF, "FFFFFFFF"}}) {
        ezDLNAField field;
        field.SetFlags(flags);
        EXPECT_EQ(Str(field.GetText()), "DLNA.ORG_FLAGS=" + digits + kZeros);
        EXPECT_EQ(ezDLNAField(field.GetText().View()).GetFlags(), flags);
    }
}

// A profile alone

TEST(DLNAField, IsMadeOfAProfile) {
    EXPECT_EQ(Str(ezDLNAField::OfProfile("MP3").GetText()), "DLNA.ORG_PN=MP3");
    EXPECT_EQ(Str(ezDLNAField::OfProfile("").GetText()), "*");
    EXPECT_EQ(Str(ezDLNAField::OfProfile("MP3").GetProfile()), "MP3");
    EXPECT_EQ(Str(ezDLNAField::TextOfProfile("")), "DLNA.ORG_PN=");
    for (const char* profile : {"P", "AVC_MP4_BL_CIF15_AAC_520", "a=b"}) {
        EXPECT_EQ(Str(ezDLNAField::TextOfProfile(profile)), Str(ezDLNAField::OfProfile(profile).GetText()));
    }
}

TEST(DLNAField, TheProfileOfATextIsThatOfTheFieldReadFromIt) {
    for (const char* text :
         {"", "*", "DLNA.ORG_PN=", "DLNA.ORG_PN=P", "DLNA.ORG_PN=P;DLNA.ORG_OP=01",
          "DLNA.ORG_OP=01;DLNA.ORG_PN=P", " DLNA.ORG_PN =P", "DLNA.ORG_PN= P ", "dlna.org_pn=P",
          "DLNA.ORG_PNX=P", "X=DLNA.ORG_PN=P", "DLNA.ORG_PN=P;DLNA.ORG_PN=Q", "DLNA.ORG_PN;DLNA.ORG_PN=Q",
          "DLNA.ORG_PN=;DLNA.ORG_PN=Q", ";;DLNA.ORG_PN=a=b;"}) {
        EXPECT_EQ(std::string(ezDLNAField::ProfileIn(text)), Str(ezDLNAField(text).GetProfile())) << text;
    }
    EXPECT_EQ(std::string(ezDLNAField::ProfileIn("DLNA.ORG_OP=01;DLNA.ORG_PN=P;X=1")), "P");
}

TEST(DLNAField, AValueOfATextIsAPartOfIt) {
    const std::string text = "DLNA.ORG_PN=P;X_Y=1=2;Z=";
    EXPECT_EQ(ezDLNAField::ValueIn(text, "X_Y"), "1=2");
    EXPECT_EQ(ezDLNAField::ValueIn(text, "X_Y")->data(), text.data() + 18);
    EXPECT_EQ(ezDLNAField::ValueIn(text, "Z"), "");
    EXPECT_EQ(ezDLNAField::ValueIn(text, "X"), std::nullopt);
    EXPECT_EQ(ezDLNAField::ValueIn(text, ""), std::nullopt);
}

// Changes

TEST(DLNAField, IsBuiltParameterByParameter) {
    ezDLNAField field = ezDLNAField::OfProfile("AVC_TS_HD");
    field.SetByteSeek(true);
    EXPECT_EQ(Str(field.GetText()), "DLNA.ORG_PN=AVC_TS_HD;DLNA.ORG_OP=01");
    field.SetTimeSeek(true);
    field.SetFlags(kezDLNAFlag_StreamingTransfer | kezDLNAFlag_BackgroundTransfer |
                   kezDLNAFlag_DLNAVersion15);
    EXPECT_EQ(Str(field.GetText()), "DLNA.ORG_PN=AVC_TS_HD;DLNA.ORG_OP=11;DLNA.ORG_FLAGS=01500000" + kZeros);
    field.SetProfile("");
    field.SetTimeSeek(false);
    field.AddFlags(kezDLNAFlag_InteractiveTransfer);
    field.SetPlaySpeeds("2,1,zero,4/2,-1/2");
    EXPECT_EQ(Str(field.GetText()), "DLNA.ORG_OP=01;DLNA.ORG_PS=2,-1/2;DLNA.ORG_FLAGS=01D00000" + kZeros);
    field.RemovePlaySpeeds();
    field.Remove("DLNA.ORG_FLAGS");
    field.Set("X_Y", "1");
    field.Set("DLNA.ORG_OP", "");
    EXPECT_EQ(Str(field.GetText()), "X_Y=1");
}

TEST(DLNAField, SettingToFalseWhatIsNotStatedStatesNothing) {
    ezDLNAField field;
    field.SetByteSeek(false);
    field.SetTimeSeek(false);
    field.SetHTTPStalling(false);
    EXPECT_EQ(Str(field.GetText()), "*");
    field.AddFlags(0);
    EXPECT_EQ(Str(field.GetText()), "DLNA.ORG_FLAGS=00000000" + kZeros);
}

TEST(DLNAField, ACopyIsAValueOfItsOwn) {
    ezDLNAField field("DLNA.ORG_PN=P;DLNA.ORG_PS=2;X=1");
    const ezDLNAField copy = field;
    field.SetProfile("Q");
    field.AddPlaySpeeds("3");
    field.Set("X", "2");
    EXPECT_EQ(Str(copy.GetText()), "DLNA.ORG_PN=P;DLNA.ORG_PS=2;X=1");
    EXPECT_EQ(Str(field.GetText()), "DLNA.ORG_PN=Q;DLNA.ORG_PS=2,3;X=2");
}

TEST(DLNAField, TakesThePlaySpeedsOfAnother) {
    ezDLNAField field("DLNA.ORG_PN=P;DLNA.ORG_PS=2,-1/2");
    field.AddPlaySpeeds(ezDLNAField("DLNA.ORG_PN=Q;DLNA.ORG_OP=11;DLNA.ORG_PS=3,4/2,1/4"));
    EXPECT_EQ(Str(field.GetText()), "DLNA.ORG_PN=P;DLNA.ORG_PS=2,-1/2,3,1/4");
}

TEST(DLNAField, MergedWithItselfItStays) {
    ezDLNAField field(
        "DLNA.ORG_PN=P;DLNA.ORG_OP=01;DLNA.ORG_PS=2,3;DLNA.ORG_CI=0;DLNA.ORG_FLAGS=01500000;X=1");
    const std::string text = Str(field.GetText());
    field.Merge(field);
    EXPECT_EQ(Str(field.GetText()), text);
}

// The field of a protocolInfo

TEST(DLNAField, AProtocolInfoIsMadeOfATypeAndAField) {
    ezDLNAProtocolInfo* info = ezDLNAProtocolInfo_NewOf("audio/\"a:b", ezDLNAField::OfProfile("P"));
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(info)), "http-get:*:audio/\"a:b:DLNA.ORG_PN=P");
    ezDLNAProtocolInfo_SetByteBasedSeek(info, true);
    const ezDLNAProtocolInfo* const read = info;
    EXPECT_EQ(Str(ezDLNAProtocolInfo_GetField(read)->GetText()), "DLNA.ORG_PN=P;DLNA.ORG_OP=01");
    ezDLNAProtocolInfo_GetField(info)->SetProfile("Q");
    EXPECT_EQ(std::string(ezDLNAProtocolInfo_GetProfile(info)), "Q");
    ezDLNAProtocolInfo_Delete(info);
    EXPECT_EQ(ezDLNAProtocolInfo_GetField(static_cast<ezDLNAProtocolInfo*>(nullptr)), nullptr);
    EXPECT_EQ(ezDLNAProtocolInfo_GetField(static_cast<const ezDLNAProtocolInfo*>(nullptr)), nullptr);
    for (const char* type : {static_cast<const char*>(nullptr), ""}) {
        info = ezDLNAProtocolInfo_NewOf(type, ezDLNAField());
        EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(info)), "http-get:*:*:*");
        ezDLNAProtocolInfo_Delete(info);
    }
}
