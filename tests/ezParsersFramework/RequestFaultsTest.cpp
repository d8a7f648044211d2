#include "ez/DLNAMediaMapper.h"
#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ez/StreamMediaParserStream.h"

#include "support/Catchers.h"
#include "support/FaultySystem.h"
#include "support/Record.h"
#include "support/ScriptedParser.h"
#include "support/ScriptedStream.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Every system call of a server's start and of a request goes wrong once, and for good.

namespace {

constexpr std::size_t kBeginSize = 9000; // more than a stream keeps of the start
constexpr std::size_t kEndSize = 3000;

/// Reads a block of the beginning and one of the end, as the parsers of most formats do.
class EndsParser : public ezMediaParser {
public:
    EndsParser() : ezMediaParser("ends", nullptr, true) {}

    ezMediaInfo* Parse(ezMediaParserStream& aStream) override {
        return ParseFromStream(aStream, kBeginSize, kEndSize);
    }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }
    ezCString GetDLNAInfo() override { return "video/parsed:*"; }

protected:
    ezMediaInfo* Read(uint8* aBegin, std::size_t aBeginSize, uint8* anEnd, std::size_t anEndSize,
                      const ezuint64& aMediaSize) override {
        if (aBeginSize != kBeginSize || anEndSize != kEndSize || aBegin[kBeginSize - 1] != 'b' ||
            anEnd[kEndSize - 1] != 'e' || aMediaSize != kBeginSize + kEndSize) {
            return nullptr;
        }
        ezMediaInfo* info = new ezMediaInfo;
        info->Set(kezInfo_MimeType, "video/parsed", true);
        return info;
    }
};

/// A server under a conformance test, with media types in two folders and a media mapper's table.
class Server {
public:
    explicit Server(const TemporaryFolder& aFolder) {
        mEnvironment.Set("ReadOnlyConfigPath", aFolder.Path("ro"))
            .Set("ReadWriteConfigPath", aFolder.Path("rw"))
            .Set("CTTContext", 1);
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(kParseOption_Default);
        mManager->Add(new EndsParser);
        mMapper = std::make_unique<DLNAMediaMapper>(mManager->GetMimeTypesDotIniParser(),
                                                    aFolder.Path("ro").c_str(), aFolder.Path("rw").c_str(),
                                                    "", "MediaMapper.txt");
        mfMapped = !mMapper->Load().IsError();
        mManager->AddDLNAMediaMapperParser(mMapper.get());
    }

    /// What it started with.
    std::string Holds() const {
        ezMimeTypesDotIniParser* types = mManager->GetMimeTypesDotIniParser();
        return Str(types->FileExtensionToMimeType("end")) + " " + Str(types->FileExtensionToMimeType("own")) +
               (mfMapped ? " mapped" : " not mapped");
    }

    /// As a host does it: opened first.
    std::string Parse(const std::string& aPath) {
        ezFileMediaParserStream stream{ezCString(aPath.c_str())};
        stream.Open();
        return Parse(stream);
    }
    std::string Parse(ezMediaParserStream& aStream) {
        const Record record(mManager->Parse(aStream));
        if (record == nullptr) {
            return "nothing";
        }
        std::string facts = Str(record->GetCString(kezInfo_MimeType, "")) + " " +
                            Str(record->GetCString(kezInfo_DLNA, "-")) + " du " +
                            Str(record->GetCString(kezInfo_Duration, "-")) + " fs " +
                            Str(record->GetCString(kezInfo_FileSize, "-"));
        return facts + (record->mLastModificationTime.GetUnixTime() != 0 ? "" : ", undated");
    }

