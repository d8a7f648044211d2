#include "companions/ezFormats/FormatHost.h"

#include "ez/MimeTypesDotIniParser.h"

#include "ezPlatform/text/StringList.h"

#include "support/Folders.h"

#include <set>

// Which parser wins, whatever the name of a file says.

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

TEST(WinnerMatrix, ContentDecidesUnderEveryExtension) {
    for (const int options :
         {kParseOption_ParseWithAllParserEverytime | 0,
          kParseOption_ParseWithAllParserIfFailed | kParseOption_ParseWithAllParserIfNoExtension}) {
        FormatHost host(options);
        for (const SampleFile& sample : AllSamples()) {
            for (const std::string& extension : Extensions()) {
                EXPECT_EQ(host.Winner(sample.mBytes, Named(extension)), sample.mWinner)
                    << sample.mName << " as " << Named(extension) << ", options " << options;
            }
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
    for (const SampleFile& sample : AllSamples()) {
        for (const std::string& extension : Extensions()) {
            const std::string expected = without.count(extension) != 0 ? "-" : sample.mWinner;
            EXPECT_EQ(host.Winner(sample.mBytes, Named(extension)), expected)
                << sample.mName << " as " << Named(extension);
        }
    }
}
