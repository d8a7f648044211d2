#pragma once

#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/frames/FrameFileParser.h"
#include "ezFormats/frames/FrameLimits.h"

#include <memory>
#include <utility>

class ByteReader;

/// AMR and AMR-WB files (RFC 4867, 5), of one channel or of several. They hold no tags.
///
/// A parse reads the first, the last and the middle 16 KiB; six places more where silence or a changing rate
/// makes the frames differ. At most these are 32 reads, 33 seeks and 512 KiB, those of a whole file apart; a
/// source that gives less at a time than it is asked for takes more reads for the same bytes.
class AMRParser : public FrameFileParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "AMRParser",
        "amr",
        {"audio/amr", "audio/amr-wb"},
        {kFrames_MaxReads, kFrames_MaxBytes},
        {{"amr", {"amr"}, {"audio/amr"}, kezUPnPClass_MusicTrack, {"awb"}},
         {"awb", {"awb"}, {"audio/amr-wb"}, kezUPnPClass_MusicTrack, {"amr"}}},
        {},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "AMR and AMR-WB", "Frames without a container", "", "which speaker a channel is for", {9, 144U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit AMRParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FrameFileParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
