#include "Announce.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

constexpr const char* kIni = "mediaCTRLMediaTypes.ini";
/// What the parsers of file formats declare before the types of the media types file come.
const std::string& OfFormats() {
    static const std::string text = RunTool({"capabilities", "--config", TemporaryFolder().GetPath()}).mOut;
    return text;
}

/// What is said where there are no media types.
std::string NoTypes(const std::string& aPlaces) {
    return "ezannounce: no media types: " + aPlaces + "; --config names the folder of the file\n";
}

} // namespace

TEST(Capabilities, AreTheTypesOfTheMediaTypesFile) {
    const TemporaryFolder folder;
    folder.Write(kIni, "[MimeTypesExcluded]\npdf=pdf@application/pdf\n"
                       "[MimeTypes]\nb=b@video/b,video/bb@item.videoItem\na=a@audio/a@item.audioItem\n"
                       "again=c@video/b@item.videoItem\nnone=d\n"
                       "par=p@audio/l16;rate=44100@item.audioItem\nbad=e@no:type/x,audio/e@item.audioItem\n");
    const ProgramResult result = RunTool({"capabilities", "--config", folder.GetPath()});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(result.mOut, OfFormats() + "http-get:*:video/b:*\nhttp-get:*:audio/a:*\n"
                                         "http-get:*:audio/l16;rate=44100:*\n");
}

TEST(Capabilities, BeginWithTheProfilesOfTheFormats) {
    const Lines lines = LinesOf(OfFormats());
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 3),
              (Lines{"http-get:*:audio/mpeg:DLNA.ORG_PN=MP3", "http-get:*:audio/mpeg:DLNA.ORG_PN=MP3X",
                     "http-get:*:audio/mpeg:*"}));
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "http-get:*:audio/3gpp2:*"), 1);
    EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(), lines.size());
}

TEST(Capabilities, NameATypeOfAFormatNotAgainForTheMediaTypesFile) {
    const TemporaryFolder folder;
    folder.Write(kIni, "[MimeTypes]\nmp3=mp3@AUDIO/mpeg@item.audioItem\nown=own@audio/own@item.audioItem\n"
                       "par=p@image/jpeg;x=1@item.imageItem\n");
    EXPECT_EQ(RunTool({"capabilities", "--config", folder.GetPath()}).mOut,
              OfFormats() + "http-get:*:audio/own:*\nhttp-get:*:image/jpeg;x=1:*\n");
}

TEST(Capabilities, UnderAConformanceTestBeginWithItsFormats) {
    const TemporaryFolder folder;
    const ProgramResult bare = RunTool({"capabilities", "--ctt", "1", "--config", folder.GetPath()});
    EXPECT_EQ(bare.mStatus, 0);
    const Lines lines = LinesOf(bare.mOut);
    ASSERT_EQ(lines.size(), 26U + LinesOf(OfFormats()).size());
    EXPECT_EQ(lines.front(), "http-get:*:video/mp4:DLNA.ORG_PN=AVC_MP4_BL_CIF15_AAC_520");
    EXPECT_EQ(lines[25], "http-get:*:audio/L16;rate=48000;channels=2:DLNA.ORG_PN=LPCM");
    EXPECT_EQ(Lines(lines.begin() + 26, lines.end()), LinesOf(OfFormats()));

    const Lines all = LinesOf(Announce({"capabilities", "--ctt", "1"}).mOut);
    ASSERT_GT(all.size(), lines.size());
    EXPECT_TRUE(std::equal(lines.begin(), lines.end(), all.begin()));
    EXPECT_EQ(all.back(), "http-get:*:video/x-ms-wvx:*");
}

TEST(Capabilities, OfTheSamplesNameEachTypeOnceAndTheSameEveryTime) {
    const ProgramResult result = Announce({"capabilities"});
    const Lines lines = LinesOf(result.mOut);
    EXPECT_GE(lines.size(), 60U);
    EXPECT_EQ(std::set<std::string>(lines.begin(), lines.end()).size(), lines.size());
    EXPECT_EQ(result.mOut.find("application/pdf"), std::string::npos);
    EXPECT_EQ(Announce({"capabilities"}).mOut, result.mOut);
}

TEST(Types, LooksUpAnExtensionInAnyCaseWithOrWithoutItsDot) {
    for (const char* word : {"m4v", "M4V", ".m4v"}) {
        const ProgramResult result = Announce({"types", word});
        EXPECT_EQ(result.mStatus, 0);
        EXPECT_EQ(result.mError, "");
        EXPECT_EQ(result.mOut, std::string(word) + "\n"
                                                   "  MIME type     video/mp4\n"
                                                   "  siblings      m4v\n"
                                                   "  entry         m4v\n"
                                                   "    extensions    m4v\n"
                                                   "    MIME types    video/mp4, video/x-m4v\n"
                                                   "    classes       item.videoItem\n"
                                                   "    parser types  m4v, mp4, any\n");
    }
}

