#include "ez/DLNAMediaMapper.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/config/Hook.h"
#include "ezPlatform/containers/Array.h"
#include "ezPlatform/dlna/ProtocolInfo.h"

#include "support/Catchers.h"
#include "support/MapperFolder.h"
#include "support/ReplacedSystem.h"
#include "support/ScriptedSystem.h"
#include "support/Str.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <vector>

using Entry = DLNAMediaMapperEntry;
using Names = std::vector<std::string>;

namespace {

const std::string kFlags = kVersionFlags;

/// What every saved file begins with. The second syntax line runs on in the first.
const std::string kHeader =
    "# MediaMapper.txt\n"
    "# Used to map information about DLNA media\n"
    "#\n"
    "# Syntax for this is as follows\n"
    "# [FILENAME],[MIME TYPE],[DLNA.ORG_PN],[DURATION],[SUPPORTED PLAYSPEEDS],[MANDATORY (8 bit strings)],"
    "[BIT RATE PEAK OF FILE],[ASSOCIATED IFO FILE],[full protocolInfo 4th field]# [LARGEST if "
    "largest],[WIDTH],"
    "[HEIGHT],[ANY LP OPTIONS],[ANY GOLDENDMS OPTIONS]\n"
    "\n";

/// A line of three fields as Get writes it.
std::string Written(const std::string& aThreeFields) {
    return aThreeFields + ",,,,,,,,,," + kFlags + ";BRELVO.COM_GOLDENDMS=00000000\n";
}

/// What waitpid tells of a child that does something and then leaves with 0.
template <typename Action>
int StatusOfChild(Action anAction) {
    const pid_t child = fork();
    if (child == 0) {
        anAction();
        _exit(0);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return status;
}

std::string MergedOf(DLNAMediaMapper& aMapper, const char* aProfile) {
    const ezDLNAProtocolInfo* merged = aMapper.GetMergedDLNAProtocolInfo(aProfile);
    return merged != nullptr ? Taken(ezDLNAProtocolInfo_GetStr(merged)) : "none";
}

std::string FoundIn(DLNAMediaMapper& aMapper, const char* aFileName) {
    const Entry* entry = aMapper.GetFileEntry(aFileName);
    return entry != nullptr ? Str(entry->mFileName) : "none";
}

Entry* NewEntry(const char* aLine) {
    Entry* entry = new Entry;
    EXPECT_TRUE(entry->Set(aLine)) << aLine;
    return entry;
}

} // namespace

static_assert(std::has_virtual_destructor<DLNAMediaMapper>::value, "");

// Paths

TEST(DLNAMediaMapper, ConstructorMakesTheWritableFolderAndLoadsNothing) {
    const MapperFolder folder;
    folder.Folder().Write("ro/a/b/M.txt", "clip.mpg,video/mpeg,P\n");
    OpenMapper mapper(folder.Types(), folder.Folder().Path("ro").c_str(),
                      folder.Folder().Path("rw/x").c_str(), "a/b", "M.txt");
    EXPECT_EQ(mapper.GetCount(), 0U);
    EXPECT_TRUE(std::filesystem::is_directory(folder.Folder().Path("rw/x/a/b")));
    EXPECT_TRUE(std::filesystem::is_empty(folder.Folder().Path("rw/x/a/b")));
    EXPECT_EQ(FoundIn(mapper, "clip.mpg"), "none");
    EXPECT_EQ(mapper.GetFirstEntryForProfile("P"), nullptr);
    EXPECT_EQ(mapper.GetMergedDLNAProtocolInfo("P"), nullptr);
    EXPECT_EQ(Str(mapper.GetEnabledProfileList("P,JPEG_TN,PNG_TN")), "JPEG_TN,PNG_TN");
}

TEST(DLNAMediaMapper, FilesStandInTheSubFolderAndTheWritableOneHasAnUnderscore) {
    const MapperFolder folder;
    folder.Folder().Write("ro/a/M.txt", "clip.mpg,video/mpeg,P\n");
    OpenMapper mapper(folder.Types(), folder.Folder().Path("ro").c_str(), folder.Folder().Path("rw").c_str(),
                      "a", "M.txt");
    EXPECT_FALSE(mapper.Load().IsError());
    EXPECT_EQ(MapperFolder::ReadFile(folder.Folder().Path("rw/a/_M.txt")),
              kHeader + Written("clip.mpg,video/mpeg,P"));
    EXPECT_EQ(MapperFolder::ReadFile(folder.Folder().Path("ro/a/M.txt")), "clip.mpg,video/mpeg,P\n");
}

TEST(DLNAMediaMapper, PathIsMadeOfFolderSubFolderAndFile) {
    const TemporaryFolder folder;
    const auto path = [](const std::string& aFolder, const char* aSubFolder, bool afCreate) {
        const ezPathName name = OpenMapper::GetPath(aFolder.c_str(), aSubFolder, "f.txt", afCreate);
        return (name.IsValid() ? "" : "invalid") + Str(name.GetFullPath());
    };
    EXPECT_EQ(path("/d", "", false), "/d/f.txt");
    EXPECT_EQ(path("/d/", "", false), "/d/f.txt");
    EXPECT_EQ(path("/d", "s", false), "/d/s/f.txt");
    EXPECT_EQ(path("", "", false), "f.txt"); // the working folder
    const std::string made = folder.Path("x/y");
    EXPECT_EQ(path(made, "s/t", false), made + "/s/t/f.txt");
    EXPECT_FALSE(std::filesystem::exists(made));
    EXPECT_EQ(path(made, "s/t", true), made + "/s/t/f.txt");
    EXPECT_TRUE(std::filesystem::is_directory(made + "/s/t"));
    EXPECT_EQ(path(made, "s/t", true), made + "/s/t/f.txt"); // it may be there already
    folder.Write("file", "");
    EXPECT_EQ(path(folder.Path("file"), "s", true), "invalid");
    EXPECT_EQ(path(folder.Path("file"), "", true), "invalid");
}

// The first run

TEST(DLNAMediaMapper, FirstLoadCopiesTheReadOnlyFile) {
    const MapperFolder folder;
    folder.WriteReadOnly("# a comment\n\nz.mpg,video/mpeg,Z\nbad line\n a.mp3 , audio/mpeg , A ,0:01,,,5\n");
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    const LogCatcher log;
    const ezError error = mapper->Load();
    EXPECT_FALSE(error.IsError());
    EXPECT_EQ(error.GetCode(), 0);
    EXPECT_STREQ(error.ToString(), "");
    EXPECT_EQ(folder.ReadWritable(), kHeader + "a.mp3,audio/mpeg,A,0:01,,,5,,,,,," + kFlags +
                                         ";BRELVO.COM_GOLDENDMS=00000000\n" + Written("z.mpg,video/mpeg,Z"));
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].mText, "Copying read-only media mapper file from '" + folder.ReadOnlyPath() +
                                        "' to '" + folder.WritablePath() + "'\n");
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_INFO);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_PARSERS);
}

