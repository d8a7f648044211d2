#include "ezThumbnails/SidecarThumbnailProvider.h"
#include "ezThumbnails/detail/SidecarLimits.h"
#include "ezThumbnails/detail/Sidecars.h"

#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using Names = std::vector<std::string>;

/// A folder with files, each of which holds its own name.
struct Folder {
    explicit Folder(const Names& aNames) {
        for (const std::string& name : aNames) {
            mFolder.Write(name, name);
        }
    }
    /// The names of what is tried for a file of the folder.
    Names Tried(const std::string& aMedia) const {
        Names names;
        const std::vector<ezCString> paths = FindSidecars(Bytes(mFolder.Path(aMedia)));
        FolderPictures listed;
        EXPECT_EQ(FindSidecars(Bytes(mFolder.Path(aMedia)), nullptr, &listed), paths);
        EXPECT_EQ(FindSidecars(Bytes(mFolder.Path(aMedia)), nullptr, &listed), paths) << "not listed again";
        for (const ezCString& path : paths) {
            names.push_back(Str(path).substr(mFolder.GetPath().size() + 1));
        }
        return names;
    }
    TemporaryFolder mFolder;
};

/// In the order of trying.
Names AllNames() {
    Names names;
    for (const char* const stem : {"film.cover", "film", "cover", "folder", "front", "albumart", "album",
                                   "poster", "albumartsmall", "thumb"}) {
        for (const char* const extension : {".jpg", ".jpeg", ".png"}) {
            names.push_back(std::string(stem) + extension);
        }
    }
    return names;
}
const Names kOrder = AllNames();

} // namespace

TEST(Sidecars, AreTriedInTheGivenOrder) {
    Names files = kOrder;
    std::reverse(files.begin(), files.end());
    files.insert(files.end(),
                 {"film.mkv", "film.gif", "other.jpg", "film.mkv.jpg", "cover", "covers.jpg", "jpg",
                  "AlbumArt_{5FA05D35-A682-4AF6-96F7-0773E42D4D16}_Large.jpg", "cover.bmp", "back.jpg"});
    EXPECT_EQ(Folder(files).Tried("film.mkv"), kOrder);
}

TEST(Sidecars, OfAMediaWithTheNameOfAFoldersPictureAreEachTriedOnce) {
    EXPECT_EQ(Folder({"cover.mp3", "cover.jpg", "COVER.PNG", "Cover.jpg", "front.jpg"}).Tried("cover.mp3"),
              (Names{"cover.jpg", "Cover.jpg", "COVER.PNG", "front.jpg"}));
}

TEST(SidecarListing, IsOfTheMomentWhenTheFolderWasFirstAskedFor) {
    const Folder folder({"film.mkv", "film.jpg", "poster.png"});
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(Bytes(folder.mFolder.Path("film.mkv")));
    SidecarListing listing;
    bool fFailed = true;
    EXPECT_EQ(listing.CandidatePaths(&info, &fFailed).size(), 2U);
    EXPECT_FALSE(fFailed);
    folder.mFolder.Write("cover.jpg", "new");
    EXPECT_EQ(unlink(folder.mFolder.Path("film.jpg").c_str()), 0);
    EXPECT_EQ(listing.CandidatePaths(&info),
              std::vector<ezCString>{Bytes(folder.mFolder.Path("poster.png"))});
    EXPECT_EQ(SidecarListing().CandidatePaths(&info).size(), 2U);
    EXPECT_TRUE(listing.CandidatePaths(nullptr, &fFailed).empty());
    EXPECT_FALSE(fFailed);
}

TEST(SidecarThumbnailProvider, TellsItsCandidatesWithoutAGenerator) {
    const Folder folder({"film.mkv", "poster.png", "film.jpg", "other.jpg"});
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(Bytes(folder.mFolder.Path("film.mkv")));
    const std::vector<ezCString> paths = SidecarThumbnailProvider::CandidatePaths(&info);
    EXPECT_EQ(paths, (std::vector<ezCString>{Bytes(folder.mFolder.Path("film.jpg")),
                                             Bytes(folder.mFolder.Path("poster.png"))}));
    EXPECT_TRUE(SidecarThumbnailProvider::CandidatePaths(nullptr).empty());
}

TEST(SidecarThumbnailProvider, WalksOverItsCandidatesWithoutAGenerator) {
    struct Walk : SidecarThumbnailProvider {
        Walk() : SidecarThumbnailProvider(nullptr) {}
        std::vector<ezCString> Paths(const ThumbnailInfo& anInfo) {
            std::vector<ezCString> paths;
            for (GetFirstPath(&anInfo); SourceToTry(); GetNextPath(&anInfo)) {
                const auto* const file = dynamic_cast<const ezFileThumbnailSource*>(mTrySource);
                paths.push_back(file != nullptr ? file->GetFullPath() : ezCString("<no file>"));
            }
            return paths;
        }
    };
    const Folder folder({"film.mkv", "poster.png", "film.jpg", "other.jpg"});
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(Bytes(folder.mFolder.Path("film.mkv")));
    Walk walk;
    EXPECT_EQ(walk.Paths(info), SidecarThumbnailProvider::CandidatePaths(&info));
    EXPECT_EQ(walk.Paths(info).size(), 2U);
}

