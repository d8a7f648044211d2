#pragma once

#include "ezPlatform/text/CString.h"

#include <algorithm>
#include <string>
#include <string_view>

/// A text of strangers that names a codec, as a word of a record: without spaces at the end, and a "." for
/// each character that may not stand in one.
inline ezCString CodecWord_Of(std::string_view aText) {
    std::string word(aText.substr(0, aText.find_last_not_of(' ') + 1));
    std::replace_if(
        word.begin(), word.end(),
        [](char aLetter) { return aLetter <= ' ' || aLetter > '~' || aLetter == ','; }, '.');
    return ezCString(std::string_view(word));
}
