#include "ezPlatform/text/CString.h"

#include "support/Str.h"
#include "support/TurkishLocale.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <clocale>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

namespace {

/// Every byte once, in order.
std::string AllBytes() {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

/// Folding said the long way round: what stands at the same place of the other alphabet.
std::string Folded(std::string aText, const char* aFrom, const char* aTo) {
    for (char& character : aText) {
        const char* at = character != '\0' ? std::strchr(aFrom, character) : nullptr;
        if (at != nullptr) {
            character = aTo[at - aFrom];
        }
    }
    return aText;
}

constexpr const char* kUpper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr const char* kLower = "abcdefghijklmnopqrstuvwxyz";

std::string LowerOf(const std::string& aText) {
    return Folded(aText, kUpper, kLower);
}

int Sign(int aValue) {
    return (aValue > 0) - (aValue < 0);
}

} // namespace

TEST(CString, IsEmptyWhenMadeOfNothing) {
    const char* nothing = nullptr;
    for (const ezCString& text : {ezCString(), ezCString(nothing), ezCString(nothing, 5), ezCString(""),
                                  ezCString("abc", 0), ezCString(std::string_view())}) {
        EXPECT_TRUE(text.IsEmpty());
        EXPECT_EQ(text.GetLength(), 0U);
        ASSERT_NE(text.c_str(), nullptr);
        EXPECT_STREQ(text.c_str(), "");
        EXPECT_EQ(text.View(), "");
    }
}

TEST(CString, HoldsAnyByte) {
    const std::string bytes = AllBytes();
    const ezCString text(bytes.data(), bytes.size());
    EXPECT_FALSE(text.IsEmpty());
    EXPECT_EQ(text.GetLength(), 256U);
    EXPECT_EQ(Str(text), bytes);
    EXPECT_EQ(Str(ezCString(std::string_view(bytes))), bytes);
    EXPECT_EQ(text.c_str()[256], '\0');
}

TEST(CString, TakesACStringUpToItsEnd) {
    const ezCString text("ab\0cd");
    EXPECT_EQ(text.GetLength(), 2U);
    EXPECT_EQ(Str(text), "ab");
}

TEST(CString, OperationsLeaveTheTextAsItIs) {
    const ezCString text(" A.b.C ");
    text.Left(2);
    text.Mid(1, 2);
    text.BeforeFirst('.');
    text.AfterFirst('.');
    text.BeforeLast('.');
    text.AfterLast('.');
    text.Lower();
    text.Upper();
    text.TrimLeftRight();
    static_cast<void>(text + "x");
    EXPECT_EQ(Str(text), " A.b.C ");
}

TEST(CString, LeftClamps) {
    const ezCString text("abcdef");
    EXPECT_EQ(Str(text.Left(0)), "");
    EXPECT_EQ(Str(text.Left(2)), "ab");
    EXPECT_EQ(Str(text.Left(6)), "abcdef");
    EXPECT_EQ(Str(text.Left(7)), "abcdef");
    EXPECT_EQ(Str(text.Left(SIZE_MAX)), "abcdef");
    EXPECT_EQ(Str(ezCString().Left(3)), "");
    EXPECT_EQ(Str(Bytes(std::string("a\0b", 3)).Left(2)), std::string("a\0", 2));
}

TEST(CString, MidClamps) {
    const ezCString text("abcdef");
    EXPECT_EQ(Str(text.Mid(0)), "abcdef");
    EXPECT_EQ(Str(text.Mid(2)), "cdef");
    EXPECT_EQ(Str(text.Mid(2, 3)), "cde");
    EXPECT_EQ(Str(text.Mid(2, 0)), "");
    EXPECT_EQ(Str(text.Mid(2, 4)), "cdef");
    EXPECT_EQ(Str(text.Mid(2, 5)), "cdef");
    EXPECT_EQ(Str(text.Mid(2, -1)), "cdef");
    EXPECT_EQ(Str(text.Mid(5)), "f");
    EXPECT_EQ(Str(text.Mid(6)), "");
    EXPECT_EQ(Str(text.Mid(7, 2)), "");
    EXPECT_EQ(Str(text.Mid(SIZE_MAX, 2)), "");
    EXPECT_EQ(Str(text.Mid(1, std::numeric_limits<std::ptrdiff_t>::max())), "bcdef");
    EXPECT_EQ(Str(ezCString().Mid(0)), "");
}

TEST(CString, BeforeAndAfterACharacter) {
    const ezCString text("one.two.three");
    EXPECT_EQ(Str(text.BeforeFirst('.')), "one");
    EXPECT_EQ(Str(text.AfterFirst('.')), "two.three");
    EXPECT_EQ(Str(text.BeforeLast('.')), "one.two");
    EXPECT_EQ(Str(text.AfterLast('.')), "three");
}

TEST(CString, WithoutTheCharacterAfterFirstIsEmptyAndTheOthersAreTheWholeText) {
    const ezCString text("README");
    EXPECT_EQ(Str(text.BeforeFirst('.')), "README");
    EXPECT_EQ(Str(text.BeforeLast('.')), "README");
    EXPECT_EQ(Str(text.AfterLast('.')), "README");
    EXPECT_EQ(Str(text.AfterFirst('.')), "");
}

TEST(CString, BeforeAndAfterACharacterAtAnEndAreEmpty) {
    EXPECT_EQ(Str(ezCString(".a").BeforeFirst('.')), "");
    EXPECT_EQ(Str(ezCString(".a").BeforeLast('.')), "");
    EXPECT_EQ(Str(ezCString("a.").AfterFirst('.')), "");
    EXPECT_EQ(Str(ezCString("a.").AfterLast('.')), "");
    EXPECT_EQ(Str(ezCString(".").AfterLast('.')), "");
    EXPECT_EQ(Str(ezCString().BeforeFirst('.')), "");
    EXPECT_EQ(Str(ezCString().AfterLast('.')), "");
}

TEST(CString, ANULIsACharacterLikeAnyOther) {
    const ezCString text = Bytes(std::string("a\0b\0c", 5));
    EXPECT_EQ(Str(text.BeforeFirst('\0')), "a");
    EXPECT_EQ(Str(text.AfterFirst('\0')), std::string("b\0c", 3));
    EXPECT_EQ(Str(text.BeforeLast('\0')), std::string("a\0b", 3));
    EXPECT_EQ(Str(text.AfterLast('\0')), "c");
    EXPECT_EQ(Str(ezCString("abc").AfterFirst('\0')), "");
    EXPECT_EQ(Str(ezCString("abc").AfterLast('\0')), "abc");
}

TEST(CString, LowerAndUpperTouchAToZOnly) {
    const std::string bytes = AllBytes();
    EXPECT_EQ(Str(Bytes(bytes).Lower()), Folded(bytes, kUpper, kLower));
    EXPECT_EQ(Str(Bytes(bytes).Upper()), Folded(bytes, kLower, kUpper));
    for (const char byte : bytes) {
        EXPECT_EQ(ezLower(byte), Folded(std::string(1, byte), kUpper, kLower)[0]);
    }
    EXPECT_EQ(Str(ezCString("Öl-ÄÉ Straße XyZ").Lower()), "Öl-ÄÉ straße xyz");
    EXPECT_EQ(Str(ezCString("öl-äé straße xyz").Upper()), "öL-äé STRAßE XYZ");
}

TEST(CString, FoldingDoesNotDependOnTheLocale) {
    const std::string bytes = AllBytes();
    const TurkishLocale turkish;
    EXPECT_EQ(Str(ezCString("TITLE").Lower()), "title");
    EXPECT_EQ(Str(ezCString("title").Upper()), "TITLE");
    EXPECT_EQ(Str(ezCString("Iıİi").Lower()), "iıİi");
    EXPECT_EQ(Str(ezCString("Iıİi").Upper()), "IıİI");
    EXPECT_EQ(Str(Bytes(bytes).Lower()), Folded(bytes, kUpper, kLower));
    EXPECT_EQ(Str(Bytes(bytes).Upper()), Folded(bytes, kLower, kUpper));
    EXPECT_EQ(ezLower('I'), 'i');
    EXPECT_EQ(ezCString("AVI").CompareNoCase("avi"), 0);
    EXPECT_EQ(ezCString("tiff").CompareNoCase("TIFF"), 0);
    EXPECT_NE(ezCString("ı").CompareNoCase("I"), 0);
    EXPECT_NE(ezCString("İ").CompareNoCase("i"), 0);
    EXPECT_EQ(Str(ezCString("\xC2\xA0x\xC2\xA0").TrimLeftRight()), "\xC2\xA0x\xC2\xA0");
}

TEST(CString, TrimTakesWhiteSpaceOffBothEndsOnly) {
    EXPECT_EQ(Str(ezCString(" \t\r\n\v\fa b\t c \t\r\n\v\f").TrimLeftRight()), "a b\t c");
    EXPECT_EQ(Str(ezCString("a").TrimLeftRight()), "a");
    EXPECT_EQ(Str(ezCString("  ").TrimLeftRight()), "");
    EXPECT_EQ(Str(ezCString().TrimLeftRight()), "");
    EXPECT_EQ(Str(Bytes(std::string("\0 a \0", 5)).TrimLeftRight()), std::string("\0 a \0", 5));
    const std::string white = " \t\r\n\v\f";
    for (const char byte : AllBytes()) {
        const bool isWhite = white.find(byte) != std::string::npos;
        EXPECT_EQ(Str(Bytes(std::string(1, byte) + "x" + byte).TrimLeftRight()) == "x", isWhite)
            << static_cast<int>(byte);
    }
}

TEST(CString, TrimmedIsAPartOfTheGivenText) {
    const std::string_view text = "  ab ";
    const std::string_view trimmed = ezTrimmed(text);
    EXPECT_EQ(trimmed, "ab");
    EXPECT_EQ(trimmed.data(), text.data() + 2);
    EXPECT_EQ(ezTrimmed(" \t "), "");
    EXPECT_EQ(ezTrimmed(std::string_view()), "");
}

TEST(CString, ContainsAndStartsWithAreExact) {
    const ezCString text("http-get:*:audio/L16");
    EXPECT_TRUE(text.Contains("*:audio"));
    EXPECT_TRUE(text.Contains(""));
    EXPECT_FALSE(text.Contains("AUDIO"));
    EXPECT_FALSE(text.Contains(nullptr));
    EXPECT_FALSE(ezCString().Contains("a"));
    EXPECT_TRUE(text.StartsWith("http-get"));
    EXPECT_TRUE(text.StartsWith(""));
    EXPECT_TRUE(text.StartsWith(text.View()));
    EXPECT_FALSE(text.StartsWith("http-get:*:audio/L160"));
    EXPECT_FALSE(text.StartsWith("HTTP"));
    EXPECT_FALSE(text.StartsWith("ttp"));
    EXPECT_FALSE(ezCString().StartsWith("a"));
}

TEST(CString, ComparesByteByByte) {
    EXPECT_EQ(ezCString("abc").Compare("abc"), 0);
    EXPECT_LT(ezCString("abc").Compare("abd"), 0);
    EXPECT_GT(ezCString("abd").Compare("abc"), 0);
    EXPECT_LT(ezCString("ab").Compare("abc"), 0);
    EXPECT_GT(ezCString("abc").Compare(""), 0);
    EXPECT_LT(ezCString("Z").Compare("a"), 0);
    EXPECT_LT(ezCString("z").Compare("\xC3\xA4"), 0) << "bytes compare as unsigned";
    EXPECT_NE(Bytes(std::string("a\0b", 3)).Compare(Bytes(std::string("a\0c", 3))), 0);
}

TEST(CString, ComparesWithoutCaseAsTheLowerCaseForms) {
    EXPECT_EQ(ezCString("MPEG_ps").CompareNoCase("mpeg_PS"), 0);
    EXPECT_LT(ezCString("A").CompareNoCase("b"), 0);
    EXPECT_LT(ezCString("a").CompareNoCase("B"), 0);
    EXPECT_GT(ezCString("b").CompareNoCase("A"), 0);
    EXPECT_LT(ezCString("AB").CompareNoCase("abc"), 0);
    EXPECT_GT(ezCString("ABC").CompareNoCase("ab"), 0);
    EXPECT_LT(ezCString("_").CompareNoCase("A"), 0) << "'_' lies between upper and lower case";
    EXPECT_LT(ezCString("z").CompareNoCase("\xC3\x84"), 0);
    EXPECT_NE(ezCString("Ä").CompareNoCase("ä"), 0);
    EXPECT_NE(ezCString("@").CompareNoCase("`"), 0);
    EXPECT_NE(ezCString("[").CompareNoCase("{"), 0);
}

TEST(CString, EqualityAndOrderAreThoseOfTheBytes) {
    const ezCString a("a");
    const ezCString other("b");
    const ezCString withNUL = Bytes(std::string("a\0b", 3));
    EXPECT_TRUE(a == ezCString("a"));
    EXPECT_FALSE(a == other);
    EXPECT_TRUE(a != ezCString("A"));
    EXPECT_FALSE(a != ezCString("a"));
    EXPECT_TRUE(a == "a");
    EXPECT_FALSE(a != "a");
    EXPECT_TRUE(a != "A");
    EXPECT_FALSE(withNUL == "a");
    EXPECT_FALSE(withNUL == a);
    EXPECT_TRUE(a < other);
    EXPECT_FALSE(other < a);
    EXPECT_FALSE(a < a);
    EXPECT_TRUE(a < withNUL);
    const char* nothing = nullptr;
    EXPECT_TRUE(ezCString() == nothing);
    EXPECT_TRUE(a != nothing);
}

TEST(CString, AddsTexts) {
    ezCString text("a");
    text += "b";
    text += Bytes(std::string("\0c", 2));
    EXPECT_EQ(Str(text), std::string("ab\0c", 4));
    text += text;
    EXPECT_EQ(Str(text), std::string("ab\0cab\0c", 8));
    EXPECT_EQ(Str(ezCString("x") + ezCString("y") + "z"), "xyz");
    EXPECT_EQ(Str("x" + ezCString("y")), "xy");
    const char* nothing = nullptr;
    EXPECT_EQ(Str(ezCString("x") + nothing), "x");
}

TEST(CString, ReadsADecimalNumberOnlyFromAWholeTextOfDigits) {
    std::uint64_t value = 7;
    uint32 value32 = 7;
    for (const char* text :
         {"", " ", "-1", "+1", " 1", "1 ", "1\n", "0x10", "1a", "a", "1.0", "1,0", "\xD9\xA1", "1e3"}) {
        EXPECT_FALSE(ezReadDecimal(text, &value)) << text;
        EXPECT_FALSE(ezReadDecimal32(text, &value32)) << text;
    }
    EXPECT_FALSE(ezReadDecimal(std::string_view("1\0", 2), &value));
    EXPECT_FALSE(ezReadDecimal32(std::string_view("1\0", 2), &value32));
    EXPECT_EQ(value, 7U) << "written only on success";
    EXPECT_EQ(value32, 7U) << "written only on success";
    EXPECT_TRUE(ezReadDecimal("0", &value));
    EXPECT_EQ(value, 0U);
    EXPECT_TRUE(ezReadDecimal32("0099", &value32));
    EXPECT_EQ(value32, 99U);
    EXPECT_TRUE(ezReadDecimal(std::string(1000, '0') + "12", &value));
    EXPECT_EQ(value, 12U);
}

TEST(CString, ReadsADecimalNumberOnlyWhenItFits) {
    std::uint64_t value = 7;
    uint32 value32 = 7;
    EXPECT_TRUE(ezReadDecimal32("4294967295", &value32));
    EXPECT_EQ(value32, UINT32_MAX);
    value32 = 7;
    for (const char* text : {"4294967296", "42949672950", "18446744073709551615", "18446744073709551617"}) {
        EXPECT_FALSE(ezReadDecimal32(text, &value32)) << text;
    }
    EXPECT_EQ(value32, 7U);
    EXPECT_TRUE(ezReadDecimal("18446744073709551615", &value));
    EXPECT_EQ(value, UINT64_MAX);
    EXPECT_TRUE(ezReadDecimal("18446744073709551609", &value));
    EXPECT_EQ(value, UINT64_MAX - 6);
    value = 7;
    for (const char* text : {"18446744073709551616", "18446744073709551620", "184467440737095516150",
                             "99999999999999999999", "55340232221128654848"}) {
        EXPECT_FALSE(ezReadDecimal(text, &value)) << text;
    }
    EXPECT_EQ(value, 7U);
}

RC_GTEST_PROP(CStringModel, ReadsBackEveryNumberWritten, (std::uint64_t aNumber)) {
    std::uint64_t value = ~aNumber;
    RC_ASSERT(ezReadDecimal(std::to_string(aNumber), &value));
    RC_ASSERT(value == aNumber);
    uint32 value32 = 0;
    RC_ASSERT(ezReadDecimal32(std::to_string(aNumber), &value32) == (aNumber <= UINT32_MAX));
}

RC_GTEST_PROP(CStringModel, PartsAreThoseOfStdString, ()) {
    const std::string bytes = *rc::gen::container<std::string>(rc::gen::element('a', 'A', '.', ' ', '\0'));
    const std::size_t start = *rc::gen::inRange<std::size_t>(0, 12);
    const int count = *rc::gen::inRange(-1, 12);
    const ezCString text = Bytes(bytes);

    RC_ASSERT(Str(text.Left(start)) == bytes.substr(0, start));
    const std::string rest = start < bytes.size() ? bytes.substr(start) : "";
    RC_ASSERT(Str(text.Mid(start, count)) ==
              (count < 0 ? rest : rest.substr(0, static_cast<std::size_t>(count))));

    const std::size_t first = bytes.find('.');
    const std::size_t last = bytes.rfind('.');
    const bool has = first != std::string::npos;
    RC_ASSERT(Str(text.BeforeFirst('.')) == (has ? bytes.substr(0, first) : bytes));
    RC_ASSERT(Str(text.AfterFirst('.')) == (has ? bytes.substr(first + 1) : ""));
    RC_ASSERT(Str(text.BeforeLast('.')) == (has ? bytes.substr(0, last) : bytes));
    RC_ASSERT(Str(text.AfterLast('.')) == (has ? bytes.substr(last + 1) : bytes));
}

RC_GTEST_PROP(CStringModel, ComparingWithoutCaseIsComparingLowerCaseForms, ()) {
    const auto bytes =
        rc::gen::container<std::string>(rc::gen::element('a', 'A', 'b', 'B', '_', '\0', '\xE4'));
    const std::string left = *bytes;
    const std::string right = *bytes;
    RC_ASSERT(Sign(Bytes(left).CompareNoCase(Bytes(right))) == Sign(LowerOf(left).compare(LowerOf(right))));
    RC_ASSERT(Sign(Bytes(left).Compare(Bytes(right))) == Sign(left.compare(right)));
}
