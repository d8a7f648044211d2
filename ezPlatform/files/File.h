#pragma once

#include "ezPlatform/base/DateTime.h"
#include "ezPlatform/base/Export.h"
#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <memory>

class ezFileSaver;

/// What a file is opened for: reading. What is written is begun with ezFile::Create.
enum ezFileOpenMode : int { ezFileOpenMode_Read = 1 };
/// Who may use a file that is made: everybody may read and write it, less the process's mask.
enum ezFileAccessMode : int { ezFileAccessMode_ReadWrite = 3 };
/// Where ezFile::Seek counts from: the start, the position, or the length of the moment.
enum ezFileSeekMode : int { ezFileSeekMode_Begin = 0, ezFileSeekMode_Current = 1, ezFileSeekMode_End = 2 };

/// A regular file on disk, of any size on every target.
///
/// Only regular files open: a folder, pipe, device or socket is refused and never waited for (but it is
/// opened for a moment, which a waiting writer of a pipe notices). The object keeps its own position and
/// reads at it, so moving the position costs no system call (counted from the end it asks for the length).
/// Not shared between threads.
/// A file of a cache that is being filled (ezFileCacheManager) is read and written through one object.
class EZPLATFORM_API ezFile {
public:
    ezFile();
    /// Binds a path and an open mode; opens nothing.
    ezFile(const ezCString& aPath, int anOpenMode);
    ~ezFile();

    ezFile(const ezFile&) = delete;
    ezFile& operator=(const ezFile&) = delete;

    /// Opens the file that was bound.
    bool Open();
    /// Binds and opens. False when it cannot be opened, is not a regular file, is open already, or anOpenMode
    /// is not ezFileOpenMode_Read. anAccessMode says what a file that is created would allow; reading does
    /// not use it.
    bool Open(const ezCString& aPath, int anOpenMode, int anAccessMode);
    /// True from a successful Open or Create to Close, and of a file that a cache gave out, to Close too.
    bool IsOpened() const { return mFile >= 0; }

    /// Begins to write a file anew. With afOverwrite a regular file of that name is replaced, and not lost:
    /// what is written goes into a file of a name of its own beside it, which Close puts in its place, with
    /// the mode of the old one. A symbolic link is followed. Several may write one target at once: the one
    /// that is closed last stays, whole. Only where the folder does not permit a file beside it is the old
    /// file itself written, by one at a time, and its content kept in memory meanwhile.
    ///
    /// False, with the old file untouched, when the target is not a regular file, may not be written, exists
    /// without afOverwrite, the file beside it cannot be made for another reason (a full disk), the content
    /// to keep cannot be had, or this object is open. All of the rules, and where the old content is at risk:
    /// docs/platform-layer.md.
    /// @param anAccessMode  ezFileAccessMode_ReadWrite lets everybody read and write a new file, less the
    ///                      process's mask
    bool Create(const ezCString& aPath, bool afOverwrite, int anAccessMode);

    /// Writes at the position, to a file of Create or one being filled, and moves the position: the count,
    /// less than aSize after a failure, or -1 when nothing was written. Interrupted and partial writes are
    /// repeated. Requests over INT_MAX are taken as INT_MAX.
    int Write(const void* aBuffer, std::size_t aSize);

    /// Makes a file that is being written empty, and puts it at its start: what a writer that failed half-way
    /// wrote is gone, and so is the memory of its failure. False, the file left as it was, when the file is
    /// not being written or the system refuses.
    bool Empty();

    /// Closes. For a file of Create this is what makes the new content stand under its name: a saver calls
    /// it, and false means that the old file stands as it was (or, written in place, that it may be the new
    /// one, or damaged where even the old content could not be written again). A file of Create that is
    /// destroyed without Close is given up. A file being filled is given up by both.
    bool Close();

    /// The length now, in bytes: one system call. -1 when not open or not to be had.
    ezFileOffset Length() const;
    /// The length that Open saw, or that writing reached: no system call. -1 when not open.
    ezFileOffset LengthAtOpen() const { return IsOpened() ? mLengthAtOpen : -1; }

    /// Moves the position, beyond the end too. The new position, or -1 (position unchanged) when the file is
    /// not open, the mode unknown, or the result negative or above 2^63-1.
    ezFileOffset Seek(ezFileOffset anOffset, int aSeekMode);

    /// Reads at the position and moves it by what was read. Interrupted and partial reads are repeated until
    /// aSize, the end or an error; reaching the length that Open saw is the end and asks the system no
    /// further. The count, less than aSize only at the end or where an error follows what was read; -1 for an
    /// error at once. A request over INT_MAX is taken as INT_MAX.
    int Read(void* aBuffer, std::size_t aSize);

    /// The times of a file, by one system call; null for a time not wanted. False, nothing written, when the
    /// file has none. POSIX keeps no creation time: that one is the time of the last status change.
    static bool GetTimes(const ezCString& aPath, ezDateTime* aCreation, ezDateTime* aModification,
                         ezDateTime* anAccess);

private:
    friend class ezFileCacheManager;

    /// Opens for reading with more flags; errno tells why it was refused.
    bool OpenRegular(const ezCString& aPath, int aMoreFlags);
    /// Begins to fill a new file that is not to be seen by others yet; errno tells why it was refused.
    /// @param aFolder  where it stands, open
    /// @param aBeside  its whole path
    bool BeginFilling(int aFolder, const ezCString& aBeside);
    /// Puts what was filled under its name in the folder that it stands in, and goes on reading it. False: it
    /// is given up.
    bool PutInPlace(int aFolder, const ezCString& aName);
    /// Takes the name of what was filled away and goes on reading it.
    void GiveUp();

    void StartWriting(int aFile, std::unique_ptr<ezFileSaver> aSaver);
    /// True from BeginFilling to PutInPlace or GiveUp.
    bool IsFilling() const;

    ezCString mPath;
    std::unique_ptr<ezFileSaver> mSaver; ///< of a file that is being written; else null
    int mOpenMode = ezFileOpenMode_Read;
    int mFile = -1;
    ezFileOffset mPosition = 0;
    ezFileOffset mLengthAtOpen = 0;
    ezDateTime mModifiedAtOpen;
};
