#include "Announce.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

using Json = nlohmann::json;
using Lines = std::vector<std::string>;

constexpr const char* kTypes = "[MimeTypesExcluded]\nhid=hid@audio/hid\n"
                               "[MimeTypes]\n"
                               "mpg=mpg@video/mpeg@item.videoItem\n"
                               "mp3=mp3@audio/mpeg@item.audioItem\n"
                               "wav=wav@audio/x-wav@item.audioItem\n";

constexpr const char* kTable = "# A comment.\n"
                               "song.mp3,audio/mpeg,MP3,0:03:20,,,128000,,,,,,DLNA.ORG_OP=01\n"
                               "film.mpg,video/mpeg,MPEG_PS_PAL,0:00:07,-2\\,2,00000001,9800000,,,720,576,,"
                               "DLNA.ORG_OP=11;BRELVO.COM_GOLDENDMS=60000001\n"
                               "other.mp3,audio/mpeg,MP3\n"
                               "tone.pcm,audio/L16;rate=44100;channels=2,LPCM,later\n"
                               "view.jpg,image/jpeg,JPEG_SM,,,,,,,,,,BRELVO.COM_GOLDENDMS=11000000\n";

constexpr const char* kFlags15 = "DLNA.ORG_FLAGS=00100000000000000000000000000000";

std::string Content(const std::string& aPath) {
    return std::filesystem::exists(aPath) ? ReadWholeFile(aPath) : "no file";
}

/// A configuration with a media mapper file, and a state folder that is empty at first.
class MapperSetup {
public:
    explicit MapperSetup(const char* aTable = kTable) {
        mConfig.Write("mediaCTRLMediaTypes.ini", kTypes);
        if (aTable != nullptr) {
            mConfig.Write("MediaMapper.txt", aTable);
        }
    }

    ProgramResult Run(Lines aWords, const ProgramOptions& anOptions = ProgramOptions()) const {
        aWords.insert(aWords.begin(), {"--config", mConfig.GetPath(), "--state", mState.GetPath()});
        return RunTool(aWords, anOptions);
    }
    ProgramResult Mapper(Lines aWords) const {
        aWords.insert(aWords.begin(), "mapper");
        return Run(std::move(aWords));
    }

    std::string ReadOnly() const { return mConfig.Path("MediaMapper.txt"); }
    std::string Writable() const { return mState.Path("_MediaMapper.txt"); }
    std::string Note() const {
        return "ezannounce: The first load copies '" + ReadOnly() + "' to '" + Writable() + "'.\n";
    }
    bool IsStateUntouched() const { return std::filesystem::is_empty(mState.GetPath()); }
    /// The lines of the writable file that hold an entry.
    Lines Saved() const {
        Lines entries;
        for (const std::string& line : LinesOf(Content(Writable()))) {
            if (!line.empty() && line[0] != '#') {
                entries.push_back(line);
            }
        }
        return entries;
    }

    const TemporaryFolder mConfig;
    const TemporaryFolder mState;
};

std::vector<Json> ObjectsOf(const std::string& aText) {
    std::vector<Json> objects;
    for (const std::string& line : LinesOf(aText)) {
        objects.push_back(Json::parse(line));
    }
    return objects;
}

std::string WithFlags(const std::string& anEntry, const std::string& aWord) {
    return anEntry + kFlags15 + ";BRELVO.COM_GOLDENDMS=" + aWord;
}

const std::string kTone = "tone.pcm,audio/L16;rate=44100;channels=2,LPCM,later,,,,,,,,,";
const std::string kSong = "song.mp3,audio/mpeg,MP3,0:03:20,,,128000,,,,,,DLNA.ORG_OP=01;";
const std::string kOther = "other.mp3,audio/mpeg,MP3,,,,,,,,,,";
const std::string kFilm = "film.mpg,video/mpeg,MPEG_PS_PAL,0:00:07,-2\\,2,00000001,9800000,,,720,576,,"
                          "DLNA.ORG_OP=11;";
const std::string kView = "view.jpg,image/jpeg,JPEG_SM,,,,,,,,,,";

Lines Unchanged() {
    return {WithFlags(kView, "11000000"), WithFlags(kTone, "00000000"), WithFlags(kSong, "00000000"),
            WithFlags(kOther, "00000000"), WithFlags(kFilm, "60000001")};
}

} // namespace

