#include "host/Walk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <set>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace {

/// A folder under way. Only its names are held, and no folder is kept open.
struct Folder {
    std::string mPath;
    std::vector<std::string> mNames; ///< sorted backwards: the next one is the last
};

std::string Join(const std::string& aFolder, const std::string& aName) {
    return aFolder.back() == '/' ? aFolder + aName : aFolder + "/" + aName;
}

class Walker {
public:
    explicit Walker(WalkVisitor& aVisitor) : mVisitor(aVisitor) {}

    void Start(const std::string& aPath) {
        struct stat status = {};
        if (stat(aPath.c_str(), &status) != 0) {
            mVisitor.Problem(aPath, std::strerror(errno));
        } else if (S_ISREG(status.st_mode)) {
            mVisitor.File(aPath, "");
        } else if (S_ISDIR(status.st_mode)) {
            Enter(aPath, status);
        } else {
            mVisitor.Problem(aPath, "not a regular file");
        }
        while (!mFolders.empty()) {
            Step();
        }
    }

private:
    void Step() {
        Folder& folder = mFolders.back();
        if (folder.mNames.empty()) {
            mFolders.pop_back();
            return;
        }
        const std::string path = Join(folder.mPath, folder.mNames.back());
        folder.mNames.pop_back();
        struct stat status = {};
        if (stat(path.c_str(), &status) != 0) {
            mVisitor.Problem(path, std::strerror(errno));
        } else if (S_ISREG(status.st_mode)) {
            mVisitor.File(path, folder.mPath);
        } else if (S_ISDIR(status.st_mode)) {
            Enter(path, status);
        }
    }

    void Enter(const std::string& aPath, const struct stat& aStatus) {
        if (!mVisited.insert({aStatus.st_dev, aStatus.st_ino}).second) {
            return;
        }
        DIR* directory = opendir(aPath.c_str());
        if (directory == nullptr) {
            mVisitor.Problem(aPath, std::strerror(errno));
            return;
        }
        Folder folder;
        folder.mPath = aPath;
        errno = 0;
        while (const dirent* entry = readdir(directory)) {
            const std::string name = entry->d_name;
            if (name != "." && name != "..") {
                folder.mNames.push_back(name);
            }
            errno = 0;
        }
        if (errno != 0) {
            mVisitor.Problem(aPath, std::strerror(errno));
        }
        closedir(directory);
        std::sort(folder.mNames.rbegin(), folder.mNames.rend());
        mFolders.push_back(std::move(folder));
    }

    WalkVisitor& mVisitor;
    std::vector<Folder> mFolders;
    std::set<std::pair<dev_t, ino_t>> mVisited;
};

} // namespace

void Walk(const std::string& aPath, WalkVisitor& aVisitor) {
    Walker(aVisitor).Start(aPath);
}
