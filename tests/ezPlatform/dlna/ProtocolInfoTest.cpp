#include "ezPlatform/dlna/ProtocolInfo.h"

#include "ezPlatform/base/Memory.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

namespace {

/// A returned text, given back.
std::string Taken(char* aText) {
    const std::string text = aText != nullptr ? aText : "<null>";
    ezFree(aText);
    return text;
}

class Info {
public:
    explicit Info(const std::string& aText) : mInfo(ezDLNAProtocolInfo_New(aText.c_str(), 0, 0)) {}
    ~Info() { ezDLNAProtocolInfo_Delete(mInfo); }
    Info(const Info&) = delete;
    Info& operator=(const Info&) = delete;
    operator ezDLNAProtocolInfo*() const { return mInfo; }

    std::string Text() const { return Taken(ezDLNAProtocolInfo_GetStr(mInfo)); }
    std::string Field() const { return Taken(ezDLNAProtocolInfo_Get4thFieldStr(mInfo)); }
    std::string Speeds() const { return Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(mInfo, 0)); }
    std::string Type() const { return ezDLNAProtocolInfo_GetMimeType(mInfo); }
    std::string Profile() const { return ezDLNAProtocolInfo_GetProfile(mInfo); }
    uint32 Flags() const { return ezDLNAProtocolInfo_GetFlags(mInfo); }

private:
    ezDLNAProtocolInfo* mInfo;
};

/// An object of a 4th field.
std::string Of(const std::string& aField) {
    return "http-get:*:video/mpeg:" + aField;
}

/// A protocolInfo as it is written once it has been read.
std::string Written(const std::string& aText) {
    return Info(aText).Text();
}

/// The same for a 4th field.
std::string WrittenField(const std::string& aField) {
    return Info(Of(aField)).Field();
}

/// The play speeds that are kept of a comma list.
std::string Accepted(const std::string& aSpeeds) {
    const Info info("");
    ezDLNAProtocolInfo_SetPlaySpeeds(info, aSpeeds.c_str(), 0);
    return info.Speeds();
}

std::string ValueOf(const char* aField, const char* aName) {
    return Taken(ezDLNAProtocolInfo_S_Get4thFieldValueFromStr(aField, aName));
}

/// DLNA.ORG_FLAGS of these first digits.
std::string Flags(const std::string& aDigits) {
    return "DLNA.ORG_FLAGS=" + aDigits + "000000000000000000000000";
}

std::string Repeated(const std::string& aPiece, std::size_t aSize) {
    std::string text;
    text.reserve(aSize + aPiece.size());
    while (text.size() < aSize) {
        text += aPiece;
    }
    return text;
}

/// Processor time of this program: what others do on the machine does not count.
double SecondsSince(std::clock_t aStart) {
    return static_cast<double>(std::clock() - aStart) / CLOCKS_PER_SEC;
}

// Generous, for sanitizers and emulators: a cost that grows with the square would be hours.
constexpr double kSecondsForMegabytes = 20;

const char* const kFull =
    "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_NTSC;DLNA.ORG_OP=11;DLNA.ORG_PS=-4,-2,-1,2,4;"
    "DLNA.ORG_CI=1;DLNA.ORG_FLAGS=01500000000000000000000000000000;X_Y=1";

} // namespace

TEST(ProtocolInfo, HasFourFields) {
    const Info info("rtsp-rtp-udp:10.0.0.1:audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM");
    EXPECT_EQ(info.Text(), "rtsp-rtp-udp:10.0.0.1:audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM");
    EXPECT_EQ(info.Field(), "DLNA.ORG_PN=LPCM");
    EXPECT_EQ(info.Type(), "audio/L16;rate=44100;channels=2");
    EXPECT_EQ(info.Profile(), "LPCM");
}

TEST(ProtocolInfo, EveryFieldMayBeAny) {
    EXPECT_EQ(Written("*:*:*:*"), "*:*:*:*");
    EXPECT_EQ(Written("http-get:*:*:*"), "http-get:*:*:*");
    EXPECT_EQ(Written("http-get:*:*:DLNA.ORG_PN=MP3"), "http-get:*:*:DLNA.ORG_PN=MP3");
}

TEST(ProtocolInfo, NothingIsAnythingOverHTTP) {
    const Info info("");
    EXPECT_EQ(info.Text(), "http-get:*:*:*");
    EXPECT_EQ(info.Field(), "*");
    EXPECT_EQ(info.Profile(), "");
    EXPECT_EQ(info.Speeds(), "");
    ezDLNAProtocolInfo* ofNull = ezDLNAProtocolInfo_New(nullptr, 0, 0);
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(ofNull)), "http-get:*:*:*");
    ezDLNAProtocolInfo_Delete(ofNull);
    ezDLNAProtocolInfo* ofNullWithLength = ezDLNAProtocolInfo_New(nullptr, 10, 0);
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(ofNullWithLength)), "http-get:*:*:*");
    ezDLNAProtocolInfo_Delete(ofNullWithLength);
}

TEST(ProtocolInfo, PartsThatAreMissingAreAny) {
    EXPECT_EQ(Written("http-get"), "http-get:*:*:*");
    EXPECT_EQ(Written("http-get:*"), "http-get:*:*:*");
    EXPECT_EQ(Written("http-get:*:audio/mpeg"), "http-get:*:audio/mpeg:*");
    EXPECT_EQ(Written("http-get:*:audio/mpeg:"), "http-get:*:audio/mpeg:*");
    EXPECT_EQ(Written(":::"), "*:*:*:*");
    EXPECT_EQ(Written("::audio/mpeg:DLNA.ORG_PN=MP3"), "*:*:audio/mpeg:DLNA.ORG_PN=MP3");
}

TEST(ProtocolInfo, WhatFollowsTheThirdColonIsThe4thField) {
    EXPECT_EQ(Written("http-get:*:video/mpeg:X=a:b:c"), "http-get:*:video/mpeg:X=a:b:c");
}

TEST(ProtocolInfo, AColonInQuotesPartsNothing) {
    const Info info(R"(http-get:*:video/mp4;codecs="a:b;c\":d":DLNA.ORG_PN=P;Y=2)");
    EXPECT_EQ(info.Type(), R"(video/mp4;codecs="a:b;c\":d")");
    EXPECT_EQ(info.Field(), R"(DLNA.ORG_PN=P;Y=2)");
}

TEST(ProtocolInfo, AQuoteMeansNothingInThe4thField) {
    EXPECT_EQ(WrittenField(R"(X="1;DLNA.ORG_OP=11";Y="2")"), R"(X="1;Y="2")") << "OP=11\" is no OP";
    EXPECT_EQ(WrittenField(R"(X="1;DLNA.ORG_OP=11;Y=2")"), R"(DLNA.ORG_OP=11;X="1;Y=2")");
    EXPECT_EQ(WrittenField(R"(DLNA.ORG_OP=11;X="1;Y=2")"), R"(DLNA.ORG_OP=11;X="1;Y=2")");
}

