#include "ezThumbnails/ThumbnailProviders.h"

#include "support/TemporaryFolder.h"

#include "ez/ThumbnailProvider.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

/// Notes that it is asked, and is able to do nothing.
class Asked : public ezThumbnailProvider {
public:
    Asked(const char* aName, std::string& aNotes) : ezThumbnailProvider(aName), mNotes(aNotes) {}
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* /*anInfo*/) override {
        mNotes.append(GetName()).append(" ");
        return 0;
    }
    bool BuildThumbnail(const ThumbnailInfo* /*anInfo*/, ezFile* /*aFile*/) override {
        mNotes.append(GetName()).append(" builds ");
        return false;
    }

private:
    std::string& mNotes;
};

} // namespace

TEST(ThumbnailProviders, AreAskedInOneOrderWhereverTheyAreFrom) {
    const TemporaryFolder folder;
    ezFileCacheManager cache(ezCString(folder.GetPath()), 1 << 20, 100);
    std::string asked;
    ezThumbnailProviderManager manager(&cache, new PictureThumbnailGenerator);
    ThumbnailProviders providers;
    providers.mSidecar = new Asked("sidecar", asked);
    providers.mCover = new Asked("cover", asked);
    providers.mOwn = new Asked("own", asked);
    providers.mPicture = new Asked("picture", asked);
    providers.mDefault = new Asked("default", asked);
    AddThumbnailProviders(manager, providers);
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(ezCString(folder.Path("song.mp3")));
    info.mMimeType = "audio/mpeg";
    info.mThumbnailID = kJPEGThumbnailID;
    info.mUniqueID = "song";
    EXPECT_EQ(manager.GetThumbnail(&info, false), nullptr);
    EXPECT_EQ(asked, "picture own cover sidecar ");
    asked.clear();
    EXPECT_EQ(manager.GetCachedThumbnail(&info, true), nullptr);
    EXPECT_EQ(asked, "default builds ");
}
