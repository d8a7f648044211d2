#pragma once

#include <string>

/// Puts a file under a path, in place of one that stands there: all of it, or nothing. False, with the
/// reason, where that cannot be.
bool WriteWholeFile(const std::string& aPath, const std::string& aBytes, std::string& aReason);
