#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"

/// Tells which elementary stream of a carrier is parsed. Owned by its parser; used by one thread at a time.
class EZPARSERS_API ezElementaryStreamInfo {
public:
    /// @param aName  borrowed: it outlives the object
    /// @param anID   the stream's identifier in whatever carries it
    ezElementaryStreamInfo(const char* aName, uint32 anID) : mName(aName), mID(anID) {}
    virtual ~ezElementaryStreamInfo();

    /// The name as it was given; it still belongs to whoever gave it.
    const char* GetName() const { return mName; }
    /// The identifier as it was given; its meaning is that of the carrier (a PID, a stream_id).
    uint32 GetID() const { return mID; }

protected:
    const char* mName; ///< borrowed
    uint32 mID;        ///< in whatever carries the stream
};
