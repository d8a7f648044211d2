// Step 1: what the media types file alone tells of a file: step-1-identify CONFIG_FOLDER FILE...
#include "Record.h"

#include "ez/Environment.h"

int main(int anArgCount, char** anArgs) {
    const ezEnvironment environment(anArgCount > 1 ? anArgs[1] : ".");
    ezMediaParserManager manager(environment.Get());
    manager.AddStandardParsers(kParseOption_Default);
    for (int i = 2; i < anArgCount; ++i) {
        Print(anArgs[i], Identify(manager, anArgs[i]).get());
    }
    return 0;
}
