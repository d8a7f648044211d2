#include "ez/IndirectThumbnailProvider.h"

#include "ez/ThumbnailGenerator.h"
#include "ez/ThumbnailInfo.h"
#include "ez/ThumbnailSource.h"

#include "ezPlatform/files/File.h"

ezIndirectThumbnailProvider::~ezIndirectThumbnailProvider() {
    delete mTrySource;
}

void ezIndirectThumbnailProvider::EndTries() {
    delete mTrySource;
    mTrySource = nullptr;
}

// Neither of the two loops ends the tries: what succeeded stays until the next first path.

uint32 ezIndirectThumbnailProvider::GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) {
    if (mThumbnailGenerator == nullptr || anInfo == nullptr) {
        return 0;
    }
    for (GetFirstPath(anInfo); SourceToTry(); GetNextPath(anInfo)) {
        if (!mTrySource->Exists()) {
            continue;
        }
        // Any format will do here; building asks for all that are wanted.
        const uint32 possible = mThumbnailGenerator->CanConvert(mTrySource->GetMimeType());
        if (possible != 0) {
            return possible;
        }
    }
    return 0;
}

bool ezIndirectThumbnailProvider::BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) {
    if (mThumbnailGenerator == nullptr || anInfo == nullptr || aFile == nullptr) {
        return false;
    }
    const uint32 wanted = anInfo->mThumbnailID;
    for (GetFirstPath(anInfo); SourceToTry(); GetNextPath(anInfo)) {
        // All wanted formats, where the question of what is possible takes any.
        if (!mTrySource->Exists() ||
            (mThumbnailGenerator->CanConvert(mTrySource->GetMimeType()) & wanted) != wanted) {
            continue;
        }
        if (!aFile->Empty()) {
            aFile->Close(); // or the next provider would stand for this one from then on
            return false;
        }
        if (mThumbnailGenerator->BuildThumbnail(anInfo, mTrySource, aFile)) {
            return true;
        }
    }
    return false;
}
