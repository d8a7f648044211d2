#pragma once

#include "ezPlatform/text/CString.h"

#include <string_view>

/// A title in UTF-8, whatever the playlist is written in: bytes that are valid UTF-8 stay as they are.
/// @param afUTF8  the format says that it is UTF-8, so that what is not valid becomes U+FFFD, one for a byte.
/// Without it the whole text is taken as Latin-1, with the letters and quotes that Windows has at 80 to 9F.
ezCString PlaylistText(std::string_view aText, bool afUTF8);

/// Seconds at the start of a text: digits, with a sign before and a fraction after. The fraction is dropped;
/// 0 for what is negative or no number; what does not fit is the largest number. *aRest, unless null,
/// receives what follows.
uint32 PlaylistSeconds(std::string_view aText, std::string_view* aRest);
