#pragma once

#include "ezPlatform/text/CString.h"

#include <string_view>

/// Whether a location is a URL: neither a path nor a name, which may have a colon in it, too.
bool HasScheme(std::string_view aLocation);

/// Whether a location is absolute on Windows: it begins with a drive ("C:\", "C:/") or a server ("\\").
bool IsWindowsPath(std::string_view aLocation);

/// The location for a URL to resolve it against: in one that is relative, "\" before the query is "/", as
/// those who write playlists on Windows mean it. A URL and a Windows path stay as they are.
ezCString URLReference(const ezCString& aLocation);
