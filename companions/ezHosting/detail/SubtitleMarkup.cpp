#include "ezHosting/detail/SubtitleMarkup.h"

#include "ezBytes/LanguageTags.h"

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view WithoutBlanks(std::string_view aText) {
    return aText.substr(std::min(aText.find_first_not_of(kBlanks), aText.size()));
}

/// Where a text goes on after a mark; its end where there is none.
std::string_view After(std::string_view aText, std::string_view aMark) {
    const std::size_t place = aText.find(aMark);
    return place == std::string_view::npos ? std::string_view() : aText.substr(place + aMark.size());
}

/// The text from its first element on: after declarations, instructions and comments.
std::string_view FirstElement(std::string_view aText) {
    aText = WithoutBlanks(aText);
    while (aText.substr(0, 2) == "<?" || aText.substr(0, 2) == "<!") {
        const std::string_view end = aText[1] == '?' ? "?>" : aText.substr(0, 4) == "<!--" ? "-->" : ">";
        aText = WithoutBlanks(After(aText, end));
    }
    return aText;
}

/// The name of the element that a text begins with; "" where it begins with none.
std::string_view NameOfElement(std::string_view aText) {
    if (aText.empty() || aText[0] != '<') {
        return {};
    }
    const std::size_t end = aText.find_first_of(" \t\r\n/>", 1);
    return end == std::string_view::npos ? std::string_view() : aText.substr(1, end - 1);
}

/// Where a word stands in a text, in any case.
std::size_t FindNoCase(std::string_view aText, std::string_view aWord) {
    const auto place = std::search(aText.begin(), aText.end(), aWord.begin(), aWord.end(),
                                   [](char aLeft, char aRight) { return ezLower(aLeft) == aRight; });
    return place == aText.end() ? std::string_view::npos : static_cast<std::size_t>(place - aText.begin());
}

} // namespace

bool IsSAMI(std::string_view aText) {
    return ezIsEqualNoCase(NameOfElement(FirstElement(aText)), "SAMI");
}

std::string SAMILanguages(std::string_view aText) {
    constexpr std::string_view kStyle = "<style";
    constexpr std::string_view kStyleEnd = "</style";
    constexpr std::string_view kLanguage = "lang:";
    std::string languages;
    const std::size_t start = FindNoCase(aText, kStyle);
    if (start == std::string_view::npos) {
        return languages;
    }
    aText.remove_prefix(start + kStyle.size());
    aText = aText.substr(0, FindNoCase(aText, kStyleEnd));
    for (std::size_t place = FindNoCase(aText, kLanguage); place != std::string_view::npos;
         place = FindNoCase(aText, kLanguage)) {
        aText.remove_prefix(place + kLanguage.size());
        aText = WithoutBlanks(aText);
        AddLanguages(languages, aText.substr(0, aText.find_first_of("; \t\r\n}")));
    }
    return languages;
}

bool IsTTML(std::string_view aText) {
    const std::string_view name = NameOfElement(FirstElement(aText));
    return name.substr(name.find(':') == std::string_view::npos ? 0 : name.find(':') + 1) == "tt";
}

std::string TTMLLanguage(std::string_view aText) {
    aText = FirstElement(aText);
    aText = After(aText.substr(0, aText.find('>')), "xml:lang");
    aText = WithoutBlanks(aText);
    std::string language;
    if (aText.substr(0, 1) == "=") {
        aText = WithoutBlanks(aText.substr(1));
        const char quote = aText.empty() ? '\0' : aText[0];
        if (quote == '"' || quote == '\'') {
            aText.remove_prefix(1);
            AddLanguages(language, aText.substr(0, aText.find(quote)));
        }
    }
    return language;
}
