#include "ParseObserverKit.h"

namespace {

class ParseObserver : public ObservedServer {};

/// A parser that no other source can name.
class HiddenParser : public ScriptedParser {
    using ScriptedParser::ScriptedParser;
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

TEST_F(ParseObserver, IsToldEveryPassThatIsMadeWhereNothingAnswers) {
    constexpr int kAllOptions =
        kParseOption_ParseWithAllParserIfNoExtension | kParseOption_ParseWithAllParserIfFailed;
    Use(kAllOptions);
    Add("song");
    EXPECT_EQ(Told("/media/none"), "RequestBegan Identify /media/none\n"
                                   "  TypeBegan *\n"
                                   "    ParserBegan * ezMimeTypesDotIniParser\n"
                                   "      PassBegan NoExtension\n"
                                   "        EntryBegan secret excluded\n"
                                   "          TypeBegan secret\n"
                                   "          TypeEnded secret NoParser\n"
                                   "        EntryEnded secret Declined\n"
                                   "        EntryBegan hidden excluded\n"
                                   "          TypeBegan hidden\n"
                                   "          TypeEnded hidden NoParser\n"
                                   "        EntryEnded hidden Declined\n"
                                   "        EntryBegan song\n"
                                   "          TypeBegan song\n"
                                   "            ParserBegan song ScriptedParser\n"
                                   "            ParserEnded song -\n"
                                   "          TypeEnded song Declined\n"
                                   "        EntryEnded song Declined\n"
                                   "        EntryBegan film\n"
                                   "          TypeBegan film\n"
                                   "          TypeEnded film NoParser\n"
                                   "          TypeBegan extra\n"
                                   "          TypeEnded extra NoParser\n"
                                   "          TypeBegan song\n"
                                   "          TypeEnded song TriedBefore\n"
                                   "        EntryEnded film Declined\n"
                                   "        EntryBegan photo\n"
                                   "          TypeBegan photo\n"
                                   "          TypeEnded photo NoParser\n"
                                   "        EntryEnded photo Declined\n"
                                   "        EntryBegan bare\n"
                                   "          TypeBegan bare\n"
                                   "          TypeEnded bare NoParser\n"
                                   "        EntryEnded bare Declined\n"
                                   "      PassEnded NoExtension -\n"
                                   "    ParserEnded * -\n"
                                   "  TypeEnded * Declined\n"
                                   "RequestEnded Identify -\n");
    // The entry of an extension that says nothing of its media makes no record.
    Parse("/media/a.bar");
    EXPECT_EQ(
        mObserver.LinesOf({"PassBegan", "PassEnded"}),
        (Lines{"PassBegan Failed", "PassEnded Failed -", "PassBegan Extension", "PassEnded Extension -"}));
    EXPECT_EQ(mObserver.Lines().back(), "RequestEnded Identify -");
    EXPECT_EQ(mObserver.LinesOf({"FactStated"}), Lines());
}

TEST_F(ParseObserver, IsToldHowEachEntryFared) {
    Use(kParseOption_Default);
    const auto fates = [&](const char* aPath) {
        Parse(aPath);
        return mObserver.LinesOf({"EntryBegan", "EntryEnded", "RequestEnded"});
    };
    EXPECT_EQ(fates("/a.mp3"),
              (Lines{"EntryBegan song", "EntryEnded song MadeRecord", "RequestEnded Identify audio/mpeg"}));
    // An excluded entry that stands last makes a record, too.
    EXPECT_EQ(fates("/a.sec"), (Lines{"EntryBegan secret excluded", "EntryEnded secret MadeRecord",
                                      "RequestEnded Identify x/secret"}));
    EXPECT_EQ(fates("/a.pic"),
              (Lines{"EntryBegan hidden excluded", "EntryEnded hidden Declined", "EntryBegan photo",
                     "EntryEnded photo MadeRecord", "RequestEnded Identify image/jpeg"}));
    EXPECT_EQ(fates("/a.bar"),
              (Lines{"EntryBegan bare", "EntryEnded bare Declined", "RequestEnded Identify -"}));
    Add("photo").Answering("image/x-own");
    EXPECT_EQ(fates("/a.pic"),
              (Lines{"EntryBegan hidden excluded", "EntryEnded hidden Declined", "EntryBegan photo",
                     "EntryEnded photo Won", "RequestEnded Identify image/x-own"}));
    Add("hidden").Answering("image/x-own"); // and the entries after it are not tried
    EXPECT_EQ(fates("/a.pic"),
              (Lines{"EntryBegan hidden excluded", "EntryEnded hidden Excluded", "RequestEnded Identify -"}));
}

TEST_F(ParseObserver, IsToldTheRefusalsOfAParserInTheirOrder) {
    Use(kParseOption_Default);
    ScriptedParser& song = Add("song");
    song.Calling([&] {
        song.mManager->TellRefusal(song, ezParseRefusal::Malformed, "one");
        song.mManager->TellRefusal(song, ezParseRefusal::Unsupported, "two \xFF");
        song.mManager->TellRefusal(song, ezParseRefusal::ReadError, nullptr);
    });
    EXPECT_TRUE(mManager->IsObserved());
    Parse("/a.mp3");
    EXPECT_EQ(mObserver.LinesOf({"ParserBegan", "ParserRefused", "ParserEnded"}),
              (Lines{"ParserBegan * ezMimeTypesDotIniParser", "ParserBegan song ScriptedParser",
                     "ParserRefused song Malformed one", "ParserRefused song Unsupported two \xFF",
                     "ParserRefused song ReadError ", "ParserEnded song -", "ParserEnded * audio/mpeg"}));
}

TEST_F(ParseObserver, IsToldTheClassOfAParserAsItsSourceHasIt) {
    Use(kParseOption_Default);
    mManager->Add(new HiddenParser(mTrace, "hidden", "song"));
    Parse("/a.mp3");
    EXPECT_EQ(mObserver.LinesOf({"ParserBegan"}).back(),
              "ParserBegan song (anonymous namespace)::HiddenParser");
}

TEST_F(ParseObserver, IsToldOfARequestForCoverArt) {
    Use(kParseOption_Default);
    Add("song").Declaring("audio/mpeg:*");
    mManager->Add((new ScriptedParser(mTrace, "able", "able", true))->Declaring("audio/mpeg:*"));
    mManager->Add(
        (new ScriptedParser(mTrace, "art", "art", true))->Declaring("audio/mpeg:*")->Answering("image/png"));
    NamedStream stream("/a.mp3");
    Record(mManager->ParseCoverArt("audio/mpeg", stream));
    EXPECT_EQ(mObserver.Text(), "RequestBegan CoverArt /a.mp3\n"
                                "  ParserBegan able ScriptedParser\n"
                                "  ParserEnded able -\n"
                                "  ParserBegan art ScriptedParser\n"
                                "  ParserEnded art image/png\n"
                                "  FactStated mt Parser art\n"
                                "RequestEnded CoverArt image/png\n");
    mObserver.Clear();
    Record(mManager->ParseCoverArt("audio/none", stream));
    EXPECT_EQ(mObserver.Text(), "RequestBegan CoverArt /a.mp3\nRequestEnded CoverArt -\n");
}

TEST_F(ParseObserver, IsToldOfARecordThatIsAdjustedWhatTheRequestChanged) {
    Use(kParseOption_Default);
    Add("film");
    Add("song").Adjusting("DLNA.ORG_PN=OWN");
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "video/mpeg", true);
    info.Set(kezInfo_Duration, 7, true);
    EXPECT_TRUE(mManager->AdjustDLNAInfo(&info));
    EXPECT_EQ(mObserver.Text(), "RequestBegan Adjust -\n"
                                "  PassBegan Adjust\n"
                                "    EntryBegan film\n"
                                "      TypeBegan film\n"
                                "        ParserBegan film ScriptedParser\n"
                                "        ParserEnded film -\n"
                                "      TypeEnded film Declined\n"
                                "      TypeBegan extra\n"
                                "      TypeEnded extra NoParser\n"
                                "      TypeBegan song\n"
                                "        ParserBegan song ScriptedParser\n"
                                "        ParserEnded song video/mpeg\n"
                                "      TypeEnded song Answered\n"
                                "    EntryEnded film Won\n"
                                "  PassEnded Adjust answered\n"
                                "  FactStated dl Parser song\n"
                                "RequestEnded Adjust video/mpeg\n");
    mObserver.Clear();
    info.Set(kezInfo_MimeType, "image/jpeg", true);
    EXPECT_FALSE(mManager->AdjustDLNAInfo(&info));
    EXPECT_EQ(mObserver.LinesOf({"EntryBegan", "EntryEnded", "FactStated"}),
              (Lines{"EntryBegan hidden excluded", "EntryEnded hidden Declined", "EntryBegan photo",
                     "EntryEnded photo Declined"}));
    mObserver.Clear();
    info.Set(kezInfo_MimeType, "none/such", true);
    EXPECT_FALSE(mManager->AdjustDLNAInfo(&info));
    EXPECT_FALSE(mManager->AdjustDLNAInfo(nullptr));
    EXPECT_EQ(mObserver.Text(), "RequestBegan Adjust -\n"
                                "  PassBegan Adjust\n"
                                "  PassEnded Adjust -\n"
                                "RequestEnded Adjust -\n"
                                "RequestBegan Adjust -\n"
                                "RequestEnded Adjust -\n");
}

TEST_F(ParseObserver, IsToldOfTheTestFileNameEachTimeThatItIsAsked) {
    Use(kParseOption_Default, kProperty_CTTContext_NameDecides);
    const auto asked = [&](const char* aPath) {
        Parse(aPath);
        return mObserver.LinesOf({"EntryBegan", "TestFileNameAsked", "EntryEnded"});
    };
    EXPECT_EQ(asked("/a.pic"),
              (Lines{"EntryBegan hidden excluded", "TestFileNameAsked -", "EntryEnded hidden Declined",
                     "EntryBegan photo", "TestFileNameAsked -", "EntryEnded photo MadeRecord"}));
    EXPECT_EQ(asked("/B-MP2PS_P-1.mpg"),
              (Lines{"EntryBegan film", "TestFileNameAsked video/mpeg", "EntryEnded film Won"}));
    mEnvironment.SetCTTContext(1);
    Add("film").Answering("video/x-own");
    EXPECT_EQ(asked("/B-MP2PS_P-1.mpg"), (Lines{"EntryBegan film", "EntryEnded film Won"}));
}

// Who is told, and when

TEST_F(ParseObserver, RecordIsTheSameWithoutAnObserver) {
    for (const uint32 context : {0U, 1U, 2U}) {
        Use(kParseOption_ParseWithAllParserIfFailed, context);
        Add("song").Answering("audio/x-own");
        for (const char* const path : {"/a.mp3", "/a.mpg", "/a.pic", "/a.sec", "/none", "/B-MP2PS_P-1.mpg"}) {
            const std::string observed = Parse(path);
            mManager->SetObserver(nullptr);
            EXPECT_FALSE(mManager->IsObserved());
            EXPECT_EQ(Parse(path), observed) << path << " " << context;
            EXPECT_EQ(mObserver.Lines(), Lines());
            mManager->SetObserver(&mObserver);
        }
    }
}

TEST_F(ParseObserver, WhatAHostAsksOutsideARequestIsNotTold) {
    Use(kParseOption_Default);
    ScriptedParser& song = Add("song");
    song.Answering("audio/x-own")->Adjusting("dl");
    NamedStream stream("/a.mp3");
    EXPECT_NE(Record(mManager->ParseFromType("song", stream)), nullptr);
    ezMediaInfo info;
    Add("other").Adjusting("dl");
    EXPECT_TRUE(mManager->AdjustDLNAInfoFromType("other", &info));
    mManager->TellRefusal(song, ezParseRefusal::Limit, "nobody is tried");
    mManager->SetObserver(nullptr);
    mManager->TellRefusal(song, ezParseRefusal::Limit, "nobody is told");
    mManager->SetObserver(&mObserver);
    EXPECT_NE(Record(mManager->GetMimeTypesDotIniParser()->Parse(stream)), nullptr);
    Add("secret").Answering("x/y");
    NamedStream secret("/a.sec");
    EXPECT_EQ(Record(mManager->GetMimeTypesDotIniParser()->Parse(secret)), nullptr);
    EXPECT_EQ(mObserver.Lines(), Lines());
}

TEST_F(ParseObserver, ObserverThatAParserSetsInARequestIsToldFromTheNextOneOn) {
    Use(kParseOption_Default);
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mpg,video/x-table,P\n");
    mManager->AddDLNAMediaMapperParser(mapper.get());
    mManager->SetObserver(nullptr);
    ScriptedParser& film = Add("film");
    film.AnsweringWith([&](ezMediaParserStream& aStream) {
        film.mManager->SetObserver(&mObserver);
        Record(film.mManager->ParseFromType("inner", aStream)); // of the request that is not observed
        NamedStream other("/b.mp3");
        Record(film.mManager->Parse(other));
        return NewInfo({{"mt", "video/x-own"}});
    });
    Add("inner").Answering("x/inner");
    EXPECT_NE(Parse("/a.mpg"), "null\n");
    EXPECT_EQ(mObserver.Lines().front(), "RequestBegan Identify /b.mp3");
    EXPECT_EQ(mObserver.Lines().back(), "RequestEnded Identify audio/mpeg");
    EXPECT_EQ(mObserver.LinesOf({"RequestBegan"}), Lines{"RequestBegan Identify /b.mp3"});
}

TEST_F(ParseObserver, ObserverIsNotChangedWithinARequestThatIsObserved) {
    Use(kParseOption_Default);
    RecordingObserver other;
    const AssertCatcher assertions;
    const LogCatcher log(2);
    Add("song").Calling([&] {
        mManager->SetObserver(&other);
        mManager->SetObserver(nullptr);
    });
    Parse("/a.mp3");
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"!IsInRequest() @ MediaParserManager",
                                                           "!IsInRequest() @ MediaParserManager"}));
    EXPECT_EQ(other.Lines(), Lines());
    EXPECT_EQ(mObserver.Lines().back(), "RequestEnded Identify audio/mpeg");
    mManager->SetObserver(&other);
    Parse("/a.mp3");
    EXPECT_EQ(mObserver.Lines(), Lines());
    EXPECT_EQ(other.Lines().back(), "RequestEnded Identify audio/mpeg");
}

