#include "ezPlatform/files/FileSaver.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/Limits.h"
#include "ezPlatform/text/NUL.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

namespace {

constexpr mode_t kModeOfNewFile = 0666;
constexpr mode_t kModeUntilItsOwn = 0600; // nobody else reads on the way what the old file did not let him
constexpr std::string_view kBesideSuffix = ".ezsave";
constexpr std::size_t kDigits = 16;
constexpr int kToWrite = O_CLOEXEC | O_NOCTTY | O_NONBLOCK; // non-blocking for a pipe without a reader

/// What the names of all files beside a target begin with; cut, so that they fit any file system.
ezCString BesidePrefix(const ezCString& aTarget) {
    return "." + aTarget.Left(kFileSaver_MaxBesideName) + ".";
}

/// True for the names that are made by a prefix: what merely looks alike is not ours to remove.
bool IsBeside(std::string_view aName, std::string_view aPrefix) {
    return aName.size() == aPrefix.size() + kDigits + kBesideSuffix.size() &&
           aName.substr(0, aPrefix.size()) == aPrefix &&
           aName.substr(aPrefix.size() + kDigits) == kBesideSuffix &&
           aName.substr(aPrefix.size(), kDigits).find_first_not_of("0123456789ABCDEF") ==
               std::string_view::npos;
}

/// Removes what killed writers left. A folder that cannot be read keeps it.
void RemoveLeftovers(int aFolder, const ezCString& aPrefix) {
    DIR* folder = ezSystem().mOpenDir(aFolder);
    if (folder == nullptr) {
        return;
    }
    while (const struct dirent* entry = ezSystem().mReadDir(folder)) {
        const char* name = static_cast<const char*>(entry->d_name);
        if (IsBeside(name, aPrefix.View())) {
            ezHeld_RemoveIfStale(aFolder, name);
        }
    }
    ezSystem().mCloseDir(folder);
}

/// The path of an open file where the system tells it; else empty.
ezCString PathOfOpened(int aFile) {
    char text[PATH_MAX];
    const ezCString link = ezCString::Format("/proc/self/fd/%d", aFile);
    const ssize_t length = ezSystem().mReadLink(link.c_str(), text, sizeof text);
    const bool fWhole = length > 0 && static_cast<std::size_t>(length) < sizeof text && text[0] == '/';
    return fWhole ? ezCString(std::string_view(text, static_cast<std::size_t>(length))) : ezCString();
}

} // namespace

struct ezFileSaver::Target {
    ezHeldFile mFile;   ///< open for writing; not where nothing stands there yet
    ezHeldFile mFolder; ///< that it stands in
    ezCString mName;    ///< in the folder, no link
    mode_t mMode = kModeOfNewFile;
    bool mfReadable = false;      ///< mFile is open for reading as well
    bool mfMadeMeanwhile = false; ///< nothing stood there at first

    /// Opens a regular file, or finds nothing there; false for all else.
    bool Open(const ezCString& aPath) {
        // For reading as well, since an old file that is written in place is kept first.
        mFile = ezHeldFile(ezHeld_Open(aPath.c_str(), O_RDWR | kToWrite, 0));
        mfReadable = mFile.IsOpened();
        if (!mfReadable && errno == EACCES) {
            mFile = ezHeldFile(ezHeld_Open(aPath.c_str(), O_WRONLY | kToWrite, 0));
        }
        struct stat status = {};
        if (!mFile.IsOpened()) {
            if (errno != ENOENT || !FindFolder(aPath)) {
                return false;
            }
            mfMadeMeanwhile = ezSystem().mLStatAt(mFolder.Get(), mName.c_str(), &status) == 0;
            return mfMadeMeanwhile ? !S_ISLNK(status.st_mode) : errno == ENOENT; // no link to nothing
        }
        if (ezSystem().mFStat(mFile.Get(), &status) != 0 || !S_ISREG(status.st_mode)) {
            return false;
        }
        mMode = status.st_mode & 07777U;
        return true;
    }
    /// Finds where the open file stands: the system followed the links, and the descriptor says where that
    /// led, while the path may lead elsewhere by now. False where another file has its name by now.
    bool Locate(const ezCString& aPath) {
        return IsAt(PathOfOpened(mFile.Get())) ||
               IsAt(ezCString::FromAllocatedString(ezSystem().mRealPath(aPath.c_str())));
    }

private:
    bool FindFolder(const ezCString& aPath) {
        const std::string_view path = aPath.View();
        const std::size_t nameStart = path.rfind('/') + 1;
        mName = ezCString(path.substr(nameStart));
        mFolder =
            ezHeld_Folder(nameStart == 0 ? ezCString("./") : ezCString(path.substr(0, nameStart)), false);
        return mFolder.IsOpened() && !mName.IsEmpty();
    }
    /// True where the open file is what a path names without a last link.
    bool IsAt(const ezCString& aPath) {
        return !aPath.IsEmpty() && FindFolder(aPath) &&
               ezHeld_IsNameOf(mFolder.Get(), mName.c_str(), mFile.Get());
    }
};

