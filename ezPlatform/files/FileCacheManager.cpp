#include "ezPlatform/files/FileCacheManager.h"

#include "ezPlatform/base/System.h"
#include "ezPlatform/files/CacheName.h"
#include "ezPlatform/files/Dir.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileSaver.h"
#include "ezPlatform/files/HeldFiles.h"
#include "ezPlatform/files/Limits.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/NUL.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace {

constexpr std::string_view kFillingPrefix = ".fill-"; // no cached file's name begins with a dot
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

/// The cache's folder; a link in its place is refused.
ezHeldFile HeldFolder(const ezCString& aOwnFolder) {
    return ezHeld_Folder(aOwnFolder, true);
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

ezCString ezFileCacheManager::OwnFolder() const {
    return mFolder.Left(mFolder.GetLength() - 1);
}

bool ezFileCacheManager::IsFolderOurs() {
    if (!mfFolderSeen) {
        struct stat status = {};
        // A NUL would cut the path short, and a link lead out of the folder that was given.
        if (ezHasNUL(mFolder)) {
            return false;
        }
        const bool fThere = ezSystem().mLStatAt(AT_FDCWD, OwnFolder().c_str(), &status) == 0;
        mfFolderSeen = fThere ? !S_ISLNK(status.st_mode) : errno == ENOENT;
    }
    return mfFolderSeen;
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
            const ezHeldFile folder = HeldFolder(OwnFolder());
            Scan(folder.Get()); // for the latest stamp, where the clock was put back
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
    for (int tries = 0; tries < kFileCache_MaxTries; ++tries) {
        const ezHeldFile folder = HeldFolder(OwnFolder());
        if (folder.IsOpened()) {
            ezFile* file = OpenNewIn(folder.Get());
            if (file != nullptr || (errno != ENOENT && errno != EEXIST && errno != EAGAIN)) {
                return file;
            }
        } else if (errno != ENOENT || !ezDir_CreateRecursively(mFolder)) {
            mfFolderSeen = false; // it may be a link by now, which leads no hit astray either
            return nullptr;
        }
    }
    return nullptr;
}

ezFile* ezFileCacheManager::OpenNewIn(int aFolder) {
    if (!mfScanned) {
        Scan(aFolder); // before anything else: also who is killed again and again removes what that left
    }
    const Stamp stamp = NextStamp();
    const ezCString path =
        mFolder + ezCString::Format("%.*s%lld-%lld-%lld-%lu", static_cast<int>(kFillingPrefix.size()),
                                    kFillingPrefix.data(), static_cast<long long>(Pid()),
                                    static_cast<long long>(stamp.first), static_cast<long long>(stamp.second),
                                    static_cast<unsigned long>(mFillings++));
    std::unique_ptr<ezFile> file = std::make_unique<ezFile>();
    if (!file->BeginFilling(aFolder, path)) {
        const int error = errno; // giving memory back may change it
        file.reset();
        errno = error;
        return nullptr;
    }
    return file.release();
}

void ezFileCacheManager::SetCachedFileState(const ezCString& aName, ezFile* aFile, bool afGood) {
    if (aFile == nullptr) {
        return;
    }
    const ezCString name = ezCacheName(aName.View());
    if (!aFile->IsFilling()) {
        if (!afGood && IsFolderOurs()) {
            Remove(name, *aFile);
        }
    } else if (afGood && IsFolderOurs()) {
        Keep(name, *aFile);
    } else {
        aFile->GiveUp();
    }
}

void ezFileCacheManager::Remove(const ezCString& aName, const ezFile& aFile) {
    const ezHeldFile folder = HeldFolder(OwnFolder());
    // Not what replaced it since.
    if (folder.IsOpened() && ezHeld_IsNameOf(folder.Get(), aName.c_str(), aFile.mFile) &&
        ezSystem().mUnlinkAt(folder.Get(), aName.c_str()) == 0) {
        ForgetRemoved(aName, static_cast<std::uint64_t>(aFile.LengthAtOpen()));
    }
}

void ezFileCacheManager::Keep(const ezCString& aName, ezFile& aFile) {
    const auto size = static_cast<std::uint64_t>(aFile.LengthAtOpen());
    if (!aFile.mSaver->HasFailed() && (size > mMaximumBytes || mMaximumFiles == 0)) {
        aFile.GiveUp();
        return;
    }
    const ezHeldFile folder =
        HeldFolder(OwnFolder()); // without one nothing has a name in it, and nothing is put there
    struct stat old = {};
    const bool fReplaces =
        ezSystem().mLStatAt(folder.Get(), aName.c_str(), &old) == 0 && S_ISREG(old.st_mode);
    MarkUsed(aFile);
    if (!aFile.PutInPlace(folder.Get(), aName)) {
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
        Scan(folder.Get());
    }
    Evict(folder.Get(), aName);
}

bool ezFileCacheManager::IsScanDue() const {
    return !mfScanned || mAddedFiles >= mMaximumFiles / kFileCache_ScanShare ||
           mAddedBytes >= mMaximumBytes / kFileCache_ScanShare;
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

bool ezFileCacheManager::Scan(int aFolder) {
    const std::size_t files = mFiles;
    const std::uint64_t bytes = mBytes;
    if (!LookThrough(aFolder)) {
        // What was known is nearer to the truth than the sums of a part, and the look stays due.
        mFiles = files;
        mBytes = bytes;
        return false;
    }
    mfScanned = true;
    mAddedFiles = 0;
    mAddedBytes = 0;
    std::sort_heap(mCandidates.begin(), mCandidates.end(), sUsedBefore);
    std::reverse(mCandidates.begin(), mCandidates.end());
    return true;
}

bool ezFileCacheManager::LookThrough(int aFolder) {
    DIR* folder = ezSystem().mOpenDir(aFolder);
    if (folder == nullptr) {
        return false; // those that may go stay known
    }
    mMaximumOfCandidates = std::clamp(std::min(mFiles, mMaximumFiles) / kFileCache_ScanShare,
                                      kFileCache_MinCandidates, kFileCache_MaxCandidates);
    mFiles = 0;
    mBytes = 0;
    mCandidates.clear();
    errno = 0;
    while (const struct dirent* entry = ezSystem().mReadDir(folder)) {
        LookAt(aFolder, static_cast<const char*>(entry->d_name));
        errno = 0; // which tells the end of the folder from a failure
    }
    const bool fWhole = errno == 0;
    ezSystem().mCloseDir(folder);
    if (!fWhole) {
        mCandidates.clear(); // the oldest of a part are not those of all
    }
    return fWhole;
}

void ezFileCacheManager::LookAt(int aFolder, const char* aName) {
    const std::string_view name = aName;
    if (name.substr(0, kFillingPrefix.size()) == kFillingPrefix) {
        ezHeld_RemoveIfStale(aFolder, aName);
        return;
    }
    struct stat status = {};
    if (name[0] == '.' || ezSystem().mLStatAt(aFolder, aName, &status) != 0 || !S_ISREG(status.st_mode)) {
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

void ezFileCacheManager::Evict(int aFolder, const ezCString& aKeptName) {
    bool fRemoved = true; // since the last scan, or before it
    while (IsOverBounds()) {
        if (mCandidates.empty()) {
            if (!fRemoved || !Scan(aFolder)) {
                return; // what is left cannot be removed, or not be seen
            }
            fRemoved = false;
            continue;
        }
        const Candidate candidate = std::move(mCandidates.back());
        mCandidates.pop_back();
        if (candidate.mName != aKeptName) {
            fRemoved = EvictOne(aFolder, candidate) || fRemoved;
        }
    }
}

bool ezFileCacheManager::EvictOne(int aFolder, const Candidate& aCandidate) {
    struct stat status = {};
    bool fGone = false;
    if (ezSystem().mLStatAt(aFolder, aCandidate.mName.c_str(), &status) != 0) {
        fGone = errno == ENOENT;                     // another process was faster
    } else if (UsedAt(status) == aCandidate.mUsed) { // else used since, it is no longer among the oldest
        // Another process that uses or replaces it just now loses a file that can be made again.
        fGone = ezSystem().mUnlinkAt(aFolder, aCandidate.mName.c_str()) == 0;
    }
    if (fGone) {
        Forget(aCandidate.mSize);
    }
    return fGone;
}
