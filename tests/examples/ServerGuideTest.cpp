#include "support/Guide.h"
#include "support/HttpServer.h"
#include "support/RunProgram.h"
#include "support/Settled.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

// The hosts of docs/writing-a-server.md, step by step.

namespace {

using namespace std::string_literals;
using Words = std::vector<std::string>;

const std::string kSamples = EZ_SAMPLES;
const std::string kWater = kSamples + "/music/plain-water.flac";
const std::string kWalk = kSamples + "/music/morning-walk.mp3";
const std::string kBell = kSamples + "/music/door-bell.wav";

const std::string kFake = "no song at all, whatever its name says";

/// What the parsers of the companion say of kWalk.
const std::string kWalkFacts =
    " mt=audio/mpeg cn=item.audioItem.musicTrack dl=DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;"
    "DLNA.ORG_FLAGS=01500000000000000000000000000000";

ProgramResult RunStep(const std::string& aName, const Words& anArguments) {
    return RunProgram(EZ_STEPS "/server-step-" + aName, anArguments);
}

/// The lines that a step prints, and nothing else: no error and success.
Words LinesOfStep(const std::string& aName, const Words& anArguments) {
    const ProgramResult result = RunStep(aName, anArguments);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    return LinesOf(result.mOut);
}

/// Whether a line begins with a text.
bool Begins(const std::string& aLine, const std::string& aText) {
    return aLine.compare(0, aText.size(), aText) == 0;
}

/// A line that begins with the path of a file, with the name of the file alone.
std::string FileName(const std::string& aLine) {
    return aLine.substr(aLine.rfind('/', aLine.find(": ")) + 1);
}

/// A text with its flags as the guide has them: after the first four digits nothing follows but 0.
[[maybe_unused]] std::string Shortened(std::string aText) {
    const std::string flags = "DLNA.ORG_FLAGS=0150";
    const std::string zeros(28, '0');
    const std::size_t at = aText.find(flags + zeros);
    return at == std::string::npos ? aText : aText.replace(at + flags.size(), zeros.size(), "...");
}

/// What a guide shows indented by four, outside of fences: each block as one line.
Words IndentedBlocks(const std::string& aGuide) {
    Words blocks;
    bool fFenced = false;
    bool fWithin = false;
    for (const std::string& line : LinesOf(aGuide)) {
        fFenced = fFenced != Begins(line, "```");
        const bool fShown = !fFenced && Begins(line, "    ");
        if (fShown && fWithin) {
            blocks.back() += " " + line.substr(4);
        } else if (fShown) {
            blocks.push_back(line.substr(4));
        }
        fWithin = fShown;
    }
    return blocks;
}

/// A FLAC as far as its parser looks: 44100 Hz, two channels of 16 bits.
std::string FlacOf(std::uint32_t aSamples) {
    std::string head = "fLaC\x80\0\0\x22"s + std::string(10, '\0') + "\x0A\xC4\x42\xF0"s;
    for (unsigned shift = 32; shift > 0;) {
        shift -= 8;
        head.push_back(static_cast<char>(aSamples >> shift & 0xFF));
    }
    return head + std::string(16, '\0');
}

} // namespace

TEST(ServerGuide, Step1KnowsFilesByTheirExtension) {
    const std::string readme = kSamples + "/README.md";
    EXPECT_EQ(LinesOfStep("1-identify", {kSamples, kWater, kWalk, readme, "/nowhere.mp3"}),
              (Words{kWater + ": mt=audio/flac cn=item.audioItem.musicTrack",
                     kWalk + ": mt=audio/mpeg cn=item.audioItem.musicTrack", readme + ": not recognised",
                     "/nowhere.mp3: not recognised"}));
}