    /// By the parsers of a type, or those of a MIME type that find covers; and where the stream stands then.
    std::string Ask(const std::string& aPath, bool afCover) {
        ezFileMediaParserStream stream{ezCString(aPath.c_str())};
        stream.Open();
        const Record record(afCover ? mManager->ParseCoverArt("video/parsed", stream)
                                    : mManager->ParseFromType("ends", stream));
        return (record != nullptr ? Str(record->GetCString(kezInfo_MimeType, "")) : "nothing") +
               (stream.Tell() == 0U ? "" : ", moved");
    }

private:
    ezEnvironment mEnvironment;
    std::unique_ptr<DLNAMediaMapper> mMapper;
    std::unique_ptr<ezMediaParserManager> mManager;
    bool mfMapped = false;
};

/// A folder with all that a server reads.
class Home {
public:
    static std::string Media() { return std::string(kBeginSize, 'b') + std::string(kEndSize, 'e'); }

    Home() {
        mFolder.Write("ro/mediaCTRLMediaTypes.ini", "[MimeTypes]\n"
                                                    "end=end@video/named@item.videoItem@ends\n"
                                                    "pcm=pcm@audio/L16@item.audioItem@lpcm\n");
        mFolder.Write("rw/mediaCTRLMediaTypes.ini", "[MimeTypes]\nown=own@video/own@item.videoItem\n");
        mFolder.Write("rw/_MediaMapper.txt", "mapped.end,video/mapped,MAPPED,0:01:40\n");
        mFolder.Write("film.end", Media());
        mFolder.Write("mapped.end", Media());
        mFolder.Write("b-lpcm-2.pcm", std::string(352800, '\0'));
    }
    const TemporaryFolder& Folder() const { return mFolder; }

private:
    TemporaryFolder mFolder;
};

/// The folders above the media mapper's table and its own, which is made by its path with the "/" too.
std::string Mkdirs() {
    const Home home;
    const std::string path = home.Folder().Path("rw/_");
    return std::to_string(std::count(path.begin(), path.end(), '/'));
}

std::string Start(const std::vector<Fault>& aFaults, bool* afStruck) {
    const AssertCatcher asserts;
    const LogCatcher quiet;
    const Home home;
    std::string holds;
    {
        const FaultySystem system(aFaults);
        holds = Server(home.Folder()).Holds();
        *afStruck = system.HasStruck();
    }
    EXPECT_TRUE(asserts.Failures().empty());
    EXPECT_EQ(Server(home.Folder()).Holds(), "video/named video/own mapped");
    return holds;
}

FaultyOperation Request(const std::string& aName) {
    return [aName](const std::vector<Fault>& aFaults, bool* afStruck) {
        const AssertCatcher asserts;
        const Home home;
        const std::string path = home.Folder().Path(aName);
        Server server(home.Folder());
        std::string facts;
        {
            const FaultySystem system(aFaults);
            facts = server.Parse(path);
            *afStruck = system.HasStruck();
        }
        EXPECT_TRUE(asserts.Failures().empty());
        EXPECT_EQ(server.Parse(path), Server(home.Folder()).Parse(path));
        return facts;
    };
}

/// A host asks the parsers of a type, or those that find covers.
FaultyOperation Ask(bool afCover) {
    return [afCover](const std::vector<Fault>& aFaults, bool* afStruck) {
        const AssertCatcher asserts;
        const Home home;
        const std::string path = home.Folder().Path("film.end");
        Server server(home.Folder());
        std::string told;
        {
            const FaultySystem system(aFaults);
            told = server.Ask(path, afCover);
            *afStruck = system.HasStruck();
        }
        EXPECT_TRUE(asserts.Failures().empty());
        EXPECT_EQ(Server(home.Folder()).Ask(path, afCover), "video/parsed");
        return told;
    };
}

/// What a stream is asked for.
enum class StreamCall { Read, Seek, GetSize, IsOpened };

/// What goes wrong with a stream: the calls of a kind from one on.
struct StreamFault {
    StreamCall mCall = StreamCall::Read;
    std::size_t mFrom = 1;
    bool mfForGood = false;
    bool mfLate = false; ///< the read finds nothing yet, rather than an error
};

/// A file from a server, whose calls fail: by the contract of ezStream, which knows no size, is not opened,
/// refuses a seek, has an error, or nothing yet.
class FaultyStream : public ScriptedStream {
public:
    FaultyStream(bool afLending, const StreamFault& aFault)
        : ScriptedStream(Home::Media(), afLending, "/media/film.end"), mFault(aFault) {}

