#include "ez/MimeTypesDotIniParser.h"

#include "ez/DLNAFileParser.h"
#include "ez/Environment.h"
#include "ez/ExtensionMimeTypeMatcher.h"
#include "ez/MediaParserManager.h"
#include "ez/MediaParserStream.h"

#include "support/Catchers.h"
#include "support/Record.h"
#include "support/TemporaryFolder.h"
#include "support/WorkingDirectory.h"

#include "ezPlatform/config/PropertyList.h"
#include "ezPlatform/containers/PtrList.h"
#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using Strings = std::vector<std::string>;

constexpr const char* kFileName = "mediaCTRLMediaTypes.ini";

/// A file without content: what counts here is what it is called.
class NamedStream : public ezMediaParserStream {
public:
    explicit NamedStream(const std::string& aPath, std::string aMimeType = "", std::uint64_t aSize = 0)
        : mMimeType(std::move(aMimeType)) {
        SetFullPath(aPath.c_str());
        const std::size_t dot = aPath.rfind('.');
        SetExtension(dot == std::string::npos ? "" : aPath.substr(dot + 1).c_str());
        mMediaSize = aSize;
    }

    void CopyInfo(ezMediaInfo* anInfo) override {
        ezMediaParserStream::CopyInfo(anInfo);
        if (anInfo != nullptr && !mMimeType.empty()) {
            anInfo->Set("mt", mMimeType.c_str(), false); // as a stream that a server answered for knows it
        }
    }

protected:
    bool MediaSeek(const ezuint64& /*anOffset*/, bool /*afSeekImmediate*/) override { return true; }

private:
    std::string mMimeType;
};

using Fill = std::function<void(ezMediaInfo&)>;

/// Answers with a record that it is told to fill, or not at all, and notes both questions in a journal.
class TellingParser : public ezMediaParser {
public:
    TellingParser(const char* aType, Strings& aJournal, Fill aFill, bool afAdjusts)
        : ezMediaParser(aType, nullptr, false),
          mJournal(aJournal),
          mFill(std::move(aFill)),
          mfAdjusts(afAdjusts) {}

    ezMediaInfo* Parse(ezMediaParserStream& /*aStream*/) override {
        mJournal.push_back(std::string("parse ") + mType.c_str());
        if (!mFill) {
            return nullptr;
        }
        ezMediaInfo* info = new ezMediaInfo;
        mFill(*info);
        return info;
    }

    bool AdjustDLNAInfo(ezMediaInfo* anInfo) override {
        mJournal.push_back(std::string("adjust ") + mType.c_str());
        if (mfAdjusts) {
            anInfo->Set("dl", ("by " + std::string(mType.c_str())).c_str(), true);
        }
        return mfAdjusts;
    }

private:
    Strings& mJournal;
    Fill mFill;
    bool mfAdjusts;
};

/// Notes the types that it is asked for.
class NotingManager : public ezMediaParserManager {
public:
    using ezMediaParserManager::ezMediaParserManager;

    ezMediaInfo* ParseFromType(const ezCString& aType, ezMediaParserStream& aStream) override {
        mTypes.emplace_back(aType.c_str());
        return ezMediaParserManager::ParseFromType(aType, aStream);
    }

    Strings mTypes;
};

/// A server with a media types file of its own.
class Server {
public:
    explicit Server(const std::string& aTypesFile, int aParseOptions = kParseOption_Default,
                    uint32 aCTTContext = 0) {
        mFolder.Write(kFileName, aTypesFile);
        mEnvironment.Set(kProperty_ReadOnlyConfigPath, mFolder.GetPath())
            .Set(kProperty_ReadWriteConfigPath, mFolder.GetPath())
            .SetCTTContext(aCTTContext);
        mManager = std::make_unique<NotingManager>(mEnvironment.Get());
        mManager->AddStandardParsers(aParseOptions);
    }

    /// Adds a parser that answers for any media.
    Server& Knows(
        const char* aType, Fill aFill = [](ezMediaInfo&) {}) {
        mManager->Add(new TellingParser(aType, mJournal, std::move(aFill), false));
        return *this;
    }
    /// Adds a parser that answers for none.
    Server& Declines(const char* aType) {
        mManager->Add(new TellingParser(aType, mJournal, Fill(), false));
        return *this;
    }
    /// Adds a parser that adjusts any record.
    Server& Adjusts(const char* aType) {
        mManager->Add(new TellingParser(aType, mJournal, Fill(), true));
        return *this;
    }

    NotingManager& Manager() { return *mManager; }
    ezMimeTypesDotIniParser& Parser() { return *mManager->GetMimeTypesDotIniParser(); }
    ezEnvironment& Environment() { return mEnvironment; }
    const Strings& Journal() const { return mJournal; }

    /// What the media types ini parser makes of a file, as a dump.
    std::string Parse(const std::string& aPath, const std::string& aMimeType = "", std::uint64_t aSize = 0) {
        NamedStream stream(aPath, aMimeType, aSize);
        return DumpRecord(Record(Parser().Parse(stream)).get());
    }

    /// The types that a parse of a file asks for, in order.
    Strings Types(const std::string& aPath, const std::string& aMimeType = "") {
        mManager->mTypes.clear();
        Parse(aPath, aMimeType);
        return mManager->mTypes;
    }

private:
    TemporaryFolder mFolder;
    ezEnvironment mEnvironment;
    Strings mJournal;
    std::unique_ptr<NotingManager> mManager;
};

/// A line "key=number" for each rate that completion always writes, where nothing is known.
constexpr const char* kNoRates = "br=0\nea=0\neb=0\nev=0\nma=0\nmb=0\nmv=0\n";

Fill Texts(std::vector<std::pair<const char*, const char*>> aTexts) {
    return [texts = std::move(aTexts)](ezMediaInfo& anInfo) {
        for (const auto& text : texts) {
            anInfo.Set(text.first, text.second, true);
        }
    };
}

Fill Numbers(std::vector<std::pair<const char*, uint32>> aNumbers) {
    return [numbers = std::move(aNumbers)](ezMediaInfo& anInfo) {
        for (const auto& number : numbers) {
            anInfo.Set(number.first, number.second, true);
        }
    };
}

/// The lines of a dump that begin with one of these keys.
std::string Lines(const std::string& aDump, const Strings& aKeys) {
    std::string lines;
    std::size_t at = 0;
    while (at < aDump.size()) {
        const std::size_t end = aDump.find('\n', at);
        const std::string line = aDump.substr(at, end + 1 - at);
        for (const std::string& key : aKeys) {
            if (line.compare(0, key.size() + 1, key + "=") == 0) {
                lines += line;
            }
        }
        at = end + 1;
    }
    return lines;
}

Strings Of(const ezStringList& aList) {
    Strings strings;
    for (std::size_t i = 0; i < aList.GetCount(); ++i) {
        strings.emplace_back(aList.GetAt(i).c_str());
    }
    return strings;
}

} // namespace

// Which entries are tried, and in which order.

