#include "tools/thumbnail/ThumbnailKit.h"

#include "support/WholeFile.h"

#include <string>
#include <sys/stat.h>

namespace {

/// The cell of a column and a row: its left and top.
constexpr unsigned CellStart(unsigned anIndex) {
    return 16 + 176 * anIndex;
}
constexpr unsigned kCellMiddle = 80;
/// The ground of the generic pictures.
const Pixel kGround = {48, 48, 48};

class ContactSheet : public ThumbnailTool {
protected:
    ContactSheet() { std::filesystem::create_directory(mMedia); }

    ProgramResult Make(const ProgramOptions& anOptions = ProgramOptions()) {
        return Run({"contact-sheet", mMedia, "-o", mOut}, anOptions);
    }
    void Write(const std::string& aName, const std::string& aContent) {
        mFolder.Write("media/" + aName, aContent);
    }
    TestPicture Sheet() const { return ReadJpeg(ReadWholeFile(mOut)).mPicture; }

    std::string mMedia = mFolder.Path("media");
};

/// The colour in the middle of a cell.
void ExpectCell(const TestPicture& aSheet, unsigned aColumn, unsigned aRow, const Pixel& aColour) {
    ExpectPixel(aSheet, CellStart(aColumn) + kCellMiddle, CellStart(aRow) + kCellMiddle, aColour);
}

/// The generic picture of some class fills its cell.
void ExpectGeneric(const TestPicture& aSheet, unsigned aColumn, unsigned aRow) {
    ExpectPixel(aSheet, CellStart(aColumn) + 4, CellStart(aRow) + 4, kGround);
    ExpectPixel(aSheet, CellStart(aColumn) + 155, CellStart(aRow) + 155, kGround);
}

} // namespace

TEST_F(ContactSheet, HoldsAMixedFolderInTheOrderOfNames) {
    Write("a.jpg", JpegOf(kRed, 320, 240));
    Write("b/song.mp3", SongWithCover(JpegOf(kGreen)));
    Write("c/film.mkv", ReadWholeFile(EZ_SAMPLES "/video/kite-day.mkv"));
    Write("c/poster.png", MakePng(Quarters(80, 160, std::vector<Pixel>(4, kBlue)), PNG_COLOR_TYPE_RGB));
    Write("d.wav", ReadWholeFile(EZ_SAMPLES "/music/door-bell.wav"));
    Write("notes.unknown", "no media");
    const ProgramResult result = Make();
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(WithoutBytes(result.mOut),
              Line("JPEG, 544x368", "5 media, 1 with the generic picture of their class, 0 from the cache"));
    const TestPicture sheet = Sheet();
    ASSERT_EQ(SizeOf(sheet), "544x368");
    ExpectCell(sheet, 0, 0, kRed);
    ExpectCell(sheet, 1, 0, kGreen);
    ExpectCell(sheet, 2, 0, kBlue);
    ExpectCell(sheet, 0, 1, kBlue); // the poster itself
    ExpectGeneric(sheet, 1, 1);
    ExpectCell(sheet, 2, 1, kWhite);
    // 320 by 240 lies in the middle: 20 rows above and below stay white.
    ExpectPixel(sheet, CellStart(0) + kCellMiddle, CellStart(0) + 12, kWhite);
    ExpectPixel(sheet, CellStart(0) + kCellMiddle, CellStart(0) + 28, kRed);
    ExpectPixel(sheet, CellStart(0) + kCellMiddle, CellStart(0) + 132, kRed);
    ExpectPixel(sheet, CellStart(0) + kCellMiddle, CellStart(0) + 147, kWhite);
    // 80 by 160: 40 columns to the left and right.
    ExpectPixel(sheet, CellStart(2) + 32, CellStart(0) + kCellMiddle, kWhite);
    ExpectPixel(sheet, CellStart(2) + 48, CellStart(0) + kCellMiddle, kBlue);
    ExpectPixel(sheet, CellStart(2) + 127, CellStart(0) + kCellMiddle, kWhite);
    for (unsigned x = 0; x < sheet.mWidth; ++x) { // margins
        ExpectPixel(sheet, x, 4, kWhite);
        ExpectPixel(sheet, x, CellStart(1) - 8, kWhite);
        ExpectPixel(sheet, x, sheet.mHeight - 4, kWhite);
    }
}

TEST_F(ContactSheet, IsAsNearToASquareAsCanBe) {
    const std::vector<std::string> sizes = {"192x192", "368x192", "368x368", "368x368", "544x368",
                                            "544x368", "544x544", "544x544", "544x544", "720x544"};
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        Write(std::to_string(i) + ".jpg", JpegOf(kRed));
        EXPECT_EQ(Make().mStatus, 0);
        EXPECT_EQ(SizeOf(Sheet()), sizes[i]);
    }
    ExpectCell(Sheet(), 1, 2, kRed);
    ExpectCell(Sheet(), 2, 2, kWhite);
}

