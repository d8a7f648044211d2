#pragma once

#include "ezPlatform/base/Condition.h"
#include "ezPlatform/streams/Stream.h"

#include <cstddef>
#include <cstdint>

/// Reads a stream as ezStream::Read does, but waits where nothing has arrived yet: without an error and
/// before the end there is at least one byte.
///
/// The stream's threshold callback is registered only while this waits; nobody else may use the stream
/// meanwhile.
/// @param anArrived  to wait with; used for nothing else
/// @param aSize      in: the most to read, not 0; out: what was read
ezStreamingStatus WaitingRead(ezStream& aStream, ezCondition& anArrived, void* aBuffer, std::size_t* aSize);

/// Whether a stream goes on after a read.
enum class ReadEnding {
    None,   ///< as far as is known, it does
    End,    ///< these were the last bytes
    Limit,  ///< it does, but no more may be read
    Failed, ///< it cannot be read any more, and where it stands is not known
};

/// What a read within a limit came to.
struct LimitedRead {
    std::size_t mCount = 0; ///< bytes; 0 after a failure
    ReadEnding mEnding = ReadEnding::None;
};

/// The same within a limit: at most aLeft bytes are given. One more is read, so that a stream which ends at
/// the limit is known from one that goes on.
/// @param aSize  the most to read, not 0, and what the buffer takes
LimitedRead WaitingReadWithin(ezStream& aStream, ezCondition& anArrived, void* aBuffer, std::size_t aSize,
                              std::uint64_t aLeft);
