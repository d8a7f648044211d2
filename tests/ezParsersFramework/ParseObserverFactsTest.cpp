#include "ParseObserverKit.h"

// Who stated the facts of a record that a caller gets.

namespace {

class ParseObserverFacts : public ObservedServer {
protected:
    const Lines kOfTheEntryAlone = {"FactStated cn EntryAlone song", "FactStated fe EntryAlone song",
                                    "FactStated fs Stream", "FactStated mt EntryAlone song",
                                    "FactStated mFullPath Stream"};
};

} // namespace

// Whose facts they are

TEST_F(ParseObserverFacts, FactsOfAnEntryAloneAreTheEntrysAndTheStreams) {
    Use(kParseOption_Default);
    EXPECT_EQ(Facts("/a.mp3"), kOfTheEntryAlone);
}

TEST_F(ParseObserverFacts, ValueThatIsStatedAgainStaysItsFirstOnesAndAnotherOneIsTheLasts) {
    Use(kParseOption_Default);
    Add("song").AnsweringWith([](ezMediaParserStream&) {
        // Extension as the stream has it, size not; rates of which some follow.
        ezMediaInfo* const info = NewInfo({{"fe", "mp3"}, {"fs", "9"}, {"mt", "audio/x-own"}, {"cn", "c"}});
        info->Set(kezInfo_AudioTrackCount, 1, true);
        info->Set(kezInfo_AudioBitRate, 128000, true);
        info->Set(kezInfo_AudioMaxBitRate, 160000, true);
        info->mTitle = "Title";
        info->mGenre = "Genre";
        info->mLastModificationTime = ezDateTime(5, 6); // which the stream replaces
        return info;
    });
    EXPECT_EQ(Facts("/a.mp3"),
              (Lines{"FactStated ar BitRates", "FactStated br BitRates", "FactStated cn Parser song",
                     "FactStated ea BitRates", "FactStated eb BitRates", "FactStated ev BitRates",
                     "FactStated fe Parser song", "FactStated fs Parser song", "FactStated ma Parser song",
                     "FactStated mb BitRates", "FactStated mt Parser song", "FactStated mv BitRates",
                     "FactStated ta Parser song", "FactStated mFullPath Stream",
                     "FactStated mTitle Parser song", "FactStated mGenre Parser song"}));
}

TEST_F(ParseObserverFacts, TimeIsTheStreamsUnlessItIsTheSameToTheNanosecond) {
    Use(kParseOption_Default);
    Add("song").AnsweringWith([](ezMediaParserStream&) {
        ezMediaInfo* const info = NewInfo({{"mt", "audio/x-own"}});
        info->mLastModificationTime = ezDateTime(5, 6);
        return info;
    });
    for (const std::int32_t nanoseconds : {6, 7}) {
        mObserver.Clear();
        NamedStream stream("/a.mp3");
        stream.SetTime(ezDateTime(5, nanoseconds));
        Record(mManager->Parse(stream));
        EXPECT_EQ(mObserver.LinesOf({"FactStated"}).back(),
                  std::string("FactStated mLastModificationTime ") +
                      (nanoseconds == 6 ? "Parser song" : "Stream"));
    }
}

TEST_F(ParseObserverFacts, ExtensionOfTheTableIsOneOfItsOwn) {
    Use(kParseOption_ParseWithAllParserIfNoExtension);
    Add("song").Answering("audio/mpeg");
    Parse("/a");
    EXPECT_EQ(SourceOf("fe"), "TypesExtension");
}

TEST_F(ParseObserverFacts, NameThatDecidesStatesItsKeysAndTheRatesAreCleared) {
    Use(kParseOption_Default, kProperty_CTTContext_NameDecides);
    Add("film").AnsweringWith([](ezMediaParserStream&) {
        ezMediaInfo* const info =
            NewInfo({{"mt", "video/x-own"}, {"cn", "c"}, {"dl", "DLNA.ORG_PN=MPEG_PS_PAL"}});
        info->Set(kezInfo_BitRate, 7, true);
        info->Set(kezInfo_MaxBitRate, 0, true);
        return info;
    });
    EXPECT_EQ(
        Facts("/B-MP2PS_P-1.mpg"),
        (Lines{"FactStated br BitRates", "FactStated cn Parser film",
               "FactStated dl Parser film", // which says the same
               "FactStated eb BitRates", "FactStated fe TypesExtension", "FactStated fs Stream",
               "FactStated mb Parser film", "FactStated mt TestFileName", "FactStated mFullPath Stream"}));
    Use(kParseOption_Default, 1); // where no parser answers
    EXPECT_EQ(Facts("/B-MP2PS_N-1.mpg"),
              (Lines{"FactStated br BitRates", "FactStated cn TestFileName", "FactStated dl TestFileName",
                     "FactStated ea BitRates", "FactStated eb BitRates", "FactStated ev BitRates",
                     "FactStated fe TypesExtension", "FactStated fs Stream", "FactStated ma BitRates",
                     "FactStated mb BitRates", "FactStated mt TestFileName", "FactStated mv BitRates",
                     "FactStated mFullPath Stream"}));
}

