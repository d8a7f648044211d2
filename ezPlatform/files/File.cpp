#include "ezPlatform/files/File.h"

#include "ezPlatform/base/System.h"
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

int OpenRepeatedly(const ezCString& aPath, int aFlags, mode_t aMode) {
    int file = -1;
    do {
        file = ezSystem().mOpen(aPath.c_str(), aFlags, aMode);
    } while (file < 0 && errno == EINTR);
    return file;
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
constexpr const char* kBesideSuffix = ".ezsave";
constexpr int kMaximumLinks = 40;               // as many as Linux follows
constexpr std::size_t kMaximumBesideName = 240; // with the rest of the name below the usual limit of 255

/// What a link says, from where it stands; empty, with errno, for what is no link or cannot be read whole.
ezCString LinkedFrom(const ezCString& aPath) {
    char text[PATH_MAX];
    const ssize_t length = ezSystem().mReadLink(aPath.c_str(), text, sizeof text);
    if (length <= 0) {
        return ezCString();
    }
    if (static_cast<std::size_t>(length) == sizeof text) {
        errno = ENAMETOOLONG; // it may be cut, and what a cut one names is another file
        return ezCString();
    }
    const ezCString target(std::string_view(text, static_cast<std::size_t>(length)));
    const std::string_view path = aPath.View();
    return text[0] == '/' ? target : ezCString(path.substr(0, path.rfind('/') + 1)) + target;
}

/// Where a path leads once its links are followed, also to where nothing stands yet. Empty when it leads
/// nowhere that a file could be.
ezCString Followed(const ezCString& aPath) {
    ezCString path = aPath;
    for (int links = 0; links < kMaximumLinks; ++links) {
        ezCString real = ezCString::FromAllocatedString(ezSystem().mRealPath(path.c_str()));
        if (!real.IsEmpty() || errno != ENOENT) {
            return real;
        }
        // Only what exists has a real path: a link to nothing yet is followed by hand.
        ezCString next = LinkedFrom(path);
        if (next.IsEmpty()) {
            return errno == EINVAL || errno == ENOENT ? path : ezCString();
        }
        path = std::move(next);
    }
    return ezCString();
}

} // namespace

ezFile::ezFile(const ezCString& aPath, int anOpenMode) : mPath(aPath), mOpenMode(anOpenMode) {}

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
    const int file = OpenRepeatedly(aPath, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | aMoreFlags, 0);
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

bool ezFile::OpenForWriting(int aModeOfOld) {
    const std::string_view target = mTarget.View();
    const std::size_t separator = target.rfind('/');
    const std::size_t nameStart = separator == std::string_view::npos ? 0 : separator + 1;
    // One name a target, so that the next save finds what a killed one left; cut, so that it fits any file
    // system.
    mBeside = ezCString(target.substr(0, nameStart)) + "." +
              ezCString(target.substr(nameStart, kMaximumBesideName)) + kBesideSuffix;
    ezSystem().mUnlink(mBeside.c_str());
    mFile = OpenRepeatedly(mBeside, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, kModeOfNewFile);
    if (mFile >= 0) {
        return aModeOfOld < 0 || ezSystem().mFChmod(mFile, static_cast<mode_t>(aModeOfOld)) == 0;
    }
    // In place only where the folder refuses: writing into the file because a disk is full could lose it.
    if (aModeOfOld < 0 || (errno != EACCES && errno != EPERM && errno != EROFS)) {
        return false;
    }
    mBeside = ezCString();
    mFile = OpenRepeatedly(mTarget, O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0);
    return mFile >= 0 && KeepOld();
}

bool ezFile::KeepOld() {
    ezFile old(mTarget, ezFileOpenMode_Read);
    if (!old.Open()) {
        // What may be written and not read cannot be kept.
        return errno == EACCES && TruncateRepeatedly(mFile, 0);
    }
    const ezFileOffset size = old.LengthAtOpen();
    if (size > INT_MAX) {
        return false;
    }
    std::unique_ptr<char, Free> content(static_cast<char*>(ezMalloc(static_cast<std::size_t>(size) + 1)));
    if (content == nullptr || old.Read(content.get(), static_cast<std::size_t>(size)) != size) {
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
    mTarget = Followed(aPath);
    if (mTarget.IsEmpty()) {
        return false;
    }
    // Proves that an old file may be written before anything is done. Non-blocking for a pipe without a
    // reader.
    int modeOfOld = -1;
    const int old = OpenRepeatedly(mTarget, O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0);
    if (old >= 0) {
        struct stat status = {};
        const bool fRegular = ezSystem().mFStat(old, &status) == 0 && S_ISREG(status.st_mode);
        ezSystem().mClose(old);
        if (!fRegular || !afOverwrite) {
            return false;
        }
        modeOfOld = static_cast<int>(status.st_mode & 07777U);
    } else if (errno != ENOENT) {
        return false;
    }
    mfWriting = true;
    mPosition = 0;
    mLengthAtOpen = 0;
    mfWriteFailed = !OpenForWriting(modeOfOld);
    if (mfWriteFailed) {
        Close();
        mfWriting = false;
    }
    return mfWriting;
}

int ezFile::Write(const void* aBuffer, std::size_t aSize) {
    if (!mfWriting) {
        return -1;
    }
    // In place the old content goes on behind what is written, and must not show in a gap.
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
    do {
        mFile = ezSystem().mOpenAt(aFolder, BesideName(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                                   kModeOfNewFile);
    } while (mFile < 0 && errno == EINTR);
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
    if (IsBesideOurs()) {
        ezSystem().mUnlink(mBeside.c_str());
    }
    mfWriting = false;
    mfFilling = false;
}

bool ezFile::IsBesideOurs() const {
    struct stat written = {};
    struct stat named = {};
    return !mBeside.IsEmpty() && ezSystem().mFStat(mFile, &written) == 0 &&
           ezSystem().mStat(mBeside.c_str(), &named) == 0 && written.st_dev == named.st_dev &&
           written.st_ino == named.st_ino;
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
    // Another writer of the same target may have put a file of its own there, half written.
    const bool fBeside = mfWriting && IsBesideOurs();
    const bool fInPlace = mfWriting && mBeside.IsEmpty();
    // On the disk before it takes the old file's name, or a power cut could leave neither.
    const bool fWritten =
        !mfWriting || (fInPlace ? FinishInPlace() : !mfWriteFailed && fBeside && SyncRepeatedly(mFile));
    // Interrupted, it is closed all the same, and what was written is on the disk by now.
    const bool fClosed = ezSystem().mClose(mFile) == 0 || errno == EINTR;
    mFile = -1;
    mfWriting = false;
    if (!fBeside) {
        return fWritten && fClosed;
    }
    const bool fPlaced = fWritten && fClosed && ezSystem().mRename(mBeside.c_str(), mTarget.c_str()) == 0;
    if (!fPlaced) {
        ezSystem().mUnlink(mBeside.c_str());
    }
    return fPlaced;
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
