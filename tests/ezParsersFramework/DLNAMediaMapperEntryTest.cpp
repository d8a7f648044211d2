#include "ez/DLNAMediaMapper.h"

#include "ezPlatform/dlna/ProtocolInfo.h"

#include "support/MapperFolder.h"
#include "support/Str.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

using Entry = DLNAMediaMapperEntry;

namespace {

const std::string kFlags = kVersionFlags;

/// A line that has every field.
constexpr const char* kWholeLine =
    "clip.mpg,video/mpeg,MPEG_PS_PAL,0:01:02,-2\\,1\\,2,00000101,9800000,VTS_01_0.IFO,largest,720,576,lp,"
    "X_Y=7;DLNA.ORG_OP=01;BRELVO.COM_GOLDENDMS=60000000";
/// Every member of kWholeLine, as Members writes it.
constexpr const char* kWholeMembers =
    "clip.mpg|video/mpeg|MPEG_PS_PAL|0:01:02|-2,2|00000101|9800000|VTS_01_0.IFO|largest|720|576|lp|"
    "X_Y=7;DLNA.ORG_OP=01;BRELVO.COM_GOLDENDMS=60000000|"
    "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_OP=01;DLNA.ORG_PS=-2,2;"
    "DLNA.ORG_FLAGS=00100000000000000000000000000000;X_Y=7|60000000|101";

/// The members of an entry but its protocolInfo object, in order; without the further 4th-field parameters
/// where those do not count.
std::string Members(const Entry& anEntry, bool afWith4thFieldPart = true) {
    std::string text = Str(anEntry.mFileName);
    const auto append = [&](const std::string& aText) { text += "|" + aText; };
    append(Str(anEntry.mMimeType));
    append(Str(anEntry.mProfile));
    append(Str(anEntry.mDuration));
    append(Str(anEntry.mSupportedPlaySpeeds.Join()));
    append(Str(anEntry.mMandatoryBits));
    append(std::to_string(anEntry.mBitRate));
    append(Str(anEntry.mIFOFileName));
    append(Str(anEntry.mLargest));
    append(Str(anEntry.mWidth));
    append(Str(anEntry.mHeight));
    append(Str(anEntry.mLPOptions));
    if (afWith4thFieldPart) {
        append(Str(anEntry.m4thFieldPart));
    }
    append(Str(anEntry.mFullProfile));
    append(Str(ezCString::Format("%lX", static_cast<unsigned long>(anEntry.mGoldenDMSFlags))));
    append(std::string(anEntry.mfMandatory ? "1" : "0") + (anEntry.mfCVPNA1Mandatory ? "1" : "0") +
           (anEntry.mfCVPEUMandatory ? "1" : "0"));
    return text;
}

/// A line of these fields, and how often each is there.
std::string Line(const std::vector<std::string>& aFields) {
    std::string line;
    for (std::size_t i = 0; i < aFields.size(); ++i) {
        line += (i == 0 ? "" : ",") + aFields[i];
    }
    return line;
}

/// A line of a video with one further field.
std::string LineWith(std::size_t aField, const std::string& aText) {
    std::vector<std::string> fields(13);
    fields[0] = "clip.mpg";
    fields[1] = "video/mpeg";
    fields[2] = "MPEG_PS_PAL";
    fields[aField] = aText;
    return Line(fields);
}

/// An entry of such a line.
struct EntryWith : Entry {
    EntryWith(std::size_t aField, const std::string& aText) {
        EXPECT_TRUE(Set(Bytes(LineWith(aField, aText))));
    }
};

std::string SpeedsOf(const std::string& aField) {
    return Str(EntryWith(4, aField).mSupportedPlaySpeeds.Join());
}

uint32 FlagsOf(const std::string& a4thFieldPart) {
    return EntryWith(12, a4thFieldPart).mGoldenDMSFlags;
}

std::string ObjectOf(const Entry& anEntry) {
    return Taken(ezDLNAProtocolInfo_GetStr(anEntry.mDLNAProtocolInfo));
}

} // namespace

static_assert(!std::is_polymorphic<Entry>::value, "no virtual operations");
static_assert(kDLNAMediaMapperByteSeek_MediaNotSupported == 0x01000000U, "stored in files");
static_assert(kDLNAMediaMapperProfile_Disabled == 0x10000000U, "stored in files");
static_assert(kDLNAMediaMapperPlaySpeed_ProfileEnabled == 0x20000000U, "stored in files");
static_assert(kDLNAMediaMapperPlaySpeed_MediaEnabled == 0x40000000U, "stored in files");
static_assert(kDLNAMediaMapperPlaySpeed_MediaNotSupported == 0x80000000U, "stored in files");

TEST(DLNAMediaMapperEntry, FieldsStandInOrder) {
    const Entry entry;
    const std::array<const void*, 19> members = {&entry.mFileName,
                                                 &entry.mMimeType,
                                                 &entry.mProfile,
                                                 &entry.mDuration,
                                                 &entry.mSupportedPlaySpeeds,
                                                 &entry.mMandatoryBits,
                                                 &entry.mBitRate,
                                                 &entry.mIFOFileName,
                                                 &entry.mLargest,
                                                 &entry.mWidth,
                                                 &entry.mHeight,
                                                 &entry.mLPOptions,
                                                 &entry.m4thFieldPart,
                                                 &entry.mFullProfile,
                                                 &entry.mGoldenDMSFlags,
                                                 &entry.mDLNAProtocolInfo,
                                                 &entry.mfMandatory,
                                                 &entry.mfCVPNA1Mandatory,
                                                 &entry.mfCVPEUMandatory};
    for (std::size_t i = 1; i < members.size(); ++i) {
        EXPECT_LT(members[i - 1], members[i]) << i;
    }
}