TEST(DLNAMediaMapper, AfterTheFirstRunEveryLineIsHeldTwice) {
    const MapperFolder folder;
    folder.WriteReadOnly("z.mpg,video/mpeg,Z\na.mp3,audio/mpeg,A\n");
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_EQ(mapper->Names(), (Names{"a.mp3", "a.mp3", "z.mpg", "z.mpg"}));
    EXPECT_EQ(mapper->GetFileEntry("a.mp3"), mapper->At(0)); // the first
    EXPECT_EQ(mapper->GetFileEntry("z.mpg"), mapper->At(2));
    EXPECT_EQ(mapper->At(0)->m4thFieldPart, ""); // from the read-only file, and before the copied line
    EXPECT_NE(mapper->At(1)->m4thFieldPart, "");
}

TEST(DLNAMediaMapper, SaveAfterTheFirstRunMakesTheDoubledLinesPermanent) {
    const MapperFolder folder;
    folder.WriteReadOnly("a.mp3,audio/mpeg,A\n");
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_FALSE(mapper->Save().IsError());
    const std::string line = Written("a.mp3,audio/mpeg,A");
    EXPECT_EQ(folder.ReadWritable(), kHeader + line + line);
    const std::unique_ptr<OpenMapper> next = folder.New();
    EXPECT_FALSE(next->Load().IsError());
    EXPECT_EQ(next->Names(), (Names{"a.mp3", "a.mp3"}));
}

TEST(DLNAMediaMapper, SecondStartReadsTheWritableFileAlone) {
    const MapperFolder folder;
    folder.WriteReadOnly("a.mp3,audio/mpeg,A\n");
    EXPECT_FALSE(folder.New()->Load().IsError());
    folder.WriteReadOnly("other.mp3,audio/mpeg,O\n");
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    const LogCatcher log;
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_EQ(mapper->Names(), (Names{"a.mp3"}));
    EXPECT_TRUE(log.Lines().empty());
}

TEST(DLNAMediaMapper, MissingReadOnlyFileIsLoggedAndTheWritableOneStillTried) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    const LogCatcher log;
    const ezError error = mapper->Load();
    EXPECT_TRUE(error.IsError());
    EXPECT_EQ(error.GetCode(), -3);
    EXPECT_EQ(error.ToString(), "Unable to open media mapper file: '" + folder.WritablePath() + "'");
    ASSERT_EQ(log.Lines().size(), 2U);
    EXPECT_EQ(log.Lines()[0].mText, "Copying read-only media mapper file from '" + folder.ReadOnlyPath() +
                                        "' to '" + folder.WritablePath() + "'\n");
    EXPECT_EQ(log.Lines()[1].mText, "Failed copying media mapper fileUnable to open media mapper file: '" +
                                        folder.ReadOnlyPath() + "'\n");
    EXPECT_EQ(log.Lines()[1].mLevel, EZLOGLEVEL_ERROR);
    EXPECT_EQ(log.Lines()[1].mModule, EZLOG_M_PARSERS);
    EXPECT_EQ(mapper->GetCount(), 0U);
    EXPECT_FALSE(std::filesystem::exists(folder.WritablePath()));
}

TEST(DLNAMediaMapper, CopyThatCannotBeSavedIsLoggedAndLeavesTheLinesOnce) {
    const MapperFolder folder;
    folder.WriteReadOnly("a.mp3,audio/mpeg,A\n");
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    std::filesystem::create_directory(folder.WritablePath());
    const LogCatcher log(EZLOGLEVEL_INFO); // errors and warnings
    const ezError error = mapper->Load();
    EXPECT_EQ(error.GetCode(), -3);
    EXPECT_EQ(error.ToString(), "Unable to open media mapper file: '" + folder.WritablePath() + "'");
    ASSERT_EQ(log.Lines().size(), 1U);
    EXPECT_EQ(log.Lines()[0].mText, "Failed saving media mapper fileUnable to create media mapper file :\n'" +
                                        folder.WritablePath() + "'\n");
    EXPECT_EQ(log.Lines()[0].mLevel, EZLOGLEVEL_ERROR);
    EXPECT_EQ(log.Lines()[0].mModule, EZLOG_M_PARSERS);
    EXPECT_EQ(mapper->Names(), (Names{"a.mp3"}));
    EXPECT_EQ(FoundIn(*mapper, "a.mp3"), "a.mp3");
}

TEST(DLNAMediaMapper, FailuresAreLoggedOnlyWhereTheLevelLetsErrorsThrough) {
    const MapperFolder folder;
    const LogCatcher log(EZLOGLEVEL_ERROR); // nothing
    EXPECT_EQ(folder.New()->Load().GetCode(), -3);
    folder.WriteReadOnly("a.mp3,audio/mpeg,A\n");
    std::filesystem::create_directory(folder.WritablePath());
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    EXPECT_EQ(mapper->Load().GetCode(), -3);
    EXPECT_EQ(mapper->Names(), (Names{"a.mp3"}));
    EXPECT_TRUE(log.Lines().empty());
}

TEST(DLNAMediaMapper, WritableFolderThatCannotBeMadeLeavesNoWritableFile) {
    const MapperFolder folder;
    folder.WriteReadOnly("a.mp3,audio/mpeg,A\n");
    folder.Folder().Write("file", "content");
    OpenMapper mapper(folder.Types(), folder.Folder().Path("ro").c_str(),
                      folder.Folder().Path("file").c_str(), "sub", "MediaMapper.txt");
    LogCatcher log;
    const ezError error = mapper.Load();
    EXPECT_EQ(error.GetCode(), -3);
    EXPECT_STREQ(error.ToString(), "Unable to open media mapper file: ''");
    const std::string readOnly = folder.Folder().Path("ro/sub/MediaMapper.txt");
    EXPECT_EQ(log.Texts(), (Names{"Copying read-only media mapper file from '" + readOnly + "' to ''\n",
                                  "Failed copying media mapper fileUnable to open media mapper file: '" +
                                      readOnly + "'\n"}));

    OpenMapper second(folder.Types(), folder.Folder().Path("ro").c_str(),
                      folder.Folder().Path("file").c_str(), "", "MediaMapper.txt");
    log.Clear();
    EXPECT_EQ(second.Load().GetCode(), -3);
    EXPECT_EQ(log.Texts(),
              (Names{"Copying read-only media mapper file from '" + folder.ReadOnlyPath() + "' to ''\n",
                     "Failed saving media mapper fileUnable to create media mapper file :\n''\n"}));
    EXPECT_EQ(second.Names(), (Names{"a.mp3"}));
    EXPECT_EQ(MapperFolder::ReadFile(folder.Folder().Path("file")), "content");

    OpenMapper third(folder.Types(), "", folder.Folder().Path("file").c_str(), "", "MediaMapper.txt");
    const ezError saved = third.Save();
    EXPECT_EQ(saved.GetCode(), -1);
    EXPECT_STREQ(saved.ToString(), "Unable to create media mapper file :\n''");
}

// Loading

TEST(DLNAMediaMapper, CommentsBlankLinesAndBadLinesAreSkippedSilently) {
    const MapperFolder folder;
    const LogCatcher log;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("#a.mpg,video/mpeg,P\n  \t# b.mpg,video/mpeg,P\n\n   \n"
                      "c.mpg,video/mpeg\nd.mpg\n,video/mpeg,P\n"
                      "e.mpg, ,P\nf.mpg,video/mpeg,\n"
                      "  good.mpg,video/mpeg,P  \ng#.mpg,video/mpeg,P\n");
    EXPECT_EQ(mapper->Names(), (Names{"good.mpg", "g#.mpg"}));
    EXPECT_TRUE(log.Lines().empty());
}

