#include "bench/Allocations.h"
#include "bench/Benches.h"
#include "bench/MapperTables.h"
#include "bench/Measure.h"
#include "bench/ProbingParser.h"

#include "ez/Environment.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ezPlatform/containers/Array.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr std::array<std::size_t, 3> kSizes = {1000, 10000, 100000};
constexpr std::size_t kLargest = kSizes.back();
constexpr std::size_t kMisses = 20000;
constexpr std::size_t kPassedEntries = 1000000; ///< by the hits of a round
constexpr std::size_t kHitEntries = 16;         ///< the hits are the last ones of a table

constexpr std::array<std::size_t, 3> kParseSizes = {100, 1000, 10000};
constexpr std::size_t kParses = 2000;

std::shared_ptr<MapperTables> MakeTables() {
    auto tables = std::make_shared<MapperTables>();
    for (const std::size_t size : kSizes) {
        tables->Write(size);
    }
    return tables;
}

/// Nanoseconds a line. Every size loads the same number of lines in a round; deleting a table is not counted.
double LoadCost(const MapperTables& aTables, std::size_t aSize) {
    double cost = 0;
    for (std::size_t loaded = 0; loaded < kLargest; loaded += aSize) {
        std::unique_ptr<DLNAMediaMapper> mapper;
        cost += TimeOf([&] { mapper = aTables.Load(aSize); });
        Require(ezArray_GetCount(mapper->GetArray()) == aSize, "every line is an entry");
        Require(mapper->GetMergedDLNAProtocolInfo("PROFILE_159") != nullptr, "the last profile is merged");
    }
    return cost / static_cast<double>(kLargest);
}

/// Nanoseconds a lookup of a name that no file brought.
double MissCost(DLNAMediaMapper& aMapper) {
    const ezCString name((MapperTables_BaseName(kLargest) + ".mpg").c_str());
    std::size_t found = 0;
    const double cost = TimeOf([&] {
        for (std::size_t i = 0; i < kMisses; ++i) {
            found += aMapper.GetFileEntry(name) != nullptr ? 1 : 0;
        }
    });
    Require(found == 0, "the name is in no table");
    return cost / static_cast<double>(kMisses);
}

/// Nanoseconds an entry that the lookups of the last entries pass.
double HitCost(DLNAMediaMapper& aMapper) {
    const std::size_t size = ezArray_GetCount(aMapper.GetArray());
    std::vector<ezCString> names;
    for (std::size_t i = size - kHitEntries; i < size; ++i) {
        names.push_back(MapperTables_EntryAt(aMapper, i).mFileName);
    }
    const std::size_t lookups = kPassedEntries / size;
    std::size_t found = 0;
    const double cost = TimeOf([&] {
        for (std::size_t i = 0; i < lookups; ++i) {
            const std::size_t wanted = i % names.size();
            found += aMapper.GetFileEntry(names[wanted]) ==
                             &MapperTables_EntryAt(aMapper, size - kHitEntries + wanted)
                         ? 1
                         : 0;
        }
    });
    Require(found == lookups, "every name finds its own entry");
    return cost / static_cast<double>(lookups * size);
}

std::vector<Side> LookupSides(double (*aCost)(DLNAMediaMapper&)) {
    const std::shared_ptr<MapperTables> tables = MakeTables();
    std::vector<Side> sides;
    for (const std::size_t size : kSizes) {
        // The media types serve the tables as long as the side lives.
        const std::shared_ptr<DLNAMediaMapper> mapper = tables->Load(size);
        sides.push_back({std::to_string(size), [tables, mapper, aCost] { return aCost(*mapper); }});
    }
    return sides;
}

/// The two larger sizes against the smallest.
std::vector<Claim> ClaimsOfSizes(const std::string& aText, double aBound) {
    return {{aText + ", 10,000 / 1,000", [](const Costs& aCosts) { return aCosts[1] / aCosts[0]; }, aBound},
            {aText + ", 100,000 / 1,000", [](const Costs& aCosts) { return aCosts[2] / aCosts[0]; }, aBound}};
}

template <typename Work>
double AllocationsOf(const Work& aWork) {
    const std::size_t before = Allocations_Count();
    aWork();
    return static_cast<double>(Allocations_Count() - before);
}

/// A hit of the last entry of every table against one of the first entry of the smallest, which passes none:
/// what is above it, the pass has allocated.
void CountLookups() {
    const std::shared_ptr<MapperTables> tables = MakeTables();
    const ezCString miss((MapperTables_BaseName(kLargest) + ".mpg").c_str());
    const double question = AllocationsOf([&] { tables->GetTypes().ExtensionToExtensionList("mpg"); });
    double first = 0;
    for (const std::size_t size : kSizes) {
        const std::unique_ptr<DLNAMediaMapper> mapper = tables->Load(size);
        const std::string text = ", " + std::to_string(size) + " entries";
        const auto hit = [&](std::size_t anIndex) {
            const DLNAMediaMapperEntry& entry = MapperTables_EntryAt(*mapper, anIndex);
            return AllocationsOf([&] { Require(mapper->GetFileEntry(entry.mFileName) == &entry, "a hit"); });
        };
        if (size == kSizes.front()) {
            first = hit(0);
            NoteCount("a question to the media types, allocations", question, 2);
            // Asked a second time, a hit would cost another question's allocations.
            NoteCount("a hit of the first entry, allocations without one question", first - question, 4);
        }
        NoteCount("hit of the last" + text + ", allocations above the first", hit(size - 1) - first, 0);
        NoteCount("miss" + text + ", allocations", AllocationsOf([&] { mapper->GetFileEntry(miss); }), 2);
    }
}

