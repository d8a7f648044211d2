#include "ezPlatform/files/FileCacheManager.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/CacheName.h"
#include "ezPlatform/files/Dir.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/PathName.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/file.h>
#include <unistd.h>

namespace {

constexpr std::string_view kFillingPrefix = ".fill-"; // no cached file's name begins with a dot
// A scan is due when an eighth of a bound was added; it remembers so many of the oldest files that they last
// until the next one, as far as the memory for them is bounded.
constexpr std::size_t kScanShare = 8;
constexpr std::size_t kMinimumCandidates = 1024;
constexpr std::size_t kMaximumCandidates = 16384;
constexpr int kMaximumTries = 8;
constexpr std::int64_t kNanoseconds = 1000000000;

std::int64_t Pid() {
    return static_cast<std::int64_t>(getpid());
}

std::pair<std::int64_t, std::int64_t> UsedAt(const struct stat& aStatus) {
    return {aStatus.st_mtim.tv_sec, aStatus.st_mtim.tv_nsec};
}

std::pair<std::int64_t, std::int64_t> Now() {
    struct timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return {now.tv_sec, now.tv_nsec};
}

/// Takes the lock that tells others that a file is being filled, if nobody has it.
bool Lock(int aFile) {
    int result = -1;
    do {
        result = ezSystem().mFLock(aFile, LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

/// True when a path is, without a link being followed, the name of an open file.
bool IsNameOf(const ezCString& aPath, int aFile) {
    struct stat file = {};
    struct stat named = {};
    return ezSystem().mFStat(aFile, &file) == 0 && ezSystem().mLStat(aPath.c_str(), &named) == 0 &&
           file.st_dev == named.st_dev && file.st_ino == named.st_ino;
}

} // namespace

ezFileCacheManager::ezFileCacheManager(const ezCString& aFolder, std::uint64_t aMaximumBytes,
                                       std::size_t aMaximumFiles)
    : mFolder(ezPathName::MakeDirPath(aFolder).GetFullPath() + "ezcache/"),
      mMaximumBytes(aMaximumBytes),
      mMaximumFiles(aMaximumFiles) {}

bool ezFileCacheManager::sUsedBefore(const Candidate& aLeft, const Candidate& aRight) {
    return aLeft.mUsed < aRight.mUsed;
}

ezCString ezFileCacheManager::GetFullPath(const ezCString& aName) const {
    return mFolder + ezCacheName(aName.View());
}

bool ezFileCacheManager::IsFolderOurs() {
    if (mFolderState == kFolderUnknown) {
        struct stat status = {};
        const ezCString name = mFolder.Left(mFolder.GetLength() - 1);
        // A NUL would cut the path short, and a link lead out of the folder that was given.
        bool fForeign = mFolder.View().find('\0') != std::string_view::npos;
        if (!fForeign) {
            const bool fThere = ezSystem().mLStat(name.c_str(), &status) == 0;
            if (!fThere && errno != ENOENT) {
                return false; // it may be a link: the next request looks again
            }
            fForeign = fThere && S_ISLNK(status.st_mode);
        }
        mFolderState = fForeign ? kFolderForeign : kFolderOurs;
    }
    return mFolderState == kFolderOurs;
}

ezFileCacheManager::Stamp ezFileCacheManager::NextStamp() {
    // A device without a clock of its own begins in 1970 again: what is used now still counts as the latest.
    Stamp next = {mLastStamp.first, mLastStamp.second + 1};
    if (next.second >= kNanoseconds && next.first < INT64_MAX) { // some file systems take any time
        next = {next.first + 1, 0};
    }
    mLastStamp = std::max(Now(), next);
    return mLastStamp;
}

void ezFileCacheManager::MarkUsed(ezFile& aFile) {
    const Stamp stamp = NextStamp();
    struct timespec time = {};
    time.tv_sec = static_cast<decltype(time.tv_sec)>(stamp.first);
    time.tv_nsec = static_cast<decltype(time.tv_nsec)>(stamp.second);
    const struct timespec times[2] = {time, time};
    ezSystem().mFUTimens(aFile.mFile, times); // refused, the file just goes earlier
}

ezFile* ezFileCacheManager::OpenCachedFile(const ezCString& aName, bool* afNew, int /*anOption*/) {
    if (afNew == nullptr) {
        return nullptr;
    }
    *afNew = false;
    if (!IsFolderOurs()) {
        return nullptr;
    }
    std::unique_ptr<ezFile> file = std::make_unique<ezFile>();
    mPath = mFolder; // into the memory of the last one
    mPath += ezCacheName(aName.View());
    // A link would lead out of the folder.
    if (file->OpenRegular(mPath, O_NOFOLLOW)) {
        const ezDateTime& time = file->mModifiedAtOpen;
        const Stamp used = {time.GetUnixTime(), time.GetNanoseconds()};
        if (!mfScanned && used > Now()) {
            Scan(); // for the latest, which the clock has fallen behind
        }
        mLastStamp = std::max(mLastStamp, used);
        MarkUsed(*file);
        return file.release();
    }
    if (errno != ENOENT && errno != ELOOP) {
        return nullptr;
    }
    ezFile* made = OpenNew();
    *afNew = made != nullptr;
    return made;
}

ezFile* ezFileCacheManager::OpenNew() {
    if (!mfScanned) {
        Scan(); // before anything else: also who is killed again and again removes what that left
    }
    std::unique_ptr<ezFile> file = std::make_unique<ezFile>();
    for (int tries = 0; tries < kMaximumTries; ++tries) {
        const Stamp stamp = NextStamp();
        const ezCString path =
            mFolder + ezCString::Format("%.*s%lld-%lld-%lld-%lu", static_cast<int>(kFillingPrefix.size()),
                                        kFillingPrefix.data(), static_cast<long long>(Pid()),
                                        static_cast<long long>(stamp.first),
                                        static_cast<long long>(stamp.second),
                                        static_cast<unsigned long>(mFillings++));
        if (OpenNewAt(*file, path)) {
            return file.release();
        }
        const int error = errno; // making the folder changes it, also where that succeeds
        const bool fAgain =
            error == ENOENT ? ezDir_CreateRecursively(mFolder) : error == EEXIST || error == EAGAIN;
        if (!fAgain) {
            return nullptr;
        }
    }
    return nullptr;
}

bool ezFileCacheManager::OpenNewAt(ezFile& aFile, const ezCString& aPath) {
    if (!aFile.BeginFilling(aPath)) {
        return false;
    }
    // The lock tells others that somebody is filling the file; it goes with the process. Between making and
    // locking it another may have taken the file for one that was left behind.
    const bool fTaken = !Lock(aFile.mFile) && errno == EWOULDBLOCK;
    if (fTaken || !aFile.IsBesideOurs()) {
        aFile.Close();
        errno = EAGAIN;
        return false;
    }
    return true;
}

void ezFileCacheManager::SetCachedFileState(const ezCString& aName, ezFile* aFile, bool afGood) {
    if (aFile == nullptr) {
        return;
    }
    const ezCString path = GetFullPath(aName);
    if (aFile->mfFilling) {
        if (afGood && IsFolderOurs()) {
            Keep(path, *aFile);
        } else {
            aFile->GiveUp();
        }
    } else if (!afGood && IsFolderOurs() && IsNameOf(path, aFile->mFile)) { // not what replaced it since
        if (ezSystem().mUnlink(path.c_str()) == 0) {
            ForgetRemoved(ezCacheName(aName.View()), static_cast<std::uint64_t>(aFile->LengthAtOpen()));
        }
    }
}

void ezFileCacheManager::Keep(const ezCString& aPath, ezFile& aFile) {
    const auto size = static_cast<std::uint64_t>(aFile.LengthAtOpen());
    if (!aFile.mfWriteFailed && (size > mMaximumBytes || mMaximumFiles == 0)) {
        aFile.GiveUp();
        return;
    }
    struct stat old = {};
    const bool fReplaces = ezSystem().mLStat(aPath.c_str(), &old) == 0 && S_ISREG(old.st_mode);
    MarkUsed(aFile);
    if (!aFile.PutInPlace(aPath)) {
        return;
    }
    if (fReplaces) {
        Forget(static_cast<std::uint64_t>(old.st_size));
    }
    ++mFiles;
    ++mAddedFiles;
    mBytes += size;
    mAddedBytes += size;
    if (IsScanDue()) {
        Scan();
    }
    Evict(aPath);
}

bool ezFileCacheManager::IsScanDue() const {
    return mAddedFiles >= mMaximumFiles / kScanShare || mAddedBytes >= mMaximumBytes / kScanShare;
}

void ezFileCacheManager::Forget(std::uint64_t aSize) {
    mFiles -= std::min<std::size_t>(mFiles, 1);
    mBytes -= std::min(mBytes, aSize);
}

void ezFileCacheManager::ForgetRemoved(const ezCString& aFileName, std::uint64_t aSize) {
    // As a candidate it would be forgotten a second time, when it is found gone.
    mCandidates.erase(
        std::remove_if(mCandidates.begin(), mCandidates.end(),
                       [&](const Candidate& aCandidate) { return aCandidate.mName == aFileName; }),
        mCandidates.end());
    Forget(aSize);
}

void ezFileCacheManager::Scan() {
    mfScanned = true;
    mMaximumOfCandidates =
        std::clamp(std::min(mFiles, mMaximumFiles) / kScanShare, kMinimumCandidates, kMaximumCandidates);
    mFiles = 0;
    mBytes = 0;
    mAddedFiles = 0;
    mAddedBytes = 0;
    mCandidates.clear();
    DIR* folder = ezSystem().mOpenDir(mFolder.c_str());
    if (folder == nullptr) {
        return;
    }
    while (const struct dirent* entry = ezSystem().mReadDir(folder)) {
        LookAt(static_cast<const char*>(entry->d_name));
    }
    ezSystem().mCloseDir(folder);
    std::sort_heap(mCandidates.begin(), mCandidates.end(), sUsedBefore);
    std::reverse(mCandidates.begin(), mCandidates.end());
}

void ezFileCacheManager::LookAt(const char* aName) {
    const std::string_view name = aName;
    const ezCString path = mFolder + aName;
    if (name.substr(0, kFillingPrefix.size()) == kFillingPrefix) {
        RemoveIfStale(path);
        return;
    }
    struct stat status = {};
    if (name[0] == '.' || ezSystem().mLStat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return;
    }
    const Stamp used = UsedAt(status);
    const auto size = static_cast<std::uint64_t>(status.st_size);
    ++mFiles;
    mBytes += size;
    mLastStamp = std::max(mLastStamp, used);
    // The latest of the candidates stands first, and leaves when there are too many of them.
    if (mCandidates.size() == mMaximumOfCandidates) {
        if (used >= mCandidates.front().mUsed) {
            return;
        }
        std::pop_heap(mCandidates.begin(), mCandidates.end(), sUsedBefore);
        mCandidates.pop_back();
    }
    mCandidates.push_back({used, size, aName});
    std::push_heap(mCandidates.begin(), mCandidates.end(), sUsedBefore);
}

void ezFileCacheManager::RemoveIfStale(const ezCString& aPath) {
    int file = -1;
    do {
        file = ezSystem().mOpen(aPath.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0);
    } while (file < 0 && errno == EINTR);
    if (file < 0) {
        return;
    }
    if (Lock(file)) {
        ezSystem().mUnlink(aPath.c_str());
    }
    ezSystem().mClose(file);
}

void ezFileCacheManager::Evict(const ezCString& aKeptPath) {
    bool fRemoved = true; // since the last scan, or before it
    while (IsOverBounds()) {
        if (mCandidates.empty()) {
            if (!fRemoved) {
                return; // what is left cannot be removed
            }
            Scan();
            fRemoved = false;
            continue;
        }
        const Candidate candidate = std::move(mCandidates.back());
        mCandidates.pop_back();
        if (mFolder + candidate.mName != aKeptPath) {
            fRemoved = EvictOne(candidate) || fRemoved;
        }
    }
}

bool ezFileCacheManager::EvictOne(const Candidate& aCandidate) {
    const ezCString path = mFolder + aCandidate.mName;
    struct stat status = {};
    bool fGone = false;
    if (ezSystem().mLStat(path.c_str(), &status) != 0) {
        fGone = errno == ENOENT;                     // another process was faster
    } else if (UsedAt(status) == aCandidate.mUsed) { // else used since, it is no longer among the oldest
        fGone = ezSystem().mUnlink(path.c_str()) == 0;
    }
    if (fGone) {
        Forget(aCandidate.mSize);
    }
    return fGone;
}