TEST(ProtocolInfo, AQuoteThatIsNeverClosedIsACharacterLikeAnyOther) {
    const Info info(R"(http-get:*:video/mp4;x="a:DLNA.ORG_PN=P;DLNA.ORG_OP=01)");
    EXPECT_EQ(info.Type(), R"(video/mp4;x="a)");
    EXPECT_EQ(info.Field(), "DLNA.ORG_PN=P;DLNA.ORG_OP=01");
    EXPECT_EQ(WrittenField(R"(X="1;DLNA.ORG_PN=P)"), R"(DLNA.ORG_PN=P;X="1)");
    EXPECT_EQ(WrittenField(R"(X="1\";DLNA.ORG_PN=P)"), R"(DLNA.ORG_PN=P;X="1\")");
    EXPECT_EQ(WrittenField("\""), "*");
}

TEST(ProtocolInfo, ALengthTakesThatManyBytesAndReadsNoMore) {
    // No NUL after it: a byte more would be one too many.
    const std::vector<char> bytes = {'h', ':', 'n', ':', 'a', '/', 'b', ':', 'X', '=', '1'};
    ezDLNAProtocolInfo* info = ezDLNAProtocolInfo_New(bytes.data(), bytes.size(), 0);
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(info)), "h:n:a/b:X=1");
    ezDLNAProtocolInfo_Delete(info);
    info = ezDLNAProtocolInfo_New(bytes.data(), 7, 0);
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(info)), "h:n:a/b:*");
    ezDLNAProtocolInfo_Delete(info);
}

TEST(ProtocolInfo, ANULEndsTheText) {
    const std::string text("http-get:*:a/b\0c:X=1", 20);
    ezDLNAProtocolInfo* info = ezDLNAProtocolInfo_New(text.data(), text.size(), 0);
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(info)), "http-get:*:a/b:*");
    ezDLNAProtocolInfo_Delete(info);
    info = ezDLNAProtocolInfo_New("http-get", 1000, 0);
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetStr(info)), "http-get:*:*:*");
    ezDLNAProtocolInfo_Delete(info);
}

TEST(ProtocolInfo, WellFormedFieldsAreWrittenAsTheyWere) {
    for (const char* field :
         {"*", "DLNA.ORG_PN=MP3",
          "DLNA.ORG_PN=MPEG_PS_NTSC;DLNA.ORG_OP=11;DLNA.ORG_PS=-4,-2,-1,2,4;"
          "DLNA.ORG_FLAGS=01500000000000000000000000000000",
          "DLNA.ORG_PN=LPCM;DLNA.ORG_OP=10;DLNA.ORG_CI=1;DLNA.ORG_FLAGS=83100000000000000000000000000000;"
          "DLNA.ORG_MAXSP=5",
          "DLNA.ORG_OP=01;DLNA.ORG_CI=0", "DLNA.ORG_FLAGS=00000000000000000000000000000000", "DLNA.ORG_OP=00",
          "ARIB.OR.JP_PN=MPEG_TTS_CP"}) {
        EXPECT_EQ(WrittenField(field), field);
    }
}

TEST(ProtocolInfo, IsReadInAnyOrderAndWrittenInTheMandatoryOne) {
    EXPECT_EQ(WrittenField("DLNA.ORG_OP=01;DLNA.ORG_PN=MP3"), "DLNA.ORG_PN=MP3;DLNA.ORG_OP=01");
    EXPECT_EQ(WrittenField("DLNA.ORG_PN=AVC_TS_HD_50_AC3_T;VENDOR.COM_PN=AVC_TS_HD_50_AC3_T;"
                           "DLNA.ORG_FLAGS=8d700000000000000000000000000000"),
              "DLNA.ORG_PN=AVC_TS_HD_50_AC3_T;DLNA.ORG_FLAGS=8D700000000000000000000000000000;"
              "VENDOR.COM_PN=AVC_TS_HD_50_AC3_T");
    EXPECT_EQ(WrittenField("B=2;" + Flags("01500000") +
                           ";DLNA.ORG_CI=1;DLNA.ORG_PS=2;A=1;DLNA.ORG_OP=11;DLNA.ORG_PN=P"),
              "DLNA.ORG_PN=P;DLNA.ORG_OP=11;DLNA.ORG_PS=2;DLNA.ORG_CI=1;" + Flags("01500000") + ";B=2;A=1");
}

TEST(ProtocolInfo, UnknownParametersKeepTheirOrderAndTheirValues) {
    const char* field =
        "Z=1;MICROSOFT.COM_PN=a,b\\,c;DTV_MVP_PN= x ;DTCP.COM_FLAGS=c0000000;EMPTY=;A=\"q r\";E==";
    EXPECT_EQ(WrittenField(field), field);
    EXPECT_EQ(WrittenField("X=1;dlna.org_pn=P;DLNA.ORG_PNX=Q"), "X=1;dlna.org_pn=P;DLNA.ORG_PNX=Q")
        << "names are found to the letter";
}

TEST(ProtocolInfo, SemicolonsAtTheEndsAndBlanksAroundNamesAreTolerated) {
    EXPECT_EQ(WrittenField("DLNA.ORG_PN=MP3;"), "DLNA.ORG_PN=MP3");
    EXPECT_EQ(WrittenField(";;DLNA.ORG_PN=MP3;;DLNA.ORG_OP=01;;"), "DLNA.ORG_PN=MP3;DLNA.ORG_OP=01");
    EXPECT_EQ(WrittenField("DLNA.ORG_PN=MP3; DLNA.ORG_OP =01"), "DLNA.ORG_PN=MP3;DLNA.ORG_OP=01");
}

TEST(ProtocolInfo, WhatIsNoParameterIsDropped) {
    EXPECT_EQ(WrittenField("nonsense"), "*");
    EXPECT_EQ(WrittenField("=1;DLNA.ORG_PN=MP3;*"), "DLNA.ORG_PN=MP3");
    EXPECT_EQ(WrittenField("DLNA.ORG_PN"), "*");
    EXPECT_EQ(WrittenField("DLNA.ORG_PN="), "*");
}

TEST(ProtocolInfo, OfAParameterThatStandsTwiceTheFirstCounts) {
    EXPECT_EQ(WrittenField("DLNA.ORG_PN=A;DLNA.ORG_PN=B;X=1;X=2;DLNA.ORG_OP=01;DLNA.ORG_OP=10"),
              "DLNA.ORG_PN=A;DLNA.ORG_OP=01;X=1");
    EXPECT_EQ(WrittenField("DLNA.ORG_PS=2;DLNA.ORG_PS=4"), "DLNA.ORG_PS=2");
}

