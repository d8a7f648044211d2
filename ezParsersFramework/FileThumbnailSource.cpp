#include "ez/FileThumbnailSource.h"

#include "ez/ThumbnailInfo.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/FileStream.h"

#include <memory>

ezFileThumbnailSource::ezFileThumbnailSource(const ThumbnailInfo* anInfo)
    : ezThumbnailSource(anInfo != nullptr ? anInfo->mMimeType : ezCString()),
      mFilePath(anInfo != nullptr ? anInfo->mFilePath : ezPathName()) {}

ezFileThumbnailSource::~ezFileThumbnailSource() = default;

bool ezFileThumbnailSource::Exists() const {
    return mFilePath.FileExists();
}

ezStream* ezFileThumbnailSource::GetStream() const {
    const ezCString path = GetFullPath();
    auto file = std::make_unique<ezFile>(path, ezFileOpenMode_Read);
    file->Open(); // or not: the stream tells
    return ezFileGetStream(file.release(), GetMimeType(), path);
}

void ezFileThumbnailSource::SetFileName(const ezCString& aFileName) {
    const ezCString& path = mFilePath.GetFullPath();
    const std::size_t folder = path.GetLength() - mFilePath.GetFullName().GetLength();
    mFilePath = ezPathName::MakeFilePath(path.Left(folder) + aFileName);
}

void ezFileThumbnailSource::SetExtension(const ezCString& anExtension) {
    const ezCString base = mFilePath.GetFileName();
    SetFileName(anExtension.IsEmpty() ? base : base + "." + anExtension);
}
