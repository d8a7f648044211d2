#pragma once

#include "ezPlatform/files/File.h"
#include "support/Patience.h"
#include "support/TemporaryFolder.h"
#include "support/WholeFile.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

inline constexpr int kAccess = ezFileAccessMode_ReadWrite;

inline const std::string kOld = "the old content, which is longer than the new one";
inline const std::string kNew = "the new content";

inline bool Create(ezFile& aFile, const std::string& aPath, bool afOverwrite = true) {
    return aFile.Create(ezCString(aPath.data(), aPath.size()), afOverwrite, kAccess);
}

inline bool WriteAll(ezFile& aFile, const std::string& aText) {
    return aFile.Write(aText.data(), aText.size()) == static_cast<int>(aText.size());
}

/// Saves as a saver does.
inline bool Save(const std::string& aPath, const std::string& aText) {
    ezFile file;
    const bool fWritten = Create(file, aPath) && WriteAll(file, aText);
    return file.Close() && fWritten;
}

inline struct stat StatusOf(const std::string& aPath) {
    struct stat status = {};
    EXPECT_EQ(lstat(aPath.c_str(), &status), 0) << aPath;
    return status;
}

inline unsigned ModeOf(const std::string& aPath) {
    return StatusOf(aPath).st_mode & 07777U;
}

inline std::set<std::string> NamesIn(const std::string& aFolder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(aFolder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

inline std::size_t OpenDescriptors() {
    return NamesIn("/proc/self/fd").size();
}

using Names = std::set<std::string>;

/// What a child process found out, which ends without destructors as a killed one does.
inline int InChild(const std::function<int()>& aWork) {
    const pid_t child = fork();
    if (child == 0) {
        alarm(kPatience);
        _exit(aWork());
    }
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

/// The same without the rights of root, so that permissions refuse.
inline int InUnprivilegedChild(const std::function<int()>& aWork) {
    return InChild([&] {
        constexpr uid_t kNobody = 65534;
        if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) {
            return 99;
        }
        return aWork();
    });
}

/// Ends the process where something waits that must never wait.
class Watchdog {
public:
    Watchdog() { alarm(kPatience); }
    ~Watchdog() { alarm(0); }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
};

/// Another file mode mask, for as long as it lives.
class Mask {
public:
    explicit Mask(mode_t aMask) : mBefore(umask(aMask)) {}
    ~Mask() { umask(mBefore); }
    Mask(const Mask&) = delete;
    Mask& operator=(const Mask&) = delete;

private:
    mode_t mBefore;
};

/// A folder with an old file in it, and nothing left open in the end.
class FileCreate : public testing::Test {
protected:
    FileCreate() : mDescriptors(OpenDescriptors()), mPath(mFolder.Write("table.txt", kOld)) {}
    ~FileCreate() override { EXPECT_EQ(OpenDescriptors(), mDescriptors) << "a descriptor leaks"; }

    /// The old file stands as it was, and nothing beside it.
    void ExpectOldFileWhole(const char* aWhat = "") const {
        EXPECT_EQ(ContentAt(mPath), kOld) << aWhat;
        EXPECT_EQ(NamesIn(mFolder.GetPath()), Names({"table.txt"})) << aWhat;
    }

    std::size_t mDescriptors;
    TemporaryFolder mFolder;
    std::string mPath;
};
