#pragma once

#include <cstddef>

/// What a host bounds.

/// Bytes of a path that a message shows; what follows is "...". Paths of a request may have megabytes, and
/// what the system takes has at most four times as many.
inline constexpr std::size_t kHost_MaxShownPath = 1024;
