#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class ezMediaInfo;

/// A candidate that gave up.
struct RaceDeparture {
    std::string mName;
    std::uint64_t mByte; ///< bytes that had been pushed, with the packet in which it left
};

/// What a race of all elementary stream parsers on one stream came to.
struct RaceResult {
    std::string mPath;
    std::vector<RaceDeparture> mLeft;    ///< in the order of leaving
    std::string mWinner;                 ///< "" when nobody won
    std::uint64_t mPushed = 0;           ///< bytes, up to the decision or the end of the stream
    std::vector<std::string> mUndecided; ///< those that still wanted data in the end, when nobody won
    std::unique_ptr<ezMediaInfo> mInfo;  ///< the winner's record; null when nobody won

    RaceResult();
    RaceResult(RaceResult&&) noexcept;
    RaceResult& operator=(RaceResult&&) noexcept;
    ~RaceResult();
};

/// The sizes of the packets in which a stream is pushed, one after the other.
class PacketSizes {
public:
    /// @param aSize  bytes; 0 for a fixed row of odd sizes, over and over
    explicit PacketSizes(unsigned aSize) : mSize(aSize) {}
    std::size_t Next();

private:
    unsigned mSize;
    std::size_t mIndex = 0;
};

/// Brings the next bytes of a stream, at most so many as the argument says into a buffer that takes them:
/// their number, 0 at the end.
using RaceSource = std::function<std::size_t(char*, std::size_t)>;

/// Lets all parsers of companions/ezFormats race on what a source brings, until one has won, all have left,
/// or the stream ends. The path of the result is left empty.
RaceResult RunRace(const RaceSource& aSource, PacketSizes aSizes);
