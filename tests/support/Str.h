#pragma once

#include "ezPlatform/text/CString.h"

#include <string>

/// The bytes of a text, for comparisons that print what differs.
inline std::string Str(const ezCString& aText) {
    return std::string(aText.View());
}

/// A text of these bytes, NULs included.
inline ezCString Bytes(const std::string& aBytes) {
    return ezCString(aBytes.data(), aBytes.size());
}
