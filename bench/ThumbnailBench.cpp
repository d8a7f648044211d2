#include "bench/Allocations.h"
#include "bench/Benches.h"
#include "bench/CountedSystem.h"
#include "bench/HeapPeak.h"
#include "bench/Measure.h"
#include "bench/Photo.h"
#include "bench/StillProvider.h"

#include "ez/ThumbnailProvider.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "support/ReplacedSystem.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::uint64_t kManyBytes = std::uint64_t{1} << 40;

ThumbnailInfo InfoOf(const std::string& anIdentity, uint32 aBox) {
    ThumbnailInfo info;
    info.mUniqueID = ezCString(anIdentity.c_str());
    info.mThumbnailID = kJPEGThumbnailID;
    info.mMimeType = "image/jpeg";
    info.mWidthMax = aBox;
    info.mHeightMax = aBox;
    info.mfFastRescale = true;
    return info;
}

// The cache

constexpr std::array<std::size_t, 3> kSizes = {100, 10000, 100000};
constexpr std::size_t kAsked = 100; ///< names that are hit, at every size
constexpr std::size_t kPasses = 20;

/// Misses of a round: a full cache looks its folder through once meanwhile.
constexpr std::size_t MissesOf(std::size_t aSize) {
    return std::max<std::size_t>(1024, aSize / 8);
}

/// A cache that is full, and its thumbnails.
template <typename Folder>
class FullCache {
public:
    explicit FullCache(std::size_t aSize)
        : mMisses(MissesOf(aSize)),
          mCache(ezCString(mFolder.GetPath().c_str()), kManyBytes, aSize),
          mManager(&mCache, nullptr) {
        mManager.Add(new StillProvider);
        const std::size_t step = aSize / kAsked;
        for (std::size_t i = 0; i < aSize; ++i) {
            const ThumbnailInfo info = InfoOf("item " + std::to_string(kSizes.back() + i), 160);
            const ezCString name = mManager.GetThumbnailFileName(&info, false);
            WriteStill(mCache.GetFullPath(name));
            if (i % step == 0) {
                mInfos.push_back(info);
                mNames.push_back(name);
                mPaths.push_back(mCache.GetFullPath(name));
            }
        }
    }

    void GetThumbnails() {
        for (const ThumbnailInfo& info : mInfos) {
            const std::unique_ptr<ezFile> file(mManager.GetCachedThumbnail(&info, false));
            Require(file != nullptr && file->LengthAtOpen() == 1, "every thumbnail comes from the cache");
        }
    }

    void OpenCached() {
        for (const ezCString& name : mNames) {
            bool fNew = false;
            const std::unique_ptr<ezFile> file(mCache.OpenCachedFile(name, &fNew, 0));
            Require(file != nullptr && !fNew, "every file is in the cache");
        }
    }

    void BareCalls() {
        for (const ezCString& path : mPaths) {
            struct stat status = {};
            const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
            Require(file >= 0 && fstat(file, &status) == 0 && close(file) == 0, "open, fstat and close");
        }
    }

    /// Nanoseconds a thumbnail that is built, put into the cache, and takes another one's place there.
    double MissCost() {
        const ReplacedSystem noSync(WithoutSync); // waiting for a disk costs the processor nothing
        return TimeOf([&] {
                   for (std::size_t i = 0; i < mMisses; ++i) {
                       const ThumbnailInfo info = InfoOf("new " + std::to_string(++mNew), 160);
                       const std::unique_ptr<ezFile> file(mManager.GetCachedThumbnail(&info, false));
                       Require(file != nullptr && file->LengthAtOpen() == 5, "every thumbnail is built");
                   }
               }) /
               static_cast<double>(mMisses);
    }

private:
    void WriteStill(const ezCString& aPath) {
        if (mPaths.empty()) {
            std::filesystem::create_directories(std::filesystem::path(aPath.c_str()).parent_path());
        }
        const int file = open(aPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        Require(file >= 0 && ftruncate(file, 1) == 0 && close(file) == 0, "the cache can be filled");
    }

    std::size_t mMisses;
    Folder mFolder;
    ezFileCacheManager mCache;
    ezThumbnailProviderManager mManager;
    std::vector<ThumbnailInfo> mInfos;
    std::vector<ezCString> mNames;
    std::vector<ezCString> mPaths;
    std::size_t mNew = 0;
};

using DiskCache = FullCache<TemporaryFolder>; ///< where caches usually lie
/// In memory where there is room for very many small files.
class RoomyMemoryFolder : public MemoryFolder {
public:
    RoomyMemoryFolder() : MemoryFolder(std::uintmax_t{1} << 30) {}
};
using MemoryCache = FullCache<RoomyMemoryFolder>;

/// Nanoseconds a thumbnail.
template <typename Cache>
Side HitSide(const std::string& aName, const std::shared_ptr<Cache>& aCache, void (Cache::*aPass)()) {
    return {aName, [aCache, aPass] {
                return TimeOf([&] {
                           for (std::size_t i = 0; i < kPasses; ++i) {
                               (*aCache.*aPass)();
                           }
                       }) /
                       static_cast<double>(kPasses * kAsked);
            }};
}

std::vector<Side> HitSides() {
    const auto cache = std::make_shared<DiskCache>(kSizes.front());
    return {HitSide("calls", cache, &DiskCache::BareCalls), HitSide("open", cache, &DiskCache::OpenCached),
            HitSide("get", cache, &DiskCache::GetThumbnails)};
}

/// For each size a hit and a miss.
std::vector<Side> SizeSides() {
    std::vector<Side> sides;
    for (const std::size_t size : kSizes) {
        const auto cache = std::make_shared<MemoryCache>(size);
        sides.push_back(HitSide("hit " + std::to_string(size), cache, &MemoryCache::GetThumbnails));
        // Where all files go in a round, those that are hit would go too; else they are the latest.
        const auto full = size <= MissesOf(size) + kAsked ? std::make_shared<MemoryCache>(size) : cache;
        sides.push_back({"miss " + std::to_string(size), [full] { return full->MissCost(); }});
    }
    return sides;
}

void CountHits() {
    DiskCache cache(kAsked);
    cache.GetThumbnails();
    const CountedSystem system;
    const std::size_t before = Allocations_Count();
    cache.GetThumbnails();
    const std::size_t allocations = Allocations_Count() - before;
    const CountedSystem::Counts& counts = system.GetCounts();
    const auto note = [](const char* aWhat, std::size_t aCount, double aBound) {
        NoteCount(std::string("thumbnail from the cache, ") + aWhat, static_cast<double>(aCount) / kAsked,
                  aBound);
    };
    note("open", counts.mOpen, 1);
    note("fstat", counts.mFStat, 1);
    note("futimens", counts.mFUTimens, 1);
    note("close", counts.mClose, 1);
    note("stat and read", counts.mStat + counts.mRead, 0);
    note("allocations", allocations, 12);
}

// The picture

/// A box, and the scale of the codec that is nearest below what fits into it.
struct Box {
    uint32 mSide;
    unsigned mEighths;
};
/// The largest that JPEG_TN allows, for which the codec has no scale below; and a page of a phone.
constexpr std::array<Box, 2> kBoxes = {{{160, 1}, {1024, 2}}};
constexpr std::size_t kKept = 8;

/// A photo, and a cache that its thumbnails are never in.
class PhotoShelf {
public:
    PhotoShelf()
        : mPath(mFolder.Write("photo.jpg", Photo_Bytes())),
          mCache(ezCString(mFolder.GetPath().c_str()), kManyBytes, kKept),
          mManager(&mCache, new PictureThumbnailGenerator) {
        mManager.Add(new ezPictureThumbnailProvider(mManager.GetThumbnailGenerator(), "picture"));
    }

