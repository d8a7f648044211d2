#pragma once

#include "ezThumbnails/Export.h"

#include "ez/ThumbnailProvider.h"

/// Makes generic thumbnails: one built-in picture for each of the media classes audio, video and image, and
/// one for everything else. The class is what stands before the "/" of the item's MIME type, in any case. The
/// pictures are PNGs of 240 by 240 with no more than 16 greys; the generator gives them size and format.
///
/// For ezThumbnailProviderManager::SetDefaultProvider.
class EZTHUMBNAILS_API DefaultThumbnailProvider : public ezThumbnailProvider {
public:
    /// @param aThumbnailGenerator  borrowed, the manager's
    explicit DefaultThumbnailProvider(ezThumbnailGenerator* aThumbnailGenerator)
        : ezThumbnailProvider("default"), mThumbnailGenerator(aThumbnailGenerator) {}
    /// Does not touch the generator.
    ~DefaultThumbnailProvider() override;

    /// What the generator makes of a PNG.
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) override;
    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override;

private:
    ezThumbnailGenerator* mThumbnailGenerator;
};
