#include "bench/Allocations.h"
#include "bench/Benches.h"
#include "bench/Measure.h"
#include "bench/ProbingParser.h"

#include "ez/ElementaryStreamParser.h"
#include "ez/FileMediaParserStream.h"
#include "ez/StreamMediaParserStream.h"
#include "ezFormats/EltStreamCandidates.h"
#include "ezFormats/elementary/AC3EltStreamParser.h"
#include "ezFormats/elementary/ADTSEltStreamParser.h"
#include "ezFormats/elementary/EAC3EltStreamParser.h"
#include "ezFormats/elementary/H264EltStreamParser.h"
#include "ezFormats/elementary/H265EltStreamParser.h"
#include "ezFormats/elementary/MPEGAudioEltStreamParser.h"
#include "ezFormats/elementary/MPEGVideoEltStreamParser.h"
#include "ezPlatform/base/Memory.h"
#include "ezPlatform/streams/MemoryStream.h"
#include "support/TemporaryFolder.h"

#include <benchmark/benchmark.h>

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr uint32 kPacketSize = 1316; ///< seven transport packets, as networks carry them
constexpr uint32 kUnlimited = 0xFFFFFFFF;

/// Bytes in which none of the formats finds itself.
std::string NoiseBytes(std::size_t aSize) {
    std::mt19937 engine(20);
    std::string bytes(aSize, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(engine());
    }
    return bytes;
}

// Gathering

constexpr uint32 kRequestSize = 64 * 1024;
constexpr std::size_t kGatherPackets = 800; ///< 1 MiB, gathered again and again
constexpr std::size_t kGatherPasses = 20;

/// Gathers requests of one size.
class GatheringParser : public ezElementaryStreamParser {
public:
    explicit GatheringParser(uint32 aRequestSize)
        : ezElementaryStreamParser("Gathering", kUnlimited, nullptr, nullptr), mSize(aRequestSize) {}

    parsing_status_t StartParsing(bool /*afFromError*/) override {
        RequestRead(mSize);
        return MSS_IN_PROGRESS;
    }
    parsing_status_t ContinueParsing(const unsigned char* aBuffer, uint32 aSize) override {
        benchmark::DoNotOptimize(aBuffer);
        mGathered += aSize;
        RequestRead(mSize);
        return MSS_IN_PROGRESS;
    }

    std::size_t mGathered = 0;

private:
    uint32 mSize;
};

/// Pushes the packets of a buffer.
void Push(ezElementaryStreamParser& aParser, const std::string& aBytes) {
    for (std::size_t position = 0; position < aBytes.size(); position += kPacketSize) {
        const std::size_t size = std::min<std::size_t>(kPacketSize, aBytes.size() - position);
        aParser.AddPacket(aBytes.data() + position, static_cast<uint32>(size), false);
    }
}

double GatherCost(const std::string& aBytes) {
    GatheringParser parser(kRequestSize);
    parser.Open();
    const double cost = TimeOf([&] {
        for (std::size_t i = 0; i < kGatherPasses; ++i) {
            Push(parser, aBytes);
        }
    });
    const std::size_t pushed = kGatherPasses * aBytes.size();
    Require(parser.mGathered == pushed - pushed % kRequestSize, "every full request is satisfied");
    return cost / static_cast<double>(kGatherPasses * kGatherPackets);
}

/// The same bytes copied in the same cuts: at the end of a packet, and of a request.
double CopyCost(const std::string& aBytes) {
    const std::unique_ptr<unsigned char[]> block(new unsigned char[kRequestSize]);
    std::size_t gathered = 0;
    const double cost = TimeOf([&] {
        for (std::size_t i = 0; i < kGatherPasses; ++i) {
            for (std::size_t position = 0; position < aBytes.size(); position += kPacketSize) {
                for (std::size_t left = kPacketSize; left > 0;) {
                    const std::size_t size = std::min(left, kRequestSize - gathered);
                    std::memcpy(block.get() + gathered, aBytes.data() + position + kPacketSize - left, size);
                    benchmark::DoNotOptimize(block.get());
                    benchmark::ClobberMemory();
                    gathered = (gathered + size) % kRequestSize;
                    left -= size;
                }
            }
        }
    });
    return cost / static_cast<double>(kGatherPasses * kGatherPackets);
}

std::vector<Side> GatherSides() {
    const auto bytes = std::make_shared<std::string>(NoiseBytes(kGatherPackets * kPacketSize));
    return {{"gathering", [bytes] { return GatherCost(*bytes); }},
            {"memcpy", [bytes] { return CopyCost(*bytes); }}};
}

// Skipping

constexpr std::array<uint32, 3> kSkipSizes = {188, 1316, 65536};
constexpr std::size_t kSkipPackets = 20000;

/// Passes over everything.
class SkippingParser : public ezElementaryStreamParser {
public:
    SkippingParser() : ezElementaryStreamParser("Skipping", kUnlimited, nullptr, nullptr) {}

    parsing_status_t StartParsing(bool /*afFromError*/) override {
        RequestSkip(kUnlimited);
        return MSS_IN_PROGRESS;
    }
    parsing_status_t ContinueParsing(const unsigned char* /*aBuffer*/, uint32 /*aSize*/) override {
        return MSS_COMPLETED;
    }
};

