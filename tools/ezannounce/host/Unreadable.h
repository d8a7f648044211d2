#pragma once

#include <string>

/// Why a file that did not open does not.
std::string WhyUnreadable(const std::string& aPath);