TEST(MapperList, ShowsEveryEntryInTableOrder) {
    const MapperSetup setup;
    const ProgramResult result = setup.Mapper({"list"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, setup.Note());
    EXPECT_EQ(
        result.mOut,
        "#  FILE NAME  MIME TYPE                        PROFILE      DURATION  SPEEDS  BIT RATE  FLAGS\n"
        "0  view.jpg   image/jpeg                       JPEG_SM      -         -       -         "
        "profile disabled, no byte seek\n"
        "1  tone.pcm   audio/L16;rate=44100;channels=2  LPCM         later     -       -         -\n"
        "2  song.mp3   audio/mpeg                       MP3          0:03:20   -       128000    -\n"
        "3  other.mp3  audio/mpeg                       MP3          -         -       -         -\n"
        "4  film.mpg   video/mpeg                       MPEG_PS_PAL  0:00:07   -2, 2   9800000   "
        "speeds on for profile, speeds on for media, others 00000001\n");
    EXPECT_EQ(setup.Saved(), Unchanged());
    // From the copy on there is nothing to say beforehand.
    const ProgramResult again = setup.Mapper({"list"});
    EXPECT_EQ(again.mError, "");
    EXPECT_EQ(again.mOut, result.mOut);
}

TEST(MapperList, ParsesBackFromJson) {
    const MapperSetup setup;
    const std::vector<Json> entries = ObjectsOf(setup.Mapper({"list", "--json", "--no-copy"}).mOut);
    ASSERT_EQ(entries.size(), 5U);
    EXPECT_EQ(entries[4], Json::parse(R"({"index": 4, "file_name": "film.mpg", "mime_type": "video/mpeg",
        "profile": "MPEG_PS_PAL", "duration": "0:00:07", "seconds": 7, "play_speeds": ["-2", "2"],
        "mandatory_bits": "00000001", "bit_rate": 9800000, "ifo_file": null, "largest": null,
        "width": "720", "height": "576", "lp_options": null,
        "parameters": "DLNA.ORG_OP=11;BRELVO.COM_GOLDENDMS=60000001",
        "flags": {"word": "60000001", "profile_disabled": false, "speeds_on_for_profile": true,
                  "speeds_on_for_media": true, "no_speeds": false, "no_byte_seek": false},
        "protocol_info": "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_OP=11;DLNA.ORG_PS=-2,2;)"
                                      R"(DLNA.ORG_FLAGS=00100000000000000000000000000000"})"));
    EXPECT_EQ(entries[1]["duration"], "later");
    EXPECT_TRUE(entries[1]["seconds"].is_null());
    EXPECT_TRUE(entries[1]["bit_rate"].is_null());
}

TEST(MapperList, IsValidJsonWhateverTheBytes) {
    const MapperSetup setup("caf\xE9\x01.mp3,audio/mpeg,MP3\n");
    const std::vector<Json> entries = ObjectsOf(setup.Mapper({"list", "--json"}).mOut);
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0]["file_name"], "caf\xEF\xBF\xBD\x01.mp3");
    EXPECT_NE(setup.Mapper({"list"}).mOut.find("caf\\xe9\\x01.mp3"), std::string::npos);
}

