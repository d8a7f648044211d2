#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ez/StreamMediaParserStream.h"

#include "support/Folders.h"
#include "support/Record.h"
#include "support/ScriptedStream.h"
#include "support/WholeFile.h"

#include "ez/Environment.h"
#include "ezPlatform/base/Memory.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/media/MediaInfo.h"
#include "ezPlatform/streams/FileStream.h"
#include "ezPlatform/streams/MemoryStream.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// The samples as they arrive through every kind of stream, held against the same samples as files.

namespace {

std::vector<std::filesystem::path> Samples() {
    std::vector<std::filesystem::path> samples;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(EZ_SAMPLES)) {
        if (entry.is_regular_file()) {
            samples.push_back(entry.path());
        }
    }
    return samples;
}

/// A host as small as can be, with the media types file of the samples.
class Host {
public:
    Host() {
        mEnvironment.SetCTTContext(1);
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(kParseOption_Default);
    }

    /// The record without the time, which a stream does not know.
    std::string Parse(ezMediaParserStream& aStream) {
        EXPECT_TRUE(aStream.Open()) << aStream.GetFullPath().c_str();
        const Record record(mManager->Parse(aStream));
        if (record != nullptr) {
            record->mLastModificationTime = ezDateTime();
        }
        return DumpRecord(record.get());
    }

    /// The stream is released in the end.
    std::string ParseStream(ezStream* aStream) {
        ezStreamMediaParserStream adapter(aStream, true);
        return Parse(adapter);
    }

private:
    ezEnvironment mEnvironment{EZ_SAMPLES, EZ_SAMPLES};
    std::unique_ptr<ezMediaParserManager> mManager;
};

/// Every sample parsed as a file and by aParse, with the same record.
void ExpectTheRecordsOfTheFiles(
    const std::function<std::string(Host& aHost, const std::filesystem::path& aPath)>& aParse) {
    Host host;
    std::size_t media = 0;
    for (const std::filesystem::path& path : Samples()) {
        ezFileMediaParserStream file{ezCString(path.c_str())};
        const std::string expected = host.Parse(file);
        media += expected != DumpRecord(nullptr) ? 1 : 0;
        EXPECT_EQ(aParse(host, path), expected) << path;
    }
    EXPECT_GE(media, 20U);
}

} // namespace

TEST(StreamMediaParserStreamSamples, OneByteAtATimeTheRecordsAreThoseOfTheFiles) {
    for (const bool fLending : {false, true}) {
        ExpectTheRecordsOfTheFiles([fLending](Host& aHost, const std::filesystem::path& aPath) {
            const std::string content = ReadWholeFile(aPath);
            auto* stream = new ScriptedStream(content, fLending, aPath.string());
            stream->Withhold();
            stream->mOnNothing = [stream, left = content.size()]() mutable {
                if (left > 0) {
                    --left;
                    stream->Arrive(1);
                } else {
                    stream->Finish();
                }
                stream->Fire();
            };
            return aHost.ParseStream(stream);
        });
    }
}

TEST(StreamMediaParserStreamThreadsSamples, FromAnotherThreadTheRecordsAreThoseOfTheFiles) {
    for (const bool fLending : {false, true}) {
        ExpectTheRecordsOfTheFiles([fLending](Host& aHost, const std::filesystem::path& aPath) {
            const std::string content = ReadWholeFile(aPath);
            ScriptedStream stream(content, fLending, aPath.string());
            stream.Withhold();
            std::thread writer([&stream, &content] {
                for (std::size_t i = 0; i < content.size(); ++i) {
                    stream.Arrive(1);
                    stream.Fire();
                }
                stream.Finish();
                stream.Fire();
            });
            ezStreamMediaParserStream adapter(&stream, false);
            std::string record = aHost.Parse(adapter);
            writer.join();
            return record;
        });
    }
}

TEST(StreamMediaParserStreamSamples, ThroughAFileStreamTheRecordsAreThoseOfTheFiles) {
    ExpectTheRecordsOfTheFiles([](Host& aHost, const std::filesystem::path& aPath) {
        auto* file = new ezFile(aPath.c_str(), ezFileOpenMode_Read);
        EXPECT_TRUE(file->Open());
        return aHost.ParseStream(ezFileGetStream(file, "", aPath.c_str()));
    });
}

TEST(StreamMediaParserStreamSamples, ThroughAMemoryStreamTheRecordsAreThoseOfTheFiles) {
    ExpectTheRecordsOfTheFiles([](Host& aHost, const std::filesystem::path& aPath) {
        const std::string content = ReadWholeFile(aPath);
        void* block = ezMalloc(content.size());
        std::memcpy(block, content.data(), content.size());
        auto* stream = new ezMemoryStream(block, content.size(), "");
        stream->SetURI(aPath.c_str());
        return aHost.ParseStream(stream);
    });
}
