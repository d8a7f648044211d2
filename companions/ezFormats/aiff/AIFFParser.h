#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/aiff/AIFFLimits.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"

#include <utility>

class ByteReader;

/// AIFF and AIFF-C files: what "COMM" states of the sound, held against the size of "SSND", and the texts of
/// an ID3v2 tag and of the text chunks, in any order of the chunks. Other files of the kind "FORM" are
/// refused.
///
/// A parse reads the first 8 KiB, and for each chunk to be stepped over that ends elsewhere one of 4 KiB or
/// more: of a usual file what follows the sound. At most these are 32 reads, 33 seeks and 256 KiB; a source
/// that gives less at a time than it is asked for takes more reads for the same bytes. Of unknown size,
/// nothing after the sound and its description is read.
class AIFFParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "AIFFParser",
        "aiff",
        {"audio/x-aiff"},
        {kAIFF_MaxReads, kAIFF_MaxBytes},
        {{"aiff", {"aiff", "aif", "aifc"}, {"audio/x-aiff", "audio/aiff"}, kezUPnPClass_MusicTrack, {}}},
        {{"audio/x-aiff", "", {"audio/aiff"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "AIFF, AIFF-C",
        "AIFF, AU and CAF",
        "ID3v2 in a chunk (`ID3 `); `NAME` and `AUTH`",
        "markers, instruments, MIDI, comments",
        {2, 16U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit AIFFParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
