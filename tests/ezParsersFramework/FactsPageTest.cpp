#include "ez/DLNAMediaMapper.h"
#include "ez/Environment.h"
#include "ez/MediaParserManager.h"
#include "ez/ParseObserver.h"

#include "support/AwkwardStream.h"
#include "support/Folders.h"
#include "support/Guide.h"
#include "support/MapperFolder.h"
#include "support/Record.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

// The architecture page tells which step states which facts of a record, and which it replaces.

namespace {

using Strings = std::vector<std::string>;
using Rows = std::vector<Strings>;
using Keys = std::set<std::string>;
using Facts = std::map<std::string, Keys>; ///< the keys that a step stated

const std::string kPage = ReadWholeFile(EZ_SAMPLES "/../docs/architecture.md");
const Rows kSteps = GuideTable(kPage, {"step", "when", "states", "replaces"});
const Rows kContexts = GuideTable(
    kPage, {"`kProperty_CTTContext`", "the name is asked", "of a parser's record it replaces", "rates"});

Keys NamesIn(const std::string& aCell) {
    const Strings names = GuideNames(aCell);
    return {names.begin(), names.end()};
}

/// The steps in their order.
constexpr std::array<const char*, 8> kNames = {"Parser",     "TestFileName",   "EntryAlone",  "BitRates",
                                               "EntryNames", "TypesExtension", "MediaMapper", "Stream"};

/// Notes the steps of the facts.
class Listener : public ezParseObserver {
public:
    Facts mFacts;
    void FactStated(const char* aKey, const ezFactSource& aSource) override {
        mFacts[kNames[static_cast<std::size_t>(aSource.mStep)]].insert(aKey);
    }
};

/// What a parser answers: nothing, a record that says nothing, rates of which others follow, or everything.
enum class Answer { None, Empty, Rates, Full };

class TellingParser : public ezMediaParser {
public:
    explicit TellingParser(Answer anAnswer) : ezMediaParser("clip", nullptr, false), mAnswer(anAnswer) {}
    ezMediaInfo* Parse(ezMediaParserStream& /*aStream*/) override {
        if (mAnswer == Answer::None) {
            return nullptr;
        }
        auto* const info = new ezMediaInfo;
        if (mAnswer != Answer::Empty) {
            for (const char* key : {"ta", "vt", "ar", "vr"}) {
                info->Set(key, 1, true);
            }
            info->Set("ma", 2, true);
            info->Set("mv", 2, true);
        }
        if (mAnswer == Answer::Full) {
            for (const char* key : {"ea", "ev", "br", "mb", "eb", "du", "ac", "bs", "fs"}) {
                info->Set(key, 3, true);
            }
            for (const char* key : {"mt", "cn", "dl", "fe"}) {
                info->Set(key, "own", true);
            }
            info->mFullPath = "own";
            info->mLastModificationTime = ezDateTime(1, 0);
        }
        return info;
    }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

private:
    Answer mAnswer;
};

class TimedStream : public AwkwardStream {
public:
    TimedStream(const char* aPath, const char* anExtension) : AwkwardStream("content", Delivery(), aPath) {
        SetExtension(anExtension);
        mLastModificationTime = ezDateTime(2, 0);
    }
};

constexpr const char* kTestFile = "/ctt/B-MP2PS_N-1.mpg";

struct Request {
    uint32 mContext = kProperty_CTTContext_Off;
    Answer mAnswer = Answer::None;
    const char* mPath = "/home/own.mpg";
    const char* mExtension = "clip";
    const char* mMapped = ""; ///< what the media mapper says of the file; empty without a mapper

    /// Whether a step is made of it, by what the page says. A word that the page does not use ends the test.
    bool Is(const std::string& aWhen) const {
        const bool fEntry = std::string(mExtension) == "clip";
        const bool fNamed = mContext != kProperty_CTTContext_Off && std::string(mPath) == kTestFile;
        const bool fAnswered = mAnswer != Answer::None;
        const std::map<std::string, bool> words = {
            {"a parser answers", fEntry && fAnswered},
            {"the name answers", fEntry && fNamed},
            {"nothing answers for the entries of the extension", fEntry && !fAnswered && !fNamed},
            {"an entry has won", fEntry && (fAnswered || fNamed)},
            {"the operator's table knows the file", *mMapped != '\0'},
            {"always", true}};
        return words.at(aWhen);
    }

