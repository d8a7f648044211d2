#include "tools/thumbnail/ThumbnailKit.h"

#include "support/WholeFile.h"

#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/stat.h>

namespace {

const std::string kHarbour = EZ_SAMPLES "/pictures/harbour.jpg";
const std::string kItself = "built from the picture itself";
const std::string kCached = "from the cache";
const std::string kNone =
    "no thumbnail: it is no JPEG or PNG that is read, has no cover, and no picture beside it; "
    "--default gives the generic one\n";
const std::string kDamaged =
    "no thumbnail: its picture is damaged, too large, or of a kind that is not read\n";
const std::string kGeneric = "generic picture of the media's class, ";

/// Writes a file anew without changing its time of modification.
void Replace(const std::string& aPath, const std::string& aContent) {
    struct stat status = {};
    ASSERT_EQ(stat(aPath.c_str(), &status), 0);
    std::ofstream(aPath, std::ios::binary) << aContent;
    const timespec times[2] = {status.st_atim, status.st_mtim};
    ASSERT_EQ(utimensat(AT_FDCWD, aPath.c_str(), times, 0), 0);
}

/// Files in a folder and below it.
std::vector<std::string> FilesBelow(const std::string& aFolder) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(aFolder)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path().string());
        }
    }
    return files;
}

} // namespace

TEST_F(ThumbnailTool, APictureIsItsOwnThumbnailAndLegalForDLNA) {
    EXPECT_EQ(Thumbnail(kHarbour), Line("JPEG, 160x120", kItself));
    const ReadJpeg jpeg(ReadWholeFile(mOut));
    EXPECT_EQ(SizeOf(jpeg.mPicture), "160x120");
    EXPECT_TRUE(jpeg.mfBaseline);
    EXPECT_TRUE(jpeg.mfYCbCr);
    EXPECT_EQ(jpeg.mSampling, "2x2 1x1 1x1 ");
    EXPECT_EQ(jpeg.mWarnings, 0);
}

TEST_F(ThumbnailTool, TheSecondRunIsServedFromTheCacheAndTheLogShowsIt) {
    const Words words = {"thumbnail", kHarbour, "-o", mOut, "--log", "debug"};
    const std::string log = "debug: Thumbnail of '" + kHarbour + "': ";
    const ProgramResult first = Run(words);
    EXPECT_TRUE(Holds(first.mError, log + kItself + "\n"));
    const std::string bytes = ReadWholeFile(mOut);
    const ProgramResult second = Run(words);
    EXPECT_TRUE(Holds(second.mError, log + kCached + "\n"));
    EXPECT_TRUE(
        Holds(second.mError, "debug: GetCachedThumbnail: " + mFolder.Path("cache") + "/ezcache/thumb_"));
    EXPECT_EQ(WithoutBytes(second.mOut), Line("JPEG, 160x120", kCached));
    EXPECT_EQ(ReadWholeFile(mOut), bytes);
}

TEST_F(ThumbnailTool, EveryWayToWriteAPathIsTheSameMedia) {
    mFolder.Write("a/b/red.jpg", JpegOf(kRed));
    EXPECT_TRUE(Holds(Thumbnail(mFolder.Path("a/b/red.jpg")), kItself));
    ProgramOptions options;
    options.mFolder = mFolder.Path("a");
    for (const char* path : {"b/red.jpg", "./b//red.jpg", "../a/b/red.jpg"}) {
        EXPECT_TRUE(Holds(Run({"thumbnail", path, "-o", mOut}, options).mOut, kCached)) << path;
    }
    options.mFolder = mFolder.Path("a/b");
    EXPECT_TRUE(Holds(Run({"thumbnail", "red.jpg", "-o", mOut}, options).mOut, kCached));
}

TEST_F(ThumbnailTool, ASongShowsTheCoverInIt) {
    EXPECT_EQ(Thumbnail(EZ_SAMPLES "/music/night-ferry.mp3"),
              Line("JPEG, 160x160", "built from the cover in it"));
    const std::string song = mFolder.Write("song.mp3", SongWithCover(JpegOf(kGreen, 200, 100)));
    EXPECT_EQ(Thumbnail(song), Line("JPEG, 160x80", "built from the cover in it"));
    ExpectColour(ReadWholeFile(mOut), kGreen);
    EXPECT_EQ(Thumbnail(song), Line("JPEG, 160x80", kCached));
    mFolder.Write("song.mp3", SongWithCover(JpegOf(kBlue, 200, 100)));
    EXPECT_EQ(Thumbnail(song), Line("JPEG, 160x80", "built from the cover in it"));
    ExpectColour(ReadWholeFile(mOut), kBlue);
}

