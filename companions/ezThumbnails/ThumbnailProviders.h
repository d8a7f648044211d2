#pragma once

#include "ezThumbnails/Export.h"

class ezThumbnailProvider;
class ezThumbnailProviderManager;

/// What a host has in place of the providers of this library, or beside them. Each is the manager's from then
/// on; null, for all but mOwn, is the provider of this library.
struct ThumbnailProviders {
    ezThumbnailProvider* mPicture = nullptr; ///< for an ezPictureThumbnailProvider
    ezThumbnailProvider* mOwn = nullptr;     ///< what the host itself knows of its items; null for nothing
    ezThumbnailProvider* mCover = nullptr;   ///< for a CoverThumbnailProvider
    ezThumbnailProvider* mSidecar = nullptr; ///< for a SidecarThumbnailProvider
    ezThumbnailProvider* mDefault = nullptr; ///< for a DefaultThumbnailProvider
};

/// Adds all providers to a manager, in the order in which they are to be asked: the item that is a picture
/// itself, what the host knows, the cover within the item, the picture beside it, and last the
/// CostlyThumbnailProvider. The generic pictures become the manager's default. docs/serving-thumbnails.md
/// says why in this order.
/// @param aManager    its generator is a PictureThumbnailGenerator
/// @param aProviders  the caller's in place of these
EZTHUMBNAILS_API void AddThumbnailProviders(ezThumbnailProviderManager& aManager,
                                            const ThumbnailProviders& aProviders = {});
