#pragma once

#include <cstdint>

class ByteReader;

/// Sampling rates that files hold as floating point numbers, the most significant byte first. In Hz; 0 for
/// what is not a number, and for a rate that nothing is sampled at: below 1 Hz or above 10 MHz.

/// One of 64 bits (IEEE 754), as QuickTime and CAF have it; its fraction is dropped.
std::uint32_t ReadFloatRate(ByteReader& aReader);

/// One of 80 bits, as AIFF has it; rounded, as rates of the first Macintosh have a fraction.
std::uint32_t ReadExtendedRate(ByteReader& aReader);