TEST(DLNAMediaMapperEntry, IsBuiltEmpty) {
    const Entry entry;
    EXPECT_EQ(Members(entry), "||||||0||||||||0|000");
    EXPECT_TRUE(entry.mSupportedPlaySpeeds.IsEmpty());
    EXPECT_EQ(entry.mDLNAProtocolInfo, nullptr);
    EXPECT_FALSE(entry.IsValid());
}

TEST(DLNAMediaMapperEntry, EveryFieldGoesIntoItsMember) {
    Entry entry;
    EXPECT_TRUE(entry.Set(kWholeLine));
    EXPECT_EQ(Members(entry), kWholeMembers);
}

TEST(DLNAMediaMapperEntry, TextFieldsAreTrimmed) {
    Entry entry;
    EXPECT_TRUE(
        entry.Set(" clip.mpg\t, video/mpeg , MPEG_PS_PAL ,\t0:01:02 , -2\\,1\\,2 , 00000101 ,9800000, "
                  "VTS_01_0.IFO , largest , 720 , 576 , lp , "
                  "X_Y=7;DLNA.ORG_OP=01;BRELVO.COM_GOLDENDMS=60000000 \r"));
    EXPECT_EQ(Members(entry), kWholeMembers);
}

TEST(DLNAMediaMapperEntry, LineOfFewerThanThreeFieldsIsRefusedAndChangesNothing) {
    for (const char* line : {"", "other.mpg", "other.mpg,audio/mpeg", "other.mpg\\,audio/mpeg\\,MP3,x"}) {
        Entry fresh;
        EXPECT_FALSE(fresh.Set(line)) << line;
        EXPECT_EQ(Members(fresh), "||||||0||||||||0|000") << line;
        Entry entry;
        ASSERT_TRUE(entry.Set(kWholeLine));
        const ezDLNAProtocolInfo* object = entry.mDLNAProtocolInfo;
        EXPECT_FALSE(entry.Set(line)) << line;
        EXPECT_EQ(Members(entry), kWholeMembers) << line;
        EXPECT_EQ(entry.mDLNAProtocolInfo, object) << line;
    }
}

TEST(DLNAMediaMapperEntry, LineOfThreeFieldsHasEveryOptionalFieldEmpty) {
    Entry entry;
    EXPECT_TRUE(entry.Set("clip.mpg,video/mpeg,MPEG_PS_PAL"));
    EXPECT_EQ(Members(entry), "clip.mpg|video/mpeg|MPEG_PS_PAL||||0|||||||"
                              "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;"
                              "DLNA.ORG_FLAGS=00100000000000000000000000000000|0|000");
    EXPECT_TRUE(entry.IsValid());
}

TEST(DLNAMediaMapperEntry, EmptyRequiredFieldIsRefusedWithThoseThreeOverwritten) {
    struct Case {
        const char* mStart;
        const char* mMembers;
    };
    const std::string rest =
        std::string(kWholeMembers).substr(std::string("clip.mpg|video/mpeg|MPEG_PS_PAL").size());
    for (const Case& at :
         {Case{",audio/mpeg,MP3", "|audio/mpeg|MP3"}, Case{"new.mp3,,MP3", "new.mp3||MP3"},
          Case{"new.mp3,audio/mpeg,", "new.mp3|audio/mpeg|"}, Case{",,", "||"},
          Case{" \t ,audio/mpeg,MP3", "|audio/mpeg|MP3"}, Case{"new.mp3,  ,MP3", "new.mp3||MP3"},
          Case{"new.mp3,audio/mpeg, \v\f", "new.mp3|audio/mpeg|"}}) {
        Entry entry;
        ASSERT_TRUE(entry.Set(kWholeLine));
        const ezDLNAProtocolInfo* object = entry.mDLNAProtocolInfo;
        EXPECT_FALSE(entry.Set((std::string(at.mStart) + ",9:00:00,4,11111111,5,i,l,1,2,o,A_B=1").c_str()));
        EXPECT_EQ(Members(entry), at.mMembers + rest) << at.mStart;
        EXPECT_EQ(entry.mDLNAProtocolInfo, object) << at.mStart;
        EXPECT_FALSE(entry.IsValid()) << at.mStart;
    }
}

TEST(DLNAMediaMapperEntry, FieldsThatALineDoesNotHaveKeepTheirMembers) {
    const std::vector<std::string> fields = {"new.mp3",
                                             "audio/mpeg",
                                             "MP3",
                                             "9:00:00",
                                             "4",
                                             "01000000",
                                             "5",
                                             "i",
                                             "l",
                                             "1",
                                             "2",
                                             "o",
                                             "A_B=1;BRELVO.COM_GOLDENDMS=E0000001"};
    // What each further field changes, in the order of Members.
    const std::vector<std::string> old = {"clip.mpg",
                                          "video/mpeg",
                                          "MPEG_PS_PAL",
                                          "0:01:02",
                                          "-2,2",
                                          "00000101",
                                          "9800000",
                                          "VTS_01_0.IFO",
                                          "largest",
                                          "720",
                                          "576",
                                          "lp",
                                          "X_Y=7;DLNA.ORG_OP=01;BRELVO.COM_GOLDENDMS=60000000"};
    for (std::size_t count = 3; count <= fields.size(); ++count) {
        Entry entry;
        ASSERT_TRUE(entry.Set(kWholeLine));
        EXPECT_TRUE(
            entry.Set(Line({fields.begin(), fields.begin() + static_cast<std::ptrdiff_t>(count)}).c_str()));
        std::string wanted;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            wanted += (i < count ? fields[i] : old[i]) + "|";
        }
        const std::string speeds = count > 4 ? "4" : "-2,2";
        wanted += count < 13 ? "http-get:*:audio/mpeg:DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;DLNA.ORG_PS=" + speeds +
                                   ";" + kFlags + ";X_Y=7|60000000|"
                             : "http-get:*:audio/mpeg:DLNA.ORG_PN=MP3;" + kFlags + ";A_B=1|E0000001|";
        wanted += count > 5 ? "000" : "101";
        EXPECT_EQ(Members(entry), wanted) << count;
    }
}

