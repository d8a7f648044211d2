#pragma once

#include "ezBytes/CodePage.h"
#include "ezBytes/Limits.h"

#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <string_view>
#include <vector>

/// How the bytes of a text in a media file are to be read.
enum class TextEncoding {
    Utf16,       ///< with a byte order mark; without one, in the order that makes more plain letters
    Utf16Big,    ///< a byte order mark that says otherwise is believed
    Utf16Little, ///< the same
    Utf8,        ///< what is not, was written in a code page by mistake
    Unstated,    ///< UTF-8 when all of it is, else of the code page; so is what says "Latin-1"
};

/// A text as a record may hold it, whatever the bytes: valid UTF-8, up to the first NUL, without control
/// characters (tabs and line ends become blanks) and the two values that XML has no place for (U+FFFE and
/// U+FFFF), without blanks at its ends, and of at most aMaximum bytes, cut between two characters. Halves of
/// a surrogate pair become U+FFFD. What a cut left of a last character is dropped.
ezCString CleanText(std::string_view aBytes, TextEncoding anEncoding, const CodePage& aCodePage = CodePage(),
                    std::size_t aMaximum = kCleanText_MaxLength);

/// The texts of a block in which NULs separate them, each as CleanText has it, without the empty ones; at
/// most aMaxCount. In UTF-16 the byte order mark of one holds for those after it.
std::vector<ezCString> CleanTexts(std::string_view aBytes, TextEncoding anEncoding, std::size_t aMaxCount,
                                  const CodePage& aCodePage = CodePage(),
                                  std::size_t aMaximum = kCleanText_MaxLength);
