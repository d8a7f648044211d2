#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/ogg/OggLimits.h"

#include <utility>

class ByteReader;

/// Ogg files (RFC 3533) with Vorbis, Opus, FLAC or Speex, or the sound of OGM: rates, channels, length,
/// texts, and whether there is a cover. With Theora, VP8, Dirac, Daala or the video of OGM it is a film, with
/// the size, shape and rate of its pictures, and languages and texts counted; unless the video is one
/// picture beside sound.
///
/// A parse reads the first 8 KiB and the last 64, and of a film the next 48 KiB, or 184 more where its first
/// picture takes so many. Comments with a cover take a block of 4 KiB a page, of which few are read, and a
/// stream that does not tell its end in the last 64 KiB up to three times as many. The borders of a chain are
/// looked for by halves. At most these are 48 reads, 49 seeks and 2 MiB; a source that gives less at a time
/// than it is asked for takes more reads for the same bytes.
class OggParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "OggParser",
        "ogg",
        {"audio/ogg", "video/ogg"},
        {kOgg_MaxReads, kOgg_MaxBytes},
        {{"ogg",
          {"ogg", "oga"},
          {"audio/ogg", "application/ogg", "audio/x-ogg", "audio/vorbis"},
          kezUPnPClass_MusicTrack,
          {}},
         {"opus", {"opus"}, {"audio/ogg", "audio/opus"}, kezUPnPClass_MusicTrack, {"ogg"}},
         {"spx", {"spx"}, {"audio/ogg", "audio/x-speex"}, kezUPnPClass_MusicTrack, {"ogg"}},
         {"ogv", {"ogv"}, {"video/ogg", "application/ogg", "video/x-ogg"}, kezUPnPClass_VideoItem, {"ogg"}},
         {"ogm", {"ogm"}, {"video/ogg", "video/x-ogm"}, kezUPnPClass_VideoItem, {"ogg"}}},
        {{"audio/ogg", "", {"application/ogg", "audio/x-ogg"}},
         {"audio/ogg", "Vorbis", {"audio/vorbis"}},
         {"audio/ogg", "Opus", {"audio/opus"}},
         {"audio/ogg", "Speex", {"audio/x-speex"}},
         {"video/ogg", "", {"video/x-ogg", "video/x-ogm"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "Ogg",
        "Ogg",
        "the comments of the first stream of sound, then of the video",
        "chapters, what subtitles say, the pictures' facts of Dirac and Daala, streams of Annodex 2",
        {3, 128U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit OggParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