TEST_F(ContactSheet, IsServedFromTheCacheAndIsNotOnTheNextSheet) {
    Write("a.jpg", JpegOf(kRed));
    Write("b.mp3", "");
    mOut = mMedia + "/sheet.jpg";
    EXPECT_EQ(WithoutBytes(Make().mOut),
              Line("JPEG, 368x192", "2 media, 1 with the generic picture of their class, 0 from the cache"));
    const std::string bytes = ReadWholeFile(mOut);
    EXPECT_EQ(WithoutBytes(Make().mOut),
              Line("JPEG, 368x192", "2 media, 1 with the generic picture of their class, 2 from the cache"));
    EXPECT_EQ(ReadWholeFile(mOut), bytes);
    EXPECT_TRUE(Holds(Run({"contact-sheet", mMedia, "-o", mOut, "--fast"}).mOut, "0 from the cache"));
    Write("a.jpg", JpegOf(kBlue));
    EXPECT_TRUE(Holds(Make().mOut, "1 from the cache"));
    ExpectCell(Sheet(), 0, 0, kBlue);
}

TEST_F(ContactSheet, WithoutMediaThereIsNone) {
    const std::vector<std::string> contents = {"", "notes.unknown"};
    for (const std::string& name : contents) {
        if (!name.empty()) {
            Write(name, "no media");
        }
        const ProgramResult result = Make();
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mOut, "");
        EXPECT_EQ(result.mError, "ezannounce: " + mMedia + ": no media in it\n");
        EXPECT_FALSE(std::filesystem::exists(mOut));
    }
    const std::string file = mFolder.Write("a.jpg", JpegOf(kRed));
    EXPECT_EQ(Run({"contact-sheet", file, "-o", mOut}).mError, "ezannounce: " + file + ": not a folder\n");
    const ProgramResult missing = Run({"contact-sheet", mFolder.Path("none"), "-o", mOut});
    EXPECT_EQ(missing.mStatus, 1);
    EXPECT_EQ(missing.mError, "ezannounce: " + mFolder.Path("none") + ": No such file or directory\n");
}

TEST_F(ContactSheet, HostileFilesDoNotStopIt) {
    using namespace std::string_literals;
    const std::string good = JpegOf(kGreen);
    std::string bomb = MakePng(Quarters(8, 8, std::vector<Pixel>(4, kRed)), PNG_COLOR_TYPE_RGB);
    bomb.replace(16, 8, BigEndian(60000, 4) + BigEndian(60000, 4));
    Write("1/bomb.png", bomb);
    Write("2/cut.jpg", good.substr(0, good.size() / 2));
    Write("3/liar.mp3", SongWithCover(good, 0x7FFFFFF0));
    Write("4/empty.jpg", "");
    Write("5/rubbish.jpg", std::string(5000, '\xFF'));
    Write("6/good.jpg", good);
    const ProgramResult result = Make();
    EXPECT_EQ(result.mStatus, 0);
    EXPECT_EQ(result.mError, "");
    EXPECT_EQ(WithoutBytes(result.mOut),
              Line("JPEG, 544x368", "6 media, 5 with the generic picture of their class, 0 from the cache"));
    const TestPicture sheet = Sheet();
    for (unsigned i = 0; i < 5; ++i) {
        ExpectGeneric(sheet, i % 3, i / 3);
    }
    ExpectCell(sheet, 2, 1, kGreen);
}

TEST_F(ContactSheet, FilesThatCannotBeReadAreNamedAndTheOthersAreOnIt) {
    Write("a.jpg", JpegOf(kRed));
    Write("locked.jpg", JpegOf(kGreen));
    std::filesystem::create_symlink(mFolder.Path("nowhere"), mMedia + "/dangling.jpg");
    ASSERT_EQ(chmod((mMedia + "/locked.jpg").c_str(), 0), 0);
    ProgramOptions options;
    options.mfWithoutRights = true;
    const ProgramResult result = Make(options);
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: " + mMedia + "/dangling.jpg: No such file or directory\n" +
                                 "ezannounce: " + mMedia + "/locked.jpg: Permission denied\n");
    EXPECT_TRUE(Holds(result.mOut, "JPEG, 192x192"));
    ExpectCell(Sheet(), 0, 0, kRed);
}