    bool HasStruck() const { return mfStruck; }

    ezuint64 GetSize() override { return Strikes(StreamCall::GetSize) ? 0 : ScriptedStream::GetSize(); }
    bool IsOpened() override { return !Strikes(StreamCall::IsOpened) && ScriptedStream::IsOpened(); }
    ezStreamingStatus Seek(const ezuint64& aPosition) override {
        return Strikes(StreamCall::Seek) ? ezStreamingStatus_OutOfRange : ScriptedStream::Seek(aPosition);
    }
    ezStreamingStatus Read(void* aBuffer, std::size_t* aSize, int aFlag) override {
        return Strikes(StreamCall::Read) ? Nothing(aSize) : ScriptedStream::Read(aBuffer, aSize, aFlag);
    }
    ezStreamingStatus LendingRead(const void** aData, std::size_t* aSize, int aFlag) override {
        return Strikes(StreamCall::Read) ? Nothing(aSize) : ScriptedStream::LendingRead(aData, aSize, aFlag);
    }

private:
    bool Strikes(StreamCall aCall) {
        if (aCall != mFault.mCall) {
            return false;
        }
        ++mCount;
        const bool fStrikes = mFault.mfForGood ? mCount >= mFault.mFrom : mCount == mFault.mFrom;
        mfStruck = mfStruck || fStrikes;
        return fStrikes;
    }
    ezStreamingStatus Nothing(std::size_t* aSize) {
        *aSize = 0;
        if (mFault.mfLate) {
            Fire(); // and now it is there
            return ezStreamingStatus_NoError;
        }
        return ezStreamingStatus_ReadError;
    }

    const StreamFault mFault;
    std::size_t mCount = 0;
    bool mfStruck = false;
};

/// The outcomes of a request of a stream whose calls of a kind fail in turn, one a line.
std::string SweepStream(bool afLending, StreamFault aFault) {
    const AssertCatcher asserts;
    const LogCatcher quiet;
    const Home home;
    Server server(home.Folder());
    std::string outcomes;
    std::string last;
    for (aFault.mFrom = 1; aFault.mFrom < 100; ++aFault.mFrom) {
        auto* const stream = new FaultyStream(afLending, aFault);
        const ezStreamOwner owner(stream);
        std::string told;
        {
            ezStreamMediaParserStream parsed(stream, false);
            told = parsed.Open() ? "" : "not opened: ";
            told += server.Parse(parsed);
        }
        if (!stream->HasStruck()) {
            EXPECT_EQ(told, "video/parsed - du - fs 12000, undated");
            EXPECT_TRUE(asserts.Failures().empty());
            return outcomes;
        }
        if (told != last) {
            outcomes += std::to_string(aFault.mFrom) + ": " + told + "\n";
        }
        last = told;
    }
    return outcomes + "and no end";
}

/// What a request comes to, by what goes wrong.
struct RequestOutcomes {
    const char* mWhole;
    const char* mUndated;
    const char* mUnsized; ///< the stream could not be opened in time, and opens itself with a read
    const char* mUnopened;
    const char* mUnread;
    const char* mBlocks; ///< how the outcome of each read, and of the memory for it, begins; "" for no reads
};

void ExpectOutcomesOf(const char* aName, const RequestOutcomes& anOutcomes) {
    SCOPED_TRACE(aName);
    const FaultyOperation request = Request(aName);
    const std::string whole = std::string("1: ") + anOutcomes.mWhole + "\n";
    const std::string undated = std::string("1: ") + anOutcomes.mUndated + "\n";
    const std::string unsized = std::string("1: ") + anOutcomes.mUnsized + "\n";
    const std::string unopened = std::string("1: ") + anOutcomes.mUnopened + "\n";
    const std::string blocks = anOutcomes.mBlocks;
    const std::string unread = blocks.empty() ? blocks : blocks + anOutcomes.mUnread + "\n";
    EXPECT_EQ(RunUndisturbed(request), anOutcomes.mWhole);
    ExpectOutcomes(request, {{SystemCall::Open, unsized, unopened},
                             {SystemCall::FStat, unsized, unopened},
                             {SystemCall::Stat, undated, undated},
                             {SystemCall::PRead, unread, unread},
                             {SystemCall::Memory, unread, unread},
                             {SystemCall::Close, whole, whole}});
}

} // namespace

