#pragma once

#include "ezFormats/Export.h"

class ezUndeterminedEltStreamParser;

/// Adds a parser of every format of this library to a race, in their fixed order: H264, H265, MPEGVideo, VC1,
/// MPEG4, AC3, EAC3, ADTS, MPEGAudio, the one with the most telling headers first. Not while the race is
/// open.
///
/// All of them search for 2 MiB and leave, if they do, with the same byte. For packets smaller than that, and
/// a stream that one of them alone knows, neither the winner, nor its record, nor the order of leaving
/// depends on where the packets are cut. Of two that know it (MP3 with AC-3 after it) the one that completes
/// with the earlier packet wins, and within one packet the one that stands first here.
EZFORMATS_API void AddEltStreamCandidates(ezUndeterminedEltStreamParser& aRace);
