#include "Announce.h"
#include "output/Columns.h"
#include "output/OutputWidth.h"
#include "output/SafeText.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>
#include <vector>

namespace {

using Words = std::vector<std::string>;

ProgramOptions InSamples(const Words& anEnvironment = {}) {
    ProgramOptions options;
    options.mFolder = EZ_SAMPLES;
    options.mEnvironment = anEnvironment;
    return options;
}

std::size_t WidestLine(const std::string& aText) {
    std::size_t width = 0;
    for (const std::string& line : LinesOf(aText)) {
        width = std::max(width, TerminalWidth(line));
    }
    return width;
}

/// What the tool shows on a terminal of so many columns; 0 for one that was never given a size.
std::string OnTerminal(unsigned short aColumns, const Words& anArguments) {
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    const std::string name = ptsname(terminal);
    const int held = open(name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC); // or the size goes with the last user
    winsize size = {};
    size.ws_col = aColumns;
    EXPECT_EQ(ioctl(terminal, TIOCSWINSZ, &size), 0);
    ProgramOptions options = InSamples();
    options.mOutTo = name;
    EXPECT_EQ(Announce(anArguments, options).mStatus, 0);
    std::array<char, 4096> text = {};
    const ssize_t count = read(terminal, text.data(), text.size()); // less than a terminal holds back
    close(held);
    close(terminal);
    std::string shown(text.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    for (std::size_t at = shown.find('\r'); at != std::string::npos; at = shown.find('\r')) {
        shown.erase(at, 1);
    }
    return shown;
}

} // namespace

TEST(FittedTable, ShowsAMediaInOneRowUnderAHeader) {
    const ProgramResult result =
        Announce({"music/morning-walk.mp3", "music/night-ferry.mp3", "music/plain-water.flac",
                  "pictures/windmill.gif", "video/kite-day.mp4", "playlists/sunday.m3u"},
                 InSamples());
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, "NAME                    KIND           LENGTH      SIZE  CODECS    PROFILE\n"
                           "music/morning-walk.mp3  audio     0:00:05.300  31.6 KiB  MP3       MP3\n"
                           "music/night-ferry.mp3   audio         0:00:12  56.3 KiB  MP3       MP3\n"
                           "music/plain-water.flac  audio     0:00:02.400  37.2 KiB  FLAC      -\n"
                           "pictures/windmill.gif   image               -   8.6 KiB  -         -\n"
                           "video/kite-day.mp4      video     0:00:04.200   176x144  H264+AAC  "
                           "AVC_MP4_BL_CIF15_AAC_520\n"
                           "playlists/sunday.m3u    playlist            -     302 B  -         -\n");
}

TEST(FittedTable, SaysInTheLastColumnThatAMediaIsNotRecognised) {
    const TemporaryFolder folder;
    folder.Write("letter.unheard", "hello");
    ProgramOptions options;
    options.mFolder = folder.GetPath();
    EXPECT_EQ(Announce({"letter.unheard"}, options).mOut,
              "NAME            KIND  LENGTH  SIZE  CODECS  PROFILE\n"
              "letter.unheard  -          -   5 B  -       not recognised\n");
}

TEST(FittedTable, FitsTheTerminalAndNeverCutsAProfile) {
    const struct {
        const char* mColumns;
        const char* mHeader; ///< without the blanks between
    } table[] = {{"200", "NAMEKINDLENGTHSIZECODECSPROFILE"},
                 {"100", "NAMEKINDLENGTHSIZECODECSPROFILE"},
                 {"80", "NAMELENGTHSIZECODECSPROFILE"},
                 {"66", "NAMELENGTHCODECSPROFILE"},
                 {"55", "NAMELENGTHPROFILE"},
                 {"43", "NAMEPROFILE"}};
    const std::string profile = "  AVC_MP4_BL_CIF15_AAC_520\n";
    for (const auto& row : table) {
        const ProgramResult result =
            Announce({"conformance", "music", "video"}, InSamples({std::string("COLUMNS=") + row.mColumns}));
        EXPECT_LE(WidestLine(result.mOut), std::strtoul(row.mColumns, nullptr, 10));
        EXPECT_NE(result.mOut.find(profile), std::string::npos) << row.mColumns;
        std::string header = LinesOf(result.mOut).at(0);
        for (std::size_t at = header.find(' '); at != std::string::npos; at = header.find(' ')) {
            header.erase(at, 1);
        }
        EXPECT_EQ(header, row.mHeader) << row.mColumns;
    }
    // Where not even that has room, a name keeps its least, and the row is longer.
    EXPECT_NE(Announce({"conformance"}, InSamples({"COLUMNS=1"})).mOut.find("conf...520-1.mp4" + profile),
              std::string::npos);
}

