#include "Announce.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace {

using Words = std::vector<std::string>;

const std::string kHeader = "NAME";

/// The row of a table that begins with an escaped name.
std::string RowOf(const std::string& aTable, const std::string& aName) {
    for (const std::string& line : LinesOf(aTable)) {
        if (line.compare(0, aName.size() + 1, aName + " ") == 0) {
            return line;
        }
    }
    return {};
}

/// The table with all that is known.
ProgramResult WideTable(Words anArguments, const ProgramOptions& anOptions = ProgramOptions()) {
    anArguments.insert(anArguments.begin(), "--wide");
    return Announce(std::move(anArguments), anOptions);
}

bool Holds(const std::string& aText, const std::string& aPart) {
    return aText.find(aPart) != std::string::npos;
}

} // namespace

TEST(Table, ShowsAMediaInOneRowUnderAHeaderWhenWide) {
    ProgramOptions options;
    options.mFolder = EZ_SAMPLES;
    const ProgramResult result = WideTable({"music/door-bell.wav"}, options);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(
        result.mOut,
        "NAME                 MIME TYPE  CLASS                      DLNA                SIZE  EXT  KNOWN\n"
        "music/door-bell.wav  audio/wav  item.audioItem.musicTrack  DLNA.ORG_OP=01  34.5 KiB  wav  "
        "0:00:02.200, 128 kbit/s, LPCM, 8 kHz, 1 channel, 16 bit, date 2001, title Door Bell, creator The "
        "Test Tones, genre Other, album Half a Second\n");
}

TEST(Table, ParseAsAVerbShowsTheSame) {
    const std::string walk = EZ_SAMPLES "/music/morning-walk.mp3";
    EXPECT_EQ(WideTable({"parse", walk}).mOut, WideTable({walk}).mOut);
}

TEST(Table, ShowsInWordsWhatElseIsKnown) {
    ProgramOptions options;
    options.mFolder = EZ_SAMPLES;
    const ProgramResult result = WideTable({"--ctt", "1", "conformance/B-LPCM-2.pcm"}, options);
    EXPECT_EQ(result.mStatus, 0);
    // The sampling rate, and no bit rate made of it.
    EXPECT_EQ(LinesOf(result.mOut).at(1),
              "conformance/B-LPCM-2.pcm  audio/L16;rate=44100;channels=2  item.audioItem  DLNA.ORG_PN=LPCM  "
              "172.3 KiB  pcm  0:00:01.000, LPCM, 44.1 kHz, 2 channels, 16 bit");
}

TEST(Table, EverySampleIsInIt) {
    const std::vector<std::string> folders = {EZ_SAMPLES "/music", EZ_SAMPLES "/video",
                                              EZ_SAMPLES "/pictures", EZ_SAMPLES "/conformance"};
    std::size_t samples = 0;
    for (const std::string& folder : folders) {
        using Files = std::filesystem::directory_iterator;
        samples += static_cast<std::size_t>(std::distance(Files(folder), Files()));
    }
    EXPECT_GE(samples, 28U);
    const ProgramResult result = WideTable(folders);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(LinesOf(result.mOut).size(), 1U + samples);
    EXPECT_FALSE(Holds(result.mOut, "not recognised"));
    EXPECT_FALSE(Holds(result.mOut, "4294967295"));
}

TEST(Table, ColumnsStandUnderEachOther) {
    const ProgramResult result = WideTable({EZ_SAMPLES "/music"});
    const std::vector<std::string> lines = LinesOf(result.mOut);
    const std::size_t mimeType = lines.at(0).find("MIME TYPE");
    const std::size_t className = lines.at(0).find("CLASS");
    for (std::size_t i = 1; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i].find("audio/"), mimeType) << lines[i];
        EXPECT_EQ(lines[i].find("item.audioItem"), className) << lines[i];
    }
}

