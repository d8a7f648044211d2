#include "FileCreateKit.h"
#include "support/ReplacedSystem.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>

// Where a path that is written leads.

using FileLink = FileCreate;

TEST_F(FileLink, ALinkStaysALinkAndItsTargetIsReplaced) {
    std::filesystem::create_directory(mFolder.Path("links"));
    const std::string link = mFolder.Path("links/table.txt");
    ASSERT_EQ(symlink("../second", link.c_str()), 0);
    ASSERT_EQ(symlink("table.txt", mFolder.Path("second").c_str()), 0);
    EXPECT_TRUE(Save(link, kNew));
    EXPECT_TRUE(S_ISLNK(StatusOf(link).st_mode));
    EXPECT_TRUE(S_ISLNK(StatusOf(mFolder.Path("second")).st_mode));
    EXPECT_EQ(ContentAt(mPath), kNew);
    EXPECT_TRUE(S_ISREG(StatusOf(mPath).st_mode));
    EXPECT_EQ(NamesIn(mFolder.Path("links")), Names({"table.txt"}));
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"links", "second", "table.txt"}));
}

TEST_F(FileLink, ALinkThatLeadsNowhereIsRefusedAndStays) {
    std::filesystem::create_directory(mFolder.Path("target"));
    struct Case {
        const char* mName;
        std::string mTarget;
    };
    const Case cases[] = {{"nothing yet", "target/new.txt"},
                          {"nothing yet from the root", mFolder.Path("target/new.txt")},
                          {"no folder", "missing/new.txt"},
                          {"circle", "circle"}};
    for (const Case& link : cases) {
        const std::string path = mFolder.Path(link.mName);
        ASSERT_EQ(symlink(link.mTarget.c_str(), path.c_str()), 0);
        EXPECT_FALSE(Save(path, kNew)) << link.mName;
        EXPECT_TRUE(S_ISLNK(StatusOf(path).st_mode)) << link.mName;
        std::filesystem::remove(path);
    }
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt", "target"}));
    EXPECT_EQ(NamesIn(mFolder.Path("target")), Names());
}

TEST_F(FileLink, AFolderMayBeALink) {
    std::filesystem::create_directory(mFolder.Path("target"));
    ASSERT_EQ(symlink("target", mFolder.Path("link").c_str()), 0);
    for (const char* content : {"new", "replaced"}) {
        EXPECT_TRUE(Save(mFolder.Path("link/new.txt"), content));
        EXPECT_EQ(ContentAt(mFolder.Path("target/new.txt")), content);
    }
    EXPECT_EQ(NamesIn(mFolder.Path("target")), Names({"new.txt"}));
}

// A link that a stranger put into a folder that all may write is followed or refused by the system, as it is
// set up: never by hand.
TEST_F(FileLink, AStrangersLinkInASharedFolderIsFollowedOnlyWhereTheSystemDoes) {
    std::filesystem::create_directory(mFolder.Path("shared"));
    ASSERT_EQ(chmod(mFolder.Path("shared").c_str(), 01777), 0);
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0755), 0);
    const std::string link = mFolder.Path("shared/out.jpg");
    ASSERT_EQ(symlink("../table.txt", link.c_str()), 0);
    constexpr uid_t kStranger = 65533;
    const bool fStrangers = lchown(link.c_str(), kStranger, kStranger) == 0;
    EXPECT_EQ(fStrangers, geteuid() == 0);
    const int opened = open(link.c_str(), O_WRONLY | O_CLOEXEC);
    const bool fFollowed = opened >= 0;
    if (fFollowed) {
        close(opened);
    }
    EXPECT_EQ(Save(link, kNew), fFollowed);
    EXPECT_EQ(ContentAt(mPath), fFollowed ? kNew : kOld);
    // And for a user without rights, to whom the target is open.
    ASSERT_EQ(chmod(mPath.c_str(), 0666), 0);
    EXPECT_EQ(InUnprivilegedChild([&] {
                  const int file = open(link.c_str(), O_WRONLY | O_CLOEXEC);
                  const bool fOpens = file >= 0 && close(file) == 0;
                  return Save(link, "user's") == fOpens && fOpens == fFollowed ? 42 : 1;
              }),
              42);
    EXPECT_EQ(ContentAt(mPath), fFollowed ? "user's" : kOld);
    EXPECT_TRUE(S_ISLNK(StatusOf(link).st_mode));
    EXPECT_EQ(NamesIn(mFolder.Path("shared")), Names({"out.jpg"}));
}

