// The door: an elementary stream whose format is not known, on which all the formats of the companions race.
// The packets, which the input cuts, are those that each format gets alone, and what they come to alone tells
// what the race must come to.

#include "fuzz/support/Check.h"
#include "fuzz/support/EltStreamDoor.h"

#include "ezFormats/EltStreamCandidates.h"
#include "ezFormats/elementary/AC3EltStreamParser.h"
#include "ezFormats/elementary/ADTSEltStreamParser.h"
#include "ezFormats/elementary/EAC3EltStreamParser.h"
#include "ezFormats/elementary/H264EltStreamParser.h"
#include "ezFormats/elementary/H265EltStreamParser.h"
#include "ezFormats/elementary/MPEG4EltStreamParser.h"
#include "ezFormats/elementary/MPEGAudioEltStreamParser.h"
#include "ezFormats/elementary/MPEGVideoEltStreamParser.h"
#include "ezFormats/elementary/VC1EltStreamParser.h"
#include "ezPlatform/media/MediaInfo.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize);

namespace {

using Parser = ezElementaryStreamParser;
using Info = std::unique_ptr<ezMediaInfo>;

constexpr uint32 kKnownBefore = 77; ///< a size that is known before the race, which no format tells

ezMediaInfo* NewInfo() {
    auto* info = new ezMediaInfo;
    info->Set(kezInfo_FileSize, kKnownBefore, true);
    return info;
}

std::string InWords(const ezMediaInfo* anInfo) {
    return anInfo != nullptr ? std::string(anInfo->GetOtherProperties().View()) : "none";
}

/// The formats, each on its own, in the order in which they race.
class Rivals {
public:
    Rivals() {
        Add(new H264EltStreamParser);
        Add(new H265EltStreamParser);
        Add(new MPEGVideoEltStreamParser);
        Add(new VC1EltStreamParser);
        Add(new MPEG4EltStreamParser);
        Add(new AC3EltStreamParser);
        Add(new EAC3EltStreamParser);
        Add(new ADTSEltStreamParser);
        Add(new MPEGAudioEltStreamParser);
    }

    /// A packet for each that is left: the first that completes ends the race, and one that fails leaves it.
    Parser::parsing_status_t Push(const std::string& aStream, std::size_t aFrom, std::size_t aSize,
                                  bool afLost) {
        for (std::size_t i = 0; i < mLeft.size() && mWinner == nullptr;) {
            const Parser::parsing_status_t status = PushEltStream(*mLeft[i], aStream, aFrom, aSize, afLost);
            if (status == Parser::MSS_COMPLETED) {
                mWinner = mLeft[i].get();
            } else if (status == Parser::MSS_UNRECOVERABLE_ERROR) {
                mLeft.erase(mLeft.begin() + static_cast<std::ptrdiff_t>(i));
            } else {
                ++i;
            }
        }
        return mWinner != nullptr ? Parser::MSS_COMPLETED
               : mLeft.empty()    ? Parser::MSS_UNRECOVERABLE_ERROR
                                  : Parser::MSS_IN_PROGRESS;
    }

    std::string Names() const {
        std::string names;
        for (const std::unique_ptr<Parser>& parser : mLeft) {
            names += std::string(parser->GetName()) + "|";
        }
        return names.empty() ? "<none>" : "|" + names;
    }

    /// How many complete on a stream that comes as one packet, whatever the others do.
    std::size_t CountThatComplete(const std::string& aStream) const {
        return static_cast<std::size_t>(std::count_if(mLeft.begin(), mLeft.end(), [&](const auto& aParser) {
            return PushEltStream(*aParser, aStream, 0, aStream.size(), false) == Parser::MSS_COMPLETED;
        }));
    }

    std::string Record() { return InWords(mWinner != nullptr ? Info(mWinner->Close()).get() : nullptr); }

private:
    void Add(Parser* aParser) {
        mLeft.emplace_back(aParser);
        aParser->SetMediaInfo(NewInfo());
        aParser->Open();
    }

    std::vector<std::unique_ptr<Parser>> mLeft;
    Parser* mWinner = nullptr;
};

/// A race of all of them.
class Race {
public:
    Race() : mRace(nullptr, NewInfo()) {
        AddEltStreamCandidates(mRace);
        mRace.Open();
    }

    Parser::parsing_status_t Push(const std::string& aStream, std::size_t aFrom, std::size_t aSize,
                                  bool afLost) {
        return PushEltStream(mRace, aStream, aFrom, aSize, afLost);
    }
    std::string Names() const { return std::string(mRace.GetCandidateList().View()); }
    std::string Record() {
        const Info info(mRace.Close());
        FuzzCheck(info == nullptr || info->GetUInt32(kezInfo_FileSize, 0) == kKnownBefore);
        FuzzCheck(Info(mRace.Close()) == nullptr); // it is handed over once
        return InWords(info.get());
    }

private:
    ezUndeterminedEltStreamParser mRace;
};

/// After every packet the race stands where its formats stand, and in the end it has the winner's record.
std::string CheckBesideRivals(const EltStreamInput& anInput, bool afWithLoss) {
    Race race;
    Rivals rivals;
    bool fLost = false;
    std::size_t position = 0;
    Parser::parsing_status_t status = Parser::MSS_IN_PROGRESS;
    for (std::size_t i = 0; position < anInput.mStream.size() && status == Parser::MSS_IN_PROGRESS; ++i) {
        const std::size_t size = anInput.PacketSize(i, position);
        const bool fLossHere = afWithLoss && !fLost && position >= anInput.mLossAt;
        fLost = fLost || fLossHere;
        status = rivals.Push(anInput.mStream, position, size, fLossHere);
        FuzzCheck(race.Push(anInput.mStream, position, size, fLossHere) == status);
        FuzzCheck(race.Names() == rivals.Names());
        position += size;
    }
    if (status != Parser::MSS_IN_PROGRESS) {
        FuzzCheck(race.Push(anInput.mStream, 0, anInput.mStream.size(), false) == status); // it is over
        FuzzCheck(race.Names() == rivals.Names());
    }
    const std::string record = race.Record();
    FuzzCheck(record == rivals.Record());
    return record;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* aData, std::size_t aSize) {
    const FuzzHouse house;
    const EltStreamInput input(aData, aSize);
    const std::string inPieces = CheckBesideRivals(input, false);
    CheckBesideRivals(input, true);
    EltStreamInput whole = input;
    whole.mCuts = {input.mStream.size()};
    const std::string inOnePacket = CheckBesideRivals(whole, false);
    // A stream that one format alone knows comes to the same record however it is cut.
    const std::size_t count = Rivals().CountThatComplete(input.mStream);
    FuzzCheck((count == 0) == (inPieces == "none"));
    FuzzCheck(count > 1 || inOnePacket == inPieces);
    return 0;
}