TEST_F(ThumbnailTool, AFilmShowsThePictureBesideIt) {
    const std::string film = Film();
    const std::string picture = mFolder.Write("film/kite.jpg", JpegOf(kRed));
    EXPECT_EQ(Thumbnail(film), Line("JPEG, 160x160", "built from " + picture));
    ExpectColour(ReadWholeFile(mOut), kRed);
    EXPECT_EQ(Thumbnail(film), Line("JPEG, 160x160", kCached));
}

TEST_F(ThumbnailTool, TheCoverInASongIsTakenBeforeThePictureBesideIt) {
    const std::string song = mFolder.Write("song.mp3", SongWithCover(JpegOf(kGreen)));
    mFolder.Write("song.jpg", JpegOf(kRed));
    EXPECT_TRUE(Holds(Thumbnail(song), "the cover in it"));
    ExpectColour(ReadWholeFile(mOut), kGreen);
}

TEST_F(ThumbnailTool, APictureBesideTheMediaThatChangesComesFresh) {
    const std::string film = Film();
    EXPECT_EQ(Thumbnail(film), "ezannounce: " + film + ": " + kNone);
    const std::string cover = mFolder.Write("film/cover.png", JpegOf(kRed));
    EXPECT_TRUE(Holds(Thumbnail(film), "built from " + cover)); // although nothing was remembered before
    const std::string own = mFolder.Write("film/kite.jpg", JpegOf(kGreen));
    EXPECT_TRUE(Holds(Thumbnail(film), "built from " + own));
    ExpectColour(ReadWholeFile(mOut), kGreen);
    mFolder.Write("film/kite.jpg", JpegOf(kBlue));
    EXPECT_TRUE(Holds(Thumbnail(film), "built from " + own));
    ExpectColour(ReadWholeFile(mOut), kBlue);
    std::filesystem::remove(own);
    EXPECT_TRUE(Holds(Thumbnail(film), kCached)); // as it was before
    ExpectColour(ReadWholeFile(mOut), kRed);
    std::filesystem::remove(cover);
    EXPECT_EQ(Thumbnail(film), "ezannounce: " + film + ": " + kNone);
}

TEST_F(ThumbnailTool, AChangeThatKeepsSizeAndTimeIsSeen) {
    const std::string film = Film();
    const std::string picture = mFolder.Write("film/kite.jpg", JpegOf(kRed) + std::string(4000, 'x'));
    EXPECT_TRUE(Holds(Thumbnail(film), "built from"));
    std::string other = JpegOf(kBlue);
    other.resize(ReadWholeFile(picture).size(), 'x');
    Replace(picture, other);
    EXPECT_TRUE(Holds(Thumbnail(film), "built from"));
    ExpectColour(ReadWholeFile(mOut), kBlue);
}

TEST_F(ThumbnailTool, TheNextPictureStandsInForADamagedOne) {
    const std::string film = Film();
    mFolder.Write("film/kite.jpg", JpegOf(kRed).substr(0, 300));
    EXPECT_EQ(Thumbnail(film), "ezannounce: " + film + ": " + kDamaged);
    const std::string folder = mFolder.Write("film/Folder.JPG", JpegOf(kBlue));
    EXPECT_TRUE(Holds(Thumbnail(film), "built from " + folder));
    mFolder.Write("film/Folder.JPG", JpegOf(kGreen));
    EXPECT_TRUE(Holds(Thumbnail(film), "built from " + folder)); // and its change is seen
    ExpectColour(ReadWholeFile(mOut), kGreen);
}

