#pragma once

#include "ezBytes/BoxWalk.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>

/// What the four characters that name a codec in AIFF-C, CAF and ISO media tell of the sound. Numbers are 0
/// where they do not.
struct PacketSound {
    ezCString mCodec;                 ///< as kezInfo_AudioCodec names it
    bool mfPlain = false;             ///< samples as they are; their bits count
    std::uint32_t mBitsPerSample = 0; ///< where the file's own number need not be right
    std::uint32_t mPacketBytes = 0;   ///< of a channel, of packets of one size
    std::uint32_t mPacketSamples = 0; ///< in such a packet
};

PacketSound PacketSoundOf(BoxType aName);
