#pragma once

#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/frames/FrameFileParser.h"
#include "ezFormats/frames/FrameLimits.h"

#include <memory>
#include <utility>

class ByteReader;

/// Streams of TrueHD and of MLP, after ID3v2 too, and those of TrueHD with frames of AC-3 between, with which
/// such a file may begin. Channels are those of the largest presentation; objects (Atmos) are not told.
///
/// A parse reads the first 16 KiB, the last 16 KiB, and six places of 16 KiB between them, or larger ones
/// where access units are large. At most these are 32 reads, 33 seeks and 512 KiB, those of a whole file
/// apart; a source that gives less at a time than it is asked for takes more reads for the same bytes.
class MLPParser : public FrameFileParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "MLPParser",
        "mlp",
        {"audio/vnd.dolby.mlp"},
        {kFrames_MaxReads, kFrames_MaxBytes},
        {{"mlp", {"mlp", "thd"}, {"audio/vnd.dolby.mlp"}, kezUPnPClass_MusicTrack, {}}},
        {},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "TrueHD and MLP",
        "Frames without a container",
        "ID3v2 before the sound; APE, Lyrics3 and ID3v1 after it",
        "APE tags before the sound, smaller presentations, objects (Atmos), the AC-3 between the units",
        {9, 144U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit MLPParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FrameFileParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
