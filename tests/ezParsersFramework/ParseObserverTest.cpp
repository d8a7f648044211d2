#include "ez/ParseObserver.h"

#include "ez/MimeTypesDotIniParser.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/MapperFolder.h"
#include "support/Record.h"
#include "support/RecordingObserver.h"
#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

constexpr const char* kTable = "[MimeTypesExcluded]\n"
                               "secret=sec@x/secret@item.secret\n"
                               "hidden=pic@image/jpeg@item.imageItem.hidden\n"
                               "[MimeTypes]\n"
                               "song=mp3,mpga@audio/mpeg@item.audioItem\n"
                               "film=mpg@video/mpeg@item.videoItem@extra,song\n"
                               "photo=pic@image/jpeg@item.imageItem\n"
                               "bare=bar\n";

/// A record of these keys.
ezMediaInfo* NewInfo(const std::vector<std::pair<const char*, const char*>>& aTexts) {
    auto* const info = new ezMediaInfo;
    for (const auto& [key, text] : aTexts) {
        info->Set(key, text, true);
    }
    return info;
}

/// A file of some bytes; the stream is closed, and its size is known all the same.
AwkwardStream Named(const char* aPath) {
    return AwkwardStream("0123456789", Delivery(), aPath);
}

/// A server that is observed.
class ParseObserver : public testing::Test {
protected:
    void Use(int aParseOptions, uint32 aCTTContext = 0) {
        mFolder.Write("mediaCTRLMediaTypes.ini", kTable);
        mEnvironment.Set(kProperty_ReadOnlyConfigPath, mFolder.GetPath())
            .Set(kProperty_ReadWriteConfigPath, mFolder.GetPath())
            .SetCTTContext(aCTTContext);
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(aParseOptions);
        mManager->SetObserver(&mObserver);
    }
    ScriptedParser& Add(const char* aType, bool afCoverArt = false) {
        auto* const parser = new ScriptedParser(mTrace, aType, aType, afCoverArt);
        mManager->Add(parser);
        return *parser;
    }
    /// What is told of the request for a file.
    std::string Told(const char* aPath) {
        Parse(aPath);
        return mObserver.Text();
    }
    /// What is told of the facts.
    Lines Facts(const char* aPath) {
        Parse(aPath);
        return mObserver.LinesOf({"FactStated"});
    }
    std::string Parse(const char* aPath) {
        mObserver.Clear();
        AwkwardStream stream = Named(aPath);
        return DumpRecord(Record(mManager->Parse(stream)).get());
    }

    TemporaryFolder mFolder;
    ezEnvironment mEnvironment;
    ParserTrace mTrace;
    RecordingObserver mObserver;
    std::unique_ptr<ezMediaParserManager> mManager;
};

} // namespace

// The order of what is told

TEST_F(ParseObserver, IsToldARequestFromItsBeginningToItsEnd) {
    Use(kParseOption_Default);
    ScriptedParser& film = Add("film");
    film.Calling([&] { film.mManager->TellRefusal(film, ezParseRefusal::Limit, "more than 7 of those"); });
    Add("song").AnsweringWith([](ezMediaParserStream&) { return NewInfo({{"mt", "video/x-own"}}); });
    EXPECT_EQ(Told("/media/a.mpg"), "RequestBegan Identify /media/a.mpg\n"
                                    "  TypeBegan *\n"
                                    "    ParserBegan * ezMimeTypesDotIniParser\n"
                                    "      PassBegan Extension\n"
                                    "        EntryBegan film\n"
                                    "          TypeBegan film\n"
                                    "            ParserBegan film ScriptedParser\n"
                                    "              ParserRefused film Limit more than 7 of those\n"
                                    "            ParserEnded film -\n"
                                    "          TypeEnded film Declined\n"
                                    "          TypeBegan extra\n"
                                    "          TypeEnded extra NoParser\n"
                                    "          TypeBegan song\n"
                                    "            ParserBegan song ScriptedParser\n"
                                    "            ParserEnded song video/x-own\n"
                                    "          TypeEnded song Answered\n"
                                    "        EntryEnded film Won\n"
                                    "      PassEnded Extension answered\n"
                                    "    ParserEnded * video/x-own\n"
                                    "  TypeEnded * Answered\n"
                                    "  FactStated br BitRates\n"
                                    "  FactStated cn EntryNames film\n"
                                    "  FactStated ea BitRates\n"
                                    "  FactStated eb BitRates\n"
                                    "  FactStated ev BitRates\n"
                                    "  FactStated fe Stream\n"
                                    "  FactStated fs Stream\n"
                                    "  FactStated ma BitRates\n"
                                    "  FactStated mb BitRates\n"
                                    "  FactStated mt Parser song\n"
                                    "  FactStated mv BitRates\n"
                                    "  FactStated mFullPath Stream\n"
                                    "RequestEnded Identify video/x-own\n");
}
