#include "host/Explanation.h"

#include "host/MapperAnswer.h"

#include "ez/DLNAFileParser.h"
#include "ez/Environment.h"
#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserStream.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ezPlatform/config/PropertyList.h"
#include "ezPlatform/containers/Items.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

using Entry = ExtensionMimeTypeMatcherEntry;

constexpr std::array<std::string_view, 9> kRateKeys = {
    kezInfo_BitRate,      kezInfo_MaxBitRate,      kezInfo_EstimatedBitRate,
    kezInfo_AudioBitRate, kezInfo_AudioMaxBitRate, kezInfo_AudioEstimatedBitRate,
    kezInfo_VideoBitRate, kezInfo_VideoMaxBitRate, kezInfo_VideoEstimatedBitRate};

bool IsRateKey(std::string_view aKey) {
    return std::find(kRateKeys.begin(), kRateKeys.end(), aKey) != kRateKeys.end();
}

bool Agree(const ezMediaInfo* aLeft, const ezMediaInfo& aRight, const char* aKey) {
    return aLeft != nullptr && aLeft->Has(aKey) && aRight.Has(aKey) &&
           aLeft->GetCString(aKey, "") == aRight.GetCString(aKey, "");
}

/// Whether a record can have been made of another: completing takes no key away.
bool IsMadeOf(const ezMediaInfo& anInfo, const ezMediaInfo& aBase) {
    for (std::size_t i = 0; i < aBase.GetCount(); ++i) {
        if (!anInfo.Has(aBase.GetKeyAt(i).c_str())) {
            return false;
        }
    }
    return true;
}

const char* NameOf(const Entry& anEntry) {
    return static_cast<const char*>(*ezPtrList_GetAt(anEntry.mTypes, 0)); // the key, which is always there
}

ezCString MemberOf(const ezMediaInfo& anInfo, const std::string& aName) {
    if (aName == "title") {
        return anInfo.mTitle;
    }
    if (aName == "creator") {
        return anInfo.mCreator;
    }
    return aName == "genre" ? anInfo.mGenre : anInfo.mAlbum;
}

const Override* FindOverride(const MapperAnswer* anAnswer, const std::string& aKey) {
    if (anAnswer == nullptr) {
        return nullptr;
    }
    const auto found = std::find_if(anAnswer->mOverrides.begin(), anAnswer->mOverrides.end(),
                                    [&](const Override& anOverride) { return anOverride.mKey == aKey; });
    return found != anAnswer->mOverrides.end() ? &*found : nullptr;
}

Source FromParser(const Answer& anAnswer) {
    return {SourceKind::Parser, anAnswer.mType, HostManager::NameOf(*anAnswer.mParser)};
}

} // namespace

const char* CodeOf(SourceKind aKind) {
    switch (aKind) {
    case SourceKind::Parser:
        return "parser";
    case SourceKind::Entry:
        return "entry";
    case SourceKind::TypesFile:
        return "types-file";
    case SourceKind::FileName:
        return "file-name";
    case SourceKind::BitRates:
        return "bit-rates";
    case SourceKind::Stream:
        return "stream";
    case SourceKind::MediaMapper:
        return "media-mapper";
    case SourceKind::Afterwards:
        break;
    }
    return "afterwards";
}

const char* CodeOf(Outcome anOutcome) {
    switch (anOutcome) {
    case Outcome::Answered:
        return "answered";
    case Outcome::Declined:
        return "declined";
    case Outcome::NoParser:
        return "no-parser";
    case Outcome::TriedBefore:
        break;
    }
    return "tried-before";
}

std::string InWords(const Source& aSource) {
    switch (aSource.mKind) {
    case SourceKind::Parser:
        return "parser " + aSource.mDetail + " (" + aSource.mParserName + ")";
    case SourceKind::Entry:
        return "entry \"" + aSource.mDetail + "\" of the media types file";
    case SourceKind::TypesFile:
        return "first extension of " + aSource.mDetail + " in the media types file";
    case SourceKind::FileName:
        return "file name (conformance test)";
    case SourceKind::BitRates:
        return "derived from the other bit rates";
    case SourceKind::Stream:
        return "stream";
    case SourceKind::MediaMapper:
        return "media mapper: " + aSource.mDetail;
    case SourceKind::Afterwards:
        break;
    }
    return "stated after the parsers";
}

