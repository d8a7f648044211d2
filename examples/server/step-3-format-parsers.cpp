// Step 3: the formats that the companion library knows: step-3-format-parsers CONFIG_FOLDER FILE...
#include "Parsers.h"
#include "Record.h"
#include "Why.h"

#include "ez/Environment.h"

int main(int anArgCount, char** anArgs) {
    const ezEnvironment environment(anArgCount > 1 ? anArgs[1] : ".");
    Why why;
    ezMediaParserManager manager(environment.Get());
    AddParsers(manager);
    manager.SetObserver(&why); // borrowed
    for (int i = 2; i < anArgCount; ++i) {
        Print(anArgs[i], Identify(manager, anArgs[i]).get());
    }
    return 0;
}