bool ezFileSaver::Find(const ezCString& aPath, Target& aTarget) {
    for (int tries = 0; tries < kFileSaver_MaxFinds; ++tries) {
        aTarget = Target();
        if (!aTarget.Open(aPath)) {
            return false;
        }
        if (aTarget.mFile.IsOpened() ? aTarget.Locate(aPath) : !aTarget.mfMadeMeanwhile) {
            return true;
        }
    }
    return false;
}

int ezFileSaver::Create(const ezCString& aPath, bool afOverwrite) {
    Target target;
    if (aPath.IsEmpty() || ezHasNUL(aPath) || !Find(aPath, target) ||
        (target.mFile.IsOpened() && !afOverwrite)) {
        return -1;
    }
    mTarget = target.mName;
    mFolder = std::move(target.mFolder);
    bool fFolderRefuses = false;
    const int file = OpenBeside(target, &fFolderRefuses);
    // In place only where the folder refuses: writing into the file because a disk is full could lose it.
    return fFolderRefuses && target.mFile.IsOpened() ? OpenInPlace(target) : file;
}

int ezFileSaver::Fill(int aFolder, const ezCString& aPath) {
    mfFilling = true;
    mBeside = aPath;
    const int file = ezHeld_OpenAt(aFolder, BesideName(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                   kModeOfNewFile);
    return file >= 0 ? Claimed(file) : -1;
}

int ezFileSaver::OpenBeside(const Target& aTarget, bool* afFolderRefuses) {
    const ezCString prefix = BesidePrefix(aTarget.mName);
    const bool fReplaces = aTarget.mFile.IsOpened();
    RemoveLeftovers(mFolder.Get(), prefix);
    for (int tries = 0; tries < kFileSaver_MaxTries; ++tries) {
        mBeside = prefix + ezHeld_RandomDigits() + ezCString(kBesideSuffix);
        int file = ezHeld_OpenAt(mFolder.Get(), mBeside.c_str(),
                                 O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                 fReplaces ? kModeUntilItsOwn : kModeOfNewFile);
        if (file < 0 && errno != EEXIST) {
            *afFolderRefuses = errno == EACCES || errno == EPERM || errno == EROFS;
            return -1;
        }
        file = file >= 0 ? Claimed(file) : -1;
        if (file < 0) {
            continue;
        }
        if (fReplaces && ezSystem().mFChmod(file, aTarget.mMode) != 0) {
            GiveUp(file);
            ezHeld_Close(file);
            return -1;
        }
        return file;
    }
    return -1;
}

/// The file that was just made, or -1, with errno, where another has it by now.
int ezFileSaver::Claimed(int aFile) const {
    // The lock tells others that somebody writes the file; it goes with the process. Between making and
    // locking it another may have taken the file for one that was left.
    const bool fTaken = !ezHeld_Lock(aFile) && errno == EWOULDBLOCK;
    if (!fTaken && IsBesideOurs(aFile)) {
        return aFile;
    }
    GiveUp(aFile);
    ezHeld_Close(aFile);
    errno = EAGAIN;
    return -1;
}

int ezFileSaver::OpenInPlace(Target& aTarget) {
    mBeside = ezCString();
    const int file = aTarget.mFile.Release();
    // Two at once would mix their contents.
    if ((ezHeld_Lock(file) || errno != EWOULDBLOCK) && KeepOld(file, aTarget.mfReadable)) {
        return file;
    }
    ezHeld_Close(file);
    return -1;
}

bool ezFileSaver::KeepOld(int aFile, bool afReadable) {
    if (!afReadable) {
        return ezHeld_Truncate(aFile, 0); // what may be written and not read cannot be kept
    }
    struct stat status = {};
    if (ezSystem().mFStat(aFile, &status) != 0 || status.st_size > INT_MAX) {
        return false;
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    ezOwnedText content(static_cast<char*>(ezMalloc(size + 1)));
    if (content == nullptr || ezHeld_Read(aFile, content.get(), size, 0, status.st_size) != status.st_size) {
        return false;
    }
    mOld = std::move(content);
    mOldSize = size;
    return true;
}

int ezFileSaver::Write(int aFile, const void* aBuffer, std::size_t aSize, ezFileOffset aPosition,
                       ezFileOffset aLength) {
    // In place the old content goes on after what is written, and must not show in a gap.
    if (mOld != nullptr && aPosition > aLength && !ezHeld_Truncate(aFile, aLength)) {
        mfFailed = true;
        return -1;
    }
    const std::size_t size = std::min<std::size_t>(aSize, INT_MAX);
    const int count = ezHeld_Write(aFile, aBuffer, size, aPosition);
    mfFailed = mfFailed || count != static_cast<int>(size);
    return count;
}

bool ezFileSaver::Empty(int aFile) {
    if (!ezHeld_Truncate(aFile, 0)) {
        return false;
    }
    mfFailed = false;
    return true;
}

bool ezFileSaver::IsOnDisk(int aFile, ezFileOffset aLength) const {
    return !mfFailed && (aLength == 0 || ezHeld_Sync(aFile));
}

bool ezFileSaver::PutInPlace(int aFile, int aFolder, const ezCString& aName) const {
    return IsBesideOurs(aFile) && ezSystem().mRenameAt(aFolder, BesideName(), aName.c_str()) == 0;
}

void ezFileSaver::GiveUp(int aFile) const {
    if (IsBesideOurs(aFile)) {
        ezSystem().mUnlinkAt(BesideFolder(), mBeside.c_str());
    }
}

bool ezFileSaver::IsBesideOurs(int aFile) const {
    return !mBeside.IsEmpty() && ezHeld_IsNameOf(BesideFolder(), mBeside.c_str(), aFile);
}

int ezFileSaver::BesideFolder() const {
    return mfFilling ? AT_FDCWD : mFolder.Get();
}

const char* ezFileSaver::BesideName() const {
    return mBeside.c_str() + (mBeside.View().rfind('/') + 1);
}

bool ezFileSaver::Close(int aFile, ezFileOffset aLength) {
    return mBeside.IsEmpty() ? CloseInPlace(aFile, aLength) : CloseBeside(aFile);
}

bool ezFileSaver::CloseBeside(int aFile) {
    const bool fOurs = IsBesideOurs(aFile);
    // On the disk before it takes the old file's name, or a power cut could leave neither.
    bool fPlaced = fOurs && !mfFailed && ezHeld_Sync(aFile);
    // What closing refuses is no whole file, and without the lock it would pass for one that was left.
    const ezHeldFile lock(fPlaced ? ezHeld_Duplicate(aFile) : -1);
    const bool fClosed = ezHeld_Close(aFile);
    fPlaced = fPlaced && lock.IsOpened() && fClosed &&
              ezSystem().mRenameAt(mFolder.Get(), mBeside.c_str(), mTarget.c_str()) == 0;
    if (fOurs && !fPlaced) {
        ezSystem().mUnlinkAt(mFolder.Get(), mBeside.c_str());
    }
    return fPlaced;
}

bool ezFileSaver::CloseInPlace(int aFile, ezFileOffset aLength) {
    // What the old content has more than the new goes last.
    const bool fShorter = aLength < static_cast<ezFileOffset>(mOldSize);
    const bool fWritten = !mfFailed && (!fShorter || ezHeld_Truncate(aFile, aLength)) && ezHeld_Sync(aFile);
    if (!fWritten && mOld != nullptr) {
        PutOldBack(aFile, aLength);
    }
    const bool fClosed = ezHeld_Close(aFile);
    return fWritten && fClosed;
}

void ezFileSaver::PutOldBack(int aFile, ezFileOffset aLength) const {
    const auto size = static_cast<ezFileOffset>(mOldSize);
    ezHeld_Write(aFile, mOld.get(), mOldSize, 0);
    if (aLength > size) {
        ezHeld_Truncate(aFile, size);
    }
    ezHeld_Sync(aFile);
}
