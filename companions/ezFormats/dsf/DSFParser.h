#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/dsf/DSFLimits.h"

#include <utility>

class ByteReader;

/// DSF files, DSD as one stores it: what "fmt " states of the sound, and the texts and the cover of the
/// ID3v2 tag at the place that the head names. The count of samples is the length, as the data are filled up
/// to whole blocks; where the file has not so many, its data are.
///
/// A parse reads the first 8 KiB, and of a file of known size 8 KiB of the tag, and 4 KiB or more for what
/// follows a picture in it. At most these are 16 reads, 17 seeks and 256 KiB; a source that gives less at a
/// time than it is asked for takes more reads for the same bytes.
class DSFParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "DSFParser",
        "dsf",
        {"audio/x-dsf"},
        {kDSF_MaxReads, kDSF_MaxBytes},
        {{"dsf",
          {"dsf"},
          {"audio/x-dsf", "audio/dsf", "audio/x-dsd", "audio/dsd"},
          kezUPnPClass_MusicTrack,
          {"dff"}}},
        {{"audio/x-dsf", "", {"audio/dsf", "audio/x-dsd", "audio/dsd"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "DSF",
        "DSF and DSDIFF",
        "ID3v2 at the place that the head names",
        "which speaker a channel is for",
        {2, 16U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit DSFParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
