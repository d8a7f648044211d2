#pragma once

#include "detail/FactLedger.h"

#include "ez/ParseObserver.h"

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

class DLNAMediaMapperParser;
class ExtensionMimeTypeMatcher;

/// What stands between a manager and its observer: it is told each step of a request, passes it on, and keeps
/// the ledgers by which it says in the end who stated what. A manager that nobody observes has none.
///
/// ReportRequest and Report below tell it, so that all steps are within a request. Ledgers live with the
/// trial of a parser: when it declines, those of all records that came about in it go, and when it answers,
/// all but that of its record, since a later record may have the address of one that is gone. A parser that
/// deletes an answer and makes a record of its own where that was looks like one that goes on with it: what
/// both say alike stays the other parser's.
class ParseReporter {
public:
    /// The observer is borrowed.
    explicit ParseReporter(ezParseObserver& anObserver) : mObserver(anObserver) {}

    bool IsTelling() const { return mfTelling; }
    bool IsInRequest() const { return !mScopes.empty(); }

    void RequestBegan(ezParseRequest aRequest, const ezMediaParserStream* aStream);
    void RequestEnded(ezParseRequest aRequest, const ezMediaInfo* anInfo);

    void PassBegan(ezParsePass aPass) { Tell(&ezParseObserver::PassBegan, aPass); }
    void PassEnded(ezParsePass aPass, bool afAnswered) {
        Tell(&ezParseObserver::PassEnded, aPass, afAnswered);
    }

    void EntryBegan(ExtensionMimeTypeMatcherEntry& anEntry, ExtensionMimeTypeMatcher& aMatcher);
    void EntryEnded(const ExtensionMimeTypeMatcherEntry& anEntry, ezEntryResult aResult) {
        Tell(&ezParseObserver::EntryEnded, anEntry, aResult);
    }

    void TypeBegan(const ezCString& aType);
    /// @param afAny  a parser of the type is registered
    void TypeEnded(const ezCString& aType, bool afAny, bool afAnswered);

    /// @param anAdjusted  the record that the parser is to adjust; null where it parses
    void ParserBegan(const ezBaseParser& aParser, const ezMediaInfo* anAdjusted);
    void ParserEnded(const ezBaseParser& aParser, const ezMediaInfo* anInfo);
    void AdjusterEnded(const ezBaseParser& aParser, const ezMediaInfo& anInfo, bool afAdjusted);
    void ParserRefused(const ezBaseParser& aParser, ezParseRefusal aCause, const char* aText) {
        Tell(&ezParseObserver::ParserRefused, aParser, aCause, aText);
    }

    void TestFileNameAsked(const ezMediaInfo* anInfo) { Tell(&ezParseObserver::TestFileNameAsked, anInfo); }
    void MediaMapperAsked(const DLNAMediaMapperParser& aMapper, const ezMediaParserStream& aStream);

    /// A step has written to a record, or made it.
    /// @param anInfo   null where it came to none
    /// @param anEntry  for the steps that have one, else null
    void Stated(const ezMediaInfo* anInfo, ezParseStep aStep, const ExtensionMimeTypeMatcherEntry* anEntry);
    /// The media mapper has written to a record, or made it.
    void Mapped(const ezMediaInfo& anInfo);
    /// A record is thrown away.
    void Dropped(const ezMediaInfo& anInfo);

private:
    /// What has begun and not ended: a request, a type, or the trial of a parser.
    struct Scope {
        std::size_t mFirstLedger;    ///< of the request or trial; what stands before is of those around it
        const ezBaseParser* mParser; ///< in whose trial this is; null in none of this request
        bool mfTried;                ///< a parser was tried in it
    };

    template <typename... Parameters, typename... Arguments>
    void Tell(void (ezParseObserver::*anOperation)(Parameters...), Arguments&&... aArguments) {
        mfTelling = true;
        (mObserver.*anOperation)(aArguments...);
        mfTelling = false;
    }

    void Begin(const Scope& aScope) { mScopes.push_back(aScope); }
    void EndTrial();
    FactLedger* Find(const ezMediaInfo& anInfo);
    /// A new one where there is none.
    FactLedger& LedgerOf(const ezMediaInfo& anInfo);

    ezParseObserver& mObserver;
    bool mfTelling = false;
    std::vector<Scope> mScopes;       ///< the innermost last
    std::vector<FactLedger> mLedgers; ///< in the order in which their records were first seen
};

/// Begins a request, if there is a reporter: null where nobody observes.
inline void ReportRequest(ParseReporter* aReporter, ezParseRequest aRequest,
                          const ezMediaParserStream* aStream) {
    if (aReporter != nullptr) {
        aReporter->RequestBegan(aRequest, aStream);
    }
}

/// Tells a reporter of a step, if there is one: Report(reporter, &ParseReporter::PassBegan, pass). Steps
/// outside a request are told to nobody, nor are those that an observer itself takes while it is told of
/// another. Callers get the reporter of their manager anew for each step, since outside a request a parser
/// may have it replaced, and hand over only what they have at hand: where nobody observes a step costs a
/// test.
template <typename... Parameters, typename... Arguments>
inline void Report(ParseReporter* aReporter, void (ParseReporter::*aStep)(Parameters...),
                   Arguments&&... anArguments) {
    if (aReporter != nullptr && aReporter->IsInRequest() && !aReporter->IsTelling()) {
        (aReporter->*aStep)(std::forward<Arguments>(anArguments)...);
    }
}
