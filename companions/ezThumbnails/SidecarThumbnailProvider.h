#pragma once

#include "ezThumbnails/Export.h"
#include "ezThumbnails/SidecarListing.h"

#include "ez/ThumbnailProvider.h"

#include <cstddef>
#include <vector>

/// Makes thumbnails of a picture that lies beside the file: of the same name, else one that stands for its
/// folder (docs/serving-thumbnails.md has the names and their order).
///
/// Every candidate is an ezFileThumbnailSource, and a walk over them needs no generator. The folder is listed
/// once for each walk, and nothing of it is kept, unless SetListing says where. Where the system is in
/// trouble (no descriptor is left, the disk fails) there are no candidates but one that gives no stream: the
/// build is tried and fails, and the next request tries again.
///
/// A host that serves pictures asks its provider of pictures first, or every photo beside a "cover.jpg" would
/// look like that.
class EZTHUMBNAILS_API SidecarThumbnailProvider : public ezIndirectThumbnailProvider {
public:
    static constexpr const char* kName = "sidecar"; ///< by which one is told from other providers

    /// @param aThumbnailGenerator  borrowed, the manager's
    explicit SidecarThumbnailProvider(ezThumbnailGenerator* aThumbnailGenerator)
        : ezIndirectThumbnailProvider(kName, aThumbnailGenerator) {}
    ~SidecarThumbnailProvider() override;

    /// The paths of the pictures that could be taken for an item, in the order in which they are tried; all
    /// are there at the time. For the item's identity: neither a provider nor a generator is needed. Empty
    /// without an item. It costs one listing of the folder.
    static std::vector<ezCString> CandidatePaths(const ThumbnailInfo* anInfo);

    /// Where to look for what folders hold; borrowed. Null, as at first, for the folders themselves.
    void SetListing(SidecarListing* aListing) { mListing = aListing; }
    void GetFirstPath(const ThumbnailInfo* anInfo) override;
    void GetNextPath(const ThumbnailInfo* anInfo) override;

private:
    SidecarListing* mListing = nullptr;
    std::vector<ezCString> mPaths;
    std::size_t mNextPath = 0;
    bool mfFailed = false; ///< the last listing
};
