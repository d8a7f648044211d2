#pragma once

#include <cstdint>
#include <string>

/// The sum that stands after zlib data (RFC 1950, 9).
inline std::uint32_t Adler32(const std::string& aBytes) {
    constexpr std::uint32_t kModulus = 65521;
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const char byte : aBytes) {
        low = (low + static_cast<unsigned char>(byte)) % kModulus;
        high = (high + low) % kModulus;
    }
    return high << 16 | low;
}

/// A block of bytes as they are (RFC 1951, 3.2.4): at most 65535 of them.
inline std::string StoredBlock(const std::string& aBytes, bool afLast) {
    const auto size = static_cast<unsigned>(aBytes.size());
    std::string block(1, afLast ? '\1' : '\0');
    for (const unsigned number : {size, ~size}) {
        block += static_cast<char>(number & 0xFF);
        block += static_cast<char>(number >> 8 & 0xFF);
    }
    return block + aBytes;
}

/// zlib data of blocks, and the sum of what comes out.
inline std::string ZlibOfBlocks(const std::string& aBlocks, std::uint32_t aSum) {
    std::string data = "\x78\x01" + aBlocks;
    for (unsigned shift = 32; shift != 0; shift -= 8) {
        data += static_cast<char>(aSum >> (shift - 8) & 0xFF);
    }
    return data;
}

/// zlib data that give so many bytes back, without zlib: for tests of who reads them.
inline std::string ZlibData(const std::string& aBytes) {
    constexpr std::size_t kMost = 65535;
    std::string blocks;
    for (std::size_t at = 0; at + kMost < aBytes.size(); at += kMost) {
        blocks += StoredBlock(aBytes.substr(at, kMost), false);
    }
    const std::size_t last = aBytes.empty() ? 0 : (aBytes.size() - 1) / kMost * kMost;
    return ZlibOfBlocks(blocks + StoredBlock(aBytes.substr(last), true), Adler32(aBytes));
}