TEST_F(ParseObserver, ObserverThatAParserReplacesOutsideARequestIsToldNothing) {
    RecordingObserver other;
    NamedStream stream("/a.mp3");
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "audio/mpeg", true);
    const std::vector<std::function<void()>> questions = {
        [&] { Record(mManager->ParseFromType("song", stream)); },
        [&] { mManager->AdjustDLNAInfoFromType("song", &info); },
        [&] { Record(mManager->GetMimeTypesDotIniParser()->Parse(stream)); },
        [&] { mManager->GetMimeTypesDotIniParser()->AdjustDLNAInfo(&info); }};
    for (const std::function<void()>& ask : questions) {
        for (ezParseObserver* const next : std::initializer_list<ezParseObserver*>{&other, nullptr}) {
            Use(kParseOption_Default);
            Add("song").Calling([&] { mManager->SetObserver(next); });
            ask();
            EXPECT_EQ(mManager->IsObserved(), next != nullptr);
        }
    }
    EXPECT_EQ(mObserver.Lines(), Lines());
    EXPECT_EQ(other.Lines(), Lines());
}

TEST_F(ParseObserver, ObserverThatAsksItsManagerIsAnAssertionAndFindsNothing) {
    NamedStream stream("/b.mp3");
    ezMediaInfo info;
    info.Set(kezInfo_MimeType, "video/mpeg", true);
    const std::vector<std::function<bool()>> questions = {
        [&] { return Record(mManager->Parse(stream)) != nullptr; },
        [&] { return Record(mManager->ParseCoverArt("audio/mpeg", stream)) != nullptr; },
        [&] { return mManager->AdjustDLNAInfo(&info); },
        [&] { return Record(mManager->ParseFromType("extra", stream)) != nullptr; },
        [&] { return mManager->AdjustDLNAInfoFromType("extra", &info); },
        [&] {
            mManager->SetObserver(nullptr);
            return !mManager->IsObserved();
        },
        [&] {
            mManager->TellRefusal(*mManager->GetMimeTypesDotIniParser(), ezParseRefusal::Limit, "told");
            return !mObserver.LinesOf({"ParserRefused"}).empty();
        },
        // The parser of the table asks for it; where that finds nothing the entry alone makes a record.
        [&] {
            NamedStream song("/b.mp3");
            const Record record(mManager->GetMimeTypesDotIniParser()->Parse(song));
            return DumpRecord(record.get()) != "cn=\"item.audioItem\"\nfe=\"mp3\"\nmt=\"audio/mpeg\"\n";
        },
        [&] {
            ezMediaInfo song;
            song.Set(kezInfo_MimeType, "audio/mpeg", true);
            return mManager->GetMimeTypesDotIniParser()->AdjustDLNAInfo(&song);
        }};
    for (std::size_t i = 0; i < questions.size(); ++i) {
        SCOPED_TRACE(i);
        Use(kParseOption_Default);
        mManager->Add((new ScriptedParser(mTrace, "extra", "extra", true))
                          ->Declaring("audio/mpeg:*")
                          ->Adjusting("dl")
                          ->Answering("video/x-own"));
        const std::string record = Parse("/a.mpg");
        const Lines told = mObserver.Lines();
        const AssertCatcher assertions;
        const LogCatcher log(2);
        std::size_t asked = 0;
        mObserver.mOnCall = [&](const std::string& anOperation) {
            ++asked;
            EXPECT_FALSE(questions[i]()) << anOperation;
        };
        EXPECT_EQ(Parse("/a.mpg"), record);
        mObserver.mOnCall = nullptr;
        EXPECT_EQ(mObserver.Lines(), told);
        EXPECT_EQ(asked, told.size());
        EXPECT_EQ(assertions.Failures(),
                  AssertCatcher::Noted(Lines(asked, "!IsTelling() @ MediaParserManager")));
        EXPECT_EQ(DumpRecord(&info), "mt=\"video/mpeg\"\n");
    }
}