/// Lookups by an extension that nobody knows, among entries that all have the name: had the media types to be
/// asked for each of them, the copies of the extension would show it.
void CountQuestions() {
    const MapperTables tables;
    const ezCString name((MapperTables_BaseName(0) + ".an-unheard-of-extension").c_str());
    const auto lookup = [&](std::size_t aSize) {
        std::string text;
        for (std::size_t i = 0; i < aSize; ++i) {
            text += MapperTables_BaseName(0) + ".mpg,video/mpeg,PROFILE\n";
        }
        tables.GetFolder().Write(std::to_string(aSize) + "/_" + MapperTables::kFileName, text);
        const std::unique_ptr<DLNAMediaMapper> mapper = tables.Load(aSize);
        return AllocationsOf(
            [&] { Require(mapper->GetFileEntry(name) == nullptr, "an unknown extension finds nothing"); });
    };
    const double question =
        AllocationsOf([&] { tables.GetTypes().ExtensionToExtensionList("an-unheard-of-extension"); });
    Require(question > 0, "a question shows in the allocations");
    NoteCount("1,000 entries of the name, allocations above those of one entry", lookup(1000) - lookup(1), 0);
}

// Requests

/// A host with or without a mapper, and the file that it parses.
class Host {
public:
    Host(std::shared_ptr<MapperTables> aTables, std::shared_ptr<DLNAMediaMapper> aMapper,
         const std::string& aBaseName, bool afMapped)
        : mTables(std::move(aTables)),
          mMapper(std::move(aMapper)),
          mfMapped(afMapped),
          mPath(mTables->GetFolder()
                    .Write("media/" + aBaseName + ".mpg",
                           std::string(std::size_t{16} * 1024, ProbingParser::kMark))
                    .c_str()) {
        const std::string types = mTables->GetFolder().Path("types");
        mEnvironment.Set(kProperty_ReadOnlyConfigPath, types);
        mEnvironment.Set(kProperty_ReadWriteConfigPath, types);
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(kParseOption_Default);
        mManager->Add(new ProbingParser);
        mManager->AddDLNAMediaMapperParser(mMapper.get());
    }

    ~Host() { mManager.reset(); }

    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Nanoseconds a request, with the opening of the file.
    double ParseCost() const {
        std::size_t mapped = 0;
        const double cost = TimeOf([&] {
            for (std::size_t i = 0; i < kParses; ++i) {
                ezFileMediaParserStream stream(mPath);
                stream.Open();
                const std::unique_ptr<ezMediaInfo> info(mManager->Parse(stream));
                Require(info != nullptr, "the file is identified");
                mapped += info->Has(kezInfo_DLNA) ? 1 : 0;
            }
        });
        Require(mapped == (mfMapped ? kParses : 0), "the table decides of its own file alone");
        return cost / static_cast<double>(kParses);
    }

private:
    std::shared_ptr<MapperTables> mTables;
    std::shared_ptr<DLNAMediaMapper> mMapper;
    bool mfMapped;
    ezCString mPath;
    ezEnvironment mEnvironment;
    std::unique_ptr<ezMediaParserManager> mManager;
};

/// Without a mapper, then for each size a miss and a hit of the entry in the middle.
std::vector<Side> ParseSides() {
    const auto tables = std::make_shared<MapperTables>();
    std::vector<Side> sides;
    const auto add = [&](const std::string& aName, const std::shared_ptr<DLNAMediaMapper>& aMapper,
                         const std::string& aBaseName, bool afMapped) {
        const auto host = std::make_shared<Host>(tables, aMapper, aBaseName, afMapped);
        sides.push_back({aName, [host] { return host->ParseCost(); }});
    };
    add("without", nullptr, MapperTables_BaseName(kLargest), false);
    for (const std::size_t size : kParseSizes) {
        tables->Write(size);
        const std::shared_ptr<DLNAMediaMapper> mapper = tables->Load(size);
        add("miss " + std::to_string(size), mapper, MapperTables_BaseName(kLargest), false);
        const ezCString name = MapperTables_EntryAt(*mapper, size / 2).mFileName.BeforeLast('.');
        add("hit " + std::to_string(size), mapper, name.c_str(), true);
    }
    return sides;
}

std::vector<Claim> ParseClaims() {
    std::vector<Claim> claims;
    for (std::size_t i = 0; i < kParseSizes.size(); ++i) {
        const std::string size = std::to_string(kParseSizes[i]) + " entries";
        claims.push_back({"parse, miss in " + size + " / without a mapper",
                          [i](const Costs& aCosts) { return aCosts[1 + 2 * i] / aCosts[0]; }, 1.25});
        claims.push_back({"parse, hit in the middle of " + size + " / without a mapper",
                          [i](const Costs& aCosts) { return aCosts[2 + 2 * i] / aCosts[0]; }, 0});
    }
    return claims;
}

} // namespace

void AddMapperBenches() {
    AddComparison(
        "Mapper/Load",
        [] {
            const std::shared_ptr<MapperTables> tables = MakeTables();
            std::vector<Side> sides;
            sides.reserve(kSizes.size());
            for (const std::size_t size : kSizes) {
                sides.push_back({std::to_string(size), [tables, size] { return LoadCost(*tables, size); }});
            }
            return sides;
        },
        ClaimsOfSizes("mapper load, cost of a line", 2));
    AddComparison(
        "Mapper/Miss", [] { return LookupSides(MissCost); }, ClaimsOfSizes("mapper lookup, miss", 1.5));
    AddComparison(
        "Mapper/Hit", [] { return LookupSides(HitCost); },
        ClaimsOfSizes("mapper lookup, cost of an entry passed by a hit", 0));
    AddCounting("Mapper/Counts", CountLookups);
    AddCounting("Mapper/Questions", CountQuestions);
    AddComparison("Mapper/Parse", ParseSides, ParseClaims());
}
