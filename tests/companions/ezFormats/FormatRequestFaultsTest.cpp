#include "ezFormats/FormatParsers.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"

#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/Folders.h"
#include "support/Record.h"
#include "support/Samples.h"
#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Every system call of a request goes wrong once, and for good: the record is the whole one, or that of the
// file's name, and never one of a part of the file.

namespace {

/// Whether the parsers of the formats are there.
enum class Parsers { All, OfNames };

/// A server with the samples' media types, a media mapper's table, and the parsers of all formats or none.
class Server {
public:
    explicit Server(const TemporaryFolder& aFolder, Parsers aParsers = Parsers::All) {
        mEnvironment.Set("ReadOnlyConfigPath", std::string(EZ_SAMPLES))
            .Set("ReadWriteConfigPath", aFolder.GetPath());
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(kParseOption_Default);
        if (aParsers == Parsers::All) {
            RegisterFormatParsers(*mManager);
        }
        mMapper = std::make_unique<DLNAMediaMapper>(mManager->GetMimeTypesDotIniParser(), EZ_SAMPLES,
                                                    aFolder.GetPath().c_str(), "", "MediaMapper.txt");
        mfMapped = !mMapper->Load().IsError();
        mManager->AddDLNAMediaMapperParser(mMapper.get());
    }

    bool IsMapped() const { return mfMapped; }

    std::string Parse(ezFileMediaParserStream& aStream) {
        const Record record(mManager->Parse(aStream));
        return DumpRecord(record.get());
    }
    /// As a host does it: opened first.
    std::string OpenAndParse(const std::string& aPath) {
        ezFileMediaParserStream stream{ezCString(aPath.c_str())};
        stream.Open();
        return Parse(stream);
    }

private:
    Environment mEnvironment;
    std::unique_ptr<ezMediaParserManager> mManager;
    std::unique_ptr<DLNAMediaMapper> mMapper;
    bool mfMapped = false;
};

std::string Without(const std::string& aDump, const std::string& aKey) {
    const std::size_t at = aDump.find("\n" + aKey + "=") + 1;
    EXPECT_NE(at, 0U) << aKey << " in " << aDump;
    return aDump.substr(0, at) + aDump.substr(aDump.find('\n', at) + 1);
}

/// One media, and the records that a request may come to.
class Request {
public:
    explicit Request(std::string aPath) : mPath(std::move(aPath)) {
        mFolder.Write("_MediaMapper.txt", "kite-day.mp4,video/mp4,AVC_MP4_X\n");
        Server server(mFolder);
        EXPECT_TRUE(server.IsMapped());
        const std::string whole = server.OpenAndParse(mPath);
        mNames[whole] = "whole";
        mNames[Without(whole, "modified")] = "undated";
        ezFileMediaParserStream unopened{ezCString(mPath.c_str())};
        EXPECT_EQ(server.Parse(unopened), whole); // it opens itself
        const std::string byName = Server(mFolder, Parsers::OfNames).OpenAndParse(mPath);
        mNames[byName] = "by name";
        mNames[Without(byName, "fs")] = "by name, unsized";
        EXPECT_EQ(mNames.size(), 4U) << "all differ";
    }

    /// One request of a server that has started well; then once more, with nothing going wrong.
    std::string operator()(const std::vector<Fault>& aFaults, bool* afStruck) const {
        const AssertCatcher asserts;
        Server server(mFolder);
        std::string dump;
        {
            const FaultySystem system(aFaults);
            dump = server.OpenAndParse(mPath);
            *afStruck = system.HasStruck();
        }
        EXPECT_TRUE(asserts.Failures().empty());
        EXPECT_EQ(NameOf(server.OpenAndParse(mPath)), "whole");
        return NameOf(dump);
    }

private:
    std::string NameOf(const std::string& aDump) const {
        const auto found = mNames.find(aDump);
        return found != mNames.end() ? found->second : aDump;
    }

    TemporaryFolder mFolder;
    std::string mPath;
    std::map<std::string, std::string> mNames;
};

/// A media of many reads: the frames of a sample again and again.
std::string LongMusic() {
    const std::string sample = ReadSample("music/uneven-road-vbr.mp3");
    std::string music;
    while (music.size() < 400000) {
        music += sample.substr(1000);
    }
    return music;
}

std::string Sample(const char* aName) {
    return std::string(EZ_SAMPLES) + "/" + aName;
}

/// How the outcome of all calls begins.
std::string EachOf(unsigned aCalls) {
    return (aCalls > 1 ? "1-" : "") + std::to_string(aCalls) + ": ";
}

/// What every request comes to whose media is read so many times.
std::vector<FaultOutcomes> OutcomesOfReads(unsigned aReads) {
    const std::string reads = EachOf(aReads) + "by name\n";
    // A stream that the host could not open opens itself with the first read.
    const std::string opens = "1: whole\n";
    const std::string never = "1: by name, unsized\n";
    return {{SystemCall::Open, opens, never},
            {SystemCall::FStat, opens, never},
            {SystemCall::Stat, "1: undated\n", "1: undated\n"},
            {SystemCall::PRead, reads, reads},
            {SystemCall::Close, "1: whole\n", "1: whole\n"}};
}

/// @param aBrokenOff  what comes of it when a read gives 100 bytes, and the disk breaks then
void ExpectOutcomesOf(const std::string& aPath, unsigned aReads, const char* aBrokenOff = "by name") {
    SCOPED_TRACE(aPath);
    const Request request(aPath);
    EXPECT_EQ(RunUndisturbed(std::cref(request)), "whole");
    ExpectOutcomes(std::cref(request), OutcomesOfReads(aReads));
    for (const std::size_t most : {std::size_t{7}, std::size_t{5000}}) {
        EXPECT_EQ(RunInterrupted(most, std::cref(request)), "whole");
    }
    // Short first, which alone does no harm, and then broken.
    FaultManner manner;
    manner.mCall = SystemCall::PRead;
    manner.mMaximum = 100;
    EXPECT_EQ(SweepFaults(manner, std::cref(request)), EachOf(aReads) + "whole\n");
    manner.mError = EIO;
    manner.mfForGood = true;
    EXPECT_EQ(SweepFaults(manner, std::cref(request)), EachOf(aReads) + aBrokenOff + "\n");
}

} // namespace

TEST(FormatRequestFaults, AFileThatCannotBeReadIsKnownByItsNameAlone) {
    ExpectOutcomesOf(Sample("pictures/harbour.jpg"), 1);
    // All that is told of it stands in its first bytes.
    ExpectOutcomesOf(Sample("pictures/harbour.png"), 1, "whole");
    ExpectOutcomesOf(Sample("music/night-ferry.mp3"), 2);
    ExpectOutcomesOf(Sample("music/evening-train.m4a"), 1);
    ExpectOutcomesOf(Sample("video/kite-day.mp4"), 1);
}

TEST(FormatRequestFaults, AFileThatCannotBeReadInPartIsKnownByItsNameAlone) {
    const TemporaryFolder folder;
    ExpectOutcomesOf(folder.Write("long.mp3", LongMusic()), 6);
}