TEST_F(ThumbnailTool, PngIsMadeWhenAskedFor) {
    TestPicture picture(40, 20, 4);
    for (std::size_t i = 0; i < picture.mBytes.size(); ++i) {
        picture.mBytes[i] = i % 4 == 0 ? 200 : (i % 4 == 3 ? 128 : 0);
    }
    const std::string path = mFolder.Write("see-through.png", MakePng(picture, PNG_COLOR_TYPE_RGBA));
    EXPECT_EQ(Thumbnail(path, {"--png"}), Line("PNG, 40x20", kItself));
    const TestPicture png = ReadPng(ReadWholeFile(mOut));
    ASSERT_EQ(SizeOf(png), "40x20");
    EXPECT_EQ(Pixel(png.At(20, 10), png.At(20, 10) + 4), (Pixel{200, 0, 0, 128}));
    // JPEG is another thumbnail, on white.
    EXPECT_EQ(Thumbnail(path), Line("JPEG, 40x20", kItself));
    ExpectColour(ReadWholeFile(mOut), {227, 127, 127});
    EXPECT_EQ(Thumbnail(path, {"--png"}), Line("PNG, 40x20", kCached));
}

TEST_F(ThumbnailTool, SizesAreKeptToThePixel) {
    EXPECT_EQ(Thumbnail(kHarbour, {"--size", "33x77"}), Line("JPEG, 33x77", kItself));
    EXPECT_EQ(SizeOf(ReadJpeg(ReadWholeFile(mOut)).mPicture), "33x77");
    EXPECT_EQ(Thumbnail(kHarbour, {"--size", "1x1"}), Line("JPEG, 1x1", kItself));
    EXPECT_EQ(Thumbnail(kHarbour, {"--size", "500x3", "--png"}), Line("PNG, 500x3", kItself));
    EXPECT_EQ(SizeOf(ReadPng(ReadWholeFile(mOut))), "500x3");
    EXPECT_EQ(Thumbnail(kHarbour, {"--size", "33x77"}), Line("JPEG, 33x77", kCached));
}

TEST_F(ThumbnailTool, BoxesAreFilledWithTheAspectKept) {
    EXPECT_EQ(Thumbnail(kHarbour, {"--box", "64x64"}), Line("JPEG, 64x48", kItself));
    EXPECT_EQ(SizeOf(ReadJpeg(ReadWholeFile(mOut)).mPicture), "64x48");
    EXPECT_EQ(Thumbnail(kHarbour, {"--box", "640x640"}), Line("JPEG, 640x480", kItself));
    // Without a word, and in the box of 160 by 160 alone, a small picture stays as it is.
    const std::string small = mFolder.Write("small.jpg", JpegOf(kRed, 100, 50));
    EXPECT_EQ(Thumbnail(small), Line("JPEG, 100x50", kItself));
    EXPECT_EQ(Thumbnail(small, {"--box", "160x160"}), Line("JPEG, 100x50", kCached));
    EXPECT_EQ(Thumbnail(small, {"--box", "200x200"}), Line("JPEG, 200x100", kItself));
    // No side is 0.
    const std::string line = mFolder.Write("line.jpg", JpegOf(kRed, 4000, 2));
    EXPECT_EQ(Thumbnail(line), Line("JPEG, 160x1", kItself));
}

TEST_F(ThumbnailTool, FastOnesAreThumbnailsOfTheirOwn) {
    const std::string path = mFolder.Write("noise.jpg", MakeJpeg(Noise(900, 700, 3), JCS_RGB));
    EXPECT_EQ(Thumbnail(path), Line("JPEG, 160x124", kItself));
    const std::string fine = ReadWholeFile(mOut);
    EXPECT_EQ(Thumbnail(path, {"--fast"}), Line("JPEG, 160x124", kItself));
    EXPECT_NE(ReadWholeFile(mOut), fine);
    EXPECT_EQ(Thumbnail(path), Line("JPEG, 160x124", kCached));
    EXPECT_EQ(ReadWholeFile(mOut), fine);
}

