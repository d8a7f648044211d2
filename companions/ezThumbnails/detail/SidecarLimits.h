#pragma once

#include <cstddef>

/// What the look for a picture beside a file may cost, whatever its folder holds.

/// Entries of a folder that are looked at: cameras put ten thousand into one, and a listing of these takes
/// some milliseconds. What the system lists after them is not seen.
inline constexpr std::size_t kSidecar_MaxEntries = 32768;

/// Pictures that are tried for one file: one of each name fits twice. Of more, which differ in case alone,
/// the first in the order of trying count.
inline constexpr std::size_t kSidecar_MaxCandidates = 64;
