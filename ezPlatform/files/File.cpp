#include "ezPlatform/files/File.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/HeldFiles.h"
#include "ezPlatform/text/NUL.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <utility>

namespace {

ezDateTime FromTimespec(const struct timespec& aTime) {
    return ezDateTime(static_cast<std::int64_t>(aTime.tv_sec), static_cast<std::int32_t>(aTime.tv_nsec));
}

bool SyncRepeatedly(int aFile) {
    int result = -1;
    do {
        result = ezSystem().mFSync(aFile);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

bool TruncateRepeatedly(int aFile, ezFileOffset aLength) {
    int result = -1;
    do {
        result = ezSystem().mFTruncate(aFile, aLength);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

constexpr mode_t kModeOfNewFile = 0666;
constexpr mode_t kModeUntilItsOwn = 0600; // nobody else reads on the way what the old file did not let him
constexpr std::string_view kBesideSuffix = ".ezsave";
constexpr std::size_t kDigits = 16;
constexpr std::size_t kMaximumBesideName = 230; // with the rest of the name the usual limit of 255
constexpr int kMaximumTries = 8;
constexpr int kMaximumFinds = 100;                          // others may replace the target over and over
constexpr int kToWrite = O_CLOEXEC | O_NOCTTY | O_NONBLOCK; // non-blocking for a pipe without a reader

/// What the names of all files beside a target begin with; cut, so that they fit any file system.
ezCString BesidePrefix(const ezCString& aTarget) {
    return "." + aTarget.Left(kMaximumBesideName) + ".";
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

struct ezFile::Target {
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

ezFile::ezFile() : mFolder(AT_FDCWD) {}

ezFile::ezFile(const ezCString& aPath, int anOpenMode)
    : mPath(aPath), mFolder(AT_FDCWD), mOpenMode(anOpenMode) {}

ezFile::~ezFile() {
    mfWriteFailed = true; // nobody asked for what was written to be put in place
    Close();
}

bool ezFile::Open() {
    return !IsOpened() && mOpenMode == ezFileOpenMode_Read && OpenRegular(mPath, 0);
}

bool ezFile::OpenRegular(const ezCString& aPath, int aMoreFlags) {
    // A NUL would cut the path short and open another file than the one that was named.
    if (ezHasNUL(aPath)) {
        errno = EINVAL;
        return false;
    }
    // Non-blocking, or opening a pipe would wait for its writer; regular files do not care.
    const int file = ezHeld_Open(aPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | aMoreFlags, 0);
    if (file < 0) {
        return false;
    }
    struct stat status = {};
    if (ezSystem().mFStat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ezSystem().mClose(file);
        errno = EINVAL;
        return false;
    }
    mFile = file;
    mPosition = 0;
    mLengthAtOpen = status.st_size;
    mModifiedAtOpen = FromTimespec(status.st_mtim);
    return true;
}

bool ezFile::Open(const ezCString& aPath, int anOpenMode, int /*anAccessMode*/) {
    if (IsOpened()) {
        return false;
    }
    mPath = aPath;
    mOpenMode = anOpenMode;
    return Open();
}

bool ezFile::Find(const ezCString& aPath, Target& aTarget) {
    for (int tries = 0; tries < kMaximumFinds; ++tries) {
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

bool ezFile::OpenBeside(const Target& aTarget) {
    const ezCString prefix = BesidePrefix(aTarget.mName);
    const bool fReplaces = aTarget.mFile.IsOpened();
    RemoveLeftovers(mFolder, prefix);
    for (int tries = 0; tries < kMaximumTries; ++tries) {
        mBeside = prefix + ezHeld_RandomDigits() + ezCString(kBesideSuffix);
        mFile = ezHeld_OpenAt(mFolder, mBeside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                              fReplaces ? kModeUntilItsOwn : kModeOfNewFile);
        if (mFile < 0 && errno != EEXIST) {
            return false;
        }
        if (mFile < 0) {
            continue;
        }
        // The lock tells others that somebody writes the file; it goes with the process. Between making and
        // locking it another may have taken the file for one that was left.
        const bool fTaken = !ezHeld_Lock(mFile) && errno == EWOULDBLOCK;
        if (!fTaken && IsBesideOurs()) {
            return !fReplaces || ezSystem().mFChmod(mFile, aTarget.mMode) == 0;
        }
        RemoveBeside();
        ezSystem().mClose(std::exchange(mFile, -1));
        errno = EAGAIN;
    }
    return false;
}

bool ezFile::OpenInPlace(Target& aTarget) {
    mBeside = ezCString();
    mFile = aTarget.mFile.Release();
    // Two at once would mix their contents.
    return (ezHeld_Lock(mFile) || errno != EWOULDBLOCK) && KeepOld(aTarget.mfReadable);
}

bool ezFile::KeepOld(bool afReadable) {
    if (!afReadable) {
        return TruncateRepeatedly(mFile, 0); // what may be written and not read cannot be kept
    }
    const ezFileOffset size = Length();
    if (size < 0 || size > INT_MAX) {
        return false;
    }
    std::unique_ptr<char, Free> content(static_cast<char*>(ezMalloc(static_cast<std::size_t>(size) + 1)));
    mLengthAtOpen = size;
    if (content == nullptr || Read(content.get(), static_cast<std::size_t>(size)) != size) {
        return false;
    }
    mOld = std::move(content);
    mOldSize = static_cast<std::size_t>(size);
    return true;
}

void ezFile::PutOldBack() {
    const auto size = static_cast<ezFileOffset>(mOldSize);
    const bool fLonger = mLengthAtOpen > size;
    mPosition = 0;
    Write(mOld.get(), mOldSize);
    if (fLonger) {
        TruncateRepeatedly(mFile, size);
    }
    SyncRepeatedly(mFile);
}

bool ezFile::Create(const ezCString& aPath, bool afOverwrite, int /*anAccessMode*/) {
    if (IsOpened() || aPath.IsEmpty() || ezHasNUL(aPath)) {
        return false;
    }
    Target target;
    if (!Find(aPath, target) || (target.mFile.IsOpened() && !afOverwrite)) {
        return false;
    }
    mTarget = target.mName;
    mFolder = target.mFolder.Release();
    mPosition = 0;
    bool fOpened = OpenBeside(target);
    // In place only where the folder refuses: writing into the file because a disk is full could lose it.
    if (mFile < 0 && target.mFile.IsOpened() && (errno == EACCES || errno == EPERM || errno == EROFS)) {
        fOpened = OpenInPlace(target);
    }
    mfWriting = fOpened;
    mfWriteFailed = false;
    mPosition = 0;
    mLengthAtOpen = 0;
    if (!fOpened) {
        RemoveBeside();
        Close();
        CloseFolder();
    }
    return fOpened;
}

int ezFile::Write(const void* aBuffer, std::size_t aSize) {
    if (!mfWriting) {
        return -1;
    }
    // In place the old content goes on after what is written, and must not show in a gap.
    if (mOld != nullptr && mPosition > mLengthAtOpen && !TruncateRepeatedly(mFile, mLengthAtOpen)) {
        mfWriteFailed = true;
        return -1;
    }
    const std::size_t size = std::min<std::size_t>(aSize, INT_MAX);
    std::size_t count = 0;
    while (count < size) {
        const ssize_t piece =
            ezSystem().mPWrite(mFile, static_cast<const char*>(aBuffer) + count, size - count, mPosition);
        if (piece < 0 && errno == EINTR) {
            continue;
        }
        if (piece <= 0) {
            mfWriteFailed = true;
            return count > 0 ? static_cast<int>(count) : -1;
        }
        count += static_cast<std::size_t>(piece);
        mPosition += piece;
        mLengthAtOpen = std::max(mLengthAtOpen, mPosition);
    }
    return static_cast<int>(count);
}

bool ezFile::Empty() {
    if (!mfWriting || !TruncateRepeatedly(mFile, 0)) {
        return false;
    }
    mPosition = 0;
    mLengthAtOpen = 0;
    mfWriteFailed = false;
    return true;
}

bool ezFile::BeginFilling(int aFolder, const ezCString& aBeside) {
    mBeside = aBeside;
    mFile = ezHeld_OpenAt(aFolder, BesideName(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                          kModeOfNewFile);
    if (mFile < 0) {
        return false;
    }
    mfWriting = true;
    mfFilling = true;
    return true;
}

bool ezFile::PutInPlace(int aFolder, const ezCString& aName) {
    // On the disk before it has a name, or a power cut could leave the name without its content.
    const bool fWritten = !mfWriteFailed && (mLengthAtOpen == 0 || SyncRepeatedly(mFile));
    if (!fWritten) {
        Empty();
        mLengthAtOpen = 0; // nobody takes what did not reach the disk for the content
    }
    if (!fWritten || !IsBesideOurs() || ezSystem().mRenameAt(aFolder, BesideName(), aName.c_str()) != 0) {
        GiveUp();
        return false;
    }
    mfWriting = false;
    mfFilling = false;
    return true;
}

void ezFile::GiveUp() {
    RemoveBeside();
    mfWriting = false;
    mfFilling = false;
}

void ezFile::RemoveBeside() const {
    if (IsBesideOurs()) {
        ezSystem().mUnlinkAt(mFolder, mBeside.c_str());
    }
}

bool ezFile::IsBesideOurs() const {
    return IsOpened() && !mBeside.IsEmpty() && ezHeld_IsNameOf(mFolder, mBeside.c_str(), mFile);
}

const char* ezFile::BesideName() const {
    return mBeside.c_str() + (mBeside.View().rfind('/') + 1);
}

bool ezFile::Close() {
    if (!IsOpened()) {
        return false;
    }
    if (mfFilling) {
        GiveUp();
    }
    if (mfWriting && !mBeside.IsEmpty()) {
        return CloseBeside();
    }
    const bool fWritten = !mfWriting || FinishInPlace();
    // Interrupted, it is closed all the same, and what was written is on the disk by now.
    const bool fClosed = ezSystem().mClose(std::exchange(mFile, -1)) == 0 || errno == EINTR;
    mfWriting = false;
    CloseFolder();
    return fWritten && fClosed;
}

bool ezFile::CloseBeside() {
    const bool fOurs = IsBesideOurs();
    // On the disk before it takes the old file's name, or a power cut could leave neither.
    bool fPlaced = fOurs && !mfWriteFailed && SyncRepeatedly(mFile);
    // What closing refuses is no whole file, and without the lock it would pass for one that was left.
    const ezHeldFile lock(fPlaced ? ezHeld_Duplicate(mFile) : -1);
    const bool fClosed = ezSystem().mClose(std::exchange(mFile, -1)) == 0 || errno == EINTR;
    fPlaced = fPlaced && lock.IsOpened() && fClosed &&
              ezSystem().mRenameAt(mFolder, mBeside.c_str(), mTarget.c_str()) == 0;
    if (fOurs && !fPlaced) {
        ezSystem().mUnlinkAt(mFolder, mBeside.c_str());
    }
    mfWriting = false;
    CloseFolder();
    return fPlaced;
}

void ezFile::CloseFolder() {
    const ezHeldFile closed(std::exchange(mFolder, AT_FDCWD));
}

bool ezFile::FinishInPlace() {
    // What the old content has more than the new goes last.
    const bool fShorter = mLengthAtOpen < static_cast<ezFileOffset>(mOldSize);
    const bool fWritten =
        !mfWriteFailed && (!fShorter || TruncateRepeatedly(mFile, mLengthAtOpen)) && SyncRepeatedly(mFile);
    if (!fWritten && mOld != nullptr) {
        PutOldBack();
    }
    mOld = nullptr;
    mOldSize = 0;
    return fWritten;
}

ezFileOffset ezFile::Length() const {
    if (mOld != nullptr) {
        return mLengthAtOpen; // the file may still be as long as the old content
    }
    struct stat status = {};
    if (!IsOpened() || ezSystem().mFStat(mFile, &status) != 0) {
        return -1;
    }
    return status.st_size;
}

ezFileOffset ezFile::Seek(ezFileOffset anOffset, int aSeekMode) {
    if (!IsOpened()) {
        return -1;
    }
    ezFileOffset base = 0;
    switch (aSeekMode) {
    case ezFileSeekMode_Begin:
        break;
    case ezFileSeekMode_Current:
        base = mPosition;
        break;
    case ezFileSeekMode_End:
        base = Length();
        break;
    default:
        return -1;
    }
    ezFileOffset target = 0;
    if (base < 0 || __builtin_add_overflow(base, anOffset, &target) || target < 0) {
        return -1;
    }
    mPosition = target;
    return target;
}

int ezFile::Read(void* aBuffer, std::size_t aSize) {
    if (!IsOpened() || (mfWriting && !mfFilling)) {
        return -1;
    }
    const std::size_t size = std::min<std::size_t>(aSize, INT_MAX);
    std::size_t count = 0;
    while (count < size) {
        const ssize_t piece =
            ezSystem().mPRead(mFile, static_cast<char*>(aBuffer) + count, size - count, mPosition);
        if (piece < 0) {
            if (errno == EINTR) {
                continue;
            }
            return count > 0 ? static_cast<int>(count) : -1;
        }
        count += static_cast<std::size_t>(piece);
        mPosition += piece;
        if (piece == 0 || mPosition == mLengthAtOpen) {
            break;
        }
    }
    return static_cast<int>(count);
}

bool ezFile::GetTimes(const ezCString& aPath, ezDateTime* aCreation, ezDateTime* aModification,
                      ezDateTime* anAccess) {
    struct stat status = {};
    if (ezHasNUL(aPath) || ezSystem().mStat(aPath.c_str(), &status) != 0) {
        return false;
    }
    if (aCreation != nullptr) {
        *aCreation = FromTimespec(status.st_ctim);
    }
    if (aModification != nullptr) {
        *aModification = FromTimespec(status.st_mtim);
    }
    if (anAccess != nullptr) {
        *anAccess = FromTimespec(status.st_atim);
    }
    return true;
}
