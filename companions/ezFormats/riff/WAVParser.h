#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/riff/WAVLimits.h"

#include <utility>

class ByteReader;

/// WAV files, and what was made of them for sizes above 4 GiB: RIFF and RIFX, RF64 and BW64 (EBU Tech 3306,
/// ITU-R BS.2088), Wave64; after ID3v2 too. What "fmt " states of the sound, and the texts of an ID3v2 tag,
/// of a list of the kind "INFO" (of Wave64 the summary list) and of "bext" (EBU Tech 3285), wherever these
/// chunks are. A size that cannot be is measured by the file. Where samples of 16 bits are a coded stream in
/// truth, that is what the record tells.
///
/// A parse reads the first 8 KiB, and for each chunk to be stepped over that ends elsewhere one of 4 KiB or
/// more: of a usual file what follows the sound. Sound that begins with silence costs up to 64 KiB more. At
/// most these are 32 reads, 33 seeks and 256 KiB; a source that gives less at a time than it is asked for
/// takes more reads for the same bytes. Of unknown size, nothing after the sound is read.
class WAVParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "WAVParser",
        "wav",
        {"audio/wav", "audio/x-w64"},
        {kWAV_MaxReads, kWAV_MaxBytes},
        {{"wav",
          {"wav", "wave", "bwf", "rf64"},
          {"audio/wav", "audio/x-wav", "audio/wave", "audio/vnd.wave"},
          kezUPnPClass_MusicTrack,
          {}},
         {"w64", {"w64"}, {"audio/x-w64"}, kezUPnPClass_MusicTrack, {"wav"}}},
        {{"audio/wav", "", {"audio/x-wav", "audio/wave", "audio/vnd.wave"}}},
        {IsAt, true},
        {"audio/vnd.dts"},
    };

    static constexpr FormatNotes kNotes = {
        "WAV and its kin",
        "WAV and its kin",
        "ID3v2 in a chunk (`id3 `); ID3v2 before the file; the list `INFO`, of Wave64 the summary list; "
        "description and date of `bext`",
        "cue points, labels, `iXML`, `axml`, sampler chunks",
        {2, 16U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit WAVParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