namespace {

/// Entries by extension and by MIME type that do not meet, and an excluded one.
constexpr const char* kTable = "[MimeTypesExcluded]\n"
                               "text=txt@text/plain@item\n"
                               "[MimeTypes]\n"
                               "byext=mpg@x/other@item.videoItem\n"
                               "bymime=zzz@video/mpeg@item.videoItem\n"
                               "bymime2=yyy@video/mpeg@item.videoItem\n"
                               "byext2=mpg@x/other2@item.videoItem\n";

const Strings kAll = {"text", "byext", "bymime", "bymime2", "byext2"};
const Strings kByMime = {"bymime", "bymime2"};
const Strings kByExtension = {"byext", "byext2"};

Strings operator+(Strings aLeft, const Strings& aRight) {
    aLeft.insert(aLeft.end(), aRight.begin(), aRight.end());
    return aLeft;
}

} // namespace

TEST(MimeTypesDotIniParser, TriesTheEntriesOfOnePassAfterTheOther) {
    // Every mix of options, streams and answers: RequestPageTest, by the architecture page. These stay as
    // they are.
    struct Case {
        int mOptions;
        const char* mPath;
        const char* mMimeType;
        const char* mKnown; ///< the type that answers; empty for none
        Strings mTypes;
    };
    const Case cases[] = {
        {0, "/a.mpg", "video/mpeg", "", kByMime + kByExtension},
        {0, "/a.mpg", "video/mpeg", "bymime2", kByMime},
        {0, "/a.mpg", "", "", kByExtension},
        {0, "/a.MPG", "", "", kByExtension},
        {0, "/a", "video/mpeg", "", kByMime},
        {0, "/a", "VIDEO/MPEG;q=1", "", kByMime},
        {0, "/a.mpg", "x/unknown", "", kByExtension},
        {0, "/a.unknown", "x/unknown", "", {}},
        {0, "/a", "", "", {}},
        {1, "/a", "", "", kAll},
        {1, "/a", "video/mpeg", "", kByMime + kAll},
        {1, "/a", "video/mpeg", "bymime", {"bymime"}},
        {1, "/a.mpg", "video/mpeg", "", kByMime + kByExtension},
        {1, "/a.unknown", "", "", {}},
        {2, "/a.mpg", "video/mpeg", "", kByMime + kAll + kByExtension},
        {2, "/a.mpg", "x/unknown", "", kAll + kByExtension},
        {2, "/a.mpg", "", "", kAll + kByExtension},
        {2, "/a.mpg", "", "bymime2", {"text", "byext", "bymime", "bymime2"}},
        {2, "/a.mpg", "video/mpeg", "bymime", {"bymime"}},
        {2, "/a", "", "", kAll},
        {3, "/a", "", "", kAll},
        {3, "/a", "video/mpeg", "", kByMime + kAll},
        {3, "/a.mpg", "video/mpeg", "", kByMime + kAll + kByExtension},
        {4, "/a.mpg", "video/mpeg", "", kAll + kByExtension},
        {4, "/a.mpg", "video/mpeg", "bymime", {"text", "byext", "bymime"}},
        {4, "/a", "video/mpeg", "", kAll},
        {4, "/a.unknown", "", "", kAll},
        {7, "/a", "", "", kAll},
        {8, "/a.mpg", "video/mpeg", "", kByMime + kByExtension},
        {8, "/a", "", "", {}},
        {15, "/a.mpg", "", "", kAll + kByExtension},
    };
    for (const Case& one : cases) {
        Server server(kTable, one.mOptions);
        if (*one.mKnown != '\0') {
            server.Knows(one.mKnown);
        }
        EXPECT_EQ(server.Types(one.mPath, one.mMimeType), one.mTypes)
            << one.mOptions << " " << one.mPath << " " << one.mMimeType << " " << one.mKnown;
    }
}

TEST(MimeTypesDotIniParser, ExtensionIsTheOneThatTheStreamTells) {
    class Disguised : public NamedStream {
    public:
        using NamedStream::NamedStream;
        void CopyInfo(ezMediaInfo* anInfo) override { anInfo->Set("fe", "mpg", true); }
    };
    Server server(kTable);
    Disguised stream("/a.zzz");
    const Record record(server.Parser().Parse(stream));
    EXPECT_EQ(server.Manager().mTypes, kByExtension);
}

TEST(MimeTypesDotIniParser, TellsWhetherParsersMayWalkAWholeFile) {
    for (int options = 0; options < 32; ++options) {
        Server server("", options);
        EXPECT_EQ(server.Parser().IsParseFullFileIfVBR(), (options & 8) != 0) << options;
    }
}

TEST(MimeTypesDotIniParser, TriesTheTypesOfAnEntryInOrderUntilOneAnswers) {
    Server server("[MimeTypes]\nfirst=e@x/y@item@second,third\nnext=e@x/y@item\n");
    EXPECT_EQ(server.Types("/a.e"), (Strings{"first", "second", "third", "next"}));
    server.Declines("first").Knows("second").Knows("third").Knows("next");
    EXPECT_EQ(server.Types("/a.e"), (Strings{"first", "second"}));
    EXPECT_EQ(server.Journal(), (Strings{"parse first", "parse second"}));
}

TEST(MimeTypesDotIniParser, GoesOnToTheNextEntryUntilOneAnswers) {
    Server server("[MimeTypes]\na=e@x/a@item.a\nb=e@x/b@item.b\nc=e@x/c@item.c\n");
    server.Declines("a").Knows("b").Knows("c");
    EXPECT_EQ(Lines(server.Parse("/a.e"), {"mt", "cn"}), "cn=\"item.b\"\nmt=\"x/b\"\n");
    EXPECT_EQ(server.Manager().mTypes, (Strings{"a", "b"}));
}

TEST(MimeTypesDotIniParser, ParserThatSeveralPassesReachRunsOnce) {
    Server server(kTable, kParseOption_ParseWithAllParserIfFailed);
    server.Declines("byext").Declines("bymime");
    EXPECT_EQ(server.Types("/a.mpg", "video/mpeg"), kByMime + kAll + kByExtension);
    EXPECT_EQ(server.Journal(), (Strings{"parse bymime", "parse byext"}));
}

TEST(MimeTypesDotIniParser, EntryThatListsTheExtensionTwiceIsTriedTwice) {
    Server server("[MimeTypes]\na=e,E@x/y\n");
    EXPECT_EQ(server.Types("/a.e"), (Strings{"a", "a"}));
}

// A record of nothing but an entry.

TEST(MimeTypesDotIniParser, ExtensionAloneMakesARecordOfTheLastEntry) {
    Server server("[MimeTypes]\na=e@x/a@item.a\nb=b1,e,b2@x/b,x/b2@item.b,item.b2\nother=o@x/o@item.o\n");
    server.Declines("a").Declines("b");
    EXPECT_EQ(server.Parse("/a.e"), "cn=\"item.b\"\nfe=\"b1\"\nmt=\"x/b\"\n");
}

