#include "thumbnails/Thumbnails.h"

#include "output/PictureWords.h"
#include "output/SameFile.h"
#include "thumbnails/ThumbnailIdentity.h"

#include "ezHosting/HostOptions.h"
#include "ezPlatform/base/Log.h"
#include "ezPlatform/files/File.h"
#include "ezThumbnails/CoverThumbnailProvider.h"
#include "ezThumbnails/DefaultThumbnailProvider.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"
#include "ezThumbnails/ThumbnailProviders.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <sys/stat.h>
#include <type_traits>
#include <utility>

namespace {

/// The box of the DLNA profiles of thumbnails.
constexpr PixelSize kDefaultBox = {160, 160};

/// A provider that takes down what it does. It calls the generator no more in its destructor than its base.
template <class Base>
class Traced : public Base {
public:
    template <class... Words>
    explicit Traced(ThumbnailTrace& aTrace, Words... aWords) : Base(aWords...), mTrace(aTrace) {}

    uint32 GetPossibleThumbnailFor(const ThumbnailInfo* anInfo) override {
        mTrace.mfAsked = true;
        return Base::GetPossibleThumbnailFor(anInfo);
    }

    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override {
        mTrace.mfAsked = true;
        if (!Base::BuildThumbnail(anInfo, aFile)) {
            mTrace.mfFailed = true;
            return false;
        }
        mTrace.mBuiltBy = this->GetName();
        if constexpr (std::is_base_of_v<ezIndirectThumbnailProvider, Base>) {
            // What succeeded stays until the next tries.
            if (const auto* file = dynamic_cast<const ezFileThumbnailSource*>(this->mTrySource)) {
                mTrace.mBuiltFrom = file->GetFullPath().c_str();
            }
        }
        return true;
    }

private:
    ThumbnailTrace& mTrace;
};

/// The pictures beside a file but for one.
class SidecarsButOne : public SidecarThumbnailProvider {
public:
    SidecarsButOne(ezThumbnailGenerator* aGenerator, const std::string& aLeftOut)
        : SidecarThumbnailProvider(aGenerator), mLeftOut(aLeftOut) {}

    void GetNextPath(const ThumbnailInfo* anInfo) override {
        do {
            SidecarThumbnailProvider::GetNextPath(anInfo);
        } while (SourceToTry() && IsLeftOut());
    }

private:
    bool IsLeftOut() const {
        const auto* file = dynamic_cast<const ezFileThumbnailSource*>(mTrySource);
        return !mLeftOut.empty() && file != nullptr && IsSameFile(file->GetFullPath().c_str(), mLeftOut);
    }

    std::string mLeftOut;
};

/// Stands after the class in the type of a request for a generic picture; no class has it.
constexpr char kAfterClass[] = " ";

/// The request for the generic picture of a file's class. The cache knows such a picture by the class in its
/// type alone, so what else it depends on is written there.
ThumbnailInfo GenericRequest(const ThumbnailInfo& anInfo) {
    ThumbnailInfo info = anInfo;
    info.mMimeType = anInfo.mMimeType.BeforeFirst('/') + kAfterClass + EZANNOUNCE_VERSION +
                     (anInfo.mfFastRescale ? " fast" : "");
    return info;
}

/// The generic pictures, for such requests.
class GenericPictures : public DefaultThumbnailProvider {
public:
    using DefaultThumbnailProvider::DefaultThumbnailProvider;

    bool BuildThumbnail(const ThumbnailInfo* anInfo, ezFile* aFile) override {
        ThumbnailInfo info = *anInfo;
        info.mMimeType = anInfo->mMimeType.BeforeFirst(kAfterClass[0]);
        return DefaultThumbnailProvider::BuildThumbnail(&info, aFile);
    }
};

std::string ReadAll(ezFile& aFile) {
    const ezFileOffset length = aFile.LengthAtOpen();
    if (length <= 0 || length > INT_MAX) {
        return {};
    }
    std::string bytes(static_cast<std::size_t>(length), '\0');
    const int count = aFile.Read(bytes.data(), bytes.size());
    bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return bytes;
}

} // namespace

template <class Provider, class... Words>
Provider* Thumbnails::NewProvider(Words... aWords) {
    return new Traced<Provider>(mTrace, mManager.GetThumbnailGenerator(), aWords...);
}

Thumbnails::Thumbnails(const std::string& aCacheFolder, const std::string& aLeftOut)
    : mCacheFolder(aCacheFolder),
      mCache(ezCString(aCacheFolder), ezHostOptions().mThumbnailBytes, ezHostOptions().mThumbnailFiles),
      mManager(&mCache, new PictureThumbnailGenerator),
      mSidecars(NewProvider<SidecarsButOne>(aLeftOut)) {
    ThumbnailProviders providers; // that of costly pictures is not traced: it builds nothing
    providers.mPicture = NewProvider<ezPictureThumbnailProvider>("picture");
    providers.mCover = NewProvider<CoverThumbnailProvider>();
    providers.mSidecar = mSidecars;
    providers.mDefault = NewProvider<GenericPictures>();
    AddThumbnailProviders(mManager, providers);
}

Thumbnails::~Thumbnails() = default;

