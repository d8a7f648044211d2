#include "capabilities/CapabilitiesVerb.h"

#include "arguments/Arguments.h"
#include "host/Host.h"
#include "output/Console.h"
#include "output/SafeText.h"

#include "ez/MediaParserManager.h"
#include "ezHosting/ProtocolInfos.h"

int RunCapabilities(const Arguments& anArguments, Host& aHost, Console& aConsole) {
    // As they are declared, so that somebody sees what two parsers both declare: a host names each once.
    ezMediaParserManager& manager = aHost.Get().GetManager();
    const ezCString text = anArguments.mfDTCP ? manager.GetDLNAInfoDTCP() : manager.GetDLNAInfo();
    for (const std::string& line : ProtocolInfosOf(text.View())) {
        aConsole.Print(ForTerminal(line) + "\n");
    }
    return kExitSuccess;
}
