#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

class ezFile;
class ezThumbnailSource;
struct ThumbnailInfo;

/// Builds thumbnails from sources. Supplied by the host, owned by an ezThumbnailProviderManager, and used by
/// one thread at a time.
class EZPARSERS_API ezThumbnailGenerator {
public:
    /// @param aName  borrowed: a constant string that outlives the generator
    explicit ezThumbnailGenerator(const char* aName) : mName(aName) {}
    virtual ~ezThumbnailGenerator();

    ezThumbnailGenerator(const ezThumbnailGenerator&) = delete;
    ezThumbnailGenerator& operator=(const ezThumbnailGenerator&) = delete;

    /// The formats, a set of ezThumbnailID, that it can make from a picture of a MIME type; 0 when none.
    virtual uint32 CanConvert(const ezCString& aMimeType) = 0;
    /// Reads the picture through aSource->GetStream(), which may be null or not open, and writes the
    /// thumbnail that anInfo asks for to aFile, which is empty and at its start. GetThumbnailFinalSize
    /// computes the size from that of the picture; the generator takes a side of 0 for 1. It writes only a
    /// finished picture, and returns true only when all of it was written. It keeps none of the three
    /// pointers, and does not close aFile: a closed file is given up, and there is no thumbnail.
    virtual bool BuildThumbnail(const ThumbnailInfo* anInfo, const ezThumbnailSource* aSource,
                                ezFile* aFile) = 0;

    /// The name as it was given; it still belongs to whoever gave it.
    const char* GetName() const { return mName; }

protected:
    const char* mName; ///< borrowed
};
