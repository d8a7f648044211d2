#pragma once

#include "ez/ThumbnailProvider.h"

#include "ezPlatform/files/File.h"

/// Provides a thumbnail of some bytes for everything.
class StillProvider : public ezThumbnailProvider {
public:
    StillProvider() : ezThumbnailProvider("still") {}
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* /*anInfo*/) override { return kJPEGThumbnailID; }
    bool BuildThumbnail(const ThumbnailInfo* /*anInfo*/, ezFile* aFile) override {
        return aFile->Write("still", 5) == 5;
    }
};
