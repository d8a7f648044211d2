#pragma once

#include "ezPlatform/base/Export.h"
#include "ezPlatform/text/CString.h"

#include <cstddef>
#include <memory>

/// Settings in one text file that stands in two folders: a read-only one that the maker ships and a
/// read-write one that lies over it key by key.
///
/// The file has sections "[name]", whose names are exact, and lines "key=value", whose keys compare without
/// case; a line whose first character is ";" or "#" is a comment. All of the grammar, and what counts of
/// duplicates: docs/platform-layer.md.
///
/// Both files are read by the constructor and then forgotten; when both are one file it is read once. A file
/// that is missing, not a regular file or over kMaximumFileSize has no sections. Only read afterwards, so
/// several threads may ask at once.
class EZPLATFORM_API ezConfig {
public:
    /// Bytes of a file: configuration is small. One beyond this is a mistake, and this is a small device.
    static constexpr ezFileOffset kMaximumFileSize = ezFileOffset{64} * 1024 * 1024;

    /// Reads the file of that name in both folders. Never fails: what cannot be read has no sections.
    /// @param aReadOnlyFolder   with or without "/" at its end; "" is the working folder
    /// @param aReadWriteFolder  the same; its values lie over those of the read-only one
    /// @param aFileName         the name in both
    ezConfig(const ezCString& aReadOnlyFolder, const ezCString& aReadWriteFolder, const ezCString& aFileName);
    ~ezConfig();

    ezConfig(const ezConfig&) = delete;
    ezConfig& operator=(const ezConfig&) = delete;

    /// With afMerged the keys of both files, each key once; without only those of the read-write file, in the
    /// merged order.
    std::size_t GetKeyCount(const ezCString& aSection, bool afMerged) const;
    /// The key at an index as it is written where it first stands; the empty text past the end.
    ezCString GetKeyNameCString(const ezCString& aSection, std::size_t anIndex, bool afMerged) const;
    /// The value in force; aDefault when there is no such key. A key without a value has the empty value.
    ezCString GetCString(const ezCString& aSection, const ezCString& aKey, const ezCString& aDefault) const;

private:
    struct Contents;

    std::unique_ptr<Contents> mContents;
};

/// Where a device keeps its configuration.
class EZPLATFORM_API ezConfigConfig {
public:
    /// Reads the two configuration folders from the keys "ReadOnly" and "ReadWrite" in the section
    /// "ConfigPath" of aFileName in the working directory. A folder that is not given there is left as it is.
    static void GetConfigPaths(ezCString& aReadOnlyFolder, ezCString& aReadWriteFolder,
                               const ezCString& aFileName);
};
