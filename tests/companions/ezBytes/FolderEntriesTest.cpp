#include "ezBytes/FolderEntries.h"

#include "support/TemporaryFolder.h"
#include "support/Unprivileged.h"
#include "support/WorkingDirectory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// What a walk finds, and how it ends.
struct Found {
    std::map<std::string, FolderEntry> mEntries;
    FolderWalk mEnd;
};

Found WalkAll(const std::string& aFolder, std::size_t aMost = 1000) {
    Found found;
    found.mEnd = WalkFolder(aFolder, aMost, [&](const char* aName, FolderEntry aKind) {
        found.mEntries[aName] = aKind;
        return true;
    });
    return found;
}

} // namespace

TEST(FolderEntries, TellsWhatTheFolderSaysOfEach) {
    const TemporaryFolder folder;
    folder.Write("a", "");
    folder.MakeFolder("b");
    ASSERT_EQ(mkfifo(folder.Path("c").c_str(), 0600), 0);
    ASSERT_EQ(symlink("a", folder.Path("d").c_str()), 0);
    const Found found = WalkAll(folder.GetPath());
    EXPECT_EQ(found.mEnd, FolderWalk::Whole);
    ASSERT_EQ(found.mEntries.size(), 4U);
    // A file system that does not say, says so of all.
    const bool fSays = found.mEntries.at("a") != FolderEntry::Unsaid;
    EXPECT_EQ(found.mEntries.at("a"), fSays ? FolderEntry::File : FolderEntry::Unsaid);
    EXPECT_EQ(found.mEntries.at("b"), fSays ? FolderEntry::Folder : FolderEntry::Unsaid);
    EXPECT_EQ(found.mEntries.at("c"), fSays ? FolderEntry::Other : FolderEntry::Unsaid);
    EXPECT_EQ(found.mEntries.at("d"), FolderEntry::Unsaid);
}

TEST(FolderEntries, EndsAtItsBoundAndWhenTheTakerHasEnough) {
    const TemporaryFolder folder;
    folder.Write("a", "");
    folder.Write("b", "");
    EXPECT_EQ(WalkAll(folder.GetPath(), 5).mEnd, FolderWalk::Whole); // ".", ".." and the end among them
    EXPECT_EQ(WalkAll(folder.GetPath(), 4).mEnd, FolderWalk::Cut);   // what follows is not known
    EXPECT_EQ(WalkAll(folder.GetPath(), 0).mEntries.size(), 0U);
    std::size_t taken = 0;
    const auto enough = [&](const char* /*aName*/, FolderEntry /*aKind*/) { return ++taken < 1; };
    EXPECT_EQ(WalkFolder(folder.GetPath(), 1000, enough), FolderWalk::Cut);
    EXPECT_EQ(taken, 1U);
}

TEST(FolderEntries, HasNoneOfWhatIsNoFolder) {
    const TemporaryFolder folder;
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0); // nobody writes: it would be waited for
    ASSERT_EQ(symlink("loop", folder.Path("loop").c_str()), 0);
    const std::string cut = folder.GetPath() + std::string(1, '\0') + "/x";
    for (const std::string& path : {folder.Path("none"), folder.Write("file", ""), folder.Path("pipe"),
                                    folder.Path("loop"), folder.Path(std::string(5000, 'x')), cut}) {
        const Found found = WalkAll(path);
        EXPECT_EQ(found.mEnd, FolderWalk::None) << path.substr(0, 100);
        EXPECT_TRUE(found.mEntries.empty());
    }
    EXPECT_TRUE(IsAnswerOfPath(EACCES));
    EXPECT_TRUE(IsAnswerOfPath(ENXIO)); // a socket
    EXPECT_FALSE(IsAnswerOfPath(EMFILE));
    EXPECT_FALSE(IsAnswerOfPath(EIO));
}

TEST(FolderEntries, AreRefusedToWhoMayNotListThem) {
    const TemporaryFolder folder;
    std::filesystem::permissions(folder.GetPath(), std::filesystem::perms(0755));
    const std::string secret = folder.MakeFolder("secret");
    std::filesystem::permissions(secret, std::filesystem::perms::none);
    const Unprivileged user;
    EXPECT_EQ(WalkAll(secret).mEnd, FolderWalk::Refused);
    EXPECT_EQ(WalkAll(secret + "/deeper").mEnd, FolderWalk::Refused);
}

TEST(FolderEntries, TakesTheWorkingFolderForTheEmptyPath) {
    const TemporaryFolder folder;
    folder.Write("here", "");
    const WorkingDirectory directory(folder.GetPath());
    EXPECT_EQ(WalkAll("").mEntries.count("here"), 1U);
}