TEST(ProtocolInfo, TheCaseOfAProfileIsKept) {
    for (const char* profile : {"AMR_WBplus", "HEAACv2_L2", "LPCM_low"}) {
        const Info info(Of(std::string("DLNA.ORG_PN=") + profile));
        EXPECT_EQ(info.Profile(), profile);
        EXPECT_EQ(info.Field(), std::string("DLNA.ORG_PN=") + profile);
    }
}

TEST(ProtocolInfo, AMalformedOperationIsDropped) {
    for (const char* value : {"1", "012", "0x", "", "21", "-1", " 01", "01 ", "2", "0", "111"}) {
        EXPECT_EQ(WrittenField("DLNA.ORG_PN=MP3;DLNA.ORG_OP=" + std::string(value)), "DLNA.ORG_PN=MP3")
            << value;
    }
}

TEST(ProtocolInfo, OperationsAreTimeSeekThenByteSeek) {
    for (const char* value : {"00", "01", "10", "11"}) {
        const Info info(Of(std::string("DLNA.ORG_OP=") + value));
        EXPECT_EQ(ezDLNAProtocolInfo_GetTimeBasedSeek(info), value[0] == '1') << value;
        EXPECT_EQ(ezDLNAProtocolInfo_GetByteBasedSeek(info), value[1] == '1') << value;
    }
    const Info none(Of("*"));
    EXPECT_FALSE(ezDLNAProtocolInfo_GetTimeBasedSeek(none));
    EXPECT_FALSE(ezDLNAProtocolInfo_GetByteBasedSeek(none));
}

TEST(ProtocolInfo, AMalformedConversionIsDropped) {
    for (const char* value : {"", "2", "01", "x", "-", " 1"}) {
        EXPECT_EQ(WrittenField("DLNA.ORG_CI=" + std::string(value)), "*") << value;
    }
    EXPECT_EQ(WrittenField("DLNA.ORG_CI=0"), "DLNA.ORG_CI=0");
    EXPECT_EQ(WrittenField("DLNA.ORG_CI=1"), "DLNA.ORG_CI=1");
}

TEST(ProtocolInfo, FlagsAreEightUpperCaseDigitsAnd24Zeros) {
    for (const char* digits : {"01500000", "01700000", "00D00000", "00F00000", "83100000", "8D100000",
                               "ED100000", "01119000", "00000000", "FFFFFFFF"}) {
        EXPECT_EQ(WrittenField(Flags(digits)), Flags(digits));
    }
    const Info lower(Of(Flags("8d118abc")));
    EXPECT_EQ(lower.Flags(), 0x8D118ABCU);
    EXPECT_EQ(lower.Field(), Flags("8D118ABC"));
    EXPECT_EQ(WrittenField("DLNA.ORG_FLAGS=01500000"), Flags("01500000")) << "the bare eight are read too";
    EXPECT_EQ(WrittenField("DLNA.ORG_FLAGS=01500000F0000000000000000000000F"), Flags("01500000"));
}

TEST(ProtocolInfo, MalformedFlagsAreDropped) {
    for (const char* value : {"", "0", "0150000", "0x150000000000000000000000000000", "0150000g", "01500000 ",
                              "01500000000000000000000000000000z", "-1500000", " 1500000"}) {
        const Info info(Of("DLNA.ORG_PN=MP3;DLNA.ORG_FLAGS=" + std::string(value)));
        EXPECT_EQ(info.Field(), "DLNA.ORG_PN=MP3") << value;
        EXPECT_EQ(info.Flags(), 0U) << value;
    }
}

TEST(ProtocolInfo, FlagsHaveTheirBits) {
    EXPECT_EQ(kezDLNAFlag_HTTPStalling, std::uint32_t{1} << 21);
    EXPECT_EQ(kezDLNAFlag_DLNAVersion15, std::uint32_t{1} << 20);
    EXPECT_EQ(kezDLNAFlag_LinkProtected, std::uint32_t{1} << 16);
    EXPECT_EQ(Info(Of("*")).Flags(), 0U);
    EXPECT_TRUE(ezDLNAProtocolInfo_GetHTTPStalling(Info(Of(Flags("01700000")))));
    EXPECT_FALSE(ezDLNAProtocolInfo_GetHTTPStalling(Info(Of(Flags("FFDFFFFF")))));
    EXPECT_FALSE(ezDLNAProtocolInfo_GetHTTPStalling(Info(Of("*"))));
}

TEST(ProtocolInfo, TheVersionIsBit20AndNoOther) {
    const Info info("http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL");
    ezDLNAProtocolInfo_SetDLNAVersion(info, 1, 5, 0);
    EXPECT_EQ(
        info.Text(),
        "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_FLAGS=00100000000000000000000000000000");
    const Info set(Of(Flags("81000001")));
    ezDLNAProtocolInfo_SetDLNAVersion(set, 1, 5, 0);
    EXPECT_EQ(set.Flags(), 0x81100001U);
}

TEST(ProtocolInfo, VersionsBefore15HaveNoBitAndLaterOnesDo) {
    for (const auto& [major, minor] : std::vector<std::pair<int, int>>{{1, 4}, {1, 0}, {0, 9}, {0, 5}}) {
        const Info info(Of("*"));
        ezDLNAProtocolInfo_SetDLNAVersion(info, major, minor, 0);
        EXPECT_EQ(info.Field(), "*") << major << "." << minor;
    }
    for (const auto& [major, minor] : std::vector<std::pair<int, int>>{{1, 6}, {2, 0}, {4, 0}}) {
        const Info info(Of("*"));
        ezDLNAProtocolInfo_SetDLNAVersion(info, major, minor, 0);
        EXPECT_EQ(info.Field(), Flags("00100000")) << major << "." << minor;
    }
}

TEST(ProtocolInfo, SettingToFalseWhatIsNotStatedWritesNothing) {
    const Info info(Of("DLNA.ORG_PN=MP3"));
    ezDLNAProtocolInfo_SetHTTPStalling(info, false);
    ezDLNAProtocolInfo_SetByteBasedSeek(info, false);
    ezDLNAProtocolInfo_SetTimeBasedSeek(info, false);
    EXPECT_EQ(info.Field(), "DLNA.ORG_PN=MP3");
}

TEST(ProtocolInfo, SeeksAreSetOneByOne) {
    const Info info(Of("*"));
    ezDLNAProtocolInfo_SetByteBasedSeek(info, true);
    EXPECT_EQ(info.Field(), "DLNA.ORG_OP=01");
    ezDLNAProtocolInfo_SetTimeBasedSeek(info, true);
    EXPECT_EQ(info.Field(), "DLNA.ORG_OP=11");
    ezDLNAProtocolInfo_SetByteBasedSeek(info, false);
    EXPECT_EQ(info.Field(), "DLNA.ORG_OP=10");
    ezDLNAProtocolInfo_SetTimeBasedSeek(info, false);
    EXPECT_EQ(info.Field(), "DLNA.ORG_OP=00") << "what was stated stays stated";
    const Info timeFirst(Of("*"));
    ezDLNAProtocolInfo_SetTimeBasedSeek(timeFirst, true);
    EXPECT_EQ(timeFirst.Field(), "DLNA.ORG_OP=10");
}

