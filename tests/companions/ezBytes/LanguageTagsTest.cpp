#include "ezBytes/LanguageTags.h"

#include <gtest/gtest.h>

TEST(LanguageTags, TellsCodesFromOtherWordsOfTwoAndThreeLetters) {
    for (const char* code : {"en", "EN", "pt", "eng", "Ger", "deu", "fre", "zho", "hi"}) {
        EXPECT_TRUE(IsLanguageCode(code)) << code;
    }
    // AddLanguages takes any of two and three letters: a field of a tag holds nothing else.
    for (const char* word :
         {"", "e", "cd", "xx", "EP", "sdh", "cut", "und", "engl", "english", "en-US", "e2"}) {
        EXPECT_FALSE(IsLanguageCode(word)) << word;
    }
}
