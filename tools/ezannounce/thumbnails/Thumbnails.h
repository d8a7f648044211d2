#pragma once

#include "arguments/ThumbnailOptions.h"

#include "ez/ThumbnailProvider.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What the providers did at one request.
struct ThumbnailTrace {
    bool mfAsked = false;   ///< any of them was asked, so that the answer did not come from the cache
    bool mfFailed = false;  ///< one that was able to could not
    std::string mBuiltBy;   ///< the name of the one that did it; "" when none did
    std::string mBuiltFrom; ///< the file that it was made of, where that is one of its own
};

/// A thumbnail, or why there is none.
struct Thumbnail {
    std::string mBytes;        ///< empty where there is none
    bool mfGeneric = false;    ///< that of the media's class
    bool mfFromCache = false;  ///< no provider was asked about the media
    bool mfCacheFails = false; ///< there is none because the cache cannot be used
    std::string mOrigin;       ///< where it is from, in words
    std::string mReason;       ///< why there is none
};

/// The thumbnail service as this tool uses it: the providers of ezThumbnails before a cache, asked in the
/// order of AddThumbnailProviders; the generic pictures are a request of their own.
class Thumbnails {
public:
    /// @param aLeftOut a picture that stands beside no media, whatever its name; "" for none
    explicit Thumbnails(const std::string& aCacheFolder, const std::string& aLeftOut = "");
    ~Thumbnails();
    Thumbnails(const Thumbnails&) = delete;
    Thumbnails& operator=(const Thumbnails&) = delete;

    /// The thumbnail of a file.
    /// @param anInfo       what is asked for; identity and format included
    /// @param afUseGeneric where the media has none, the picture of its class. It is cached by class, speed
    ///                     and version of this tool
    Thumbnail Get(const ThumbnailInfo& anInfo, bool afUseGeneric);

    /// Looks for pictures beside media in what aListing has of their folders; borrowed.
    void SetListing(SidecarListing* aListing) { mSidecars->SetListing(aListing); }

private:
    template <class Provider, class... Words>
    Provider* NewProvider(Words... aWords);

    std::unique_ptr<ezFile> Request(const ThumbnailInfo& anInfo, bool afGeneric);
    bool Fetch(const ThumbnailInfo& anInfo, bool afGeneric, Thumbnail& aThumbnail);
    std::string Origin(bool afGeneric) const;
    void Explain(const ThumbnailInfo& anInfo, bool afGeneric, Thumbnail& aThumbnail);

    std::string mCacheFolder;
    ezFileCacheManager mCache;
    ThumbnailTrace mTrace;
    ezThumbnailProviderManager mManager;
    SidecarThumbnailProvider* mSidecars; ///< the manager's
};

/// What is asked of the service for a file of this path and type.
/// @param aLeftOut  no picture beside it, as with Thumbnails
/// @param aListing  of the folder; null to list it
/// @param aSidecars of the media; receives the pictures beside it that could stand for it
ThumbnailInfo ThumbnailRequest(const std::string& aPath, const ezCString& aMimeType, const ezCString& aDLNA,
                               const ThumbnailOptions& anOptions, const std::string& aLeftOut,
                               SidecarListing* aListing, std::vector<std::string>& aSidecars);
