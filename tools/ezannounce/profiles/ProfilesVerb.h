#pragma once

class Console;
struct Arguments;

/// The table of profile rules. Needs no configuration.
int RunProfiles(const Arguments& anArguments, Console& aConsole);
