#pragma once

#include <string>

/// Receives what a walk finds.
class WalkVisitor {
public:
    WalkVisitor() = default;
    virtual ~WalkVisitor() = default;
    WalkVisitor(const WalkVisitor&) = delete;
    WalkVisitor& operator=(const WalkVisitor&) = delete;

    /// A regular file. aFolder is the folder walked, "" for a file that was named itself.
    virtual void File(const std::string& aPath, const std::string& aFolder) = 0;
    virtual void Problem(const std::string& aPath, const std::string& aReason) = 0;
};

/// Visits a file, or all regular files below a folder in the byte order of their names, folders among them.
/// Links are followed; a folder that is reached again is not walked again, so that links back up end. What a
/// folder holds beside files and folders (pipes, devices, sockets) is passed over in silence, but is a
/// problem where aPath itself names it.
void Walk(const std::string& aPath, WalkVisitor& aVisitor);