TEST(MimeTypesDotIniParser, RecordOfAnEntryHoldsMimeTypeClassAndExtensionOnly) {
    // No rates, no size, no path: the manager adds what the stream knows.
    Server server("[MimeTypes]\nmp3=mp3@audio/mpeg@item.audioItem\n");
    EXPECT_EQ(server.Parse("/song.mp3", "", 1000), "cn=\"item.audioItem\"\nfe=\"mp3\"\nmt=\"audio/mpeg\"\n");
}

TEST(MimeTypesDotIniParser, LastEntryWithoutMimeTypeOrClassMakesNoRecord) {
    Server noClass("[MimeTypes]\na=e@x/a@item.a\nb=e@x/b\n");
    EXPECT_EQ(noClass.Parse("/a.e"), "null\n");
    Server noMimeType("[MimeTypes]\na=e@x/a@item.a\nb=e\n");
    EXPECT_EQ(noMimeType.Parse("/a.e"), "null\n");
    Server onlyClass("[MimeTypes]\na=e@x/a@item.a\nb=e@,@item.b\n");
    EXPECT_EQ(onlyClass.Parse("/a.e"), "null\n");
}

TEST(MimeTypesDotIniParser, FirstEntryNeedNotSayAnythingForARecordOfTheLast) {
    Server server("[MimeTypes]\na=e\nb=e@x/b@item.b\n");
    EXPECT_EQ(server.Parse("/a.e"), "cn=\"item.b\"\nfe=\"e\"\nmt=\"x/b\"\n");
}

TEST(MimeTypesDotIniParser, OnlyTheExtensionMakesARecordOfAnEntry) {
    for (int options = 0; options < 8; ++options) {
        Server server("[MimeTypes]\na=e@x/a@item.a\n", options);
        EXPECT_EQ(server.Parse("/a", "x/a"), "null\n") << options;
        EXPECT_EQ(server.Parse("/a"), "null\n") << options;
        EXPECT_EQ(server.Parse("/a.unknown", "x/a"), "null\n") << options;
        EXPECT_EQ(server.Parse("/a.e"), "cn=\"item.a\"\nfe=\"e\"\nmt=\"x/a\"\n") << options;
    }
}

// Excluded entries.

TEST(MimeTypesDotIniParser, ExcludedEntryWithMimeTypeAndClassMakesARecordOfItself) {
    // Kept: the record of an entry is made before anybody asks whether the entry is excluded.
    Server server("[MimeTypesExcluded]\ntext=txt@text/plain@item.textItem\n");
    EXPECT_EQ(server.Parse("/a.txt"), "cn=\"item.textItem\"\nfe=\"txt\"\nmt=\"text/plain\"\n");
}

TEST(MimeTypesDotIniParser, ExcludedEntryWithoutAClassMakesNone) {
    Server server("[MimeTypesExcluded]\ntext=txt@text/plain\n");
    EXPECT_EQ(server.Parse("/a.txt"), "null\n");
}

TEST(MimeTypesDotIniParser, NormalEntryAfterAnExcludedOneMakesTheRecord) {
    Server server("[MimeTypesExcluded]\nx=e@x/excluded@item.x\n[MimeTypes]\nn=e@x/normal@item.n\n");
    EXPECT_EQ(server.Parse("/a.e"), "cn=\"item.n\"\nfe=\"e\"\nmt=\"x/normal\"\n");
}

TEST(MimeTypesDotIniParser, ResultOfAnExcludedEntryIsNoResultAndEndsTheSearch) {
    Server server("[MimeTypesExcluded]\nx=e@x/excluded@item.x\n[MimeTypes]\nn=e@x/normal@item.n\n");
    server.Knows("x").Knows("n");
    EXPECT_EQ(server.Parse("/a.e"), "null\n");
    EXPECT_EQ(server.Manager().mTypes, (Strings{"x"}));
    EXPECT_EQ(server.Journal(), (Strings{"parse x"}));
}

TEST(MimeTypesDotIniParser, ResultOfAnExcludedEntryLetsTheNextPassRun) {
    Server server("[MimeTypesExcluded]\nx=e@x/excluded@item.x\n[MimeTypes]\nn=f@x/normal@item.n\n",
                  kParseOption_ParseWithAllParserIfFailed);
    server.Knows("x").Declines("n");
    // By MIME type "x" answers in vain; among all entries it is not asked again, and "n" makes the record.
    EXPECT_EQ(server.Parse("/a.f", "x/excluded"), "cn=\"item.n\"\nfe=\"f\"\nmt=\"x/normal\"\n");
    EXPECT_EQ(server.Manager().mTypes, (Strings{"x", "x", "n", "n"}));
}

TEST(MimeTypesDotIniParser, NormalEntryMayWinByATypeThatAnExcludedOneNamesToo) {
    Server server("[MimeTypesExcluded]\nx=e@x/excluded@item.x@p\n[MimeTypes]\nn=f@x/normal@item.n@p\n");
    server.Knows("p");
    EXPECT_EQ(Lines(server.Parse("/a.f"), {"mt"}), "mt=\"x/normal\"\n");
}

// What a winning entry adds.

TEST(MimeTypesDotIniParser, WinnerIsCompletedWithRatesAndNames) {
    Server server("[MimeTypes]\nmp3=mp3,mpga@audio/mpeg,audio/mp3@item.audioItem,item.other\n");
    server.Knows("mp3", Numbers({{"ar", 128000}, {"vr", 0}, {"ta", 1}, {"vt", 0}}));
    EXPECT_EQ(server.Parse("/song.mp3"), "ar=128000\nbr=128000\ncn=\"item.audioItem\"\nea=128000\neb=128000\n"
                                         "ev=0\nfe=\"mp3\"\nma=128000\nmb=128000\nmt=\"audio/mpeg\"\nmv=0\n"
                                         "ta=1\nvr=0\nvt=0\n");
}

TEST(MimeTypesDotIniParser, WinnerThatKnowsNothingGetsZeroRates) {
    Server server("[MimeTypes]\na=e@x/y@item.i\n");
    server.Knows("a");
    EXPECT_EQ(server.Parse("/a.e"),
              "br=0\ncn=\"item.i\"\nea=0\neb=0\nev=0\nfe=\"e\"\nma=0\nmb=0\nmt=\"x/y\"\nmv=0\n");
}

TEST(MimeTypesDotIniParser, NamesThatTheParserGaveStay) {
    Server server("[MimeTypes]\na=e@x/y@item.i\n");
    server.Knows("a", Texts({{"mt", "x/own"}, {"cn", "item.own"}, {"fe", "own"}}));
    EXPECT_EQ(Lines(server.Parse("/a.e"), {"mt", "cn", "fe"}), "cn=\"item.own\"\nfe=\"own\"\nmt=\"x/own\"\n");
}

TEST(MimeTypesDotIniParser, EachNameIsFilledByItself) {
    Server server("[MimeTypes]\na=e@x/y@item.i\n");
    server.Knows("a", Texts({{"cn", "item.own"}}));
    EXPECT_EQ(Lines(server.Parse("/a.e"), {"mt", "cn", "fe"}), "cn=\"item.own\"\nfe=\"e\"\nmt=\"x/y\"\n");
    Server other("[MimeTypes]\na=e@x/y@item.i\n");
    other.Knows("a", Texts({{"fe", "own"}}));
    EXPECT_EQ(Lines(other.Parse("/a.e"), {"mt", "cn", "fe"}), "cn=\"item.i\"\nfe=\"own\"\nmt=\"x/y\"\n");
}

