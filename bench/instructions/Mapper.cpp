#include "bench/Hosts.h"
#include "bench/MapperTables.h"
#include "bench/Require.h"
#include "bench/instructions/Instructions.h"

#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ezPlatform/containers/Array.h"
#include "ezPlatform/media/MediaInfo.h"

#include <memory>

namespace {

constexpr std::size_t kEntries = 100;
constexpr std::size_t kNowhere = 99999;

ezCString NameOf(std::size_t anEntry) {
    return ezCString((MapperTables_BaseName(anEntry) + ".mpg").c_str());
}

/// Requests for files that the operator's table knows and does not know.
void PrintMapped(const MapperTables& aTables, DLNAMediaMapper& aMapper) {
    const TemporaryFolder& folder = aTables.GetFolder();
    folder.Write("host/mediaCTRLMediaTypes.ini", "[MimeTypes]\nclip=mpg@video/mpeg@item.videoItem\n");
    const ezCString config(folder.Path("host").c_str());
    const BenchHost host(config, BenchHost::Parsers::Standard);
    host.GetManager().AddDLNAMediaMapperParser(&aMapper);
    const auto print = [&](const char* aKey, std::size_t anEntry, bool afMapped) {
        const ezCString path(folder.Write(NameOf(anEntry).c_str(), "bytes").c_str());
        Instructions_PrintOf(aKey, 1, [&] {
            ezFileMediaParserStream stream(path);
            stream.Open();
            const std::unique_ptr<ezMediaInfo> info(host.GetManager().Parse(stream));
            Require(info != nullptr && info->Has(kezInfo_DLNA) == afMapped, "the table decides of its own");
        });
    };
    print("mapper.request.hit", kEntries / 2, true);
    print("mapper.request.miss", kNowhere, false);
}

void PrintLookups(const MapperTables& aTables, DLNAMediaMapper& aMapper) {
    const ezCString hit = NameOf(kEntries / 2);
    const ezCString miss = NameOf(kNowhere);
    Instructions_PrintOf("mapper.hit", 1,
                         [&] { Require(aMapper.GetFileEntry(hit) != nullptr, "the name is in the table"); });
    Instructions_PrintOf("mapper.miss", 1,
                         [&] { Require(aMapper.GetFileEntry(miss) == nullptr, "the name is in no table"); });
    PrintMapped(aTables, aMapper);
}

} // namespace

void PrintMapper() {
    const MapperTables tables;
    tables.Write(kEntries);
    PrintLookups(tables, *tables.Load(kEntries));

    const std::vector<std::size_t> sizes = {1000, 10000};
    for (const std::size_t size : sizes) {
        tables.Write(size);
    }
    Instructions_PrintGrowth("mapper.load", sizes, [&](std::size_t aSize) {
        return Instructions_OfUnit(aSize, [&] {
            Require(ezArray_GetCount(tables.Load(aSize)->GetArray()) == aSize, "every line is an entry");
        });
    });
    Instructions_PrintGrowth("mapper.miss", sizes, [&](std::size_t aSize) {
        const std::unique_ptr<DLNAMediaMapper> mapper = tables.Load(aSize);
        const ezCString name = NameOf(kNowhere);
        return Instructions_OfUnit(
            1, [&] { Require(mapper->GetFileEntry(name) == nullptr, "the name is in no table"); });
    });
    Instructions_PrintGrowth("mapper.hit.by-entry", sizes, [&](std::size_t aSize) {
        const std::unique_ptr<DLNAMediaMapper> mapper = tables.Load(aSize);
        const ezCString name = NameOf(aSize - 1);
        return Instructions_OfUnit(
            aSize, [&] { Require(mapper->GetFileEntry(name) != nullptr, "the last name is found"); });
    });
}
