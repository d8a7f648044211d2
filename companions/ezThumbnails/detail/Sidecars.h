#pragma once

#include "ezPlatform/text/CString.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

/// The pictures in some folders, by the folder: the lower case of their names, sorted, and the names.
using FolderPictures = std::map<std::string, std::vector<std::pair<std::string, ezCString>>>;

/// The paths of the pictures that stand for a file, best first, by one listing of its folder. *afFailed,
/// unless null, tells that the system was in trouble; there are none then.
///
/// @param aListed  unless null, folders that are not listed again; the media's is added
std::vector<ezCString> FindSidecars(const ezCString& aMediaPath, bool* afFailed = nullptr,
                                    FolderPictures* aListed = nullptr);

/// The MIME type of one of them.
ezCString SidecarMimeType(const ezCString& aPath);
