#pragma once

#include "Arguments.h"

class Console;
class Host;
struct ConfigFolders;

/// Each verb writes its results and its errors, and returns the exit status.
int RunParse(const Arguments& anArguments, Host& aHost, Console& aConsole);
int RunCapabilities(const Arguments& anArguments, Host& aHost, Console& aConsole);
/// parse with --es.
int RunRaces(const Arguments& anArguments, Console& aConsole);
int RunTypes(const Arguments& anArguments, Host& aHost, Console& aConsole);
/// All that is done with the media mapper, but for show: no media types are needed.
int RunMapper(const Arguments& anArguments, const ConfigFolders& aFolders, Console& aConsole);
int RunMapperShow(const Arguments& anArguments, const ConfigFolders& aFolders, Host& aHost,
                  Console& aConsole);
/// Needs no configuration.
int RunPlaylist(const Arguments& anArguments, Console& aConsole);
/// The table of profile rules. Needs no configuration.
int RunProfiles(const Arguments& anArguments, Console& aConsole);
/// The thumbnail of one media, into a file.
int RunThumbnail(const Arguments& anArguments, Host& aHost, Console& aConsole);
/// Those of a folder's media, on one page.
int RunContactSheet(const Arguments& anArguments, Host& aHost, Console& aConsole);
