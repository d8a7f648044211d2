#include "ez/ThumbnailProviderBase.h"

#include "support/ScriptedThumbnails.h"

#include <gtest/gtest.h>

namespace {

TEST(ThumbnailProvider, TheIdentifiersAreBits) {
    EXPECT_EQ(kNoThumbnailID, 0U);
    EXPECT_EQ(kJPEGThumbnailID, 1U);
    EXPECT_EQ(kPNGThumbnailID, 2U);
}

TEST(ThumbnailProvider, CanProvideWhenAWantedFormatIsPossible) {
    ThumbnailTrace trace;
    for (uint32 wanted = 0; wanted < 4; ++wanted) {
        for (uint32 possible = 0; possible < 4; ++possible) {
            ScriptedProvider provider(trace, "p", possible);
            ThumbnailInfo info;
            info.mThumbnailID = wanted;
            EXPECT_EQ(provider.CanProvideThumbnailFor(&info), (wanted & possible) != 0);
        }
    }
}

TEST(ThumbnailProvider, NothingCanBeProvidedForNoRequest) {
    ThumbnailTrace trace;
    ScriptedProvider provider(trace, "p", kJPEGThumbnailID);
    EXPECT_FALSE(provider.CanProvideThumbnailFor(nullptr));
    EXPECT_EQ(trace, (ThumbnailTrace{})); // it is not asked
}

TEST(ThumbnailProvider, TheNameIsTheOneGiven) {
    ThumbnailTrace trace;
    EXPECT_STREQ(ScriptedProvider(trace, "given", 0).GetName(), "given");
    EXPECT_STREQ(ScriptedGenerator(trace).GetName(), "scripted");
}

} // namespace
