// Step 4: the operator's table wins over what was found:
// step-4-media-mapper CONFIG_FOLDER STATE_FOLDER FILE...
#include "Parsers.h"
#include "Record.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/Environment.h"
#include "ezPlatform/base/StandardDescriptors.h"

int main(int anArgCount, char** anArgs) {
    ezKeepStandardDescriptors(); // so that nothing that is opened later is taken for one of them
    if (anArgCount < 3) {
        std::fprintf(stderr, "usage: step-4-media-mapper CONFIG_FOLDER STATE_FOLDER FILE...\n");
        return 2;
    }
    const ezEnvironment environment(anArgs[1]);
    ezMediaParserManager manager(environment.Get());
    AddParsers(manager);

    DLNAMediaMapper mapper(manager.GetMimeTypesDotIniParser(), anArgs[1], anArgs[2], "",
                           kezMediaMapperFileName);
    if (const ezError error = mapper.Load(); error.IsError()) {
        std::fprintf(stderr, "no media mapper: %s\n", error.ToString());
    } else {
        manager.AddDLNAMediaMapperParser(&mapper); // borrowed
    }

    for (int i = 3; i < anArgCount; ++i) {
        Print(anArgs[i], Identify(manager, anArgs[i]).get());
    }
    return 0;
}