TEST(DLNAMediaMapper, EntriesAreSortedByProfileAndKeepTheirOrderInOne) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.mpg,video/mpeg,b\n2.mpg,video/mpeg,B\n3.mpg,video/mpeg,a\n4.mpg,video/mpeg,b\n"
                      "5.mpg,video/mpeg,A\n6.mpg,video/mpeg,B\n7.mpg,video/mpeg,AA\n8.mpg,video/mpeg,b\n");
    EXPECT_EQ(mapper->Names(),
              (Names{"5.mpg", "7.mpg", "2.mpg", "6.mpg", "3.mpg", "1.mpg", "4.mpg", "8.mpg"}));
}

TEST(DLNAMediaMapper, LoadAddsToWhatIsThere) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mpg,video/mpeg,P\n");
    Entry* first = mapper->At(0);
    folder.WriteWritable("b.mpg,video/mpeg,A\n");
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_EQ(mapper->Names(), (Names{"b.mpg", "a.mpg"}));
    EXPECT_EQ(mapper->At(1), first);
    EXPECT_EQ(FoundIn(*mapper, "a.mpg"), "a.mpg");
    EXPECT_EQ(FoundIn(*mapper, "b.mpg"), "b.mpg");
}

TEST(DLNAMediaMapper, LineOverTheLimitIsBad) {
    const MapperFolder folder;
    const std::string start = "a.mpg,video/mpeg,P,";
    const std::string longest = start + std::string(1024 - start.size(), 'x');
    const std::string blanks(1024 - std::string("c.mpg,video/mpeg,P").size(), ' ');
    for (const char* lineEnd : {"\n", "\r\n"}) {
        const std::unique_ptr<OpenMapper> mapper =
            folder.Loaded(longest + lineEnd + "b" + longest + lineEnd + "c.mpg,video/mpeg,P" + blanks +
                          "d.mpg,video/mpeg,Q" + lineEnd + "e.mpg,video/mpeg,P" + lineEnd);
        // Nothing of a cut line counts, neither its start nor its rest.
        EXPECT_EQ(mapper->Names(), (Names{"a.mpg", "e.mpg"}));
        EXPECT_EQ(mapper->At(0)->mDuration.GetLength(), 1024 - start.size());
    }
}

TEST(DLNAMediaMapper, LineEndsAndAByteOrderMarkDoNotCount) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("\xEF\xBB\xBF"
                      "a.mpg,video/mpeg,P\r\n\r\n# comment\r\nb.mpg,video/mpeg,P\r\nc.mpg,video/mpeg,P");
    EXPECT_EQ(mapper->Names(), (Names{"a.mpg", "b.mpg", "c.mpg"}));
    EXPECT_EQ(Str(mapper->At(0)->mProfile), "P");
    const std::unique_ptr<OpenMapper> commented =
        folder.Loaded("\xEF\xBB\xBF# comment,x,y\nb.mpg,video/mpeg,P\n");
    EXPECT_EQ(commented->Names(), (Names{"b.mpg"}));
    EXPECT_EQ(folder.Loaded("\xEF\xBB\xBF")->GetCount(), 0U);
    EXPECT_EQ(folder.Loaded("")->GetCount(), 0U);
}

TEST(DLNAMediaMapper, NULBytesAndManyCommasDoNotHurt) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("a.mpg,video/mpeg,P," + std::string(100, ',') + "\n" + std::string(100, ',') + "\n" +
                      std::string(500, '\0') + "\n" + std::string("b\0.mpg,video/mpeg,P\n", 20) +
                      std::string("c.mpg,video/mpeg,P\0Q\n", 21) +
                      std::string("d.mpg,video/mpeg,P,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000;A_B=\0\n", 65) +
                      std::string("\0#x\n", 4));
    EXPECT_EQ(mapper->Names(), (Names{"a.mpg", "c.mpg", "d.mpg"}));
    EXPECT_EQ(mapper->At(2)->mGoldenDMSFlags, 0x10000000U);
    EXPECT_FALSE(mapper->Save().IsError());
    EXPECT_EQ(folder.ReadWritable(), kHeader + Written("a.mpg,video/mpeg,P") + Written("c.mpg,video/mpeg,P") +
                                         "d.mpg,video/mpeg,P,,,,,,,,,," + kFlags +
                                         ";A_B=;BRELVO.COM_GOLDENDMS=10000000\n");
}

TEST(DLNAMediaMapper, FileOfBadLinesIsReadToItsEnd) {
    const MapperFolder folder;
    std::string content;
    for (int i = 0; i < 200000; ++i) {
        content += i % 2 == 0 ? "a bad line,of two fields\n" : ",,,,,,\n";
    }
    EXPECT_EQ(folder.Loaded(content + "last.mpg,video/mpeg,P")->Names(), (Names{"last.mpg"}));
}

TEST(DLNAMediaMapper, WritablePathThatIsNoRegularFileIsNotOpened) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    ASSERT_EQ(mkfifo(folder.WritablePath().c_str(), 0666), 0);
    const LogCatcher log;
    const ezError error = mapper->Load();
    EXPECT_EQ(error.GetCode(), -3);
    EXPECT_EQ(error.ToString(), "Unable to open media mapper file: '" + folder.WritablePath() + "'");
    EXPECT_TRUE(log.Lines().empty()); // it exists, so nothing is copied
}

TEST(DLNAMediaMapper, FileNameThatBeginsWithAHashIsLostOnTheNextLoad) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mpg,video/mpeg,P\nb.mpg,video/mpeg,P\n");
    mapper->At(0)->mFileName = "#a.mpg";
    EXPECT_FALSE(mapper->Save().IsError());
    EXPECT_EQ(folder.ReadWritable(),
              kHeader + Written("#a.mpg,video/mpeg,P") + Written("b.mpg,video/mpeg,P"));
    const std::unique_ptr<OpenMapper> next = folder.New();
    EXPECT_FALSE(next->Load().IsError());
    EXPECT_EQ(next->Names(), (Names{"b.mpg"}));
}

// Saving

TEST(DLNAMediaMapper, SaveWritesHeaderAndEntriesInArrayOrder) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("z.mpg,video/mpeg,Z\na.mp3,audio/mpeg,A\n");
    const LogCatcher log;
    const ezError error = mapper->Save();
    EXPECT_FALSE(error.IsError());
    EXPECT_EQ(error.GetCode(), 0);
    EXPECT_EQ(folder.ReadWritable(), kHeader + Written("a.mp3,audio/mpeg,A") + Written("z.mpg,video/mpeg,Z"));
    EXPECT_TRUE(log.Lines().empty());
}

TEST(DLNAMediaMapper, SaveOfAnEmptyTableWritesTheHeaderAlone) {
    const MapperFolder folder;
    EXPECT_FALSE(folder.New()->Save().IsError());
    EXPECT_EQ(folder.ReadWritable(), kHeader);
}

TEST(DLNAMediaMapper, SaveShortensALongerFile) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mp3,audio/mpeg,A\n");
    folder.WriteWritable(std::string(100000, 'x'));
    EXPECT_FALSE(mapper->Save().IsError());
    EXPECT_EQ(folder.ReadWritable(), kHeader + Written("a.mp3,audio/mpeg,A"));
}

