#include "ezThumbnails/SidecarThumbnailProvider.h"

#include "ezThumbnails/detail/Sidecars.h"

#include <memory>

SidecarThumbnailProvider::~SidecarThumbnailProvider() = default;

std::vector<ezCString> SidecarThumbnailProvider::CandidatePaths(const ThumbnailInfo* anInfo) {
    return anInfo != nullptr ? FindSidecars(anInfo->mFilePath.GetFullPath()) : std::vector<ezCString>();
}

uint32 SidecarThumbnailProvider::GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) {
    mfFailed = false;
    const uint32 possible = ezIndirectThumbnailProvider::GetPossibleThumbnailFor(anInfo);
    // A build that fails is tried again; what nobody could build is remembered for ever.
    return possible == 0 && mfFailed ? mThumbnailGenerator->CanConvert("image/jpeg") : possible;
}

void SidecarThumbnailProvider::GetFirstPath(const ThumbnailInfo* anInfo) {
    mfFailed = false;
    mPaths = anInfo != nullptr ? FindSidecars(anInfo->mFilePath.GetFullPath(), &mfFailed)
                               : std::vector<ezCString>();
    mNextPath = 0;
    GetNextPath(anInfo);
}

void SidecarThumbnailProvider::GetNextPath(const ThumbnailInfo* anInfo) {
    EndTries();
    if (anInfo == nullptr || mNextPath == mPaths.size()) {
        return;
    }
    const ezCString& path = mPaths[mNextPath++];
    auto source = std::make_unique<ezFileThumbnailSource>(anInfo);
    source->SetPath(ezPathName::MakeFilePath(path));
    source->SetMimeType(SidecarMimeType(path));
    mTrySource = source.release();
}
