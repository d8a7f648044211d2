#pragma once

#include <string>

/// A folder of its own for very many small files: in memory where the system offers that and there is room,
/// so that no disk is waited for. Removed, with everything in it, in the end.
class MemoryFolder {
public:
    MemoryFolder();
    ~MemoryFolder();
    MemoryFolder(const MemoryFolder&) = delete;
    MemoryFolder& operator=(const MemoryFolder&) = delete;

    const std::string& GetPath() const { return mPath; }

private:
    std::string mPath;
};