std::string InWords(const ExplainedAttempt& anAttempt) {
    std::string words = anAttempt.mType;
    switch (anAttempt.mOutcome) {
    case Outcome::Answered:
        return words + " (" + anAttempt.mParserName + "): answered";
    case Outcome::Declined:
        return words + " (" + anAttempt.mParserName + "): declined" +
               (anAttempt.mReason.empty() ? "" : ": ") + anAttempt.mReason;
    case Outcome::NoParser:
        return words + ": there is no such parser";
    case Outcome::TriedBefore:
        break;
    }
    return words + ": tried before";
}

Explainer::Explainer(HostManager& aManager, ExtensionMimeTypeMatcher& aMatcher, ezPropertyList* anEnvironment,
                     int aParseOptions, std::vector<Refusal> aRefusals)
    : mManager(aManager),
      mMatcher(aMatcher),
      mEnvironment(anEnvironment),
      mParseOptions(aParseOptions),
      mRefusals(std::move(aRefusals)) {}

std::string Explainer::ReasonOf(const Attempt& anAttempt, const std::string& aParserName) const {
    std::string reasons;
    for (const Refusal& refusal : mRefusals) {
        if (anAttempt.mOutcome == Outcome::Declined && refusal.mParserName == aParserName) {
            reasons += (reasons.empty() ? "" : "; ") + refusal.mReason;
        }
    }
    return reasons;
}

Explanation Explainer::Explain(ezMediaParserStream& aStream, const ezMediaInfo& anInfo, bool afRecognised,
                               const MapperAnswer* aMapperAnswer) {
    Explanation explanation;
    for (const Attempt& attempt : mManager.GetAttempts()) {
        const std::string name = attempt.mParser != nullptr ? HostManager::NameOf(*attempt.mParser) : "";
        explanation.mAttempts.push_back(
            {attempt.mType, name, attempt.mOutcome, attempt.mDepth, ReasonOf(attempt, name)});
    }
    for (Entry* entry : ezItems<Entry>(mMatcher.EntriesFromExtension(aStream.GetExtension()))) {
        explanation.mEntries.push_back({NameOf(*entry), mMatcher.IsExcludedEntry(entry)});
    }
    if (afRecognised) {
        FindRecords(aStream);
        mEntryName = WinningEntryName(aStream.GetExtension());
        for (Fact& fact : FactsOf(anInfo)) {
            const Override* change = FindOverride(aMapperAnswer, fact.mKey);
            Source source = change != nullptr ? Source{SourceKind::MediaMapper, InWords(*change), {}}
                                              : SourceOf(fact, anInfo);
            explanation.mFacts.push_back({std::move(fact), std::move(source)});
        }
    }
    return explanation;
}

void Explainer::FindRecords(ezMediaParserStream& aStream) {
    for (const Answer& answer : mManager.GetAnswers()) {
        if (answer.mDepth == 0) {
            mOuter = &answer;
        } else if (answer.mDepth == 1) {
            mInner = &answer;
        }
    }
    if (mInner != nullptr && (mOuter == nullptr || !IsMadeOf(*mOuter->mInfo, *mInner->mInfo))) {
        mInner = nullptr; // an excluded entry led to it, so it was dropped
    }
    mStream = std::make_unique<ezMediaInfo>();
    aStream.CopyInfo(mStream.get());

    const uint32 context = ezPropertyList_Get_uint32(mEnvironment, kProperty_CTTContext);
    if (mOuter == nullptr || mOuter->mParser != mManager.GetMimeTypesDotIniParser() || context == 0 ||
        (mInner != nullptr && context != kProperty_CTTContext_NameDecides)) {
        return; // the file name was not asked
    }
    mNamed.reset(DLNAFileParser(mEnvironment).Parse(aStream));
    mfNameDecides = mNamed != nullptr && mInner != nullptr;
    if (mNamed != nullptr && !IsMadeOf(*mOuter->mInfo, *mNamed) && !mfNameDecides) {
        mNamed.reset();
    }
}

