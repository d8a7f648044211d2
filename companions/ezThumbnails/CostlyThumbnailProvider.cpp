#include "ezThumbnails/CostlyThumbnailProvider.h"

#include "ezThumbnails/PictureThumbnailGenerator.h"

CostlyThumbnailProvider::~CostlyThumbnailProvider() = default;

uint32 CostlyThumbnailProvider::GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) {
    if (anInfo == nullptr || mThumbnailGenerator == nullptr) {
        return kNoThumbnailID;
    }
    if (mThumbnailGenerator->HasMetCost(*anInfo)) {
        return kJPEGThumbnailID | kPNGThumbnailID;
    }
    mThumbnailGenerator->ForgetFailures(
        *anInfo); // asked last: what the next request meets counts from the start
    return kNoThumbnailID;
}

bool CostlyThumbnailProvider::BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* /*aFile*/) {
    if (GetPossibleThumbnailFor(anInfo) == kNoThumbnailID) {
        return false;
    }
    mThumbnailGenerator->ForgetFailures(*anInfo);
    return true;
}
