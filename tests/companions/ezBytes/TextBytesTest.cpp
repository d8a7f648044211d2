#include "ezBytes/TextBytes.h"
#include "ezBytes/Utf8.h"

#include "support/Str.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace std::string_literals;

namespace {

std::string Clean(const std::string& aBytes, TextEncoding anEncoding,
                  std::size_t aMaximum = kCleanText_MaxLength) {
    return Str(CleanText(aBytes, anEncoding, CodePage(), aMaximum));
}

std::vector<std::string> CleanAll(const std::string& aBytes, TextEncoding anEncoding,
                                  std::size_t aMaxCount = 8) {
    std::vector<std::string> texts;
    for (const ezCString& text : CleanTexts(aBytes, anEncoding, aMaxCount)) {
        texts.push_back(Str(text));
    }
    return texts;
}

using Texts = std::vector<std::string>;
constexpr TextEncoding kAll[] = {TextEncoding::Unstated, TextEncoding::Utf16, TextEncoding::Utf16Big,
                                 TextEncoding::Utf16Little, TextEncoding::Utf8};

} // namespace

TEST(TextBytes, EveryEncodingGivesTheSameText) {
    const std::string expected = "\xC3\x9C\xE2\x82\xAC\xC3\xA9"; // U umlaut, euro, e acute
    EXPECT_EQ(Clean("\0\xDC\x20\xAC\0\xE9"s, TextEncoding::Utf16Big), expected);
    EXPECT_EQ(Clean("\xDC\0\xAC\x20\xE9\0"s, TextEncoding::Utf16Little), expected);
    EXPECT_EQ(Clean("\xFE\xFF\0\xDC\x20\xAC\0\xE9"s, TextEncoding::Utf16), expected);
    EXPECT_EQ(Clean("\xFF\xFE\xDC\0\xAC\x20\xE9\0"s, TextEncoding::Utf16), expected);
    EXPECT_EQ(Clean("\xFF\xFE\xDC\0\xAC\x20\xE9\0"s, TextEncoding::Utf16Big), expected)
        << "a mark is believed";
    EXPECT_EQ(Clean(expected, TextEncoding::Utf8), expected);
    EXPECT_EQ(Clean("\xEF\xBB\xBF" + expected, TextEncoding::Utf8), expected);
    EXPECT_EQ(Clean(expected, TextEncoding::Unstated), expected);
}

TEST(TextBytes, WithoutAMarkTheOrderIsThatOfPlainLetters) {
    EXPECT_EQ(Clean("\0A\0b"s, TextEncoding::Utf16), "Ab");
    EXPECT_EQ(Clean("A\0b\0"s, TextEncoding::Utf16), "Ab");
    EXPECT_EQ(Clean("\x30\x42"s, TextEncoding::Utf16), "\xE3\x81\x82") << "hiragana, as network order has it";
}

TEST(TextBytes, SurrogatesMakeOneCharacterAndHalvesNone) {
    EXPECT_EQ(Clean("\xD8\x3C\xDF\xB5"s, TextEncoding::Utf16Big), "\xF0\x9F\x8E\xB5");
    EXPECT_EQ(Clean("\0a\xD8\x3C\0b"s, TextEncoding::Utf16Big), "a\xEF\xBF\xBD"
                                                                "b");
    EXPECT_EQ(Clean("\0a\xDF\xB5\0b"s, TextEncoding::Utf16Big), "a\xEF\xBF\xBD"
                                                                "b");
    EXPECT_EQ(Clean("\0a\xD8\x3C"s, TextEncoding::Utf16Big), "a\xEF\xBF\xBD");
    EXPECT_EQ(Clean("\0a\0"s, TextEncoding::Utf16Big), "a") << "half a unit";
}