// There everybody may write another's file that lets him, and nobody but its owner may replace it.
TEST_F(FileLink, AStrangersFileInASharedFolderStandsAsItWasAndTheSaveFails) {
    std::filesystem::create_directory(mFolder.Path("shared"));
    ASSERT_EQ(chmod(mFolder.Path("shared").c_str(), 01777), 0);
    ASSERT_EQ(chmod(mFolder.GetPath().c_str(), 0755), 0);
    const std::string path = mFolder.Write("shared/out.jpg", kOld);
    ASSERT_EQ(chmod(path.c_str(), 0666), 0);
    const bool fStrangers = chown(path.c_str(), 65533, 65533) == 0;
    EXPECT_EQ(fStrangers, geteuid() == 0);
    EXPECT_EQ(InUnprivilegedChild([&] { return Save(path, kNew) ? 1 : 42; }), fStrangers ? 42 : 1);
    EXPECT_EQ(ContentAt(path), fStrangers ? kOld : kNew);
    EXPECT_EQ(NamesIn(mFolder.Path("shared")), Names({"out.jpg"}));
}

// As there, whatever this machine is set up to do.
TEST_F(FileLink, ALinkThatTheSystemRefusesIsNotFollowedByHand) {
    const std::string link = mFolder.Path("link");
    ASSERT_EQ(symlink("table.txt", link.c_str()), 0);
    {
        const ReplacedSystem system([](ezSystemCalls& aCalls) {
            aCalls.mOpen = [](const char* aPath, int aFlags, mode_t aMode) {
                struct stat status = {};
                errno = EACCES;
                return lstat(aPath, &status) == 0 && S_ISLNK(status.st_mode)
                           ? -1
                           : ezSystem_Real().mOpen(aPath, aFlags, aMode);
            };
        });
        EXPECT_FALSE(Save(link, kNew));
    }
    EXPECT_TRUE(S_ISLNK(StatusOf(link).st_mode));
    EXPECT_EQ(ContentAt(mPath), kOld);
    EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"link", "table.txt"}));
}

TEST_F(FileLink, WhereTheSystemDoesNotTellWhatADescriptorNamesThePathDoes) {
    ASSERT_EQ(symlink("table.txt", mFolder.Path("link").c_str()), 0);
    struct Case {
        const char* mWhat;
        ssize_t (*mReadLink)(const char*, char*, std::size_t);
    };
    const Case cases[] = {{"no such folder",
                           [](const char*, char*, std::size_t) -> ssize_t {
                               errno = ENOENT;
                               return -1;
                           }},
                          {"nothing", [](const char*, char*, std::size_t) -> ssize_t { return 0; }},
                          {"cut",
                           [](const char*, char* aBuffer, std::size_t aSize) -> ssize_t {
                               std::fill_n(aBuffer, aSize, '/');
                               return static_cast<ssize_t>(aSize);
                           }},
                          {"no path",
                           [](const char*, char* aBuffer, std::size_t aSize) -> ssize_t {
                               std::fill_n(aBuffer, aSize, 'x');
                               return 9;
                           }},
                          {"another file", [](const char*, char* aBuffer, std::size_t) -> ssize_t {
                               const std::string_view other = "/etc/passwd";
                               std::copy(other.begin(), other.end(), aBuffer);
                               return static_cast<ssize_t>(other.size());
                           }}};
    for (const Case& silent : cases) {
        const ReplacedSystem system(
            [&silent](ezSystemCalls& aCalls) { aCalls.mReadLink = silent.mReadLink; });
        EXPECT_TRUE(Save(mFolder.Path("link"), silent.mWhat)) << silent.mWhat;
        EXPECT_EQ(ContentAt(mPath), silent.mWhat);
        EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"link", "table.txt"}));
    }
}
