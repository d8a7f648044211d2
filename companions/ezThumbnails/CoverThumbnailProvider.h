#pragma once

#include "ezThumbnails/Export.h"

#include "ez/ThumbnailProvider.h"

#include <cstddef>

/// Makes thumbnails of the cover that a file carries within itself: in an ID3v2 tag at its start, in FLAC, in
/// MP4 and its kin, in Ogg, in WAV, AIFF, DSF, DSDIFF and ASF, and in an APE tag at its end. The content
/// counts, not the file's name or type. Of several pictures it is the first typed as front, else the first of
/// another type, never a file icon (docs/serving-thumbnails.md has the rest).
///
/// Looking reads at most 16 MiB, and usually some KiB. The picture is read where it lies, up to 16 MiB, or,
/// where it lies in pieces or is packed, gathered in memory, up to 8 MiB.
///
/// Where the file is there and cannot be read, the last candidate is one that gives no stream: the build is
/// tried and fails, and the next request tries again.
class EZTHUMBNAILS_API CoverThumbnailProvider : public ezIndirectThumbnailProvider {
public:
    static constexpr const char* kName = "cover"; ///< by which one is told from other providers

    /// @param aThumbnailGenerator  borrowed, the manager's
    explicit CoverThumbnailProvider(ezThumbnailGenerator* aThumbnailGenerator)
        : ezIndirectThumbnailProvider(kName, aThumbnailGenerator) {}
    ~CoverThumbnailProvider() override;

    void GetFirstPath(const ThumbnailInfo* anInfo) override;
    void GetNextPath(const ThumbnailInfo* anInfo) override;

private:
    void Find(const ezPathName& aPath);

    std::size_t mNextFinder = 0;
    bool mfFailed = false; ///< the looking, since the first path
};