TEST(Table, ColumnsStandUnderEachOtherWhateverTheWidthOfTheCharacters) {
    const TemporaryFolder folder;
    folder.Write("m\xC3\xBCsik.mp3", "");             // two bytes, one column
    folder.Write("\xE9\x9F\xB3\xE6\xA5\xBD.mp3", ""); // six bytes, four columns
    folder.Write("mu\xCC\x88sik.mp3", "");            // a combining character, no column
    const std::vector<std::string> lines = LinesOf(WideTable({folder.GetPath()}).mOut);
    ASSERT_EQ(lines.size(), 4U);
    const std::size_t header = lines[0].find("MIME");
    const std::size_t combined = lines[1].find("audio/mpeg");
    const std::size_t umlaut = lines[2].find("audio/mpeg");
    const std::size_t wide = lines[3].find("audio/mpeg");
    EXPECT_EQ(combined, header + 2); // bytes more than columns
    EXPECT_EQ(umlaut, header + 1);
    EXPECT_EQ(wide, header + 2);
}

TEST(Failures, AMissingFileIsNamedAndTheOthersAreAnnounced) {
    const std::string walk = EZ_SAMPLES "/music/morning-walk.mp3";
    const ProgramResult result = WideTable({"/none/of this", walk, ""});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: /none/of this: No such file or directory\n"
                             "ezannounce: '': No such file or directory\n");
    EXPECT_TRUE(Holds(RowOf(result.mOut, walk), "audio/mpeg"));
    EXPECT_EQ(LinesOf(result.mOut).size(), 2U);
}

TEST(Failures, AnUnreadableFileOrFolderIsNamedAndTheOthersAreAnnounced) {
    const TemporaryFolder folder;
    const std::string locked = folder.Write("a-locked.mp3", "x");
    const std::string open = folder.Write("b-open.mp3", "x");
    const std::string inside = folder.Write("c-shut/inside.mp3", "x");
    ASSERT_EQ(chmod(locked.c_str(), 0), 0);
    ASSERT_EQ(chmod(folder.Path("c-shut").c_str(), 0), 0);
    ProgramOptions options;
    options.mfWithoutRights = true;
    for (const Words& paths : {Words{folder.GetPath()}, Words{locked, open, folder.Path("c-shut")}}) {
        const ProgramResult result = WideTable(paths, options);
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mError, "ezannounce: " + locked + ": Permission denied\nezannounce: " +
                                     folder.Path("c-shut") + ": Permission denied\n");
        EXPECT_TRUE(Holds(RowOf(result.mOut, open), "audio/mpeg"));
        EXPECT_EQ(LinesOf(result.mOut).size(), 2U);
    }
    ASSERT_EQ(chmod(folder.Path("c-shut").c_str(), 0700), 0);
}

TEST(Failures, AnEmptyFileIsAnnouncedFromItsExtension) {
    const TemporaryFolder folder;
    const std::string empty = folder.Write("empty.mp3", "");
    const ProgramResult result = WideTable({empty});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_TRUE(Holds(RowOf(result.mOut, empty), "audio/mpeg"));
    EXPECT_TRUE(Holds(RowOf(result.mOut, empty), "  0 B  mp3"));
}

TEST(Failures, PipesAndDevicesThatAreNamedAreRefusedAndNotWaitedFor) {
    const TemporaryFolder folder;
    const std::string pipe = folder.Path("pipe.mp3");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const ProgramResult result = WideTable({pipe, "/dev/null", "/dev/zero"});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(result.mError, "ezannounce: " + pipe +
                                 ": not a regular file\n"
                                 "ezannounce: /dev/null: not a regular file\n"
                                 "ezannounce: /dev/zero: not a regular file\n");
}

TEST(Failures, AFileThatIsNotRecognisedIsOneOnlyWhereItIsNamed) {
    const TemporaryFolder folder;
    const std::string letter = folder.Write("letter.unheard", "hello");
    const std::string excluded = folder.Write("letter.pdf", "%PDF");
    for (const std::string& path : {letter, excluded}) {
        const ProgramResult named = WideTable({path});
        EXPECT_EQ(named.mStatus, 1);
        EXPECT_EQ(named.mError, "");
        EXPECT_TRUE(Holds(RowOf(named.mOut, path), "  -          -      -     ")) << named.mOut;
        EXPECT_TRUE(Holds(RowOf(named.mOut, path), "not recognised"));
    }
    const ProgramResult walked = WideTable({folder.GetPath()});
    EXPECT_EQ(walked.mStatus, 0);
    EXPECT_TRUE(Holds(RowOf(walked.mOut, letter), "not recognised"));
    EXPECT_TRUE(Holds(RowOf(walked.mOut, excluded), "not recognised"));
}

