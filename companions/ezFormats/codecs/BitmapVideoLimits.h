#pragma once

#include <cstdint>

/// What is read of a BITMAPINFOHEADER.

/// Bytes after it that are looked at: what sets a decoder up has some hundred.
inline constexpr std::uint64_t kBitmapVideo_MaxData = 4096;