TEST(DLNAMediaMapper, SecondSaveWithoutALoadIsAnAssertionAndChangesNothing) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mp3,audio/mpeg,A\n");
    EXPECT_FALSE(mapper->Save().IsError());
    folder.WriteWritable("untouched");
    const AssertCatcher assertions;
    const LogCatcher log;
    const ezError error = mapper->Save();
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"!mfSaved @ DLNAMediaMapper"}));
    EXPECT_TRUE(error.IsError());
    EXPECT_EQ(error.GetCode(), -1);
    EXPECT_EQ(error.ToString(), "Unable to write media mapper file :\n'" + folder.WritablePath() + "'");
    EXPECT_EQ(folder.ReadWritable(), "untouched");
    mapper->Save();
    EXPECT_EQ(assertions.Failures(),
              AssertCatcher::Noted({"!mfSaved @ DLNAMediaMapper", "!mfSaved @ DLNAMediaMapper"}));
}

TEST(DLNAMediaMapper, LoadAllowsAnotherSave) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mp3,audio/mpeg,A\n");
    const AssertCatcher assertions;
    const LogCatcher log;
    EXPECT_FALSE(mapper->Save().IsError());
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_FALSE(mapper->Save().IsError());
    EXPECT_EQ(folder.ReadWritable(), kHeader + Written("a.mp3,audio/mpeg,A") + Written("a.mp3,audio/mpeg,A"));
    EXPECT_TRUE(assertions.Failures().empty());
}

TEST(DLNAMediaMapper, FailedLoadAllowsNoOtherSave) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mp3,audio/mpeg,A\n");
    EXPECT_FALSE(mapper->Save().IsError());
    std::filesystem::remove(folder.WritablePath());
    EXPECT_EQ(mapper->Load().GetCode(), -3);
    const AssertCatcher assertions;
    const LogCatcher log;
    EXPECT_EQ(mapper->Save().GetCode(), -1);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"!mfSaved @ DLNAMediaMapper"}));
}

TEST(DLNAMediaMapper, FailedSaveCountsAsTheOneOfItsLoad) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.New();
    std::filesystem::create_directory(folder.WritablePath());
    const AssertCatcher assertions;
    const LogCatcher log;
    EXPECT_EQ(mapper->Save().GetCode(), -1);
    EXPECT_TRUE(assertions.Failures().empty());
    std::filesystem::remove(folder.WritablePath());
    EXPECT_EQ(mapper->Save().GetCode(), -1);
    EXPECT_EQ(assertions.Failures(), AssertCatcher::Noted({"!mfSaved @ DLNAMediaMapper"}));
}

namespace {

/// A table of one line, a file that stands before the save, and nothing else in the folder.
class FailingSave : public testing::Test {
protected:
    void SetUp() override {
        mMapper = mFolder.Loaded("a.mp3,audio/mpeg,A\n");
        mFolder.WriteWritable(kBefore);
    }
    /// The previous file whole, and nothing beside it.
    void ExpectPreviousFile() const {
        EXPECT_EQ(mFolder.ReadWritable(), kBefore);
        std::size_t files = 0;
        for (const auto& file : std::filesystem::directory_iterator(mFolder.Folder().Path("rw"))) {
            EXPECT_EQ(file.path().string(), mFolder.WritablePath());
            ++files;
        }
        EXPECT_EQ(files, 1U);
    }
    void ExpectUnableTo(const char* aWhat, const ezError& anError) const {
        EXPECT_EQ(anError.GetCode(), -1);
        EXPECT_EQ(anError.ToString(), std::string("Unable to ") + aWhat + " media mapper file :\n'" +
                                          mFolder.WritablePath() + "'");
    }

    static constexpr const char* kBefore = "# what an operator wrote\nb.mp3,audio/mpeg,B\n";
    const MapperFolder mFolder;
    std::unique_ptr<OpenMapper> mMapper;
};

int gBytesOnDisk = 0;

} // namespace

using DLNAMediaMapperFailingSave = FailingSave;

TEST_F(DLNAMediaMapperFailingSave, FullDiskAtOnce) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mPWrite = [](int, const void*, std::size_t, ezFileOffset) -> ssize_t {
            errno = ENOSPC;
            return -1;
        };
    });
    ExpectUnableTo("write", mMapper->Save());
    ExpectPreviousFile();
}

TEST_F(DLNAMediaMapperFailingSave, FullDiskInTheMiddle) {
    gBytesOnDisk = 100;
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mPWrite = [](int aFile, const void* aBuffer, std::size_t aSize,
                            ezFileOffset anOffset) -> ssize_t {
            if (gBytesOnDisk == 0) {
                errno = ENOSPC;
                return -1;
            }
            const std::size_t size = aSize < 100 ? aSize : 100;
            gBytesOnDisk = 0;
            return ezSystem_Real().mPWrite(aFile, aBuffer, size, anOffset);
        };
    });
    ExpectUnableTo("write", mMapper->Save());
    ExpectPreviousFile();
}

TEST_F(DLNAMediaMapperFailingSave, DiskThatFailsWhenItIsFlushed) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mFSync = [](int) {
            errno = EIO;
            return -1;
        };
    });
    ExpectUnableTo("write", mMapper->Save());
    ExpectPreviousFile();
}

TEST_F(DLNAMediaMapperFailingSave, FailingRename) {
    const ReplacedSystem system([](ezSystemCalls& aCalls) {
        aCalls.mRenameAt = [](int, const char*, const char*) {
            errno = EIO;
            return -1;
        };
    });
    ExpectUnableTo("write", mMapper->Save());
    ExpectPreviousFile();
}

TEST_F(DLNAMediaMapperFailingSave, FolderInPlaceOfTheFile) {
    std::filesystem::remove(mFolder.WritablePath());
    std::filesystem::create_directory(mFolder.WritablePath());
    mFolder.Folder().Write("rw/_MediaMapper.txt/inside", "kept");
    ExpectUnableTo("create", mMapper->Save());
    EXPECT_EQ(MapperFolder::ReadFile(mFolder.Folder().Path("rw/_MediaMapper.txt/inside")), "kept");
}

TEST_F(DLNAMediaMapperFailingSave, FolderThatIsGone) {
    std::filesystem::remove_all(mFolder.Folder().Path("rw"));
    ExpectUnableTo("create", mMapper->Save());
    EXPECT_FALSE(std::filesystem::exists(mFolder.WritablePath()));
}

TEST_F(DLNAMediaMapperFailingSave, FileThatMayNotBeWritten) {
    ASSERT_EQ(chmod(mFolder.Folder().GetPath().c_str(), 0755), 0);
    ASSERT_EQ(chmod(mFolder.Folder().Path("rw").c_str(), 0777), 0); // files may be made beside it
    ASSERT_EQ(chmod(mFolder.WritablePath().c_str(), 0444), 0);
    const int status = StatusOfChild([&]() {
        if (geteuid() == 0 && setuid(65534) != 0) {
            _exit(1); // root may write anything
        }
        const ezError error = mMapper->Save();
        const std::string wanted = "Unable to create media mapper file :\n'" + mFolder.WritablePath() + "'";
        _exit(error.GetCode() == -1 && error.ToString() == wanted ? 42 : 2);
    });
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 42);
    ExpectPreviousFile();
}

