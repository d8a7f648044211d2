#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

class ezMediaInfo;
class ezMediaParserStream;
struct ezPropertyList;

/// The base of every parser: looks at the bytes of a media file or stream and tells what it is. Used by one
/// thread and one parse at a time; keeps no state between two parses.
class EZPARSERS_API ezBaseParser {
public:
    /// @param aType                 the key under which a manager files the parser: a type name of the media
    ///                              types table (mostly a file extension), or "*" for one that is tried on
    ///                              everything; copied, null is ""
    /// @param anEnvironmentInfo     settings shared with the host (ezEnvironment); borrowed, may be null
    /// @param afCanExtractCoverArt  the parser finds cover art too (ezMediaParserManager::ParseCoverArt)
    ezBaseParser(const char* aType, ezPropertyList* anEnvironmentInfo, bool afCanExtractCoverArt);
    virtual ~ezBaseParser();

    ezBaseParser(const ezBaseParser&) = delete;
    ezBaseParser& operator=(const ezBaseParser&) = delete;

    /// A new record, owned by the caller, or null when the stream is not of the parser's format. It may leave
    /// the stream at any position. The base recognises nothing.
    virtual ezMediaInfo* Parse(ezMediaParserStream& aStream);

    /// Completes the DLNA side of a record (class, 4th field) from the record alone. True when it did; a
    /// record of another format stays as it is.
    virtual bool AdjustDLNAInfo(ezMediaInfo* anInfo) = 0;

    /// The announcements that the parser can make: entries separated by "," without blanks, each a MIME type,
    /// ":" and a DLNA 4th field. The base declares nothing.
    virtual ezCString GetDLNAInfo();

    /// Replaces the environment: borrowed, null for none. ezMediaParserManager::Add calls it with that of the
    /// manager.
    void SetEnvironmentInfo(ezPropertyList* anEnvironmentInfo) { mEnvironmentInfo = anEnvironmentInfo; }
    /// The key under which a manager files the parser, as it was given.
    ezCString GetType() const { return mType; }
    /// True when ezMediaParserManager::ParseCoverArt is to ask this parser.
    bool CanExtractCoverArt() const { return mCanExtractCoverArt; }

protected:
    /// The environment's kProperty_Parser_SpecsLevel (ezParserSpecsLevel); 0 without one.
    uint32 GetSpecsLevel() const;
    /// The environment's kProperty_CTTContext (ezCTTContext): not 0 while a DLNA conformance test tool is at
    /// work; 0 without one.
    uint32 GetCTTContext() const;

    ezPropertyList* mEnvironmentInfo; ///< borrowed; null when there is none
    ezCString mType;          ///< what GetType returns; a manager reads it once, when the parser is added
    bool mCanExtractCoverArt; ///< what CanExtractCoverArt returns; a manager reads it each time
};
