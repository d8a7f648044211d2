#pragma once

class Console;
struct Arguments;
struct ConfigFolders;

/// All that is done with the media mapper, but for show: no media types are needed.
int RunMapper(const Arguments& anArguments, const ConfigFolders& aFolders, Console& aConsole);
