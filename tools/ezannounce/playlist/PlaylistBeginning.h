#pragma once

#include <string>
#include <string_view>

/// The extension of the playlist format that bytes are in, by how they begin: "m3u", which is any list of
/// names, where nothing else fits.
std::string ExtensionOfPlaylist(std::string_view aBytes);
