#include "ezPlaylists/detail/PlaylistPlace.h"

#include "ezPlatform/streams/Stream.h"
#include "ezPlatform/text/URI.h"

#include <memory>

namespace {

struct URIDelete {
    void operator()(ezURI* aURI) const { ezURI_Delete(aURI); }
};

} // namespace

PlaylistPlace::PlaylistPlace(const ezStream* aStream) {
    if (aStream == nullptr) {
        return;
    }
    const ezCString place = aStream->GetURI();
    const std::unique_ptr<ezURI, URIDelete> uri(ezURI_NewFromEscapedStr(place.c_str()));
    const ezCString scheme = ezCString(ezURI_GetScheme(uri.get())).Lower();
    if (scheme == "http" || scheme == "https") {
        mParentURL = place;
    } else if (scheme == "file") {
        mFilePath = ezPathName::MakeFilePath(ezURI_GetPath(uri.get()));
    } else {
        mFilePath = ezPathName::MakeFilePath(place);
    }
}
