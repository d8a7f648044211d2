#pragma once

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/base/Types.h"
#include "ezPlatform/files/HeldFiles.h"
#include "ezPlatform/text/CString.h"

#include <cstddef>

/// The saving half of ezFile: begins the file that is written, and in the end puts it in the place of the old
/// one, which is not lost on the way. What that promises is said by ezFile::Create. Not installed.
///
/// It knows names, the folder and the old content. The descriptor of the file that is written belongs to the
/// ezFile, which passes it to each call; so do the position and the length that was written. One saver makes
/// one file.
class ezFileSaver {
public:
    /// Begins a file of ezFile::Create. Its descriptor, the caller's; -1, with nothing left of it, when it is
    /// refused.
    int Create(const ezCString& aPath, bool afOverwrite);
    /// Begins a new file that is read and written, and that others do not find yet. Its descriptor, the
    /// caller's; -1, with errno, when it is refused: EAGAIN where somebody else has it already.
    /// @param aFolder  where it stands, open
    /// @param aPath    its whole path
    int Fill(int aFolder, const ezCString& aPath);

    /// True of a file of Fill.
    bool IsFilling() const { return mfFilling; }
    /// True when a write failed since the file was empty.
    bool HasFailed() const { return mfFailed; }
    /// Says that what was written is not to stand under its name.
    void Fail() { mfFailed = true; }
    /// True where the old file itself is written, and may still be as long as its old content.
    bool KeepsOld() const { return mOld != nullptr; }

    /// Writes as ezFile::Write does.
    /// @param aLength  what was written so far
    int Write(int aFile, const void* aBuffer, std::size_t aSize, ezFileOffset aPosition,
              ezFileOffset aLength);
    /// Makes the file empty, and forgets the failure. False, the file as it was, when the system refuses.
    bool Empty(int aFile);

    /// True when all that was written to a file of Fill is on the disk.
    bool IsOnDisk(int aFile, ezFileOffset aLength) const;
    /// Gives a file of Fill its name in the folder that it stands in.
    bool PutInPlace(int aFile, int aFolder, const ezCString& aName) const;
    /// Takes the name of a file away that is not to be kept, where it is still its name.
    void GiveUp(int aFile) const;

    /// Closes a file of Create and makes the new content stand, as ezFile::Close says.
    bool Close(int aFile, ezFileOffset aLength);

private:
    struct Target;

    static bool Find(const ezCString& aPath, Target& aTarget);
    int OpenBeside(const Target& aTarget, bool* afFolderRefuses);
    int OpenInPlace(Target& aTarget);
    int Claimed(int aFile) const;
    bool IsBesideOurs(int aFile) const;
    /// Where the system finds mBeside, and what it is called in its own folder.
    /// @{
    int BesideFolder() const;
    const char* BesideName() const;
    /// @}
    bool KeepOld(int aFile, bool afReadable);
    bool CloseBeside(int aFile);
    bool CloseInPlace(int aFile, ezFileOffset aLength);
    void PutOldBack(int aFile, ezFileOffset aLength) const;

    ezHeldFile mFolder; ///< of a file of Create
    ezCString mTarget;  ///< the name there of what Close puts the written file in place of
    ezCString mBeside;  ///< the file that is written; empty when it is the target itself
    ezOwnedText mOld;   ///< what the target held that is written itself; null when not kept
    std::size_t mOldSize = 0;
    bool mfFilling = false; ///< written and read; nothing stands in its place until PutInPlace
    bool mfFailed = false;
};
