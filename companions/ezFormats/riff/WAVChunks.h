#pragma once

#include "ezFormats/codecs/WaveFormat.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/ChunkWalk.h"

#include <cstdint>

class CodePage;
class MediaBytes;

/// How a file of the family begins.
struct WAVHead {
    ChunkLayout mLayout = kChunks_RIFF;
    BoxType mKind;           ///< "RIFF", "RIFX", "RF64", "BW64", "riff"; NULs for what is none of these
    BoxType mForm;           ///< "WAVE"; what another file of chunks is
    std::uint64_t mSize = 0; ///< what the file states to have after the head's first eight bytes
};

/// Reads it; aReader stands at the first chunk then, where the form is "WAVE".
WAVHead ReadWAVHead(ByteReader& aReader);

/// What the chunks of a file tell.
struct WAVChunks {
    bool mfFormat = false;
    WaveFormat mFormat;
    bool mfSound = false;
    std::uint64_t mSoundStart = 0; ///< position
    std::uint64_t mSoundSize = 0;  ///< bytes; 0 where they cannot be told
    std::uint64_t mSoundEnd = 0;   ///< position that no sound is at or after
    bool mfMeasured = false;       ///< by the file, as the chunk states none, or what cannot be
    std::uint64_t mSamples = 0;    ///< of a channel, as "fact" or "ds64" states them
    MusicTexts mID3;
    MusicTexts mInfo;
    MusicTexts mBext;
    CoverFacts mCover;
};

/// Reads them. aReader stands at the first.
WAVChunks ReadWAVChunks(MediaBytes& aBytes, const ByteReader& aReader, const WAVHead& aHead,
                        const CodePage& aCodePage);
