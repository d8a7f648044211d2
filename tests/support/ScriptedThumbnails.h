#pragma once

#include "ez/ThumbnailProvider.h"

#include "ezPlatform/files/File.h"
#include "ezPlatform/streams/Stream.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// What happened, in the order in which it did. Outlives those that write into it.
using ThumbnailTrace = std::vector<std::string>;

/// Writes a whole text to a file.
inline bool WriteText(ezFile* aFile, const std::string& aText) {
    return aFile->Write(aText.data(), aText.size()) == static_cast<int>(aText.size());
}

/// All that a stream gives, up to its end; "<null>" and "<closed>" where there is nothing to read.
inline std::string ReadAll(ezStream* aStream) {
    if (aStream == nullptr) {
        return "<null>";
    }
    const ezStreamOwner owner(aStream);
    if (!aStream->IsOpened()) {
        return "<closed>";
    }
    std::string text;
    ezStreamingStatus status = ezStreamingStatus_NoError;
    while (status == ezStreamingStatus_NoError) {
        char buffer[100];
        std::size_t size = sizeof buffer;
        status = aStream->Read(buffer, &size, ezStreamReadFlag_Whole);
        text.append(buffer, size);
    }
    return status == ezStreamingStatus_EOS ? text : text + "<error>";
}

/// A generator that writes what it reads, after "thumbnail of ", to the file. It traces "convert TYPE",
/// "build TEXT" and "delete generator".
class ScriptedGenerator : public ezThumbnailGenerator {
public:
    explicit ScriptedGenerator(ThumbnailTrace& aTrace) : ezThumbnailGenerator("scripted"), mTrace(aTrace) {}
    ~ScriptedGenerator() override { mTrace.emplace_back("delete generator"); }

    uint32 CanConvert(const ezCString& aMimeType) override {
        mTrace.push_back("convert " + std::string(aMimeType.View()));
        const auto found = mFormats.find(std::string(aMimeType.View()));
        return found != mFormats.end() ? found->second : kNoThumbnailID;
    }
    bool BuildThumbnail(const ThumbnailInfo* /*anInfo*/, const ezThumbnailSource* aSource,
                        ezFile* aFile) override {
        const std::string text = ReadAll(aSource->GetStream());
        mTrace.push_back("build " + text);
        // Written before it fails, as a careless one does.
        return WriteText(aFile, "thumbnail of " + text) && text.find("corrupt") == std::string::npos;
    }

    std::map<std::string, uint32> mFormats = {{"image/jpeg", kJPEGThumbnailID},
                                              {"image/png", kPNGThumbnailID},
                                              {"image/both", kJPEGThumbnailID | kPNGThumbnailID}};

private:
    ThumbnailTrace& mTrace;
};

/// A provider that does what it is told to, and traces "possible NAME", "build NAME" and "delete NAME".
class ScriptedProvider : public ezThumbnailProvider {
public:
    ScriptedProvider(ThumbnailTrace& aTrace, const char* aName, uint32 aPossible,
                     std::function<bool(ezFile*)> aBuild = nullptr)
        : ezThumbnailProvider(aName), mTrace(aTrace), mPossible(aPossible), mBuild(std::move(aBuild)) {}
    ~ScriptedProvider() override { mTrace.push_back(std::string("delete ") + mName); }

    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* /*anInfo*/) override {
        mTrace.push_back(std::string("possible ") + mName);
        return mPossible;
    }
    /// Without a function it writes "by NAME".
    bool BuildThumbnail(const ThumbnailInfo* /*anInfo*/, ezFile* aFile) override {
        mTrace.push_back(std::string("build ") + mName);
        return mBuild ? mBuild(aFile) : WriteText(aFile, std::string("by ") + mName);
    }

private:
    ThumbnailTrace& mTrace;
    uint32 mPossible;
    std::function<bool(ezFile*)> mBuild;
};
