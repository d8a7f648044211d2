#include "CoverKit.h"

#include "ezThumbnails/detail/GatheredCoverSource.h"

namespace {

/// A provider on a file, and where it builds to.
struct Scene {
    explicit Scene(const std::string& aBytes) {
        mInfo.mThumbnailID = kJPEGThumbnailID;
        mInfo.mFilePath = ezPathName::MakeFilePath(Bytes(mFolder.Write("media", aBytes)));
    }
    bool Build() {
        ezFile file;
        EXPECT_TRUE(file.Create(Bytes(mFolder.Path("out")), true, ezFileAccessMode_ReadWrite));
        return mProvider.BuildThumbnail(&mInfo, &file);
    }
    TemporaryFolder mFolder;
    ThumbnailTrace mTrace;
    ScriptedGenerator mGenerator{mTrace};
    SeenCoverProvider mProvider{&mGenerator};
    ThumbnailInfo mInfo;
};

} // namespace

TEST(CoverThumbnailProvider, BuildsFromTheCover) {
    Scene scene(Flac(FlacBlock(6, PictureOfFlac(3, Jpeg("front")))));
    EXPECT_TRUE(scene.mProvider.CanProvideThumbnailFor(&scene.mInfo));
    EXPECT_TRUE(scene.Build());
    EXPECT_EQ(scene.mTrace,
              (ThumbnailTrace{"convert image/jpeg", "convert image/jpeg", "build " + Jpeg("front")}));
}

TEST(CoverThumbnailProvider, ACoverThatDoesNotConvertIsFollowedByTheOneOfTheNextContainer) {
    Scene scene(ID3(3, 0, Frame23("APIC", Apic(3, Jpeg("tag")))) +
                Flac(FlacBlock(6, PictureOfFlac(3, Jpeg("corrupt")))));
    EXPECT_TRUE(scene.Build());
    EXPECT_EQ(scene.mTrace, (ThumbnailTrace{"convert image/jpeg", "build " + Jpeg("corrupt"),
                                            "convert image/jpeg", "build " + Jpeg("tag")}));
}

TEST(CoverThumbnailProvider, WhatHasNoCoverOrDoesNotOpenIsRefused) {
    Scene empty("");
    EXPECT_FALSE(empty.mProvider.CanProvideThumbnailFor(&empty.mInfo));
    EXPECT_FALSE(empty.Build());
    Scene absent(Flac(FlacBlock(6, PictureOfFlac(3, Jpeg("front")))));
    absent.mInfo.mFilePath = ezPathName::MakeFilePath(Bytes(absent.mFolder.Path("absent")));
    EXPECT_FALSE(absent.Build());
    absent.mInfo.mFilePath = ezPathName::MakeFilePath(Bytes(absent.mFolder.GetPath()));
    EXPECT_FALSE(absent.Build());
    EXPECT_EQ(absent.mTrace, ThumbnailTrace());
}

TEST(CoverThumbnailProvider, TheStreamOutlivesItsSource) {
    Scene scene(ID3(4, 0, Frame24("APIC", Unsynchronised(Apic(3, Jpeg("front"))), 0x02)));
    scene.mProvider.GetFirstPath(&scene.mInfo);
    ASSERT_TRUE(scene.mProvider.SourceToTry());
    EXPECT_TRUE(scene.mProvider.Source()->Exists());
    ezStream* const stream = scene.mProvider.Source()->GetStream();
    scene.mProvider.EndTries();
    EXPECT_EQ(ReadAll(stream), Jpeg("front"));
}

TEST(GatheredCoverSource, AFileThatIsNotAsItWasGivesNoStream) {
    const TemporaryFolder folder;
    const ezPathName path = ezPathName::MakeFilePath(Bytes(folder.Write("media", "0123456789")));
    Cover cover;
    cover.mMimeType = "image/jpeg";
    cover.mPieces = {{2, 3}, {7, 3}};
    EXPECT_EQ(ReadAll(GatheredCoverSource(path, cover).GetStream()), "234789");
    cover.mPieces[1].mSize = 4;
    EXPECT_EQ(GatheredCoverSource(path, cover).GetStream(), nullptr);
    cover.mPieces[1].mSize = kCover_MaxHeldSize;
    EXPECT_EQ(GatheredCoverSource(path, cover).GetStream(), nullptr);
    const ezPathName absent = ezPathName::MakeFilePath(Bytes(folder.Path("absent")));
    EXPECT_EQ(GatheredCoverSource(absent, cover).GetStream(), nullptr);
    EXPECT_FALSE(GatheredCoverSource(absent, cover).Exists());
}

TEST(GatheredCoverSource, AnOffsetBeyondTheDecodedDataGivesNoStreamAndOneAtItsEndAnEmptyOne) {
    const TemporaryFolder folder;
    const ezPathName path = ezPathName::MakeFilePath(Bytes(folder.Write("media", "QUJ|DREU=")));
    Cover cover;
    cover.mMimeType = "image/jpeg";
    cover.mPieces = {{0, 3}, {4, 5}};
    cover.mfBase64 = true;
    cover.mEncodedOffset = 2;
    EXPECT_EQ(ReadAll(GatheredCoverSource(path, cover).GetStream()), "CDE");
    cover.mEncodedOffset = 5;
    EXPECT_EQ(ReadAll(GatheredCoverSource(path, cover).GetStream()), "");
    cover.mEncodedOffset = 6;
    EXPECT_EQ(GatheredCoverSource(path, cover).GetStream(), nullptr);
}

TEST(CoverThumbnailProvider, WithoutAGeneratorARequestOrAFileThereIsNone) {
    const TemporaryFolder folder;
    ThumbnailTrace trace;
    ScriptedGenerator generator(trace);
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(
        Bytes(folder.Write("song.mp3", ID3(3, 0, Frame23("APIC", Apic(3, Jpeg("front")))))));
    ezFile file;
    CoverThumbnailProvider without(nullptr);
    EXPECT_EQ(without.GetPossibleThumbnailFor(&info), kNoThumbnailID);
    EXPECT_FALSE(without.BuildThumbnail(&info, &file));
    CoverThumbnailProvider provider(&generator);
    EXPECT_EQ(provider.GetPossibleThumbnailFor(nullptr), kNoThumbnailID);
    EXPECT_FALSE(provider.BuildThumbnail(nullptr, &file));
    EXPECT_FALSE(provider.BuildThumbnail(&info, nullptr));
    provider.GetFirstPath(&info);
    EXPECT_TRUE(provider.SourceToTry());
    provider.GetFirstPath(nullptr);
    EXPECT_FALSE(provider.SourceToTry());
    provider.GetNextPath(nullptr);
    EXPECT_FALSE(provider.SourceToTry());
    EXPECT_TRUE(trace.empty());
}
