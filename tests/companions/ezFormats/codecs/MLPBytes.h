#pragma once

#include "companions/ezFormats/elementary/EltStreamKit.h"

#include "support/NumberBytes.h"

#include <cstdint>
#include <string>

/// Streams of TrueHD and MLP as bytes.
namespace mlp {

constexpr std::uint32_t kTrueHD = 0xF8726FBA;
constexpr std::uint32_t kMLP = 0xF8726FBB;

/// 48 kHz: left and right, middle, low, and a pair, of up to six and eight channels.
constexpr std::uint32_t kSixAt48 = 0x0007800F;
/// MLP of 24 bits at 44.1 kHz in two channels.
constexpr std::uint32_t kTwoAt44 = 0x2F8F0001;

/// A major sync: the highest rate in sixteenths of a bit for each sample.
inline std::string Sync(std::uint32_t aSync, std::uint32_t aFormat, unsigned aPeak = 3199) {
    return Big(aSync, 4) + Big(aFormat, 4) + Big(0xB752, 2) + Big(0, 4) + Big(0x8000U | aPeak, 2);
}

/// An access unit of a size, with a sync or without one, of so many substreams.
inline std::string Unit(const std::string& aSync, unsigned aSize, unsigned aSubstreams = 2,
                        unsigned aTime = 0x4321) {
    std::string unit = Big(aSize / 2, 2) + Big(aTime, 2) + aSync;
    unit += aSync.empty() ? "" : Big(aSubstreams << 4, 1) + Big(0, 11);
    for (unsigned i = 0; i < aSubstreams; ++i) {
        unit += i % 2 == 0 ? Big(0x9001, 2) + Big(0x5A00, 2) : Big(0x1003, 2); // with a word more or without
    }
    unsigned sum = 0;
    for (std::size_t i = 0; i < unit.size() && aSync.empty(); ++i) {
        sum ^= static_cast<unsigned char>(unit[i]);
    }
    const unsigned check = 0xFU ^ ((sum >> 4 ^ sum) & 0xFU);
    unit[0] = static_cast<char>(static_cast<unsigned char>(unit[0]) | check << 4);
    return unit + std::string(aSize - unit.size(), '\x77');
}

/// Units of which each so-manieth has a sync, of sizes from one on.
inline std::string Units(unsigned aCount, unsigned aLeast, const std::string& aSync, unsigned aEvery = 8,
                         unsigned aStep = 6) {
    std::string units;
    for (unsigned i = 0; i < aCount; ++i) {
        units += Unit(i % aEvery == 0 ? aSync : "", aLeast + i % 7 * aStep);
    }
    return units;
}

} // namespace mlp
