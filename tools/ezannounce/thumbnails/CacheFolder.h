#pragma once

#include "arguments/ThumbnailOptions.h"

#include <string>

/// What to say where there is no folder.
constexpr const char* kNoCacheFolder =
    "no folder for the cache: neither XDG_CACHE_HOME nor HOME is an absolute path; --cache names one";

/// Where thumbnails are kept: the folder of --cache, else "ezannounce" in the one that XDG_CACHE_HOME names
/// by an absolute path, else in ".cache" of the home folder, named by one too. Only the person may look into
/// a folder of these that is made here. "" where there is nothing of all that.
std::string FindCacheFolder(const ThumbnailOptions& anOptions);
