#pragma once

#include "support/CommentBytes.h"
#include "support/NumberBytes.h"

#include <cstddef>
#include <cstdint>
#include <string>

// FLAC streams, byte by byte.

namespace flac {

/// The first block, and how the frames after it look.
struct Stream {
    std::uint32_t mRate = 44100;
    unsigned mChannels = 2;
    unsigned mBits = 16;
    std::uint64_t mSamples = 44100;
    unsigned mBlockSize = 4096;

    /// The block without its header: block sizes, frame sizes, the numbers, and a check sum of the sound.
    std::string Info() const {
        const std::uint64_t numbers = std::uint64_t{mRate} << 44 | std::uint64_t{mChannels - 1} << 41 |
                                      std::uint64_t{mBits - 1} << 36 | mSamples;
        return Big(mBlockSize, 2) + Big(mBlockSize, 2) + Big(0, 6) + Big(numbers, 8) + std::string(16, 'm');
    }
};

/// The check sum of a header.
inline std::string Crc8(const std::string& aBytes) {
    unsigned sum = 0;
    for (const char character : aBytes) {
        sum ^= static_cast<unsigned char>(character);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum << 1 ^ ((sum & 0x80) != 0 ? 7U : 0U)) & 0xFFU;
        }
    }
    return Big(sum, 1);
}

/// A number as a header codes it, in so many bytes after the first.
inline std::string Coded(std::uint64_t aNumber, unsigned aMore) {
    if (aMore == 0) {
        return Big(aNumber, 1);
    }
    std::string bytes = Big((0xFF00U >> (aMore + 1) & 0xFFU) | aNumber >> 6 * aMore, 1);
    for (unsigned i = aMore; i-- > 0;) {
        bytes += Big(0x80 | (aNumber >> 6 * i & 0x3F), 1);
    }
    return bytes;
}

/// A header: the word of sync and codes, its number, what stands after that, and the check sum. The default
/// is of 4096 samples a block at 44100 Hz, two channels of 16 bits.
inline std::string FrameHeader(std::uint64_t aNumber, unsigned aMore = 2, std::uint32_t aCodes = 0xFFF8C918,
                               const std::string& aAfter = "") {
    const std::string header = Big(aCodes, 4) + Coded(aNumber, aMore) + aAfter;
    return header + Crc8(header);
}

/// Frames from a number on, each of so many bytes after its header.
inline std::string Frames(std::uint64_t aFirst, std::uint64_t aCount, std::size_t aSize = 5) {
    std::string frames;
    for (std::uint64_t i = 0; i < aCount; ++i) {
        frames += FrameHeader(aFirst + i) + std::string(aSize, 's');
    }
    return frames;
}

/// A file: STREAMINFO, other blocks, padding, and what comes after that.
inline std::string File(const Stream& aStream, const std::string& aBlocks, const std::string& aFrames) {
    return "fLaC" + FlacBlock(0, aStream.Info()) + aBlocks + FlacBlock(1, std::string(9, '\0'), true) +
           aFrames;
}

} // namespace flac
