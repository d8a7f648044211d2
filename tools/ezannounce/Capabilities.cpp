#include "Capabilities.h"

#include "Console.h"
#include "Host.h"
#include "SafeText.h"
#include "Verbs.h"

namespace {

void AppendProtocolInfo(std::vector<std::string>& aList, const std::string& anEntry) {
    if (!anEntry.empty()) {
        const bool fHasField = anEntry.find(':') != std::string::npos;
        aList.push_back("http-get:*:" + anEntry + (fHasField ? "" : ":*"));
    }
}

} // namespace

std::vector<std::string> ProtocolInfosOf(std::string_view aProfileInfo) {
    std::vector<std::string> list;
    std::string entry;
    for (std::size_t i = 0; i < aProfileInfo.size(); ++i) {
        const char character = aProfileInfo[i];
        if (character == '\\' && i + 1 < aProfileInfo.size() && aProfileInfo[i + 1] == ',') {
            entry += ',';
            ++i;
        } else if (character == ',') {
            AppendProtocolInfo(list, entry);
            entry.clear();
        } else {
            entry += character;
        }
    }
    AppendProtocolInfo(list, entry);
    return list;
}

int RunCapabilities(Host& aHost, Console& aConsole) {
    for (const std::string& line : ProtocolInfosOf(aHost.GetManager().GetDLNAInfo().View())) {
        aConsole.Print(ForTerminal(line) + "\n");
    }
    return kExitSuccess;
}
