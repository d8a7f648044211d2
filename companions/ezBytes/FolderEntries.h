#pragma once

#include <cstddef>
#include <functional>
#include <string>

/// What a folder says of one of its entries.
enum class FolderEntry {
    File,   ///< a regular file
    Folder, ///< another folder
    Other,  ///< a device, a pipe or a socket
    Unsaid, ///< a link, whatever it leads to; and where the file system does not say
};

/// How a walk over a folder ended.
enum class FolderWalk {
    Whole,   ///< after its last entry
    Cut,     ///< earlier, by its bound or by whoever takes the entries
    None,    ///< before it began: there is no such folder
    Refused, ///< before it began: this process may not list it
    Trouble, ///< the system failed, and entries may be missing
};

/// Hands the entries of a folder to a function, without "." and "..", in the order in which the system has
/// them, until that gives false. One listing, of which nothing is kept. The name is the function's as long as
/// it runs.
///
/// @param aFolder  "" for the working folder. A link is followed.
/// @param aMost    entries that are asked for, "." and ".." among them
FolderWalk WalkFolder(const std::string& aFolder, std::size_t aMost,
                      const std::function<bool(const char* aName, FolderEntry aKind)>& aTake);

/// Whether an error of a path says that there is nothing to be had, or not for this process, and not that the
/// system is in trouble.
bool IsAnswerOfPath(int anError);
