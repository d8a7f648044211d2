#pragma once

#include <cstddef>

/// What a playlist from a pipe or a web server may cost before a reader has it.

/// Bytes of a playlist that does not come from a file, and is held in memory: half a million entries with
/// long names. A larger one is refused.
inline constexpr std::size_t kPlaylistSource_MaxSize = std::size_t{64} * 1024 * 1024;

/// Bytes of one read of it: what a pipe of the system holds by default.
inline constexpr std::size_t kPlaylistSource_Block = std::size_t{64} * 1024;

/// Bytes at the start of a playlist without a known extension or type, by which its kind is told: what tells
/// it stands at the start.
inline constexpr std::size_t kPlaylistBeginning_Looked = 1'024;
