#include "ezPlatform/files/TextFile.h"

#include "ezPlatform/base/System.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <ostream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

struct Line {
    std::string mText;
    bool mfCut = false;

    friend bool operator==(const Line& aLeft, const Line& aRight) {
        return aLeft.mText == aRight.mText && aLeft.mfCut == aRight.mfCut;
    }
    friend std::ostream& operator<<(std::ostream& aStream, const Line& aLine) {
        return aStream << '"' << aLine.mText << '"' << (aLine.mfCut ? " (cut)" : "");
    }
};

using Lines = std::vector<Line>;

Lines LinesOf(ezTextFile& aFile) {
    Lines lines;
    ezCString text;
    bool fCut = false;
    while (aFile.NextLine(&text, &fCut)) {
        lines.push_back({std::string(text.View()), fCut});
    }
    EXPECT_TRUE(text.IsEmpty()) << "there is none after the last line";
    EXPECT_FALSE(fCut);
    return lines;
}

/// The lines of a file of this content.
Lines Read(const std::string& aContent, std::size_t aLimit = 1024) {
    const TemporaryFolder folder;
    ezTextFile file(folder.Write("lines.txt", aContent).c_str(), aLimit);
    EXPECT_TRUE(file.IsOpened());
    return LinesOf(file);
}

Lines Whole(const std::vector<std::string>& aTexts) {
    Lines lines;
    for (const std::string& text : aTexts) {
        lines.push_back({text, false});
    }
    return lines;
}

bool Opens(const std::string& aPath) {
    return ezTextFile(aPath.c_str(), 1024).IsOpened();
}

const std::string kMark = "\xEF\xBB\xBF";

} // namespace

TEST(TextFile, GivesItsLinesWithoutTheirEnds) {
    EXPECT_EQ(Read("a\nbc\n\nd\n"), Whole({"a", "bc", "", "d"}));
    EXPECT_EQ(Read("\n"), Whole({""}));
    EXPECT_EQ(Read(" a \t\n"), Whole({" a \t"})) << "blanks belong to the line";
}

TEST(TextFile, TheLastLineNeedsNoEnd) {
    EXPECT_EQ(Read("a\nb"), Whole({"a", "b"}));
    EXPECT_EQ(Read("a"), Whole({"a"}));
}

TEST(TextFile, AnEmptyFileHasNoLines) {
    EXPECT_EQ(Read(""), Lines());
    EXPECT_EQ(Read(kMark), Lines());
}

TEST(TextFile, ACarriageReturnBelongsToTheEndOfItsLineOnlyBeforeALineFeed) {
    EXPECT_EQ(Read("a\r\nb\r\n\r\nc"), Whole({"a", "b", "", "c"}));
    EXPECT_EQ(Read("a\rb\n"), Whole({"a\rb"}));
    EXPECT_EQ(Read("a\r\r\nb\n"), Whole({"a\r", "b"}));
    EXPECT_EQ(Read("\ra\n"), Whole({"\ra"}));
    EXPECT_EQ(Read("a\r"), Whole({"a\r"}));
    EXPECT_EQ(Read("a\n\rb"), Whole({"a", "\rb"}));
    EXPECT_EQ(Read("\r\r\r"), Whole({"\r\r\r"}));
}

TEST(TextFile, AByteOrderMarkAtTheStartIsDroppedAndNoOther) {
    EXPECT_EQ(Read(kMark + "a\n" + kMark + "b\n"), Whole({"a", kMark + "b"}));
    EXPECT_EQ(Read(kMark + kMark + "a"), Whole({kMark + "a"}));
    EXPECT_EQ(Read(kMark + "\na"), Whole({"", "a"}));
    EXPECT_EQ(Read("\xEF\xBB"), Whole({"\xEF\xBB"})) << "two bytes are no mark";
    EXPECT_EQ(Read("\xEF\xBB"
                   "a\n"),
              Whole({"\xEF\xBB"
                     "a"}));
    EXPECT_EQ(Read(kMark + std::string(1024, 'x')), Whole({std::string(1024, 'x')})) << "and does not count";
}

TEST(TextFile, NULBytesBelongToTheLine) {
    EXPECT_EQ(Read(std::string("a\0b\n\0\n", 6)), Whole({std::string("a\0b", 3), std::string("\0", 1)}));
}

TEST(TextFile, ALineOfTheLimitIsWholeAndALongerOneIsCutAndItsRestSkipped) {
    for (const std::string end : {"\n", "\r\n", ""}) {
        EXPECT_EQ(Read(std::string(1024, 'x') + end), Whole({std::string(1024, 'x')})) << end.size();
        EXPECT_EQ(Read(std::string(1025, 'x') + end), Lines({{std::string(1024, 'x'), true}})) << end.size();
    }
    EXPECT_EQ(Read("1234\n12345\n1234567890\r\n123\n", 4),
              Lines({{"1234", false}, {"1234", true}, {"1234", true}, {"123", false}}));
}

