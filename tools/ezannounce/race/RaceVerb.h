#pragma once

class Console;
struct Arguments;

/// The verb parse with --es: all parsers of elementary streams race on each operand.
int RunRaces(const Arguments& anArguments, Console& aConsole);
