#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/iso/ISOLimits.h"

#include <cstdint>
#include <utility>

class ByteReader;
class ISOCompressedMovie;

/// ISO base media files and their relatives (mp4, m4a, m4v, mov, 3gp).
///
/// A file is one when it begins with "ftyp", or as QuickTime files of before that box do ("moov", "mdat",
/// "wide", "free", "skip"), and has a "moov" box with a track of audio or video. Pictures in such boxes
/// (HEIF, AVIF, JPEG 2000, raw photos) are refused. A "moov" that states up to 64 bytes more than the media
/// has is read as far as it goes, and so is every box within it whose size leads out of the one that it
/// stands in. The MIME type follows from brands and tracks: a file of
/// QuickTime is video/quicktime whatever it holds, there is no other type for it; one whose first brand is of
/// 3GPP, which is also plain MP4, and which holds what 3GPP's players do not know (H.264 above Baseline of
/// level 3, say), is video/mp4 or audio/mp4.
///
/// A movie's header that QuickTime compressed ("cmov") is inflated, to 1 MiB at most; a library that was
/// built without zlib refuses it as a "compressed header".
///
/// Facts are those of the first enabled track of audio and of video. Covers (a lone JPEG or PNG), and the
/// pictures of chapters (less than one a second), are no video. The codec of encrypted samples is named
/// "encrypted:" and the plain one, which no rule meets. Sampling rate and channels are what is heard: with
/// band replication or parametric stereo, when the file announces these, the doubled ones. Width and height
/// are those of the cropped picture as it is stored, and kezInfo_Orientation says how it is turned or
/// mirrored to be shown: by the matrix of its track and then by the movie's, if they do no more than that.
///
/// The rate of AMR is that of its frame type, which is the mode that the codec works in; in the file each
/// frame takes whole bytes and one more. That of QuickTime's constant packets follows from the packet, where
/// the table of sizes counts samples.
///
/// A bit rate that the file states as an average stands before one measured: kezInfo_AudioBitRate or
/// kezInfo_VideoBitRate, while a larger stated maximum is kezInfo_AudioMaxBitRate or kezInfo_VideoMaxBitRate.
/// Without an average the sizes of all samples are added up if their table is of 256 KiB at most, or those of
/// all fragments if they were read for the duration. Else there is the estimate alone: by the first samples
/// for audio of a film, by the size of the media less the other tracks for the rest. kezInfo_BitRate is that
/// of the whole, from size and duration, and kezInfo_MaxBitRate the sum of the tracks' highest, or
/// kezInfo_BitRate where that is higher.
///
/// The duration is the longest that the movie's header and the enabled tracks tell, or all of them where none
/// is enabled, edit lists applied; a track whose header leaves it open tells it by the times of its samples.
/// With fragments it is that of their header ("mehd"), else of their indices ("sidx"), both "header"; else it
/// is "counted" over up to 48 fragments, and where there are more, or a damaged size hides the rest,
/// estimated by their share of the bytes and an eighth more.
///
/// Texts are those of iTunes, else of 3GPP, else of QuickTime. Of several values of one item the first is the
/// title or the album, and all, separated by ", ", are the creators or genres, as those of ID3 are.
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

    /// @param aRules  decide the profile that a media is announced with; not null, shared
    explicit ISOMediaParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;

private:
    bool OpenMovie(const MediaBytes& aBytes, ISOCompressedMovie& aCompressed, ByteReader& aMovie,
                   std::uint32_t& aBoxBudget) const;
};
