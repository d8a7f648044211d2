#include "bench/Require.h"
#include "bench/instructions/Instructions.h"

#include "ez/ElementaryStreamParser.h"
#include "ezFormats/EltStreamCandidates.h"
#include "support/Folders.h"
#include "support/WholeFile.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr uint32 kPacket = 1316; ///< seven transport packets, as networks carry them
constexpr std::size_t kPackets = 100;
constexpr uint32 kUnlimited = 0xFFFFFFFF;

/// Gathers requests of one size, or passes over everything.
class PlainParser : public ezElementaryStreamParser {
public:
    explicit PlainParser(uint32 aRequestSize)
        : ezElementaryStreamParser("Plain", kUnlimited, nullptr, nullptr), mSize(aRequestSize) {}

    parsing_status_t StartParsing(bool /*afFromError*/) override {
        Ask();
        return MSS_IN_PROGRESS;
    }
    parsing_status_t ContinueParsing(const unsigned char* /*aBuffer*/, uint32 /*aSize*/) override {
        Ask();
        return MSS_IN_PROGRESS;
    }

private:
    void Ask() {
        if (mSize == kUnlimited) {
            RequestSkip(kUnlimited);
        } else {
            RequestRead(mSize);
        }
    }

    uint32 mSize;
};

/// Pushes packets until there is a decision. Returns how many.
std::size_t Push(ezElementaryStreamParser& aParser, const std::string& aBytes, std::size_t aPacket) {
    std::size_t count = 0;
    for (std::size_t position = 0; position < aBytes.size(); position += aPacket) {
        const std::size_t size = std::min(aPacket, aBytes.size() - position);
        ++count;
        if (aParser.AddPacket(aBytes.data() + position, static_cast<uint32>(size), false) !=
            ezElementaryStreamParser::MSS_IN_PROGRESS) {
            break;
        }
    }
    return count;
}

void PrintPlain(const std::string& aKey, uint32 aRequestSize) {
    const std::string bytes(kPackets * kPacket, '.');
    PlainParser parser(aRequestSize);
    parser.Open();
    Instructions_PrintOf("packet." + aKey, kPackets, [&] { Push(parser, bytes, kPacket); });
    Require(parser.GetParserStatus() == ezElementaryStreamParser::MSS_IN_PROGRESS, "it goes on and on");
}

/// Every format races over the stream of one of them, until it has won.
void PrintRace(const std::string& aKey, const std::string& aSample) {
    const std::string bytes = ReadWholeFile(EZ_SAMPLES "/elementary/" + aSample);
    std::size_t packets = 0;
    const Instructions count = Instructions_Of([&] {
        ezUndeterminedEltStreamParser race(nullptr, nullptr);
        AddEltStreamCandidates(race);
        race.Open();
        packets = Push(race, bytes, kPacket);
        Require(race.GetParserStatus() == ezElementaryStreamParser::MSS_COMPLETED, "a format finds itself");
    });
    Instructions_Print("packet.of-" + aKey, count, packets);
}

} // namespace

void PrintPackets() {
    PrintPlain("gathered", 65536);
    PrintPlain("skipped", kUnlimited);
    PrintRace("h264", "harbour-light.h264");
    PrintRace("mpeg-video", "harbour-light.m2v");
    PrintRace("ac3", "six-corners.ac3");
    PrintRace("mpeg-audio", "slow-clock.mp2");
    Instructions_PrintGrowth("packet.skipped", {188, 1316, 65536}, [](std::size_t aPacket) {
        const std::string bytes(kPackets * aPacket, '.');
        PlainParser parser(kUnlimited);
        parser.Open();
        return Instructions_OfUnit(kPackets, [&] { Push(parser, bytes, aPacket); });
    });
}
