#pragma once

class Console;
struct Arguments;

/// The entries of a playlist. Needs no configuration.
int RunPlaylist(const Arguments& anArguments, Console& aConsole);
