#include "ezHosting/HostFolders.h"

#include "ezHosting/detail/FolderSearch.h"
#include "ezHosting/detail/InstalledFolder.h"
#include "ezHosting/detail/Places.h"

#include "ez/Environment.h"
#include "ezPlatform/config/Config.h"

namespace {

constexpr const char* kWorkingFolder = ".";

/// Looks for the table in a folder; true where there is one.
bool LookIn(const std::string& aFolder, ezHostFolders& aFolders) {
    const std::string path = FileIn(aFolder, kezMediaTypesFileName);
    aFolders.mPlaces.push_back({path, WhyNoFile(path)});
    return aFolders.mPlaces.back().mNote.empty();
}

/// What ConfigPath.ini names: the folders, "" where it names none.
void ReadConfigPath(ezHostFolders& aFolders) {
    ezCString readOnly;
    ezCString writable;
    ezConfigConfig::GetConfigPaths(readOnly, writable, kezConfigPathFileName);
    aFolders.mReadOnly = readOnly.View();
    aFolders.mWritable = writable.View();
    std::string note = WhyNotRead(kezConfigPathFileName);
    if (note.empty()) {
        note = readOnly.IsEmpty() ? "names no read-only folder" : "names the read-only folder";
    }
    aFolders.mPlaces.push_back({kezConfigPathFileName, note});
}

/// The read-only folder where nobody names one.
std::string FindReadOnly(const std::string& anInstalledFolder, ezHostFolders& aFolders) {
    if (LookIn(kWorkingFolder, aFolders)) {
        return kWorkingFolder;
    }
    const bool fInstalled = !anInstalledFolder.empty() && LookIn(anInstalledFolder, aFolders);
    return fInstalled ? anInstalledFolder : kWorkingFolder;
}

/// Whether a place has been looked at.
bool IsKnown(const std::string& aPath, const ezHostFolders& aFolders) {
    for (const ezHostFolders::Place& place : aFolders.mPlaces) {
        if (place.mPath == aPath) {
            return true;
        }
    }
    return false;
}

} // namespace

bool ezHostFolders::HasTable() const {
    return WhyNoFile(FileIn(mReadOnly, kezMediaTypesFileName)).empty() ||
           WhyNoFile(FileIn(mWritable, kezMediaTypesFileName)).empty();
}

std::string ezHostFolders::WhyNoTable() const {
    return ::WhyNoTable(*this);
}

ezHostFolders FindHostFolders(std::string_view aConfigFolder, std::string_view aStateFolder) {
    return SearchHostFolders(aConfigFolder, aStateFolder, InstalledFolder());
}

ezHostFolders SearchHostFolders(std::string_view aConfigFolder, std::string_view aStateFolder,
                                const std::string& anInstalledFolder) {
    ezHostFolders folders;
    folders.mReadOnly = aConfigFolder;
    folders.mWritable = aConfigFolder;
    if (aConfigFolder.empty()) {
        ReadConfigPath(folders);
    }
    if (folders.mReadOnly.empty()) {
        folders.mReadOnly = FindReadOnly(anInstalledFolder, folders);
    } else {
        LookIn(folders.mReadOnly, folders);
    }
    if (!aStateFolder.empty()) {
        folders.mWritable = aStateFolder;
    }
    if (folders.mWritable.empty()) {
        folders.mWritable = kWorkingFolder;
    }
    if (!IsKnown(FileIn(folders.mWritable, kezMediaTypesFileName), folders)) {
        LookIn(folders.mWritable, folders);
    }
    return folders;
}
