#pragma once

#include "ezFormats/codecs/AudioFacts.h"

#include <cstdint>

class ezMediaInfo;

/// The facts of a file that holds sound and nothing else. Its mBitRate is one that the format states as
/// constant; its mEstimatedBitRate, of a sound of varying rate whose length is not known, is that of what was
/// seen of it. Bits that no sample has are not stored.
struct SoundFacts : AudioFacts {
    std::uint64_t mSamples = 0; ///< of a channel, at mSamplingRate: the length
    const char* mDurationMethod = "header";
    std::uint64_t mBoundSamples = 0; ///< by which an estimate may be too long; 0: nothing tells
    std::uint64_t mBytes = 0;        ///< of the sound: the mean bit rate is that of these in that time

    /// The length and the constant rate of packets of one size, each of so many samples. Without a size or a
    /// count, and of several samples in bytes that cannot hold them, nothing is told.
    void SetPackets(std::uint64_t aBytes, std::uint32_t aPacketBytes, std::uint32_t aPacketSamples);

    /// Whether so many samples can be coded in so many bytes: no sound takes less than 100 bits a second, or
    /// more than 400 million.
    static bool IsLengthPlausible(std::uint64_t aBytes, std::uint64_t aSamples, std::uint32_t aSamplingRate);

    /// These are the bytes of the sound, and the count of samples is one that a header states: it is dropped
    /// where so many cannot be coded in so many bytes.
    void HoldAgainst(std::uint64_t aBytes);

    /// Milliseconds; 0 where it is not known, and for what is longer than any recording.
    std::uint64_t GetMilliseconds() const;
    /// Bits a second of mBytes; 0 where it cannot be told.
    std::uint32_t GetMeanBitRate() const;

    /// Puts all of it into a record, where a mean rate is the estimate of one that varies. A record of plain
    /// samples ("LPCM") has the sampling rate where those of all other codecs have the bit rate, which is
    /// then that of the whole.
    void Store(ezMediaInfo& anInfo) const;
};
