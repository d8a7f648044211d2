#pragma once

#include "ez/MimeTypesDotIniParser.h"
#include "ez/ParseObserver.h"

#include "support/AwkwardStream.h"
#include "support/Catchers.h"
#include "support/MapperFolder.h"
#include "support/Record.h"
#include "support/RecordingObserver.h"
#include "support/ScriptedParser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using Lines = std::vector<std::string>;

inline constexpr const char* kTable = "[MimeTypesExcluded]\n"
                                      "secret=sec@x/secret@item.secret\n"
                                      "hidden=pic@image/jpeg@item.imageItem.hidden\n"
                                      "[MimeTypes]\n"
                                      "song=mp3,mpga@audio/mpeg@item.audioItem\n"
                                      "film=mpg@video/mpeg@item.videoItem@extra,song\n"
                                      "photo=pic@image/jpeg@item.imageItem\n"
                                      "bare=bar\n";

/// A record of these keys.
inline ezMediaInfo* NewInfo(const std::vector<std::pair<const char*, const char*>>& aTexts) {
    auto* const info = new ezMediaInfo;
    for (const auto& [key, text] : aTexts) {
        info->Set(key, text, true);
    }
    return info;
}

/// A file of ten bytes that is known by its name, and has no extension where that has no dot.
class NamedStream : public AwkwardStream {
public:
    explicit NamedStream(const std::string& aPath) : AwkwardStream("0123456789", Delivery(), aPath.c_str()) {
        const std::size_t dot = aPath.rfind('.');
        SetExtension(dot == std::string::npos ? "" : aPath.substr(dot + 1).c_str());
    }
    void SetTime(const ezDateTime& aTime) { mLastModificationTime = aTime; }
};

/// A server that is observed.
class ObservedServer : public testing::Test {
protected:
    void Use(int aParseOptions, uint32 aCTTContext = 0) {
        mFolder.Write("mediaCTRLMediaTypes.ini", kTable);
        mEnvironment.Set(kProperty_ReadOnlyConfigPath, mFolder.GetPath())
            .Set(kProperty_ReadWriteConfigPath, mFolder.GetPath())
            .SetCTTContext(aCTTContext);
        mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
        mManager->AddStandardParsers(aParseOptions);
        mManager->SetObserver(&mObserver);
    }
    ScriptedParser& Add(const char* aType, bool afCoverArt = false) {
        auto* const parser = new ScriptedParser(mTrace, aType, aType, afCoverArt);
        mManager->Add(parser);
        return *parser;
    }
    /// What is told of the request for a file.
    std::string Told(const char* aPath) {
        Parse(aPath);
        return mObserver.Text();
    }
    /// What is told of the facts.
    Lines Facts(const char* aPath) {
        Parse(aPath);
        return mObserver.LinesOf({"FactStated"});
    }
    /// Who stated a fact of the request that was last.
    std::string SourceOf(const std::string& aKey) const {
        const std::string start = "FactStated " + aKey + " ";
        for (const std::string& fact : mObserver.LinesOf({"FactStated"})) {
            if (fact.compare(0, start.size(), start) == 0) {
                return fact.substr(start.size());
            }
        }
        return "nobody";
    }
    std::string Parse(const char* aPath) {
        mObserver.Clear();
        NamedStream stream(aPath);
        return DumpRecord(Record(mManager->Parse(stream)).get());
    }

    TemporaryFolder mFolder;
    ezEnvironment mEnvironment;
    ParserTrace mTrace;
    RecordingObserver mObserver;
    std::unique_ptr<ezMediaParserManager> mManager;
};