TEST(Names, ArePrintedSoThatATerminalTakesNoHarm) {
    const std::vector<std::pair<std::string, std::string>> names = {
        {"two words.mp3", "two words.mp3"},
        {R"(it's "quoted".mp3)", R"(it's "quoted".mp3)"},
        {"line\nbreak\tand\rmore.mp3", R"(line\nbreak\tand\rmore.mp3)"},
        {"escape\x1B[2J.mp3", R"(escape\x1b[2J.mp3)"},
        {"latin\xE9.mp3", R"(latin\xe9.mp3)"},
        {"c1\xC2\x9B.mp3", R"(c1\xc2\x9b.mp3)"},
        {"turn\xE2\x80\xAE.mp3", R"(turn\xe2\x80\xae.mp3)"},
        {"umlaut\xC3\xA4.mp3", "umlaut\xC3\xA4.mp3"},
        {std::string(251, 'n') + ".mp3", std::string(251, 'n') + ".mp3"},
        {"-dash.mp3", "-dash.mp3"},
        {"--json", "--json"},
        {"$(reboot).mp3", "$(reboot).mp3"},
        {"[a,b].mp3", "[a,b].mp3"},
    };
    const TemporaryFolder folder;
    for (const auto& name : names) {
        folder.Write(name.first, "");
        ProgramOptions options;
        options.mFolder = folder.GetPath();
        const ProgramResult named = WideTable({"--", name.first}, options);
        EXPECT_EQ(named.mError, "") << name.second;
        EXPECT_EQ(LinesOf(named.mOut).size(), 2U) << name.second;
        EXPECT_NE(RowOf(named.mOut, name.second), "") << named.mOut;
        EXPECT_EQ(named.mStatus, name.first == "--json" ? 1 : 0) << name.second;
        EXPECT_TRUE(name.first == "--json" || Holds(named.mOut, "audio/mpeg")) << name.second;
    }
    const ProgramResult walked = WideTable({folder.GetPath()});
    EXPECT_EQ(walked.mStatus, 0);
    for (const auto& name : names) {
        EXPECT_NE(RowOf(walked.mOut, folder.Path(name.second)), "") << name.second;
    }
    EXPECT_EQ(LinesOf(walked.mOut).size(), 1U + names.size());
}

TEST(Names, WithABackslashOpenAndAreDoubled) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("back\\slash.mp3", "");
    const ProgramResult result = WideTable({path});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_TRUE(Holds(RowOf(result.mOut, folder.Path("back\\\\slash.mp3")), "audio/mpeg"));
}

TEST(Names, InErrorsAreEscapedToo) {
    EXPECT_EQ(WideTable({"no\n\x1B\xFFne"}).mError,
              "ezannounce: no\\n\\x1b\\xffne: No such file or directory\n");
}

TEST(Names, ThatAreTooLongForTheSystemAreAnError) {
    const std::string name(256, 'n');
    const ProgramResult result = WideTable({"/" + name});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: /" + name + ": File name too long\n");
}

TEST(Walk, GoesInTheOrderOfTheNamesWithFoldersAmongThem) {
    const TemporaryFolder folder;
    for (const char* name : {"b.mp3", "a/z.mp3", "a/y/1.mp3", "c.mp3", "B.mp3", "a.mp3", ".hidden.mp3"}) {
        folder.Write(name, "");
    }
    std::vector<std::string> names;
    for (const std::string& line : LinesOf(WideTable({folder.GetPath()}).mOut)) {
        names.push_back(line.substr(0, line.find(' ')));
    }
    const auto path = [&](const char* aName) { return folder.Path(aName); };
    EXPECT_EQ(names, (Words{"NAME", path(".hidden.mp3"), path("B.mp3"), path("a/y/1.mp3"), path("a/z.mp3"),
                            path("a.mp3"), path("b.mp3"), path("c.mp3")}));
}

TEST(Walk, PassesOverPipesDevicesAndSocketsInSilence) {
    const TemporaryFolder folder;
    folder.Write("music.mp3", "");
    ASSERT_EQ(mkfifo(folder.Path("pipe.mp3").c_str(), 0600), 0);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    folder.Path("socket.mp3").copy(address.sun_path, sizeof address.sun_path - 1);
    const void* bound = &address;
    ASSERT_EQ(bind(server, static_cast<const sockaddr*>(bound), sizeof address), 0);
    const ProgramResult result = WideTable({folder.GetPath()});
    close(server);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(LinesOf(result.mOut).size(), 2U);
}

