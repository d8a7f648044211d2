#include "ez/DLNAMediaMapper.h"

#include "ezPlatform/config/PropertyList.h"
#include "ezPlatform/media/MediaInfo.h"

#include "support/AwkwardStream.h"
#include "support/MapperFolder.h"
#include "support/Record.h"
#include "support/Str.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

namespace {

/// What the mapper's parser makes of a file, with a table of its own.
std::string Parsed(const std::string& aTable, const char* aFullPath) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(aTable);
    DLNAMediaMapperParser parser(mapper.get(), nullptr);
    AwkwardStream stream("0123456789", Delivery(), aFullPath);
    const Record record(parser.Parse(stream));
    EXPECT_EQ(stream.GetCosts().mReads, 0U); // the media itself is not looked at
    EXPECT_EQ(stream.GetCosts().mSeeks, 0U);
    return DumpRecord(record.get());
}

std::string Declared(DLNAMediaMapper& aMapper) {
    return Str(DLNAMediaMapperParser(&aMapper, nullptr).GetDLNAInfo());
}

std::string Declared(const std::string& aTable) {
    const MapperFolder folder;
    return Declared(*folder.Loaded(aTable));
}

} // namespace

static_assert(std::is_base_of<ezMediaParser, DLNAMediaMapperParser>::value, "");

TEST(DLNAMediaMapperParser, IsOfTypeMediaMapperAndFindsNoCoverArt) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    const DLNAMediaMapperParser parser(mapper.get(), nullptr);
    EXPECT_EQ(Str(parser.GetType()), "MediaMapper");
    EXPECT_FALSE(parser.CanExtractCoverArt());
}

TEST(DLNAMediaMapperParser, AdjustsNothing) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("clip.mpg,video/mpeg,P\n");
    DLNAMediaMapperParser parser(mapper.get(), nullptr);
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "video/mpeg", true);
    info.mFullPath = "/media/clip.mpg";
    EXPECT_FALSE(parser.AdjustDLNAInfo(&info));
    EXPECT_EQ(DumpRecord(&info), "mt=\"video/mpeg\"\npath=\"/media/clip.mpg\"\n");
    EXPECT_FALSE(parser.AdjustDLNAInfo(nullptr));
}

TEST(DLNAMediaMapperParser, EntryOfTheFileMakesTheRecord) {
    EXPECT_EQ(
        Parsed("clip.mpg,video/mpeg,MPEG_PS_PAL,1:01:01.9,-2\\,2,00000111,9800000,IFO,largest,720,576,lp,"
               "DLNA.ORG_OP=01;A_B=1;BRELVO.COM_GOLDENDMS=60000000\n",
               "/media/clip.mpg"),
        "br=9800000\ncn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=MPEG_PS_PAL\"\ndu=3661\nmt=\"video/mpeg\"\n");
}

TEST(DLNAMediaMapperParser, NameOfTheFileIsWhatStandsAfterTheFolders) {
    const std::string record = "br=0\ncn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=P\"\nmt=\"video/mpeg\"\n";
    for (const char* path : {"/media/clip.mpg", "clip.mpg", "C:\\media\\clip.mpg",
                             "http://host/media/clip.mpg", "/media.d/DTCP_clip(3).MPG"}) {
        EXPECT_EQ(Parsed("clip.mpg,video/mpeg,P\n", path), record) << path;
    }
    for (const char* path :
         {"", "/", "/media/clip.mpg/", "/media/other.mpg", "/clip.mpg/other.mpg", "/media/clip"}) {
        EXPECT_EQ(Parsed("clip.mpg,video/mpeg,P\n.mpg,video/mpeg,P\n", path), "null\n") << path;
    }
}

