#pragma once

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <optional>

/// What Info says of who wrote the file, and when (RFC 9559, 5.1.2).
struct MatroskaWriting {
    std::optional<std::int64_t> mDate; ///< DateUTC: nanoseconds since the start of 2001
    ezCString mMuxingApp;
    ezCString mWritingApp;

    /// The second of the date as CleanDate has it, of the zone UTC; empty where none is stated.
    ezCString GetDate() const;
};
