#pragma once

#include "ezBytes/OggPages.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>

class ByteReader;

/// What the first packet of a stream tells of it. What is 0 is not known.
struct OggStream {
    std::uint32_t mSerial = 0;
    const OggMark* mMark = nullptr; ///< null: of a kind that nothing is told of
    ezCString mCodec;               ///< as kezInfo_AudioCodec and kezInfo_VideoCodec name it
    std::uint32_t mSamplingRate = 0;
    std::uint32_t mChannels = 0;
    std::uint32_t mBitsPerSample = 0;
    std::uint32_t mBitRate = 0; ///< where it is constant
    std::uint32_t mMaxBitRate = 0;
    std::uint64_t mSamples = 0; ///< where the header counts them

    // The time of a position
    std::uint64_t mTicks = 0; ///< so many take mSeconds seconds
    std::uint64_t mSeconds = 1;
    std::uint32_t mPreSkip = 0;       ///< samples that are not heard
    unsigned mKeyShift = 0;           ///< of Theora: bits of the pictures since the last key picture
    std::uint32_t mPacketSamples = 0; ///< the most that a packet holds; 0 of Opus, where each tells

    bool IsVideo() const { return mMark != nullptr && OggKind_IsVideo(mMark->mKind); }
    bool IsSound() const { return mMark != nullptr && !IsVideo(); }

    /// Microseconds of what is heard or seen up to a position; 0 where the kind tells no time.
    std::uint64_t TimeOf(std::uint64_t aGranule) const;
};

/// Reads the first packet of a stream. One whose numbers cannot be is of no kind.
OggStream ReadOggStream(const ByteReader& aPacket, std::uint32_t aSerial);

/// Samples at 48 kHz of the packet of Opus that a reader is at the start of (RFC 6716, 3.1).
std::uint32_t OpusSamplesOf(ByteReader aPacket);
