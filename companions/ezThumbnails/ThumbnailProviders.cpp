#include "ezThumbnails/ThumbnailProviders.h"

#include "ez/ThumbnailProvider.h"
#include "ezThumbnails/CostlyThumbnailProvider.h"
#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/DefaultThumbnailProvider.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"

void AddThumbnailProviders(ezThumbnailProviderManager& aManager, const ThumbnailProviders& aProviders) {
    auto* generator = static_cast<PictureThumbnailGenerator*>(aManager.GetThumbnailGenerator()); // borrowed
    aManager.Add(aProviders.mPicture != nullptr ? aProviders.mPicture
                                                : new ezPictureThumbnailProvider(generator, "picture"));
    if (aProviders.mOwn != nullptr) {
        aManager.Add(aProviders.mOwn);
    }
    aManager.Add(aProviders.mCover != nullptr ? aProviders.mCover : new CoverThumbnailProvider(generator));
    aManager.Add(aProviders.mSidecar != nullptr ? aProviders.mSidecar
                                                : new SidecarThumbnailProvider(generator));
    aManager.Add(new CostlyThumbnailProvider(generator)); // last: what no other could afford
    aManager.SetDefaultProvider(aProviders.mDefault != nullptr ? aProviders.mDefault
                                                               : new DefaultThumbnailProvider(generator));
}