TEST(Sidecars, EachAloneIsFoundInAnyCase) {
    for (const std::string& name : kOrder) {
        const std::string upper = Str(Bytes(name).Upper());
        EXPECT_EQ(Folder({"film.mkv", name}).Tried("film.mkv"), Names{name});
        EXPECT_EQ(Folder({"film.mkv", upper}).Tried("film.mkv"), Names{upper});
    }
}

TEST(Sidecars, OfNamesThatDifferInCaseAloneTheExactOneComesFirst) {
    EXPECT_EQ(Folder({"cover.JPG", "Cover.jpg", "COVER.JPG", "cover.jpg"}).Tried("film.mkv"),
              (Names{"cover.jpg", "COVER.JPG", "Cover.jpg", "cover.JPG"}));
    // Each of two media has its own.
    const Folder two({"Film.mkv", "film.mkv", "Film.jpg", "film.jpg"});
    EXPECT_EQ(two.Tried("Film.mkv"), (Names{"Film.jpg", "film.jpg"}));
    EXPECT_EQ(two.Tried("film.mkv"), (Names{"film.jpg", "Film.jpg"}));
}

TEST(Sidecars, TheMediaItselfIsNone) {
    EXPECT_EQ(Folder({"cover.jpg", "folder.png"}).Tried("cover.jpg"), Names{"folder.png"});
    EXPECT_EQ(Folder({"photo.jpg"}).Tried("photo.jpg"), Names());
    const Folder linked({"song.mp3", "poster.png"});
    ASSERT_EQ(symlink(linked.mFolder.Path("song.mp3").c_str(), linked.mFolder.Path("song.jpg").c_str()), 0);
    ASSERT_EQ(link(linked.mFolder.Path("song.mp3").c_str(), linked.mFolder.Path("cover.jpg").c_str()), 0);
    EXPECT_EQ(linked.Tried("song.mp3"), Names{"poster.png"});
}

TEST(Sidecars, OnlyRegularFilesCount) {
    const Folder folder({"film.mkv", "cover.jpg/inner", "Cover.jpg", "picture"});
    ASSERT_EQ(mkfifo(folder.mFolder.Path("folder.jpg").c_str(), 0600), 0);
    ASSERT_EQ(symlink("nowhere", folder.mFolder.Path("front.jpg").c_str()), 0);
    ASSERT_EQ(symlink("picture", folder.mFolder.Path("poster.jpg").c_str()), 0);
    EXPECT_EQ(folder.Tried("film.mkv"), (Names{"Cover.jpg", "poster.jpg"}));
}

TEST(Sidecars, NamesOfMediaMayBeOdd) {
    // Without an extension, with a leading dot, with two dots, with a backslash.
    EXPECT_EQ(Folder({"film", "film.jpg"}).Tried("film"), Names{"film.jpg"});
    EXPECT_EQ(Folder({".film", ".film.jpg"}).Tried(".film"), Names{".film.jpg"});
    EXPECT_EQ(Folder({"a.b.mkv", "a.b.jpg", "a.jpg"}).Tried("a.b.mkv"), Names{"a.b.jpg"});
    EXPECT_EQ(Folder({"AC\\DC.mp3", "AC\\DC.jpg", "DC.jpg"}).Tried("AC\\DC.mp3"), Names{"AC\\DC.jpg"});
    // The media need not be there; without a name or a folder there is nothing beside it.
    EXPECT_EQ(Folder({"film.jpg"}).Tried("film.mkv"), Names{"film.jpg"});
    EXPECT_EQ(Folder({"film.jpg"}).Tried("absent/film.mkv"), Names());
    EXPECT_EQ(Folder({"film.jpg", ".jpg"}).Tried(""), Names());
    EXPECT_TRUE(FindSidecars("").empty());
}

TEST(Sidecars, LieInTheFolderOfTheMediaAndNowhereElse) {
    const Folder folder({"cover.jpg", "album/disc 1/song.flac", "album/cover.jpg",
                         "album/disc 1/scans/front.jpg", "http:/host/cover.jpg"});
    EXPECT_EQ(folder.Tried("album/disc 1/song.flac"), Names());
    EXPECT_EQ(folder.Tried("album/song.flac"), Names{"album/cover.jpg"});
    // A URL is no path, and nothing is fetched.
    EXPECT_TRUE(FindSidecars("http://host/song.flac").empty());
    EXPECT_TRUE(FindSidecars("file:///tmp/song.flac").empty());
}