// Records that are asked for within a parser

namespace {

/// A record that is always made at one place, when the one before it is gone.
class OnePlaceRecord : public ezMediaInfo {
public:
    explicit OnePlaceRecord(const char* aMimeType) {
        Set(kezInfo_MimeType, aMimeType, true);
        Set(kezInfo_VideoCodec, "H264", true);
    }
    static void* operator new(std::size_t /*aSize*/) {
        alignas(ezMediaInfo) static unsigned char sPlace[sizeof(ezMediaInfo)];
        return sPlace;
    }
    static void operator delete(void* /*aPlace*/) {}
};

} // namespace

TEST_F(ParseObserverFacts, InnerParserStaysTheSourceOfWhatTheOuterOneDoesNotChange) {
    Use(kParseOption_Default);
    ScriptedParser& film = Add("film");
    film.AnsweringWith([&](ezMediaParserStream& aStream) {
        ezMediaInfo* const info = film.mManager->ParseFromType("inner", aStream);
        info->Set(kezInfo_ClassName, "item.outer", true);
        info->Set(kezInfo_DLNA, "", true);
        info->Set(kezInfo_Duration, 9, true);
        info->mAlbum = "";
        return info;
    });
    Add("inner").AnsweringWith([](ezMediaParserStream&) {
        ezMediaInfo* const info =
            NewInfo({{"mt", "video/x-inner"}, {"cn", "item.inner"}, {"dl", "*"}, {"vc", "H264"}});
        info->mAlbum = "Album";
        return info;
    });
    Parse("/a.mpg");
    EXPECT_EQ(SourceOf("cn"), "Parser film");
    EXPECT_EQ(SourceOf("dl"), "nobody"); // which it took away
    EXPECT_EQ(SourceOf("mAlbum"), "nobody");
    EXPECT_EQ(SourceOf("du"), "Parser film");
    EXPECT_EQ(SourceOf("mt"), "Parser inner");
    EXPECT_EQ(SourceOf("vc"), "Parser inner");
    EXPECT_EQ(mObserver.LinesOf({"TypeBegan", "ParserBegan", "ParserEnded", "TypeEnded"}),
              (Lines{"TypeBegan *", "ParserBegan * ezMimeTypesDotIniParser", "TypeBegan film",
                     "ParserBegan film ScriptedParser", "TypeBegan inner", "ParserBegan inner ScriptedParser",
                     "ParserEnded inner video/x-inner", "TypeEnded inner Answered",
                     "ParserEnded film video/x-inner", "TypeEnded film Answered",
                     "ParserEnded * video/x-inner", "TypeEnded * Answered"}));
}

TEST_F(ParseObserverFacts, AnswerThatAParserThrowsAwayWhenItDeclinesStatesNothing) {
    Use(kParseOption_Default);
    ScriptedParser& film = Add("film");
    film.AnsweringWith([&](ezMediaParserStream& aStream) -> ezMediaInfo* {
        Record(film.mManager->ParseFromType("inner", aStream));
        return nullptr;
    });
    Add("inner").AnsweringWith([](ezMediaParserStream&) { return new OnePlaceRecord("video/x-same"); });
    Add("extra").AnsweringWith([](ezMediaParserStream&) { // at the same place, with the same words
        return new OnePlaceRecord("video/x-same");
    });
    Parse("/a.mpg");
    EXPECT_EQ(SourceOf("mt"), "Parser extra");
    EXPECT_EQ(SourceOf("vc"), "Parser extra");
}

TEST_F(ParseObserverFacts, AnswerOfAnExcludedEntryStatesNothing) {
    Use(kParseOption_ParseWithAllParserIfFailed);
    Add("secret").AnsweringWith([](ezMediaParserStream&) { return new OnePlaceRecord("x/same"); });
    ScriptedParser& song = Add("song");
    song.AnsweringWith([](ezMediaParserStream&) { return new OnePlaceRecord("x/same"); });
    Parse("/a.mp3"); // the pass over all entries meets the excluded one first
    EXPECT_EQ(mObserver.LinesOf({"EntryEnded"}),
              (Lines{"EntryEnded secret Excluded", "EntryEnded song Won"}));
    EXPECT_EQ(SourceOf("mt"), "Parser song");
    EXPECT_EQ(SourceOf("vc"), "Parser song");
}

