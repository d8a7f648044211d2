#include "support/TurkishLocale.h"

#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <cwctype>
#include <string>

TEST(TurkishLocale, FoldsAnIToADotlessOneAndPutsTheLocaleBack) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    {
        const TurkishLocale turkish;
        EXPECT_EQ(std::towlower(L'I'), std::wint_t{0x131});
        EXPECT_EQ(std::towupper(L'i'), std::wint_t{0x130});
        EXPECT_NE(std::tolower('I'), 'i');
        EXPECT_NE(std::toupper('i'), 'I');
    }
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
    EXPECT_EQ(std::tolower('I'), 'i');
}

TEST(TurkishLocale, CanBeSetAgain) {
    { const TurkishLocale once; }
    const TurkishLocale again;
    EXPECT_NE(std::tolower('I'), 'i');
}