TEST(DLNAMediaMapperParser, ClassFollowsTheMimeTypeWithCase) {
    const auto classOf = [](const std::string& aMimeType) {
        const MapperFolder folder;
        const std::unique_ptr<OpenMapper> mapper = folder.Loaded("clip.mpg," + aMimeType + ",P\n");
        DLNAMediaMapperParser parser(mapper.get(), nullptr);
        AwkwardStream stream("", Delivery(), "/clip.mpg");
        const Record record(parser.Parse(stream));
        EXPECT_EQ(record->Has(kezInfo_ClassName), !record->GetCString(kezInfo_ClassName, "").IsEmpty());
        EXPECT_EQ(Str(record->GetCString(kezInfo_MimeType, "")), aMimeType);
        return Str(record->GetCString(kezInfo_ClassName, "none"));
    };
    EXPECT_EQ(classOf("audio/mpeg"), "item.audioItem");
    EXPECT_EQ(classOf("video/mpeg"), "item.videoItem");
    EXPECT_EQ(classOf("image/jpeg"), "item.imageItem");
    EXPECT_EQ(classOf("image/audio/video"), "item.imageItem");
    EXPECT_EQ(classOf("Audio/mpeg"), "none");
    EXPECT_EQ(classOf("VIDEO/mpeg"), "none");
    EXPECT_EQ(classOf("text/plain"), "none");
    EXPECT_EQ(classOf("audiox/mpeg"), "none");
    EXPECT_EQ(classOf("/audio"), "none");
}

TEST(DLNAMediaMapperParser, UnknownBitRateIsWrittenAsNone) {
    EXPECT_EQ(Parsed("p.jpg,image/jpeg,J\n", "/p.jpg"),
              "br=0\ncn=\"item.imageItem\"\ndl=\"DLNA.ORG_PN=J\"\nmt=\"image/jpeg\"\n");
    EXPECT_EQ(Parsed("p.jpg,image/jpeg,J,,,,-1\n", "/p.jpg"),
              "br=4294967295\ncn=\"item.imageItem\"\ndl=\"DLNA.ORG_PN=J\"\nmt=\"image/jpeg\"\n");
}

TEST(DLNAMediaMapperParser, DurationIsWrittenWhereItConverts) {
    const auto duration = [](const std::string& aText) {
        const std::string record = Parsed("clip.mpg,video/mpeg,P," + aText + "\n", "/clip.mpg");
        const std::size_t start = record.find("du=");
        return start == std::string::npos ? "none" : record.substr(start, record.find('\n', start) - start);
    };
    EXPECT_EQ(duration("0:01:02"), "du=62");
    EXPECT_EQ(duration("0:00:00"), "du=0");
    EXPECT_EQ(duration("100:00:59.999"), "du=360059");
    EXPECT_EQ(duration(""), "none");
    EXPECT_EQ(duration("62"), "none");
    EXPECT_EQ(duration("0:60:00"), "none");
    EXPECT_EQ(duration("-0:01:02"), "none");
    EXPECT_EQ(duration("junk"), "none");
}

TEST(DLNAMediaMapperParser, LPCMTakesRateAndChannelsFromItsMimeType) {
    const auto facts = [](const std::string& aMimeType, const std::string& aProfile) {
        const std::string record = Parsed("s.pcm," + aMimeType + "," + aProfile + "\n", "/s.pcm");
        return record.substr(0, record.find("br=")) +
               record.substr(record.find("bs=") == std::string::npos ? record.size() : record.find("bs="), 6);
    };
    EXPECT_EQ(facts("audio/L16;rate=44100;channels=2", "LPCM"), "ac=2\nar=44100\nbs=16\n");
    EXPECT_EQ(facts("audio/L16; Channels=\"1\" ;RATE=48000", "LPCM"), "ac=1\nar=48000\nbs=16\n");
    EXPECT_EQ(facts("audio/L16;rate=44100", "LPCM"), "ar=44100\nbs=16\n");
    EXPECT_EQ(facts("audio/L16;channels=2", "LPCM"), "ac=2\nbs=16\n");
    EXPECT_EQ(facts("audio/L16", "LPCM"), "bs=16\n");
    EXPECT_EQ(facts("audio/L16;rate=44k;channels=-2", "LPCM"), "bs=16\n");
    EXPECT_EQ(facts("audio/L16;rate=4294967296;channels=", "LPCM"), "bs=16\n");
    EXPECT_EQ(facts("audio/L16;rate=0;channels=4294967295", "LPCM"), "ac=4294967295\nar=0\nbs=16\n");
    EXPECT_EQ(facts("audio/L16;rate=44100;channels=2", "lpcm"), "");
    EXPECT_EQ(facts("audio/L16;rate=44100;channels=2", "LPCM_low"), "");
}

