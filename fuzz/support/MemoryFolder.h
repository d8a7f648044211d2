#pragma once

#include <string>
#include <string_view>

/// A folder of its own whose files lie in memory where the system offers that; removed, with its files, in
/// the end.
class MemoryFolder {
public:
    MemoryFolder();
    ~MemoryFolder();
    MemoryFolder(const MemoryFolder&) = delete;
    MemoryFolder& operator=(const MemoryFolder&) = delete;

    /// The path of a name in the folder.
    std::string Path(const std::string& aName) const { return mPath + "/" + aName; }
    /// Makes a folder in it and returns its path.
    std::string MakeFolder(const std::string& aName) const;

private:
    std::string mPath;
};

/// Writes a file, over an old one too.
void WriteFile(const std::string& aPath, std::string_view aContent);
