#pragma once

#include "Arguments.h"

class Console;
class Host;

/// Each verb writes its results and its errors, and returns the exit status.
int RunParse(const Arguments& anArguments, Host& aHost, Console& aConsole);
int RunCapabilities(Host& aHost, Console& aConsole);
int RunTypes(const Arguments& anArguments, Host& aHost, Console& aConsole);