TEST(ProtocolInfo, StallingIsSetAndClearedAloneAmongTheFlags) {
    const Info info(Of("*"));
    ezDLNAProtocolInfo_SetHTTPStalling(info, true);
    EXPECT_EQ(info.Field(), Flags("00200000"));
    ezDLNAProtocolInfo_SetHTTPStalling(info, false);
    EXPECT_EQ(info.Field(), Flags("00000000"));
    const Info set(Of(Flags("FFDFFFFF")));
    ezDLNAProtocolInfo_SetHTTPStalling(set, true);
    EXPECT_EQ(set.Flags(), 0xFFFFFFFFU);
    ezDLNAProtocolInfo_SetHTTPStalling(set, false);
    EXPECT_EQ(set.Flags(), 0xFFDFFFFFU);
}

TEST(ProtocolInfo, AProfileIsSetAndTakenAway) {
    const Info info(Of("DLNA.ORG_PN=A;DLNA.ORG_OP=01"));
    ezDLNAProtocolInfo_SetProfile(info, "B");
    EXPECT_EQ(info.Profile(), "B");
    EXPECT_EQ(info.Field(), "DLNA.ORG_PN=B;DLNA.ORG_OP=01");
    ezDLNAProtocolInfo_SetProfile(info, nullptr);
    EXPECT_EQ(info.Profile(), "");
    EXPECT_EQ(info.Field(), "DLNA.ORG_OP=01");
    ezDLNAProtocolInfo_SetProfile(info, "C");
    ezDLNAProtocolInfo_SetProfile(info, "");
    EXPECT_EQ(info.Field(), "DLNA.ORG_OP=01");
}

TEST(ProtocolInfo, AnyOtherParameterIsSetInPlaceAndRemovedByItsWholeName) {
    const Info info(Of("A=1;B=2;C=3"));
    ezDLNAProtocolInfo_Set4thFieldValue(info, "B", "x;y");
    ezDLNAProtocolInfo_Set4thFieldValue(info, "D", "4");
    EXPECT_EQ(info.Field(), "A=1;B=x;y;C=3;D=4");
    for (const char* absent : {"BB", "b", "", " A"}) {
        ezDLNAProtocolInfo_Remove4thFieldByName(info, absent);
    }
    EXPECT_EQ(info.Field(), "A=1;B=x;y;C=3;D=4");
    ezDLNAProtocolInfo_Remove4thFieldByName(info, "B");
    EXPECT_EQ(info.Field(), "A=1;C=3;D=4");
    ezDLNAProtocolInfo_Set4thFieldValue(info, "", "5");
    ezDLNAProtocolInfo_Set4thFieldValue(info, nullptr, "5");
    ezDLNAProtocolInfo_Remove4thFieldByName(info, nullptr);
    EXPECT_EQ(info.Field(), "A=1;C=3;D=4");
    ezDLNAProtocolInfo_Set4thFieldValue(info, "C", nullptr);
    EXPECT_EQ(info.Field(), "A=1;C=;D=4");
}

TEST(ProtocolInfo, TheFiveKnownNamesAreSetAndRemovedAsTheirOwnFunctionsDo) {
    const Info info(Of("*"));
    for (const auto& [name, value] : std::vector<std::pair<const char*, std::string>>{
             {"X_Y", "1"},
             {"DLNA.ORG_FLAGS", "015000000000000000000000000000ff"},
             {"DLNA.ORG_CI", "1"},
             {"DLNA.ORG_PS", "-4,-2,1,0,-1,2,4"},
             {"DLNA.ORG_OP", "11"},
             {"DLNA.ORG_PN", "MPEG_PS_NTSC"}}) {
        ezDLNAProtocolInfo_Set4thFieldValue(info, name, value.c_str());
    }
    EXPECT_EQ(info.Text(), kFull);
    EXPECT_EQ(info.Speeds(), "-4,-2,-1,2,4");
    EXPECT_EQ(info.Flags(), 0x01500000U);
    ezDLNAProtocolInfo_Remove4thFieldByName(info, "DLNA.ORG_PN");
    EXPECT_EQ(info.Field(), std::string(kFull).substr(std::string(kFull).find("DLNA.ORG_OP")));
    ezDLNAProtocolInfo_Remove4thFieldByName(info, "DLNA.ORG_PS");
    EXPECT_EQ(info.Field(), "DLNA.ORG_OP=11;DLNA.ORG_CI=1;" + Flags("01500000") + ";X_Y=1");
    ezDLNAProtocolInfo_Remove4thFieldByName(info, "DLNA.ORG_FLAGS");
    ezDLNAProtocolInfo_Remove4thFieldByName(info, "DLNA.ORG_CI");
    EXPECT_EQ(info.Field(), "DLNA.ORG_OP=11;X_Y=1");
    ezDLNAProtocolInfo_Remove4thFieldByName(info, "DLNA.ORG_OP");
    EXPECT_EQ(info.Field(), "X_Y=1");
}

TEST(ProtocolInfo, AParameterOfATextIsFoundByItsWholeName) {
    const char* field =
        "XDLNA.ORG_PN=no;DLNA.ORG_PNX=no; DLNA.ORG_PN =MP3;DLNA.ORG_PN=second;E=;Q=\"a;F=1\";V= v ;G==";
    EXPECT_EQ(ValueOf(field, "DLNA.ORG_PN"), "MP3");
    EXPECT_EQ(ValueOf(field, "dlna.org_pn"), "<null>");
    EXPECT_EQ(ValueOf(field, "ORG_PN"), "<null>");
    EXPECT_EQ(ValueOf(field, "E"), "");
    EXPECT_EQ(ValueOf(field, "Q"), "\"a");
    EXPECT_EQ(ValueOf(field, "F"), "1\"") << "a quote means nothing there";
    EXPECT_EQ(ValueOf(field, "V"), " v ") << "a value is unchanged";
    EXPECT_EQ(ValueOf(field, "G"), "=");
    EXPECT_EQ(ValueOf(";;A=1;", "A"), "1");
    EXPECT_EQ(ValueOf("A", "A"), "<null>");
    EXPECT_EQ(ValueOf("*", "*"), "<null>");
    EXPECT_EQ(ValueOf("X=\"1;A=2", "A"), "2") << "a quote that is never closed hides nothing";
    EXPECT_EQ(ValueOf("=1", ""), "<null>");
    EXPECT_EQ(ValueOf("=1", nullptr), "<null>");
    EXPECT_EQ(ValueOf("", "A"), "<null>");
    EXPECT_EQ(ValueOf(nullptr, "A"), "<null>");
}

