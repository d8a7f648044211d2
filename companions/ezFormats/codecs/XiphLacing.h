#pragma once

#include <cstddef>

/// Where the first of three headers begins that are laced as Xiph does (RFC 9559, 10.3.2): their number less
/// one, and the sizes of all but the last, come before it. 0 where nothing is laced so.
std::size_t XiphLacing_FirstAt(const unsigned char* aBytes, std::size_t aSize);