TEST(MapperShow, ShowsTheEntryThatANameFinds) {
    const MapperSetup setup;
    const ProgramResult result = setup.Mapper({"show", "--no-copy", "x/DTCP_FILM(3).mp3"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(result.mOut,
              "x/DTCP_FILM(3).mp3\n"
              "  entry           4\n"
              "  line            film.mpg,video/mpeg,MPEG_PS_PAL,0:00:07,-2\\\\,2,00000001,9800000,,,720,"
              "576,,DLNA.ORG_OP=11;DLNA.ORG_FLAGS=00100000000000000000000000000000;"
              "BRELVO.COM_GOLDENDMS=60000001\n"
              "  file name       film.mpg\n"
              "  MIME type       video/mpeg\n"
              "  profile         MPEG_PS_PAL\n"
              "  duration        0:00:07 (7 s)\n"
              "  play speeds     -2, 2 (announced)\n"
              "  bit rate        9800000 bit/s\n"
              "  byte seek       possible\n"
              "  time seek       possible\n"
              "  flags           speeds on for profile, speeds on for media, others 00000001\n"
              "  protocolInfo    http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL;DLNA.ORG_OP=11;"
              "DLNA.ORG_PS=-2,2;DLNA.ORG_FLAGS=00100000000000000000000000000000\n");
}

TEST(MapperShow, TellsWhyANameFindsNothing) {
    const MapperSetup setup;
    const std::vector<std::pair<std::string, std::string>> names = {
        {"unheard.mp3", "finds no entry: none has the base name 'unheard'"},
        {"Unheard(4).mp3", "finds no entry: none has the base name 'unheard'"},
        {"song(a).mp3", "finds no entry: none has the base name 'song(a)'"},
        {"song", "finds no entry: a name without an extension finds none"},
        {"song.", "finds no entry: a name without an extension finds none"},
        {"tone.WAV", "finds no entry: a .wav does not find a .pcm"},
        {"song.xyz", "finds no entry: the media types file does not publish the extension 'xyz'"},
        {"song.hid", "finds no entry: the media types file does not publish the extension 'hid'"}};
    for (const auto& [name, reason] : names) {
        const ProgramResult result = setup.Mapper({"show", "--no-copy", name});
        EXPECT_EQ(result.mStatus, 1) << name;
        EXPECT_EQ(result.mOut, "") << name;
        EXPECT_EQ(result.mError, "ezannounce: " + name + ": " + reason + "\n");
    }
    EXPECT_EQ(setup.Mapper({"show", "--no-copy", "tone.mp3"}).mStatus, 0);
}

TEST(MapperShow, ParsesBackFromJson) {
    const MapperSetup setup;
    const ProgramResult result =
        setup.Mapper({"show", "--no-copy", "--json", "song.mp3", "song", "no.mp3", "tone.wav", "song.q"});
    EXPECT_EQ(result.mStatus, 1);
    const std::vector<Json> answers = ObjectsOf(result.mOut);
    ASSERT_EQ(answers.size(), 5U);
    EXPECT_EQ(answers[0]["asked"], "song.mp3");
    EXPECT_EQ(answers[0]["entry"]["index"], 2);
    EXPECT_EQ(answers[0]["entry"]["seconds"], 200);
    EXPECT_EQ(answers[0]["entry"]["line"], WithFlags(kSong, "00000000"));
    EXPECT_TRUE(answers[0]["reason"].is_null());
    const Lines reasons = {"no-extension", "unknown-base-name", "pcm-for-wav", "unknown-extension"};
    for (std::size_t i = 0; i < reasons.size(); ++i) {
        EXPECT_TRUE(answers[i + 1]["entry"].is_null());
        EXPECT_EQ(answers[i + 1]["reason"], reasons[i]);
    }
}

TEST(MapperProfiles, ShowsOneRowAProfile) {
    const MapperSetup setup;
    EXPECT_EQ(
        setup.Mapper({"profiles", "--no-copy"}).mOut,
        "PROFILE      MIME TYPE                        ENABLED  PLAY SPEED    BYTE SEEK     TIME SEEK     "
        "STALLING  SPEEDS\n"
        "JPEG_SM      image/jpeg                       no       not possible  not possible  not possible  "
        "no        -\n"
        "LPCM         audio/L16;rate=44100;channels=2  yes      possible      no            no            "
        "no        -\n"
        "MP3          audio/mpeg                       yes      possible      yes           no            "
        "no        -\n"
        "MPEG_PS_PAL  video/mpeg                       yes      enabled       yes           yes           "
        "no        -2,2\n");
    const std::vector<Json> profiles = ObjectsOf(setup.Mapper({"profiles", "--no-copy", "--json"}).mOut);
    ASSERT_EQ(profiles.size(), 4U);
    EXPECT_EQ(profiles[3], Json::parse(R"({"profile": "MPEG_PS_PAL", "mime_type": "video/mpeg",
        "enabled": true, "play_speed_possible": true, "play_speed_enabled": true,
        "byte_seek_possible": true, "byte_seek": true, "time_seek_possible": true, "time_seek": true,
        "stalling": false, "speeds": ["-2", "2"]})"));
    EXPECT_EQ(profiles[0]["enabled"], false);
    EXPECT_EQ(profiles[0]["byte_seek_possible"], false);
}

TEST(MapperTable, ThatIsMissingIsNamedByEveryVerb) {
    const MapperSetup setup(nullptr);
    for (const Lines& words : std::vector<Lines>{{"list"},
                                                 {"list", "--no-copy"},
                                                 {"show", "a.mp3"},
                                                 {"profiles"},
                                                 {"enable", "MP3"},
                                                 {"disable", "MP3"},
                                                 {"speeds", "on", "MP3"},
                                                 {"save"}}) {
        const ProgramResult result = setup.Mapper(words);
        EXPECT_EQ(result.mStatus, 1) << words[0];
        EXPECT_EQ(result.mOut, "") << words[0];
        EXPECT_EQ(result.mError, "ezannounce: MediaMapper.txt: no media mapper file: neither '" +
                                     setup.Writable() + "' nor '" + setup.ReadOnly() + "'\n");
    }
    const ProgramResult check = setup.Mapper({"check"});
    EXPECT_EQ(check.mStatus, 1);
    EXPECT_EQ(check.mError, "ezannounce: " + setup.ReadOnly() + ": No such file or directory\n");
    EXPECT_EQ(setup.Run({"--mapper", setup.mConfig.Write("a.mp3", "")}).mStatus, 1);
    EXPECT_EQ(setup.Run({"capabilities", "--mapper"}).mStatus, 1);
    EXPECT_TRUE(setup.IsStateUntouched());
}

TEST(MapperTable, InAStateFolderThatMayNotBeWrittenFailsAndIsReadUncopied) {
    const MapperSetup setup;
    ASSERT_EQ(chmod(setup.mState.GetPath().c_str(), 0555), 0);
    ProgramOptions options;
    options.mfWithoutRights = true;
    for (const Lines& words : std::vector<Lines>{{"mapper", "list"},
                                                 {"mapper", "disable", "MP3"},
                                                 {"mapper", "save"},
                                                 {"--mapper", setup.mConfig.Write("song.mp3", "")}}) {
        const ProgramResult result = setup.Run(words, options);
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mOut, "");
        EXPECT_EQ(result.mError.find(setup.Note()), 0U);
        EXPECT_NE(result.mError.find("Unable to open media mapper file: '" + setup.Writable() + "'\n"),
                  std::string::npos);
    }
    const ProgramResult list = setup.Run({"mapper", "list", "--no-copy"}, options);
    EXPECT_EQ(list.mStatus, 0);
    EXPECT_EQ(LinesOf(list.mOut).size(), 6U);
    EXPECT_TRUE(setup.IsStateUntouched());
}

TEST(MapperTable, ThatMayNotBeWrittenIsLeftAsItWas) {
    const MapperSetup setup;
    setup.Mapper({"list"});
    const std::string before = Content(setup.Writable());
    ASSERT_EQ(chmod(setup.Writable().c_str(), 0444), 0);
    ProgramOptions options;
    options.mfWithoutRights = true;
    const ProgramResult result = setup.Run({"mapper", "disable", "MP3"}, options);
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: " + setup.Writable() + ": Unable to create media mapper file: '" +
                                 setup.Writable() + "'\n");
    EXPECT_EQ(result.mOut.find("saved"), std::string::npos);
    EXPECT_EQ(Content(setup.Writable()), before);
}

