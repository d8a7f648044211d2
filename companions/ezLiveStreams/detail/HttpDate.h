#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// The time that a field of an answer states, in seconds since 1970-01-01 00:00:00 UTC, in any of the three
/// forms of RFC 9110, section 5.6.7; empty where it has no such form or lies before 1970. Years of two digits
/// are those from 1970 to 2069.
std::optional<std::int64_t> ezReadHttpDate(std::string_view aText);
