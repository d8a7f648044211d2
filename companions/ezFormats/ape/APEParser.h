#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/ape/APELimits.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"

#include <utility>

class ByteReader;

/// APE sound, versions 3.80 to 3.99, of either form of its header, whole numbers and floating point, after
/// tags too: what the header states, and the tags around the sound. Other versions are refused.
///
/// A parse reads the first 8 KiB and the last 8 KiB; and the start of a tag that is longer. At most these
/// are 16 reads, 17 seeks and 256 KiB; a source that gives less at a time than it is asked for takes more
/// reads for the same bytes.
class APEParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "APEParser",
        "ape",
        {"audio/x-ape"},
        {kAPE_MaxReads, kAPE_MaxBytes},
        {{"ape",
          {"ape"},
          {"audio/x-ape", "audio/ape", "audio/x-monkeys-audio"},
          kezUPnPClass_MusicTrack,
          {}}},
        {{"audio/x-ape", "", {"audio/ape", "audio/x-monkeys-audio"}}},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "APE",
        "APE and WavPack",
        "ID3v2 before the sound; APE, Lyrics3 and ID3v1 after it",
        "APE tags before the sound, the head of the WAV that was packed; versions before 3.80",
        {2, 16U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit APEParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
