#include "ezPlatform/text/CString.h"

#include "ezPlatform/base/Memory.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace {

std::string Replaced(const std::string& aText, const char* aFind, const char* aWith, bool afAll) {
    return std::string(ezCString(aText.data(), aText.size()).Replace(aFind, aWith, afAll).View());
}

/// The number of a text, or a text of what went wrong.
std::string Int32Of(const std::string& aText) {
    std::int32_t value = 4711;
    if (ezReadInt32(aText, &value)) {
        return std::to_string(value);
    }
    EXPECT_EQ(value, 4711) << aText << ": a failure writes nothing";
    return "refused";
}

} // namespace

TEST(CStringPad, FillsUpToALengthBeforeOrAfter) {
    EXPECT_EQ(ezCString("1234").Pad(8, '0', false), "00001234");
    EXPECT_EQ(ezCString("/0").Pad(5, '0', true), "/0000");
    EXPECT_EQ(ezCString("").Pad(2, 'x', true), "xx");
    EXPECT_EQ(ezCString("ab").Pad(3, '\0', true).View(), std::string_view("ab\0", 3));
}

TEST(CStringPad, ALongEnoughTextStaysAsItIs) {
    for (const bool fBehind : {false, true}) {
        EXPECT_EQ(ezCString("1234").Pad(4, '0', fBehind), "1234");
        EXPECT_EQ(ezCString("12345").Pad(4, '0', fBehind), "12345");
        EXPECT_EQ(ezCString("1").Pad(0, '0', fBehind), "1");
    }
}

TEST(CStringReplace, ReplacesEveryOccurrenceOrTheFirstAlone) {
    EXPECT_EQ(Replaced("a,b,c", ",", "\\,", true), "a\\,b\\,c");
    EXPECT_EQ(Replaced("a,b,c", ",", "\\,", false), "a\\,b,c");
    EXPECT_EQ(Replaced("abcabc", "bc", "", true), "aa");
    EXPECT_EQ(Replaced("abcabc", "bc", "", false), "aabc");
    EXPECT_EQ(Replaced("abc", "abc", "x", true), "x");
    EXPECT_EQ(Replaced("", "a", "b", true), "");
}

TEST(CStringReplace, WhatWasWrittenIsNotSearchedAgain) {
    EXPECT_EQ(Replaced("aa", "a", "aa", true), "aaaa");
    EXPECT_EQ(Replaced("aab", "ab", "b", true), "ab");
    EXPECT_EQ(Replaced("aaa", "aa", "b", true), "ba");
}

TEST(CStringReplace, IsToTheLetter) {
    EXPECT_EQ(Replaced("aA", "a", "x", true), "xA");
    EXPECT_EQ(Replaced("ab", "ba", "x", true), "ab");
}

TEST(CStringReplace, AnEmptyTextOccursNowhereAndNullIsEmpty) {
    EXPECT_EQ(Replaced("ab", "", "x", true), "ab");
    EXPECT_EQ(Replaced("ab", nullptr, "x", true), "ab");
    EXPECT_EQ(Replaced("ab", "a", nullptr, true), "b");
}

TEST(CStringReplace, KeepsNULBytesAndTheTextItself) {
    const ezCString text("a\0a", 3);
    EXPECT_EQ(std::string(text.Replace("a", "b", true).View()), std::string("b\0b", 3));
    EXPECT_EQ(std::string(text.View()), std::string("a\0a", 3));
}

TEST(CStringReplace, MegabytesCostOnePass) {
    const std::string commas(1000000, ',');
    const std::clock_t start = std::clock();
    EXPECT_EQ(Replaced(commas, ",", "\\,", true).size(), 2000000U);
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 20.0);
}

RC_GTEST_PROP(CStringReplaceModel, PutsPiecesTogetherWithTheOtherText, ()) {
    const auto text = *rc::gen::container<std::string>(rc::gen::element('a', 'b', ','));
    const auto with = *rc::gen::container<std::string>(rc::gen::element('a', ',', 'x'));
    std::string expected;
    for (const char character : text) {
        expected += character == ',' ? with : std::string(1, character);
    }
    RC_ASSERT(Replaced(text, ",", with.c_str(), true) == expected);
}

