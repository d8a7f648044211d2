#pragma once

#include "host/Explanation.h"
#include "host/MapperAnswer.h"

#include "ez/ParseObserver.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// Takes down what a manager tells of a request. What a parser has identified on the way, in a request of its
/// own, leaves what was tried for it and nothing else.
class RequestNotes : public ezParseObserver {
public:
    /// What the media mapper had to say in the last request, in the terms of the record that came out.
    /// Nothing where it was not asked or does not know the media.
    std::optional<MapperAnswer> GetMapperAnswer(const ezMediaInfo& anInfo) const;

    /// Why the last request ended as it did.
    /// @param anInfo  the record that came out; null where nothing was recognised
    Explanation Explain(const ezMediaInfo* anInfo) const;

    void RequestBegan(ezParseRequest aRequest, const ezMediaParserStream* aStream) override;
    void RequestEnded(ezParseRequest aRequest, const ezMediaInfo* anInfo) override;
    void PassBegan(ezParsePass aPass) override;
    void EntryBegan(const ExtensionMimeTypeMatcherEntry& anEntry, bool afExcluded) override;
    void EntryEnded(const ExtensionMimeTypeMatcherEntry& anEntry, ezEntryResult aResult) override;
    void TypeBegan(const char* aType) override;
    void TypeEnded(const char* aType, ezTypeResult aResult) override;
    void ParserBegan(const ezBaseParser& aParser, const char* aName) override;
    void ParserRefused(const ezBaseParser& aParser, ezParseRefusal aCause, const char* aText) override;
    void ParserEnded(const ezBaseParser& aParser, const ezMediaInfo* anInfo) override;
    void MediaMapperAsked(const DLNAMediaMapperEntry* anEntry) override;
    void MediaMapperChanged(const char* aKey, const char* anOld, const char* aNew) override;
    void FactStated(const char* aKey, const ezFactSource& aSource) override;

private:
    /// A parser that is being tried.
    struct Trial {
        const ezBaseParser* mParser;
        std::size_t mAttempt; ///< of mAttempts
    };

    /// The request whose record the host gets, not one that a parser made.
    bool IsOutermost() const { return mRequests == 1; }
    /// Forgets the request before.
    void Clear();
    /// Takes down that the parser in trial, if there is one, does not decide alone.
    void AskOthers();

    std::size_t mRequests = 0; ///< begun and not ended
    ezParsePass mPass = ezParsePass::Extension;
    std::vector<ExplainedEntry> mEntries;
    std::vector<ExplainedAttempt> mAttempts;
    std::vector<Trial> mTrials;      ///< each asked for by the one before it
    std::vector<std::string> mTypes; ///< asked for, in the same way; "" of a request that asks for none
    std::map<const ezBaseParser*, std::size_t> mAttemptOf; ///< in the outermost request
    std::map<std::string, Source> mSources;                ///< by what FactStated calls a fact
    std::optional<MapperAnswer> mMapperAnswer;
    std::vector<MapperChange> mChanges;
};
