#include "Announce.h"
#include "ezBytes/Utf8.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <sys/stat.h>
#include <utime.h>
#include <vector>

namespace {

using Json = nlohmann::json;

/// Every line parsed; each must be valid by itself.
std::vector<Json> ObjectsOf(const std::string& aText) {
    std::vector<Json> objects;
    for (const std::string& line : LinesOf(aText)) {
        EXPECT_TRUE(IsWholeUtf8(line));
        objects.push_back(Json::parse(line));
        EXPECT_TRUE(objects.back().is_object());
    }
    return objects;
}

std::string BytesOf(const std::string& aHexText) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < aHexText.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(aHexText.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

} // namespace

TEST(JsonOutput, HasNamedFieldsForAMedia) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("song.mp3", "12345");
    const utimbuf time = {0, 951827696};
    ASSERT_EQ(utime(path.c_str(), &time), 0);
    const ProgramResult result = Announce({"--json", path});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(result.mOut,
              "{\"path\":\"" + path +
                  "\",\"mime_type\":\"audio/mpeg\",\"class\":\"item.audioItem.musicTrack\",\"dlna\":\"*\","
                  "\"protocol_info\":\"http-get:*:audio/mpeg:*\",\"size\":5,\"extension\":\"mp3\","
                  "\"modified\":\"2000-02-29T12:34:56Z\"}\n");
}

TEST(JsonOutput, NamesWhatIsKnownOfLpcmAndKeepsDerivedRatesApart) {
    const ProgramResult result = Announce({"--json", "--ctt", "1", EZ_SAMPLES "/conformance/B-LPCM-2.pcm"});
    const std::vector<Json> objects = ObjectsOf(result.mOut);
    ASSERT_EQ(objects.size(), 1U);
    Json media = objects[0];
    media.erase("path");
    media.erase("modified");
    EXPECT_EQ(media, Json::parse(R"({"mime_type": "audio/L16;rate=44100;channels=2",
        "class": "item.audioItem", "dlna": "DLNA.ORG_PN=LPCM",
        "protocol_info": "http-get:*:audio/L16;rate=44100;channels=2:DLNA.ORG_PN=LPCM",
        "size": 176400, "extension": "pcm", "duration": 1, "duration_ms": 1000, "audio_tracks": 1, "audio_codec": "LPCM",
        "sampling_rate": 44100, "channels": 2, "bits_per_sample": 16,
        "values": {"br": 44100, "mb": 44100, "eb": 44100, "ma": 44100, "ea": 44100}})"));
}

TEST(JsonOutput, HasNullsForAMediaThatIsNotRecognised) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("letter.unheard", "hello");
    const ProgramResult result = Announce({"--json", path});
    EXPECT_EQ(result.mStatus, 1);
    const std::vector<Json> objects = ObjectsOf(result.mOut);
    ASSERT_EQ(objects.size(), 1U);
    for (const char* name : {"mime_type", "class", "dlna", "protocol_info"}) {
        ASSERT_TRUE(objects[0].contains(name)) << name;
        EXPECT_TRUE(objects[0][name].is_null()) << name;
    }
    EXPECT_EQ(objects[0]["path"], path);
    EXPECT_EQ(objects[0]["size"], 5);
    EXPECT_EQ(objects[0]["extension"], "unheard");
}

TEST(JsonOutput, IsValidUtf8AndNamesTheBytesWhateverTheNameHolds) {
    const std::set<std::string> names = {"two words.mp3",
                                         "quote\"d.mp3",
                                         "back\\slash.mp3",
                                         "line\nbreak.mp3",
                                         "\x01\x1B\x7F.mp3",
                                         "latin\xE9.mp3",
                                         "\xFF\xFE\xC0\x80.mp3",
                                         "cut\xE2\x82.mp3",
                                         "surrogate\xED\xA0\x80.mp3",
                                         "separator\xE2\x80\xA8.mp3",
                                         "\xF0\x9F\x8E\xB5.mp3",
                                         std::string(251, '\xE9') + ".mp3"};
    const TemporaryFolder folder;
    for (const std::string& name : names) {
        folder.Write(name, "");
    }
    const ProgramResult result = Announce({"--json", folder.GetPath()});
    EXPECT_EQ(result.mStatus, 0);
    std::set<std::string> found;
    for (const Json& media : ObjectsOf(result.mOut)) {
        EXPECT_EQ(media["mime_type"], "audio/mpeg");
        const std::string path = media["path"];
        const bool fBytes = media.contains("path_bytes");
        EXPECT_EQ(fBytes, path.find("\xEF\xBF\xBD") != std::string::npos) << path;
        const std::string bytes = fBytes ? BytesOf(media["path_bytes"]) : path;
        found.insert(bytes.substr(folder.GetPath().size() + 1));
    }
    EXPECT_EQ(found, names);
}

namespace {

/// DEL, a C1 control, a turned direction, a separator and a tag character: a name of a file, an entry of a
/// playlist and a line of the media mapper may hold any.
const std::string kSteering = "a\x7F\xC2\x80\xC2\x9B[2J\xC2\x9F\xE2\x80\xAE\xEF\xBB\xBF\xF3\xA0\x80\x81z.mp3";
constexpr const char* kSteeringEscaped = R"(a\u007f\u0080\u009b[2J\u009f\u202e\ufeff\udb40\udc01z.mp3)";

} // namespace

