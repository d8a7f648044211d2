#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

/// What a web server may cost beside the bytes of its media, and how media that arrive are read. Each bound
/// on a server lies far above what servers send.

/// Lines of all heads and trailers of one request: interim answers and redirects before the answer, the
/// answer, and what follows its last chunk. Servers send 10 to 40 lines of 20 to 500 bytes in a head, and a
/// request may be redirected ten times. libcurl keeps every line of an answer until the next one.
inline constexpr std::size_t kHttp_MaxHeadLines = 2'000;

/// Bytes of these lines, their ends counted: a hundred and more for each.
inline constexpr std::size_t kHttp_MaxHeadBytes = std::size_t{256} * 1024;

/// Times the stall time that the host chose, in which all heads and trailers of one request have to be there:
/// however steadily they come, a server is not waited for longer.
inline constexpr int kHttp_StallTimesToHead = 4;

/// Milliseconds of the stall time, the most that is multiplied: so the product fits.
inline constexpr std::chrono::milliseconds kHttp_LongestShare{60'000};

/// Milliseconds that one wait for the server takes at most: libcurl takes them as an int. It is then asked
/// again, so nothing ends by it.
inline constexpr std::chrono::milliseconds kHttp_LongestPoll{60'000};

/// Bytes of a URL that a redirect leads to: servers are asked to take 8,000 (RFC 9110, section 4.1), and
/// every entry of a playlist that lies there is resolved against it.
inline constexpr std::size_t kHttp_MaxURL = std::size_t{8} * 1024;

/// Bytes below which a part of the media is a small one, when the server makes it so and has to be asked
/// again for what follows: servers and proxies that divide media do so by 64 KiB and more.
inline constexpr std::uint64_t kHttp_SmallPart = std::uint64_t{4} * 1024;

/// Small parts that are continued without a larger one between them, over the life of a stream: a server of
/// one-byte parts would be asked once for each byte. After one more the server is given up.
inline constexpr int kHttp_MaxSmallParts = 16;

/// Bytes of one read from a descriptor: what a pipe of the system holds by default, so that one read empties
/// it.
inline constexpr std::size_t kDescriptor_ReadSize = std::size_t{64} * 1024;
