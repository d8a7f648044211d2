#pragma once

#include "host/Facts.h"

#include "ez/ParseObserver.h"

#include <cstddef>
#include <string>
#include <vector>

struct Source {
    ezParseStep mStep = ezParseStep::Stream;
    /// The parser's type, the entry's name, the MIME type that led to the extension, or what the operator's
    /// table replaced by what; "" of other steps.
    std::string mDetail;
    std::string mParserName; ///< the parser's class, of ezParseStep::Parser
};

struct ExplainedFact {
    Fact mFact;
    Source mSource;
};

/// An entry of the media types file that was considered.
struct ExplainedEntry {
    ezParsePass mPass; ///< what led to it
    std::string mName;
    bool mfExcluded;
    ezEntryResult mResult = ezEntryResult::Declined;
};

/// One parser that was tried, or one type that led to none.
struct ExplainedAttempt {
    std::string mType;
    std::string mParserName; ///< "" where the type led to no parser
    ezTypeResult mResult;
    std::size_t mDepth;        ///< 0 as the request itself asked, 1 as a parser of that asked, and so on
    std::string mReason;       ///< why the parser declined, where it said so
    bool mfAsksOthers = false; ///< the parser asked for others, or looked for some to ask
};

/// Why an announcement says what it says.
struct Explanation {
    std::vector<ExplainedFact> mFacts;       ///< none for what was not recognised
    std::vector<ExplainedEntry> mEntries;    ///< in the order in which they were considered
    std::vector<ExplainedAttempt> mAttempts; ///< in the order in which they began
};

/// The names for programs: "file-name", "mime-type", "made-record", "no-parser".
const char* CodeOf(ezParseStep aStep);
const char* CodeOf(ezParsePass aPass);
const char* CodeOf(ezEntryResult aResult);
const char* CodeOf(ezTypeResult aResult);

std::string InWords(const Source& aSource);
std::string InWords(const ExplainedAttempt& anAttempt);

/// "malformed: ends before the frame header".
std::string InWords(ezParseRefusal aCause, const char* aText);

/// The entries, a line for each pass that considered any: "mp3, txt (excluded)". Where these are not only
/// those of the file's extension a line says what led to them. Of no entries one line, "none".
std::vector<std::string> InWords(const std::vector<ExplainedEntry>& anEntries);
