#include "support/Guide.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

// What the documents of the repository point to.

namespace {

namespace fs = std::filesystem;

/// A Markdown text without its blocks of code, in which brackets mean something else.
std::string ProseOf(const std::string& aText) {
    std::istringstream text(aText);
    std::string prose;
    bool fCode = false;
    for (std::string line; std::getline(text, line);) {
        const bool fFence = line.compare(0, 3, "```") == 0;
        prose += fCode || fFence ? "" : line + "\n";
        fCode = fCode != fFence;
    }
    return prose;
}

/// The targets of a text's links, "](target)"; those after a scheme and those within the text are left out.
std::vector<std::string> LinksOf(const std::string& aMarkdown) {
    const std::string text = ProseOf(aMarkdown);
    std::vector<std::string> links;
    const std::string begin = "](";
    for (std::size_t at = text.find(begin); at != std::string::npos; at = text.find(begin, at)) {
        at += begin.size();
        const std::string target = text.substr(at, text.find_first_of(") \n", at) - at);
        if (target.find("://") == std::string::npos && target.front() != '#') {
            links.push_back(target.substr(0, target.find('#')));
        }
    }
    return links;
}

/// All documents of the tree, beside what builds leave in it.
std::vector<fs::path> Documents() {
    std::vector<fs::path> documents;
    for (auto walk = fs::recursive_directory_iterator(EZ_SOURCES); walk != fs::recursive_directory_iterator();
         ++walk) {
        const std::string name = walk->path().filename().string();
        if (walk->is_directory() && (name == "build" || name.front() == '.')) {
            walk.disable_recursion_pending();
        } else if (walk->path().extension() == ".md") {
            documents.push_back(walk->path());
        }
    }
    return documents;
}

} // namespace

TEST(Documents, EveryLinkLeadsToAFileOfTheTree) {
    std::size_t links = 0;
    for (const fs::path& document : Documents()) {
        for (const std::string& link : LinksOf(ReadWholeFile(document.string()))) {
            EXPECT_TRUE(fs::exists(document.parent_path() / link)) << document << ": " << link;
            ++links;
        }
    }
    EXPECT_GT(links, 20U);
}

TEST(Documents, GuidesAreReachedFromTheReadmeOrFromAGuideThatIs) {
    const fs::path docs = fs::path(EZ_SOURCES) / "docs";
    std::vector<fs::path> reached = {fs::path(EZ_SOURCES) / "README.md"};
    for (std::size_t i = 0; i < reached.size(); ++i) {
        const fs::path document = reached[i]; // the list grows below
        for (const std::string& link : LinksOf(ReadWholeFile(document.string()))) {
            const fs::path target = (document.parent_path() / link).lexically_normal();
            if (target.extension() == ".md" &&
                std::find(reached.begin(), reached.end(), target) == reached.end()) {
                reached.push_back(target);
            }
        }
    }
    for (const auto& entry : fs::directory_iterator(docs)) {
        if (entry.path().extension() == ".md") {
            EXPECT_NE(std::find(reached.begin(), reached.end(), entry.path().lexically_normal()),
                      reached.end())
                << entry.path();
        }
    }
}
