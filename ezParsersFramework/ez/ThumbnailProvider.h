#pragma once

#include "ez/MediaParserTypes.h"

#include "ezPlatform/base/Types.h"
#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/CString.h"

class ezFile;
class ezFileCacheManager;
class ezStream;
struct ezPtrList;

/// The thumbnail service of a media server, in four roles.
///
/// - A source (ezThumbnailSource) is a place where picture data can be read: a file, or a part of one.
/// - A generator (ezThumbnailGenerator), supplied by the host, turns a source into a JPEG or PNG thumbnail.
/// - A provider (ezThumbnailProvider) decides for a media item which source to use, and has it built.
/// - The manager (ezThumbnailProviderManager) asks its providers, and keeps what they built in a file cache.
///
/// Sizes are in pixels. Nothing here is locked: one thread a manager, with its providers and its generator.
/// A null request, generator, file or cache is a plain failure: nothing is possible, built or returned.

/// Formats of a thumbnail: bits, combined in masks.
enum ezThumbnailID : uint32 {
    kNoThumbnailID = 0,
    kJPEGThumbnailID = 1, ///< JPEG, DLNA profile JPEG_TN
    kPNGThumbnailID = 2   ///< PNG, DLNA profile PNG_TN
};

/// The name of a thumbnail in the cache, before its extension: identity, width, height, bounding width and
/// height, pixel ratio height and width, and 1 or 0 for the parental lock.
inline constexpr char kThumbnail_TempFileName[] = "thumb_%s_%lu_%lu_%lu_%lu_%lu_%lu_%c";
/// How a thumbnail is served: the flags of an image in interactive and background transfer, with DLNA 1.5.
inline constexpr char kezDLNAORG_FLAGS_ThumbnailImage[] = ";DLNA.ORG_FLAGS=04F00000000000000000000000000000";
/// What follows the profile in the 4th field of a thumbnail: byte seek, converted content, and the flags.
inline constexpr char kezThumbnailDLNAFlags[] =
    ";DLNA.ORG_OP=01;DLNA.ORG_CI=1;DLNA.ORG_FLAGS=04F00000000000000000000000000000";

/// A request: a media item, and the thumbnail that is wanted of it.
///
/// The name in the cache has identity, format, both sizes, pixel ratio and lock, and nothing else. A request
/// that differs in the rest alone gets what is cached: whoever varies mfFastRescale, say, puts it into the
/// identity.
///
/// Of mThumbnailID ask for one format. With both a generator that makes PNG alone counts as able for the
/// provider of pictures, and its PNG is cached, and served, as ".jpg".
struct ThumbnailInfo {
    bool mfParentalLocked = false; ///< the item is locked: this tells its name in the cache, and no more
    uint32 mWidth = 0;             ///< wanted; with a box it counts in the cache's name alone: leave it 0
    uint32 mHeight = 0;            ///< the same
    uint32 mWidthMax = 0;          ///< of the bounding box; 0 when there is none
    uint32 mHeightMax = 0;         ///< of the bounding box; 0 when there is none
    ezCString mUniqueID;           ///< the item's identity, any bytes; the cache knows the item by it alone,
                                   ///< so it changes when the picture that the thumbnail is made of does
    uint32 mThumbnailID = kNoThumbnailID; ///< wanted formats, a set of ezThumbnailID; of both JPEG is cached
    ezCString mMimeType;                  ///< of the item; before its "/" stands the media class
    ezCString mDLNAInfo;                  ///< DLNA information of the item; nothing in here reads it
    ezPathName mFilePath;                 ///< the item's file
    bool mfFastRescale = false;   ///< the generator may scale fast, at a lower quality; not in the name
    uint32 mPixelRatioHeight = 0; ///< height part of the pixels' aspect ratio
    uint32 mPixelRatioWidth = 0;  ///< width part of it; equal parts are square pixels
};

/// A place where the data of a picture can be read. Made for one build.
class EZPARSERS_API ezThumbnailSource {
public:
    ezThumbnailSource() = default;
    /// @param aMimeType  of the picture; "" when it is not known
    explicit ezThumbnailSource(const ezCString& aMimeType) : mMimeType(aMimeType) {}
    virtual ~ezThumbnailSource();

    ezThumbnailSource(const ezThumbnailSource&) = delete;
    ezThumbnailSource& operator=(const ezThumbnailSource&) = delete;

    /// True when there is something to read.
    virtual bool Exists() const = 0;
    /// A new stream over the picture's data, at its start, that the caller gives back with Release. It
    /// outlives the source. Null when there is none.
    virtual ezStream* GetStream() const = 0;