    Facts Told() const {
        TemporaryFolder folder;
        folder.Write(kezMediaTypesFileName, "[MimeTypes]\nclip=clip@video/clip@item.clip\n");
        ezEnvironment environment(folder.GetPath().c_str());
        environment.SetCTTContext(mContext);
        std::unique_ptr<OpenMapper> mapper;
        std::unique_ptr<MapperFolder> mappers;
        if (*mMapped != '\0') {
            mappers = std::make_unique<MapperFolder>();
            mapper =
                mappers->Loaded(std::string("own.mpg,") + mMapped + "\nB-MP2PS_N-1.mpg," + mMapped + "\n");
        }
        ezMediaParserManager manager(environment.Get());
        manager.AddStandardParsers(kParseOption_Default);
        manager.AddDLNAMediaMapperParser(mapper.get());
        manager.Add(new TellingParser(mAnswer));
        Listener listener;
        manager.SetObserver(&listener);
        TimedStream stream(mPath, mExtension);
        const Record record(manager.Parse(stream));
        return listener.mFacts;
    }
};

/// Adds what the steps of a request state, and expects each of them to be made.
void Note(const Request& aRequest, Facts& anAll) {
    for (const auto& step : aRequest.Told()) {
        anAll[step.first].insert(step.second.begin(), step.second.end());
        for (const Strings& row : kSteps) {
            if (row[0] == "`" + step.first + "`") {
                EXPECT_TRUE(aRequest.Is(row[1]))
                    << row[0] << " " << aRequest.mPath << "/" << aRequest.mExtension;
            }
        }
    }
}

constexpr const char* kSound = "audio/L16;rate=44100;channels=2,LPCM,0:01:00,,,5000";

} // namespace

TEST(FactsPage, StepsAreThoseThatObserversAreToldInTheirOrder) {
    ASSERT_EQ(kSteps.size(), kNames.size());
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        EXPECT_EQ(kSteps[i][0], std::string("`") + kNames[i] + "`");
    }
}

TEST(FactsPage, StepsStateTheKeysThatItTells) {
    Facts told;
    for (const Answer answer : {Answer::None, Answer::Empty, Answer::Rates, Answer::Full}) {
        for (const uint32 context :
             {kProperty_CTTContext_Off, kProperty_CTTContext_NameHelps, kProperty_CTTContext_NameDecides}) {
            for (const char* path : {"/home/own.mpg", kTestFile}) {
                for (const char* extension : {"clip", "none"}) {
                    for (const char* mapped : {"", kSound, "video/x,P"}) {
                        Note({context, answer, path, extension, mapped}, told);
                    }
                }
            }
        }
    }
    for (const Strings& row : kSteps) {
        const std::string step = GuideNames(row[0]).at(0);
        EXPECT_FALSE(told[step].empty()) << step;
        if (row[2] != "what it read" && row[2] != "what the name says") {
            EXPECT_EQ(told[step], NamesIn(row[2])) << step;
        }
    }
}

TEST(FactsPage, StepsReplaceTheKeysThatItTells) {
    Facts told;
    for (const char* path : {"/home/own.mpg", kTestFile}) {
        for (const uint32 context : {kProperty_CTTContext_Off, kProperty_CTTContext_NameDecides}) {
            for (const char* mapped : {"", kSound}) {
                Note({context, Answer::Full, path, "clip", mapped}, told);
            }
        }
    }
    for (const Strings& row : kSteps) {
        const std::string step = GuideNames(row[0]).at(0);
        if (step != "Parser") {
            EXPECT_EQ(told[step], NamesIn(row[3])) << step;
        }
    }
}

TEST(FactsPage, NameOfATestFileReplacesWhatItTells) {
    const std::map<std::string, uint32> contexts = {
        {"`kProperty_CTTContext_Off`", kProperty_CTTContext_Off},
        {"`kProperty_CTTContext_NameHelps`", kProperty_CTTContext_NameHelps},
        {"`kProperty_CTTContext_NameDecides`", kProperty_CTTContext_NameDecides}};
    ASSERT_EQ(kContexts.size(), contexts.size());
    for (const Strings& row : kContexts) {
        const uint32 context = contexts.at(row[0]);
        Facts full = Request{context, Answer::Full, kTestFile}.Told();
        EXPECT_EQ(full["TestFileName"], NamesIn(row[2])) << row[0];
        Facts empty = Request{context, Answer::Empty, kTestFile}.Told();
        const bool fFollow = row[3] == "follow from one another";
        EXPECT_EQ(empty["BitRates"].count("ma"), fFollow ? 1U : 0U) << row[0];
        if (!fFollow) {
            EXPECT_EQ(empty["BitRates"], NamesIn(row[3])) << row[0];
        }
    }
}
