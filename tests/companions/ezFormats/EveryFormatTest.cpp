#include "companions/ezFormats/FormatFiles.h"
#include "companions/ezFormats/FormatHost.h"
#include "companions/ezFormats/FormatNotesOf.h"
#include "companions/ezFormats/SparseStream.h"

#include "ez/MediaParserManager.h"
#include "ez/ParseObserver.h"
#include "ezBytes/Utf8.h"

#include "support/NewBlocks.h"
#include "support/Samples.h"

#include <algorithm>
#include <array>
#include <set>
#include <sstream>

// What holds of every format, by the list of formats: each is tried with the samples that its parser wins,
// with the files of its own test, and with the samples of the others.

namespace {

/// No parse needs a block larger than this, whatever the numbers in the file say.
constexpr std::size_t kLargestBlock = std::size_t{256} * 1024;
/// What a stream keeps of the start of the media: it costs one read, and serves every parser.
constexpr std::size_t kKeptByTheStream = 8192;
/// Title, creator, genre or album.
constexpr std::size_t kLongestText = 1024;

/// Samples that few writers make so, and that may cost more than is usual of their format.
const std::set<std::string> kOddSamples = {};

struct NamedFile {
    std::string mName;
    std::string mBytes;
};

/// Places of a file: all of a small one; of others the start, the end, and some between.
struct Places {
    std::size_t mSmall;
    std::size_t mStart;
    std::size_t mEnd;
    std::size_t mBetween;

