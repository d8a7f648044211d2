#include "ez/Environment.h"
#include "ez/ExtensionMimeTypeMatcherEntry.h"
#include "ez/MediaParserManager.h"
#include "ez/MimeTypesDotIniParser.h"
#include "ez/ParseObserver.h"

#include "support/AwkwardStream.h"
#include "support/Emulation.h"
#include "support/Folders.h"
#include "support/Guide.h"
#include "support/Record.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include "ezPlatform/containers/PtrList.h"
#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

// The architecture page tells what becomes of a request, as tables. What they say of every mix of options,
// streams, answers and conformance tests is what a manager does.

namespace {

using Strings = std::vector<std::string>;
using Rows = std::vector<Strings>;

// The media types table of the test.

/// An entry; its name is its first type.
struct Line {
    bool mfExcluded;
    Strings mTypes;
    Strings mExtensions;
    Strings mMimeTypes;
    std::string mClass;
};

/// Excluded ones first, as the library has them. Some can be reached in one way, some in several, and some
/// name types that others name too; "bare" has no parser and says nothing of itself.
const std::vector<Line> kLines = {
    {true, {"hidden"}, {"clip", "gone"}, {"video/clip"}, "item.hidden"},
    {false, {"ext", "far"}, {"clip"}, {"video/other"}, "item.ext"},
    {false, {"mime"}, {"other"}, {"video/clip"}, "item.mime"},
    {false, {"both", "mime"}, {"clip"}, {"video/clip"}, "item.both"},
    {false, {"bare"}, {"bare"}, {}, ""},
    {false, {"far", "bare"}, {"far"}, {"video/far"}, "item.far"},
};
const Strings kParsers = {"hidden", "ext", "mime", "both", "far"};

std::string Joined(const Strings& aTexts, std::size_t aFrom = 0) {
    std::string joined;
    for (std::size_t i = aFrom; i < aTexts.size(); ++i) {
        joined += (joined.empty() ? "" : ",") + aTexts[i];
    }
    return joined;
}

std::string TypesFile() {
    std::string file = "[MimeTypesExcluded]\n";
    for (const Line& line : kLines) {
        file += &line == &kLines[1] ? "[MimeTypes]\n" : "";
        file += line.mTypes[0] + "=" + Joined(line.mExtensions);
        file += line.mMimeTypes.empty() ? "" : "@" + Joined(line.mMimeTypes) + "@" + line.mClass;
        file += line.mTypes.size() > 1 ? "@" + Joined(line.mTypes, 1) : "";
        file += "\n";
    }
    return file;
}

bool Has(const Strings& aTexts, const std::string& aText) {
    return std::find(aTexts.begin(), aTexts.end(), aText) != aTexts.end();
}

// A request, and what is asked for in all of them.

struct Request {
    std::string mKind = "Parse"; ///< or "AdjustDLNAInfo"
    int mOptions = 0;
    std::string mExtension;
    std::string mMimeType;
    unsigned mAnswering = 0; ///< a bit for each of kParsers
    uint32 mContext = 0;
    bool mfTestName = false;

