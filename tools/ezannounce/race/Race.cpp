#include "race/Race.h"

#include "ez/ElementaryStreamParser.h"
#include "ezFormats/EltStreamCandidates.h"
#include "ezPlatform/containers/Items.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <array>

namespace {

/// No two neighbours make a transport packet, and headers are cut at every byte.
constexpr std::array<std::size_t, 11> kOddSizes = {1, 187, 3, 1315, 7, 61, 1021, 13, 4093, 5, 509};

/// A race that can be watched.
class WatchedRace : public ezUndeterminedEltStreamParser {
public:
    WatchedRace() : ezUndeterminedEltStreamParser(nullptr, new ezMediaInfo) {}

    std::vector<std::string> GetNames() const {
        std::vector<std::string> names;
        for (const ezElementaryStreamParser* candidate : ezItems<ezElementaryStreamParser>(mCandidateList)) {
            names.emplace_back(candidate->GetName());
        }
        return names;
    }

    /// "" while nobody has won.
    std::string GetWinner() const {
        for (const ezElementaryStreamParser* candidate : ezItems<ezElementaryStreamParser>(mCandidateList)) {
            if (candidate->GetParserStatus() == MSS_COMPLETED) {
                return candidate->GetName();
            }
        }
        return {};
    }
};

void TakeDownWhoLeft(const std::vector<std::string>& aBefore, const std::vector<std::string>& aNow,
                     RaceResult& aResult) {
    for (const std::string& name : aBefore) {
        if (std::find(aNow.begin(), aNow.end(), name) == aNow.end()) {
            aResult.mLeft.push_back({name, aResult.mPushed});
        }
    }
}

} // namespace

RaceResult::RaceResult() = default;
RaceResult::RaceResult(RaceResult&&) noexcept = default;
RaceResult& RaceResult::operator=(RaceResult&&) noexcept = default;
RaceResult::~RaceResult() = default;

std::size_t PacketSizes::Next() {
    if (mSize != 0) {
        return mSize;
    }
    const std::size_t size = kOddSizes[mIndex];
    mIndex = (mIndex + 1) % kOddSizes.size();
    return size;
}

RaceResult RunRace(const RaceSource& aSource, PacketSizes aSizes) {
    RaceResult result;
    WatchedRace race;
    AddEltStreamCandidates(race);
    race.Open();
    std::vector<std::string> names = race.GetNames();
    std::vector<char> packet;
    while (race.GetParserStatus() == ezElementaryStreamParser::MSS_IN_PROGRESS) {
        packet.resize(aSizes.Next());
        const std::size_t size = aSource(packet.data(), packet.size());
        if (size == 0) {
            break;
        }
        result.mPushed += size;
        race.AddPacket(packet.data(), static_cast<uint32>(size), false);
        std::vector<std::string> left = race.GetNames();
        TakeDownWhoLeft(names, left, result);
        names = std::move(left);
    }
    if (race.GetParserStatus() == ezElementaryStreamParser::MSS_COMPLETED) {
        result.mWinner = race.GetWinner();
        result.mInfo.reset(race.Close());
    } else {
        result.mUndecided = names;
    }
    return result;
}
