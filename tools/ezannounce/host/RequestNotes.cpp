#include "host/RequestNotes.h"

#include "ez/BaseParser.h"
#include "ez/DLNAMediaMapperEntry.h"
#include "ez/ExtensionMimeTypeMatcherEntry.h"
#include "ezPlatform/containers/PtrList.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <utility>

namespace {

const char* NameOf(const ExtensionMimeTypeMatcherEntry& anEntry) {
    return static_cast<const char*>(*ezPtrList_GetAt(anEntry.mTypes, 0)); // the key, which is always there
}

std::optional<std::string> Text(const char* aText) {
    return aText != nullptr ? std::optional<std::string>(aText) : std::nullopt;
}

} // namespace

std::optional<MapperAnswer> RequestNotes::GetMapperAnswer(const ezMediaInfo& anInfo) const {
    std::optional<MapperAnswer> answer = mMapperAnswer;
    if (answer) {
        answer->mOverrides = OverridesOf(mChanges, anInfo);
    }
    return answer;
}

Explanation RequestNotes::Explain(const ezMediaInfo* anInfo) const {
    Explanation explanation = {{}, mEntries, mAttempts};
    if (anInfo == nullptr) {
        return explanation;
    }
    const std::vector<Override> overrides = OverridesOf(mChanges, *anInfo);
    const Override* const type = FindOverride(overrides, kezInfo_MimeType);
    for (Fact& fact : FactsOf(*anInfo)) {
        Source source = mSources.at(fact.mKey.empty() ? fact.mMember : fact.mKey);
        if (source.mStep == ezParseStep::MediaMapper) {
            const Override* const change = FindOverride(overrides, fact.mKey);
            source.mDetail = change != nullptr ? InWords(*change) : fact.mWords;
        } else if (source.mStep == ezParseStep::TypesExtension) {
            // Looked up before the operator's table gave the media another MIME type.
            source.mDetail = type != nullptr && type->mOld ? type->mOld->mText
                                                           : anInfo->GetCString(kezInfo_MimeType, "").c_str();
        }
        explanation.mFacts.push_back({std::move(fact), std::move(source)});
    }
    return explanation;
}

void RequestNotes::RequestBegan(ezParseRequest /*aRequest*/, const ezMediaParserStream* /*aStream*/) {
    if (++mRequests == 1) {
        Clear();
    }
    mTypes.emplace_back();
}

void RequestNotes::Clear() {
    mEntries.clear();
    mAttempts.clear();
    mTrials.clear();
    mTypes.clear();
    mAttemptOf.clear();
    mSources.clear();
    mMapperAnswer.reset();
    mChanges.clear();
}

void RequestNotes::RequestEnded(ezParseRequest /*aRequest*/, const ezMediaInfo* /*anInfo*/) {
    mTypes.pop_back();
    --mRequests;
}

void RequestNotes::AskOthers() {
    if (!mTrials.empty()) {
        mAttempts[mTrials.back().mAttempt].mfAsksOthers = true;
    }
}

void RequestNotes::PassBegan(ezParsePass aPass) {
    if (IsOutermost()) {
        mPass = aPass;
    }
    AskOthers();
}

void RequestNotes::EntryBegan(const ExtensionMimeTypeMatcherEntry& anEntry, bool afExcluded) {
    if (IsOutermost()) {
        mEntries.push_back({mPass, NameOf(anEntry), afExcluded});
    }
}

void RequestNotes::EntryEnded(const ExtensionMimeTypeMatcherEntry& /*anEntry*/, ezEntryResult aResult) {
    if (IsOutermost()) {
        mEntries.back().mResult = aResult;
    }
}

void RequestNotes::TypeBegan(const char* aType) {
    mTypes.emplace_back(aType);
    AskOthers();
}

void RequestNotes::TypeEnded(const char* aType, ezTypeResult aResult) {
    mTypes.pop_back();
    if (aResult == ezTypeResult::NoParser || aResult == ezTypeResult::TriedBefore) {
        mAttempts.push_back({aType, {}, aResult, mTrials.size(), {}});
    }
}

void RequestNotes::ParserBegan(const ezBaseParser& aParser, const char* aName) {
    if (IsOutermost()) {
        mAttemptOf[&aParser] = mAttempts.size();
    }
    std::string type = mTypes.back().empty() ? std::string(aParser.GetType().View()) : mTypes.back();
    mAttempts.push_back({std::move(type), aName, ezTypeResult::Declined, mTrials.size(), {}});
    mTrials.push_back({&aParser, mAttempts.size() - 1});
}

void RequestNotes::ParserRefused(const ezBaseParser& aParser, ezParseRefusal aCause, const char* aText) {
    const auto trial = std::find_if(mTrials.rbegin(), mTrials.rend(),
                                    [&](const Trial& aTrial) { return aTrial.mParser == &aParser; });
    if (trial != mTrials.rend()) {
        std::string& reason = mAttempts[trial->mAttempt].mReason;
        reason += (reason.empty() ? "" : "; ") + InWords(aCause, aText);
    }
}

void RequestNotes::ParserEnded(const ezBaseParser& /*aParser*/, const ezMediaInfo* anInfo) {
    if (anInfo != nullptr) {
        ExplainedAttempt& attempt = mAttempts[mTrials.back().mAttempt];
        attempt.mResult = ezTypeResult::Answered;
        attempt.mReason.clear(); // it got over what it had found
    }
    mTrials.pop_back();
}

void RequestNotes::MediaMapperAsked(const DLNAMediaMapperEntry* anEntry) {
    if (IsOutermost() && anEntry != nullptr) {
        mMapperAnswer =
            MapperAnswer{std::string(anEntry->mFileName.View()), std::string(anEntry->mProfile.View()), {}};
    }
}

void RequestNotes::MediaMapperChanged(const char* aKey, const char* anOld, const char* aNew) {
    if (IsOutermost()) {
        mChanges.push_back({aKey, Text(anOld), Text(aNew)});
    }
}

void RequestNotes::FactStated(const char* aKey, const ezFactSource& aSource) {
    if (!IsOutermost()) {
        return;
    }
    Source& source = mSources[aKey];
    source = {aSource.mStep, {}, {}};
    const auto attempt = mAttemptOf.find(aSource.mParser);
    if (attempt != mAttemptOf.end()) {
        source.mDetail = mAttempts[attempt->second].mType;
        source.mParserName = mAttempts[attempt->second].mParserName;
    } else if (aSource.mEntry != nullptr) {
        source.mDetail = NameOf(*aSource.mEntry);
    }
}
