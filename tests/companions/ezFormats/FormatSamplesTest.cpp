#include "companions/ezFormats/FormatHost.h"

#include "ez/FileMediaParserStream.h"

#include "support/Folders.h"
#include "support/WholeFile.h"

#include <cstdlib>

namespace {

const std::string kGoldenFolder = EZ_TEST_DATA "/formats/";

std::string GoldenFile(const SampleFile& aSample) {
    return kGoldenFolder + std::filesystem::path(aSample.mName).filename().string() + ".expected";
}

/// The record of a sample, and why each parser that refuses it does so.
std::string Describe(const SampleFile& aSample) {
    std::string text =
        DumpRecord(FormatHost().Parse(aSample.mBytes, "/samples/" + aSample.mName).get()) + "\nRefusals\n";
    for (const auto& parser : AllParsers()) {
        const LogCatcher log;
        AwkwardStream stream(aSample.mBytes);
        const Record record(parser->Parse(stream));
        text += record == nullptr ? log.Texts().back() : "";
    }
    return text;
}

} // namespace

TEST(FormatSamples, AreReadAsRecorded) {
    for (const SampleFile& sample : AllSamples()) {
        const std::string found = Describe(sample);
        const std::string path = GoldenFile(sample);
        if (std::getenv("EZ_UPDATE_GOLDEN") != nullptr) {
            std::filesystem::create_directories(kGoldenFolder);
            std::ofstream file(path, std::ios::binary);
            file << found;
            file.close();
            ASSERT_TRUE(file.good()) << path;
        }
        EXPECT_EQ(found, ReadWholeFile(path)) << path << ": EZ_UPDATE_GOLDEN=1 records what is found";
    }
}

TEST(FormatSamples, EachRecordedFileIsOfASample) {
    std::vector<std::string> wanted;
    for (const SampleFile& sample : AllSamples()) {
        wanted.push_back(GoldenFile(sample));
    }
    for (const auto& entry : std::filesystem::directory_iterator(kGoldenFolder)) {
        const bool fExpected = entry.path().extension() == ".expected";
        const bool fWanted = std::find(wanted.begin(), wanted.end(), entry.path().string()) != wanted.end();
        EXPECT_TRUE(!fExpected || fWanted) << entry.path();
    }
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
