#pragma once

#include "ezFormats/ts/TSSections.h"

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <string_view>
#include <vector>

/// @name PIDs and tables of what a broadcast tells of its events (ETSI EN 300 468, 5.1.3)
/// @{
inline constexpr std::uint16_t kTSPID_Events = 0x12;
inline constexpr std::uint16_t kTSPID_Time = 0x14;
inline constexpr std::uint8_t kTSTable_Event = 0x4E;      ///< present and following, of this stream
inline constexpr std::uint8_t kTSTable_TimeOffset = 0x73; ///< the time
/// @}

/// An event of a broadcast (5.2.4). Its times are in seconds, 0 where they are not told.
struct TSEvent {
    std::uint16_t mService = 0; ///< the number of its program
    bool mfPresent = false;     ///< it is on at the time
    std::uint64_t mStart = 0;   ///< since 1970
    std::uint64_t mLength = 0;
    ezCString mTitle;
};

/// Adds the events of a section of the event table that have a name and are not there yet, up to
/// kTS_MaxEvents, and of one program up to kTS_MaxEventsOfProgram. Those of networks in Japan, whose texts
/// and times are of another kind, are left out.
void ReadTSEvents(const TSSection& aSection, std::vector<TSEvent>& anEvents);

/// The event that most of a recording is of: of those of its program, the one that goes on for longest in so
/// many seconds from a time on; where the time is not known, the first that is on. Null for none.
const TSEvent* FindTSEvent(const std::vector<TSEvent>& anEvents, std::uint16_t aService, std::uint64_t aStart,
                           std::uint64_t aLength);

/// The time that a section of the time offset table tells (5.2.6), in seconds since 1970; 0 for none.
std::uint64_t ReadTSTime(const TSSection& aSection);

/// A time as a record has it, "1999-12-31T23:59:58Z"; empty for 0.
ezCString TSTimeText(std::uint64_t aSeconds);

/// A text of a broadcast, of which the first bytes say how it is coded (annex A); empty for a coding that is
/// not read.
ezCString ReadTSText(std::string_view aBytes);
