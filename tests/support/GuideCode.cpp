#include "support/GuideCode.h"

#include <algorithm>
#include <cstddef>

namespace {

/// Line for line: what a block begins with begins a line of the source, too.
bool StandsIn(const std::string& aBlock, const std::string& aSource) {
    return !aBlock.empty() && ("\n" + aSource).find("\n" + aBlock) != std::string::npos;
}

} // namespace

std::vector<std::string> CodeBlocksOf(const std::string& aGuide) {
    const std::string begin = "\n```cpp\n";
    const std::string end = "\n```\n";
    const std::string guide = "\n" + aGuide + "\n";
    std::vector<std::string> blocks;
    for (std::size_t at = guide.find(begin); at != std::string::npos; at = guide.find(begin, at)) {
        at += begin.size();
        const std::size_t stop =
            guide.find(end, at - 1); // the line end of the fence may be that of an empty block
        blocks.push_back(stop != std::string::npos && stop >= at ? guide.substr(at, stop + 1 - at) : "");
        at = stop != std::string::npos ? stop : guide.size();
    }
    return blocks;
}

testing::AssertionResult EveryCodeBlockStandsIn(const std::string& aGuide,
                                                const std::vector<std::string>& aSources) {
    const std::vector<std::string> blocks = CodeBlocksOf(aGuide);
    if (blocks.empty()) {
        return testing::AssertionFailure() << "there is no code in the guide";
    }
    testing::AssertionResult failure = testing::AssertionFailure();
    bool fAll = true;
    for (const std::string& block : blocks) {
        if (std::none_of(aSources.begin(), aSources.end(),
                         [&](const std::string& aSource) { return StandsIn(block, aSource); })) {
            failure << "in none of the sources:\n" << block << "\n";
            fAll = false;
        }
    }
    return fAll ? testing::AssertionSuccess() : failure;
}
