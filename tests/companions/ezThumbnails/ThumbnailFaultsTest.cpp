#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/DefaultThumbnailProvider.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"

#include "CoverKit.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <dlfcn.h>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

// Every system call of a request for a thumbnail goes wrong once, and for good: while it is built, and when it
// comes from the cache.

namespace {

/// Faults of the calls that the finder of pictures beside a media makes by itself, as do those of the libraries
/// below it.
class DirectFaults;
DirectFaults* gDirect = nullptr;

class DirectFaults {
public:
    explicit DirectFaults(const std::vector<Fault>& aFaults) : mFaults(aFaults) { gDirect = this; }
    ~DirectFaults() { gDirect = nullptr; }
    DirectFaults(const DirectFaults&) = delete;
    DirectFaults& operator=(const DirectFaults&) = delete;

    bool HasStruck() const { return mfStruck; }
    static bool Fails(SystemCall aCall) { return gDirect != nullptr && gDirect->Strikes(aCall); }

private:
    bool Strikes(SystemCall aCall) {
        for (const Fault& fault : mFaults) {
            if (fault.mCall == aCall) {
                ++mCount;
                if (mCount >= fault.mFrom && mCount - fault.mFrom < fault.mTimes) {
                    mfStruck = true;
                    errno = fault.mError;
                    return true;
                }
            }
        }
        return false;
    }

    const std::vector<Fault>& mFaults;
    std::size_t mCount = 0;
    bool mfStruck = false;
};

#if defined(__USE_FILE_OFFSET64) && !defined(__APPLE__)
constexpr const char* kReadDir = "readdir64";
constexpr const char* kStat = "stat64";
#else
constexpr const char* kReadDir = "readdir";
constexpr const char* kStat = "stat";
#endif

template <typename Function>
Function RealCall(const char* aName) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, aName));
}

} // namespace

// These stand before those of the C library.

extern "C" DIR* opendir(const char* aPath) {
    static const auto sReal = RealCall<DIR* (*)(const char*)>("opendir");
    return DirectFaults::Fails(SystemCall::OpenDir) ? nullptr : sReal(aPath);
}

extern "C" dirent* readdir(DIR* aFolder) {
    static const auto sReal = RealCall<dirent* (*)(DIR*)>(kReadDir);
    return DirectFaults::Fails(SystemCall::ReadDir) ? nullptr : sReal(aFolder);
}

extern "C" int stat(const char* aPath, struct stat* aStatus) noexcept {
    static const auto sReal = RealCall<int (*)(const char*, struct stat*)>(kStat);
    return DirectFaults::Fails(SystemCall::Stat) ? -1 : sReal(aPath, aStatus);
}

// Memory for pictures is asked for this way.
void* operator new[](std::size_t aSize, const std::nothrow_t& /*aTag*/) noexcept {
    const Fault* fault = FaultySystem::Strike(SystemCall::Memory);
    if (fault != nullptr && fault->mError != 0) {
        return nullptr;
    }
    return ::operator new[](aSize);
}

namespace {

std::string SampleBytes(const char* aName) {
    std::ifstream file(std::string(EZ_SAMPLES) + "/" + aName, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A folder of media with pictures of every kind of source, and a cache.
class Home {
public:
    Home() {
        const std::string jpeg = SampleBytes("pictures/harbour.jpg");
        const std::string png = SampleBytes("pictures/harbour.png");
        mFolder.Write("media/harbour.png", png);
        mFolder.Write("media/film.mkv", "film");
        mFolder.Write("media/film.jpg", jpeg);
        mFolder.Write("covers/song.mp3", ID3(3, 0, Frame23("APIC", Apic(3, jpeg))));
        mFolder.Write("covers/stuffed.mp3", ID3(3, 0x80, Unsynchronised(Frame23("APIC", Apic(3, png)))));
    }

    std::string Path(const std::string& aName) const { return mFolder.Path(aName); }

private:
    TemporaryFolder mFolder;
};

/// The thumbnails of a server, as after its start.
class Thumbnails {
public:
    explicit Thumbnails(const Home& aHome)
        : mCache(aHome.Path("cache").c_str(), 10000000, 100),
          mManager(&mCache, new PictureThumbnailGenerator), mHome(aHome) {
        mManager.Add(new ezPictureThumbnailProvider(mManager.GetThumbnailGenerator(), "picture"));
        mManager.Add(new SidecarThumbnailProvider(mManager.GetThumbnailGenerator()));
        mManager.Add(new CoverThumbnailProvider(mManager.GetThumbnailGenerator()));
    }

    std::string Get(const std::string& aName, const char* aMimeType) {
        ThumbnailInfo info;
        info.mUniqueID = aName.c_str();
        info.mFilePath = ezPathName::MakeFilePath(mHome.Path(aName).c_str());
        info.mMimeType = aMimeType;
        info.mThumbnailID = kJPEGThumbnailID;
        info.mWidth = info.mHeight = info.mWidthMax = info.mHeightMax = 160;
        info.mPixelRatioHeight = info.mPixelRatioWidth = 1;
        const std::unique_ptr<ezFile> file(mManager.GetThumbnail(&info, false));
        if (file == nullptr) {
            return "nothing";
        }
        std::string bytes(static_cast<std::size_t>(std::max<ezFileOffset>(file->LengthAtOpen(), 0)), 'x');
        return file->Read(bytes.data(), bytes.size()) == static_cast<int>(bytes.size()) ? bytes : "unreadable";
    }

private:
    ezFileCacheManager mCache;
    ezThumbnailProviderManager mManager;
    const Home& mHome;
};

} // namespace