TEST(JsonOutput, OfEveryVerbEscapesWhatATerminalObeys) {
    const TemporaryFolder folder;
    const std::string song = folder.Write(kSteering, "");
    const std::string list = folder.Write("list.m3u", "#EXTINF:1," + kSteering + "\n" + kSteering + "\n");
    folder.Write("mediaCTRLMediaTypes.ini", "[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem\n");
    folder.Write("MediaMapper.txt", kSteering + ",audio/mpeg," + kSteering + "\n");
    struct {
        std::vector<std::string> mWords;
        int mStatus;
    } const table[] = {
        {{song}, 0},
        {{"--explain", song}, 0},
        {{"--es", song}, 1},
        {{"mapper", "list", "--no-copy"}, 0},
        {{"mapper", "show", "--no-copy", kSteering}, 0},
        {{"mapper", "profiles", "--no-copy"}, 0},
        {{"playlist", list}, 0},
    };
    for (const auto& row : table) {
        std::vector<std::string> words = {"--config", folder.GetPath(), "--json"};
        words.insert(words.end(), row.mWords.begin(), row.mWords.end());
        const ProgramResult result = RunTool(words);
        EXPECT_EQ(result.mStatus, row.mStatus) << row.mWords[0] << result.mError;
        EXPECT_NE(result.mOut.find(kSteeringEscaped), std::string::npos) << row.mWords[0] << result.mOut;
        for (const Json& object : ObjectsOf(result.mOut)) {
            EXPECT_NE(object.dump().find(kSteering), std::string::npos) << row.mWords[0];
        }
    }
}

TEST(JsonOutput, HasTheSubtitlesNextToAFilm) {
    const TemporaryFolder folder;
    const std::string film = folder.Write("Film.mp4", ReadWholeFile(EZ_SAMPLES "/video/kite-day.mp4"));
    const std::string song = folder.Write("Song.mp3", "12345");
    const std::string cue = "1\n00:00:28,050 --> 00:00:30,550\n";
    const std::string russian = folder.Write("Film.ru.forced.srt", cue + "\xCF\xF0");
    const std::string index =
        folder.Write("Film.idx", "# VobSub index file\nid: en, index: 0\nid: de, index: 1\n");
    const std::string pictures = folder.Write("Film.sub", std::string("\0\0\1\xBA", 4));
    const std::string odd = folder.Write("Film.\xFF.srt", cue);
    folder.Write("Song.srt", cue);
    const ProgramResult result = Announce({"--json", "--code-page", "1251", film, song});
    const std::vector<Json> objects = ObjectsOf(result.mOut);
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_FALSE(objects[1].contains("subtitle_files"));
    EXPECT_EQ(objects[0]["subtitle_files_whole"], true);
    const Json& files = objects[0]["subtitle_files"];
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files[0], Json({{"path", index},
                              {"kind", "idx"},
                              {"mime_types", Json::array()},
                              {"languages", {"en", "de"}},
                              {"encoding", nullptr},
                              {"forced", false},
                              {"hearing_impaired", false},
                              {"default", false},
                              {"pictures", pictures}}));
    EXPECT_EQ(files[1], Json({{"path", russian},
                              {"kind", "srt"},
                              {"mime_types", {"application/x-subrip", "text/srt", "smi/caption"}},
                              {"languages", {"ru"}},
                              {"encoding", "windows-1251"},
                              {"forced", true},
                              {"hearing_impaired", false},
                              {"default", false}}));
    EXPECT_EQ(BytesOf(files[2]["path_bytes"]), odd);
    EXPECT_EQ(files[2]["title"], "\xD1\x8F");                           // by the code page
    for (const char* name : {"SUBS", "SUBs", "SUbs", "Subs", "subs"}) { // more than are looked into
        folder.MakeFolder(name);
    }
    EXPECT_EQ(ObjectsOf(Announce({"--json", film}).mOut).at(0)["subtitle_files_whole"], false);
}

TEST(JsonOutput, LeavesOutWhatCannotBeReadAndGoesOn) {
    const TemporaryFolder folder;
    const std::string song = folder.Write("song.mp3", "");
    const ProgramResult result = Announce({"--json", folder.Path("none"), song});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: " + folder.Path("none") + ": No such file or directory\n");
    const std::vector<Json> objects = ObjectsOf(result.mOut);
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0]["path"], song);
}

TEST(JsonOutput, OfEverySampleParses) {
    for (const char* context : {"0", "1", "2"}) {
        const ProgramResult result = Announce({"--json", "--explain", "--ctt", context, EZ_SAMPLES});
        EXPECT_EQ(result.mStatus, 0);
        const std::vector<Json> objects = ObjectsOf(result.mOut);
        EXPECT_GE(objects.size(), 27U);
        for (const Json& media : objects) {
            // Every fact that is shown has its source.
            const Json& facts = media["explain"]["facts"];
            for (const auto& item : media.items()) {
                const std::set<std::string> own = {
                    "path",           "protocol_info",       "values", "explain", "dlna",
                    "subtitle_files", "subtitle_files_whole"};
                if (!media["mime_type"].is_null() && own.count(item.key()) == 0) {
                    EXPECT_TRUE(facts.contains(item.key())) << item.key();
                }
            }
        }
    }
}