TEST_F(DLNAMediaMapperFailingSave, KillBetweenCreateAndClose) {
    const int status = StatusOfChild([&]() {
        const ReplacedSystem system([](ezSystemCalls& aCalls) {
            aCalls.mFSync = [](int) {
                kill(getpid(), SIGKILL); // everything is written, and the new file has no name yet
                return 0;
            };
        });
        mMapper->Save();
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_EQ(mFolder.ReadWritable(), kBefore);
    // The next save takes what was left beside it away.
    EXPECT_FALSE(mMapper->Save().IsError());
    EXPECT_EQ(mFolder.ReadWritable(), kHeader + Written("a.mp3,audio/mpeg,A"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mFolder.Folder().Path("rw")),
                            std::filesystem::directory_iterator()),
              1);
}

// Finding the entry of a file

TEST(DLNAMediaMapper, FileNameFindsItsEntry) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(
        "clip.mpg,video/mpeg,P\nsound.pcm,audio/L16,LPCM\nPicture.JPG,image/jpeg,J\nnodot,video/mpeg,P\n"
        "two.part.mpg,video/mpeg,P\nclip(a).mpg,video/mpeg,P\nq().mpg,video/"
        "mpeg,P\nbig(99999999999).mpg,video/mpeg,P\n"
        ".mpg,video/mpeg,P\nDTCP_own.mpg,video/mpeg,P\nx(1)y.mpg,video/mpeg,P\nwave.wav,audio/wav,W\n"
        "a(1)(b).mpg,video/mpeg,P\npar).mpg,video/mpeg,P\n");
    struct Case {
        const char* mName;
        const char* mFound;
    };
    for (const Case& at : {
             Case{"clip.mpg", "clip.mpg"},
             Case{"CLIP.MPG", "clip.mpg"},
             Case{"picture.jpg", "Picture.JPG"},
             Case{"other.mpg", "none"},
             Case{"clipx.mpg", "none"},
             // any extension that the media types know, whatever the entry's own
             Case{"clip.mpeg", "clip.mpg"},
             Case{"clip.mp3", "clip.mpg"},
             Case{"clip.JPG", "clip.mpg"},
             Case{"nodot.mpg", "nodot"},
             Case{"clip.avi", "none"},
             Case{"clip.wav", "clip.mpg"},
             // "wav" alone does not find "pcm"
             Case{"sound.wav", "none"},
             Case{"sound.WAV", "none"},
             Case{"sound.pcm", "sound.pcm"},
             Case{"sound.mp3", "sound.pcm"},
             Case{"wave.pcm", "wave.wav"},
             // without an extension
             Case{"clip", "none"},
             Case{"clip.", "none"},
             Case{"nodot", "none"},
             Case{"clip(2)", "none"},
             Case{"", "none"},
             Case{".", "none"},
             Case{"mpg", "none"},
             // of several dots the last one counts
             Case{"two.part.mpg", "two.part.mpg"},
             Case{"two.mpg", "none"},
             Case{"clip.mpg.mpg", "none"},
             Case{".mpg", ".mpg"},
             // a number in brackets
             Case{"clip(2).mpg", "clip.mpg"},
             Case{"clip(0).mpg", "clip.mpg"},
             Case{"clip(007).mpg", "clip.mpg"},
             Case{"clip(4294967295).mpg", "clip.mpg"},
             Case{"clip(4294967296).mpg", "none"},
             Case{"clip(99999999999).mpg", "none"},
             Case{"big(99999999999).mpg", "big(99999999999).mpg"},
             Case{"clip(a).mpg", "clip(a).mpg"},
             Case{"clip().mpg", "none"},
             Case{"q().mpg", "q().mpg"},
             Case{"clip( 2).mpg", "none"},
             Case{"clip(-2).mpg", "none"},
             Case{"clip(+2).mpg", "none"},
             Case{"clip(2).mpeg", "clip.mpg"},
             Case{"clip(2)x.mpg", "none"},
             Case{"clip2).mpg", "none"},
             Case{"par).mpg", "par).mpg"},
             Case{"x(1)y.mpg", "x(1)y.mpg"},
             Case{"x(1)y(3).mpg", "x(1)y.mpg"},
             Case{"clip(2)(3).mpg", "none"}, // once alone
             Case{"a(1)(b).mpg", "a(1)(b).mpg"},
             Case{"clip((3).mpg", "none"},
             Case{"(2).mpg", ".mpg"},
             // what stands up to the first "DTCP_"
             Case{"DTCP_clip.mpg", "clip.mpg"},
             Case{"DTCP_clip(3).MPG", "clip.mpg"},
             Case{"xyDTCP_clip.mpg", "clip.mpg"},
             Case{"dtcp_clip.mpg", "none"},
             Case{"DTCP_DTCP_own.mpg", "DTCP_own.mpg"},
             Case{"DTCP_own.mpg", "none"},
             Case{"DTCP_.mpg", ".mpg"},
             Case{"DTCP_(1).mpg", ".mpg"},
             Case{"clip.DTCP_mpg", "none"},
         }) {
        EXPECT_EQ(FoundIn(*mapper, at.mName), at.mFound) << at.mName;
    }
}

TEST(DLNAMediaMapper, TrailingDotMakesTheRestOfTheBaseTheExtension) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mpg,video/mpeg,P\na.mpg.x,video/mpeg,Q\n");
    EXPECT_EQ(FoundIn(*mapper, "a.mpg."), "a.mpg");
}

TEST(DLNAMediaMapper, FirstInArrayOrderIsFound) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(
        "clip.mpg,video/mpeg,Z\nclip.mp3,audio/mpeg,B\nother.mp3,audio/mpeg,C\nCLIP.jpg,image/jpeg,B\n");
    EXPECT_EQ(FoundIn(*mapper, "clip.mpg"), "clip.mp3"); // sorted to the front by its profile
    EXPECT_EQ(FoundIn(*mapper, "other.mpg"), "other.mp3");
}

TEST(DLNAMediaMapper, WithoutAMediaTypesTableNoFileIsFound) {
    const MapperFolder folder;
    folder.WriteWritable("clip.mpg,video/mpeg,P\n");
    OpenMapper mapper(nullptr, folder.Folder().Path("ro").c_str(), folder.Folder().Path("rw").c_str(), "",
                      "MediaMapper.txt");
    EXPECT_FALSE(mapper.Load().IsError());
    EXPECT_EQ(mapper.GetCount(), 1U);
    EXPECT_EQ(FoundIn(mapper, "clip.mpg"), "none");
    EXPECT_EQ(mapper.AddEntry(NewEntry("clip.mpg,video/mpeg,A")), -1);
    EXPECT_NE(mapper.GetFirstEntryForProfile("P"), nullptr);
}

