#include "ezPlatform/base/Descriptor.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// What a daemon finds out whose standard input, output and error are closed.
int InDaemon(const std::function<int()>& aWork) {
    const pid_t child = fork();
    if (child == 0) {
        close(0);
        close(1);
        close(2);
        _exit(aWork());
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

bool AreStandardOnesClosed() {
    for (int file = 0; file <= 2; ++file) {
        if (fcntl(file, F_GETFD) >= 0 || errno != EBADF) {
            return false;
        }
    }
    return true;
}

} // namespace

TEST(Descriptor, MovesOnlyTheStandardOnes) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "content");
    const int high = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(ezDescriptor_AboveStandard(high), high);
    close(high);
    errno = ENOSPC;
    EXPECT_EQ(ezDescriptor_AboveStandard(-1), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(ezDescriptor_AboveStandard(static_cast<DIR*>(nullptr)), nullptr);
    for (int place = 0; place <= 2; ++place) {
        EXPECT_EQ(InDaemon([&] {
                      for (int filled = 0; filled < place; ++filled) {
                          open("/", O_RDONLY | O_DIRECTORY);
                      }
                      const int low = open(path.c_str(), O_RDONLY);
                      const int above = ezDescriptor_AboveStandard(low);
                      char byte = 0;
                      return low == place && above >= 3 && fcntl(low, F_GETFD) < 0 &&
                                     fcntl(above, F_GETFD) == FD_CLOEXEC && read(above, &byte, 1) == 1
                                 ? 42
                                 : 1;
                  }),
                  42)
            << place;
    }
    EXPECT_EQ(InDaemon([&] { // the first that is kept is 3
                  for (int filled = 0; filled < 3; ++filled) {
                      open("/", O_RDONLY | O_DIRECTORY);
                  }
                  close(3);
                  return open(path.c_str(), O_RDONLY) == 3 && ezDescriptor_AboveStandard(3) == 3 ? 42 : 1;
              }),
              42);
}

TEST(Descriptor, WithoutRoomAboveNothingStaysOpen) {
    EXPECT_EQ(InDaemon([] {
                  const rlimit none = {3, 3};
                  if (setrlimit(RLIMIT_NOFILE, &none) != 0) {
                      return 1;
                  }
                  const int low = open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
                  if (low != 0 || ezDescriptor_AboveStandard(low) != -1 || errno == 0 ||
                      !AreStandardOnesClosed()) {
                      return 2;
                  }
                  DIR* folder = opendir("/");
                  return folder != nullptr && ezDescriptor_AboveStandard(folder) == nullptr && errno != 0 &&
                                 AreStandardOnesClosed()
                             ? 42
                             : 3;
              }),
              42);
}

TEST(Descriptor, AFolderIsReadFromItsStart) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "content");
    EXPECT_EQ(InDaemon([&] {
                  DIR* above = ezDescriptor_AboveStandard(opendir(folder.GetPath().c_str()));
                  if (above == nullptr || dirfd(above) < 3 || !AreStandardOnesClosed()) {
                      return 1;
                  }
                  int names = 0;
                  while (readdir(above) != nullptr) {
                      ++names;
                  }
                  closedir(above);
                  return names == 3 ? 42 : 2;
              }),
              42);
}

// What a host prints there would stand in a file of its own.
TEST(Descriptor, FilesAndCacheStayOutOfTheStandardOnes) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "old");
    EXPECT_EQ(InDaemon([&] {
                  ezFile read(ezCString(path), ezFileOpenMode_Read);
                  ezFile written;
                  if (!read.Open() || !written.Create(ezCString(path), true, ezFileAccessMode_ReadWrite) ||
                      !AreStandardOnesClosed()) {
                      return 1;
                  }
                  ezFileCacheManager cache(ezCString(folder.GetPath()), 1000, 10);
                  bool fNew = false;
                  const std::unique_ptr<ezFile> filled(cache.OpenCachedFile("b", &fNew, 0));
                  if (filled == nullptr || !fNew || !AreStandardOnesClosed()) {
                      return 2;
                  }
                  if (write(1, "printed", 7) != -1 || written.Write("new", 3) != 3 || !written.Close() ||
                      filled->Write("x", 1) != 1) {
                      return 3;
                  }
                  cache.SetCachedFileState("b", filled.get(), true);
                  const std::unique_ptr<ezFile> hit(cache.OpenCachedFile("b", &fNew, 0));
                  DIR* listed = ezSystem().mOpenDir(AT_FDCWD);
                  return hit != nullptr && !fNew && listed != nullptr && AreStandardOnesClosed() ? 42 : 4;
              }),
              42);
    EXPECT_EQ(ReadWholeFile(path), "new");
}
