#include "capabilities/CapabilitiesVerb.h"

#include "arguments/Arguments.h"
#include "host/Host.h"
#include "output/Console.h"
#include "output/SafeText.h"

#include "ezHosting/ProtocolInfos.h"

int RunCapabilities(const Arguments& anArguments, Host& aHost, Console& aConsole) {
    ezMediaParserManager& manager = aHost.GetManager();
    const ezCString text = anArguments.mfDTCP ? manager.GetDLNAInfoDTCP() : manager.GetDLNAInfo();
    for (const std::string& line : ProtocolInfosOf(text.View())) {
        aConsole.Print(ForTerminal(line) + "\n");
    }
    return kExitSuccess;
}