    /// The MIME type of the picture.
    ezCString GetMimeType() const { return mMimeType; }
    /// Sets the MIME type that GetMimeType and the streams made from now on tell.
    void SetMimeType(const ezCString& aMimeType) { mMimeType = aMimeType; }

protected:
    ezCString mMimeType; ///< what GetMimeType tells
};

/// A picture that is a file of its own.
class EZPARSERS_API ezFileThumbnailSource : public ezThumbnailSource {
public:
    /// The item's own file, with the item's MIME type. anInfo is not kept.
    explicit ezFileThumbnailSource(const ThumbnailInfo* anInfo);
    ~ezFileThumbnailSource() override;

    /// True when something other than a folder stands under the path.
    bool Exists() const override;
    /// Never null: of a file that does not open it is a stream that is not open and reads nothing.
    ezStream* GetStream() const override;

    /// Where the picture lies, lent until the source changes; not valid where it was made of no request.
    const ezPathName& GetPath() const { return mFilePath; }
    /// The same as a text; empty where the path is not valid.
    ezCString GetFullPath() const { return mFilePath.GetFullPath(); }
    /// Replaces the whole path.
    void SetPath(const ezPathName& aPath) { mFilePath = aPath; }
    /// Replaces the last component, extension included, and keeps the folder: "d/film.mpg" becomes
    /// "d/cover.jpg".
    void SetFileName(const ezCString& aFileName);
    /// Replaces the extension, given without its dot, or adds it: "film.mpg" becomes "film.jpg". An empty one
    /// takes extension and dot away.
    void SetExtension(const ezCString& anExtension);

protected:
    ezPathName mFilePath; ///< of the picture
};

/// A picture that is a part of a file: a cover within a media, stored as it is or as base64 text.
class EZPARSERS_API ezFilePartThumbnailSource : public ezThumbnailSource {
public:
    /// @param aMimeType       of the picture
    /// @param aFilePath       the file that holds it
    /// @param aStartOffset    where its data begins, in bytes; below 0 there is no data
    /// @param aSize           bytes that the data takes in the file; what goes beyond its end is not there.
    ///                        Base64 text is held in memory as a whole, with what it decodes to, up to this
    ///                        size and that of the file, which may be 2 GiB: whoever takes aSize from a
    ///                        stranger's file bounds it before
    /// @param afBase64        the data is base64 text, as ezBase64_Decode takes it
    /// @param anEncodedOffset bytes to drop from the start of the decoded data; not used without afBase64
    ezFilePartThumbnailSource(const ezCString& aMimeType, const ezPathName& aFilePath,
                              ezFileOffset aStartOffset, uint32 aSize, bool afBase64, uint32 anEncodedOffset);
    ~ezFilePartThumbnailSource() override;

    /// True when something other than a folder stands under the path.
    bool Exists() const override;
    /// Null when the file does not open; of base64 text also when nothing can be read, there is no memory for
    /// it, or anEncodedOffset is beyond the decoded data. At its very end the stream is empty. Decoded data
    /// is held in memory by the stream and goes with it; else the stream holds the file.
    ezStream* GetStream() const override;

protected:
    ezPathName mFilePath;      ///< of the file that holds the picture
    ezFileOffset mStartOffset; ///< of the data in the file; below 0 there is none
    uint32 mSize;              ///< bytes of the data in the file
    bool mfBase64;             ///< the data is base64 text
    uint32 mEncodedOffset;     ///< bytes to drop from the start of what that decodes to

private:
    ezStream* GetDecodedStream(ezFile& aFile) const;
    ezStream* Decode(const char* aText, std::size_t aCount) const;
};

/// Builds thumbnails from sources. Supplied by the host.
class EZPARSERS_API ezThumbnailGenerator {
public:
    /// @param aName  borrowed: a constant text that outlives the generator
    explicit ezThumbnailGenerator(const char* aName) : mName(aName) {}
    virtual ~ezThumbnailGenerator();

    ezThumbnailGenerator(const ezThumbnailGenerator&) = delete;
    ezThumbnailGenerator& operator=(const ezThumbnailGenerator&) = delete;