TEST(FittedTable, TakesTheWidthOfTheTerminalUnlessColumnsStatesOne) {
    const Words media = {"conformance"};
    const std::string hundred = Announce(media, InSamples({"COLUMNS=100"})).mOut;
    const std::string ninety = Announce(media, InSamples({"COLUMNS=90"})).mOut;
    ASSERT_NE(hundred, ninety);
    EXPECT_EQ(Announce(media, InSamples()).mOut, hundred);
    EXPECT_EQ(Announce(media, InSamples({"COLUMNS=wide"})).mOut, hundred);
    EXPECT_EQ(OnTerminal(90, media), ninety);
    EXPECT_EQ(OnTerminal(0, media), hundred);
}

TEST(FittedTable, AWidthIsANumberFromOneOn) {
    const struct {
        const char* mText;
        std::size_t mWidth; ///< 0 for none
    } table[] = {{"1", 1}, {"80", 80}, {"1000", 1000}, {"1001", 1000}, {"4294967295", 1000},
                 {"0", 0}, {"", 0},    {"-1", 0},      {"80 ", 0},     {"4294967296", 0}};
    for (const auto& row : table) {
        EXPECT_EQ(StatedWidth(row.mText).value_or(0), row.mWidth) << row.mText;
    }
}

TEST(FittedTable, ANameIsCutInItsMiddle) {
    const struct {
        const char* mText;
        std::size_t mWidth;
        const char* mCut;
    } table[] = {
        {"abcdefghijkl", 12, "abcdefghijkl"},
        {"abcdefghijkl", 11, "ab...ghijkl"},
        {"abcdefghijkl", 9, "ab...ijkl"},
        {"abcdefghijkl", 5, "...kl"},
        {"abcdefghijkl", 3, "..."},
        {"abcdefghijkl", 2, ".."},
        {"abcdefghijkl", 0, ""},
        {"", 0, ""},
        // A wide character takes two columns and is never halved.
        {"\xE9\x9F\xB3\xE6\xA5\xBD\xE9\x9F\xB3\xE6\xA5\xBD", 8,
         "\xE9\x9F\xB3\xE6\xA5\xBD\xE9\x9F\xB3\xE6\xA5\xBD"},
        {"\xE9\x9F\xB3\xE6\xA5\xBD\xE9\x9F\xB3\xE6\xA5\xBD", 7, "...\xE9\x9F\xB3\xE6\xA5\xBD"},
        {"a\xE9\x9F\xB3\xE6\xA5\xBD\xE9\x9F\xB3\xE6\xA5\xBD", 8, "a...\xE9\x9F\xB3\xE6\xA5\xBD"},
        // What combines stays with its letter, or goes with it.
        {"u\xCC\x88xxxxxxxxxxu\xCC\x88", 6, "u\xCC\x88...xu\xCC\x88"},
        {"xxxxxxxxxxu\xCC\x88y", 4, "...y"},
        // An escape is one.
        {"\x1B[31mabcdef", 9, "...abcdef"},
        {"abcdefg\x1B", 8, "a...\\x1b"},
        {"ab\\cdefghij\\", 8, "a...ij\\\\"},
    };
    for (const auto& row : table) {
        const std::string cut = CutInMiddle(row.mText, row.mWidth);
        EXPECT_EQ(cut, row.mCut) << ForTerminal(row.mText) << " in " << row.mWidth;
        EXPECT_LE(TerminalWidth(cut), row.mWidth);
    }
}

