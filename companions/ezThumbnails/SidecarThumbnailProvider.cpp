#include "ezThumbnails/SidecarThumbnailProvider.h"

#include "ezThumbnails/detail/Sidecars.h"

#include <memory>

SidecarThumbnailProvider::~SidecarThumbnailProvider() = default;

void SidecarThumbnailProvider::GetFirstPath(const ThumbnailInfo* anInfo) {
    mPaths = FindSidecars(anInfo->mFilePath.GetFullPath());
    mNextPath = 0;
    GetNextPath(anInfo);
}

void SidecarThumbnailProvider::GetNextPath(const ThumbnailInfo* anInfo) {
    EndTries();
    if (mNextPath == mPaths.size()) {
        return;
    }
    const ezCString& path = mPaths[mNextPath++];
    auto source = std::make_unique<ezFileThumbnailSource>(anInfo);
    source->SetPath(ezPathName::MakeFilePath(path));
    source->SetMimeType(SidecarMimeType(path));
    mTrySource = source.release();
}
