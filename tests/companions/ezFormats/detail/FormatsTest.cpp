#include "ezFormats/detail/Formats.h"
#include "ezFormats/detail/FormatMimeTypes.h"

#include "support/Folders.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

// What the formats say about themselves, and that all of it agrees.

namespace {

std::string Joined(const std::initializer_list<const char*>& aWords) {
    std::string text;
    for (const char* const word : aWords) {
        text += (text.empty() ? "" : ",") + std::string(word);
    }
    return text;
}

/// A line as the media types file writes it.
std::string Written(const MediaTypesLine& aLine) {
    const std::string further = Joined(aLine.mFurtherTypes);
    return std::string(aLine.mType) + "=" + Joined(aLine.mExtensions) + "@" + Joined(aLine.mMimeTypes) + "@" +
           aLine.mClass + "@" + further + (further.empty() ? "any" : ",any");
}

/// The lines of the default media types file by their types, those of [MimeTypes].
std::map<std::string, std::string> DefaultLines() {
    std::istringstream text(ReadWholeFile(EZ_SAMPLES "/mediaCTRLMediaTypes.ini"));
    std::map<std::string, std::string> lines;
    std::string line;
    while (std::getline(text, line) && line != "[MimeTypesExcluded]") {
        if (!line.empty() && line[0] != ';' && line[0] != '[') {
            lines.emplace(line.substr(0, line.find('=')), line);
        }
    }
    return lines;
}

/// True for a word that a list of the media types file, or of the rules, can have as an item.
bool IsItem(std::string_view aWord) {
    return !aWord.empty() && aWord.find_first_of(",@=; \t") == std::string_view::npos &&
           std::all_of(aWord.begin(), aWord.end(), [](char aCharacter) {
               return std::islower(static_cast<unsigned char>(aCharacter)) != 0 ||
                      std::isdigit(static_cast<unsigned char>(aCharacter)) != 0 ||
                      std::string_view("/.+-").find(aCharacter) != std::string_view::npos;
           });
}

bool IsMimeType(std::string_view aWord) {
    return IsItem(aWord) && std::count(aWord.begin(), aWord.end(), '/') == 1;
}

bool Has(const std::initializer_list<const char*>& aWords, std::string_view aWord) {
    return std::find(aWords.begin(), aWords.end(), aWord) != aWords.end();
}

class FormatDescribed : public testing::TestWithParam<std::size_t> {
protected:
    static const FormatDescription& Format() { return *AllFormats::kDescriptions.at(GetParam()); }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(, FormatDescribed, testing::Range<std::size_t>(0, AllFormats::kCount));

TEST_P(FormatDescribed, LinesAreThoseOfTheDefaultMediaTypesFile) {
    const std::map<std::string, std::string> lines = DefaultLines();
    const FormatDescription& format = Format();
    ASSERT_NE(format.mLines.size(), 0U);
    for (const MediaTypesLine& line : format.mLines) {
        ASSERT_EQ(lines.count(line.mType), 1U) << line.mType;
        EXPECT_EQ(Written(line), lines.at(line.mType));
    }
}

TEST_P(FormatDescribed, LinesLeadToItsParserAndTheFirstAnnouncesItsFirstType) {
    const FormatDescription& format = Format();
    EXPECT_STREQ(format.mLines.begin()->mType, format.mType);
    EXPECT_STREQ(*format.mLines.begin()->mMimeTypes.begin(), format.GetFirstMimeType());
    for (const MediaTypesLine& line : format.mLines) {
        EXPECT_TRUE(line.mType == std::string_view(format.mType) || Has(line.mFurtherTypes, format.mType))
            << line.mType;
    }
}

TEST_P(FormatDescribed, NamesAreWordsOfTheirOwn) {
    const FormatDescription& format = Format();
    EXPECT_TRUE(IsItem(format.mType));
    EXPECT_NE(format.mType, std::string("any"));
    ASSERT_NE(format.mMimeTypes.size(), 0U);
    for (const char* const type : format.mMimeTypes) {
        EXPECT_TRUE(IsMimeType(type)) << type;
    }
    for (const OtherMimeTypes& other : format.mOtherMimeTypes) {
        EXPECT_TRUE(Has(format.mMimeTypes, other.mType)) << other.mType;
        for (const char* const name : other.mNames) {
            EXPECT_TRUE(IsMimeType(name)) << name;
            EXPECT_FALSE(Has(format.mMimeTypes, name)) << name;
        }
    }
    EXPECT_GT(format.mBudget.mReads, 0U);
    EXPECT_GT(format.mBudget.mBytes, 0U);
}

TEST(Formats, DefaultMediaTypesFileLeadsToAParserByTheLinesOfItsFormatAlone) {
    std::map<std::string, std::string> expected;
    std::set<std::string> parsers;
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        parsers.insert(format->mType);
        for (const MediaTypesLine& line : format->mLines) {
            EXPECT_TRUE(expected.emplace(line.mType, format->mType).second) << line.mType << " twice";
        }
    }
    for (const auto& [type, line] : DefaultLines()) {
        std::istringstream words(type + "," + line.substr(line.rfind('@') + 1));
        std::string word;
        while (std::getline(words, word, ',')) {
            EXPECT_TRUE(parsers.count(word) == 0 || expected.count(type) != 0) << line;
        }
    }
}

TEST(Formats, NoTwoOfThemHaveAnyNameInCommon) {
    std::set<std::string> names;
    std::set<std::string> types;
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        EXPECT_TRUE(names.insert(format->mName).second) << format->mName;
        EXPECT_TRUE(names.insert(format->mType).second) << format->mType;
        for (const char* const type : format->mMimeTypes) {
            EXPECT_TRUE(types.insert(type).second) << type;
        }
        for (const OtherMimeTypes& other : format->mOtherMimeTypes) {
            for (const char* const name : other.mNames) {
                EXPECT_TRUE(types.insert(name).second) << name;
            }
        }
    }
    for (const FormatDescription* const format : AllFormats::kDescriptions) {
        for (const char* const type : format->mForeignMimeTypes) {
            EXPECT_TRUE(FormatMimeType_IsStated(type)) << type; // by whom it is of
            EXPECT_FALSE(Has(format->mMimeTypes, type)) << type;
        }
    }
}