TEST(ProtocolInfo, PlaySpeedsAreNonZeroIntegersAndFractionsKeptAsWritten) {
    EXPECT_EQ(Accepted("-4,-2,-1,2,4"), "-4,-2,-1,2,4");
    EXPECT_EQ(Accepted("1/2,-1/4,1/10,3/2,-1/1"), "1/2,-1/4,1/10,3/2,-1/1");
    EXPECT_EQ(Accepted("02,4/2x"), "02");
    EXPECT_EQ(Accepted("2/4"), "2/4") << "not reduced";
    EXPECT_EQ(Accepted("4,2,-8"), "4,2,-8") << "in the order given";
    EXPECT_EQ(Accepted(" 2 , 4"), "2,4");
}

TEST(ProtocolInfo, APlaySpeedEqualTo1IsDropped) {
    EXPECT_EQ(Accepted("1"), "");
    EXPECT_EQ(Accepted("-2,1,2"), "-2,2");
    EXPECT_EQ(Accepted("2/2,01,1/1,7/7,0001/1"), "");
    EXPECT_EQ(Accepted("-1,-2/2"), "-1") << "backwards is not normal speed";
}

TEST(ProtocolInfo, OfPlaySpeedsThatAreTheSameNumberTheFirstStays) {
    EXPECT_EQ(Accepted("1/2,2/4,2,4/2,02,-1/2,-2/4"), "1/2,2,-1/2");
    EXPECT_EQ(Accepted("2/4,1/2"), "2/4");
}

TEST(ProtocolInfo, WhatIsNoPlaySpeedIsDropped) {
    for (const char* text : {"0",
                             "-0",
                             "0/1",
                             "1/0",
                             "0/0",
                             "2.0",
                             "-64.0",
                             "+2",
                             "--2",
                             "1/-2",
                             "-1/-2",
                             "1/",
                             "/2",
                             "/",
                             "-",
                             "",
                             "2/3/4",
                             "2x",
                             "x",
                             "1 /2",
                             "- 2",
                             "0x2",
                             "99999999999999999999999",
                             "1/99999999999999999999999"}) {
        EXPECT_EQ(Accepted(text), "") << text;
        EXPECT_EQ(WrittenField("DLNA.ORG_PN=MP3;DLNA.ORG_PS=" + std::string(text)), "DLNA.ORG_PN=MP3")
            << text;
    }
    EXPECT_EQ(Accepted("2,,x,4,"), "2,4");
    EXPECT_EQ(Accepted("18446744073709551615"), "18446744073709551615");
}

TEST(ProtocolInfo, PlaySpeedsAreReadWithEscapedAndWithPlainCommas) {
    EXPECT_EQ(Accepted(R"(-4\,-2\,2)"), "-4,-2,2");
    EXPECT_EQ(WrittenField(R"(DLNA.ORG_PS=-4\,-2,2)"), "DLNA.ORG_PS=-4,-2,2");
}

TEST(ProtocolInfo, PlaySpeedsAreWrittenWithPlainOrEscapedCommas) {
    const Info info(Of("DLNA.ORG_PS=-2,1/2,4"));
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(info, 0)), "-2,1/2,4");
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(info, 1)), R"(-2\,1/2\,4)");
    const Info none(Of("*"));
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(none, 0)), "");
    EXPECT_EQ(Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(none, 1)), "");
}

TEST(ProtocolInfo, SettingPlaySpeedsReplacesThemAndRemovingTakesThemAway) {
    const Info info(Of("DLNA.ORG_PN=P;DLNA.ORG_PS=2,4"));
    ezDLNAProtocolInfo_SetPlaySpeeds(info, "8,2", 0);
    EXPECT_EQ(info.Speeds(), "8,2");
    ezDLNAProtocolInfo_RemovePlaySpeedSupport(info);
    EXPECT_EQ(info.Speeds(), "");
    EXPECT_EQ(info.Field(), "DLNA.ORG_PN=P");
    ezDLNAProtocolInfo_SetPlaySpeeds(info, "2", 0);
    ezDLNAProtocolInfo_SetPlaySpeeds(info, nullptr, 0);
    EXPECT_EQ(info.Field(), "DLNA.ORG_PN=P");
}

TEST(ProtocolInfo, MergePlaySpeedsAddsTheNewOnesAfter) {
    const Info info(Of("DLNA.ORG_PS=2,1/2"));
    ezDLNAProtocolInfo_MergePlaySpeeds(info, "-2,4/2,1,x,2/4,-2,8");
    EXPECT_EQ(info.Speeds(), "2,1/2,-2,8");
    ezDLNAProtocolInfo_MergePlaySpeeds(info, "-2,8");
    EXPECT_EQ(info.Speeds(), "2,1/2,-2,8") << "once more changes nothing";
    ezDLNAProtocolInfo_MergePlaySpeeds(info, nullptr);
    ezDLNAProtocolInfo_MergePlaySpeeds(info, "");
    EXPECT_EQ(info.Speeds(), "2,1/2,-2,8");
}

TEST(ProtocolInfo, MergeUnites) {
    const Info info("http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_OP=01;DLNA.ORG_PS=2,4;DLNA.ORG_CI=0;" +
                    Flags("01100000") + ";A=1;B=2");
    const Info other("http-get:*:video/mp4:DLNA.ORG_PN=Q;DLNA.ORG_OP=10;DLNA.ORG_PS=-2,4;DLNA.ORG_CI=1;" +
                     Flags("00210000") + ";B=3;C=4");
    const std::string otherBefore = other.Text();
    ezDLNAProtocolInfo_Merge(info, other);
    EXPECT_EQ(info.Text(),
              "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_OP=11;DLNA.ORG_PS=2,4,-2;DLNA.ORG_CI=1;" +
                  Flags("01310000") + ";A=1;B=2;C=4");
    EXPECT_EQ(other.Text(), otherBefore);
}

TEST(ProtocolInfo, MergeTakesWhatIsLacking) {
    const Info info("");
    ezDLNAProtocolInfo_Merge(info, Info(kFull));
    EXPECT_EQ(info.Text(), kFull);
}

TEST(ProtocolInfo, MergeOfWhatStatesNothingChangesNothing) {
    const Info info(kFull);
    ezDLNAProtocolInfo_Merge(info, Info(""));
    EXPECT_EQ(info.Text(), kFull);
    ezDLNAProtocolInfo_Merge(info, info);
    EXPECT_EQ(info.Text(), kFull);
    const Info bare(Of("*"));
    ezDLNAProtocolInfo_Merge(bare, Info(Of("*")));
    EXPECT_EQ(bare.Field(), "*");
}