TEST(Types, LooksUpAMimeTypeWithOrWithoutParameters) {
    for (const char* word : {"audio/L16", "audio/l16;rate=44100;channels=2"}) {
        const ProgramResult result = Announce({"types", word});
        EXPECT_EQ(result.mStatus, 0);
        EXPECT_EQ(result.mOut, std::string(word) + "\n"
                                                   "  extension     pcm\n"
                                                   "  of entries    pcm\n"
                                                   "  entry         lpcm\n"
                                                   "    extensions    pcm, lpcm, l16\n"
                                                   "    MIME types    audio/l16\n"
                                                   "    classes       item.audioItem.musicTrack\n"
                                                   "    parser types  lpcm, any\n");
    }
}

TEST(Types, ShowsEveryEntryAndSaysWhichAreExcluded) {
    const TemporaryFolder folder;
    folder.Write(kIni, "[MimeTypes]\na=x@audio/a@item.audioItem\n[MimeTypesExcluded]\nb=x,y@audio/b\n");
    const ProgramResult result = RunTool({"types", "--config", folder.GetPath(), "x"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, "x\n"
                           "  MIME type     audio/b\n"
                           "  siblings      x\n"
                           "  entry         b (excluded: not published)\n"
                           "    extensions    x, y\n"
                           "    MIME types    audio/b\n"
                           "    classes       -\n"
                           "    parser types  b\n"
                           "  entry         a\n"
                           "    extensions    x\n"
                           "    MIME types    audio/a\n"
                           "    classes       item.audioItem\n"
                           "    parser types  a\n");
}

TEST(Types, NamesWhatIsUnknownAndStillShowsTheRest) {
    const ProgramResult result = Announce({"types", "unheard", "mp3", "un/heard", "", ".", "a\nb"});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: unheard: not in the media types file\n"
                             "ezannounce: un/heard: not in the media types file\n"
                             "ezannounce: '': not in the media types file\n"
                             "ezannounce: .: not in the media types file\n"
                             "ezannounce: a\\nb: not in the media types file\n");
    EXPECT_EQ(LinesOf(result.mOut).at(0), "mp3");
}

TEST(Configuration, WithCarriageReturnsAndAByteOrderMarkIsRead) {
    const TemporaryFolder folder;
    folder.Write(kIni, "\xEF\xBB\xBF[MimeTypes]\r\nfoo=foo@audio/foo@item.audioItem\r\n");
    const std::string media = folder.Write("a.foo", "");
    const ProgramResult result = RunTool({"--config", folder.GetPath(), "--json", media});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_NE(result.mOut.find("\"mime_type\":\"audio/foo\",\"class\":\"item.audioItem\""),
              std::string::npos);
}

TEST(Configuration, ThatIsMissingEmptyOrAFolderIsSaidAndNothingIsRecognised) {
    const std::map<std::string, std::string> kinds = {{"missing", "not found"},
                                                      {"empty", "no types were read from it"},
                                                      {"folder", "not a regular file"},
                                                      {"binary", "no types were read from it"}};
    for (const auto& [which, reason] : kinds) {
        const TemporaryFolder folder;
        if (which == "folder") {
            std::filesystem::create_directory(folder.Path(kIni));
        } else if (which != "missing") {
            folder.Write(kIni, which == "empty" ? "" : std::string("\0\xFF[[\x01=@@\n\0", 10));
        }
        const ProgramResult result =
            RunTool({"--config", folder.GetPath(), EZ_SAMPLES "/music/morning-walk.mp3"});
        EXPECT_EQ(result.mStatus, 1) << which;
        EXPECT_EQ(result.mError, NoTypes(folder.Path(kIni) + ": " + reason));
        EXPECT_NE(result.mOut.find("not recognised"), std::string::npos) << which;
    }
}

TEST(Configuration, ThatIsMissingIsSaidOfAllPlacesThatWereLookedAt) {
    const TemporaryFolder working;
    const TemporaryFolder named;
    const TemporaryFolder state;
    working.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=" + named.GetPath() + "\n");
    ProgramOptions options;
    options.mFolder = working.GetPath();
    const std::string path =
        "ConfigPath.ini: names the read-only folder; " + named.Path(kIni) + ": not found; ";
    const ProgramResult result = RunTool({"capabilities"}, options);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, OfFormats());
    EXPECT_EQ(result.mError, NoTypes(path + "./mediaCTRLMediaTypes.ini: not found"));
    EXPECT_EQ(RunTool({"capabilities", "--state", state.GetPath()}, options).mError,
              NoTypes(path + state.Path(kIni) + ": not found"));
}

