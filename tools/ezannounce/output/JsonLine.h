#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// An object as every verb writes it: on one line with its end, in valid UTF-8, and without a character that
/// a terminal obeys. Of bytes that are no UTF-8 every one becomes U+FFFD, so whoever reads a line can parse
/// it, whatever the texts hold.
std::string JsonLineOf(const nlohmann::ordered_json& anObject);
