#pragma once

#include <cstddef>

/// How often this program has asked for memory so far: operator new wherever it is called, and malloc, calloc
/// and realloc where code that is linked into this program calls them. Exact while one thread at a time asks.
std::size_t Allocations_Count();
