#pragma once

#include <cstddef>
#include <cstdint>

/// A byte.
using uint8 = std::uint8_t;
/// An unsigned number of 32 bits, on every target.
using uint32 = std::uint32_t;

/// Offset into, or size of, a file: signed 64 bits on every target. -1 is the failure of operations that
/// return one.
using ezFileOffset = std::int64_t;
