#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/text/CString.h"

class ezFile;
class ezFileCacheManager;
class ezThumbnailGenerator;
class ezThumbnailProvider;
struct ThumbnailInfo;
struct ezPtrList;

/// The name of a thumbnail in the cache, without its extension, as a format of printf: identity, width,
/// height, bounding width and height, pixel ratio height and width, and 1 or 0 for the parental lock.
inline constexpr char kThumbnail_TempFileName[] = "thumb_%s_%lu_%lu_%lu_%lu_%lu_%lu_%c";
/// How a thumbnail is served: the flags of an image in interactive and background transfer, with DLNA 1.5.
inline constexpr char kezDLNAORG_FLAGS_ThumbnailImage[] = ";DLNA.ORG_FLAGS=04F00000000000000000000000000000";
/// What follows the profile in the 4th field of a thumbnail: byte seek, converted content, and the flags.
inline constexpr char kezThumbnailDLNAFlags[] =
    ";DLNA.ORG_OP=01;DLNA.ORG_CI=1;DLNA.ORG_FLAGS=04F00000000000000000000000000000";

/// Returns thumbnails: from the cache, or built by the providers and then cached.
///
/// A server creates the manager with cache and generator, adds its providers, sets a default provider, and
/// keeps the manager as long as it runs. Hand each provider over once: one that is both in the list and the
/// default, or in the list twice, would be deleted twice. One thread at a time uses the manager, its
/// providers and its generator. docs/serving-thumbnails.md is the guide.
class EZPARSERS_API ezThumbnailProviderManager {
public:
    /// @param aFileCacheManager    borrowed; outlives the manager. Null: there is no cache and no thumbnail
    /// @param anThumbnailGenerator owned from now on; may be null
    ezThumbnailProviderManager(ezFileCacheManager* aFileCacheManager,
                               ezThumbnailGenerator* anThumbnailGenerator);
    /// Deletes the providers, then the generator, then the default provider.
    virtual ~ezThumbnailProviderManager();

    ezThumbnailProviderManager(const ezThumbnailProviderManager&) = delete;
    ezThumbnailProviderManager& operator=(const ezThumbnailProviderManager&) = delete;

    /// Takes ownership of a provider; those added first are asked first. Null is ignored.
    void Add(ezThumbnailProvider* aThumbnailProvider);
    /// Takes ownership of the provider of generic thumbnails and deletes the one before it; null removes it.
    void SetDefaultProvider(ezThumbnailProvider* aThumbnailProvider);
    /// The generator, for building providers; the manager keeps it.
    ezThumbnailGenerator* GetThumbnailGenerator() const { return mThumbnailGenerator; }

    /// The formats, a set of ezThumbnailID, that could be provided for an item: those of the default provider
    /// if it has any, else of the first provider that has; 0 when none.
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo);

    /// The thumbnail, an open file at its start, owned by the caller. With afUseDefault, where the item has
    /// none, the generic one of its media class. Null when there is no thumbnail.
    ///
    /// A request that no provider is able to serve leaves an empty file in the cache: the next request for
    /// the same name fails at once, and a provider added later is not asked for it either. A request that a
    /// provider tried and failed to serve leaves nothing, and is tried again. The file is emptied before each
    /// provider tries, so that nothing of a failed attempt remains in the next; where it cannot be emptied,
    /// the request fails.
    ezFile* GetThumbnail(const ThumbnailInfo* anInfo, bool afUseDefault);

    /// Only the item's own thumbnail, or with afUseDefaultProvider only the generic one, as GetThumbnail
    /// returns it. Warning: where a generic one is wanted and there is no default provider, the providers of
    /// the list are asked, and what they make of this item is cached as the generic thumbnail of its whole
    /// media class. A server without a default provider therefore never asks for generic ones.
    ezFile* GetCachedThumbnail(const ThumbnailInfo* anInfo, bool afUseDefaultProvider);

    /// The name in the cache (kThumbnail_TempFileName), made of the item's identity, or with
    /// afUseDefaultProvider of its media class in lower case (an item whose identity is the name of a class
    /// shares it), and of the geometry and lock that are asked for. The extension is ".jpg" where JPEG is
    /// wanted, also together with PNG, else ".png". A request for neither is the assertion
    /// "ezThumbnailProviderManager: Unknown thumbnail ID", and the name is empty: there is no thumbnail.
    ezCString GetThumbnailFileName(const ThumbnailInfo* anInfo, bool afUseDefaultProvider);

    /// What a server advertises for its thumbnails: both formats as "MIME type:4th field", separated by ",".
    ezCString GetThumbnailDLNAProfiles();

protected:
    /// The free function of the list.
    static void ThumbnailProvider_Free(void* aThumbnailProvider);

    ezPtrList* mThumbnailProviderList;                        ///< of ezThumbnailProvider, owned
    ezThumbnailGenerator* mThumbnailGenerator;                ///< owned; may be null
    ezFileCacheManager* mFileCacheManager;                    ///< borrowed; may be null
    ezThumbnailProvider* mDefaultThumbnailProvider = nullptr; ///< owned; null when there is none

private:
    bool Build(const ThumbnailInfo* anInfo, bool afUseDefaultProvider, ezFile* aFile);
};
