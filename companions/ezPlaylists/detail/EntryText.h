#pragma once

#include "ez/PlaylistParser.h"

#include <string>
#include <string_view>

/// What the readers of marked-up formats share: the making of an entry's fields of the document's texts.

/// A text as it is shown: white space at its ends goes, and white space with a line end or tab in it is one
/// blank.
std::string OneLine(std::string_view aText);

/// Adds a line "name=value" to the further lines of an entry, unless the value is empty once it is one line.
void AddTag(PlaylistParserEntry& anEntry, std::string_view aName, std::string_view aValue);

/// Whole seconds of "hh:mm:ss.fraction", of which only the seconds must be there; the fraction is dropped.
/// 0, which is not known, for anything else, and what is too large is the largest number.
uint32 SecondsOfClock(std::string_view aClock);