TEST(FittedTable, SaysTheHeaderOnceHoweverManyRowsThereAre) {
    const TemporaryFolder folder;
    for (unsigned i = 0; i < 2001; ++i) {
        folder.Write("song-" + std::to_string(i) + ".mp3", "");
    }
    const std::vector<std::string> lines = LinesOf(Announce({folder.GetPath()}).mOut);
    EXPECT_EQ(lines.size(), 2002U);
    std::size_t headers = 0;
    for (const std::string& line : lines) {
        headers += line.compare(0, 5, "NAME ") == 0 ? 1 : 0;
    }
    EXPECT_EQ(headers, 1U);
}

// What is written grows as what is told does: a row that is as long as others are many pads none of them.
TEST(ColumnsOfTables, OneLongRowPadsNoOther) {
    std::vector<std::size_t> sizes;
    for (const std::size_t count : {1000U, 2000U, 4000U}) {
        std::vector<Words> rows(count, Words{"a", "b", "c"});
        rows.push_back({std::string(count, 'x'), std::string(count, 'y'), "c"});
        sizes.push_back(InColumns(rows).size());
    }
    EXPECT_EQ(sizes[1] - sizes[0], (sizes[2] - sizes[1]) / 2);
    EXPECT_EQ(sizes, (std::vector<std::size_t>{1000 * 8 + 2006, 2000 * 8 + 4006, 4000 * 8 + 8006}));
}

TEST(ColumnsOfTables, ACellAsLongAsAColumnMayBeWidensItAndALongerOnePushesItsOwnRow) {
    const std::string fits(60, 'f');
    const std::string longer(61, 'l');
    EXPECT_EQ(InColumns({{"a", "b"}, {fits, "b"}}), "a" + std::string(61, ' ') + "b\n" + fits + "  b\n");
    EXPECT_EQ(InColumns({{"a", "b"}, {longer, "b"}}), "a  b\n" + longer + "  b\n");
}

TEST(ColumnsOfTables, ACellThatTakesNoColumnHasItsGapAllTheSame) {
    ColumnWidths widths({{}, {}});
    const Words row = {"\xCC\x88", "b"};
    widths.Take(row);
    EXPECT_EQ(widths.Line(row), "\xCC\x88  b\n");
    EXPECT_EQ(widths.GetLineWidth(), 3U);
    widths.Hide(0);
    EXPECT_EQ(widths.Line(row), "b\n");
    EXPECT_EQ(widths.GetLineWidth(), 1U);
}

TEST(ColumnsOfTables, OfMediaAreNotPaddedByOneLongName) {
    const TemporaryFolder folder;
    std::string deep;
    for (int i = 0; i < 12; ++i) {
        deep += std::string(250, 'd') + "/";
    }
    folder.Write(deep + "long.mp3", "");
    for (const char* option : {"--wide", "--log=error"}) {
        std::vector<std::size_t> sizes;
        std::size_t written = 0;
        for (const std::size_t count : {100U, 200U, 400U}) {
            for (; written < count; ++written) {
                folder.Write(std::to_string(1000 + written) + ".mp3", "");
            }
            sizes.push_back(Announce({option, folder.GetPath()}).mOut.size());
        }
        written = 0;
        // Each further row takes as much as the one before it, and not a tenth of the long name.
        EXPECT_EQ(sizes[2] - sizes[1], 2 * (sizes[1] - sizes[0])) << option;
        EXPECT_LT(sizes[1] - sizes[0], 100U * 300U) << option;
        for (unsigned i = 0; i < 400; ++i) {
            ASSERT_EQ(unlink(folder.Path(std::to_string(1000 + i) + ".mp3").c_str()), 0);
        }
    }
}
