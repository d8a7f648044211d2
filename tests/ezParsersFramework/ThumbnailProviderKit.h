#pragma once

#include "ez/ThumbnailProviderBase.h"

#include "support/ScriptedThumbnails.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <string>

/// For the tests of providers: a request for a JPEG thumbnail of a picture of its own, and a generator.
class ThumbnailProviderKit : public testing::Test {
protected:
    using Trace = ThumbnailTrace;

    ThumbnailProviderKit() {
        mInfo.mThumbnailID = kJPEGThumbnailID;
        mInfo.mMimeType = "image/jpeg";
        mInfo.mFilePath = ezPathName::MakeFilePath(mFolder.Write("own.jpg", "own").c_str());
    }

    /// What a provider builds: the content of the file, or "<failed>".
    std::string Built(ezThumbnailProvider& aProvider) {
        ezFile file;
        EXPECT_TRUE(file.Create(mFolder.Path("out").c_str(), true, ezFileAccessMode_ReadWrite));
        const bool fBuilt = aProvider.BuildThumbnail(&mInfo, &file);
        EXPECT_TRUE(file.Close());
        return fBuilt ? ContentAt(mFolder.Path("out")) : "<failed>";
    }

    /// What every provider with a generator answers without one, without a request and without a file:
    /// nothing.
    void ExpectNothingOf(ezThumbnailProvider& aProvider, ezThumbnailProvider& aProviderWithoutGenerator) {
        ezFile file;
        EXPECT_TRUE(file.Create(mFolder.Path("out").c_str(), true, ezFileAccessMode_ReadWrite));
        EXPECT_EQ(aProvider.GetPossibleThumbnailFor(nullptr), 0U);
        EXPECT_FALSE(aProvider.BuildThumbnail(nullptr, &file));
        EXPECT_FALSE(aProvider.BuildThumbnail(&mInfo, nullptr));
        EXPECT_EQ(aProviderWithoutGenerator.GetPossibleThumbnailFor(&mInfo), 0U);
        EXPECT_FALSE(aProviderWithoutGenerator.BuildThumbnail(&mInfo, &file));
        EXPECT_EQ(mTrace, (Trace{}));
    }

    TemporaryFolder mFolder;
    ThumbnailInfo mInfo;
    Trace mTrace;
    ScriptedGenerator mGenerator{mTrace};
};
