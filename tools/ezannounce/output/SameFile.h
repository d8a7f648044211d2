#pragma once

#include <string>

/// Whether two paths lead to one file. False where one of them leads to none.
bool IsSameFile(const std::string& aLeft, const std::string& aRight);
