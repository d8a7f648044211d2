#include "ezPlatform/text/StringList.h"

#include "support/Str.h"
#include "support/TurkishLocale.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

TEST(StringList, KeepsTheOrderAddedAndDuplicates) {
    ezStringList list;
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetCount(), 0U);
    for (const char* text : {"b", "a", "b", "", "B"}) {
        list.Add(text);
    }
    EXPECT_FALSE(list.IsEmpty());
    ASSERT_EQ(list.GetCount(), 5U);
    EXPECT_EQ(Str(list.GetAt(0)), "b");
    EXPECT_EQ(Str(list.GetAt(1)), "a");
    EXPECT_EQ(Str(list.GetAt(2)), "b");
    EXPECT_EQ(Str(list.GetAt(3)), "");
    EXPECT_EQ(Str(list.GetAt(4)), "B");
}

TEST(StringList, GivesTheEmptyTextAfterTheEnd) {
    ezStringList list;
    EXPECT_EQ(Str(list.GetAt(0)), "");
    list.Add("a");
    EXPECT_EQ(Str(list.GetAt(1)), "");
    EXPECT_EQ(Str(list.GetAt(SIZE_MAX)), "");
}

TEST(StringList, CopiesWhatIsAdded) {
    ezStringList list;
    std::string text = "abc";
    list.Add(text.c_str());
    text[0] = 'x';
    EXPECT_EQ(Str(list.GetAt(0)), "abc");
}

TEST(StringList, HasIsToTheLetterWithExactCaseOnly) {
    ezStringList list;
    list.Add("Video/MPEG");
    EXPECT_TRUE(list.Has("Video/MPEG", true));
    EXPECT_FALSE(list.Has("video/mpeg", true));
    EXPECT_TRUE(list.Has("video/mpeg", false));
    EXPECT_TRUE(list.Has("VIDEO/MPEG", false));
    EXPECT_FALSE(list.Has("video/mpe", false));
    EXPECT_FALSE(list.Has("video/mpeg2", false));
    EXPECT_FALSE(list.Has("", false));
    EXPECT_FALSE(list.Has(nullptr, true));
}

TEST(StringList, HasFoldsAToZOnlyWhateverTheLocale) {
    ezStringList list;
    list.Add("TIFF");
    list.Add("ä");
    const TurkishLocale turkish;
    EXPECT_TRUE(list.Has("tiff", false));
    EXPECT_FALSE(list.Has("tıff", false));
    EXPECT_FALSE(list.Has("Ä", false));
}

TEST(CSVStringList, JoinsTheElementsAsTheyAre) {
    ezCSVStringList list = ezCSVStringList::WithSeparator(',');
    EXPECT_EQ(list.GetSeparator(), ',');
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(Str(list.Join()), "");
    list.Add("a");
    EXPECT_EQ(Str(list.Join()), "a");
    list.Add("");
    list.Add("b,\\c");
    EXPECT_EQ(Str(list.Join()), "a,,b,\\c");
}

TEST(CSVStringList, TheNamedCharacterIsTheSeparatorNotAnEscape) {
    ezCSVStringList list = ezCSVStringList::WithSeparator('\\');
    list.Add("a");
    list.Add("b");
    EXPECT_EQ(list.GetSeparator(), '\\');
    EXPECT_EQ(list.GetCount(), 2U);
    EXPECT_EQ(Str(list.Join()), "a\\b");

    ezCSVStringList byNUL = ezCSVStringList::WithSeparator('\0');
    byNUL.Add("a");
    byNUL.Add("b");
    EXPECT_EQ(Str(byNUL.Join()), std::string("a\0b", 3));
}

RC_GTEST_PROP(CSVStringListModel, IsAVectorOfTexts, ()) {
    const std::vector<std::string> texts = *rc::gen::container<std::vector<std::string>>(
        rc::gen::container<std::string>(rc::gen::element('a', 'A', ';')));
    const std::string wanted = *rc::gen::container<std::string>(rc::gen::element('a', 'A', ';'));
    ezCSVStringList list = ezCSVStringList::WithSeparator(';');
    std::string joined;
    bool has = false;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        list.Add(texts[i].c_str());
        joined += (i == 0 ? "" : ";") + texts[i];
        has = has || texts[i] == wanted;
    }
    RC_ASSERT(list.GetCount() == texts.size());
    RC_ASSERT(Str(list.Join()) == joined);
    RC_ASSERT(list.Has(wanted.c_str(), true) == has);
}
