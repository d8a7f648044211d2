#include "ezHosting/ProtocolInfos.h"

namespace {

void AppendProtocolInfo(std::vector<std::string>& aList, const std::string& anEntry) {
    if (!anEntry.empty()) {
        const bool fHasField = anEntry.find(':') != std::string::npos;
        aList.push_back("http-get:*:" + anEntry + (fHasField ? "" : ":*"));
    }
}

/// The end of the quoted text that begins at a quote; the quote itself where it is never closed, since it is
/// then a character like any other.
std::size_t EndOfQuoted(std::string_view aText, std::size_t aStart) {
    for (std::size_t i = aStart + 1; i < aText.size(); ++i) {
        if (aText[i] == '\\') {
            ++i;
        } else if (aText[i] == '"') {
            return i + 1;
        }
    }
    return aStart;
}

} // namespace

std::vector<std::string> ProtocolInfosOf(std::string_view aProfileInfo) {
    std::vector<std::string> list;
    std::string entry;
    std::size_t quoteEnd = 0; // of the quoted text that the walk is in, or past
    for (std::size_t i = 0; i < aProfileInfo.size(); ++i) {
        const char character = aProfileInfo[i];
        if (character == '"' && i >= quoteEnd) {
            quoteEnd = EndOfQuoted(aProfileInfo, i);
        }
        if (character == '\\' && i + 1 < aProfileInfo.size() && aProfileInfo[i + 1] == ',') {
            entry += ',';
            ++i;
        } else if (character == ',' && i >= quoteEnd) {
            AppendProtocolInfo(list, entry);
            entry.clear();
        } else {
            entry += character;
        }
    }
    AppendProtocolInfo(list, entry);
    return list;
}