TEST(Sidecars, OfAFolderAsManyEntriesAreLookedAtAsIsBearable) {
    const Folder folder({"song.mp3"});
    const auto pictures = [&folder] {
        FolderPictures listed;
        EXPECT_TRUE(FindSidecars(Bytes(folder.mFolder.Path("song.mp3")), nullptr, &listed).empty());
        return listed.begin()->second.size();
    };
    constexpr std::size_t kOthers = 3; // the song, the folder itself, and the one above
    for (std::size_t i = 0; i < kSidecar_MaxEntries - kOthers; ++i) {
        ASSERT_EQ(mknod(folder.mFolder.Path(std::to_string(i) + ".jpg").c_str(), S_IFREG | 0600, 0), 0);
    }
    EXPECT_EQ(pictures(), kSidecar_MaxEntries - kOthers);
    for (const char* const more : {"one.jpg", "two.jpg", "three.jpg", "four.jpg"}) {
        folder.mFolder.Write(more, "picture");
    }
    EXPECT_LE(pictures(), kSidecar_MaxEntries);
}

TEST(Sidecars, OfPicturesThatDifferInCaseAloneSomeAreTried) {
    Names files = {"song.mp3", "cover.jpg"};
    for (unsigned bits = 1; bits < 2 * kSidecar_MaxCandidates; ++bits) { // of "poster.jpg"
        std::string name = "poster.jpg";
        for (unsigned bit = 0; bit < name.size() - 1; ++bit) {
            const std::size_t at = name.size() - 1 - bit;
            name[at] = static_cast<char>((bits >> bit & 1U) != 0 && name[at] != '.' ? name[at] - 'a' + 'A'
                                                                                    : name[at]);
        }
        files.push_back(name);
    }
    const Names tried = Folder(files).Tried("song.mp3");
    EXPECT_EQ(tried.size(), kSidecar_MaxCandidates);
    EXPECT_EQ(tried.front(), "cover.jpg");
}

TEST(SidecarThumbnailProvider, BuildsFromTheFirstThatConvertsWithTheTypeOfItsExtension) {
    const Folder folder({"film.mkv", "film.JPEG", "cover.png"});
    folder.mFolder.Write("film.JPEG", "corrupt");
    ThumbnailTrace trace;
    ScriptedGenerator generator(trace);
    generator.mFormats = {{"image/jpeg", kJPEGThumbnailID}, {"image/png", kJPEGThumbnailID}};
    SidecarThumbnailProvider provider(&generator);
    ThumbnailInfo info;
    info.mMimeType = "video/x-matroska";
    info.mThumbnailID = kJPEGThumbnailID;
    info.mFilePath = ezPathName::MakeFilePath(Bytes(folder.mFolder.Path("film.mkv")));
    EXPECT_TRUE(provider.CanProvideThumbnailFor(&info));
    ezFile file;
    ASSERT_TRUE(file.Create(Bytes(folder.mFolder.Path("out")), true, ezFileAccessMode_ReadWrite));
    EXPECT_TRUE(provider.BuildThumbnail(&info, &file));
    ASSERT_TRUE(file.Close());
    EXPECT_EQ(trace, (ThumbnailTrace{"convert image/jpeg", "convert image/jpeg", "build corrupt",
                                     "convert image/png", "build cover.png"}));
    // Another request starts anew, and sees what has changed.
    ASSERT_EQ(unlink(folder.mFolder.Path("film.JPEG").c_str()), 0);
    ASSERT_EQ(unlink(folder.mFolder.Path("cover.png").c_str()), 0);
    EXPECT_FALSE(provider.CanProvideThumbnailFor(&info));
    EXPECT_FALSE(provider.SourceToTry());
}

TEST(SidecarThumbnailProvider, WithoutAGeneratorARequestOrAFileThereIsNone) {
    const Folder folder({"film.mkv", "film.jpg", "cover.jpg"});
    ThumbnailTrace trace;
    ScriptedGenerator generator(trace);
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(Bytes(folder.mFolder.Path("film.mkv")));
    ezFile file;
    SidecarThumbnailProvider without(nullptr);
    EXPECT_EQ(without.GetPossibleThumbnailFor(&info), kNoThumbnailID);
    EXPECT_FALSE(without.BuildThumbnail(&info, &file));
    SidecarThumbnailProvider provider(&generator);
    EXPECT_EQ(provider.GetPossibleThumbnailFor(nullptr), kNoThumbnailID);
    EXPECT_FALSE(provider.BuildThumbnail(nullptr, &file));
    EXPECT_FALSE(provider.BuildThumbnail(&info, nullptr));
    provider.GetFirstPath(&info);
    EXPECT_TRUE(provider.SourceToTry());
    provider.GetNextPath(nullptr);
    EXPECT_FALSE(provider.SourceToTry());
    provider.GetFirstPath(nullptr);
    EXPECT_FALSE(provider.SourceToTry());
    EXPECT_TRUE(trace.empty());
}

TEST(Sidecars, AMediaWithANULOrWithoutANameHasNone) {
    const Folder folder({"film", "film.jpg", "cover.jpg"});
    EXPECT_EQ(folder.Tried("film"), (Names{"film.jpg", "cover.jpg"}));
    for (const std::string& media :
         {folder.mFolder.Path(std::string("film\0.mkv", 9)),
          folder.mFolder.GetPath() + std::string("\0/x/film", 9), folder.mFolder.Path(""), std::string()}) {
        bool fFailed = true;
        EXPECT_TRUE(FindSidecars(Bytes(media), &fFailed).empty());
        EXPECT_FALSE(fFailed);
    }
}
