#pragma once

#include "ezHosting/Export.h"

#include <string>
#include <string_view>
#include <vector>

/// Where a host has its configuration from: what ezHost finds by itself, for a host that is made by hand.
///
///     const ezHostFolders folders = FindHostFolders();
///     const ezEnvironment environment(folders.mReadOnly, folders.mWritable);
struct EZHOSTING_API ezHostFolders {
    /// A file that was looked for, and what was met there.
    struct Place {
        std::string mPath; ///< as it was asked for: relative where its folder is
        std::string mNote; ///< "" where a regular file of that name is there
    };

    std::string mReadOnly;      ///< the folder whose files the operator does not change; never ""
    std::string mWritable;      ///< the folder whose files lie over those, key by key; never ""
    std::vector<Place> mPlaces; ///< in the order in which they were looked at

    /// True where one of the two folders holds a media types file. What is in it is another matter.
    bool HasTable() const;
    /// Says of each place why nothing came of it, in one line without an end: the error of an ezHost that has
    /// no media types. For a host that goes on without.
    std::string WhyNoTable() const;
};

/// Finds the folders of the configuration. Reads ConfigPath.ini and looks at files; opens no table.
///
/// With a folder that is given, this is the read-only one and, where no other is given, the writable one too,
/// whatever it holds: a stray file in the working directory does not lie over it. Without, the folder is, in
/// this order,
///
/// 1. the one that ConfigPath.ini in the working directory names as "ReadOnly" (ezConfigConfig), whatever it
///    holds: the operator has decided;
/// 2. the working directory, where a mediaCTRLMediaTypes.ini is in it;
/// 3. the one that was installed with this library, where a mediaCTRLMediaTypes.ini is in it. It is found
///    relative to the library, wherever the tree was moved to; a program that holds the library within itself
///    looks relative to itself.
///
/// and "." where there is none of them. The writable folder is then the one that ConfigPath.ini names as
/// "ReadWrite", also where it names no other, else the working directory.
///
/// What counts as there is a regular file, also one that a link leads to. Names may be of any length and
/// hold any byte: what cannot be a path leads to nothing.
///
/// @param aConfigFolder  "" to look for it
/// @param aStateFolder   the writable folder; "" as above
EZHOSTING_API ezHostFolders FindHostFolders(std::string_view aConfigFolder = {},
                                            std::string_view aStateFolder = {});
