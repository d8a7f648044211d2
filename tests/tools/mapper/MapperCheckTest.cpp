#include "mapper/MapperCheck.h"
#include "Announce.h"
#include "ez/DLNAMediaMapper.h"
#include "mapper/Limits.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

/// The findings in a text, without the file's name, and the line that counts them.
Lines FindingsIn(const std::string& aText) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("table.txt", aText);
    const ProgramResult result = RunTool({"mapper", "check", path, "--config", folder.GetPath()});
    Lines findings;
    for (const std::string& line : LinesOf(result.mOut)) {
        EXPECT_EQ(line.compare(0, path.size() + 1, path + ":"), 0) << line;
        findings.push_back(line.substr(path.size() + 1));
    }
    EXPECT_EQ(result.mStatus, findings.size() > 1 ? 1 : 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(ReadWholeFile(path), aText);
    return findings;
}

std::string Entry(const std::string& aName) {
    return aName + ",audio/mpeg,MP3";
}

} // namespace

TEST(MapperCheck, OfTheSampleFindsNothing) {
    const std::string path = EZ_SAMPLES "/MediaMapper.txt";
    const ProgramResult result = RunTool({"mapper", "check", path});
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mOut, path + ": entries: 5, findings: 0\n");
}

TEST(MapperCheck, FindsNothingInAnEmptyFileOrInComments) {
    EXPECT_EQ(FindingsIn(""), Lines{" entries: 0, findings: 0"});
    EXPECT_EQ(FindingsIn("\xEF\xBB\xBF# a,b\n\r\n  \t\n  # " + std::string(2000, 'x') + "\n"),
              Lines{" entries: 0, findings: 0"});
}

TEST(MapperCheck, NamesTheLinesThatAreSkipped) {
    EXPECT_EQ(FindingsIn("# comment\n"
                         "only,two\r\n"
                         "\n" +
                         Entry("good.mp3") +
                         "\n"
                         " ,audio/mpeg,MP3\n"
                         "a.mp3,\t,MP3\n"
                         "b.mp3,audio/mpeg,\n"
                         "c\\,audio/mpeg\\,MP3\n" +
                         Entry("long.mp3") + std::string(1024, ',') + "\nlast"),
              (Lines{"2: fewer than 3 fields: skipped", "5: empty file name: skipped",
                     "6: empty MIME type: skipped", "7: empty profile: skipped",
                     "8: fewer than 3 fields: skipped", "9: longer than 1024 bytes: skipped",
                     "10: fewer than 3 fields: skipped", " entries: 1, findings: 7"}));
}

TEST(MapperCheck, TakesALineOf1024BytesAndNoLonger) {
    const std::string start = Entry("a.mp3") + ",0:00:01,,,,";
    const std::string whole = start + std::string(1024 - start.size(), 'i');
    EXPECT_EQ(FindingsIn(whole + "\n"),
              (Lines{"1: longer than 1024 bytes as a save writes it: skipped from then on",
                     " entries: 1, findings: 1"}));
    EXPECT_EQ(FindingsIn(whole + "i\n"),
              (Lines{"1: longer than 1024 bytes: skipped", " entries: 0, findings: 1"}));
}

TEST(MapperCheck, NamesALineThatIsTooLongOnlyOnceItIsSaved) {
    DLNAMediaMapperEntry entry;
    const std::string start = Entry("a.mp3") + ",0:00:01,,,,";
    ASSERT_TRUE(entry.Set(ezCString(start.c_str())));
    const std::size_t room = 1024 - entry.Get().GetLength();
    EXPECT_EQ(FindingsIn(start + std::string(room, 'i') + "\n"), Lines{" entries: 1, findings: 0"});
    EXPECT_EQ(FindingsIn(start + std::string(room + 1, 'i') + "\n"),
              (Lines{"1: longer than 1024 bytes as a save writes it: skipped from then on",
                     " entries: 1, findings: 1"}));
}

