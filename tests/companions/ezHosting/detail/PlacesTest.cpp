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
