#pragma once

#include "ezFormats/codecs/VideoFacts.h"
#include "ezFormats/mpegsystem/StreamPayload.h"
#include "ezFormats/mpegsystem/StreamSound.h"
#include "ezFormats/ts/TSScan.h"

#include <cstdint>
#include <optional>
#include <vector>

class MediaBytes;

/// A stream of the program that plays, and what its payload told.
struct TSTrack {
    TSStream mStream;
    StreamPayload mPayload;
    bool mfRead = false; ///< all is told that is going to be
    std::optional<VideoFacts> mVideo;
    std::optional<StreamSound> mSound;

    TSTrack(TSStream aStream, std::size_t aMaxPayload);
    /// Reads what the payload tells so far.
    void Read();
};

/// The start of a transport stream: read until its tables, the headers of its tracks and their first time
/// stamps were there, or as far as is allowed.
class TSHead {
public:
    /// @param aBytes  borrowed
    TSHead(MediaBytes& aBytes, const TSLayout& aLayout);

    void Read();

    const TSLayout& GetLayout() const { return mLayout; }
    const TSScan& GetScan() const { return mScan; }
    TSTableReader& GetTables() { return mTables; }
    /// The program that plays first; null where no map tells.
    const TSProgram* GetProgram() const;
    std::uint16_t GetClockPID() const;
    /// Those of the program; or all that there are, where no map tells.
    const std::vector<TSTrack>& GetTracks() const { return mTracks; }
    /// The first of a kind of which packets were seen, else the first that is named; null for none.
    const TSTrack* FindTrack(StreamKind aKind) const;
    /// Where the part ends that was read.
    std::uint64_t GetEnd() const { return mEnd; }

private:
    bool ReadBlock(std::size_t aSize);
    bool ChooseProgram();
    bool Occurs(const TSProgram& aProgram, StreamKind aKind) const;
    void MakeTracks();
    void Gather(const unsigned char* aBlock, std::size_t aSize, std::uint64_t aPosition);
    bool IsTold(const TSTrack& aTrack) const;
    bool IsEnough() const;

    MediaBytes& mBytes;
    const TSLayout mLayout;
    TSScan mScan;
    TSTableReader mTables;
    std::optional<std::size_t> mProgram;
    std::vector<TSTrack> mTracks;
    std::uint64_t mEnd = 0;
};
