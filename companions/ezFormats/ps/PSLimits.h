#pragma once

#include <cstddef>
#include <cstdint>

/// What one parse of a program stream or of a system stream may cost.

/// Reads of one parse: a usual one takes the start, the rest of the first window, and the last; further ones
/// are for ends without a time, places between, and the file beside it that a DVD has.
inline constexpr std::uint32_t kPS_MaxReads = 24;

/// Bytes of one parse: both windows grown to the most, and some places between.
inline constexpr std::uint64_t kPS_MaxBytes = std::uint64_t{8} * 1024 * 1024;

/// Program chains of a title set that are looked at: a disc of episodes has a dozen. The format allows 999.
inline constexpr std::uint32_t kIFO_MaxChains = 128;

/// Cells of a title set that are kept: a film has some thirty, and a chain 255 at the most.
inline constexpr std::size_t kIFO_MaxCells = 2048;

/// Bytes of the stream that are looked at in one piece: time stamps of sound come every few KiB, those of
/// pictures every half a second, which is so much at 4 Mbit/s. Two of them and the middle are 512 KiB.
inline constexpr std::size_t kPS_WindowSize = std::size_t{240} * 1024;

/// Windows from the start on that are looked through for tracks, and for what their codecs are: sound may
/// come as much later as a player holds of pictures.
inline constexpr std::uint32_t kPS_MaxStartWindows = 4;

/// Windows from the end back that are looked through for time stamps: one is enough but for a still picture
/// at the end, and padding.
inline constexpr std::uint32_t kPS_MaxEndWindows = 4;

/// Windows between start and end that tell the rate of a file whose clock begins anew: as many titles of a
/// disc are told apart.
inline constexpr std::uint32_t kPS_MiddleWindows = 6;

/// Bytes before the first packet: what is left of one that was cut, and the head of a response that was saved
/// with it. Other formats hold what looks like a packet somewhere.
inline constexpr std::size_t kPS_MaxJunk = std::size_t{64} * 1024;

/// Packets in a row that make a stream of what does not begin with a pack header: two may follow each other
/// by chance in any format that wraps one.
inline constexpr std::size_t kPS_LeastPackets = 3;

/// Tracks that are kept: a DVD has at most one of pictures, eight of sound and thirty-two of subtitles.
inline constexpr std::size_t kPS_MaxTracks = 48;

/// Ticks of 90 kHz by which the clock of the packs goes on from one to the next, the most: they come at least
/// every 0.7 seconds. After a longer step another recording begins.
inline constexpr std::uint64_t kPS_MaxClockStep = std::uint64_t{10} * 90000;

/// Ticks by which a pack may be before the one before it: multiplexers round. More, and the clock begins
/// anew.
inline constexpr std::uint64_t kPS_MaxClockSlip = 9000;

/// Times that the length by the stamps of both ends may be of the length by the rate within these, or the
/// other way round: rates of video vary so much, and clocks that began anew mostly differ more.
inline constexpr std::uint32_t kPS_MaxRateFactor = 3;

/// Reads and bytes of the information of a title set beside a video object: the start and three places of it.
inline constexpr std::uint32_t kIFO_MaxReads = 4;

/// Bytes of these: a title set's tables up to its program chains take some ten KiB.
inline constexpr std::uint64_t kIFO_MaxBytes = std::uint64_t{160} * 1024;

/// Bytes of a file from which on its middle is asked whether the clock runs on: below, both ends are most of
/// it.
inline constexpr std::uint64_t kPS_MiddleSize = std::uint64_t{4} * 1024 * 1024;

/// Part of the length by the rates by which the stamps may tell less before more places than the middle are
/// asked: less than that rates of one recording vary, and a recording before another adds more.
inline constexpr std::uint64_t kPS_DoubtShare = 5;

/// Bytes of the middle that are read: packs, of which each has the clock, come every few KiB.
inline constexpr std::size_t kPS_MiddleWindow = std::size_t{32} * 1024;

/// Parts of a file of which all but one must lie in cells of the title set: it may hold what no title plays.
inline constexpr std::uint64_t kIFO_MinShare = 8;
