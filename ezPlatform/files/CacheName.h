#pragma once

#include "ezPlatform/text/CString.h"

#include <string_view>

/// The name under which a cache keeps what it is asked for by any text: one component of a path, of the
/// characters a to z, 0 to 9, "_", "-", "." and "%", 1 to 143 bytes long, never beginning or ending in a dot.
///
/// Different texts have different names, on a file system that does not tell upper from lower case too: any
/// other byte is written "%" and two hexadecimal digits, and a text whose name would be too long is told by
/// its SHA-256 digest (FIPS 180-4). Not installed.
ezCString ezCacheName(std::string_view aText);
