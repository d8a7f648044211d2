#pragma once

#include "ezFormats/codecs/AudioFacts.h"

#include <cstddef>

// What one frame tells of its stream, its parts included, as a block of a container holds it: from its header
// on, and cut anywhere. Nothing is told where none begins there.

/// AC-3 and E-AC-3 (ETSI TS 102 366), whichever it is. The rate is told of AC-3 alone.
AudioFacts AC3Sound_Read(const unsigned char* aBytes, std::size_t aSize);

/// DTS, and what its extension makes of it (ETSI TS 102 114): a rate is not told.
AudioFacts DTSSound_Read(const unsigned char* aBytes, std::size_t aSize);

/// TrueHD and MLP, by a frame with a major sync: the first of a stream has one.
AudioFacts MLPSound_Read(const unsigned char* aBytes, std::size_t aSize);

/// MPEG audio of any layer. The rate of layer III is an estimate: its frames may each have another.
AudioFacts MPEGSound_Read(const unsigned char* aBytes, std::size_t aSize);
