#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/jpeg/JPEGLimits.h"

#include <utility>

class ByteReader;
struct JPEGComponents;

/// JPEG pictures (ITU-T T.81, JFIF, Exif): size, process, precision, colours and their sampling, and the
/// orientation and the date that the first Exif segment states. Segments before the frame header are stepped
/// over, so a thumbnail within one is never taken for the picture; what follows the frame header is not
/// looked at. A height that is not stated before the picture ("DNL") is left out.
///
/// A parse reads the first 8 KiB, and for each segment to be stepped over that ends elsewhere a block: 4 KiB,
/// or twice the block before where it goes straight on, up to 64 KiB, as for an Exif directory out of all
/// proportion. At most these are 192 reads, 193 seeks and 1 MiB; a source that gives less at a time than it
/// is asked for takes more reads for the same bytes.
class JPEGParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "JPEGParser",
        "jpg",
        {"image/jpeg"},
        {kJPEG_MaxReads, kJPEG_MaxBytes},
        {{"jpg",
          {"jpg", "jpeg", "jpe", "jfif"},
          {"image/jpeg", "image/jpg", "image/pjpeg"},
          kezUPnPClass_Photo,
          {}},
         {"mpo", {"mpo"}, {"image/jpeg", "image/mpo"}, kezUPnPClass_Photo, {"jpg"}}},
        {{"image/jpeg", "", {"image/jpg", "image/pjpeg"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "JPEG",
        "",
        "Exif: orientation and date",
        "XMP, IPTC, colour profiles, comments, the pictures after the first of an MPO, what follows the "
        "frame header",
        {2, 32U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit JPEGParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;

private:
    struct Walk;
    struct Finds;

    bool NextSegment(Walk& aWalk) const;
    bool ReadFrame(Walk& aWalk, const Finds& aFinds, ezMediaInfo& anInfo) const;
    bool ReadComponents(Walk& aWalk, JPEGComponents* aComponents) const;
};