TEST_F(ParseObserver, ObserverThatOverridesNothingIsToldAllTheSame) {
    ezParseObserver silent;
    Use(kParseOption_Default);
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mp3,audio/mpeg,P\n");
    mManager->AddDLNAMediaMapperParser(mapper.get());
    ScriptedParser& song = Add("song");
    song.Calling([&] { mManager->TellRefusal(song, ezParseRefusal::Limit, "told"); });
    mEnvironment.SetCTTContext(1);
    mManager->SetObserver(&silent);
    EXPECT_NE(Parse("/a.mp3"), "null\n");
}

TEST_F(ParseObserver, AnswerThatAHostsManagerGivesForATypeOfTheTableIsOfNoParser) {
    class OwnManager : public ezMediaParserManager {
    public:
        using ezMediaParserManager::ezMediaParserManager;
        ezMediaInfo* ParseFromType(const ezCString& aType, ezMediaParserStream& aStream) override {
            return aType == "song" ? NewInfo({{"mt", "x/own"}})
                                   : ezMediaParserManager::ParseFromType(aType, aStream);
        }
    };
    Use(kParseOption_Default);
    mManager = std::make_unique<OwnManager>(mEnvironment.Get());
    mManager->AddStandardParsers(kParseOption_Default);
    mManager->SetObserver(&mObserver);
    EXPECT_NE(Parse("/a.mp3"), "null\n");
    EXPECT_EQ(SourceOf("mt"), "Parser");
    EXPECT_EQ(SourceOf("cn"), "EntryNames song");
}

TEST(ParseObserverOfAHostsManager, AnswerThatTheHostGivesItselfIsOfNoParser) {
    class OwnManager : public ezMediaParserManager {
    public:
        OwnManager() : ezMediaParserManager(nullptr) {}
        ezMediaInfo* ParseFromType(const ezCString& /*aType*/, ezMediaParserStream& /*aStream*/) override {
            return NewInfo({{"mt", "x/own"}});
        }
    };
    RecordingObserver observer;
    OwnManager manager;
    manager.SetObserver(&observer);
    NamedStream stream("/a");
    Record(manager.Parse(stream));
    EXPECT_EQ(observer.Text(), "RequestBegan Identify /a\n"
                               "  FactStated fs Stream\n"
                               "  FactStated mt Parser\n"
                               "  FactStated mFullPath Stream\n"
                               "RequestEnded Identify x/own\n");
}