TEST(DLNAMediaMapper, FirstEntryOfAProfileIsFoundToTheLetter) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("2.mpg,video/mpeg,P\n1.mpg,video/mpeg,P\n3.mpg,video/mpeg,Q\n");
    EXPECT_EQ(mapper->GetFirstEntryForProfile("P"), mapper->At(0));
    EXPECT_EQ(Str(mapper->At(0)->mFileName), "2.mpg");
    EXPECT_EQ(mapper->GetFirstEntryForProfile("Q"), mapper->At(2));
    EXPECT_EQ(mapper->GetFirstEntryForProfile("p"), nullptr);
    EXPECT_EQ(mapper->GetFirstEntryForProfile(""), nullptr);
}

// Editing

TEST(DLNAMediaMapper, AddedEntryIsFoundOnlyWhereAFileBroughtItsBaseName) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("old.mpg,video/mpeg,P\n");
    Entry* added = NewEntry("new.mpg,video/mpeg,B");
    EXPECT_EQ(mapper->AddEntry(added), 0);
    EXPECT_EQ(mapper->GetCount(), 2U);
    EXPECT_EQ(mapper->At(0), added);
    EXPECT_EQ(FoundIn(*mapper, "new.mpg"), "none");
    EXPECT_EQ(mapper->GetFirstEntryForProfile("B"), added);
    Entry* same = NewEntry("OLD.mp3,audio/mpeg,A");
    EXPECT_EQ(mapper->AddEntry(same), 0);
    EXPECT_EQ(mapper->GetFileEntry("old.mpg"), same); // a known base name, and now the first
}

TEST(DLNAMediaMapper, AddEntryAnswersWithTheFirstMatchOrNone) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mpg,video/mpeg,B\nb.mpg,video/mpeg,C\n");
    EXPECT_EQ(mapper->AddEntry(NewEntry("z.mpg,video/mpeg,Z")), 2);
    EXPECT_EQ(mapper->AddEntry(NewEntry("y.mpg,video/mpeg,BB")), 1);
    EXPECT_EQ(mapper->Names(), (Names{"a.mpg", "y.mpg", "b.mpg", "z.mpg"}));
    EXPECT_EQ(mapper->AddEntry(NewEntry("a.mpg,video/mpeg,ZZ")), 0); // not its own index
    EXPECT_EQ(mapper->AddEntry(NewEntry("noextension,video/mpeg,A")), -1);
    EXPECT_EQ(mapper->AddEntry(NewEntry("unknown.avi,video/mpeg,A")), -1);
    EXPECT_EQ(mapper->AddEntry(NewEntry("x(2).mpg,video/mpeg,A")), 2); // as it is, unlike a file's name
    EXPECT_EQ(mapper->GetCount(), 8U);
    EXPECT_EQ(mapper->AddEntry(nullptr), -1);
    EXPECT_EQ(mapper->GetCount(), 8U);
}

TEST(DLNAMediaMapper, AddedEntryChangesNeitherMergedProfilesNorProfileLists) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("a.mpg,video/mpeg,P\n");
    mapper->AddEntry(NewEntry("b.mpg,video/mpeg,NEW"));
    mapper->AddEntry(NewEntry("c.mpg,video/mpeg,OFF,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000"));
    mapper->AddEntry(NewEntry("d.mpg,video/mpeg,P,,,,,,,,,,DLNA.ORG_OP=01"));
    EXPECT_EQ(mapper->GetMergedDLNAProtocolInfo("NEW"), nullptr);
    EXPECT_EQ(MergedOf(*mapper, "P"), "http-get:*:video/mpeg:DLNA.ORG_PN=P;" + kFlags);
    EXPECT_EQ(Str(mapper->GetEnabledProfileList("NEW,P")), "P");
    EXPECT_FALSE(mapper->IsDisabledProfile("OFF"));
    mapper->RemoveEntry(mapper->GetFirstEntryForProfile("P"));
    EXPECT_EQ(Str(mapper->GetEnabledProfileList("P")), "P");
    EXPECT_NE(mapper->GetMergedDLNAProtocolInfo("P"), nullptr);
}

TEST(DLNAMediaMapper, RemovedEntryLeavesTheTable) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("a.mpg,video/mpeg,P\nb.mpg,video/mpeg,P\nc.mpg,video/mpeg,P\n");
    mapper->RemoveEntry(nullptr);
    Entry stranger;
    mapper->RemoveEntry(&stranger);
    EXPECT_EQ(mapper->GetCount(), 3U);
    mapper->RemoveEntry(mapper->At(1)); // which deletes it, once: sanitizers watch
    EXPECT_EQ(mapper->Names(), (Names{"a.mpg", "c.mpg"}));
    EXPECT_EQ(FoundIn(*mapper, "b.mpg"), "none");
    EXPECT_FALSE(mapper->Save().IsError());
    EXPECT_EQ(folder.ReadWritable(), kHeader + Written("a.mpg,video/mpeg,P") + Written("c.mpg,video/mpeg,P"));
}

TEST(DLNAMediaMapper, EditsThroughTheArrayAreSeenByEveryLaterOperation) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("a.mpg,video/mpeg,P\nb.mpg,video/mpeg,Q\nc.mpg,video/mpeg,R\n");
    ezArray* array = mapper->GetArray();
    EXPECT_EQ(mapper->GetArray(), array);
    // Renamed to a name that a file brought, and to one that none did.
    mapper->At(0)->mFileName = "c.mpg";
    EXPECT_EQ(FoundIn(*mapper, "a.mpg"), "none");
    EXPECT_EQ(mapper->GetFileEntry("c.mpg"), mapper->At(0));
    mapper->At(0)->mFileName = "new.mpg";
    EXPECT_EQ(FoundIn(*mapper, "new.mpg"), "none");
    EXPECT_EQ(mapper->GetFileEntry("c.mpg"), mapper->At(2));
    // Another profile.
    mapper->At(0)->mProfile = "S";
    mapper->At(0)->ComputeDLNAProtocolInfo();
    EXPECT_EQ(mapper->GetFirstEntryForProfile("P"), nullptr);
    EXPECT_EQ(mapper->GetFirstEntryForProfile("S"), mapper->At(0));
    // Appended and removed.
    ezArray_Append(array, NewEntry("A.MPG,video/mpeg,A"));
    EXPECT_EQ(mapper->GetFileEntry("a.mpg"), mapper->At(3));
    ezArray_Remove(array, 1);
    EXPECT_EQ(FoundIn(*mapper, "b.mpg"), "none");
    ezArray* records = mapper->NewProfileArray();
    EXPECT_EQ(ezArray_GetCount(records), 3U);
    ezArray_Delete(records);
    EXPECT_FALSE(mapper->Save().IsError());
    EXPECT_EQ(folder.ReadWritable(), kHeader + Written("new.mpg,video/mpeg,S") +
                                         Written("c.mpg,video/mpeg,R") + Written("A.MPG,video/mpeg,A"));
}

// What the entries of a profile state together

