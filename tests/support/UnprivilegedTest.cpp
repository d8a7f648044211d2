#include "support/Unprivileged.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

TEST(Unprivileged, IsRefusedWhatModesRefuseAndPutsTheRightsBack) {
    const TemporaryFolder folder;
    ASSERT_EQ(chmod(folder.GetPath().c_str(), 0755), 0);
    const std::string path = folder.Write("secret", "x");
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    const uid_t before = geteuid();
    {
        const Unprivileged unprivileged;
        EXPECT_NE(geteuid(), 0U);
        errno = 0;
        EXPECT_EQ(open(path.c_str(), O_RDONLY | O_CLOEXEC), -1);
        EXPECT_EQ(errno, EACCES);
    }
    EXPECT_EQ(geteuid(), before);
}
