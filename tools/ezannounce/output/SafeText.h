#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// A text that a terminal can show whatever its bytes are, on one line, and from which the bytes can be told:
/// a backslash is doubled; newline, tab and carriage return become "\n", "\t" and "\r"; the bytes of other
/// control characters, of characters that turn the direction of writing, and bytes that are not UTF-8 become
/// "\xHH".
std::string ForTerminal(std::string_view aText);

/// A text of the same length in which the bytes that ForTerminal would write as "\xHH", and those of line
/// ends and tabs, are aReplacement.
std::string WithoutUnsafe(std::string_view aText, char aReplacement);

/// A JSON text in which the characters that ForTerminal would write as "\xHH" are "\uHHHH": the same values,
/// which no terminal obeys. Only strings hold such characters once the text is dumped.
std::string JsonForTerminal(std::string_view aJson);

/// Columns that an escaped text takes on a terminal.
std::size_t TerminalWidth(std::string_view aText);

/// As many characters of an escaped text, from its start, as fit into so many columns.
std::string CutToTerminalWidth(std::string_view aText, std::size_t aWidth);

/// A text for a terminal in so many columns, as ForTerminal makes it: where that is longer, dots stand for
/// its middle, and more is left of its end, where a path names the file.
std::string CutInMiddle(std::string_view aText, std::size_t aWidth);

/// Two lower-case hexadecimal digits a byte.
std::string HexBytes(std::string_view aBytes);
