#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/flv/FLVLimits.h"

#include <utility>

class ByteReader;

/// Flash video (Adobe Flash Video File Format 10.1, annex E; Enhanced RTMP 2 for the codecs that it adds):
/// the tracks, by what the tags hold and not by what the header promises, what the codecs' own headers tell,
/// and the length, by the metadata as far as the last tags agree.
///
/// A parse reads the first 8 KiB and the last 48; more of long metadata, of tracks that begin late, and of an
/// end that no tag begins in. At most these are 8 reads, 9 seeks and 512 KiB; a source that gives less at a
/// time than it is asked for takes more reads for the same bytes. Of a stream without a size nothing is
/// looked for at its end.
class FLVParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "FLVParser",
        "flv",
        {"video/x-flv"},
        {kFLV_MaxReads, kFLV_MaxBytes},
        {{"flv", {"flv"}, {"video/x-flv", "video/flv"}, kezUPnPClass_VideoItem, {}}},
        {{"video/x-flv", "", {"video/flv"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "Flash video",
        "Flash video",
        "`onMetaData`",
        "cue points, lists of key frames, captions and other script tags, tracks after the first of a kind, "
        "who may play what is encrypted",
        {2, 64U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit FLVParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
