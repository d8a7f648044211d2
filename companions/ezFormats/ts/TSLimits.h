#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of a transport stream may cost, and what of it is looked at.

/// Reads of one parse: a usual one takes three. The rest is for recordings of high rates, whose windows grow
/// at both ends, and for places between the ends.
inline constexpr std::uint32_t kTS_MaxReads = 24;

/// Bytes of one parse: a window of 4 MiB at each end.
inline constexpr std::uint64_t kTS_MaxBytes = std::uint64_t{8} * 1024 * 1024;

/// Bytes before the first packet: what is left of a reply of a server, or of a packet. A stream that begins
/// later is not looked for.
inline constexpr std::uint64_t kTS_SearchSize = std::uint64_t{64} * 1024;

/// Packets in a row that make a stream: three are met by chance in MPEG audio and in pictures, eight are not.
inline constexpr std::uint32_t kTS_SyncRun = 8;

/// Packets in a row, in a file of fewer than kTS_SyncRun: its tables have to be there, which chance does not
/// make of three sync bytes.
inline constexpr std::uint32_t kTS_ShortRun = 3;

/// Places where packets of one size seem to begin that are tried: chance makes one or two before the right
/// one.
inline constexpr std::uint32_t kTS_MaxCandidates = 4;

/// Bytes at either end that are looked at first: a quarter of a second at 8 Mbit/s, in which tables, headers
/// and time stamps usually stand.
inline constexpr std::size_t kTS_WindowSize = std::size_t{256} * 1024;

/// Bytes at either end that are looked at, the most: a time stamp stands in every 0.7 seconds (2.7.4), which
/// are 3.5 MiB at 40 Mbit/s.
inline constexpr std::size_t kTS_MaxWindow = std::size_t{4} * 1024 * 1024;

/// Bytes of the start in which the tables of programs are waited for, and the sound of a film: they stand
/// twice in half a second, at 16 Mbit/s. Without tables the streams themselves tell.
inline constexpr std::size_t kTS_TableWindow = std::size_t{1024} * 1024;

/// Bytes of one block: half of what is looked at so far, and no more memory than that of two windows.
inline constexpr std::size_t kTS_LargestBlock = 2 * kTS_WindowSize;

/// Bytes at a place between the ends where the clock seems to have jumped: a clock of 100 ms stands in each
/// at 10 Mbit/s.
inline constexpr std::size_t kTS_InnerWindow = std::size_t{256} * 1024;

/// Places between the ends that are looked at then: what is left of the reads after both ends.
inline constexpr std::uint32_t kTS_InnerPlaces = 4;

/// Programs of a table that are looked at: a multiplex has thirty.
inline constexpr std::size_t kTS_MaxPrograms = 64;

/// Streams of a program that are looked at: films on discs have up to 32 of sound and as many of subtitles.
inline constexpr std::size_t kTS_MaxStreams = 80;

/// Streams of which the time stamps are kept: those of the programs of a whole multiplex.
inline constexpr std::size_t kTS_MaxStamped = 256;

/// Events of a program that are remembered: the one before the film, the film, and the one after it, and
/// those that replaced them.
inline constexpr std::size_t kTS_MaxEventsOfProgram = 8;

/// Events of all programs that are remembered: a broadcast tells of its whole multiplex, of each program the
/// present one and the following one, and which of them was recorded may be told later.
inline constexpr std::size_t kTS_MaxEvents = 2 * kTS_MaxPrograms;

/// Ticks of the program clock between two of its stamps, the most of one that goes on: they stand at most a
/// tenth of a second apart, and some writers take a second.
inline constexpr std::uint64_t kTS_MaxClockStep = std::uint64_t{2} * 90000;

/// Times as long, or as short, as the clock at some places tells all to be: rates that vary stay below, and a
/// clock that jumped hardly ever does.
inline constexpr std::uint64_t kTS_MaxDeviation = 3;
