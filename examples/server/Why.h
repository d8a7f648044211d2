#pragma once

#include "ez/BaseParser.h"
#include "ez/ParseObserver.h"
#include "ezPlatform/media/MediaInfo.h"

#include <cstdio>
#include <cstring>

/// Says why a file is announced as it is, where its content did not decide.
class Why : public ezParseObserver {
public:
    void ParserRefused(const ezBaseParser& aParser, ezParseRefusal /*aCause*/, const char* aText) override {
        std::printf("  no %s: %s\n", aParser.GetType().c_str(), aText);
    }
    void FactStated(const char* aKey, const ezFactSource& aSource) override {
        if (std::strcmp(aKey, kezInfo_MimeType) == 0 && aSource.mStep == ezParseStep::EntryAlone) {
            std::printf("  known by its name alone\n");
        }
    }
};
