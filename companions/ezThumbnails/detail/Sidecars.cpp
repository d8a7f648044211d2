#include "ezThumbnails/detail/Sidecars.h"

#include "ezBytes/FileNames.h"
#include "ezBytes/FolderEntries.h"
#include "ezThumbnails/detail/SidecarLimits.h"

#include "ezPlatform/text/NUL.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

#include <sys/stat.h>

namespace {

struct Extension {
    std::string_view mText;
    const char* mMimeType;
};
constexpr Extension kExtensions[] = {{".jpg", "image/jpeg"}, {".jpeg", "image/jpeg"}, {".png", "image/png"}};

/// Names that stand for everything in a folder. The last two are of small pictures. Names that tell one of
/// several albums ("AlbumArt_{...}_Large.jpg") are none: the folder may hold songs of another.
constexpr std::string_view kFolderNames[] = {"cover", "folder", "front",         "albumart",
                                             "album", "poster", "albumartsmall", "thumb"};

/// A path at its last "/". A "\" separates nothing here: the file is opened by its path as it is.
struct Place {
    explicit Place(const ezCString& aPath)
        : mFolder(aPath.View().substr(0, aPath.View().rfind('/') + 1)),
          mName(aPath.View().substr(mFolder.size())) {}
    std::string_view mFolder; ///< with its "/", or empty
    std::string_view mName;
};

/// The names to look for, best first.
std::vector<ezCString> WantedNames(std::string_view aMediaName) {
    const ezCString base(NameWithoutExtension(aMediaName));
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

/// Calls aVisit with the name of each picture in a folder, as it seems by its extension. False when the
/// system was in trouble, and some may be missing.
template <typename Visit>
bool ListPictures(const ezCString& aFolder, const Visit& aVisit) {
    const auto visit = [&](const char* aName, FolderEntry /*aKind*/) {
        const ezCString name(aName);
        if (HasExtension(name)) { // most have none, and this is quick
            aVisit(name);
        }
        return true;
    };
    return WalkFolder(std::string(aFolder.View()), kSidecar_MaxEntries, visit) != FolderWalk::Trouble;
}

/// In the order of trying, as many as are tried.
std::vector<Match> BestOf(std::vector<Match> aMatches) {
    std::sort(aMatches.begin(), aMatches.end());
    if (aMatches.size() > kSidecar_MaxCandidates) {
        aMatches.erase(aMatches.begin() + kSidecar_MaxCandidates, aMatches.end());
    }
    return aMatches;
}

std::vector<Match> FindMatches(const ezCString& aFolder, const std::vector<ezCString>& aWanted,
                               bool* afFailed) {
    std::vector<Match> matches;
    const bool fListed = ListPictures(aFolder, [&](const ezCString& aName) {
        const auto found = std::find_if(aWanted.begin(), aWanted.end(), [&](const ezCString& aWantedName) {
            return ezIsEqualNoCase(aWantedName.View(), aName.View());
        });
        if (found != aWanted.end()) {
            matches.push_back({static_cast<std::size_t>(found - aWanted.begin()), aName != *found, aName});
        }
    });
    *afFailed = *afFailed || !fListed;
    return BestOf(matches);
}

/// The same of a folder that is listed at the first time, and searched from then on.
std::vector<Match> FindMatches(const ezCString& aFolder, const std::vector<ezCString>& aWanted,
                               FolderPictures& aListed, bool* afFailed) {
    const std::string key(aFolder.View());
    auto folder = aListed.find(key);
    if (folder == aListed.end()) {
        FolderPictures::mapped_type names;
        if (!ListPictures(aFolder, [&](const ezCString& aName) {
                names.emplace_back(std::string(aName.Lower().View()), aName);
            })) {
            *afFailed = true; // the next media tries again
            return {};
        }
        std::sort(names.begin(), names.end());
        folder = aListed.emplace(key, std::move(names)).first;
    }
    std::vector<Match> matches;
    for (std::size_t place = 0; place < aWanted.size(); ++place) {
        const auto isSame = [&](const ezCString& aName) {
            return ezIsEqualNoCase(aName.View(), aWanted[place].View());
        };
        if (std::any_of(aWanted.begin(), aWanted.begin() + static_cast<std::ptrdiff_t>(place), isSame)) {
            continue; // media by the name of a folder's picture
        }
        const std::string wanted(aWanted[place].Lower().View());
        const auto& names = folder->second;
        for (auto name = std::lower_bound(names.begin(), names.end(), std::make_pair(wanted, ezCString()));
             name != names.end() && name->first == wanted; ++name) {
            matches.push_back({place, name->second != aWanted[place], name->second});
        }
    }
    return BestOf(matches);
}

} // namespace

ezCString SidecarMimeType(const ezCString& aPath) {
    const std::string_view path = aPath.View();
    for (const Extension& extension : kExtensions) {
        const std::size_t size = extension.mText.size();
        if (path.size() > size && ezIsEqualNoCase(path.substr(path.size() - size), extension.mText)) {
            return extension.mMimeType;
        }
    }
    return {};
}

std::vector<ezCString> FindSidecars(const ezCString& aMediaPath, bool* afFailed, FolderPictures* aListed) {
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
        fFailed = fFailed || (!isThere && !IsAnswerOfPath(errno));
        return isThere;
    };
    struct stat mediaState = {};
    const bool isThere = look(aMediaPath, &mediaState);
    const ezCString folder(media.mFolder);
    const std::vector<ezCString> wanted = WantedNames(media.mName);
    for (const Match& match : aListed != nullptr ? FindMatches(folder, wanted, *aListed, &fFailed)
                                                 : FindMatches(folder, wanted, &fFailed)) {
        const ezCString path = folder + match.mName;
        struct stat state = {};
        const bool isRegular = look(path, &state) && S_ISREG(state.st_mode);
        // By what it is, not by its name: a link to the file is the file.
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
