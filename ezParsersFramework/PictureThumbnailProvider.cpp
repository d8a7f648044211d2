#include "ez/PictureThumbnailProvider.h"

#include "ez/FileThumbnailSource.h"
#include "ez/ThumbnailGenerator.h"
#include "ez/ThumbnailInfo.h"

ezPictureThumbnailProvider::~ezPictureThumbnailProvider() = default;

uint32 ezPictureThumbnailProvider::GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) {
    return mThumbnailGenerator != nullptr && anInfo != nullptr
               ? mThumbnailGenerator->CanConvert(anInfo->mMimeType)
               : kNoThumbnailID;
}

bool ezPictureThumbnailProvider::BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) {
    if (mThumbnailGenerator == nullptr || anInfo == nullptr || aFile == nullptr) {
        return false;
    }
    const ezFileThumbnailSource source(anInfo);
    return mThumbnailGenerator->BuildThumbnail(anInfo, &source, aFile);
}