TEST(RequestFaults, ServerStartsWithTheWholeFilesThatCanBeRead) {
    const std::string all = "video/named video/own mapped\n";
    const std::string noFactory = "application/octet-stream video/own mapped\n";
    const std::string noOwn = "video/named application/octet-stream mapped\n";
    const std::string noMapper = "video/named video/own not mapped\n";
    const std::string noTypes = "application/octet-stream application/octet-stream mapped\n";
    const std::string nothing = "application/octet-stream application/octet-stream not mapped\n";
    const std::string ownAlone = "video/named application/octet-stream not mapped\n";
    EXPECT_EQ(RunUndisturbed(Start) + "\n", all);
    // Those that fail once leave one file out; the folders' identity is asked for before any is read.
    const std::string once = "1: " + noFactory + "2: " + noOwn + "3: " + noMapper;
    const std::string forGood = "1: " + nothing + "2: " + ownAlone + "3: " + noMapper;
    ExpectOutcomes(Start,
                   {{SystemCall::Open, once, forGood},
                    {SystemCall::FStat, once, forGood},
                    {SystemCall::PRead, "1: " + noFactory + "2: " + noOwn + "3-4: " + noMapper,
                     "1: " + nothing + "2: " + ownAlone + "3-4: " + noMapper},
                    {SystemCall::Memory, "1: " + noFactory + "2: " + noOwn, "1: " + noTypes + "2: " + noOwn},
                    {SystemCall::Stat, "1-2: " + all + "3: " + noMapper + "4-5: " + all,
                     "1-3: " + noMapper + "4-5: " + all},
                    {SystemCall::Close, "1-3: " + all, "1-3: " + all},
                    {SystemCall::Mkdir, "1-" + Mkdirs() + ": " + all, "1-" + Mkdirs() + ": " + all}});
}

TEST(RequestFaults, ReadsThatComeShortBeforeTheyFailAreNoFile) {
    FaultManner manner;
    manner.mCall = SystemCall::PRead;
    manner.mError = EIO;
    manner.mfForGood = true;
    manner.mMaximum = 40;
    // Forty bytes of the factory's types hold the whole first line of them, and it does not count.
    EXPECT_EQ(SweepFaults(manner, Start), "1: application/octet-stream application/octet-stream not mapped\n"
                                          "2: video/named application/octet-stream not mapped\n"
                                          "3: video/named video/own not mapped\n"
                                          "4: video/named video/own mapped\n");
    EXPECT_EQ(SweepFaults(manner, Request("film.end")), "1-2: video/named - du - fs 12000\n");
}

TEST(RequestFaults, FileThatCannotBeReadIsWhatItsNameTells) {
    const char* named = "video/named - du - fs 12000";
    // Its parser asks for the size before anything is read, and declines.
    ExpectOutcomesOf("film.end", {"video/parsed - du - fs 12000", "video/parsed - du - fs 12000, undated",
                                  named, "video/named - du - fs -", named, "1-2: "});
    const char* mapped = "video/mapped DLNA.ORG_PN=MAPPED du 100 fs 12000";
    ExpectOutcomesOf("mapped.end", {mapped, "video/mapped DLNA.ORG_PN=MAPPED du 100 fs 12000, undated",
                                    mapped, "video/mapped DLNA.ORG_PN=MAPPED du 100 fs -", mapped, "1-2: "});
    // Known by its name; its size alone is asked for.
    const char* unsized = "audio/L16;rate=44100;channels=2 DLNA.ORG_PN=LPCM du - fs -";
    ExpectOutcomesOf("b-lpcm-2.pcm",
                     {"audio/L16;rate=44100;channels=2 DLNA.ORG_PN=LPCM du 2 fs 352800",
                      "audio/L16;rate=44100;channels=2 DLNA.ORG_PN=LPCM du 2 fs 352800, undated", unsized,
                      unsized, "", ""});
}

