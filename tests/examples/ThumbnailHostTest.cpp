#include "support/Guide.h"
#include "support/RunProgram.h"
#include "support/Settled.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

/// Four bytes of aBits bits each, the most significant first.
std::string Number(std::size_t aValue, unsigned aBits) {
    std::string bytes;
    for (unsigned i = 4; i-- > 0;) {
        bytes.push_back(static_cast<char>(aValue >> (aBits * i) & ((1U << aBits) - 1)));
    }
    return bytes;
}

/// An MP3 as far as its ID3v2.3 tag, which carries a front cover.
std::string SongWith(const std::string& aJpeg) {
    const std::string body = "\0image/jpeg\0\3\0"s + aJpeg;
    const std::string frame = "APIC" + Number(body.size(), 8) + "\0\0"s + body;
    return "ID3\3\0\0"s + Number(frame.size(), 7) + frame + "\xFF\xFB\x90\x64"s + std::string(413, '\0');
}

const std::string kHarbour = ReadWholeFile(EZ_SAMPLES "/pictures/harbour.jpg");
const std::string kHarbourPng = ReadWholeFile(EZ_SAMPLES "/pictures/harbour.png");
const std::string kOther = ReadWholeFile(EZ_SAMPLES "/conformance/B-JPEG_S-1.jpg");

/// The host over a folder of media, with a cache beside it.
class ThumbnailHost : public testing::Test {
protected:
    ThumbnailHost() { mFolder.Write("media/keep", ""); }

    std::string Media(const std::string& aName, const std::string& aContent) const {
        return mFolder.Write("media/" + aName, aContent);
    }
    /// What the host sends for a file; "" where it says that there is nothing.
    std::string Ask(const std::string& aMedia) {
        fs::remove(mFolder.Path("out.jpg"));
        WaitUntilSettled(mFolder.GetPath()); // or nothing would come from the cache
        mLast = RunProgram(EZ_THUMBNAIL_HOST, {aMedia, mFolder.Path("cache"), mFolder.Path("out.jpg")});
        EXPECT_TRUE(mLast.mStatus == 0 || mLast.mStatus == 1) << mLast.mStatus;
        return ReadWholeFile(mFolder.Path("out.jpg"));
    }
    /// What a picture becomes when it is a file of its own, far from any other.
    std::string Made(const std::string& aJpeg) {
        std::string made = Ask(mFolder.Write("alone/picture.jpg", aJpeg));
        EXPECT_EQ(made.compare(0, 3, "\xFF\xD8\xFF"), 0);
        return made;
    }
    /// From here on whoever is served from the cache gets this text.
    std::string MarkCache() const {
        std::string mark = "from the cache";
        std::size_t count = 0;
        for (const fs::directory_entry& entry : fs::directory_iterator(mFolder.Path("cache/ezcache"))) {
            mFolder.Write("cache/ezcache/" + entry.path().filename().string(), mark);
            ++count;
        }
        EXPECT_GT(count, 0U);
        return mark;
    }

    TemporaryFolder mFolder;
    ProgramResult mLast;
};

} // namespace

TEST_F(ThumbnailHost, SendsThePictureOfAMediaWithItsHeadersAndThenFromTheCache) {
    const std::string thumbnail = Ask(EZ_SAMPLES "/pictures/harbour.jpg");
    EXPECT_EQ(thumbnail.compare(0, 3, "\xFF\xD8\xFF"), 0);
    EXPECT_EQ(mLast.mStatus, 0);
    EXPECT_EQ(mLast.mError, "");
    EXPECT_EQ(mLast.mOut, "Content-Type: image/jpeg\nContent-Length: " + std::to_string(thumbnail.size()) +
                              "\nAccept-Ranges: bytes\ntransferMode.dlna.org: Interactive\n"
                              "contentFeatures.dlna.org: DLNA.ORG_PN=JPEG_TN;DLNA.ORG_OP=01;"
                              "DLNA.ORG_CI=1;DLNA.ORG_FLAGS=04F00000000000000000000000000000\n");
    const std::string mark = MarkCache();
    EXPECT_EQ(Ask(EZ_SAMPLES "/pictures/harbour.jpg"), mark);
}

TEST_F(ThumbnailHost, MediaHasOneIdentityWhateverFolderTheHostIsStartedIn) {
    const std::string photo = Media("photo.jpg", kHarbour);
    Ask(photo);
    const std::string mark = MarkCache();
    ProgramOptions options;
    options.mFolder = mFolder.Path("media");
    RunProgram(EZ_THUMBNAIL_HOST, {"photo.jpg", mFolder.Path("cache"), mFolder.Path("near.jpg")}, options);
    EXPECT_EQ(ReadWholeFile(mFolder.Path("near.jpg")), mark);
}