TEST(DLNAMediaMapperEntry, FieldsBeyondTheThirteenthAreIgnored) {
    Entry entry;
    EXPECT_TRUE(entry.Set((kWholeLine + std::string(100, ',') + "more").c_str()));
    EXPECT_EQ(Members(entry), kWholeMembers);
}

TEST(DLNAMediaMapperEntry, EscapedCommaBelongsToItsFieldAndOtherBackslashesStay) {
    Entry entry;
    EXPECT_TRUE(entry.Set("a\\,b.mpg,video/mpeg,P,0\\:01,,,,c:\\d"));
    EXPECT_EQ(Str(entry.mFileName), "a,b.mpg");
    EXPECT_EQ(Str(entry.mDuration), "0\\:01");
    EXPECT_EQ(Str(entry.mIFOFileName), "c:\\d");
}

TEST(DLNAMediaMapperEntry, CommaInATextFieldIsWrittenAsItIsAndPartsTheFieldWhenItIsRead) {
    Entry entry;
    ASSERT_TRUE(entry.Set("a\\,b.mpg,video/mpeg,P"));
    const std::string line = Str(entry.Get());
    EXPECT_EQ(line, "a,b.mpg,video/mpeg,P,,,,,,,,,," + kFlags + ";BRELVO.COM_GOLDENDMS=00000000");
    Entry again;
    EXPECT_TRUE(again.Set(line.c_str()));
    EXPECT_EQ(Str(again.mFileName), "a");
    EXPECT_EQ(Str(again.mMimeType), "b.mpg");
}

TEST(DLNAMediaMapperEntry, NULEndsALine) {
    Entry entry;
    EXPECT_FALSE(entry.Set(Bytes(std::string("clip.mpg\0,video/mpeg,P", 22))));
    EXPECT_TRUE(entry.Set(Bytes(std::string("clip.mpg,video/mpeg,P\0Q,0:01", 28))));
    EXPECT_EQ(Str(entry.mProfile), "P");
    EXPECT_EQ(Str(entry.mDuration), "");
    EXPECT_EQ(Str(entry.Get()),
              "clip.mpg,video/mpeg,P,,,,,,,,,," + kFlags + ";BRELVO.COM_GOLDENDMS=00000000");
}

TEST(DLNAMediaMapperEntry, PlaySpeedsAreSplitOnceMoreAndNormalSpeedIsTakenOut) {
    EXPECT_EQ(SpeedsOf(""), "");
    EXPECT_EQ(SpeedsOf("1"), "");
    EXPECT_EQ(SpeedsOf("1\\,1"), "");
    EXPECT_EQ(SpeedsOf("-2\\,1\\,2"), "-2,2");
    EXPECT_EQ(SpeedsOf("2"), "2");
    EXPECT_EQ(SpeedsOf("4\\,-1/2\\,2"), "4,-1/2,2");
    EXPECT_EQ(EntryWith(4, "4\\,-1/2\\,2").mSupportedPlaySpeeds.GetCount(), 3U);
}

TEST(DLNAMediaMapperEntry, OnlyAcceptedPlaySpeedsSurvive) {
    EXPECT_EQ(SpeedsOf("0\\,x\\,2.0\\,1/0\\,+2\\,\\,8"), "8");
    EXPECT_EQ(SpeedsOf("x"), "");
    EXPECT_EQ(SpeedsOf("2/2\\,2\\,4/2\\,2"), "2"); // 2/2 is normal speed, and of doubles the first stays
    EXPECT_EQ(SpeedsOf(" 2 \\, -4 "), "2,-4");
}

TEST(DLNAMediaMapperEntry, ValidatePlaySpeedListDoesNotUseItsFlag) {
    for (const bool fUnused : {false, true}) {
        ezCSVStringList speeds = ezCSVStringList::FromText("1,-2,0,1,2");
        Entry::ValidatePlaySpeedList(speeds, fUnused);
        EXPECT_EQ(Str(speeds.Join()), "-2,2");
        ezCSVStringList normal = ezCSVStringList::FromText("1");
        Entry::ValidatePlaySpeedList(normal, fUnused);
        EXPECT_TRUE(normal.IsEmpty());
        ezCSVStringList none = ezCSVStringList::WithSeparator(',');
        Entry::ValidatePlaySpeedList(none, fUnused);
        EXPECT_TRUE(none.IsEmpty());
    }
}

TEST(DLNAMediaMapperEntry, MandatoryBitsCountOnlyWhenThereAreEight) {
    const auto booleans = [](const char* aBits) {
        const std::string members = Members(EntryWith(5, aBits));
        return members.substr(members.size() - 3);
    };
    EXPECT_EQ(booleans("00000111"), "111");
    EXPECT_EQ(booleans("00000001"), "100");
    EXPECT_EQ(booleans("00000010"), "010");
    EXPECT_EQ(booleans("00000100"), "001");
    EXPECT_EQ(booleans("11111000"), "000");
    EXPECT_EQ(booleans("xxxxx2y1"), "100");
    EXPECT_EQ(booleans("111"), "000");
    EXPECT_EQ(booleans("1111111"), "000");
    EXPECT_EQ(booleans("111111111"), "000");
    EXPECT_EQ(booleans(""), "000");

    EntryWith entry(5, "11111111");
    EXPECT_TRUE(entry.Set("clip.mpg,video/mpeg,P,,,111"));
    EXPECT_FALSE(entry.mfMandatory || entry.mfCVPNA1Mandatory || entry.mfCVPEUMandatory);
}

