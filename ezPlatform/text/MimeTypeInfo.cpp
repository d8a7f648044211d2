#include "ezPlatform/text/MimeTypeInfo.h"

#include "ezPlatform/text/CString.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

struct ezMimeTypeInfo {
    std::vector<std::pair<std::string, std::string>> mParts;
};

namespace {

/// The text up to the next ";" outside quotes; takes it and the ";" off aRest.
std::string_view TakePart(std::string_view& aRest) {
    bool fQuoted = false;
    std::size_t end = 0;
    for (; end < aRest.size() && (fQuoted || aRest[end] != ';'); ++end) {
        if (aRest[end] == '"') {
            fQuoted = !fQuoted;
        } else if (fQuoted && aRest[end] == '\\' && end + 1 < aRest.size()) {
            ++end;
        }
    }
    const std::string_view part = aRest.substr(0, end);
    aRest.remove_prefix(end < aRest.size() ? end + 1 : end);
    return part;
}

/// A value with its quotes taken off; none when they are not closed.
std::optional<std::string> Unquoted(std::string_view aText) {
    if (aText.empty() || aText.front() != '"') {
        return std::string(aText);
    }
    std::string value;
    for (std::size_t i = 1; i < aText.size(); ++i) {
        if (aText[i] == '"') {
            return value;
        }
        if (aText[i] == '\\' && i + 1 < aText.size()) {
            ++i;
        }
        value += aText[i];
    }
    return std::nullopt;
}

/// "type/subtype", neither of them empty.
bool IsType(std::string_view aText) {
    const std::size_t slash = aText.find('/');
    return slash != std::string_view::npos && slash != 0 && slash + 1 != aText.size();
}

} // namespace

ezMimeTypeInfo* ezMimeTypeInfo_New(const char* aMimeType) {
    ezMimeTypeInfo* info = new ezMimeTypeInfo;
    std::string_view rest(aMimeType != nullptr ? aMimeType : "");
    if (!IsType(ezTrimmed(TakePart(rest)))) {
        return info;
    }
    while (!rest.empty()) {
        const std::string_view part = TakePart(rest);
        const std::size_t equals = part.find('=');
        const std::string_view name = ezTrimmed(part.substr(0, equals));
        if (equals == std::string_view::npos || name.empty()) {
            continue;
        }
        if (const std::optional<std::string> value = Unquoted(ezTrimmed(part.substr(equals + 1)))) {
            info->mParts.emplace_back(name, *value);
        }
    }
    return info;
}

void ezMimeTypeInfo_Delete(ezMimeTypeInfo* anInfo) {
    delete anInfo;
}

const char* ezMimeTypeInfo_GetPartValueByName(const ezMimeTypeInfo* anInfo, const char* aName) {
    if (anInfo == nullptr) {
        return nullptr;
    }
    const std::string_view wanted(aName != nullptr ? aName : "");
    for (const auto& [name, value] : anInfo->mParts) {
        if (ezIsEqualNoCase(name, wanted)) {
            return value.c_str();
        }
    }
    return nullptr;
}