    bool Answers(const std::string& aType) const {
        const auto found = std::find(kParsers.begin(), kParsers.end(), aType);
        return found != kParsers.end() && (mAnswering >> (found - kParsers.begin()) & 1U) != 0;
    }
};

std::string Text(const Request& aRequest) {
    return aRequest.mKind + " options " + std::to_string(aRequest.mOptions) + " extension '" +
           aRequest.mExtension + "' MIME type '" + aRequest.mMimeType + "' answering " +
           std::to_string(aRequest.mAnswering) + " context " + std::to_string(aRequest.mContext) +
           (aRequest.mfTestName ? " test file" : "");
}

constexpr unsigned kAnswerMixes = 1U << 5;
constexpr int kOptionMixes = 16;
constexpr std::array<uint32, 3> kContexts = {kProperty_CTTContext_Off, kProperty_CTTContext_NameHelps,
                                             kProperty_CTTContext_NameDecides};

/// Of how many requests one is made where an emulator runs the tests, where all would take minutes: an odd
/// number, so that the ones made have every extension, MIME type and answer among them. 1 elsewhere.
constexpr std::size_t kStride = kEmulationShare | 1U;

/// Calls a function with every request by some options in a context, as kStride has it, until it returns
/// false.
template <typename Function>
bool ForEveryRequest(int anOptions, uint32 aContext, const Function& aFunction) {
    const bool fTest = aContext != kProperty_CTTContext_Off;
    Request request;
    request.mOptions = anOptions;
    request.mContext = aContext;
    auto number = static_cast<std::size_t>(anOptions); // others with each of them
    for (const char* kind : {"Parse", "AdjustDLNAInfo"}) {
        request.mKind = kind;
        for (const char* mimeType : {"", "video/clip", "video/none"}) {
            request.mMimeType = mimeType;
            for (const char* extension : {"", "clip", "gone", "bare", "none"}) {
                request.mExtension = extension;
                for (unsigned mix = 0; mix < kAnswerMixes * (fTest ? 2 : 1); ++mix) {
                    request.mAnswering = mix % kAnswerMixes;
                    request.mfTestName = mix >= kAnswerMixes;
                    if (number++ % kStride == 0 && !aFunction(request)) {
                        return false;
                    }
                }
            }
        }
        if (fTest) {
            break; // a record that is adjusted has no name
        }
    }
    return true;
}

template <typename Function>
bool ForEveryRequest(int anOptionMixes, const Function& aFunction) {
    for (const uint32 context : kContexts) {
        for (int options = 0; options < anOptionMixes; ++options) {
            if (!ForEveryRequest(options, context, aFunction)) {
                return false;
            }
        }
    }
    return true;
}

// What the page says of a request. A word that it does not use ends the test.

constexpr const char* kRecordOfLast = "a record of the last entry alone";

const Strings kPassHeadings = {"request",
                               "pass",
                               "parse option",
                               "where there is",
                               "not after",
                               "tries the entries",
                               "and of their parsers",
                               "an excluded one's answer",
                               "where nothing answers"};
const Strings kContextHeadings = {"`kProperty_CTTContext`", "the name is asked",
                                  "of a parser's record it replaces", "rates"};

const std::map<std::string, int> kOptions = {
    {"", 0},
    {"`kParseOption_ParseWithAllParserIfNoExtension`", kParseOption_ParseWithAllParserIfNoExtension},
    {"`kParseOption_ParseWithAllParserIfFailed`", kParseOption_ParseWithAllParserIfFailed},
    {"`kParseOption_ParseWithAllParserEverytime`", kParseOption_ParseWithAllParserEverytime}};

struct Page {
    Rows mPasses;
    Rows mContexts;
};

Page ReadPage() {
    const std::string page = ReadWholeFile(EZ_SAMPLES "/../docs/architecture.md");
    return {GuideTable(page, kPassHeadings), GuideTable(page, kContextHeadings)};
}

/// Which of the words of its column a cell says.
std::size_t WordIn(const std::string& aCell, std::initializer_list<const char*> aWords) {
    const auto found = std::find(aWords.begin(), aWords.end(), aCell);
    if (found == aWords.end()) {
        throw std::out_of_range(aCell);
    }
    return static_cast<std::size_t>(found - aWords.begin());
}

class Prediction {
public:
    Prediction(const Page& aPage, const Request& aRequest) : mRequest(aRequest) {
        mNameAsked = ContextOf(aPage).at(1);
        for (const Strings& row : aPage.mPasses) {
            if (row.at(0) == "`" + aRequest.mKind + "`" && !mfAnswered && IsMade(row)) {
                MakePass(row);
            }
        }
    }

    const std::string& Told() const { return mTold; }

private:
    /// A value that has no name reads as that of a name that helps.
    const Strings& ContextOf(const Page& aPage) const {
        static const std::map<uint32, std::string> kNames = {
            {kProperty_CTTContext_Off, "`kProperty_CTTContext_Off`"},
            {kProperty_CTTContext_NameDecides, "`kProperty_CTTContext_NameDecides`"}};
        const auto known = kNames.find(mRequest.mContext);
        const std::string name = known != kNames.end() ? known->second : "`kProperty_CTTContext_NameHelps`";
        for (const Strings& row : aPage.mContexts) {
            if (row.at(0) == name) {
                return row;
            }
        }
        throw std::out_of_range(name);
    }

