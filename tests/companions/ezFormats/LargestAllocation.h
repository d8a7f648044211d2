#pragma once

#include <cstddef>

/// The largest block that this program asked operator new for since the last Reset.
namespace LargestAllocation {

void Reset();
std::size_t Get();

} // namespace LargestAllocation
