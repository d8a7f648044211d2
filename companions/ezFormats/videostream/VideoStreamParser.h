#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/videostream/VideoStreamLimits.h"

#include <utility>

class ByteReader;

/// Streams of video without a container: H.264 and H.265 (annex B), MPEG-1 and MPEG-2 video, MPEG-4 part 2,
/// VC-1; and files of VC-1 with a head, which tells how many frames there are.
///
/// What makes a stream is what the parsers of elementary streams ask for: headers that refer to each other,
/// and a picture after them. The facts are those of these headers. Nothing in such a stream tells how long it
/// is, but a constant rate that it states.
///
/// A parse reads the first 128 KiB; where no stream shows itself in these, 384 KiB; and of MPEG video of a
/// constant rate the last 128 KiB. At most these are 8 reads and 512 KiB; a source that gives less at a time
/// than it is asked for takes more reads for the same bytes.
class VideoStreamParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "VideoStreamParser",
        "h264",
        {"video/h264", "video/h265", "video/mp4v-es", "video/x-vc1"},
        {kVideoStream_MaxReads, kVideoStream_MaxBytes},
        {{"h264",
          {"h264", "264", "avc", "26l", "jvt"},
          {"video/h264", "video/avc"},
          kezUPnPClass_VideoItem,
          {}},
         {"h265",
          {"h265", "265", "hevc", "hvc"},
          {"video/h265", "video/hevc"},
          kezUPnPClass_VideoItem,
          {"h264"}},
         {"m1v", {"m1v"}, {"video/mpeg", "video/mpeg1"}, kezUPnPClass_VideoItem, {"h264", "mpg"}},
         {"m2v",
          {"m2v", "mp2v", "mpv"},
          {"video/mpeg", "video/mpeg2"},
          kezUPnPClass_VideoItem,
          {"h264", "mpg"}},
         {"m4e", {"m4e", "cmp"}, {"video/mp4v-es"}, kezUPnPClass_VideoItem, {"h264"}},
         {"vc1", {"vc1", "rcv"}, {"video/x-vc1", "video/vc1"}, kezUPnPClass_VideoItem, {"h264"}}},
        {{"video/h264", "", {"video/avc"}},
         {"video/h265", "", {"video/hevc"}},
         {"video/x-vc1", "", {"video/vc1"}}},
        {IsAt},
        {"video/mpeg"},
    };

    static constexpr FormatNotes kNotes = {
        "Streams of video without a container: H.264, H.265, MPEG video, VC-1",
        "Video without a container",
        "",
        "how many pictures there are, and so the length of what states no constant rate; further views and "
        "layers",
        {2, 128U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit VideoStreamParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;

private:
    bool ReadStream(MediaBytes& aBytes, ezMediaInfo& anInfo) const;
};
