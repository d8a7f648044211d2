#include "CacheFolder.h"

#include <cstdlib>
#include <sys/stat.h>

namespace {

constexpr mode_t kOnlyForThePerson = 0700;

std::string FromEnvironment(const char* aName) {
    const char* value = std::getenv(aName);
    return value == nullptr ? "" : value;
}

} // namespace

std::string FindCacheFolder(const ThumbnailOptions& anOptions) {
    if (anOptions.mCacheFolder) {
        return *anOptions.mCacheFolder;
    }
    std::string caches = FromEnvironment("XDG_CACHE_HOME");
    if (caches.empty() || caches.front() != '/') {
        const std::string home = FromEnvironment("HOME");
        if (home.empty()) {
            return {};
        }
        caches = home + "/.cache";
    }
    std::string folder = caches + "/ezannounce";
    // Where they cannot be made the cache says so when it is used.
    mkdir(caches.c_str(), kOnlyForThePerson);
    mkdir(folder.c_str(), kOnlyForThePerson);
    return folder;
}