    void Miss(const Box& aBox) {
        ThumbnailInfo info = InfoOf("photo " + std::to_string(++mNew), aBox.mSide);
        info.mFilePath = ezPathName::MakeFilePath(ezCString(mPath.c_str()));
        const std::unique_ptr<ezFile> file(mManager.GetCachedThumbnail(&info, false));
        Require(file != nullptr && file->LengthAtOpen() > 1000, "the photo has a thumbnail");
    }

    void Decode(const Box& aBox) const {
        Require(Photo_Decode(mPath, aBox.mEighths) == kPhoto_Width * aBox.mEighths / 8,
                "the photo is scaled");
    }

private:
    TemporaryFolder mFolder;
    std::string mPath;
    ezFileCacheManager mCache;
    ezThumbnailProviderManager mManager;
    std::size_t mNew = 0;
};

/// For each box the miss, then the codec.
std::vector<Side> PhotoSides() {
    const auto shelf = std::make_shared<PhotoShelf>();
    std::vector<Side> sides;
    for (const Box& box : kBoxes) {
        const std::string name = std::to_string(box.mSide);
        sides.push_back({"miss " + name, [shelf, box] { return TimeOf([&] { shelf->Miss(box); }); }});
        sides.push_back({"codec " + name, [shelf, box] { return TimeOf([&] { shelf->Decode(box); }); }});
    }
    return sides;
}

void CountPhoto() {
    PhotoShelf shelf;
    for (const Box& box : kBoxes) {
        const std::string text = "miss in " + std::to_string(box.mSide) + " by " + std::to_string(box.mSide);
        shelf.Miss(box); // the cache has its folder, and has looked it through
        const double codec = HeapPeak_Of([&] { shelf.Decode(box); });
        const double miss = HeapPeak_Of([&] { shelf.Miss(box); });
        if (codec >= 0) {
            Require(codec > 10000, "the codec's memory is seen");
            NoteCount(text + ", MiB of heap above the codec's", (miss - codec) / (1 << 20), 4);
        }
        const CountedSystem system;
        shelf.Miss(box);
        NoteCount(text + ", fsync", static_cast<double>(system.GetCounts().mFSync), 1);
    }
}

Claim Ratio(const std::string& aText, std::size_t aSide, std::size_t anOther, double aBound) {
    return {aText, [=](const Costs& aCosts) { return aCosts[aSide] / aCosts[anOther]; }, aBound};
}

} // namespace

void AddThumbnailBenches() {
    AddComparison("Thumbnail/Hit", HitSides,
                  {Ratio("cached file / bare open, fstat, close", 1, 0, 2),
                   Ratio("cached thumbnail / bare open, fstat, close", 2, 0, 2)});
    std::vector<Claim> claims;
    for (std::size_t i = 1; i < kSizes.size(); ++i) {
        const std::string size = std::to_string(kSizes[i]);
        claims.push_back(Ratio("cached thumbnail, among " + size + " / among 100", 2 * i, 0, 1.5));
        claims.push_back(Ratio("new thumbnail, full cache of " + size + " / of 100", 2 * i + 1, 1, 1.5));
    }
    AddComparison("Thumbnail/Cache", SizeSides, claims);
    AddCounting("Thumbnail/HitCounts", CountHits);
    AddComparison("Thumbnail/Miss", PhotoSides,
                  {Ratio("photo in 160 by 160, fast / codec alone at 1/8", 0, 1, 1.2),
                   Ratio("photo in 1024 by 1024, fast / codec alone at 2/8", 2, 3, 1.35)});
    AddCounting("Thumbnail/MissCounts", CountPhoto);
}
