#include "ez/PictureThumbnailProvider.h"

#include "ThumbnailProviderKit.h"

#include <gtest/gtest.h>

namespace {

class PictureThumbnailProvider : public ThumbnailProviderKit {};

TEST_F(PictureThumbnailProvider, TheNameIsTheOneGiven) {
    EXPECT_STREQ(ezPictureThumbnailProvider(&mGenerator, "pictures").GetName(), "pictures");
}

TEST_F(PictureThumbnailProvider, APictureIsPossibleAsTheGeneratorConvertsItsType) {
    ezPictureThumbnailProvider provider(&mGenerator, "pictures");
    mInfo.mMimeType = "image/both";
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), 3U);
    mInfo.mMimeType = "image/unknown";
    EXPECT_EQ(provider.GetPossibleThumbnailFor(&mInfo), 0U);
    EXPECT_FALSE(provider.CanProvideThumbnailFor(&mInfo));
}

TEST_F(PictureThumbnailProvider, APictureIsBuiltFromTheItemsOwnFile) {
    ezPictureThumbnailProvider provider(&mGenerator, "pictures");
    EXPECT_EQ(Built(provider), "thumbnail of own");
    mInfo.mFilePath = ezPathName::MakeFilePath(mFolder.Write("bad.jpg", "corrupt").c_str());
    EXPECT_EQ(Built(provider), "<failed>");
    EXPECT_EQ(mTrace, (Trace{"build own", "build corrupt"})); // the type is not asked for again
}

TEST_F(PictureThumbnailProvider, WithoutRequestGeneratorOrFileNothingIsTried) {
    ezPictureThumbnailProvider pictures(&mGenerator, "pictures");
    ezPictureThumbnailProvider idle(nullptr, "idle");
    ExpectNothingOf(pictures, idle);
}

} // namespace