    std::vector<std::size_t> Of(const std::string& aBytes) const {
        const std::size_t size = aBytes.size();
        std::vector<std::size_t> places;
        for (std::size_t at = 0; at < size;) {
            places.push_back(at);
            const bool fEach = size < mSmall || at < mStart || at + mEnd >= size;
            const std::size_t step =
                fEach ? 1 : std::min((size - mStart - mEnd) / mBetween, size - mEnd - at);
            at += std::max<std::size_t>(step, 1);
        }
        return places;
    }
};

/// The record of a file, or why there is none.
struct Answer {
    Record mRecord;
    std::string mText; ///< the record, or the line of the log that refuses the file
    AwkwardStream::Costs mCosts;
};

Answer AnswerOf(ezMediaParser& aParser, AwkwardStream& aStream) {
    const LogCatcher log;
    Answer answer;
    answer.mRecord = Record(aParser.Parse(aStream));
    answer.mText = answer.mRecord != nullptr ? DumpRecord(answer.mRecord.get())
                   : log.Texts().empty()     ? "no reason"
                                             : log.Texts().back();
    answer.mCosts = aStream.GetCosts();
    return answer;
}

std::string TextOf(const ezMediaInfo& anInfo, const char* aKey) {
    return anInfo.GetCString(aKey, "").c_str();
}

/// Class and 4th field.
std::string AnnouncementIn(const ezMediaInfo& anInfo) {
    return TextOf(anInfo, kezInfo_ClassName).append(" ").append(TextOf(anInfo, kezInfo_DLNA));
}

bool Contains(const std::string& aText, const std::string& aPart) {
    return aText.find(aPart) != std::string::npos;
}

/// The kind of a MIME type, as classes name it: "item.audioItem".
std::string KindOf(const std::string& aMimeType) {
    return "item." + aMimeType.substr(0, aMimeType.find('/')) + "Item";
}

/// The lines of a record but those of some keys.
std::set<std::string> LinesBut(const std::string& aRecord, const std::set<std::string>& aKeys) {
    std::istringstream record(aRecord);
    std::set<std::string> lines;
    for (std::string line; std::getline(record, line);) {
        if (aKeys.count(line.substr(0, line.find('='))) == 0) {
            lines.insert(line);
        }
    }
    return lines;
}

/// The 4th field of a file of unknown size, by that of the same media.
std::string WithoutSeek(std::string aField) {
    const std::string seek = "DLNA.ORG_OP=01";
    const std::size_t at = aField.find(seek);
    aField.erase(at, seek.size() + (aField[at + seek.size()] == ';' ? 1 : 0));
    return aField.empty() ? "*" : aField;
}

/// A parser for any media that asks one of a type, and takes its answer.
class AskingParser : public ezMediaParser {
public:
    explicit AskingParser(const char* aAsked) : ezMediaParser("*", nullptr, false), mAsked(aAsked) {}
    ezMediaInfo* Parse(ezMediaParserStream& aStream) override {
        return mManager->ParseFromType(mAsked, aStream);
    }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

private:
    const char* mAsked;
};

/// Writes down each refusal that it is told, as the log has it.
class RefusalObserver : public ezParseObserver {
public:
    explicit RefusalObserver(std::string aName) : mName(std::move(aName)) {}
    void ParserRefused(const ezBaseParser& /*aParser*/, ezParseRefusal aCause, const char* aText) override {
        constexpr std::array<const char*, 4> kCauses = {"malformed", "unsupported", "limit", "read error"};
        mLines.push_back(mName + ": " + kCauses.at(static_cast<std::size_t>(aCause)) + ": " + aText + "\n");
    }
    std::vector<std::string> mLines;

private:
    std::string mName;
};

/// A format of the list. Tests have it as a value: with a type each, the compiler takes minutes for the list.
struct FormatCase {
    const FormatDescription* mDescription;
    const FormatNotes* mNotes; ///< null where its header has none
    std::unique_ptr<ezMediaParser> (*mMakeParser)();
};

/// Test runners list a test by this.
void PrintTo(const FormatCase& aCase, std::ostream* aStream) {
    *aStream << aCase.mDescription->mType;
}

std::vector<FormatCase> AllCases() {
    std::vector<FormatCase> cases;
    AllFormats::ForEach([&cases](auto* aNull) {
        using Parser = std::remove_pointer_t<decltype(aNull)>;
        cases.push_back({&Parser::kDescription, FormatNotesOf<Parser>::Get(),
                         []() -> std::unique_ptr<ezMediaParser> { return std::make_unique<Parser>(); }});
    });
    return cases;
}

class EveryFormat : public testing::TestWithParam<FormatCase> {
protected:
    static const FormatDescription& Format() { return *GetParam().mDescription; }
    static std::unique_ptr<ezMediaParser> MakeParser() { return GetParam().mMakeParser(); }
    static FormatFiles::Set Own() { return FormatFiles::Of(Format().mType); }

    static std::vector<NamedFile> OwnUsual() {
        std::vector<NamedFile> files;
        for (const std::string& bytes : Own().mUsual()) {
            files.push_back({"file " + std::to_string(files.size()), bytes});
        }
        return files;
    }
    /// Files that the parser reads: the samples that it wins, and those of its own test.
    static std::vector<NamedFile> Usual() {
        std::vector<NamedFile> files = OwnUsual();
        for (const SampleFile& sample : AllSamples()) {
            if (sample.mWinner == Format().mType) {
                files.push_back({sample.mName, sample.mBytes});
            }
        }
        return files;
    }
    /// Files that the parser refuses.
    static std::vector<NamedFile> Others() {
        constexpr std::size_t kLong = 70000;
        std::vector<NamedFile> files = {{"letters", std::string(kLong, 'a')},
                                        {"zeros", std::string(kLong, '\0')},
                                        {"ones", std::string(kLong, '\xFF')},
                                        {"a byte", "\x89"},
                                        {"a table", ReadSample("MediaMapper.txt")}};
        for (const SampleFile& sample : AllSamples()) {
            if (sample.mWinner != Format().mType) {
                files.push_back({sample.mName, sample.mBytes});
            }
        }
        return files;
    }

    static Answer Parse(const std::string& aBytes, const Delivery& aDelivery = Delivery()) {
        AwkwardStream stream(aBytes, aDelivery);
        return AnswerOf(*MakeParser(), stream);
    }

