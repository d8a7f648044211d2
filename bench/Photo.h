#pragma once

#include <cstddef>
#include <string>

/// What the benchmarks know of JPEG: a photo to make thumbnails of, and what its codec alone needs for it.

inline constexpr unsigned kPhoto_Width = 4000;
inline constexpr unsigned kPhoto_Height = 3000;

/// A baseline JPEG of 12 million pixels (4:2:0, quality 90): gradients, shapes of all sizes, and the noise of
/// a sensor. Some 4 MB, as photos of that size have.
std::string Photo_Bytes();

/// Decodes all rows of the JPEG of a file to RGB and drops them, with the codec's settings for speed before
/// quality, at so many eighths of its sides. The width that came out.
unsigned Photo_Decode(const std::string& aPath, unsigned anEighths);