    bool IsMade(const Strings& aRow) const {
        const std::array<bool, 5> streams = {true, !mRequest.mMimeType.empty(), mRequest.mMimeType.empty(),
                                             !mRequest.mExtension.empty(), mRequest.mExtension.empty()};
        const std::size_t stream =
            WordIn(aRow.at(3), {"", "a MIME type", "no MIME type", "an extension", "no extension"});
        const int option = kOptions.at(aRow.at(2));
        const Strings notAfter = GuideNames(aRow.at(4));
        return (mRequest.mOptions & option) == option && streams[stream] &&
               std::none_of(notAfter.begin(), notAfter.end(),
                            [this](const std::string& aPass) { return mMade.count(aPass) != 0; });
    }

    std::vector<const Line*> EntriesOf(const std::string& aWhich) const {
        const std::size_t which = WordIn(aWhich, {"all", "of the MIME type", "of the extension"});
        std::vector<const Line*> entries;
        for (const Line& line : kLines) {
            if (which == 0 || (which == 1 && Has(line.mMimeTypes, mRequest.mMimeType)) ||
                (which == 2 && Has(line.mExtensions, mRequest.mExtension))) {
                entries.push_back(&line);
            }
        }
        return entries;
    }

    void MakePass(const Strings& aRow) {
        const std::string pass = GuideNames(aRow.at(1)).at(0);
        mMade.insert(pass);
        mTold += pass + "{";
        const std::vector<const Line*> entries = EntriesOf(aRow.at(5));
        for (const Line* entry : entries) {
            mTold += " " + entry->mTypes[0] + (entry->mfExcluded ? "!" : "") + "(";
            const bool fAnswered = TryEntry(*entry, aRow.at(6));
            const bool fThrownAway =
                WordIn(aRow.at(7), {"counts", "is thrown away"}) == 1 && entry->mfExcluded;
            const bool fAlone = WordIn(aRow.at(8), {"", kRecordOfLast}) == 1 && entry == entries.back() &&
                                !entry->mMimeTypes.empty();
            mfAnswered = fAnswered ? !fThrownAway : fAlone;
            mTold += std::string(" )") + (fAnswered ? fThrownAway ? "Excluded" : "Won"
                                          : fAlone  ? "MadeRecord"
                                                    : "Declined");
            if (fAnswered) {
                break;
            }
        }
        mTold += std::string(" }") + (mfAnswered ? "yes " : "no ");
    }

    bool TryEntry(const Line& anEntry, const std::string& aParsers) {
        bool fAnswered = false;
        for (const std::string& type : anEntry.mTypes) {
            if (!fAnswered) {
                mTold += " " + type + ":";
                const char* const result = TryType(type, aParsers);
                fAnswered = result == kAnswered;
                mTold += result;
            }
        }
        if (mRequest.mKind != "Parse") {
            return fAnswered;
        }
        const std::size_t asked =
            WordIn(mNameAsked, {"never", "where no parser of an entry answered", "for every entry"});
        if (asked == 2 || (asked == 1 && !fAnswered)) {
            mTold += mRequest.mfTestName ? " name" : " noname";
            fAnswered = fAnswered || mRequest.mfTestName;
        }
        return fAnswered;
    }

    const char* TryType(const std::string& aType, const std::string& aParsers) {
        if (!Has(kParsers, aType)) {
            return "NoParser";
        }
        const bool fOnce = WordIn(aParsers, {"those not tried yet", "all"}) == 0;
        if (!mTried.insert(aType).second && fOnce) {
            return "TriedBefore";
        }
        mTold += "*";
        return mRequest.Answers(aType) ? kAnswered : "Declined";
    }

    static constexpr const char* kAnswered = "Answered";
    const Request& mRequest;
    std::string mNameAsked;
    std::set<std::string> mMade;
    std::set<std::string> mTried;
    bool mfAnswered = false;
    std::string mTold;
};

// What a manager does.

/// Notes what it is told in the words of a prediction. Of the media types ini parser itself it notes nothing.
class Listener : public ezParseObserver {
public:
    std::string mTold;

