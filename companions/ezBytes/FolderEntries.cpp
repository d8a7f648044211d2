#include "ezBytes/FolderEntries.h"

#include "ezPlatform/base/Descriptor.h"

#include <cerrno>
#include <dirent.h>
#include <memory>
#include <string_view>

namespace {

struct DirCloser {
    void operator()(DIR* aDir) const { closedir(aDir); }
};

/// Never waits: what is not a folder is refused by the system.
DIR* OpenedFolder(const std::string& aFolder) {
    DIR* folder = nullptr;
    do {
        folder = ezDescriptor_AboveStandard(opendir(aFolder.c_str()));
    } while (folder == nullptr && errno == EINTR);
    return folder;
}

#ifdef DT_REG
FolderEntry KindOf(const dirent& anEntry) {
    switch (anEntry.d_type) {
    case DT_REG:
        return FolderEntry::File;
    case DT_DIR:
        return FolderEntry::Folder;
    case DT_LNK:
    case DT_UNKNOWN:
        return FolderEntry::Unsaid;
    default:
        return FolderEntry::Other;
    }
}
#else // POSIX has names alone
FolderEntry KindOf(const dirent& /*anEntry*/) {
    return FolderEntry::Unsaid;
}
#endif

} // namespace

FolderWalk WalkFolder(const std::string& aFolder, std::size_t aMost,
                      const std::function<bool(const char* aName, FolderEntry aKind)>& aTake) {
    // A NUL would cut the path short, and another folder be listed.
    if (aFolder.find('\0') != std::string::npos) {
        return FolderWalk::None;
    }
    const std::unique_ptr<DIR, DirCloser> folder(OpenedFolder(aFolder.empty() ? "." : aFolder));
    if (folder == nullptr) {
        return errno == EACCES         ? FolderWalk::Refused
               : IsAnswerOfPath(errno) ? FolderWalk::None
                                       : FolderWalk::Trouble;
    }
    for (std::size_t i = 0; i < aMost; ++i) {
        errno = 0; // else its end is not told from its failure
        const dirent* const entry = readdir(folder.get());
        if (entry == nullptr) {
            return errno == 0 ? FolderWalk::Whole : FolderWalk::Trouble;
        }
        const std::string_view name = static_cast<const char*>(entry->d_name);
        if (name != "." && name != ".." && !aTake(name.data(), KindOf(*entry))) {
            return FolderWalk::Cut;
        }
    }
    return FolderWalk::Cut;
}

bool IsAnswerOfPath(int anError) {
    return anError == ENOENT || anError == ENOTDIR || anError == EACCES || anError == ELOOP ||
           anError == ENAMETOOLONG || anError == ENXIO; // ENXIO: a socket
}