    /// True for a line that names the parser, and one of these causes.
    static bool IsRefusal(const std::string& aText, const std::vector<std::string>& aCauses = {
                                                        "malformed", "unsupported", "limit", "read error"}) {
        return std::any_of(aCauses.begin(), aCauses.end(), [&](const std::string& aCause) {
            const std::string start = std::string(Format().mName) + ": " + aCause + ": ";
            return aText.rfind(start, 0) == 0 && aText.find('\n') == aText.size() - 1 &&
                   aText.size() > start.size() + 1;
        });
    }

    /// Expects all that every record says.
    static void ExpectComplete(const ezMediaInfo& anInfo, bool afSizeKnown = true) {
        const std::string type = TextOf(anInfo, kezInfo_MimeType);
        EXPECT_TRUE(Format().Announces(type)) << type;
        const bool fSound = anInfo.Has(kezInfo_AudioTrackCount) && !anInfo.Has(kezInfo_HasVideoTrack);
        EXPECT_EQ(TextOf(anInfo, kezInfo_ClassName), fSound ? "item.audioItem" : KindOf(type));
        const std::string field = TextOf(anInfo, kezInfo_DLNA);
        EXPECT_NE(field, "");
        EXPECT_EQ(Contains(field, "DLNA.ORG_OP=01"), afSizeKnown) << field;
        EXPECT_EQ(Contains(field, "DLNA.ORG_PN="), Contains(field, "DLNA.ORG_FLAGS=")) << field;
        const std::string from = TextOf(anInfo, kezInfo_DurationMethod);
        const bool fNone = from.find("none: ") == 0;
        EXPECT_EQ(anInfo.Has(kezInfo_Duration), !from.empty() && !fNone) << from;
        EXPECT_FALSE(fNone && afSizeKnown) << from;
        for (const std::string& key : Own().mFacts) {
            EXPECT_TRUE(anInfo.Has(key.c_str())) << key;
        }
        for (const char* const key : {kezInfo_AudioSamplingRate, kezInfo_AudioChannelCount,
                                      kezInfo_PictureWidth, kezInfo_PictureHeight}) {
            EXPECT_TRUE(!anInfo.Has(key) || anInfo.GetUInt32(key, 0) > 0) << key;
        }
        for (const ezCString* const text :
             {&anInfo.mTitle, &anInfo.mCreator, &anInfo.mGenre, &anInfo.mAlbum}) {
            EXPECT_LE(text->GetLength(), kLongestText);
            EXPECT_TRUE(IsWholeUtf8(text->c_str())) << text->c_str();
        }
    }

    /// Expects a record that says all, or a refusal, at no more than the format's budget.
    static void ExpectInOrder(const Answer& anAnswer, bool afSizeKnown = true) {
        if (anAnswer.mRecord != nullptr) {
            ExpectComplete(*anAnswer.mRecord, afSizeKnown);
        } else {
            EXPECT_TRUE(IsRefusal(anAnswer.mText)) << anAnswer.mText;
        }
        EXPECT_LE(anAnswer.mCosts.mReads, Format().mBudget.mReads);
        EXPECT_LE(anAnswer.mCosts.mSeeks, Format().mBudget.mReads + 1); // the stream's own, past its start
        EXPECT_LE(anAnswer.mCosts.mBytes, Format().mBudget.mBytes);
    }

    /// The same of damaged bytes, and that no number in them was taken as that of bytes to allocate.
    static void ExpectHarmless(const std::string& aBytes, const std::string& aWhat) {
        const std::unique_ptr<ezMediaParser> parser = MakeParser();
        AwkwardStream stream(aBytes);
        NewBlocks::ResetLargest();
        Record record(parser->Parse(stream));
        EXPECT_LE(NewBlocks::Largest(), kLargestBlock) << aWhat;
        if (record != nullptr) {
            SCOPED_TRACE(aWhat);
            ExpectComplete(*record);
        }
    }

