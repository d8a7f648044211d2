#include "ezHosting/detail/HostThumbnails.h"

#ifdef EZ_HAS_THUMBNAILS
#include "ez/ThumbnailProvider.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/ThumbnailProviders.h"

namespace {

class CachedThumbnails : public HostThumbnails {
public:
    explicit CachedThumbnails(const ezHostOptions& anOptions)
        : mCache(ezCString(anOptions.mThumbnailFolder), anOptions.mThumbnailBytes, anOptions.mThumbnailFiles),
          mManager(&mCache, new PictureThumbnailGenerator) {
        AddThumbnailProviders(mManager);
    }

    ezThumbnailProviderManager& GetManager() override { return mManager; }

private:
    ezFileCacheManager mCache; ///< before the manager, which borrows it
    ezThumbnailProviderManager mManager;
};

} // namespace
#endif

HostThumbnails::~HostThumbnails() = default;

std::unique_ptr<HostThumbnails> HostThumbnails::New([[maybe_unused]] const ezHostOptions& anOptions) {
#ifdef EZ_HAS_THUMBNAILS
    return std::make_unique<CachedThumbnails>(anOptions);
#else
    return nullptr;
#endif
}