TEST_F(ThumbnailHost, SidecarThatIsAddedChangedOrRemovedGivesAFreshThumbnail) {
    const std::string harbour = Made(kHarbour);
    const std::string other = Made(kOther);
    const std::string film = Media("film.mkv", "no cover within");
    const std::string generic = Ask(film);
    EXPECT_EQ(generic.compare(0, 3, "\xFF\xD8\xFF"), 0);
    Media("folder.jpg", kHarbour);
    EXPECT_EQ(Ask(film), harbour);
    Media("folder.jpg", kOther);
    EXPECT_EQ(Ask(film), other);
    Media("film.JPG", kHarbour); // comes before it
    EXPECT_EQ(Ask(film), harbour);
    const std::string mark = MarkCache();
    EXPECT_EQ(Ask(film), mark);
    fs::remove(mFolder.Path("media/film.JPG"));
    EXPECT_EQ(Ask(film), mark); // the state of before, and its thumbnail
    fs::remove(mFolder.Path("media/folder.jpg"));
    EXPECT_EQ(Ask(film), mark);
    Media("cover.jpg", kOther);
    EXPECT_EQ(Ask(film), other);
}

TEST_F(ThumbnailHost, SidecarOfTheSameSizeAndTimeIsFreshToo) {
    const std::string film = Media("film.mkv", "no cover within");
    const std::string sidecar = Media("cover.jpg", kHarbour + std::string(kOther.size(), '\0'));
    const std::string harbour = Ask(film);
    struct stat state = {};
    ASSERT_EQ(stat(sidecar.c_str(), &state), 0);
    Media("cover.jpg", kOther + std::string(kHarbour.size(), '\0'));
    const timespec times[2] = {state.st_atim, state.st_mtim};
    ASSERT_EQ(utimensat(AT_FDCWD, sidecar.c_str(), times, 0), 0); // as copying with the times kept does
    const std::string other = Ask(film);
    EXPECT_NE(other, harbour);
    EXPECT_EQ(other, Made(kOther));
}

TEST_F(ThumbnailHost, CoverThatChangesWithinTheMediaGivesAFreshThumbnail) {
    const std::string harbour = Made(kHarbour);
    const std::string other = Made(kOther);
    const std::string song = Media("song.mp3", SongWith(kHarbour));
    EXPECT_EQ(Ask(song), harbour);
    const std::string mark = MarkCache();
    EXPECT_EQ(Ask(song), mark);
    Media("song.mp3", SongWith(kOther));
    EXPECT_EQ(Ask(song), other);
}

TEST_F(ThumbnailHost, OwnProviderIsAskedFirstAndItsPicturesAreWatched) {
    const std::string harbour = Made(kHarbour);
    const std::string other = Made(kOther);
    const std::string song = Media("song.mp3", SongWith(kOther));
    Media("song.jpg", kOther);
    EXPECT_EQ(Ask(song), other);
    Media(".posters/song.jpg", kHarbour);
    EXPECT_EQ(Ask(song), harbour);
    Media(".posters/song.jpg", "no picture"); // the next candidate, then
    Media(".posters/song.png", kHarbourPng);
    const std::string png = Ask(song);
    EXPECT_EQ(png, Ask(mFolder.Write("alone/picture.png", kHarbourPng)));
    fs::remove(mFolder.Path("media/.posters/song.png"));
    EXPECT_EQ(Ask(song), other); // and then the next provider
}

TEST_F(ThumbnailHost, PhotosBesideACoverShowThemselves) {
    const std::string harbour = Made(kHarbour);
    Media("cover.jpg", kOther);
    EXPECT_EQ(Ask(Media("photo.jpg", kHarbour)), harbour);
}

TEST_F(ThumbnailHost, MediaWithoutAPictureGetsThatOfItsClass) {
    const std::string film = Ask(Media("film.mkv", ""));
    const std::string song = Ask(Media("song.mp3", ""));
    EXPECT_NE(film, "");
    EXPECT_NE(song, "");
    EXPECT_NE(film, song);
    EXPECT_EQ(Ask(Media("another.mkv", "")), film);
}

TEST_F(ThumbnailHost, AnswersNothingWithoutAPlaceForTheCache) {
    const std::string file = mFolder.Write("cache", "a file where the folder should be");
    EXPECT_EQ(Ask(Media("photo.jpg", kHarbour)), "");
    EXPECT_EQ(mLast.mStatus, 1);
    EXPECT_EQ(ReadWholeFile(file), "a file where the folder should be");
    EXPECT_EQ(RunProgram(EZ_THUMBNAIL_HOST, {"one"}).mStatus, 2);
}

TEST(ThumbnailGuide, ShowsTheExampleAsItIs) {
    const std::vector<std::string> sources = {
        ReadWholeFile(EZ_SOURCES "/examples/thumbnail-host/main.cpp"),
        ReadWholeFile(EZ_SOURCES "/examples/thumbnail-host/FittingPngGenerator.h")};
    EXPECT_LE(LinesOf(sources[0]).size(), 200U);
    const std::vector<std::string> blocks =
        GuideBlocks(ReadWholeFile(EZ_SOURCES "/docs/serving-thumbnails.md"), "cpp");
    for (const std::string& block : blocks) {
        EXPECT_EQ(CountOfTextsWith(sources, block), 1U) << block;
    }
    EXPECT_GE(blocks.size(), 6U);
}
