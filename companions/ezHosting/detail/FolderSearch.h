#pragma once

#include "ezHosting/HostFolders.h"

#include <string>
#include <string_view>

/// FindHostFolders, told which folder was installed with this library.
/// @param anInstalledFolder  "" where that is not known
ezHostFolders SearchHostFolders(std::string_view aConfigFolder, std::string_view aStateFolder,
                                const std::string& anInstalledFolder);
