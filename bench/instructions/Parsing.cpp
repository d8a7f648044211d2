#include "bench/FormatFiles.h"
#include "bench/Hosts.h"
#include "bench/LongFiles.h"
#include "bench/ProbingParser.h"
#include "bench/Require.h"
#include "bench/instructions/Instructions.h"

#include "ez/FileMediaParserStream.h"
#include "ez/ParseObserver.h"
#include "ezPlatform/media/MediaInfo.h"
#include "support/Folders.h"
#include "support/TemporaryFolder.h"

#include <memory>
#include <string>
#include <vector>

namespace {

void PrintIdentify() {
    const TemporaryFolder folder;
    folder.Write("mediaCTRLMediaTypes.ini", "[MimeTypes]\nclip=clip@video/mpeg@item.videoItem\n");
    const ezCString path(folder.Write("clip-1000.clip", std::string(16384, ProbingParser::kMark)).c_str());
    const ezCString config(folder.GetPath().c_str());
    const BenchHost host(config, BenchHost::Parsers::Standard);
    Instructions_PrintOf("identify.extension", 1, [&] {
        ezFileMediaParserStream stream(path);
        const std::unique_ptr<ezMediaInfo> info(host.GetManager().Parse(stream));
        Require(info != nullptr && !info->Has(kezInfo_FileSize), "the file is identified, without its size");
    });
    host.GetManager().Add(new ProbingParser);
    const auto byContent = [&] {
        ezFileMediaParserStream stream(path);
        stream.Open();
        const std::unique_ptr<ezMediaInfo> info(host.GetManager().Parse(stream));
        Require(info != nullptr && info->Has(kezInfo_FileSize), "the file is identified, with its size");
    };
    Instructions_PrintOf("identify.content", 1, byContent);
    ezParseObserver observer;
    host.GetManager().SetObserver(&observer);
    Instructions_PrintOf("identify.observed", 1, byContent);
    host.GetManager().SetObserver(nullptr);
}

/// The mean of the files of each format, by a host and by the format's parser alone.
void PrintFormats() {
    const BenchHost host(EZ_SAMPLES, BenchHost::Parsers::Formats);
    for (const FormatFamily& family : FormatFiles_Families()) {
        const TemporaryFolder folder;
        std::vector<ezCString> paths;
        for (const FormatFile& file : family.mFiles()) {
            const std::string name = "file-" + std::to_string(1000 + paths.size()) + "." + file.mExtension;
            paths.emplace_back(folder.Write(name, file.mBytes).c_str());
        }
        const std::string key = "format." + family.mKey;
        Instructions_PrintOf(key, paths.size(), [&] {
            for (const ezCString& path : paths) {
                host.Parse(path);
            }
        });
        const std::unique_ptr<ezMediaParser> parser = family.mParser();
        Instructions_PrintOf(key + ".alone", paths.size(), [&] {
            for (const ezCString& path : paths) {
                ezFileMediaParserStream stream(path);
                stream.Open();
                const std::unique_ptr<ezMediaInfo> info(parser->Parse(stream));
                Require(info != nullptr, "the parser knows every file");
            }
        });
    }
}

/// Films of 4 MB, 400 MB, and of more than 32 bits can say, with the same tables and by their megabytes.
void PrintFilms() {
    constexpr std::uint64_t kMega = 1000000;
    constexpr std::uint64_t kTableSeconds = 7;
    const BenchHost host(EZ_SAMPLES, BenchHost::Parsers::Formats);
    Instructions_PrintGrowth("film", {4, 400, 4500}, [&](std::size_t aSize) {
        const TemporaryFolder folder;
        const ezCString path(
            FormatFiles_Write(folder, FormatFiles_Film(aSize * kMega, kTableSeconds)).c_str());
        return Instructions_OfUnit(1, [&] { host.Parse(path); });
    });
}

/// Songs and films of three sizes each.
void PrintLongFiles() {
    const BenchHost host(EZ_SAMPLES, BenchHost::Parsers::Formats);
    for (const LongFiles& kind : LongFiles_All()) {
        Instructions_PrintGrowth(kind.mKey, {kind.mMegabytes.begin(), kind.mMegabytes.end()},
                                 [&](std::size_t aSize) {
                                     const TemporaryFolder folder;
                                     const ezCString path(LongFiles_Write(folder, kind, aSize).c_str());
                                     return Instructions_OfUnit(1, [&] { host.Parse(path); });
                                 });
    }
}

} // namespace

void PrintParsing() {
    PrintIdentify();
    PrintFormats();
    PrintFilms();
    PrintLongFiles();
}
