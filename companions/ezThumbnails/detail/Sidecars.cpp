#include "ezThumbnails/detail/Sidecars.h"

#include "ezPlatform/text/NUL.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <sys/stat.h>

namespace {

struct Extension {
    std::string_view mText;
    const char* mMimeType;
};
constexpr Extension kExtensions[] = {{".jpg", "image/jpeg"}, {".jpeg", "image/jpeg"}, {".png", "image/png"}};

/// Names that stand for everything in a folder.
constexpr std::string_view kFolderNames[] = {"cover", "folder", "front", "albumart", "poster"};

struct DirCloser {
    void operator()(DIR* aDir) const { closedir(aDir); }
};

/// A path at its last "/". A "\" parts nothing here: what opens the media is its path as it is.
struct Place {
    explicit Place(const ezCString& aPath)
        : mFolder(aPath.View().substr(0, aPath.View().rfind('/') + 1)),
          mName(aPath.View().substr(mFolder.size())) {}
    std::string_view mFolder; ///< with its "/", or empty
    std::string_view mName;
};

std::string_view BaseName(std::string_view aName) {
    const std::size_t dot = aName.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? aName : aName.substr(0, dot); // ".profile" has none
}

/// The names to look for, best first.
std::vector<ezCString> WantedNames(std::string_view aMediaName) {
    const ezCString base(BaseName(aMediaName));
    std::vector<ezCString> stems = {base + ".cover", base};
    for (const std::string_view name : kFolderNames) {
        stems.emplace_back(name);
    }
    std::vector<ezCString> names;
    for (const ezCString& stem : stems) {
        for (const Extension& extension : kExtensions) {
            names.push_back(stem + ezCString(extension.mText));
        }
    }
    return names;
}

/// An entry of the folder that is wanted, and how much: less is better.
struct Match {
    std::size_t mPlace;
    bool mfOtherCase;
    ezCString mName;

    friend bool operator<(const Match& aLeft, const Match& aRight) {
        if (aLeft.mPlace != aRight.mPlace) {
            return aLeft.mPlace < aRight.mPlace;
        }
        return aLeft.mfOtherCase != aRight.mfOtherCase ? aRight.mfOtherCase : aLeft.mName < aRight.mName;
    }
};

bool HasExtension(const ezCString& aName) {
    return !SidecarMimeType(aName).IsEmpty();
}

/// Whether an error says that there is nothing to be had, and not that the system is in trouble.
bool IsAnswer(int anError) {
    return anError == ENOENT || anError == ENOTDIR || anError == EACCES || anError == ELOOP;
}

DIR* OpenedFolder(const ezCString& aFolder) {
    DIR* folder = nullptr;
    do {
        folder = opendir(aFolder.c_str());
    } while (folder == nullptr && errno == EINTR);
    return folder;
}

std::vector<Match> FindMatches(const ezCString& aFolder, const std::vector<ezCString>& aWanted,
                               bool* afFailed) {
    std::vector<Match> matches;
    const std::unique_ptr<DIR, DirCloser> dir(OpenedFolder(aFolder));
    if (dir == nullptr) {
        *afFailed = *afFailed || !IsAnswer(errno);
        return matches;
    }
    while (true) {
        errno = 0; // else its end is not told from its failure
        const dirent* const entry = readdir(dir.get());
        if (entry == nullptr) {
            *afFailed = *afFailed || errno != 0;
            break;
        }
        const ezCString name(entry->d_name);
        if (!HasExtension(name)) {
            continue; // most are not, and this is quick
        }
        const auto found = std::find_if(aWanted.begin(), aWanted.end(), [&name](const ezCString& aName) {
            return aName.CompareNoCase(name) == 0;
        });
        if (found != aWanted.end()) {
            matches.push_back({static_cast<std::size_t>(found - aWanted.begin()), name != *found, name});
        }
    }
    std::sort(matches.begin(), matches.end());
    return matches;
}

} // namespace

ezCString SidecarMimeType(const ezCString& aPath) {
    for (const Extension& extension : kExtensions) {
        const std::size_t size = extension.mText.size();
        if (aPath.GetLength() > size &&
            aPath.Mid(aPath.GetLength() - size).CompareNoCase(ezCString(extension.mText)) == 0) {
            return extension.mMimeType;
        }
    }
    return {};
}

std::vector<ezCString> FindSidecars(const ezCString& aMediaPath, bool* afFailed) {
    std::vector<ezCString> paths;
    bool fFailed = false;
    const Place media(aMediaPath);
    if (afFailed != nullptr) {
        *afFailed = false;
    }
    // A NUL would cut the path short, and pictures of another media be found.
    if (media.mName.empty() || ezHasNUL(aMediaPath)) {
        return paths;
    }
    const auto look = [&fFailed](const ezCString& aPath, struct stat* aState) {
        const bool isThere = stat(aPath.c_str(), aState) == 0;
        fFailed = fFailed || (!isThere && !IsAnswer(errno));
        return isThere;
    };
    struct stat mediaState = {};
    const bool isThere = look(aMediaPath, &mediaState);
    const ezCString folder(media.mFolder);
    for (const Match& match :
         FindMatches(folder.IsEmpty() ? "." : folder, WantedNames(media.mName), &fFailed)) {
        const ezCString path = folder + match.mName;
        struct stat state = {};
        const bool isRegular = look(path, &state) && S_ISREG(state.st_mode);
        // By what it is, not by its name: a link to the media is the media.
        const bool isMedia =
            isThere && state.st_dev == mediaState.st_dev && state.st_ino == mediaState.st_ino;
        if (isRegular && !isMedia && match.mName.View() != media.mName) {
            paths.push_back(path);
        }
    }
    if (fFailed) {
        paths.clear(); // the best of them may be missing
    }
    if (afFailed != nullptr) {
        *afFailed = fFailed;
    }
    return paths;
}
