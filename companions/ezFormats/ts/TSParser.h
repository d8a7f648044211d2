#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/ts/TSLimits.h"

#include <utility>

class ByteReader;

/// MPEG-2 transport streams (ISO/IEC 13818-1, 2.4), in packets of 188, 192 and 204 bytes: recordings of
/// broadcasts, and what camcorders and discs write. Told are the facts of the pictures and of the sound that
/// play first, how many tracks of sound and of subtitles there are, and their languages; the length, by the
/// time stamps at both ends; and the title of the broadcast, where the recording kept it.
///
/// A parse reads the first 256 KiB and the last; more at either end where these hold no time stamps, and
/// places between them where the clock seems to have jumped. At most these are 24 reads, 25 seeks and 8 MiB;
/// a source that gives less at a time than it is asked for takes more reads for the same bytes.
class TSParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "TSParser",
        "ts",
        {"video/mp2t", "video/vnd.dlna.mpeg-tts"},
        {kTS_MaxReads, kTS_MaxBytes},
        {{"ts", {"ts", "m2t", "trp", "tp"}, {"video/mp2t", "video/x-mpegts"}, kezUPnPClass_VideoItem, {}},
         {"tod", {"tod"}, {"video/mp2t", "video/x-tod"}, kezUPnPClass_VideoItem, {"ts"}},
         {"tts", {"tts"}, {"video/vnd.dlna.mpeg-tts"}, kezUPnPClass_VideoItem, {"ts"}},
         {"m2ts",
          {"m2ts", "mts"},
          {"video/vnd.dlna.mpeg-tts", "video/x-m2ts"},
          kezUPnPClass_VideoItem,
          {"ts"}}},
        {{"video/mp2t", "", {"video/x-mpegts", "video/x-tod"}},
         {"video/vnd.dlna.mpeg-tts", "", {"video/x-m2ts"}}},
        {IsAt},
        {"video/mpeg"},
    };

    static constexpr FormatNotes kNotes = {
        "MPEG-2 transport stream",
        "MPEG-2 transport streams",
        "the name of the event (EIT, present and following) as title, and when it began",
        "the name of the station, texts of events, teletext, subtitles, data, other programs than the one "
        "that plays first, what is scrambled",
        {4, 512U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit TSParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