TEST(DLNAMediaMapperEntry, BitRateIsASignedNumberReadUntrimmed) {
    const auto bitRate = [](const char* aField) { return EntryWith(6, aField).mBitRate; };
    EXPECT_EQ(bitRate("9800000"), 9800000U);
    EXPECT_EQ(bitRate(""), 0U);
    EXPECT_EQ(bitRate("2147483647"), 2147483647U);
    EXPECT_EQ(bitRate("2147483648"), 0U);
    EXPECT_EQ(bitRate(" 5"), 0U);
    EXPECT_EQ(bitRate("5 "), 0U);
    EXPECT_EQ(bitRate("+5"), 0U);
    EXPECT_EQ(bitRate("5k"), 0U);
    EXPECT_EQ(bitRate("-1"), 4294967295U);
    EXPECT_EQ(bitRate("-2147483648"), 0x80000000U);

    EntryWith entry(6, "5");
    EXPECT_TRUE(entry.Set("clip.mpg,video/mpeg,P,,,,junk"));
    EXPECT_EQ(entry.mBitRate, 0U);
}

TEST(DLNAMediaMapperEntry, NegativeBitRateIsWrittenAsALargeNumberAndReadBackAsNone) {
    EntryWith entry(6, "-1");
    const std::string line = Str(entry.Get());
    EXPECT_EQ(line, "clip.mpg,video/mpeg,MPEG_PS_PAL,,,,4294967295,,,,,," + kFlags +
                        ";BRELVO.COM_GOLDENDMS=00000000");
    Entry again;
    EXPECT_TRUE(again.Set(line.c_str()));
    EXPECT_EQ(again.mBitRate, 0U);
}

TEST(DLNAMediaMapperEntry, FlagWordIsTheHexadecimalValueOfItsParameter) {
    EXPECT_EQ(FlagsOf(""), 0U);
    EXPECT_EQ(FlagsOf("DLNA.ORG_OP=01"), 0U);
    EXPECT_EQ(FlagsOf("BRELVO.COM_GOLDENDMS="), 0U);
    EXPECT_EQ(FlagsOf("BRELVO.COM_GOLDENDMS"), 0U);
    EXPECT_EQ(FlagsOf("BRELVO.COM_GOLDENDMS=60000000"), 0x60000000U);
    EXPECT_EQ(FlagsOf("A_B=1;BRELVO.COM_GOLDENDMS=fedcba98;C_D=2"), 0xFEDCBA98U);
    EXPECT_EQ(FlagsOf("BRELVO.COM_GOLDENDMS=FEDCBA98"), 0xFEDCBA98U);
    EXPECT_EQ(FlagsOf("BRELVO.COM_GOLDENDMS=1"), 1U);
    EXPECT_EQ(FlagsOf("BRELVO.COM_GOLDENDMS=100000000"), 0U);
    EXPECT_EQ(FlagsOf("BRELVO.COM_GOLDENDMS=0x1"), 0U);
    EXPECT_EQ(FlagsOf("BRELVO.COM_GOLDENDMS=1;BRELVO.COM_GOLDENDMS=2"), 1U);
    EXPECT_EQ(FlagsOf("XBRELVO.COM_GOLDENDMS=1"), 0U);
    EXPECT_EQ(FlagsOf("BRELVO.COM_GOLDENDMSX=1"), 0U);
    EXPECT_EQ(FlagsOf("brelvo.com_goldendms=1"), 0U);
}

TEST(DLNAMediaMapperEntry, FlagWordStaysInTheFurtherParametersAndNeverStandsInTheFullProfile) {
    const EntryWith entry(12, "A_B=1;BRELVO.COM_GOLDENDMS=10000000;C_D=2");
    EXPECT_EQ(Str(entry.m4thFieldPart), "A_B=1;BRELVO.COM_GOLDENDMS=10000000;C_D=2");
    const std::string wanted = "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;" + kFlags + ";A_B=1;C_D=2";
    EXPECT_EQ(Str(entry.mFullProfile), wanted);
    EXPECT_EQ(ObjectOf(entry), wanted);
}

TEST(DLNAMediaMapperEntry, FlagsBeyondTheNamedOnesSurviveReadingAndWriting) {
    EntryWith entry(12, "BRELVO.COM_GOLDENDMS=0EABCDEF");
    EXPECT_EQ(entry.mGoldenDMSFlags, 0x0EABCDEFU);
    entry.SetPlaySpeedProfileEnabled(true);
    EXPECT_EQ(Str(entry.Get()),
              "clip.mpg,video/mpeg,MPEG_PS_PAL,,,,,,,,,," + kFlags + ";BRELVO.COM_GOLDENDMS=2EABCDEF");
}

TEST(DLNAMediaMapperEntry, UnknownParametersSurviveAfterTheKnownOnes) {
    EntryWith entry(12, "Z_Z=last word;DLNA.ORG_CI=1;A_A=;BRELVO.COM_GOLDENDMS=00000001;DLNA.ORG_OP=10");
    EXPECT_EQ(Str(entry.mFullProfile), "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_OP=10;"
                                       "DLNA.ORG_CI=1;" +
                                           kFlags + ";Z_Z=last word;A_A=");
    EXPECT_EQ(Str(entry.Get()), "clip.mpg,video/mpeg,MPEG_PS_PAL,,,,,,,,,,DLNA.ORG_OP=10;DLNA.ORG_CI=1;" +
                                    kFlags + ";Z_Z=last word;A_A=;BRELVO.COM_GOLDENDMS=00000001");
}

TEST(DLNAMediaMapperEntry, ComputedProtocolInfoHasAStarForAMissingMimeType) {
    Entry entry;
    entry.ComputeDLNAProtocolInfo();
    EXPECT_EQ(Str(entry.mFullProfile), "http-get:*:*:" + kFlags);
    entry.mProfile = "P";
    entry.ComputeDLNAProtocolInfo();
    EXPECT_EQ(Str(entry.mFullProfile), "http-get:*:*:DLNA.ORG_PN=P;" + kFlags);
    EXPECT_EQ(ObjectOf(entry), Str(entry.mFullProfile));
    entry.mMimeType = "video/mpeg";
    entry.mProfile = "";
    entry.m4thFieldPart = "A_B=1;";
    entry.ComputeDLNAProtocolInfo();
    EXPECT_EQ(Str(entry.mFullProfile), "http-get:*:video/mpeg:" + kFlags + ";A_B=1");
    EXPECT_EQ(ObjectOf(entry), Str(entry.mFullProfile));
}