TEST(ServerGuide, Step2LooksIntoTheFilesOfItsOwnFormat) {
    const TemporaryFolder folder;
    const std::string minute = folder.Write("minute.flac", FlacOf(60 * 44100 + 44099));
    const std::string unknown = folder.Write("unknown.flac", FlacOf(0));
    std::string still = FlacOf(44100);
    std::fill(still.begin() + 18, still.begin() + 21, '\0'); // 0 Hz
    const std::string silent = folder.Write("silent.flac", still);
    const std::string brief = folder.Write("brief.flac", FlacOf(44100).substr(0, 25));
    const std::string other = folder.Write("other.flac", "OggS" + FlacOf(44100).substr(4));
    const std::string plain = " mt=audio/flac cn=item.audioItem.musicTrack";
    EXPECT_EQ(
        LinesOfStep("2-own-parser", {kSamples, kWater, minute, unknown, silent, brief, other, kWalk}),
        (Words{kWater + ":" + plain + " du=2 sf=44100 ac=2", minute + ":" + plain + " du=60 sf=44100 ac=2",
               unknown + ":" + plain + " sf=44100 ac=2", silent + ":" + plain, brief + ":" + plain,
               other + ":" + plain, kWalk + ": mt=audio/mpeg cn=item.audioItem.musicTrack"}));
}

#ifdef EZ_HAS_STEP_3
TEST(ServerGuide, Step3FindsProfilesByTheContent) {
    const TemporaryFolder folder;
    const std::string jpeg = kSamples + "/pictures/harbour.jpg";
    const std::string png = kSamples + "/pictures/harbour.png";
    const std::string fake = folder.Write("fake.mp3", kFake);
    const Words lines = LinesOfStep("3-format-parsers", {kSamples, kWater, kWalk, jpeg, png, fake});
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0], kWater + ": mt=audio/flac cn=item.audioItem.musicTrack du=2 sf=44100 ac=2");
    EXPECT_TRUE(Begins(lines[1], kWalk + ":" + kWalkFacts + " ")) << lines[1];
    EXPECT_EQ(lines[2], jpeg +
                            ": mt=image/jpeg cn=item.imageItem.photo dl=DLNA.ORG_PN=JPEG_SM;DLNA.ORG_OP=01;"
                            "DLNA.ORG_FLAGS=00D00000000000000000000000000000");
    EXPECT_EQ(lines[3], png + ": mt=image/png cn=item.imageItem.photo dl=DLNA.ORG_PN=PNG_LRG;DLNA.ORG_OP=01;"
                              "DLNA.ORG_FLAGS=00D00000000000000000000000000000");
    EXPECT_EQ(lines[4], "  no mp3: no frames within 65536 bytes of 0");
    EXPECT_EQ(lines[5], "  known by its name alone");
    EXPECT_EQ(lines[6], fake + ": mt=audio/mpeg cn=item.audioItem.musicTrack");
}
#endif

#ifdef EZ_HAS_STEP_4
TEST(ServerGuide, Step4LetsTheTableWin) {
    const TemporaryFolder folder;
    const std::string config = folder.Path("config");
    folder.Write("config/mediaCTRLMediaTypes.ini", ReadWholeFile(kSamples + "/mediaCTRLMediaTypes.ini"));
    folder.Write("config/MediaMapper.txt", "night.bin.flac,audio/x-night,NIGHT,0:02:05\n");
    const std::string night = folder.Write("night.bin.flac", "nothing that a parser knows");
    const Words arguments = {config, folder.Path("state"), night, kWater};
    const Words expected = {night + ": mt=audio/x-night cn=item.audioItem dl=DLNA.ORG_PN=NIGHT du=125",
                            kWater + ": mt=audio/flac cn=item.audioItem.musicTrack du=2 sf=44100 ac=2"};
    EXPECT_EQ(LinesOfStep("4-media-mapper", arguments), expected);
    const std::string copy =
        ReadWholeFile(folder.Path("state/_MediaMapper.txt")); // the operator's from here on
    EXPECT_NE(copy.find("\nnight.bin.flac,audio/x-night,NIGHT,0:02:05,"), std::string::npos) << copy;
    folder.Write("config/MediaMapper.txt", "");
    EXPECT_EQ(LinesOfStep("4-media-mapper", arguments), expected);
}

TEST(ServerGuide, Step4GoesOnWithoutATable) {
    const TemporaryFolder folder;
    const std::string config = folder.Path("config");
    folder.Write("config/mediaCTRLMediaTypes.ini", ReadWholeFile(kSamples + "/mediaCTRLMediaTypes.ini"));
    const ProgramResult result = RunStep("4-media-mapper", {config, folder.Path("state"), kWater});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_NE(result.mError.find("\nno media mapper: Unable to open media mapper file: '" +
                                 folder.Path("state/_MediaMapper.txt") + "'\n"),
              std::string::npos)
        << result.mError; // after what the library logs
    EXPECT_EQ(result.mOut, kWater + ": mt=audio/flac cn=item.audioItem.musicTrack du=2 sf=44100 ac=2\n");
    EXPECT_EQ(RunStep("4-media-mapper", {config}).mStatus, 2);
}
#endif