TEST(Configuration, OfTheStateFolderLiesOverTheOther) {
    const TemporaryFolder config;
    const TemporaryFolder state;
    config.Write(kIni, "[MimeTypes]\nfoo=foo@audio/foo@item.audioItem\nbar=bar@audio/bar@item.audioItem\n");
    state.Write(kIni, "[MimeTypes]\nfoo=foo@audio/changed@item.audioItem\n");
    EXPECT_EQ(RunTool({"capabilities", "--config", config.GetPath(), "--state", state.GetPath()}).mOut,
              OfFormats() + "http-get:*:audio/changed:*\nhttp-get:*:audio/bar:*\n");
    EXPECT_EQ(RunTool({"capabilities", "--config", config.GetPath()}).mOut,
              OfFormats() + "http-get:*:audio/foo:*\nhttp-get:*:audio/bar:*\n");
}

TEST(Configuration, OfTheWorkingDirectoryIsUsedUnlessAFolderIsNamed) {
    const TemporaryFolder working;
    const TemporaryFolder named;
    working.Write(kIni, "[MimeTypes]\nwork=w@audio/work@item.audioItem\n");
    named.Write(kIni, "[MimeTypes]\nname=n@audio/name@item.audioItem\n");
    ProgramOptions options;
    options.mFolder = working.GetPath();
    EXPECT_EQ(RunTool({"capabilities"}, options).mOut, OfFormats() + "http-get:*:audio/work:*\n");
    EXPECT_EQ(RunTool({"capabilities", "--config", named.GetPath()}, options).mOut,
              OfFormats() + "http-get:*:audio/name:*\n");
    EXPECT_EQ(RunTool({"capabilities", "--state", named.GetPath()}, options).mOut,
              OfFormats() + "http-get:*:audio/work:*\nhttp-get:*:audio/name:*\n");
}

TEST(Configuration, IsFoundThroughConfigPathInTheWorkingDirectory) {
    const TemporaryFolder working;
    const TemporaryFolder named;
    named.Write(kIni, "[MimeTypes]\nname=n@audio/name@item.audioItem\n");
    working.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=" + named.GetPath() + "\n");
    ProgramOptions options;
    options.mFolder = working.GetPath();
    EXPECT_EQ(RunTool({"capabilities"}, options).mOut, OfFormats() + "http-get:*:audio/name:*\n");
}

TEST(Configuration, ThatWasInstalledIsUsedWhereTheWorkingDirectoryHasNone) {
    const TemporaryFolder working;
    ProgramOptions options;
    options.mFolder = working.GetPath();
    // The build tree is laid out like an installed one.
    const std::string installed = RunTool({"capabilities"}, options).mOut;
    EXPECT_EQ(installed, Announce({"capabilities"}).mOut);
    working.Write(kIni, "[MimeTypes]\nwork=w@audio/work@item.audioItem\n");
    EXPECT_EQ(RunTool({"capabilities"}, options).mOut, OfFormats() + "http-get:*:audio/work:*\n");
}

TEST(CodePage, ReachesTheLibrary) {
    const TemporaryFolder folder;
    folder.Write(kIni, "[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem@mp3\n");
    std::string tag = "TAG\xCF\xF0";
    tag.resize(128, '\0');
    std::string song = ReadWholeFile(std::string(EZ_SAMPLES) + "/music/morning-walk.mp3").substr(0, 20000);
    song.replace(song.find("TIT2"), 4, "XXXX"); // so that the title is that of the tag after the sound
    const std::string media = folder.Write("song.mp3", song + tag);
    const auto title = [&](std::vector<std::string> aWords) {
        aWords.insert(aWords.end(), {"--config", folder.GetPath(), "--json", media});
        const std::string out = RunTool(aWords).mOut;
        const std::size_t place = out.find("\"title\":\"");
        return place == std::string::npos ? out : out.substr(place + 9, out.find('"', place + 9) - place - 9);
    };
    EXPECT_EQ(title({"--code-page", "windows-1251"}), "\xD0\x9F\xD1\x80");
    EXPECT_EQ(title({}), "\xC3\x8F\xC3\xB0");
}

TEST(ParseOptions, ReachTheLibrary) {
    // A file without an extension: its name tells what it is once the entries are tried at all.
    const TemporaryFolder folder;
    folder.Write(kIni, "[MimeTypes]\nfoo=foo@audio/foo@item.audioItem\n");
    const std::string media = folder.Write("plain", "");
    const auto tried = [&](const std::string& anOptions) {
        const ProgramResult result =
            RunTool({"--config", folder.GetPath(), "--explain", "--parse-options", anOptions, media});
        return result.mOut.find("foo: there is no such parser") != std::string::npos;
    };
    EXPECT_FALSE(tried("0"));
    EXPECT_FALSE(tried("vbr-full"));
    EXPECT_TRUE(tried("if-no-extension"));
    EXPECT_TRUE(tried("1"));
    EXPECT_TRUE(tried("if-failed,vbr-full"));
    EXPECT_TRUE(tried("everytime"));
}
