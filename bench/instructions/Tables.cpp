#include "bench/DecliningHost.h"
#include "bench/Require.h"
#include "bench/TypesTables.h"
#include "bench/instructions/Instructions.h"

#include <memory>
#include <vector>

namespace {

constexpr std::size_t kAsked = 100; ///< keys, spread over the table

using Lookup = ezPtrList* (ExtensionMimeTypeMatcher::*)(const ezCString&);

double LookupCost(ExtensionMimeTypeMatcher& aMatcher, std::size_t aSize, Lookup aLookup,
                  std::string (*aText)(std::size_t)) {
    std::vector<ezCString> texts;
    for (std::size_t i = 0; i < kAsked; ++i) {
        texts.emplace_back(aText(i * (aSize / kAsked)).c_str());
    }
    return Instructions_OfUnit(kAsked, [&] {
        for (const ezCString& text : texts) {
            Require((aMatcher.*aLookup)(text) != nullptr, "every key is found");
        }
    });
}

} // namespace

void PrintTables() {
    const TypesTables tables;
    const std::vector<std::size_t> sizes = {1000, 10000};
    for (const std::size_t size : sizes) {
        tables.Write(size);
    }
    Instructions_PrintGrowth("types.load", sizes, [&](std::size_t aSize) {
        return Instructions_OfUnit(aSize, [&] { tables.Load(aSize); });
    });
    Instructions_PrintGrowth("types.extension", sizes, [&](std::size_t aSize) {
        return LookupCost(*tables.Load(aSize), aSize, &ExtensionMimeTypeMatcher::EntriesFromExtension,
                          TypesTables_Extension);
    });
    Instructions_PrintGrowth("types.mime-type", sizes, [&](std::size_t aSize) {
        return LookupCost(*tables.Load(aSize), aSize, &ExtensionMimeTypeMatcher::EntriesFromMimeType,
                          TypesTables_MimeType);
    });

    // What one parser adds to a request that another declines.
    const double without =
        Instructions_OfUnit(1, [host = std::make_shared<DecliningHost>(0)] { host->Request(); });
    Instructions_PrintGrowth("declining-parser", {1, 10, 100}, [&](std::size_t aParsers) {
        DecliningHost host(aParsers);
        return (Instructions_OfUnit(1, [&] { host.Request(); }) - without) / static_cast<double>(aParsers);
    });
}
