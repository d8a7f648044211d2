#include "ezThumbnails/CostlyThumbnailProvider.h"

#include "GeneratorKit.h"

#include "ezPlatform/files/FileCacheManager.h"

#include <memory>

namespace {

/// Counts what it is asked to build.
class CountedGenerator : public PictureThumbnailGenerator {
public:
    bool BuildThumbnail(const ThumbnailInfo* anInfo, const ezThumbnailSource* aSource,
                        ezFile* aFile) override {
        ++mBuilds;
        return PictureThumbnailGenerator::BuildThumbnail(anInfo, aSource, aFile);
    }
    int mBuilds = 0;
};

/// Another picture of the item, whatever the item is.
class OtherPicture : public ezThumbnailProvider {
public:
    OtherPicture(ezThumbnailGenerator* aGenerator, std::string aBytes)
        : ezThumbnailProvider("other"), mGenerator(aGenerator), mBytes(std::move(aBytes)) {}
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* /*anInfo*/) override { return kJPEGThumbnailID; }
    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override {
        const BytesSource source(mBytes);
        return mGenerator->BuildThumbnail(anInfo, &source, aFile);
    }

private:
    ezThumbnailGenerator* mGenerator;
    std::string mBytes;
};

/// A service before a cache of its own.
struct Service {
    Service() {
        mManager.Add(new ezPictureThumbnailProvider(mGenerator, "picture"));
        mInfo.mThumbnailID = kJPEGThumbnailID;
        mInfo.mWidthMax = 160;
        mInfo.mHeightMax = 160;
        mInfo.mMimeType = "image/png";
        mInfo.mUniqueID = "item";
    }

    void SetPicture(const std::string& aBytes) {
        mInfo.mFilePath = ezPathName::MakeFilePath(Bytes(mFolder.Write("picture", aBytes)));
    }
    /// Whether there is a thumbnail, and how many builds that took.
    std::pair<bool, int> Ask() {
        mGenerator->mBuilds = 0;
        const std::unique_ptr<ezFile> file(mManager.GetThumbnail(&mInfo, false));
        return {file != nullptr, mGenerator->mBuilds};
    }

    TemporaryFolder mFolder;
    ezFileCacheManager mCache{ezCString(mFolder.Path("cache").c_str()), 1 << 20, 100};
    CountedGenerator* mGenerator = new CountedGenerator; // the manager's
    ezThumbnailProviderManager mManager{&mCache, mGenerator};
    ThumbnailInfo mInfo;
};

using Answer = std::pair<bool, int>;

const std::string& CostlyPicture() {
    static const std::string picture = StoredPng(10, 10, false, 100'000);
    return picture;
}

} // namespace

TEST(CostlyThumbnailProvider, APictureRefusedForItsCostIsDecodedOnce) {
    const std::string progressive = MakeJpeg(Noise(64, 64, 3), JCS_RGB, jpeg_simple_progression);
    for (const std::string& picture :
         {CostlyPicture(), WithPngSize(StoredPng(10, 10, false, 0), 14143, 14143),
          WithPngSize(StoredPng(10, 10, true, 0), 12000, 12000), WithJpegSize(progressive, 12000, 12000),
          OfScans(PictureThumbnailGenerator::kMaxScans + 1)}) {
        Service service;
        service.mManager.Add(new CostlyThumbnailProvider(service.mGenerator));
        service.SetPicture(picture);
        EXPECT_EQ(service.Ask(), Answer(false, 1));
        EXPECT_EQ(service.Ask(), Answer(false, 0)) << "remembered";
        service.mInfo.mUniqueID = "item, changed";
        EXPECT_EQ(service.Ask(), Answer(false, 1));
    }
}

TEST(CostlyThumbnailProvider, ADamagedPictureIsTriedAgain) {
    Service service;
    service.mManager.Add(new CostlyThumbnailProvider(service.mGenerator));
    const std::string good = StoredPng(10, 10, false, 0);
    for (const std::string& picture : {good.substr(0, good.size() - 20), WithPngSize(good, 0, 10)}) {
        service.SetPicture(picture);
        EXPECT_EQ(service.Ask(), Answer(false, 1));
        EXPECT_EQ(service.Ask(), Answer(false, 1));
    }
    service.SetPicture(good);
    EXPECT_EQ(service.Ask(), Answer(true, 1));
    EXPECT_EQ(service.Ask(), Answer(true, 0));
}

TEST(CostlyThumbnailProvider, AnotherPictureOfTheItemIsTakenFirst) {
    Service service;
    service.mManager.Add(new OtherPicture(service.mGenerator, StoredPng(4, 4, false, 0)));
    service.mManager.Add(new CostlyThumbnailProvider(service.mGenerator));
    service.SetPicture(CostlyPicture());
    EXPECT_EQ(service.Ask(), Answer(true, 2));
    EXPECT_EQ(service.Ask(), Answer(true, 0));
}

TEST(CostlyThumbnailProvider, AnItemIsRememberedOnlyWhereAllItsPicturesCostTooMuch) {
    const std::string damaged = StoredPng(4, 4, false, 0).substr(0, 40);
    for (const auto& [picture, other] :
         {std::pair(CostlyPicture(), CostlyPicture()), std::pair(CostlyPicture(), damaged),
          std::pair(damaged, CostlyPicture())}) {
        Service service;
        service.SetPicture(picture);
        service.mManager.Add(new OtherPicture(service.mGenerator, other));
        service.mManager.Add(new CostlyThumbnailProvider(service.mGenerator));
        EXPECT_EQ(service.Ask(), Answer(false, 2));
        EXPECT_EQ(service.Ask(), Answer(false, picture == other ? 0 : 2));
        if (picture == damaged) {
            service.SetPicture(CostlyPicture());
            EXPECT_EQ(service.Ask(), Answer(false, 2));
            EXPECT_EQ(service.Ask(), Answer(false, 0)) << "what failed before does not count";
        }
    }
}

TEST(CostlyThumbnailProvider, AnswersOnceForTheItemThatWasRefused) {
    Service service;
    CostlyThumbnailProvider provider(service.mGenerator);
    service.SetPicture(CostlyPicture());
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&service.mInfo), kNoThumbnailID);
    EXPECT_EQ(provider.GetPossibleThumbnailFor(nullptr), kNoThumbnailID);
    EXPECT_EQ(service.Ask(), Answer(false, 1));
    ThumbnailInfo other = service.mInfo;
    other.mUniqueID = "another";
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&other), kNoThumbnailID);
    EXPECT_FALSE(provider.BuildThumbnail(&other, nullptr));
    EXPECT_TRUE(provider.CanProvideThumbnailFor(&service.mInfo));
    EXPECT_TRUE(provider.BuildThumbnail(&service.mInfo, nullptr));
    EXPECT_FALSE(provider.BuildThumbnail(&service.mInfo, nullptr));
}
