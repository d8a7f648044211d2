// Step 7: media that are no files: one of a web server, and a broadcast that is pushed in packets:
// step-7-arriving-media CONFIG_FOLDER URL_OR_ELEMENTARY_STREAM...
#include "OwnHost.h"
#include "Record.h"

#include "ez/ElementaryStreamParser.h"
#include "ez/StreamMediaParserStream.h"
#include "ezFormats/EltStreamCandidates.h"
#include "ezLiveStreams/HttpStream.h"
#include "ezPlatform/base/StandardDescriptors.h"

#include <array>

namespace {

/// Reads media of a web server as if they were a file; the transfer runs on a thread of the stream.
std::unique_ptr<ezMediaInfo> IdentifyURL(ezHost& aHost, const char* aURL) {
    ezHttpOptions options;
    options.mStallTime = std::chrono::seconds(10);
    auto* source = new ezHttpStream(aURL, options);
    ezStreamMediaParserStream stream(source, true); // releases it
    std::unique_ptr<ezMediaInfo> info = aHost.Identify(stream);
    if (source->HasFailed()) {
        std::fprintf(stderr, "%s: %s\n", aURL, source->GetErrorText().c_str());
        return nullptr; // what was found out rests on half of the media
    }
    return info;
}

/// Lets all formats race on the packets of a broadcast, here those that a file was cut into.
std::unique_ptr<ezMediaInfo> Race(std::FILE& aBroadcast) {
    ezUndeterminedEltStreamParser race(nullptr, new ezMediaInfo);
    AddEltStreamCandidates(race);
    race.Open();
    std::array<char, 188> packet = {};
    std::size_t size = 1;
    while (race.GetParserStatus() == ezElementaryStreamParser::MSS_IN_PROGRESS && size != 0) {
        size = std::fread(packet.data(), 1, packet.size(), &aBroadcast);
        race.AddPacket(packet.data(), static_cast<uint32>(size), false);
    }
    return std::unique_ptr<ezMediaInfo>(race.Close()); // null when nobody won
}

} // namespace

int main(int anArgCount, char** anArgs) {
    ezKeepStandardDescriptors(); // so that nothing that is opened later is taken for one of them
    ezHost host(anArgCount > 1 ? anArgs[1] : ".", OwnOptions());
    for (int i = 2; i < anArgCount; ++i) {
        if (ezHttpStream::IsURL(anArgs[i])) {
            Print(anArgs[i], IdentifyURL(host, anArgs[i]).get());
        } else if (std::FILE* broadcast = std::fopen(anArgs[i], "rb")) {
            const std::unique_ptr<ezMediaInfo> info = Race(*broadcast);
            std::printf("%s: %s\n", anArgs[i], info ? info->GetOtherProperties().c_str() : "not recognised");
            std::fclose(broadcast);
        }
    }
    return 0;
}
