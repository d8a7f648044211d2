#include "support/Catchers.h"
#include "support/MapperFolder.h"
#include "support/Settled.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

// What a host that edits the table asks it: which lines do not count, and whether the file changed.

namespace {

constexpr const char* kLong = "longer than 1024 bytes";

/// "3 fewer than 3 fields", with "ro" before those of the read-only file.
std::vector<std::string> Told(const DLNAMediaMapperBadLines& aLines) {
    std::vector<std::string> told;
    for (const DLNAMediaMapperBadLine& line : aLines.mLines) {
        told.push_back((line.mfReadOnlyFile ? "ro " : "") + std::to_string(line.mNumber) + " " +
                       line.mReason);
    }
    return told;
}

using Lines = std::vector<std::string>;

/// An entry of so many bytes.
std::string LineOf(std::size_t aSize) {
    const std::string line = "a.mp3,audio/mpeg,A,,,,,,,,,";
    return line + std::string(aSize - line.size(), 'x');
}

/// What a save makes of LineOf is longer by this.
std::size_t Addition() {
    DLNAMediaMapperEntry entry;
    EXPECT_TRUE(entry.Set(ezCString(LineOf(100))));
    return entry.Get().GetLength() - 100;
}

} // namespace

TEST(DLNAMediaMapperEditor, LoadTellsTheLinesThatItSkipped) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(
        "# " + std::string(2000, 'r') + "\n\n   \na.mp3,audio/mpeg\n,audio/mpeg,A\na.mp3, ,A\r\n" +
        "a.mp3,audio/mpeg, \n" + LineOf(1024) + "\n" + LineOf(1025) + "\n#\nb.mp3,audio/mpeg,B\nx");
    EXPECT_EQ(Told(mapper->GetSkippedLines()),
              (Lines{"4 fewer than 3 fields", "5 empty file name", "6 empty MIME type", "7 empty profile",
                     std::string("9 ") + kLong, "12 fewer than 3 fields"}));
    EXPECT_EQ(mapper->GetSkippedLines().mCount, 6U);
    EXPECT_EQ(mapper->Names(), (Lines{"a.mp3", "b.mp3"}));
    // Those of the last one only.
    folder.WriteWritable("b.mp3,audio/mpeg,B\n");
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_EQ(mapper->GetSkippedLines().mCount, 0U);
    folder.WriteWritable("c\n");
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_EQ(mapper->GetSkippedLines().mCount, 1U);
    std::filesystem::remove(folder.WritablePath());
    const LogCatcher log;
    EXPECT_TRUE(mapper->Load().IsError());
    EXPECT_EQ(mapper->GetSkippedLines().mCount, 0U) << "of one that failed none";
    EXPECT_TRUE(mapper->GetSkippedLines().mLines.empty());
}

TEST(DLNAMediaMapperEditor, AFirstLoadTellsThoseOfBothFiles) {
    const MapperFolder folder;
    const std::string grows = LineOf(1024 - Addition() + 1);
    folder.WriteReadOnly("bad\n" + grows + "\n" + LineOf(1024 - Addition()) + "\n");
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    EXPECT_FALSE(mapper->Load().IsError());
    const std::string inTheCopy = "7 " + std::string(kLong); // after a header of six lines
    EXPECT_EQ(Told(mapper->GetSkippedLines()), (Lines{"ro 1 fewer than 3 fields", inTheCopy}));
    EXPECT_EQ(Told(mapper->GetTooLongLines()), Lines{inTheCopy});
    EXPECT_EQ(mapper->GetCount(), 3U) << "two of the one file, and one of the other";
}

