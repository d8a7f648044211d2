#include "ezPlatform/text/StringList.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

Texts ElementsOf(const ezCSVStringList& aList) {
    Texts elements;
    for (std::size_t i = 0; i < aList.GetCount(); ++i) {
        elements.emplace_back(aList.GetAt(i).View());
    }
    return elements;
}

Texts Split(const std::string& aText) {
    return ElementsOf(ezCSVStringList::FromText(ezCString(aText.data(), aText.size())));
}

std::string Joined(const Texts& anElements) {
    ezCSVStringList list = ezCSVStringList::WithSeparator(',');
    for (const std::string& element : anElements) {
        list.Add(element.c_str());
    }
    return std::string(list.JoinEscaped().View());
}

double SecondsOfWork(std::clock_t aStart) {
    return static_cast<double>(std::clock() - aStart) / CLOCKS_PER_SEC;
}

} // namespace

TEST(CSVStringListText, IsPartedByCommas) {
    EXPECT_EQ(Split("a:*:b/c:*,d:*:e/f:*"), Texts({"a:*:b/c:*", "d:*:e/f:*"}));
    EXPECT_EQ(Split("a"), Texts({"a"}));
    EXPECT_EQ(Split("a,"), Texts({"a", ""}));
    EXPECT_EQ(Split(",a"), Texts({"", "a"}));
    EXPECT_EQ(Split(",,"), Texts({"", "", ""}));
    EXPECT_EQ(ezCSVStringList::FromText("a,b").GetSeparator(), ',');
}

TEST(CSVStringListText, TheEmptyTextHasNoElements) {
    EXPECT_EQ(Split(""), Texts());
    EXPECT_EQ(ezCSVStringList::FromText(nullptr).GetCount(), 0U);
}

TEST(CSVStringListText, AnEscapedCommaBelongsToTheElementAndLosesItsBackslash) {
    EXPECT_EQ(Split(R"(h:*:v/m:DLNA.ORG_PN=X;DLNA.ORG_PS=-4\,-2\,2,k:*:l/m:*)"),
              Texts({"h:*:v/m:DLNA.ORG_PN=X;DLNA.ORG_PS=-4,-2,2", "k:*:l/m:*"}));
    EXPECT_EQ(Split(R"(Smith\, Fred,Jones\, Davey)"), Texts({"Smith, Fred", "Jones, Davey"}));
    EXPECT_EQ(Split(R"(\,)"), Texts({","}));
    EXPECT_EQ(Split(R"(\,,\,)"), Texts({",", ","}));
    EXPECT_EQ(Split(R"(a\,)"), Texts({"a,"}));
}

TEST(CSVStringListText, EveryOtherBackslashStays) {
    EXPECT_EQ(Split(R"(a\b,c\\d,\n)"), Texts({R"(a\b)", R"(c\\d)", R"(\n)"}));
    EXPECT_EQ(Split(R"(a\)"), Texts({R"(a\)"}));
    EXPECT_EQ(Split(R"(\)"), Texts({R"(\)"}));
}

// A backslash does not escape a backslash: the one that stands before a comma escapes the comma, always.
TEST(CSVStringListText, ABackslashBeforeABackslashIsNotAnEscape) {
    EXPECT_EQ(Split(R"(a\\,b)"), Texts({R"(a\,b)"}));
    EXPECT_EQ(Split(R"(a\\\,b)"), Texts({R"(a\\,b)"}));
}

TEST(CSVStringListText, BlanksAndQuotesAreCharactersLikeAnyOther) {
    EXPECT_EQ(Split(R"( a ,"b,c")"), Texts({" a ", R"("b)", R"(c")"}));
}

TEST(CSVStringListText, KeepsNULBytes) {
    EXPECT_EQ(Split(std::string("a\0b,\0", 5)), Texts({std::string("a\0b", 3), std::string("\0", 1)}));
}

TEST(CSVStringListText, AnEscapedElementCanBeSplitOnceMore) {
    EXPECT_EQ(Split(Split(R"(clip.mpg,-2\,1\,2,x)")[1]), Texts({"-2", "1", "2"}));
}

TEST(CSVStringListText, JoinEscapedEscapesCommasInsideElementsOnly) {
    EXPECT_EQ(Joined({"a,b", "c", "", R"(d\e)"}), R"(a\,b,c,,d\e)");
    EXPECT_EQ(Joined({",,"}), R"(\,\,)");
    EXPECT_EQ(Joined({}), "");
    EXPECT_EQ(Joined({R"(a\)"}), R"(a\)") << "the last element may end in a backslash";
}

