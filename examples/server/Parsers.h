#pragma once

#include "FlacParser.h"

#include "ez/MediaParserManager.h"
#include "ezFormats/FormatParsers.h"

/// The parsers of this server. Of those that share a type the first is tried first.
inline void AddParsers(ezMediaParserManager& aManager) {
    aManager.AddStandardParsers(kParseOption_Default);
    aManager.Add(new FlacParser);
    RegisterFormatParsers(aManager);
}
