#include "ez/UPnPClasses.h"

#include <gtest/gtest.h>

TEST(UPnPClasses, AreWrittenWithoutObject) {
    EXPECT_STREQ(kezUPnPClass_AudioItem, "item.audioItem");
    EXPECT_STREQ(kezUPnPClass_VideoItem, "item.videoItem");
    EXPECT_STREQ(kezUPnPClass_ImageItem, "item.imageItem");
    EXPECT_STREQ(kezUPnPClass_MusicTrack, "item.audioItem.musicTrack");
    EXPECT_STREQ(kezUPnPClass_AudioBook, "item.audioItem.audioBook");
    EXPECT_STREQ(kezUPnPClass_Photo, "item.imageItem.photo");
    EXPECT_STREQ(kezUPnPClass_Item, "item");
}

TEST(UPnPClasses, FollowTheFirstPartOfAMimeType) {
    struct Case {
        const char* mMimeType;
        const char* mExact;   ///< case counts
        const char* mAnyCase; ///< it does not
    };
    for (const Case& wanted : {Case{"audio/mpeg", "item.audioItem", "item.audioItem"},
                               {"video/mp4;x=\"/\"", "item.videoItem", "item.videoItem"},
                               {"image/jpeg", "item.imageItem", "item.imageItem"},
                               {"Audio/mpeg", "", "item.audioItem"},
                               {"VIDEO/", "", "item.videoItem"},
                               {"image", "item.imageItem", "item.imageItem"},
                               {"", "", ""},
                               {"/audio", "", ""},
                               {"*", "", ""},
                               {"audio2/mpeg", "", ""},
                               {" audio/mpeg", "", ""},
                               {"application/ogg", "", ""},
                               {"text/srt", "", ""}}) {
        EXPECT_STREQ(ezUPnPClass_OfMimeType(wanted.mMimeType, true), wanted.mExact) << wanted.mMimeType;
        EXPECT_STREQ(ezUPnPClass_OfMimeType(wanted.mMimeType, false), wanted.mAnyCase) << wanted.mMimeType;
    }
}
