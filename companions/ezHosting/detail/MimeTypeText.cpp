#include "ezHosting/detail/MimeTypeText.h"

#include <algorithm>

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
