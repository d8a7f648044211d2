// Step 2: a parser of the host's own looks into the file: step-2-own-parser CONFIG_FOLDER FILE...
#include "FlacParser.h"
#include "Record.h"

#include "ez/Environment.h"

int main(int anArgCount, char** anArgs) {
    const ezEnvironment environment(anArgCount > 1 ? anArgs[1] : ".");
    ezMediaParserManager manager(environment.Get());
    manager.AddStandardParsers(kParseOption_Default);
    manager.Add(new FlacParser); // the manager deletes it
    for (int i = 2; i < anArgCount; ++i) {
        Print(anArgs[i], Identify(manager, anArgs[i]).get());
    }
    return 0;
}
