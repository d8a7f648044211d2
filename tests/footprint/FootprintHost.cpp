// footprint-host CONFIG_FOLDER SCRATCH_FOLDER FILE PLAYLIST: what starting and the requests of a host take.
// The table in CONFIG_FOLDER names the extension "mp3", which FILE has, and MediaMapper.txt there is an
// operator's table. PLAYLIST has a location a line, two at the least. SCRATCH_FOLDER may be written to.
#include "Heap.h"
#include "OwnParts.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/Environment.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "ezPlatform/media/MediaInfo.h"
#include "ezPlatform/streams/FileStream.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <pthread.h>
#include <sys/mman.h>

namespace {

constexpr std::size_t kStackSize = std::size_t{512} * 1024;
constexpr std::size_t kFrameSize = 256; ///< what TouchedStackOf itself may take at most
constexpr unsigned char kPaint = 0xA5;

void Require(bool afHolds, const char* aText) {
    if (!afHolds) {
        std::fprintf(stderr, "footprint-host: not so: %s\n", aText);
        std::exit(1);
    }
}

unsigned char* gStack = nullptr; ///< kStackSize bytes, the stack of the thread that measures

/// Bytes of the stack below this function that a piece of work writes to, whatever writes them: the rest of
/// the stack is painted before, by no function that would need a piece of it.
template <typename Work>
__attribute__((noinline)) std::size_t TouchedStackOf(Work& aWork) {
    auto* const here = static_cast<unsigned char*>(__builtin_frame_address(0));
    for (volatile unsigned char* paint = gStack; paint < here - kFrameSize; ++paint) {
        *paint = kPaint;
    }
    aWork();
    const unsigned char* deepest = gStack;
    while (deepest < here && *deepest == kPaint) {
        ++deepest;
    }
    Require(deepest != gStack, "the stack was deep enough");
    return static_cast<std::size_t>(here - deepest);
}

struct Cost {
    std::size_t mStack = 0; ///< bytes
    std::size_t mPeak = 0;  ///< bytes of the heap at once, above what was in use before
    std::size_t mTaken = 0; ///< allocations
    std::size_t mKept = 0;  ///< bytes of the heap that stay in use
};

template <typename Work>
Cost CostOf(Work aWork) {
    Cost cost;
    Heap before = {};
    Heap after = {};
    auto counted = [&] {
        Heap_BeginPeak();
        before = Heap_Now();
        aWork();
        after = Heap_Now();
    };
    cost.mStack = TouchedStackOf(counted);
    cost.mPeak = after.mPeak - before.mBytes;
    cost.mTaken = after.mTaken - before.mTaken;
    cost.mKept = after.mBytes - before.mBytes;
    return cost;
}

/// The first run of a request binds functions and lets lists grow to their size; from the second on nothing
/// may stay.
template <typename Work>
void PrintRequest(const char* aName, Work aWork) {
    const Cost first = CostOf(aWork);
    const Cost second = CostOf(aWork);
    std::printf("%s.stack %zu\n", aName, std::max(first.mStack, second.mStack));
    std::printf("%s.heap %zu\n", aName, std::max(first.mPeak, second.mPeak));
    std::printf("%s.allocations %zu\n", aName, std::max(first.mTaken, second.mTaken));
    std::printf("%s.kept %zu\n", aName, second.mKept);
}

void PrintStart(const char* aName, const Cost& aCost) {
    std::printf("%s.stack %zu\n", aName, aCost.mStack);
    std::printf("%s.heap %zu\n", aName, aCost.mKept);
    std::printf("%s.peak %zu\n", aName, aCost.mPeak);
}

/// The folders and files that are measured with.
struct Places {
    const char* mConfig;
    const char* mScratch;
    const char* mMedia;
    const char* mPlaylist;
};

std::unique_ptr<DLNAMediaMapper> LoadMapper(ezMimeTypesDotIniParser* aTypes, const Places& aPlaces) {
    auto mapper =
        std::make_unique<DLNAMediaMapper>(aTypes, aPlaces.mConfig, aPlaces.mScratch, "", "MediaMapper.txt");
    Require(mapper->Load().GetCode() == 0, "the operator's table is loaded");
    return mapper;
}

/// A save can follow a load once, so every run has a table of its own that was loaded before. The first start
/// has copied the table, so these are loaded as by every start that follows it.
void MeasureLaterStartAndSaving(ezMimeTypesDotIniParser* aTypes, const Places& aPlaces) {
    std::unique_ptr<DLNAMediaMapper> mappers[2];
    PrintStart("later", CostOf([&] { mappers[0] = LoadMapper(aTypes, aPlaces); }));
    mappers[1] = LoadMapper(aTypes, aPlaces);
    std::size_t next = 0;
    PrintRequest("save",
                 [&] { Require(mappers[next++]->Save().GetCode() == 0, "the operator's table is saved"); });
}

void MeasureParsing(const Places& aPlaces) {
    std::unique_ptr<ezEnvironment> environment;
    std::unique_ptr<ezMediaParserManager> manager;
    PrintStart("start", CostOf([&] {
                   environment = std::make_unique<ezEnvironment>(aPlaces.mConfig);
                   manager = std::make_unique<ezMediaParserManager>(environment->Get());
                   manager->AddStandardParsers(kParseOption_Default);
               }));

    PrintRequest("extension", [&] {
        ezFileMediaParserStream stream{ezCString(aPlaces.mMedia)};
        const std::unique_ptr<ezMediaInfo> info(manager->Parse(stream));
        Require(info != nullptr, "the extension tells the media");
    });

    manager->Add(new MP3Parser);
    const auto parse = [&] {
        ezFileMediaParserStream stream{ezCString(aPlaces.mMedia)};
        Require(stream.Open(), "the media can be opened");
        const std::unique_ptr<ezMediaInfo> info(manager->Parse(stream));
        Require(info != nullptr && info->GetUInt32(kezInfo_AudioSamplingRate, 0) == 44100,
                "the parser tells the media");
    };
    PrintRequest("parser", parse);

    std::unique_ptr<DLNAMediaMapper> mapper;
    PrintStart("mapper", CostOf([&] {
                   mapper = LoadMapper(manager->GetMimeTypesDotIniParser(), aPlaces);
                   manager->AddDLNAMediaMapperParser(mapper.get());
               }));
    PrintRequest("mapped", parse);

    PrintRequest("declared", [&] { Require(!manager->GetDLNAInfo().IsEmpty(), "something is declared"); });

    MeasureLaterStartAndSaving(manager->GetMimeTypesDotIniParser(), aPlaces);

    manager.reset();
    mapper.reset();
}

/// The stream says where the playlist lies: a path from the root on, as hosts have them, that is the same for
/// every tree.
void MeasurePlaylist(const Places& aPlaces) {
    PrintRequest("entry", [&] {
        auto file = std::make_unique<ezFile>(aPlaces.mPlaylist, ezFileOpenMode_Read);
        Require(file->Open(), "the playlist can be opened");
        const ezStreamOwner stream(
            ezFileGetStream(file.release(), "audio/x-mpegurl", "/media/lists/sunday.m3u"));
        LocationsParser reader(*stream);
        PlaylistParserEntry entry;
        Require(reader.FetchEntryAtIndex(1, &entry), "the playlist has a second entry");
        PlaylistParser::FixEntry(&entry);
        Require(!reader.GetFullURLFor(entry.mURI).IsEmpty() && !entry.mTitle.IsEmpty(),
                "the entry has a URL and a title");
    });
}

void MeasureThumbnail(const Places& aPlaces) {
    ezFileCacheManager cache(aPlaces.mScratch, 1000000, 100);
    ezThumbnailProviderManager manager(&cache, nullptr);
    auto* provider = new OnePictureProvider;
    manager.Add(provider);
    ThumbnailInfo wanted[2];
    wanted[0].mUniqueID = "0123456789abcdef";
    wanted[1].mUniqueID = "fedcba9876543210";
    for (ThumbnailInfo& info : wanted) {
        info.mThumbnailID = kJPEGThumbnailID;
        info.mMimeType = "image/jpeg";
        info.mWidthMax = 160;
        info.mHeightMax = 160;
    }
    const auto serve = [&](const ThumbnailInfo& anInfo) {
        const std::unique_ptr<ezFile> file(manager.GetThumbnail(&anInfo, false));
        char start[2] = {};
        Require(file != nullptr && file->Read(start, sizeof start) == 2 && start[0] == '\xFF',
                "there is a thumbnail");
    };
    std::size_t next = 0;
    PrintRequest("built", [&] { serve(wanted[next++]); });
    PrintRequest("thumbnail", [&] { serve(wanted[0]); });
    Require(provider->mBuilt == 2, "each thumbnail was built once, and then came from the cache");
}

/// Packets of the size that a program stream has, which the frames do not care for.
void MeasurePackets() {
    constexpr std::size_t kPacket = 2048;
    static unsigned char stream[2 * kPacket];
    for (std::size_t i = 0; i + 2 <= sizeof stream; i += FramesParser::kHeader + FramesParser::kRest) {
        stream[i] = 'E';
        stream[i + 1] = 'Z';
    }
    FramesParser parser;
    parser.Open();
    std::size_t sent = 0;
    PrintRequest("packet", [&] {
        parser.AddPacket(stream + sent, kPacket, false);
        sent += kPacket;
    });
    Require(parser.mFrames == 5 && parser.GetParserStatus() == ezElementaryStreamParser::MSS_IN_PROGRESS,
            "the frames of both packets were gathered");
    delete parser.Close();
}

/// The thread that measures.
void* Measure(void* anArgs) {
    char** const args = static_cast<char**>(anArgs);
    const Places places = {args[1], args[2], args[3], args[4]};
    MeasureParsing(places);
    MeasurePlaylist(places);
    MeasureThumbnail(places);
    MeasurePackets();
    return nullptr;
}

} // namespace

int main(int anArgCount, char** anArgs) {
    Require(anArgCount == 5, "the arguments are CONFIG_FOLDER SCRATCH_FOLDER FILE PLAYLIST");
    void* stack = mmap(nullptr, kStackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    Require(stack != MAP_FAILED, "there is memory for a stack");
    gStack = static_cast<unsigned char*>(stack);
    pthread_attr_t attributes;
    pthread_t thread;
    Require(
        pthread_attr_init(&attributes) == 0 && pthread_attr_setstack(&attributes, gStack, kStackSize) == 0 &&
            pthread_create(&thread, &attributes, Measure, anArgs) == 0 && pthread_join(thread, nullptr) == 0,
        "a thread runs on it");
    pthread_attr_destroy(&attributes);
    return 0;
}
