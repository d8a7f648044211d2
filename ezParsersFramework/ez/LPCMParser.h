#pragma once

#include "ez/MediaParser.h"

/// Recognises the raw 16-bit PCM files of a DLNA conformance test by their names (b-lpcm-1 to b-lpcm-4,
/// extension pcm, any case) while the environment's kProperty_CTTContext is not 0. Raw PCM has no header:
/// everything comes from name and size, and no content is read. Not added to a manager: DLNAFileParser
/// creates it.
class EZPARSERS_API LPCMParser : public ezMediaParser {
public:
    /// @param anEnvironmentInfo  borrowed, may be null
    explicit LPCMParser(ezPropertyList* anEnvironmentInfo);
    ~LPCMParser() override;

    /// The record has MIME type, class, 4th field, codec, sampling rate (Hz, under "ar"), channels and bits
    /// per sample, and the duration in whole seconds where the size of the media is known.
    ezMediaInfo* Parse(ezMediaParserStream& aStream) override;
    /// Completes any record whose MIME type contains "audio/L16", compared with case, whatever its rate and
    /// channels.
    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override;
    /// The four formats, in any context.
    ezCString GetDLNAInfo() override;
};