TEST(Walk, EndsWhereLinksLeadBackAndVisitsAFolderOnce) {
    const TemporaryFolder folder;
    folder.Write("a/b/song.mp3", "");
    std::filesystem::create_directory_symlink("..", folder.Path("a/up"));
    std::filesystem::create_directory_symlink(folder.Path("a"), folder.Path("a/b/top"));
    std::filesystem::create_directory_symlink("a", folder.Path("z"));
    std::filesystem::create_symlink("a/b/song.mp3", folder.Path("link.mp3"));
    const ProgramResult result = WideTable({folder.GetPath()});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(LinesOf(result.mOut).size(), 3U) << result.mOut;
    EXPECT_NE(RowOf(result.mOut, folder.Path("a/b/song.mp3")), "");
    EXPECT_NE(RowOf(result.mOut, folder.Path("link.mp3")), "");
}

TEST(Walk, NamesLinksThatLeadNowhere) {
    const TemporaryFolder folder;
    folder.Write("song.mp3", "");
    std::filesystem::create_symlink("none.mp3", folder.Path("dangling.mp3"));
    std::filesystem::create_symlink("self.mp3", folder.Path("self.mp3"));
    const ProgramResult result = WideTable({folder.GetPath()});
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: " + folder.Path("dangling.mp3") +
                                 ": No such file or directory\nezannounce: " + folder.Path("self.mp3") +
                                 ": Too many levels of symbolic links\n");
    EXPECT_EQ(LinesOf(result.mOut).size(), 2U);
}

TEST(Walk, AnEmptyFolderShowsNothingAndIsNoFailure) {
    const TemporaryFolder folder;
    const ProgramResult result = WideTable({folder.GetPath()});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(result.mError, "");
}

TEST(Walk, OfAFolderWithASlashAtItsEndDoublesNone) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a.mp3", "");
    EXPECT_NE(RowOf(WideTable({folder.GetPath() + "/"}).mOut, path), "");
}

namespace {

constexpr std::size_t kManyFiles = 2500;

void WriteManyFiles(const TemporaryFolder& aFolder) {
    for (std::size_t i = 0; i < kManyFiles; ++i) {
        aFolder.Write("song-" + std::to_string(i) + ".mp3", "");
    }
}

} // namespace

TEST(LongWalk, ShowsOneHeaderAndEveryFile) {
    const TemporaryFolder folder;
    WriteManyFiles(folder);
    const ProgramResult result = WideTable({folder.GetPath()});
    EXPECT_EQ(result.mStatus, 0);
    const std::vector<std::string> lines = LinesOf(result.mOut);
    EXPECT_EQ(lines.size(), 1U + kManyFiles);
    std::size_t headers = 0;
    std::size_t media = 0;
    for (const std::string& line : lines) {
        headers += line.compare(0, kHeader.size(), kHeader) == 0 ? 1 : 0;
        media += Holds(line, "  audio/mpeg  item.audioItem.musicTrack  *  ") ? 1 : 0;
    }
    EXPECT_EQ(headers, 1U);
    EXPECT_EQ(media, kManyFiles);
}

TEST(LongWalk, ShowsProgressOnATerminalAndErasesIt) {
    const TemporaryFolder folder;
    WriteManyFiles(folder);
    ProgramOptions options;
    options.mfErrorOnTerminal = true;
    const ProgramResult result = Announce({"--json", folder.GetPath()}, options);
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_TRUE(Holds(result.mError, "\r\x1B[K2304 files, in ")) << result.mError;
    const std::string erased = "\r\x1B[K";
    ASSERT_GE(result.mError.size(), erased.size());
    EXPECT_EQ(result.mError.substr(result.mError.size() - erased.size()), erased);
    EXPECT_EQ(LinesOf(result.mOut).size(), kManyFiles);
}

TEST(LongWalk, ShowsNoProgressWhenPiped) {
    const TemporaryFolder folder;
    WriteManyFiles(folder);
    EXPECT_EQ(WideTable({folder.GetPath()}).mError, "");
}
