// A host with a parser of its own: own-parser-host CONFIG_FOLDER FILE...
#include "ez/MediaParserManager.h"
#include "ezHosting/Host.h"

#include <cstdio>
#include <cstring>

// A parser of the host's own: WAVE files whose format chunk comes first. It is filed under the type "wav",
// which the media types file names for the extension .wav.
class WavParser : public ezMediaParser {
public:
    WavParser() : ezMediaParser("wav", nullptr, false) {}

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override { return ParseFromStream(aStream, 32, 0); }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }
    ezCString GetDLNAInfo() override { return "audio/wav:*"; }

protected:
    ezMediaInfo* Read(uint8* aBegin, std::size_t aSize, uint8* /*anEnd*/, std::size_t /*anEndSize*/,
                      const ezuint64& /*aMediaSize*/) override {
        if (aSize < 32 || std::memcmp(aBegin, "RIFF", 4) != 0 ||
            std::memcmp(aBegin + 8, "WAVEfmt ", 8) != 0) {
            return nullptr;
        }
        const uint32 samples = aBegin[24] + 256U * aBegin[25] + 65536U * aBegin[26]; // a second
        const uint32 bytes = aBegin[28] + 256U * aBegin[29] + 65536U * aBegin[30];   // a second
        ezMediaInfo* info = new ezMediaInfo;
        info->Set(kezInfo_AudioTrackCount, 1, true);
        info->Set(kezInfo_AudioChannelCount, aBegin[22], true);
        info->Set(kezInfo_AudioSamplingRate, samples, true);
        info->Set(kezInfo_AudioBitRate, 8 * bytes, true);
        return info; // the media types file adds MIME type and class; other rates follow from this one
    }
};

int main(int anArgCount, char** anArgs) {
    ezHostOptions options;
    options.mAddParsers = [](ezMediaParserManager& aManager) {
        aManager.Add(new WavParser); // the manager deletes it
    };
    ezHost host(anArgCount > 1 ? anArgs[1] : ".", options);
    for (int i = 2; i < anArgCount; ++i) {
        if (const std::unique_ptr<ezMediaInfo> info = host.Identify(anArgs[i])) {
            std::printf("%s: %s\n", anArgs[i], info->GetOtherProperties().c_str());
        } else {
            std::printf("%s: not recognised %s\n", anArgs[i], host.GetError().c_str());
        }
    }
    for (const std::string& capability : host.GetCapabilities()) {
        std::printf("advertised: %s\n", capability.c_str());
    }
    return host.IsReady() ? 0 : 1;
}
