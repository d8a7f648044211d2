#pragma once

#include "ezFormats/codecs/AudioFacts.h"

#include <cstddef>

// What sets a decoder up tells of a stream, as Matroska and Flash video hold it. Where it is not what it
// should be, that codec is all that is told, and of Opus its one rate.

/// AudioSpecificConfig (ISO/IEC 14496-3, 1.6.2.1): which kind of AAC it is, too.
AudioFacts AACSound_ReadConfig(const unsigned char* aBytes, std::size_t aSize);

/// OpusHead (RFC 7845, 5.1)
AudioFacts OpusSound_ReadConfig(const unsigned char* aBytes, std::size_t aSize);

/// What a file of FLAC begins with (RFC 9639, 8).
AudioFacts FLACSound_ReadConfig(const unsigned char* aBytes, std::size_t aSize);
