#include "bench/DecliningHost.h"

#include "bench/Require.h"

#include "ezPlatform/media/MediaInfo.h"

namespace {

class DecliningParser : public ezMediaParser {
public:
    explicit DecliningParser(std::size_t& aTries) : ezMediaParser("clip", nullptr, false), mTries(aTries) {}

    ezMediaInfo* Parse(ezMediaParserStream& /*aStream*/) override {
        ++mTries;
        return nullptr;
    }
    bool AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) override { return false; }

private:
    std::size_t& mTries;
};

/// Media without content: what is measured is the manager alone.
class EmptyStream : public ezMediaParserStream {
public:
    EmptyStream() {
        SetFullPath("/media/a.clip");
        SetExtension("clip");
    }

protected:
    bool MediaSeek(const ezuint64& /*anOffset*/, bool /*afSeekImmediate*/) override { return true; }
    ezFileOffset MediaRead(void* /*aBuffer*/, std::size_t /*aSize*/) override { return 0; }
};

} // namespace

DecliningHost::DecliningHost(std::size_t aParserCount)
    : mParserCount(aParserCount), mStream(new EmptyStream) {
    // Without a class: no record is made of the entry, so that the request ends with the parsers.
    mFolder.Write(kezMediaTypesFileName, "[MimeTypes]\nclip=clip@video/mpeg\n");
    mEnvironment.Set(kProperty_ReadOnlyConfigPath, mFolder.GetPath());
    mEnvironment.Set(kProperty_ReadWriteConfigPath, mFolder.GetPath());
    mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
    mManager->AddStandardParsers(kParseOption_Default);
    for (std::size_t i = 0; i < aParserCount; ++i) {
        mManager->Add(new DecliningParser(mTries));
    }
}

DecliningHost::~DecliningHost() {
    mManager.reset();
}

void DecliningHost::Request() {
    mTries = 0;
    Require(mManager->Parse(*mStream) == nullptr, "every parser declines");
    Require(mTries == mParserCount, "every parser is tried once");
}