TEST(DLNAMediaMapperEntry, StatedFlagsGetTheVersionBit) {
    EXPECT_EQ(Str(EntryWith(12, "DLNA.ORG_FLAGS=01200000000000000000000000000000").mFullProfile),
              "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;"
              "DLNA.ORG_FLAGS=01300000000000000000000000000000");
}

TEST(DLNAMediaMapperEntry, FullProfileHasPlaySpeedsOnlyWithBothFlagsAndASpeed) {
    const auto speedsIn = [](const char* aMimeType, const char* aSpeeds, const char* aFlags) {
        Entry entry;
        EXPECT_TRUE(entry.Set(
            (std::string("c.x,") + aMimeType + ",P,," + aSpeeds + ",,,,,,,,BRELVO.COM_GOLDENDMS=" + aFlags)
                .c_str()));
        return Taken(ezDLNAProtocolInfo_GetPlaySpeedStr(entry.mDLNAProtocolInfo, 0)) +
               (entry.mFullProfile.Contains("DLNA.ORG_PS=") ? "!" : "");
    };
    EXPECT_EQ(speedsIn("video/mpeg", "-2\\,2", "60000000"), "-2,2!");
    EXPECT_EQ(speedsIn("AUDIO/mpeg", "2", "60000000"), "2!");
    EXPECT_EQ(speedsIn("video/mpeg", "2", "20000000"), "");
    EXPECT_EQ(speedsIn("video/mpeg", "2", "40000000"), "");
    EXPECT_EQ(speedsIn("video/mpeg", "2", "E0000000"), ""); // the media does not support them
    EXPECT_EQ(speedsIn("video/mpeg", "1", "60000000"), "");
    EXPECT_EQ(speedsIn("video/mpeg", "", "60000000"), "");
    EXPECT_EQ(speedsIn("image/jpeg", "2", "60000000"), "");
}

TEST(DLNAMediaMapperEntry, PlaySpeedsOfTheFurtherParametersAreNotWritten) {
    EntryWith entry(12, "DLNA.ORG_PS=8;DLNA.ORG_PN=OTHER");
    EXPECT_EQ(Str(entry.mFullProfile),
              "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_PS=8;" + kFlags);
    EXPECT_EQ(Str(entry.Get()),
              "clip.mpg,video/mpeg,MPEG_PS_PAL,,,,,,,,,," + kFlags + ";BRELVO.COM_GOLDENDMS=00000000");
}

TEST(DLNAMediaMapperEntry, ParametersOfTheProfilesColumnComeBeforeAllOthers) {
    Entry entry;
    ASSERT_TRUE(entry.Set("c.mpg,video/mpeg,P;DLNA.ORG_PS=2;X_Y=1,,4\\,8,,,,,,,,DLNA.ORG_PS=16;X_Y=2;"
                          "BRELVO.COM_GOLDENDMS=60000000"));
    EXPECT_EQ(Str(entry.mFullProfile),
              "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_PS=2;" + kFlags + ";X_Y=1");
}

TEST(DLNAMediaMapperEntry, ListOfNoSpeedsHidesThoseOfTheFurtherParameters) {
    EntryWith entry(12, "DLNA.ORG_PS=8;BRELVO.COM_GOLDENDMS=60000000");
    entry.mSupportedPlaySpeeds = ezCSVStringList::FromText("fast");
    entry.ComputeDLNAProtocolInfo();
    EXPECT_EQ(Str(entry.mFullProfile), "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;" + kFlags);
}

TEST(DLNAMediaMapperEntry, GetWritesTheThirteenFields) {
    Entry entry;
    ASSERT_TRUE(entry.Set(kWholeLine));
    EXPECT_EQ(Str(entry.Get()),
              "clip.mpg,video/mpeg,MPEG_PS_PAL,0:01:02,-2\\,2,00000101,9800000,VTS_01_0.IFO,"
              "largest,720,576,lp,DLNA.ORG_OP=01;" +
                  kFlags + ";X_Y=7;BRELVO.COM_GOLDENDMS=60000000");
}

TEST(DLNAMediaMapperEntry, GetWritesNothingForBitRateNoneAndAlwaysTheFlagWord) {
    Entry entry;
    ASSERT_TRUE(entry.Set("clip.mpg,video/mpeg,MPEG_PS_PAL"));
    EXPECT_EQ(Str(entry.Get()),
              "clip.mpg,video/mpeg,MPEG_PS_PAL,,,,,,,,,," + kFlags + ";BRELVO.COM_GOLDENDMS=00000000");
    entry.mBitRate = 4294967295U;
    entry.mGoldenDMSFlags = 0xABCDEF09U;
    EXPECT_EQ(Str(entry.Get()), "clip.mpg,video/mpeg,MPEG_PS_PAL,,,,4294967295,,,,,," + kFlags +
                                    ";BRELVO.COM_GOLDENDMS=ABCDEF09");
}

TEST(DLNAMediaMapperEntry, GetLeavesItsChangesOnTheObjectAndComputingRestoresIt) {
    Entry entry;
    ASSERT_TRUE(entry.Set(kWholeLine));
    const std::string full = Str(entry.mFullProfile);
    const std::string line = Str(entry.Get());
    EXPECT_EQ(ObjectOf(entry),
              "http-get:*:video/mpeg:DLNA.ORG_OP=01;" + kFlags + ";X_Y=7;BRELVO.COM_GOLDENDMS=60000000");
    EXPECT_STREQ(ezDLNAProtocolInfo_GetProfile(entry.mDLNAProtocolInfo), "");
    EXPECT_EQ(Members(entry), kWholeMembers);
    EXPECT_EQ(Str(entry.Get()), line);
    entry.ComputeDLNAProtocolInfo();
    EXPECT_EQ(ObjectOf(entry), full);
    EXPECT_EQ(Str(entry.mFullProfile), full);
}

