#include "ezPlatform/config/PropertyList.h"

#include "ezPlatform/base/Owned.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace {

using List = ezOwned<ezPropertyList_Delete>;

List NewList() {
    return List(ezPropertyList_New());
}

} // namespace

TEST(PropertyList, AnAbsentPropertyIs0AndNull) {
    const List list = NewList();
    EXPECT_EQ(ezPropertyList_Get_uint32(list.get(), "CTTContext"), 0U);
    EXPECT_EQ(ezPropertyList_Get_charPtr(list.get(), "CTTContext"), nullptr);
    EXPECT_EQ(ezPropertyList_Get_charPtr(list.get(), ""), nullptr);
}

TEST(PropertyList, ANumberReadsAsItselfAndAsDecimalText) {
    const List list = NewList();
    ezPropertyList_Set_uint32(list.get(), "level", 3);
    EXPECT_EQ(ezPropertyList_Get_uint32(list.get(), "level"), 3U);
    EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "level"), "3");
    ezPropertyList_Set_uint32(list.get(), "level", UINT32_MAX);
    EXPECT_EQ(ezPropertyList_Get_uint32(list.get(), "level"), UINT32_MAX);
    EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "level"), "4294967295");
    ezPropertyList_Set_uint32(list.get(), "level", 0);
    EXPECT_EQ(ezPropertyList_Get_uint32(list.get(), "level"), 0U);
    EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "level"), "0");
}

TEST(PropertyList, ATextReadsAsANumberOnlyWhenItIsAWholeOne) {
    const List list = NewList();
    ezPropertyList_Set_charPtr(list.get(), "text", "4294967295");
    EXPECT_EQ(ezPropertyList_Get_uint32(list.get(), "text"), UINT32_MAX);
    for (const char* text : {"", "x", "12x", " 12", "12 ", "-1", "+1", "0x1", "4294967296", "1.0"}) {
        ezPropertyList_Set_charPtr(list.get(), "text", text);
        EXPECT_EQ(ezPropertyList_Get_uint32(list.get(), "text"), 0U) << text;
        EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "text"), text);
    }
}

TEST(PropertyList, CopiesNameAndText) {
    const List list = NewList();
    std::string name = "ReadOnlyConfigPath";
    std::string text = "/etc/media";
    ezPropertyList_Set_charPtr(list.get(), name.c_str(), text.c_str());
    name[0] = 'x';
    text[0] = 'x';
    EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "ReadOnlyConfigPath"), "/etc/media");
    EXPECT_EQ(ezPropertyList_Get_charPtr(list.get(), name.c_str()), nullptr);
}

TEST(PropertyList, NamesAreExact) {
    const List list = NewList();
    ezPropertyList_Set_charPtr(list.get(), "Name", "a");
    for (const char* name : {"name", "NAME", "Name ", " Name", "Nam", "Names"}) {
        EXPECT_EQ(ezPropertyList_Get_charPtr(list.get(), name), nullptr) << name;
    }
    ezPropertyList_Set_charPtr(list.get(), "name", "b");
    EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "Name"), "a");
}

TEST(PropertyList, SettingReplacesAndANullTextTakesAway) {
    const List list = NewList();
    ezPropertyList_Set_charPtr(list.get(), "a", "1");
    ezPropertyList_Set_charPtr(list.get(), "b", "2");
    ezPropertyList_Set_charPtr(list.get(), "a", "one");
    EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "a"), "one");
    ezPropertyList_Set_uint32(list.get(), "a", 7);
    EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "a"), "7");
    ezPropertyList_Set_charPtr(list.get(), "a", nullptr);
    EXPECT_EQ(ezPropertyList_Get_charPtr(list.get(), "a"), nullptr);
    EXPECT_EQ(ezPropertyList_Get_uint32(list.get(), "a"), 0U);
    ezPropertyList_Set_charPtr(list.get(), "a", nullptr);
    EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "b"), "2");
    ezPropertyList_Set_charPtr(list.get(), "b", "");
    EXPECT_STREQ(ezPropertyList_Get_charPtr(list.get(), "b"), "") << "empty is not absent";
}

TEST(PropertyList, ATextStaysWhereItIsWhileOthersAreSet) {
    const List list = NewList();
    ezPropertyList_Set_charPtr(list.get(), "kept", "text");
    const char* text = ezPropertyList_Get_charPtr(list.get(), "kept");
    for (uint32 i = 0; i < 1000; ++i) {
        ezPropertyList_Set_uint32(list.get(), ("other" + std::to_string(i)).c_str(), i);
    }
    EXPECT_EQ(ezPropertyList_Get_charPtr(list.get(), "kept"), text);
    EXPECT_STREQ(text, "text");
}

TEST(PropertyList, ANullListHasNoPropertyAndTakesNone) {
    ezPropertyList_Set_uint32(nullptr, "a", 1);
    ezPropertyList_Set_charPtr(nullptr, "a", "1");
    EXPECT_EQ(ezPropertyList_Get_uint32(nullptr, "a"), 0U);
    EXPECT_EQ(ezPropertyList_Get_charPtr(nullptr, "a"), nullptr);
    ezPropertyList_Delete(nullptr);
}

TEST(PropertyList, ANullNameIsNoProperty) {
    const List list = NewList();
    ezPropertyList_Set_uint32(list.get(), nullptr, 1);
    ezPropertyList_Set_charPtr(list.get(), nullptr, "1");
    EXPECT_EQ(ezPropertyList_Get_uint32(list.get(), nullptr), 0U);
    EXPECT_EQ(ezPropertyList_Get_charPtr(list.get(), nullptr), nullptr);
    EXPECT_EQ(ezPropertyList_Get_charPtr(list.get(), ""), nullptr);
}

RC_GTEST_PROP(PropertyListModel, IsAMapOfTexts, ()) {
    const List list = NewList();
    std::map<std::string, std::string> model;
    const std::vector<std::string> names = {"", "a", "A", "b", "ab"};
    const int steps = *rc::gen::inRange(0, 40);
    for (int step = 0; step < steps; ++step) {
        const std::string name = *rc::gen::elementOf(names);
        switch (*rc::gen::inRange(0, 3)) {
        case 0: {
            const uint32 number = *rc::gen::arbitrary<uint32>();
            ezPropertyList_Set_uint32(list.get(), name.c_str(), number);
            model[name] = std::to_string(number);
            break;
        }
        case 1: {
            const std::string text = *rc::gen::container<std::string>(rc::gen::element('1', 'x'));
            ezPropertyList_Set_charPtr(list.get(), name.c_str(), text.c_str());
            model[name] = text;
            break;
        }
        default:
            ezPropertyList_Set_charPtr(list.get(), name.c_str(), nullptr);
            model.erase(name);
        }
        for (const std::string& asked : names) {
            const char* text = ezPropertyList_Get_charPtr(list.get(), asked.c_str());
            const auto found = model.find(asked);
            RC_ASSERT((text != nullptr) == (found != model.end()));
            RC_ASSERT((text == nullptr || found->second == text));
        }
    }
}
