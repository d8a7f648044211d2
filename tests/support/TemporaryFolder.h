#pragma once

#include <cstdint>
#include <string>

/// A folder of its own that is removed, with everything in it, in the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& GetPath() const { return mPath; }
    /// The path of a name in the folder.
    std::string Path(const std::string& aName) const { return mPath + "/" + aName; }
    /// Writes a file (folders in its name are made) and returns its path.
    std::string Write(const std::string& aName, const std::string& aContent) const;
    /// Makes a folder in it, with those in its name, and returns its path.
    std::string MakeFolder(const std::string& aName) const;

protected:
    /// The folder is made in aBase.
    explicit TemporaryFolder(const std::string& aBase);

private:
    std::string mPath;
};

/// One whose files lie in memory where the system offers that, so that no disk is waited for; else wherever
/// temporary files lie.
class MemoryFolder : public TemporaryFolder {
public:
    /// aRoom: the bytes that must be free in memory.
    explicit MemoryFolder(std::uintmax_t aRoom = 0);
};
