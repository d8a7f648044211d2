#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/ps/PSLimits.h"

#include <utility>

class ByteReader;
class PSBytes;

/// MPEG program streams (ISO/IEC 13818-1, 2.5) and system streams of MPEG-1 (ISO/IEC 11172-1), as computers,
/// DVDs, camcorders and recorders write them, and within the sectors of a video CD: the track of pictures and
/// the one of sound that play first, how many there are, and the length.
///
/// A parse reads the first 8 KiB, 240 KiB from the start and the end each, and 32 KiB of the middle; more
/// where sound begins late, where the end has no time stamps, and of a file whose clock begins anew. Of a
/// DVD's file it reads the title set's information, which lies beside it. At most these are 24 reads and 8
/// MiB; a source that gives less at a time than it is asked for takes more reads for the same bytes.
class PSParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "PSParser",
        "mpg",
        {"video/mpeg"},
        {kPS_MaxReads, kPS_MaxBytes},
        {{"mpg",
          {"mpg", "mpeg", "mpe", "mps"},
          {"video/mpeg", "video/x-mpeg", "video/mpg", "video/mp2p"},
          kezUPnPClass_VideoItem,
          {}},
         {"vob",
          {"vob", "evo"},
          {"video/mpeg", "video/dvd", "video/x-ms-vob"},
          kezUPnPClass_VideoItem,
          {"mpg"}},
         {"mod", {"mod"}, {"video/mpeg", "video/x-mod"}, kezUPnPClass_VideoItem, {"mpg"}},
         {"vro", {"vro"}, {"video/mpeg"}, kezUPnPClass_VideoItem, {"mpg"}},
         {"dat", {"dat"}, {"video/mpeg"}, kezUPnPClass_VideoItem, {"mpg"}}},
        {{"video/mpeg",
          "",
          {"video/x-mpeg", "video/mpg", "video/mp2p", "video/mpeg1", "video/mpeg2", "video/dvd",
           "video/x-ms-vob", "video/x-mod"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "MPEG program streams: MPG, VOB, VRO, MOD",
        "MPEG program streams",
        "",
        "what subtitles show, chapters and menus of a disc, cells of a recording on DVD-VR, the file of a "
        "camcorder beside its pictures",
        {4, 512U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit PSParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;

private:
    bool ReadStream(PSBytes& aBytes, ezMediaInfo& anInfo) const;
};
