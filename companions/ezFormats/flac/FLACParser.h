#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/flac/FLACLimits.h"

#include <utility>

class ByteReader;

/// FLAC files (RFC 9639), after ID3v2 too: what STREAMINFO states, Vorbis comments, and whether there is a
/// cover. A count of samples that is missing, or that the size of the file contradicts, is that of the last
/// frame.
///
/// A parse reads the first 8 KiB, and for each block to be stepped over that ends elsewhere one of 4 KiB or
/// more; and the last 64 KiB where the count is not to be believed. At most these are 16 reads, 17 seeks and
/// 1 MiB; a source that gives less at a time than it is asked for takes more reads for the same bytes.
class FLACParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "FLACParser",
        "flac",
        {"audio/flac"},
        {kFLAC_MaxReads, kFLAC_MaxBytes},
        {{"flac", {"flac", "fla"}, {"audio/flac", "audio/x-flac"}, kezUPnPClass_MusicTrack, {}}},
        {{"audio/flac", "", {"audio/x-flac"}}},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "FLAC",
        "FLAC",
        "Vorbis comments; ID3v2 before; where none has a title APE, Lyrics3 and ID3v1 after the frames",
        "cue sheets, seek tables, blocks of applications",
        {2, 72U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit FLACParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
