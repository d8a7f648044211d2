#pragma once

#include "ezBytes/ByteReader.h"

#include <cstdint>

/// What the first header of a Vorbis stream tells (Vorbis I, 4.2.2). What is 0 is not told.
struct VorbisHeader {
    std::uint32_t mSamplingRate = 0; ///< Hz; 0 for what is no such header
    std::uint32_t mChannels = 0;
    std::uint32_t mBitRate = 0;        ///< bits a second, of a constant rate
    std::uint32_t mMaxBitRate = 0;     ///< bits a second
    std::uint32_t mNominalBitRate = 0; ///< bits a second, at which its encoder aimed
    std::uint32_t mPacketSamples = 0;  ///< of a channel, in a packet, the most
};

/// Reads it. aPacket stands at its start.
VorbisHeader ReadVorbisHeader(ByteReader aPacket);