TEST(ProtocolInfo, MergeKeepsWhatIsStatedAsZero) {
    const Info info(Of("*"));
    ezDLNAProtocolInfo_Merge(info, Info(Of("DLNA.ORG_OP=00;DLNA.ORG_CI=0;" + Flags("00000000"))));
    EXPECT_EQ(info.Field(), "DLNA.ORG_OP=00;DLNA.ORG_CI=0;" + Flags("00000000"));
    const Info one(Of("DLNA.ORG_OP=11;DLNA.ORG_CI=1"));
    ezDLNAProtocolInfo_Merge(one, Info(Of("DLNA.ORG_OP=00;DLNA.ORG_CI=0")));
    EXPECT_EQ(one.Field(), "DLNA.ORG_OP=11;DLNA.ORG_CI=1");
}

TEST(ProtocolInfo, TheTableSettlesPlaySpeedsAndSeeksWhereItStatesThem) {
    const Info info(
        Of("DLNA.ORG_PN=P;DLNA.ORG_OP=01;DLNA.ORG_PS=2,4;DLNA.ORG_CI=1;" + Flags("01500000") + ";A=1"));
    ezDLNAProtocolInfo_MergeWithMediaMapper(
        info, Info("http-get:*:x/y:DLNA.ORG_PN=Q;DLNA.ORG_OP=10;DLNA.ORG_PS=-2;DLNA.ORG_CI=0;B=2"));
    EXPECT_EQ(info.Text(),
              Of("DLNA.ORG_PN=P;DLNA.ORG_OP=10;DLNA.ORG_PS=-2;DLNA.ORG_CI=1;" + Flags("01500000") + ";A=1"))
        << "and nothing else";
}

TEST(ProtocolInfo, WhatTheTableDoesNotStateStays) {
    const Info info(kFull);
    ezDLNAProtocolInfo_MergeWithMediaMapper(info, Info(Of("DLNA.ORG_PN=Q")));
    EXPECT_EQ(info.Text(), kFull);
    ezDLNAProtocolInfo_MergeWithMediaMapper(info, Info(Of("DLNA.ORG_OP=00")));
    EXPECT_FALSE(ezDLNAProtocolInfo_GetByteBasedSeek(info)) << "stated as zero is stated";
    EXPECT_EQ(info.Speeds(), "-4,-2,-1,2,4");
}

TEST(ProtocolInfo, TheTableSettlesStallingOnlyWhenItsFlagsStateMoreThanTheVersion) {
    const auto merged = [](const std::string& anInfoField, const std::string& aTableField) {
        const Info info(Of(anInfoField));
        ezDLNAProtocolInfo_MergeWithMediaMapper(info, Info(Of(aTableField)));
        return info.Field();
    };
    const std::string stalling = Flags("01700000");
    EXPECT_EQ(merged(stalling, Flags("00100000")), stalling) << "every line of a table states the version";
    EXPECT_EQ(merged(stalling, Flags("00000000")), stalling);
    EXPECT_EQ(merged(stalling, "*"), stalling);
    EXPECT_EQ(merged(stalling, Flags("01100000")), Flags("01500000"));
    EXPECT_EQ(merged(stalling, Flags("00000001")), Flags("01500000"));
    EXPECT_EQ(merged(Flags("01500000"), Flags("00300000")), stalling);
    EXPECT_EQ(merged(Flags("01500000"), Flags("00200000")), stalling);
    EXPECT_EQ(merged("*", Flags("01100000")), "*") << "false on what is absent writes nothing";
    EXPECT_EQ(merged("*", Flags("00300000")), Flags("00200000"));
}

TEST(ProtocolInfo, EveryOtherFlagStaysWhateverTheTableSays) {
    for (const char* table : {"FFFFFFFF", "01300000"}) {
        const Info info(Of(Flags("81000ABC")));
        ezDLNAProtocolInfo_MergeWithMediaMapper(info, Info(Of(Flags(table))));
        EXPECT_EQ(info.Flags(), 0x81200ABCU);
    }
    const Info all(Of(Flags("FFFFFFFF")));
    ezDLNAProtocolInfo_MergeWithMediaMapper(all, Info(Of(Flags("80000000"))));
    EXPECT_EQ(all.Flags(), 0xFFDFFFFFU);
}

TEST(ProtocolInfo, TheLinkProtectedFormQuotesTheTypeAndPrefixesTheProfile) {
    const Info info(Of("DLNA.ORG_PN=MPEG_TS_HD_NA;DLNA.ORG_OP=01;" + Flags("01500000")));
    ezDLNAProtocolInfo_SetDTCPIP(info, nullptr, 0, 1);
    EXPECT_EQ(info.Text(),
              R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="video/mpeg":DLNA.ORG_PN=DTCP_MPEG_TS_HD_NA;)"
              "DLNA.ORG_OP=01;" +
                  Flags("01510000"));
    EXPECT_EQ(info.Profile(), "DTCP_MPEG_TS_HD_NA");
    EXPECT_EQ(info.Type(), R"(application/x-dtcp1;CONTENTFORMAT="video/mpeg")");
}

TEST(ProtocolInfo, TheLinkProtectedFormNamesItsHostBeforeTheType) {
    const Info info(Of("DLNA.ORG_PN=MPEG_TS_SD_NA_ISO;DLNA.ORG_OP=10;" + Flags("01108000")));
    ezDLNAProtocolInfo_SetDTCPIP(info, "192.168.0.111", 8999, 1);
    EXPECT_EQ(info.Text(),
              R"(http-get:*:application/x-dtcp1;DTCP1HOST=192.168.0.111;DTCP1PORT=8999;)"
              R"(CONTENTFORMAT="video/mpeg":DLNA.ORG_PN=DTCP_MPEG_TS_SD_NA_ISO;DLNA.ORG_OP=10;)" +
                  Flags("01118000"));
    const Info emptyHost(Of("*"));
    ezDLNAProtocolInfo_SetDTCPIP(emptyHost, "", 8999, 1);
    EXPECT_EQ(emptyHost.Text(), R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="video/mpeg":*)");
}

TEST(ProtocolInfo, TheLinkProtectedFormStatesNoFlagsOrProfileThatWereNotStated) {
    const Info info(Of("ARIB.OR.JP_PN=MPEG_TTS_CP"));
    ezDLNAProtocolInfo_SetDTCPIP(info, nullptr, 0, 1);
    EXPECT_EQ(info.Text(),
              R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="video/mpeg":ARIB.OR.JP_PN=MPEG_TTS_CP)");
}

TEST(ProtocolInfo, TheLinkProtectedFormHoldsTheParametersOfTheType) {
    const Info sound("http-get:*:audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM");
    ezDLNAProtocolInfo_SetDTCPIP(sound, nullptr, 0, 1);
    EXPECT_EQ(sound.Text(),
              R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="audio/L16;rate=44100;channels=2":)"
              "DLNA.ORG_PN=DTCP_LPCM");
    const Info quoted(R"(http-get:*:video/mp4;codecs="a\"b:c":*)");
    ezDLNAProtocolInfo_SetDTCPIP(quoted, nullptr, 0, 1);
    EXPECT_EQ(quoted.Text(),
              R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="video/mp4;codecs=\"a\\\"b:c\"":*)");
    EXPECT_EQ(Written(quoted.Text()), quoted.Text()) << "and it is read back";
}

