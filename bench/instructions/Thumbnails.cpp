#include "bench/Require.h"
#include "bench/StillProvider.h"
#include "bench/instructions/Instructions.h"

#include "ez/ThumbnailProvider.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "support/ReplacedSystem.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

namespace {

constexpr std::uint64_t kManyBytes = std::uint64_t{1} << 40;
constexpr std::size_t kFirst = 100000; ///< so that all names have one length

/// A cache that has room for a number of thumbnails, and has them.
class Shelf {
public:
    explicit Shelf(std::size_t aSize)
        : mCache(ezCString(mFolder.GetPath().c_str()), kManyBytes, aSize), mManager(&mCache, nullptr) {
        mManager.Add(new StillProvider);
        for (std::size_t i = 0; i < aSize; ++i) {
            Get(kFirst + i);
        }
        mNext = kFirst + aSize;
    }

    void GetLatest() { Get(mNext - 1); }
    void BuildNext() { Get(mNext++); }

private:
    void Get(std::size_t anItem) {
        ThumbnailInfo info;
        info.mUniqueID = ezCString(("item " + std::to_string(anItem)).c_str());
        info.mThumbnailID = kJPEGThumbnailID;
        info.mMimeType = "image/jpeg";
        info.mWidthMax = 160;
        info.mHeightMax = 160;
        const std::unique_ptr<ezFile> file(mManager.GetCachedThumbnail(&info, false));
        Require(file != nullptr && file->LengthAtOpen() == 5, "there is a thumbnail");
    }

    MemoryFolder mFolder;
    const ReplacedSystem mNoSync{WithoutSync};
    ezFileCacheManager mCache;
    ezThumbnailProviderManager mManager;
    std::size_t mNext = 0;
};

} // namespace

void PrintThumbnails() {
    Shelf shelf(100);
    Instructions_PrintOf("thumbnail.cached", 1, [&] { shelf.GetLatest(); });
    Instructions_PrintGrowth("thumbnail.cached", {100, 1000, 10000}, [](std::size_t aSize) {
        Shelf larger(aSize);
        return Instructions_OfUnit(1, [&] { larger.GetLatest(); });
    });
    // A full cache looks its folder through once in a while: in so many thumbnails at least once.
    Instructions_PrintGrowth("thumbnail.new-in-full-cache", {1000, 10000}, [](std::size_t aSize) {
        Shelf full(aSize);
        const std::size_t misses = std::max<std::size_t>(1024, aSize / 8);
        return Instructions_OfUnit(misses, [&] {
            for (std::size_t i = 0; i < misses; ++i) {
                full.BuildNext();
            }
        });
    });
}
