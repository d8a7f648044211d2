#include "parse/Json.h"

#include "host/Explanation.h"
#include "host/FactJson.h"
#include "host/Facts.h"
#include "host/Host.h"
#include "host/MapperAnswer.h"
#include "host/SubtitleWords.h"
#include "output/Console.h"
#include "output/JsonLine.h"
#include "output/SafeText.h"

#include "ezBytes/Utf8.h"

namespace {

using Json = nlohmann::ordered_json;

Json ExplanationOf(const Explanation& anExplanation) {
    Json facts = Json::object();
    for (const ExplainedFact& fact : anExplanation.mFacts) {
        Json source = {{"source", CodeOf(fact.mSource.mStep)}};
        if (!fact.mSource.mDetail.empty()) {
            source["detail"] = fact.mSource.mDetail;
        }
        if (!fact.mSource.mParserName.empty()) {
            source["parser"] = fact.mSource.mParserName;
        }
        facts[NameOf(fact.mFact)] = source;
    }
    Json entries = Json::array();
    for (const ExplainedEntry& entry : anExplanation.mEntries) {
        entries.push_back({{"entry", entry.mName},
                           {"excluded", entry.mfExcluded},
                           {"pass", CodeOf(entry.mPass)},
                           {"result", CodeOf(entry.mResult)}});
    }
    Json attempts = Json::array();
    for (const ExplainedAttempt& attempt : anExplanation.mAttempts) {
        Json parser = attempt.mParserName.empty() ? Json(nullptr) : Json(attempt.mParserName);
        Json tried = {
            {"type", attempt.mType}, {"parser", std::move(parser)}, {"result", CodeOf(attempt.mResult)}};
        if (!attempt.mReason.empty()) {
            tried["reason"] = attempt.mReason;
        }
        attempts.push_back(std::move(tried));
    }
    return {{"facts", std::move(facts)}, {"entries", std::move(entries)}, {"tried", std::move(attempts)}};
}

Json ValueOf(const std::optional<Fact>& aFact) {
    return aFact ? ValueOf(*aFact) : Json(nullptr);
}

Json MapperAnswerOf(const MapperAnswer* anAnswer) {
    if (anAnswer == nullptr) {
        return nullptr;
    }
    Json overrides = Json::object();
    for (const Override& change : anAnswer->mOverrides) {
        overrides[NameOf(change)] = {{"old", ValueOf(change.mOld)}, {"new", ValueOf(change.mNew)}};
    }
    return {{"file_name", anAnswer->mFileName},
            {"profile", anAnswer->mProfile},
            {"overrode", std::move(overrides)}};
}

} // namespace

std::string InJson(const Announcement& anAnnouncement) {
    const ezMediaInfo& info = *anAnnouncement.mInfo;
    Json media = {{"path", anAnnouncement.mPath}};
    if (!IsWholeUtf8(anAnnouncement.mPath)) {
        media["path_bytes"] = HexBytes(anAnnouncement.mPath);
    }
    // Always there, and in this place, whatever the record holds.
    for (const char* name : {"mime_type", "class", "dlna", "protocol_info"}) {
        media[name] = nullptr;
    }
    if (anAnnouncement.mfRecognised) {
        media["dlna"] = AnnouncedFourthField(info);
        media["protocol_info"] = ProtocolInfo(info);
    }
    Json unnamed = Json::object();
    for (const Fact& fact : FactsOf(info)) {
        (fact.mName.empty() ? unnamed : media)[NameOf(fact)] = ValueOf(fact);
    }
    if (!unnamed.empty()) {
        media["values"] = std::move(unnamed);
    }
    if (anAnnouncement.mfMapperInForce) {
        media["media_mapper"] = MapperAnswerOf(anAnnouncement.mMapperAnswer.get());
    }
    if (anAnnouncement.mSubtitles != nullptr) {
        Json files = Json::array();
        for (const ezSubtitleFile& file : anAnnouncement.mSubtitles->mFiles) {
            files.push_back(InJson(file));
        }
        media["subtitle_files"] = std::move(files);
        media["subtitle_files_whole"] = anAnnouncement.mSubtitles->mfWhole;
    }
    if (anAnnouncement.mExplanation != nullptr) {
        media["explain"] = ExplanationOf(*anAnnouncement.mExplanation);
    }
    return JsonLineOf(media);
}

void JsonOutput::Put(const Announcement& anAnnouncement) {
    mConsole.Print(InJson(anAnnouncement));
}
