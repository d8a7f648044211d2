#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

class ezFile;

/// Files that can be made again, kept under names of any text within bounds on their number and total size.
///
/// A host asks OpenCachedFile for a name. What is cached comes open for reading; else an empty file comes to
/// be filled, which is then reported by SetCachedFileState. Only what was reported as good is handed out
/// later, also after a process was killed in the middle.
///
/// The files lie in "ezcache", a folder of its own in the one that is given, made when it is first needed;
/// whatever lies in it belongs to the cache, and nothing outside of it is touched. Any number of processes
/// and objects may use one folder; an object is used by one thread at a time. What that costs in memory and
/// in looks through the folder, and how links are met: docs/platform-layer.md.
class EZPLATFORM_API ezFileCacheManager {
public:
    /// @param aFolder        where the cache lies; it need not exist, and nothing is done before the first
    /// use
    /// @param aMaximumBytes  bound on the sum of the lengths; a file that is longer is handed out, not kept
    /// @param aMaximumFiles  bound on the number of files, the empty ones included; 0 keeps none
    /// When a bound is exceeded, what was not used for the longest time goes first.
    ezFileCacheManager(const ezCString& aFolder, std::uint64_t aMaximumBytes, std::size_t aMaximumFiles);

    ezFileCacheManager(const ezFileCacheManager&) = delete;
    ezFileCacheManager& operator=(const ezFileCacheManager&) = delete;

    /// The file cached under a name, at its start; the caller's.
    /// @param aName    any bytes, of any number; different names have different files
    /// @param afNew    receives true when the file is new: empty, at its start, to be written and read. The
    ///                 caller fills it and calls SetCachedFileState; destroyed without that, it is given up.
    /// @param anOption 0; no other is known
    /// Null, *afNew false, when the file cannot be opened (also where a folder stands under its path), or a
    /// new one cannot be made (a full disk). Null without afNew too.
    ezFile* OpenCachedFile(const ezCString& aName, bool* afNew, int anOption);

    /// Tells what became of filling a new file. With afGood it is cached from now on, or, where it cannot be
    /// kept, just goes on to be readable; if its content could not be written, it is empty then. Without
    /// afGood nothing is kept, and the name is new at the next request; a file that was not new loses its
    /// name this way, unless another one has it by now. The file stays the caller's and open, for reading.
    /// Null and a file that was closed are ignored.
    void SetCachedFileState(const ezCString& aName, ezFile* aFile, bool afGood);

    /// The path of the file that a name has, whether it is cached or not.
    ezCString GetFullPath(const ezCString& aName) const;

private:
    using Stamp = std::pair<std::int64_t, std::int64_t>; ///< seconds and nanoseconds

    /// A file that may have to go.
    struct Candidate {
        Stamp mUsed;
        std::uint64_t mSize;
        ezCString mName;
    };

    static bool sUsedBefore(const Candidate& aLeft, const Candidate& aRight);

    bool IsFolderOurs();
    ezCString OwnFolder() const;
    Stamp NextStamp();
    void MarkUsed(ezFile& aFile);
    ezFile* OpenNew();
    ezFile* OpenNewIn(int aFolder);
    void Keep(const ezCString& aName, ezFile& aFile);
    void Remove(const ezCString& aName, const ezFile& aFile);
    bool Scan(int aFolder);
    bool LookThrough(int aFolder);
    void LookAt(int aFolder, const char* aName);
    bool IsOverBounds() const { return mFiles > mMaximumFiles || mBytes > mMaximumBytes; }
    bool IsScanDue() const;
    void Evict(int aFolder, const ezCString& aKeptName);
    bool EvictOne(int aFolder, const Candidate& aCandidate);
    void Forget(std::uint64_t aSize);
    void ForgetRemoved(const ezCString& aFileName, std::uint64_t aSize);

    ezCString mFolder; ///< ends in "/"
    ezCString mPath;   ///< of the file that was asked for last
    std::uint64_t mMaximumBytes;
    std::size_t mMaximumFiles;

    bool mfFolderSeen = false; ///< and was no link
    bool mfScanned = false;
    std::size_t mFiles = 0; ///< as far as this object knows, as are the other sums
    std::uint64_t mBytes = 0;
    std::size_t mAddedFiles = 0; ///< since the last scan
    std::uint64_t mAddedBytes = 0;
    std::size_t mMaximumOfCandidates = 0;
    std::vector<Candidate> mCandidates; ///< those that were oldest at the last scan, the oldest last
    Stamp mLastStamp = {0, 0};
    std::uint32_t mFillings = 0;
};
