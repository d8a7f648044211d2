#pragma once

#include "ezThumbnails/Export.h"

#include "ez/ThumbnailProvider.h"

#include <cstddef>
#include <memory>
#include <vector>

/// What folders held when they were first asked for, each listed once: for a look at many media of a folder,
/// as for a sheet of it, which would list the folder anew for each. It is for one such look, since what comes
/// into a folder later is not seen; what goes is.
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

/// Makes thumbnails of a picture that lies beside the media.
///
/// Tried are, for "film.mkv", "film.cover" and "film", and then "cover", "folder", "front", "albumart" and
/// "poster", each with the extensions "jpg", "jpeg" and "png" in this order; A to Z in any case. Of names
/// that differ in case alone the one in the case given here comes first, then the others in the order of
/// their bytes. The media itself is none of them, under no name that it has, and what is not a regular file
/// (or a symbolic link to one) neither. The extension tells the MIME type.
///
/// Every candidate is an ezFileThumbnailSource, and a walk over them needs no generator. Where the system is
/// in trouble (no descriptor is left, the disk fails) there are none, but one that is no file and gives no
/// stream: the build is tried and fails, and the next request tries again.
///
/// The folder is listed once for each walk over the candidates, and nothing of it is kept, unless SetListing
/// says where. A host that serves
/// pictures asks its provider of pictures first, or every photo beside a "cover.jpg" would look like that.
class EZTHUMBNAILS_API SidecarThumbnailProvider : public ezIndirectThumbnailProvider {
public:
    /// @param aThumbnailGenerator  borrowed, the manager's
    explicit SidecarThumbnailProvider(ezThumbnailGenerator* aThumbnailGenerator)
        : ezIndirectThumbnailProvider("sidecar", aThumbnailGenerator) {}
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
