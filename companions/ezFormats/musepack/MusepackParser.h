#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/musepack/MusepackLimits.h"

#include <utility>

class ByteReader;

/// Musepack files of stream versions 7 and 8, after ID3v2 too: what the header of the stream states of the
/// sound, and the texts and the cover of the tags before and after it. Versions 4 to 6 begin with nothing
/// that tells them, and are not read.
///
/// A parse reads the first 8 KiB, of a file of known size the last 8 KiB, and as much of tags with a picture
/// as leads to their texts. At most these are 16 reads, 17 seeks and 256 KiB; a source that gives less at a
/// time than it is asked for takes more reads for the same bytes.
class MusepackParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "MusepackParser",
        "mpc",
        {"audio/x-musepack"},
        {kMusepack_MaxReads, kMusepack_MaxBytes},
        {{"mpc", {"mpc", "mp+", "mpp"}, {"audio/x-musepack", "audio/musepack"}, kezUPnPClass_MusicTrack, {}}},
        {{"audio/x-musepack", "", {"audio/musepack"}}},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "Musepack",
        "True Audio and Musepack",
        "ID3v2 before the sound; APE, Lyrics3 and ID3v1 after it",
        "APE tags before the sound, gain, chapters, the settings of the encoder, the seek table; stream "
        "versions 4 to 6",
        {2, 16U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit MusepackParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
