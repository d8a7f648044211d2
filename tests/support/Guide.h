#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

/// The code blocks of a guide: what stands between "```<language>" and "```", each on a line of its own.
inline std::vector<std::string> GuideBlocks(const std::string& aGuide, const std::string& aLanguage) {
    const std::string fence = "\n```" + aLanguage + "\n";
    std::vector<std::string> blocks;
    for (std::size_t at = aGuide.find(fence); at != std::string::npos; at = aGuide.find(fence, at + 1)) {
        const std::size_t start = at + fence.size();
        const std::size_t end = aGuide.find("\n```", start - 1);
        blocks.push_back(aGuide.substr(start, end == std::string::npos ? end : end + 1 - start));
    }
    return blocks;
}

/// In how many of some texts a block stands, as whole lines.
inline std::size_t CountOfTextsWith(const std::vector<std::string>& aTexts, const std::string& aBlock) {
    return static_cast<std::size_t>(
        std::count_if(aTexts.begin(), aTexts.end(), [&](const std::string& aText) {
            return ("\n" + aText).find("\n" + aBlock) != std::string::npos;
        }));
}
