#include "ezPlaylists/detail/XSPFPlaylistParser.h"

#include "ezPlaylists/detail/PlaylistPlace.h"

#include "ezPlatform/files/PathName.h"
#include "ezPlatform/text/URI.h"

#include <string_view>

XSPFPlaylistParser::XSPFPlaylistParser(ezStream* aStream)
    : MarkupPlaylistParser(aStream, PlaylistPlace(aStream), kMimeTypes[0], ReadXspfEntries) {}

PlaylistParser* XSPFPlaylistParser::sBuild(ezStream* aStream) {
    return aStream != nullptr ? new XSPFPlaylistParser(aStream) : nullptr;
}

ezCString XSPFPlaylistParser::GetFullURLFor(const ezCString& anEntryURI) {
    const std::string_view text = anEntryURI.View();
    const bool fEndsEarly = text.find('\0') != std::string_view::npos;
    const bool fWindowsPath = ezPathName::MakeFilePath(anEntryURI).IsAbsolute() && text[0] != '/';
    if (mParentURL != nullptr || anEntryURI.IsEmpty() || fEndsEarly || fWindowsPath) {
        // Past the indexed readers' own: a backslash in a URI is no separator.
        return PlaylistParser::GetFullURLFor(anEntryURI); // NOLINT(bugprone-parent-virtual-call): on purpose
    }
    // A playlist without a name lies in the working folder.
    const ezCString path = mFilePath.IsValid() ? mFilePath.GetFullPath() : ezCString("./");
    const ezOwned<ezURI_Delete> uri(ezURI_New());
    ezURI_SetScheme(uri.get(), "file");
    if (!ezURI_SetFilePath(uri.get(), path.c_str())) {
        return ezCString();
    }
    const ezOwnedText base(ezURI_GetStr(uri.get()));
    return ezCString::FromAllocatedString(ezURI_S_Combine(base.get(), anEntryURI.c_str()));
}
