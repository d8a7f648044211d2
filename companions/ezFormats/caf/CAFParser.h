#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/caf/CAFLimits.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"

#include <utility>

class ByteReader;

/// CAF files: what "desc" states of the sound, the count of samples of "pakt" where packets vary, and the
/// texts of "info", in any order of the chunks that follow the first.
///
/// A parse reads the first 8 KiB, and for each chunk to be stepped over that ends elsewhere one of 4 KiB or
/// more: of a usual file what follows the sound. At most these are 32 reads, 33 seeks and 256 KiB; a source
/// that gives less at a time than it is asked for takes more reads for the same bytes. Of unknown size,
/// nothing after the sound is read, but for a count that is still missing.
class CAFParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "CAFParser",
        "caf",
        {"audio/x-caf"},
        {kCAF_MaxReads, kCAF_MaxBytes},
        {{"caf", {"caf"}, {"audio/x-caf"}, kezUPnPClass_MusicTrack, {}}},
        {},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "CAF",          "AIFF, AU and CAF", "`info`", "markers, regions, instruments, MIDI, `uuid` chunks",
        {2, 16U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit CAFParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
