#include "companions/ezFormats/rules/ProfileKit.h"

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/Limits.h"
#include "ezFormats/detail/MediaBytes.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Record.h"

#include <gtest/gtest.h>

#include <functional>

// What every parser of a file format inherits: the announcement and the reading, with a format that does as
// told.

namespace {

constexpr const char* kTable = "MP3     audio/mpeg  channels=1-2\n"
                               "AAC_ISO audio/mp4   channels=1-2\n"
                               "AVC_MP4_HP_HD_AAC video/mp4 width=1-1920\n"
                               "JPEG_SM image/jpeg  width=1-640\n"
                               "JPEG_MED video/quicktime>image/jpeg height=10\n";

using Reading = std::function<bool(MediaBytes&, ezMediaInfo&)>;

constexpr FormatDescription kScripted = {
    "ScriptedFormat", "scr", {"audio/mpeg", "audio/mp4", "video/mp4", "image/jpeg", "video/quicktime"},
    {4, 65536},       {},
};

class ScriptedFormat : public FormatParser {
public:
    explicit ScriptedFormat(Reading aReading)
        : FormatParser(kScripted, ProfileRules::FromText(kTable, nullptr)), mReading(std::move(aReading)) {}

    using FormatParser::Cause;
    using FormatParser::Refuse;

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override { return mReading(aBytes, anInfo); }

private:
    Reading mReading;
};

/// Fills a record with "key=value" words.
Reading Stating(const std::string& aFacts) {
    return [aFacts](MediaBytes&, ezMediaInfo& anInfo) {
        std::istringstream words(aFacts);
        for (std::string word; words >> word;) {
            anInfo.Set(word.substr(0, 2).c_str(), word.substr(3).c_str(), true);
        }
        return true;
    };
}

struct Announced {
    std::string mClass;
    std::string mField;
};

bool operator==(const Announced& aLeft, const Announced& aRight) {
    return aLeft.mClass == aRight.mClass && aLeft.mField == aRight.mField;
}

std::ostream& operator<<(std::ostream& aStream, const Announced& anAnnounced) {
    return aStream << anAnnounced.mClass << " " << anAnnounced.mField;
}

Announced AnnouncementOf(const ezMediaInfo& anInfo) {
    return {Str(anInfo.GetCString(kezInfo_ClassName, "")), Str(anInfo.GetCString(kezInfo_DLNA, ""))};
}

/// What a file of these facts is announced as.
Announced Parsed(const std::string& aFacts, bool afSizeKnown = true) {
    Delivery delivery;
    delivery.mfSizeKnown = afSizeKnown;
    AwkwardStream stream("some content", delivery);
    ScriptedFormat parser(Stating(aFacts));
    const std::unique_ptr<ezMediaInfo> info(parser.Parse(stream));
    return info == nullptr ? Announced() : AnnouncementOf(*info);
}

/// What a record becomes.
Announced Adjusted(const std::string& aFacts) {
    ScriptedFormat parser(Stating(""));
    const std::unique_ptr<ezMediaInfo> info = RecordOf(aFacts);
    return parser.AdjustDLNAInfo(info.get()) ? AnnouncementOf(*info) : Announced();
}

constexpr const char* kStreamFlags = ";DLNA.ORG_FLAGS=01500000000000000000000000000000";
constexpr const char* kImageFlags = ";DLNA.ORG_FLAGS=00D00000000000000000000000000000";

} // namespace

TEST(FormatParser, ProfileComesWithSeekAndTheFlagsOfItsClass) {
    EXPECT_EQ(Parsed("mt=audio/mpeg ac=2"),
              (Announced{"item.audioItem", std::string("DLNA.ORG_PN=MP3;DLNA.ORG_OP=01") + kStreamFlags}));
    EXPECT_EQ(Parsed("mt=video/mp4 wi=1920"),
              (Announced{"item.videoItem",
                         std::string("DLNA.ORG_PN=AVC_MP4_HP_HD_AAC;DLNA.ORG_OP=01") + kStreamFlags}));
    EXPECT_EQ(Parsed("mt=image/jpeg wi=640"),
              (Announced{"item.imageItem", std::string("DLNA.ORG_PN=JPEG_SM;DLNA.ORG_OP=01") + kImageFlags}));
}

