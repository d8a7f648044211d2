#pragma once

#include <algorithm>
#include <cstddef>
#include <sstream>
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

/// The rows of a guide's table with exactly these headings, a text a cell; none where there is no such table.
inline std::vector<std::vector<std::string>> GuideTable(const std::string& aGuide,
                                                        const std::vector<std::string>& aHeadings) {
    const auto cells = [](const std::string& aLine) {
        std::vector<std::string> row;
        for (std::size_t at = 1, end; (end = aLine.find('|', at)) != std::string::npos; at = end + 1) {
            const std::size_t first = std::min(aLine.find_first_not_of(' ', at), end);
            const std::size_t last = aLine.find_last_not_of(' ', end - 1);
            row.push_back(first < end ? aLine.substr(first, last + 1 - first) : std::string());
        }
        return row;
    };
    std::istringstream guide(aGuide);
    std::vector<std::vector<std::string>> rows;
    std::size_t line = 0; // of the table that is read
    bool fWanted = false;
    for (std::string text; std::getline(guide, text);) {
        line = !text.empty() && text[0] == '|' ? line + 1 : 0;
        if (line == 1) {
            fWanted = cells(text) == aHeadings;
        } else if (line > 2 && fWanted) {
            rows.push_back(cells(text));
        }
    }
    return rows;
}

/// What stands between backquotes in a cell: the names of code that it lists.
inline std::vector<std::string> GuideNames(const std::string& aCell) {
    std::vector<std::string> names;
    for (std::size_t at = aCell.find('`'), end; at != std::string::npos; at = aCell.find('`', end + 1)) {
        end = std::min(aCell.find('`', at + 1), aCell.size());
        names.push_back(aCell.substr(at + 1, end - at - 1));
    }
    return names;
}
