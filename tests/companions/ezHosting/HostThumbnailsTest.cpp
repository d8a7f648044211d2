#ifdef EZ_HAS_THUMBNAILS
#include "ezHosting/Host.h"

#include "support/Folders.h"
#include "support/TemporaryFolder.h"

#include "ez/ThumbnailProvider.h"
#include "ezPlatform/files/File.h"
#include "ezThumbnails/PictureFacts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

/// The thumbnail of a file: its bytes; "" where there is none.
std::string ThumbnailOf(ezHost& aHost, const std::string& aPath, bool afUseDefault) {
    const auto info = aHost.Identify(aPath);
    ThumbnailInfo wanted;
    wanted.mFilePath = ezPathName::MakeFilePath(ezCString(aPath));
    wanted.mMimeType = info != nullptr ? info->GetCString(kezInfo_MimeType, "") : "";
    wanted.mThumbnailID = kJPEGThumbnailID;
    wanted.mWidthMax = 160;
    wanted.mHeightMax = 160;
    wanted.mUniqueID = ezCString(aPath);
    const std::unique_ptr<ezFile> file(aHost.GetThumbnails()->GetThumbnail(&wanted, afUseDefault));
    if (file == nullptr) {
        return {};
    }
    std::string bytes(static_cast<std::size_t>(file->LengthAtOpen()), '\0');
    EXPECT_EQ(file->Read(bytes.data(), bytes.size()), static_cast<int>(bytes.size()));
    return bytes;
}

} // namespace

TEST(HostThumbnails, AreMadeOfPicturesCoversSidecarsAndClasses) {
    const TemporaryFolder cache;
    const TemporaryFolder media;
    fs::copy_file(EZ_SAMPLES "/music/morning-walk.mp3", media.Path("bare.mp3"));
    ezHostOptions options;
    options.mfThumbnails = true;
    options.mThumbnailFolder = cache.GetPath();
    ezHost host(EZ_SAMPLES, options);
    ASSERT_TRUE(host.IsReady()) << host.GetError();
    EXPECT_NE(ThumbnailOf(host, EZ_SAMPLES "/pictures/harbour.png", false), "");
    EXPECT_NE(ThumbnailOf(host, EZ_SAMPLES "/music/night-ferry.mp3", false), "");
    EXPECT_EQ(ThumbnailOf(host, media.Path("bare.mp3"), false), "");
    EXPECT_NE(ThumbnailOf(host, media.Path("bare.mp3"), true), "");
    fs::copy_file(media.Path("bare.mp3"), media.Path("song.mp3"));
    fs::copy_file(EZ_SAMPLES "/pictures/harbour.jpg", media.Path("song.jpg"));
    const std::string beside = ThumbnailOf(host, media.Path("song.mp3"), false);
    const auto facts = ReadPictureFacts(beside);
    ASSERT_TRUE(facts.has_value());
    EXPECT_EQ(facts->mWidth, 160U);
    EXPECT_TRUE(fs::exists(cache.Path("ezcache")));
}

TEST(HostThumbnails, OfASongAreItsOwnCoverBeforeThePictureBesideIt) {
    const TemporaryFolder cache;
    const TemporaryFolder media;
    ezHostOptions options;
    options.mfThumbnails = true;
    options.mThumbnailFolder = cache.GetPath();
    ezHost host(EZ_SAMPLES, options);
    const std::string cover = ThumbnailOf(host, EZ_SAMPLES "/music/night-ferry.mp3", false);
    fs::copy_file(EZ_SAMPLES "/music/night-ferry.mp3", media.Path("song.mp3"));
    fs::copy_file(EZ_SAMPLES "/pictures/harbour.jpg", media.Path("song.jpg"));
    EXPECT_EQ(ThumbnailOf(host, media.Path("song.mp3"), false), cover);
}

TEST(HostThumbnails, AreKeptWithinTheBoundsOfTheOptions) {
    const TemporaryFolder cache;
    ezHostOptions options;
    options.mfThumbnails = true;
    options.mThumbnailFolder = cache.GetPath();
    options.mThumbnailFiles = 0;
    ezHost host(EZ_SAMPLES, options);
    EXPECT_NE(ThumbnailOf(host, EZ_SAMPLES "/pictures/harbour.png", false), "");
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(cache.Path("ezcache"))) {
        files += entry.is_regular_file() ? 1U : 0U;
    }
    EXPECT_EQ(files, 0U);
}
#endif
