#pragma once

#include "ezFormats/FormatParser.h"

struct JPEGComponents;

/// JPEG pictures (ITU-T T.81, JFIF, Exif): size, process, precision, colours and their sampling, and the
/// orientation that the first Exif segment states. Segments before the frame header are stepped over, so a
/// thumbnail within one is never taken for the picture; what stands behind the frame header is not looked at.
/// A height that is not stated before the picture ("DNL") is left out.
///
/// A parse reads the first 8 KiB, and for each segment to be stepped over that ends elsewhere a block: 4 KiB,
/// or twice the block before where it goes straight on, up to 64 KiB, as for an Exif directory out of all
/// proportion. At most these are 192 reads, 193 seeks and 1 MiB; a source that gives less at a time than it
/// is asked for takes more reads for the same bytes.
class EZFORMATS_API JPEGParser : public FormatParser {
public:
    /// @param aRules  decide the profile that a media is announced with; not null, shared
    explicit JPEGParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn());
    ~JPEGParser() override;

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;

private:
    struct Walk;
    struct Finds;

    bool NextSegment(Walk& aWalk) const;
    bool ReadFrame(Walk& aWalk, const Finds& aFinds, ezMediaInfo& anInfo) const;
    bool ReadComponents(Walk& aWalk, JPEGComponents* aComponents) const;
};
