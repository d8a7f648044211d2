#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/avi/AVILimits.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"

#include <utility>

class ByteReader;

/// AVI files, with the extensions of OpenDML: the stream of pictures and the one of sound that play first,
/// how many there are, the length, and the texts. Frames are looked at for what their codec tells of itself.
///
/// A parse reads the first 8 KiB, the rest of the headers and what follows them, and 4 KiB for each chunk
/// after the frames. Of a file whose length nothing states, the index or places of it, and else places of the
/// frames are read as well. At most these are 32 reads and 1 MiB; a source that gives less at a time than it
/// is asked for takes more reads for the same bytes. Of unknown size, nothing after the first frames is read.
class AVIParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "AVIParser",
        "avi",
        {"video/x-msvideo"},
        {kAVI_MaxReads, kAVI_MaxBytes},
        {{"avi",
          {"avi"},
          {"video/x-msvideo", "video/avi", "video/msvideo", "video/vnd.avi"},
          kezUPnPClass_VideoItem,
          {}},
         {"divx",
          {"divx", "xvid"},
          {"video/x-msvideo", "video/divx", "video/x-divx"},
          kezUPnPClass_VideoItem,
          {"avi"}}},
        {{"video/x-msvideo",
          "",
          {"video/avi", "video/msvideo", "video/vnd.avi", "video/divx", "video/x-divx"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "AVI and OpenDML",
        "AVI and OpenDML",
        "the list `INFO`; the date of a camera (`IDIT`)",
        "covers, for which the format has no place, other lists of texts, names of streams, what subtitles "
        "show, indexes of frames where a header states the length",
        {3, 64U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit AVIParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;
};
