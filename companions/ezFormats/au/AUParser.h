#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/au/AULimits.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"

#include <utility>

class ByteReader;

/// AU files (".snd"): what the head states of the sound, and texts of an annotation that has one a line. A
/// size that is not stated, or cannot be, is measured by the file. A parse reads the first 8 KiB.
class AUParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "AUParser",
        "au",
        {"audio/basic"},
        {kAU_MaxReads, kAU_MaxBytes},
        {{"au", {"au", "snd"}, {"audio/basic"}, kezUPnPClass_MusicTrack, {}}},
        {},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "AU",
        "AIFF, AU and CAF",
        "lines of the annotation like `title=...`",
        "annotations of another form",
        {1, 8U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit AUParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
