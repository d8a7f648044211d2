#include "ez/Environment.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

std::string TextOf(const ezEnvironment& anEnvironment, const char* aName) {
    const char* text = ezPropertyList_Get_charPtr(anEnvironment.Get(), aName);
    return text != nullptr ? text : "<none>";
}

} // namespace

TEST(Environment, PropertiesAndFilesHaveTheirNames) {
    EXPECT_STREQ(kProperty_Parser_SpecsLevel, "ParserSpecsLevel");
    EXPECT_STREQ(kProperty_ReadOnlyConfigPath, "ReadOnlyConfigPath");
    EXPECT_STREQ(kProperty_ReadWriteConfigPath, "ReadWriteConfigPath");
    EXPECT_STREQ(kProperty_CTTContext, "CTTContext");
    EXPECT_STREQ(kProperty_TextCodePage, "TextCodePage");
    EXPECT_STREQ(kezMediaTypesFileName, "mediaCTRLMediaTypes.ini");
    EXPECT_STREQ(kezConfigPathFileName, "ConfigPath.ini");
    EXPECT_EQ(kProperty_CTTContext_Off, 0U);
    EXPECT_EQ(kProperty_CTTContext_NameHelps, 1U);
    EXPECT_EQ(kProperty_CTTContext_NameDecides, 2U);
}

TEST(Environment, HasNoPropertyUntilOneIsSet) {
    const ezEnvironment environment;
    ASSERT_NE(environment.Get(), nullptr);
    for (const char* name : {kProperty_Parser_SpecsLevel, kProperty_ReadOnlyConfigPath,
                             kProperty_ReadWriteConfigPath, kProperty_CTTContext, kProperty_TextCodePage}) {
        EXPECT_EQ(TextOf(environment, name), "<none>") << name;
    }
}

TEST(Environment, IsMadeWithTheFoldersThatAreGiven) {
    const ezEnvironment one("ro");
    EXPECT_EQ(TextOf(one, "ReadOnlyConfigPath"), "ro");
    EXPECT_EQ(TextOf(one, "ReadWriteConfigPath"), "<none>");
    const ezEnvironment both("ro", "rw");
    EXPECT_EQ(TextOf(both, "ReadOnlyConfigPath"), "ro");
    EXPECT_EQ(TextOf(both, "ReadWriteConfigPath"), "rw");
    const ezEnvironment writable("", "rw");
    EXPECT_EQ(TextOf(writable, "ReadOnlyConfigPath"), "<none>");
    EXPECT_EQ(TextOf(writable, "ReadWriteConfigPath"), "rw");
}

TEST(Environment, EachSetterSetsTheProperty) {
    ezEnvironment environment;
    environment.SetSpecsLevel(kProperty_Parser_SpecsLevel_Advanced);
    environment.SetCTTContext(4294967295U);
    environment.SetTextCodePage("windows-1251");
    EXPECT_EQ(ezPropertyList_Get_uint32(environment.Get(), "ParserSpecsLevel"), 2U);
    EXPECT_EQ(ezPropertyList_Get_uint32(environment.Get(), "CTTContext"), 4294967295U);
    EXPECT_EQ(TextOf(environment, "TextCodePage"), "windows-1251");
}

TEST(Environment, AnyPropertyIsSetInARowAndReplaced) {
    ezEnvironment environment;
    environment.Set("Own", "a").Set("Number", 7).Set("Own", std::string("b")).Set("Zero", 0);
    EXPECT_EQ(TextOf(environment, "Own"), "b");
    EXPECT_EQ(ezPropertyList_Get_uint32(environment.Get(), "Number"), 7U);
    EXPECT_EQ(TextOf(environment, "Zero"), "0");
    environment.Set("Own", std::string_view("text", 2)).Set("NUL", std::string_view("a\0b", 3));
    EXPECT_EQ(TextOf(environment, "Own"), "te");
    EXPECT_EQ(TextOf(environment, "NUL"), "a");
}

TEST(Environment, OwnsItsListAlone) {
    EXPECT_FALSE(std::is_copy_constructible_v<ezEnvironment>);
    EXPECT_FALSE(std::is_copy_assignable_v<ezEnvironment>);
    EXPECT_EQ(sizeof(ezEnvironment), sizeof(void*));
}
