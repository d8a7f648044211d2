#pragma once

#include "ezFormats/flv/FLVParser.h"

#include "companions/ezFormats/ChunkBytes.h"
#include "companions/ezFormats/elementary/EltStreamKit.h"

#include "support/FlvBytes.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

// What the tests of Flash video share.

using namespace flv;

using Keys = std::vector<const char*>;

inline constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinite = std::numeric_limits<double>::infinity();

inline std::string Values(const std::string& aBytes, const Keys& aKeys) {
    return chunks::Values<FLVParser>(aBytes, aKeys);
}
inline std::string Refusal(const std::string& aBytes) {
    return pictures::Refusal<FLVParser>(aBytes);
}

/// A second of pictures and sound, after metadata where there are some.
inline std::string Film(const std::string& aMetaData = "", unsigned aFlags = 5) {
    return Header(aFlags) + (aMetaData.empty() ? "" : MetaData(aMetaData)) + Frames(1000);
}