std::string Explainer::WinningEntryName(const ezCString& anExtension) {
    const bool fAllEntries =
        (mParseOptions & kParseOption_ParseWithAllParserEverytime) != 0 ||
        (mParseOptions & kParseOption_ParseWithAllParserIfFailed) != 0 ||
        (anExtension.IsEmpty() && (mParseOptions & kParseOption_ParseWithAllParserIfNoExtension) != 0);
    ezPtrList* entries = fAllEntries ? mMatcher.AllEntries() : mMatcher.EntriesFromExtension(anExtension);
    if (mInner == nullptr && mNamed == nullptr) {
        // Made of an entry alone, which is the last one of the extension.
        entries = mMatcher.EntriesFromExtension(anExtension);
        void** last = ezPtrList_GetAt(entries, ezPtrList_GetCount(entries) - 1);
        return last != nullptr ? NameOf(*static_cast<Entry*>(*last)) : "";
    }
    for (Entry* entry : ezItems<Entry>(entries)) {
        if (mInner == nullptr) {
            return NameOf(*entry); // the file name is asked, and answers, at the first entry
        }
        // A parser runs once a request, so it was the first entry that names it.
        for (const char* type : ezItems<const char>(entry->mTypes)) {
            if (ezIsEqualNoCase(mInner->mType, type)) {
                return NameOf(*entry);
            }
        }
    }
    return {};
}

Source Explainer::SourceOf(const Fact& aFact, const ezMediaInfo& anInfo) const {
    if (!aFact.mKey.empty()) {
        return SourceOfKey(aFact.mKey.c_str(), anInfo);
    }
    if (aFact.mName == "modified") {
        return {SourceKind::Stream, {}, {}};
    }
    for (const Answer* answer : {mInner, mOuter}) {
        if (answer != nullptr && MemberOf(*answer->mInfo, aFact.mName) == MemberOf(anInfo, aFact.mName)) {
            return FromParser(*answer);
        }
    }
    return {};
}

Source Explainer::SourceOfKey(const char* aKey, const ezMediaInfo& anInfo) const {
    if (mOuter == nullptr || !Agree(mOuter->mInfo.get(), anInfo, aKey)) {
        const bool fStream = Agree(mStream.get(), anInfo, aKey);
        return {fStream ? SourceKind::Stream : SourceKind::Afterwards, {}, {}};
    }
    const std::string_view key = aKey;
    const bool fNameAsked = !mfNameDecides || key == kezInfo_DLNA || key == kezInfo_MimeType;
    if (fNameAsked && Agree(mNamed.get(), anInfo, aKey)) {
        return {SourceKind::FileName, {}, {}};
    }
    if (mInner != nullptr && Agree(mInner->mInfo.get(), anInfo, aKey)) {
        return FromParser(*mInner);
    }
    if (mOuter->mParser != mManager.GetMimeTypesDotIniParser()) {
        return FromParser(*mOuter);
    }
    if (IsRateKey(key)) {
        return {SourceKind::BitRates, {}, {}};
    }
    return SourceInTypesFile(aKey, anInfo);
}

Source Explainer::SourceInTypesFile(const std::string& aKey, const ezMediaInfo& anInfo) const {
    const bool fMadeOfEntry = mInner == nullptr && mNamed == nullptr;
    if (aKey == kezInfo_FileExtension && !fMadeOfEntry) {
        return {SourceKind::TypesFile, anInfo.GetCString(kezInfo_MimeType, "").c_str(), {}};
    }
    return {SourceKind::Entry, mEntryName, {}};
}
