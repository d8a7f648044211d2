#pragma once

#include "ezBytes/BoxWalk.h"
#include "ezBytes/ByteReader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

class AVIFile;
struct AVIStream;
class MediaBytes;

/// The first frame of a stream that is not empty, which is asked for.
struct AVIFirstFrame {
    const AVIStream* mStream = nullptr; ///< borrowed; null: nothing is asked for
    std::size_t mMaximum = 0;           ///< bytes of it that are wanted
    std::vector<unsigned char> mBytes;  ///< none: it was not found

    bool IsWanted() const { return mStream != nullptr && mMaximum != 0 && mBytes.empty(); }
};

/// Looks for those of two streams, which may be the same.
void FindAVIFirstFrames(const AVIFile& aFile, AVIFirstFrame& aVideo, AVIFirstFrame& aSound,
                        std::uint32_t& aBudget);

/// What bytes of a file hold of one stream.
struct AVICount {
    std::uint64_t mBytes = 0;
    std::uint64_t mUnits = 0; ///< as the stream counts them
};

/// Counts the units of a stream in frames and in indexes.
class AVICounter {
public:
    /// All borrowed.
    AVICounter(MediaBytes& aBytes, const AVIStream& aStream, std::uint32_t aNumber, std::uint32_t& aBudget)
        : mBytes(aBytes), mStream(aStream), mNumber(aNumber), mBudget(aBudget) {}

    /// Those of the frames from a place on, one after the other, up to an end. A place that is not the start
    /// of a frame is moved to the next one.
    AVICount CountFrames(std::uint64_t aPlace, std::uint64_t anEnd, bool afAtFrame);
    /// Those that the entries of an index name.
    AVICount CountEntries(ByteReader anEntries);

private:
    std::optional<std::uint64_t> FindFrame(std::uint64_t aPlace, std::uint64_t anEnd);
    void Add(BoxType aName, std::uint64_t aSize, AVICount& aCount) const;

    MediaBytes& mBytes;
    const AVIStream& mStream;
    std::uint32_t mNumber;
    std::uint32_t& mBudget;
};
