#include "ezFormats/codecs/CodecWord.h"

#include "ezPlatform/text/Case.h"

#include <algorithm>
#include <string>

ezCString CodecWord_Of(std::string_view aText) {
    std::string word(aText.substr(0, aText.find_last_not_of(' ') + 1));
    std::replace_if(
        word.begin(), word.end(),
        [](char aLetter) { return aLetter <= ' ' || aLetter > '~' || aLetter == ','; }, '.');
    return ezCString(std::string_view(word));
}

ezCString CodecWord_OfFormat(BoxType aFormat) {
    std::string name(aFormat.GetText().View());
    while (!name.empty() && (name.back() == ' ' || name.back() == '\0')) {
        name.pop_back();
    }
    for (char& character : name) {
        const char lower = ezLower(character);
        const bool fWord = (lower >= 'a' && lower <= 'z') || (lower >= '0' && lower <= '9') ||
                           character == '-' || character == '_';
        character = fWord ? character : '.';
    }
    return ezCString(std::string_view(name));
}