TEST(MapperCheck, NamesABackslashThatASaveJoinsWithTheNextField) {
    EXPECT_EQ(FindingsIn("a.mp3,audio/mpeg,MP3\\\n"),
              (Lines{"1: backslash at the end of the profile: a save joins it with the next field",
                     " entries: 1, findings: 1"}));
    EXPECT_EQ(FindingsIn("a.mp3,audio/mpeg,M\\P3\n"), Lines{" entries: 1, findings: 0"});
}

TEST(MapperCheck, NamesPlaySpeedsThatAreDropped) {
    EXPECT_EQ(
        FindingsIn("a.mpg,video/mpeg,P,,-2\\,1\\,1/2\\,2\n"
                   "b.mpg,video/mpeg,P,,2\\,fast\\,0\\,4/2\\,2\\,-1\\,1.5\n"),
        (Lines{"2: play speed 'fast' is dropped: not a non-zero integer or fraction other than 1",
               "2: play speed '0' is dropped: not a non-zero integer or fraction other than 1",
               "2: play speed '4/2' is dropped: listed before", "2: play speed '2' is dropped: listed before",
               "2: play speed '1.5' is dropped: not a non-zero integer or fraction other than 1",
               " entries: 2, findings: 5"}));
}

TEST(MapperCheck, NamesValuesThatDoNotRead) {
    EXPECT_EQ(
        FindingsIn(Entry("a.mp3") + ",3:20\n" + Entry("b.mp3") + ",0:60:00,,111,128k\n" + Entry("c.mp3") +
                   ",,,, 64000\n" + Entry("d.mp3") + ",,,,2147483648\n" + Entry("e.mp3") + ",,,,-1\n" +
                   Entry("f.mp3") + ",,,,,,,,,,BRELVO.COM_GOLDENDMS=0x10000000\n" + Entry("g.mp3") +
                   ",,,,,,,,,,BRELVO.COM_GOLDENDMS=123456789\n" + Entry("h.mp3") +
                   ",0:00:01.5,,00000001,2147483647,,,,,,DLNA.ORG_OP=01;BRELVO.COM_GOLDENDMS=aF\n" +
                   Entry("i.mp3") + ",,,,,,,,,,BRELVO.COM_GOLDENDMS=\n"),
        (Lines{"1: duration '3:20' does not convert: not used",
               "2: duration '0:60:00' does not convert: not used",
               "2: mandatory bits '111' are not eight of 0 and 1",
               "2: bit rate '128k' does not read: taken as not known",
               "3: bit rate ' 64000' does not read: taken as not known",
               "4: bit rate '2147483648' does not read: taken as not known", "5: bit rate '-1' is negative",
               "6: flag word '0x10000000' does not read: taken as 00000000",
               "7: flag word '123456789' does not read: taken as 00000000", " entries: 9, findings: 9"}));
}

TEST(MapperCheck, NamesWhatASaveDoesNotKeep) {
    EXPECT_EQ(FindingsIn("a\\,b.mp3,audio/mpeg,MP3\n" + Entry("c.mp3") + ",,,,,,,,,,DLNA.ORG_OP=01,x,y\n"),
              (Lines{"1: comma in the file name: a save writes it bare, and it then parts the field",
                     "2: 15 fields: what stands after the 13th is not used", " entries: 2, findings: 2"}));
}

TEST(MapperCheck, NamesDoubledLinesAndEntriesThatNeverAnswer) {
    EXPECT_EQ(FindingsIn("clip.mpg,video/mpeg,Z\n"
                         "x.mp3,audio/mpeg,MP3\n"
                         "CLIP.mp3,audio/mpeg,A\n"
                         "  x.mp3,audio/mpeg,MP3  \n"
                         "clip.avi,video/avi,A\n"),
              (Lines{"1: 'clip' stands in line 3 too, whose profile 'A' comes first: this one never answers",
                     "4: the same line as line 2",
                     "5: 'clip' stands in line 3 too, whose profile 'A' comes first: this one never answers",
                     " entries: 5, findings: 3"}));
}

