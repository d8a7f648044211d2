#pragma once

#include "ezPlatform/base/Export.h"

#include <cstddef>

/// Allocates aSize bytes, a number that comes from input. Null when they cannot be had: an ordinary failure.
/// Given back with ezFree.
EZPLATFORM_API void* ezMalloc(std::size_t aSize);

/// Makes a block of ezMalloc or ezRealloc aSize bytes long, aSize not 0, and keeps its content; a null block
/// is a new one. Null when the bytes cannot be had: the old block then stays as it was.
EZPLATFORM_API void* ezRealloc(void* aBlock, std::size_t aSize);

/// Gives a block of ezMalloc, ezRealloc or ezStrdup back; null is ignored.
EZPLATFORM_API void ezFree(void* aBlock);

/// A copy of a C string that the caller frees with ezFree. Null gives null. Out of memory ends the process.
EZPLATFORM_API char* ezStrdup(const char* aText);
