#pragma once

class Console;
struct Arguments;
struct ezHostFolders;

/// All that is done with the media mapper, but for show: no media types are needed.
int RunMapper(const Arguments& anArguments, const ezHostFolders& aFolders, Console& aConsole);