    /// The formats, a set of ezThumbnailID, that it makes of a picture of a MIME type; 0 when none.
    virtual uint32 CanConvert(const ezCString& aMimeType) = 0;
    /// Reads the picture through aSource->GetStream(), which may be null or not open, and writes the
    /// thumbnail that anInfo asks for to aFile, which is empty and at its start. GetThumbnailFinalSize
    /// computes the size from the picture's; a side of 0 is the generator's to make 1. It writes only a
    /// picture that is finished, and returns true only when all of it was written. Nothing is kept of the
    /// three, and aFile is not closed: it would be given up, and there is no thumbnail.
    virtual bool BuildThumbnail(const ThumbnailInfo* anInfo, const ezThumbnailSource* aSource,
                                ezFile* aFile) = 0;

    /// The name as it was given, still lent by whoever gave it.
    const char* GetName() const { return mName; }

protected:
    const char* mName; ///< borrowed
};

/// Finds a picture for a media item and has a thumbnail built of it.
///
/// Its destructor must not touch the generator, which may be gone by then.
class EZPARSERS_API ezThumbnailProvider {
public:
    /// @param aName  borrowed: a constant text that outlives the provider
    explicit ezThumbnailProvider(const char* aName) : mName(aName) {}
    virtual ~ezThumbnailProvider();

    ezThumbnailProvider(const ezThumbnailProvider&) = delete;
    ezThumbnailProvider& operator=(const ezThumbnailProvider&) = delete;

    /// The formats, a set of ezThumbnailID, that it could provide for the item.
    virtual uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) = 0;
    /// Writes the thumbnail to a file that is being written and is empty, at its start, and does not close
    /// it: it would be given up, and there is no thumbnail. False when it could not; what is in the file then
    /// is worth nothing.
    virtual bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) = 0;

    /// The name that log lines show, still lent by whoever gave it.
    const char* GetName() const { return mName; }
    /// True when a wanted format is among the possible ones.
    bool CanProvideThumbnailFor(const ThumbnailInfo* anInfo) {
        return anInfo != nullptr && (anInfo->mThumbnailID & GetPossibleThumbnailFor(anInfo)) != 0;
    }

protected:
    const char* mName; ///< borrowed
};

/// For items that are pictures: their own file is the source.
class EZPARSERS_API ezPictureThumbnailProvider : public ezThumbnailProvider {
public:
    /// @param anThumbnailGenerator  borrowed, the manager's
    ezPictureThumbnailProvider(ezThumbnailGenerator* anThumbnailGenerator, const char* aName)
        : ezThumbnailProvider(aName), mThumbnailGenerator(anThumbnailGenerator) {}
    ~ezPictureThumbnailProvider() override;

    /// What the generator makes of the item's MIME type.
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) override;
    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override;

protected:
    ezThumbnailGenerator* mThumbnailGenerator; ///< borrowed; null is one that converts nothing
};

/// Tries one candidate source after the other, such as pictures beside the media. A derived class supplies
/// the candidates; at most one at a time is held, and it is deleted by whoever replaces it and with the
/// provider.
class EZPARSERS_API ezIndirectThumbnailProvider : public ezThumbnailProvider {
public:
    /// @param aThumbnailGenerator  borrowed, the manager's
    ezIndirectThumbnailProvider(const char* aName, ezThumbnailGenerator* aThumbnailGenerator)
        : ezThumbnailProvider(aName), mThumbnailGenerator(aThumbnailGenerator) {}
    /// Deletes the candidate.
    ~ezIndirectThumbnailProvider() override;

    /// What the generator makes of the first candidate that exists and that it makes anything of; 0 when
    /// there is none. The candidate stays until the next tries.
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) override;
    /// Builds from the first candidate that exists, of which the generator makes every format that is wanted,
    /// and that converts. That one stays until the next tries. Each attempt is given an empty file.
    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override;

    /// Disposes of the candidate that was left and sets mTrySource to the first one for the item, a new
    /// object; where there is none it calls EndTries.
    virtual void GetFirstPath(const ThumbnailInfo* anInfo) = 0;
    /// The same with the candidate that follows. It must come to an end.
    virtual void GetNextPath(const ThumbnailInfo* anInfo) = 0;
    /// Deletes the candidate.
    virtual void EndTries();

    /// True while there is a candidate.
    bool SourceToTry() const { return mTrySource != nullptr; }

protected:
    ezThumbnailGenerator* mThumbnailGenerator; ///< borrowed; null is one that converts nothing
    ezThumbnailSource* mTrySource = nullptr;   ///< owned
};