    /// Cuts a file at places, then has bytes wrong there.
    static void ExpectDamageHarmless(const NamedFile& aFile, const std::vector<std::size_t>& aPlaces) {
        std::string damaged = aFile.mBytes;
        for (const std::size_t place : aPlaces) {
            const std::string where = aFile.mName + " at " + std::to_string(place);
            ExpectHarmless(aFile.mBytes.substr(0, place), where + ", cut");
            for (const int bits : {1 << place % 8, 0x01, 0x80, 0xFF}) {
                damaged[place] = static_cast<char>(aFile.mBytes[place] ^ bits);
                ExpectHarmless(damaged, where + " ^ " + std::to_string(bits));
            }
            damaged[place] = aFile.mBytes[place];
        }
    }
};

} // namespace

// Tests are named by the type: "EveryFormat.NothingToReadIsRefused/png".
INSTANTIATE_TEST_SUITE_P(, EveryFormat, testing::ValuesIn(AllCases()),
                         [](const auto& anInfo) { return anInfo.param.mDescription->mType; });

// ---- what it reads ----

TEST_P(EveryFormat, FileOfItIsReadAndAnnounced) {
    EXPECT_FALSE(Usual().empty());
    for (const NamedFile& file : Usual()) {
        SCOPED_TRACE(file.mName);
        const Answer answer = Parse(file.mBytes);
        EXPECT_NE(answer.mRecord, nullptr) << answer.mText;
        ExpectInOrder(answer);
        const std::size_t kept = std::min(file.mBytes.size(), kKeptByTheStream);
        if (kept == file.mBytes.size()) {
            EXPECT_EQ(answer.mCosts.mReads, 1U);
            EXPECT_EQ(answer.mCosts.mBytes, kept);
        }
    }
}

TEST_P(EveryFormat, FileThatIsBuiltToCostTheMostStaysWithinTheBudget) {
    EXPECT_EQ(Format().mBudget.mReads, Own().mBudget.mReads);
    EXPECT_EQ(Format().mBudget.mBytes, Own().mBudget.mBytes);
    EXPECT_FALSE(Own().mCostly().empty());
    for (const std::string& bytes : Own().mCostly()) {
        ExpectInOrder(Parse(bytes));
    }
}

TEST_P(EveryFormat, SampleCostsNoMoreThanIsUsual) {
    const FormatNotes* const notes = GetParam().mNotes;
    ASSERT_NE(notes, nullptr) << Format().mName << kFormatNotesMissing;
    for (const SampleFile& sample : AllSamples()) {
        if (sample.mWinner == Format().mType && kOddSamples.count(sample.mName) == 0) {
            const AwkwardStream::Costs costs = Parse(sample.mBytes).mCosts;
            EXPECT_LE(costs.mReads, notes->mUsual.mReads) << sample.mName << ": usual, or in kOddSamples";
            EXPECT_LE(costs.mBytes, notes->mUsual.mBytes) << sample.mName << ": usual, or in kOddSamples";
        }
    }
}

TEST_P(EveryFormat, SizeNearTheLimitOfItsNumbersIsReadOrRefused) {
    for (const NamedFile& file : Usual()) {
        for (const std::uint64_t size : {UINT64_MAX, UINT64_MAX - 1, std::uint64_t{1} << 63}) {
            SCOPED_TRACE(file.mName);
            SparseStream stream(size, {{0, file.mBytes}});
            const std::unique_ptr<ezMediaParser> parser = MakeParser();
            const LogCatcher log;
            const Record record(parser->Parse(stream));
            EXPECT_TRUE(record != nullptr || IsRefusal(log.Texts().back())) << log.Texts().back();
            if (record != nullptr) {
                ExpectComplete(*record); // no size is a mark of one that is not known
            }
            EXPECT_LE(stream.mReads, Format().mBudget.mReads);
            EXPECT_LE(stream.mBytes, Format().mBudget.mBytes);
        }
    }
}