TEST(CSVStringListText, JoinWritesTheElementsAsTheyAre) {
    EXPECT_EQ(ezCSVStringList::FromText(R"(-2\,2,3)").Join(), "-2,2,3");
}

TEST(CSVStringListText, JoinEscapedEscapesCommasWhateverTheSeparator) {
    ezCSVStringList list = ezCSVStringList::WithSeparator(';');
    list.Add("a,b");
    list.Add("c");
    EXPECT_EQ(list.JoinEscaped(), R"(a\,b;c)");
}

TEST(CSVStringListText, RemoveTakesEveryEqualTextOutAndNoOther) {
    ezCSVStringList list = ezCSVStringList::FromText("1,2,1,11,1 ,1/1,1");
    list.Remove("1");
    EXPECT_EQ(ElementsOf(list), Texts({"2", "11", "1 ", "1/1"}));
    list.Remove("x");
    list.Remove("");
    EXPECT_EQ(list.GetCount(), 4U);
    ezCSVStringList names = ezCSVStringList::FromText("a,A,,b");
    names.Remove("a");
    EXPECT_EQ(ElementsOf(names), Texts({"A", "", "b"})) << "case counts";
    names.Remove(nullptr);
    EXPECT_EQ(ElementsOf(names), Texts({"A", "b"})) << "null is the empty text";
}

TEST(CSVStringListText, ResetTakesAllOutAndTheListGoesOn) {
    ezCSVStringList list = ezCSVStringList::FromText("a,b");
    list.Reset();
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.Join(), "");
    list.Add("c");
    list.Add("d");
    EXPECT_EQ(list.Join(), "c,d");
}

TEST(CSVStringListText, ReadsASignedDecimalNumberFromAWholeElement) {
    const ezCSVStringList list = ezCSVStringList::FromText("0,-1,2147483647,-2147483648,007,-0");
    const std::vector<std::int32_t> numbers = {0, -1, INT32_MAX, INT32_MIN, 7, 0};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        bool fOk = false;
        EXPECT_EQ(list.GetAtInt32(i, 99, &fOk), numbers[i]) << i;
        EXPECT_TRUE(fOk) << i;
        EXPECT_EQ(list.GetAtInt32(i, 99, nullptr), numbers[i]) << i;
    }
}

TEST(CSVStringListText, AnElementThatIsNoNumberGivesTheDefault) {
    const ezCSVStringList list = ezCSVStringList::FromText(
        "2147483648,-2147483649, 1,1 ,+1,--1,-,,1.0,0x1,1a,99999999999999999999999");
    for (std::size_t i = 0; i < list.GetCount() + 1; ++i) {
        bool fOk = true;
        EXPECT_EQ(list.GetAtInt32(i, -7, &fOk), -7) << i;
        EXPECT_FALSE(fOk) << i;
    }
    EXPECT_EQ(list.GetAtInt32(SIZE_MAX, 5, nullptr), 5);
}

TEST(CSVStringListText, MegabytesCostOnePass) {
    for (const std::string& piece :
         {std::string(","), std::string("\\,"), std::string("\\"), std::string("a,")}) {
        std::string text;
        while (text.size() < 2000000) {
            text += piece;
        }
        const std::clock_t start = std::clock();
        const ezCSVStringList list = ezCSVStringList::FromText(ezCString(text.data(), text.size()));
        const ezCString back = list.JoinEscaped();
        EXPECT_LT(SecondsOfWork(start), 20.0) << piece;
        EXPECT_EQ(back.View() == text, true) << piece;
    }
}

RC_GTEST_PROP(CSVStringListTextModel, ElementsSurviveJoiningAndSplitting, ()) {
    Texts elements = *rc::gen::nonEmpty(rc::gen::container<Texts>(
        rc::gen::container<std::string>(rc::gen::element('a', ',', '\\', '"', ' ', ';'))));
    // Neither has a text form.
    for (std::size_t i = 0; i + 1 < elements.size(); ++i) {
        while (!elements[i].empty() && elements[i].back() == '\\') {
            elements[i].pop_back();
        }
    }
    RC_PRE(elements.size() > 1 || !elements[0].empty());
    RC_ASSERT(Split(Joined(elements)) == elements);
}

RC_GTEST_PROP(CSVStringListTextModel, AnyTextIsWrittenAsItWasRead, ()) {
    const std::string text =
        *rc::gen::container<std::string>(rc::gen::element('a', ',', '\\', '"', ' ', '\0', '\n'));
    const ezCSVStringList list = ezCSVStringList::FromText(ezCString(text.data(), text.size()));
    RC_ASSERT(std::string(list.JoinEscaped().View()) == text);
}
