#pragma once

#include "ez/MediaParser.h"
#include "ez/MediaParserTypes.h"

#include "ezPlatform/containers/ObjectList.h"
#include "ezPlatform/containers/VoidPtrList.h"
#include "ezPlatform/text/CString.h"

#include <memory>

class DLNAMediaMapper;
class DLNAMediaMapperParser;
class ezMediaInfo;
class ezMediaParserStream;
class ezMimeTypesDotIniParser;
class ezParseObserver;
class ParseReporter;
struct ezCustomHashTable;
struct ezPropertyList;
enum class ezParseRefusal;

/// Parsers in the order in which they are tried.
using ezParserList = ezObjectList<ezBaseParser>;

/// The entry point of the library for a media server: owns the parsers, picks those that fit a media file or
/// stream, runs them, and assembles what the server announces.
///
/// A host creates it, calls AddStandardParsers once, adds parsers of its own, and then asks Parse,
/// ParseCoverArt, AdjustDLNAInfo and GetDLNAInfo any number of times. Within one Parse or AdjustDLNAInfo each
/// parser runs at most once, however it is reached; a parser therefore calls none of the three on its own
/// manager, which would begin a new request, but ParseFromType and AdjustDLNAInfoFromType. Not locked: a
/// manager serves one request at a time; parse in parallel with one manager each.
class EZPARSERS_API ezMediaParserManager {
public:
    /// @param anEnvironmentInfo  handed to every parser that is added; borrowed, may be null, outlives the
    /// manager
    explicit ezMediaParserManager(ezPropertyList* anEnvironmentInfo);
    /// Deletes the parsers.
    virtual ~ezMediaParserManager();

    ezMediaParserManager(const ezMediaParserManager&) = delete;
    ezMediaParserManager& operator=(const ezMediaParserManager&) = delete;

    /// Identifies a media file or stream: a new record that the caller owns, completed with what the stream
    /// knows, or null when nothing recognised it or the winner did not tell the MIME type. The stream must be
    /// open and at its start.
    virtual ezMediaInfo* Parse(ezMediaParserStream& aStream);

    /// Completes the DLNA side of a record from its MIME type through the media types table. False when no
    /// parser did, and for null. Without AddStandardParsers it is the assertion "mMimeTypesDotIniParser !=
    /// NULL".
    virtual bool AdjustDLNAInfo(ezMediaInfo* anInfo);

    /// Tries the parsers of one type (any case) that this request has not tried yet, in order of
    /// registration. The first answer is the result and the caller's; the stream is put back
    /// where it stood, as far as it can be moved. Null when none answers. Part of a request: it begins none,
    /// so a host that calls it directly skips the parsers that its last request has tried.
    virtual ezMediaInfo* ParseFromType(const ezCString& aType, ezMediaParserStream& aStream);

    /// Asks the parsers that declare a MIME type and can extract cover art. A new record of the first that
    /// answers, as it gave it, or null. The stream is put back.
    virtual ezMediaInfo* ParseCoverArt(const ezCString& aMimeType, ezMediaParserStream& aStream);

    /// Adjusts a record by the parsers of one type that this request has not used yet; true with the first
    /// that does. The type "*" is the assertion "aType.Compare(\"*\") != 0" and false: it would lead back to
    /// its caller.
    bool AdjustDLNAInfoFromType(const ezCString& aType, ezMediaInfo* anInfo);

    /// Takes ownership of a parser: files it under its type and under every MIME type that it declares, gives
    /// it this manager and its environment, and deletes it with the manager. A parser added twice is tried
    /// once and deleted once. One that is added while its list is walked, as by a parser that is being tried,
    /// is not tried in that walk, but in the next. False only for null. A parser belongs to one manager.
    bool Add(ezMediaParser* aMediaParser);

    /// Adds the parser of the media types ini file. aParseOptions is a set of ezParseOption bits. A second
    /// call is the assertion "mMimeTypesDotIniParser == NULL" and adds nothing.
    void AddStandardParsers(int aParseOptions);

