#pragma once

#include <cstdint>

/// Arithmetic on numbers that come from a file or stream, for sums that nothing else bounds.

/// Adds two unsigned 64-bit numbers. False, with *aSum untouched, when the sum would wrap.
inline bool ezChecked_Add(std::uint64_t aLeft, std::uint64_t aRight, std::uint64_t* aSum) {
    if (aRight > UINT64_MAX - aLeft) {
        return false;
    }
    *aSum = aLeft + aRight;
    return true;
}

/// Adds two unsigned 32-bit numbers; a sum that would wrap stays at 0xFFFFFFFF.
inline std::uint32_t ezSaturating_Add(std::uint32_t aLeft, std::uint32_t aRight) {
    return aRight > UINT32_MAX - aLeft ? UINT32_MAX : aLeft + aRight;
}

/// Adds two unsigned 64-bit numbers; a sum that would wrap stays at 2^64-1.
inline std::uint64_t ezSaturating_Add64(std::uint64_t aLeft, std::uint64_t aRight) {
    return aRight > UINT64_MAX - aLeft ? UINT64_MAX : aLeft + aRight;
}
