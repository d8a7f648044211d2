#pragma once

#include "ez/ParseObserver.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

/// Writes down all that it is told, a line each, by the name of the operation and what it was told, and
/// indented by two blanks for each pair that it is within:
///
///     RequestBegan Identify /media/a.mp3
///       TypeBegan *
///         ParserBegan * ezMimeTypesDotIniParser
///
/// A parser is told by its type, at its beginning by its class too, and an entry by its first type. A null
/// pointer is "-". What ends otherwise than it began is a failure of the test, as is an observer that ends
/// within a pair.
class RecordingObserver : public ezParseObserver {
public:
    RecordingObserver() = default;
    ~RecordingObserver() override;

    const std::vector<std::string>& Lines() const { return mLines; }
    /// The lines of some operations alone, without what indents them.
    std::vector<std::string> LinesOf(std::initializer_list<const char*> anOperations) const;
    /// All lines as a text.
    std::string Text() const;
    void Clear() { mLines.clear(); }

    /// Called at the end of each operation with its name.
    std::function<void(const std::string& anOperation)> mOnCall;

    void RequestBegan(ezParseRequest aRequest, const ezMediaParserStream* aStream) override;
    void RequestEnded(ezParseRequest aRequest, const ezMediaInfo* anInfo) override;
    void PassBegan(ezParsePass aPass) override;
    void PassEnded(ezParsePass aPass, bool afAnswered) override;
    void EntryBegan(const ExtensionMimeTypeMatcherEntry& anEntry, bool afExcluded) override;
    void EntryEnded(const ExtensionMimeTypeMatcherEntry& anEntry, ezEntryResult aResult) override;
    void TypeBegan(const char* aType) override;
    void TypeEnded(const char* aType, ezTypeResult aResult) override;
    void ParserBegan(const ezBaseParser& aParser, const char* aName) override;
    void ParserRefused(const ezBaseParser& aParser, ezParseRefusal aCause, const char* aText) override;
    void ParserEnded(const ezBaseParser& aParser, const ezMediaInfo* anInfo) override;
    void TestFileNameAsked(const ezMediaInfo* anInfo) override;
    void MediaMapperAsked(const DLNAMediaMapperEntry* anEntry) override;
    void MediaMapperChanged(const char* aKey, const char* anOld, const char* aNew) override;
    void FactStated(const char* aKey, const ezFactSource& aSource) override;

private:
    void Note(const std::string& anOperation, const std::string& aText);
    /// Of a pair: what it is about, which the end must repeat.
    void Begin(const std::string& aPair, const std::string& aSubject, const std::string& aMore = "");
    void End(const std::string& aPair, const std::string& aSubject, const std::string& aResult);

    std::vector<std::string> mLines;
    std::vector<std::string> mOpen; ///< the pairs that have begun, the innermost last
};
