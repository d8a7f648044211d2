#include "ez/FileThumbnailSource.h"

#include "ez/ThumbnailInfo.h"

#include "ezPlatform/media/MediaInfo.h"
#include "support/ScriptedThumbnails.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <sys/stat.h>

namespace {

ThumbnailInfo ItemAt(const std::string& aPath) {
    ThumbnailInfo info;
    info.mMimeType = "image/jpeg";
    info.mFilePath = ezPathName::MakeFilePath(Bytes(aPath));
    return info;
}

class FileThumbnailSource : public testing::Test {
protected:
    TemporaryFolder mFolder;
};

TEST_F(FileThumbnailSource, IsTheItemsOwnFileWithTheItemsMimeType) {
    const std::string path = mFolder.Write("a.jpg", "picture");
    const ThumbnailInfo info = ItemAt(path);
    const ezFileThumbnailSource source(&info);
    EXPECT_EQ(Str(source.GetMimeType()), "image/jpeg");
    EXPECT_EQ(Str(source.GetFullPath()), path);
    EXPECT_EQ(Str(source.GetPath().GetFullPath()), path);
    EXPECT_TRUE(source.Exists());
    EXPECT_EQ(ReadAll(source.GetStream()), "picture");
    EXPECT_EQ(ReadAll(source.GetStream()), "picture"); // a new one each time
}

TEST_F(FileThumbnailSource, TheStreamKnowsTypeAndPathAndOutlivesTheSource) {
    const std::string path = mFolder.Write("a.jpg", "picture");
    const ThumbnailInfo info = ItemAt(path);
    std::unique_ptr<ezFileThumbnailSource> source = std::make_unique<ezFileThumbnailSource>(&info);
    source->SetMimeType("image/png");
    EXPECT_EQ(Str(source->GetMimeType()), "image/png");
    ezStreamOwner stream(source->GetStream());
    source.reset();
    EXPECT_EQ(Str(stream->GetURI()), path);
    ezMediaInfo record;
    stream->CopyInfo(&record);
    EXPECT_EQ(Str(record.GetCString(kezInfo_MimeType, "")), "image/png");
    EXPECT_EQ(ReadAll(stream.release()), "picture");
}

TEST_F(FileThumbnailSource, OfAFileThatDoesNotOpenTheStreamIsNotOpen) {
    for (const std::string& path : {mFolder.Path("none.jpg"), mFolder.GetPath(), std::string()}) {
        const ThumbnailInfo info = ItemAt(path);
        const ezFileThumbnailSource source(&info);
        EXPECT_FALSE(source.Exists()) << path;
        EXPECT_EQ(ReadAll(source.GetStream()), "<closed>") << path;
    }
}

TEST_F(FileThumbnailSource, WithoutARequestThereIsNoFile) {
    const ezFileThumbnailSource source(nullptr);
    EXPECT_EQ(Str(source.GetMimeType()), "");
    EXPECT_EQ(Str(source.GetFullPath()), "");
    EXPECT_FALSE(source.Exists());
    EXPECT_EQ(ReadAll(source.GetStream()), "<closed>");
}

TEST_F(FileThumbnailSource, WhatIsNoFileIsNeitherWaitedForNorRead) {
    const std::string pipe = mFolder.Path("pipe.jpg");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {pipe, mFolder.Write("a.jpg", "picture") + std::string("\0.png", 5)}) {
        const ThumbnailInfo info = ItemAt(path);
        EXPECT_EQ(ReadAll(ezFileThumbnailSource(&info).GetStream()), "<closed>");
    }
}

TEST_F(FileThumbnailSource, PathFileNameAndExtensionAreReplaced) {
    const ThumbnailInfo info = ItemAt("/media/films/a.film.mpg");
    ezFileThumbnailSource source(&info);
    source.SetExtension("jpg");
    EXPECT_EQ(Str(source.GetFullPath()), "/media/films/a.film.jpg");
    source.SetFileName("cover.png");
    EXPECT_EQ(Str(source.GetFullPath()), "/media/films/cover.png");
    source.SetExtension("");
    EXPECT_EQ(Str(source.GetFullPath()), "/media/films/cover");
    source.SetExtension("jpg");
    EXPECT_EQ(Str(source.GetFullPath()), "/media/films/cover.jpg");
    source.SetFileName(".hidden");
    source.SetExtension("jpg");
    EXPECT_EQ(Str(source.GetFullPath()), "/media/films/.hidden.jpg");
    source.SetPath(ezPathName::MakeFilePath("plain"));
    EXPECT_EQ(Str(source.GetFullPath()), "plain");
    source.SetFileName("other");
    EXPECT_EQ(Str(source.GetFullPath()), "other");
    source.SetPath(ezPathName::MakeFilePath("folder.d/"));
    source.SetFileName("cover.jpg");
    EXPECT_EQ(Str(source.GetFullPath()), "folder.d/cover.jpg");
}

} // namespace