    void PassBegan(ezParsePass aPass) override {
        static constexpr std::array<const char*, 6> kNames = {"AllFirst", "MimeType",  "NoExtension",
                                                              "Failed",   "Extension", "Adjust"};
        mTold += std::string(kNames[static_cast<std::size_t>(aPass)]) + "{";
    }
    void PassEnded(ezParsePass /*aPass*/, bool afAnswered) override {
        mTold += afAnswered ? " }yes " : " }no ";
    }
    void EntryBegan(const ExtensionMimeTypeMatcherEntry& anEntry, bool afExcluded) override {
        mTold += " " + std::string(static_cast<const char*>(*ezPtrList_GetAt(anEntry.mTypes, 0))) +
                 (afExcluded ? "!" : "") + "(";
    }
    void EntryEnded(const ExtensionMimeTypeMatcherEntry& /*anEntry*/, ezEntryResult aResult) override {
        static constexpr std::array<const char*, 4> kNames = {"Declined", "Won", "Excluded", "MadeRecord"};
        mTold += std::string(" )") + kNames[static_cast<std::size_t>(aResult)];
    }
    void TypeBegan(const char* aType) override {
        mTold += *aType != '*' ? std::string(" ") + aType + ":" : "";
    }
    void TypeEnded(const char* aType, ezTypeResult aResult) override {
        static constexpr std::array<const char*, 4> kNames = {"Answered", "Declined", "NoParser",
                                                              "TriedBefore"};
        mTold += *aType != '*' ? kNames[static_cast<std::size_t>(aResult)] : "";
    }
    void ParserBegan(const ezBaseParser& aParser, const char* /*aName*/) override {
        mTold += aParser.GetType() != "*" ? "*" : "";
    }
    void TestFileNameAsked(const ezMediaInfo* anInfo) override {
        mTold += anInfo != nullptr ? " name" : " noname";
    }
};

/// Answers as the request says, with a record that says nothing.
class ObedientParser : public ezMediaParser {
public:
    ObedientParser(const std::string& aType, const Request& aRequest)
        : ezMediaParser(aType.c_str(), nullptr, false), mRequest(aRequest) {}
    ezMediaInfo* Parse(ezMediaParserStream& /*aStream*/) override {
        return mRequest.Answers(mType.c_str()) ? new ezMediaInfo : nullptr;
    }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return mRequest.Answers(mType.c_str()); }

private:
    const Request& mRequest;
};

/// A file that states a MIME type.
class TypedStream : public AwkwardStream {
public:
    TypedStream(const Request& aRequest)
        : AwkwardStream("", Delivery(), aRequest.mfTestName ? "/ctt/B-MP2PS_N-1.mpg" : "/home/own.mpg"),
          mMimeType(aRequest.mMimeType) {
        SetExtension(aRequest.mExtension.c_str());
    }
    void CopyInfo(ezMediaInfo* anInfo) override {
        AwkwardStream::CopyInfo(anInfo);
        if (!mMimeType.empty()) {
            anInfo->Set(kezInfo_MimeType, mMimeType.c_str(), false);
        }
    }

private:
    std::string mMimeType;
};

class Host {
public:
    Host(int anOptions, uint32 aContext) {
        mFolder.Write(kezMediaTypesFileName, TypesFile());
        mEnvironment.Set(kProperty_ReadOnlyConfigPath, mFolder.GetPath());
        mEnvironment.Set(kProperty_ReadWriteConfigPath, mFolder.GetPath());
        mEnvironment.SetCTTContext(aContext);
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(anOptions);
        for (const std::string& type : kParsers) {
            mManager->Add(new ObedientParser(type, mRequest));
        }
        mManager->SetObserver(&mListener);
    }

    /// What a request does.
    std::string Do(const Request& aRequest) {
        mRequest = aRequest;
        mListener.mTold.clear();
        if (aRequest.mKind == "Parse") {
            TypedStream stream(aRequest);
            const Record record(mManager->Parse(stream));
        } else {
            ezMediaInfo info;
            info.Set(kezInfo_MimeType, aRequest.mMimeType.c_str(), true);
            info.Set(kezInfo_FileExtension, aRequest.mExtension.c_str(), true);
            mManager->AdjustDLNAInfo(&info);
        }
        return mListener.mTold;
    }

private:
    TemporaryFolder mFolder;
    ezEnvironment mEnvironment;
    Request mRequest;
    Listener mListener;
    std::unique_ptr<ezMediaParserManager> mManager;
};

} // namespace