TEST(DLNAMediaMapperEditor, SaveTellsTheLinesThatItMadeTooLong) {
    const MapperFolder folder;
    const std::size_t fits = 1024 - Addition();
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(LineOf(fits) + "\n" + LineOf(fits + 1) + "\n" +
                                                             LineOf(fits) + "\n" + LineOf(1024) + "\n");
    EXPECT_EQ(mapper->GetTooLongLines().mCount, 0U);
    EXPECT_FALSE(mapper->Save().IsError());
    const Lines told = Told(mapper->GetTooLongLines());
    EXPECT_EQ(told.size(), 2U);
    EXPECT_EQ(mapper->GetTooLongLines().mCount, 2U);
    // The next load skips exactly those.
    const std::unique_ptr<OpenMapper> next = folder.New();
    EXPECT_FALSE(next->Load().IsError());
    EXPECT_EQ(Told(next->GetSkippedLines()), told);
    EXPECT_EQ(next->GetCount(), 2U);
    EXPECT_FALSE(next->Save().IsError());
    EXPECT_EQ(next->GetTooLongLines().mCount, 0U);
    // Those of the last one only.
    while (mapper->GetCount() > 0) {
        mapper->RemoveEntry(mapper->At(0));
    }
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_FALSE(mapper->Save().IsError());
    EXPECT_EQ(mapper->GetTooLongLines().mCount, 0U);
    EXPECT_TRUE(mapper->GetTooLongLines().mLines.empty());
}

TEST(DLNAMediaMapperEditor, OfAFileOfBadLinesAThousandAreKeptAndAllAreCounted) {
    for (const std::size_t count : {999U, 1000U, 1001U, 5000U}) {
        const MapperFolder folder;
        std::string text;
        for (std::size_t i = 0; i < count; ++i) {
            text += "bad\n";
        }
        const std::unique_ptr<OpenMapper> mapper = folder.Loaded(text);
        EXPECT_EQ(mapper->GetSkippedLines().mCount, count);
        EXPECT_EQ(mapper->GetSkippedLines().mLines.size(), std::min<std::size_t>(count, 1000));
        EXPECT_EQ(mapper->GetSkippedLines().mLines.back().mNumber, std::min<std::size_t>(count, 1000));
    }
}

TEST(DLNAMediaMapperEditor, KnowsWhenSomebodyElseWroteTheFile) {
    const MapperFolder folder;
    const std::string table = "a.mp3,audio/mpeg,A\n";
    const std::unique_ptr<OpenMapper> fresh = folder.New();
    EXPECT_FALSE(fresh->HasChangedSinceLoad()) << "there is none yet";
    folder.WriteWritable(table);
    EXPECT_TRUE(fresh->HasChangedSinceLoad());
    WaitUntilSettled(folder.Folder().GetPath());

    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(table);
    EXPECT_FALSE(mapper->HasChangedSinceLoad());
    EXPECT_EQ(folder.ReadWritable(), table);
    EXPECT_FALSE(mapper->HasChangedSinceLoad()) << "who reads changes nothing";

    const std::unique_ptr<OpenMapper> other = folder.New();
    EXPECT_FALSE(other->Load().IsError());
    EXPECT_FALSE(mapper->HasChangedSinceLoad());
    EXPECT_FALSE(other->Save().IsError());
    EXPECT_TRUE(mapper->HasChangedSinceLoad()) << "another one saved";
    EXPECT_TRUE(other->HasChangedSinceLoad()) << "it is no longer the file that this one loaded";
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_FALSE(mapper->HasChangedSinceLoad());

    WaitUntilSettled(folder.Folder().GetPath());
    EXPECT_FALSE(mapper->Load().IsError());
    std::string same = folder.ReadWritable();
    same[0] = '!';
    folder.WriteWritable(same);
    EXPECT_TRUE(mapper->HasChangedSinceLoad()) << "of the same size, and in place";
    EXPECT_FALSE(mapper->Load().IsError());
    std::filesystem::remove(folder.WritablePath());
    EXPECT_TRUE(mapper->HasChangedSinceLoad()) << "it is gone";
    const LogCatcher log;
    EXPECT_TRUE(mapper->Load().IsError());
    EXPECT_TRUE(mapper->HasChangedSinceLoad()) << "a load that failed found nothing";
}

TEST(DLNAMediaMapperEditor, TheCopyOfAFirstLoadIsTheFileThatItFound) {
    const MapperFolder folder;
    folder.WriteReadOnly("a.mp3,audio/mpeg,A\n");
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_FALSE(mapper->HasChangedSinceLoad());
}
