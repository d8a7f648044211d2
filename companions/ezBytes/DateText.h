#pragma once

#include "ezPlatform/text/CString.h"

#include <cstdint>
#include <string_view>

/// A date as a record has it: ISO 8601, as precise as it is stated, and one that the calendar has. Empty for
/// what is not a date, and for the year 0.
///
/// Read are a year of four digits; month and day after it, between "-", ":", "/" or "." or without any; and,
/// after "T" or a blank, a time with or without fractions and a zone. A month or day of 0 is not stated. A
/// time without seconds is the start of its minute; of an hour alone, and of what is not a time, the day is
/// left. Blanks at the ends do not count.
///
///     "1999"  "1999-12"  "19991231"  "1999:12:31 23:59:58"  "1999-12-31T23:59:58.25+0200"
ezCString CleanDate(std::string_view aText);

/// A second of UTC as CleanDate has it; empty for what lies outside of the years 1 to 9999.
/// @param aSeconds  since the start of 1970, without leap seconds
ezCString UTCDateText(std::int64_t aSeconds);
