#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// The C++ blocks of a Markdown text ("```cpp" to "```", each alone on its line), without their fences.
std::vector<std::string> CodeBlocksOf(const std::string& aGuide);

/// Whether every C++ block of a guide stands, whole lines of it, in one of some sources. A guide without a
/// block fails too, and a block that is empty or never ends. The message shows the blocks that stand in none.
testing::AssertionResult EveryCodeBlockStandsIn(const std::string& aGuide,
                                                const std::vector<std::string>& aSources);