TEST(FormatParser, MimeTypeIsTheOneThatTheRuleAnnounces) {
    ScriptedFormat parser(Stating("mt=video/quicktime wi=20 he=10"));
    AwkwardStream stream("some content", Delivery());
    const std::unique_ptr<ezMediaInfo> info(parser.Parse(stream));
    ASSERT_NE(info, nullptr);
    EXPECT_EQ(Str(info->GetCString(kezInfo_MimeType, "")), "image/jpeg");
    EXPECT_EQ(
        AnnouncementOf(*info),
        (Announced{"item.imageItem", std::string("DLNA.ORG_PN=JPEG_MED;DLNA.ORG_OP=01") + kImageFlags}));
    // A record that was announced so keeps its name.
    EXPECT_EQ(Adjusted("mt=image/jpeg wi=700 he=10").mField,
              std::string("DLNA.ORG_PN=JPEG_MED") + kImageFlags);
    // A field that is there was made for the type that is there.
    const std::unique_ptr<ezMediaInfo> announced = RecordOf("mt=video/quicktime wi=20 he=10 dl=*");
    EXPECT_TRUE(parser.AdjustDLNAInfo(announced.get()));
    EXPECT_EQ(Str(announced->GetCString(kezInfo_MimeType, "")), "video/quicktime");
    EXPECT_EQ(AnnouncementOf(*announced), (Announced{"item.videoItem", "*"}));
}

TEST(FormatParser, WithoutAProfileThereAreNoFlags) {
    EXPECT_EQ(Parsed("mt=audio/mpeg ac=3"), (Announced{"item.audioItem", "DLNA.ORG_OP=01"}));
    EXPECT_EQ(Parsed("mt=video/quicktime wi=1"), (Announced{"item.videoItem", "DLNA.ORG_OP=01"}));
    EXPECT_EQ(Parsed("mt=image/jpeg wi=641"), (Announced{"item.imageItem", "DLNA.ORG_OP=01"}));
    EXPECT_EQ(Parsed("mt=image/jpeg"), (Announced{"item.imageItem", "DLNA.ORG_OP=01"}));
}

TEST(FormatParser, MediaOfUnknownSizeIsNotSeekable) {
    EXPECT_EQ(Parsed("mt=audio/mpeg ac=2", false),
              (Announced{"item.audioItem", std::string("DLNA.ORG_PN=MP3") + kStreamFlags}));
    EXPECT_EQ(Parsed("mt=image/jpeg wi=9", false),
              (Announced{"item.imageItem", std::string("DLNA.ORG_PN=JPEG_SM") + kImageFlags}));
    EXPECT_EQ(Parsed("mt=audio/mpeg ac=3", false), (Announced{"item.audioItem", "*"}));
}

TEST(FormatParser, ClassAndFieldThatTheFormatStatesStay) {
    EXPECT_EQ(Parsed("mt=audio/mpeg ac=2 cn=item.audioItem.musicTrack"),
              (Announced{"item.audioItem.musicTrack",
                         std::string("DLNA.ORG_PN=MP3;DLNA.ORG_OP=01") + kStreamFlags}));
    EXPECT_EQ(Parsed("mt=audio/mpeg ac=2 dl=*"), (Announced{"item.audioItem", "*"}));
}

