#include "Announce.h"
#include "support/TemporaryFolder.h"

#include "ezPlatform/dlna/ProtocolInfo.h"
#include "ezPlatform/text/CString.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;
using Lines = std::vector<std::string>;

/// The samples and their media mapper, of which nothing is copied.
ProgramResult WithMapper(Lines aWords) {
    aWords.insert(aWords.begin(), {"--mapper", "--no-copy"});
    ProgramOptions options;
    options.mFolder = EZ_SAMPLES;
    return Announce(std::move(aWords), options);
}

std::string WithoutModified(std::string aText) {
    const std::size_t modified = aText.find("  modified");
    return modified == std::string::npos ? aText
                                         : aText.erase(modified, aText.find('\n', modified) + 1 - modified);
}

} // namespace

TEST(MapperInForce, ExplainsWhatItReplacedByWhat) {
    const ProgramResult result = WithMapper({"--explain", "pictures/windmill.gif"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(WithoutModified(result.mOut),
              "pictures/windmill.gif\n"
              "  MIME type        image/gif                         entry \"gif\" of the media types file\n"
              "  class            item.imageItem.photo              entry \"gif\" of the media types file\n"
              "  DLNA             DLNA.ORG_PN=GIF_LRG               media mapper: * -> DLNA.ORG_PN=GIF_LRG\n"
              "  size             8.6 KiB                           stream\n"
              "  extension        gif                               entry \"gif\" of the media types file\n"
              "  entries          gif\n"
              "  tried            * (ezMimeTypesDotIniParser): answered\n"
              "                     gif: there is no such parser\n"
              "                     any (MagicParser): declined, no reason given\n");
}

TEST(MapperInForce, KeepsWhatAFormatParserFoundBesideTheFactsOfTheTable) {
    const Lines lines = LinesOf(WithMapper({"--explain", "music/uneven-road-vbr.mp3"}).mOut);
    const std::set<std::string> expected = {
        "  DLNA             DLNA.ORG_PN=MP3X                  media mapper: "
        "DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;DLNA.ORG_FLAGS=01500000000000000000000000000000 -> DLNA.ORG_PN=MP3X",
        "  duration         0:00:04                           media mapper: 0:00:03.100 -> 0:00:04",
        "  milliseconds     -                                 media mapper: 3100 -> nothing",
        "  duration from    -                                 media mapper: header -> nothing",
        "  bit rate         64 kbit/s                         media mapper: variable -> 64 kbit/s",
        "  max. audio rate  320 kbit/s                        parser mp3 (MPEGAudioParser)",
        "  title            Uneven Road                       parser mp3 (MPEGAudioParser)"};
    for (const std::string& line : expected) {
        EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1) << line;
    }
}

TEST(MapperInForce, ShowsTheOverridingFactsInTheTable) {
    const ProgramResult result = WithMapper({"--wide", "music/morning-walk.mp3", "conformance/B-LPCM-2.pcm"});
    const Lines lines = LinesOf(result.mOut);
    ASSERT_EQ(lines.size(), 3U);
    // The parser had found the profile and the rate too, and more of the 4th field.
    EXPECT_NE(lines[1].find("DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;DLNA.ORG_FLAGS="), std::string::npos);
    EXPECT_NE(lines[1].find("  0:00:06, 48 kbit/s, MP3, 44.1 kHz, 2 channels, "), std::string::npos);
    EXPECT_NE((lines[1] + "\n").find("; media mapper: duration\n"), std::string::npos);
    EXPECT_NE(lines[2].find("audio/L16;rate=44100;channels=2"), std::string::npos);
    EXPECT_NE(lines[2].find("0:00:01, 44.1 kHz, 2 channels, 16 bit; media mapper: MIME type, class, DLNA, "
                            "duration, channels, sampling rate, bits per sample"),
              std::string::npos);
}

TEST(MapperInForce, ShowsOldAndNewInJson) {
    const ProgramResult result = WithMapper({"--json", "--ctt", "2", "conformance/B-LPCM-2.pcm",
                                             "conformance/B-WAB-1.wma", "conformance/MPEG_PS_PAL-1.mpg"});
    const Lines lines = LinesOf(result.mOut);
    ASSERT_EQ(lines.size(), 3U);
    const Json lpcm = Json::parse(lines[0]);
    EXPECT_EQ(lpcm["media_mapper"]["file_name"], "B-LPCM-2.pcm");
    EXPECT_EQ(lpcm["media_mapper"]["profile"], "LPCM");
    EXPECT_EQ(lpcm["sampling_rate"], 44100);
    // The parser had found the same, so the table overrode nothing but confirmed it.
    EXPECT_EQ(lpcm["media_mapper"]["overrode"], Json::object());
    EXPECT_TRUE(Json::parse(lines[1])["media_mapper"].is_null());
    const Json film = Json::parse(lines[2]);
    EXPECT_EQ(film["bit_rate"], 9800000);
    EXPECT_TRUE(film["media_mapper"]["overrode"]["bit_rate"]["old"].is_null());
    EXPECT_EQ(film["media_mapper"]["overrode"]["bit_rate"]["new"], 9800000);
}

TEST(MapperInForce, IsNotNamedWhereItWasNotAskedFor) {
    const Json media = Json::parse(Announce({"--json", EZ_SAMPLES "/pictures/windmill.gif"}).mOut);
    EXPECT_FALSE(media.contains("media_mapper"));
    EXPECT_EQ(media["dlna"], "*");
}

TEST(MapperInForce, ReplacesAndTakesAwayWhatAParserFound) {
    const TemporaryFolder folder;
    folder.Write("mediaCTRLMediaTypes.ini",
                 "[MimeTypes]\nlpcm=pcm@audio/L16@item.audioItem\nmp3=mp3@audio/mpeg@item.audioItem\n");
    folder.Write("MediaMapper.txt", "B-LPCM-2.pcm,Audio/L16;rate=8000,LPCM,0:00:09,,,64000\n");
    const std::string media = folder.Write("B-LPCM-2.pcm", std::string(176400, '\0'));
    const ProgramResult result = RunTool(
        {"--mapper", "--no-copy", "--json", "--explain", "--ctt", "2", "--config", folder.GetPath(), media});
    const Json object = Json::parse(result.mOut);
    const Json& overrode = object["media_mapper"]["overrode"];
    EXPECT_EQ(overrode["mime_type"],
              Json::parse(R"({"old": "audio/L16;rate=44100;channels=2", "new": "Audio/L16;rate=8000"})"));
    // With an upper-case first letter the table knows no class, and empties the one that there was.
    EXPECT_EQ(overrode["class"], Json::parse(R"({"old": "item.audioItem", "new": null})"));
    EXPECT_EQ(overrode["channels"], Json::parse(R"({"old": 2, "new": null})"));
    EXPECT_EQ(overrode["sampling_rate"], Json::parse(R"({"old": 44100, "new": 8000})"));
    EXPECT_EQ(overrode["duration"], Json::parse(R"({"old": 1, "new": 9})"));
    EXPECT_FALSE(overrode.contains("dlna"));
    EXPECT_FALSE(overrode.contains("bits_per_sample"));
    EXPECT_EQ(object["explain"]["facts"]["duration"]["source"], "media-mapper");
    EXPECT_EQ(object["explain"]["facts"]["duration"]["detail"], "0:00:01.000 -> 0:00:09");
    EXPECT_EQ(object["explain"]["facts"]["bits_per_sample"]["source"], "file-name");

    const std::string text =
        RunTool({"--mapper", "--no-copy", "--explain", "--ctt", "2", "--config", folder.GetPath(), media})
            .mOut;
    EXPECT_NE(text.find("  channels         -                                 media mapper: 2 -> nothing\n"),
              std::string::npos);
}

TEST(MapperInForce, AnnouncesAFileThatNoParserKnows) {
    const TemporaryFolder folder;
    // Published without a MIME type: the table finds the name, and nothing else can tell what it is.
    folder.Write("mediaCTRLMediaTypes.ini", "[MimeTypes]\nodd=odd\n");
    folder.Write("MediaMapper.txt", "clip.odd,video/odd,ODD_P,0:00:05\n");
    const std::string media = folder.Write("clip.odd", "");
    EXPECT_EQ(RunTool({"--config", folder.GetPath(), media}).mStatus, 1);
    const ProgramResult result =
        RunTool({"--mapper", "--no-copy", "--json", "--config", folder.GetPath(), media});
    EXPECT_EQ(result.mStatus, 0);
    const Json object = Json::parse(result.mOut);
    EXPECT_EQ(object["protocol_info"], "http-get:*:video/odd:DLNA.ORG_PN=ODD_P");
    EXPECT_EQ(object["media_mapper"]["overrode"], Json::parse(R"({
        "mime_type": {"old": null, "new": "video/odd"}, "class": {"old": null, "new": "item.videoItem"},
        "dlna": {"old": null, "new": "DLNA.ORG_PN=ODD_P"}, "duration": {"old": null, "new": 5}})"));
}

TEST(Capabilities, WithAMapperEndWithItsEnabledProfiles) {
    const Lines with = LinesOf(WithMapper({"capabilities"}).mOut);
    const Lines without = LinesOf(Announce({"capabilities"}).mOut);
    ASSERT_EQ(with.size(), without.size() + 4);
    EXPECT_EQ(Lines(with.begin(), with.end() - 4), without);
    EXPECT_EQ(Lines(with.end() - 4, with.end()),
              (Lines{"http-get:*:image/gif:DLNA.ORG_PN=GIF_LRG",
                     "http-get:*:audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM",
                     "http-get:*:audio/mpeg:DLNA.ORG_PN=MP3",
                     "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_PS=-2,2,4"}));
}

TEST(Capabilities, InLinkProtectedFormAreTheSameOnesWellFormed) {
    const std::regex form(
        R"re(http-get:\*:application/x-dtcp1;CONTENTFORMAT="((?:[^"\\]|\\.)*)":(\*|DLNA\.ORG_PN=DTCP_.+))re");
    for (const char* context : {"0", "1"}) {
        const Lines plain = LinesOf(WithMapper({"capabilities", "--ctt", context}).mOut);
        const Lines dtcp = LinesOf(WithMapper({"capabilities", "--dtcp", "--ctt", context}).mOut);
        ASSERT_EQ(dtcp.size(), plain.size());
        for (std::size_t i = 0; i < dtcp.size(); ++i) {
            std::smatch match;
            ASSERT_TRUE(std::regex_match(dtcp[i], match, form)) << dtcp[i];
            EXPECT_EQ(plain[i].find("http-get:*:" + match[1].str()), 0U) << plain[i];
            EXPECT_EQ(dtcp[i].find("DTCP_DTCP_"), std::string::npos);
            // Made link-protected once more it stays as it is.
            ezDLNAProtocolInfo* info = ezDLNAProtocolInfo_New(dtcp[i].c_str(), 0, 0);
            ezDLNAProtocolInfo_SetDTCPIP(info, nullptr, 0, 1);
            EXPECT_EQ(ezCString::FromAllocatedString(ezDLNAProtocolInfo_GetStr(info)).View(), dtcp[i]);
            ezDLNAProtocolInfo_Delete(info);
        }
    }
    EXPECT_EQ(LinesOf(WithMapper({"capabilities", "--dtcp"}).mOut).back(),
              R"(http-get:*:application/x-dtcp1;CONTENTFORMAT="video/mpeg":)"
              R"(DLNA.ORG_PN=DTCP_MPEG_PS_PAL;DLNA.ORG_PS=-2,2,4)");
}