TEST_F(ThumbnailTool, TheGenericPictureIsGivenOnlyWhereItIsAskedFor) {
    const std::string film = Film();
    for (int i = 0; i < 2; ++i) { // the second time it is remembered
        EXPECT_EQ(Thumbnail(film), "ezannounce: " + film + ": " + kNone);
        EXPECT_FALSE(std::filesystem::exists(mOut));
    }
    EXPECT_EQ(Thumbnail(film, {"--default"}), Line("JPEG, 160x160", kGeneric + "built"));
    const std::string video = ReadWholeFile(mOut);
    const std::string other = mFolder.Write("other.mkv", ReadWholeFile(film));
    EXPECT_EQ(Thumbnail(other, {"--default"}), Line("JPEG, 160x160", kGeneric + kCached));
    EXPECT_EQ(ReadWholeFile(mOut), video);
    EXPECT_EQ(Thumbnail(EZ_SAMPLES "/music/door-bell.wav", {"--default"}),
              Line("JPEG, 160x160", kGeneric + "built"));
    EXPECT_NE(ReadWholeFile(mOut), video);
    // It changes nothing where there is one.
    EXPECT_EQ(Thumbnail(kHarbour, {"--default"}), Line("JPEG, 160x120", kItself));
    const std::string damaged = mFolder.Write("damaged.png", "\x89PNG\r\n\x1A\n");
    EXPECT_EQ(Thumbnail(damaged), "ezannounce: " + damaged + ": " + kDamaged);
    EXPECT_EQ(Thumbnail(damaged, {"--default"}), Line("JPEG, 160x160", kGeneric + "built"));
}

TEST_F(ThumbnailTool, AGenericPictureOfAnotherVersionOrSpeedIsNotServed) {
    const std::string film = Film();
    // As it is called by its class alone.
    mFolder.Write("cache/ezcache/thumb_video_0_0_160_160_0_0_0.jpg", JpegOf(kRed));
    EXPECT_EQ(Thumbnail(film, {"--default"}), Line("JPEG, 160x160", kGeneric + "built"));
    EXPECT_EQ(Thumbnail(film, {"--default", "--fast"}), Line("JPEG, 160x160", kGeneric + "built"));
    EXPECT_EQ(Thumbnail(film, {"--default", "--fast"}), Line("JPEG, 160x160", kGeneric + kCached));
    EXPECT_EQ(Thumbnail(film, {"--default"}), Line("JPEG, 160x160", kGeneric + kCached));
}

TEST_F(ThumbnailTool, WhatIsNoMediaHasNone) {
    const std::string text = mFolder.Write("notes.unknown", "to do");
    for (const Words& more : {Words{}, Words{"--default"}}) {
        EXPECT_EQ(Thumbnail(text, more), "ezannounce: " + text +
                                             ": not recognised, so that there is nothing to make a "
                                             "thumbnail of\n");
        EXPECT_EQ(Thumbnail(mFolder.Path("none.jpg"), more),
                  "ezannounce: " + mFolder.Path("none.jpg") + ": No such file or directory\n");
        EXPECT_EQ(Thumbnail(mFolder.GetPath(), more),
                  "ezannounce: " + mFolder.GetPath() + ": not a regular file\n");
    }
    EXPECT_FALSE(std::filesystem::exists(mOut));
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("cache")));
}

TEST_F(ThumbnailTool, AFileThatCannotBeWrittenIsNamed) {
    ASSERT_TRUE(Holds(Thumbnail(kHarbour), kItself));
    const std::string shut = mFolder.Path("shut");
    std::filesystem::create_directory(shut);
    ASSERT_EQ(chmod(shut.c_str(), 0500), 0);
    const std::vector<std::pair<std::string, std::string>> places = {
        {shut + "/out.jpg", "Permission denied"},
        {mFolder.Path("none/out.jpg"), "No such file or directory"},
        {mFolder.GetPath(), "is a folder"},
        {mOut + "/out.jpg", "Not a directory"},
        {"/dev/full", "not a regular file"}};
    ProgramOptions options;
    options.mfWithoutRights = true;
    for (const auto& place : places) {
        const ProgramResult result = Run({"thumbnail", kHarbour, "-o", place.first}, options);
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mOut, "");
        EXPECT_EQ(result.mError, "ezannounce: " + place.first + ": " + place.second + "\n");
    }
    EXPECT_TRUE(std::filesystem::is_empty(shut));
}

