#pragma once

#include "ezPlatform/text/CString.h"

#include <vector>

/// The paths of the pictures that stand for a media, best first, by one listing of its folder.
std::vector<ezCString> FindSidecars(const ezCString& aMediaPath);

/// The MIME type of one of them.
ezCString SidecarMimeType(const ezCString& aPath);
