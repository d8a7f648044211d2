#pragma once

#include "ezBytes/ChunkWalk.h"

#include <cstdint>

/// How a file of RIFF or its kin begins.
struct WAVHead {
    ChunkLayout mLayout = kChunks_RIFF;
    BoxType mKind; ///< "RIFF", "RIFX", "RF64", "BW64", "riff" of Wave64; four NULs for a file of another kind
    BoxType mForm; ///< "WAVE"; what another file of chunks is
    std::uint64_t mSize = 0; ///< what the file states to have after the head's first eight bytes
};

/// Reads it; aReader stands at the first chunk then, where the form is "WAVE".
WAVHead ReadWAVHead(ByteReader& aReader);

/// Where the sound of such a file lies.
struct WAVSound {
    bool mfFound = false;
    std::uint64_t mStart = 0; ///< position
    std::uint64_t mSize = 0;  ///< bytes; 0 where they cannot be told
    std::uint64_t mEnd = 0;   ///< position that no sound is at or after
    bool mfMeasured = false;  ///< by the file, as the chunk states no size, or one that cannot be
};

/// The chunks of a WAV file or its kin, whose sound may be larger than its size can say: of RF64 and BW64
/// (EBU Tech 3306, 3; ITU-R BS.2088) the sizes stand in a chunk of their own; a plain file loses the upper
/// bits, so that the whole is longer than it states by a multiple of 4 GiB. A size of 0 or all ones, or
/// beyond the end of the file, is measured by the file.
class WAVWalk {
public:
    /// @param aReader      stands at the first chunk, and ends with the file
    /// @param aHead        of the form "WAVE"
    /// @param afSizeKnown  the end of aReader is that of the file, and not only a bound
    /// @param aBudget      borrowed, counts down the chunks of all walks
    WAVWalk(const ByteReader& aReader, const WAVHead& aHead, bool afSizeKnown, std::uint32_t& aBudget)
        : mHead(aHead),
          mfSizeKnown(afSizeKnown),
          mFirst(aReader.GetPosition()),
          mEnd(aReader.GetPosition() + aReader.GetLeft()),
          mSizes(aReader),
          mWalk(aReader, aHead.mLayout, aBudget) {}

    /// The next chunk; of the sound as far as it is there. Where that states no size, chunks that follow its
    /// head are found all the same.
    bool Next(BoxType* aName, ByteReader* aContent);

    /// The sound, once Next has come past it.
    const WAVSound& GetSound() const { return mSound; }
    /// Samples of a channel, as the chunk of large sizes states them; 0: not stated.
    std::uint64_t GetLargeSampleCount() const { return mSamples64; }

private:
    bool Is64() const { return mHead.mKind == "RF64" || mHead.mKind == "BW64"; }
    void TakeLargeSizes(ByteReader aContent);
    std::uint64_t LargeSizeOf(BoxType aName) const;
    void TakeSound(const ByteReader& aContent);
    std::uint64_t StatedSound() const;
    std::uint64_t LostBytes(std::uint64_t aStated, std::uint64_t aThere) const;

    WAVHead mHead;
    bool mfSizeKnown;
    std::uint64_t mFirst;      ///< position of the first chunk
    std::uint64_t mEnd;        ///< position
    bool mfLargeSizes = false; ///< what follows has been read
    std::uint64_t mSound64 = 0;
    std::uint64_t mSamples64 = 0;
    ByteReader mSizes; ///< at the table of those of other chunks
    ChunkWalk mWalk;
    WAVSound mSound;
};