TEST(ProtocolInfo, TheLinkProtectedFormIsMadeOnce) {
    for (const char* text : {"http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_FLAGS=01500000",
                             "http-get:*:audio/L16;rate=44100:DLNA.ORG_PN=LPCM", "http-get:*:video/mpeg:*"}) {
        for (const char* host : {static_cast<const char*>(nullptr), "10.0.0.1"}) {
            const Info info(text);
            ezDLNAProtocolInfo_SetDTCPIP(info, host, 1, 1);
            const std::string once = info.Text();
            EXPECT_NE(once, text);
            ezDLNAProtocolInfo_SetDTCPIP(info, host, 1, 1);
            EXPECT_EQ(info.Text(), once);
            ezDLNAProtocolInfo_SetDTCPIP(info, "10.9.9.9", 2, 1);
            EXPECT_EQ(info.Text(), once);
            const Info readBack(once);
            ezDLNAProtocolInfo_SetDTCPIP(readBack, host, 1, 1);
            EXPECT_EQ(readBack.Text(), once);
        }
    }
}

TEST(ProtocolInfo, WhatIsLinkProtectedAlreadyStaysAsItIs) {
    for (
        const char* text :
        {R"(http-get:*:application/x-dtcp1;DTCP1HOST=192.168.0.111;DTCP1PORT=8999;CONTENTFORMAT="video/mpeg":)"
         "DLNA.ORG_PN=DTCP_MPEG_TS_SD_NA_ISO;DLNA.ORG_OP=10;DLNA.ORG_FLAGS=01118000000000000000000000000000",
         R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="video/mpeg":DLNA.ORG_PN=DTCP_MPEG_PS_PAL;)"
         "DLNA.ORG_FLAGS=8D118000000000000000000000000000",
         R"(http-get:*:application/x-dtcp1;CONTENTFORMAT=video/MP2T:*)",
         R"(http-get:*:Application/X-DTCP1;contentformat="a/b":*)",
         R"(http-get:*:application/x-dtcp1:DLNA.ORG_PN=DTCP_P)",
         R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="video/vnd.dlna.mpeg-tts":ARIB.OR.JP_PN=MPEG_TTS_CP)"}) {
        const Info info(text);
        EXPECT_EQ(info.Text(), text);
        ezDLNAProtocolInfo_SetDTCPIP(info, "10.0.0.1", 1, 1);
        EXPECT_EQ(info.Text(), text);
    }
}

TEST(ProtocolInfo, AnotherTypeThatBeginsAlikeIsNotLinkProtected) {
    const Info info("http-get:*:application/x-dtcp12;a=b:*");
    ezDLNAProtocolInfo_SetDTCPIP(info, nullptr, 0, 1);
    EXPECT_EQ(info.Type(), R"(application/x-dtcp1;CONTENTFORMAT="application/x-dtcp12;a=b")");
}

TEST(ProtocolInfo, WhatALinkProtectedTypeLacksIsAdded) {
    const Info info(R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="a/b":DLNA.ORG_PN=P;)" +
                    Flags("01100000"));
    ezDLNAProtocolInfo_SetDTCPIP(info, nullptr, 0, 1);
    EXPECT_EQ(info.Text(), R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="a/b":DLNA.ORG_PN=DTCP_P;)" +
                               Flags("01110000"));
}

TEST(ProtocolInfo, NullObjectsGiveNothingAndTakeNothing) {
    ezDLNAProtocolInfo_Delete(nullptr);
    EXPECT_EQ(ezDLNAProtocolInfo_GetStr(nullptr), nullptr);
    EXPECT_EQ(ezDLNAProtocolInfo_Get4thFieldStr(nullptr), nullptr);
    EXPECT_EQ(ezDLNAProtocolInfo_GetPlaySpeedStr(nullptr, 0), nullptr);
    EXPECT_STREQ(ezDLNAProtocolInfo_GetMimeType(nullptr), "");
    EXPECT_STREQ(ezDLNAProtocolInfo_GetProfile(nullptr), "");
    EXPECT_EQ(ezDLNAProtocolInfo_GetFlags(nullptr), 0U);
    EXPECT_FALSE(ezDLNAProtocolInfo_GetHTTPStalling(nullptr));
    EXPECT_FALSE(ezDLNAProtocolInfo_GetByteBasedSeek(nullptr));
    EXPECT_FALSE(ezDLNAProtocolInfo_GetTimeBasedSeek(nullptr));
    ezDLNAProtocolInfo_SetProfile(nullptr, "P");
    ezDLNAProtocolInfo_SetPlaySpeeds(nullptr, "2", 0);
    ezDLNAProtocolInfo_RemovePlaySpeedSupport(nullptr);
    ezDLNAProtocolInfo_Set4thFieldValue(nullptr, "A", "1");
    ezDLNAProtocolInfo_Remove4thFieldByName(nullptr, "A");
    ezDLNAProtocolInfo_SetDLNAVersion(nullptr, 1, 5, 0);
    ezDLNAProtocolInfo_SetHTTPStalling(nullptr, true);
    ezDLNAProtocolInfo_SetByteBasedSeek(nullptr, true);
    ezDLNAProtocolInfo_SetTimeBasedSeek(nullptr, true);
    ezDLNAProtocolInfo_MergePlaySpeeds(nullptr, "2");
    ezDLNAProtocolInfo_SetDTCPIP(nullptr, "h", 1, 1);
    const Info info(kFull);
    for (const auto& [left, right] : std::vector<std::pair<ezDLNAProtocolInfo*, ezDLNAProtocolInfo*>>{
             {nullptr, info}, {info, nullptr}, {nullptr, nullptr}}) {
        ezDLNAProtocolInfo_Merge(left, right);
        ezDLNAProtocolInfo_MergeWithMediaMapper(left, right);
    }
    EXPECT_EQ(info.Text(), kFull);
}

TEST(ProtocolInfo, MegabytesOfAFieldCostOnePass) {
    std::string distinct;
    for (int i = 0; distinct.size() < 1500000; ++i) {
        distinct += ";P" + std::to_string(i) + "=v";
    }
    for (const std::string& field :
         {Repeated(";", 1500000), Repeated("=", 1500000), Repeated("X=1;", 1500000), distinct,
          Repeated("\"", 1500001), Repeated("\\\";", 1500000), "a\"" + Repeated(";\\\"", 1500000),
          Repeated("\";", 1500001), Repeated("x=\\\"\\", 1500000)}) {
        const std::clock_t start = std::clock();
        const Info info(Of(field));
        EXPECT_EQ(Written(info.Text()), info.Text());
        EXPECT_EQ(ValueOf(field.c_str(), "absent"), "<null>");
        EXPECT_LT(SecondsSince(start), kSecondsForMegabytes) << field.substr(0, 20);
    }
}

