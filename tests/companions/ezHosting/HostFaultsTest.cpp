#include "ezHosting/Host.h"

#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// Every system call of a host's start and of its first request goes wrong once, and for good.

namespace {

constexpr const char* kTable = "[MimeTypes]\na=a@audio/a@item.audioItem\n";

/// What came of a start and a request, and of a second request when nothing goes wrong any more. A record is
/// whole: it has the file's size.
std::string Told(ezHost& aHost, const std::string& aPath, const std::string& aStage) {
    const auto info = aHost.Identify(aPath);
    std::string text = info != nullptr ? Str(info->GetCString(kezInfo_MimeType, "")) + " " +
                                             std::to_string(info->GetUInt32(kezInfo_FileSize, 0))
                                       : "(" + aHost.GetError() + ")";
    for (std::size_t at = text.find(aStage); at != std::string::npos; at = text.find(aStage)) {
        text.erase(at, aStage.size() + 1);
    }
    return text;
}

FaultyOperation StartAndIdentify(bool afMapper) {
    return [afMapper](const std::vector<Fault>& aFaults, bool* afStruck) {
        const AssertCatcher asserts;
        const LogCatcher log;
        const TemporaryFolder folder;
        folder.Write("mediaCTRLMediaTypes.ini", kTable);
        folder.Write("MediaMapper.txt", "song.a,audio/mapped,NIGHT,0:02:05\n");
        const std::string media = folder.Write("song.a", "sound");
        ezHostOptions options;
        options.mfMediaMapper = afMapper;
        std::unique_ptr<ezHost> host;
        std::string text;
        {
            const FaultySystem system(aFaults);
            host = std::make_unique<ezHost>(folder.GetPath(), options);
            text = Told(*host, media, folder.GetPath());
            *afStruck = system.HasStruck();
        }
        text += ", then " + Told(*host, media, folder.GetPath());
        EXPECT_TRUE(asserts.Failures().empty());
        return text;
    };
}

} // namespace

TEST(HostFaults, LeaveAWholeRecordOrAnErrorThatNamesTheFile) {
    EXPECT_EQ(RunUndisturbed(StartAndIdentify(false)), "audio/a 5, then audio/a 5");
    const std::string none = "(no media types: mediaCTRLMediaTypes.ini: no types were read from it)";
    const std::string twice = "(no media types: two reads of the table gave two tables)";
    const std::string tables = "1: " + none + ", then " + none + "\n2: " + twice + ", then " + twice + "\n";
    const std::string media = tables + "3: (song.a: cannot be opened), then audio/a 5\n";
    ExpectOutcomes(
        StartAndIdentify(false),
        {{SystemCall::Open, media, media},
         {SystemCall::Close, "1-3: audio/a 5, then audio/a 5\n", "1-3: audio/a 5, then audio/a 5\n"},
         {SystemCall::Stat, "1: audio/a 5, then audio/a 5\n", "1: audio/a 5, then audio/a 5\n"},
         {SystemCall::FStat, media, media},
         {SystemCall::PRead, tables, tables},
         {SystemCall::Memory, tables, tables}});
    EXPECT_EQ(RunInterrupted(1, StartAndIdentify(false)), "audio/a 5, then audio/a 5");
}

TEST(HostFaults, NeverLeaveOutTheMediaMapperThatWasAskedFor) {
    const std::string good = "audio/mapped 5";
    EXPECT_EQ(RunUndisturbed(StartAndIdentify(true)), good + ", then " + good);
    std::set<std::string> kinds;
    for (std::size_t call = 0; call < kSystemCallCount; ++call) {
        for (const bool fForGood : {false, true}) {
            FaultManner manner = MannerOf(static_cast<SystemCall>(call));
            manner.mfForGood = fForGood;
            std::istringstream outcomes(SweepFaults(manner, StartAndIdentify(true)));
            for (std::string line; std::getline(outcomes, line);) {
                const std::string outcome = line.substr(line.find(": ") + 2);
                const std::size_t half = outcome.rfind(", then ");
                const std::string first = outcome.substr(0, half);
                const std::string second = outcome.substr(half + 7);
                const bool fFailed = first.find("(no media ") == 0 && second == first;
                const bool fUnread = first == "(song.a: cannot be opened)" && second == good;
                EXPECT_TRUE((first == good && second == good) || fFailed || fUnread)
                    << NameOf(manner.mCall) << " " << line;
                kinds.insert(fFailed ? "failed" : first);
            }
        }
    }
    EXPECT_EQ(kinds, (std::set<std::string>{good, "failed", "(song.a: cannot be opened)"}));
}
