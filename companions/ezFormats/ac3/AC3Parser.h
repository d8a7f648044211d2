#pragma once

#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/frames/FrameFileParser.h"
#include "ezFormats/frames/FrameLimits.h"

#include <memory>
#include <utility>

class ByteReader;

/// AC-3 and E-AC-3 (ETSI TS 102 366), in either order of their bytes, after ID3v2 too. The frames of the
/// first independent substream tell the length; its dependent substreams add channels.
///
/// A file is one when four frames follow each other at its start or after its leading tags, or fewer that
/// reach its end; or eight anywhere in the 64 KiB after that. The rate is constant, as a rule: the size of
/// the sound tells its length.
///
/// A parse reads the first, the last and the middle 16 KiB; six places more where the rate varies. At most
/// these are 32 reads, 33 seeks and 512 KiB, those of a whole file apart; a source that gives less at a time
/// than it is asked for takes more reads for the same bytes.
class AC3Parser : public FrameFileParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "AC3Parser",
        "ac3",
        {"audio/ac3", "audio/eac3", "audio/vnd.dolby.dd-raw"},
        {kFrames_MaxReads, kFrames_MaxBytes},
        {{"ac3",
          {"ac3"},
          {"audio/ac3", "audio/vnd.dolby.dd-raw", "audio/x-ac3"},
          kezUPnPClass_MusicTrack,
          {}},
         {"eac3", {"eac3", "ec3"}, {"audio/eac3", "audio/x-eac3"}, kezUPnPClass_MusicTrack, {"ac3"}}},
        {{"audio/ac3", "", {"audio/x-ac3"}}, {"audio/eac3", "", {"audio/x-eac3"}}},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "AC-3 and E-AC-3",
        "Frames without a container",
        "ID3v2 before the sound; APE, Lyrics3 and ID3v1 after it",
        "APE tags before the sound, programmes after the first, whether there are objects in E-AC-3",
        {9, 144U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit AC3Parser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FrameFileParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