TEST(MapperCheck, CutsALongNameThatItRepeats) {
    for (const std::size_t length : {100U, 101U}) {
        const std::string name(length, 'n');
        const std::string repeated = name.substr(0, 100) + (length == 100 ? "" : "...");
        EXPECT_EQ(FindingsIn(name + ".mp3,audio/mpeg,A\n" + name + ".avi,video/avi,B\n"),
                  (Lines{"2: '" + repeated +
                             "' stands in line 1 too, whose profile 'A' comes first: this one "
                             "never answers",
                         " entries: 2, findings: 1"}))
            << length;
    }
}

TEST(MapperCheck, KnowsThatAPcmLeavesTheWavToAnother) {
    EXPECT_EQ(FindingsIn("t.pcm,audio/L16,A\nt.wav,audio/x-wav,B\nt.mp3,audio/mpeg,C\n"),
              (Lines{"2: 't' stands in line 1 too, whose profile 'A' comes first: this one answers for .wav "
                     "alone",
                     "3: 't' stands in line 1 too, whose profile 'A' comes first: this one never answers",
                     " entries: 3, findings: 2"}));
}

TEST(MapperCheck, AgreesWithTheTableOnWhichEntryNeverAnswers) {
    const TemporaryFolder folder;
    folder.Write("mediaCTRLMediaTypes.ini", "[MimeTypes]\nm=mpg,wav@video/mpeg@item.videoItem\n");
    folder.Write("MediaMapper.txt", "t.pcm,audio/L16,B\nt.wav,audio/x-wav,C\nu.mpg,video/mpeg,Z\n"
                                    "u.mpg,video/mpeg,Y\n");
    const auto profileOf = [&](const char* aName) {
        const std::string out =
            RunTool({"mapper", "show", "--no-copy", "--config", folder.GetPath(), aName}).mOut;
        const std::size_t at = out.find("  profile         ");
        return at == std::string::npos ? out : out.substr(at + 18, 1);
    };
    EXPECT_EQ(profileOf("t.mpg"), "B");
    EXPECT_EQ(profileOf("t.wav"), "C");
    EXPECT_EQ(profileOf("u.mpg"), "Y");
}

TEST(MapperCheck, ReadsTheWritableFileElseTheReadOnlyOneAndCopiesNothing) {
    const TemporaryFolder config;
    const TemporaryFolder state;
    config.Write("MediaMapper.txt", "one,two\n");
    const Lines words = {"mapper", "check", "--config", config.GetPath(), "--state", state.GetPath()};
    const ProgramResult first = RunTool(words);
    EXPECT_EQ(first.mStatus, 1);
    EXPECT_EQ(LinesOf(first.mOut).at(0), config.Path("MediaMapper.txt") + ":1: fewer than 3 fields: skipped");
    EXPECT_EQ(first.mError, "");
    EXPECT_TRUE(std::filesystem::is_empty(state.GetPath()));
    state.Write("_MediaMapper.txt", Entry("a.mp3"));
    const ProgramResult second = RunTool(words);
    EXPECT_EQ(second.mStatus, 0);
    EXPECT_EQ(second.mOut, state.Path("_MediaMapper.txt") + ": entries: 1, findings: 0\n");
}

TEST(MapperCheck, NamesAFileThatCannotBeRead) {
    const TemporaryFolder folder;
    const ProgramResult missing = RunTool({"mapper", "check", folder.Path("none")});
    EXPECT_EQ(missing.mStatus, 1);
    EXPECT_EQ(missing.mError, "ezannounce: " + folder.Path("none") + ": No such file or directory\n");
    const ProgramResult noFile = RunTool({"mapper", "check", folder.GetPath()});
    EXPECT_EQ(noFile.mStatus, 1);
    EXPECT_EQ(noFile.mError, "ezannounce: " + folder.GetPath() + ": not a regular file\n");
}