    /// Puts an operator's table in force. It is borrowed and must outlive the last Parse. Load it before:
    /// what it adds to GetDLNAInfo is fixed here. Null adds nothing. A second call is the assertion
    /// "mDLNAMediaMapperParser == NULL" and changes nothing.
    void AddDLNAMediaMapperParser(DLNAMediaMapper* aMediaMapper);

    /// Has an observer told what requests do and why (ez/ParseObserver.h); null for nobody, as at first. It
    /// is borrowed, and is told nothing between two requests. Within a request that is observed a call is the
    /// assertion "!IsInRequest()" and changes nothing; within one that is not it counts from the next request
    /// on.
    void SetObserver(ezParseObserver* anObserver);
    /// True when there is an observer: whoever would gather what TellRefusal says need not do so without one.
    bool IsObserved() const { return mReporter != nullptr; }
    /// Tells the observer, if there is one, why a parser refuses the media that it is being tried on. For
    /// parsers, in their Parse; the text is borrowed, one line, and for people.
    void TellRefusal(const ezBaseParser& aParser, ezParseRefusal aCause, const char* aText);

    /// The parser that AddStandardParsers added, owned by the manager; null before.
    ezMimeTypesDotIniParser* GetMimeTypesDotIniParser() const { return mMimeTypesDotIniParser; }

    /// What all parsers declare (ezBaseParser::GetDLNAInfo), separated by ",": types in the order in which
    /// they were first registered, parsers of a type in order of registration, so the same in every run.
    /// Entries that two parsers declare appear twice. The enabled profiles of the media mapper come last.
    ezCString GetDLNAInfo();
    /// The same with every entry in its link-protected (DTCP-IP) form.
    ezCString GetDLNAInfoDTCP();

protected:
    /// Appends what a parser declares; null and a parser that declares nothing add nothing, not even a comma.
    void AppendDLNAInfo(ezBaseParser* aMediaParser, ezCString& aDLNAInfo);

    /// The list under the lower-case form of a key; where there is none a new one with afAdd (that owns its
    /// parsers with afAutoDelete), else null.
    ezParserList* ParserListFrom(ezCustomHashTable* aHashTable, const ezCString& aType, bool afAdd,
                                 bool afAutoDelete);
    /// The list of a type, of parsers that it owns. A new one with afAdd, else null, where there is none.
    ezParserList* ParserListFromType(const ezCString& aType, bool afAdd);
    /// The same for a MIME type; the list borrows its parsers.
    ezParserList* ParserListFromMimeType(const ezCString& aMimeType, bool afAdd);

    /// Files a parser under each MIME type that it declares.
    void AddToMimeTypeList(ezBaseParser* aMediaParser);

    /// Lets the media mapper confirm, change or supply the record; takes ownership of anInfo, which may be
    /// null, and returns the record that counts. The mapper wins for profile, MIME type and class, and for
    /// bit rate and duration where it knows them.
    ezMediaInfo* MediaMapperValidate(ezMediaParserStream& aStream, ezMediaInfo* anInfo);

    ezCustomHashTable* mParserListByType; ///< lower-case type to ezParserList; the lists own their parsers
    ezCustomHashTable* mParserListByMimeType; ///< lower-case MIME type to ezParserList; the lists borrow
    ezVoidPtrList mDoneParsers;               ///< the ezBaseParsers tried in this request, in the order tried
    ezPropertyList* mEnvironmentInfo;         ///< borrowed; null when there is none
    ezMimeTypesDotIniParser* mMimeTypesDotIniParser = nullptr; ///< owned by its type list
    DLNAMediaMapperParser* mDLNAMediaMapperParser = nullptr;   ///< owned; in no list

private:
    /// Marks a parser as tried in this request; false when it was already.
    bool BeginParser(const ezBaseParser* aParser);
    /// Asserts that this is no call of the observer, which must not ask its manager. True when it is not one.
    bool MayBeAsked() const;
    /// The record of a request, as Parse returns it.
    ezMediaInfo* Identify(ezMediaParserStream& aStream);
    /// Has a parser adjust a record.
    bool Adjust(ezBaseParser& aParser, ezMediaInfo& anInfo);

    std::unique_ptr<ParseReporter> mReporter; ///< of the observer; null when there is none

    friend class ezMimeTypesDotIniParser;
};
