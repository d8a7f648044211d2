#include "ezThumbnails/SidecarListing.h"

#include "ezThumbnails/detail/Sidecars.h"

#include "ez/ThumbnailInfo.h"

struct SidecarListing::Folders {
    FolderPictures mListed;
};

SidecarListing::SidecarListing() : mFolders(std::make_unique<Folders>()) {}

SidecarListing::~SidecarListing() = default;

std::vector<ezCString> SidecarListing::CandidatePaths(const ThumbnailInfo* anInfo, bool* afFailed) {
    bool fFailed = false;
    std::vector<ezCString> paths;
    if (anInfo != nullptr) {
        paths = FindSidecars(anInfo->mFilePath.GetFullPath(), &fFailed, &mFolders->mListed);
    }
    if (afFailed != nullptr) {
        *afFailed = fFailed;
    }
    return paths;
}