TEST_F(ThumbnailTool, WhereDescriptorsAreClosedNoLineOfTheLogGoesIntoAFile) {
    const std::string path = mFolder.Write("noise.png", MakePng(Noise(300, 300, 3), PNG_COLOR_TYPE_RGB));
    const Words words = {"--png", "--box", "30x30"};
    ASSERT_TRUE(Holds(Thumbnail(path, words), kItself));
    for (const std::string closed : {"2>&-", "1>&- 2>&-", "0<&- 1>&- 2>&-"}) {
        const std::string name = "closed" + std::to_string(closed.size());
        const std::string command = "exec " + ShellWordsOf(EZANNOUNCE) +
                                    " --config " EZ_SAMPLES " --log debug thumbnail " + path +
                                    " --png --box 30x30 --cache " + mFolder.Path(name) + " -o " +
                                    mFolder.Path(name + ".png ") + closed;
        RunSystemProgram("/bin/sh", {"-c", command});
        EXPECT_EQ(ReadWholeFile(mFolder.Path(name + ".png")), ReadWholeFile(mOut)) << closed;
        const Words cached = FilesBelow(mFolder.Path(name));
        EXPECT_FALSE(cached.empty()) << closed;
        for (const std::string& file : cached) {
            EXPECT_EQ(ReadWholeFile(file).find("ezMediaParser"), std::string::npos) << file;
            EXPECT_EQ(ReadWholeFile(file).find("humbnailProvider: "), std::string::npos) << file;
        }
    }
}

TEST_F(ThumbnailTool, AFileIsWrittenWholeOrNotAtAll) {
    const std::string path = mFolder.Write("noise.png", MakePng(Noise(300, 300, 3), PNG_COLOR_TYPE_RGB));
    const Words words = {"--png", "--box", "300x300"};
    ASSERT_TRUE(Holds(Thumbnail(path, words), kItself)); // so that the cache has it
    const std::string target = mFolder.Write("there/target.png", "what was there");
    // Files may have 100 blocks of 512 bytes; what goes beyond is an error in place of a signal.
    const std::string command = "trap '' XFSZ; ulimit -f 100; exec " + ShellWordsOf(EZANNOUNCE) +
                                " --config " EZ_SAMPLES " thumbnail " + path +
                                " --png --box 300x300 --cache " + mFolder.Path("cache") + " -o ";
    for (const std::string& out : {target, mFolder.Path("there/new.png")}) {
        const ProgramResult result = RunSystemProgram("/bin/sh", {"-c", command + out});
        EXPECT_EQ(result.mStatus, 1);
        EXPECT_EQ(result.mOut, "");
        EXPECT_EQ(result.mError, "ezannounce: " + out + ": File too large\n");
    }
    EXPECT_EQ(ReadWholeFile(target), "what was there");
    EXPECT_EQ(FilesBelow(mFolder.Path("there")), Words{target});
    mOut = target;
    EXPECT_EQ(Thumbnail(path, words), Line("PNG, 300x300", kCached)); // and else it is replaced
}

TEST_F(ThumbnailTool, WhatAThumbnailIsMadeOfIsNotReplacedByIt) {
    const std::string film = Film();
    const std::string picture = mFolder.Write("film/kite.jpg", JpegOf(kRed, 400, 400));
    const std::string content = ReadWholeFile(picture);
    std::filesystem::create_symlink(picture, mFolder.Path("link"));
    for (const std::string& media : {film, picture}) {
        for (const std::string& out : {picture, mFolder.Path("link")}) {
            const ProgramResult result = Run({"thumbnail", media, "-o", out});
            EXPECT_EQ(result.mStatus, 1);
            EXPECT_EQ(result.mError,
                      "ezannounce: " + out + ": is what the thumbnail is made of, and not replaced by it\n");
        }
    }
    EXPECT_EQ(ReadWholeFile(picture), content);
}

TEST_F(ThumbnailTool, NamesAreShownSoThatATerminalTakesNoHarm) {
    const std::string film = Film();
    std::filesystem::rename(film, mFolder.Path("film/a\x1B[2J.mkv"));
    mFolder.Write("film/a\x1B[2J.jpg", JpegOf(kRed));
    mOut = mFolder.Path("o\nut");
    const std::string line = Thumbnail(mFolder.Path("film/a\x1B[2J.mkv"));
    EXPECT_TRUE(Holds(line, mFolder.Path("o\\nut: JPEG, 160x160, ")));
    EXPECT_TRUE(Holds(line, "built from " + mFolder.Path("film/a\\x1b[2J.jpg\n")));
}

