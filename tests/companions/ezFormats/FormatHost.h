#pragma once

#include "ezFormats/FormatParsers.h"
#include "ezFormats/detail/Formats.h"

#include "ez/MediaParserManager.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/Folders.h"
#include "support/Record.h"
#include "support/WholeFile.h"

#include "ez/Environment.h"
#include "ezPlatform/media/MediaInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

/// A file of the samples, and what its record states of it in the first line: "Winner: png", or
/// "Winner: - # RIFF" with the reason why no parser may claim it.
struct SampleFile {
    std::string mName; ///< "pictures/harbour.png"
    std::string mBytes;
    std::string mWinner; ///< the type of the parser that knows it; "-" for none, "" where nothing is recorded
    std::string mReason; ///< the comment of the line
    std::string mGolden; ///< the path of the record
};

/// Reads what the record of a sample states.
inline void ReadWinner(SampleFile& aSample) {
    aSample.mGolden =
        EZ_TEST_DATA "/formats/" + std::filesystem::path(aSample.mName).filename().string() + ".expected";
    std::ifstream file(aSample.mGolden);
    std::string mark;
    if (file >> mark && mark == "Winner:" && file >> aSample.mWinner) {
        std::getline(file, aSample.mReason);
    }
}

/// Every media below the samples, by name. What lies in the folder of the samples itself is about them, and
/// playlists are no media.
inline const std::vector<SampleFile>& AllSamples() {
    static const std::vector<SampleFile> sSamples = [] {
        const std::filesystem::path folder(EZ_SAMPLES);
        std::vector<SampleFile> samples;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
            const std::filesystem::path name = entry.path().lexically_relative(folder);
            const bool fMedia = name.has_parent_path() && name.parent_path() != "playlists";
            if (entry.is_regular_file() && fMedia) {
                samples.push_back({name.string(), ReadWholeFile(entry.path()), "", "", ""});
                ReadWinner(samples.back());
            }
        }
        std::sort(samples.begin(), samples.end(),
                  [](const auto& aLeft, const auto& aRight) { return aLeft.mName < aRight.mName; });
        return samples;
    }();
    return sSamples;
}

/// One parser of each file format.
inline std::vector<std::unique_ptr<ezMediaParser>> AllParsers() {
    std::vector<std::unique_ptr<ezMediaParser>> parsers;
    AllFormats::ForEach([&parsers](auto* aNull) {
        parsers.push_back(std::make_unique<std::remove_pointer_t<decltype(aNull)>>());
    });
    return parsers;
}

/// A host with the parsers of this library and the media types file of the samples.
class FormatHost {
public:
    /// @param aParseOptions  a set of ezParseOption bits
    explicit FormatHost(int aParseOptions = kParseOption_Default) {
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(aParseOptions);
        RegisterFormatParsers(*mManager);
    }

    Record Parse(const std::string& aBytes, const std::string& aPath) {
        AwkwardStream stream(aBytes, Delivery(), aPath.c_str());
        return Record(mManager->Parse(stream));
    }

    Record Parse(ezMediaParserStream& aStream) { return Record(mManager->Parse(aStream)); }

    /// What a parse costs its source.
    AwkwardStream::Costs Costs(const std::string& aBytes, const std::string& aPath) {
        AwkwardStream stream(aBytes, Delivery(), aPath.c_str());
        const Record record(mManager->Parse(stream));
        return stream.GetCosts();
    }

    /// The type of the parser that knows a file; "-" when none does, and at most its name decides.
    std::string Winner(const std::string& aBytes, const std::string& aPath) {
        const LogCatcher log;
        Parse(aBytes, aPath);
        for (const std::string& text : log.Texts()) {
            const std::string mark = "Winner: ";
            const std::size_t at = text.find(mark);
            if (at != std::string::npos) {
                const std::string type = text.substr(at + mark.size(), text.find('\n') - at - mark.size());
                return type == "*" ? "-" : type;
            }
        }
        return "-";
    }

private:
    ezEnvironment mEnvironment{EZ_SAMPLES, EZ_SAMPLES};
    std::unique_ptr<ezMediaParserManager> mManager;
};