TEST(RequestFaults, ParsersThatAreAskedByTypeOrForACoverGiveAWholeRecordOrNone) {
    const std::string nothing = "1: nothing\n";
    const std::string reads = "1-2: nothing\n";
    for (const bool fCover : {false, true}) {
        SCOPED_TRACE(fCover);
        EXPECT_EQ(RunUndisturbed(Ask(fCover)), "video/parsed");
        // The parser asks for the size before anything is read, and declines.
        ExpectOutcomes(Ask(fCover), {{SystemCall::Open, nothing, nothing},
                                     {SystemCall::FStat, nothing, nothing},
                                     {SystemCall::Stat, "1: video/parsed\n", "1: video/parsed\n"},
                                     {SystemCall::PRead, reads, reads},
                                     {SystemCall::Memory, reads, reads},
                                     {SystemCall::Close, "1: video/parsed\n", "1: video/parsed\n"}});
        FaultManner manner = MannerOf(SystemCall::PRead);
        manner.mMaximum = 100;
        EXPECT_EQ(SweepFaults(manner, Ask(fCover)), "1-2: nothing\n") << "short, and then an error";
        for (const std::size_t most : {std::size_t{1}, std::size_t{1000}}) {
            EXPECT_EQ(RunInterrupted(most, Ask(fCover)), "video/parsed");
        }
    }
}

TEST(RequestFaults, AStreamThatFailsGivesAWholeRecordOrThatOfItsName) {
    const std::string parsed = "video/parsed - du - fs 12000, undated\n";
    const std::string named = "video/named - du - fs 12000, undated\n";
    const std::string unsized = "video/named - du - fs -, undated\n";
    struct Row {
        StreamCall mCall;
        std::string mOnce;
        std::string mForGood;
    };
    for (const bool fLending : {false, true}) {
        SCOPED_TRACE(fLending ? "lending" : "copying");
        const Row rows[] = {
            // That of Open; a later one tries again what it could not read.
            {StreamCall::Read, "1: " + parsed + "2: " + named, "1: " + named},
            // A stream that lends is first sought in for the rest of the media. One that copies, by Open,
            // back to
            // its start, which may fail; the last seek follows the request.
            {StreamCall::Seek, "1: " + (fLending ? named + "2: " + parsed : parsed),
             "1: " + named + "2: " + parsed},
            // The parser asks before anything is read after Open, and declines.
            {StreamCall::GetSize, "1: " + parsed + "2: " + named, "1: " + unsized},
            // A host that goes on all the same has what the stream gives.
            {StreamCall::IsOpened, "1: not opened: " + parsed, "1: not opened: " + parsed},
        };
        for (const Row& row : rows) {
            SCOPED_TRACE(static_cast<int>(row.mCall));
            StreamFault fault;
            fault.mCall = row.mCall;
            EXPECT_EQ(SweepStream(fLending, fault), row.mOnce);
            fault.mfForGood = true;
            EXPECT_EQ(SweepStream(fLending, fault), row.mForGood);
        }
        StreamFault late;
        late.mfLate = true;
        EXPECT_EQ(SweepStream(fLending, late), "1: " + parsed) << "every read waits once";
    }
}

TEST(RequestFaults, InterruptionsAndShortReadsChangeNothing) {
    for (const std::size_t most : {std::size_t{1}, std::size_t{1000}}) {
        for (const FaultyOperation& operation :
             {FaultyOperation(Start), Request("film.end"), Request("mapped.end")}) {
            EXPECT_EQ(RunInterrupted(most, operation), RunUndisturbed(operation));
        }
    }
}