TEST(DLNAMediaMapper, MergedProtocolInfoUnitesTheEntriesOfAProfile) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(
        "1.mpg,video/mpeg,P,,2\\,4,,,,,,,,DLNA.ORG_OP=01;A_B=1;BRELVO.COM_GOLDENDMS=60000000\n"
        "2.mpg,video/mpeg,Q,,,,,,,,,,DLNA.ORG_OP=10\n"
        "3.mpg,video/mp2p,P,,-2\\,2,,,,,,,,DLNA.ORG_OP=10;A_B=2;C_D=3;BRELVO.COM_GOLDENDMS=60000000\n"
        "4.mpg,video/mpeg,p,,,,,,,,,,DLNA.ORG_CI=1\n");
    EXPECT_EQ(MergedOf(*mapper, "P"),
              "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_OP=11;DLNA.ORG_PS=2,4,-2;" + kFlags +
                  ";A_B=1;C_D=3");
    EXPECT_EQ(MergedOf(*mapper, "Q"), "http-get:*:video/mpeg:DLNA.ORG_PN=Q;DLNA.ORG_OP=10;" + kFlags);
    EXPECT_EQ(MergedOf(*mapper, "p"), "http-get:*:video/mpeg:DLNA.ORG_PN=p;DLNA.ORG_CI=1;" + kFlags);
    EXPECT_EQ(MergedOf(*mapper, "R"), "none");
    EXPECT_EQ(MergedOf(*mapper, ""), "none");
}

TEST(DLNAMediaMapper, MergedProfilesAreNeverEmptiedAndTheFirstOneStays) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded("1.mpg,video/mpeg,P\n");
    const ezDLNAProtocolInfo* first = mapper->GetMergedDLNAProtocolInfo("P");
    folder.WriteWritable("2.mpg,video/mpeg,P,,,,,,,,,,DLNA.ORG_OP=01\n3.mpg,video/mpeg,Q\n");
    EXPECT_FALSE(mapper->Load().IsError());
    // A second object of the profile, which holds both entries, stands after the first.
    EXPECT_EQ(mapper->GetMergedDLNAProtocolInfo("P"), first);
    EXPECT_EQ(MergedOf(*mapper, "P"), "http-get:*:video/mpeg:DLNA.ORG_PN=P;" + kFlags);
    EXPECT_EQ(MergedOf(*mapper, "Q"), "http-get:*:video/mpeg:DLNA.ORG_PN=Q;" + kFlags);
}

namespace {

/// A line of a small world, where profiles meet often.
std::string DrawnLine(int aNumber) {
    std::string line = std::to_string(aNumber) + ".mpg,";
    line += *rc::gen::element<std::string>("video/mpeg", "audio/mpeg", "image/jpeg", "*");
    line += "," + *rc::gen::element<std::string>("P", "p", "PQ", "Q", "LPCM", "P;X_Y=1", ";", "é");
    line += ",," + *rc::gen::element<std::string>("", "2", "-2\\,2", "1/2\\,4", "4\\,2\\,x");
    line +=
        ",,,,,,,," + *rc::gen::element<std::string>("", "DLNA.ORG_OP=01;", "DLNA.ORG_OP=10;DLNA.ORG_CI=1;",
                                                    "A_B=1;", "C_D=2;A_B=3;", "DLNA.ORG_FLAGS=01300000;");
    const uint32 flags = *rc::gen::element<uint32>(0, 0x60000000, 0x20000000, 0x40000000, 0x10000000,
                                                   0xE0000000, 0x70000000, 0x01000000);
    line += Str(ezCString::Format("BRELVO.COM_GOLDENDMS=%08lX", static_cast<unsigned long>(flags)));
    return line + "\n";
}

std::string DrawnTable() {
    const int count = *rc::gen::inRange(0, 20);
    std::string table;
    for (int i = 0; i < count; ++i) {
        table += DrawnLine(i);
    }
    return table;
}

} // namespace

RC_GTEST_PROP(DLNAMediaMapper, MergedProfilesAreThoseOfThePairwiseWalk, ()) {
    static const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(DrawnTable());
    std::vector<bool> taken(mapper->GetCount(), false);
    std::vector<std::pair<std::string, std::string>> wanted; // profile of the object, its text
    for (std::size_t i = 0; i < mapper->GetCount(); ++i) {
        if (taken[i]) {
            continue;
        }
        ezDLNAProtocolInfo* merged = ezDLNAProtocolInfo_New(mapper->At(i)->mFullProfile.c_str(), 0, 0);
        for (std::size_t j = i + 1; j < mapper->GetCount(); ++j) {
            if (!taken[j] && mapper->At(j)->mProfile == mapper->At(i)->mProfile) {
                taken[j] = true;
                ezDLNAProtocolInfo* other = ezDLNAProtocolInfo_New(mapper->At(j)->mFullProfile.c_str(), 0, 0);
                ezDLNAProtocolInfo_Merge(merged, other);
                ezDLNAProtocolInfo_Delete(other);
            }
        }
        wanted.emplace_back(ezDLNAProtocolInfo_GetProfile(merged), Taken(ezDLNAProtocolInfo_GetStr(merged)));
        ezDLNAProtocolInfo_Delete(merged);
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        bool fFirst = true;
        for (std::size_t j = 0; j < i; ++j) {
            fFirst = fFirst && wanted[j].first != wanted[i].first;
        }
        if (fFirst) {
            RC_ASSERT(MergedOf(*mapper, wanted[i].first.c_str()) == wanted[i].second);
        }
    }
}

// The lists of enabled and disabled profiles

TEST(DLNAMediaMapper, EnabledProfilesAreKeptInTheOrderAsked) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.mpg,video/mpeg,ON\n2.mpg,video/mpeg,OFF,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n"
                      "3.mp3,audio/mpeg,Mp3\n");
    EXPECT_EQ(Str(mapper->GetEnabledProfileList("mP3,OFF,PNG_TN,ON,other,jpeg_tn,on")),
              "mP3,PNG_TN,ON,jpeg_tn,on");
    EXPECT_EQ(Str(mapper->GetEnabledProfileList("")), "");
    EXPECT_EQ(Str(mapper->GetEnabledProfileList("OFF")), "");
    EXPECT_EQ(Str(mapper->GetEnabledProfileList(" ON,ON ,ON")), "ON"); // nothing is trimmed
}

TEST(DLNAMediaMapper, DisabledProfilesAreThoseWhoseFirstEntryIsDisabled) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.mpg,video/mpeg,OFF,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n2.mpg,video/mpeg,OFF\n"
                      "3.mpg,video/mpeg,ON\n4.mpg,video/mpeg,ON,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n");
    EXPECT_TRUE(mapper->IsDisabledProfile("OFF"));
    EXPECT_TRUE(mapper->IsDisabledProfile("oFf"));
    EXPECT_FALSE(mapper->IsDisabledProfile("ON"));
    EXPECT_FALSE(mapper->IsDisabledProfile("other"));
    EXPECT_FALSE(mapper->IsDisabledProfile(""));
    EXPECT_FALSE(mapper->IsDisabledProfile(nullptr));
    EXPECT_EQ(Str(mapper->GetEnabledProfileList("OFF,ON")), "ON");
}

TEST(DLNAMediaMapper, ThumbnailProfilesAreAlwaysEnabled) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.jpg,image/jpeg,JPEG_TN,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n");
    EXPECT_EQ(Str(mapper->GetEnabledProfileList("JPEG_TN,PNG_TN")), "JPEG_TN,PNG_TN");
    EXPECT_TRUE(mapper->IsDisabledProfile("JPEG_TN")); // both at once
}

