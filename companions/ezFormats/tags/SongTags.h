#pragma once

#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/Limits.h"

#include <cstdint>

class ByteReader;
class CodePage;
class CoverFacts;
class MediaBytes;

/// Tags around the sound of a file, which any format without a place for them in itself may have.

/// What stands before the sound.
struct LeadingTags {
    std::uint64_t mEnd = 0; ///< where the last of them ends
    MusicTexts mTexts;
    CoverFacts mCover;
    /// False: a tag claims more bytes than the file has; the end is that of its header.
    bool mfBelieved = true;
};

/// Reads the tags at the start of a file and steps over them.
/// @param aNext  bytes after them that are asked for next: they are read together with the end of a tag
LeadingTags ReadLeadingTags(MediaBytes& aBytes, const CodePage& aCodePage, std::uint32_t aNext);

/// What stands after the sound.
struct TailTags {
    std::uint64_t mStart = 0; ///< where the first of them begins, and the sound ends
    MusicTexts mTexts;        ///< what APE items do not tell, Lyrics3 may, and then ID3v1
    CoverFacts mCover;        ///< of APE items
};

/// Reads the tags at the end of a file: one read, and another for one that is longer. None is found where the
/// size of the file is not known, or its end cannot be read.
/// @param aStart  of the sound: no tag reaches before it
/// @param aSize   bytes of the end that are read for it, and in which the tags' own ends are looked for
TailTags ReadTailTags(MediaBytes& aBytes, std::uint64_t aStart, const CodePage& aCodePage,
                      std::uint32_t aSize = kAudioTail_ReadSize);

/// Takes the texts and the cover of an ID3v2 tag that a chunk of a file holds: what is not told yet. A tag
/// that claims more than the chunk has is read as far as there is any.
void TakeID3Chunk(MediaBytes& aBytes, const ByteReader& aChunk, const CodePage& aCodePage, MusicTexts& aTexts,
                  CoverFacts& aCover);
