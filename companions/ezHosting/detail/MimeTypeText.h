#pragma once

#include <string_view>

/// Whether a text can stand as a MIME type in a list of protocolInfo: a type, a slash, a subtype (the
/// characters of RFC 2045 tokens) and possibly parameters, which hold no comma, colon, blank or control
/// character.
bool IsMimeType(std::string_view aText);