TEST(TextFile, ACarriageReturnInsideALineCountsForItsLength) {
    EXPECT_EQ(Read("1234\r\n", 4), Whole({"1234"}));
    EXPECT_EQ(Read("1234\r\r\n", 4), Lines({{"1234", true}}));
    EXPECT_EQ(Read("123\r\r\n", 4), Whole({"123\r"}));
    EXPECT_EQ(Read("1234\r", 4), Lines({{"1234", true}}));
    EXPECT_EQ(Read("1234\rx\n", 4), Lines({{"1234", true}}));
}

TEST(TextFile, ALimitOf0CutsEveryLineThatIsNotEmpty) {
    EXPECT_EQ(Read("a\n\nb", 0), Lines({{"", true}, {"", false}, {"", true}}));
}

TEST(TextFile, WhetherALineWasCutNeedNotBeAsked) {
    const TemporaryFolder folder;
    ezTextFile file(folder.Write("lines.txt", "12345\n6").c_str(), 4);
    ezCString text;
    EXPECT_TRUE(file.NextLine(&text, nullptr));
    EXPECT_EQ(text, "1234");
    EXPECT_TRUE(file.NextLine(&text, nullptr));
    EXPECT_EQ(text, "6");
    EXPECT_FALSE(file.NextLine(&text, nullptr));
    EXPECT_FALSE(file.NextLine(&text, nullptr));
}

TEST(TextFile, LinesAcrossTheReadsOfTheFileAreWhole) {
    for (std::size_t length = 4090; length <= 4100; ++length) {
        const std::string first(length, 'x');
        EXPECT_EQ(Read(first + "\r\n" + first + "\rz\n\nend", 8192), Whole({first, first + "\rz", "", "end"}))
            << length;
    }
}

TEST(TextFile, AFileThatIsMissingOrNoFileHasNoLines) {
    const TemporaryFolder folder;
    EXPECT_FALSE(Opens(folder.Path("missing")));
    EXPECT_FALSE(Opens(folder.GetPath()));
    EXPECT_FALSE(Opens(""));
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(Opens(folder.Path("pipe")));
    ezTextFile file(folder.Path("missing").c_str(), 1024);
    EXPECT_EQ(LinesOf(file), Lines());
}

TEST(TextFile, AFileThatFailsToBeReadEndsThere) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("lines.txt", "a\nb\n" + std::string(5000, 'x') + "\n");
    ezSystemCalls calls = ezSystem_Real();
    calls.mPRead = [](int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset) -> ssize_t {
        if (anOffset < 4) {
            return ezSystem_Real().mPRead(aFile, aBuffer, aSize < 4 ? aSize : 4, anOffset);
        }
        errno = EIO;
        return -1;
    };
    ezSystem_Replace(&calls);
    ezTextFile file(path.c_str(), 1024);
    EXPECT_FALSE(file.HasFailed());
    EXPECT_EQ(LinesOf(file), Whole({"a", "b"}));
    EXPECT_TRUE(file.HasFailed());
    ezSystem_Replace(nullptr);
    EXPECT_EQ(LinesOf(file), Lines()) << "what stands after a gap is no line of the file";
}

TEST(TextFile, ALineOf10MBTakesNoMoreMemoryThanItsLimit) {
    const TemporaryFolder folder;
    folder.Write("lines.txt", "");
    std::string path = folder.Path("lines.txt");
    {
        std::string block(1 << 20, 'x');
        FILE* file = std::fopen(path.c_str(), "wb");
        for (int i = 0; i < 10; ++i) {
            ASSERT_EQ(std::fwrite(block.data(), 1, block.size(), file), block.size());
        }
        std::fputs("\nend", file);
        std::fclose(file);
    }
    const auto peak = [] {
        struct rusage usage = {};
        getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss; // kilobytes
    };
    const long before = peak();
    const std::clock_t start = std::clock();
    ezTextFile file(path.c_str(), 1024);
    EXPECT_EQ(LinesOf(file), Lines({{std::string(1024, 'x'), true}, {"end", false}}));
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 20.0);
    EXPECT_LT(peak() - before, 6144);
}

TEST(TextFile, ManyLinesCostOnePass) {
    std::string content;
    for (int i = 0; i < 200000; ++i) {
        content += "bad\n";
    }
    const std::clock_t start = std::clock();
    EXPECT_EQ(Read(content).size(), 200000U);
    EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 20.0);
}

RC_GTEST_PROP(TextFileModel, IsItsContentSplitAtLineFeeds, ()) {
    const auto content = *rc::gen::container<std::string>(rc::gen::element('a', '\n', '\r', '\0', '\xEF'));
    const std::size_t limit = *rc::gen::inRange<std::size_t>(0, 6);
    Lines expected;
    std::size_t from = 0;
    while (from < content.size()) {
        const std::size_t end = content.find('\n', from);
        std::string text = content.substr(from, end == std::string::npos ? end : end - from);
        if (end != std::string::npos && !text.empty() && text.back() == '\r') {
            text.pop_back();
        }
        expected.push_back({text.substr(0, limit), text.size() > limit});
        from = end == std::string::npos ? content.size() : end + 1;
    }
    RC_ASSERT(Read(content, limit) == expected);
}