#ifdef EZ_HAS_STEP_5
TEST(ServerGuide, Step5ShowsEntriesAndIdentifiesThoseOfItsFolder) {
    const std::string sunday = kSamples + "/playlists/sunday.m3u";
    const Words lines = LinesOfStep("5-playlists", {kSamples, kSamples + "/music", sunday});
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[0], "The Test Tones - Morning Walk, file://" + kWalk);
    EXPECT_TRUE(Begins(lines[1], "  ours:" + kWalkFacts + " ")) << lines[1];
    EXPECT_EQ(lines[2], "The Test Tones - Plain Water, file://" + kWater);
    EXPECT_EQ(lines[3], "  ours: mt=audio/flac cn=item.audioItem.musicTrack du=2 sf=44100 ac=2");
    EXPECT_EQ(lines[4], "Radio Example, http://radio.example/live.mp3");
    EXPECT_EQ(lines[5], "  not ours");
}

TEST(ServerGuide, Step5ServesNothingOutsideOfItsFolder) {
    const TemporaryFolder folder;
    const std::string media = folder.Path("media");
    const std::string song = folder.Write("media/song.flac", FlacOf(44100));
    const std::string secret = folder.Write("media-secret/song.flac", FlacOf(44100));
    std::filesystem::create_symlink(secret, media + "/link.flac");
    const std::string list = folder.Write("media/all.m3u", "song.flac\n../media-secret/song.flac\n" + secret +
                                                               "\nlink.flac\nfile://" + secret +
                                                               "\nnowhere.flac\n\nfile://" + song + "\n");
    const Words lines = LinesOfStep("5-playlists", {kSamples, media, list});
    Words answers;
    for (std::size_t i = 1; i < lines.size(); i += 2) {
        answers.push_back(lines[i]);
    }
    const std::string ours = "  ours: mt=audio/flac cn=item.audioItem.musicTrack du=1 sf=44100 ac=2";
    const std::string notOurs = "  not ours";
    EXPECT_EQ(answers, (Words{ours, notOurs, notOurs, notOurs, notOurs, notOurs, ours}));
    const Words without = LinesOfStep("5-playlists", {kSamples, folder.Path("none"), list});
    ASSERT_EQ(without.size(), 14U);
    EXPECT_EQ(without[1], notOurs);
}

TEST(ServerGuide, Step5KnowsItsOwnPlaylistsBesideThoseOfTheCompanion) {
    const TemporaryFolder folder;
    const std::string song = folder.Write("song.flac", FlacOf(44100));
    const std::string own = folder.Write("own.lst", "#Mine\nsong.flac\n");
    EXPECT_EQ(LinesOfStep("5-playlists", {kSamples, folder.GetPath(), own, song, "/nowhere.m3u"}),
              (Words{"Mine, file://" + song,
                     "  ours: mt=audio/flac cn=item.audioItem.musicTrack du=1 sf=44100 ac=2",
                     song + ": no playlist", "/nowhere.m3u: no playlist"}));
}
#endif

#ifdef EZ_HAS_STEP_6
TEST(ServerGuide, Step6MakesAThumbnailAndThenTakesItFromTheCache) {
    const TemporaryFolder folder;
    const std::string out = folder.Path("out.jpg");
    const std::string photo = folder.Write("photo.jpg", ReadWholeFile(kSamples + "/pictures/harbour.jpg"));
    const Words arguments = {kSamples, folder.Path("cache"), photo, out};
    WaitUntilSettled(folder.GetPath()); // or nothing would come from the cache
    EXPECT_EQ(LinesOfStep("6-thumbnails", arguments),
              Words{photo + ": http-get:*:image/jpeg:DLNA.ORG_PN=JPEG_TN;DLNA.ORG_OP=01;DLNA.ORG_CI=1;"
                            "DLNA.ORG_FLAGS=04F00000000000000000000000000000"});
    EXPECT_TRUE(Begins(ReadWholeFile(out), "\xFF\xD8\xFF"));
    Words kept;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path("cache/ezcache"))) {
        kept.push_back(entry.path().filename().string());
    }
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(ReadWholeFile(folder.Path("cache/ezcache/" + kept[0])), ReadWholeFile(out));
    folder.Write("cache/ezcache/" + kept[0], "from the cache");
    LinesOfStep("6-thumbnails", arguments);
    EXPECT_EQ(ReadWholeFile(out), "from the cache");
    folder.Write("photo.jpg", ReadWholeFile(kSamples + "/conformance/B-JPEG_S-1.jpg")); // another picture
    LinesOfStep("6-thumbnails", arguments);
    EXPECT_TRUE(Begins(ReadWholeFile(out), "\xFF\xD8\xFF"));
}

