#pragma once

#include <string>
#include <string_view>

/// Writes a file, over an old one too.
void WriteFile(const std::string& aPath, std::string_view aContent);
