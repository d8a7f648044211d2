#include "ezPlaylists/detail/PlaylistPlace.h"

#include "ezPlatform/base/Owned.h"
#include "ezPlatform/streams/Stream.h"
#include "ezPlatform/text/URI.h"

#include <algorithm>
#include <string>

namespace {

/// The path of a "file:" URL. One on another host is a path of Windows ("\\host\share\..."), of which a
/// full URL with the same host is made again.
ezPathName FilePathOf(const ezURI* aURI) {
    const ezCString host = ezURI_GetHostName(aURI);
    const ezCString path = ezURI_GetPath(aURI);
    if (host.IsEmpty() || ezIsEqualNoCase(host.View(), "localhost")) {
        return ezPathName::MakeFilePath(path);
    }
    std::string text = "//" + std::string(host.View()) + std::string(path.View());
    std::replace(text.begin(), text.end(), '/', '\\');
    return ezPathName::MakeFilePath(ezCString(text));
}

} // namespace

PlaylistPlace::PlaylistPlace(const ezStream* aStream) {
    if (aStream == nullptr) {
        return;
    }
    const ezCString place = aStream->GetURI();
    const ezOwned<ezURI_Delete> uri(ezURI_NewFromEscapedStr(place.c_str()));
    const ezCString scheme = ezURI_GetScheme(uri.get());
    if (ezIsEqualNoCase(scheme.View(), "http") || ezIsEqualNoCase(scheme.View(), "https")) {
        mParentURL = place;
    } else if (ezIsEqualNoCase(scheme.View(), "file")) {
        mFilePath = FilePathOf(uri.get());
    } else {
        mFilePath = ezPathName::MakeFilePath(place);
    }
}
