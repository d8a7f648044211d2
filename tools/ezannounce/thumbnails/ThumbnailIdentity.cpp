#include "thumbnails/ThumbnailIdentity.h"

#include "ezPlatform/files/FileState.h"

#include <cstdlib>
#include <memory>

namespace {

/// No path holds it, and no number: what stands on both sides of one cannot be mistaken.
constexpr char kEnd = '\0';

std::string StateOf(const std::string& aPath) {
    return std::string(ezFileState(ezCString(aPath)).ToIdentity().View());
}

/// The path with its folder resolved. Its last name stays: a link lies beside other pictures than its target.
std::string FullPath(const std::string& aPath) {
    const std::size_t nameStart = aPath.rfind('/') + 1;
    const std::string folder = nameStart == 0 ? "." : aPath.substr(0, nameStart);
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(folder.c_str(), nullptr), std::free);
    return real == nullptr ? aPath : std::string(real.get()) + "/" + aPath.substr(nameStart);
}

} // namespace

std::vector<std::string> SidecarsOf(const ThumbnailInfo& anInfo, SidecarListing* aListing) {
    std::vector<std::string> paths;
    for (const ezCString& path : aListing != nullptr ? aListing->CandidatePaths(&anInfo)
                                                     : SidecarThumbnailProvider::CandidatePaths(&anInfo)) {
        paths.emplace_back(path.View());
    }
    return paths;
}

ezCString ThumbnailIdentity(const ThumbnailInfo& anInfo, const std::vector<std::string>& aSidecars) {
    const std::string path(anInfo.mFilePath.GetFullPath().View());
    std::string identity = FullPath(path) + kEnd + StateOf(path) + kEnd;
    for (const std::string& sidecar : aSidecars) {
        identity += sidecar.substr(sidecar.rfind('/') + 1) + kEnd + StateOf(sidecar) + kEnd;
    }
    identity += std::string(anInfo.mMimeType.View()) + kEnd + (anInfo.mfFastRescale ? "fast" : "") + kEnd +
                EZANNOUNCE_VERSION;
    return ezCString(identity);
}