TEST(MimeTypesDotIniParser, ExtensionOfAWinnerIsTheFirstOfItsMimeType) {
    Server server("[MimeTypes]\nother=o1,o2@x/own@item.o\na=e1,e2@x/y@item.i\n");
    server.Knows("a", Texts({{"mt", "X/Own;p=1"}}));
    EXPECT_EQ(Lines(server.Parse("/a.e2"), {"mt", "cn", "fe"}),
              "cn=\"item.i\"\nfe=\"o1\"\nmt=\"X/Own;p=1\"\n");
}

TEST(MimeTypesDotIniParser, ExtensionOfAWinnerMayComeFromAnotherEntryOfItsMimeType) {
    Server server("[MimeTypes]\nfirst=f@x/y@item.f\na=e@x/y@item.i\n");
    server.Knows("a");
    EXPECT_EQ(Lines(server.Parse("/a.e"), {"fe"}), "fe=\"f\"\n");
}

TEST(MimeTypesDotIniParser, WinnerOfAnUnknownMimeTypeGetsNoExtension) {
    Server server("[MimeTypes]\na=e@x/y@item.i\n");
    server.Knows("a", Texts({{"mt", "x/unknown"}}));
    EXPECT_EQ(Lines(server.Parse("/a.e"), {"mt", "fe"}), "mt=\"x/unknown\"\n");
}

TEST(MimeTypesDotIniParser, WonSongOfASecondExtensionReadsAsTheFirst) {
    Server server("[MimeTypes]\nmp3=mp3,mpga@audio/mpeg@item.audioItem\n");
    server.Knows("mp3");
    EXPECT_EQ(Lines(server.Parse("/song.mpga"), {"fe"}), "fe=\"mp3\"\n");
}

TEST(MimeTypesDotIniParser, WonSongKeepsItsFirstExtensionWhenTheStreamIsCopied) {
    Server server("[MimeTypes]\nmp3=mp3,mpga@audio/mpeg@item.audioItem\n");
    server.Knows("mp3");
    NamedStream stream("/song.mpga", "", 7);
    EXPECT_EQ(Lines(DumpRecord(Record(server.Manager().Parse(stream)).get()), {"fe", "fs", "path"}),
              "fe=\"mp3\"\nfs=7\npath=\"/song.mpga\"\n");
    EXPECT_EQ(server.Manager().mTypes, (Strings{"*", "mp3"}));
}

TEST(MimeTypesDotIniParser, WinningEntryWithoutNamesLeavesTheKeysUnset) {
    Server server("[MimeTypes]\na=e\n");
    server.Knows("a");
    EXPECT_EQ(server.Parse("/a.e"), kNoRates);
    Server noClass("[MimeTypes]\na=e@x/y\n");
    noClass.Knows("a");
    EXPECT_EQ(Lines(noClass.Parse("/a.e"), {"cn", "fe", "mt"}), "fe=\"e\"\nmt=\"x/y\"\n");
}

TEST(MimeTypesDotIniParser, RecordWithoutAMimeTypeIsNoneForTheManager) {
    Server server("[MimeTypes]\na=e\n");
    server.Knows("a");
    NamedStream stream("/a.e");
    EXPECT_EQ(Record(server.Manager().Parse(stream)), nullptr);
}

TEST(MimeTypesDotIniParser, WinnerByMimeTypeIsCompletedToo) {
    Server server("[MimeTypes]\na=e@x/y,x/z@item.i\n");
    server.Knows("a", Numbers({{"ta", 1}, {"ar", 1000}}));
    EXPECT_EQ(Lines(server.Parse("/a", "x/z"), {"mt", "cn", "fe", "br"}),
              "br=1000\ncn=\"item.i\"\nfe=\"e\"\nmt=\"x/y\"\n");
}

TEST(MimeTypesDotIniParser, WinnerAmongAllEntriesIsCompletedToo) {
    Server server("[MimeTypes]\na=e@x/y@item.i\n", kParseOption_ParseWithAllParserEverytime);
    server.Knows("a", Numbers({{"ta", 1}, {"ar", 1000}}));
    EXPECT_EQ(Lines(server.Parse("/a.unknown"), {"mt", "cn", "fe", "br"}),
              "br=1000\ncn=\"item.i\"\nfe=\"e\"\nmt=\"x/y\"\n");
}

// Conformance tests.

namespace {

constexpr const char* kTestTable = "[MimeTypes]\nmpg=mpg,mpeg@video/mpeg@item.videoItem\n"
                                   "lpcm=pcm@audio/L16@item.audioItem\n";
constexpr const char* kTestFile = "/ctt/B-MP2PS_N-1.mpg";

/// A parser's own opinion, with every rate.
const Fill kOpinion = [](ezMediaInfo& anInfo) {
    Texts({{"mt", "video/own"}, {"cn", "item.own"}, {"dl", "DLNA.ORG_PN=OWN"}})(anInfo);
    Numbers({{"br", 11}, {"mb", 12}, {"eb", 13}, {"ar", 14}, {"ta", 1}})(anInfo);
};

const std::string kNamedRecord =
    std::string("br=0\ncn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=MPEG_PS_NTSC\"\n") +
    "ea=0\neb=0\nev=0\nfe=\"mpg\"\nma=0\nmb=0\nmt=\"video/mpeg\"\nmv=0\n";

} // namespace

TEST(MimeTypesDotIniParser, Context0TakesTestFilesForOrdinaryMedia) {
    Server server(kTestTable);
    EXPECT_EQ(server.Parse(kTestFile), "cn=\"item.videoItem\"\nfe=\"mpg\"\nmt=\"video/mpeg\"\n");
}

TEST(MimeTypesDotIniParser, Context1TakesTheNameWhereNoParserAnswers) {
    Server server(kTestTable, 0, 1);
    server.Declines("mpg");
    EXPECT_EQ(server.Parse(kTestFile), kNamedRecord);
}

TEST(MimeTypesDotIniParser, Context1LeavesTheAnswerOfAParserAlone) {
    Server server(kTestTable, 0, 1);
    server.Knows("mpg", kOpinion);
    EXPECT_EQ(server.Parse(kTestFile), "ar=14\nbr=11\ncn=\"item.own\"\ndl=\"DLNA.ORG_PN=OWN\"\nea=14\neb=13\n"
                                       "ev=0\nma=14\nmb=12\nmt=\"video/own\"\nmv=0\nta=1\n");
}

