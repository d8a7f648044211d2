#pragma once

#include <cstddef>
#include <cstdint>

/// What a web server may cost beside the bytes of its media. Each bound lies far above what servers send.

/// Lines of all heads and trailers of one request: interim answers and redirects before the answer, the
/// answer, and what follows its last chunk. Servers send 10 to 40 lines of 20 to 500 bytes in a head, and a
/// request may be redirected ten times. libcurl keeps every line of an answer until the next one.
inline constexpr std::size_t kHttp_MaxHeadLines = 2'000;

/// Bytes of these lines, their ends counted.
inline constexpr std::size_t kHttp_MaxHeadBytes = std::size_t{256} * 1024;

/// In so many times the stall time that the host chose all heads and trailers of one request have to be
/// there, however steadily they come.
inline constexpr int kHttp_StallTimesToHead = 4;

/// Bytes of a URL that a redirect leads to. Servers are asked to take 8,000 (RFC 9110, section 4.1); every
/// entry of a playlist that lies there is resolved against it.
inline constexpr std::size_t kHttp_MaxURL = std::size_t{8} * 1024;

/// A part of the media that is shorter than this is a small one when the server makes it so and has to be
/// asked again for what follows. Servers and proxies that divide media do so by 64 KiB and more.
inline constexpr std::uint64_t kHttp_SmallPart = std::uint64_t{4} * 1024;

/// So many small parts are continued without a larger one between them, over the life of a stream; after
/// one more the server is given up. Else a server of one-byte parts would be asked once for each byte.
inline constexpr int kHttp_MaxSmallParts = 16;
