#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/dsdiff/DSDIFFLimits.h"

#include <utility>

class ByteReader;

/// DSDIFF files (version 1.5): what "PROP" states of the sound, which is DSD or, compressed, DST; the length
/// by the size of the one, and by the count of frames of the other; and the texts of an ID3v2 tag and of
/// "DIIN", in any order of the chunks.
///
/// A parse reads the first 8 KiB, and for each chunk to be stepped over that ends elsewhere one of 4 KiB or
/// more: of a usual file what follows the sound. At most these are 16 reads, 17 seeks and 256 KiB; a source
/// that gives less at a time than it is asked for takes more reads for the same bytes. Of unknown size,
/// nothing after the sound and its description is read.
class DSDIFFParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "DSDIFFParser",
        "dff",
        {"audio/x-dff"},
        {kDSDIFF_MaxReads, kDSDIFF_MaxBytes},
        {{"dff", {"dff"}, {"audio/x-dff", "audio/dff"}, kezUPnPClass_MusicTrack, {"dsf"}}},
        {{"audio/x-dff", "", {"audio/dff"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "DSDIFF",
        "DSF and DSDIFF",
        "ID3v2 in a chunk (`ID3 `); `DITI` and `DIAR` of `DIIN`",
        "comments, markers, which speaker a channel is for, the index of compressed frames",
        {2, 16U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit DSDIFFParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