TEST_F(ParseObserverFacts, EntryAloneStatesWhatAnAnswerThatWasThrownAwaySaidToo) {
    const auto same = [] { return NewInfo({{"mt", "audio/mpeg"}, {"cn", "item.audioItem"}, {"fe", "mp3"}}); };
    // Each is gone when the entry's record is made, mostly where it was itself.
    Use(kParseOption_ParseWithAllParserIfFailed);
    Add("secret").AnsweringWith([&](ezMediaParserStream&) { return same(); });
    EXPECT_EQ(Facts("/a.mp3"), kOfTheEntryAlone);
    EXPECT_EQ(mObserver.LinesOf({"EntryEnded"}),
              (Lines{"EntryEnded secret Excluded", "EntryEnded song MadeRecord"}));
    Use(kParseOption_Default);
    ScriptedParser& song = Add("song");
    song.AnsweringWith([&](ezMediaParserStream& aStream) -> ezMediaInfo* {
        Record(song.mManager->ParseFromType("inner", aStream));
        return nullptr;
    });
    Add("inner").AnsweringWith([&](ezMediaParserStream&) { return same(); });
    EXPECT_EQ(Facts("/a.mp3"), kOfTheEntryAlone);
    EXPECT_EQ(mObserver.LinesOf({"ParserEnded"})[0], "ParserEnded inner audio/mpeg");
}

TEST_F(ParseObserverFacts, LaterAnswerAtThePlaceOfAnEarlierOneIsItsParsersAlone) {
    Use(kParseOption_Default);
    ScriptedParser& film = Add("film");
    film.AnsweringWith([&](ezMediaParserStream& aStream) {
        Record(film.mManager->ParseFromType("first", aStream));
        return film.mManager->ParseFromType("second", aStream);
    });
    for (const char* const type : {"first", "second"}) {
        Add(type).AnsweringWith([](ezMediaParserStream&) { return new OnePlaceRecord("video/x-same"); });
    }
    Parse("/a.mpg");
    EXPECT_EQ(SourceOf("mt"), "Parser second");
}

// Nobody can tell such a record from the answer that was there before.
TEST_F(ParseObserverFacts, RecordAtThePlaceOfAnAnswerThatItsParserDeletedIsTakenForIt) {
    Use(kParseOption_Default);
    ScriptedParser& film = Add("film");
    film.AnsweringWith([&](ezMediaParserStream& aStream) {
        Record(film.mManager->ParseFromType("inner", aStream));
        auto* const own = new OnePlaceRecord("video/x-own");
        own->Set(kezInfo_Duration, 9, true);
        return own;
    });
    Add("inner").AnsweringWith([](ezMediaParserStream&) { return new OnePlaceRecord("video/x-inner"); });
    Parse("/a.mpg");
    EXPECT_EQ(SourceOf("du"), "Parser film");
    EXPECT_EQ(SourceOf("mt"), "Parser film");
    EXPECT_EQ(SourceOf("vc"), "Parser inner"); // of which both say the same
}

TEST_F(ParseObserverFacts, AnotherStreamThatAParserHasIdentifiedIsARequestOfItsOwn) {
    Use(kParseOption_Default);
    ScriptedParser& film = Add("film");
    film.AnsweringWith([&](ezMediaParserStream& aStream) {
        ezMediaInfo* const info = film.mManager->ParseFromType("inner", aStream);
        NamedStream cover("/cover.bar");
        const Record none(film.mManager->Parse(cover));
        NamedStream sound("/sound.mp3");
        const Record other(film.mManager->Parse(sound));
        EXPECT_EQ(none, nullptr);
        EXPECT_NE(other, nullptr);
        info->Set(kezInfo_Duration, 9, true);
        return info;
    });
    Add("inner").AnsweringWith([](ezMediaParserStream&) { return NewInfo({{"mt", "video/x-inner"}}); });
    Parse("/a.mpg");
    EXPECT_EQ(mObserver.LinesOf({"RequestBegan", "RequestEnded"}),
              (Lines{"RequestBegan Identify /a.mpg", "RequestBegan Identify /cover.bar",
                     "RequestEnded Identify -", "RequestBegan Identify /sound.mp3",
                     "RequestEnded Identify audio/mpeg", "RequestEnded Identify video/x-inner"}));
    const std::string text = mObserver.Text();
    const std::string inner = "                FactStated cn EntryAlone song\n"
                              "                FactStated fe EntryAlone song\n"
                              "                FactStated fs Stream\n"
                              "                FactStated mt EntryAlone song\n"
                              "                FactStated mFullPath Stream\n"
                              "              RequestEnded Identify audio/mpeg\n"
                              "            ParserEnded film video/x-inner\n";
    EXPECT_NE(text.find(inner), std::string::npos) << text;
    EXPECT_NE(text.find("\n  FactStated du Parser film\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\n  FactStated mt Parser inner\n"), std::string::npos) << text;
}

