#pragma once

#include <cstddef>
#include <cstdint>

/// What decoding a picture of strangers may cost beside what hosts read of it in PictureThumbnailGenerator.h.

/// Bytes that are read of a picture's stream at once, each block whole: what the codecs make of a damaged
/// picture then does not depend on how fast it comes.
inline constexpr std::size_t kPicture_BlockSize = std::size_t{16} * 1024;

/// Bytes of a block that the PNG codec may take, and so of a chunk that is kept, which is one of eXIf: some
/// versions of the codec ask for as much as an eXIf states, whatever the limit on chunks. The largest row of
/// an allowed picture stays well below. Chunks that are passed over have no bound.
inline constexpr std::size_t kPNG_MaxBlock = std::size_t{4} * 1024 * 1024;

/// Gamma that a PNG states, in 100,000ths, the least: one below is a mistake, and not followed.
inline constexpr std::int32_t kPNG_MinGamma = 10'000;

/// Gamma that a PNG states, in 100,000ths, the most: one above is a mistake, and not followed.
inline constexpr std::int32_t kPNG_MaxGamma = 1'000'000;
