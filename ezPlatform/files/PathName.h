#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/text/CString.h"

/// The path of a file and its components.
///
/// "/" and also "\" separate the components (playlists come from other systems), but the text that opens the
/// file is never rewritten, so that a POSIX name which holds a backslash still opens; its names are then
/// those after the backslash.
class EZPLATFORM_API ezPathName {
public:
    /// An invalid path: the empty text.
    ezPathName() = default;

    /// Takes the path of a file. The file need not exist; nothing is resolved or made absolute.
    static ezPathName MakeFilePath(const ezCString& aPath);

    /// Takes the path of a folder: the text, ending in "/" unless it is empty (the working folder).
    static ezPathName MakeDirPath(const ezCString& aPath);
    /// A folder or file whose name is relative to a folder of MakeDirPath. "\" in the relative name is
    /// written "/", as playlists and configuration of other systems mean it; a POSIX name that really holds a
    /// backslash is not reached this way.
    /// @{
    static ezPathName MakeCombinedDirPath(const ezPathName& aFolder, const ezCString& aName);
    static ezPathName MakeCombinedFilePath(const ezPathName& aFolder, const ezCString& aName);
    /// @}

    /// Back to an invalid path.
    void Reset() { *this = ezPathName(); }
    /// True when something other than a folder stands under the path, and when the system does not let it be
    /// told: one system call.
    bool FileExists() const;

    /// False for the empty path.
    bool IsValid() const { return !mPath.IsEmpty(); }
    /// The path as it was given.
    const ezCString& GetFullPath() const { return mPath; }
    /// The folder that the file lies in, as a folder of MakeDirPath: the path up to its last separator, that
    /// included. Empty, and so the working folder, for a name alone; of a folder it is that folder.
    ezPathName GetParentPath() const { return MakeFilePath(mPath.Left(mNameStart)); }
    /// The last component, extension included. Empty when the path ends in a separator.
    ezCString GetFullName() const { return mPath.Mid(mNameStart); }
    /// The last component without its dot and extension.
    ezCString GetFileName() const;
    /// What follows the last dot of the last component, case kept. A leading dot starts a name: ".profile"
    /// has none.
    ezCString GetExtension() const;
    /// True for a path that begins with "/", "\", or a drive letter, a colon and a slash of either kind.
    bool IsAbsolute() const;

private:
    ezCString mPath;
    std::size_t mNameStart = 0;
    std::size_t mDot = 0; ///< where the dot before the extension stands; the length of the path without one
};
