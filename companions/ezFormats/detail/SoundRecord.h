#pragma once

#include "ezPlatform/text/CString.h"

#include <cstdint>

class ezMediaInfo;

/// The facts of the sound of a file that holds nothing else. What is 0 is not known.
struct SoundFacts {
    ezCString mCodec;                ///< as kezInfo_AudioCodec names it
    std::uint32_t mSamplingRate = 0; ///< Hz
    std::uint32_t mChannels = 0;
    std::uint32_t mBitsPerSample = 0; ///< not stored where no sample has so many
    std::uint64_t mSamples = 0;       ///< of a channel, at mSamplingRate: the length
    const char* mDurationMethod = "header";
    std::uint64_t mBoundSamples = 0; ///< by which an estimate may be too long; 0: nothing tells

    /// Bits a second of a sound of varying rate whose length is not known: of what was seen of it.
    std::uint32_t mEstimatedBitRate = 0;
    std::uint64_t mBytes = 0;      ///< of the sound: the mean bit rate is that of these in that time
    std::uint32_t mBitRate = 0;    ///< bits a second, where the format states a constant one
    std::uint32_t mMaxBitRate = 0; ///< bits a second, of a varying one

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
