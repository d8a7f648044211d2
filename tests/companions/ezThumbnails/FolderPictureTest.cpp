#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/ThumbnailProviders.h"

#include "support/Folders.h"
#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include "ez/ThumbnailProvider.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "ezPlatform/streams/FileStream.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

// A song without a cover is shown by the picture of its folder, whatever its format.

namespace {

/// What thumbnails are asked of.
class Shelf {
public:
    std::string Thumbnail(const std::string& aPath) {
        ThumbnailInfo info;
        info.mFilePath = ezPathName::MakeFilePath(Bytes(aPath));
        info.mMimeType = "audio/x-any"; // no provider but that of pictures goes by it
        info.mThumbnailID = kJPEGThumbnailID;
        info.mWidthMax = 160;
        info.mHeightMax = 160;
        info.mUniqueID = Bytes(aPath);
        std::unique_ptr<ezFile> file(mManager.GetThumbnail(&info, false));
        if (file == nullptr) {
            return "";
        }
        return ReadAll(new ezFileStream(file.release(), "", Bytes("thumbnail"))); // which deletes it
    }

    Shelf() { AddThumbnailProviders(mManager); }

private:
    TemporaryFolder mFolder;
    ezFileCacheManager mCache{Bytes(mFolder.GetPath()), 16U << 20, 1000};
    ezThumbnailProviderManager mManager{&mCache, new PictureThumbnailGenerator};
};

/// Whether it holds a cover within itself.
bool HasCover(const std::string& aPath) {
    PictureThumbnailGenerator generator;
    CoverThumbnailProvider provider(&generator);
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(Bytes(aPath));
    provider.GetFirstPath(&info);
    return provider.SourceToTry();
}

} // namespace

TEST(FolderPicture, ShowsEverySampleThatHasNoCoverAndNoneThatHasOne) {
    const std::string picture = ReadWholeFile(EZ_SAMPLES "/pictures/harbour.jpg");
    const TemporaryFolder folder;
    folder.Write("Cover.JPG", picture);
    Shelf shelf;
    const std::string ofFolder = shelf.Thumbnail(folder.Write("text.txt", "no media"));
    ASSERT_NE(ofFolder, "");
    std::size_t with = 0;
    std::size_t without = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(EZ_SAMPLES)) {
        if (entry.is_regular_file()) {
            const std::string name = entry.path().filename().string();
            const std::string path = folder.Write(name, ReadWholeFile(entry.path().string()));
            const bool fCover = HasCover(path);
            EXPECT_EQ(shelf.Thumbnail(path) == ofFolder, !fCover) << name;
            ++(fCover ? with : without);
            std::filesystem::remove(path);
        }
    }
    EXPECT_GE(with, 3U);
    EXPECT_GE(without, 90U);
}
