#include "detail/ParseReporter.h"

#include "detail/ParserName.h"

#include "ez/DLNAMediaMapperParser.h"
#include "ez/ExtensionMimeTypeMatcher.h"

#include <algorithm>
#include <utility>

void ParseReporter::RequestBegan(ezParseRequest aRequest, const ezMediaParserStream* aStream) {
    Begin({mLedgers.size(), nullptr, false});
    Tell(&ezParseObserver::RequestBegan, aRequest, aStream);
}

void ParseReporter::RequestEnded(ezParseRequest aRequest, const ezMediaInfo* anInfo) {
    if (anInfo != nullptr) {
        LedgerOf(*anInfo).Tell([this](const char* aKey, const ezFactSource& aSource) {
            Tell(&ezParseObserver::FactStated, aKey, aSource);
        });
    }
    Tell(&ezParseObserver::RequestEnded, aRequest, anInfo);
    EndTrial();
}

void ParseReporter::EntryBegan(ExtensionMimeTypeMatcherEntry& anEntry, ExtensionMimeTypeMatcher& aMatcher) {
    Tell(&ezParseObserver::EntryBegan, anEntry, aMatcher.IsExcludedEntry(&anEntry));
}

void ParseReporter::TypeBegan(const ezCString& aType) {
    Begin({mScopes.back().mFirstLedger, mScopes.back().mParser, false});
    Tell(&ezParseObserver::TypeBegan, aType.c_str());
}

void ParseReporter::TypeEnded(const ezCString& aType, bool afAny, bool afAnswered) {
    const bool fTried = mScopes.back().mfTried;
    mScopes.pop_back();
    Tell(&ezParseObserver::TypeEnded, aType.c_str(),
         afAnswered ? ezTypeResult::Answered
         : fTried   ? ezTypeResult::Declined
         : afAny    ? ezTypeResult::TriedBefore
                    : ezTypeResult::NoParser);
}

void ParseReporter::ParserBegan(const ezBaseParser& aParser, const ezMediaInfo* anAdjusted) {
    if (anAdjusted != nullptr) {
        // What the record has by now is of the parser that has it adjusted; where a host does, of nobody.
        const ezBaseParser* const parser = mScopes.back().mParser;
        LedgerOf(*anAdjusted)
            .Look(parser != nullptr ? std::optional<ezFactSource>({ezParseStep::Parser, parser, nullptr})
                                    : std::nullopt);
    }
    mScopes.back().mfTried = true;
    Begin({mLedgers.size(), &aParser, false});
    Tell(&ezParseObserver::ParserBegan, aParser, ParserName_Of(aParser).c_str());
}

void ParseReporter::ParserEnded(const ezBaseParser& aParser, const ezMediaInfo* anInfo) {
    std::optional<FactLedger> answered;
    if (anInfo != nullptr) {
        FactLedger& ledger = LedgerOf(*anInfo);
        ledger.Look(ezFactSource{ezParseStep::Parser, &aParser, nullptr});
        answered = std::move(ledger);
    }
    Tell(&ezParseObserver::ParserEnded, aParser, anInfo);
    EndTrial();
    if (answered.has_value()) {
        Dropped(*anInfo); // another one that was at its address
        mLedgers.push_back(std::move(*answered));
    }
}

void ParseReporter::AdjusterEnded(const ezBaseParser& aParser, const ezMediaInfo& anInfo, bool afAdjusted) {
    Tell(&ezParseObserver::ParserEnded, aParser, afAdjusted ? &anInfo : nullptr);
    EndTrial();
    LedgerOf(anInfo).Look(ezFactSource{ezParseStep::Parser, &aParser, nullptr});
}

void ParseReporter::MediaMapperAsked(const DLNAMediaMapperParser& aMapper,
                                     const ezMediaParserStream& aStream) {
    Tell(&ezParseObserver::MediaMapperAsked, aMapper.FindEntry(aStream));
}

void ParseReporter::Stated(const ezMediaInfo* anInfo, ezParseStep aStep,
                           const ExtensionMimeTypeMatcherEntry* anEntry) {
    if (anInfo != nullptr) {
        LedgerOf(*anInfo).Look(ezFactSource{aStep, nullptr, anEntry});
    }
}

void ParseReporter::Mapped(const ezMediaInfo& anInfo) {
    LedgerOf(anInfo).Look(ezFactSource{ezParseStep::MediaMapper, nullptr, nullptr},
                          [this](const char* aKey, const char* anOld, const char* aNew) {
                              Tell(&ezParseObserver::MediaMapperChanged, aKey, anOld, aNew);
                          });
}

void ParseReporter::Dropped(const ezMediaInfo& anInfo) {
    if (FactLedger* const ledger = Find(anInfo)) {
        mLedgers.erase(mLedgers.begin() + (ledger - mLedgers.data()));
    }
}

void ParseReporter::EndTrial() {
    mLedgers.erase(mLedgers.begin() + static_cast<std::ptrdiff_t>(mScopes.back().mFirstLedger),
                   mLedgers.end());
    mScopes.pop_back();
}

FactLedger* ParseReporter::Find(const ezMediaInfo& anInfo) {
    const auto first = mLedgers.begin() + static_cast<std::ptrdiff_t>(mScopes.back().mFirstLedger);
    const auto found =
        std::find_if(first, mLedgers.end(), [&](const FactLedger& aLedger) { return aLedger.IsOf(anInfo); });
    return found != mLedgers.end() ? &*found : nullptr;
}

FactLedger& ParseReporter::LedgerOf(const ezMediaInfo& anInfo) {
    if (FactLedger* const ledger = Find(anInfo)) {
        return *ledger;
    }
    mLedgers.emplace_back(anInfo);
    return mLedgers.back();
}
