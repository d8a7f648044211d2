#include "ezBytes/CodePage.h"
#include "ezBytes/TextBytes.h"
#include "ezBytes/Utf8.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

std::string Clean(const std::string& aBytes, const char* aCodePage,
                  TextEncoding anEncoding = TextEncoding::Unstated) {
    return Str(CleanText(aBytes, anEncoding, CodePage(aCodePage)));
}

/// "Privet" with a capital in Cyrillic letters.
const std::string kPrivet = "\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82";

} // namespace

TEST(CodePage, IsNamedByNumberOrNameInAnyCase) {
    const std::string windows = "\xCF\xF0\xE8\xE2\xE5\xF2";
    for (const char* name :
         {"1251", "01251", "CP1251", "cp1251", "windows-1251", "Windows-1251", "WINDOWS-1251"}) {
        EXPECT_TRUE(CodePage::IsKnown(name)) << name;
        EXPECT_EQ(Clean(windows, name), kPrivet) << name;
    }
    for (const char* name : {"KOI8-R", "koi8-r", "20866", "KOI8-U", "21866"}) {
        EXPECT_EQ(Clean("\xF0\xD2\xC9\xD7\xC5\xD4", name), kPrivet) << name;
    }
    EXPECT_EQ(Clean("\x8F\xE0\xA8\xA2\xA5\xE2", "866"), kPrivet);
    EXPECT_EQ(Clean("\xBF\xE0\xD8\xD2\xD5\xE2", "ISO-8859-5"), kPrivet);
    EXPECT_EQ(Clean("\xBF\xE0\xD8\xD2\xD5\xE2", "28595"), kPrivet);
    EXPECT_EQ(Clean("\xA4", "28591"), "\xC2\xA4") << "ISO-8859-1, the first of them";
    EXPECT_EQ(Clean("\xA4", "28606"), "\xE2\x82\xAC") << "ISO-8859-16, the last";
    const std::pair<const char*, const char*> kNames[] = {{"", "windows-1252"},
                                                          {"1252", "windows-1252"},
                                                          {"no such page", "windows-1252"},
                                                          {"99999", "windows-1252"},
                                                          {"cp1251", "windows-1251"},
                                                          {"874", "windows-874"},
                                                          {"28592", "ISO-8859-2"},
                                                          {"koi8-r", "KOI8-R"},
                                                          {"932", "Windows-31J"},
                                                          {"936", "GBK"},
                                                          {"cp949", "KS_C_5601-1987"},
                                                          {"950", "Big5"},
                                                          {"866", "CP866"}};
    for (const auto& [name, told] : kNames) {
        EXPECT_EQ(CodePage(name).GetName(), told) << name;
    }
    EXPECT_FALSE(CodePage::IsKnown("28590"));
    EXPECT_FALSE(CodePage::IsKnown("28607"));
}

TEST(CodePage, HasLettersOfTwoBytesWhereTheSystemHasThem) {
    const std::string nihon = "\xE6\x97\xA5\xE6\x9C\xAC"; // "Japan"
    EXPECT_EQ(Clean("\x93\xFA\x96\x7B", "932"), nihon);
    EXPECT_EQ(Clean("\x93\xFA\x96\x7B", "Shift_JIS"), nihon);
    EXPECT_EQ(Clean("\xC8\xD5\xB1\xBE", "936"), nihon);
    EXPECT_EQ(Clean("\xC6\xFC\xCB\xDC", "51932"), nihon);
    EXPECT_EQ(Clean("\xC8\xD5\xB1\xBE", "54936"), nihon);
    EXPECT_EQ(Clean("\x93\xFA\x96\x7B\x93", "932"), nihon) << "cut within a letter";
    EXPECT_EQ(Clean("\x93\xFA\xFF\x96\x7B", "932"), nihon.substr(0, 3) + "\xEF\xBF\xBD" + nihon.substr(3));
}

TEST(CodePage, ThatNobodyKnowsIsTheBuiltInOne) {
    const std::string euro = "\xE2\x82\xAC\xC3\xBC"; // the euro and u umlaut
    EXPECT_EQ(Str(CleanText("\x80\xFC", TextEncoding::Unstated)), euro);
    for (const char* name : {"", "1252", "cp1252", "Windows-1252"}) {
        EXPECT_TRUE(CodePage::IsKnown(name)) << name;
        EXPECT_EQ(Clean("\x80\xFC", name), euro) << name;
        EXPECT_EQ(Clean("\x81", name), "") << "a hole, in which a control character stands";
    }
    const std::string tooLong = "CP" + std::string(39, '1');
    for (const char* name : {"no such page", "CP1251//TRANSLIT", "/", "1251/", "-1251", "4294967296",
                             "UTF-16", "UCS-4", "IBM037", "CP1251 ", tooLong.c_str()}) {
        EXPECT_FALSE(CodePage::IsKnown(name)) << name;
    }
    for (const char* name : {"no such page", "CP1251//TRANSLIT", "4294967296", "99999"}) {
        EXPECT_EQ(Clean("\x80\xFC", name), euro) << name;
    }
}

TEST(CodePage, IsAskedForWhatIsNoUtf8Only) {
    EXPECT_EQ(Clean(kPrivet, "1251"), kPrivet);
    EXPECT_EQ(Clean("plain", "1251"), "plain");
    EXPECT_EQ(Clean("\xCF\xF0", "1251", TextEncoding::Utf8), "\xD0\x9F\xD1\x80")
        << "no UTF-8, whatever it says";
    EXPECT_EQ(Str(CleanText(std::string("\0\xCF", 2), TextEncoding::Utf16Big, CodePage("1251"))), "\xC3\x8F");
    const std::string two("\xCF\0\xF0", 3);
    const auto texts = CleanTexts(two, TextEncoding::Unstated, 8, CodePage("1251"));
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(Str(texts[1]), "\xD1\x80");
}

TEST(CodePage, GivesUtf8ForAnyBytes) {
    for (const char* name :
         {"1250", "1251", "1253",       "1254",        "1255",         "1256",   "1257",
          "1258", "874",  "866",        "437",         "KOI8-R",       "932",    "936",
          "949",  "950",  "ISO-8859-2", "ISO-8859-11", "no such page", "UTF-16", "UTF-7"}) {
        for (unsigned first = 1; first < 256; ++first) {
            for (unsigned second = 0x70; second < 256; second += 5) {
                const std::string bytes = {'x', static_cast<char>(first), static_cast<char>(second)};
                const std::string text = CodePage(name).ToUtf8(bytes);
                ASSERT_TRUE(IsWholeUtf8(text)) << name << " " << first << " " << second;
                ASSERT_TRUE(IsWholeUtf8(Clean(bytes, name))) << name << " " << first << " " << second;
            }
        }
    }
}

TEST(CodePage, ALongTextIsReadWhole) {
    // Longer than what is converted at once, with letters of two and three bytes across its ends.
    EXPECT_EQ(CodePage("1251").ToUtf8(std::string(1000, '\xCF')).size(), 2000U);
    EXPECT_EQ(CodePage("1251").ToUtf8("x" + std::string(1000, '\xCF')).size(), 2001U);
    EXPECT_EQ(CodePage("1251").ToUtf8(std::string(1000, '\x88')).size(), 3000U) << "the euro";
    EXPECT_EQ(Clean(std::string(1000, '\xCF'), "1251").size(), kCleanText_MaxLength);
}