/// Memory that nobody may touch: a byte of it read ends the program.
class UntouchableBytes {
public:
    explicit UntouchableBytes(std::size_t aSize)
        : mSize(aSize), mBytes(mmap(nullptr, aSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
        Require(mBytes != MAP_FAILED, "there is memory to keep from being touched");
    }
    ~UntouchableBytes() { munmap(mBytes, mSize); }
    UntouchableBytes(const UntouchableBytes&) = delete;
    UntouchableBytes& operator=(const UntouchableBytes&) = delete;

    const void* Get() const { return mBytes; }

private:
    std::size_t mSize;
    void* mBytes;
};

/// Nanoseconds a packet.
double SkipCost(const UntouchableBytes& aBytes, uint32 aPacketSize) {
    SkippingParser parser;
    parser.Open();
    const double cost = TimeOf([&] {
        for (std::size_t i = 0; i < kSkipPackets; ++i) {
            parser.AddPacket(aBytes.Get(), aPacketSize, false);
        }
    });
    Require(parser.GetParserStatus() == ezElementaryStreamParser::MSS_IN_PROGRESS, "all was passed over");
    return cost / static_cast<double>(kSkipPackets);
}

std::vector<Side> SkipSides() {
    const auto bytes = std::make_shared<UntouchableBytes>(kSkipSizes.back());
    std::vector<Side> sides;
    sides.reserve(kSkipSizes.size());
    for (const uint32 size : kSkipSizes) {
        sides.push_back({std::to_string(size), [bytes, size] { return SkipCost(*bytes, size); }});
    }
    return sides;
}

void CountSkips() {
    const UntouchableBytes bytes(kSkipSizes.back());
    SkippingParser parser;
    parser.Open();
    const std::size_t before = Allocations_Count();
    for (const uint32 size : kSkipSizes) {
        parser.AddPacket(bytes.Get(), size, false);
    }
    NoteCount("skipping packets of memory that cannot be read, allocations",
              static_cast<double>(Allocations_Count() - before), 0);
}

// The race

constexpr std::size_t kRaceBytes = 1024UL * 1024; ///< below what the formats search
constexpr std::array<uint32, 5> kRaceRequests = {16, 100, 1000, 4096, 65536};

using MakeParser = std::function<std::unique_ptr<ezElementaryStreamParser>()>;

/// Nanoseconds for the whole stream, which none of the candidates takes for its own.
double StreamCost(const MakeParser& aMake, const std::string& aBytes) {
    const std::unique_ptr<ezElementaryStreamParser> parser = aMake();
    parser->Open();
    const double cost = TimeOf([&] { Push(*parser, aBytes); });
    Require(parser->GetParserStatus() == ezElementaryStreamParser::MSS_IN_PROGRESS, "the race is open");
    return cost;
}

template <typename Parser>
MakeParser Maker() {
    return [] { return std::make_unique<Parser>(); };
}

std::vector<MakeParser> FormatMakers() {
    return {Maker<H264EltStreamParser>(),     Maker<H265EltStreamParser>(), Maker<MPEGVideoEltStreamParser>(),
            Maker<AC3EltStreamParser>(),      Maker<EAC3EltStreamParser>(), Maker<ADTSEltStreamParser>(),
            Maker<MPEGAudioEltStreamParser>()};
}

std::unique_ptr<ezElementaryStreamParser> MakeFormatRace() {
    auto race = std::make_unique<ezUndeterminedEltStreamParser>(nullptr, nullptr);
    AddEltStreamCandidates(*race);
    Require(race->GetCandidateList() == "|H264|H265|MPEGVideo|VC1|MPEG4|AC3|EAC3|ADTS|MPEGAudio|",
            "the formats race");
    return race;
}

std::vector<MakeParser> GathererMakers() {
    std::vector<MakeParser> makers;
    makers.reserve(kRaceRequests.size());
    for (const uint32 size : kRaceRequests) {
        makers.emplace_back([size] { return std::make_unique<GatheringParser>(size); });
    }
    return makers;
}

std::unique_ptr<ezElementaryStreamParser> MakeGathererRace() {
    auto race = std::make_unique<ezUndeterminedEltStreamParser>(nullptr, nullptr);
    for (const uint32 size : kRaceRequests) {
        race->AddCandidate(new GatheringParser(size));
    }
    return race;
}

/// The race first, then each candidate alone.
std::vector<Side> RaceSides(const MakeParser& aMakeRace, const std::vector<MakeParser>& aMakers) {
    const auto bytes = std::make_shared<std::string>(NoiseBytes(kRaceBytes));
    std::vector<Side> sides = {{"race", [=] { return StreamCost(aMakeRace, *bytes); }}};
    for (const MakeParser& make : aMakers) {
        sides.push_back({"alone " + std::to_string(sides.size()), [=] { return StreamCost(make, *bytes); }});
    }
    return sides;
}

double RaceRatio(const Costs& aCosts) {
    double sum = 0;
    for (std::size_t i = 1; i < aCosts.size(); ++i) {
        sum += aCosts[i];
    }
    return aCosts[0] / sum;
}

// The adapter

constexpr std::size_t kMediaSize = 4UL * 1024 * 1024;
constexpr std::size_t kProbeParses = 2000;
constexpr std::size_t kReadSize = 4096;

/// The media in memory, which does not lend it.
class CopyingMemoryStream : public ezMemoryStream {
public:
    using ezMemoryStream::ezMemoryStream;
    bool HasOwnBuffer() const override { return false; }
    bool CanLend(int /*anAccess*/) const override { return false; }
};

template <typename Stream>
std::shared_ptr<ezStream> MakeMemory(const std::string& aBytes) {
    void* block = ezMalloc(aBytes.size());
    Require(block != nullptr, "there is memory for the media");
    std::memcpy(block, aBytes.data(), aBytes.size());
    return std::shared_ptr<ezStream>(new Stream(block, aBytes.size(), "video/mpeg"), ezStreamReleaser());
}

/// Reads where the parsers of real formats look.
void ParseStart(ezMediaParserStream& aStream) {
    std::array<char, kLargestProbe> bytes = {};
    Require(aStream.Open(), "the media opens");
    for (const Probe& probe : kProbes) {
        Require(aStream.ReadFrom(probe.mPosition, probe.mSize, bytes.data()), "the start can be read");
    }
    aStream.Close();
}

/// Reads all of the media.
void ParseWhole(ezMediaParserStream& aStream) {
    std::array<char, kReadSize> bytes = {};
    Require(aStream.Open() && aStream.Seek(0, ezMediaParserStream::SeekFromStart, false), "the media opens");
    for (std::size_t i = 0; i < kMediaSize / kReadSize; ++i) {
        Require(aStream.Read(bytes.size(), bytes.data()), "the media can be read");
    }
    aStream.Close();
}

using Parse = void (*)(ezMediaParserStream&);

struct Work {
    Parse mParse;
    std::size_t mTimes;
};

std::vector<Side> AdapterSides(const Work& aWork) {
    const auto folder = std::make_shared<TemporaryFolder>();
    const std::string content = NoiseBytes(kMediaSize);
    const ezCString path(folder->Write("film.mpg", content).c_str());
    const auto repeat = [aWork](const std::function<void()>& aParse) {
        return TimeOf([&] {
                   for (std::size_t i = 0; i < aWork.mTimes; ++i) {
                       aParse();
                   }
               }) /
               static_cast<double>(aWork.mTimes);
    };
    const auto memorySide = [&](const char* aName, const std::shared_ptr<ezStream>& aMemory) {
        return Side{aName, [=] {
                        return repeat([&] {
                            Require(aMemory->Seek(0) == ezStreamingStatus_NoError, "it is at its start");
                            ezStreamMediaParserStream stream(aMemory.get(), false);
                            aWork.mParse(stream);
                        });
                    }};
    };
    return {{"file",
             [=] {
                 return repeat([&, folder] {
                     ezFileMediaParserStream stream(path);
                     aWork.mParse(stream);
                 });
             }},
            memorySide("lending", MakeMemory<ezMemoryStream>(content)),
            memorySide("copying", MakeMemory<CopyingMemoryStream>(content))};
}

/// The later sides against the first.
Claim AgainstFirst(const std::string& aText, std::size_t aSide, double aBound) {
    return {aText, [aSide](const Costs& aCosts) { return aCosts[aSide] / aCosts[0]; }, aBound};
}

} // namespace