TEST(DLNAMediaMapperEntry, GetWritesWhatStandsInTheObjectAlone) {
    Entry entry;
    ASSERT_TRUE(entry.Set("clip.mpg,video/mpeg,MPEG_PS_PAL"));
    const std::string full = Str(entry.mFullProfile);
    ezDLNAProtocolInfo_SetByteBasedSeek(entry.mDLNAProtocolInfo, true);
    ezDLNAProtocolInfo_SetHTTPStalling(entry.mDLNAProtocolInfo, true);
    entry.m4thFieldPart = "A_B=1"; // not computed
    EXPECT_EQ(Str(entry.Get()), "clip.mpg,video/mpeg,MPEG_PS_PAL,,,,,,,,,,DLNA.ORG_OP=01;"
                                "DLNA.ORG_FLAGS=00300000000000000000000000000000;"
                                "BRELVO.COM_GOLDENDMS=00000000");
    EXPECT_EQ(Str(entry.mFullProfile), full);
}

TEST(DLNAMediaMapperEntry, GetOfAnEntryNeverComputedBehavesAsIfComputedFirst) {
    Entry entry;
    entry.mFileName = "clip.mpg";
    entry.mMimeType = "video/mpeg";
    entry.mProfile = "P";
    entry.m4thFieldPart = "DLNA.ORG_OP=01";
    entry.mGoldenDMSFlags = 0x10000000;
    EXPECT_EQ(Str(entry.Get()),
              "clip.mpg,video/mpeg,P,,,,,,,,,,DLNA.ORG_OP=01;" + kFlags + ";BRELVO.COM_GOLDENDMS=10000000");
    EXPECT_EQ(Str(entry.mFullProfile), "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_OP=01;" + kFlags);
}

TEST(DLNAMediaMapperEntry, IsValidWithFileNameMimeTypeAndProfile) {
    for (int missing = 0; missing < 4; ++missing) {
        Entry entry;
        entry.mFileName = missing == 0 ? "" : "f";
        entry.mMimeType = missing == 1 ? "" : "m";
        entry.mProfile = missing == 2 ? "" : "p";
        EXPECT_EQ(entry.IsValid(), missing == 3) << missing;
    }
}

TEST(DLNAMediaMapperEntry, ResetMakesItNew) {
    Entry entry;
    ASSERT_TRUE(entry.Set(kWholeLine));
    entry.mfMandatory = entry.mfCVPNA1Mandatory = entry.mfCVPEUMandatory = true;
    entry.Reset();
    EXPECT_EQ(Members(entry), Members(Entry()));
    EXPECT_TRUE(entry.mSupportedPlaySpeeds.IsEmpty());
    EXPECT_EQ(entry.mDLNAProtocolInfo, nullptr);
    EXPECT_TRUE(entry.Set(kWholeLine));
    EXPECT_EQ(Members(entry), kWholeMembers);
}

TEST(DLNAMediaMapperEntry, FlagsAnswerForProfileAndByteSeek) {
    Entry entry;
    EXPECT_TRUE(entry.ProfileEnabled());
    EXPECT_TRUE(entry.CanSupportByteSeek());
    EXPECT_TRUE(entry.GetPlaySpeedMediaSupported());
    entry.mGoldenDMSFlags = 0xEFFFFFFF;
    EXPECT_TRUE(entry.ProfileEnabled());
    entry.mGoldenDMSFlags = 0x10000000;
    EXPECT_FALSE(entry.ProfileEnabled());
    entry.mGoldenDMSFlags = 0xFEFFFFFF;
    EXPECT_TRUE(entry.CanSupportByteSeek());
    entry.mGoldenDMSFlags = 0x01000000;
    EXPECT_FALSE(entry.CanSupportByteSeek());
    entry.mGoldenDMSFlags = 0x7FFFFFFF;
    EXPECT_TRUE(entry.GetPlaySpeedMediaSupported());
    entry.mGoldenDMSFlags = 0x80000000;
    EXPECT_FALSE(entry.GetPlaySpeedMediaSupported());
}

TEST(DLNAMediaMapperEntry, TimeSeekAndPlaySpeedAreForAudioAndVideo) {
    struct Case {
        const char* mMimeType;
        bool mfIs;
    };
    for (const Case& at :
         {Case{"audio/mpeg", true}, Case{"video/mpeg", true}, Case{"AuDiO/x", true}, Case{"VIDEO/", true},
          Case{"audio/x/video", true}, Case{"image/jpeg", false}, Case{"audio", false}, Case{"", false},
          Case{"xaudio/x", false}, Case{"audiox/x", false}, Case{"/audio", false}, Case{" audio/x", false}}) {
        EXPECT_EQ(DLNAMediaMapper::MimeTypeSupportTimeSeek(at.mMimeType), at.mfIs) << at.mMimeType;
        EXPECT_EQ(DLNAMediaMapper::MimeTypeSupportPlaySpeed(at.mMimeType), at.mfIs) << at.mMimeType;
        Entry entry;
        entry.mMimeType = at.mMimeType;
        EXPECT_EQ(entry.CanSupportTimeSeek(), at.mfIs) << at.mMimeType;
        EXPECT_EQ(entry.CanSupportPlaySpeed(), at.mfIs) << at.mMimeType;
        entry.mGoldenDMSFlags = 0x7FFFFFFF;
        EXPECT_EQ(entry.CanSupportPlaySpeed(), at.mfIs) << at.mMimeType;
        entry.mGoldenDMSFlags = 0x80000000;
        EXPECT_FALSE(entry.CanSupportPlaySpeed()) << at.mMimeType;
        EXPECT_EQ(entry.CanSupportTimeSeek(), at.mfIs) << at.mMimeType;
    }
}

