#pragma once

#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/frames/FrameFileParser.h"
#include "ezFormats/frames/FrameLimits.h"

#include <memory>
#include <utility>

class ByteReader;

/// AAC in ADTS frames (ISO/IEC 13818-7, 6.2; ISO/IEC 14496-3, annex 1.A), after ID3v2 too. Rate and channels
/// are those of the core: a header never says whether there is SBR or parametric stereo.
///
/// A file is one when four frames follow each other at its start or after its leading tags, or fewer that
/// reach its end; or eight anywhere in the 64 KiB after that. No header tells a length: FrameMeasure does.
///
/// A parse reads the first 16 KiB, the last 16 KiB, and six places of 16 KiB between them. At most these are
/// 32 reads, 33 seeks and 512 KiB, those of a whole file apart; a source that gives less at a time than it is
/// asked for takes more reads for the same bytes.
class ADTSParser : public FrameFileParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "ADTSParser",
        "adts",
        {"audio/aac", "audio/vnd.dlna.adts"},
        {kFrames_MaxReads, kFrames_MaxBytes},
        {{"adts",
          {"adts", "aac"},
          {"audio/aac", "audio/vnd.dlna.adts", "audio/x-aac", "audio/aacp"},
          kezUPnPClass_MusicTrack,
          {"aac"}}},
        {{"audio/aac", "", {"audio/x-aac", "audio/aacp"}}},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "AAC in ADTS frames",
        "Frames without a container",
        "ID3v2 before the sound; APE, Lyrics3 and ID3v1 after it",
        "APE tags before the sound; whether there is spectral band replication or parametric stereo: no "
        "header says it; channels that a `program_config_element` tells; ADIF, and LATM",
        {9, 144U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit ADTSParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FrameFileParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
