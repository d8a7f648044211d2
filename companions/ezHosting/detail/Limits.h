#pragma once

#include <chrono>
#include <cstddef>

/// What a host bounds, beside what its options choose.

/// Bytes of a path that a message shows: paths of a request may have megabytes, and what the system takes has
/// at most four times as many. What follows is "...".
inline constexpr std::size_t kHost_MaxShownPath = 1024;

/// Milliseconds that one wait for a pool takes at most: a year, of which the clock can say when it is over.
inline constexpr std::chrono::milliseconds kHost_LongestWait = std::chrono::hours(24 * 365);
