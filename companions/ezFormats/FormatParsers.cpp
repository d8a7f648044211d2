#include "ezFormats/FormatParsers.h"

#include "ezFormats/detail/MagicParser.h"
#include "ezFormats/iso/ISOMediaParser.h"
#include "ezFormats/jpeg/JPEGParser.h"
#include "ezFormats/mpegaudio/MPEGAudioParser.h"
#include "ezFormats/png/PNGParser.h"

#include "ezBytes/CodePage.h"

#include "ez/MediaParserManager.h"
#include "ezPlatform/base/Log.h"

#include <utility>

void RegisterFormatParsers(ezMediaParserManager& aManager, std::shared_ptr<const ProfileRules> aRules) {
    const auto rules = aRules != nullptr ? std::move(aRules) : ProfileRules::BuiltIn();
    auto* const mpegAudio = new MPEGAudioParser(rules);
    aManager.Add(mpegAudio);
    aManager.Add(new JPEGParser(rules));
    aManager.Add(new PNGParser(rules));
    aManager.Add(new ISOMediaParser(rules));
    aManager.Add(new MagicParser);
    if (!mpegAudio->IsCodePageKnown()) {
        ezLog_F(EZLOGLEVEL_WARNING,
                "%s: this system knows no such code page; texts without one are read as "
                "Windows-1252\n",
                kProperty_TextCodePage);
    }
}

bool IsKnownTextCodePage(const char* aName) {
    return aName != nullptr && CodePage::IsKnown(aName);
}