TEST(FormatParser, AdjustCompletesARecordAsAParseWould) {
    EXPECT_EQ(Adjusted("mt=audio/mpeg ac=2 fs=100"), Parsed("mt=audio/mpeg ac=2"));
    EXPECT_EQ(Adjusted("mt=video/mp4 wi=1920 fs=9999999999"), Parsed("mt=video/mp4 wi=1920"));
    EXPECT_EQ(Adjusted("mt=image/jpeg wi=640 fs=1"), Parsed("mt=image/jpeg wi=640"));
    EXPECT_EQ(Adjusted("mt=image/jpeg wi=641 fs=1"), Parsed("mt=image/jpeg wi=641"));
    EXPECT_EQ(Adjusted("mt=audio/mpeg ac=2"), Parsed("mt=audio/mpeg ac=2", false));
    EXPECT_EQ(Adjusted("mt=audio/mpeg ac=2 fs=0"), Parsed("mt=audio/mpeg ac=2", false));
    EXPECT_EQ(Adjusted("mt=audio/mpeg"), (Announced{"item.audioItem", "*"}));
}

TEST(FormatParser, AdjustTakesCaseAndParametersOfTheMimeType) {
    EXPECT_EQ(Adjusted("mt=Audio/MPEG ac=2 fs=1"), Parsed("mt=audio/mpeg ac=2"));
    EXPECT_EQ(Adjusted("mt=VIDEO/mp4;codecs=avc1 wi=1 fs=1"), Parsed("mt=video/mp4 wi=1"));
    ScriptedFormat parser(Stating(""));
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "image/JPEG ; q=1", true);
    EXPECT_TRUE(parser.AdjustDLNAInfo(&info));
    EXPECT_EQ(AnnouncementOf(info), (Announced{"item.imageItem", "*"}));
}

TEST(FormatParser, AdjustKeepsWhatIsThere) {
    EXPECT_EQ(Adjusted("mt=audio/mpeg ac=2 fs=1 cn=item.audioItem.audioBroadcast dl=DLNA.ORG_PN=LPCM"),
              (Announced{"item.audioItem.audioBroadcast", "DLNA.ORG_PN=LPCM"}));
}

TEST(FormatParser, AdjustLeavesRecordsOfOthersAsTheyAre) {
    ScriptedFormat parser(Stating(""));
    EXPECT_FALSE(parser.AdjustDLNAInfo(nullptr));
    for (const char* const record : {"ac=2", "mt=audio/flac ac=2", "mt=audio ac=2", "mt=audio/mp ac=2",
                                     "mt=, ac=2", "mt=audio/mpeg,audio/mp4 ac=2", "mt=; ac=2"}) {
        const std::unique_ptr<ezMediaInfo> info = RecordOf(record);
        const std::string before = Str(info->GetOtherProperties());
        EXPECT_FALSE(parser.AdjustDLNAInfo(info.get())) << record;
        EXPECT_EQ(Str(info->GetOtherProperties()), before);
    }
}

TEST(FormatParser, DeclaresTheProfilesOfItsTypesAndTheTypes) {
    ScriptedFormat parser(Stating(""));
    EXPECT_EQ(
        Str(parser.GetDLNAInfo()),
        "audio/mpeg:DLNA.ORG_PN=MP3,audio/mp4:DLNA.ORG_PN=AAC_ISO,video/mp4:DLNA.ORG_PN=AVC_MP4_HP_HD_AAC,"
        "image/jpeg:DLNA.ORG_PN=JPEG_SM,image/jpeg:DLNA.ORG_PN=JPEG_MED,audio/mpeg:*,audio/mp4:*,video/"
        "mp4:*,image/jpeg:*,video/quicktime:*");
    EXPECT_EQ(Str(parser.GetType()), "scr");
    EXPECT_FALSE(parser.CanExtractCoverArt());
}

