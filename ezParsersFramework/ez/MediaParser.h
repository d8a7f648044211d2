#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/base/UInt64.h"
#include "ezPlatform/text/CString.h"

class ezMediaInfo;
class ezMediaParserManager;
class ezMediaParserStream;
struct ezPropertyList;

/// Something that looks at a media and tells what it is. Used by one parse at a time; holds no state between
/// two.
class EZPARSERS_API ezBaseParser {
public:
    /// @param aType                 the key under which a manager files the parser: a type name of the media
    /// types
    ///                              table (mostly a file extension), or "*" for a parser that tries any media
    /// @param anEnvironmentInfo     settings shared with the host; borrowed, may be null
    /// @param afCanExtractCoverArt  the parser finds cover art too (ezMediaParserManager::ParseCoverArt)
    ezBaseParser(const char* aType, ezPropertyList* anEnvironmentInfo, bool afCanExtractCoverArt);
    virtual ~ezBaseParser();

    ezBaseParser(const ezBaseParser&) = delete;
    ezBaseParser& operator=(const ezBaseParser&) = delete;

    /// A new record, owned by the caller, or null when the media is not of the parser's kind. The stream may
    /// be left anywhere. The base recognises nothing.
    virtual ezMediaInfo* Parse(ezMediaParserStream& aStream);

    /// Completes the DLNA side of a record (class, 4th field) from the record alone. True when it did; a
    /// record that is not of the parser's kind stays as it is.
    virtual bool AdjustDLNAInfo(ezMediaInfo* anInfo) = 0;

    /// What the parser's media are announced as: entries parted by "," without blanks, each a MIME type, ":"
    /// and a DLNA 4th field. The base declares nothing.
    virtual ezCString GetDLNAInfo();

    /// Exchanges the environment: borrowed, null for none. ezMediaParserManager::Add calls it with the
    /// manager's, whatever the parser had.
    void SetEnvironmentInfo(ezPropertyList* anEnvironmentInfo) { mEnvironmentInfo = anEnvironmentInfo; }
    /// The key under which a manager files the parser, as it was given. Empty where null was given.
    ezCString GetType() const { return mType; }
    /// True when ezMediaParserManager::ParseCoverArt is to ask this parser.
    bool CanExtractCoverArt() const { return mCanExtractCoverArt; }

protected:
    /// The environment's "ParserSpecsLevel" (ezParserSpecsLevel); 0 without one.
    uint32 GetSpecsLevel() const;
    /// The environment's "CTTContext": not 0 while a DLNA conformance test tool is at work; 0 without one.
    uint32 GetCTTContext() const;

    ezPropertyList* mEnvironmentInfo; ///< borrowed; null when there is none
    ezCString mType;                  ///< what GetType tells; a manager looks once, when the parser is added
    bool mCanExtractCoverArt;         ///< what CanExtractCoverArt tells; a manager looks each time
};

/// A parser for a file format: one block from the start and one from the end of the media, read once, are
/// then looked at in memory. A format overrides Read, and calls ParseFromStream in its Parse.
class EZPARSERS_API ezMediaParser : public ezBaseParser {
public:
    /// The parameters are those of ezBaseParser.
    ezMediaParser(const char* aType, ezPropertyList* anEnvironmentInfo, bool afCanExtractCoverArt);
    ~ezMediaParser() override;

    /// Reads aBeginBufferSize bytes where the stream stands and the last aEndBufferSize bytes of the media,
    /// and gives both to Read. A media of known size that is smaller than a block is read whole, into each
    /// block. Null when a block cannot be had or the begin block cannot be read; without an end block (its
    /// read fails, or the size is unknown) it goes on. With a begin size of 0 the end block is the first read
    /// of the stream, which a media that fits into the stream's buffer does not survive: ask for a begin
    /// block too.
    virtual ezMediaInfo* ParseFromStream(ezMediaParserStream& aMediaStream, std::size_t aBeginBufferSize,
                                         std::size_t aEndBufferSize);

protected:
    /// Looks at the blocks, which are lent for the call: copy what is to stay. A block of size 0 may be null.
    /// aMediaSize is 0 when not known. A new record for the caller, or null. The base recognises nothing.
    virtual ezMediaInfo* Read(uint8* aBegin, std::size_t aBeginSize, uint8* aEnd, std::size_t aEndSize,
                              const ezuint64& aMediaSize);

    /// True where numbers lie in memory with their highest byte first: for a format that takes them as they
    /// lie.
    static bool IsBigEndianPlatform();

    ezMediaParserManager* mManager =
        nullptr; ///< the manager that holds the parser, set when it is added; borrowed

    friend class ezMediaParserManager;
};