TEST_P(EveryFormat, ParserKeepsNothingOfAParse) {
    const std::unique_ptr<ezMediaParser> parser = MakeParser();
    AwkwardStream other(std::string(100, 'a'));
    for (const NamedFile& file : Usual()) {
        const std::string whole = Parse(file.mBytes).mText;
        AwkwardStream stream(file.mBytes);
        EXPECT_EQ(AnswerOf(*parser, stream).mText, whole) << file.mName;
        EXPECT_TRUE(IsRefusal(AnswerOf(*parser, other).mText));
        EXPECT_EQ(AnswerOf(*parser, stream).mText, whole) << file.mName;
    }
}

TEST_P(EveryFormat, FileThatOtherParsersRefusedIsReadAllTheSame) {
    for (const NamedFile& file : Usual()) {
        AwkwardStream stream(file.mBytes);
        for (const auto& parser : AllParsers()) {
            if (parser->GetType() != Format().mType) {
                AnswerOf(*parser, stream);
            }
        }
        const std::unique_ptr<ezMediaParser> parser = MakeParser();
        EXPECT_EQ(AnswerOf(*parser, stream).mText, Parse(file.mBytes).mText) << file.mName;
    }
}

// ---- what it refuses ----

TEST_P(EveryFormat, NothingToReadIsRefused) {
    const std::string name = Format().mName;
    EXPECT_EQ(Parse("").mText, name + ": malformed: nothing to read\n");
    Delivery failing;
    failing.mFailingOffset = 0;
    for (const NamedFile& file : Usual()) {
        EXPECT_EQ(Parse(file.mBytes, failing).mText, name + ": read error: nothing to read\n");
    }
}

TEST_P(EveryFormat, WhatIsNotOfItIsRefusedWithACause) {
    for (const NamedFile& file : Others()) {
        SCOPED_TRACE(file.mName);
        const Answer answer = Parse(file.mBytes);
        EXPECT_TRUE(IsRefusal(answer.mText, {"malformed", "unsupported", "limit"})) << answer.mText;
        ExpectInOrder(answer);
    }
}

TEST_P(EveryFormat, ObserverIsToldWhatTheLogSaysOfEachRefusalAndChangesNoAnswer) {
    const std::string name = Format().mName;
    std::vector<NamedFile> files = Others();
    files.push_back({"nothing", ""});
    const std::size_t refused = files.size();
    for (NamedFile& file : Usual()) {
        files.push_back({file.mName + ", cut", file.mBytes.substr(0, file.mBytes.size() / 3)});
        files.push_back(std::move(file));
    }
    for (const int level : {5, 2}) { // a host that logs nothing of it is told the same
        ezMediaParserManager manager(nullptr);
        manager.Add(new AskingParser(Format().mType));
        manager.Add(MakeParser().release());
        std::size_t told = 0;
        for (const NamedFile& file : files) {
            SCOPED_TRACE(file.mName);
            AwkwardStream stream(file.mBytes);
            LogCatcher quiet;
            const std::string unobserved = DumpRecord(Record(manager.Parse(stream)).get());
            std::vector<std::string> logged = quiet.Texts();
            logged.erase(std::remove_if(logged.begin(), logged.end(),
                                        [&](const std::string& aText) { return !IsRefusal(aText); }),
                         logged.end());
            RefusalObserver observer(name);
            const LogCatcher log(level);
            manager.SetObserver(&observer);
            EXPECT_EQ(DumpRecord(Record(manager.Parse(stream)).get()), unobserved);
            manager.SetObserver(nullptr);
            EXPECT_EQ(observer.mLines, logged);
            told += observer.mLines.size();
        }
        EXPECT_GE(told, refused) << level;
    }
}