/// Returns thumbnails: from the cache, or built by the providers and then cached.
///
/// A request that no provider is able to serve leaves an empty file in the cache, so that the next request
/// for the same name is refused at once, without asking again; a provider added later is not asked for it
/// either. One that a provider tried and failed to serve leaves nothing, and is tried again. The file is
/// emptied before each provider tries: nothing of one that failed half-way stands in what the next one makes.
/// Where it cannot be emptied, the request fails there.
///
/// A server creates the manager with cache and generator, adds its providers, sets a default provider, and
/// keeps it as long as it runs. A provider is handed over once: one that is in the list and the default as
/// well, or in the list twice, would be deleted twice.
class EZPARSERS_API ezThumbnailProviderManager {
public:
    /// @param aFileCacheManager    borrowed; outlives the manager
    /// @param anThumbnailGenerator owned from now on; may be null
    ezThumbnailProviderManager(ezFileCacheManager* aFileCacheManager,
                               ezThumbnailGenerator* anThumbnailGenerator);
    /// Deletes the providers, then the generator, then the default provider.
    virtual ~ezThumbnailProviderManager();

    ezThumbnailProviderManager(const ezThumbnailProviderManager&) = delete;
    ezThumbnailProviderManager& operator=(const ezThumbnailProviderManager&) = delete;

    /// Takes a provider over; those added first are asked first. Null is ignored.
    void Add(ezThumbnailProvider* aThumbnailProvider);
    /// Takes the provider of generic thumbnails over and deletes the one before it; null means none.
    void SetDefaultProvider(ezThumbnailProvider* aThumbnailProvider);
    /// The generator, for building providers; lent.
    ezThumbnailGenerator* GetThumbnailGenerator() const { return mThumbnailGenerator; }

    /// The formats that could be provided for an item: of the default provider if it has any, else of the
    /// first provider that has; 0 when none.
    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo);

    /// The thumbnail, open and at its start; the caller's. With afUseDefault, where the item has none, the
    /// generic one of its media class. Null when there is none.
    ezFile* GetThumbnail(const ThumbnailInfo* anInfo, bool afUseDefault);

    /// One of the two: the item's thumbnail, or with afUseDefaultProvider the generic one. Warning: where a
    /// generic one is wanted and there is no default provider, the providers of the list are asked, and what
    /// they make of this item is cached as the generic thumbnail of its whole media class. A server without a
    /// default provider therefore never asks for generic ones.
    ezFile* GetCachedThumbnail(const ThumbnailInfo* anInfo, bool afUseDefaultProvider);

    /// The name in the cache: of the item's identity, or with afUseDefaultProvider of its media class in
    /// lower case (an item whose identity is the name of a class would share it), and of all that is asked of
    /// the picture. ".jpg" where JPEG is wanted, also with PNG, else ".png". Neither is the assertion
    /// "ezThumbnailProviderManager: Unknown thumbnail ID" and the empty name, for which there is no
    /// thumbnail.
    ezCString GetThumbnailFileName(const ThumbnailInfo* anInfo, bool afUseDefaultProvider);

    /// What a server advertises for its thumbnails: both formats as "MIME type:4th field", parted by ",".
    ezCString GetThumbnailDLNAProfiles();

protected:
    /// The free function of the list.
    static void ThumbnailProvider_Free(void* aThumbnailProvider);

    ezPtrList* mThumbnailProviderList;         ///< of ezThumbnailProvider, owned
    ezThumbnailGenerator* mThumbnailGenerator; ///< owned; may be null
    ezFileCacheManager* mFileCacheManager;     ///< borrowed; null is no cache, and no thumbnail
    ezThumbnailProvider* mDefaultThumbnailProvider = nullptr; ///< owned; null when there is none

private:
    bool Build(const ThumbnailInfo* anInfo, bool afUseDefaultProvider, ezFile* aFile);
};

/// The size of a thumbnail, for a generator, from the request and the size of the original picture.
///
/// With a bounding box the picture is fitted into it, enlarged too, its aspect kept; the request's own size
/// and pixel ratio do not count then. Only in the box of 160 by 160, that of the DLNA thumbnail profiles, a
/// picture that would not become smaller in both directions keeps its own size. Without a box the size is the
/// one requested, its height or width reduced by the pixel ratio.
///
/// It is computed in single precision and cut to whole pixels at every step, alike on every target. A side
/// may come out as 0 (a picture of 4000 by 10 in 160 by 160), which the caller takes for 1. An original
/// height of 0 is an endless aspect, and 0 by 0 has the full height of the box and no width. What is too
/// large for 32 bits is 0xFFFFFFFF. Without a request, or a place for either side, nothing is written.
EZPARSERS_API void GetThumbnailFinalSize(const ThumbnailInfo* anInfo, uint32 aOriginalWidth,
                                         uint32 aOriginalHeight, uint32* aFinalWidth, uint32* aFinalHeight);
