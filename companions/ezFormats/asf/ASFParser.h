#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/asf/ASFLimits.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"

#include <utility>

class ByteReader;

/// ASF files (Advanced Systems Format 1.2): Windows Media Audio 1, 2, Pro, lossless and Voice, and whatever
/// else has a tag of WAVEFORMATEX; Windows Media Video 7 to 9, VC-1, and whatever else has four characters of
/// a BITMAPINFOHEADER; recordings of television (DVR-MS). Length, rates, languages, texts, and whether there
/// is a cover; codec, profile, size, shape of a pixel, frame rate and scan of a film.
///
/// A parse reads the first 8 KiB, and for each picture to be stepped over a block of 4 KiB or more; of a film
/// whose codec tells of itself in its stream, and not in the header, 32 KiB of the packets; of a broadcast,
/// and of a file that states no length, the last 64 KiB. At most these are 16 reads, 17 seeks and 1 MiB; a
/// source that gives less at a time than it is asked for takes more reads for the same bytes.
class ASFParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "ASFParser",
        "wma",
        {"audio/x-ms-wma", "video/x-ms-wmv", "video/x-ms-asf", "video/x-ms-dvr"},
        {kASF_MaxReads, kASF_MaxBytes},
        {{"wma", {"wma"}, {"audio/x-ms-wma"}, kezUPnPClass_MusicTrack, {}},
         {"wmv", {"wmv"}, {"video/x-ms-wmv"}, kezUPnPClass_VideoItem, {"wma"}},
         {"asf",
          {"asf", "wm"},
          {"video/x-ms-asf", "video/x-ms-wm", "application/vnd.ms-asf"},
          kezUPnPClass_VideoItem,
          {"wma"}},
         {"dvr-ms", {"dvr-ms"}, {"video/x-ms-dvr"}, kezUPnPClass_VideoItem, {"wma"}}},
        {{"video/x-ms-wmv", "", {"video/x-ms-wm"}}, {"video/x-ms-asf", "", {"application/vnd.ms-asf"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "ASF: Windows Media",
        "ASF: Windows Media",
        "Content Description; Extended Content; Metadata; Metadata Library",
        "the level of WMV 9, which is not stored; markers, scripts, indexes, who may play what is encrypted",
        {2, 64U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit ASFParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
