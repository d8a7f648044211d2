#pragma once

#include "support/NumberBytes.h"

#include <cstddef>
#include <cstdint>
#include <string>

// ADTS frames, byte by byte.

namespace adts {

// adts_fixed_header: sync, ID, layer, protection_absent | profile, rate, private, channels | copy, home.
constexpr std::uint32_t kLC44Stereo = 0xFFF1508; ///< MPEG-4, no check sum, low complexity, 44.1 kHz, 2
constexpr std::uint32_t kLC24Mono = 0xFFF1584;   ///< 24 kHz, 1
constexpr std::uint32_t kMPEG2 = 0xFFF9508;      ///< the first of MPEG-2
constexpr std::uint32_t kWithCRC = 0xFFF0508;    ///< the first with a check sum

/// A frame of a size, of so many blocks of 1024 samples, whose bytes after the header look like nothing.
inline std::string Frame(std::size_t aSize, std::uint32_t aFixed = kLC44Stereo, unsigned aBlocks = 1) {
    const std::uint64_t variable = std::uint64_t{aSize} << 13 | 0x7FFU << 2 | (aBlocks - 1);
    return Big(std::uint64_t{aFixed} << 28 | variable, 7) + std::string(aSize - 7, '1');
}

inline std::string Frames(unsigned aCount, std::size_t aSize, std::uint32_t aFixed = kLC44Stereo) {
    std::string frames;
    for (unsigned i = 0; i < aCount; ++i) {
        frames += Frame(aSize, aFixed);
    }
    return frames;
}

/// Frames of a varying size, aLeast to twice that.
inline std::string Varying(unsigned aCount, std::size_t aLeast, std::uint32_t aFixed = kLC44Stereo) {
    std::string frames;
    for (unsigned i = 0; i < aCount; ++i) {
        frames += Frame(aLeast + aLeast * (i * 7 % 11) / 10, aFixed);
    }
    return frames;
}

} // namespace adts