TEST(ServerGuide, Step6HasAPictureForSongsAndNoneForWhatIsNoMedia) {
    const TemporaryFolder folder;
    const std::string out = folder.Path("out.jpg");
    LinesOfStep("6-thumbnails", {kSamples, folder.Path("cache"), kBell, out});
    EXPECT_TRUE(Begins(ReadWholeFile(out), "\xFF\xD8\xFF"));
    const std::string letter = folder.Write("letter.txt", "hello");
    const ProgramResult result = RunStep("6-thumbnails", {kSamples, folder.Path("cache"), letter, out});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, letter + ": no thumbnail\n");
    EXPECT_EQ(RunStep("6-thumbnails", {kSamples}).mStatus, 2);
}
#endif

#ifdef EZ_HAS_STEP_7
TEST(ServerGuide, Step7ReadsAMediaOfAWebServerLikeAFile) {
    HttpMedia media;
    media.mBytes = FlacOf(90 * 44100);
    const HttpServer server(Serving(media));
    const std::string url = server.URL("/song.flac");
    EXPECT_EQ(LinesOfStep("7-arriving-media", {kSamples, url}),
              Words{url + ": mt=audio/flac cn=item.audioItem.musicTrack du=90 sf=44100 ac=2"});
}

TEST(ServerGuide, Step7SaysWhyAWebServerGaveNothing) {
    const HttpServer server([](const HttpRequest&, HttpConnection& aConnection) {
        aConnection.Send(HttpHead("404 Not Found", "Content-Length: 0\r\n"));
    });
    const std::string url = server.URL("/song.flac");
    const ProgramResult result = RunStep("7-arriving-media", {kSamples, url});
    EXPECT_EQ(result.mOut, url + ": not recognised\n");
    EXPECT_TRUE(Begins(result.mError, url + ": ")) << result.mError;
    EXPECT_NE(result.mError.find("404"), std::string::npos) << result.mError;
}

TEST(ServerGuide, Step7LetsTheFormatsRaceOnABroadcast) {
    const std::string corners = kSamples + "/elementary/six-corners.ac3";
    const std::string list = kSamples + "/playlists/sunday.m3u";
    EXPECT_EQ(LinesOfStep("7-arriving-media", {kSamples, corners, list, "/nowhere.ac3"}),
              (Words{corners + ": ac=6, ar=384000, ca=AC3, sf=48000, ta=1", list + ": not recognised"}));
}
#endif

#ifdef EZ_HAS_STEP_8
TEST(ServerGuide, Step8StatesWhatTheServerServesEachOnce) {
    Words lines = LinesOfStep("8-announcing", {kSamples, "http://192.0.2.1:8200/media"});
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "http-get:*:audio/flac:*");
    for (const char* wanted :
         {"http-get:*:audio/mpeg:DLNA.ORG_PN=MP3", "http-get:*:image/jpeg:DLNA.ORG_PN=JPEG_SM",
          "http-get:*:image/png:DLNA.ORG_PN=PNG_LRG"}) {
        EXPECT_NE(std::find(lines.begin(), lines.end(), wanted), lines.end()) << wanted;
    }
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(std::adjacent_find(lines.begin(), lines.end()), lines.end());
}