TEST(ProtocolInfo, MegabytesOfColonsAndQuotesCostOnePass) {
    for (const std::string& piece : {std::string(":"), std::string("\":"), std::string("\\\":")}) {
        const std::string text = Repeated(piece, 1500001);
        const std::clock_t start = std::clock();
        Written(text);
        EXPECT_LT(SecondsSince(start), kSecondsForMegabytes) << piece;
    }
}

TEST(ProtocolInfo, MegabytesOfPlaySpeedsCostLittleMoreThanOnePass) {
    std::string speeds = "-1";
    std::size_t count = 1;
    for (; speeds.size() < 1000000; ++count) {
        speeds += "," + std::to_string(count + 1);
    }
    const std::clock_t start = std::clock();
    const Info info(Of("DLNA.ORG_PS=" + speeds));
    EXPECT_EQ(info.Speeds(), speeds);
    ezDLNAProtocolInfo_MergePlaySpeeds(info, speeds.c_str());
    ezDLNAProtocolInfo_Merge(info, info);
    EXPECT_EQ(info.Speeds(), speeds);
    EXPECT_EQ(Accepted(Repeated("2,", 1000000)), "2");
    EXPECT_LT(SecondsSince(start), kSecondsForMegabytes);
}

TEST(ProtocolInfo, MergingMegabytesOfParametersCostsOnePass) {
    std::string left = "A=1";
    std::string right = "A=1";
    for (int i = 0; left.size() < 700000; ++i) {
        left += ";L" + std::to_string(i) + "=v";
        right += ";R" + std::to_string(i) + "=v";
    }
    const std::clock_t start = std::clock();
    const Info info(Of(left));
    ezDLNAProtocolInfo_Merge(info, Info(Of(right)));
    EXPECT_EQ(info.Field(), left + right.substr(3));
    EXPECT_LT(SecondsSince(start), kSecondsForMegabytes);
}

namespace {

/// A text of the pieces that protocolInfos are made of, put together without sense.
rc::Gen<std::string> genHostileText() {
    const auto pieces = rc::gen::container<std::vector<std::string>>(rc::gen::weightedOneOf<std::string>(
        {{6,
          rc::gen::element<std::string>(":", ";", "=", "\"", "\\", ",", "\\,", " ", "*", "http-get:*:a/b:")},
         {4, rc::gen::element<std::string>("DLNA.ORG_PN=", "DLNA.ORG_OP=", "DLNA.ORG_PS=", "DLNA.ORG_CI=",
                                           "DLNA.ORG_FLAGS=", "X=", "Y_Z=", "DLNA.ORG_PN", "dlna.org_pn=")},
         {3, rc::gen::element<std::string>("MP3", "01", "1", "0", "-1/2", "2/4", "4,8", "2", "0150000f",
                                           "video/mpeg", "000000000000000000000000", "\xC3\xA9", "\xFF",
                                           "\r\n")}}));
    return rc::gen::map(pieces, [](const std::vector<std::string>& aPieces) {
        std::string text;
        for (const std::string& piece : aPieces) {
            text += piece;
        }
        return text;
    });
}

} // namespace

RC_GTEST_PROP(ProtocolInfoModel, WhatWasWrittenIsReadAndWrittenTheSame, ()) {
    const std::string text = *rc::gen::oneOf(genHostileText(), rc::gen::map(genHostileText(), Of));
    const std::string once = Written(text);
    RC_ASSERT(Written(once) == once);
}

RC_GTEST_PROP(ProtocolInfoModel, TheLinkProtectedFormOfAnythingIsMadeOnceAndReadBack, ()) {
    const Info info("http-get:*:" + *genHostileText() + ":" + *genHostileText());
    ezDLNAProtocolInfo_SetDTCPIP(info, nullptr, 0, 1);
    const std::string once = info.Text();
    ezDLNAProtocolInfo_SetDTCPIP(info, "10.0.0.1", 5, 1);
    RC_ASSERT(info.Text() == once);
}

RC_GTEST_PROP(ProtocolInfoModel, MergingTwiceIsMergingOnce, ()) {
    const Info info(Of(*genHostileText()));
    const Info other(Of(*genHostileText()));
    ezDLNAProtocolInfo_Merge(info, other);
    const std::string once = info.Text();
    ezDLNAProtocolInfo_Merge(info, other);
    RC_ASSERT(info.Text() == once);
    const Info table(Of(*genHostileText()));
    ezDLNAProtocolInfo_MergeWithMediaMapper(info, table);
    const std::string mapped = info.Text();
    ezDLNAProtocolInfo_MergeWithMediaMapper(info, table);
    RC_ASSERT(info.Text() == mapped);
}

RC_GTEST_PROP(ProtocolInfoModel, PlaySpeedsAreTheDistinctFractionsOtherThan1, ()) {
    const auto parts = *rc::gen::container<std::vector<std::pair<int, int>>>(
        rc::gen::pair(rc::gen::inRange(-6, 7), rc::gen::inRange(0, 7)));
    std::string list;
    std::string expected;
    std::vector<std::pair<int, int>> kept;
    for (const auto& [numerator, denominator] : parts) {
        const std::string text = std::to_string(numerator) + "/" + std::to_string(denominator);
        list += (list.empty() ? "" : ",") + text;
        bool fKept = numerator != 0 && denominator != 0 && numerator != denominator;
        for (const auto& [otherNumerator, otherDenominator] : kept) {
            fKept = fKept && numerator * otherDenominator != otherNumerator * denominator;
        }
        if (fKept) {
            kept.emplace_back(numerator, denominator);
            expected += (expected.empty() ? "" : ",") + text;
        }
    }
    RC_ASSERT(Accepted(list) == expected);
    const Info info("");
    ezDLNAProtocolInfo_MergePlaySpeeds(info, list.c_str());
    RC_ASSERT(info.Speeds() == expected);
}

TEST(ProtocolInfo, AMimeTypeIsReplacedAndNoneStandsForAny) {
    const Info info("http-get:*:video/mpeg:DLNA.ORG_PN=P");
    ezDLNAProtocolInfo_SetMimeType(info, "audio/mpeg");
    EXPECT_EQ(info.Text(), "http-get:*:audio/mpeg:DLNA.ORG_PN=P");
    ezDLNAProtocolInfo_SetMimeType(info, "");
    EXPECT_EQ(info.Type(), "*");
    ezDLNAProtocolInfo_SetMimeType(info, "audio/mpeg");
    ezDLNAProtocolInfo_SetMimeType(info, nullptr);
    EXPECT_EQ(info.Text(), "http-get:*:*:DLNA.ORG_PN=P");
    ezDLNAProtocolInfo_SetMimeType(nullptr, "audio/mpeg");
    EXPECT_STREQ(ezDLNAProtocolInfo_GetMimeType(nullptr), "");
}
