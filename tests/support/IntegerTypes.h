#pragma once

#include "ezPlatform/base/Types.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

/// Every integer type that a caller may hand over; some are one type on one target and two on another.
using IntegerTypes =
    testing::Types<char, signed char, unsigned char, short, unsigned short, int, unsigned int, long,
                   unsigned long, long long, unsigned long long, uint8, uint32, std::uint64_t, std::int64_t,
                   std::size_t, std::ptrdiff_t, ezFileOffset>;

/// Names the tests of a type: "5_int32".
class IntegerTypeNames {
public:
    template <typename Integer>
    static std::string GetName(int anIndex) {
        return std::to_string(anIndex) + (std::is_signed<Integer>::value ? "_int" : "_uint") +
               std::to_string(sizeof(Integer) * CHAR_BIT);
    }
};