TEST(MapperCheck, EndsAfterItsLines) {
    const std::string entry = Entry("a.mp3") + "\n";
    std::string text = std::string(kMapperCheck_MaxLines - 1, '\n') + entry;
    EXPECT_EQ(FindingsIn(text), Lines{" entries: 1, findings: 0"});
    text += entry + std::string(100000, '\n') + entry;
    EXPECT_EQ(FindingsIn(text),
              (Lines{"250001: not checked, nor is what follows: a check ends after 250000 lines",
                     " entries: 1, findings: 1"}));
}

TEST(MapperCheck, RefusesAFileThatDoesNotEnd) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("table.txt", "");
    std::filesystem::resize_file(path, kMapperCheck_MaxBytes);
    EXPECT_EQ(RunTool({"mapper", "check", path}).mOut,
              path + ":1: longer than 1024 bytes: skipped\n" + path + ": entries: 0, findings: 1\n");
    for (const std::uint64_t size : {kMapperCheck_MaxBytes + 1, std::uint64_t{64} << 30}) {
        std::filesystem::resize_file(path, size);
        const ProgramResult result = RunTool({"mapper", "check", path});
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mOut, "");
        EXPECT_EQ(result.mError, "ezannounce: " + path + ": larger than 64 MiB, and so no table to check\n");
    }
}

TEST(MapperCheck, CountsTheFindingsThatItDoesNotName) {
    std::string text;
    for (int i = 0; i < 20000; ++i) {
        text +=
            std::to_string(i) + ".mpg,video/mpeg,P,,a\\,b\\,c\\,d\\,e\\,f\\,g\\,h\\,i\\,j\\,k\\,l\\,m\\,n\n";
    }
    const TemporaryFolder folder;
    MapperCheck check;
    ASSERT_TRUE(CheckMapperFile(folder.Write("table.txt", text), check));
    EXPECT_EQ(check.mFindings.size(), kMapperCheck_MaxFindings);
    EXPECT_EQ(check.mUnnamedCount, 20'000 * 14 - kMapperCheck_MaxFindings);
    EXPECT_EQ(check.mLostLineCount, 20'000U);
}

TEST(MapperCheck, NamesSixteenOfTheSpeedsThatALineLoses) {
    std::string speeds = "x";
    for (int i = 1; i < 16; ++i) {
        speeds += "\\,x";
    }
    Lines findings(16, "1: play speed 'x' is dropped: not a non-zero integer or fraction other than 1");
    findings.emplace_back(" entries: 1, findings: 16");
    EXPECT_EQ(FindingsIn("a.mpg,video/mpeg,P,," + speeds + "\n"), findings);
    findings.back() = "1: play speeds that are dropped besides: 2";
    findings.emplace_back(" entries: 1, findings: 17");
    EXPECT_EQ(FindingsIn("a.mpg,video/mpeg,P,," + speeds + "\\,y\\,z\n"), findings);
}

TEST(MapperCheck, RepeatsOfLongNamesTheirBeginning) {
    const std::string name(400, 'n');
    const std::string profile(400, 'P');
    EXPECT_EQ(FindingsIn(name + ".mp3,audio/mpeg," + profile + "\n" + name + ".mp3,audio/mpeg,Z\n"),
              (Lines{"2: '" + std::string(100, 'n') + "...' stands in line 1 too, whose profile '" +
                         std::string(100, 'P') + "...' comes first: this one never answers",
                     " entries: 2, findings: 1"}));
}

TEST(MapperCheck, OfManyBadLinesNamesThemAll) {
    std::string text;
    for (int i = 0; i < 200000; ++i) {
        text += "bad\n";
    }
    const Lines findings = FindingsIn(text);
    ASSERT_EQ(findings.size(), 200001U);
    EXPECT_EQ(findings[199999], "200000: fewer than 3 fields: skipped");
}
