#include "companions/ezFormats/FormatHost.h"

#include "ez/MimeTypesDotIniParser.h"

#include "ezPlatform/text/StringList.h"

#include "support/Folders.h"

#include <filesystem>
#include <map>
#include <set>
#include <utility>
#include <vector>

// Which parser wins, whatever the name of a file says.
//
// Who claims a sample is asked of each parser alone, for all samples. Which of them are tried follows from
// the name: so a few samples of each winner stand for the others under a name, and all of them have two
// turns.

namespace {

/// One extension of each line that leads to a parser, and some others, most of them without one.
std::set<std::string> Extensions() {
    std::set<std::string> extensions = {"mpa", "jpeg", "apng", "aac", "wav",  "flac",    "ogg", "wma",
                                        "avi", "mkv",  "ts",   "gif", "txt",  "pcm",     "ac3", "mpg",
                                        "wmv", "m3u8", "jp2",  "tif", "heic", "unheard", ""};
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        for (const MediaTypesLine& line : format->mLines) {
            extensions.insert(*line.mExtensions.begin());
        }
    }
    return extensions;
}

/// The samples by their winners.
std::map<std::string, std::vector<const SampleFile*>> SamplesByWinner() {
    std::map<std::string, std::vector<const SampleFile*>> samples;
    for (const SampleFile& sample : AllSamples()) {
        samples[sample.mWinner].push_back(&sample);
    }
    return samples;
}

/// Some samples of each winner under each extension, and every sample under no extension and an unknown one.
std::vector<std::pair<const SampleFile*, std::string>> NamedSamples() {
    std::vector<std::pair<const SampleFile*, std::string>> named;
    const std::set<std::string> extensions = Extensions();
    for (const auto& [winner, samples] : SamplesByWinner()) {
        const std::size_t count = 2 * samples.size() / extensions.size() + 1; // under each
        std::size_t next = 0;
        for (const std::string& extension : extensions) {
            for (std::size_t i = 0; i < count; ++i, ++next) {
                named.emplace_back(samples[next % samples.size()], extension);
            }
        }
    }
    for (const SampleFile& sample : AllSamples()) {
        named.emplace_back(&sample, "");
        named.emplace_back(&sample, "unheard");
    }
    return named;
}

std::string Named(const std::string& anExtension) {
    return "/media/some" + (anExtension.empty() ? "" : "." + anExtension);
}

} // namespace

TEST(WinnerMatrix, StatesTheWinnerOfEverySample) {
    std::set<std::string> winners;
    for (const SampleFile& sample : AllSamples()) {
        EXPECT_NE(sample.mWinner, "") << sample.mGolden;
        winners.insert(sample.mWinner);
    }
    std::set<std::string> types = {"-"};
    for (const auto& parser : AllParsers()) {
        types.insert(parser->GetType().c_str());
    }
    EXPECT_EQ(winners, types) << "each parser wins a sample, and some are for none";
}

TEST(WinnerMatrix, SaysWhyNoParserMayClaimASample) {
    for (const SampleFile& sample : AllSamples()) {
        if (sample.mWinner == "-") {
            EXPECT_EQ(sample.mReason.find(" # "), 0U) << sample.mGolden << ": \"Winner: - # reason\"";
        }
    }
}

TEST(WinnerMatrix, EachParserClaimsItsSamplesAndNoneOfAnother) {
    for (const auto& parser : AllParsers()) {
        for (const SampleFile& sample : AllSamples()) {
            AwkwardStream stream(sample.mBytes);
            EXPECT_EQ(Record(parser->Parse(stream)) != nullptr, parser->GetType() == sample.mWinner.c_str())
                << sample.mName << " by " << parser->GetType().c_str();
        }
    }
}

TEST(WinnerMatrix, EverySampleHasItsTurnUnderAnotherName) {
    std::map<std::string, std::size_t> turns;
    for (const auto& [sample, extension] : NamedSamples()) {
        const bool fListed = !extension.empty() && extension != "unheard";
        turns[sample->mName] +=
            fListed && "." + extension != std::filesystem::path(sample->mName).extension();
    }
    for (const SampleFile& sample : AllSamples()) {
        EXPECT_GT(turns[sample.mName], 0U) << sample.mName;
    }
}

TEST(WinnerMatrix, ContentDecidesUnderEveryExtension) {
    for (const int options :
         {kParseOption_ParseWithAllParserEverytime | 0,
          kParseOption_ParseWithAllParserIfFailed | kParseOption_ParseWithAllParserIfNoExtension}) {
        FormatHost host(options);
        for (const auto& [sample, extension] : NamedSamples()) {
            EXPECT_EQ(host.Winner(sample->mBytes, Named(extension)), sample->mWinner)
                << sample->mName << " as " << Named(extension) << ", options " << options;
        }
    }
}

TEST(WinnerMatrix, OwnExtensionFindsTheWinnerWithoutOptions) {
    FormatHost host;
    for (const SampleFile& sample : AllSamples()) {
        EXPECT_EQ(host.Winner(sample.mBytes, "/media/" + sample.mName), sample.mWinner) << sample.mName;
    }
}

TEST(WinnerMatrix, MediaWhoseNameLiesFindsItsWinnerWithoutOptions) {
    const std::set<std::string> without = {"txt", "unheard", ""}; // no line publishes these, so none is tried
    FormatHost host;
    for (const auto& [sample, extension] : NamedSamples()) {
        const std::string expected = without.count(extension) != 0 ? "-" : sample->mWinner;
        EXPECT_EQ(host.Winner(sample->mBytes, Named(extension)), expected)
            << sample->mName << " as " << Named(extension);
    }
}
