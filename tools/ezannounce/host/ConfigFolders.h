#pragma once

#include "arguments/Arguments.h"

#include <string>

/// The two folders that the configuration is read from. The file in mReadWrite lies over the one in
/// mReadOnly.
struct ConfigFolders {
    std::string mReadOnly;
    std::string mReadWrite;
};

/// Where a person who gave these arguments wants the configuration read from. A folder that was not given:
/// the state folder is the one of --config, so that a stray file in the working directory does not lie over
/// it; without --config both come from kezConfigPathFileName in the working directory, else the working
/// directory is taken, and where that holds no media types file, the one that was installed with the
/// libraries (FindHostFolders).
ConfigFolders FindConfigFolders(const Arguments& anArguments);