TEST_F(ParseObserverFacts, RecordThatAParserHasAdjustedIsOfBoth) {
    Use(kParseOption_Default);
    ScriptedParser& film = Add("film");
    film.AnsweringWith([&](ezMediaParserStream&) {
        ezMediaInfo* const info = NewInfo({{"mt", "video/x-own"}, {"dl", "old"}});
        EXPECT_TRUE(film.mManager->AdjustDLNAInfoFromType("adjuster", info));
        return info;
    });
    Add("adjuster").Adjusting("new");
    Parse("/a.mpg");
    EXPECT_EQ(SourceOf("dl"), "Parser adjuster");
    EXPECT_EQ(SourceOf("mt"), "Parser film");
}

// The media mapper

TEST_F(ParseObserverFacts, MediaMapperIsToldOfWithAllThatItChanges) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mpg,Video/x-table,PROFILE,0:00:09.000,,,7\n");
    Use(kParseOption_Default);
    mManager->AddDLNAMediaMapperParser(mapper.get());
    Add("film").AnsweringWith([](ezMediaParserStream&) {
        ezMediaInfo* const info = NewInfo({{"mt", "video/x-own"}, {"dl", "DLNA.ORG_PN=OLD"}});
        info->SetDuration(5500, "header");
        return info;
    });
    Parse("/a.mpg");
    EXPECT_EQ(mObserver.LinesOf({"MediaMapperAsked", "MediaMapperChanged"}),
              (Lines{"MediaMapperAsked a.mpg", "MediaMapperChanged br 0 7",
                     "MediaMapperChanged cn item.videoItem -",
                     "MediaMapperChanged dl DLNA.ORG_PN=OLD DLNA.ORG_PN=PROFILE",
                     "MediaMapperChanged dm 5500 -", "MediaMapperChanged du 5 9",
                     "MediaMapperChanged md header -", "MediaMapperChanged mt video/x-own Video/x-table"}));
}

TEST_F(ParseObserverFacts, MediaMapperThatAnswersAloneStatesAll) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("only.wav,video/x-table,ONLY\n");
    Use(kParseOption_Default);
    mManager->AddDLNAMediaMapperParser(mapper.get());
    EXPECT_EQ(Told("/only.wav"), "RequestBegan Identify /only.wav\n"
                                 "  TypeBegan *\n"
                                 "    ParserBegan * ezMimeTypesDotIniParser\n"
                                 "      PassBegan Extension\n"
                                 "      PassEnded Extension -\n"
                                 "    ParserEnded * -\n"
                                 "  TypeEnded * Declined\n"
                                 "  MediaMapperAsked only.wav\n"
                                 "  MediaMapperChanged br - 0\n"
                                 "  MediaMapperChanged cn - item.videoItem\n"
                                 "  MediaMapperChanged dl - DLNA.ORG_PN=ONLY\n"
                                 "  MediaMapperChanged mt - video/x-table\n"
                                 "  FactStated br MediaMapper\n"
                                 "  FactStated cn MediaMapper\n"
                                 "  FactStated dl MediaMapper\n"
                                 "  FactStated fe Stream\n"
                                 "  FactStated fs Stream\n"
                                 "  FactStated mt MediaMapper\n"
                                 "  FactStated mFullPath Stream\n"
                                 "RequestEnded Identify video/x-table\n");
}

TEST_F(ParseObserverFacts, MediaMapperThatSaysTheSameOrNothingChangesNothing) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mp3,audio/mpeg,P\n");
    Use(kParseOption_Default);
    mManager->AddDLNAMediaMapperParser(mapper.get());
    Add("song").AnsweringWith([](ezMediaParserStream&) {
        return NewInfo({{"mt", "audio/mpeg"}, {"dl", "DLNA.ORG_PN=P;OTHER=1"}});
    });
    const auto told = [&](const char* aPath) {
        Parse(aPath);
        return mObserver.LinesOf({"MediaMapperAsked", "MediaMapperChanged"});
    };
    EXPECT_EQ(told("/a.mp3"), Lines{"MediaMapperAsked a.mp3"});
    EXPECT_EQ(told("/b.mp3"), Lines{"MediaMapperAsked -"});
    EXPECT_EQ(told(""), Lines()); // of no name
}