TEST(DLNAMediaMapper, ProfileListsAreMadeAnewByEveryLoad) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.mpg,video/mpeg,A,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n");
    EXPECT_TRUE(mapper->IsDisabledProfile("A"));
    mapper->At(0)->mGoldenDMSFlags = 0;
    EXPECT_TRUE(mapper->IsDisabledProfile("A")); // until the next load
    folder.WriteWritable("2.mpg,video/mpeg,B\n");
    EXPECT_FALSE(mapper->Load().IsError());
    EXPECT_FALSE(mapper->IsDisabledProfile("A"));
    EXPECT_EQ(Str(mapper->GetEnabledProfileList("A,B,JPEG_TN,PNG_TN")), "A,B,JPEG_TN,PNG_TN");
}

TEST(DLNAMediaMapper, ProfileInfosOfProfilesNotEnabledAreRemoved) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper =
        folder.Loaded("1.mpg,video/mpeg,ON\n2.mpg,video/mpeg,OFF,,,,,,,,,,BRELVO.COM_GOLDENDMS=10000000\n");
    EXPECT_EQ(
        Str(mapper->GetEnabledMimeTypeProfileList(
            "video/x:DLNA.ORG_PN=OFF,video/mpeg:DLNA.ORG_PN=on;DLNA.ORG_PS=2\\,4;DLNA.ORG_OP=01,audio/mpeg:*,"
            "video/x:DLNA.ORG_PN=OTHER,video/x:DLNA.ORG_PN=OTHER,image/jpeg:DLNA.ORG_PN=JPEG_TN,"
            "audio/wav:DLNA.ORG_OP=01,video/y:DLNA.ORG_PN=OFF")),
        "video/mpeg:DLNA.ORG_PN=on;DLNA.ORG_OP=01;DLNA.ORG_PS=2\\,4,audio/mpeg:*,"
        "image/jpeg:DLNA.ORG_PN=JPEG_TN,audio/wav:DLNA.ORG_OP=01");
    EXPECT_EQ(Str(mapper->GetEnabledMimeTypeProfileList("")), "");
    EXPECT_EQ(Str(mapper->GetEnabledMimeTypeProfileList("video/x:DLNA.ORG_PN=OFF")), "");
}

// The hook

namespace {

/// A hook with the mapper's callback.
class AdjustingHook {
public:
    AdjustingHook() : mHook(ezHook_New()) {
        ezHook_SetCallback(mHook, DLNAMediaMapper::Hook_AdjustProtocolInfo);
    }
    ~AdjustingHook() { ezHook_Delete(mHook); }
    AdjustingHook(const AdjustingHook&) = delete;
    AdjustingHook& operator=(const AdjustingHook&) = delete;

    void SetMapper(DLNAMediaMapper* aMapper) { ezHook_SetVoidPtrProperty(mHook, "DLNAMediaMapper", aMapper); }
    /// What becomes of a protocolInfo.
    std::string Adjusted(const char* aText) {
        ezDLNAProtocolInfo* info = ezDLNAProtocolInfo_New(aText, 0, 0);
        ezHook_Call(mHook, "AdjustProtocolInfo", info);
        const std::string text = Taken(ezDLNAProtocolInfo_GetStr(info));
        ezDLNAProtocolInfo_Delete(info);
        return text;
    }
    void CallWithoutObject() {
        ezHook_Call(mHook, "AdjustProtocolInfo", static_cast<ezDLNAProtocolInfo*>(nullptr));
    }

private:
    ezHook* mHook;
};

constexpr const char* kHookTable =
    "1.mpg,video/"
    "mpeg,P,,-2\\,2,,,,,,,,DLNA.ORG_OP=01;DLNA.ORG_FLAGS=00200000;BRELVO.COM_GOLDENDMS=60000000\n";
constexpr const char* kPlain = "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_OP=10;"
                               "DLNA.ORG_FLAGS=01000000000000000000000000000000";

} // namespace

TEST(DLNAMediaMapper, HookAppliesTheMergedProfileToTheObject) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(kHookTable);
    AdjustingHook hook;
    hook.SetMapper(mapper.get());
    EXPECT_EQ(hook.Adjusted(kPlain), "http-get:*:video/mpeg:DLNA.ORG_PN=P;DLNA.ORG_OP=01;DLNA.ORG_PS=-2,2;"
                                     "DLNA.ORG_FLAGS=01200000000000000000000000000000");
    EXPECT_EQ(hook.Adjusted("http-get:*:video/mpeg:DLNA.ORG_PN=p"), "http-get:*:video/mpeg:DLNA.ORG_PN=p");
    EXPECT_EQ(hook.Adjusted("http-get:*:video/mpeg:*"), "http-get:*:video/mpeg:*");
}

TEST(DLNAMediaMapper, HookWithoutAMapperOrAnObjectDoesNothing) {
    const MapperFolder folder;
    const std::unique_ptr<OpenMapper> mapper = folder.Loaded(kHookTable);
    AdjustingHook hook;
    EXPECT_EQ(hook.Adjusted(kPlain), kPlain);
    hook.CallWithoutObject();
    hook.SetMapper(mapper.get());
    hook.CallWithoutObject();
    hook.SetMapper(nullptr);
    EXPECT_EQ(hook.Adjusted(kPlain), kPlain);
}

TEST(DLNAMediaMapper, FileThatCannotBeReadToItsEndAddsNothing) {
    TemporaryFolder folder;
    std::string text;
    for (int i = 0; i < 2000; ++i) {
        text += "clip" + std::to_string(i) + ".mpg,video/mpeg,MPEG_PS_PAL\n";
    }
    folder.Write("state/_MediaMapper.txt", text);
    DLNAMediaMapper mapper(nullptr, folder.GetPath().c_str(), folder.Path("state").c_str(), "",
                           "MediaMapper.txt");
    {
        ScriptedSystem system;
        system.mPReadOutcomes = {{}, {}, {EIO, 0}};
        const ezError error = mapper.Load();
        EXPECT_EQ(error.GetCode(), -3);
        EXPECT_EQ(std::string(error.ToString()),
                  "Unable to open media mapper file: '" + folder.Path("state/_MediaMapper.txt") + "'");
        EXPECT_EQ(system.GetCounts().mPRead, 3U);
    }
    EXPECT_EQ(ezArray_GetCount(mapper.GetArray()), 0U);
    EXPECT_FALSE(mapper.Load().IsError());
    EXPECT_EQ(ezArray_GetCount(mapper.GetArray()), 2000U);
}

TEST(DLNAMediaMapper, TableThatCannotBeLookedAtIsNotReplacedByTheFactoryOne) {
    TemporaryFolder folder;
    folder.Write("MediaMapper.txt", "factory.mpg,video/mpeg,MPEG_PS_PAL\n");
    const std::string path = folder.Write("state/_MediaMapper.txt", "own.mpg,video/mpeg,MPEG_PS_PAL\n");
    DLNAMediaMapper mapper(nullptr, folder.GetPath().c_str(), folder.Path("state").c_str(), "",
                           "MediaMapper.txt");
    ScriptedSystem system;
    system.mStatOutcomes = {{EIO}};
    EXPECT_FALSE(mapper.Load().IsError());
    ASSERT_EQ(ezArray_GetCount(mapper.GetArray()), 1U);
    EXPECT_EQ(static_cast<DLNAMediaMapperEntry*>(ezArray_At(mapper.GetArray(), 0))->mFileName, "own.mpg");
}
