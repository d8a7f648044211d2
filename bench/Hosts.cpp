#include "bench/Hosts.h"

#include "bench/Require.h"

#include "ez/FileMediaParserStream.h"
#include "ezFormats/FormatParsers.h"
#include "ezPlatform/media/MediaInfo.h"

BenchHost::BenchHost(const ezCString& aConfig, Parsers aParsers)
    : mEnvironment(aConfig.View(), aConfig.View()) {
    mManager = std::make_unique<ezMediaParserManager>(mEnvironment.Get());
    mManager->AddStandardParsers(kParseOption_Default);
    if (aParsers == Parsers::Formats) {
        RegisterFormatParsers(*mManager);
    }
}

BenchHost::~BenchHost() {
    mManager.reset();
}

void BenchHost::Parse(const ezCString& aPath) const {
    ezFileMediaParserStream stream(aPath);
    stream.Open();
    const std::unique_ptr<ezMediaInfo> info(mManager->Parse(stream));
    // The media types know neither: a parser of the format has answered.
    Require(info != nullptr && (info->Has(kezInfo_PictureWidth) || info->Has(kezInfo_Duration)),
            "every file is parsed");
}
