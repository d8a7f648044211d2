#pragma once

#include <string>
#include <vector>

/// Rows as lines of text whose columns begin below each other. The cells are made safe for a terminal here;
/// an empty one is "-". Every row has as many cells as the first.
std::string InColumns(const std::vector<std::vector<std::string>>& aRows);