std::unique_ptr<ezFile> Thumbnails::Request(const ThumbnailInfo& anInfo, bool afGeneric) {
    mTrace = ThumbnailTrace();
    return std::unique_ptr<ezFile>(afGeneric ? mManager.GetCachedThumbnail(&anInfo, true)
                                             : mManager.GetThumbnail(&anInfo, false));
}

bool Thumbnails::Fetch(const ThumbnailInfo& anInfo, bool afGeneric, Thumbnail& aThumbnail) {
    std::unique_ptr<ezFile> file = Request(anInfo, afGeneric);
    std::string bytes = file != nullptr ? ReadAll(*file) : std::string();
    if (file != nullptr && !mTrace.mfAsked && !ReadPictureFacts(bytes)) {
        // What a failing disk or a stranger left in the cache would stand there for good.
        mCache.SetCachedFileState(mManager.GetThumbnailFileName(&anInfo, afGeneric), file.get(), false);
        file = Request(anInfo, afGeneric);
        bytes = file != nullptr ? ReadAll(*file) : std::string();
    }
    if (bytes.empty()) {
        return false;
    }
    aThumbnail.mBytes = std::move(bytes);
    aThumbnail.mfGeneric = afGeneric;
    aThumbnail.mOrigin = Origin(afGeneric);
    if (_ezLog_Level > EZLOGLEVEL_DEBUG) {
        ezLog_Line_F(EZLOGLEVEL_DEBUG, EZLOG_M_THUMBNAIL, nullptr, 0, "Thumbnail of '%s': %s\n",
                     anInfo.mFilePath.GetFullPath().c_str(), aThumbnail.mOrigin.c_str());
    }
    return true;
}

std::string Thumbnails::Origin(bool afGeneric) const {
    if (afGeneric) {
        return std::string("generic picture of the media's class, ") +
               (mTrace.mfAsked ? "built" : "from the cache");
    }
    if (!mTrace.mfAsked) {
        return "from the cache";
    }
    if (mTrace.mBuiltBy == SidecarThumbnailProvider::kName) {
        return "built from " + mTrace.mBuiltFrom;
    }
    const bool fCover = mTrace.mBuiltBy == CoverThumbnailProvider::kName;
    return fCover ? "built from the cover in it" : "built from the picture itself";
}

void Thumbnails::Explain(const ThumbnailInfo& anInfo, bool afGeneric, Thumbnail& aThumbnail) {
    struct stat status = {};
    const ezCString cached = mCache.GetFullPath(mManager.GetThumbnailFileName(&anInfo, afGeneric));
    const bool fRemembered = stat(cached.c_str(), &status) == 0;
    if (!mTrace.mBuiltBy.empty() || (!mTrace.mfAsked && !fRemembered)) {
        aThumbnail.mfCacheFails = true;
        aThumbnail.mReason =
            "the cache in " + mCacheFolder + " cannot be read or written; --cache names another folder";
    } else if (mTrace.mfFailed) {
        aThumbnail.mReason = "no thumbnail: its picture is damaged, too large, or of a kind that is not read";
    } else {
        aThumbnail.mReason =
            "no thumbnail: it is no JPEG or PNG that is read, has no cover, and no picture beside it; "
            "--default gives the generic one";
    }
}

Thumbnail Thumbnails::Get(const ThumbnailInfo& anInfo, bool afUseGeneric) {
    Thumbnail thumbnail;
    const bool fOwn = Fetch(anInfo, false, thumbnail);
    thumbnail.mfFromCache = !mTrace.mfAsked;
    if (!fOwn) {
        Explain(anInfo, false, thumbnail);
        const ThumbnailInfo generic = GenericRequest(anInfo);
        if (afUseGeneric && !thumbnail.mfCacheFails && !Fetch(generic, true, thumbnail)) {
            Explain(generic, true, thumbnail);
        }
    }
    return thumbnail;
}

ThumbnailInfo ThumbnailRequest(const std::string& aPath, const ezCString& aMimeType, const ezCString& aDLNA,
                               const ThumbnailOptions& anOptions, const std::string& aLeftOut,
                               SidecarListing* aListing, std::vector<std::string>& aSidecars) {
    ThumbnailInfo info;
    info.mFilePath = ezPathName::MakeFilePath(ezCString(aPath));
    info.mMimeType = aMimeType;
    info.mDLNAInfo = aDLNA;
    info.mThumbnailID = anOptions.mfPng ? kPNGThumbnailID : kJPEGThumbnailID;
    info.mfFastRescale = anOptions.mfFast;
    if (anOptions.mSize) {
        info.mWidth = anOptions.mSize->mWidth;
        info.mHeight = anOptions.mSize->mHeight;
    } else {
        const PixelSize box = anOptions.mBox.value_or(kDefaultBox);
        info.mWidthMax = box.mWidth;
        info.mHeightMax = box.mHeight;
    }
    aSidecars = SidecarsOf(info, aListing);
    aSidecars.erase(std::remove_if(aSidecars.begin(), aSidecars.end(),
                                   [&aLeftOut](const std::string& aSidecar) {
                                       return !aLeftOut.empty() && IsSameFile(aSidecar, aLeftOut);
                                   }),
                    aSidecars.end());
    info.mUniqueID = ThumbnailIdentity(info, aSidecars);
    return info;
}
