#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>

/// What a description of AC-4 tells (ETSI TS 103 190-2, annex E: ac4_dsi_v1). Numbers are 0 where it does
/// not.
struct AC4Config {
    std::uint32_t mSamplingRate = 0; ///< Hz
    std::uint32_t mChannels = 0;     ///< of the first presentation, where it is one of channels
    std::uint32_t mBitRate = 0;      ///< bits a second, of all presentations
};

/// Reads the content of a "dac4" box. What is damaged, or of a later version, tells nothing.
AC4Config ReadAC4Config(ByteReader aBox);