TEST(FormatParser, FirstReadIsAtTheStartWhereverTheStreamStands) {
    std::string content(20000, 'x');
    content[0] = 'S';
    AwkwardStream stream(content);
    stream.Seek(9000, ezMediaParserStream::SeekFromStart, true);
    char first = '\0';
    ScriptedFormat parser([&first](MediaBytes& aBytes, ezMediaInfo& anInfo) {
        anInfo.Set(kezInfo_MimeType, "audio/mpeg", true);
        unsigned char byte = 0;
        const bool fRead = aBytes.Get(0, &byte);
        first = static_cast<char>(byte);
        return fRead;
    });
    const std::unique_ptr<ezMediaInfo> info(parser.Parse(stream));
    EXPECT_NE(info, nullptr);
    EXPECT_EQ(first, 'S');
    EXPECT_EQ(stream.GetCosts().mReads, 1U);
    // The stream keeps the start for the next parser.
    EXPECT_TRUE(stream.ReadFrom(0, std::size_t{1}, &first));
    EXPECT_EQ(first, 'S');
    EXPECT_EQ(stream.GetCosts().mReads, 1U);
}

TEST(FormatParser, MediaThatCannotBeReadIsRefusedAndLoggedWithItsCause) {
    const Reading never = [](MediaBytes&, ezMediaInfo&) {
        ADD_FAILURE() << "there is nothing to read";
        return true;
    };
    ScriptedFormat parser(never);
    const LogCatcher log;
    AwkwardStream empty("");
    EXPECT_EQ(parser.Parse(empty), nullptr);
    EXPECT_EQ(log.Texts(), std::vector<std::string>{"ScriptedFormat: malformed: nothing to read\n"});
    Delivery broken;
    broken.mFailingOffset = 0;
    AwkwardStream failing("abc", broken);
    EXPECT_EQ(parser.Parse(failing), nullptr);
    ASSERT_EQ(log.Texts().size(), 2U);
    EXPECT_EQ(log.Texts()[1], "ScriptedFormat: read error: nothing to read\n");
}

TEST(FormatParser, FirstMimeTypeIsStatedWhereTheContentStatesNone) {
    const auto typeOf = [](const char* aFacts) {
        ScriptedFormat parser(Stating(aFacts));
        AwkwardStream stream("abc");
        const Record record(parser.Parse(stream));
        return Str(record->GetCString(kezInfo_MimeType, ""));
    };
    EXPECT_EQ(typeOf("wi=9"), "audio/mpeg");
    EXPECT_EQ(typeOf("mt=video/mp4"), "video/mp4");
}

TEST(FormatParser, RefusedMediaGivesNoRecord) {
    ScriptedFormat parser([](MediaBytes&, ezMediaInfo& anInfo) {
        anInfo.Set(kezInfo_MimeType, "audio/mpeg", true);
        return false;
    });
    AwkwardStream stream("abc");
    EXPECT_EQ(parser.Parse(stream), nullptr);
}

TEST(FormatParser, RefusalIsLoggedForThePersonWhoAsksAlone) {
    const ScriptedFormat parser(Stating(""));
    {
        const LogCatcher log;
        EXPECT_FALSE(parser.Refuse(ScriptedFormat::Cause::Limit, "%d of %s", 7, "those"));
        EXPECT_FALSE(parser.Refuse(ScriptedFormat::Cause::Unsupported, "version %u", 9U));
        EXPECT_EQ(log.Texts(), (std::vector<std::string>{"ScriptedFormat: limit: 7 of those\n",
                                                         "ScriptedFormat: unsupported: version 9\n"}));
    }
    for (const std::size_t size : {kRefusal_MaxText, kRefusal_MaxText + 1}) { // which is cut
        const LogCatcher log;
        EXPECT_FALSE(parser.Refuse(ScriptedFormat::Cause::Malformed, "%s", std::string(size, 'x').c_str()));
        EXPECT_EQ(log.Texts(), (std::vector<std::string>{"ScriptedFormat: malformed: " +
                                                         std::string(kRefusal_MaxText, 'x') + "\n"}));
    }
    const LogCatcher quiet(EZLOGLEVEL_DEBUG);
    EXPECT_FALSE(parser.Refuse(ScriptedFormat::Cause::Limit, "no"));
    EXPECT_TRUE(quiet.Lines().empty());
}
