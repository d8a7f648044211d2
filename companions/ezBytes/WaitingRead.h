#pragma once

#include "ezPlatform/base/Condition.h"
#include "ezPlatform/streams/Stream.h"

#include <cstddef>

/// Reads a stream as ezStream::Read does, but waits where nothing has arrived yet: without an error and
/// before the end there is at least one byte.
///
/// The stream's threshold callback is registered only while this waits; nobody else may use the stream
/// meanwhile.
/// @param anArrived  to wait with; used for nothing else
/// @param aSize      in: the most to read, not 0; out: what was read
ezStreamingStatus WaitingRead(ezStream& aStream, ezCondition& anArrived, void* aBuffer, std::size_t* aSize);