TEST(MapperNoCopy, LeavesTheStateFolderUntouchedAndShowsTheSame) {
    const MapperSetup setup;
    const MapperSetup copying;
    const std::string song = setup.mConfig.Write("song.mp3", "");
    for (const Lines& words : std::vector<Lines>{{"mapper", "list"},
                                                 {"mapper", "profiles"},
                                                 {"mapper", "show", "song.mp3"},
                                                 {"--mapper", "--json", song},
                                                 {"capabilities", "--mapper"},
                                                 {"capabilities", "--mapper", "--dtcp"}}) {
        Lines uncopied = words;
        uncopied.push_back("--no-copy");
        const ProgramResult result = setup.Run(uncopied);
        EXPECT_EQ(result.mStatus, 0);
        EXPECT_EQ(result.mError, "");
        EXPECT_TRUE(setup.IsStateUntouched()) << words[0];

        const ProgramResult copied = copying.Run(words);
        EXPECT_EQ(copied.mError, copying.Note());
        EXPECT_EQ(copied.mOut, result.mOut);
        EXPECT_TRUE(std::filesystem::remove(copying.Writable()));
    }
    EXPECT_EQ(Content(setup.ReadOnly()), kTable);
}

TEST(MapperNoCopy, ReadsTheWritableFileWhereThereIsOne) {
    const MapperSetup setup;
    setup.mState.Write("_MediaMapper.txt", "own.mp3,audio/mpeg,MP3\n");
    const ProgramResult result = setup.Mapper({"list", "--no-copy", "--json"});
    EXPECT_EQ(ObjectsOf(result.mOut).at(0)["file_name"], "own.mp3");
    EXPECT_EQ(Content(setup.Writable()), "own.mp3,audio/mpeg,MP3\n");
}

