#include "ezFormats/FormatParsers.h"

#include "ezFormats/ISOMediaParser.h"
#include "ezFormats/JPEGParser.h"
#include "ezFormats/MPEGAudioParser.h"
#include "ezFormats/MagicParser.h"
#include "ezFormats/PNGParser.h"

#include "ez/MediaParserManager.h"

#include <utility>

void RegisterFormatParsers(ezMediaParserManager& aManager, std::shared_ptr<const ProfileRules> aRules) {
    const auto rules = aRules != nullptr ? std::move(aRules) : ProfileRules::BuiltIn();
    aManager.Add(new MPEGAudioParser(rules));
    aManager.Add(new JPEGParser(rules));
    aManager.Add(new PNGParser(rules));
    aManager.Add(new ISOMediaParser(rules));
    aManager.Add(new MagicParser);
}
