#include "ezHosting/detail/Places.h"

#include "ezHosting/detail/Limits.h"

#include <gtest/gtest.h>

#include <string>

TEST(ShownPath, IsCutPastItsBound) {
    const std::string edge(kHost_MaxShownPath, 'x');
    EXPECT_EQ(ShownPath(edge), edge);
    EXPECT_EQ(ShownPath(edge + "y"), edge + "...");
    EXPECT_EQ(ShownPath(""), "");
}

TEST(ShownPath, StaysOnOneLine) {
    EXPECT_EQ(ShownPath(std::string_view("a\nb\0c\x1B\x7F\xC3\xA9 d", 10)), "a?b?c??\xC3\xA9 ");
}
