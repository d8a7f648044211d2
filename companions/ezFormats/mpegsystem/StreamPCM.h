#pragma once

#include "ezFormats/mpegsystem/StreamSound.h"

#include <cstddef>

/// The heads that stand before plain samples in the packets of a stream, of which the first is read. A head
/// that is damaged, or not all there, tells nothing.

/// As HDMV has it: size, channels, rate and bits in four bytes.
StreamSound ReadLPCMOfDisc(const unsigned char* aBytes, std::size_t aSize);

/// As DVD-Video has it, from the byte after the place of the first access unit on: flags; bits, rate and
/// channels.
StreamSound ReadLPCMOfDVD(const unsigned char* aBytes, std::size_t aSize);

/// SMPTE ST 302: the samples lie in frames of AES3, at 48 kHz.
StreamSound ReadS302M(const unsigned char* aBytes, std::size_t aSize);
