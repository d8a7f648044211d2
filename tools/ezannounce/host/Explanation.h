#pragma once

#include "host/Facts.h"
#include "host/HostManager.h"
#include "host/RefusalLog.h"

#include <memory>
#include <string>
#include <vector>

class ExtensionMimeTypeMatcher;
class ezMediaParserStream;
struct MapperAnswer;
struct ExtensionMimeTypeMatcherEntry;
struct ezPropertyList;

enum class SourceKind {
    Parser,      ///< a parser read it from the media; mDetail is the parser's type
    Entry,       ///< an entry of the media types file; mDetail is the entry's name
    TypesFile,   ///< the media types file as a whole; mDetail is the MIME type that led to it
    FileName,    ///< the name of a conformance-test file
    BitRates,    ///< follows from other bit rates of the record, or was cleared with them
    Stream,      ///< the file itself: its size, name and time
    MediaMapper, ///< the operator's table; mDetail is what it replaced by what
    Afterwards   ///< stated after all parsers had answered
};

struct Source {
    SourceKind mKind = SourceKind::Afterwards;
    std::string mDetail;
    std::string mParserName; ///< the parser's class, for SourceKind::Parser
};

/// The name of a kind of source for programs: "file-name".
const char* CodeOf(SourceKind aKind);
const char* CodeOf(Outcome anOutcome);
std::string InWords(const Source& aSource);

struct ExplainedFact {
    Fact mFact;
    Source mSource;
};

struct ExplainedEntry {
    std::string mName;
    bool mfExcluded;
};

struct ExplainedAttempt {
    std::string mType;
    std::string mParserName; ///< "" where the type led to no parser
    Outcome mOutcome;
    std::size_t mDepth;
    std::string mReason; ///< why the parser declined, where it said so
};

std::string InWords(const ExplainedAttempt& anAttempt);

/// Why an announcement says what it says.
struct Explanation {
    std::vector<ExplainedFact> mFacts;       ///< none for what was not recognised
    std::vector<ExplainedEntry> mEntries;    ///< of the file's extension, in the order in which they count
    std::vector<ExplainedAttempt> mAttempts; ///< in the order in which they began
};

/// Explains the last request of a manager by comparing the record of the parser that answered first, the
/// record that the media types ini parser made of it, what the file name and the stream tell, and the record
/// that came out.
class Explainer {
public:
    /// Everything but what the parsers said when they refused is borrowed.
    Explainer(HostManager& aManager, ExtensionMimeTypeMatcher& aMatcher, ezPropertyList* anEnvironment,
              int aParseOptions, std::vector<Refusal> aRefusals);

    /// @param aMapperAnswer  null where no media mapper is in force or it does not know the media
    Explanation Explain(ezMediaParserStream& aStream, const ezMediaInfo& anInfo, bool afRecognised,
                        const MapperAnswer* aMapperAnswer);

private:
    std::string ReasonOf(const Attempt& anAttempt, const std::string& aParserName) const;
    void FindRecords(ezMediaParserStream& aStream);
    std::string WinningEntryName(const ezCString& anExtension);
    Source SourceOf(const Fact& aFact, const ezMediaInfo& anInfo) const;
    Source SourceOfKey(const char* aKey, const ezMediaInfo& anInfo) const;
    Source SourceInTypesFile(const std::string& aKey, const ezMediaInfo& anInfo) const;

    HostManager& mManager;
    ExtensionMimeTypeMatcher& mMatcher;
    ezPropertyList* mEnvironment;
    int mParseOptions;
    std::vector<Refusal> mRefusals;

    const Answer* mOuter = nullptr;       ///< whose record the request ended with
    const Answer* mInner = nullptr;       ///< whose record the media types ini parser completed
    std::unique_ptr<ezMediaInfo> mNamed;  ///< what the file name told, where it was asked and counted
    bool mfNameDecides = false;           ///< the file name was laid over the inner record
    std::unique_ptr<ezMediaInfo> mStream; ///< what the stream tells
    std::string mEntryName;
};
