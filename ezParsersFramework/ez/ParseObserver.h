#pragma once

#include "ez/MediaParserTypes.h"

class DLNAMediaMapperEntry;
class ezBaseParser;
class ezMediaInfo;
class ezMediaParserStream;
struct ExtensionMimeTypeMatcherEntry;

/// What a request asks of a manager.
enum class ezParseRequest {
    Identify, ///< ezMediaParserManager::Parse
    CoverArt, ///< ezMediaParserManager::ParseCoverArt
    Adjust    ///< ezMediaParserManager::AdjustDLNAInfo
};

/// The walks of the media types ini parser over entries of the media types table, in the order in which they
/// can follow each other. docs/architecture.md says when each is made.
enum class ezParsePass {
    AllFirst,    ///< all entries, by kParseOption_ParseWithAllParserEverytime
    MimeType,    ///< those of the MIME type that the stream states
    NoExtension, ///< all entries, by kParseOption_ParseWithAllParserIfNoExtension
    Failed,      ///< all entries, by kParseOption_ParseWithAllParserIfFailed
    Extension,   ///< those of the stream's extension; the last of them alone can make a record
    Adjust       ///< those of the MIME type of a record that is adjusted
};

/// How an entry of the media types table fared.
enum class ezEntryResult {
    Declined,  ///< nothing answered for it
    Won,       ///< the record is completed from it
    Excluded,  ///< something answered, and the answer was thrown away since the entry is an excluded one
    MadeRecord ///< nothing answered, and the record is made of the entry alone
};

/// How the parsers of a type fared.
enum class ezTypeResult {
    Answered,   ///< one of them did
    Declined,   ///< at least one was tried, none answered
    NoParser,   ///< no parser of that type is registered
    TriedBefore ///< all parsers of that type had been tried in this request
};

/// Why a parser refuses media.
enum class ezParseRefusal {
    Malformed,   ///< it breaks its format, or ends early
    Unsupported, ///< a kind of the format that the parser does not read
    Limit,       ///< it needs more than one parse may cost or hold
    ReadError    ///< the stream failed
};

/// The step of a request that stated a fact of the record.
enum class ezParseStep {
    Parser,         ///< a parser read it from the media
    TestFileName,   ///< the name of a conformance test file (DLNAFileParser)
    EntryAlone,     ///< an entry of the media types table, where nothing answered
    BitRates,       ///< follows from other bit rates of the record, or was cleared with them
    EntryNames,     ///< the entry that won names what the parser left open
    TypesExtension, ///< the media types table's first extension of the MIME type
    MediaMapper,    ///< the operator's table
    Stream          ///< the stream: its size, name and time
};

/// Where a fact of the record that a caller gets is from. What it refers to is borrowed for the call.
struct ezFactSource {
    ezParseStep mStep; ///< which step stated it
    /// For ezParseStep::Parser, else null; null too where a manager of the host's own answered for its
    /// parsers.
    const ezBaseParser* mParser;
    const ExtensionMimeTypeMatcherEntry* mEntry; ///< for EntryAlone and EntryNames, else null
};

/// Told what a manager does while it does it, so that a host can say why media is announced as it is. Set by
/// ezMediaParserManager::SetObserver. Every operation does nothing here; a host overrides those that it
/// wants.
///
/// Operations come in pairs, ...Began and ...Ended, that nest: a parser may ask for a type, or have another
/// stream identified, which is a request within its own. What is handed in is the manager's or the parser's,
/// to be looked at during the call and not kept; the stream is not read. What parsers say and records hold is
/// from the media: it may be any bytes. What a host asks of ezMediaParserManager::ParseFromType itself
/// belongs to no request and is not told.
///
/// An observer is called in the thread of the request and asks nothing of its manager in a call: Parse,
/// ParseCoverArt, AdjustDLNAInfo, ParseFromType, AdjustDLNAInfoFromType, SetObserver and TellRefusal are then
/// the assertion "!IsTelling()", and answer like a request that found nothing, or change nothing. It throws
/// nothing either: nobody would catch it, and the request would never end.
class EZPARSERS_API ezParseObserver {
public:
    ezParseObserver() = default;
    virtual ~ezParseObserver();
    ezParseObserver(const ezParseObserver&) = delete;
    ezParseObserver& operator=(const ezParseObserver&) = delete;

    /// A request begins.
    /// @param aStream  what is to be identified; null where a record is adjusted
    virtual void RequestBegan(ezParseRequest aRequest, const ezMediaParserStream* aStream);
    /// It is over.
    /// @param anInfo  what the caller gets; null where nothing was recognised, or nothing adjusted
    virtual void RequestEnded(ezParseRequest aRequest, const ezMediaInfo* anInfo);

    /// Entries of the media types table are walked over; there may be none of them.
    virtual void PassBegan(ezParsePass aPass);
    /// The walk is over.
    /// @param afAnswered  there is a record, or the one to adjust is adjusted
    virtual void PassEnded(ezParsePass aPass, bool afAnswered);

    /// An entry is considered: the parsers of its types are tried next.
    virtual void EntryBegan(const ExtensionMimeTypeMatcherEntry& anEntry, bool afExcluded);
    /// The entry is done with.
    virtual void EntryEnded(const ExtensionMimeTypeMatcherEntry& anEntry, ezEntryResult aResult);

    /// The parsers of a type are asked for.
    virtual void TypeBegan(const char* aType);
    /// The type is done with.
    virtual void TypeEnded(const char* aType, ezTypeResult aResult);

    /// A parser is tried.
    /// @param aName  its class, as its source calls it, or as the compiler does where that cannot be told
    virtual void ParserBegan(const ezBaseParser& aParser, const char* aName);
    /// A parser says why it refuses the media that it is being tried on. One that only returns null gave no
    /// reason.
    virtual void ParserRefused(const ezBaseParser& aParser, ezParseRefusal aCause, const char* aText);
    /// The parser is done with.
    /// @param anInfo  its answer; null where it declined
    virtual void ParserEnded(const ezBaseParser& aParser, const ezMediaInfo* anInfo);

    /// The file name was asked as that of a conformance test.
    /// @param anInfo  what it told; null for another name
    virtual void TestFileNameAsked(const ezMediaInfo* anInfo);

    /// The operator's table was asked.
    /// @param anEntry  its entry; null where it does not know the media
    virtual void MediaMapperAsked(const DLNAMediaMapperEntry* anEntry);

    /// The operator's table changed a fact of the record, or, where no parser answered, stated it.
    /// @param aKey   the record's key ("mt")
    /// @param anOld  the text before; null where there was none
    /// @param aNew   the text now; null where it was taken away
    virtual void MediaMapperChanged(const char* aKey, const char* anOld, const char* aNew);

    /// Told of each fact of the record that the request ends with, after everything else and before
    /// RequestEnded: the step that stated its value. An answer that was thrown away states nothing, and a
    /// step that states the same value again does not count. Of a record that is adjusted, only what the
    /// request changed. Keys come first, in byte order, then members.
    /// @param aKey  the record's key ("mt"), or the name of a member: "mFullPath", "mLastModificationTime",
    ///              "mTitle", "mCreator", "mGenre" or "mAlbum"
    virtual void FactStated(const char* aKey, const ezFactSource& aSource);
};
