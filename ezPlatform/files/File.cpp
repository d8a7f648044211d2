#include "ezPlatform/files/File.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/FileSaver.h"
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

} // namespace

ezFile::ezFile() = default;

ezFile::ezFile(const ezCString& aPath, int anOpenMode) : mPath(aPath), mOpenMode(anOpenMode) {}

ezFile::~ezFile() {
    if (mSaver != nullptr) {
        mSaver->Fail(); // nobody asked for what was written to be put in place
    }
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
    const int error = ezSystem().mFStat(file, &status) != 0 ? errno : EINVAL;
    if (error != EINVAL || !S_ISREG(status.st_mode)) {
        ezSystem().mClose(file);
        errno = error; // EINVAL: it is not a regular file
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

bool ezFile::Create(const ezCString& aPath, bool afOverwrite, int /*anAccessMode*/) {
    if (IsOpened()) {
        return false;
    }
    auto saver = std::make_unique<ezFileSaver>();
    const int file = saver->Create(aPath, afOverwrite);
    if (file < 0) {
        return false;
    }
    StartWriting(file, std::move(saver));
    return true;
}

bool ezFile::BeginFilling(int aFolder, const ezCString& aBeside) {
    auto saver = std::make_unique<ezFileSaver>();
    const int file = saver->Fill(aFolder, aBeside);
    if (file < 0) {
        const int error = errno; // giving memory back may change it
        saver.reset();
        errno = error;
        return false;
    }
    StartWriting(file, std::move(saver));
    return true;
}

void ezFile::StartWriting(int aFile, std::unique_ptr<ezFileSaver> aSaver) {
    mFile = aFile;
    mSaver = std::move(aSaver);
    mPosition = 0;
    mLengthAtOpen = 0;
}

int ezFile::Write(const void* aBuffer, std::size_t aSize) {
    if (mSaver == nullptr) {
        return -1;
    }
    const int count = mSaver->Write(mFile, aBuffer, aSize, mPosition, mLengthAtOpen);
    if (count > 0) {
        mPosition += count;
        mLengthAtOpen = std::max(mLengthAtOpen, mPosition);
    }
    return count;
}

bool ezFile::Empty() {
    if (mSaver == nullptr || !mSaver->Empty(mFile)) {
        return false;
    }
    mPosition = 0;
    mLengthAtOpen = 0;
    return true;
}

bool ezFile::IsFilling() const {
    return mSaver != nullptr && mSaver->IsFilling();
}

bool ezFile::PutInPlace(int aFolder, const ezCString& aName) {
    // On the disk before it has a name, or a power cut could leave the name without its content.
    const bool fWritten = mSaver->IsOnDisk(mFile, mLengthAtOpen);
    if (!fWritten) {
        Empty();
        mLengthAtOpen = 0; // nobody takes what did not reach the disk for the content
    }
    if (!fWritten || !mSaver->PutInPlace(mFile, aFolder, aName)) {
        GiveUp();
        return false;
    }
    mSaver = nullptr;
    return true;
}

void ezFile::GiveUp() {
    mSaver->GiveUp(mFile);
    mSaver = nullptr;
}

bool ezFile::Close() {
    if (!IsOpened()) {
        return false;
    }
    if (IsFilling()) {
        GiveUp();
    }
    const int file = std::exchange(mFile, -1);
    const std::unique_ptr<ezFileSaver> saver = std::move(mSaver);
    return saver != nullptr ? saver->Close(file, mLengthAtOpen) : ezHeld_Close(file);
}

ezFileOffset ezFile::Length() const {
    if (mSaver != nullptr && mSaver->KeepsOld()) {
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
    if (!IsOpened() || (mSaver != nullptr && !mSaver->IsFilling())) {
        return -1;
    }
    const int count =
        ezHeld_Read(mFile, aBuffer, std::min<std::size_t>(aSize, INT_MAX), mPosition, mLengthAtOpen);
    mPosition += std::max(count, 0);
    return count;
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
