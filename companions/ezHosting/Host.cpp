#include "ezHosting/Host.h"

#include "ezHosting/ProtocolInfos.h"
#include "ezHosting/detail/HostParts.h"
#include "ezHosting/detail/Places.h"

#include "ez/FileMediaParserStream.h"

#include <set>
#include <utility>

ezHost::ezHost(std::string_view aConfigFolder, const ezHostOptions& anOptions)
    : mParts(std::make_unique<HostParts>(aConfigFolder, anOptions)) {}

ezHost::~ezHost() = default;

bool ezHost::IsReady() const {
    return mParts->mfReady;
}

const std::string& ezHost::GetError() const {
    return mParts->mError;
}

std::unique_ptr<ezMediaInfo> ezHost::Identify(std::string_view aPath) {
    if (!IsReady()) {
        return nullptr;
    }
    ezFileMediaParserStream stream{ezCString(aPath)};
    std::unique_ptr<ezMediaInfo> info = Identify(stream);
    if (!mParts->mError.empty()) {
        mParts->mError = WhyNotOpened(aPath);
    }
    return info;
}

std::unique_ptr<ezMediaInfo> ezHost::Identify(ezMediaParserStream& aStream) {
    if (!IsReady()) {
        return nullptr;
    }
    mParts->mError.clear();
    const bool fOpened = aStream.Open();
    const bool fAtStart = aStream.Tell() == 0U || aStream.Seek(0, ezMediaParserStream::SeekFromStart, false);
    if (!fOpened || !fAtStart) {
        const ezCString path = aStream.GetFullPath();
        mParts->mError = (path.IsEmpty() ? "the stream" : ShownPath(path.View())) +
                         (fOpened ? ": cannot be read from its start" : ": cannot be opened");
        return nullptr;
    }
    return std::unique_ptr<ezMediaInfo>(mParts->mManager.Parse(aStream));
}

std::vector<std::string> ezHost::GetCapabilities(bool afDTCP) const {
    std::vector<std::string> capabilities;
    if (!IsReady()) {
        return capabilities;
    }
    ezMediaParserManager& manager = mParts->mManager;
    const ezCString text = afDTCP ? manager.GetDLNAInfoDTCP() : manager.GetDLNAInfo();
    std::set<std::string> known;
    for (std::string& capability : ProtocolInfosOf(text.View())) {
        if (known.insert(capability).second) {
            capabilities.push_back(std::move(capability));
        }
    }
    return capabilities;
}

ezMediaParserManager& ezHost::GetManager() const {
    return mParts->mManager;
}

ExtensionMimeTypeMatcher& ezHost::GetMediaTypes() const {
    return mParts->mMediaTypes;
}

const ezHostFolders& ezHost::GetFolders() const {
    return mParts->mFolders;
}

DLNAMediaMapper* ezHost::GetMediaMapper() const {
    return mParts->mMapper.get();
}

PlaylistParserFactory* ezHost::GetPlaylists() const {
    return mParts->mPlaylists.get();
}

ezThumbnailProviderManager* ezHost::GetThumbnails() const {
    return mParts->mThumbnails != nullptr ? &mParts->mThumbnails->GetManager() : nullptr;
}

bool ezHost::UseMediaMapper(std::unique_ptr<DLNAMediaMapper> aMapper) {
    return mParts->UseMapper(std::move(aMapper));
}