TEST(DLNAMediaMapperParser, EachParseMakesARecordOfItsOwn) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("clip.mpg,video/mpeg,P\n");
    DLNAMediaMapperParser parser(mapper.get(), nullptr);
    AwkwardStream stream("", Delivery(), "/clip.mpg");
    const Record first(parser.Parse(stream));
    mapper->At(0)->mProfile = "Q"; // lookups see every edit
    const Record second(parser.Parse(stream));
    EXPECT_NE(first, second);
    EXPECT_EQ(Str(first->GetCString(kezInfo_DLNA, "")), "DLNA.ORG_PN=P");
    EXPECT_EQ(Str(second->GetCString(kezInfo_DLNA, "")), "DLNA.ORG_PN=Q");
}

TEST(DLNAMediaMapperParser, DeclaresItsEnabledProfilesInTheirOrder) {
    EXPECT_EQ(Declared(""), "");
    EXPECT_EQ(Declared("1.mpg,video/mpeg,P\n"), "video/mpeg:DLNA.ORG_PN=P");
    EXPECT_EQ(
        Declared("1.mpg,video/mpeg,Z\n2.mp3,audio/mpeg,A,,,,,,,,,,DLNA.ORG_OP=01;X_Y=1\n"
                 "3.mpg,video/mpeg,OFF,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n"
                 "4.pcm,audio/L16;rate=44100;channels=2,LPCM\n5.mp3,audio/other,A\n"),
        "audio/mpeg:DLNA.ORG_PN=A,audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM,video/mpeg:DLNA.ORG_PN=Z");
    EXPECT_EQ(Declared("3.mpg,video/mpeg,OFF,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n"), "");
}

TEST(DLNAMediaMapperParser, DeclaresPlaySpeedsWithEscapedCommas) {
    EXPECT_EQ(Declared("1.mpg,video/mpeg,P,,-2\\,1/2\\,4,,,,,,,,BRELVO.COM_GOLDENDMS=60000000\n"
                       "2.mpg,video/mpeg,Q,,2,,,,,,,,BRELVO.COM_GOLDENDMS=60000000\n"
                       "3.mpg,video/mpeg,R,,2,,,,,,,,BRELVO.COM_GOLDENDMS=40000000\n"),
              "video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_PS=-2\\,1/2\\,4,video/mpeg:DLNA.ORG_PN=Q;DLNA.ORG_PS=2,"
              "video/mpeg:DLNA.ORG_PN=R");
}

TEST(DLNAMediaMapperParser, CommasOfAMimeTypeOrProfileDoNotPartWhatItDeclares) {
    EXPECT_EQ(Declared("1.mpg,video/mp4;codecs=\"avc1\\,mp4a\",P\\,Q\n2.mpg,video/mpeg,R\n"),
              "video/mp4;codecs=\"avc1\\,mp4a\":DLNA.ORG_PN=P\\,Q,video/mpeg:DLNA.ORG_PN=R");
}

TEST(DLNAMediaMapperParser, DeclaresPlaySpeedsWithoutAProfileRightAfterTheMimeType) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.mpg,video/mpeg,P,,2\\,4,,,,,,,,BRELVO.COM_GOLDENDMS=60000000\n2.mpg,video/mpeg,Q\n");
    mapper->At(0)->mProfile = "";
    mapper->At(0)->ComputeDLNAProtocolInfo();
    EXPECT_EQ(Declared(*mapper), "video/mpegDLNA.ORG_PS=2\\,4,video/mpeg:DLNA.ORG_PN=Q");
    mapper->At(0)->mSupportedPlaySpeeds.Reset();
    mapper->At(0)->ComputeDLNAProtocolInfo();
    EXPECT_EQ(Declared(*mapper), "video/mpeg,video/mpeg:DLNA.ORG_PN=Q");
}

TEST(DLNAMediaMapperParser, WhatItDeclaresIsFixedWhenItIsMade) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("1.mpg,video/mpeg,P\n");
    DLNAMediaMapperParser parser(mapper.get(), nullptr);
    mapper->At(0)->mGoldenDMSFlags = kDLNAMediaMapperProfile_Disabled;
    folder.WriteWritable("2.mpg,video/mpeg,Q\n");
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_EQ(Str(parser.GetDLNAInfo()), "video/mpeg:DLNA.ORG_PN=P");
    EXPECT_EQ(Str(parser.GetDLNAInfo()), "video/mpeg:DLNA.ORG_PN=P");
    EXPECT_EQ(Declared(*mapper), "video/mpeg:DLNA.ORG_PN=Q");
}
