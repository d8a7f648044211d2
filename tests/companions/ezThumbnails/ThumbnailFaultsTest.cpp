#include "ezThumbnails/CostlyThumbnailProvider.h"
#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/DefaultThumbnailProvider.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"

#include "CoverKit.h"
#include "PictureKit.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/Samples.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <dlfcn.h>
#include <filesystem>
#include <functional>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <utility>
#include <vector>

#include <jpeglib.h> // after the size_t and FILE that it takes for known

// Every system call of a request for a thumbnail goes wrong once, and for good: while it is built, and when
// it comes from the cache.

namespace {

/// Faults of the calls that the finder of pictures beside a media file makes by itself, as do those of the
/// libraries below it.
struct DirectFaults : FaultySystem {
    explicit DirectFaults(std::vector<Fault> aFaults)
        : FaultySystem(std::move(aFaults), FaultReach::Direct) {}
};

bool FailsDirectly(SystemCall aCall) {
    return FaultySystem::Fails(aCall, FaultReach::Direct);
}

// What the headers of the system make of the names, where files and times are wider than they once were.
#ifdef __USE_FILE_OFFSET64
constexpr const char* kReadDir = "readdir64";
#else
constexpr const char* kReadDir = "readdir";
#endif
#if defined(__USE_TIME_BITS64) && __TIMESIZE == 32
constexpr const char* kStat = "__stat64_time64";
#elif defined(__USE_FILE_OFFSET64)
constexpr const char* kStat = "stat64";
#else
constexpr const char* kStat = "stat";
#endif

/// The memory of libjpeg is refused with the rest while it lives.
class FaultyJpegMemory {
public:
    FaultyJpegMemory() { sfFaulty = true; }
    ~FaultyJpegMemory() { sfFaulty = false; }
    FaultyJpegMemory(const FaultyJpegMemory&) = delete;
    FaultyJpegMemory& operator=(const FaultyJpegMemory&) = delete;

    static void* Get(std::size_t aSize) {
        return sfFaulty && FaultySystem::Fails(SystemCall::Memory) ? nullptr : std::malloc(aSize);
    }

private:
    static bool sfFaulty;
};
bool FaultyJpegMemory::sfFaulty = false;

template <typename Function>
Function RealCall(const char* aName) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, aName));
}

} // namespace

// These stand before those of the C library.

extern "C" DIR* opendir(const char* aPath) {
    static const auto sReal = RealCall<DIR* (*)(const char*)>("opendir");
    return FailsDirectly(SystemCall::OpenDir) ? nullptr : sReal(aPath);
}

extern "C" dirent* readdir(DIR* aFolder) {
    static const auto sReal = RealCall<dirent* (*)(DIR*)>(kReadDir);
    return FailsDirectly(SystemCall::ReadDir) ? nullptr : sReal(aFolder);
}

extern "C" int stat(const char* aPath, struct stat* aStatus) noexcept {
    static const auto sReal = RealCall<int (*)(const char*, struct stat*)>(kStat);
    return FailsDirectly(SystemCall::Stat) ? -1 : sReal(aPath, aStatus);
}

// And these before those of libjpeg, which gives back with free.

extern "C" __attribute__((visibility("default"))) void* jpeg_get_small(j_common_ptr /*anInfo*/,
                                                                       std::size_t aSize) {
    return FaultyJpegMemory::Get(aSize);
}

extern "C" __attribute__((visibility("default"))) void* jpeg_get_large(j_common_ptr /*anInfo*/,
                                                                       std::size_t aSize) {
    return FaultyJpegMemory::Get(aSize);
}

// Memory for pictures is asked for this way.
void* operator new[](std::size_t aSize, const std::nothrow_t& /*aTag*/) noexcept {
    return FaultySystem::Fails(SystemCall::Memory) ? nullptr : ::operator new[](aSize);
}

