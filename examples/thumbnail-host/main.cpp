// A small host of thumbnails: thumbnail-host MEDIA CACHE_FOLDER OUT writes the thumbnail of a media item to
// OUT.
#include "ez/ThumbnailProvider.h"
#include "ezHosting/Host.h"
#include "ezPlatform/base/StandardDescriptors.h"
#include "ezPlatform/dlna/DLNAField.h"
#include "ezPlatform/files/File.h"
#include "ezPlatform/files/FileCacheManager.h"
#include "ezPlatform/files/FileState.h"
#include "ezThumbnails/PictureThumbnailGenerator.h"
#include "ezThumbnails/SidecarThumbnailProvider.h"
#include "ezThumbnails/ThumbnailProviders.h"

#include <cstdio>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace {

/// The host's own provider: what somebody put into the folder ".posters" beside the media.
class PosterProvider : public ezIndirectThumbnailProvider {
public:
    explicit PosterProvider(ezThumbnailGenerator* aGenerator)
        : ezIndirectThumbnailProvider("poster", aGenerator) {}

    void GetFirstPath(const ThumbnailInfo* anInfo) override {
        mNext = 0;
        GetNextPath(anInfo);
    }
    void GetNextPath(const ThumbnailInfo* anInfo) override {
        EndTries(); // deletes the candidate before this one
        if (mNext < std::size(kKinds)) {
            const Kind& kind = kKinds[mNext++];
            auto source = std::make_unique<ezFileThumbnailSource>(anInfo);
            source->SetPath(ezPathName::MakeFilePath(PathOf(*anInfo, kind)));
            source->SetMimeType(kind.mMimeType);
            mTrySource = source.release(); // the base deletes it
        }
    }

    /// The paths of what could be taken for an item, in the order in which they are tried.
    static std::vector<ezCString> CandidatePaths(const ThumbnailInfo* anInfo) {
        std::vector<ezCString> paths;
        for (const Kind& kind : kKinds) {
            paths.push_back(PathOf(*anInfo, kind));
        }
        return paths;
    }

private:
    struct Kind {
        const char* mExtension;
        const char* mMimeType;
    };
    static constexpr Kind kKinds[] = {{".jpg", "image/jpeg"}, {".png", "image/png"}};

    static ezCString PathOf(const ThumbnailInfo& anInfo, const Kind& aKind) {
        return anInfo.mFilePath.GetParentPath().GetFullPath() + ".posters/" + anInfo.mFilePath.GetFileName() +
               aKind.mExtension;
    }

    std::size_t mNext = 0;
};

/// Path and state of every file that could be taken for an item.
std::string StateOfCandidates(const std::vector<ezCString>& aPaths) {
    std::string states;
    for (const ezCString& path : aPaths) {
        const ezCString state = ezFileState(path).ToIdentity();
        states.append(path.View()).append(1, '\0').append(state.View()).append(1, '\0');
    }
    return states;
}

class ThumbnailHost {
public:
    explicit ThumbnailHost(const ezCString& aCacheFolder)
        : mCache(aCacheFolder, kCacheBytes, kCacheFiles), mManager(&mCache, new PictureThumbnailGenerator) {
        ThumbnailProviders providers; // the manager deletes them all
        providers.mOwn = new PosterProvider(mManager.GetThumbnailGenerator());
        AddThumbnailProviders(mManager, providers);
    }

    /// The thumbnail of a media item, or the generic one of its class; the caller's. Null when there is none.
    ezFile* GetThumbnail(const ezCString& aPath, const ezCString& aMimeType) {
        ThumbnailInfo info;
        info.mFilePath = ezPathName::MakeFilePath(aPath);
        info.mMimeType = aMimeType;
        info.mThumbnailID = kJPEGThumbnailID; // one format: what is sent is known then
        info.mWidthMax = 160;                 // the box of JPEG_TN
        info.mHeightMax = 160;
        info.mUniqueID = IdentityOf(info);
        return mManager.GetThumbnail(&info, true);
    }

private:
    static constexpr std::uint64_t kCacheBytes = std::uint64_t{64} << 20;
    static constexpr std::size_t kCacheFiles = 10000;
    /// Counted up whenever the providers, their order or the generator change: what they made is made anew.
    static constexpr char kMakers[] = "1";

    /// The item and the state of all that its thumbnail could be made of. No path holds a NUL, and so two
    /// items never have one identity.
    ezCString IdentityOf(const ThumbnailInfo& anInfo) {
        const ezCString path = anInfo.mFilePath.GetFullPath();
        std::string identity = kMakers;
        for (const ezCString& part : {path, ezFileState(path).ToIdentity(), anInfo.mMimeType}) {
            identity.append(1, '\0').append(part.View());
        }
        identity.append(1, '\0').append(StateOfCandidates(PosterProvider::CandidatePaths(&anInfo)));
        identity.append(1, '\0').append(StateOfCandidates(SidecarThumbnailProvider::CandidatePaths(&anInfo)));
        return ezCString(identity);
    }

    ezFileCacheManager mCache; // before the manager, which borrows it
    ezThumbnailProviderManager mManager;
};

/// Sends the body of the answer.
bool Send(ezFile& aThumbnail, std::FILE* anOut) {
    char buffer[16384];
    ezFileOffset left = aThumbnail.LengthAtOpen();
    while (left > 0) {
        const int count = aThumbnail.Read(buffer, sizeof buffer);
        if (count <= 0 || std::fwrite(buffer, 1, static_cast<std::size_t>(count), anOut) !=
                              static_cast<std::size_t>(count)) {
            return false;
        }
        left -= count;
    }
    return true;
}

/// What a server says before the body.
void PrintHeaders(const ezFile& aThumbnail) {
    std::printf("Content-Type: image/jpeg\n"
                "Content-Length: %lld\n"
                "Accept-Ranges: bytes\n"
                "transferMode.dlna.org: Interactive\n"
                "contentFeatures.dlna.org: %s%s\n",
                static_cast<long long>(aThumbnail.LengthAtOpen()),
                ezDLNAField::TextOfProfile("JPEG_TN").c_str(), kezThumbnailDLNAFlags);
}

} // namespace

int main(int anArgCount, char** anArgs) {
    ezKeepStandardDescriptors(); // so that nothing that is opened later is taken for one of them
    if (anArgCount != 4) {
        std::fprintf(stderr, "usage: thumbnail-host MEDIA CACHE_FOLDER OUT\n");
        return 2;
    }
    // Whatever folder the host is started in, a file has one path.
    std::error_code error;
    const ezCString path(std::filesystem::absolute(anArgs[1], error).c_str());
    ezHost media;
    const std::unique_ptr<ezMediaInfo> info = media.Identify(path.View());
    ThumbnailHost host{ezCString(anArgs[2])};
    const std::unique_ptr<ezFile> thumbnail(
        info != nullptr ? host.GetThumbnail(path, info->GetCString(kezInfo_MimeType, "")) : nullptr);
    if (thumbnail == nullptr) {
        std::fprintf(stderr, "%s: no thumbnail\n", anArgs[1]);
        return 1;
    }
    PrintHeaders(*thumbnail);
    std::FILE* const out = std::fopen(anArgs[3], "wb");
    const bool fSent = out != nullptr && Send(*thumbnail, out);
    const bool fClosed = out != nullptr && std::fclose(out) == 0;
    return fSent && fClosed ? 0 : 1;
}
