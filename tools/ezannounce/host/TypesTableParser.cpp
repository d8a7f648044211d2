#include "host/TypesTableParser.h"

#include "ezPlatform/containers/Items.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace {

bool IsTokenCharacter(char aCharacter) {
    constexpr std::string_view kSpecials = "()<>@,;:\\\"/[]?=";
    return aCharacter > ' ' && aCharacter < 0x7F && kSpecials.find(aCharacter) == std::string_view::npos;
}

bool IsToken(std::string_view aText) {
    return !aText.empty() && std::all_of(aText.begin(), aText.end(), IsTokenCharacter);
}

bool IsParameterCharacter(char aCharacter) {
    return aCharacter > ' ' && aCharacter < 0x7F && aCharacter != ',' && aCharacter != ':';
}

} // namespace

bool IsMimeType(std::string_view aText) {
    const std::size_t end = aText.find(';');
    const std::string_view type = aText.substr(0, end);
    const std::string_view parameters =
        end == std::string_view::npos ? std::string_view() : aText.substr(end + 1);
    const std::size_t slash = type.find('/');
    return slash != std::string_view::npos && IsToken(type.substr(0, slash)) &&
           IsToken(type.substr(slash + 1)) &&
           std::all_of(parameters.begin(), parameters.end(), IsParameterCharacter);
}

TypesTableParser::TypesTableParser(ExtensionMimeTypeMatcher& aMatcher, std::vector<std::string> aDeclared)
    : ezMediaParser("types-table", nullptr, false), mMatcher(aMatcher), mDeclared(std::move(aDeclared)) {}

bool TypesTableParser::AdjustDLNAInfo(ezMediaInfo* /*anInfo*/) {
    return false;
}

ezCString TypesTableParser::GetDLNAInfo() {
    std::string text;
    std::set<std::string> declared(mDeclared.begin(), mDeclared.end());
    for (ExtensionMimeTypeMatcherEntry* entry :
         ezItems<ExtensionMimeTypeMatcherEntry>(mMatcher.AllEntries())) {
        if (ezPtrList_GetCount(entry->mMimeTypes) == 0 || mMatcher.IsExcludedEntry(entry)) {
            continue;
        }
        const std::string mimeType = static_cast<const char*>(*ezPtrList_GetAt(entry->mMimeTypes, 0));
        if (IsMimeType(mimeType) && declared.insert("http-get:*:" + mimeType + ":*").second) {
            text += (text.empty() ? "" : ",") + mimeType + ":*";
        }
    }
    return ezCString(text);
}
