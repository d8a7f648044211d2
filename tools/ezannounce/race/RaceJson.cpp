#include "race/RaceJson.h"

#include "host/FactJson.h"
#include "host/Facts.h"
#include "output/JsonLine.h"
#include "output/SafeText.h"
#include "race/Race.h"

#include "ezBytes/Utf8.h"
#include "ezPlatform/media/MediaInfo.h"

std::string InJson(const RaceResult& aResult) {
    nlohmann::ordered_json race = {{"path", aResult.mPath}};
    if (!IsWholeUtf8(aResult.mPath)) {
        race["path_bytes"] = HexBytes(aResult.mPath);
    }
    race["winner"] =
        aResult.mInfo != nullptr ? nlohmann::ordered_json(aResult.mWinner) : nlohmann::ordered_json(nullptr);
    race["pushed"] = aResult.mPushed;
    nlohmann::ordered_json left = nlohmann::ordered_json::array();
    for (const RaceDeparture& departure : aResult.mLeft) {
        left.push_back({{"candidate", departure.mName}, {"at", departure.mByte}});
    }
    race["left"] = std::move(left);
    race["undecided"] = aResult.mUndecided;
    nlohmann::ordered_json facts = nlohmann::ordered_json::object();
    if (aResult.mInfo != nullptr) {
        for (const Fact& fact : FactsOf(*aResult.mInfo)) {
            facts[NameOf(fact)] = ValueOf(fact);
        }
    }
    race["facts"] = std::move(facts);
    return JsonLineOf(race);
}
