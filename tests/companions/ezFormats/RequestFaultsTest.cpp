#include "ezFormats/FormatParsers.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"

#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <map>
#include <memory>
#include <string>
#include <vector>

// Every system call of a server goes wrong once, and for good: at its start, and in a request.

namespace {

constexpr int kErrorsAlone = 2;

/// A server with all format parsers, the samples' media types and a media mapper's table.
class Server {
public:
    explicit Server(const TemporaryFolder& aFolder) {
        mEnvironment.Set("ReadOnlyConfigPath", std::string(EZ_SAMPLES)).Set("ReadWriteConfigPath", aFolder.GetPath());
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(kParseOption_Default);
        RegisterFormatParsers(*mManager);
        mMapper = std::make_unique<DLNAMediaMapper>(mManager->GetMimeTypesDotIniParser(), EZ_SAMPLES, aFolder.GetPath().c_str(), "",
                                                    "MediaMapper.txt");
        mfMapped = !mMapper->Load().IsError();
        mManager->AddDLNAMediaMapperParser(mMapper.get());
    }

    /// As a host does it: opened first.
    std::string Parse(const std::string& aPath) {
        ezFileMediaParserStream stream{ezCString(aPath.c_str())};
        stream.Open();
        const Record record(mManager->Parse(stream));
        return DumpRecord(record.get());
    }

    bool mfMapped = false;

private:
    Environment mEnvironment;
    std::unique_ptr<DLNAMediaMapper> mMapper;
    std::unique_ptr<ezMediaParserManager> mManager;
};

TEST(Zzz, A) {
    for (const char* name : {"music/night-ferry.mp3", "music/uneven-road-vbr.mp3", "pictures/harbour.jpg", "pictures/harbour.png", "video/kite-day.mp4", "music/evening-train.m4a", "conformance/B-LPCM-2.pcm"}) {
    std::map<std::string, char> letters;
    const FaultyOperation op = [&](const std::vector<Fault>& aFaults, bool* s) {
        const LogCatcher log(kErrorsAlone);
        const TemporaryFolder folder; folder.Write("_MediaMapper.txt", "kite-day.mp4,video/mp4,AVC_MP4_X\n");
        Server server(folder);
        const FaultySystem system(aFaults);
        std::string dump = server.Parse(std::string(EZ_SAMPLES) + "/" + name);
        *s = system.HasStruck();
        if (!letters.count(dump)) { char c = char('A' + letters.size()); letters[dump] = c; printf("---- %c\n%s", c, dump.c_str()); }
        return std::string(1, letters[dump]);
    };
    printf("==== %s\n", name);
    RunUndisturbed(op);
    for (std::size_t i = 0; i < kSystemCallCount; ++i) for (int g = 0; g < 4; ++g) {
        FaultManner m; m.mCall = SystemCall(i); m.mError = EIO; m.mfForGood = g & 1; if (g & 2) m.mMaximum = 100;
        if ((g & 2) && m.mCall != SystemCall::PRead) continue;
        std::string o = SweepFaults(m, op);
        if (!o.empty()) printf("%s %d\n%s", NameOf(m.mCall), g, o.c_str());
    }
    EXPECT_EQ(RunInterrupted(1, op), "A");
    EXPECT_EQ(RunInterrupted(3000, op), "A");
    }
}

} // namespace
