#pragma once

#include "ezFormats/codecs/WaveFormat.h"
#include "ezFormats/tags/CoverFacts.h"
#include "ezFormats/tags/MusicTexts.h"

#include "ezBytes/ByteReader.h"
#include "ezBytes/WAVWalk.h"

#include <cstdint>

class CodePage;
class MediaBytes;

/// What the chunks of a file tell.
struct WAVChunks {
    bool mfFormat = false;
    WaveFormat mFormat;
    WAVSound mSound;
    std::uint64_t mSamples = 0; ///< of a channel, as "fact" or "ds64" states them
    MusicTexts mID3;
    MusicTexts mInfo;
    MusicTexts mBext;
    CoverFacts mCover;
};

/// Reads them. aReader stands at the first.
WAVChunks ReadWAVChunks(MediaBytes& aBytes, const ByteReader& aReader, const WAVHead& aHead,
                        const CodePage& aCodePage);
