#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Numbers as files hold them.

/// A number of so many bytes, the most significant first.
inline std::string Big(std::uint64_t aValue, std::size_t aCount) {
    std::string bytes(aCount, '\0');
    for (std::size_t i = aCount; i-- > 0; aValue >>= 8) {
        bytes[i] = static_cast<char>(aValue & 0xFF);
    }
    return bytes;
}

/// The same, the least significant first.
inline std::string Little(std::uint64_t aValue, std::size_t aCount = 4) {
    const std::string bytes = Big(aValue, aCount);
    return {bytes.rbegin(), bytes.rend()};
}
