#include "ezPlatform/files/Dir.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/text/NUL.h"

#include <climits>

namespace {

constexpr mode_t kModeOfNewFolder = 0777;

bool IsFolder(const ezCString& aPath) {
    struct stat status = {};
    return ezSystem().mStat(aPath.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

bool ezDir_CreateRecursively(const ezCString& aPath) {
    const std::string_view path = aPath.View();
    if (path.empty()) {
        return true;
    }
    // A path that no call takes is not tried folder by folder.
    if (path.size() >= PATH_MAX || ezHasNUL(aPath)) {
        return false;
    }
    for (std::size_t end = path.find('/', 1); end != std::string_view::npos; end = path.find('/', end + 1)) {
        ezSystem().mMkdir(ezCString(path.substr(0, end)).c_str(),
                          kModeOfNewFolder); // whether it helped is seen below
    }
    ezSystem().mMkdir(aPath.c_str(), kModeOfNewFolder);
    return IsFolder(aPath);
}
