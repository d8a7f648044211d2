#pragma once

#include "ezThumbnails/Export.h"

#include "ezPlatform/text/CString.h"

#include <memory>
#include <vector>

struct ThumbnailInfo;

/// What folders held when they were first asked for, each listed once: for a look at many files of a folder,
/// as for a sheet of it, which would list the folder again for each. It is for one such look, since what
/// comes into a folder later is not seen; what goes is.
class EZTHUMBNAILS_API SidecarListing {
public:
    SidecarListing();
    ~SidecarListing();
    SidecarListing(const SidecarListing&) = delete;
    SidecarListing& operator=(const SidecarListing&) = delete;

    /// As SidecarThumbnailProvider::CandidatePaths. *afFailed, unless null, tells that the system was in
    /// trouble: there are none then, and the folder is listed the next time.
    std::vector<ezCString> CandidatePaths(const ThumbnailInfo* anInfo, bool* afFailed = nullptr);

private:
    struct Folders;
    std::unique_ptr<Folders> mFolders;
};