TEST(ServerGuide, Step8WritesTheResElementOfEachMedia) {
    const TemporaryFolder folder;
    const std::string minute = folder.Write("minute.flac", FlacOf(3661 * 44100));
    const std::string jpeg = kSamples + "/pictures/harbour.jpg";
    Words lines =
        LinesOfStep("8-announcing", {kSamples, "http://192.0.2.1/m?a&\"<", minute, "/nowhere", kWalk, jpeg});
    ASSERT_GE(lines.size(), 3U);
    lines.erase(lines.begin(), lines.end() - 3);
    const std::string base = ">http://192.0.2.1/m?a&amp;&quot;&lt;/";
    EXPECT_EQ(
        lines,
        (Words{"<res protocolInfo=\"http-get:*:audio/flac:*\" size=\"42\" duration=\"1:01:01.000\" "
               "sampleFrequency=\"44100\" nrAudioChannels=\"2\"" +
                   base + "1.flac</res>",
               "<res protocolInfo=\"http-get:*:audio/mpeg:DLNA.ORG_PN=MP3;DLNA.ORG_OP=01;"
               "DLNA.ORG_FLAGS=01500000000000000000000000000000\" size=\"32309\" duration=\"0:00:05.300\" "
               "bitrate=\"6000\" "
               "sampleFrequency=\"44100\" nrAudioChannels=\"2\"" +
                   base + "3.mp3</res>",
               "<res protocolInfo=\"http-get:*:image/jpeg:DLNA.ORG_PN=JPEG_SM;DLNA.ORG_OP=01;"
               "DLNA.ORG_FLAGS=00D00000000000000000000000000000\" size=\"7932\" resolution=\"320x240\"" +
                   base + "4.jpg</res>"}));
    EXPECT_EQ(RunStep("8-announcing", {kSamples}).mStatus, 2);
}
#endif

TEST(ServerGuide, ShowsTheStepsAsTheyAre) {
    Words sources;
    Words names;
    for (const auto& entry : std::filesystem::directory_iterator(EZ_SOURCES "/examples/server")) {
        sources.push_back(ReadWholeFile(entry.path().string()));
        names.push_back(entry.path().filename().string());
        EXPECT_LE(LinesOf(sources.back()).size(), 130U) << names.back(); // small enough to be read
    }
    const std::string guide = ReadWholeFile(EZ_SOURCES "/docs/writing-a-server.md");
    const Words blocks = GuideBlocks(guide, "cpp");
    for (const std::string& block : blocks) {
        EXPECT_NE(block, "");
        EXPECT_GE(CountOfTextsWith(sources, block), 1U) << block;
    }
    EXPECT_GE(blocks.size(), 12U);
    for (const std::string& name : names) {
        EXPECT_NE(guide.find("(../examples/server/" + name + ")"), std::string::npos) << name;
    }
}

TEST(ServerGuide, ShowsWhatTheStepsPrint) {
    Words printed = {FileName(LinesOfStep("1-identify", {kSamples, kWalk}).at(0)),
                     FileName(LinesOfStep("2-own-parser", {kSamples, kWater}).at(0))};
#ifdef EZ_HAS_STEP_3
    printed.push_back(Shortened(FileName(LinesOfStep("3-format-parsers", {kSamples, kWalk}).at(0))));
    const TemporaryFolder folder;
    const std::string fake = folder.Write("fake.mp3", kFake);
    const Words why = LinesOfStep("3-format-parsers", {kSamples, fake});
    ASSERT_EQ(why.size(), 3U);
    printed.push_back(why[0] + " " + why[1] + " " + FileName(why[2]));
#endif
#ifdef EZ_HAS_STEP_7
    const std::string corners = kSamples + "/elementary/six-corners.ac3";
    printed.push_back(FileName(LinesOfStep("7-arriving-media", {kSamples, corners}).at(0)));
#endif
#ifdef EZ_HAS_STEP_8
    const Words lines = LinesOfStep("8-announcing", {kSamples, "http://192.0.2.1:8200/media", kWalk});
    ASSERT_GE(lines.size(), 3U);
    printed.push_back(lines[0] + " " + lines[1]);
    printed.push_back(Shortened(lines.back()));
#endif
    const Words shown = IndentedBlocks(ReadWholeFile(EZ_SOURCES "/docs/writing-a-server.md"));
    for (const std::string& text : printed) {
        EXPECT_EQ(std::count(shown.begin(), shown.end(), text), 1) << text;
    }
    // The other one is the command that starts a step.
    EXPECT_EQ(std::count_if(shown.begin(), shown.end(),
                            [](const std::string& aText) { return Begins(aText, "build/release/"); }),
              1);
#if defined(EZ_HAS_STEP_3) && defined(EZ_HAS_STEP_7) && defined(EZ_HAS_STEP_8)
    EXPECT_EQ(shown.size(), printed.size() + 1);
#endif
}
