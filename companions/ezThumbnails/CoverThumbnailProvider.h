#pragma once

#include "ezThumbnails/Export.h"

#include "ez/ThumbnailProvider.h"

#include <cstddef>

/// Makes thumbnails of the cover that a media carries within itself.
///
/// Looked for in an ID3v2 tag at the start of the file (2.2 to 2.4), in FLAC (also behind such a tag), in MP4
/// and its kin, and in Ogg with Vorbis or Opus, in whatever file: the content counts, not name or type. Of
/// several pictures it is the first typed as front, else the first of another type, never a file icon. What
/// says that it is larger than what it lies in is not read.
///
/// A picture that lies in the file as it is, or as base64 in one run, is read there
/// (ezFilePartThumbnailSource), up to 16 MiB. One in pieces (base64 across pages of Ogg), with
/// unsynchronisation, or in a compressed frame of ID3v2 is gathered in memory when the
/// generator reads it, up to 8 MiB; base64 is held up to the same size.
///
/// Looking reads at most 16 MiB, and usually some KiB. Tags at the end of a file, encrypted frames, links
/// to pictures, and FLAC within Ogg are not looked into.
///
/// Where the file is there and cannot be read, the last candidate is one that gives no stream: the build is
/// tried and fails, and the next request tries again.
class EZTHUMBNAILS_API CoverThumbnailProvider : public ezIndirectThumbnailProvider {
public:
    /// @param aThumbnailGenerator  borrowed, the manager's
    explicit CoverThumbnailProvider(ezThumbnailGenerator* aThumbnailGenerator)
        : ezIndirectThumbnailProvider("cover", aThumbnailGenerator) {}
    ~CoverThumbnailProvider() override;

    void GetFirstPath(const ThumbnailInfo* anInfo) override;
    void GetNextPath(const ThumbnailInfo* anInfo) override;

private:
    void Find(const ezPathName& aPath);

    std::size_t mNextFinder = 0;
    bool mfFailed = false; ///< the looking, since the first path
};
