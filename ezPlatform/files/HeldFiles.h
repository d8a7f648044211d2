#pragma once

#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

#include <fcntl.h>
#include <string_view>

/// What ezFile, ezFileSaver and ezFileCacheManager share to work with open files and in open folders,
/// whatever a path leads to by now. Not installed.

/// A descriptor, closed in the end.
class ezHeldFile {
public:
    ezHeldFile() = default;
    explicit ezHeldFile(int aFile) : mFile(aFile) {}
    ~ezHeldFile() { Close(); }
    ezHeldFile(const ezHeldFile&) = delete;
    ezHeldFile& operator=(const ezHeldFile&) = delete;
    ezHeldFile(ezHeldFile&& anOther) noexcept : mFile(anOther.Release()) {}
    ezHeldFile& operator=(ezHeldFile&& anOther) noexcept;

    bool IsOpened() const { return mFile >= 0; }
    int Get() const { return mFile; }
    int Release();
    /// Keeps errno.
    void Close();

private:
    int mFile = -1;
};

/// open, repeated when it is interrupted. -1 with errno.
int ezHeld_Open(const char* aPath, int aFlags, mode_t aMode);
/// The same in an open folder, which may be AT_FDCWD.
int ezHeld_OpenAt(int aFolder, const char* aName, int aFlags, mode_t aMode);

/// Reads at an offset, repeated when it is interrupted or comes short, until aSize, the end, or aEnd, where
/// the file is known to end. The count; -1 for a failure at once. aSize is INT_MAX at the most, here and
/// below.
int ezHeld_Read(int aFile, void* aBuffer, std::size_t aSize, ezFileOffset anOffset, ezFileOffset anEnd);
/// Writes at an offset in the same way. The count, less than aSize after a failure; -1 when nothing was
/// written.
int ezHeld_Write(int aFile, const void* aBuffer, std::size_t aSize, ezFileOffset anOffset);
/// fsync and ftruncate, repeated when they are interrupted.
/// @{
bool ezHeld_Sync(int aFile);
bool ezHeld_Truncate(int aFile, ezFileOffset aLength);
/// @}
/// Closes a descriptor. False where the system refuses; interrupted, it is closed all the same.
bool ezHeld_Close(int aFile);

/// Another descriptor of the same open file, which holds its lock as well; -1 with errno.
int ezHeld_Duplicate(int aFile);

/// The folder that a path leads to, to work in by names. Its links are followed where the path ends in "/".
/// @param afList  its names are to be read, too
ezHeldFile ezHeld_Folder(const ezCString& aPath, bool afList);

/// True when a name in a folder is, without a link being followed, that of an open file.
bool ezHeld_IsNameOf(int aFolder, const char* aName, int aFile);

/// Takes the lock that tells others that a file is at work, if nobody has it; errno EWOULDBLOCK when somebody
/// has. It goes with the last descriptor of the open file, and so with the process.
bool ezHeld_Lock(int aFile);

/// Removes what a process left that was killed while it wrote: a file whose lock nobody has. Where the file
/// system has no locks, one that was not written for a day.
void ezHeld_RemoveIfStale(int aFolder, const char* aName);

/// Sixteen hexadecimal digits that no other file's name has, as good as surely, and that nobody can foretell.
ezCString ezHeld_RandomDigits();