namespace {

/// A file.
struct Item {
    const char* mName;
    const char* mMimeType;
};
constexpr Item kPicture = {"media/harbour.png", "image/png"};
constexpr Item kFilm = {"media/film.mkv", "video/x-matroska"};
constexpr Item kSong = {"covers/song.mp3", "audio/mpeg"};
constexpr Item kStuffedSong = {"covers/stuffed.mp3", "audio/mpeg"};
constexpr Item kFlac = {"covers/song.flac", "audio/flac"};
constexpr Item kM4a = {"covers/song.m4a", "audio/mp4"};
constexpr Item kOgg = {"covers/song.ogg", "audio/ogg"}; ///< a cover in base64, gathered from many pages
/// Too costly, with a picture beside it: that is what is tried next, or what was tried before.
constexpr Item kCostlyPicture = {"media/chart.png", "image/png"};
constexpr Item kCostlyCover = {"covers/costly.mp3", "audio/mpeg"};
constexpr Item kBareSong = {"covers/bare.mp3", "audio/mpeg"};

/// The bytes of a file that has a cover or a picture.
std::string MediaOf(const Item& anItem) {
    const std::string name = anItem.mName;
    const std::string cover = ReadSample("pictures/harbour.jpg");
    if (name == kPicture.mName) {
        return ReadSample("pictures/harbour.png");
    }
    if (name == kSong.mName) {
        return ID3(3, 0, Frame23("APIC", Apic(3, cover)));
    }
    if (name == kCostlyPicture.mName) {
        return StoredPng(10, 10, false, 100'000);
    }
    if (name == kCostlyCover.mName) {
        return ID3(3, 0, Frame23("APIC", Apic(3, StoredPng(10, 10, false, 100'000))));
    }
    if (name == kStuffedSong.mName) {
        return ID3(3, 0x80, Unsynchronised(Frame23("APIC", Apic(3, ReadSample("pictures/harbour.png")))));
    }
    if (name == kFlac.mName) {
        return Flac(FlacBlock(6, PictureOfFlac(3, cover)));
    }
    if (name == kM4a.mName) {
        return Ftyp() + Moov(DataBox(13, cover));
    }
    if (name == kOgg.mName) {
        return Vorbis({PictureComment(PictureOfFlac(3, cover))}, 255 * 16);
    }
    return "no media";
}

constexpr std::size_t kFewFiles = 4;
constexpr std::size_t kManyFiles = 100;
constexpr std::uint64_t kManyBytes = 10000000;

/// A folder with a file, and room for a cache.
class Home {
public:
    explicit Home(const Item& anItem) {
        mFolder.Write(anItem.mName, MediaOf(anItem));
        for (const auto& [item, beside] : {std::make_pair(kFilm.mName, "media/film.jpg"),
                                           std::make_pair(kCostlyPicture.mName, "media/chart.jpg"),
                                           std::make_pair(kCostlyCover.mName, "covers/costly.jpg")}) {
            if (anItem.mName == item) {
                mFolder.Write(beside, ReadSample("pictures/harbour.jpg"));
            }
        }
    }

    /// Files in the cache: as many as it may hold, and what somebody left who was killed.
    void FillCache() const {
        for (std::size_t i = 0; i < kFewFiles; ++i) {
            mFolder.Write("cache/ezcache/old" + std::to_string(i), "old");
        }
        mFolder.Write("cache/ezcache/.fill-1-2-3-4", "half a pic");
    }

    /// The files in the cache of which the names begin so.
    std::size_t CountCached(const std::string& aStart) const {
        std::size_t count = 0;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(Path("cache/ezcache"), none)) {
            const std::string name = entry.path().filename().string();
            count += name.substr(0, aStart.size()) == aStart ? 1 : 0;
        }
        return count;
    }

    std::string Path(const std::string& aName) const { return mFolder.Path(aName); }

private:
    TemporaryFolder mFolder;
};

/// The thumbnails of a server, as after its start.
class Thumbnails {
public:
    explicit Thumbnails(const Home& aHome, std::size_t aMaximumFiles = kManyFiles)
        : mCache(aHome.Path("cache").c_str(), kManyBytes, aMaximumFiles),
          mManager(&mCache, mGenerator),
          mHome(aHome) {
        mManager.Add(new ezPictureThumbnailProvider(mManager.GetThumbnailGenerator(), "picture"));
        mManager.Add(new SidecarThumbnailProvider(mManager.GetThumbnailGenerator()));
        mManager.Add(new CoverThumbnailProvider(mManager.GetThumbnailGenerator()));
        mManager.Add(new CostlyThumbnailProvider(mGenerator));
        mManager.SetDefaultProvider(new DefaultThumbnailProvider(mManager.GetThumbnailGenerator()));
    }

    /// @param afUseDefault  the generic picture of the media class where the item has none
    std::string Get(const Item& anItem, bool afUseDefault = false) {
        ThumbnailInfo info;
        info.mUniqueID = anItem.mName;
        info.mFilePath = ezPathName::MakeFilePath(mHome.Path(anItem.mName).c_str());
        info.mMimeType = anItem.mMimeType;
        info.mThumbnailID = kJPEGThumbnailID;
        info.mWidth = info.mHeight = info.mWidthMax = info.mHeightMax = 160;
        info.mPixelRatioHeight = info.mPixelRatioWidth = 1;
        const std::unique_ptr<ezFile> file(mManager.GetThumbnail(&info, afUseDefault));
        if (file == nullptr) {
            return "nothing";
        }
        std::string bytes(static_cast<std::size_t>(std::max<ezFileOffset>(file->LengthAtOpen(), 0)), 'x');
        return file->Read(bytes.data(), bytes.size()) == static_cast<int>(bytes.size()) ? bytes
                                                                                        : "unreadable";
    }

private:
    PictureThumbnailGenerator* mGenerator = new PictureThumbnailGenerator; // the manager's
    ezFileCacheManager mCache;
    ezThumbnailProviderManager mManager;
    const Home& mHome;
};

std::string GoodThumbnail(const Item& anItem, bool afUseDefault) {
    const FaultySystem counting;
    const Home home(anItem);
    return Thumbnails(home).Get(anItem, afUseDefault);
}

enum class Cache { Empty, Filled, Full };

/// What a build began to write is gone, unless it could not be removed, or not be told whether it is our own.
void ExpectNothingHalfWritten(const Home& aHome, const std::vector<Fault>& aFaults) {
    const auto keeps = [](const Fault& aFault) {
        return aFault.mCall == SystemCall::Unlink || aFault.mCall == SystemCall::LStat ||
               aFault.mCall == SystemCall::FStat;
    };
    if (std::none_of(aFaults.begin(), aFaults.end(), keeps)) {
        EXPECT_EQ(aHome.CountCached(".fill-"), 0U);
    }
}

/// The next server that makes a thumbnail finds the cache within its bounds, and clears what was left there.
void ExpectNextBuildClears(const Home& aHome, std::size_t aMaximumFiles) {
    ezFileCacheManager cache(aHome.Path("cache").c_str(), kManyBytes, aMaximumFiles);
    bool fNew = false;
    const std::unique_ptr<ezFile> file(cache.OpenCachedFile("another", &fNew, 0));
    ASSERT_TRUE(file != nullptr && fNew);
    EXPECT_EQ(file->Write("another", 7), 7);
    cache.SetCachedFileState("another", file.get(), true);
    EXPECT_EQ(aHome.CountCached(".fill-"), 0U);
    EXPECT_LE(aHome.CountCached(""), aMaximumFiles);
}

/// One request under faults, and the next ones of the same server and of one that starts anew.
template <typename System>
FaultyOperation Get(const Item& anItem, Cache aCache, bool afUseDefault = false) {
    const std::string good = GoodThumbnail(anItem, afUseDefault);
    EXPECT_EQ(good.substr(0, 3), "\xFF\xD8\xFF");
    // Of an item of the same class that has nothing.
    const std::string generic = GoodThumbnail({"media/bare", anItem.mMimeType}, true);
    return [anItem, aCache, afUseDefault, good, generic](const std::vector<Fault>& aFaults, bool* afStruck) {
        const AssertCatcher asserts;
        const Home home(anItem);
        const std::size_t maximum = aCache == Cache::Full ? kFewFiles : kManyFiles;
        const auto nameOf = [&](const std::string& aBytes) {
            return aBytes == good                                  ? "thumbnail"
                   : afUseDefault && aBytes == generic             ? "generic"
                   : aBytes == "nothing" || aBytes == "unreadable" ? aBytes
                                                                   : "another";
        };
        if (aCache == Cache::Filled) {
            const FaultySystem counting;
            EXPECT_EQ(Thumbnails(home).Get(anItem, afUseDefault), good);
        } else if (aCache == Cache::Full) {
            home.FillCache();
        }
        Thumbnails thumbnails(home, maximum);
        std::string text;
        {
            const System system(aFaults);
            text = nameOf(thumbnails.Get(anItem, afUseDefault));
            *afStruck = system.HasStruck();
        }
        const FaultySystem counting;
        if (aCache != Cache::Full) {
            ExpectNothingHalfWritten(home, aFaults);
        }
        text += ", then " + nameOf(thumbnails.Get(anItem, afUseDefault));
        EXPECT_EQ(nameOf(Thumbnails(home, maximum).Get(anItem, afUseDefault)), "thumbnail");
        ExpectNextBuildClears(home, maximum);
        EXPECT_TRUE(asserts.Failures().empty());
        return text;
    };
}

const std::string kThumbnail = "thumbnail, then thumbnail\n";
const std::string kNothing = "nothing, then thumbnail\n";
const std::string kGeneric = "generic, then thumbnail\n";       // where it is asked for
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

/// Sweeps one kind of call, once and for good: all of them come to the same. The number of calls.
std::size_t ExpectSwept(const Item& anItem, SystemCall aCall, const std::string& anOutcome) {
    std::size_t calls = 0;
    FaultManner manner = MannerOf(aCall);
    for (const bool fForGood : {false, true}) {
        manner.mfForGood = fForGood;
        const std::string outcomes = SweepFaults(manner, Get<FaultySystem>(anItem, Cache::Empty));
        const std::size_t outcome = outcomes.find(": ") + 2;
        EXPECT_EQ(outcomes.substr(0, 2), "1-") << outcomes;
        EXPECT_EQ(outcomes.substr(outcome), anOutcome) << anItem.mName;
        calls = std::stoul(outcomes.substr(2));
    }
    return calls;
}

/// Sweeps every kind of call: the whole thumbnail comes or nothing, and the next time the whole one.
void ExpectWholeOrNothing(const Item& anItem, Cache aCache, bool afUseDefault = false) {
    const FaultyOperation get = Get<FaultySystem>(anItem, aCache, afUseDefault);
    EXPECT_EQ(RunUndisturbed(get) + "\n", kThumbnail) << anItem.mName;
    EXPECT_EQ(RunInterrupted(7, get) + "\n", kThumbnail) << anItem.mName;
    for (std::size_t call = 0; call < kSystemCallCount; ++call) {
        FaultManner manner = MannerOf(static_cast<SystemCall>(call));
        for (const bool fForGood : {false, true}) {
            manner.mfForGood = fForGood;
            std::istringstream outcomes(SweepFaults(manner, get));
            for (std::string line; std::getline(outcomes, line);) {
                const std::string outcome = line.substr(line.find(": ") + 2) + "\n";
                EXPECT_TRUE(outcome == kThumbnail || outcome == kNothing || outcome == kUnreadable ||
                            outcome == kGeneric)
                    << anItem.mName << " " << NameOf(manner.mCall) << (fForGood ? " for good " : " once ")
                    << line;
            }
        }
    }
}

} // namespace

TEST(ThumbnailFaults, PictureBesideTheMediaIsMadeWholeOrNotAndThenTheNextTime) {
    // The last that is opened is the cache's folder: without it the thumbnail is not kept.
    ExpectOutcomes(
        Get<FaultySystem>(kFilm, Cache::Empty),
        {{SystemCall::Open, "1-5: " + kNothing + "6: " + kThumbnail, "1-5: " + kNothing + "6: " + kThumbnail},
         {SystemCall::Close, "1-4: " + kThumbnail, "1-4: " + kThumbnail},
         {SystemCall::Stat, "1: " + kNothing + "2-3: " + kThumbnail, "1: " + kNothing + "2-3: " + kThumbnail},
         {SystemCall::FStat, "1: " + kThumbnail + "2: " + kNothing + "3: " + kThumbnail,
          "1-2: " + kNothing + "3: " + kThumbnail},
         {SystemCall::LStat, "1: " + kNothing + "2-4: " + kThumbnail,
          "1-2: " + kNothing + "3-4: " + kThumbnail},
         {SystemCall::PRead, "1: " + kNothing + "2: " + kUnreadable, "1: " + kNothing + "2: " + kUnreadable},
         {SystemCall::PWrite, "1: " + kNothing, "1: " + kNothing},
         {SystemCall::FSync, "1: " + kNothing, "1: " + kNothing},
         {SystemCall::Rename, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::FTruncate, "1-2: " + kNothing, "1-2: " + kNothing},
         {SystemCall::FUTimens, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::FLock, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::OpenDir, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::ReadDir, "1-3: " + kThumbnail, "1-3: " + kThumbnail},
         {SystemCall::CloseDir, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::Memory, "1-6: " + kNothing, "1-6: " + kNothing},
         {SystemCall::Mkdir, Mkdirs(false), Mkdirs(true)}});
}

TEST(ThumbnailFaults, CoverInTheMediaIsMadeWholeOrNotAndThenTheNextTime) {
    // Of the finders of covers the first finds none in this file, and may fail. A read is not tried again.
    ExpectOutcomes(
        Get<FaultySystem>(kSong, Cache::Empty),
        {{SystemCall::Open, "1-4: " + kNothing + "5: " + kThumbnail + "6-7: " + kNothing + "8: " + kThumbnail,
          "1-7: " + kNothing + "8: " + kThumbnail},
         {SystemCall::Close, "1-6: " + kThumbnail, "1-6: " + kThumbnail},
         {SystemCall::Stat, "1: " + kNothing + "2-3: " + kThumbnail, "1: " + kNothing + "2-3: " + kThumbnail},
         {SystemCall::FStat, "1-2: " + kThumbnail + "3-4: " + kNothing + "5: " + kThumbnail,
          "1-4: " + kNothing + "5: " + kThumbnail},
         {SystemCall::LStat, "1: " + kNothing + "2-4: " + kThumbnail,
          "1-2: " + kNothing + "3-4: " + kThumbnail},
         {SystemCall::PRead, "1-3: " + kThumbnail + "4-5: " + kNothing + "6: " + kUnreadable,
          "1-5: " + kNothing + "6: " + kUnreadable},
         {SystemCall::PWrite, "1: " + kNothing, "1: " + kNothing},
         {SystemCall::FSync, "1: " + kNothing, "1: " + kNothing},
         {SystemCall::Rename, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::FTruncate, "1-2: " + kNothing, "1-2: " + kNothing},
         {SystemCall::FUTimens, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::FLock, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::OpenDir, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::ReadDir, "1-3: " + kThumbnail, "1-3: " + kThumbnail},
         {SystemCall::CloseDir, "1: " + kThumbnail, "1: " + kThumbnail},
         {SystemCall::Memory, "1-6: " + kNothing, "1-6: " + kNothing},
         {SystemCall::Mkdir, Mkdirs(false), Mkdirs(true)}});
}

// Only the cost of a picture is remembered, never a trouble of the system with another one.
TEST(ThumbnailFaults, TroubleWithTheOtherPictureOfACostlyOneIsNotTakenForCost) {
    for (const Item& item : {kCostlyPicture, kCostlyCover}) {
        ExpectWholeOrNothing(item, Cache::Empty);
        const FaultyOperation get = Get<DirectFaults>(item, Cache::Empty);
        for (const SystemCall call : {SystemCall::Stat, SystemCall::OpenDir, SystemCall::ReadDir}) {
            for (const bool fForGood : {false, true}) {
                FaultManner manner = MannerOf(call);
                manner.mfForGood = fForGood;
                std::istringstream outcomes(SweepFaults(manner, get));
                for (std::string line; std::getline(outcomes, line);) {
                    const std::string outcome = line.substr(line.find(": ") + 2) + "\n";
                    EXPECT_TRUE(outcome == kThumbnail || outcome == kNothing)
                        << item.mName << " " << NameOf(call) << " " << line;
                }
            }
        }
    }
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
    // The cache's folder is read through first. The media's is listed to tell what is possible and again
    // for the build: trouble with the first leaves it to the second.
    ExpectOutcomes(
        Get<DirectFaults>(kFilm, Cache::Empty),
        {{SystemCall::Stat, "1: " + kNothing + "2-4: " + kThumbnail + "5-6: " + kNothing + "7: " + kThumbnail,
          "1-6: " + kNothing + "7: " + kThumbnail},
         {SystemCall::OpenDir, "1: " + kThumbnail + "2: " + kNothing, "1-2: " + kNothing},
         {SystemCall::ReadDir, "1-8: " + kThumbnail + "9-13: " + kNothing, "1-13: " + kNothing}});
}

TEST(ThumbnailFaults, FolderWhoseOpeningIsInterruptedIsListedAllTheSame) {
    FaultManner manner;
    manner.mCall = SystemCall::OpenDir;
    manner.mError = EINTR;
    EXPECT_EQ(SweepFaults(manner, Get<DirectFaults>(kFilm, Cache::Empty)), "1-2: " + kThumbnail);
}

TEST(ThumbnailFaults, MemoryThatIsRefusedGivesNothingAndThenTheThumbnail) {
    EXPECT_EQ(ExpectSwept(kPicture, SystemCall::Memory, kNothing), 15U);
    EXPECT_EQ(ExpectSwept(kStuffedSong, SystemCall::Memory, kNothing), 16U);
}

TEST(ThumbnailFaults, MemoryThatTheCodecIsRefusedGivesNothingAndThenTheThumbnail) {
    const FaultyJpegMemory jpeg;
    for (const Item& item : {kFilm, kPicture}) {
        FaultManner manner = MannerOf(SystemCall::Memory);
        const FaultyOperation get = Get<FaultySystem>(item, Cache::Empty);
        std::istringstream once(SweepFaults(manner, get));
        for (std::string line; std::getline(once, line);) {
            // Of a small block libjpeg asks for less the next time.
            const std::string outcome = line.substr(line.find(": ") + 2) + "\n";
            EXPECT_TRUE(outcome == kThumbnail || outcome == kNothing) << item.mName << " " << line;
        }
        manner.mfForGood = true;
        const std::string forGood = SweepFaults(manner, get);
        EXPECT_EQ(forGood.substr(forGood.find(": ") + 2), kNothing) << item.mName << " " << forGood;
        // It reads the one and writes both, and the library's own calls are among those that failed.
        const std::size_t ours = item.mName == kFilm.mName ? 5 : 14;
        EXPECT_GE(std::stoul(forGood.substr(2)), ours + 5);
    }
}

TEST(ThumbnailFaults, CoversOfAllKindsOfMediaAreMadeWholeOrNotAndThenTheNextTime) {
    for (const Item& item : {kFlac, kM4a, kOgg}) {
        ExpectWholeOrNothing(item, Cache::Empty);
        FaultManner manner = MannerOf(SystemCall::PRead);
        manner.mMaximum = 100;
        manner.mfForGood = true;
        std::istringstream outcomes(SweepFaults(manner, Get<FaultySystem>(item, Cache::Empty)));
        for (std::string line; std::getline(outcomes, line);) {
            EXPECT_NE(line.find(", then thumbnail"), std::string::npos) << item.mName << " " << line;
            EXPECT_EQ(line.find("another"), std::string::npos) << item.mName << " " << line;
        }
    }
}

// The generic picture serves an item whose own cannot be had now, and is not kept for it.
TEST(ThumbnailFaults, GenericPictureIsMadeWholeAndNeverStandsForAnItemThatHasOneOfItsOwn) {
    ExpectWholeOrNothing(kBareSong, Cache::Empty, true);
    ExpectWholeOrNothing(kSong, Cache::Empty, true);
    ExpectWholeOrNothing(kFilm, Cache::Empty, true);
}

TEST(ThumbnailFaults, ASheetsLookAtAFolderListsItOnceHoweverManyMediaItHas) {
    for (const std::size_t count : {10U, 100U, 1000U}) {
        const TemporaryFolder folder;
        for (std::size_t i = 0; i < count; ++i) {
            folder.Write(std::to_string(i) + ".jpg", "picture");
        }
        const FaultySystem system({}, FaultReach::Direct);
        ThumbnailTrace trace;
        ScriptedGenerator generator{trace};
        SidecarThumbnailProvider provider(&generator);
        SidecarListing listing;
        provider.SetListing(&listing);
        ThumbnailInfo info;
        for (std::size_t i = 0; i < count; ++i) {
            info.mFilePath = ezPathName::MakeFilePath(Bytes(folder.Path(std::to_string(i) + ".mkv")));
            EXPECT_EQ(listing.CandidatePaths(&info).size(), 1U);
            provider.GetFirstPath(&info);
            EXPECT_TRUE(provider.SourceToTry());
        }
        EXPECT_EQ(system.Count(SystemCall::OpenDir), 1U) << count;
        EXPECT_EQ(system.Count(SystemCall::ReadDir), count + 3) << "its entries, both dots, and the end";
    }
}

TEST(ThumbnailFaults, AFolderThatCannotBeListedIsListedForTheNextMedia) {
    const TemporaryFolder folder;
    folder.Write("film.jpg", "picture");
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(Bytes(folder.Path("film.mkv")));
    for (const SystemCall call : {SystemCall::OpenDir, SystemCall::ReadDir}) {
        Fault fault;
        fault.mCall = call;
        fault.mError = call == SystemCall::OpenDir ? EMFILE : EIO;
        const FaultySystem system({fault}, FaultReach::Direct);
        SidecarListing listing;
        bool fFailed = false;
        EXPECT_TRUE(listing.CandidatePaths(&info, &fFailed).empty());
        EXPECT_TRUE(fFailed);
        EXPECT_EQ(listing.CandidatePaths(&info, &fFailed).size(), 1U);
        EXPECT_FALSE(fFailed);
    }
}

TEST(ThumbnailFaults, FullCacheTakesTheThumbnailAndTheNextServerKeepsItsBounds) {
    ExpectWholeOrNothing(kFilm, Cache::Full);
    // It was looked through and cleared for this request, and room was made.
    for (const SystemCall call : {SystemCall::ReadDir, SystemCall::CloseDir, SystemCall::Unlink}) {
        FaultManner manner = MannerOf(call);
        manner.mfForGood = true;
        const std::string outcomes = SweepFaults(manner, Get<FaultySystem>(kFilm, Cache::Full));
        EXPECT_EQ(outcomes.substr(outcomes.find(": ") + 2), kThumbnail) << NameOf(call) << " " << outcomes;
    }
}

TEST(ThumbnailFaults, WhatCannotBeRemovedIsNeverTakenForAThumbnail) {
    Fault kept;
    kept.mCall = SystemCall::Unlink;
    kept.mTimes = Fault::kForGood;
    kept.mError = EACCES;
    for (const Cache cache : {Cache::Empty, Cache::Full}) {
        const FaultyOperation get = Under(kept, Get<FaultySystem>(kFilm, cache));
        EXPECT_EQ(RunUndisturbed(get) + "\n", kThumbnail);
        FaultManner manner = MannerOf(SystemCall::PWrite);
        EXPECT_EQ(SweepFaults(manner, get), "1: " + kNothing);
        manner.mMaximum = 2000;
        EXPECT_EQ(SweepFaults(manner, get), "1: " + kNothing);
        EXPECT_EQ(SweepFaults(MannerOf(SystemCall::FSync), get), "1: " + kNothing);
        // Handed out, and not kept.
        EXPECT_EQ(SweepFaults(MannerOf(SystemCall::Rename), get), "1: " + kThumbnail);
    }
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
        for (const Cache cache : {Cache::Empty, Cache::Filled, Cache::Full}) {
            EXPECT_EQ(RunUndisturbed(Get<FaultySystem>(item, cache)) + "\n", kThumbnail) << item.mName;
            EXPECT_EQ(RunInterrupted(7, Get<FaultySystem>(item, cache)) + "\n", kThumbnail) << item.mName;
        }
    }
}
