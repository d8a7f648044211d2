#pragma once

#include "ez/BaseParser.h"
#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/base/UInt64.h"
#include "ezPlatform/text/CString.h"

class ezMediaInfo;
class ezMediaParserManager;
class ezMediaParserStream;
struct ezPropertyList;

/// The base of a parser for a file format: one block from the start and one from the end of the media, each
/// read once, are examined in memory. A format overrides Read, and calls ParseFromStream in its Parse.
class EZPARSERS_API ezMediaParser : public ezBaseParser {
public:
    /// The parameters are those of ezBaseParser.
    ezMediaParser(const char* aType, ezPropertyList* anEnvironmentInfo, bool afCanExtractCoverArt);
    ~ezMediaParser() override;

    /// Reads aBeginBufferSize bytes at the current position and the last aEndBufferSize bytes of the stream,
    /// and returns what Read makes of both. Where the size is known and smaller than a block, the block is
    /// the whole content. Null when memory is refused or the begin block cannot be read; without an end block
    /// (its read fails, or the size is unknown) it goes on. Do not ask for an end block alone: as the first
    /// read of a stream whose content fits into its buffer, it would be taken for the start
    /// (ezMediaParserStream).
    virtual ezMediaInfo* ParseFromStream(ezMediaParserStream& aMediaStream, std::size_t aBeginBufferSize,
                                         std::size_t aEndBufferSize);

protected:
    /// Examines the blocks, which are borrowed for the call. A block of size 0 may be null. aMediaSize is in
    /// bytes, 0 when not known. Returns a new record, owned by the caller, or null. The base recognises
    /// nothing.
    virtual ezMediaInfo* Read(uint8* aBegin, std::size_t aBeginSize, uint8* aEnd, std::size_t aEndSize,
                              const ezuint64& aMediaSize);

    /// True where numbers are big-endian in memory: for a format that copies them as they are.
    static bool IsBigEndianPlatform();

    /// The manager that owns the parser, set when it is added; null before.
    ezMediaParserManager* mManager = nullptr;

    friend class ezMediaParserManager;
};
