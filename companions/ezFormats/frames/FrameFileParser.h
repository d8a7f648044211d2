#pragma once

#include "ezFormats/FormatParser.h"

#include "ezFormats/detail/SoundRecord.h"
#include "ezFormats/frames/FrameReader.h"
#include "ezFormats/tags/SongTags.h"

#include <cstdint>

class CodedFrames;
class MediaBytes;

/// A file of frames, as it was read.
struct FrameFile {
    LeadingTags mTags; ///< with the texts of those after the sound
    CodedFrame mFirst;
    SoundFacts mSound; ///< all but the codec
};

/// The base of the formats whose files are frames without a container: nothing else stands between the tags
/// at the start (ID3v2, APE) and those at the end (APE, Lyrics3, ID3v1).
class FrameFileParser : public FormatParser {
protected:
    using FormatParser::FormatParser;

    /// Reads the tags and the frames. False, after Refuse said why, where there is no stream of them.
    /// @param aName  of the format, as OtherFormatAt has it
    bool ReadFrameFile(MediaBytes& aBytes, const FrameReader& aReader, const char* aName,
                       FrameFile& aFile) const;

    /// Reads the frames from a position on, at which the first of them stands, and what tags stand after
    /// them: for a format with a head of its own.
    /// @param aEnd  the sound ends there, or where tags begin before that
    bool ReadFramesAt(MediaBytes& aBytes, const FrameReader& aReader, std::uint64_t aStart,
                      std::uint64_t anEnd, FrameFile& aFile) const;

    static void Store(const FrameFile& aFile, ezMediaInfo& anInfo);

private:
    bool Measure(MediaBytes& aBytes, CodedFrames& aFrames, std::uint64_t anEnd, FrameFile& aFile) const;
};