TEST(MimeTypesDotIniParser, Context1CompletesTheRatesOfANamedFile) {
    Server server(kTestTable, 0, 1);
    EXPECT_EQ(server.Parse("/ctt/B-LPCM-2.PCM", "", 176400),
              "ac=2\nar=44100\nbr=44100\nbs=16\nca=\"LPCM\"\ncn=\"item.audioItem\"\ndl=\"DLNA.ORG_PN=LPCM\"\n"
              "dm=1000\ndu=1\nea=44100\neb=44100\nev=0\nfe=\"pcm\"\nma=44100\nmb=44100\n"
              "mt=\"audio/L16;rate=44100;channels=2\"\nmv=0\nta=1\n");
}

TEST(MimeTypesDotIniParser, Context2TakesProfileAndMimeTypeFromTheName) {
    Server server(kTestTable, 0, 2);
    server.Knows("mpg", kOpinion);
    // The rates of the whole are 0 and no other is derived; what else the parser said stays.
    EXPECT_EQ(server.Parse(kTestFile), "ar=14\nbr=0\ncn=\"item.own\"\ndl=\"DLNA.ORG_PN=MPEG_PS_NTSC\"\neb=0\n"
                                       "fe=\"mpg\"\nmb=0\nmt=\"video/mpeg\"\nta=1\n");
}

TEST(MimeTypesDotIniParser, Context2TakesTheNameAloneWhereNoParserAnswers) {
    Server server(kTestTable, 0, 2);
    EXPECT_EQ(server.Parse(kTestFile), "br=0\ncn=\"item.videoItem\"\ndl=\"DLNA.ORG_PN=MPEG_PS_NTSC\"\neb=0\n"
                                       "fe=\"mpg\"\nmb=0\nmt=\"video/mpeg\"\n");
}

TEST(MimeTypesDotIniParser, Context2NullsTheRatesOfANamedLPCMFile) {
    Server server(kTestTable, 0, 2);
    EXPECT_EQ(
        server.Parse("/ctt/b-lpcm-3.pcm"),
        "ac=1\nar=48000\nbr=0\nbs=16\nca=\"LPCM\"\ncn=\"item.audioItem\"\ndl=\"DLNA.ORG_PN=LPCM\"\neb=0\n"
        "fe=\"pcm\"\nmb=0\nmt=\"audio/L16;rate=48000;channels=1\"\nta=1\n");
}

TEST(MimeTypesDotIniParser, Context2CompletesFilesWithoutATestName) {
    Server server(kTestTable, 0, 2);
    server.Knows("mpg", kOpinion);
    EXPECT_EQ(server.Parse("/home/own.mpg"),
              "ar=14\nbr=11\ncn=\"item.own\"\ndl=\"DLNA.ORG_PN=OWN\"\nea=14\neb=13\n"
              "ev=0\nma=14\nmb=12\nmt=\"video/own\"\nmv=0\nta=1\n");
}

TEST(MimeTypesDotIniParser, OtherContextsAreLikeContext1) {
    for (const uint32 context : {3U, 0xFFFFFFFFU}) {
        Server silent(kTestTable, 0, context);
        EXPECT_EQ(silent.Parse(kTestFile), kNamedRecord);
        Server server(kTestTable, 0, context);
        server.Knows("mpg", kOpinion);
        EXPECT_EQ(Lines(server.Parse(kTestFile), {"br", "dl", "mt"}),
                  "br=11\ndl=\"DLNA.ORG_PN=OWN\"\nmt=\"video/own\"\n");
    }
}

TEST(MimeTypesDotIniParser, TestFileWithoutATestNameMakesARecordOfItsEntry) {
    for (const uint32 context : {1U, 2U}) {
        Server server(kTestTable, 0, context);
        EXPECT_EQ(server.Parse("/home/own.mpg"), "cn=\"item.videoItem\"\nfe=\"mpg\"\nmt=\"video/mpeg\"\n");
    }
}

TEST(MimeTypesDotIniParser, TestNameOfAnUnknownExtensionIsNotLookedAt) {
    for (const uint32 context : {1U, 2U}) {
        Server server(kTestTable, 0, context);
        EXPECT_EQ(server.Parse("/ctt/B-AAC_A-1.adts"), "null\n");
    }
}

