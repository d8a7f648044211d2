#include "ezThumbnails/SidecarThumbnailProvider.h"

#include "ezThumbnails/detail/Sidecars.h"
#include "ezThumbnails/detail/UnreadableSource.h"

#include <memory>

SidecarThumbnailProvider::~SidecarThumbnailProvider() = default;

std::vector<ezCString> SidecarThumbnailProvider::CandidatePaths(const ThumbnailInfo* anInfo) {
    return anInfo != nullptr ? FindSidecars(anInfo->mFilePath.GetFullPath()) : std::vector<ezCString>();
}

void SidecarThumbnailProvider::GetFirstPath(const ThumbnailInfo* anInfo) {
    mfFailed = false;
    if (anInfo == nullptr) {
        mPaths.clear();
    } else if (mListing != nullptr) {
        mPaths = mListing->CandidatePaths(anInfo, &mfFailed);
    } else {
        mPaths = FindSidecars(anInfo->mFilePath.GetFullPath(), &mfFailed);
    }
    mNextPath = 0;
    GetNextPath(anInfo);
}

void SidecarThumbnailProvider::GetNextPath(const ThumbnailInfo* anInfo) {
    EndTries();
    if (anInfo == nullptr) {
        return;
    }
    if (mNextPath == mPaths.size()) {
        if (mfFailed) {
            mfFailed = false; // there is one
            mTrySource = new UnreadableSource;
        }
        return;
    }
    const ezCString& path = mPaths[mNextPath++];
    auto source = std::make_unique<ezFileThumbnailSource>(anInfo);
    source->SetPath(ezPathName::MakeFilePath(path));
    source->SetMimeType(SidecarMimeType(path));
    mTrySource = source.release();
}
