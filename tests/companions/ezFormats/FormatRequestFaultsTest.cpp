#include "ezFormats/FormatParsers.h"
#include "ezFormats/png/PNGLimits.h"

#include "ez/DLNAMediaMapper.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"

#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/Folders.h"
#include "support/NumberBytes.h"
#include "support/Record.h"
#include "support/Samples.h"
#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
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
    ezEnvironment mEnvironment;
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

/// More than a parser has buffered after its first read.
constexpr std::size_t kFiller = 40000;

/// A sample in which filler stands before the first box of a type, whose type it is told by.
std::string FilledBefore(const char* aSample, const std::string& aBoxType) {
    const std::string sample = ReadSample(aSample);
    const std::size_t box = sample.find(aBoxType) - 4;
    EXPECT_LT(box, sample.size()) << aBoxType;
    return sample.substr(0, box) + Big(8 + kFiller, 4) + "free" + std::string(kFiller, '\0') +
           sample.substr(box);
}

/// A sample with segments of applications that nobody knows after its start.
std::string FilledJpeg() {
    const std::string sample = ReadSample("pictures/harbour.jpg");
    const std::string segment = "\xFF\xEF" + Big(2 + kFiller, 2) + std::string(kFiller, 'f');
    return sample.substr(0, 2) + segment + segment + sample.substr(2);
}

/// A sample with chunks that nobody knows before its picture.
std::string FilledPng(std::size_t aChunks) {
    const std::string sample = ReadSample("pictures/harbour.png");
    const std::size_t picture = sample.find("IDAT") - 4;
    EXPECT_LT(picture, sample.size());
    std::string filled = sample.substr(0, picture);
    for (std::size_t i = 0; i < aChunks; ++i) {
        filled += Big(kFiller, 4) + "fiLr" + std::string(kFiller + 4, 'f'); // and its check sum
    }
    return filled + sample.substr(picture);
}

/// A file of many reads: the frames of a sample again and again.
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

/// A file, and how it is read.
struct Reading {
    std::string mPath;
    unsigned mReads;
    unsigned mBlocks; ///< that memory is asked for: one that is large enough serves further reads
    /// What comes of one read that gives 100 bytes when the disk breaks then, where it is not the name each
    /// time.
    const char* mBrokenOff = nullptr;
};

/// What every request comes to.
std::vector<FaultOutcomes> OutcomesOf(const Reading& aReading) {
    const std::string reads = EachOf(aReading.mReads) + "by name\n";
    const std::string blocks = EachOf(aReading.mBlocks) + "by name\n";
    // A stream that the host could not open opens itself with the first read.
    const std::string opens = "1: whole\n";
    const std::string never = "1: by name, unsized\n";
    return {{SystemCall::Open, opens, never},
            {SystemCall::FStat, opens, never},
            {SystemCall::Stat, "1: undated\n", "1: undated\n"},
            {SystemCall::PRead, reads, reads},
            {SystemCall::Memory, blocks, blocks},
            {SystemCall::Close, "1: whole\n", "1: whole\n"}};
}

void ExpectOutcomesOf(const Reading& aReading) {
    SCOPED_TRACE(aReading.mPath);
    const Request request(aReading.mPath);
    EXPECT_EQ(RunUndisturbed(std::cref(request)), "whole");
    ExpectOutcomes(std::cref(request), OutcomesOf(aReading));
    for (const std::size_t most : {std::size_t{7}, std::size_t{5000}}) {
        EXPECT_EQ(RunInterrupted(most, std::cref(request)), "whole");
    }
    // Short first, which alone does no harm, and then broken.
    FaultManner manner;
    manner.mCall = SystemCall::PRead;
    manner.mMaximum = 100;
    EXPECT_EQ(SweepFaults(manner, std::cref(request)), EachOf(aReading.mReads) + "whole\n");
    manner.mError = EIO;
    manner.mfForGood = true;
    EXPECT_EQ(SweepFaults(manner, std::cref(request)),
              aReading.mBrokenOff != nullptr ? aReading.mBrokenOff : EachOf(aReading.mReads) + "by name\n");
}

} // namespace

TEST(FormatRequestFaults, AFileThatCannotBeReadIsKnownByItsNameAlone) {
    ExpectOutcomesOf({Sample("pictures/harbour.jpg"), 1, 1});
    // All that is told of it stands in its first bytes.
    ExpectOutcomesOf({Sample("pictures/harbour.png"), 1, 1, "1: whole\n"});
    ExpectOutcomesOf({Sample("music/night-ferry.mp3"), 2, 2});
    ExpectOutcomesOf({Sample("music/evening-train.m4a"), 1, 1});
    ExpectOutcomesOf({Sample("video/kite-day.mp4"), 1, 1});
}

TEST(FormatRequestFaults, AFileThatCannotBeReadInPartIsKnownByItsNameAlone) {
    const TemporaryFolder folder;
    ExpectOutcomesOf({folder.Write("long.mp3", LongMusic()), 6, 2});
    ExpectOutcomesOf(
        {folder.Write("last.mp4", FilledBefore("formats/avc-main-moov-last.mp4", "moov")), 2, 1});
    ExpectOutcomesOf({folder.Write("parts.mp4", FilledBefore("formats/avc-fragments.mp4", "moof")), 3, 1});
    ExpectOutcomesOf({folder.Write("filled.jpg", FilledJpeg()), 3, 1});
    // The last read gives the picture's chunk, of which nothing is told.
    ExpectOutcomesOf({folder.Write("filled.png", FilledPng(2)), 3, 1, "1-2: by name\n3: whole\n"});
}

TEST(FormatRequestFaults, AReadThatFailsIsNotABudgetThatIsUsedUp) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("filled.png", FilledPng(kPNG_MaxReads + 1));
    Server server(folder);
    const auto reasonWith = [&](const std::vector<Fault>& aFaults) {
        const LogCatcher log;
        const FaultySystem system(aFaults);
        server.OpenAndParse(path);
        return std::string(log.Has("PNGParser: limit: budget used up before the picture\n") ? "limit " : "") +
               (log.Has("PNGParser: read error: before the picture\n") ? "read error" : "");
    };
    EXPECT_EQ(reasonWith({}), "limit ");
    for (std::size_t read = 2; read <= kPNG_MaxReads; ++read) {
        EXPECT_EQ(reasonWith(FaultsAt(MannerOf(SystemCall::PRead), read)), "read error") << read;
    }
    EXPECT_EQ(reasonWith(FaultsAt(MannerOf(SystemCall::PRead), kPNG_MaxReads + 1)), "limit ");
}
