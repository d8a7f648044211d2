#pragma once

class Console;
class Host;
struct Arguments;
struct ConfigFolders;

/// Which entry of the media mapper a file name finds.
int RunMapperShow(const Arguments& anArguments, const ConfigFolders& aFolders, Host& aHost,
                  Console& aConsole);
