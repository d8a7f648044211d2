#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/wavpack/WavPackLimits.h"

#include <utility>

class ByteReader;

/// WavPack files, versions 4 and 5, also lossy ones and DSD, after tags too: what the first blocks state, and
/// the tags around the sound. A count of samples that is missing, or that the size of the file contradicts,
/// is that of the last block. Versions 1 to 3, which begin as WAV does, and files of corrections are refused.
///
/// A parse reads the first 8 KiB and the last 16 KiB; a block of 4 KiB for each of the first blocks that lies
/// elsewhere; the start of a tag that is longer; and up to 320 KiB of the end where the count is not to be
/// believed. At most these are 8 reads, 9 seeks and 1 MiB; a source that gives less at a time than it is
/// asked for takes more reads for the same bytes.
class WavPackParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "WavPackParser",
        "wv",
        {"audio/x-wavpack"},
        {kWavPack_MaxReads, kWavPack_MaxBytes},
        {{"wv", {"wv"}, {"audio/x-wavpack"}, kezUPnPClass_MusicTrack, {}}},
        {},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "WavPack",
        "APE and WavPack",
        "ID3v2 before the sound; APE, Lyrics3 and ID3v1 after it",
        "APE tags before the sound, the head of the file that was packed, which speaker a channel is for; "
        "versions 1 to 3, files of corrections (`.wvc`)",
        {2, 24U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit WavPackParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
