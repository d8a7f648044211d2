#include "bench/DecliningHost.h"
#include "bench/Require.h"
#include "bench/TypesTables.h"
#include "bench/instructions/Instructions.h"

#include "ezPlatform/base/Memory.h"
#include "ezPlatform/config/Config.h"
#include "ezPlatform/dlna/ProtocolInfo.h"
#include "support/CollidingTexts.h"
#include "support/TemporaryFolder.h"

#include <cstring>
#include <memory>
#include <string>
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

/// The 4th field of a television whose parameters were chosen to meet in one place of a table.
double ChosenParametersCost(std::size_t aCount) {
    std::string text = "http-get:*:video/mpeg:DLNA.ORG_PN=MPEG_PS_PAL";
    for (const std::string& name : CollidingTexts(aCount)) {
        text += ";" + name + "=1";
    }
    return Instructions_OfUnit(aCount, [&] {
        ezDLNAProtocolInfo* const info = ezDLNAProtocolInfo_New(text.c_str(), 0, 0);
        char* const written = ezDLNAProtocolInfo_Get4thFieldStr(info);
        Require(std::strlen(written) > aCount, "the parameters are kept");
        ezFree(written);
        ezDLNAProtocolInfo_Delete(info);
    });
}

/// An ini file whose keys were chosen so.
double ChosenKeysCost(std::size_t aCount) {
    std::string text = "[Keys]\n";
    const std::vector<std::string> keys = CollidingTexts(aCount);
    for (const std::string& key : keys) {
        text += key + "=1\n";
    }
    const TemporaryFolder folder;
    const std::string path = folder.Write("keys.ini", text);
    const ezCString place(folder.GetPath().c_str());
    return Instructions_OfUnit(aCount, [&] {
        const ezConfig config(place, place, "keys.ini");
        Require(config.GetKeyCount("Keys", true) == aCount, "the keys are kept");
        Require(config.GetCString("Keys", keys.back().c_str(), "") == "1", "a key is found");
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

    Instructions_PrintGrowth("chosen-parameters", {1000, 3000, 10000}, ChosenParametersCost);
    Instructions_PrintGrowth("chosen-keys", {1000, 3000, 10000}, ChosenKeysCost);

    // What one parser adds to a request that another declines.
    const double without =
        Instructions_OfUnit(1, [host = std::make_shared<DecliningHost>(0)] { host->Request(); });
    Instructions_PrintGrowth("declining-parser", {1, 10, 100}, [&](std::size_t aParsers) {
        DecliningHost host(aParsers);
        return (Instructions_OfUnit(1, [&] { host.Request(); }) - without) / static_cast<double>(aParsers);
    });
}