TEST(TextBytes, WhatIsNoUtf8IsOfTheCodePage) {
    EXPECT_EQ(Clean("Caf\xE9", TextEncoding::Unstated), "Caf\xC3\xA9");
    EXPECT_EQ(Clean("Caf\xE9 noir", TextEncoding::Utf8), "Caf\xC3\xA9 noir");
    EXPECT_EQ(Clean("\xC3\xA9t\xC3", TextEncoding::Unstated), "\xC3\xA9t") << "cut within a character";
    EXPECT_EQ(Clean("t\xC3", TextEncoding::Utf8), "t");
    EXPECT_EQ(Clean("t\xC3", TextEncoding::Unstated), "t\xC3\x83") << "it may as well be Latin-1";
    EXPECT_EQ(Clean("\xED\xA0\x80", TextEncoding::Utf8), "\xC3\xAD\xC2\xA0\xE2\x82\xAC") << "a surrogate";
}

TEST(TextBytes, WhatACutLeftOfACharacterGoesAndNothingElse) {
    const std::string whole = "\xC3\xA9"; // e acute: the text is UTF-8
    for (const char* part :
         {"\xC2", "\xDF", "\xE0", "\xE0\xA0", "\xEF\xBF", "\xF0\x90", "\xF0\x90\x80", "\xF4\x8F\xBF"}) {
        EXPECT_EQ(Clean(whole + part, TextEncoding::Unstated), whole) << part;
    }
    const std::string latin = "\xC3\x83\xC2\xA9"; // the same bytes as two letters
    const std::vector<std::pair<std::string, std::string>> others = {
        {"\x80", "\xE2\x82\xAC"}, // no lead byte asked for it
        {"\xBF", "\xC2\xBF"},     //
        {"\xC1", "\xC3\x81"},     // begins nothing, as it would be one of 7 bits
        {"\xF5", "\xC3\xB5"},     // and this one would be above U+10FFFF
        {"\xE0\x9F", "\xC3\xA0\xC5\xB8"}};
    for (const auto& [part, letters] : others) {
        const bool fCut = part == "\xE0\x9F"; // what comes of it is not looked at
        EXPECT_EQ(Clean(whole + part, TextEncoding::Unstated), fCut ? whole : latin + letters) << part;
    }
}

TEST(TextBytes, ControlCharactersEndAtTheirBounds) {
    const std::vector<std::pair<std::string, std::string>> units = {
        {"\x1F", ""}, {"\x20", " "}, {"\x7E", "~"},        {"\x7F", ""},
        {"\x80", ""}, {"\x9F", ""},  {"\xA0", "\xC2\xA0"}, {"\xA1", "\xC2\xA1"}};
    for (const auto& [unit, text] : units) {
        EXPECT_EQ(Clean("\0a\0"s + unit + "\0b"s, TextEncoding::Utf16Big), "a" + text + "b") << text;
    }
    EXPECT_EQ(Clean("\0a\xFF\xFD\xFF\xFE\xFF\xFF\0b"s, TextEncoding::Utf16Big), "a\xEF\xBF\xBD"
                                                                                "b");
}

TEST(TextBytes, ControlCharactersAndOuterBlanksAreLeftOut) {
    EXPECT_EQ(Clean("  a\tb\r\n\x01\x1F\x7F"
                    "c  ",
                    TextEncoding::Utf8),
              "a b  c");
    EXPECT_EQ(Clean("a\x81\x8D"
                    "b",
                    TextEncoding::Unstated),
              "ab")
        << "the holes of the code page";
    EXPECT_EQ(Clean("a\xC2\x85\xEF\xBF\xBE\xEF\xBF\xBF"
                    "b",
                    TextEncoding::Utf8),
              "ab");
    EXPECT_EQ(Clean(" \t\n", TextEncoding::Utf8), "");
    EXPECT_EQ(Clean("\x01 a", TextEncoding::Utf8), "a");
}

