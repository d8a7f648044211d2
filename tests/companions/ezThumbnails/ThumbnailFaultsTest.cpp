#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/DefaultThumbnailProvider.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"

#include "CoverKit.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/Samples.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <dlfcn.h>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <sys/stat.h>
#include <utility>
#include <vector>

// Every system call of a request for a thumbnail goes wrong once, and for good: while it is built, and when
// it comes from the cache.

namespace {

/// Faults of the calls that the finder of pictures beside a media makes by itself, as do those of the
/// libraries below it.
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

    const FaultySystem mOthers; ///< which fail nowhere
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

/// A media.
struct Item {
    const char* mName;
    const char* mMimeType;
};
constexpr Item kPicture = {"media/harbour.png", "image/png"};
constexpr Item kFilm = {"media/film.mkv", "video/x-matroska"};
constexpr Item kSong = {"covers/song.mp3", "audio/mpeg"};
constexpr Item kStuffedSong = {"covers/stuffed.mp3", "audio/mpeg"};

/// A folder with a media, and room for a cache.
class Home {
public:
    explicit Home(const Item& anItem) {
        const std::string name = anItem.mName;
        if (name == kPicture.mName) {
            mFolder.Write(name, ReadSample("pictures/harbour.png"));
        } else if (name == kFilm.mName) {
            mFolder.Write(name, "film");
            mFolder.Write("media/film.jpg", ReadSample("pictures/harbour.jpg"));
        } else if (name == kSong.mName) {
            const std::string frame = Frame23("APIC", Apic(3, ReadSample("pictures/harbour.jpg")));
            mFolder.Write(name, ID3(3, 0, frame));
        } else {
            const std::string frame = Frame23("APIC", Apic(3, ReadSample("pictures/harbour.png")));
            mFolder.Write(name, ID3(3, 0x80, Unsynchronised(frame)));
        }
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
          mManager(&mCache, new PictureThumbnailGenerator),
          mHome(aHome) {
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
        return file->Read(bytes.data(), bytes.size()) == static_cast<int>(bytes.size()) ? bytes
                                                                                        : "unreadable";
    }

private:
    ezFileCacheManager mCache;
    ezThumbnailProviderManager mManager;
    const Home& mHome;
};

std::string GoodThumbnail(const Item& anItem) {
    const FaultySystem counting;
    const Home home(anItem);
    return Thumbnails(home).Get(anItem.mName, anItem.mMimeType);
}

enum class Cache { Empty, Filled };

/// One request under faults, and the next ones of the same server and of one that starts anew.
template <typename System>
FaultyOperation Get(const Item& anItem, Cache aCache) {
    const std::string good = GoodThumbnail(anItem);
    EXPECT_EQ(good.substr(0, 3), "\xFF\xD8\xFF");
    return [anItem, aCache, good](const std::vector<Fault>& aFaults, bool* afStruck) {
        const AssertCatcher asserts;
        const Home home(anItem);
        const auto nameOf = [&good](const std::string& aBytes) {
            return aBytes == good                                  ? "thumbnail"
                   : aBytes == "nothing" || aBytes == "unreadable" ? aBytes
                                                                   : "a part";
        };
        if (aCache == Cache::Filled) {
            const FaultySystem counting;
            EXPECT_EQ(Thumbnails(home).Get(anItem.mName, anItem.mMimeType), good);
        }
        Thumbnails thumbnails(home);
        std::string text;
        {
            const System system(aFaults);
            text = nameOf(thumbnails.Get(anItem.mName, anItem.mMimeType));
            *afStruck = system.HasStruck();
        }
        const FaultySystem counting;
        text += ", then " + nameOf(thumbnails.Get(anItem.mName, anItem.mMimeType));
        EXPECT_EQ(nameOf(Thumbnails(home).Get(anItem.mName, anItem.mMimeType)), "thumbnail");
        EXPECT_TRUE(asserts.Failures().empty());
        return text;
    };
}

const std::string kThumbnail = "thumbnail, then thumbnail\n";
const std::string kNothing = "nothing, then thumbnail\n";
const std::string kUnreadable = "unreadable, then thumbnail\n"; // opened, but then

/// The folders above the cache are there; the last three calls make it, its own folder, and that by its path
/// with the "/" too. What one call leaves undone, a later one may do.
std::string Mkdirs(bool afForGood) {
    const Home home(kFilm);
    const std::string path = home.Path("cache/ezcache/");
    const auto all = static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
    const std::string last = std::to_string(all) + ": " + kThumbnail;
    const auto calls = [](std::size_t aFirst, std::size_t aLast) {
        return std::to_string(aFirst) + "-" + std::to_string(aLast) + ": ";
    };
    return afForGood ? calls(1, all - 1) + kNothing + last
                     : calls(1, all - 3) + kThumbnail + std::to_string(all - 2) + ": " + kNothing +
                           calls(all - 1, all) + kThumbnail;
}

/// Sweeps one kind of call, with an error, once and for good.
void ExpectSwept(const Item& anItem, SystemCall aCall, int anError, const std::string& anOutcome) {
    FaultManner manner;
    manner.mCall = aCall;
    manner.mError = anError;
    for (const bool fForGood : {false, true}) {
        manner.mfForGood = fForGood;
        EXPECT_EQ(SweepFaults(manner, Get<FaultySystem>(anItem, Cache::Empty)), anOutcome) << anItem.mName;
    }
}

} // namespace

TEST(ThumbnailFaults, PictureBesideTheMediaIsMadeWholeOrNotAndThenTheNextTime) {
    ExpectOutcomes(
        Get<FaultySystem>(kFilm, Cache::Empty),
        {{SystemCall::Open, "1-4: " + kNothing, "1-4: " + kNothing},
         {SystemCall::Close, "1-2: " + kThumbnail, "1-2: " + kThumbnail},
         {SystemCall::Stat, "1: " + kNothing + "2-5: " + kThumbnail,
          "1-2: " + kNothing + "3-5: " + kThumbnail},
         {SystemCall::FStat, "1: " + kThumbnail + "2: " + kNothing + "3: " + kThumbnail,
          "1-2: " + kNothing + "3: " + kThumbnail},
         {SystemCall::LStat, "1: " + kNothing + "2: " + kThumbnail, "1: " + kNothing + "2: " + kThumbnail},
         {SystemCall::PRead, "1: " + kNothing + "2: " + kUnreadable, "1: " + kNothing + "2: " + kUnreadable},
         {SystemCall::PWrite, "1: " + kNothing, "1: " + kNothing},
         {SystemCall::FSync, "1: " + kNothing, "1: " + kNothing},
         {SystemCall::Rename, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::FTruncate, "1-2: " + kNothing, "1-2: " + kNothing},
         {SystemCall::FUTimens, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::FLock, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::OpenDir, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::Memory, "1-5: " + kNothing, "1-5: " + kNothing},
         {SystemCall::Mkdir, Mkdirs(false), Mkdirs(true)}});
}

TEST(ThumbnailFaults, CoverInTheMediaIsMadeWholeOrNotAndThenTheNextTime) {
    // Of the finders of covers the first finds none in this file, and may fail. A read is not tried again.
    ExpectOutcomes(
        Get<FaultySystem>(kSong, Cache::Empty),
        {{SystemCall::Open, "1-3: " + kNothing + "4: " + kThumbnail + "5-6: " + kNothing, "1-6: " + kNothing},
         {SystemCall::Close, "1-4: " + kThumbnail, "1-4: " + kThumbnail},
         {SystemCall::Stat, "1: " + kNothing + "2-5: " + kThumbnail,
          "1-2: " + kNothing + "3-5: " + kThumbnail},
         {SystemCall::FStat, "1-2: " + kThumbnail + "3-4: " + kNothing + "5: " + kThumbnail,
          "1-4: " + kNothing + "5: " + kThumbnail},
         {SystemCall::LStat, "1: " + kNothing + "2: " + kThumbnail, "1: " + kNothing + "2: " + kThumbnail},
         {SystemCall::PRead, "1-3: " + kThumbnail + "4-5: " + kNothing + "6: " + kUnreadable,
          "1-5: " + kNothing + "6: " + kUnreadable},
         {SystemCall::PWrite, "1: " + kNothing, "1: " + kNothing},
         {SystemCall::FSync, "1: " + kNothing, "1: " + kNothing},
         {SystemCall::Rename, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::FTruncate, "1-2: " + kNothing, "1-2: " + kNothing},
         {SystemCall::FUTimens, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::FLock, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::OpenDir, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::Memory, "1-5: " + kNothing, "1-5: " + kNothing},
         {SystemCall::Mkdir, Mkdirs(false), Mkdirs(true)}});
}

TEST(ThumbnailFaults, ThumbnailOfTheCacheComesWholeOrNotAndStays) {
    ExpectOutcomes(Get<FaultySystem>(kFilm, Cache::Filled),
                   {{SystemCall::Open, "1: " + kNothing, "1: " + kNothing},
                    {SystemCall::Close, "1: " + kThumbnail, "1: " + kThumbnail},
                    {SystemCall::FStat, "1: " + kNothing, "1: " + kNothing},
                    {SystemCall::LStat, "1: " + kNothing, "1: " + kNothing},
                    {SystemCall::PRead, "1: " + kUnreadable, "1: " + kUnreadable},
                    {SystemCall::FUTimens, "1: " + kThumbnail, "1: " + kThumbnail}});
}

TEST(ThumbnailFaults, FolderThatCannotBeListedIsNotOneWithoutPictures) {
    // The cache's folder is looked through first. The media's is listed to tell what is possible and again
    // for the build: trouble with the first leaves it to the second.
    ExpectOutcomes(Get<DirectFaults>(kFilm, Cache::Empty),
                   {{SystemCall::Stat,
                     "1: " + kNothing + "2-5: " + kThumbnail + "6-7: " + kNothing + "8-9: " + kThumbnail,
                     "1-7: " + kNothing + "8-9: " + kThumbnail},
                    {SystemCall::OpenDir, "1-2: " + kThumbnail + "3: " + kNothing, "1-3: " + kNothing},
                    {SystemCall::ReadDir, "1-5: " + kThumbnail + "6-10: " + kNothing, "1-10: " + kNothing}});
}

TEST(ThumbnailFaults, MemoryThatIsRefusedGivesNothingAndThenTheThumbnail) {
    ExpectSwept(kPicture, SystemCall::Memory, ENOMEM, "1-14: " + kNothing);
    ExpectSwept(kStuffedSong, SystemCall::Memory, ENOMEM, "1-15: " + kNothing);
}

TEST(ThumbnailFaults, ReadsAndWritesThatComeShortBeforeTheyFailMakeNoPartOfAThumbnail) {
    FaultManner manner;
    manner.mCall = SystemCall::PRead;
    manner.mError = EIO;
    manner.mfForGood = true;
    manner.mMaximum = 2000;
    EXPECT_EQ(SweepFaults(manner, Get<FaultySystem>(kPicture, Cache::Empty)),
              "1: " + kNothing + "2: " + kUnreadable);
    EXPECT_EQ(SweepFaults(manner, Get<FaultySystem>(kFilm, Cache::Empty)),
              "1: " + kNothing + "2: " + kUnreadable);
    manner.mCall = SystemCall::PWrite;
    manner.mError = ENOSPC;
    EXPECT_EQ(SweepFaults(manner, Get<FaultySystem>(kFilm, Cache::Empty)), "1: " + kNothing);
}

TEST(ThumbnailFaults, InterruptionsAndShortReadsAndWritesChangeNothing) {
    for (const Item& item : {kPicture, kFilm, kSong, kStuffedSong}) {
        for (const Cache cache : {Cache::Empty, Cache::Filled}) {
            EXPECT_EQ(RunUndisturbed(Get<FaultySystem>(item, cache)) + "\n", kThumbnail) << item.mName;
            EXPECT_EQ(RunInterrupted(7, Get<FaultySystem>(item, cache)) + "\n", kThumbnail) << item.mName;
        }
    }
}
