#include "ezHosting/TypesTableParser.h"

#include "ezHosting/detail/MimeTypeText.h"

#include "ezPlatform/containers/Items.h"

#include <set>
#include <utility>

TypesTableParser::TypesTableParser(ExtensionMimeTypeMatcher& aMatcher, std::vector<std::string> aDeclared)
    : ezMediaParser("types-table", nullptr, false), mMatcher(aMatcher), mDeclared(std::move(aDeclared)) {}

TypesTableParser::~TypesTableParser() = default;

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