TEST(MapperEdit, OnAFirstRunSavesNoLineTwice) {
    const MapperSetup setup;
    const ProgramResult result = setup.Mapper({"disable", "MPEG_PS_PAL"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, setup.Note());
    EXPECT_EQ(result.mOut,
              "film.mpg (MPEG_PS_PAL): profile on -> off\nsaved " + setup.Writable() + ", entries: 5\n");
    Lines expected = Unchanged();
    expected[4] = WithFlags(kFilm, "70000001");
    EXPECT_EQ(setup.Saved(), expected);
    EXPECT_EQ(Content(setup.ReadOnly()), kTable);
}

TEST(MapperEdit, SwitchesProfilesAndPlaySpeedsOffAndOnAgain) {
    const MapperSetup setup;
    setup.Mapper({"save"});
    const std::string before = Content(setup.Writable());
    EXPECT_EQ(setup.Saved(), Unchanged());

    Lines expected = Unchanged();
    expected[4] = WithFlags(kFilm, "50000001");
    EXPECT_EQ(setup.Mapper({"speeds", "off", "MPEG_PS_PAL"}).mOut,
              "film.mpg (MPEG_PS_PAL): play speeds on -> off\nsaved " + setup.Writable() + ", entries: 5\n");
    expected[4] = WithFlags(kFilm, "40000001");
    EXPECT_EQ(setup.Saved(), expected);
    EXPECT_EQ(setup.Mapper({"disable", "MPEG_PS_PAL", "LPCM"}).mStatus, 0);
    expected[4] = WithFlags(kFilm, "50000001");
    expected[1] = WithFlags(kTone, "10000000");
    EXPECT_EQ(setup.Saved(), expected);
    EXPECT_EQ(setup.Mapper({"enable", "LPCM", "MPEG_PS_PAL"}).mStatus, 0);
    EXPECT_EQ(setup.Mapper({"speeds", "on", "MPEG_PS_PAL"}).mError, "");
    EXPECT_EQ(Content(setup.Writable()), before);
}

TEST(MapperEdit, SaysWhereSwitchingLevelsTheSeeksOfAProfile) {
    // The first entry of a profile decides for all of them, as soon as the profile is edited.
    const MapperSetup setup;
    EXPECT_EQ(setup.Mapper({"disable", "MP3"}).mOut,
              "song.mp3 (MP3): profile on -> off\n"
              "other.mp3 (MP3): profile on -> off, byte seek off -> on\n"
              "saved " +
                  setup.Writable() + ", entries: 5\n");
    Lines expected = Unchanged();
    expected[2] = WithFlags(kSong, "10000000");
    expected[3] = WithFlags(kOther + "DLNA.ORG_OP=01;", "10000000");
    EXPECT_EQ(setup.Saved(), expected);
}

TEST(MapperEdit, ThatChangesNothingSavesNothing) {
    const MapperSetup setup;
    const char* text = "# Mine.\nfilm.mpg,video/mpeg,MPEG_PS_PAL\n";
    setup.mState.Write("_MediaMapper.txt", text);
    const ProgramResult result = setup.Mapper({"enable", "MPEG_PS_PAL"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, "nothing changed, nothing saved\n");
    EXPECT_EQ(Content(setup.Writable()), text);
}

TEST(MapperEdit, RefusesAllForAnUnknownProfileAndForSpeedsThatCannotBe) {
    const MapperSetup setup;
    setup.Mapper({"save"});
    const std::string before = Content(setup.Writable());
    const ProgramResult unknown = setup.Mapper({"disable", "MP3", "mp3", "NONE"});
    EXPECT_EQ(unknown.mStatus, 1);
    EXPECT_EQ(unknown.mOut, "");
    EXPECT_EQ(unknown.mError, "ezannounce: mp3: no entry has this profile\n"
                              "ezannounce: NONE: no entry has this profile\n");
    const ProgramResult speeds = setup.Mapper({"speeds", "on", "LPCM", "JPEG_SM"});
    EXPECT_EQ(speeds.mStatus, 1);
    EXPECT_EQ(speeds.mError, "ezannounce: JPEG_SM: this profile cannot play at speeds\n");
    EXPECT_EQ(Content(setup.Writable()), before);
    EXPECT_EQ(setup.Mapper({"speeds", "off", "JPEG_SM"}).mStatus, 0);
}

TEST(MapperEdit, SaysWhereSpeedsThatAreOnStaySilent) {
    const MapperSetup setup;
    const ProgramResult result = setup.Mapper({"speeds", "on", "LPCM"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, setup.Note() + "ezannounce: LPCM: no entry has play speeds of its own that are "
                                            "on, so none are announced\n");
}

TEST(MapperSave, WritesTheTableAnewAndSaysWhatItDoesNotKeep) {
    const MapperSetup setup;
    setup.mState.Write("_MediaMapper.txt",
                       "# Mine.\nbad,line\nz.mp3,audio/mpeg,MP3,,x\na.mp3,audio/mpeg,AAC\n");
    const ProgramResult result = setup.Mapper({"save"});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "ezannounce: " + setup.Writable() +
                                 ":2: fewer than 3 fields: skipped\nezannounce: " + setup.Writable() +
                                 ": lines that this save does not keep as they were: 2 (\"mapper check\" "
                                 "names them beforehand)\n");
    EXPECT_EQ(result.mOut, "saved " + setup.Writable() + ", entries: 2\n");
    EXPECT_EQ(setup.Saved(), (Lines{WithFlags("a.mp3,audio/mpeg,AAC,,,,,,,,,,", "00000000"),
                                    WithFlags("z.mp3,audio/mpeg,MP3,,,,,,,,,,", "00000000")}));
    EXPECT_EQ(setup.Mapper({"save"}).mError, "");
}

TEST(MapperArguments, WrongUsageIsNamed) {
    const MapperSetup setup;
    const std::vector<std::pair<Lines, std::string>> wrong = {
        {{"mapper"}, "mapper: no verb given"},
        {{"mapper", "dance"}, "mapper: not a verb: dance"},
        {{"mapper", "list", "x"}, "mapper list takes no operand"},
        {{"mapper", "profiles", "x"}, "mapper profiles takes no operand"},
        {{"mapper", "save", "x"}, "mapper save takes no operand"},
        {{"mapper", "check", "x", "y"}, "mapper check takes one operand"},
        {{"mapper", "show"}, "mapper show: no file name given"},
        {{"mapper", "enable"}, "mapper enable: no profile given"},
        {{"mapper", "disable"}, "mapper disable: no profile given"},
        {{"mapper", "speeds"}, "mapper speeds: neither on nor off"},
        {{"mapper", "speeds", "MP3"}, "mapper speeds: neither on nor off"},
        {{"mapper", "speeds", "on"}, "mapper speeds: no profile given"},
        {{"mapper", "list", "--explain"}, "--explain and --parse-options go with parse only"},
        {{"mapper", "check", "--json"},
         "--json goes with parse, mapper list, mapper show and mapper profiles only"},
        {{"mapper", "save", "--no-copy"}, "--no-copy does not go with mapper save, which writes the file"},
        {{"mapper", "list", "--mapper"}, "--mapper goes with parse and capabilities only"},
        {{"types", "mp3", "--mapper"}, "--mapper goes with parse and capabilities only"},
        {{"x", "--dtcp"}, "--dtcp goes with capabilities only"},
        {{"x", "--no-copy"}, "--no-copy goes with --mapper and with the verb mapper only"},
        {{"capabilities", "--no-copy"}, "--no-copy goes with --mapper and with the verb mapper only"}};
    for (const auto& [words, error] : wrong) {
        const ProgramResult result = setup.Run(words);
        EXPECT_EQ(result.mStatus, 2) << error;
        EXPECT_EQ(result.mOut, "") << error;
        EXPECT_EQ(result.mError,
                  "ezannounce: " + error + "\nezannounce: \"ezannounce --help\" shows the usage\n");
    }
    EXPECT_TRUE(setup.IsStateUntouched());
    EXPECT_EQ(setup.Mapper({"show", "--no-copy", "--", "-x.mp3"}).mError,
              "ezannounce: -x.mp3: finds no entry: none has the base name '-x'\n");
}
