#pragma once

#include "ezPlatform/streams/Stream.h"

#include <cstddef>
#include <string>

/// Playlists of a number of entries, 100,000 at most, all of one length.
std::string PlaylistTexts_M3U(std::size_t aSize);
std::string PlaylistTexts_PLS(std::size_t aSize);
std::string PlaylistTexts_ASX(std::size_t aSize);
std::string PlaylistTexts_WPL(std::size_t aSize);
std::string PlaylistTexts_XSPF(std::size_t aSize);

// What strangers write to make a playlist costly.

/// An M3U of entries of one letter that end in CR alone.
std::string PlaylistTexts_CarriageReturns(std::size_t aSize);
/// Documents whose base is a URL of 2 KiB, nearly all of it steps into a folder and out of it again.
std::string PlaylistTexts_DottedXSPF(std::size_t aSize);
std::string PlaylistTexts_DottedASX(std::size_t aSize);

/// One of them as a stream in memory.
ezStreamOwner PlaylistTexts_Stream(const std::string& aText);
