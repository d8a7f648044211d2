#include "race/RaceVerb.h"

#include "arguments/Arguments.h"
#include "arguments/Operands.h"
#include "host/Facts.h"
#include "host/LiveMedia.h"
#include "host/Unreadable.h"
#include "output/Columns.h"
#include "output/Console.h"
#include "output/SafeText.h"
#include "race/Race.h"
#include "race/RaceJson.h"

#include "ez/FileMediaParserStream.h"
#include "ezPlatform/media/MediaInfo.h"

namespace {

/// False when the stream could not be read on.
bool RunRaceOn(ezMediaParserStream& aStream, const Arguments& anArguments, RaceResult& aResult) {
    bool fGood = aStream.Seek(0, ezMediaParserStream::SeekFromStart, false);
    const RaceSource source = [&](char* aBuffer, std::size_t aSize) {
        fGood = fGood && aStream.Read(&aSize, aBuffer);
        return fGood ? aSize : 0;
    };
    aResult = RunRace(source, PacketSizes(anArguments.mPacketSize));
    return fGood;
}

/// False, with the reason, when the operand cannot be read.
bool RaceOnFile(const std::string& anOperand, const Arguments& anArguments, RaceResult& aResult,
                std::string& aReason) {
    ezFileMediaParserStream stream{ezCString(anOperand)};
    if (!stream.Open()) {
        aReason = WhyUnreadable(anOperand);
        return false;
    }
    if (!RunRaceOn(stream, anArguments, aResult)) {
        aReason = "cannot be read to its end";
        return false;
    }
    aResult.mPath = anOperand;
    return true;
}

bool RaceOnLive(const std::string& anOperand, const Arguments& anArguments, RaceResult& aResult,
                std::string& aReason) {
    LiveMedia media(anOperand, anArguments, false);
    if (!media.Open(aReason)) {
        return false;
    }
    RunRaceOn(media.GetStream(), anArguments, aResult);
    aResult.mPath = anOperand == kStandardInput ? anArguments.mName.value_or(anOperand) : anOperand;
    return media.IsWhole(aReason);
}

std::string AtByte(std::uint64_t aByte) {
    return "at byte " + std::to_string(aByte);
}

std::string InLines(const RaceResult& aResult) {
    std::vector<std::vector<std::string>> rows;
    for (const RaceDeparture& departure : aResult.mLeft) {
        rows.push_back({"  left", departure.mName, AtByte(departure.mByte)});
    }
    for (const std::string& name : aResult.mUndecided) {
        rows.push_back({"  undecided", name, AtByte(aResult.mPushed)});
    }
    if (aResult.mInfo != nullptr) {
        rows.push_back({"  won", aResult.mWinner, AtByte(aResult.mPushed)});
    }
    std::string text = ForTerminal(aResult.mPath) + "\n" + InColumns(rows);
    if (aResult.mInfo == nullptr) {
        return text + "  nobody won\n";
    }
    std::vector<std::vector<std::string>> facts;
    for (const Fact& fact : FactsOf(*aResult.mInfo)) {
        facts.push_back({"  " + (fact.mLabel.empty() ? fact.mKey : fact.mLabel), fact.mWords});
    }
    return text + InColumns(facts);
}

} // namespace

int RunRaces(const Arguments& anArguments, Console& aConsole) {
    int status = kExitSuccess;
    bool fFirst = true;
    for (const std::string& operand : anArguments.mOperands) {
        RaceResult result;
        std::string reason;
        const bool fRead = IsLive(operand) ? RaceOnLive(operand, anArguments, result, reason)
                                           : RaceOnFile(operand, anArguments, result, reason);
        if (!fRead) {
            aConsole.Error(operand, reason);
            status = kExitSomeFailed;
            continue;
        }
        if (result.mInfo == nullptr) {
            status = kExitSomeFailed;
        }
        aConsole.Print(anArguments.mfJson ? InJson(result) : (fFirst ? "" : "\n") + InLines(result));
        fFirst = false;
    }
    return status;
}
