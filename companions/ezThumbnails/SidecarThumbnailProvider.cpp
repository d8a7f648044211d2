#include "ezThumbnails/SidecarThumbnailProvider.h"

#include "ezThumbnails/detail/Sidecars.h"

#include <memory>

SidecarThumbnailProvider::~SidecarThumbnailProvider() = default;

std::vector<ezCString> SidecarThumbnailProvider::CandidatePaths(const ThumbnailInfo* anInfo) {
    return anInfo != nullptr ? FindSidecars(anInfo->mFilePath.GetFullPath()) : std::vector<ezCString>();
}

void SidecarThumbnailProvider::GetFirstPath(const ThumbnailInfo* anInfo) {
    mPaths = CandidatePaths(anInfo);
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
