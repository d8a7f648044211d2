#pragma once

#include <cstddef>

/// What this program asks operator new for; under a sanitizer, what its heap is asked for in any way. Any
/// thread may ask.
namespace NewBlocks {

/// How many blocks there were since the program began.
std::size_t Count();

/// The bytes of the largest block since the last ResetLargest.
std::size_t Largest();
void ResetLargest();

} // namespace NewBlocks