TEST(TextBytes, ATextEndsAtItsFirstZero) {
    EXPECT_EQ(Clean("a\0b"s, TextEncoding::Unstated), "a");
    EXPECT_EQ(Clean("\1\0\0\1\0\0\0b"s, TextEncoding::Utf16Big), "\xC4\x80") << "two zeros, at an even place";
    for (const TextEncoding encoding : kAll) {
        EXPECT_EQ(Clean("", encoding), "");
        EXPECT_EQ(Clean("\0\0ab"s, encoding), "");
    }
}

TEST(TextBytes, TextsArePartedByZeros) {
    EXPECT_EQ(CleanAll("a\0\0b\0"s, TextEncoding::Unstated), (Texts{"a", "b"}));
    EXPECT_EQ(CleanAll("\xFF\xFE"
                       "a\0\0\0b\0"s,
                       TextEncoding::Utf16),
              (Texts{"a", "b"}))
        << "one mark for both";
    EXPECT_EQ(CleanAll("\xFF\xFE"
                       "a\0\0\0\xFE\xFF\0b"s,
                       TextEncoding::Utf16),
              (Texts{"a", "b"}));
    EXPECT_EQ(CleanAll("a\0b\0c"s, TextEncoding::Utf8, 2), (Texts{"a", "b"}));
    EXPECT_EQ(CleanAll("", TextEncoding::Utf16), Texts());
}

TEST(TextBytes, LongTextsAreCutBetweenCharacters) {
    EXPECT_EQ(Clean(std::string(5000, 'x'), TextEncoding::Utf8), std::string(kCleanText_MaxLength, 'x'));
    EXPECT_EQ(Clean("abc\xC3\xA9", TextEncoding::Utf8, 4), "abc");
    EXPECT_EQ(Clean("abc\xC3\xA9", TextEncoding::Utf8, 5), "abc\xC3\xA9");
    EXPECT_EQ(Clean("ab  c", TextEncoding::Utf8, 4), "ab");
}

TEST(TextBytes, AnyBytesGiveCleanUtf8) {
    std::uint64_t state = 1;
    for (unsigned round = 0; round < 20000; ++round) {
        std::string bytes;
        for (unsigned i = 0; i < round % 24; ++i) {
            state = state * UINT64_C(6364136223846793005) + UINT64_C(1442695040888963407);
            bytes.push_back(static_cast<char>(state >> 56));
        }
        const TextEncoding encoding = kAll[round % std::size(kAll)];
        const std::string text = Clean(bytes, encoding, round % 40);
        ASSERT_TRUE(IsWholeUtf8(text)) << round;
        ASSERT_LE(text.size(), round % 40);
        for (const char character : text) {
            ASSERT_TRUE(static_cast<unsigned char>(character) >= 0x20 && character != 0x7F) << round;
        }
    }
}

TEST(Utf8, FirstCharacterHasItsCodePointAndItsLength) {
    struct Case {
        std::string mText;
        char32_t mCodePoint;
        std::size_t mLength;
    };
    for (const Case& at : {Case{"ab", U'a', 1},
                           {"\0"s, U'\0', 1},
                           {"\xC3\x9C!", 0xDC, 2},
                           {"\xE2\x82\xAC", 0x20AC, 3},
                           {"\xF0\x9F\x8E\xB5", 0x1F3B5, 4},
                           {"\xF4\x8F\xBF\xBF", 0x10FFFF, 4},
                           {"", 0, 0},
                           {"\x80", 0, 0},
                           {"\xC0\x80", 0, 0}, // longer than need be
                           {"\xE2\x82", 0, 0},
                           {"\xE2\x82!", 0, 0},
                           {"\xED\xA0\x80", 0, 0}, // a surrogate
                           {"\xF4\x90\x80\x80", 0, 0}}) {
        const Utf8Character character = FirstUtf8Character(at.mText);
        EXPECT_EQ(static_cast<std::uint32_t>(character.mCodePoint),
                  static_cast<std::uint32_t>(at.mCodePoint));
        EXPECT_EQ(character.mLength, at.mLength);
        EXPECT_EQ(LengthOfFirstUtf8(at.mText), at.mLength);
    }
}
