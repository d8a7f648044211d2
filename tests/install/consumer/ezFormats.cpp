// A stranger's program against an installed ezFormats: finds out what an elementary stream is, and prints its
// channels and its samples a second.

#include "ezFormats/EltStreamCandidates.h"

#include "ez/ElementaryStreamParser.h"

#include "ezPlatform/media/MediaInfo.h"

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

int main(int /*aCount*/, char** anArguments) {
    ezUndeterminedEltStreamParser race(nullptr, new ezMediaInfo);
    AddEltStreamCandidates(race);
    race.Open();
    std::ifstream file(std::string(anArguments[1]) + "/music/evening-train.aac", std::ios::binary);
    char packet[188];
    while (race.GetParserStatus() == ezElementaryStreamParser::MSS_IN_PROGRESS &&
           file.read(packet, sizeof packet)) {
        race.AddPacket(packet, sizeof packet, false);
    }
    const std::unique_ptr<ezMediaInfo> info(race.Close());
    if (info == nullptr) {
        return 1;
    }
    std::printf("%u %u\n", static_cast<unsigned>(info->GetUInt32(kezInfo_AudioChannelCount, 0)),
                static_cast<unsigned>(info->GetUInt32(kezInfo_AudioSamplingRate, 0)));
    return 0;
}
