#include "ezThumbnails/CostlyThumbnailProvider.h"

#include "ezThumbnails/PictureThumbnailGenerator.h"

CostlyThumbnailProvider::~CostlyThumbnailProvider() = default;

uint32 CostlyThumbnailProvider::GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) {
    const bool fCostly =
        anInfo != nullptr && mThumbnailGenerator != nullptr && mThumbnailGenerator->HasMetCost(*anInfo);
    return fCostly ? kJPEGThumbnailID | kPNGThumbnailID : kNoThumbnailID;
}

bool CostlyThumbnailProvider::BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* /*aFile*/) {
    if (GetPossibleThumbnailFor(anInfo) == kNoThumbnailID) {
        return false;
    }
    mThumbnailGenerator->ForgetCost();
    return true;
}
