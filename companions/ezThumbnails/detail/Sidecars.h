#pragma once

#include "ezPlatform/text/CString.h"

#include <vector>

/// The paths of the pictures that stand for a media, best first, by one listing of its folder. *afFailed,
/// unless null, tells that the system was in trouble; there are none then.
std::vector<ezCString> FindSidecars(const ezCString& aMediaPath, bool* afFailed = nullptr);

/// The MIME type of one of them.
ezCString SidecarMimeType(const ezCString& aPath);
