#pragma once

#include "ezFormats/mpegsystem/StreamClock.h"
#include "ezFormats/ts/TSEvents.h"
#include "ezFormats/ts/TSPackets.h"
#include "ezFormats/ts/TSSections.h"
#include "ezFormats/ts/TSTables.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

/// The program clock in parts of a file: how long it says that so many bytes take, jumps not counted.
struct TSClock {
    std::optional<std::uint64_t> mFirst; ///< ticks of kStreamClock_Rate
    std::uint64_t mLast = 0;
    std::uint64_t mLastPosition = 0;
    std::uint64_t mTicks = 0;
    std::uint64_t mBytes = 0;

    void Add(std::uint64_t aClock, std::uint64_t aPosition, bool afDiscontinuity);
    /// Adds what another place told of how fast the clock goes; the ends stay.
    void AddRate(const TSClock& anOther);
};

/// What the packets of a PID showed.
struct TSSeen {
    std::uint64_t mPackets = 0;      ///< with a payload
    std::uint64_t mScrambled = 0;    ///< of these
    std::uint64_t mPayloadBytes = 0; ///< of streams, the heads of their packets included
    std::uint8_t mStreamID = 0;      ///< of the first packet of a stream; 0 for none
    StampWindow mStamps;
    std::uint64_t mLastPayload = 0; ///< bytes of the packet that has the latest stamp; 0: not stated
    TSClock mClock;

    bool IsScrambled() const { return mScrambled * 2 > mPackets; }
};

/// What parts of a file showed of all PIDs.
class TSScan {
public:
    TSScan();

    /// The packets of a part, which follow each other.
    void Take(const TSPacket& aPacket);

    /// Null for a PID of which no packet was seen.
    const TSSeen* Find(std::uint16_t aPID) const;
    std::uint64_t GetStampsSeen() const { return mStampsSeen; }
    bool AreStampsZero() const { return mfStampsZero; }
    /// Bytes of packets.
    std::uint64_t GetBytes() const { return mPackets * kTSPacket_Size; }
    /// PIDs on which packets of streams begin, in the order in which they came.
    std::vector<std::uint16_t> GetStreamPIDs() const;

private:
    TSSeen* SeenOf(std::uint16_t aPID);

    std::vector<std::int16_t> mPlaces; ///< in mSeen, of each PID; -1: none
    std::vector<std::pair<std::uint16_t, TSSeen>> mSeen;
    std::uint64_t mPackets = 0;
    std::uint64_t mStampsSeen = 0;
    bool mfStampsZero = true;
};

/// Reads the tables of a stream: its programs, and what it tells of events.
class TSTableReader {
public:
    void Take(const TSPacket& aPacket);
    /// What comes next does not follow what came before.
    void Break();

    const std::vector<TSProgram>& GetPrograms() const { return mPrograms; }
    const std::vector<TSEvent>& GetEvents() const { return mEvents; }
    /// The first time that was told, in seconds since 1970; 0 for none.
    std::uint64_t GetTime() const { return mTime; }

private:
    TSSectionReader* ReaderOf(std::uint16_t aPID);
    bool IsMap(std::uint16_t aPID) const;
    void TakeSection(std::uint16_t aPID, const TSSection& aSection);

    std::vector<TSProgram> mPrograms;
    std::vector<TSEvent> mEvents;
    std::uint64_t mTime = 0;
    std::vector<std::pair<std::uint16_t, TSSectionReader>> mReaders;
};
