#pragma once

#include "ez/MediaParser.h"

/// The parser of the type "any": it knows media whose name lies. It looks at what stands where the formats of
/// this library have a magic, and has its manager try the parsers of the format that shows, which decide.
///
/// The media types file names it last in a line, after the parsers that the name leads to, so a file that
/// is what it is called costs nothing more:
///
///     mp3=mp3@audio/mpeg@item.audioItem.musicTrack@mp2,any
///
/// It has no media of its own: it declares nothing and adjusts nothing. It reads the first block, which is
/// kept for the parsers after it, and one more where tags stand before the sound; at most 4 reads and 64 KiB.
/// The parsers find the stream where this one found it.
class MagicParser : public ezMediaParser {
public:
    MagicParser();
    ~MagicParser() override;

    /// The record of the parser that knows the media; null when no magic shows, when that parser was tried in
    /// this request already, and without a manager.
    ezMediaInfo* Parse(ezMediaParserStream& aStream) override;
    /// Always false.
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override;
    /// Always "".
    ezCString GetDLNAInfo() override;
};
