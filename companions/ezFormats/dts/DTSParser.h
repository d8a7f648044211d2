#pragma once

#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/frames/FrameFileParser.h"
#include "ezFormats/frames/FrameLimits.h"

#include <memory>
#include <utility>

class ByteReader;

/// DTS and DTS-HD: streams of frames (ETSI TS 102 114), in the four forms that they are stored in, after
/// ID3v2 too; and files with a head of their own, "DTSHDHDR", which tells the length.
///
/// The codec is that of the first frame: DTS, where it has a core alone; DTS-HD-MA, DTS-HD-HRA or DTS-HD-LBR
/// ("Express") by its extension, which also tells sampling rate, channels and, of the lossless one, bits.
///
/// A parse reads the first 16 KiB, the last 16 KiB, and the middle; where the rate varies, six places in
/// place of the middle. At most these are 32 reads, 33 seeks and 512 KiB, those of a whole file apart; a
/// source that gives less at a time than it is asked for takes more reads for the same bytes.
class DTSParser : public FrameFileParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "DTSParser",
        "dts",
        {"audio/vnd.dts", "audio/vnd.dts.hd"},
        {kFrames_MaxReads, kFrames_MaxBytes},
        {{"dts", {"dts"}, {"audio/vnd.dts", "audio/x-dts"}, kezUPnPClass_MusicTrack, {}},
         {"dtshd", {"dtshd", "dtsma"}, {"audio/vnd.dts.hd"}, kezUPnPClass_MusicTrack, {"dts"}}},
        {{"audio/vnd.dts", "", {"audio/x-dts"}}},
        {IsAt, true},
    };

    static constexpr FormatNotes kNotes = {
        "DTS and DTS-HD",
        "Frames without a container",
        "ID3v2 before the sound; APE, Lyrics3 and ID3v1 after it",
        "APE tags before the sound, what a stream with a core holds in a second asset, time codes and names "
        "in a file with a head, objects (DTS:X)",
        {9, 144U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit DTSParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FrameFileParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;

private:
    bool ReadHeaded(MediaBytes& aBytes, FrameFile& aFile) const;
};
