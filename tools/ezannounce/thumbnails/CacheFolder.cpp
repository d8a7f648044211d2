#include "thumbnails/CacheFolder.h"

#include <cstdlib>
#include <sys/stat.h>

namespace {

constexpr mode_t kOnlyForThePerson = 0700;

std::string FromEnvironment(const char* aName) {
    const char* value = std::getenv(aName);
    return value == nullptr ? "" : value;
}

void MakeFolders(const std::string& aPath) {
    for (std::size_t end = 0; end != std::string::npos;) {
        end = aPath.find('/', end + 1);
        // Where it cannot be made the cache says so when it is used.
        mkdir(aPath.substr(0, end).c_str(), kOnlyForThePerson);
    }
}

} // namespace

std::string FindCacheFolder(const ThumbnailOptions& anOptions) {
    if (anOptions.mCacheFolder) {
        return *anOptions.mCacheFolder;
    }
    std::string caches = FromEnvironment("XDG_CACHE_HOME");
    if (caches.empty() || caches.front() != '/') {
        const std::string home = FromEnvironment("HOME");
        if (home.empty() || home.front() != '/') {
            return {}; // a relative one would lead somewhere else from each folder
        }
        caches = home + "/.cache";
    }
    std::string folder = caches + "/ezannounce";
    MakeFolders(folder);
    return folder;
}
