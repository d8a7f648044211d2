#pragma once

#include "ez/MediaParserTypes.h"
#include "ez/ThumbnailInfo.h"

#include "ezPlatform/base/Types.h"

class ezFile;

/// The base of the thumbnail providers: finds a picture for a media item and has a thumbnail built from it.
///
/// Owned by an ezThumbnailProviderManager, and used by one thread at a time. Its destructor must not touch
/// the generator, which may have been deleted by then.
class EZPARSERS_API ezThumbnailProvider {
public:
    /// @param aName  borrowed: a constant string that outlives the provider
    explicit ezThumbnailProvider(const char* aName) : mName(aName) {}
    virtual ~ezThumbnailProvider();

    ezThumbnailProvider(const ezThumbnailProvider&) = delete;
    ezThumbnailProvider& operator=(const ezThumbnailProvider&) = delete;

    /// The formats, a set of ezThumbnailID, that it could provide for the item; 0 for null.
    virtual uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) = 0;
    /// Writes the thumbnail to aFile, which is open for writing and empty, and does not close it: a closed
    /// file is given up, and there is no thumbnail. False when it could not; the content of the file is then
    /// discarded.
    virtual bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) = 0;

    /// The name that log lines show; it still belongs to whoever gave it.
    const char* GetName() const { return mName; }
    /// True when a wanted format is among the possible ones.
    bool CanProvideThumbnailFor(const ThumbnailInfo* anInfo) {
        return anInfo != nullptr && (anInfo->mThumbnailID & GetPossibleThumbnailFor(anInfo)) != 0;
    }

protected:
    const char* mName; ///< borrowed
};
