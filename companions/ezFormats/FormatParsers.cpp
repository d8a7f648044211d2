#include "ezFormats/FormatParsers.h"

#include "ezFormats/detail/Formats.h"
#include "ezFormats/detail/MagicParser.h"

#include "ezBytes/CodePage.h"

#include "ez/MediaParserManager.h"
#include "ezPlatform/base/Log.h"

#include <type_traits>
#include <utility>

void RegisterFormatParsers(ezMediaParserManager& aManager, std::shared_ptr<const ProfileRules> aRules) {
    const auto rules = aRules != nullptr ? std::move(aRules) : ProfileRules::BuiltIn();
    bool fCodePageKnown = true;
    AllFormats::ForEach([&](auto* aNull) {
        auto* const parser = new std::remove_pointer_t<decltype(aNull)>(rules);
        aManager.Add(parser);
        fCodePageKnown = CodePage::IsKnown(parser->GetTextCodePage()); // the same of all
    });
    aManager.Add(new MagicParser);
    if (!fCodePageKnown) {
        ezLog_F(EZLOGLEVEL_WARNING,
                "%s: this system knows no such code page; texts without one are read as "
                "Windows-1252\n",
                kProperty_TextCodePage);
    }
}

bool IsKnownTextCodePage(const char* aName) {
    return aName != nullptr && CodePage::IsKnown(aName);
}
