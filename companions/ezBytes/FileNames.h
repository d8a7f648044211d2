#pragma once

#include <cstddef>
#include <string_view>

/// A name without its extension, if it has one: ".profile" has none.
inline std::string_view NameWithoutExtension(std::string_view aName) {
    const std::size_t dot = aName.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? aName : aName.substr(0, dot);
}

/// What follows the dot; "" for none.
inline std::string_view ExtensionOfName(std::string_view aName) {
    const std::string_view name = NameWithoutExtension(aName);
    return name.size() == aName.size() ? std::string_view() : aName.substr(name.size() + 1);
}
