#pragma once

#include "ezPlatform/base/Types.h"

/// What the command line takes. A number beyond these is wrong usage, and the message states the bound.

/// Seconds for which a web server may send nothing (--timeout): nobody waits longer than a day.
inline constexpr uint32 kArguments_MaxTimeout = 86'400;

/// Bytes that are pushed at once to elementary stream parsers (--packet): more at once is no packet any more.
inline constexpr uint32 kArguments_MaxPacketSize = 1U << 20;

/// Pixels of a thumbnail's side (--size): two of them are the largest thumbnail that is made.
inline constexpr uint32 kArguments_MaxThumbnailSide = 4'096;
