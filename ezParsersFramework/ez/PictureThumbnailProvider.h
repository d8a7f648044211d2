#pragma once

#include "ez/MediaParserTypes.h"
#include "ez/ThumbnailProviderBase.h"

#include "ezPlatform/base/Types.h"

class ezFile;
class ezThumbnailGenerator;
struct ThumbnailInfo;

/// The provider for items that are pictures: their own file is the source.
class EZPARSERS_API ezPictureThumbnailProvider : public ezThumbnailProvider {
public:
    /// @param anThumbnailGenerator  borrowed from the manager; null converts nothing
    /// @param aName                 as that of ezThumbnailProvider
    ezPictureThumbnailProvider(ezThumbnailGenerator* anThumbnailGenerator, const char* aName)
        : ezThumbnailProvider(aName), mThumbnailGenerator(anThumbnailGenerator) {}
    ~ezPictureThumbnailProvider() override;

    /// What the generator makes of the item's MIME type; 0 without generator or request.
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) override;
    /// Has the generator build from the item's own file, whether or not it can convert the type.
    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override;

protected:
    ezThumbnailGenerator* mThumbnailGenerator; ///< borrowed; null converts nothing
};
