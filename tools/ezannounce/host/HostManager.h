#pragma once

#include "ez/MediaParserManager.h"

#include "ezPlatform/media/MediaInfo.h"

#include <memory>
#include <string>
#include <vector>

enum class Outcome {
    Answered,
    Declined,
    NoParser,   ///< no parser of that type is registered
    TriedBefore ///< all parsers of that type had been tried in this request
};

/// One parser that was tried, or one type that led to none.
struct Attempt {
    std::string mType;
    const ezBaseParser* mParser; ///< the manager's; null where the type led to none
    Outcome mOutcome;
    std::size_t mDepth; ///< 0 as the request itself asked, 1 as a parser of that asked, and so on
};

/// A record as a parser gave it.
struct Answer {
    std::string mType;
    const ezBaseParser* mParser; ///< the manager's
    std::size_t mDepth;
    std::unique_ptr<ezMediaInfo> mInfo;
};

/// A manager that can take down, for each request, which parsers it tried and what they answered.
class HostManager : public ezMediaParserManager {
public:
    using ezMediaParserManager::ezMediaParserManager;

    void SetTracing(bool afTracing) { mfTracing = afTracing; }

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override;
    ezMediaInfo* ParseFromType(const ezCString& aType, ezMediaParserStream& aStream) override;

    /// Of the last request, in the order in which the attempts began.
    const std::vector<Attempt>& GetAttempts() const { return mAttempts; }
    /// Of the last request, in the order in which the parsers answered: what an outer parser made of the
    /// record of an inner one stands after it.
    const std::vector<Answer>& GetAnswers() const { return mAnswers; }

    /// The class of a parser as its source calls it.
    static std::string NameOf(const ezBaseParser& aParser);

private:
    /// The parsers of a type that were tried since mDoneParsers and mAttempts had these sizes.
    std::vector<const ezBaseParser*> TriedSince(const ezParserList* aList, std::size_t aDoneCount,
                                                std::size_t anAttemptCount) const;

    bool mfTracing = false;
    std::size_t mDepth = 0;
    std::vector<Attempt> mAttempts;
    std::vector<Answer> mAnswers;
};
