#pragma once

#include "ezPlatform/text/CString.h"

/// Whether a text holds a NUL, at which calls of the system and functions of C cut it short: a path would
/// name another file. Not installed.
inline bool ezHasNUL(const ezCString& aText) {
    return aText.View().find('\0') != std::string_view::npos;
}