TEST(Formats, EachFolderWithAParserOfFilesIsInTheList) {
    std::set<std::string> listed;
#define EZ_PATH(FOLDER, PARSER) listed.insert(#FOLDER "/" #PARSER ".h");
    EZ_FORMATS(EZ_PATH)
#undef EZ_PATH
    std::set<std::string> found;
    const std::filesystem::path root = EZ_SAMPLES "/../companions/ezFormats";
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        const bool fHeader = entry.path().extension() == ".h";
        if (fHeader &&
            ReadWholeFile(entry.path()).find("FormatDescription kDescription = {") != std::string::npos) {
            found.insert(entry.path().lexically_relative(root).string());
        }
    }
    EXPECT_EQ(found, listed);
}

TEST(Formats, EachIsNamedWhereTheGuideSaysAndNowhereElse) {
    const std::filesystem::path root = EZ_SAMPLES "/..";
    std::map<std::string, std::set<std::string>> named; // by the header, the files that include it
    for (const char* const folder : {"companions", "fuzz", "ezParsersFramework", "tools"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
            const bool fSource = entry.path().extension() == ".h" || entry.path().extension() == ".cpp";
            const std::string text = fSource ? ReadWholeFile(entry.path()) : "";
#define EZ_NOTE(FOLDER, PARSER)                                                                              \
    if (text.find("#include \"ezFormats/" #FOLDER "/" #PARSER ".h\"") != std::string::npos) {                \
        named[#FOLDER "/" #PARSER].insert(entry.path().lexically_relative(root).string());                   \
    }
            EZ_FORMATS(EZ_NOTE)
#undef EZ_NOTE
        }
    }
#define EZ_EXPECT(FOLDER, PARSER)                                                                            \
    EXPECT_EQ(named[#FOLDER "/" #PARSER],                                                                    \
              (std::set<std::string>{"companions/ezFormats/" #FOLDER "/" #PARSER ".cpp",                     \
                                     "fuzz/fuzz_format_" #FOLDER ".cpp"}));                                  \
    EXPECT_TRUE(std::filesystem::exists(root / "tests/companions/ezFormats/" #FOLDER));
    EZ_FORMATS(EZ_EXPECT)
#undef EZ_EXPECT
}
