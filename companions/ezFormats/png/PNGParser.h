#pragma once

#include "ezFormats/FormatParser.h"
#include "ezFormats/detail/FormatDescription.h"
#include "ezFormats/detail/FormatNotes.h"
#include "ezFormats/png/PNGLimits.h"

#include <utility>

class ByteReader;

/// PNG pictures (PNG, third edition): size, bit depth, colours, whether they are interlaced, and the
/// orientation of an "eXIf" chunk. What follows the beginning of the picture data is not looked at.
///
/// A parse reads the first 8 KiB, and for each chunk to be stepped over that ends elsewhere a block: 4 KiB,
/// or twice the block before where it goes straight on, up to 64 KiB. At most these are 64 reads, 65 seeks
/// and 384 KiB; a source that gives less at a time than it is asked for takes more reads for the same bytes.
class PNGParser : public FormatParser {
public:
    /// Whether what begins there is of the format.
    static bool IsAt(ByteReader aBytes);

    static constexpr FormatDescription kDescription = {
        "PNGParser",
        "png",
        {"image/png"},
        {kPNG_MaxReads, kPNG_MaxBytes},
        {{"png", {"png", "apng"}, {"image/png", "image/x-png", "image/apng"}, kezUPnPClass_Photo, {}}},
        {{"image/png", "", {"image/x-png"}}},
        {IsAt},
    };

    static constexpr FormatNotes kNotes = {
        "PNG",
        "",
        "Exif (`eXIf`): orientation and date",
        "texts (`tEXt`, `zTXt`, `iTXt`), times, colour profiles, frames of an animation, what follows the "
        "beginning of the picture data",
        {2, 32U << 10},
    };

    /// @param aRules  decide the profile that a file is announced with; not null, shared
    explicit PNGParser(std::shared_ptr<const ProfileRules> aRules = ProfileRules::BuiltIn())
        : FormatParser(kDescription, std::move(aRules)) {}

protected:
    bool ReadFormat(MediaBytes& aBytes, ezMediaInfo& anInfo) override;

private:
    bool ReadHeader(MediaBytes& aBytes, ByteReader& aReader, ezMediaInfo& anInfo) const;
    bool ReadFields(ByteReader& aHeader, ezMediaInfo& anInfo) const;
    bool ReadChunks(MediaBytes& aBytes, ByteReader& aReader, ezMediaInfo& anInfo) const;
};
