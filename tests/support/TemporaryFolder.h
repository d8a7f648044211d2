#pragma once

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

private:
    std::string mPath;
};
