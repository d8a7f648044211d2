#include "mapper/MapperShowVerb.h"

#include "arguments/Arguments.h"
#include "host/Host.h"
#include "mapper/MapperFacts.h"
#include "mapper/MapperLookup.h"
#include "mapper/MapperTable.h"
#include "output/Console.h"
#include "output/JsonLine.h"
#include "output/SafeText.h"

#include "ez/MediaParserManager.h"

#include <algorithm>

namespace {

using Json = nlohmann::ordered_json;

std::string Line(const std::string& aLabel, const std::string& aText) {
    constexpr std::size_t kLabelWidth = 16;
    std::string label = aLabel;
    label.resize(std::max(label.size(), kLabelWidth), ' ');
    return "  " + label + (aText.empty() ? "-" : ForTerminal(aText)) + "\n";
}

std::string SpeedsInWords(const DLNAMediaMapperEntry& anEntry) {
    std::string words = Joined(SpeedsOf(anEntry));
    if (anEntry.HasPlaySpeedDefined()) {
        const bool fAnnounced = anEntry.GetPlaySpeedMediaEnabled() && anEntry.GetPlaySpeedProfileEnabled();
        words += fAnnounced ? " (announced)" : " (not announced)";
    }
    return words;
}

std::string DurationInWords(const DLNAMediaMapperEntry& anEntry) {
    const std::optional<uint32> seconds = SecondsOf(anEntry);
    if (anEntry.mDuration.IsEmpty()) {
        return {};
    }
    return anEntry.mDuration.c_str() +
           (seconds ? " (" + std::to_string(*seconds) + " s)" : std::string(" (does not convert)"));
}

std::string BlockOf(DLNAMediaMapperEntry& anEntry, std::size_t anIndex) {
    std::string text = Line("entry", std::to_string(anIndex));
    text += Line("line", LineOf(anEntry));
    text += Line("file name", anEntry.mFileName.c_str());
    text += Line("MIME type", anEntry.mMimeType.c_str());
    text += Line("profile",
                 anEntry.mProfile.c_str() + std::string(anEntry.ProfileEnabled() ? "" : " (disabled)"));
    text += Line("duration", DurationInWords(anEntry));
    text += Line("play speeds", SpeedsInWords(anEntry));
    text += Line("bit rate", anEntry.mBitRate != 0 ? std::to_string(anEntry.mBitRate) + " bit/s" : "");
    text += Line("byte seek", anEntry.CanSupportByteSeek() ? "possible" : "not possible");
    text += Line("time seek", anEntry.CanSupportTimeSeek() ? "possible" : "not possible");
    text += Line("flags", Joined(FlagsInWords(anEntry.mGoldenDMSFlags)));
    text += Line("protocolInfo", anEntry.mFullProfile.c_str());
    return text;
}

std::size_t IndexOf(DLNAMediaMapper& aMapper, const DLNAMediaMapperEntry* anEntry) {
    const std::vector<DLNAMediaMapperEntry*> entries = EntriesOf(aMapper);
    return static_cast<std::size_t>(std::find(entries.begin(), entries.end(), anEntry) - entries.begin());
}

/// What a name finds; false when it finds nothing.
bool Show(const std::string& aName, bool afJson, DLNAMediaMapper& aMapper, Console& aConsole) {
    // Folders do not count, as in the parser that asks the table.
    const ezCString fileName = ezPathName::MakeFilePath(ezCString(aName)).GetFullName();
    DLNAMediaMapperEntry* entry = aMapper.GetFileEntry(fileName);
    Json object = {{"asked", aName}, {"entry", nullptr}, {"reason", nullptr}};
    if (entry != nullptr) {
        Json facts = {{"index", IndexOf(aMapper, entry)}};
        facts.update(JsonOf(*entry));
        facts["line"] = LineOf(*entry);
        object["entry"] = std::move(facts);
        if (!afJson) {
            aConsole.Print(ForTerminal(aName) + "\n" + BlockOf(*entry, IndexOf(aMapper, entry)));
        }
    } else {
        const NoEntry reason = WhyNoEntry(aMapper, fileName);
        object["reason"] = CodeOf(reason);
        aConsole.Error(aName, InWords(reason, fileName));
    }
    if (afJson) {
        aConsole.Print(JsonLineOf(object));
    }
    return entry != nullptr;
}

} // namespace

int RunMapperShow(const Arguments& anArguments, Host& aHost, Console& aConsole) {
    const ezHost& host = aHost.Get();
    const std::unique_ptr<DLNAMediaMapper> mapper = OpenMapper(
        host.GetFolders(), host.GetManager().GetMimeTypesDotIniParser(), anArguments.mfNoCopy, aConsole);
    int status = mapper != nullptr ? kExitSuccess : kExitSomeFailed;
    for (const std::string& name : anArguments.mOperands) {
        if (mapper != nullptr && !Show(name, anArguments.mfJson, *mapper, aConsole)) {
            status = kExitSomeFailed;
        }
    }
    return status;
}
