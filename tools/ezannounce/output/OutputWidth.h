#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// Columns of standard output: those that COLUMNS states, else those of the terminal that it is, else 100.
std::size_t OutputWidth();

/// The columns that a text states: a decimal number from 1 on, of which the first 1000 count. Nothing for
/// any other text.
std::optional<std::size_t> StatedWidth(std::string_view aText);
