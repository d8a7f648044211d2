#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/iso/ISOLimits.h"

#include <cstdint>
#include <utility>

class ByteReader;
class ISOCompressedMovie;

/// ISO base media files and their relatives (mp4, m4a, m4v, mov, 3gp).
///
/// A file is one when it begins with "ftyp", or as QuickTime files of before that box do ("moov", "mdat",
/// "wide", "free", "skip"), and has a "moov" box with a track of audio or video. Pictures in such boxes
/// (HEIF, AVIF, JPEG 2000, raw photos) are refused. Facts are those of the first enabled track of audio and
/// of video. What a record holds, how rates and duration are known, and which damage is read over:
/// docs/file-formats.md.
///
/// One parse costs at most 96 reads, each with a seek, and 1 MiB; a source that gives less at a time than it
/// is asked for takes more reads for the same bytes. A film of any size with "moov" at its end costs about
/// ten: the start, the end, and one for each jump over a table.
class ISOMediaParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "ISOMediaParser",
        "mp4",
        {"video/mp4", "audio/mp4", "video/quicktime", "video/3gpp", "audio/3gpp", "video/3gpp2",
         "audio/3gpp2"},
        {kISO_MaxReads, kISO_MaxBytes},
        {{"mp4",
          {"mp4", "mpg4", "mp4v"},
          {"video/mp4", "video/x-mp4", "application/mp4"},
          kezUPnPClass_VideoItem,
          {"m4v", "mov"}},
         {"m4v", {"m4v"}, {"video/mp4", "video/x-m4v"}, kezUPnPClass_VideoItem, {"mp4"}},
         {"m4s", {"m4s", "dash"}, {"video/mp4", "video/iso.segment"}, kezUPnPClass_VideoItem, {"mp4"}},
         {"cmfv", {"cmfv"}, {"video/mp4"}, kezUPnPClass_VideoItem, {"mp4", "m4s"}},
         {"f4v", {"f4v"}, {"video/mp4", "video/x-f4v"}, kezUPnPClass_VideoItem, {"mp4", "flv"}},
         {"mov", {"mov", "qt"}, {"video/quicktime"}, kezUPnPClass_VideoItem, {"mp4"}},
         {"3gp", {"3gp", "3gpp"}, {"video/3gpp"}, kezUPnPClass_VideoItem, {"mp4"}},
         {"3g2", {"3g2", "3gp2", "3gpp2"}, {"video/3gpp2"}, kezUPnPClass_VideoItem, {"3gp", "mp4"}},
         {"mj2", {"mj2", "mjp2"}, {"video/mj2"}, kezUPnPClass_VideoItem, {"mp4"}},
         {"m4a", {"m4a"}, {"audio/mp4", "audio/x-m4a", "audio/m4a"}, kezUPnPClass_MusicTrack, {"mp4"}},
         {"m4b", {"m4b"}, {"audio/mp4", "audio/x-m4b"}, kezUPnPClass_AudioBook, {"m4a", "mp4"}},
         {"m4r", {"m4r"}, {"audio/mp4", "audio/x-m4r"}, kezUPnPClass_MusicTrack, {"m4a", "mp4"}},
         {"cmfa", {"cmfa"}, {"audio/mp4"}, kezUPnPClass_MusicTrack, {"m4a", "mp4"}},
         {"3ga", {"3ga"}, {"audio/3gpp"}, kezUPnPClass_MusicTrack, {"3gp", "m4a", "mp4"}}},
        {{"audio/mp4", "", {"audio/x-m4a", "audio/m4a", "audio/x-m4b", "audio/x-m4r"}},
         {"video/mp4", "", {"video/x-mp4", "video/x-m4v", "video/x-f4v"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "ISO media: MP4, QuickTime, 3GP",
        "ISO base media: MP4, QuickTime, 3GP",
        "those of iTunes (`ilst`), of 3GPP, of QuickTime (`keys`, and texts of `udta`)",
        "chapters, texts of subtitles, tracks that are not enabled, XMP, ID3v2 in boxes, samples other "
        "than the first of video whose entry leaves something open",
        {16, 384U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit ISOMediaParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;

private:
    bool OpenMovie(const MediaBytes& aBytes, ISOCompressedMovie& aCompressed, ByteReader& aMovie,
                   std::uint32_t& aBoxBudget) const;
};