// ---- deliveries ----

TEST_P(EveryFormat, AnyDeliveryGivesTheSameRecord) {
    for (const NamedFile& file : Usual()) {
        const std::string whole = Parse(file.mBytes).mText;
        for (const std::size_t maximum : {1U, 7U, 1000U, 4096U, 8191U, 8192U}) {
            Delivery trickle;
            trickle.mMaximumRead = maximum;
            EXPECT_EQ(Parse(file.mBytes, trickle).mText, whole) << file.mName << " " << maximum;
        }
    }
}

TEST_P(EveryFormat, SourceThatCannotMoveGivesTheSameRecordOrIsRefused) {
    for (const NamedFile& file : Usual()) {
        const std::string whole = Parse(file.mBytes).mText;
        for (const std::size_t maximum : {std::size_t{1}, std::size_t{1000}, Delivery::kNever}) {
            Delivery forward;
            forward.mMaximumRead = maximum;
            forward.mfSeekable = false;
            const std::string text = Parse(file.mBytes, forward).mText;
            const bool fRefusable = file.mBytes.size() > kKeptByTheStream;
            EXPECT_TRUE(text == whole || (fRefusable && IsRefusal(text, {"read error"})))
                << file.mName << " " << maximum << " " << text;
        }
    }
}

TEST_P(EveryFormat, UnknownSizeLeavesOutWhatItTellsAlone) {
    const std::set<std::string> rates = {"dl", "br", "eb", "mb", "ar", "ea", "ma", "vr", "ev", "mv"};
    // Tags may stand at the end.
    const std::set<std::string> texts = {"title", "creator", "genre", "album", "aa", "as", "co", "cm",
                                         "cp",    "cs",      "da",    "dn",    "gs", "la", "tn"};
    for (const NamedFile& file : Usual()) {
        SCOPED_TRACE(file.mName);
        const Answer whole = Parse(file.mBytes);
        Delivery unknown;
        unknown.mfSizeKnown = false;
        const Answer answer = Parse(file.mBytes, unknown);
        ASSERT_TRUE(whole.mRecord != nullptr && answer.mRecord != nullptr) << answer.mText;
        ExpectComplete(*answer.mRecord, false);
        const std::string field = TextOf(*answer.mRecord, kezInfo_DLNA);
        const bool fPicture = TextOf(*answer.mRecord, kezInfo_ClassName) == "item.imageItem";
        if (fPicture || field != "*") { // a profile may need a rate that comes of the size
            EXPECT_EQ(field, WithoutSeek(TextOf(*whole.mRecord, kezInfo_DLNA)));
        }
        std::set<std::string> but = rates;
        const bool fNamed = TextOf(*whole.mRecord, kezInfo_DLNA).find("DLNA.ORG_PN=") == 0;
        if (fNamed && field == "*" && !fPicture) { // and its rule may announce another MIME type
            but.insert(kezInfo_MimeType);
        }
        if (TextOf(*whole.mRecord, kezInfo_DurationMethod) != "header") { // one that the media states stays
            but.insert({"du", "dm", "md", "db"});
        }
        const std::set<std::string> known = LinesBut(whole.mText, but);
        const std::set<std::string> left = LinesBut(answer.mText, but);
        EXPECT_TRUE(std::includes(known.begin(), known.end(), left.begin(), left.end())) << answer.mText;
        but.insert(texts.begin(), texts.end());
        EXPECT_EQ(LinesBut(answer.mText, but), LinesBut(whole.mText, but));
        for (const std::size_t maximum : {1U, 1000U}) {
            unknown.mMaximumRead = maximum;
            EXPECT_EQ(Parse(file.mBytes, unknown).mText, answer.mText) << maximum;
        }
    }
}