TEST(CStringLast, IsTheLastByteAndNULForTheEmptyText) {
    EXPECT_EQ(ezCString("ab;").Last(), ';');
    EXPECT_EQ(ezCString("x").Last(), 'x');
    EXPECT_EQ(ezCString("").Last(), '\0');
    EXPECT_EQ(ezCString("a\0", 2).Last(), '\0');
}

TEST(CStringFormat, FormatsAsPrintfDoes) {
    EXPECT_EQ(ezCString::Format("%08lX", 0x1500000UL), "01500000");
    EXPECT_EQ(ezCString::Format("%lu", 4294967295UL), "4294967295");
    EXPECT_EQ(ezCString::Format("%c%s%%", 'a', "bc"), "abc%");
    EXPECT_TRUE(ezCString::Format("%s", "").IsEmpty());
}

TEST(CStringFormat, TextsOfAnyLengthAreWhole) {
    for (const std::size_t length : {1U, 15U, 16U, 255U, 256U, 4096U, 1000000U}) {
        const std::string text(length, 'x');
        const ezCString formatted = ezCString::Format("%s", text.c_str());
        EXPECT_EQ(formatted.GetLength(), length);
        EXPECT_TRUE(formatted == text.c_str()) << length;
    }
}

TEST(CStringFormat, KeepsANULThatWasAskedFor) {
    const ezCString text = ezCString::Format("a%cb", '\0');
    EXPECT_EQ(std::string(text.View()), std::string("a\0b", 3));
}

TEST(CStringFromAllocatedString, TakesTheTextOver) {
    EXPECT_EQ(ezCString::FromAllocatedString(ezStrdup("abc")), "abc");
    EXPECT_TRUE(ezCString::FromAllocatedString(ezStrdup("")).IsEmpty());
    EXPECT_TRUE(ezCString::FromAllocatedString(nullptr).IsEmpty());
}

TEST(CStringInt32, ReadsAWholeSignedNumber) {
    EXPECT_EQ(Int32Of("0"), "0");
    EXPECT_EQ(Int32Of("-0"), "0");
    EXPECT_EQ(Int32Of("-1"), "-1");
    EXPECT_EQ(Int32Of("0042"), "42");
    EXPECT_EQ(Int32Of("2147483647"), "2147483647");
    EXPECT_EQ(Int32Of("-2147483648"), "-2147483648");
}

TEST(CStringInt32, RefusesEverythingElse) {
    for (const char* text : {"", "-", "+1", "--1", "- 1", " 1", "1 ", "1.0", "1e3", "0x1", "a", "2147483648",
                             "-2147483649", "4294967295", "99999999999999999999", "-99999999999999999999"}) {
        EXPECT_EQ(Int32Of(text), "refused") << text;
    }
    EXPECT_EQ(Int32Of(std::string("1\0", 2)), "refused");
}

RC_GTEST_PROP(CStringInt32Model, ReadsBackEveryNumberWritten, (std::int32_t aNumber)) {
    std::int32_t value = 0;
    RC_ASSERT(ezReadInt32(std::to_string(aNumber), &value));
    RC_ASSERT(value == aNumber);
}

TEST(CStringHexWord, ReadsOneToEightDigitsOfEitherCase) {
    EXPECT_EQ(ezHexWord("0"), 0U);
    EXPECT_EQ(ezHexWord("f"), 15U);
    EXPECT_EQ(ezHexWord("F0000000"), 0xF0000000U);
    EXPECT_EQ(ezHexWord("8d118000"), 0x8D118000U);
    EXPECT_EQ(ezHexWord("FFFFFFFF"), UINT32_MAX);
    EXPECT_EQ(ezHexWord("00000001"), 1U);
}

TEST(CStringHexWord, IsZeroForAnyOtherText) {
    for (const char* text :
         {"", "123456789", "000000001", "0x1", "1g", " 1", "1 ", "-1", "+1", "@", "`", ":", "/", "G"}) {
        EXPECT_EQ(ezHexWord(text), 0U) << text;
    }
    EXPECT_EQ(ezHexWord(std::string_view("1\0", 2)), 0U);
}
