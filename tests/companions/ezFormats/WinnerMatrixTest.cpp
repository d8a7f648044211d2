#include "companions/ezFormats/FormatHost.h"

#include "ez/MimeTypesDotIniParser.h"

#include "ezPlatform/text/StringList.h"

#include "support/Folders.h"

#include <map>
#include <set>
#include <sstream>

// Which parser wins, whatever the name of a media says.

namespace {

constexpr const char* kMatrix = EZ_TEST_DATA "/formats/winners.txt";

/// A row of the matrix: "sample winner", "-" where no parser may claim it. "#" begins a comment.
std::map<std::string, std::string> ReadMatrix() {
    std::map<std::string, std::string> rows;
    std::ifstream file(kMatrix);
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream words(line.substr(0, line.find('#')));
        std::string sample;
        std::string winner;
        if (words >> sample >> winner) {
            EXPECT_TRUE(rows.emplace(sample, winner).second) << sample;
        }
    }
    return rows;
}

/// One extension of every entry of the media types file that names a type with a parser, then some without.
std::vector<std::string> Extensions() {
    return {"mp3", "mp2", "mpa", "jpg", "jpeg", "mpo", "png", "apng", "mp4", "m4a", "m4v",     "mov",
            "3gp", "3g2", "aac", "wav", "flac", "ogg", "wma", "avi",  "mkv", "ts",  "gif",     "txt",
            "pcm", "ac3", "mpg", "wmv", "m3u8", "jp2", "tif", "heic", "m4b", "f4v", "unheard", ""};
}

std::string Named(const std::string& anExtension) {
    return "/media/some" + (anExtension.empty() ? "" : "." + anExtension);
}

} // namespace

TEST(WinnerMatrix, HasARowForEverySampleAndNoOther) {
    const std::map<std::string, std::string> rows = ReadMatrix();
    std::set<std::string> samples;
    for (const SampleFile& sample : AllSamples()) {
        samples.insert(sample.mName);
        EXPECT_EQ(rows.count(sample.mName), 1U) << sample.mName;
    }
    for (const auto& row : rows) {
        EXPECT_EQ(samples.count(row.first), 1U) << row.first;
    }
}

TEST(WinnerMatrix, HasARowThatEachParserWins) {
    std::set<std::string> winners;
    for (const auto& row : ReadMatrix()) {
        winners.insert(row.second);
    }
    EXPECT_EQ(winners, (std::set<std::string>{"-", "jpg", "mp3", "mp4", "png"}));
}

TEST(WinnerMatrix, ContentDecidesUnderEveryExtension) {
    std::map<std::string, std::string> rows = ReadMatrix();
    for (const int options :
         {kParseOption_ParseWithAllParserEverytime | 0,
          kParseOption_ParseWithAllParserIfFailed | kParseOption_ParseWithAllParserIfNoExtension}) {
        FormatHost host(options);
        for (const SampleFile& sample : AllSamples()) {
            for (const std::string& extension : Extensions()) {
                EXPECT_EQ(host.Winner(sample.mBytes, Named(extension)), rows[sample.mName])
                    << sample.mName << " as " << Named(extension) << ", options " << options;
            }
        }
    }
}

TEST(WinnerMatrix, OwnExtensionFindsTheWinnerWithoutOptions) {
    std::map<std::string, std::string> rows = ReadMatrix();
    FormatHost host;
    for (const SampleFile& sample : AllSamples()) {
        EXPECT_EQ(host.Winner(sample.mBytes, "/media/" + sample.mName), rows[sample.mName]) << sample.mName;
    }
}

TEST(WinnerMatrix, MediaWhoseNameLiesFindsItsWinnerWithoutOptions) {
    std::map<std::string, std::string> rows = ReadMatrix();
    const std::set<std::string> without = {"txt", "unheard", ""}; // no line publishes these, so none is tried
    FormatHost host;
    for (const SampleFile& sample : AllSamples()) {
        for (const std::string& extension : Extensions()) {
            const std::string expected = without.count(extension) != 0 ? "-" : rows[sample.mName];
            EXPECT_EQ(host.Winner(sample.mBytes, Named(extension)), expected)
                << sample.mName << " as " << Named(extension);
        }
    }
}