TEST_F(ThumbnailTool, TheCacheLiesWhereCachesOfAPersonLie) {
    const std::string file = mFolder.Path("out.jpg");
    const auto run = [&](const std::string& aCache, const std::string& aHome) {
        ProgramOptions options;
        options.mEnvironment = {aCache, aHome};
        options.mFolder = mFolder.GetPath();
        return Announce({"thumbnail", kHarbour, "-o", file}, options);
    };
    const std::string home = "HOME=" + mFolder.Path("home");
    std::filesystem::create_directory(mFolder.Path("home"));
    EXPECT_EQ(run("XDG_CACHE_HOME=" + mFolder.Path("xdg"), home).mStatus, 0);
    EXPECT_EQ(FilesBelow(mFolder.Path("xdg/ezannounce/ezcache")).size(), 1U);
    EXPECT_TRUE(std::filesystem::is_empty(mFolder.Path("home")));
    for (const char* none : {"XDG_CACHE_HOME", "XDG_CACHE_HOME=", "XDG_CACHE_HOME=relative"}) {
        EXPECT_EQ(run(none, home).mStatus, 0) << none;
        EXPECT_EQ(FilesBelow(mFolder.Path("home/.cache/ezannounce/ezcache")).size(), 1U);
        std::filesystem::remove_all(mFolder.Path("home/.cache"));
    }
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("relative")));
    struct stat status = {};
    ASSERT_EQ(stat(mFolder.Path("xdg/ezannounce").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);

    EXPECT_EQ(run("XDG_CACHE_HOME=" + mFolder.Path("missing/caches"), home).mStatus, 0);
    for (const char* made : {"missing", "missing/caches", "missing/caches/ezannounce"}) {
        ASSERT_EQ(stat(mFolder.Path(made).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, 0700U) << made;
    }

    for (const char* none : {"HOME", "HOME=", "HOME=relative", "HOME=./home"}) {
        const ProgramResult nowhere = run("XDG_CACHE_HOME", none);
        EXPECT_EQ(nowhere.mStatus, 2) << none;
        EXPECT_EQ(nowhere.mError,
                  "ezannounce: thumbnail: no folder for the cache: neither XDG_CACHE_HOME nor "
                  "HOME is an absolute path; --cache names one\n");
    }
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("relative")));
    EXPECT_FALSE(std::filesystem::exists(mFolder.Path("home/.cache")));
}

TEST_F(ThumbnailTool, ACacheThatCannotBeUsedIsNamed) {
    const std::string cache = mFolder.Write("cache", "a file");
    for (const Words& more : {Words{}, Words{"--default"}}) {
        EXPECT_EQ(Thumbnail(kHarbour, more),
                  "ezannounce: " + kHarbour + ": the cache in " + cache +
                      " cannot be read or written; --cache names another folder\n");
    }
    EXPECT_FALSE(std::filesystem::exists(mOut));
}

TEST_F(ThumbnailTool, WhatIsNoPictureInTheCacheIsBuiltAnew) {
    ASSERT_TRUE(Holds(Thumbnail(kHarbour), kItself));
    const std::string bytes = ReadWholeFile(mOut);
    const std::vector<std::string> cached = FilesBelow(mFolder.Path("cache"));
    ASSERT_EQ(cached.size(), 1U);
    for (const std::string& rubbish :
         {std::string(100, '\0'), std::string("\xFF\xD8\xFF"), bytes.substr(0, 700)}) {
        std::ofstream(cached.front(), std::ios::binary) << rubbish;
        EXPECT_EQ(Thumbnail(kHarbour), Line("JPEG, 160x120", kItself));
        EXPECT_EQ(ReadWholeFile(mOut), bytes);
    }
    EXPECT_EQ(Thumbnail(kHarbour), Line("JPEG, 160x120", kCached));
    std::filesystem::remove(cached.front());
    ASSERT_TRUE(Holds(Thumbnail(kHarbour, {"--png"}), kItself));
    const std::string png = ReadWholeFile(mOut);
    std::ofstream(FilesBelow(mFolder.Path("cache")).front(), std::ios::binary) << png.substr(0, 700);
    EXPECT_EQ(Thumbnail(kHarbour, {"--png"}), Line("PNG, 160x120", kItself));
    EXPECT_EQ(ReadWholeFile(mOut), png);
}
