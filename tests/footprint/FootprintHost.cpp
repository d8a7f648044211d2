// footprint-host CONFIG_FOLDER SCRATCH_FOLDER FILE: what starting and the requests of a host take. The table
// in CONFIG_FOLDER names the extension "mp3", which FILE has, and MediaMapper.txt there is an operator's
// table. SCRATCH_FOLDER may be written to.
#include "Heap.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ezPlatform/config/PropertyList.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

/// A host's parser as format parsers are: a block from the start, 128 bytes from the end.
class MP3Parser : public ezMediaParser {
public:
    MP3Parser() : ezMediaParser("mp3", nullptr, false) {}

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override {
        return ParseFromStream(aStream, kezMediaParser_DefaultBeginBufferSize, 128);
    }
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override {
        anInfo->Set(kezInfo_DLNA, "DLNA.ORG_PN=MP3;DLNA.ORG_OP=01", true);
        return true;
    }
    ezCString GetDLNAInfo() override { return "audio/mpeg:DLNA.ORG_PN=MP3"; }

protected:
    ezMediaInfo* Read(uint8* aBegin, std::size_t aBeginSize, uint8* /*anEnd*/, std::size_t anEndSize,
                      const ezuint64& /*aMediaSize*/) override {
        if (aBeginSize < 3 || anEndSize != 128 || std::memcmp(aBegin, "ID3", 3) != 0) {
            return nullptr;
        }
        auto* info = new ezMediaInfo;
        info->Set(kezInfo_AudioTrackCount, 1, true);
        info->Set(kezInfo_AudioChannelCount, 2, true);
        info->Set(kezInfo_AudioSamplingRate, 44100, true);
        info->Set(kezInfo_AudioBitRate, 128000, true);
        info->mTitle = "A title of the usual length";
        info->mCreator = "A performer of the usual length";
        return info;
    }
};

/// The thread that measures.
void* Measure(void* anArgs) {
    char** const args = static_cast<char**>(anArgs);
    const char* config = args[1];
    const char* scratch = args[2];
    const char* file = args[3];

    ezPropertyList* environment = nullptr;
    std::unique_ptr<ezMediaParserManager> manager;
    PrintStart("start", CostOf([&] {
                   environment = ezPropertyList_New();
                   ezPropertyList_Set_charPtr(environment, "ReadOnlyConfigPath", config);
                   manager = std::make_unique<ezMediaParserManager>(environment);
                   manager->AddStandardParsers(kParseOption_Default);
               }));

    PrintRequest("extension", [&] {
        ezFileMediaParserStream stream{ezCString(file)};
        const std::unique_ptr<ezMediaInfo> info(manager->Parse(stream));
        Require(info != nullptr, "the extension tells the media");
    });

    manager->Add(new MP3Parser);
    const auto parse = [&] {
        ezFileMediaParserStream stream{ezCString(file)};
        Require(stream.Open(), "the media can be opened");
        const std::unique_ptr<ezMediaInfo> info(manager->Parse(stream));
        Require(info != nullptr && info->GetUInt32(kezInfo_AudioSamplingRate, 0) == 44100,
                "the parser tells the media");
    };
    PrintRequest("parser", parse);

    std::unique_ptr<DLNAMediaMapper> mapper;
    PrintStart("mapper", CostOf([&] {
                   mapper = std::make_unique<DLNAMediaMapper>(manager->GetMimeTypesDotIniParser(), config,
                                                              scratch, "", "MediaMapper.txt");
                   Require(mapper->Load().GetCode() == 0, "the operator's table is loaded");
                   manager->AddDLNAMediaMapperParser(mapper.get());
               }));
    PrintRequest("mapped", parse);

    PrintRequest("declared", [&] { Require(!manager->GetDLNAInfo().IsEmpty(), "something is declared"); });

    manager.reset();
    mapper.reset();
    ezPropertyList_Delete(environment);
    return nullptr;
}

} // namespace

int main(int anArgCount, char** anArgs) {
    Require(anArgCount == 4, "the arguments are CONFIG_FOLDER SCRATCH_FOLDER FILE");
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