TEST_F(ContactSheet, HoldsNoMoreThanItsLimitAndSaysWhatIsLeftOut) {
    for (unsigned i = 0; i < 1026; ++i) {
        Write(std::to_string(10000 + i) + ".mp3", "");
    }
    const ProgramResult result = Make();
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: " + mMedia + ": a sheet holds 1024 media; files left out: 2\n");
    EXPECT_TRUE(Holds(result.mOut, "JPEG, 5648x5648"));
    EXPECT_TRUE(Holds(result.mOut, "1024 media"));
    const TestPicture sheet = Sheet();
    ASSERT_EQ(SizeOf(sheet), "5648x5648");
    ExpectGeneric(sheet, 0, 0);
    ExpectGeneric(sheet, 31, 31);
}

TEST_F(ContactSheet, ProgressIsShownOnATerminalOnly) {
    for (unsigned i = 0; i < 300; ++i) {
        Write(std::to_string(i) + ".mp3", "");
    }
    ProgramOptions terminal;
    terminal.mfErrorOnTerminal = true;
    EXPECT_TRUE(Holds(Make(terminal).mError, "256 files, in " + mMedia));
    EXPECT_EQ(Make().mError, "");
}

TEST_F(ContactSheet, AFileThatCannotBeWrittenIsNamed) {
    Write("a.jpg", JpegOf(kRed));
    mOut = mFolder.Path("none/sheet.jpg");
    const ProgramResult result = Make();
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mOut, "");
    EXPECT_EQ(result.mError, "ezannounce: " + mOut + ": No such file or directory\n");
}

TEST_F(ContactSheet, ACacheThatCannotBeUsedEndsItAtOnce) {
    Write("a.jpg", JpegOf(kRed));
    Write("b.jpg", JpegOf(kRed));
    const std::string cache = mFolder.Write("cache", "a file");
    const ProgramResult result = Make();
    EXPECT_EQ(result.mStatus, 1);
    EXPECT_EQ(result.mError, "ezannounce: " + mMedia + "/a.jpg: the cache in " + cache +
                                 " cannot be read or written; --cache names another folder\n");
    EXPECT_FALSE(std::filesystem::exists(mOut));
}

TEST_F(ContactSheet, AMediaOfTheFolderIsNotReplacedByItsSheet) {
    Write("one.jpg", JpegOf(kRed));
    Write("two.jpg", JpegOf(kBlue));
    for (const char* name : {"one.jpg", "link.jpg"}) {
        mOut = mMedia + "/" + name;
        if (!std::filesystem::exists(mOut)) {
            std::filesystem::create_symlink(mMedia + "/two.jpg", mOut);
        }
        const std::string before = ReadWholeFile(mOut);
        const ProgramResult result = Make();
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mOut, "");
        EXPECT_EQ(result.mError,
                  "ezannounce: " + mOut + ": is media of the folder, and not replaced by its sheet\n");
        EXPECT_TRUE(ReadWholeFile(mOut) == before);
    }
}

TEST_F(ContactSheet, ASheetAnEmptyFileAndWhatIsNoMediaAreReplaced) {
    Write("a.jpg", JpegOf(kRed));
    Write("empty.jpg", "");
    Write("notes.unknown", "no media");
    for (const char* name : {"empty.jpg", "empty.jpg", "notes.unknown"}) {
        mOut = mMedia + "/" + name;
        EXPECT_EQ(Make().mError, "");
        EXPECT_GE(ReadJpeg(ReadWholeFile(mOut)).mPicture.mWidth, 192U);
    }
}

TEST_F(ContactSheet, ASheetUnderTheNameOfACoverIsNoCoverOnTheNextOne) {
    Write("film.mkv", ReadWholeFile(EZ_SAMPLES "/video/kite-day.mkv"));
    Write("poster.png", MakePng(Quarters(160, 160, std::vector<Pixel>(4, kBlue)), PNG_COLOR_TYPE_RGB));
    mOut = mMedia + "/cover.jpg";
    const std::string line =
        Line("JPEG, 368x192", "2 media, 0 with the generic picture of their class, 0 from the cache");
    EXPECT_EQ(WithoutBytes(Make().mOut), line);
    ExpectCell(Sheet(), 0, 0, kBlue);
    const std::string first = ReadWholeFile(mOut);
    EXPECT_TRUE(Holds(Make().mOut, "2 from the cache"));
    EXPECT_TRUE(ReadWholeFile(mOut) == first);
    // Without a poster the film has no picture.
    std::filesystem::remove(mMedia + "/poster.png");
    EXPECT_TRUE(Holds(Make().mOut, "1 media, 1 with the generic picture"));
    ExpectGeneric(Sheet(), 0, 0);
}