TEST(MimeTypesDotIniParser, TestNameWinsAtTheFirstEntryLookedAt) {
    Server server("[MimeTypes]\nmpg=mpg@x/1@item.1\nmore=mpg@x/2@item.2\n", 0, 1);
    server.Knows("more", kOpinion);
    EXPECT_EQ(Lines(server.Parse(kTestFile), {"cn", "mt"}), "cn=\"item.videoItem\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(server.Manager().mTypes, (Strings{"mpg"}));
}

TEST(MimeTypesDotIniParser, TestNameWinsByMimeTypeToo) {
    Server server(kTestTable, 0, 1);
    EXPECT_EQ(Lines(server.Parse("/ctt/B-MP2PS_N-1.mpg", "audio/L16"), {"dl", "mt"}),
              "dl=\"DLNA.ORG_PN=MPEG_PS_NTSC\"\nmt=\"video/mpeg\"\n");
    EXPECT_EQ(server.Manager().mTypes, (Strings{"lpcm"}));
}

TEST(MimeTypesDotIniParser, TestNameOfAnExcludedExtensionIsNoResult) {
    for (const uint32 context : {1U, 2U}) {
        Server server("[MimeTypesExcluded]\nmpg=mpg@video/mpeg@item.videoItem\n", 0, context);
        EXPECT_EQ(server.Parse(kTestFile), "null\n");
    }
}

TEST(MimeTypesDotIniParser, TestNameAmongAllEntriesMeetsTheExcludedOnesFirst) {
    // There the name wins for an excluded entry, so that only the extension leads to the result.
    Server server(std::string("[MimeTypesExcluded]\ntext=txt\n") + kTestTable,
                  kParseOption_ParseWithAllParserEverytime, 1);
    EXPECT_EQ(server.Parse(kTestFile), kNamedRecord);
    EXPECT_EQ(server.Manager().mTypes, (Strings{"text", "mpg"}));
}

TEST(MimeTypesDotIniParser, ContextIsAskedForAtEveryParse) {
    Server server(kTestTable);
    EXPECT_EQ(Lines(server.Parse(kTestFile), {"dl"}), "");
    server.Environment().SetCTTContext(1);
    EXPECT_EQ(Lines(server.Parse(kTestFile), {"dl"}), "dl=\"DLNA.ORG_PN=MPEG_PS_NTSC\"\n");
    server.Environment().SetCTTContext(0);
    EXPECT_EQ(Lines(server.Parse(kTestFile), {"dl"}), "");
}

TEST(MimeTypesDotIniParser, DeclaresTheTestFilesDuringATestOnly) {
    Server server(kTestTable);
    EXPECT_EQ(server.Parser().GetDLNAInfo(), "");
    for (const uint32 context : {1U, 2U, 7U}) {
        server.Environment().SetCTTContext(context);
        const ezCString text = server.Parser().GetDLNAInfo();
        EXPECT_TRUE(text.StartsWith("video/mp4:DLNA.ORG_PN=AVC_MP4_BL_CIF15_AAC_520,")) << context;
        EXPECT_EQ(text, DLNAFileParser(server.Environment().Get()).GetDLNAInfo()) << context;
    }
}

// The parser itself is of the type "*".

TEST(MimeTypesDotIniParser, EntryOfTheTypeOfAllDoesNotRunTheParserInsideItself) {
    Server server("[MimeTypes]\n*=e@x/y@item.i@more\nnext=e@x/z@item.z@*\n");
    server.Knows("*", Texts({{"mt", "x/star"}}));
    NamedStream stream("/a.e");
    const Record record(server.Manager().Parse(stream));
    EXPECT_EQ(server.Manager().mTypes, (Strings{"*", "*"}));
    EXPECT_EQ(server.Journal(), (Strings{"parse *"})); // another parser of that type is within reach
    EXPECT_EQ(Lines(DumpRecord(record.get()), {"mt", "cn"}), "cn=\"item.i\"\nmt=\"x/star\"\n");
}

TEST(MimeTypesDotIniParser, EntryOfTheTypeOfAllMakesARecordOfItself) {
    Server server("[MimeTypes]\n*=e@x/y@item.i\n");
    NamedStream stream("/a.e");
    const Record record(server.Manager().Parse(stream));
    EXPECT_EQ(server.Manager().mTypes, (Strings{"*", "*"}));
    EXPECT_EQ(DumpRecord(record.get()), "cn=\"item.i\"\nfe=\"e\"\nmt=\"x/y\"\npath=\"/a.e\"\n");
}

TEST(MimeTypesDotIniParser, EntryOfTheTypeOfAllIsAnAssertionWhenARecordIsAdjusted) {
    Server server("[MimeTypes]\n*=e@x/y@item.i\n");
    server.Adjusts("*");
    LogCatcher log(2);
    AssertCatcher assertions;
    ezMediaInfo info;
    info.Set("mt", "x/y", true);
    EXPECT_FALSE(server.Manager().AdjustDLNAInfo(&info));
#ifndef EZ_NO_ASSERTIONS
    EXPECT_EQ(assertions.Failures(), (Strings{"aType.Compare(\"*\") != 0 @ MediaParserManager"}));
#endif
    EXPECT_EQ(server.Journal(), Strings{});
    EXPECT_EQ(DumpRecord(&info), "mt=\"x/y\"\n");
}

TEST(MimeTypesDotIniParser, TypesAfterTheTypeOfAllStillAdjust) {
    Server server("[MimeTypes]\n*=e@x/y@item.i@after\n");
    server.Adjusts("after");
    LogCatcher log(2);
    AssertCatcher assertions;
    ezMediaInfo info;
    info.Set("mt", "x/y", true);
    EXPECT_TRUE(server.Manager().AdjustDLNAInfo(&info));
    EXPECT_EQ(server.Journal(), (Strings{"adjust after"}));
}

// Adjusting a record.

namespace {

/// Whether a record of these texts is adjusted.
bool Adjust(Server& aServer, std::vector<std::pair<const char*, const char*>> aTexts) {
    ezMediaInfo info;
    Texts(std::move(aTexts))(info);
    const ezCString before = info.GetOtherProperties();
    const bool fAdjusted = aServer.Manager().AdjustDLNAInfo(&info);
    EXPECT_EQ(info.GetOtherProperties() != before, fAdjusted);
    return fAdjusted;
}

} // namespace

TEST(MimeTypesDotIniParser, RecordIsAdjustedByTheTypesOfItsMimeType) {
    Server server("[MimeTypes]\na=e@x/y@item.i@b,c\nother=e@x/z\n");
    server.Declines("a").Adjusts("b").Adjusts("c").Adjusts("other");
    ezMediaInfo info;
    info.Set("mt", "X/Y;p=1", true);
    EXPECT_TRUE(server.Parser().AdjustDLNAInfo(&info));
    EXPECT_EQ(DumpRecord(&info), "dl=\"by b\"\nmt=\"X/Y;p=1\"\n");
    EXPECT_EQ(server.Journal(), (Strings{"adjust a", "adjust b"}));
}

TEST(MimeTypesDotIniParser, EntriesAdjustInOrderUntilOneDoes) {
    Server server("[MimeTypes]\na=e@x/y\nb=f@x/y\nc=g@x/y\n");
    server.Declines("a").Adjusts("b").Adjusts("c");
    EXPECT_TRUE(Adjust(server, {{"mt", "x/y"}}));
    EXPECT_EQ(server.Journal(), (Strings{"adjust a", "adjust b"}));
}

TEST(MimeTypesDotIniParser, RecordThatNobodyAdjustsIsNotAdjusted) {
    Server server("[MimeTypes]\na=e@x/y@item.i@b\nc=f@x/y\n");
    EXPECT_FALSE(Adjust(server, {{"mt", "x/y"}}));
    server.Declines("a").Declines("b").Declines("c");
    EXPECT_FALSE(Adjust(server, {{"mt", "x/y"}}));
    EXPECT_EQ(server.Journal(), (Strings{"adjust a", "adjust b", "adjust c"}));
}

TEST(MimeTypesDotIniParser, ExcludedEntriesAdjustToo) {
    Server server("[MimeTypesExcluded]\nx=e@x/y\n[MimeTypes]\na=e@x/y\n");
    server.Adjusts("x").Adjusts("a");
    EXPECT_TRUE(Adjust(server, {{"mt", "x/y"}}));
    EXPECT_EQ(server.Journal(), (Strings{"adjust x"}));
}

TEST(MimeTypesDotIniParser, RecordOfAKnownExtensionAloneIsNotAdjusted) {
    // Kept: of extensions only the empty one is asked for, and no entry lists it.
    Server server("[MimeTypes]\na=e@x/y\n");
    server.Adjusts("a");
    EXPECT_FALSE(Adjust(server, {{"fe", "e"}}));
    EXPECT_FALSE(Adjust(server, {{"fe", "e"}, {"mt", "x/unknown"}}));
    EXPECT_FALSE(Adjust(server, {{"mt", "x/unknown"}}));
    EXPECT_FALSE(Adjust(server, {}));
    EXPECT_EQ(server.Journal(), Strings{});
    EXPECT_TRUE(Adjust(server, {{"fe", "unknown"}, {"mt", "x/y"}}));
}

TEST(MimeTypesDotIniParser, NoRecordIsNotAdjusted) {
    Server server("[MimeTypes]\na=e@x/y\n");
    server.Adjusts("a");
    EXPECT_FALSE(server.Parser().AdjustDLNAInfo(nullptr));
    EXPECT_FALSE(server.Manager().AdjustDLNAInfo(nullptr));
    EXPECT_EQ(server.Journal(), Strings{});
}

// The steps by themselves.

namespace {

class OpenedParser : public ezMimeTypesDotIniParser {
public:
    using ezMimeTypesDotIniParser::AdjustDLNAInfoFromEntries;
    using ezMimeTypesDotIniParser::AdjustDLNAInfoFromTypes;
    using ezMimeTypesDotIniParser::ezMimeTypesDotIniParser;
    using ezMimeTypesDotIniParser::ParseFromEntries;
    using ezMimeTypesDotIniParser::ParseFromTypes;
};

class PtrList {
public:
    PtrList() = default;
    ~PtrList() { ezPtrList_Delete(mList); }
    PtrList(const PtrList&) = delete;
    PtrList& operator=(const PtrList&) = delete;
    operator ezPtrList*() { return mList; }
    void Add(ExtensionMimeTypeMatcherEntry& anEntry) { ezPtrList_Append(mList, &anEntry); }

private:
    ezPtrList* mList = ezPtrList_New();
};

} // namespace

TEST(MimeTypesDotIniParser, NoListAndAnEmptyListLeadToNothing) {
    Server server("");
    OpenedParser* parser = new OpenedParser("", "", "none.ini", 0);
    server.Manager().Add(parser);
    NamedStream stream("/ctt/B-LPCM-2.pcm");
    ezMediaInfo info;
    PtrList empty;
    for (const uint32 context : {0U, 1U, 2U}) {
        server.Environment().SetCTTContext(context);
        for (ezPtrList* list : {static_cast<ezPtrList*>(nullptr), static_cast<ezPtrList*>(empty)}) {
            EXPECT_EQ(parser->ParseFromTypes(list, stream), nullptr);
            EXPECT_EQ(parser->ParseFromEntries(list, stream, false), nullptr);
            EXPECT_EQ(parser->ParseFromEntries(list, stream, true), nullptr);
            EXPECT_FALSE(parser->AdjustDLNAInfoFromTypes(list, &info));
            EXPECT_FALSE(parser->AdjustDLNAInfoFromEntries(list, &info));
        }
    }
}

TEST(MimeTypesDotIniParser, RecordOfAnEntryIsMadeOnlyWhereItIsForced) {
    Server server("");
    OpenedParser* parser = new OpenedParser("", "", "none.ini", 0);
    server.Manager().Add(parser);
    NamedStream stream("/a.e");
    ExtensionMimeTypeMatcherEntry entry("a", "e@x/y@item.i");
    ExtensionMimeTypeMatcherEntry withoutExtension("b", ",@x/z@item.z");
    PtrList list;
    list.Add(entry);
    EXPECT_EQ(Record(parser->ParseFromEntries(list, stream, false)), nullptr);
    EXPECT_EQ(DumpRecord(Record(parser->ParseFromEntries(list, stream, true)).get()),
              "cn=\"item.i\"\nfe=\"e\"\nmt=\"x/y\"\n");
    list.Add(withoutExtension);
    EXPECT_EQ(DumpRecord(Record(parser->ParseFromEntries(list, stream, true)).get()),
              "cn=\"item.z\"\nmt=\"x/z\"\n");
}

// Where the table comes from.

namespace {

/// The folders that a parser of an environment takes, as its table tells them: "(read only, read-write,
/// file)".
std::string Folders(ezPropertyList* anEnvironment) {
    LogCatcher log(4);
    const ezMimeTypesDotIniParser parser(anEnvironment, 0);
    std::string text = log.Texts().at(0);
    const std::string head = "ExtensionMimeTypeMatcher::ExtensionMimeTypeMatcher";
    EXPECT_EQ(text.compare(0, head.size(), head), 0);
    return text.substr(head.size(), text.size() - head.size() - 1);
}

std::string FoldersOf(const char* aReadOnly, const char* aReadWrite) {
    ezPropertyList* environment = ezPropertyList_New();
    ezPropertyList_Set_charPtr(environment, "ReadOnlyConfigPath", aReadOnly);
    ezPropertyList_Set_charPtr(environment, "ReadWriteConfigPath", aReadWrite);
    std::string folders = Folders(environment);
    ezPropertyList_Delete(environment);
    return folders;
}

} // namespace

TEST(MimeTypesDotIniParser, FoldersComeFromTheEnvironment) {
    TemporaryFolder folder;
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=wrong\nReadWrite=wrong\n");
    const WorkingDirectory inside(folder.GetPath());
    EXPECT_EQ(FoldersOf("ro", "rw"), "(ro, rw, mediaCTRLMediaTypes.ini)");
}

TEST(MimeTypesDotIniParser, FolderMissingInTheEnvironmentIsTheWorkingDirectory) {
    TemporaryFolder folder;
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=wrong\nReadWrite=wrong\n");
    const WorkingDirectory inside(folder.GetPath());
    EXPECT_EQ(FoldersOf("ro", nullptr), "(ro, ., mediaCTRLMediaTypes.ini)");
    EXPECT_EQ(FoldersOf("ro", ""), "(ro, ., mediaCTRLMediaTypes.ini)");
    EXPECT_EQ(FoldersOf(nullptr, "rw"), "(., rw, mediaCTRLMediaTypes.ini)");
    EXPECT_EQ(FoldersOf("", "rw"), "(., rw, mediaCTRLMediaTypes.ini)");
}

TEST(MimeTypesDotIniParser, FoldersMissingInTheEnvironmentComeFromTheConfigPathFile) {
    TemporaryFolder folder;
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=file ro\nReadWrite=file rw\n");
    const WorkingDirectory inside(folder.GetPath());
    EXPECT_EQ(FoldersOf(nullptr, nullptr), "(file ro, file rw, mediaCTRLMediaTypes.ini)");
    EXPECT_EQ(FoldersOf("", ""), "(file ro, file rw, mediaCTRLMediaTypes.ini)");
    EXPECT_EQ(Folders(nullptr), "(file ro, file rw, mediaCTRLMediaTypes.ini)");
}

TEST(MimeTypesDotIniParser, FolderMissingInTheConfigPathFileIsTheWorkingDirectory) {
    TemporaryFolder folder;
    const WorkingDirectory inside(folder.GetPath());
    EXPECT_EQ(Folders(nullptr), "(., ., mediaCTRLMediaTypes.ini)");
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=file ro\n");
    EXPECT_EQ(Folders(nullptr), "(file ro, ., mediaCTRLMediaTypes.ini)");
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadWrite=file rw\nReadOnly=\n");
    EXPECT_EQ(Folders(nullptr), "(., file rw, mediaCTRLMediaTypes.ini)");
    folder.Write("ConfigPath.ini", "[Other]\nReadWrite=wrong\n");
    EXPECT_EQ(FoldersOf("", nullptr), "(., ., mediaCTRLMediaTypes.ini)");
}

TEST(MimeTypesDotIniParser, TableOfTheEnvironmentIsLoadedAtOnce) {
    TemporaryFolder folder;
    folder.Write(kFileName, "[MimeTypes]\na=e@x/y\n");
    const WorkingDirectory inside(folder.GetPath());
    ezMimeTypesDotIniParser parser(nullptr, 0);
    EXPECT_EQ(parser.FileExtensionToMimeType("e"), "x/y");
}

TEST(MimeTypesDotIniParser, TableOfGivenFoldersIsLoadedAtOnce) {
    TemporaryFolder readOnly;
    TemporaryFolder readWrite;
    readOnly.Write(kFileName, "[MimeTypes]\na=a@x/ro\nb=b@x/ro\n");
    readWrite.Write(kFileName, "[MimeTypes]\nb=b@x/rw\n");
    readWrite.Write("own.ini", "[MimeTypes]\nc=c@x/own\n");
    ezMimeTypesDotIniParser usual(readOnly.GetPath().c_str(), readWrite.GetPath().c_str(), "", 0);
    EXPECT_EQ(usual.FileExtensionToMimeType("a"), "x/ro");
    EXPECT_EQ(usual.FileExtensionToMimeType("b"), "x/rw");
    ezMimeTypesDotIniParser own(readOnly.GetPath().c_str(), readWrite.GetPath().c_str(), "own.ini", 0);
    EXPECT_EQ(own.FileExtensionToMimeType("a"), "application/octet-stream");
    EXPECT_EQ(own.FileExtensionToMimeType("c"), "x/own");
}

TEST(MimeTypesDotIniParser, GivenFoldersAreTakenAsTheyAre) {
    TemporaryFolder folder;
    folder.Write("ConfigPath.ini", "[ConfigPath]\nReadOnly=wrong\nReadWrite=wrong\n");
    const WorkingDirectory inside(folder.GetPath());
    LogCatcher log(4);
    const ezMimeTypesDotIniParser parser("", "", "", 0);
    EXPECT_EQ(log.Texts(),
              (Strings{"ExtensionMimeTypeMatcher::ExtensionMimeTypeMatcher(, , mediaCTRLMediaTypes.ini)\n"}));
}

TEST(MimeTypesDotIniParser, IsOfTheTypeOfAllAndExtractsNoCoverArt) {
    const ezMimeTypesDotIniParser given("", "", "none.ini", 0);
    EXPECT_EQ(given.GetType(), "*");
    EXPECT_FALSE(given.CanExtractCoverArt());
    Server server("");
    EXPECT_EQ(server.Parser().GetType(), "*");
    EXPECT_FALSE(server.Parser().CanExtractCoverArt());
}

TEST(MimeTypesDotIniParser, GivenFoldersComeWithoutAnEnvironment) {
    Server server(kTestTable, 0, 1);
    ezMimeTypesDotIniParser given("", "", "none.ini", kParseOption_ParseFullFileIfVBR);
    EXPECT_EQ(given.GetDLNAInfo(), "");
    EXPECT_TRUE(given.IsParseFullFileIfVBR());
    ezMimeTypesDotIniParser environment(server.Environment().Get(), 0);
    EXPECT_NE(environment.GetDLNAInfo(), "");
}

// Questions to the table.

TEST(MimeTypesDotIniParser, PassesQuestionsToTheTable) {
    TemporaryFolder folder;
    folder.Write(kFileName, "[MimeTypes]\na=e1,e2@x/y,x/z\nb=f@x/y\n[MimeTypesExcluded]\nx=g,e2@x/x\n");
    ezMimeTypesDotIniParser parser(folder.GetPath().c_str(), folder.GetPath().c_str(), "", 0);
    EXPECT_EQ(parser.FileExtensionToMimeType("E1"), "x/y");
    EXPECT_EQ(parser.FileExtensionToMimeType("e2"), "x/x");
    EXPECT_EQ(parser.FileExtensionToMimeType("unknown"), "application/octet-stream");
    EXPECT_EQ(parser.MimeTypeToFileExtension("X/Z;p=1"), "e1");
    EXPECT_EQ(parser.MimeTypeToFileExtension("x/unknown"), "");
    EXPECT_EQ(Of(parser.MimeTypeToFileExtensionList("x/y")), (Strings{"e1", "f"}));
    EXPECT_EQ(parser.MimeTypeToFileExtensionList("x/y").GetSeparator(), '\\');
    EXPECT_EQ(Of(parser.ExtensionToExtensionList("e2")), (Strings{"e1", "e2"}));
    EXPECT_EQ(Of(parser.ExtensionToExtensionList("E2")), Strings{});
    EXPECT_EQ(Of(parser.ExtensionToExtensionList("g")), Strings{});
    EXPECT_EQ(parser.ExtensionToExtensionList("e2").GetSeparator(), '\\');
}

// What is missing.

TEST(MimeTypesDotIniParser, MissingFileRecognisesNothing) {
    TemporaryFolder folder;
    for (int options = 0; options < 16; ++options) {
        for (const uint32 context : {0U, 1U, 2U}) {
            Server server("", options, context);
            NamedStream stream(kTestFile, "video/mpeg");
            EXPECT_EQ(Record(server.Manager().Parse(stream)), nullptr);
            EXPECT_EQ(server.Manager().mTypes, (Strings{"*"}));
            EXPECT_FALSE(Adjust(server, {{"mt", "video/mpeg"}, {"fe", "mpg"}}));
        }
    }
    ezMimeTypesDotIniParser parser(folder.GetPath().c_str(), folder.GetPath().c_str(), "missing.ini", 7);
    NamedStream stream(kTestFile, "video/mpeg");
    EXPECT_EQ(parser.Parse(stream), nullptr);
    EXPECT_EQ(parser.FileExtensionToMimeType("mpg"), "application/octet-stream");
}

TEST(MimeTypesDotIniParser, ParserWithoutAManagerTriesAndAdjustsNothing) {
    TemporaryFolder folder;
    folder.Write(kFileName, "[MimeTypes]\na=e@x/y@item.i\n");
    for (int options = 0; options < 8; ++options) {
        ezMimeTypesDotIniParser parser(folder.GetPath().c_str(), folder.GetPath().c_str(), "", options);
        NamedStream stream("/a", "x/y");
        EXPECT_EQ(DumpRecord(Record(parser.Parse(stream)).get()), "null\n") << options;
        ezMediaInfo info;
        info.Set("mt", "x/y", true);
        EXPECT_FALSE(parser.AdjustDLNAInfo(&info)) << options;
        EXPECT_FALSE(parser.AdjustDLNAInfo(nullptr)) << options;
    }
}

TEST(MimeTypesDotIniParser, ParserWithoutAManagerAsksNoParserAndAnswersFromTheTable) {
    TemporaryFolder folder;
    folder.Write(kFileName, "[MimeTypes]\na=e@x/y@item.i\n");
    ezMimeTypesDotIniParser parser(folder.GetPath().c_str(), folder.GetPath().c_str(), "", 0);
    NamedStream stream("/a.e");
    EXPECT_EQ(DumpRecord(Record(parser.Parse(stream)).get()), "cn=\"item.i\"\nfe=\"e\"\nmt=\"x/y\"\n");
}

TEST(MimeTypesDotIniParser, LogsNothingOfItsOwn) {
    Server server(kTestTable);
    server.Knows("mpg");
    LogCatcher log;
    server.Parse("/a.unknown", "x/unknown");
    server.Parse("/a");
    EXPECT_EQ(log.Texts(), Strings{});
    server.Parse("/a.mpg");
    EXPECT_EQ(log.Texts(),
              (Strings{"ezMediaParserManager: Parsing type: mpg\n", "ezMediaParserManager: Winner: mpg\n"}));
}
