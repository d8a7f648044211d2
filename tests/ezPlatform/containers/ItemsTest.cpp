#include "ezPlatform/containers/Items.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Walk(const ezPtrList* aList) {
    std::vector<std::string> texts;
    for (const std::string* text : ezItems<std::string>(aList)) {
        texts.push_back(*text);
    }
    return texts;
}

} // namespace

TEST(Items, WalksTheListInOrder) {
    std::string first = "first";
    std::string second = "second";
    ezPtrList* list = ezPtrList_New();
    EXPECT_EQ(Walk(list), std::vector<std::string>());
    ezPtrList_Append(list, &first);
    EXPECT_EQ(Walk(list), std::vector<std::string>{"first"});
    ezPtrList_Append(list, &second);
    ezPtrList_Append(list, &first);
    EXPECT_EQ(Walk(list), (std::vector<std::string>{"first", "second", "first"}));
    ezPtrList_Delete(list);
}

TEST(Items, ANullListIsEmpty) {
    EXPECT_EQ(Walk(nullptr), std::vector<std::string>());
}

TEST(Items, ItemsMayBeChangedThroughTheView) {
    std::string text = "text";
    ezPtrList* list = ezPtrList_New();
    ezPtrList_Append(list, &text);
    for (std::string* item : ezItems<std::string>(list)) {
        *item += "!";
    }
    EXPECT_EQ(text, "text!");
    ezPtrList_Delete(list);
}

TEST(Items, GivesNullItemsToo) {
    ezPtrList* list = ezPtrList_New();
    ezPtrList_Append(list, nullptr);
    int count = 0;
    for (const std::string* item : ezItems<std::string>(list)) {
        EXPECT_EQ(item, nullptr);
        ++count;
    }
    EXPECT_EQ(count, 1);
    ezPtrList_Delete(list);
}
