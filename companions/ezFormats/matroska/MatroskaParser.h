#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/matroska/MatroskaLimits.h"

#include <utility>

class ByteReader;

/// Matroska and WebM files (RFC 8794, RFC 9559): films and sound, live streams, and files that were cut or
/// are still being written. What they hold is told by their tracks, by what sets up the decoders of those
/// that play first, and by the first frame of these.
///
/// A parse reads the first 8 KiB and what stands up to the first frames, and of what a SeekHead names after
/// the clusters a block each; of files without a length that can be true also their end. At most these are 48
/// reads, 49 seeks and 4 MiB; a source that gives less at a time than it is asked for takes more reads for
/// the same bytes. Of a stream without a size nothing is looked for at its end.
class MatroskaParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "MatroskaParser",
        "mkv",
        {"video/x-matroska", "video/webm", "audio/x-matroska", "audio/webm"},
        {kMatroska_MaxReads, kMatroska_MaxBytes},
        {{"mkv",
          {"mkv", "mk3d"},
          {"video/x-matroska", "video/x-mkv", "video/mkv", "video/matroska"},
          kezUPnPClass_VideoItem,
          {}},
         {"webm", {"webm"}, {"video/webm"}, kezUPnPClass_VideoItem, {"mkv"}},
         {"mka", {"mka"}, {"audio/x-matroska", "audio/matroska"}, kezUPnPClass_MusicTrack, {"mkv"}},
         {"weba", {"weba"}, {"audio/webm"}, kezUPnPClass_MusicTrack, {"mkv"}}},
        {{"video/x-matroska", "", {"video/x-mkv", "video/mkv", "video/matroska"}},
         {"audio/x-matroska", "", {"audio/matroska"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "Matroska and WebM",
        "Matroska and WebM",
        "Tags; the title of Info",
        "chapters, menus, the names of tracks, virtual tracks, linked segments, who may play what is "
        "encrypted",
        {4, 128U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit MatroskaParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
