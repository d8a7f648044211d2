#include "companions/ezFormats/FormatHost.h"

#include "ez/FileMediaParserStream.h"

#include "support/Folders.h"
#include "support/Golden.h"

#include <map>
#include <numeric>
#include <set>

namespace {

const std::string kRefusals = EZ_TEST_DATA "/refusals/";

/// The parser that knows a sample, as it was stated once; of a new one, what is found.
std::string WinnerOf(const SampleFile& aSample) {
    return aSample.mWinner.empty() ? FormatHost().Winner(aSample.mBytes, "/samples/" + aSample.mName)
                                   : aSample.mWinner;
}

/// What stands in a record: who knows the sample, and what the parsers make of it.
std::string Describe(const SampleFile& aSample) {
    return "Winner: " + WinnerOf(aSample) + aSample.mReason + "\n\n" +
           DumpRecord(FormatHost().Parse(aSample.mBytes, "/samples/" + aSample.mName).get());
}

/// The sample and the parser that "formats/grey.png: JPEGParser: malformed: ..." is about.
std::string PairOf(const std::string& aLine) {
    return aLine.substr(0, aLine.find(": ", aLine.find(": ") + 2));
}

/// Refusals as they are recorded: by file, and in each the lines by what they are about.
using Refusals = std::map<std::string, std::set<std::string>>;

Refusals RecordedRefusals() {
    Refusals recorded;
    for (const auto& entry : std::filesystem::directory_iterator(kRefusals)) {
        std::set<std::string>& pairs = recorded[entry.path().string()];
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            pairs.insert(PairOf(line));
        }
    }
    return recorded;
}

/// The file that a refusal belongs to. What is recorded stays where it is. What is new lies with what came
/// last: in the file of a parser that has none yet, else in that of the parser that knows the sample, as it
/// is the sample that is new. So neither a new parser nor a new sample changes a file of the others.
std::string FileOf(const std::string& aLine, const std::string& aType, const SampleFile& aSample,
                   const Refusals& aRecorded) {
    for (const auto& file : aRecorded) {
        if (file.second.count(PairOf(aLine)) != 0) {
            return file.first;
        }
    }
    std::string own = kRefusals + aType + ".expected";
    if (aRecorded.count(own) == 0) {
        return own;
    }
    const std::string winner = WinnerOf(aSample);
    return kRefusals + (winner == "-" ? "none" : winner) + ".expected";
}

/// How each parser refuses each sample that it does not know.
Refusals FoundRefusals(const Refusals& aRecorded) {
    Refusals found;
    for (const auto& parser : AllParsers()) {
        for (const SampleFile& sample : AllSamples()) {
            const LogCatcher log;
            AwkwardStream stream(sample.mBytes);
            const Record record(parser->Parse(stream));
            if (record == nullptr) {
                const std::string line = sample.mName + ": " + log.Texts().back();
                found[FileOf(line, parser->GetType().c_str(), sample, aRecorded)].insert(line);
            }
        }
    }
    return found;
}

} // namespace

TEST(FormatSamples, AreReadAsRecorded) {
    for (const SampleFile& sample : AllSamples()) {
        ExpectRecorded(sample.mGolden, Describe(sample));
    }
}

TEST(FormatSamples, AreRefusedAsRecorded) {
    std::filesystem::create_directories(kRefusals);
    const Refusals recorded = RecordedRefusals();
    Refusals found = FoundRefusals(recorded);
    for (const auto& file : recorded) {
        found[file.first]; // of which nothing is left
    }
    for (const auto& file : found) {
        ExpectRecorded(file.first, std::accumulate(file.second.begin(), file.second.end(), std::string()));
    }
    EXPECT_GE(found.size(), AllParsers().size());
}

TEST(FormatSamples, EachRecordedFileIsOfASample) {
    std::set<std::string> wanted;
    for (const SampleFile& sample : AllSamples()) {
        EXPECT_TRUE(wanted.insert(sample.mGolden).second) << sample.mName;
    }
    ExpectNoOtherRecords(EZ_TEST_DATA "/formats", wanted);
    EXPECT_GE(wanted.size(), 31U);
}

TEST(FormatSamples, SecondParseFindsTheSame) {
    FormatHost host;
    for (const SampleFile& sample : AllSamples()) {
        const std::string first = DumpRecord(host.Parse(sample.mBytes, sample.mName).get());
        EXPECT_EQ(DumpRecord(host.Parse(sample.mBytes, sample.mName).get()), first) << sample.mName;
    }
}

TEST(FormatSamples, StreamThatOpensItselfWithItsFirstReadGivesTheSameRecord) {
    for (const SampleFile& sample : AllSamples()) {
        const ezCString path(std::string(EZ_SAMPLES "/") + sample.mName);
        for (const auto& parser : AllParsers()) {
            ezFileMediaParserStream opened(path);
            ASSERT_TRUE(opened.Open()) << sample.mName;
            ezFileMediaParserStream closed(path);
            ASSERT_EQ(closed.GetMediaSize(), 0U) << sample.mName;
            const Record record(parser->Parse(closed));
            EXPECT_EQ(DumpRecord(record.get()), DumpRecord(Record(parser->Parse(opened)).get()))
                << sample.mName;
        }
    }
}