TEST(RequestPage, ManagerMakesThePassesThatItTells) {
    const Page page = ReadPage();
    ASSERT_EQ(page.mPasses.size(), 6U);
    ASSERT_EQ(page.mContexts.size(), 3U);
    std::size_t requests = 0;
    const auto expect = [&](int anOptions, uint32 aContext) {
        Host host(anOptions, aContext);
        ForEveryRequest(anOptions, aContext, [&](const Request& aRequest) {
            ++requests;
            EXPECT_EQ(host.Do(aRequest), Prediction(page, aRequest).Told()) << Text(aRequest);
            return !HasFailure();
        });
    };
    for (const uint32 context : kContexts) {
        for (int options = 0; options < kOptionMixes && !HasFailure(); ++options) {
            expect(options, context);
        }
    }
    EXPECT_EQ(requests, kStride == 1 ? 46080U : 4188U);
    expect(kParseOption_Default, 7); // reads as a name that helps
}

// The tables are read: another one tells another request.

namespace {

/// Whether some request by one of some options is another one.
bool IsNoticed(const Page& aChanged, int anOptionMixes = kOptionMixes) {
    static const Page kPage = ReadPage();
    return !ForEveryRequest(anOptionMixes, [&](const Request& aRequest) {
        return Prediction(kPage, aRequest).Told() == Prediction(aChanged, aRequest).Told();
    });
}

/// What the cells of a column may say.
Strings WordsOf(std::size_t aColumn) {
    switch (aColumn) {
    case 2: {
        Strings words;
        for (const auto& option : kOptions) {
            words.push_back(option.first);
        }
        return words;
    }
    case 3:
        return {"", "a MIME type", "no MIME type", "an extension", "no extension"};
    case 5:
        return {"all", "of the MIME type", "of the extension"};
    case 6:
        return {"those not tried yet", "all"};
    case 7:
        return {"counts", "is thrown away"};
    case 8:
        return {"", kRecordOfLast};
    default:
        return {};
    }
}

} // namespace

TEST(RequestPage, PassThatChangesIsNoticed) {
    const Page page = ReadPage();
    for (std::size_t row = 0; row < page.mPasses.size(); ++row) {
        const Strings& pass = page.mPasses[row];
        Page changed = page;
        changed.mPasses.erase(changed.mPasses.begin() + static_cast<std::ptrdiff_t>(row));
        EXPECT_TRUE(IsNoticed(changed)) << "without " << pass[1];
        for (std::size_t column = 0; column < pass.size(); ++column) {
            for (const std::string& word : WordsOf(column)) {
                changed = page;
                changed.mPasses[row][column] = word;
                EXPECT_TRUE(word == pass[column] || IsNoticed(changed)) << pass[1] << ": " << word;
            }
        }
        for (std::size_t earlier = 0; earlier < row && page.mPasses[earlier][0] == pass[0]; ++earlier) {
            const Strings& before = page.mPasses[earlier];
            const std::size_t at = pass[4].find(before[1]);
            changed = page;
            std::string& notAfter = changed.mPasses[row][4];
            if (at == std::string::npos) {
                notAfter += before[1];
            } else {
                notAfter.erase(at, before[1].size());
            }
            const bool fNeverBoth = before[3] == "no extension" && pass[3] == "an extension";
            EXPECT_TRUE(fNeverBoth || IsNoticed(changed)) << pass[1] << " not after: " << notAfter;
            changed = page;
            std::swap(changed.mPasses[row], changed.mPasses[earlier]);
            EXPECT_TRUE(IsNoticed(changed)) << pass[1] << " before " << before[1];
        }
    }
}

TEST(RequestPage, WordThatItDoesNotKnowEndsTheReading) {
    Page page = ReadPage();
    Request request;
    request.mMimeType = "video/clip";
    for (const std::size_t column : {2U, 3U, 5U, 6U, 7U, 8U}) {
        Page changed = page;
        changed.mPasses[1][column] = "perhaps";
        EXPECT_THROW(Prediction(changed, request), std::out_of_range) << column;
    }
    page.mContexts[0][1] = "perhaps";
    EXPECT_THROW(Prediction(page, request), std::out_of_range);
}

TEST(RequestPage, ContextThatChangesIsNoticed) {
    const Page page = ReadPage();
    for (std::size_t row = 0; row < page.mContexts.size(); ++row) {
        for (const Strings& other : page.mContexts) {
            Page changed = page;
            changed.mContexts[row][1] = other[1];
            EXPECT_TRUE(other == page.mContexts[row] || IsNoticed(changed, 1)) << other[1];
        }
    }
}