void AddPushBenches() {
    // At least 0.7 of the speed of memcpy.
    AddComparison("Push/Gather", GatherSides,
                  {{"gathering 64 KiB from packets of 1,316 bytes / memcpy",
                    [](const Costs& aCosts) { return aCosts[0] / aCosts[1]; }, 1 / 0.7}});
    AddComparison("Push/Skip", SkipSides,
                  {AgainstFirst("skipping, cost of a packet of 1,316 bytes / of 188", 1, 1.25),
                   AgainstFirst("skipping, cost of a packet of 65,536 bytes / of 188", 2, 1.25)});
    AddCounting("Push/SkipCounts", CountSkips);
    AddComparison("Push/Race of formats", [] { return RaceSides(MakeFormatRace, FormatMakers()); },
                  {{"race of the formats / sum of all alone", RaceRatio, 1.1}});
    AddComparison("Push/Race of gatherers", [] { return RaceSides(MakeGathererRace, GathererMakers()); },
                  {{"race of five that only gather / sum of the five alone", RaceRatio, 1.1}});
    AddComparison("Push/Adapter start",
                  [] {
                      return AdapterSides({ParseStart, kProbeParses});
                  },
                  {AgainstFirst("parse of the start, adapter over lending memory / file", 1, 1),
                   AgainstFirst("parse of the start, adapter over copying memory / file", 2, 1)});
    AddComparison("Push/Adapter whole",
                  [] {
                      return AdapterSides({ParseWhole, 1});
                  },
                  {AgainstFirst("read of all 4 MiB, adapter over lending memory / file", 1, 1),
                   AgainstFirst("read of all 4 MiB, adapter over copying memory / file", 2, 1)});
}
