#pragma once

#include "ezFormats/codecs/AudioFacts.h"
#include "ezFormats/mpegsystem/StreamCodec.h"

#include <cstddef>
#include <cstdint>

/// What the sound of a track is, by the first bytes of it.
struct StreamSound {
    AudioFacts mFacts;
    std::uint32_t mFrameTicks = 0; ///< of kStreamClock_Rate that a frame takes; 0: not known
    std::uint32_t mFrameBytes = 0; ///< the mean of those that are there; 0: not known

    /// Ticks of the frames in so many bytes of payload, one at the least; 0 where a frame's are not known.
    std::uint64_t GetTicksOf(std::uint64_t aBytes) const;
};

/// Reads the sound of a track in a transport or program stream.
///
/// @param aCodec  as the tables say, or Unknown: then what the payload looks like decides. Where the payload
///                is of another codec than the tables say, it is believed
/// @param aBytes  the track's payload from a packet's first byte on, without what a container puts before it
///                (substreams of program streams); of StreamPayload
/// @return without a codec's name where nothing is found
StreamSound ReadStreamSound(StreamCodec aCodec, const unsigned char* aBytes, std::size_t aSize);
