#pragma once

#include <string_view>

/// The text of the table that the library brings.
std::string_view BuiltInProfileRules_Text();