TEST(DLNAMediaMapperEntry, APlaySpeedIsDefinedUnlessTheListIsNormalSpeedAlone) {
    const auto hasSpeed = [](const char* aMimeType, const char* aSpeeds, uint32 aFlags) {
        Entry entry;
        entry.mMimeType = aMimeType;
        entry.mSupportedPlaySpeeds = ezCSVStringList::FromText(aSpeeds);
        entry.mGoldenDMSFlags = aFlags;
        return entry.HasPlaySpeedDefined();
    };
    EXPECT_TRUE(hasSpeed("video/mpeg", "-2,2", 0));
    EXPECT_TRUE(hasSpeed("video/mpeg", "2", 0));
    EXPECT_FALSE(hasSpeed("video/mpeg", "1", 0));
    EXPECT_TRUE(hasSpeed("video/mpeg", "1,1", 0)); // two elements always count
    EXPECT_FALSE(hasSpeed("video/mpeg", "", 0));
    EXPECT_FALSE(hasSpeed("image/jpeg", "2", 0));
    EXPECT_FALSE(hasSpeed("video/mpeg", "2", 0x80000000));
    EXPECT_TRUE(EntryWith(4, "-2\\,1\\,2").HasPlaySpeedDefined());
    EXPECT_FALSE(EntryWith(4, "1").HasPlaySpeedDefined());
}

TEST(DLNAMediaMapperEntry, PlaySpeedsAreEnabledOnlyWhereTheyCanBe) {
    struct Case {
        const char* mMimeType;
        const char* mSpeeds;
        uint32 mFlags;
        bool mfMedia;
        bool mfProfile;
    };
    for (const Case& at :
         {Case{"video/mpeg", "2", 0x60000000, true, true}, Case{"video/mpeg", "2", 0x40000000, true, false},
          Case{"video/mpeg", "2", 0x20000000, false, true}, Case{"video/mpeg", "", 0x60000000, false, true},
          Case{"image/jpeg", "2", 0x60000000, false, false},
          Case{"video/mpeg", "2", 0xE0000000, false, false},
          Case{"video/mpeg", "2", 0x1FFFFFFF, false, false}}) {
        Entry entry;
        entry.mMimeType = at.mMimeType;
        entry.mSupportedPlaySpeeds = ezCSVStringList::FromText(at.mSpeeds);
        entry.mGoldenDMSFlags = at.mFlags;
        EXPECT_EQ(entry.GetPlaySpeedMediaEnabled(), at.mfMedia) << at.mMimeType << at.mSpeeds << at.mFlags;
        EXPECT_EQ(entry.GetPlaySpeedProfileEnabled(), at.mfProfile)
            << at.mMimeType << at.mSpeeds << at.mFlags;
    }
}

TEST(DLNAMediaMapperEntry, EnablingPlaySpeedsDisablesThemWhereTheyCannotBe) {
    Entry entry;
    entry.mMimeType = "video/mpeg";
    entry.mGoldenDMSFlags = 0x0F000001;
    entry.SetPlaySpeedProfileEnabled(true);
    EXPECT_EQ(entry.mGoldenDMSFlags, 0x2F000001U);
    entry.SetPlaySpeedMediaEnabled(true); // no speed is defined
    EXPECT_EQ(entry.mGoldenDMSFlags, 0x2F000001U);
    entry.mSupportedPlaySpeeds.Add("2");
    entry.SetPlaySpeedMediaEnabled(true);
    EXPECT_EQ(entry.mGoldenDMSFlags, 0x6F000001U);
    entry.SetPlaySpeedProfileEnabled(false);
    EXPECT_EQ(entry.mGoldenDMSFlags, 0x4F000001U);
    entry.SetPlaySpeedMediaEnabled(false);
    EXPECT_EQ(entry.mGoldenDMSFlags, 0x0F000001U);

    entry.mGoldenDMSFlags = 0x60000000;
    entry.mMimeType = "image/jpeg";
    entry.SetPlaySpeedProfileEnabled(true);
    EXPECT_EQ(entry.mGoldenDMSFlags, 0x40000000U);
    entry.SetPlaySpeedMediaEnabled(true);
    EXPECT_EQ(entry.mGoldenDMSFlags, 0U);
}

TEST(DLNAMediaMapperEntry, GetTrimmedAnswersForEveryIndex) {
    const ezCSVStringList fields = ezCSVStringList::FromText(" a b\t,,c");
    EXPECT_EQ(Str(Entry::GetTrimmed(fields, 0)), "a b");
    EXPECT_EQ(Str(Entry::GetTrimmed(fields, 1)), "");
    EXPECT_EQ(Str(Entry::GetTrimmed(fields, 2)), "c");
    EXPECT_EQ(Str(Entry::GetTrimmed(fields, 3)), "");
    EXPECT_EQ(Str(Entry::GetTrimmed(fields, -1)), "");
    EXPECT_EQ(Str(Entry::GetTrimmed(fields, PTRDIFF_MIN)), "");
}

