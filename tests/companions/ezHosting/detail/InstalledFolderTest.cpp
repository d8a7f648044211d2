#include "ezHosting/detail/InstalledFolder.h"

#include "support/TemporaryFolder.h"
#include "support/WorkingDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

TEST(InstalledFolder, IsBesideTheLibraryWhereverThatReallyIs) {
    const TemporaryFolder tree;
    const std::string data = "/share/ezParsersFramework/" EZHOSTING_DATA_VERSION;
    const std::string root = fs::canonical(tree.GetPath()).string();
    const std::string library = tree.Write("usr/" EZHOSTING_LIBDIR "/libezHosting.so.1.2.3", "");
    EXPECT_EQ(InstalledFolderOf(library, ""), root + "/usr" + data);
    // By the link that the loader follows, and through a link to the folder, as /lib is one.
    fs::create_symlink("libezHosting.so.1.2.3", tree.Path("usr/" EZHOSTING_LIBDIR "/libezHosting.so.1"));
    fs::create_symlink("usr/" EZHOSTING_LIBDIR, tree.Path("linked"));
    EXPECT_EQ(InstalledFolderOf(tree.Path("linked/libezHosting.so.1"), ""), root + "/usr" + data);
    // A relative one, as a relative search path gives it.
    const WorkingDirectory working(tree.Path("usr"));
    EXPECT_EQ(InstalledFolderOf("./" EZHOSTING_LIBDIR "/libezHosting.so.1", ""), root + "/usr" + data);
    EXPECT_EQ(InstalledFolderOf("./gone/libezHosting.so.1", ""), "");
}

TEST(InstalledFolder, OfAProgramThatHoldsTheLibraryIsBesideThat) {
    const TemporaryFolder tree;
    const std::string data = "/opt/share/ezParsersFramework/" EZHOSTING_DATA_VERSION;
    const std::string expected = fs::canonical(tree.GetPath()).string() + data;
    const std::string program = tree.Write("opt/" EZHOSTING_BINDIR "/server", "");
    EXPECT_EQ(InstalledFolderOf("server", program), expected); // started by its name alone
    EXPECT_EQ(InstalledFolderOf(program, program), expected);
    EXPECT_EQ(InstalledFolderOf("server", ""), "");
}

TEST(InstalledFolder, OfThisProgramIsAbsolute) {
    EXPECT_EQ(InstalledFolder().front(), '/');
    const WorkingDirectory working("/");
    EXPECT_EQ(InstalledFolder().front(), '/');
}