TEST_P(EveryFormat, ReadThatFailsIsARefusalOrChangesNothing) {
    constexpr std::size_t kStep = 13;
    constexpr std::size_t kPlaces = 400; // of a large file, whose reads are large
    for (const NamedFile& file : Usual()) {
        const std::string whole = Parse(file.mBytes).mText;
        const std::size_t step = std::max(kStep, file.mBytes.size() / kPlaces);
        for (const std::size_t maximum : {std::size_t{500}, Delivery::kNever}) {
            for (std::size_t offset = 0; offset < file.mBytes.size(); offset += step) {
                Delivery failing;
                failing.mMaximumRead = maximum;
                failing.mFailingOffset = offset;
                const std::string text = Parse(file.mBytes, failing).mText;
                EXPECT_TRUE(text == whole || IsRefusal(text, {"read error"}))
                    << file.mName << " " << offset << " " << text;
            }
        }
    }
}

// ---- damage ----

TEST_P(EveryFormat, DamagedFileIsRefusedOrCompletelyAnnounced) {
    constexpr Places kPlaces = {std::size_t{16} * 1024, 256, 64, 61};
    for (const NamedFile& file : OwnUsual()) {
        ExpectDamageHarmless(file, kPlaces.Of(file.mBytes));
    }
}

TEST_P(EveryFormat, DamagedSampleIsRefusedOrCompletelyAnnounced) {
    constexpr Places kOwn = {std::size_t{4} * 1024, 256, 64, 61};
    constexpr Places kOthers = {32, 32, 8,
                                8}; // what begins otherwise is refused by its start, often after a search
    for (const SampleFile& sample : AllSamples()) {
        const Places& places = sample.mWinner == Format().mType ? kOwn : kOthers;
        ExpectDamageHarmless({sample.mName, sample.mBytes}, places.Of(sample.mBytes));
    }
}

// ---- what it announces ----

TEST_P(EveryFormat, DeclaresEachOfItsTypesAndWhatItAnnounces) {
    const std::unique_ptr<ezMediaParser> parser = MakeParser();
    EXPECT_EQ(parser->GetType(), Format().mType);
    const std::string declared = "," + std::string(parser->GetDLNAInfo().c_str()) + ",";
    for (const char* const type : Format().mMimeTypes) {
        EXPECT_TRUE(Contains(declared, "," + std::string(type) + ":*,")) << type;
    }
    for (const NamedFile& file : Usual()) {
        const Answer answer = Parse(file.mBytes);
        ASSERT_NE(answer.mRecord, nullptr) << file.mName;
        const std::string field = TextOf(*answer.mRecord, kezInfo_DLNA);
        const std::string profile = field.substr(0, field.find(';'));
        if (Contains(profile, "DLNA.ORG_PN=")) {
            const std::string type = TextOf(*answer.mRecord, kezInfo_MimeType);
            EXPECT_TRUE(Contains(declared, "," + type + ":" + profile + ",")) << file.mName;
        }
    }
}

TEST_P(EveryFormat, RecordIsAdjustedToWhatItsParseAnnounced) {
    const std::unique_ptr<ezMediaParser> parser = MakeParser();
    for (const NamedFile& file : Usual()) {
        SCOPED_TRACE(file.mName);
        const Answer answer = Parse(file.mBytes);
        ASSERT_NE(answer.mRecord, nullptr);
        ezMediaInfo& info = *answer.mRecord;
        const std::string whole = AnnouncementIn(info);
        info.Set(kezInfo_ClassName, "", true);
        info.Set(kezInfo_DLNA, "", true);
        info.Set(kezInfo_FileSize, static_cast<std::uint64_t>(file.mBytes.size()), true);
        EXPECT_TRUE(parser->AdjustDLNAInfo(&info));
        EXPECT_EQ(AnnouncementIn(info), whole);
    }
}

TEST(LargestBlock, IsSeen) {
    NewBlocks::ResetLargest();
    const std::vector<char> block(1000000);
    EXPECT_GE(NewBlocks::Largest(), block.size());
}