namespace {

/// Bytes without those that would end the line or part a field, and none of anUnwanted; no backslash at the
/// end, since that would join the field with the next when it is written.
rc::Gen<std::string> FieldOf(const std::string& anUnwanted) {
    const auto isWanted = [=](char aCharacter) {
        return aCharacter != ',' && aCharacter != '\n' && aCharacter != '\0' &&
               anUnwanted.find(aCharacter) == std::string::npos;
    };
    const rc::Gen<char> character = rc::gen::suchThat(
        rc::gen::oneOf(rc::gen::arbitrary<char>(), rc::gen::elementOf(std::string("aB0.:;=/\\ \t#%()\"'*_"))),
        isWanted);
    return rc::gen::map(rc::gen::container<std::string>(character), [](std::string aText) {
        const std::string trimmed = Str(Bytes(aText).TrimLeftRight());
        return !trimmed.empty() && trimmed.back() == '\\' ? aText + "x" : aText;
    });
}

/// Further parameters, but no profile and no play speeds: those have fields of their own.
rc::Gen<std::string> FurtherParameters() {
    const rc::Gen<std::string> hexadecimal =
        rc::gen::map(rc::gen::arbitrary<std::uint32_t>(), [](std::uint32_t aValue) {
            return Str(ezCString::Format("%lx", static_cast<unsigned long>(aValue)));
        });
    const rc::Gen<std::string> value =
        rc::gen::oneOf(hexadecimal, FieldOf("\";"),
                       rc::gen::element<std::string>("01", "10", "00", "1", "2", "", "0150000",
                                                     "01200000000000000000000000000000"));
    const rc::Gen<std::string> name =
        rc::gen::element<std::string>("DLNA.ORG_OP", "DLNA.ORG_CI", "DLNA.ORG_FLAGS", "BRELVO.COM_GOLDENDMS",
                                      " BRELVO.COM_GOLDENDMS ", "X_Y", "A_B", "", "DLNA.ORG_PNX");
    const rc::Gen<std::string> parameter =
        rc::gen::oneOf(rc::gen::map(rc::gen::pair(name, value),
                                    [](const std::pair<std::string, std::string>& aParameter) {
                                        return aParameter.first + "=" + aParameter.second;
                                    }),
                       rc::gen::element<std::string>("", "*", "junk"));
    return rc::gen::map(rc::gen::container<std::vector<std::string>>(parameter),
                        [](const std::vector<std::string>& aParameters) {
                            std::string text;
                            for (const std::string& one : aParameters) {
                                text += one + ";";
                            }
                            return text;
                        });
}

rc::Gen<std::string> PlaySpeeds() {
    return rc::gen::map(
        rc::gen::container<std::vector<std::string>>(rc::gen::element<std::string>(
            "1", "2", "-2", "4/2", "1/2", "-1/2", "3/3", "0", "x", "1.5", " 8", "", "18446744073709551615")),
        [](const std::vector<std::string>& aSpeeds) {
            std::string text;
            for (const std::string& speed : aSpeeds) {
                text += (text.empty() ? "" : "\\,") + speed;
            }
            return text;
        });
}

rc::Gen<std::string> BitRate() {
    return rc::gen::oneOf(rc::gen::map(rc::gen::inRange<std::int64_t>(0, INT64_C(2147483648)),
                                       [](std::int64_t aRate) { return std::to_string(aRate); }),
                          rc::gen::element<std::string>("2147483647", "", " 1", "x"));
}

/// A line that is good, of 3 to 13 fields.
std::string DrawnLine() {
    const rc::Gen<std::string> any = FieldOf("");
    const auto filled = [](const std::string& aText) { return !Bytes(aText).TrimLeftRight().IsEmpty(); };
    std::vector<std::string> fields = {
        *rc::gen::suchThat(any, filled).as("file name"),
        *rc::gen::oneOf(rc::gen::suchThat(FieldOf("\""), filled),
                        rc::gen::element<std::string>("video/mpeg", "audio/L16;rate=44100;channels=2",
                                                      "Image/jpeg", "video/x;a=\"b:c;d\""))
             .as("MIME type"),
        *rc::gen::oneOf(rc::gen::suchThat(FieldOf("\""), filled),
                        rc::gen::element<std::string>("LPCM", "MP3"))
             .as("profile"),
        *any.as("duration"),
        *PlaySpeeds().as("play speeds"),
        *rc::gen::oneOf(any, rc::gen::element<std::string>("00000111", "11111000")).as("mandatory bits"),
        *BitRate().as("bit rate"),
        *any.as("IFO"),
        *any.as("largest"),
        *any.as("width"),
        *any.as("height"),
        *any.as("LP options"),
        *FurtherParameters().as("further parameters")};
    fields.resize(static_cast<std::size_t>(*rc::gen::inRange(3, 14).as("number of fields")));
    return Line(fields);
}

} // namespace

RC_GTEST_PROP(DLNAMediaMapperEntry, EveryMemberButTheFurtherParametersSurvivesWritingAndReading, ()) {
    Entry entry;
    RC_ASSERT(entry.Set(Bytes(DrawnLine())));
    const std::string members = Members(entry, false);
    const std::string line = Str(entry.Get());
    Entry again;
    RC_ASSERT(again.Set(Bytes(line)));
    RC_ASSERT(Members(again, false) == members);
    RC_ASSERT(Str(again.Get()) == line);
}

TEST(DLNAMediaMapperEntry, StrayQuoteOrColonInTheMimeTypeDoesNotReachTheOtherFields) {
    for (const char* mimeType : {"video/x;a=\"b", "video/x:y"}) {
        DLNAMediaMapperEntry entry;
        ASSERT_TRUE(entry.Set(ezCString("c.mpg,") + mimeType +
                              ",P,,,,,,,,,,X_Y=\"1\";BRELVO.COM_GOLDENDMS=10000000"));
        const ezCString field = "DLNA.ORG_PN=P;DLNA.ORG_FLAGS=00100000000000000000000000000000;X_Y=\"1\"";
        EXPECT_EQ(entry.mFullProfile, ezCString("http-get:*:") + mimeType + ":" + field);
        EXPECT_EQ(entry.Get(), ezCString("c.mpg,") + mimeType +
                                   ",P,,,,,,,,,,DLNA.ORG_FLAGS=00100000000000000000000000000000;X_Y=\"1\";"
                                   "BRELVO.COM_GOLDENDMS=10000000");
    }
}
