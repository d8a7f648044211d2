#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/tta/TTALimits.h"

#include <utility>

class ByteReader;

/// True Audio files of the first version ("TTA1"), after ID3v2 too: what the header states of the sound, and
/// the texts and the cover of the tags before and after it. Later ones ("TTA2") and those before it ("TTA"
/// and a number) are laid otherwise, and are refused.
///
/// A parse reads the first 8 KiB, of a file of known size the last 8 KiB, and as much of tags with a picture
/// as leads to their texts. At most these are 16 reads, 17 seeks and 256 KiB; a source that gives less at a
/// time than it is asked for takes more reads for the same bytes.
class TTAParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "TTAParser",
        "tta",
        {"audio/x-tta"},
        {kTTA_MaxReads, kTTA_MaxBytes},
        {{"tta", {"tta"}, {"audio/x-tta", "audio/tta"}, kezUPnPClass_MusicTrack, {}}},
        {{"audio/x-tta", "", {"audio/tta"}}},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "True Audio",
        "True Audio and Musepack",
        "ID3v2 before the sound; APE, Lyrics3 and ID3v1 after it",
        "APE tags before the sound, the seek table, encryption; files of other versions than `TTA1`",
        {2, 16U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit TTAParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
