#pragma once

#include <cstdint>
#include <cstring>
#include <limits>

// Numbers of IEEE 754 by their bits, as files have them. What they hold may be no finite number.

/// Of single precision.
inline double Float_OfBits32(std::uint32_t aBits) {
    float value = 0;
    static_assert(std::numeric_limits<float>::is_iec559 && sizeof(value) == sizeof(aBits));
    std::memcpy(&value, &aBits, sizeof(value));
    return double{value};
}

/// Of double precision.
inline double Float_OfBits64(std::uint64_t aBits) {
    double value = 0;
    static_assert(std::numeric_limits<double>::is_iec559 && sizeof(value) == sizeof(aBits));
    std::memcpy(&value, &aBits, sizeof(value));
    return value;
}
