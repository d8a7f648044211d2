#pragma once

#include "ez/FileMediaParserStream.h"
#include "ez/MediaParserManager.h"
#include "ezPlatform/media/MediaInfo.h"

#include <cstdio>
#include <memory>

/// What a file is; null when nothing recognised it, or it cannot be read.
inline std::unique_ptr<ezMediaInfo> Identify(ezMediaParserManager& aManager, const ezCString& aPath) {
    ezFileMediaParserStream stream{aPath};
    return std::unique_ptr<ezMediaInfo>(stream.Open() ? aManager.Parse(stream) : nullptr);
}

/// Some of what a record says.
inline void Print(const char* aName, const ezMediaInfo* anInfo) {
    std::printf("%s:%s", aName, anInfo == nullptr ? " not recognised" : "");
    for (const char* key : {kezInfo_MimeType, kezInfo_ClassName, kezInfo_DLNA, kezInfo_Duration,
                            kezInfo_AudioSamplingRate, kezInfo_AudioChannelCount}) {
        if (anInfo != nullptr && anInfo->Has(key)) {
            std::printf(" %s=%s", key, anInfo->GetCString(key, "").c_str());
        }
    }
    std::printf("\n");
}
