#pragma once

#include "ezBytes/ByteReader.h"
#include "ezFormats/iso/ISOCodec.h"

#include <cstdint>
#include <optional>

/// The sample size table of a track ("stsz", "stz2"; ISO/IEC 14496-12, 8.7.3), of which only the head has
/// been read.
struct ISOSizeTable {
    std::uint32_t mCount = 0;        ///< samples
    std::uint32_t mConstantSize = 0; ///< bytes of each; 0: a size each follows
    unsigned mBits = 0;              ///< of a size
    std::optional<ByteReader> mSizes;

    /// Bytes of the table itself.
    std::uint64_t GetBytes() const { return (std::uint64_t{mCount} * mBits + 7) / 8; }
};

/// Where a sample stands in the file.
struct ISOSamplePlace {
    std::uint64_t mPosition = 0;
    std::uint64_t mSize = 0; ///< bytes; 0: not known
};

/// Bytes of the first samples of a table.
struct ISOSizeSum {
    std::uint64_t mSamples = 0;
    std::uint64_t mBytes = 0;
};

/// Adds the sizes up that stand in the first aMaxBytes of the table; all of them where the size is constant.
/// Nothing where the table is damaged.
ISOSizeSum SumSizes(const ISOSizeTable& aTable, std::uint64_t aMaxBytes);

/// What the sample tables of a track ("stbl"; ISO/IEC 14496-12, 8.5.1) tell.
struct ISOTables {
    ISOAudio mAudio;                 ///< of a track of audio
    ISOVideo mVideo;                 ///< of one of video
    std::uint64_t mTimedSamples = 0; ///< with the ticks that they take; 0 where it is not known
    std::uint64_t mTicks = 0;
    // How long the samples last, of the runs that were read, which may be the first of more; the last sample
    // may last as long as it likes
    std::uint32_t mLeastTicks = 0;
    std::uint32_t mMostTicks = 0;
    ISOSizeTable mSizes;

    /// @name Of video whose entry leaves open what the first sample may tell
    /// @{
    std::optional<ByteReader> mDescription; ///< "stsd"
    ISOSamplePlace mFirstSample;
    /// @}
};

enum class ISOTrackKind { kOther, kAudio, kVideo, kSubtitle };

/// Reads the tables of a track of audio or video, as far as they are needed, in the order of the file.
ISOTables ReadTables(const ByteReader& aBox, ISOTrackKind aKind, std::uint32_t& aBoxBudget);
